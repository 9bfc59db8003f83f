#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

struct sqlite3;

// The one connection to each database file, kept open for the whole run and
// shared by every gateway instance; closed by CloseDatabase and at the end.
class SqliteDatabase
{
public:
    // The connection to the file, opened on first use; nullptr when it cannot
    // be opened. A file that is missing is created empty.
    static sqlite3* connection(const QString& path);
    // Closes every connection, folding the write-ahead journal back into the
    // file so that the file alone is the whole database.
    static void closeAll();
    static void close(const QString& path);
};

// Rows read at once from a statement, as the client-side cursor needs them.
struct QueryResult {
    QStringList columns;
    QVector<QVector<QVariant>> rows;
};

// Runs one SQLite statement with optional bound values; false and the
// engine's message on failure.
bool RunSqlite(sqlite3* db, const QString& sql, const QVector<QVariant>& binds,
               QueryResult* result, QString* error);
