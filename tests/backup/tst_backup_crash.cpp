#include <QtTest>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QThread>

#include "BackupTestKit.h"
#include "ScriptedUi.h"
#include "TestSupport.h"
#include "backup/DatabaseFile.h"

namespace {

const char* const kChildFlag = "--stop-at";

// The file by which the child tells that it reached the step and waits there.
QString markerOf(const QString& dataFolder)
{
    return dataFolder + "/../step-reached";
}

// The child: runs a compaction or a restore in the parent's data folder and
// stops for good at the step named, where the parent kills it.
int runChild(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 6)
        return 2;
    const QString stage = args.at(2);
    const QString routine = args.at(3);
    const QString data = args.at(4);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, args.at(5));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, args.at(5));
    ScriptedUi person;
    setUi(&person);
    SetAppPath(data);
    DatabaseFile::SetStageObserver([&](const QString& reached) {
        if (reached != stage)
            return;
        QFile marker(markerOf(data));
        if (marker.open(QIODevice::WriteOnly))
            marker.close();
        for (;;)
            QThread::sleep(1);
    });
    if (routine == "compact")
        CompactDatabase();
    else if (routine == "backup")
        BackupDatabase();
    else
        RestoreDatabase(args.value(6));
    return 3; // the step was never reached
}

// Starts the child and kills it once it stands at the step.
bool killAtStage(TestEnv& env, const QString& stage, const QString& routine, const QString& archive)
{
    QFile::remove(markerOf(env.dataPath()));
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {kChildFlag, stage, routine, env.dataPath(), env.path("settings"), archive});
    if (!child.waitForStarted())
        return false;
    QElapsedTimer waited;
    waited.start();
    while (!QFileInfo::exists(markerOf(env.dataPath()))) {
        if (child.state() == QProcess::NotRunning || waited.elapsed() > 60000) {
            child.kill();
            child.waitForFinished();
            return false;
        }
        child.waitForFinished(20);
    }
    child.kill();
    return child.waitForFinished();
}

// What the data folder's tmp/ holds of the work of copies and restores.
QStringList workLeft()
{
    return QDir(gAppPath + "/tmp")
        .entryList({"copia-*", "restaura-*"}, QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot);
}

} // namespace

// A compaction or a restore stopped dead at any step (the program killed, the
// machine switched off) leaves a database that opens and holds every row it
// held, and the next run finishes what the first began.
class TstBackupCrash : public EnvTest
{
    Q_OBJECT
public:
    TstBackupCrash() : EnvTest(false) {}

private slots:

    void killedCompaction_data()
    {
        QTest::addColumn<QString>("stage");
        Row("compacted copy written", "written");
        Row("compacted copy checked", "checked");
        Row("compacted copy in place", "replaced");
    }
    void killedCompaction()
    {
        QFETCH(QString, stage);
        env->createDatabase();
        Kit::addTaxpayers({"ALFA", "BETA", "GAMMA"});
        Kit::addSlack(2000);
        const QString rows = Db::dump();
        CloseDatabase();
        const qint64 sizeBefore = Kit::sizeOf(DatabasePath());

        QVERIFY(killAtStage(*env, stage, "compact", QString()));

        QCOMPARE(Db::dump(), rows);
        QCOMPARE(gAccess().GetString("PRAGMA integrity_check"), QString("ok"));
        CloseDatabase();
        QCOMPARE(Kit::sizeOf(DatabasePath()) < sizeBefore, stage == "replaced");
        QVERIFY(CompactDatabase()); // the next compaction is not hindered
        QVERIFY(!QFileInfo::exists(gAppPath + "/MorvelTMP.db"));
        QCOMPARE(Db::dump(), rows);
    }

    void killedRestore_data()
    {
        Columns<QString, bool>("stage", "restored");
        Row("backup expanded", "written", false);
        Row("backup checked", "checked", false);
        Row("backup in place", "replaced", true);
    }
    void killedRestore()
    {
        const auto [stage, restored] = Fetch<QString, bool>("stage", "restored");
        env->createDatabase();
        Kit::addTaxpayers({"EN LA COPIA"});
        const QString archive = Kit::makeBackup();
        QVERIFY(!archive.isEmpty());
        Kit::addTaxpayers({"DESPUES DE LA COPIA"});
        CloseDatabase();
        const QByteArray before = ReadBytes(DatabasePath());

        QVERIFY(killAtStage(*env, stage, "restore", archive));

        if (!restored)
            QCOMPARE(ReadBytes(DatabasePath()), before);
        const QStringList expected = restored ? QStringList{"EN LA COPIA"}
                                              : QStringList{"DESPUES DE LA COPIA", "EN LA COPIA"};
        QCOMPARE(Kit::taxpayers(), expected);
        QCOMPARE(gAccess().GetString("PRAGMA integrity_check"), QString("ok"));
        QVERIFY(RestoreDatabase(archive)); // the next restore is not hindered
        QCOMPARE(Kit::taxpayers(), QStringList{"EN LA COPIA"});
    }

    // A copy or a restore stopped half-way leaves a whole copy of the
    // database in its work folder; the next start removes it, and nothing else.
    void interruptedWorkIsRemovedAtTheNextStart_data()
    {
        Columns<QString, QString, QString>("routine", "stage", "left");
        Row("copy stopped after its snapshot", "backup", "copied", "copia-");
        Row("restore stopped after expanding", "restore", "written", "restaura-");
        Row("restore stopped after checking", "restore", "checked", "restaura-");
    }
    void interruptedWorkIsRemovedAtTheNextStart()
    {
        const auto [routine, stage, left] =
            Fetch<QString, QString, QString>("routine", "stage", "left");
        env->createDatabase();
        Kit::addTaxpayers({"GUARDADO"});
        const QString archive = Kit::makeBackup();
        QVERIFY(!archive.isEmpty());
        CloseDatabase();
        const QString mine = gAppPath + "/tmp/TEMPFILE.DJ"; // a submission file's, not ours
        Kit::write(mine, "1@...");
        Kit::write(Kit::folder() + "/Morvel.20240101120000.part", "PK");

        QVERIFY(killAtStage(*env, stage, routine, archive));
        QCOMPARE(workLeft().size(), 1);
        QVERIFY(workLeft().first().startsWith(left));

        InitBackupSettings(); // what every start runs

        QCOMPARE(workLeft(), QStringList());
        QVERIFY(QFileInfo::exists(mine));
        QVERIFY(QFileInfo::exists(archive));
        QCOMPARE(Kit::filesIn(Kit::folder()), QStringList{QFileInfo(archive).fileName()});
        QCOMPARE(Kit::taxpayers(), QStringList{"GUARDADO"});
    }
};

int main(int argc, char* argv[])
{
    if (argc > 1 && qstrcmp(argv[1], kChildFlag) == 0)
        return runChild(argc, argv);
    QCoreApplication app(argc, argv);
    TstBackupCrash test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_backup_crash.moc"
