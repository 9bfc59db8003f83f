#include "PreparedInsert.h"

#include <sqlite3.h>

#include "ErrorLog.h"
#include "Globals.h"
#include "SqliteDatabase.h"
#include "Transaction.h"
#include "ZoAccess.h"

PreparedInsert::~PreparedInsert()
{
    finish();
}

void PreparedInsert::finish()
{
    sqlite3_finalize(m_statement);
    m_statement = nullptr;
    m_sql.clear();
}

bool PreparedInsert::prepare(const QString& sql)
{
    sqlite3* db = SqliteDatabase::connection(gAccess().DatabasePath());
    if (sql == m_sql && db == m_db && m_statement)
        return true;
    finish();
    m_db = db;
    if (!m_db)
        return fail(sql);
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v3(m_db, utf8.constData(), int(utf8.size()), SQLITE_PREPARE_PERSISTENT,
                           &m_statement, nullptr) != SQLITE_OK) {
        finish();
        return fail(sql);
    }
    m_sql = sql;
    return true;
}

bool PreparedInsert::insert(const QString& table, const QStringList& columns,
                            const QStringList& values)
{
    QString sql = QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") +
                  columns.join(u',') + QStringLiteral(") VALUES (");
    for (qsizetype i = 0; i < columns.size(); ++i)
        sql += i == 0 ? QStringLiteral("?") : QStringLiteral(",?");
    sql += u')';
    if (!prepare(sql))
        return false;
    for (int i = 0; i < values.size() && i < columns.size(); ++i) {
        const QByteArray utf8 = values.at(i).toUtf8();
        sqlite3_bind_text(m_statement, i + 1, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
    const bool done = sqlite3_step(m_statement) == SQLITE_DONE;
    if (!done)
        fail(sql);
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
    return done;
}

bool PreparedInsert::fail(const QString& sql)
{
    const int code = m_db ? sqlite3_extended_errcode(m_db) : SQLITE_CANTOPEN;
    const QString engine =
        m_db ? QString::fromUtf8(sqlite3_errmsg(m_db))
             : QStringLiteral("No se pudo abrir la base de datos ") + gAccess().DatabasePath();
    m_failure = SaveFailureText(code, engine);
    LogError(QStringLiteral("SQL"), engine + u'\n' + sql, QStringLiteral("PreparedInsert"));
    return false;
}
