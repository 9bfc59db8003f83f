#include <QtTest>

#include <QProcess>
#include <QStandardPaths>
#include <sqlite3.h>

#include "BackupTestKit.h"
#include "Person.h"
#include "TestSupport.h"
#include "backup/BackupArchive.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "database/Schema.h"

namespace {

const QString kPurgeQuestion = "Este proceso eliminará los archivos de backup\n"
                               "dejando disponible sólamente el último backup realizado.\n"
                               "¿Desea continuar?";

// What the backup folder holds before a purge: copies, a name of 15
// characters, a file beside the last copy, files of the person's own.
const QStringList kFolderBeforePurge{"Morvel.12345678",           "Morvel.20231101120000",
                                     "Morvel.20231201120000",     "Morvel.20240101120000",
                                     "Morvel.20240101120000.txt", "corto.txt",
                                     "notas de las copias.txt"};

// "key=value;key=value" into the settings group.
void storeSettings(const QString& pairs)
{
    for (const QString& pair : pairs.split(';', Qt::SkipEmptyParts)) {
        const int eq = int(pair.indexOf('='));
        SaveBackupSetting(pair.left(eq), pair.mid(eq + 1));
    }
}

QString setting(const QString& key)
{
    return GetBackupSetting(key, "<none>");
}

QStringList scheduleFields()
{
    return {"frmDias",    "lblCantDias", "txtDias",   "udDias",           "udDiasUp",
            "udDiasDown", "optInicio",   "optCierre", "chkCompactaRepara"};
}

QStringList enabledOf(Controller& w, const QStringList& names)
{
    QStringList out;
    for (const QString& name : names)
        out << name + (w[name].enabled() ? "=on" : "=off");
    return out;
}

// A database with taxpayers and free space behind them, closed.
void prepareDatabase(TestEnv& env)
{
    env.createDatabase();
    Kit::addTaxpayers({"PEREZ JUAN", "O'HIGGINS SA"});
    Kit::addSlack(1500);
}

const QString kConfirm = "Esta acción restaurará la base de datos. Sus datos actuales se "
                         "perderán.\n¿Desea continuar?";

} // namespace

// The schedule of the automatic copies, the manual copy, the archive made,
// the purge, the dialog's settings and the copies to another folder; and the
// restore: the taxpayers come back, an older database is brought up to date
// by the next start, and a file that is no backup of this program changes
// nothing.
class TstBackup : public EnvTest
{
    Q_OBJECT
public:
    TstBackup() : EnvTest(false) {}

private slots:
    void firstStartStoresTheInitialSettings_data()
    {
        Columns<QString, QStringList>("before", "after");
        const QString folder = "<data>/BDBKUP";
        Row("first start", "", QStringList{"0", "-1", "-1", "-1", "15", folder});
        Row("days kept: the folder is not written again", "strCantDias=7",
            QStringList{"0", "-1", "-1", "-1", "7", "<none>"});
        Row("all kept",
            "blnCierre=-1;blnInicio=0;blnCopiaSeguridad=0;blnCompactaRepara=0;"
            "strCantDias=30;strBackupDirectory=/otra",
            QStringList{"-1", "0", "0", "0", "30", "/otra"});
    }
    void firstStartStoresTheInitialSettings()
    {
        const auto [before, after] = Fetch<QString, QStringList>("before", "after");
        storeSettings(before);
        InitBackupSettings();
        InitBackupSettings(); // a second start changes nothing
        QStringList stored;
        for (const QString& key :
             {BackupKey::Cierre, BackupKey::Inicio, BackupKey::CopiaSeguridad,
              BackupKey::CompactaRepara, BackupKey::CantDias, BackupKey::BackupDirectory})
            stored << setting(key).replace(env->dataPath(), "<data>");
        QCOMPARE(stored, after);
        QCOMPARE(setting(BackupKey::FechaUlt), QString("<none>"));
    }

