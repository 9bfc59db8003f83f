#pragma once

#include <QString>

// Appends one record to the daily error log {gAppPath}/Errores_{date}.txt:
// date and time, the source when given, the number, the description and a
// line of asterisks.
void LogError(const QString& number, const QString& description, const QString& source);

// The path of today's log.
QString ErrorLogPath();
