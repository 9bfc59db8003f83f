#pragma once

// The tables of the database.

#include <QString>

class ZoAccess;

// Whether the database of the data folder is one this program may use: a new
// one or its own. Another program's database, or a file that is not a
// database, is never written: the person is told, naming the file, and the
// answer is false, for the run to end.
bool IsOwnDatabase();
// Whether the database can be written. When it can only be read (a file or
// folder marked read-only), the person is told that nothing will be saved.
bool WritableDatabase();
// Marks the database as this program's, new and upgraded alike; run after
// the upgrades, so that a database stopped half way is upgraded again.
void MarkDatabase();
void MarkDatabase(ZoAccess& db);

// Creates, in a database that holds no table yet, the tables that came with
// the installed database (their level before the upgrades) and the catalogue
// rows. Does nothing to a database that has tables, and nothing to a file that
// is not a database. False when the tables could not be made.
bool EnsureBaseSchema();
bool EnsureBaseSchema(ZoAccess& db);

// The indices on the keys the forms and the tree filter by; they change no
// result and keep large files fast. Safe to run on every start.
void EnsureIndices();
void EnsureIndices(ZoAccess& db);

// What a first start does to the database of the data folder, without
// windows: base tables, upgrades, indices (tests and benchmarks).
void CreateCurrentDatabase();
// The same on the database `db` names, which need not be the workstation's
// (a copy being made of it elsewhere).
void CreateCurrentDatabase(ZoAccess& db);
