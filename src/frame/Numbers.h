#pragma once

#include <QString>
#include <optional>

// Conversions between text and numbers as the old runtime made them, with the
// symbols of the regional settings.

// Text to number under the regional settings: blanks around, a sign, group
// symbols in the whole part, one decimal symbol, an exponent. nullopt when the
// text is not numeric (the old IsNumeric false, CDbl failing).
std::optional<double> LocaleNumber(const QString& text);
bool IsNumericText(const QString& text);

// The leading numeric part of a text, "." as the decimal, 0 when none
// ("12 abc" gives 12).
double Val(const QString& text);

// Rounds to the nearest integer, halves to the even one (the old CInt, CLng).
std::optional<qint64> RoundToEven(double value);

// Amounts are counted in cents, and a double counts whole cents exactly only
// up to 2^53 of them (about ninety trillion pesos). An amount beyond that is
// no amount of a declaration: it is refused before it is rounded, since its
// cents would no longer be whole, nor fit the integer that counts them.
bool IsAmountInRange(double value);
// The amount in whole cents, rounded half away from zero; nullopt when it is
// not finite or beyond the range above.
std::optional<qint64> AmountCents(double value);

// Rounds a decimal figure to `decimals` places, halves away from zero, on its
// decimal value: 1.005 gives 1.01 and 2.675 gives 2.68, as a calculator does.
double RoundDecimal(double value, int decimals);

// The figure with `decimals` places: "." decimal, no groups ("1234.50").
QString PlainFixed(double value, int decimals);

// The figure with `decimals` places in the regional format; with groups of
// thousands when `grouped` ("1.234,50").
QString LocaleFixed(double value, int decimals, bool grouped);
