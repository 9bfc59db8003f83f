#include <QtTest>

#include <QStandardPaths>

#include "BackupTestKit.h"
#include "ErrorLog.h"
#include "Person.h"
#include "ServerTestKit.h"
#include "TestSupport.h"
#include "backup/ServerBackup.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"

namespace {

const QString kDamaged = "el archivo está dañado o no es una copia de una base del servidor.";

// The taxpayers of a firm's database as the tests' plain SQL leaves them:
// enough rows that the archive's data outweighs its table of contents.
const QString kTables = "CREATE TABLE Contribuyentes (Id serial PRIMARY KEY, ApellidoNombre text);"
                        "INSERT INTO Contribuyentes (ApellidoNombre) VALUES ('PEREZ JUAN'), "
                        "('O''HIGGINS SA');"
                        "CREATE TABLE Relleno AS SELECT g AS n, md5(g::text) AS texto "
                        "FROM generate_series(1, 20000) g";

QStringList taxpayers(const ServerKit::Scratch& db)
{
    return db.query("SELECT ApellidoNombre FROM Contribuyentes ORDER BY ApellidoNombre");
}

// The database in use is `db`, its tables made; the schedule's settings in place.
void useServer(const ServerKit::Scratch& db)
{
    QVERIFY(db.ok());
    QVERIFY(db.exec(kTables));
    DatabaseLocation::setCurrent(db.location());
    InitBackupSettings();
}

QString lastArchive()
{
    return Kit::folder() + '/' +
           ServerBackup::FileName(GetBackupSetting(BackupKey::FechaUlt, QString()));
}

// A client program on the PATH that runs the real one after `prelude`.
class WrappedProgram
{
public:
    WrappedProgram(const QString& name, const QString& prelude) : m_path(qgetenv("PATH"))
    {
        const QString real = QStandardPaths::findExecutable(name);
        QVERIFY(!real.isEmpty());
        const QString script = m_dir.filePath(name);
        QVERIFY(WriteBytes(script,
                           ("#!/bin/sh\n" + prelude + "\nexec " + real + " \"$@\"\n").toUtf8()));
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", m_dir.path().toUtf8() + ':' + m_path);
    }
    ~WrappedProgram() { qputenv("PATH", m_path); }

private:
    QTemporaryDir m_dir;
    QByteArray m_path;
};

} // namespace

// The copies of a database on a server: pg_dump archives in the folder of
// the backups on the schedule, restored with pg_restore into the same
// database, purged as file copies are; and what a failure tells the person
// while the database stays as it was.
class TstServerBackup : public EnvTest
{
    Q_OBJECT
public:
    TstServerBackup() : EnvTest(false) {}

private slots:
    // A copy, then changes, then the restore through the windows: the rows
    // of the copy are back, and only the server's archives were offered.
    void restoreBringsTheRowsBack()
    {
        REQUIRE_SERVER();
        ServerKit::Scratch db;
        useServer(db);
        Kit::write(Kit::folder() + "/Morvel.20240101120000", "a copy of a file database");
        QVERIFY(BackupDatabase());
        QVERIFY(QFileInfo(lastArchive()).size() > 0);
        QVERIFY(db.exec("DELETE FROM Contribuyentes WHERE ApellidoNombre = 'PEREZ JUAN';"
                        "INSERT INTO Contribuyentes (ApellidoNombre) VALUES ('NUEVO SRL');"
                        "DROP TABLE Relleno"));

        const RestoreRun run = restoreThroughDialogs(*env);

        const QString stamp = GetBackupSetting(BackupKey::FechaUlt, QString());
        QCOMPARE(run.listed,
                 QStringList{"Copia del día " + stamp.mid(6, 2) + '/' + stamp.mid(4, 2) + '/' +
                             stamp.left(4) + " a hs. " + stamp.mid(8, 2) + ':' + stamp.mid(10, 2) +
                             ':' + stamp.mid(12, 2)});
        QCOMPARE(env->ui().lastText(), Kit::kDone);
        QVERIFY(!run.stillOpen);
        QCOMPARE(taxpayers(db), (QStringList{"O'HIGGINS SA", "PEREZ JUAN"}));
        QCOMPARE(db.query("SELECT count(*) FROM Relleno"), QStringList{"20000"});
    }

