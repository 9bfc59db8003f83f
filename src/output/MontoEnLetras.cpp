#include "MontoEnLetras.h"

#include <cmath>

#include "Numbers.h"

namespace {

// Indexed by the digit; the entries below the first used are never read.
const char* const kHundreds[10] = {"",     "",      "Dosc",  "Tresc", "Cuatrosc",
                                   "Quin", "Seisc", "Setec", "Ochoc", "Novec"};
const char* const kTens[10] = {"",       "",     "Veinti", "Trei", "Cuare",
                               "Cincue", "Sese", "Sete",   "Oche", "Nove"};
const char* const kUnits[10] = {"",      "Uno",  "Dos",   "Tres", "Cuatro",
                                "Cinco", "Seis", "Siete", "Ocho", "Nueve"};
const char* const kTenToFifteen[7] = {"", "Diez", "Once", "Doce", "Trece", "Catorce", "Quince"};

constexpr double kLimit = 999999999.99;

// One group of three digits; group 1 holds the millions, 2 the thousands and
// 3 the units.
QString groupInWords(const QString& digits, int group)
{
    if (digits == QLatin1String("000"))
        return {};
    const int h = digits.at(0).digitValue();
    const int d = digits.at(1).digitValue();
    const int u = digits.at(2).digitValue();
    QString out;
    bool unitsDone = false;

    if (h > 1)
        out += QLatin1String(kHundreds[h]) + QStringLiteral("ientos ");
    else if (h == 1)
        out += (d == 0 && u == 0) ? QStringLiteral("cien ") : QStringLiteral("ciento ");

    if (d > 2) {
        out +=
            QLatin1String(kTens[d]) + (u == 0 ? QStringLiteral("nta ") : QStringLiteral("nta y "));
        unitsDone = u == 0;
    } else if (d == 2) {
        out += u == 0 ? QStringLiteral("veinte ") : QStringLiteral("veinti");
        unitsDone = u == 0;
    } else if (d == 1) {
        if (u >= 6) {
            out += QStringLiteral("dieci");
        } else {
            out += QLatin1String(kTenToFifteen[u + 1]);
            unitsDone = true;
        }
    }

    if (!unitsDone) {
        // Before "mil" and "millones" the unit one is "un".
        const bool beforeName = group < 3;
        if (beforeName && digits == QLatin1String("001"))
            out += QStringLiteral("un");
        else if (beforeName && digits >= QLatin1String("020") && u == 1)
            out += QStringLiteral("un");
        else if (u != 0)
            out += QLatin1String(kUnits[u]);
    }

    if (group == 1)
        out += digits == QLatin1String("001") ? QStringLiteral(" millon ")
                                              : QStringLiteral(" millones ");
    else if (group == 2)
        out += QStringLiteral(" mil ");
    return out;
}

} // namespace

QString MontoEnLetras(const double& amount)
{
    if (std::isnan(amount) || amount >= kLimit)
        return {};
    if (amount < 0) {
        const double positive = -amount;
        const QString words = MontoEnLetras(positive);
        return words.isEmpty() ? QString() : QStringLiteral("menos ") + words;
    }

    const double whole = std::floor(amount);
    const QString digits = QStringLiteral("%1").arg(qint64(whole), 9, 10, QLatin1Char('0'));
    const double cents = (amount - whole) * 100;

    QString out;
    for (int group = 1; group <= 3; ++group)
        out += groupInWords(digits.mid((group - 1) * 3, 3), group);
    if (out.isEmpty())
        out = QStringLiteral("cero ");
    if (cents != 0)
        out += QStringLiteral(" con ") + QString::number(RoundToEven(cents).value_or(0)) +
               QStringLiteral("/100");
    return out.toLower();
}
