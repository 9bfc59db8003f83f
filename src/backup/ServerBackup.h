#pragma once

#include <QString>

#include "DatabaseLocation.h"

// Copies of a database that lives on a firm's PostgreSQL server. The server's
// own client programs do the work: pg_dump writes an archive of its custom
// format, pg_restore puts one back into the same database in a single
// transaction, so that a restore that fails half-way leaves the database as
// it was. The archives sit in the folder of the backups beside the file
// copies, named as they are with ".dump" behind the stamp; the schedule and
// the purge treat them alike. The password comes from the person's
// ~/.pgpass (or PGPASSFILE), never from the program.
namespace ServerBackup {

// True when this workstation's database is on a server.
bool InUse();

// "Morvel." {yyyymmddHHmmss} ".dump".
QString FileName(const QString& stamp);
// True when `name` is "Morvel." with a stamp of 14 digits and ".dump".
bool IsArchiveName(const QString& name);
// The copies the backup windows offer for the database in use: server
// archives on a server, file copies on the data folder's file.
bool IsListedName(const QString& name);

// Writes an archive of the database at `location` to `target`, which takes
// the archive whole or is not written at all. False, with why in Spanish in
// `reason`, when the server, the program or the disk fail.
bool Dump(const DatabaseLocation& location, const QString& target, QString* reason = nullptr);

// Puts the content of `archive` back into the database at `location`: its
// tables are dropped and written again from the archive, all in one
// transaction. An archive that is damaged or holds no database of this
// system is refused before anything is touched. False, with why in
// `reason`, when nothing was changed.
bool Restore(const DatabaseLocation& location, const QString& archive, QString* reason = nullptr);

// The backup of the database in use into the folder of the backups, under
// the stamp of now; stores the stamp and the folder as a file backup does.
// Failures are written to the error log and leave the settings untouched.
bool BackupDatabase();
// Why the last backup of a server's database failed, in the person's words;
// empty after one that was made.
QString LastFailure();
// The restore of the database in use from `file`, the main window refreshed
// afterwards.
bool RestoreDatabase(const QString& file, QString* reason);

// What the server or its client programs said, in the person's words: the
// known causes (no server there, a missing database, a wrong password, a
// full disk, a damaged archive) in Spanish, anything else as said.
QString FailureText(const QString& said);

} // namespace ServerBackup
