#pragma once

#include <QString>
#include <QStringList>

#include "SqlText.h"

class ZoAccess;

// Small routines the schema steps share.

// Runs one statement and tells whether it ran. The gateway's Execute answers
// True whatever happens, as the old one did; DeleteRecord without its question
// runs any statement and does report a failure (already written to the daily
// log). Used where a step must know, to stop or to roll back.
bool RunChecked(ZoAccess& db, const QString& sql);

// "1" when the table exists, "0" when it does not, "" when the file
// cannot be read at all (it is not a database).
QString TableExists(ZoAccess& db, const QString& table);

// "1" when the table has the column, "0" when not (or there is no such
// table), "" when the file cannot be read.
QString ColumnExists(ZoAccess& db, const QString& table, const QString& column);

// The names of the columns of a table, in their order; empty when the table
// is missing or cannot be read.
QStringList TableColumns(ZoAccess& db, const QString& table);

// The number of tables in the file: "0" for an empty database, "" for a file
// that is not a database.
QString TableCount(ZoAccess& db);
