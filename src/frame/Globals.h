#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class ZoAccess;
class ZoParameterString;
class Validar;

// The application's globals, shared by every routine.

// The data folder (the old program's own folder), without a final "/".
extern QString gAppPath;
// The one scratch buffer for composing SQL; it carries nothing between
// routines.
extern QString gSql;
// The decimal symbol of the regional settings.
extern QString gDecimalSymbol;
// Column titles of import files, with and without accents.
extern QStringList gImportNames;
extern QStringList gImportNamesPlain;

// Created on first use; CloseDatabase drops gAccess.
ZoAccess& gAccess();
ZoParameterString& gParameters();
Validar& gValidar();

// Sets the data folder of this run (the program's: the user's data location;
// tests and benchmarks: a folder of their own) and creates it.
void SetAppPath(const QString& folder);

// The path of the database file: {gAppPath}/Morvel.db.
QString DatabasePath();

// The folder of the program's assets (catalogue seed, help, report layouts).
QString AssetsPath();

// Releases the shared gateway and what the subsystems keep of the open
// database (each registers that once with OnCloseDatabase), and closes the
// database file, before a backup or restore works on it.
void CloseDatabase();
void OnCloseDatabase(std::function<void()> release);
