#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>
#include <optional>

#include "JetSql.h"

// Rows read at once from a statement, as the client-side cursor needs them.
struct QueryResult {
    QStringList columns;
    QVector<QVector<QVariant>> rows;
};

// One row of a read, handed over while the engine holds it: each column's
// text as a Recordset's Text() reads the same value (Null gives ""), without
// packing the row into QVariants first. Valid only during the call that
// hands it over.
class TextRow
{
public:
    virtual ~TextRow() = default;
    virtual QString text(int column) const = 0;
    // The same text, but `same` itself when the value reads as it: a value
    // that repeats from row to row is then decoded and held only once.
    virtual QString sharedText(int column, const QString& same) const
    {
        QString read = text(column);
        return read == same ? same : read;
    }
    virtual bool isNull(int column) const = 0;
    // The value when the engine holds a whole number there (not a text that
    // reads as one); nullopt otherwise.
    virtual std::optional<qint64> integer(int column) const = 0;
    // The result's column names, in their order (in the engine's spelling).
    virtual QStringList columns() const = 0;
};
using TextRowReader = std::function<void(const TextRow&)>;

// One statement prepared once and run many times with its values bound (the
// lines of an import). A failure leaves its message on the connection.
class PreparedStatement
{
public:
    virtual ~PreparedStatement() = default;
    // Runs the statement with `values` bound in order; "" is bound as the
    // empty text, a null QVariant as Null.
    virtual bool run(const QVector<QVariant>& values) = 0;
    // Runs it with `texts` bound in order as text and the marks past them,
    // up to `marks`, as Null: what run() binds for the same QString values,
    // without wrapping each in a QVariant (the lines of an import are text).
    virtual bool runTexts(const QStringList& texts, int marks) = 0;
};

// The UTF-8 bytes of texts to bind, written into one buffer kept from run to
// run, so that binding a line allocates nothing once the buffer has grown.
class Utf8Binds
{
public:
    // Encodes the first `marks` of `texts` (those past its end count as Null).
    void encode(const QStringList& texts, int marks);
    // The bytes of bind `i`, 0-terminated; nullptr for Null.
    const char* value(int i) const { return m_values.at(i); }
    int length(int i) const { return m_lengths.at(i); }
    const char* const* values() const { return m_values.constData(); }

private:
    QByteArray m_buffer;
    QVector<const char*> m_values;
    QVector<int> m_lengths;
};

// An open database under the gateway: the data folder's SQLite file or a
// firm's PostgreSQL server. The gateway translates the system's Jet dialect
// for it (dialect()) and hands it statements of its own dialect; nothing above
// the gateway knows which one it talks to.
class DatabaseConnection
{
public:
    // What the database was found to be when it was opened.
    enum class Kind {
        New,       // no table yet: this program makes its own there
        Own,       // this program's database: marked, or holding its tables
        Foreign,   // another program's database
        Unreadable // not a database, damaged, or a server that cannot be reached
    };

    virtual ~DatabaseConnection() = default;

    virtual JetDialect dialect() const = 0;
    // Runs one statement of the connection's own dialect; false on failure,
    // with lastError() and lastErrorCode() telling why.
    virtual bool run(const QString& sql, const QVector<QVariant>& binds, QueryResult* result) = 0;
    // Runs a read of the connection's own dialect, handing each row to
    // `reader` as it comes; false on failure (rows already handed over may
    // then be only part of the result).
    virtual bool readTexts(const QString& sql, const TextRowReader& reader) = 0;
    virtual std::unique_ptr<PreparedStatement> prepare(const QString& sql) = 0;
    // The engine's message of the last failure, and its code in SQLite's
    // numbering (SQLITE_FULL, SQLITE_READONLY, SQLITE_BUSY...), so that a
    // failed save is told in the same words on both.
    virtual QString lastError() const = 0;
    virtual int lastErrorCode() const = 0;

    virtual Kind kind() = 0;
    // Whether nothing can be written (a read-only file, another program's
    // database, a server that only lets this person read).
    virtual bool readOnly() = 0;
    // Marks the database as this program's; false when it could not be done.
    virtual bool markAsOwn() = 0;
    // The names of the tables, as they were created; nullopt-like empty with
    // ok = false when the database cannot be read.
    virtual QStringList tableNames(bool* ok) = 0;
    // Whether a transaction is open on the connection.
    virtual bool inTransaction() = 0;

    // The unit (savepoint) that opened the transaction on a server, which
    // commits it when released; the gateway keeps it.
    QString outermostUnit;
};
