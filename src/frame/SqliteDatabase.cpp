#include "SqliteDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QUrl>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FoldedText.h"
#include "Recordset.h"

namespace {

struct Connection;

QHash<QString, Connection*>& connections()
{
    static QHash<QString, Connection*> all;
    return all;
}

QString argText(sqlite3_value* v)
{
    if (sqlite3_value_type(v) == SQLITE_NULL)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)));
}

void resultText(sqlite3_context* ctx, const QString& s)
{
    const QByteArray utf8 = s.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

bool anyNull(int argc, sqlite3_value** argv)
{
    for (int i = 0; i < argc; ++i)
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL)
            return true;
    return false;
}

// Jet's text functions, on characters rather than bytes.
void fnMid(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    const QString s = argText(argv[0]);
    const int start = sqlite3_value_int(argv[1]);
    if (start < 1)
        return sqlite3_result_error(ctx, "Invalid procedure call", -1);
    const int length = argc > 2 ? sqlite3_value_int(argv[2]) : -1;
    resultText(ctx, s.mid(start - 1, length));
}

void fnLeft(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    resultText(ctx, argText(argv[0]).left(qMax(0, sqlite3_value_int(argv[1]))));
}

void fnRight(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    resultText(ctx, argText(argv[0]).right(qMax(0, sqlite3_value_int(argv[1]))));
}

void fnLen(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    sqlite3_result_int(ctx, int(argText(argv[0]).size()));
}

void fnUcase(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    resultText(ctx, argText(argv[0]).toUpper());
}

void fnLcase(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    resultText(ctx, argText(argv[0]).toLower());
}

// INSTR([start,] text, find), without regard to case as Jet's text compare.
void fnInstr(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    int start = 1;
    int a = 0;
    if (argc == 3) {
        start = sqlite3_value_int(argv[0]);
        a = 1;
    }
    const QString s = argText(argv[a]);
    const QString find = argText(argv[a + 1]);
    if (start < 1)
        return sqlite3_result_error(ctx, "Invalid procedure call", -1);
    if (find.isEmpty())
        return sqlite3_result_int(ctx, start);
    sqlite3_result_int(ctx, int(s.indexOf(find, start - 1, Qt::CaseInsensitive)) + 1);
}

// like(pattern, text [, escape]), which "text LIKE pattern" calls.
void fnLike(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(ctx);
    char32_t escape = 0;
    if (argc == 3) {
        const char* e = reinterpret_cast<const char*>(sqlite3_value_text(argv[2]));
        const int size = sqlite3_value_bytes(argv[2]);
        int length = 0;
        escape = FirstCharacter(e, size, &length);
        if (length == 0 || length != size)
            return sqlite3_result_error(ctx, "ESCAPE expression must be a single character", -1);
    }
    const char* pattern = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const int patternSize = sqlite3_value_bytes(argv[0]);
    const char* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
    const int textSize = sqlite3_value_bytes(argv[1]);
    sqlite3_result_int(ctx, LikeFolded(pattern, patternSize, text, textSize, escape) ? 1 : 0);
}

int collateNoCase(void*, int aSize, const void* a, int bSize, const void* b)
{
    return CompareFolded(static_cast<const char*>(a), aSize, static_cast<const char*>(b), bSize);
}

