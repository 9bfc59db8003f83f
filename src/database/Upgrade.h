#pragma once

#include <QString>

class ProgressWindow;
class ZoAccess;

// Brings a database of any older level to the current one, on every start.
void VerifyDatabase(const QString& databasePath, ProgressWindow& splash);
void VerifyDatabase(ZoAccess& db, ProgressWindow& splash);
// The one-time rewrite of dotted amounts into the comma form ("PuntoPorComa").
void ApplyUpgrades(ProgressWindow& splash);
void ApplyUpgrades(ZoAccess& db, ProgressWindow& splash);
// Adds the Guidv column to the eight declaration tables, once ("GUID").
void UpgradeAddGuidColumns();
void UpgradeAddGuidColumns(ZoAccess& db);

// "1,234.50" -> "1.234,50": commas out, dots to commas, two decimals in the
// regional format.
QString CommaDecimalFromDotted(const QString& text);
