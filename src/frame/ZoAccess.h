#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include "DatabaseConnection.h"
#include "Recordset.h"

#include <memory>

class Controller;
class Field;

// The one door to the database: SQL text of the Jet dialect in, results out.
// Failures are swallowed as the callers expect (a failed statement returns its
// default), and each is written to the daily error log.
class ZoAccess
{
public:
    ZoAccess() = default;

    // "Provider=...;Data Source={folder}/Morvel.db;..." read as a parameter
    // string; the default points at the database of the data folder.
    QString ConnectionString() const;
    void SetConnectionString(const QString& text) { m_connectionString = text; }
    QStringList Parameters() const { return m_parameters; }
    void SetParameters(const QStringList& values) { m_parameters = values; }
    bool ShowMessageError() const { return m_showMessageError; }
    void SetShowMessageError(bool on) { m_showMessageError = on; }
    // The database file the connection string names (for a server, its
    // connection text).
    QString DatabasePath() const;
    // Whether the connection string names a PostgreSQL server.
    bool OnServer() const;

    bool Execute(const QString& sql);
    bool ExecuteNonQuery(const QString& sql, QStringList& parameters);
    void ExecuteReader(const QString& sql) {}
    bool DeleteRecord(const QString& sql, bool confirm);
    RecordsetPtr FillRecordSet(const QString& sql);
    RecordsetPtr FillRecordSetReader(const QString& sql);
    // Reads as FillRecordSet does, but hands each row to `reader` as texts as
    // it comes, without holding the rows: what a large read that makes its
    // own objects of the rows needs. False on failure (told as FillRecordSet
    // tells it), when the rows handed over may be only part of the result.
    bool ReadTexts(const QString& sql, const TextRowReader& reader);
    RecordsetPtr FillRecordSetReaderWP(const QString& sql, const QStringList& parameters);

    QString GetString(const QString& sql);
    int GetInteger(const QString& sql);
    qint32 GetLong(const QString& sql);
    double GetDouble(const QString& sql);
    bool GetBoolean(const QString& sql);
    QVariant GetMax(const QString& table, const QString& field);

    bool FillComboBox(const QString& sql, Field& combo, const QString& selected);
    bool FillComboBoxField(const QString& sql, Field& combo);
    bool FillComboBoxAnios(const QString& sql, Field& combo, const QString& selected);
    bool FillComboBoxMes(const QString& sql, Field& combo, const QString& year);
    bool FillListBox(const QString& sql, Field& list);
    bool FillListView(const QString& sql, Field& listView);
    bool FillTreeView(const QString& sql, Field& tree);
    bool FillTreeViewData(const QString& sql, Field& tree);
    bool FillVectorIdName(const QString& sql, QVector<QStringList>& vector);
    bool FillForm(const QString& sql, Controller& form, RecordsetPtr rs = nullptr);

    void ShowError();
    void Dispose();

    // Statements that group others (SAVEPOINT, RELEASE, ROLLBACK), run as
    // written; a failure is logged like any other. Transactions are opened
    // and ended by a Transaction, never by hand.
    bool RunControl(const QString& sql);

    // Failed statements of this run, on every gateway, for a Transaction to
    // tell whether its own statements all passed.
    static int FailureCount() { return s_failureCount; }
    // The engine's result code and message of the last failure.
    static int LastErrorCode() { return s_lastErrorCode; }
    static QString LastError() { return s_lastError; }

    // A statement of the Jet dialect prepared once, to be run many times with
    // values bound in the order of its "?" marks (an import's lines); nullptr
    // when the database refused it (logged, and told by LastError()). A failed
    // run is logged and counted like any other statement's.
    class Prepared
    {
    public:
        Prepared(ZoAccess& db, std::unique_ptr<PreparedStatement> statement, QString sql);
        ~Prepared();
        bool run(const QVector<QVariant>& values);
        // Runs it with `texts` bound as text and the marks past them, up to
        // `marks`, as Null.
        bool runTexts(const QStringList& texts, int marks);

    private:
        bool failed();

        ZoAccess& m_db;
        std::unique_ptr<PreparedStatement> m_statement;
        QString m_sql;
    };
    std::unique_ptr<Prepared> Prepare(const QString& sql);

    // The names of the tables of the database, as they were created; ok is
    // false when it cannot be read.
    QStringList TableNames(bool* ok = nullptr);
    // What the database was found to be (new, this program's, another
    // program's, unreadable), whether it can only be read, and its marking as
    // this program's.
    DatabaseConnection::Kind DatabaseKind();
    bool ReadOnly();
    bool MarkAsOwn();
    // What the person reads of where the database lives: the file's path, or
    // "base en servidor:puerto (usuario)".
    QString Describe() const;

    // --- Numbers that two workstations never share ---------------------------
    //
    // Inside an open unit of work (a Transaction), reserves the handing out of
    // new numbers among the rows of `table` that `scope` selects (a condition;
    // "" for the whole table) until the unit ends. Another workstation that
    // asks for the same waits its turn and then sees the rows this one
    // inserted, so that reading the highest number and inserting the next are
    // one step. On a server the reservation is the server's lock on that
    // name; on a file the unit is taken for writing at once (it must not have
    // read anything yet). False when it could not be taken (logged).
    bool ReserveKeys(const QString& table, const QString& scope = {});
    // The next number of `column` among the rows `scope` selects in `table`,
    // reserved as above: one more than the highest by value (a text that is
    // not a number counts as 0), 1 for the first. -1 when it could not be read.
    qint64 NextKey(const QString& table, const QString& column, const QString& scope = {});

    DatabaseConnection* connection();

private:
    // Runs a statement of the Jet dialect; false on failure, with the failure
    // remembered for ShowError and written to the daily log.
    bool run(const QString& sql, const QVector<QVariant>& binds, QueryResult* result);
    // The same, with the last of the statements the translation gives run by
    // `last` on the connection.
    using LastStatement = std::function<bool(DatabaseConnection&, const QString&)>;
    bool run(const QString& sql, const LastStatement& last);
    RecordsetPtr read(const QString& sql, const QVector<QVariant>& binds);
    // First column of the first row: nullopt when there is no row or it
    // failed; a null QVariant for Null.
    bool firstValue(const QString& sql, QVariant& value);
    void noteFailure(DatabaseConnection* db, const QString& error, const QString& sql);
    QString openFailure() const;

    // The connection string last read and what it names.
    struct Target {
        QString text;
        QString path;
        bool server = false;
        bool read = false;
    };
    const Target& target() const;
    mutable Target m_target;

    QString m_connectionString;
    QStringList m_parameters;
    bool m_showMessageError = false;
    QString m_lastError;
    bool m_failed = false;
    RecordsetPtr m_recordset;

    static int s_failureCount;
    static int s_lastErrorCode;
    static QString s_lastError;
};

// The text of the gateway's default connection string for a database file.
// The data folder's database stands for this workstation's database, wherever
// it lives: on a server, the string names the server.
QString DefaultConnectionString(const QString& databasePath);

// Closes every open database (files and servers), and reads again where this
// workstation's database lives.
void CloseAllConnections();