void registerFunctions(sqlite3* db)
{
    // NOCASE, the collation of every text column, replaced by one that folds
    // every letter; LIKE, UPPER and LOWER likewise.
    sqlite3_create_collation(db, "NOCASE", SQLITE_UTF8, nullptr, collateNoCase);
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db, "like", 2, flags, nullptr, fnLike, nullptr, nullptr);
    sqlite3_create_function(db, "like", 3, flags, nullptr, fnLike, nullptr, nullptr);
    sqlite3_create_function(db, "upper", 1, flags, nullptr, fnUcase, nullptr, nullptr);
    sqlite3_create_function(db, "lower", 1, flags, nullptr, fnLcase, nullptr, nullptr);
    sqlite3_create_function(db, "mid", 2, flags, nullptr, fnMid, nullptr, nullptr);
    sqlite3_create_function(db, "mid", 3, flags, nullptr, fnMid, nullptr, nullptr);
    sqlite3_create_function(db, "jet_left", 2, flags, nullptr, fnLeft, nullptr, nullptr);
    sqlite3_create_function(db, "jet_right", 2, flags, nullptr, fnRight, nullptr, nullptr);
    sqlite3_create_function(db, "len", 1, flags, nullptr, fnLen, nullptr, nullptr);
    sqlite3_create_function(db, "ucase", 1, flags, nullptr, fnUcase, nullptr, nullptr);
    sqlite3_create_function(db, "lcase", 1, flags, nullptr, fnLcase, nullptr, nullptr);
    sqlite3_create_function(db, "instr", 2, flags, nullptr, fnInstr, nullptr, nullptr);
    sqlite3_create_function(db, "instr", 3, flags, nullptr, fnInstr, nullptr, nullptr);
}

QVariant columnValue(sqlite3_stmt* st, int i)
{
    switch (sqlite3_column_type(st, i)) {
    case SQLITE_NULL: return {};
    case SQLITE_INTEGER: return QVariant(qlonglong(sqlite3_column_int64(st, i)));
    case SQLITE_FLOAT: return QVariant(sqlite3_column_double(st, i));
    case SQLITE_BLOB:
        return QVariant(QByteArray(reinterpret_cast<const char*>(sqlite3_column_blob(st, i)),
                                   sqlite3_column_bytes(st, i)));
    default:
        return QVariant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                          sqlite3_column_bytes(st, i)));
    }
}

void bindValue(sqlite3_stmt* st, int i, const QVariant& v)
{
    if (v.isNull() || !v.isValid()) {
        sqlite3_bind_null(st, i);
    } else if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int) {
        sqlite3_bind_int64(st, i, v.toLongLong());
    } else if (v.typeId() == QMetaType::Double) {
        sqlite3_bind_double(st, i, v.toDouble());
    } else {
        const QByteArray utf8 = v.toString().toUtf8();
        sqlite3_bind_text(st, i, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
}

} // namespace

namespace {

using Kind = SqliteDatabase::Kind;


class SqliteStatement : public PreparedStatement
{
public:
    SqliteStatement(sqlite3* db, sqlite3_stmt* st) : m_db(db), m_statement(st) {}
    ~SqliteStatement() override { sqlite3_finalize(m_statement); }
    bool run(const QVector<QVariant>& values) override
    {
        for (int i = 0; i < values.size(); ++i)
            bindValue(m_statement, i + 1, values.at(i));
        const bool done = sqlite3_step(m_statement) == SQLITE_DONE;
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
        return done;
    }
    bool runTexts(const QStringList& texts, int marks) override
    {
        m_binds.encode(texts, marks);
        for (int i = 0; i < marks; ++i) {
            if (m_binds.value(i))
                sqlite3_bind_text(m_statement, i + 1, m_binds.value(i), m_binds.length(i),
                                  SQLITE_STATIC);
            else
                sqlite3_bind_null(m_statement, i + 1);
        }
        const bool done = sqlite3_step(m_statement) == SQLITE_DONE;
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
        return done;
    }

private:
    sqlite3* m_db;
    sqlite3_stmt* m_statement;
    Utf8Binds m_binds; // the bytes stay until the step has read them
};

struct Connection : DatabaseConnection {
    sqlite3* db = nullptr;
    Kind fileKind = Kind::New;
    QString key;
    QString error;

