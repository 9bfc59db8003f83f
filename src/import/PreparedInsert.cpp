#include "PreparedInsert.h"

#include "Globals.h"
#include "Transaction.h"

bool PreparedInsert::insert(const QString& table, const QStringList& columns,
                            const QStringList& values)
{
    QString sql = QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") +
                  columns.join(u',') + QStringLiteral(") VALUES (");
    for (qsizetype i = 0; i < columns.size(); ++i)
        sql += i == 0 ? QStringLiteral("?") : QStringLiteral(",?");
    sql += u')';
    ZoAccess& db = gAccess();
    DatabaseConnection* connection = db.connection();
    if (sql != m_sql || connection != m_connection || !m_statement) {
        m_statement.reset(); // before a new one is prepared on the same connection
        m_statement = db.Prepare(sql);
        m_connection = connection;
        m_sql = m_statement ? sql : QString();
        if (!m_statement)
            return fail();
    }
    QVector<QVariant> binds;
    binds.reserve(columns.size());
    for (int i = 0; i < columns.size(); ++i)
        binds.push_back(i < values.size() ? QVariant(values.at(i)) : QVariant());
    return m_statement->run(binds) || fail();
}

bool PreparedInsert::fail()
{
    m_failure = SaveFailureText(ZoAccess::LastErrorCode(), ZoAccess::LastError());
    return false;
}
