#pragma once

// The tables of the database.

// Creates, in a database that holds no table yet, the tables that came with
// the installed database (their level before the upgrades) and the catalogue
// rows. Does nothing to a database that has tables, and nothing to a file that
// is not a database. False when the tables could not be made.
bool EnsureBaseSchema();

// The indices on the keys the forms and the tree filter by; they change no
// result and keep large files fast. Safe to run on every start.
void EnsureIndices();

// What a first start does to the database of the data folder, without
// windows: base tables, upgrades, indices (tests and benchmarks).
void CreateCurrentDatabase();
