#include <QtTest>

#include "OutputFixture.h"
#include "TestSupport.h"
#include "output/ZoGenerateDisk.h"

using namespace OutputFixture;

namespace {

// The text that CreateFile writes for `parameters`, left unzipped.
QByteArray submissionText(const QString& parameters)
{
    ZoGenerateDisk disk;
    disk.Parametros = parameters;
    if (!disk.CreateFile(gAppPath + QStringLiteral("/09760110.DJ"), true))
        return "CreateFile answered false";
    return ReadBytes(disk.TemporaryPath());
}

// The records of a text without their CR LF, for readable comparisons.
QStringList records(const QByteArray& text)
{
    if (text.isEmpty() || !text.endsWith("\r\n"))
        return {QString::fromLatin1(text)};
    return QString::fromLatin1(text.chopped(2)).split(QStringLiteral("\r\n"));
}

QStringList goldenRecords(const QString& form)
{
    return records(golden(form));
}

const QString kOtherPremises =
    QStringLiteral("Padron=0000000054321 - Objeto N° 0000000000002;Periodo=01;Anio=2010;"
                   "Rectificativa=Falso;FechaRectificativa=0;ctrl=0;Formulario=");

} // namespace

// The records of the submission file of each form, byte for byte against
// texts written by hand from the record layouts.
class TstSubmission : public EnvTest
{
    Q_OBJECT
    FixtureDatabase m_database;

    void seed() override { QVERIFY(m_database.install()); }
    void tearDown() override
    {
        QVERIFY2(env->ui().messages().isEmpty(), qPrintable(env->ui().texts().join('|')));
    }

public:
    TstSubmission() : EnvTest(false) {}

private slots:
    void initTestCase() { QVERIFY(m_database.build()); }

    void eachForm_data()
    {
        QTest::addColumn<QString>("form");
        for (const QString& form : kForms)
            QTest::newRow(qPrintable(form)) << form;
    }
    void eachForm()
    {
        QFETCH(QString, form);
        const QByteArray text = submissionText(parameters(form));
        QCOMPARE(records(text), goldenRecords(form));
        QCOMPARE(text, golden(form));
    }

    void envelope_data()
    {
        QTest::addColumn<QString>("parameters");
        QTest::addColumn<QString>("regimen"); // of the second premises; "-" for no row
        QTest::addColumn<QString>("record");  // "" for an empty text
        const QString own = parameters("F976");
        const QString o976 = QStringLiteral(
            "1@O@01@2010@0000000012345@0008@0012-0001@0076@0000000000001@0A1B2C3D4E5F@");
        const QString r976 = QString(o976).replace(2, 1, "R");
        const QString other = "1@O@01@2010@0000000054321@0008@%1@0000000000002@@";
        // clang-format off
        QTest::newRow("month and year apart") << own << "-" << o976;
        QTest::newRow("period with its year") << parameters("F976", "01-2010", "") << "-" << o976;
        QTest::newRow("older spelling")
            << QString(own).replace("Padron=", "Padrón N° ") << "-" << o976;
        QTest::newRow("Verdadero") << QString(own).replace("=Falso", "=Verdadero") << "-" << r976;
        QTest::newRow("True") << QString(own).replace("=Falso", "=True") << "-" << r976;
        QTest::newRow("False") << QString(own).replace("=Falso", "=False") << "-" << o976;
        QTest::newRow("neither word") << QString(own).replace("=Falso", "=") << "-" << r976;
        // A dash where the month should end is moved out of the way.
        QTest::newRow("dash after the month")
            << QString(own).replace("Anio=2010", "Anio=-2010").replace("Periodo=01", "Periodo=1")
            << "-" << "1@O@1@@20100000000012345@0008@0012-0001@0076@0000000000001@@";
        // The annexes of retentions (0089) and perceptions (0090) suffered
        // declare under the concept of the premises' regime.
        // clang-format on
        auto premises = [&](const char* name, const char* form, const char* regimen,
                            const char* codes) {
            QTest::newRow(name) << kOtherPremises + form + ";" << regimen
                                << (*codes ? other.arg(codes) : QString());
        };
        premises("F977, regime 0", "F977", "0", "0012-0008@0089");
        premises("F977, regime 1", "F977", "1", "0011-0008@0089");
        premises("F978, regime 1", "F978", "1", "0011-0009@0090");
        premises("F977, regime 3", "F977", "3", "-0008@0089");
        premises("F978, no premises", "F978", "-", "-0009@0090");
        premises("F976, regime 1", "F976", "1", "0012-0001@0076");
        premises("F987, regime 2", "F987", "2", "0024-0011@0087");
        premises("F977, regime 2", "F977", "2", "");
        premises("F978, regime 2", "F978", "2", "");
    }
    void envelope()
    {
        QFETCH(QString, parameters);
        QFETCH(QString, regimen);
        QFETCH(QString, record);
        if (regimen != "-")
            gAccess().Execute("INSERT INTO tPadronesComerciales (cuit, padron, objeto, grupo, "
                              "regimen) VALUES ('20123456786', '0000000054321', "
                              "'0000000000002', '1', '" +
                              regimen + "')");
        QCOMPARE(records(submissionText(parameters)).first(), record);
    }

