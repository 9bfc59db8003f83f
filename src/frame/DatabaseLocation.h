#pragma once

#include <QString>

// Where this workstation's database lives: the file of the data folder (the
// default, with nothing to set up), or a firm's PostgreSQL server shared by
// several workstations. Kept per workstation in the settings; the password
// never is: it lives in the person's ~/.pgpass (or the desktop's keyring),
// where the server's client library looks for it.
struct DatabaseLocation {
    enum class Kind { File, Server };

    Kind kind = Kind::File;
    QString host; // a name, an address, or a socket folder
    int port = 5432;
    QString database; // the server's database
    QString user;

    bool isServer() const { return kind == Kind::Server; }
    // The client library's connection text for a server:
    // "host='...' port=... dbname='...' user='...'" (values quoted as it
    // expects); empty for a file.
    QString connectionInfo() const;
    // What the person reads in messages and titles: "base en servidor:puerto
    // (usuario)", or the path of the file.
    QString describe() const;

    bool operator==(const DatabaseLocation&) const = default;

    // The location in force: the settings' choice, the data folder's file
    // while none was made. MORVEL_DATABASE_SERVER (a connection text) puts a
    // run on a server without touching the settings, as the tests do.
    static DatabaseLocation current();
    // Keeps the choice for the next runs (the gateway reopens on it after
    // CloseDatabase).
    static void setCurrent(const DatabaseLocation& location);
    // A server location read from a connection text of the client library
    // ("host=... port=... dbname=... user=..."); unknown keys are ignored.
    static DatabaseLocation fromConnectionInfo(const QString& text);
};
