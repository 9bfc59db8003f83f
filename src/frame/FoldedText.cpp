#include "FoldedText.h"

#include <QChar>
#include <QVarLengthArray>

namespace {

// A byte that begins no character of UTF-8 stands for itself, beyond every
// character, so that damaged text still compares the same way every time.
constexpr char32_t kStray = 0x110000;
// The wildcards of a LIKE pattern once read; no character takes these values.
constexpr char32_t kAnyRun = 0x220000;
constexpr char32_t kOne = 0x220001;

class Utf8
{
public:
    Utf8(const char* text, int size)
        : m_p(reinterpret_cast<const uchar*>(text)), m_end(m_p + qMax(0, size))
    {
    }
    bool atEnd() const { return m_p >= m_end; }
    bool asciiAhead() const { return *m_p < 0x80; }
    uchar takeAscii() { return *m_p++; }
    int offset(const char* start) const { return int(m_p - reinterpret_cast<const uchar*>(start)); }

    char32_t next()
    {
        const uchar lead = *m_p++;
        if (lead < 0x80)
            return lead;
        int extra = 0;
        char32_t c = 0;
        if ((lead & 0xE0) == 0xC0) {
            extra = 1;
            c = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            extra = 2;
            c = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            extra = 3;
            c = lead & 0x07;
        } else {
            return kStray + lead;
        }
        if (m_end - m_p < extra)
            return kStray + lead;
        for (int i = 0; i < extra; ++i)
            if ((m_p[i] & 0xC0) != 0x80)
                return kStray + lead;
        for (int i = 0; i < extra; ++i)
            c = (c << 6) | (m_p[i] & 0x3F);
        m_p += extra;
        return c;
    }

private:
    const uchar* m_p;
    const uchar* m_end;
};

constexpr char32_t lowerAscii(char32_t c)
{
    return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
}

char32_t fold(char32_t c)
{
    if (c < 0x80)
        return lowerAscii(c);
    return c < kStray ? QChar::toCaseFolded(c) : c;
}

// The letter a folded character of Latin-1 sorts with: accented vowels with
// their plain vowel, ç with c; 0 for those that sort apart (æ, ð, ø, þ, ñ).
constexpr char kBaseLetter[] = "aaaaaa\0ceeeeiiii\0\0ooooo\0\0uuuuy\0y";
static_assert(sizeof(kBaseLetter) == 0x20 + 1, "one entry for each of U+00E0 to U+00FF");

// The first level of the order. Plain ASCII keeps its place (doubled, so that
// ñ fits between n and o); an accented letter takes its plain letter's place;
// any other character comes after all of them, in the order of its code.
char32_t primary(char32_t folded)
{
    if (folded < 0x80)
        return folded * 2;
    if (folded == 0xF1) // ñ
        return 'n' * 2 + 1;
    if (folded >= 0xE0 && folded <= 0xFF && kBaseLetter[folded - 0xE0] != '\0')
        return char32_t(kBaseLetter[folded - 0xE0]) * 2;
    return 0x100 + folded;
}

using Folded = QVarLengthArray<char32_t, 256>;

} // namespace

int CompareFolded(const char* a, int aSize, const char* b, int bSize)
{
    Utf8 x(a, aSize);
    Utf8 y(b, bSize);
    // Texts that differ only in accents are told apart by the first accent,
    // once everything else is found equal.
    int accents = 0;
    while (!x.atEnd() && !y.atEnd()) {
        if (x.asciiAhead() && y.asciiAhead()) {
            const char32_t cx = lowerAscii(x.takeAscii());
            const char32_t cy = lowerAscii(y.takeAscii());
            if (cx != cy)
                return cx < cy ? -1 : 1;
            continue;
        }
        const char32_t fx = fold(x.next());
        const char32_t fy = fold(y.next());
        const char32_t px = primary(fx);
        const char32_t py = primary(fy);
        if (px != py)
            return px < py ? -1 : 1;
        if (accents == 0 && fx != fy)
            accents = fx < fy ? -1 : 1;
    }
    if (!x.atEnd())
        return 1;
    if (!y.atEnd())
        return -1;
    return accents;
}

bool LikeFolded(const char* pattern, int patternSize, const char* text, int textSize,
                char32_t escape)
{
    Folded p;
    for (Utf8 r(pattern, patternSize); !r.atEnd();) {
        const char32_t c = r.next();
        if (escape != 0 && c == escape && !r.atEnd())
            p.append(fold(r.next()));
        else if (c == '%')
            p.append(kAnyRun);
        else if (c == '_')
            p.append(kOne);
        else
            p.append(fold(c));
    }
    Folded t;
    for (Utf8 r(text, textSize); !r.atEnd();)
        t.append(fold(r.next()));

    // Left to right; on a mismatch the last "%" takes one character more.
    qsizetype i = 0, j = 0, star = -1, resume = 0;
    while (j < t.size()) {
        if (i < p.size() && (p[i] == kOne || p[i] == t[j])) {
            ++i;
            ++j;
        } else if (i < p.size() && p[i] == kAnyRun) {
            star = i++;
            resume = j;
        } else if (star >= 0) {
            i = star + 1;
            j = ++resume;
        } else {
            return false;
        }
    }
    while (i < p.size() && p[i] == kAnyRun)
        ++i;
    return i == p.size();
}

char32_t FirstCharacter(const char* text, int size, int* length)
{
    Utf8 r(text, size);
    if (r.atEnd()) {
        *length = 0;
        return 0;
    }
    const char32_t c = r.next();
    *length = r.offset(text);
    return c;
}
