#include "PostgresDatabase.h"

#include <QHash>
#include <QSysInfo>
#include <libpq-fe.h>
#include <sqlite3.h>

#include "Recordset.h"

namespace {

// Type numbers of the server's catalogue that read back as numbers.
constexpr Oid kBool = 16, kInt8 = 20, kInt2 = 21, kInt4 = 23, kOid = 26, kFloat4 = 700,
              kFloat8 = 701, kNumeric = 1700;

// What the translated statements need, made once per database.
const char* const kSupport[] = {
    "CREATE EXTENSION IF NOT EXISTS citext",
    // INSTR([start,] text, find), without regard to case as Jet's text compare.
    "CREATE OR REPLACE FUNCTION jet_instr(s text, f text) RETURNS integer LANGUAGE sql "
    "IMMUTABLE AS $$ SELECT CASE WHEN f = '' THEN 1 ELSE strpos(lower(s), lower(f)) END $$",
    "CREATE OR REPLACE FUNCTION jet_instr(st integer, s text, f text) RETURNS integer "
    "LANGUAGE sql IMMUTABLE AS $$ SELECT CASE WHEN f = '' THEN st "
    "WHEN strpos(lower(substr(s, st)), lower(f)) = 0 THEN 0 "
    "ELSE strpos(lower(substr(s, st)), lower(f)) + st - 1 END $$",
    // The type of every text column: without regard to case, and sorted as in
    // Spanish (accented vowels beside their plain ones, Ñ after N) where the
    // server knows the language.
    "DO $$ BEGIN IF EXISTS (SELECT 1 FROM pg_collation WHERE collname = 'es-x-icu') THEN "
    "CREATE DOMAIN jet_text AS citext COLLATE \"es-x-icu\"; "
    "ELSE CREATE DOMAIN jet_text AS citext; END IF; END $$",
};
const char* const kSupportPresent =
    "SELECT (SELECT count(*) FROM pg_extension WHERE extname = 'citext') + "
    "(SELECT count(*) FROM pg_proc WHERE proname = 'jet_instr') + "
    "(SELECT count(*) FROM pg_type WHERE typname = 'jet_text')";
constexpr int kSupportCount = 4; // citext, two jet_instr, jet_text
// The advisory lock under which the support is made.
const char* const kSupportLock = "SELECT pg_advisory_lock(7265001)";
const char* const kSupportUnlock = "SELECT pg_advisory_unlock(7265001)";

// This program's mark on the schema it keeps its tables in.
const char* const kMark = "MRVL";

QString g_connectError;

// The server's SQLSTATE as the result code that SQLite would give for the
// same cause, so that a failed save is told in the same words.
int sqliteCodeOf(const QByteArray& state)
{
    if (state == "53100")
        return SQLITE_FULL;
    if (state == "25006" || state == "42501")
        return SQLITE_READONLY;
    if (state == "40001" || state == "40P01" || state == "55P03")
        return SQLITE_BUSY;
    if (state.startsWith("58"))
        return SQLITE_IOERR;
    if (state == "XX001" || state == "XX002")
        return SQLITE_CORRUPT;
    return SQLITE_ERROR;
}

QVariant valueOf(const PGresult* res, int row, int column)
{
    if (PQgetisnull(res, row, column))
        return {};
    const char* text = PQgetvalue(res, row, column);
    switch (PQftype(res, column)) {
    case kBool: return QVariant(qlonglong(text[0] == 't' ? 1 : 0));
    case kInt2:
    case kInt4:
    case kInt8:
    case kOid: return QVariant(QByteArray(text).toLongLong());
    case kFloat4:
    case kFloat8: return QVariant(QByteArray(text).toDouble());
    case kNumeric: {
        // A sum of whole numbers stays whole, as SQLite's does.
        const QByteArray number(text);
        if (!number.contains('.'))
            return QVariant(number.toLongLong());
        return QVariant(number.toDouble());
    }
    default: return QVariant(QString::fromUtf8(text, PQgetlength(res, row, column)));
    }
}

// Whether the server carried a statement out, with rows or without.
bool succeeded(const PGresult* res)
{
    const ExecStatusType status = PQresultStatus(res);
    return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK || status == PGRES_EMPTY_QUERY;
}

bool isWholeNumber(Oid type)
{
    return type == kInt2 || type == kInt4 || type == kInt8 || type == kOid;
}

// A row of a result, read as texts.
class PgRow : public TextRow
{
public:
    PgRow(const PGresult* res, int row) : m_result(res), m_row(row) {}
    QString text(int column) const override
    {
        if (!holdsText(column))
            return VariantText(valueOf(m_result, m_row, column));
        return QString::fromUtf8(PQgetvalue(m_result, m_row, column),
                                 PQgetlength(m_result, m_row, column));
    }
    QString sharedText(int column, const QString& same) const override
    {
        if (!holdsText(column))
            return TextRow::sharedText(column, same);
        const QUtf8StringView bytes(PQgetvalue(m_result, m_row, column),
                                    PQgetlength(m_result, m_row, column));
        return QtPrivate::equalStrings(same, bytes) ? same : bytes.toString();
    }
    bool isNull(int column) const override { return PQgetisnull(m_result, m_row, column); }
    std::optional<qint64> integer(int column) const override
    {
        if (isNull(column) || !isWholeNumber(PQftype(m_result, column)))
            return std::nullopt;
        return QByteArray(PQgetvalue(m_result, m_row, column)).toLongLong();
    }

