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

// The delivered file: refused destinations, the zip and its one member, and
// no half-made file left behind when something fails.
class TstGenerateDisk : public EnvTest
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

public:
    TstGenerateDisk() : EnvTest(false) {}

private slots:
    void initTestCase() { QVERIFY(m_database.build()); }

    void refusedDestination_data()
    {
        QTest::addColumn<QString>("destination");
        QTest::addColumn<QString>("message");
        QTest::newRow("network share") << "//servidor/ddjj/09760110.DJ" << kNetwork;
        QTest::newRow("windows share") << "/mnt/x\\\\servidor\\ddjj\\09760110.DJ" << kNetwork;
        QTest::newRow("smb address") << "smb://servidor/ddjj/09760110.DJ" << kNetwork;
        QTest::newRow("missing folder") << "/no/existe/09760110.DJ" << kNoDrive;
        QTest::newRow("no folder given") << "\\09760110.DJ" << kNoDrive;
        QTest::newRow("a file, not a folder") << "FILE/09760110.DJ" << kNoDrive;
        QTest::newRow("folder that takes no file") << "LOCKED/09760110.DJ" << kNoDrive;
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
        QVERIFY(env->ui().messages().isEmpty());
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
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<bool>("result");
        auto row = [](const char* name, const char* form, const char* sql, bool result) {
            QTest::newRow(name) << form << sql << result;
        };
        row("regime 2 on an annex", "F977", "UPDATE tPadronesComerciales SET regimen = '2'", true);
        row("premises without group", "F976", "UPDATE tPadronesComerciales SET grupo = NULL", true);
        row("premises missing", "F988", "DELETE FROM tPadronesComerciales", true);
        row("form without codes", "F986",
            "DELETE FROM tCodigos_Formularios WHERE idFormulario = 'F986'", true);
        row("work file cannot be written", "F978", "", true);
        row("unknown form", "F999", "", false);
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
        QVERIFY(env->ui().messages().isEmpty());
        if (blocked)
            QDir(temporary).removeRecursively();
        verifyNoLeftovers();
    }
};

QTEST_GUILESS_MAIN(TstGenerateDisk)
#include "tst_generatedisk.moc"
