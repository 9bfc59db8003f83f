#pragma once

#include <QString>

// Parameter strings: the flat "key=value;" text by which the screens give each
// other their orders. The rules of reading and setting are positional and
// deliberately loose (keys are found as substrings, first occurrence wins);
// callers depend on that, so both routines keep it exactly.

// The value of `key`, or "" when it cannot be read.
QString ReadParameter(QString parameters, const QString& key);

// The string with the value of `key` replaced; the string with ";" appended
// and otherwise unchanged when the key cannot be set.
QString SetParameter(QString parameters, const QString& key, const QString& value);
