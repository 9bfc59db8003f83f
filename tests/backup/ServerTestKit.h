#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QtTest>
#include <libpq-fe.h>

#include "DatabaseLocation.h"

// The tests' own PostgreSQL server (MORVEL_TEST_PG, started by the CTest
// fixture "postgres"): databases of a test's own on it, and plain SQL run
// on them through the client library, apart from the program.
namespace ServerKit {

inline DatabaseLocation admin()
{
    return DatabaseLocation::fromConnectionInfo(qEnvironmentVariable("MORVEL_TEST_PG"));
}

// Runs `sql` (statements separated by ";") on the database at `location`;
// the first column of the rows of the last statement.
inline QStringList run(const DatabaseLocation& location, const QString& sql, bool* ok = nullptr)
{
    QStringList rows;
    PGconn* connection = PQconnectdb(location.connectionInfo().toUtf8().constData());
    bool good = PQstatus(connection) == CONNECTION_OK;
    if (good) {
        PGresult* result = PQexec(connection, sql.toUtf8().constData());
        const ExecStatusType status = PQresultStatus(result);
        good = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
        if (!good)
            qWarning("%s: %s", qPrintable(sql), PQresultErrorMessage(result));
        for (int i = 0; i < PQntuples(result); ++i)
            rows << QString::fromUtf8(PQgetvalue(result, i, 0));
        PQclear(result);
    } else {
        qWarning("%s", PQerrorMessage(connection));
    }
    PQfinish(connection);
    if (ok)
        *ok = good;
    return rows;
}

// A database of the test's own on the server, under a name no other test
// run takes; dropped when it goes.
class Scratch
{
public:
    Scratch()
    {
        static int count = 0;
        m_name = QStringLiteral("morvel_admin_%1_%2")
                     .arg(QCoreApplication::applicationPid())
                     .arg(++count);
        run(admin(), "CREATE DATABASE " + m_name, &m_ok);
    }
    ~Scratch() { run(admin(), "DROP DATABASE IF EXISTS " + m_name + " WITH (FORCE)"); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    bool ok() const { return m_ok; }
    const QString& name() const { return m_name; }
    DatabaseLocation location() const
    {
        DatabaseLocation location = admin();
        location.database = m_name;
        return location;
    }
    QStringList query(const QString& sql) const { return run(location(), sql); }
    bool exec(const QString& sql) const
    {
        bool ok = false;
        run(location(), sql, &ok);
        return ok;
    }

private:
    QString m_name;
    bool m_ok = false;
};

} // namespace ServerKit

// The tests of this file need the tests' server.
#define REQUIRE_SERVER()                                                                           \
    if (qEnvironmentVariableIsEmpty("MORVEL_TEST_PG"))                                             \
    QSKIP("MORVEL_TEST_PG is not set: the test runs under CTest with the postgres fixture")
