#pragma once

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"
#include "backup/Backup.h"
#include "output/ZoGenerateDisk.h"

// What the backup tests build and read back: taxpayers, free space that only
// a compaction gives back, the files of the backup folder, archives made by
// hand.
namespace Kit {

inline void exec(const QString& sql)
{
    QVERIFY2(gAccess().Execute(sql), qPrintable(sql));
}

inline void addTaxpayers(const QStringList& names)
{
    for (const QString& name : names)
        exec("INSERT INTO Contribuyentes (ApellidoNombre, Cuit) VALUES ('" + Sq(name) +
             "', '20-12345678-6')");
}

inline QStringList taxpayers()
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(
        "SELECT ApellidoNombre FROM Contribuyentes ORDER BY ApellidoNombre");
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

// Every row of every table, in a stable order.
inline QString dump()
{
    QString out;
    RecordsetPtr tables = gAccess().FillRecordSet(
        "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    for (; tables && !tables->EOF_(); tables->MoveNext()) {
        const QString table = tables->Text(0);
        RecordsetPtr rs = gAccess().FillRecordSet("SELECT * FROM " + table + " ORDER BY rowid");
        out += "[" + table + "]\n";
        for (; rs && !rs->EOF_(); rs->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < rs->FieldCount(); ++i)
                cells << (rs->IsNull(i) ? QStringLiteral("<null>") : rs->Text(i));
            out += cells.join('|') + "\n";
        }
    }
    return out;
}

inline QStringList columns(const QString& table)
{
    RecordsetPtr rs = gAccess().FillRecordSet("SELECT * FROM " + table + " WHERE 1 = 0");
    return rs ? rs->FieldNames() : QStringList();
}

// Leaves about `kilobytes` of free pages in the file: a compaction shrinks it.
inline void addSlack(int kilobytes)
{
    exec("CREATE TABLE Relleno (Texto TEXT)");
    gAccess().BeginTrans();
    const QString row = QString(1000, 'x');
    for (int i = 0; i < kilobytes; ++i)
        gAccess().Execute("INSERT INTO Relleno (Texto) VALUES ('" + row + "')");
    gAccess().CommitTrans();
    exec("DROP TABLE Relleno");
    CloseDatabase();
}

inline qint64 sizeOf(const QString& path)
{
    return QFileInfo(path).size();
}

inline QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void write(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
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

// A zip at `archive` holding the given members, made with the archiver.
inline bool zip(const QString& archive, const QList<QPair<QString, QByteArray>>& members)
{
    QTemporaryDir work;
    QStringList arguments{"a", "-tzip", archive};
    for (const auto& member : members) {
        QFile f(work.filePath(member.first));
        if (!f.open(QIODevice::WriteOnly))
            return false;
        f.write(member.second);
        arguments << f.fileName();
    }
    QFile::remove(archive);
    return RunSevenZip(arguments) == 0;
}

} // namespace Kit
