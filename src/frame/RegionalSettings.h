#pragma once

#include <QString>

// The regional settings that stored amounts and dates depend on. The old
// program read and wrote the machine's locale; here they are the
// application's own settings (group "Regional"), so that amounts are written
// and read with these symbols whatever the machine's locale.
namespace Regional {

// The locale item numbers the guard and the routines ask for.
enum Item {
    ILanguage = 1,
    SLanguage = 2,
    SList = 12,
    SDecimal = 14,
    SThousand = 15,
    SMonDecimalSep = 22,
    SMonThousandSep = 23,
    SDate = 29,
    SShortDate = 31,
};

QString get(Item item);
void set(Item item, const QString& value);

QChar decimalSymbol();
QChar thousandsSymbol();
QString shortDatePattern();

// Forgets the cached values (tests that change the settings store).
void reload();

} // namespace Regional
