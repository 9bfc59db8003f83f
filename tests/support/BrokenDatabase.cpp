#include "BrokenDatabase.h"

#include <QFile>
#include <QTest>
#include <sqlite3.h>

#include "Globals.h"
#include "SqliteDatabase.h"

namespace {

// A disk on which, while it is full, every write fails as the engine sees it
// fail on a real full disk; everything else goes to the real disk. The
// engine opens every file through it once it is installed.
bool g_full = false;
sqlite3_vfs* g_real = nullptr;
sqlite3_vfs g_disk;

struct DiskFile {
    sqlite3_file base;
    sqlite3_file* real;
};

sqlite3_file* real(sqlite3_file* f)
{
    return reinterpret_cast<DiskFile*>(f)->real;
}

const sqlite3_io_methods* methods(sqlite3_file* f)
{
    return real(f)->pMethods;
}

const sqlite3_io_methods kMethods = {
    3,
    [](sqlite3_file* f) { return methods(f)->xClose(real(f)); },
    [](sqlite3_file* f, void* b, int n, sqlite3_int64 o) {
        return methods(f)->xRead(real(f), b, n, o);
    },
    [](sqlite3_file* f, const void* b, int n, sqlite3_int64 o) {
        return g_full ? SQLITE_FULL : methods(f)->xWrite(real(f), b, n, o);
    },
    [](sqlite3_file* f, sqlite3_int64 size) { return methods(f)->xTruncate(real(f), size); },
    [](sqlite3_file* f, int flags) { return methods(f)->xSync(real(f), flags); },
    [](sqlite3_file* f, sqlite3_int64* size) { return methods(f)->xFileSize(real(f), size); },
    [](sqlite3_file* f, int lock) { return methods(f)->xLock(real(f), lock); },
    [](sqlite3_file* f, int lock) { return methods(f)->xUnlock(real(f), lock); },
    [](sqlite3_file* f, int* out) { return methods(f)->xCheckReservedLock(real(f), out); },
    [](sqlite3_file* f, int op, void* arg) { return methods(f)->xFileControl(real(f), op, arg); },
    [](sqlite3_file* f) { return methods(f)->xSectorSize(real(f)); },
    [](sqlite3_file* f) { return methods(f)->xDeviceCharacteristics(real(f)); },
    [](sqlite3_file* f, int page, int size, int extend, void volatile** out) {
        return methods(f)->xShmMap(real(f), page, size, extend, out);
    },
    [](sqlite3_file* f, int offset, int n, int flags) {
        return methods(f)->xShmLock(real(f), offset, n, flags);
    },
    [](sqlite3_file* f) { methods(f)->xShmBarrier(real(f)); },
    [](sqlite3_file* f, int deleteFlag) { return methods(f)->xShmUnmap(real(f), deleteFlag); },
    [](sqlite3_file* f, sqlite3_int64 offset, int amount, void** out) {
        return methods(f)->xFetch(real(f), offset, amount, out);
    },
    [](sqlite3_file* f, sqlite3_int64 offset, void* p) {
        return methods(f)->xUnfetch(real(f), offset, p);
    },
};

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* f, int flags, int* outFlags)
{
    auto* file = reinterpret_cast<DiskFile*>(f);
    file->real = reinterpret_cast<sqlite3_file*>(file + 1);
    const int rc = g_real->xOpen(g_real, name, file->real, flags, outFlags);
    file->base.pMethods = file->real->pMethods ? &kMethods : nullptr;
    return rc;
}

void installDisk()
{
    if (g_real)
        return;
    g_real = sqlite3_vfs_find(nullptr);
    g_disk = *g_real;
    g_disk.pNext = nullptr;
    g_disk.zName = "morvel-disco";
    g_disk.szOsFile = int(sizeof(DiskFile)) + g_real->szOsFile;
    g_disk.xOpen = openFile;
    sqlite3_vfs_register(&g_disk, 1);
}

void pragma(const char* sql)
{
    sqlite3* db = SqliteDatabase::connection(DatabasePath());
    QVERIFY(db);
    QCOMPARE(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
}

// Spoils the header of the table's first page, as a crash of the disk
// would: the engine reads that table no more and writes it no more.
void damage(const QString& table)
{
    CloseDatabase();
    sqlite3* db = nullptr;
    QCOMPARE(sqlite3_open(DatabasePath().toUtf8().constData(), &db), SQLITE_OK);
    sqlite3_stmt* st = nullptr;
    const QByteArray sql = "SELECT rootpage, (SELECT page_size FROM pragma_page_size) FROM "
                           "sqlite_master WHERE type = 'table' AND lower(name) = lower('" +
                           table.toUtf8() + "')";
    QCOMPARE(sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr), SQLITE_OK);
    QCOMPARE(sqlite3_step(st), SQLITE_ROW);
    const qint64 offset = (sqlite3_column_int64(st, 0) - 1) * sqlite3_column_int64(st, 1);
    sqlite3_finalize(st);
    sqlite3_close(db);
    QFile file(DatabasePath());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(offset));
    QCOMPARE(file.write(QByteArray(12, '\x7f')), 12);
}

} // namespace

namespace BrokenDatabase {

void Break(Breakage how, const QString& table)
{
    switch (how) {
    case Breakage::ReadOnly: pragma("PRAGMA query_only = 1"); break;
    case Breakage::DiskFull:
        if (!g_real) {
            // Files opened before the disk was put in place stay on the old one.
            CloseDatabase();
            installDisk();
        }
        g_full = true;
        break;
    case Breakage::Damaged: damage(table); break;
    }
}

void RepairDisk()
{
    g_full = false;
}

void Mend()
{
    RepairDisk();
    pragma("PRAGMA query_only = 0");
}

void Rows()
{
    QTest::addColumn<int>("breakage");
    QTest::newRow("read-only") << int(Breakage::ReadOnly);
    QTest::newRow("full disk") << int(Breakage::DiskFull);
    QTest::newRow("damaged") << int(Breakage::Damaged);
}

QString SaveFailure(Breakage how)
{
    switch (how) {
    case Breakage::ReadOnly:
        return QStringLiteral("No se pudo guardar: la base de datos es de solo lectura.");
    case Breakage::DiskFull: return QStringLiteral("No se pudo guardar: el disco está lleno.");
    case Breakage::Damaged:
        return QStringLiteral("No se pudo guardar: la base de datos está dañada.");
    }
    return {};
}

} // namespace BrokenDatabase
