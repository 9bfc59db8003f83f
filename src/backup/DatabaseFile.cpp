#include "DatabaseFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <cstdio>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include "ErrorLog.h"
#include "SqliteDatabase.h"

namespace {

const QString kSource = QStringLiteral("DatabaseFile");

DatabaseFile::StageObserver& observer()
{
    static DatabaseFile::StageObserver current;
    return current;
}

// A connection of its own to one file, closed when it goes out of scope.
class Connection
{
public:
    Connection(const QString& path, int flags)
    {
        if (sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, flags, nullptr) !=
            SQLITE_OK) {
            sqlite3_close(m_db);
            m_db = nullptr;
            return;
        }
        sqlite3_busy_timeout(m_db, 5000);
    }
    ~Connection() { sqlite3_close_v2(m_db); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    explicit operator bool() const { return m_db != nullptr; }
    sqlite3* db() const { return m_db; }

    // The first value of the statement's first row; false when it failed.
    bool first(const QString& sql, QString& value, QString* error = nullptr) const
    {
        QueryResult result;
        if (!RunSqlite(m_db, sql, {}, &result, error))
            return false;
        value = result.rows.isEmpty() || result.rows.first().isEmpty()
                    ? QString()
                    : result.rows.first().first().toString();
        return true;
    }

private:
    sqlite3* m_db = nullptr;
};

constexpr int kExisting = SQLITE_OPEN_READWRITE;
constexpr int kNew = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;

bool fail(const QString& what, const QString& path)
{
    LogError(QStringLiteral("-1"), what + QStringLiteral(": ") + path, kSource);
    return false;
}

// Makes the file's content durable before it takes another name.
bool syncPath(const QString& path, int flags)
{
    const int fd = ::open(QFile::encodeName(path).constData(), flags);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

bool hasJournal(const QString& path)
{
    return QFileInfo::exists(path + QStringLiteral("-wal")) ||
           QFileInfo::exists(path + QStringLiteral("-shm"));
}

bool readsAsDatabase(const QString& path)
{
    Connection c(path, kExisting);
    QString count;
    return c && c.first(QStringLiteral("SELECT count(*) FROM sqlite_master"), count);
}

} // namespace

bool DatabaseFile::Snapshot(const QString& source, const QString& target)
{
    QFile::remove(target);
    bool ok = false;
    {
        Connection from(source, kExisting);
        Connection to(target, kNew);
        if (!from || !to)
            return fail(QStringLiteral("No se pudo abrir la base de datos para copiarla"), source);
        // The copy is zipped at once and then removed: it keeps no journal
        // and is not forced to the disk on its way to the archiver.
        sqlite3_exec(to.db(), "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF", nullptr, nullptr,
                     nullptr);
        if (sqlite3_backup* copy = sqlite3_backup_init(to.db(), "main", from.db(), "main")) {
            ok = sqlite3_backup_step(copy, -1) == SQLITE_DONE;
            ok = sqlite3_backup_finish(copy) == SQLITE_OK && ok;
        }
        if (!ok)
            LogError(QStringLiteral("-1"),
                     QStringLiteral("No se pudo copiar la base de datos: ") +
                         QString::fromUtf8(sqlite3_errmsg(to.db())),
                     kSource);
    }
    if (!ok)
        QFile::remove(target);
    return ok;
}

bool DatabaseFile::WhileWhole(const QString& source, const std::function<bool()>& work)
{
    Connection from(source, kExisting);
    if (!from || sqlite3_exec(from.db(), "BEGIN; SELECT count(*) FROM sqlite_master", nullptr,
                              nullptr, nullptr) != SQLITE_OK)
        return false;
    const QFileInfo journal(source + QStringLiteral("-wal"));
    const bool whole = !journal.exists() || journal.size() == 0;
    const bool done = whole && work();
    sqlite3_exec(from.db(), "COMMIT", nullptr, nullptr, nullptr);
    return done;
}

bool DatabaseFile::WriteCompacted(const QString& source, const QString& target)
{
    QFile::remove(target);
    bool ok = false;
    {
        Connection from(source, kExisting);
        QString error;
        ok = from &&
             RunSqlite(from.db(), QStringLiteral("VACUUM INTO ?"), {target}, nullptr, &error);
        if (!ok)
            LogError(QStringLiteral("-1"),
                     QStringLiteral("No se pudo compactar la base de datos ") + source +
                         QStringLiteral(": ") + error,
                     kSource);
    }
    if (ok && !syncPath(target, O_RDONLY))
        ok = fail(QStringLiteral("No se pudo asegurar en disco la copia compactada"), target);
    if (!ok)
        QFile::remove(target);
    return ok;
}

bool DatabaseFile::IsSystemDatabase(const QString& path)
{
    const QString why = Soundness(path);
    if (!why.isEmpty())
        return fail(why, path);
    return true;
}

QString DatabaseFile::Soundness(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    if (!QFileInfo(path).isFile() || QFileInfo(path).isSymLink())
        return name + QStringLiteral(" no es un archivo común.");
    Connection c(path, kExisting);
    QString verdict;
    if (!c || !c.first(QStringLiteral("PRAGMA integrity_check"), verdict) ||
        verdict != QLatin1String("ok"))
        return name + QStringLiteral(" no es una base de datos sana: no pasó la verificación "
                                     "de integridad.");
    // The gateway's own judgement of whose database it is.
    if (SqliteDatabase::classify(path) != SqliteDatabase::Kind::Own)
        return name + QStringLiteral(" es una base de datos de otro programa, no de Morvel.");
    return QString();
}

bool DatabaseFile::IsOwnApplicationId(qint64 id)
{
    // Databases made before the mark was set carry 0; the tables then tell.
    return id == 0 || id == kMorvelApplicationId;
}

bool DatabaseFile::foldJournal(const QString& path)
{
    if (!hasJournal(path))
        return true;
    // The last connection to close writes the journal back into the file
    // and removes it; a journal that stays belongs to a connection still
    // open.
    readsAsDatabase(path);
    if (!hasJournal(path))
        return true;
    if (QFileInfo::exists(path) && readsAsDatabase(path))
        return false;
    // The journal of a file that is no database holds nothing to keep.
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    return !hasJournal(path);
}

bool DatabaseFile::Replace(const QString& replacement, const QString& target)
{
    if (!foldJournal(target))
        return fail(QStringLiteral("La base de datos está abierta por otro programa"), target);
    if (QFileInfo::exists(target))
        QFile::setPermissions(replacement, QFile::permissions(target));
    if (!syncPath(replacement, O_RDONLY))
        return fail(QStringLiteral("No se pudo asegurar en disco el archivo"), replacement);
    if (std::rename(QFile::encodeName(replacement).constData(),
                    QFile::encodeName(target).constData()) != 0)
        return fail(QStringLiteral("No se pudo reemplazar la base de datos"), target);
    syncPath(QFileInfo(target).absolutePath(), O_RDONLY | O_DIRECTORY);
    return true;
}

void DatabaseFile::SetStageObserver(StageObserver stageObserver)
{
    observer() = std::move(stageObserver);
}

void DatabaseFile::ReachStage(const QString& stage)
{
    if (observer())
        observer()(stage);
}
