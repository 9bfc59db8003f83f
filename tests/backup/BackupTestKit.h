#pragma once

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include "Db.h"
#include "Globals.h"
#include "TestSupport.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "Person.h"
#include "backup/Backup.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "output/ZoGenerateDisk.h"

// What the backup tests build and read back: taxpayers, free space that only
// a compaction gives back, the files of the backup folder, archives made by
// hand.
namespace Kit {

// What the person reads at the end of a restore.
inline const QString kDone =
    QStringLiteral("La restauración se realizó correctamente. Se cerrará la aplicación.");
inline const QString kFailed =
    QStringLiteral("La restauración no se pudo realizar correctamente.");

inline void addTaxpayers(const QStringList& names)
{
    for (const QString& name : names)
        Db::insert("Contribuyentes", {"ApellidoNombre=" + name, "Cuit=20-12345678-6"});
}

inline QStringList taxpayers()
{
    return Db::column("SELECT ApellidoNombre FROM Contribuyentes ORDER BY ApellidoNombre");
}

// Leaves about `kilobytes` of free pages in the file: a compaction shrinks it.
inline void addSlack(int kilobytes)
{
    Db::exec("CREATE TABLE Relleno (Texto TEXT)");
    {
        Transaction unit(Transaction::Mode::KeepWhatPassed);
        const QString row = QString(1000, 'x');
        for (int i = 0; i < kilobytes; ++i)
            gAccess().Execute("INSERT INTO Relleno (Texto) VALUES ('" + row + "')");
    }
    Db::exec("DROP TABLE Relleno");
    CloseDatabase();
}

inline qint64 sizeOf(const QString& path)
{
    return QFileInfo(path).size();
}

inline void write(const QString& path, const QByteArray& bytes)
{
    QVERIFY(WriteBytes(path, bytes));
}

inline QString folder()
{
    return GetBackupSetting(BackupKey::BackupDirectory, QString());
}

inline QStringList filesIn(const QString& dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

// A backup of the current database, made by the program; its path, empty
// when none was made.
inline QString makeBackup()
{
    InitBackupSettings();
    if (!BackupDatabase())
        return {};
    return folder() + "/Morvel." + GetBackupSetting(BackupKey::FechaUlt, QString());
}

// The stamp of noon `days` days ago.
inline QString stampDaysAgo(int days)
{
    return QDate::currentDate().addDays(-days).toString("yyyyMMdd") + "120000";
}

// A zip at `archive` holding the given members, made with the archiver
// (with `options`, such as a password).
inline bool zip(const QString& archive, const QList<QPair<QString, QByteArray>>& members,
                const QStringList& options = {})
{
    QTemporaryDir work;
    QStringList arguments = QStringList{"a", "-tzip"} + options + QStringList{archive};
    for (const auto& member : members) {
        if (!WriteBytes(work.filePath(member.first), member.second))
            return false;
        arguments << work.filePath(member.first);
    }
    QFile::remove(archive);
    return RunSevenZip(arguments) == 0;
}

// A zip whose member Morvel.db is a symbolic link to `target`, stored as a
// link, with the bytes of `target` beside it when there are any.
inline bool zipLink(const QString& archive, const QString& target, const QByteArray& targetBytes)
{
    QTemporaryDir work;
    QStringList arguments{"a", "-tzip", archive, work.filePath("Morvel.db")};
    if (!targetBytes.isEmpty()) {
        if (!WriteBytes(work.filePath(target), targetBytes))
            return false;
        arguments << work.filePath(target);
    }
    if (!QFile::link(target, work.filePath("Morvel.db")))
        return false;
    QFile::remove(archive);
    return RunSevenZip(arguments) == 0;
}

// A zip whose entry Morvel.db is a folder.
inline bool zipFolder(const QString& archive)
{
    QTemporaryDir work;
    QDir(work.path()).mkpath("Morvel.db/dentro");
    QFile::remove(archive);
    return RunSevenZip({"a", "-tzip", archive, work.filePath("Morvel.db")}) == 0;
}

// Rewrites the uncompressed size that a zip of one member declares, in its
// local header and in its central directory, leaving the data as it is.
inline bool forgeDeclaredSize(const QString& archive, quint32 size)
{
    QByteArray bytes = ReadBytes(archive);
    const qsizetype central = bytes.indexOf(QByteArray("PK\x01\x02", 4));
    if (!bytes.startsWith(QByteArray("PK\x03\x04", 4)) || central < 0)
        return false;
    for (const qsizetype at : {qsizetype(22), central + 24})
        for (int i = 0; i < 4; ++i)
            bytes[at + i] = char((size >> (8 * i)) & 0xff);
    return WriteBytes(archive, bytes);
}

// A SQLite file of another program at `path`: its own tables, and with
// `mark` its own application id.
inline bool foreignDatabase(const QString& path, const QStringList& tables, int mark = 0)
{
    ZoAccess foreign;
    foreign.SetConnectionString(DefaultConnectionString(path));
    bool ok = true;
    for (const QString& table : tables)
        ok = foreign.Execute("CREATE TABLE " + table + " (Nombre TEXT)") && ok;
    if (mark != 0)
        ok = foreign.Execute(QString("PRAGMA application_id = %1").arg(mark)) && ok;
    foreign.Dispose();
    return ok;
}

// A backup archive at `path` tampered in the way `kind` names, around the
// bytes of a good database.
inline void tamperedBackup(const QString& kind, const QString& path, const QByteArray& database)
{
    QTemporaryDir work;
    if (kind == "text") {
        write(path, "Esto no es un archivo comprimido.\n");
    } else if (kind == "cut") {
        QVERIFY(zip(path, {{"Morvel.db", database}}));
        const QByteArray whole = ReadBytes(path);
        write(path, whole.left(whole.size() / 2));
    } else if (kind == "tar") {
        write(work.filePath("Morvel.db"), database);
        QFile::remove(path);
        QCOMPARE(RunSevenZip({"a", "-ttar", path + ".tar", work.filePath("Morvel.db")}), 0);
        QVERIFY(QFile::rename(path + ".tar", path));
    } else if (kind == "other member") {
        QVERIFY(zip(path, {{"Otro.db", database}}));
    } else if (kind == "two members") {
        QVERIFY(zip(path, {{"Morvel.db", database}, {"Leame.txt", "hola"}}));
    } else if (kind == "link to member") {
        QVERIFY(zipLink(path, "Otro.db", database));
    } else if (kind == "link outside") {
        QVERIFY(zipLink(path, "/etc/passwd", {}));
    } else if (kind == "folder") {
        QVERIFY(zipFolder(path));
    } else if (kind == "encrypted") {
        QVERIFY(zip(path, {{"Morvel.db", database}}, {"-psecreto"}));
    } else if (kind == "huge member") {
        QVERIFY(zip(path, {{"Morvel.db", QByteArray(100000, 0)}}));
        QVERIFY(forgeDeclaredSize(path, 3000000000u));
    } else if (kind == "forged size") {
        QVERIFY(zip(path, {{"Morvel.db", database + QByteArray(8 << 20, 0)}}));
        QVERIFY(forgeDeclaredSize(path, quint32(database.size())));
    } else if (kind == "garbage member") {
        QVERIFY(zip(path, {{"Morvel.db", QByteArray(70000, 'q')}}));
    } else if (kind == "foreign database" || kind == "foreign mark") {
        const bool marked = kind == "foreign mark";
        QVERIFY(foreignDatabase(work.filePath("ajena.db"),
                                marked ? QStringList{"Contribuyentes", "Opciones"}
                                       : QStringList{"Clientes"},
                                marked ? 1234 : 0));
        QVERIFY(zip(path, {{"Morvel.db", ReadBytes(work.filePath("ajena.db"))}}));
    } else if (kind == "damaged database") {
        QByteArray bytes = database;
        // Scribbles over the pages after the first: the header still reads
        // as a database, the tables do not.
        for (int i = 4096; i < bytes.size(); i += 7)
            bytes[i] = char(i * 31);
        QVERIFY(zip(path, {{"Morvel.db", bytes}}));
    }
}

} // namespace Kit

// What the person saw while restoring through the windows.
struct RestoreRun {
    QStringList listed; // the copies offered
    bool stillOpen = false;
    QStringList statuses;
    int lastBar = 0;
};

// The person opens "Copia de Seguridad", asks to restore (from `folder`
// when given), chooses the item `index` and confirms with `answer`.
inline RestoreRun restoreThroughDialogs(TestEnv& env, const QString& folder = QString(),
                                        int index = 0, int answer = Msg::Yes)
{
    RestoreRun run;
    env.ui().answer("¿Desea buscar la ubicación", folder.isEmpty() ? Msg::No : Msg::Yes);
    env.ui().setFolder(folder);
    env.ui().answer("Esta acción restaurará", answer);
    env.ui().onShow("frmBackupArchivos", [&](Controller& w) {
        for (const ListItem& item : w["lst0"].items())
            run.listed << item.text;
        QObject::connect(&w["lbl"], &Field::changed, [&](Field* f, Field::Aspect a) {
            if (a == Field::TextAspect && !f->text().isEmpty())
                run.statuses << f->text();
        });
        QObject::connect(&w["pb"], &Field::changed, [&](Field* f, Field::Aspect) {
            run.lastBar = qMax(run.lastBar, f->value());
        });
        Person p(w);
        p.choose("lst0", index);
        p.click("cmdAccion");
        run.stillOpen = w.isLoaded();
        if (w.isLoaded())
            p.click("cmdSalir");
    });
    frmBackup dialog;
    dialog.load();
    Person(dialog).click("cmdRestaurar");
    if (dialog.isLoaded())
        dialog.unload();
    return run;
}