    ~Connection() override
    {
        if (db)
            sqlite3_close_v2(db);
    }
    JetDialect dialect() const override { return JetDialect::Sqlite; }
    bool run(const QString& sql, const QVector<QVariant>& binds, QueryResult* result) override
    {
        return RunSqlite(db, sql, binds, result, &error);
    }
    bool readTexts(const QString& sql, const TextRowReader& reader) override
    {
        return ReadSqliteTexts(db, sql, reader, &error);
    }
    std::unique_ptr<PreparedStatement> prepare(const QString& sql) override
    {
        const QByteArray utf8 = sql.toUtf8();
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v3(db, utf8.constData(), int(utf8.size()), SQLITE_PREPARE_PERSISTENT,
                               &st, nullptr) != SQLITE_OK) {
            error = QString::fromUtf8(sqlite3_errmsg(db));
            sqlite3_finalize(st);
            return nullptr;
        }
        return std::make_unique<SqliteStatement>(db, st);
    }
    QString lastError() const override { return QString::fromUtf8(sqlite3_errmsg(db)); }
    int lastErrorCode() const override { return sqlite3_extended_errcode(db); }
    Kind kind() override { return fileKind; }
    bool readOnly() override { return sqlite3_db_readonly(db, "main") == 1; }
    bool markAsOwn() override { return SqliteDatabase::markAsOwn(key); }
    bool inTransaction() override { return sqlite3_get_autocommit(db) == 0; }
    QStringList tableNames(bool* ok) override
    {
        QueryResult r;
        *ok = RunSqlite(db, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"),
                        {}, &r, &error);
        QStringList names;
        for (const auto& row : std::as_const(r.rows))
            names << row.at(0).toString();
        return names;
    }
};

// The tables that tell a database of this program made before it carried
// its mark.
const QSet<QString> kOwnTables = {QStringLiteral("contribuyentes"), QStringLiteral("opciones")};

QString keyOf(const QString& path)
{
    return QFileInfo(path).absoluteFilePath();
}

// Not to be written: the person may not write it, or it is marked read-only
// (root could write through the mark, but a file marked read-only is left as
// it is marked).
bool markedReadOnly(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat st {
    };
    if (::stat(name.constData(), &st) != 0)
        return false;
    return ::access(name.constData(), W_OK) != 0 || (st.st_mode & 0222) == 0;
}

// The file as a URI, so that the open can say how: "immutable=1" reads
// without a lock and without the -wal and -shm files beside it.
QByteArray uriOf(const QString& key, const char* options)
{
    return QUrl::fromLocalFile(key).toEncoded() + '?' + options;
}

// Reads without writing anything, not even beside the file. A journal that an
// interrupted run left with changes is still read, through a plain read-only
// open.
sqlite3* openForReading(const QString& key)
{
    const bool pendingJournal = QFileInfo(key + QStringLiteral("-wal")).size() > 0;
    sqlite3* db = nullptr;
    const QByteArray uri = uriOf(key, pendingJournal ? "mode=ro" : "immutable=1");
    if (sqlite3_open_v2(uri.constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    return db;
}

bool readInt(sqlite3* db, const char* sql, int* value)
{
    sqlite3_stmt* st = nullptr;
    bool ok = sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK &&
              sqlite3_step(st) == SQLITE_ROW;
    if (ok)
        *value = sqlite3_column_int(st, 0);
    sqlite3_finalize(st);
    return ok;
}

// What the file is, found without writing anything.
Kind classify(const QString& key)
{
    const QFileInfo info(key);
    if (!info.exists() || info.size() == 0)
        return Kind::New;
    sqlite3* db = openForReading(key);
    if (!db)
        return Kind::Unreadable;
    int mark = 0;
    QSet<QString> tables;
    bool ok = readInt(db, "PRAGMA application_id", &mark);
    sqlite3_stmt* st = nullptr;
    ok = ok && sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type = 'table'", -1,
                                  &st, nullptr) == SQLITE_OK;
    int rc = SQLITE_DONE;
    while (ok && (rc = sqlite3_step(st)) == SQLITE_ROW)
        tables.insert(
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0))).toLower());
    ok = ok && rc == SQLITE_DONE;
    sqlite3_finalize(st);
    sqlite3_close(db);
    if (!ok)
        return Kind::Unreadable;
    if (mark == SqliteDatabase::kApplicationId)
        return Kind::Own;
    if (mark != 0)
        return Kind::Foreign;
    if (tables.isEmpty())
        return Kind::New;
    return tables.contains(kOwnTables) ? Kind::Own : Kind::Foreign;
}

