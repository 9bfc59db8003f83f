#include <QProcess>
#include <QStandardPaths>
#include <QtTest>
#include <unistd.h>

#include "Db.h"
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

const QString kNetwork = QStringLiteral("No se puede generar el archivo en unidades de red.");
const QString kNoDrive = QStringLiteral("No se puede acceder a la unidad. Verifique por favor.");

bool generate(const QString& form, const QString& destination)
{
    ZoGenerateDisk disk;
    disk.Parametros = parameters(form);
    return disk.CreateFile(destination);
}

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

// The bytes of the one member of a delivered file, checked by unzip when
// the machine has it.
QByteArray memberOf(const QString& archive, QString folder)
{
    if (!QStandardPaths::findExecutable("unzip").isEmpty()) {
        QProcess unzip;
        unzip.start("unzip", {"-t", archive});
        if (!unzip.waitForFinished() || unzip.exitCode() != 0)
            return "unzip -t failed: " + unzip.readAll();
        unzip.start("unzip", {"-Z1", archive});
        if (!unzip.waitForFinished() || unzip.readAll() != "TEMPFILE.DJ\n")
            return "not the one member TEMPFILE.DJ";
    }
    QString member = "TEMPFILE.DJ";
    QDir(folder).removeRecursively();
    if (!ZoGenerateDisk().Expand(archive, member, folder))
        return "cannot expand";
    return ReadBytes(folder + "/" + member);
}

} // namespace

// The records of the submission file of each form, byte for byte against
// texts written by hand from the record layouts; and the delivered file:
// refused destinations, the zip and its one member, and no half-made file
// left behind when something fails.
class TstSubmission : public EnvTest
{
    Q_OBJECT
    FixtureDatabase m_database;
    QString m_destination; // the folder the person chose

    // No work file outlives a generation, and only whole files are delivered.
    void verifyNoLeftovers()
    {
        QVERIFY(!QFile::exists(ZoGenerateDisk().TemporaryPath()));
        QVERIFY(!QFile::exists(gAppPath + "/TEMPFILE.ZIP"));
        for (const QString& name : filesIn(m_destination))
            QVERIFY2(name.endsWith(".DJ"), qPrintable(name));
    }

    void seed() override
    {
        QVERIFY(m_database.install());
        m_destination = env->path("destino");
        QDir().mkpath(m_destination);
    }
    // Nothing is shown to the person but what a test reads and clears.
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
            Row(qPrintable(form), form);
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
        // regimen: of the second premises; "-" for no row; record: "" for an empty text
        Columns<QString, QString, QString>("parameters", "regimen", "record");
        const QString own = parameters("F976");
        const QString o976 = QStringLiteral(
            "1@O@01@2010@0000000012345@0008@0012-0001@0076@0000000000001@0A1B2C3D4E5F@");
        const QString r976 = QString(o976).replace(2, 1, "R");
        const QString other = "1@O@01@2010@0000000054321@0008@%1@0000000000002@@";
        Row("month and year apart", own, "-", o976);
        Row("period with its year", parameters("F976", "01-2010", ""), "-", o976);
        Row("older spelling", QString(own).replace("Padron=", "Padrón N° "), "-", o976);
        Row("Verdadero", QString(own).replace("=Falso", "=Verdadero"), "-", r976);
        Row("True", QString(own).replace("=Falso", "=True"), "-", r976);
        Row("False", QString(own).replace("=Falso", "=False"), "-", o976);
        Row("neither word", QString(own).replace("=Falso", "="), "-", r976);
        // A dash where the month should end is moved out of the way.
        Row("dash after the month",
            QString(own).replace("Anio=2010", "Anio=-2010").replace("Periodo=01", "Periodo=1"), "-",
            "1@O@1@@20100000000012345@0008@0012-0001@0076@0000000000001@@");
        // The annexes of retentions (0089) and perceptions (0090) suffered
        // declare under the concept of the premises' regime.
        auto premises = [&](const char* name, const char* form, const char* regimen,
                            const char* codes) {
            Row(name, kOtherPremises + form + ";", regimen,
                (*codes ? other.arg(codes) : QString()));
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
            Row(qPrintable(form), form);
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
        Columns<QString, QString, bool>("form", "record3", "details");
        Row("F976", "F976", QString(), true);
        Row("F2001", "F2001", "3@" + QString(17, '@'), true);
        Row("F977", "F977", "3@" + QString(8, '@'), false);
        Row("F986", "F986", "3@" + QString(7, '@'), false);
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
        Columns<QString, QString, bool>("form", "collected", "listed");
        Row("F986", "F986", "ImpPercibidoF985", true);
        Row("F988", "F988", "ImpPercibidoF987", false);
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

    void refusedDestination_data()
    {
        Columns<QString, QString>("destination", "message");
        Row("network share", "//servidor/ddjj/09760110.DJ", kNetwork);
        Row("windows share", "/mnt/x\\\\servidor\\ddjj\\09760110.DJ", kNetwork);
        Row("smb address", "smb://servidor/ddjj/09760110.DJ", kNetwork);
        Row("missing folder", "/no/existe/09760110.DJ", kNoDrive);
        Row("no folder given", "\\09760110.DJ", kNoDrive);
        Row("a file, not a folder", "FILE/09760110.DJ", kNoDrive);
        Row("folder that takes no file", "LOCKED/09760110.DJ", kNoDrive);
    }
    void refusedDestination()
    {
        QFETCH(QString, destination);
        QFETCH(QString, message);
        QVERIFY(WriteBytes(env->path("plain"), {}));
        // Permissions do not stop the superuser; /proc takes no new file from
        // anyone.
        QString locked = "/proc";
        if (geteuid() != 0) {
            locked = env->path("locked");
            QDir().mkpath(locked);
            QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner);
        }
        destination.replace("FILE", env->path("plain")).replace("LOCKED", locked);

        QVERIFY(!generate("F976", destination));
        QCOMPARE(env->ui().texts(), QStringList{message});
        QCOMPARE(env->ui().messages().first().title, QString("Atención !"));
        QCOMPARE(env->ui().messages().first().style, 48);
        QVERIFY(!QFile::exists(destination));
        verifyNoLeftovers();
        env->ui().clearMessages();
    }

