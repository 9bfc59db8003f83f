#include "RegionalSettings.h"

#include <QHash>
#include <QSettings>

namespace Regional {
namespace {

struct Default {
    Item item;
    const char* key;
    const char* value;
};

// First-start values: a Spanish (Argentina) desktop with the short date
// written with "-", so that the daily log's name is a valid file name.
constexpr Default kDefaults[] = {
    {ILanguage, "LanguageId", "2C0A"},
    {SLanguage, "Language", "Español (Argentina)"},
    {SList, "ListSeparator", ";"},
    {SDecimal, "Decimal", ","},
    {SThousand, "Thousands", "."},
    {SMonDecimalSep, "CurrencyDecimal", ","},
    {SMonThousandSep, "CurrencyThousands", "."},
    {SDate, "DateSeparator", "-"},
    {SShortDate, "ShortDate", "dd-MM-yyyy"},
};

const Default* find(Item item)
{
    for (const Default& d : kDefaults)
        if (d.item == item)
            return &d;
    return nullptr;
}

QHash<int, QString>& cache()
{
    static QHash<int, QString> values;
    return values;
}

} // namespace

// All the symbols are read at once, and the missing ones written at once:
// each opening of the settings file costs a parse, and each write a locked
// rewrite, on the way to the main window.
namespace {
void loadAll()
{
    QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
    settings.beginGroup(QStringLiteral("Regional"));
    for (const Default& d : kDefaults) {
        const QString key = QString::fromLatin1(d.key);
        if (!settings.contains(key))
            settings.setValue(key, QString::fromUtf8(d.value));
        cache().insert(d.item, settings.value(key).toString());
    }
}
} // namespace

QString get(Item item)
{
    if (!find(item))
        return {};
    if (!cache().contains(item))
        loadAll();
    return cache().value(item);
}

void set(Item item, const QString& value)
{
    const Default* d = find(item);
    if (!d || get(item) == value)
        return;
    QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
    settings.beginGroup(QStringLiteral("Regional"));
    settings.setValue(QString::fromLatin1(d->key), value);
    cache().insert(item, value);
}

QChar decimalSymbol()
{
    const QString s = get(SDecimal);
    return s.isEmpty() ? QChar(u',') : s.at(0);
}

QChar thousandsSymbol()
{
    const QString s = get(SThousand);
    return s.isEmpty() ? QChar(u'.') : s.at(0);
}

QString shortDatePattern() { return get(SShortDate); }

void reload() { cache().clear(); }

} // namespace Regional