    void scheduledCopy_data()
    {
        // daysAgo: -1 when no copy was made yet
        Columns<int, QString, int, bool, bool>("moment", "settings", "daysAgo", "copied",
                                               "compacted");
        const QString start = "blnCopiaSeguridad=-1;blnInicio=-1;blnCierre=0;strCantDias=15;";
        const QString close = "blnCopiaSeguridad=-1;blnInicio=0;blnCierre=-1;strCantDias=15;";
        Row("14 days of 15: nothing", 0, start, 14, false, false);
        Row("15 days of 15: compacted and copied", 0, start, 15, true, true);
        Row("15 days, no compaction asked", 0, start + "blnCompactaRepara=0", 15, true, false);
        Row("first run: copied as it is", 0, start, -1, true, false);
        Row("automatic copies off", 0, "blnCopiaSeguridad=0;blnInicio=-1;strCantDias=15", -1, false,
            false);
        Row("start, but only close chosen", 0, close, 30, false, false);
        Row("close chosen, at close", 9, close, 30, true, true);
        Row("start chosen, at close", 9, start, 30, false, false);
        Row("nothing stored: off", 0, "", -1, false, false);
        Row("days missing: 10 of 10", 0, "blnCopiaSeguridad=-1;blnInicio=-1", 10, true, true);
        Row("days missing: 9 of 10", 0, "blnCopiaSeguridad=-1;blnInicio=-1", 9, false, false);
    }
    void scheduledCopy()
    {
        const auto [moment, settings, daysAgo, copied, compacted] =
            Fetch<int, QString, int, bool, bool>("moment", "settings", "daysAgo", "copied",
                                                 "compacted");
        prepareDatabase(*env);
        storeSettings(settings);
        storeSettings("strBackupDirectory=" + DefaultBackupFolder());
        const QString last = daysAgo < 0 ? QString() : Kit::stampDaysAgo(daysAgo);
        if (!last.isEmpty())
            storeSettings("strFechaUlt=" + last);
        const qint64 sizeBefore = Kit::sizeOf(DatabasePath());

        RunScheduledBackup(moment);

        const QStringList files = Kit::filesIn(DefaultBackupFolder());
        QCOMPARE(files.size(), copied ? 1 : 0);
        const QString stored = GetBackupSetting(BackupKey::FechaUlt, QString());
        if (copied) {
            QCOMPARE(files.first(), "Morvel." + stored);
            QCOMPARE(stored.left(8), QDate::currentDate().toString("yyyyMMdd"));
        } else {
            QCOMPARE(stored, last);
        }
        QCOMPARE(Kit::sizeOf(DatabasePath()) < sizeBefore, compacted);
        QCOMPARE(Kit::taxpayers(), (QStringList{"O'HIGGINS SA", "PEREZ JUAN"}));
    }

    void manualCopyNeverCompacts()
    {
        prepareDatabase(*env);
        InitBackupSettings();
        storeSettings("blnCompactaRepara=-1;strFechaUlt=" + Kit::stampDaysAgo(40));
        const qint64 sizeBefore = Kit::sizeOf(DatabasePath());
        frmBackup w;
        w.load();
        Person(w).click("cmdBackupManual");

        const QStringList files = Kit::filesIn(Kit::folder());
        QCOMPARE(files.size(), 1);
        const QString stamp = files.first().mid(7);
        QCOMPARE(setting(BackupKey::FechaUlt), stamp);
        QCOMPARE(Kit::sizeOf(DatabasePath()), sizeBefore);
        QCOMPARE(w["lblFecha"].text(), stamp.mid(6, 2) + "/" + stamp.mid(4, 2) + "/" +
                                           stamp.left(4) + " " + stamp.mid(8, 2) + ":" +
                                           stamp.mid(10, 2) + ":" + stamp.mid(12, 2));
        QCOMPARE(w["lblSize"].text(),
                 MegabytesText(Kit::sizeOf(Kit::folder() + "/" + files.first())));
    }

    void archiveHoldsTheOneMemberMorvelDb()
    {
        env->createDatabase();
        Kit::addTaxpayers({"GOMEZ ANA"});
        const QString archive = Kit::makeBackup();
        QVERIFY(QFileInfo::exists(archive));
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(QFileInfo(Kit::folder()).permissions() & others, QFile::Permissions());
        QVERIFY(!QFileInfo::exists(gAppPath + "/TEMPFILE.ZIP"));

        const QString unzip = QStandardPaths::findExecutable("unzip");
        if (unzip.isEmpty())
            QSKIP("unzip is not installed");
        QProcess test;
        test.start(unzip, {"-t", archive});
        QVERIFY(test.waitForFinished());
        QCOMPARE(test.exitCode(), 0);
        QProcess list;
        list.start(unzip, {"-Z1", archive});
        QVERIFY(list.waitForFinished());
        QCOMPARE(QString::fromUtf8(list.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts),
                 QStringList{"Morvel.db"});
    }