    QStringList columns() const override
    {
        QStringList names;
        for (int c = 0; c < PQnfields(m_result); ++c)
            names << QString::fromUtf8(PQfname(m_result, c));
        return names;
    }

private:
    // Whether the value reads as its own text (not Null, nor a number or a
    // truth value, which read as the gateway writes them).
    bool holdsText(int column) const
    {
        const Oid type = PQftype(m_result, column);
        return !PQgetisnull(m_result, m_row, column) && type != kBool && type != kFloat4 &&
               type != kFloat8 && type != kNumeric;
    }

    const PGresult* m_result;
    int m_row;
};

struct Binds {
    QVector<QByteArray> texts;
    QVector<const char*> values;

    explicit Binds(const QVector<QVariant>& binds)
    {
        texts.reserve(binds.size());
        for (const QVariant& v : binds) {
            if (v.isNull() || !v.isValid())
                texts.push_back(QByteArray());
            else if (v.typeId() == QMetaType::Double)
                texts.push_back(QByteArray::number(v.toDouble(), 'g', 17));
            else
                texts.push_back(v.toString().toUtf8());
        }
        for (int i = 0; i < binds.size(); ++i)
            values.push_back(
                binds.at(i).isNull() || !binds.at(i).isValid() ? nullptr : texts.at(i).constData());
    }
};

class Connection;

class Statement : public PreparedStatement
{
public:
    Statement(Connection& connection, QByteArray name) : m_connection(connection), m_name(name) {}
    ~Statement() override;
    bool run(const QVector<QVariant>& values) override;
    bool runTexts(const QStringList& texts, int marks) override;

private:
    Connection& m_connection;
    QByteArray m_name;
    Utf8Binds m_binds;
};

class Connection : public DatabaseConnection
{
public:
    explicit Connection(PGconn* conn) : m_conn(conn) {}
    ~Connection() override { PQfinish(m_conn); }

    PGconn* conn() const { return m_conn; }

    JetDialect dialect() const override { return JetDialect::Postgres; }

    bool run(const QString& sql, const QVector<QVariant>& binds, QueryResult* result) override
    {
        if (!alive())
            return false;
        const Binds b(binds);
        PGresult* res = PQexecParams(m_conn, sql.toUtf8().constData(), int(b.values.size()),
                                     nullptr, b.values.constData(), nullptr, nullptr, 0);
        return take(res, sql, result);
    }

    bool readTexts(const QString& sql, const TextRowReader& reader) override
    {
        if (!alive())
            return false;
        PGresult* res = PQexecParams(m_conn, sql.toUtf8().constData(), 0, nullptr, nullptr,
                                     nullptr, nullptr, 0);
        const bool ok = succeeded(res);
        if (!ok)
            noteFailure(res);
        for (int r = 0; ok && r < PQntuples(res); ++r)
            reader(PgRow(res, r));
        PQclear(res);
        return ok;
    }

    // Takes a result: its rows into `result`, or its failure into the
    // connection's error.
    bool take(PGresult* res, const QString& sql, QueryResult* result)
    {
        const bool ok = succeeded(res);
        if (!ok) {
            noteFailure(res);
        } else if (result) {
            result->columns.clear();
            result->rows.clear();
            const int columns = PQnfields(res);
            for (int c = 0; c < columns; ++c)
                result->columns << JetSpelling(QString::fromUtf8(PQfname(res, c)), sql);
            const int rows = PQntuples(res);
            result->rows.reserve(rows);
            for (int r = 0; r < rows; ++r) {
                QVector<QVariant> row;
                row.reserve(columns);
                for (int c = 0; c < columns; ++c)
                    row.push_back(valueOf(res, r, c));
                result->rows.push_back(std::move(row));
            }
        }
        PQclear(res);
        return ok;
    }

    std::unique_ptr<PreparedStatement> prepare(const QString& sql) override
    {
        if (!alive())
            return nullptr;
        const QByteArray name = "morvel_" + QByteArray::number(++m_statements);
        PGresult* res = PQprepare(m_conn, name.constData(), sql.toUtf8().constData(), 0, nullptr);
        if (!take(res, sql, nullptr))
            return nullptr;
        return std::make_unique<Statement>(*this, name);
    }

    QString lastError() const override { return m_error; }
    int lastErrorCode() const override { return m_code; }

    Kind kind() override
    {
        bool ok = false;
        const QStringList tables = tableNames(&ok);
        if (!ok)
            return Kind::Unreadable;
        if (tables.isEmpty())
            return Kind::New;
        if (text("SELECT obj_description(oid, 'pg_namespace') FROM pg_namespace "
                 "WHERE nspname = current_schema()") == QLatin1String(kMark))
            return Kind::Own;
        QStringList lower;
        for (const QString& t : tables)
            lower << t.toLower();
        return lower.contains(QStringLiteral("contribuyentes")) &&
                       lower.contains(QStringLiteral("opciones"))
                   ? Kind::Own
                   : Kind::Foreign;
    }

