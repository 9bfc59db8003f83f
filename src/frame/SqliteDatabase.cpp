#include "SqliteDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <sqlite3.h>

namespace {

QHash<QString, sqlite3*>& connections()
{
    static QHash<QString, sqlite3*> all;
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

void registerFunctions(sqlite3* db)
{
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
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
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(st, i)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(st, i));
    case SQLITE_BLOB:
        return QVariant(QByteArray(reinterpret_cast<const char*>(sqlite3_column_blob(st, i)),
                                   sqlite3_column_bytes(st, i)));
    default:
        return QVariant(QString::fromUtf8(
            reinterpret_cast<const char*>(sqlite3_column_text(st, i)), sqlite3_column_bytes(st, i)));
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

sqlite3* SqliteDatabase::connection(const QString& path)
{
    const QString key = QFileInfo(path).absoluteFilePath();
    auto& all = connections();
    if (auto it = all.find(key); it != all.end())
        return *it;
    QDir().mkpath(QFileInfo(key).absolutePath());
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(key.toUtf8().constData(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, 5000);
    registerFunctions(db);
    // Both fail harmlessly on a file that is not a database, which is then
    // left exactly as it is.
    sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    sqlite3_exec(db, "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
    all.insert(key, db);
    return db;
}

void SqliteDatabase::close(const QString& path)
{
    const QString key = QFileInfo(path).absoluteFilePath();
    if (sqlite3* db = connections().take(key))
        sqlite3_close_v2(db);
}

void SqliteDatabase::closeAll()
{
    for (sqlite3* db : std::as_const(connections()))
        sqlite3_close_v2(db);
    connections().clear();
}

bool RunSqlite(sqlite3* db, const QString& sql, const QVector<QVariant>& binds,
               QueryResult* result, QString* error)
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
    const int columns = sqlite3_column_count(st);
    if (result) {
        result->columns.clear();
        result->rows.clear();
        for (int i = 0; i < columns; ++i)
            result->columns << QString::fromUtf8(sqlite3_column_name(st, i));
    }
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        if (!result)
            continue;
        QVector<QVariant> row;
        row.reserve(columns);
        for (int i = 0; i < columns; ++i)
            row.push_back(columnValue(st, i));
        result->rows.push_back(std::move(row));
    }
    const bool ok = rc == SQLITE_DONE;
    if (!ok && error)
        *error = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(st);
    return ok;
}
