#include "Tovak.h"

#include <optional>

namespace {

constexpr int kMaxShortPosition = 32767;

// 1-based position of `what` in `text` from `start`, 0 when absent; nullopt
// where the old runtime raised an error (a start before the first character).
std::optional<int> inStr(int start, const QString& text, const QString& what,
                         Qt::CaseSensitivity cs = Qt::CaseSensitive)
{
    if (start < 1)
        return std::nullopt;
    if (what.isEmpty())
        return start <= text.size() + 1 ? start : 0;
    return int(text.indexOf(what, start - 1, cs)) + 1;
}

bool fitsShort(int position) { return position <= kMaxShortPosition; }

struct Entry {
    int equals = 0;    // position of the "=" of the value
    int semicolon = 0; // position of the ";" that ends it
};

std::optional<Entry> locate(const QString& s, const QString& key, bool allShort)
{
    const auto p = inStr(1, s, key, Qt::CaseInsensitive);
    if (!p || (allShort && !fitsShort(*p)))
        return std::nullopt;
    const auto e = inStr(*p, s, QStringLiteral("="));
    const auto t = inStr(*p, s, QStringLiteral(";"));
    if (!e || !t || !fitsShort(*t) || (allShort && !fitsShort(*e)))
        return std::nullopt;
    if (*t - *e - 1 < 0)
        return std::nullopt;
    return Entry{*e, *t};
}

} // namespace

QString ReadParameter(QString s, const QString& key)
{
    // The test looks at the last-but-one character, not the last one.
    if (s.size() < 2)
        return {};
    if (s.at(s.size() - 2) != u';')
        s += u';';
    const auto entry = locate(s, key, false);
    if (!entry)
        return {};
    return s.mid(entry->equals, entry->semicolon - entry->equals - 1);
}

QString SetParameter(QString s, const QString& key, const QString& value)
{
    if (!s.endsWith(u';'))
        s += u';';
    const auto entry = locate(s, key, true);
    if (!entry)
        return s;
    return s.left(entry->equals) + value + s.mid(entry->semicolon - 1);
}
