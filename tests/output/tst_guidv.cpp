#include <QtTest>

#include "OutputFixture.h"
#include "TestSupport.h"
#include "output/ZoHash.h"
#include "output/ZoHashGuid.h"

namespace {

const QString kF976 = QStringLiteral("Padron=0000000012345 - Objeto N° 0000000000001;Periodo=01;"
                                     "Anio=2010;Formulario=F976;ctrl=0;");

// The original (ctrl 0) and a rectification (ctrl 1) of F976, January 2010.
void insertVersions(const QString& guidv)
{
    const QString insert = QStringLiteral(
        "INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, "
        "ctrl) VALUES ('0000000012345012010000000000001%1', '0000000012345', '0000000000001', "
        "'01-2010', '%2', '%3', '%4')");
    gAccess().Execute(insert.arg("O", "Falso", "0", "0"));
    gAccess().Execute(insert.arg("R", "Verdadero", "20-02-2010", "1"));
    if (!guidv.isEmpty())
        gAccess().Execute("UPDATE F976 SET Guidv = '" + guidv + "'");
}

QStringList guidvs()
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet("SELECT Guidv FROM F976 ORDER BY Id");
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

bool isShortGuid(const QString& text)
{
    return QRegularExpression("^[0-9A-F]{12}$").match(text).hasMatch();
}

} // namespace

// The identifier that ties a declaration's file to its paper, and the digest
// of the older scheme's declarations.
class TstGuidv : public EnvTest
{
    Q_OBJECT
    OutputFixture::FixtureDatabase m_database;

    void seed() override { QVERIFY(m_database.install()); }

public:
    TstGuidv() : EnvTest(false) {}

private slots:
    void initTestCase() { QVERIFY(m_database.build(false)); }

    void givenOnceAndKept_data()
    {
        QTest::addColumn<QString>("parameters");
        Row("month and year apart", kF976);
        Row("period with its year",
            QString(kF976).replace("Periodo=01;Anio=2010", "Periodo=01-2010"));
        Row("older spelling", QString(kF976).replace("Padron=", "Padrón N° "));
    }
    void givenOnceAndKept()
    {
        QFETCH(QString, parameters);
        insertVersions({});
        const QString first = GetDeclarationGuidv(parameters);
        QVERIFY2(isShortGuid(first), qPrintable(first));
        // Only the named version got it: the next one has its own ctrl.
        QCOMPARE(guidvs(), QStringList({first, QString()}));
        EnsureDeclarationGuidv(parameters);
        QCOMPARE(GetDeclarationGuidv(parameters), first);
        QCOMPARE(guidvs(), QStringList({first, QString()}));
    }

    void noRowOrStoredIdentifier_data()
    {
        Columns<QString, QString, QString>("parameters", "stored", "guidv");
        const QString none;
        Row("stored stays", kF976, "ABCDEF012345", "ABCDEF012345");
        Row("another ctrl", QString(kF976).replace("ctrl=0", "ctrl=3"), none, none);
        Row("another form", QString(kF976).replace("F976", "F977"), none, none);
        Row("no table", QString(kF976).replace("F976", "F976 SET x=1"), none, none);
    }
    void noRowOrStoredIdentifier()
    {
        QFETCH(QString, parameters);
        QFETCH(QString, stored);
        QFETCH(QString, guidv);
        insertVersions(stored);
        QCOMPARE(GetDeclarationGuidv(parameters), guidv);
        QCOMPARE(guidvs(), QStringList({stored, stored}));
    }

    // After a save the digest of the submission text is taken again: the
    // identifier changes with the text and only with it.
    void refreshDigest_data()
    {
        QTest::addColumn<bool>("sameText");
        Row("unchanged text keeps its identifier", true);
        Row("changed text gets a new one", false);
    }
    void refreshDigest()
    {
        QFETCH(bool, sameText);
        const QByteArray text = "1@O@01@2010@\r\n2@x@\r\n";
        const QString digest = ZoHash().DigestStrToHexStr(QString::fromLatin1(text));
        const QString oldHash = sameText ? digest : QString(32, 'F');
        gAccess().Execute("INSERT INTO EncFormularios (idEncFormulario, Hash, Guidv) VALUES "
                          "(7, '" +
                          oldHash + "', 'ABCDEF012345')");
        QVERIFY(WriteBytes(DigestSourcePath(), text));

        QVERIFY(RefreshDeclarationDigest("idEncFormulario=7;", oldHash, "ABCDEF012345"));
        QCOMPARE(ReadStoredHash("idEncFormulario=7;"), digest);
        const QString guidv = ReadStoredGuidv("idEncFormulario=7;");
        QCOMPARE(guidv == "ABCDEF012345", sameText);
        QVERIFY(isShortGuid(guidv));
        QVERIFY(!QFile::exists(DigestSourcePath()));
        QVERIFY(!QFile::exists(HashProbePath()));
    }

    void refreshWithoutTextChangesNothing()
    {
        gAccess().Execute("INSERT INTO EncFormularios (idEncFormulario, Hash, Guidv) VALUES "
                          "(7, 'OLD', 'ABCDEF012345')");
        QVERIFY(!RefreshDeclarationDigest("idEncFormulario=7;", "OLD", "ABCDEF012345"));
        QCOMPARE(ReadStoredHash("idEncFormulario=7;"), QString("OLD"));
        QCOMPARE(ReadStoredGuidv("idEncFormulario=7;"), QString("ABCDEF012345"));
        QCOMPARE(ReadStoredHash("idEncFormulario=8;"), QString());
        QCOMPARE(ReadStoredGuidv("idEncFormulario=;"), QString());
    }
};

QTEST_GUILESS_MAIN(TstGuidv)
#include "tst_guidv.moc"
