#pragma once

#include <QString>

#include "DatabaseLocation.h"

// The person's password file of the PostgreSQL client library: the file
// named by PGPASSFILE, else ~/.pgpass. Each line is
// "host:port:database:user:password", with ":" and "\" escaped by "\"; the
// library reads it only when nobody but its owner may (mode 0600). The
// program keeps a server's password there and never in its own settings.
namespace PgPass {

QString FilePath();

// A field of a line, its ":" and "\" escaped.
QString Escape(const QString& field);

// The line for a server location. An empty host is the library's default,
// "localhost"; an empty user, the login name of the person.
QString Line(const DatabaseLocation& location, const QString& password);

// Keeps `password` for the location: the line for the same host, port,
// database and user is replaced, every other line stays as it was, and the
// file is written whole with mode 0600. False, with why in `reason`, when it
// cannot be written (nothing changes then).
bool Store(const DatabaseLocation& location, const QString& password, QString* reason = nullptr);

} // namespace PgPass
