#include "SqlHelpers.h"

#include "SqlText.h"
#include "ZoAccess.h"

bool RunChecked(ZoAccess& db, const QString& sql)
{
    return db.DeleteRecord(sql, false);
}

QString TableExists(ZoAccess& db, const QString& table)
{
    // Jet names ignore case.
    bool ok = false;
    const QStringList tables = db.TableNames(&ok);
    if (!ok)
        return {};
    return tables.contains(table, Qt::CaseInsensitive) ? QStringLiteral("1") : QStringLiteral("0");
}

QString ColumnExists(ZoAccess& db, const QString& table, const QString& column)
{
    const QString exists = TableExists(db, table);
    if (exists != QLatin1String("1"))
        return exists;
    return TableColumns(db, table).contains(column, Qt::CaseInsensitive) ? QStringLiteral("1")
                                                                          : QStringLiteral("0");
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
    bool ok = false;
    const QStringList tables = db.TableNames(&ok);
    return ok ? QString::number(tables.size()) : QString();
}