    // A whole period: each form its own file, side by side in one folder.
    void periodOfThreeForms()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("7za is not installed");
        const QList<QPair<QString, QString>> files = {
            {"F976", "09760110.DJ"}, {"F977", "09770110.DJ"}, {"F978", "09780110.DJ"}};
        for (const auto& [form, name] : files)
            QVERIFY(generate(form, m_destination + "/" + name));
        QCOMPARE(filesIn(m_destination),
                 QStringList({"09760110.DJ", "09770110.DJ", "09780110.DJ"}));
        for (const auto& [form, name] : files)
            QCOMPARE(memberOf(m_destination + "/" + name, env->path("unzipped")), golden(form));
        verifyNoLeftovers();
    }

    // Without the archiver nothing reaches the destination and no work file
    // stays; the writer's answer is still true, as the dialog was always told.
    void archiverMissing()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", "");
        const bool missing = SevenZipProgram().isEmpty();
        const bool result = generate("F976", m_destination + "/09760110.DJ");
        qputenv("PATH", path);
        if (!missing)
            QSKIP("7za stands beside the test program");
        QVERIFY(result);
        QCOMPARE(filesIn(m_destination), QStringList());
        verifyNoLeftovers();
    }

    // A text that could not be written to its end is never delivered, nor a
    // text left behind by an earlier run in its place.
    void incompleteTextIsNotDelivered_data()
    {
        Columns<QString, QString, bool>("form", "sql", "result");
        Row("regime 2 on an annex", "F977", "UPDATE tPadronesComerciales SET regimen = '2'", true);
        Row("premises without group", "F976", "UPDATE tPadronesComerciales SET grupo = NULL", true);
        Row("premises missing", "F988", "DELETE FROM tPadronesComerciales", true);
        Row("form without codes", "F986",
            "DELETE FROM tCodigos_Formularios WHERE idFormulario = 'F986'", true);
        Row("work file cannot be written", "F978", "", true);
        Row("unknown form", "F999", "", false);
    }
    void incompleteTextIsNotDelivered()
    {
        QFETCH(QString, form);
        QFETCH(QString, sql);
        QFETCH(bool, result);
        if (!sql.isEmpty())
            Db::exec(sql);
        const QString temporary = ZoGenerateDisk().TemporaryPath();
        const bool blocked = QByteArray(QTest::currentDataTag()).startsWith("work file");
        QVERIFY(QDir().mkpath(WorkFolder()));
        if (blocked)
            QVERIFY(QDir().mkpath(temporary)); // a folder where the file should go
        else
            QVERIFY(QFile(temporary).open(QIODevice::WriteOnly));

        QCOMPARE(generate(form, m_destination + "/x.DJ"), result);
        QCOMPARE(filesIn(m_destination), QStringList());
        if (blocked)
            QDir(temporary).removeRecursively();
        verifyNoLeftovers();
    }
};

QTEST_GUILESS_MAIN(TstSubmission)
#include "tst_submission.moc"
