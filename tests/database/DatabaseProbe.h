#pragma once

#include <QStringList>

#include "Globals.h"
#include "ZoAccess.h"

// Reads a test database back: its tables, their columns and every row.
namespace Probe {

inline QStringList tables()
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(
        "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

inline QStringList columns(const QString& table)
{
    RecordsetPtr rs = gAccess().FillRecordSet("SELECT * FROM " + table + " WHERE 1 = 0");
    return rs ? rs->FieldNames() : QStringList();
}

// Every row of every table, Null told apart from the empty text.
inline QString dump()
{
    QString out;
    for (const QString& table : tables()) {
        out += "[" + table + "] " + columns(table).join('|') + "\n";
        RecordsetPtr rs = gAccess().FillRecordSet("SELECT * FROM " + table + " ORDER BY rowid");
        for (; rs && !rs->EOF_(); rs->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < rs->FieldCount(); ++i)
                cells << (rs->IsNull(i) ? QStringLiteral("<null>") : rs->Text(i));
            out += cells.join('|') + "\n";
        }
    }
    return out;
}

inline QString one(const QString& sql)
{
    return gAccess().GetString(sql);
}

} // namespace Probe
