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
#include "backup/Backup.h"
#include "output/ZoGenerateDisk.h"

// What the backup tests build and read back: taxpayers, free space that only
// a compaction gives back, the files of the backup folder, archives made by
// hand.
namespace Kit {

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

} // namespace Kit
