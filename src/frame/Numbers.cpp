#include "Numbers.h"

#include <QByteArray>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "RegionalSettings.h"

std::optional<double> LocaleNumber(const QString& input)
{
    const QString text = input.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    const QChar dec = Regional::decimalSymbol();
    const QChar grp = Regional::thousandsSymbol();
    QByteArray plain;
    int i = 0;
    const int n = int(text.size());
    if (text.at(0) == u'-' || text.at(0) == u'+') {
        plain += char(text.at(0).unicode());
        ++i;
        while (i < n && text.at(i) == u' ')
            ++i;
    }
    bool digits = false;
    bool seenDecimal = false;
    for (; i < n; ++i) {
        const QChar c = text.at(i);
        if (c.isDigit() && c.unicode() < 128) {
            plain += char(c.unicode());
            digits = true;
        } else if (c == dec && !seenDecimal) {
            plain += '.';
            seenDecimal = true;
        } else if (c == grp && !seenDecimal && grp != dec) {
            continue;
        } else if ((c == u'e' || c == u'E') && digits) {
            plain += 'e';
            ++i;
            if (i < n && (text.at(i) == u'-' || text.at(i) == u'+'))
                plain += char(text.at(i++).unicode());
            bool expDigits = false;
            for (; i < n && text.at(i).isDigit(); ++i) {
                plain += char(text.at(i).unicode());
                expDigits = true;
            }
            if (!expDigits || i != n)
                return std::nullopt;
            break;
        } else {
            return std::nullopt;
        }
    }
    if (!digits)
        return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(plain.constData(), &end);
    if (!end || *end != '\0' || !std::isfinite(value))
        return std::nullopt;
    return value;
}

bool IsNumericText(const QString& text)
{
    return LocaleNumber(text).has_value();
}

double Val(const QString& text)
{
    QByteArray plain;
    int i = 0;
    const int n = int(text.size());
    auto skipBlanks = [&] {
        while (i < n && (text.at(i) == u' ' || text.at(i) == u'\t' || text.at(i) == u'\n'))
            ++i;
    };
    skipBlanks();
    if (i < n && (text.at(i) == u'-' || text.at(i) == u'+'))
        plain += char(text.at(i++).unicode());
    bool dot = false;
    for (; i < n; ++i) {
        const QChar c = text.at(i);
        if (c == u' ' || c == u'\t')
            continue; // Val passes over blanks inside the figure
        if (c.isDigit() && c.unicode() < 128)
            plain += char(c.unicode());
        else if (c == u'.' && !dot) {
            plain += '.';
            dot = true;
        } else
            break;
    }
    return std::strtod(plain.constData(), nullptr);
}

std::optional<qint64> RoundToEven(double value)
{
    if (!std::isfinite(value) || std::fabs(value) > 9.2e18)
        return std::nullopt;
    return qint64(std::nearbyint(value)); // default rounding mode: to even
}

namespace {
constexpr double kMaxCents = 9007199254740992.0; // 2^53
} // namespace

bool IsAmountInRange(double value)
{
    return std::isfinite(value) && std::fabs(value) * 100.0 < kMaxCents;
}

std::optional<qint64> AmountCents(double value)
{
    if (!IsAmountInRange(value))
        return std::nullopt;
    return qint64(RoundDecimal(value * 100.0, 0));
}

double RoundDecimal(double value, int decimals)
{
    if (!std::isfinite(value))
        return value;
    // Round the figure as the person knows it, its 15-digit decimal text, not
    // its binary value: 2.675 is 2.67499999... in binary but 2.675 on paper.
    char shortText[64];
    std::snprintf(shortText, sizeof shortText, "%.15g", std::fabs(value));
    const QByteArray digits(shortText);
    if (digits.contains('e')) {
        const double scale = std::pow(10.0, decimals);
        return std::copysign(std::round(std::fabs(value) * scale) / scale, value);
    }
    const int point = int(digits.indexOf('.'));
    const QByteArray whole = point < 0 ? digits : digits.left(point);
    QByteArray frac = point < 0 ? QByteArray() : digits.mid(point + 1);
    while (frac.size() <= decimals)
        frac += '0';
    QByteArray kept = whole + frac.left(decimals);
    if (frac.at(decimals) >= '5') { // one unit more in the last place kept
        int k = int(kept.size()) - 1;
        for (; k >= 0 && kept[k] == '9'; --k)
            kept[k] = '0';
        if (k < 0)
            kept.prepend('1');
        else
            kept[k] = char(kept[k] + 1);
    }
    const QByteArray text = kept.left(kept.size() - decimals) + '.' + kept.right(decimals);
    return std::copysign(std::strtod(text.constData(), nullptr), value);
}

QString PlainFixed(double value, int decimals)
{
    double r = RoundDecimal(value, decimals);
    if (r == 0)
        r = 0; // no "-0.00"
    return QString::number(r, 'f', decimals);
}

QString LocaleFixed(double value, int decimals, bool grouped)
{
    const QString plain = PlainFixed(value, decimals);
    const bool negative = plain.startsWith(u'-');
    const QString body = negative ? plain.mid(1) : plain;
    const int point = int(body.indexOf(u'.'));
    QString whole = point < 0 ? body : body.left(point);
    const QString frac = point < 0 ? QString() : body.mid(point + 1);
    if (grouped) {
        const QChar grp = Regional::thousandsSymbol();
        for (int i = int(whole.size()) - 3; i > 0; i -= 3)
            whole.insert(i, grp);
    }
    QString out = negative ? QStringLiteral("-") + whole : whole;
    if (decimals > 0)
        out += Regional::decimalSymbol() + frac;
    return out;
}
