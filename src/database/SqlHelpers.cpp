#include "SqlHelpers.h"

#include "SqlText.h"
#include "ZoAccess.h"

QString SqlQuoted(const QString& text)
{
    return u'\'' + Sq(text) + u'\'';
}

bool RunChecked(ZoAccess& db, const QString& sql)
{
    return db.DeleteRecord(sql, false);
}

QString TableExists(ZoAccess& db, const QString& table)
{
    // sqlite_master keeps the name as written; Jet names ignore case.
    return db.GetString(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' "
                                       "AND name = ") +
                        SqlQuoted(table) + QStringLiteral(" COLLATE NOCASE"));
}

QString ColumnExists(ZoAccess& db, const QString& table, const QString& column)
{
    return db.GetString(QStringLiteral("SELECT COUNT(*) FROM pragma_table_info(") +
                        SqlQuoted(table) + QStringLiteral(") WHERE name = ") + SqlQuoted(column) +
                        QStringLiteral(" COLLATE NOCASE"));
}

QStringList TableColumns(ZoAccess& db, const QString& table)
{
    if (TableExists(db, table) != QLatin1String("1"))
        return {};
    RecordsetPtr rs =
        db.FillRecordSet(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE 1 = 0"));
    if (!rs)
        return {};
    const QStringList names = rs->FieldNames();
    db.Dispose();
    return names;
}

QString TableCount(ZoAccess& db)
{
    return db.GetString(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type='table'"));
}