    // An archive that is damaged, or no copy of this system's database, is
    // refused with why, and the database keeps every row it had.
    void refusedArchive_data()
    {
        Columns<QString, QString>("kind", "reason");
        Row("not an archive", "text",
            "El archivo no es una copia de seguridad de la base de datos del servidor: " +
                kDamaged);
        Row("cut short", "cut", "No se pudo restaurar la copia en el servidor: " + kDamaged);
        Row("another program's database", "foreign",
            "El archivo no es una copia de seguridad de Morvel: no tiene la tabla de "
            "contribuyentes.");
    }
    void refusedArchive()
    {
        const auto [kind, reason] = Fetch<QString, QString>("kind", "reason");
        REQUIRE_SERVER();
        ServerKit::Scratch db;
        useServer(db);
        QVERIFY(BackupDatabase());
        const QString archive = lastArchive();
        if (kind == "text") {
            Kit::write(archive, "Esto no es una copia.\n");
        } else if (kind == "cut") {
            const QByteArray whole = ReadBytes(archive);
            Kit::write(archive, whole.left(whole.size() * 9 / 10));
        } else {
            ServerKit::Scratch other;
            QVERIFY(other.exec("CREATE TABLE Clientes (Nombre text)"));
            QString why;
            QVERIFY2(ServerBackup::Dump(other.location(), archive, &why), qPrintable(why));
        }
        QVERIFY(db.exec("INSERT INTO Contribuyentes (ApellidoNombre) VALUES ('NUEVO SRL')"));

        restoreThroughDialogs(*env);

        QCOMPARE(env->ui().lastText(),
                 Kit::kFailed + "\n\n" + reason + "\nLa base de datos actual no se modificó.");
        QCOMPARE(taxpayers(db), (QStringList{"NUEVO SRL", "O'HIGGINS SA", "PEREZ JUAN"}));
        QCOMPARE(db.query("SELECT count(*) FROM Relleno"), QStringList{"20000"});
    }

    // A copy that cannot be made leaves no archive, not even half of one,
    // and the stamp of the last copy as it was, so that the next start
    // tries again; the error log says why.
    void failedCopy_data()
    {
        Columns<QString, QString>("failure", "reason");
        Row("server down", "down", "el servidor no responde en esa dirección y puerto.");
        Row("full disk", "full", "no hay lugar en el disco para el archivo de la copia.");
        Row("database gone", "gone", "la base de datos «{db}» no existe en el servidor.");
    }
    void failedCopy()
    {
        const auto [failure, reason] = Fetch<QString, QString>("failure", "reason");
        REQUIRE_SERVER();
        ServerKit::Scratch db;
        useServer(db);
        SaveBackupSetting(BackupKey::FechaUlt, "20240101120000");
        DatabaseLocation location = db.location();
        std::unique_ptr<WrappedProgram> wrapped;
        if (failure == "down")
            location.port = 1;
        else if (failure == "full") // writes past a few kilobytes fail as on a full disk
            wrapped = std::make_unique<WrappedProgram>("pg_dump", "trap '' XFSZ; ulimit -f 8");
        else
            location.database += "_no";
        DatabaseLocation::setCurrent(location);

        QVERIFY(!BackupDatabase());

        QCOMPARE(Kit::filesIn(Kit::folder()), QStringList{});
        QCOMPARE(GetBackupSetting(BackupKey::FechaUlt, QString()), QString("20240101120000"));
        const QString said = "No se pudo hacer la copia de la base de datos del servidor: " +
                             QString(reason).replace("{db}", location.database);
        QCOMPARE(ServerBackup::LastFailure(), said);
        QVERIFY2(QString::fromUtf8(ReadBytes(ErrorLogPath())).contains(said),
                 qPrintable(ReadBytes(ErrorLogPath())));
        QString why;
        QVERIFY(!ServerBackup::Dump(location, env->path("otra.dump"), &why));
        QCOMPARE(why, said);
        QVERIFY(!QFileInfo::exists(env->path("otra.dump.part")));
    }

    // The schedule makes a server's copy as it does a file's (the server
    // keeps its own free space: no compaction), and the purge leaves the
    // last copy alone, server archives and file copies alike.
    void scheduledCopyThenPurge()
    {
        REQUIRE_SERVER();
        ServerKit::Scratch db;
        useServer(db);
        for (const char* name :
             {"Morvel.20231101120000.dump", "Morvel.20231201120000", "Morvel.dump", "notas.txt"})
            Kit::write(Kit::folder() + '/' + name, "x");
        SaveBackupSetting(BackupKey::FechaUlt, Kit::stampDaysAgo(15));

        RunScheduledBackup(0);

        const QString last = ServerBackup::FileName(GetBackupSetting(BackupKey::FechaUlt, ""));
        QVERIFY(Kit::filesIn(Kit::folder()).contains(last));
        env->ui().answer("Este proceso eliminará", Msg::Yes);
        frmBackup dialog;
        dialog.load();
        Person(dialog).click("cmdPurgar");
        dialog.unload();
        QCOMPARE(Kit::filesIn(Kit::folder()), (QStringList{last, "Morvel.dump", "notas.txt"}));
    }
};

QTEST_MAIN(TstServerBackup)
#include "tst_server_backup.moc"
