#include "Windows1252.h"

#include <QList>

namespace {

// The characters that Windows-1252 puts at 0x80 to 0x9F, by byte. Zero marks
// the five bytes the code page leaves undefined; they stand for the control
// characters of the same number, as the platform converts them.
// clang-format off
constexpr char16_t kHighControls[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 0x80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       // 0x88
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 0x90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178}; // 0x98
// clang-format on

char byteOf(char32_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return char(c);
    for (int i = 0; i < 32; ++i) {
        const char16_t mapped = kHighControls[i];
        if (mapped == c || (mapped == 0 && c == char32_t(0x80 + i)))
            return char(0x80 + i);
    }
    return '?';
}

} // namespace

QByteArray ToWindows1252(const QString& text)
{
    QByteArray out;
    out.reserve(text.size());
    for (char32_t c : text.toUcs4())
        out.append(byteOf(c));
    return out;
}
