#pragma once

#include <QString>

#include "DatabaseConnection.h"

// The one connection to each PostgreSQL database, kept open for the whole run
// and shared by every gateway instance, as for files; closed by CloseDatabase
// and at the end.
//
// On connecting, what the translated statements need is made once per
// database, under a lock so that two workstations starting together do not
// trip over each other: the CITEXT type (text compared without regard to case
// for every letter of Spanish, LIKE too, with the server's UTF-8 locale) and
// Jet's INSTR and IIF as functions.
class PostgresDatabase
{
public:
    // The connection for a connection text of the client library; nullptr
    // when the server cannot be reached (connectError() tells why). A later
    // call tries again.
    static DatabaseConnection* open(const QString& connectionInfo);
    // The server's message for the last connection that failed.
    static QString connectError();
    static void closeAll();
};
