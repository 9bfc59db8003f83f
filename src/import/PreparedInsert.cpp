#include "PreparedInsert.h"

#include "Globals.h"
#include "Transaction.h"

bool PreparedInsert::insert(const QString& table, const QStringList& columns,
                            const QStringList& values)
{
    ZoAccess& db = gAccess();
    DatabaseConnection* connection = db.connection();
    // The lines of one import repeat the same table and columns: the
    // statement is made again only when they or the database change.
    if (table != m_table || columns != m_columns || connection != m_connection || !m_statement) {
        QString sql = QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") +
                      columns.join(u',') + QStringLiteral(") VALUES (");
        for (qsizetype i = 0; i < columns.size(); ++i)
            sql += i == 0 ? QStringLiteral("?") : QStringLiteral(",?");
        sql += u')';
        m_statement.reset(); // before a new one is prepared on the same connection
        m_statement = db.Prepare(sql);
        m_connection = connection;
        m_table = m_statement ? table : QString();
        m_columns = m_statement ? columns : QStringList();
        if (!m_statement)
            return fail();
    }
    return m_statement->runTexts(values, int(columns.size())) || fail();
}

bool PreparedInsert::fail()
{
    m_failure = SaveFailureText(ZoAccess::LastErrorCode(), ZoAccess::LastError());
    return false;
}