    // A second copy of the program holds the database open and has written
    // to it: the backup still holds a consistent copy with that row, and a
    // compaction refuses to replace the file under it.
    void anotherConnectionOpen()
    {
        env->createDatabase();
        Kit::addTaxpayers({"PRIMERO"});
        CloseDatabase();
        sqlite3* other = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(DatabasePath()).constData(), &other), SQLITE_OK);
        sqlite3_exec(other, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        QCOMPARE(sqlite3_exec(other,
                              "INSERT INTO Contribuyentes (ApellidoNombre) VALUES ('SEGUNDO')",
                              nullptr, nullptr, nullptr),
                 SQLITE_OK);
        InitBackupSettings();
        QVERIFY(BackupDatabase());
        QVERIFY(!CompactDatabase());
        QCOMPARE(Kit::taxpayers(), (QStringList{"PRIMERO", "SEGUNDO"}));
        CloseDatabase();
        sqlite3_close(other);
    }

    void failedCopyChangesNothing_data()
    {
        // database: "", "garbage" or "good"
        Columns<QString, QString>("database", "folder");
        Row("no database", "", "");
        Row("a file that is no database", "garbage", "");
        Row("folder that cannot be made", "good", "/proc/no/BDBKUP");
    }
    void failedCopyChangesNothing()
    {
        const auto [database, folder] = Fetch<QString, QString>("database", "folder");
        if (database == "good")
            env->createDatabase();
        if (database == "garbage")
            Kit::write(DatabasePath(), "no soy una base de datos");
        CloseDatabase();
        const QByteArray before = ReadBytes(DatabasePath());
        storeSettings("strFechaUlt=20240101120000;strBackupDirectory=" +
                      (folder.isEmpty() ? DefaultBackupFolder() : folder));
        QVERIFY(!BackupDatabase());
        QCOMPARE(setting(BackupKey::FechaUlt), QString("20240101120000"));
        QVERIFY(Kit::filesIn(DefaultBackupFolder()).isEmpty());
        QCOMPARE(ReadBytes(DatabasePath()), before);
    }

    void purge_data()
    {
        Columns<int, QString, QStringList>("answer", "last", "left");
        const QStringList all = kFolderBeforePurge;
        Row("yes: only the last and short names stay", Msg::Yes, "20240101120000",
            QStringList{"Morvel.12345678", "Morvel.20240101120000", "Morvel.20240101120000.txt",
                        "corto.txt"});
        Row("yes, no copy made: nothing goes", Msg::Yes, "", all);
        Row("no: nothing goes", Msg::No, "20240101120000", all);
    }
    void purge()
    {
        const auto [answer, last, left] =
            Fetch<int, QString, QStringList>("answer", "last", "left");
        const QString folder = DefaultBackupFolder();
        for (const QString& name : kFolderBeforePurge)
            Kit::write(folder + "/" + name, QByteArray(100000, 'z'));
        storeSettings("strBackupDirectory=" + folder +
                      (last.isEmpty() ? "" : ";strFechaUlt=" + last));
        frmBackup w;
        w.load();
        env->ui().answer("¿Desea continuar?", answer);
        Person(w).click("cmdPurgar");
        QCOMPARE(env->ui().messages().last().text, kPurgeQuestion);
        QCOMPARE(env->ui().messages().last().title, QString("Purgar"));
        QCOMPARE(Kit::filesIn(folder), left);
        QCOMPARE(w["lblSize"].text(), MegabytesText(GetDirectorySize(folder)));
    }

    void folderSizeCountsEveryFileBelow()
    {
        const QString folder = env->path("copias");
        Kit::write(folder + "/Morvel.20240101120000", QByteArray(1048576, 'a'));
        Kit::write(folder + "/.oculto", QByteArray(262144, 'b'));
        Kit::write(folder + "/sub/dentro", QByteArray(262144, 'c'));
        QCOMPARE(GetDirectorySize(folder), qint64(1572864));
        QCOMPARE(GetDirectorySize(env->path("no existe")), qint64(0));
        storeSettings("strBackupDirectory=" + folder + ";strFechaUlt=20240315093005");
        frmBackup w;
        w.load();
        QCOMPARE(w["lblSize"].text(), QString("1,5 Mb."));
        QCOMPARE(w["lblFecha"].text(), QString("15/03/2024 09:30:05"));
        QCOMPARE(MegabytesText(0), QString("0 Mb."));
        QCOMPARE(MegabytesText(1048576 * 49 / 4 + 1000), QString("12,25 Mb."));
        QCOMPARE(MegabytesText(1048576 * 2 - 3000), QString("2 Mb."));
    }

    void dialogShowsTheStoredSchedule_data()
    {
        // shown: chkDias, optInicio, optCierre, compacta, días
        Columns<QString, QStringList>("settings", "shown");
        Row("first start values",
            "blnCierre=0;blnInicio=-1;blnCopiaSeguridad=-1;blnCompactaRepara=-1;strCantDias=15",
            QStringList{"1", "1", "0", "1", "15"});
        Row("at close, no compaction",
            "blnCierre=-1;blnInicio=0;blnCopiaSeguridad=-1;blnCompactaRepara=0;strCantDias=7",
            QStringList{"1", "0", "1", "0", "7"});
        Row("nothing stored: the dialog's own defaults", "", QStringList{"0", "0", "1", "1", "10"});
    }
    void dialogShowsTheStoredSchedule()
    {
        const auto [settings, shown] = Fetch<QString, QStringList>("settings", "shown");
        storeSettings(settings);
        frmBackup w;
        w.load();
        const QStringList fields{"chkDias", "optInicio", "optCierre", "chkCompactaRepara"};
        QStringList got;
        for (const QString& name : fields)
            got << QString::number(w[name].value());
        got << w["txtDias"].text();
        QCOMPARE(got, shown);
        const QString state = shown.first() == "1" ? "=on" : "=off";
        for (const QString& entry : enabledOf(w, scheduleFields()))
            QVERIFY2(entry.endsWith(state), qPrintable(entry));
        QCOMPARE(w["lblFecha"].text(), QString());
    }

    void daysBox_data()
    {
        // typed: typed over the whole text, then the arrows; arrows: "+" up, "-" down
        Columns<QString, QString, QString, QString>("stored", "typed", "arrows", "shown");
        Row("up", "15", "", "++", "17");
        Row("down", "15", "", "-", "14");
        Row("not below one", "2", "", "---", "1");
        Row("not above a year", "364", "", "+++", "365");
        Row("letters refused", "15", "a2b0c", "", "20");
        Row("three digits at most", "15", "1234", "", "123");
        Row("arrow on an empty box", "15", "x", "+", "1");
    }
    void daysBox()
    {
        const auto [stored, typed, arrows, shown] =
            Fetch<QString, QString, QString, QString>("stored", "typed", "arrows", "shown");
        storeSettings("blnCopiaSeguridad=-1;strCantDias=" + stored);
        frmBackup w;
        w.load();
        Person p(w);
        if (!typed.isEmpty()) {
            w["txtDias"].setText("");
            p.type("txtDias", typed);
        }
        for (QChar arrow : arrows)
            p.click(arrow == '+' ? "udDiasUp" : "udDiasDown");
        QCOMPARE(w["txtDias"].text(), shown);
    }

    void acceptStoresWhatIsShown()
    {
        InitBackupSettings();
        frmBackup closed; // the close box stores nothing
        closed.load();
        Person(closed).click("optCierre");
        Person(closed).closeWindow();
        QCOMPARE(setting(BackupKey::Cierre), QString("0"));

        frmBackup w;
        w.load();
        Person p(w);
        p.click("optCierre");
        p.retype("txtDias", "20");
        p.check("chkCompactaRepara", false);
        p.click("cmdAceptar");
        QVERIFY(!w.isLoaded());
        QCOMPARE(setting(BackupKey::CopiaSeguridad), QString("-1"));
        QCOMPARE(setting(BackupKey::Inicio), QString("0"));
        QCOMPARE(setting(BackupKey::Cierre), QString("-1"));
        QCOMPARE(setting(BackupKey::CantDias), QString("20"));
        QCOMPARE(setting(BackupKey::CompactaRepara), QString("0"));

        frmBackup again; // off, and an emptied box keeps the days
        again.load();
        Person q(again);
        q.check("chkDias", false);
        for (const QString& entry : enabledOf(again, scheduleFields()))
            QVERIFY2(entry.endsWith("=off"), qPrintable(entry));
        QVERIFY(again["cmdBackupManual"].enabled());
        again["txtDias"].setText("");
        q.click("cmdAceptar");
        QCOMPARE(setting(BackupKey::CopiaSeguridad), QString("0"));
        QCOMPARE(setting(BackupKey::CantDias), QString("20"));
    }

    void copiesGoToAnotherFolder()
    {
        const QString folder = DefaultBackupFolder();
        const QStringList names{"Morvel.20240101120000", "Morvel.20240201120000",
                                "Morvel.20240301120000"};
        for (int i = 0; i < names.size(); ++i)
            Kit::write(folder + "/" + names[i], QByteArray(5000 + i, char('a' + i)));
        storeSettings("strBackupDirectory=" + folder);
        const QString usb = env->path("usb");
        Kit::write(usb + "/" + names[2], "una copia vieja con el mismo nombre");
        env->ui().setFolder(usb);
        env->ui().onShow("frmBackupArchivos", [&](Controller& c) {
            auto& w = static_cast<frmBackupArchivos&>(c);
            Person p(w);
            p.click("cmdSelAll");
            QVERIFY(w.Ticked(0) && w.Ticked(1) && w.Ticked(2));
            p.click("cmdSelNone");
            QVERIFY(!w.Ticked(0) && !w.Ticked(1) && !w.Ticked(2));
            w.SetTicked(0, true);
            w.SetTicked(2, true);
            p.click("cmdAccion");
            p.click("cmdSalir");
        });
        frmBackup dialog;
        dialog.load();
        Person(dialog).click("cmdRespaldo");

        QCOMPARE(Kit::filesIn(usb), (QStringList{names[0], names[2]}));
        for (const QString& name : {names[0], names[2]})
            QCOMPARE(ReadBytes(usb + "/" + name), ReadBytes(folder + "/" + name));
        QCOMPARE(env->ui().texts(), (QStringList{"Se iniciará el proceso de grabación. Por favor "
                                                 "espere.",
                                                 "Se finalizó la transferencia."}));
    }

    void copyToTheSameFolderKeepsTheFiles()
    {
        const QString folder = DefaultBackupFolder();
        Kit::write(folder + "/Morvel.20240101120000", "contenido");
        storeSettings("strBackupDirectory=" + folder);
        frmBackupArchivos w;
        w.AccionGrabar = true;
        w.GrabarDirectorio = folder;
        w.load();
        w.SetTicked(0, true);
        Person(w).click("cmdAccion");
        QCOMPARE(ReadBytes(folder + "/Morvel.20240101120000"), QByteArray("contenido"));
        QCOMPARE(Kit::filesIn(folder), QStringList{"Morvel.20240101120000"});
    }

    void oneDialogBesideTheMainWindow()
    {
        ShowBackupDialog();
        ShowBackupDialog();
        QCOMPARE(env->ui().shownWindows(), QStringList{"frmBackup"});
        QVERIFY(gFrmBackup().isLoaded());
        gFrmBackup().unload();
    }

    // --- Restore ----------------------------------------------------------------

    void goodBackupBringsBackItsTaxpayers_data()
    {
        QTest::addColumn<QString>("where");
        Row("from the backup folder", "here");
        Row("made on another machine", "another machine");
        Row("onto a database gone missing", "database gone");
    }
    void goodBackupBringsBackItsTaxpayers()
    {
        QFETCH(QString, where);
        QTemporaryDir usb;
        env->createDatabase();
        Kit::addTaxpayers({"ACOSTA", "BENITEZ"});
        const QString archive = Kit::makeBackup();
        QVERIFY(!archive.isEmpty());
        QString folder;
        if (where == "another machine") {
            QVERIFY(QFile::copy(archive, usb.filePath(QFileInfo(archive).fileName())));
            env.reset();
            env = std::make_unique<TestEnv>(); // its own data folder and settings
            env->createDatabase();
            folder = usb.path();
        }
        Kit::addTaxpayers({"CASTRO"});
        if (where == "database gone") {
            CloseDatabase();
            QVERIFY(QFile::remove(DatabasePath()));
        }

        const RestoreRun run = restoreThroughDialogs(*env, folder, 0);

        QVERIFY(!run.stillOpen);
        QVERIFY(env->ui().programEnded());
        QCOMPARE(run.statuses, (QStringList{"Restaurando base de datos desde archivo...",
                                            "Verificando base de datos..."}));
        QCOMPARE(run.lastBar, 100);
        QCOMPARE(env->ui().texts().last(), Kit::kDone);
        QCOMPARE(env->ui().messages().at(1).text, kConfirm);
        QCOMPARE(env->ui().messages().at(1).title, QString("Restaurar"));
        QVERIFY(env->ui().messages().at(1).style & Msg::DefaultButton2);
        QCOMPARE(Kit::taxpayers(), (QStringList{"ACOSTA", "BENITEZ"}));
        QVERIFY(QDir(gAppPath + "/tmp").isEmpty()); // no work left behind
    }

    void olderLevelIsUpgradedByTheNextStart()
    {
        QVERIFY(EnsureBaseSchema()); // the tables as first installed
        Kit::addTaxpayers({"ANTIGUO"});
        Db::exec("INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, BaseImponible, ctrl) "
                 "VALUES ('C1', '0000000000001', '0000000000002', '01-2010', '1,234.50', '0')");
        QVERIFY(!Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));
        const QString archive = Kit::makeBackup();
        QVERIFY(!archive.isEmpty());

        CreateCurrentDatabase();
        Kit::addTaxpayers({"NUEVO"});
        QVERIFY(Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));

        QVERIFY(RestoreDatabase(archive));
        QCOMPARE(Kit::taxpayers(), QStringList{"ANTIGUO"});
        QVERIFY(!Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));

        CreateCurrentDatabase(); // what the next start does
        QVERIFY(Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));
        QCOMPARE(Kit::taxpayers(), QStringList{"ANTIGUO"});
        QCOMPARE(gAccess().GetString("SELECT BaseImponible FROM F976 WHERE Codigo = 'C1'"),
                 QString("1.234,50"));
    }

    void refusedFileChangesNothing_data()
    {
        Columns<QString, QString>("kind", "why");
        const QString notBackup = "El archivo no es una copia de seguridad de Morvel: ";
        const QString alone = notBackup + "debe contener solamente la base de datos Morvel.db.";
        const QString link = notBackup + "Morvel.db no es un archivo común (es un enlace o una "
                                         "carpeta).";
        const QString damaged =
            "El archivo de la copia está dañado: Morvel.db no se pudo descomprimir completo.";
        const QString foreign =
            notBackup + "Morvel.db es una base de datos de otro programa, no de Morvel.";
        Row("good backup, but the person says no", "answer no", "");
        Row("no archive", "text", notBackup + "no es un archivo comprimido sano.");
        Row("cut archive", "cut", notBackup + "no es un archivo comprimido sano.");
        Row("tar archive holding Morvel.db", "tar",
            notBackup + "no es un archivo comprimido sano.");
        Row("archive without Morvel.db", "other member", alone);
        Row("Morvel.db beside another member", "two members", alone);
        Row("Morvel.db a link to another member", "link to member", link);
        Row("Morvel.db a link to a file outside", "link outside", link);
        Row("Morvel.db a folder", "folder", link);
        Row("encrypted archive", "encrypted", notBackup + "está protegido con contraseña.");
        Row("Morvel.db claiming 3 GB", "huge member",
            notBackup + "Morvel.db ocuparía 2861,0 Mb., más de lo que puede ocupar una base de "
                        "datos de Morvel.");
        Row("Morvel.db longer than it claims", "forged size", damaged);
        Row("Morvel.db that is no database", "garbage member",
            notBackup + "Morvel.db no es una base de datos sana: no pasó la verificación de "
                        "integridad.");
        Row("database of another program", "foreign database", foreign);
        Row("our tables under another program's mark", "foreign mark", foreign);
        Row("damaged database", "damaged database",
            notBackup + "Morvel.db no es una base de datos sana: no pasó la verificación de "
                        "integridad.");
    }
    void refusedFileChangesNothing()
    {
        const auto [kind, why] = Fetch<QString, QString>("kind", "why");
        env->createDatabase();
        Kit::addTaxpayers({"INTACTO"});
        const QString good = Kit::makeBackup();
        QVERIFY(!good.isEmpty());
        const QString bad = Kit::folder() + "/Morvel.20000101120000";
        QVERIFY(QFile::rename(good, bad));
        CloseDatabase();
        Kit::tamperedBackup(kind, bad, ReadBytes(DatabasePath()));
        const QByteArray before = ReadBytes(DatabasePath());
        QVERIFY(!before.isEmpty());

        const bool asked = kind != "answer no";
        const RestoreRun run =
            restoreThroughDialogs(*env, QString(), 0, asked ? Msg::Yes : Msg::No);

        QVERIFY(run.stillOpen);
        QVERIFY(!env->ui().programEnded());
        const QString shown = env->ui().texts().last();
        if (asked)
            QCOMPARE(shown,
                     Kit::kFailed + "\n\n" + why + "\nLa base de datos actual no se modificó.");
        QVERIFY(!env->ui().texts().contains(Kit::kDone));
        QVERIFY(QFileInfo(DatabasePath()).isFile() && !QFileInfo(DatabasePath()).isSymLink());
        QCOMPARE(ReadBytes(DatabasePath()), before);
        QCOMPARE(Kit::taxpayers(), QStringList{"INTACTO"});
        QVERIFY(QDir(gAppPath + "/tmp").isEmpty()); // nothing extracted stays
    }

    // The archive is judged before anything is written: its size against the
    // free space of the data folder, and only then the one member comes out.
    void roomInTheDataFolder_data()
    {
        Columns<qint64, QString>("free", "refusal");
        Row("plenty of room", qint64(1) << 40, "");
        Row("room for the database and its journal", qint64(40) << 20, "");
        Row("room for little", qint64(17) << 20,
            "La copia de seguridad ocupa 1,5 Mb. al descomprimirse y en la carpeta de datos "
            "quedan 17,0 Mb. libres.");
        Row("full disk", qint64(0),
            "La copia de seguridad ocupa 1,5 Mb. al descomprimirse y en la carpeta de datos "
            "quedan 0,0 Mb. libres.");
    }
    void roomInTheDataFolder()
    {
        const auto [free, refusal] = Fetch<qint64, QString>("free", "refusal");
        env->createDatabase();
        const QString archive = env->path("copia.zip");
        QVERIFY(Kit::zip(archive, {{"Morvel.db", QByteArray(1572864, 'd')}}));
        const BackupArchive::Listing listing = BackupArchive::Inspect(archive, free);
        QCOMPARE(listing.refusal, refusal);
        QCOMPARE(listing.size, refusal.isEmpty() ? qint64(1572864) : qint64(0));
    }

    // A backup written at the archiver's default level, as older versions
    // of the program made them, still restores; so does its database made
    // before the program marked its databases in their header (another
    // program's mark is refused above).
    void olderBackupAtTheDefaultLevel()
    {
        env->createDatabase();
        Kit::addTaxpayers({"DE LA COPIA VIEJA"});
        Db::exec("PRAGMA application_id = 0");
        CloseDatabase();
        const QString archive = env->path("Morvel.20200101120000");
        QVERIFY(Kit::zip(archive, {{"Morvel.db", ReadBytes(DatabasePath())}}));
        Kit::addTaxpayers({"POSTERIOR"});
        QVERIFY(RestoreDatabase(archive));
        QCOMPARE(Kit::taxpayers(), QStringList{"DE LA COPIA VIEJA"});
    }
};

QTEST_GUILESS_MAIN(TstBackup)
#include "tst_backup.moc"