    void identifierGivenOnFirstGeneration()
    {
        gAccess().Execute("UPDATE F976 SET Guidv = NULL");
        const QString first =
            records(submissionText(parameters("F976"))).first().section('@', 9, 9);
        QVERIFY2(QRegularExpression("^[0-9A-F]{12}$").match(first).hasMatch(), qPrintable(first));
        QCOMPARE(gAccess().GetString("SELECT Guidv FROM F976 WHERE ctrl = '0'"), first);
        QCOMPARE(gAccess().GetString("SELECT Guidv FROM F976 WHERE ctrl = '1'"), QString());
        QCOMPARE(records(submissionText(parameters("F976"))).first().section('@', 9, 9), first);
    }

    void declarationWithoutDetails_data()
    {
        QTest::addColumn<QString>("form");
        for (const QString& form : kForms.mid(0, 6))
            QTest::newRow(qPrintable(form)) << form;
    }
    void declarationWithoutDetails()
    {
        QFETCH(QString, form);
        gAccess().Execute("DELETE FROM " + form + "_Detalle");
        QCOMPARE(records(submissionText(parameters(form))), goldenRecords(form).mid(0, 3));
    }

    // A period written "mm-yyyy" with no year: F976 splits it; the other
    // forms look for the period "mm-yyyy-" and find no row, while F2001's
    // row code, freed of its dashes, still finds the details.
    void periodWithItsYear_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("record3");
        QTest::addColumn<bool>("details");
        // clang-format off
        QTest::newRow("F976") << "F976" << QString() << true;
        QTest::newRow("F2001") << "F2001" << "3@" + QString(17, '@') << true;
        QTest::newRow("F977") << "F977" << "3@" + QString(8, '@') << false;
        QTest::newRow("F986") << "F986" << "3@" + QString(7, '@') << false;
        // clang-format on
    }
    void periodWithItsYear()
    {
        QFETCH(QString, form);
        QFETCH(QString, record3);
        QFETCH(bool, details);
        QStringList expected = goldenRecords(form);
        if (!record3.isEmpty())
            expected[2] = record3;
        QCOMPARE(records(submissionText(parameters(form, "01-2010", ""))),
                 details ? expected : expected.mid(0, 3));
    }

    // The agents' returns take record 4 from their own table, asked again:
    // F988 by the rectification's date, F986 without it, so that F986 lists
    // every row of the same kind and ctrl.
    void agentsAskTheirTableAgain_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("collected");
        QTest::addColumn<bool>("listed");
        // clang-format off
        QTest::newRow("F986") << "F986" << "ImpPercibidoF985" << true;
        QTest::newRow("F988") << "F988" << "ImpPercibidoF987" << false;
        // clang-format on
    }
    void agentsAskTheirTableAgain()
    {
        QFETCH(QString, form);
        QFETCH(QString, collected);
        QFETCH(bool, listed);
        const QStringList v = versionOf(form);
        gAccess().Execute("INSERT INTO " + form +
                          " (Padron, Objeto, Periodo, Rectificativa, "
                          "FechaRectificativa, " +
                          collected +
                          ", ImporteDepositar, ctrl) VALUES "
                          "('0000000012345', '0000000000001', '01-2010', '" +
                          v.at(0) + "', '30-12-2011', '7,00', '7,00', '" + v.at(2) + "')");
        QStringList expected = goldenRecords(form);
        if (listed)
            expected << "4@7.00@@@@7.00@";
        QCOMPARE(records(submissionText(parameters(form))), expected);
    }

    // Fields read without the Null guard: a Null taxable base leaves its
    // field empty and the line whole; a Null group ends the text after the
    // envelope.
    void nullsWithoutGuard()
    {
        gAccess().Execute("UPDATE F976 SET BaseImponible = NULL");
        QStringList expected = goldenRecords("F976");
        expected[2].replace("@123456.78@", "@@");
        QCOMPARE(records(submissionText(parameters("F976"))), expected);

        gAccess().Execute("UPDATE tPadronesComerciales SET grupo = NULL");
        QCOMPARE(records(submissionText(parameters("F976"))), goldenRecords("F976").mid(0, 1));
    }
};

QTEST_GUILESS_MAIN(TstSubmission)
#include "tst_submission.moc"
