#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include "DatabaseConnection.h"

struct sqlite3;

// The one connection to each database file, kept open for the whole run and
// shared by every gateway instance; closed by CloseDatabase and at the end.
//
// Every connection compares text as Jet did, without regard to case for every
// letter of Spanish: NOCASE, LIKE, UPPER and LOWER fold accented letters and
// Ñ too. A file is looked at before it is opened for writing: only a new
// database or this program's own is ever written; another program's
// database, a file that is not a database, and a database marked read-only
// are opened for reading only, with nothing written beside them.
class SqliteDatabase
{
public:
    // The mark this program leaves in the header of its databases
    // (PRAGMA application_id): "MRVL".
    static constexpr int kApplicationId = 0x4D52564C;

    using Kind = DatabaseConnection::Kind;

    // The gateway's connection to the file, opened on first use and kept;
    // nullptr when the file cannot be opened.
    static DatabaseConnection* open(const QString& path);
    // The connection to the file, opened on first use; nullptr when it cannot
    // be opened. A file that is missing is created empty.
    static sqlite3* connection(const QString& path);
    // What the file was found to be when its connection was opened.
    static Kind kind(const QString& path);
    // What the file is, found now without writing anything and without
    // opening the gateway's connection (a backup about to be restored).
    static Kind classify(const QString& path);
    // Whether the connection can only read (a read-only file or folder, or a
    // file that is not this program's).
    static bool readOnly(const QString& path);
    // Marks the database as this program's. Indices on text that were sorted
    // before the mark, by the engine's own ASCII-only folding, are sorted
    // again so that they find every letter. False when it could not be done.
    static bool markAsOwn(const QString& path);
    // Closes every connection, folding the write-ahead journal back into the
    // file so that the file alone is the whole database.
    static void closeAll();
    static void close(const QString& path);
};

// Runs one SQLite statement with optional bound values; false and the
// engine's message on failure.
bool RunSqlite(sqlite3* db, const QString& sql, const QVector<QVariant>& binds, QueryResult* result,
               QString* error);

// Runs one SQLite read, handing each row to `reader` as texts; false and the
// engine's message on failure.
bool ReadSqliteTexts(sqlite3* db, const QString& sql, const TextRowReader& reader, QString* error);