// The -wal and -shm files that a read-only run of an older version left
// read-only would make every later write fail: they are made writable again,
// or removed when they hold nothing. False when they stay in the way.
bool mendCompanions(const QString& key)
{
    bool mended = true;
    for (const char* suffix : {"-wal", "-shm"}) {
        const QString companion = key + QLatin1String(suffix);
        if (!QFileInfo::exists(companion) || !markedReadOnly(companion))
            continue;
        QFile::setPermissions(companion, QFile::permissions(companion) | QFile::WriteOwner);
        mended = mended && !markedReadOnly(companion);
    }
    if (mended || QFileInfo(key + QStringLiteral("-wal")).size() > 0)
        return mended;
    QFile::remove(key + QStringLiteral("-wal"));
    QFile::remove(key + QStringLiteral("-shm"));
    return !QFileInfo::exists(key + QStringLiteral("-shm"));
}

sqlite3* openForWriting(const QString& key)
{
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(key.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    return db;
}

Connection* openConnection(const QString& key)
{
    auto& all = connections();
    if (auto it = all.find(key); it != all.end())
        return *it;
    QDir().mkpath(QFileInfo(key).absolutePath());
    auto c = std::make_unique<Connection>();
    c->key = key;
    c->fileKind = classify(key);
    const bool writable = (c->fileKind == Kind::New || c->fileKind == Kind::Own) &&
                          !markedReadOnly(key) && !markedReadOnly(QFileInfo(key).absolutePath()) &&
                          mendCompanions(key);
    c->db = writable ? openForWriting(key) : openForReading(key);
    if (!c->db)
        return nullptr;
    sqlite3_busy_timeout(c->db, 5000);
    registerFunctions(c->db);
    if (writable) {
        sqlite3_exec(c->db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        sqlite3_exec(c->db, "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
    }
    return *all.insert(key, c.release());
}

} // namespace

DatabaseConnection* SqliteDatabase::open(const QString& path)
{
    // The gateway asks for its connection at every statement, by the same
    // path: an absolute path last asked for is not made absolute again (a
    // relative one depends on the folder the run is in).
    static QString lastPath, lastKey;
    if (path != lastPath || !path.startsWith(u'/')) {
        lastKey = keyOf(path);
        lastPath = path;
    }
    return openConnection(lastKey);
}

sqlite3* SqliteDatabase::connection(const QString& path)
{
    const Connection* c = openConnection(keyOf(path));
    return c ? c->db : nullptr;
}

SqliteDatabase::Kind SqliteDatabase::classify(const QString& path)
{
    return ::classify(keyOf(path));
}

SqliteDatabase::Kind SqliteDatabase::kind(const QString& path)
{
    const Connection* c = openConnection(keyOf(path));
    return c ? c->fileKind : Kind::Unreadable;
}

bool SqliteDatabase::readOnly(const QString& path)
{
    const Connection* c = openConnection(keyOf(path));
    return !c || sqlite3_db_readonly(c->db, "main") == 1;
}

bool SqliteDatabase::markAsOwn(const QString& path)
{
    Connection* c = openConnection(keyOf(path));
    if (!c || sqlite3_db_readonly(c->db, "main") == 1)
        return false;
    int mark = 0;
    if (readInt(c->db, "PRAGMA application_id", &mark) && mark == kApplicationId) {
        c->fileKind = Kind::Own;
        return true;
    }
    const QByteArray sql = QByteArrayLiteral("SAVEPOINT marca; REINDEX NOCASE; ") +
                           "PRAGMA application_id = " + QByteArray::number(kApplicationId) +
                           "; RELEASE marca;";
    if (sqlite3_exec(c->db, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        sqlite3_exec(c->db, "ROLLBACK TO marca; RELEASE marca;", nullptr, nullptr, nullptr);
        return false;
    }
    c->fileKind = Kind::Own;
    return true;
}

void SqliteDatabase::close(const QString& path)
{
    delete connections().take(keyOf(path));
}

void SqliteDatabase::closeAll()
{
    qDeleteAll(connections());
    connections().clear();
}

namespace {

// The current row of a statement, read as texts. Each column's value is
// taken once and read where it stands (the connection is used by one thread
// at a time, as every statement of the gateway is).
class SqliteRow : public TextRow
{
public:
    explicit SqliteRow(sqlite3_stmt* st) : m_statement(st) {}
    QString text(int column) const override
    {
        sqlite3_value* v = value(column);
        if (sqlite3_value_type(v) != SQLITE_TEXT)
            return VariantText(columnValue(m_statement, column));
        return utf8(v).toString();
    }
    QString sharedText(int column, const QString& same) const override
    {
        sqlite3_value* v = value(column);
        if (sqlite3_value_type(v) != SQLITE_TEXT)
            return TextRow::sharedText(column, same);
        const QUtf8StringView bytes = utf8(v);
        return QtPrivate::equalStrings(same, bytes) ? same : bytes.toString();
    }
    bool isNull(int column) const override
    {
        return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
    }
    std::optional<qint64> integer(int column) const override
    {
        if (sqlite3_column_type(m_statement, column) != SQLITE_INTEGER)
            return std::nullopt;
        return sqlite3_column_int64(m_statement, column);
    }

    QStringList columns() const override
    {
        QStringList names;
        for (int i = 0; i < sqlite3_column_count(m_statement); ++i)
            names << QString::fromUtf8(sqlite3_column_name(m_statement, i));
        return names;
    }

private:
    sqlite3_value* value(int column) const { return sqlite3_column_value(m_statement, column); }
    static QUtf8StringView utf8(sqlite3_value* v)
    {
        const char* text = reinterpret_cast<const char*>(sqlite3_value_text(v));
        return QUtf8StringView(text, sqlite3_value_bytes(v));
    }

    sqlite3_stmt* m_statement;
};

// Prepares and binds a statement, then steps through its rows, handing each
// to `row`; false and the engine's message on failure.
bool stepSqlite(sqlite3* db, const QString& sql, const QVector<QVariant>& binds,
                const std::function<void(sqlite3_stmt*)>& start,
                const std::function<void(sqlite3_stmt*)>& row, QString* error)
{
    if (!db) {
        if (error)
            *error = QStringLiteral("no database connection");
        return false;
    }
    sqlite3_stmt* st = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const char* tail = nullptr;
    int rc = sqlite3_prepare_v2(db, utf8.constData(), int(utf8.size()), &st, &tail);
    if (rc != SQLITE_OK) {
        if (error)
            *error = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_finalize(st);
        return false;
    }
    if (!st) { // only white space or a comment
        return true;
    }
    if (sqlite3_bind_parameter_count(st) != binds.size() && !binds.isEmpty()) {
        if (error)
            *error = QStringLiteral("bind count mismatch");
        sqlite3_finalize(st);
        return false;
    }
    for (int i = 0; i < binds.size(); ++i)
        bindValue(st, i + 1, binds.at(i));
    if (start)
        start(st);
    while ((rc = sqlite3_step(st)) == SQLITE_ROW)
        if (row)
            row(st);
    const bool ok = rc == SQLITE_DONE;
    if (!ok && error)
        *error = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(st);
    return ok;
}

} // namespace

bool RunSqlite(sqlite3* db, const QString& sql, const QVector<QVariant>& binds, QueryResult* result,
               QString* error)
{
    if (!result)
        return stepSqlite(db, sql, binds, {}, {}, error);
    int columns = 0;
    const auto start = [&](sqlite3_stmt* st) {
        columns = sqlite3_column_count(st);
        result->columns.clear();
        result->rows.clear();
        for (int i = 0; i < columns; ++i)
            result->columns << QString::fromUtf8(sqlite3_column_name(st, i));
    };
    const auto row = [&](sqlite3_stmt* st) {
        QVector<QVariant> values;
        values.reserve(columns);
        for (int i = 0; i < columns; ++i)
            values.push_back(columnValue(st, i));
        result->rows.push_back(std::move(values));
    };
    return stepSqlite(db, sql, binds, start, row, error);
}

bool ReadSqliteTexts(sqlite3* db, const QString& sql, const TextRowReader& reader, QString* error)
{
    return stepSqlite(
        db, sql, {}, {},
        [&](sqlite3_stmt* st) {
            const SqliteRow row(st);
            reader(row);
        },
        error);
}