    bool readOnly() override
    {
        return text("SELECT (pg_is_in_recovery() OR "
                    "current_setting('transaction_read_only') = 'on')::int") != u"0";
    }

    bool markAsOwn() override
    {
        const QString schema = text("SELECT quote_ident(current_schema())");
        return !schema.isEmpty() && run(QStringLiteral("COMMENT ON SCHEMA ") + schema +
                                            QStringLiteral(" IS '") + QLatin1String(kMark) + u'\'',
                                        {}, nullptr);
    }

    QStringList tableNames(bool* ok) override
    {
        QueryResult r;
        *ok = run(QStringLiteral("SELECT table_name FROM information_schema.tables "
                                 "WHERE table_schema = current_schema() "
                                 "AND table_type = 'BASE TABLE' ORDER BY table_name"),
                  {}, &r);
        QStringList names;
        for (const auto& row : std::as_const(r.rows))
            names << JetSpelling(row.at(0).toString(), QString());
        return names;
    }

    bool inTransaction() override { return PQtransactionStatus(m_conn) != PQTRANS_IDLE; }

    // Makes what the translated statements need, once per database.
    void ensureSupport()
    {
        if (text(kSupportPresent).toInt() >= kSupportCount)
            return;
        run(QString::fromLatin1(kSupportLock), {}, nullptr);
        if (text(kSupportPresent).toInt() < kSupportCount)
            for (const char* sql : kSupport)
                run(QString::fromLatin1(sql), {}, nullptr);
        run(QString::fromLatin1(kSupportUnlock), {}, nullptr);
    }

    void noteFailure(const PGresult* res)
    {
        const char* primary = res ? PQresultErrorField(res, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
        m_error = QString::fromUtf8(primary ? primary : PQerrorMessage(m_conn)).trimmed();
        const char* state = res ? PQresultErrorField(res, PG_DIAG_SQLSTATE) : nullptr;
        m_code = sqliteCodeOf(QByteArray(state ? state : ""));
    }

private:
    // A connection the server dropped is made again (what was pending of a
    // transaction is lost with it, as the server decided).
    bool alive()
    {
        if (PQstatus(m_conn) == CONNECTION_OK)
            return true;
        PQreset(m_conn);
        if (PQstatus(m_conn) == CONNECTION_OK)
            return true;
        noteFailure(nullptr);
        return false;
    }

    QString text(const char* sql)
    {
        QueryResult r;
        if (!run(QString::fromLatin1(sql), {}, &r) || r.rows.isEmpty() || r.rows.at(0).isEmpty())
            return {};
        return r.rows.at(0).at(0).toString();
    }

    PGconn* m_conn;
    QString m_error;
    int m_code = SQLITE_OK;
    int m_statements = 0;
};

QHash<QString, Connection*>& connections();

Statement::~Statement()
{
    // Its connection may have been closed before it (CloseDatabase).
    for (Connection* c : std::as_const(connections()))
        if (c == &m_connection)
            c->run(QStringLiteral("DEALLOCATE ") + QString::fromLatin1(m_name), {}, nullptr);
}

bool Statement::run(const QVector<QVariant>& values)
{
    const Binds b(values);
    PGresult* res = PQexecPrepared(m_connection.conn(), m_name.constData(), int(b.values.size()),
                                   b.values.constData(), nullptr, nullptr, 0);
    return m_connection.take(res, {}, nullptr);
}

bool Statement::runTexts(const QStringList& texts, int marks)
{
    m_binds.encode(texts, marks);
    PGresult* res = PQexecPrepared(m_connection.conn(), m_name.constData(), marks,
                                   m_binds.values(), nullptr, nullptr, 0);
    return m_connection.take(res, {}, nullptr);
}

QHash<QString, Connection*>& connections()
{
    static QHash<QString, Connection*> all;
    return all;
}

} // namespace

DatabaseConnection* PostgresDatabase::open(const QString& connectionInfo)
{
    auto& all = connections();
    if (auto it = all.find(connectionInfo); it != all.end())
        return *it;
    const QByteArray info = connectionInfo.toUtf8() + " connect_timeout=10";
    PGconn* conn = PQconnectdb(info.constData());
    if (PQstatus(conn) != CONNECTION_OK) {
        g_connectError = QString::fromUtf8(PQerrorMessage(conn)).trimmed();
        PQfinish(conn);
        return nullptr;
    }
    PQsetClientEncoding(conn, "UTF8");
    auto c = new Connection(conn);
    c->run(QStringLiteral("SET client_min_messages = warning"), {}, nullptr);
    // The name the other workstations read when this one holds a lock.
    c->run(QStringLiteral("SELECT set_config('application_name', $1, false)"),
           {QSysInfo::machineHostName()}, nullptr);
    c->ensureSupport();
    all.insert(connectionInfo, c);
    return c;
}

QString PostgresDatabase::connectError()
{
    return g_connectError;
}

void PostgresDatabase::closeAll()
{
    qDeleteAll(connections());
    connections().clear();
}
