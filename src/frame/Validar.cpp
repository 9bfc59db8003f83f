#include "Validar.h"

#include "Controller.h"
#include "Field.h"
#include "Numbers.h"
#include "UiPort.h"
#include "Util.h"

namespace {

const QString kBlankDate = QStringLiteral("__-__-____");

bool isDigit(int key)
{
    return key >= '0' && key <= '9';
}

void warn(const QString& text)
{
    MsgBox(text, Msg::Exclamation, QStringLiteral("Atención !"));
}

// What is wrong with a date text, in the order the checks run.
enum class DateFault { None, NotADate, Day, Month };

struct DateParts {
    int day = 0;
    int month = 0;
    int year = 0;
};

// Checks a date text as "dd-mm-yyyy" and reads its parts by position. Only
// the calendar test ties the day to the month; the day and month tests that
// follow catch what slips past it.
DateFault checkDate(const QString& text, DateParts& parts)
{
    if (!TextToDate(text).isValid()) {
        warn(QStringLiteral("La fecha ingresada es incorrecta."));
        return DateFault::NotADate;
    }
    parts.day = int(Val(text.left(2).remove(u'/')));
    parts.month = int(Val(text.mid(3, 2)));
    parts.year = int(Val(text.right(4)));
    if (parts.day >= 32) {
        warn(QStringLiteral("El día ingresado es incorrecto."));
        return DateFault::Day;
    }
    if (parts.month >= 13) {
        warn(QStringLiteral("El mes ingresado es incorrecto."));
        return DateFault::Month;
    }
    // The year test has always weighed the month against 2050, so it never
    // refuses: years are not bounded here.
    if (parts.month > 2050)
        warn(QStringLiteral("El año ingresado es incorrecto."));
    return DateFault::None;
}

// checkDate on a field, selecting the part at fault.
bool checkDateField(Field& control, DateParts& parts)
{
    switch (checkDate(control.text(), parts)) {
    case DateFault::None: return true;
    case DateFault::NotADate: control.selectAll(); break;
    case DateFault::Day: control.setSelection(0, 2); break;
    case DateFault::Month: control.setSelection(3, 2); break;
    }
    return false;
}

bool notBefore(const DateParts& d, int mes, int anio)
{
    return d.year >= anio && (d.month >= mes || d.year != anio);
}

bool notAfter(const DateParts& d, int mes, int anio)
{
    return d.year <= anio && (d.month <= mes || d.year != anio);
}

// Amounts are typed at the end of the text, with at most one decimal symbol
// and `limit` decimals; "," and "." both stand for the regional symbol.
void decimalKey(int& key, Field& control, int limit)
{
    if (control.selLength() > 0)
        control.setText(QString());
    const QString sep = GetDecimalSymbol();
    if (key == ',' || key == '.')
        key = sep.at(0).unicode();
    const QString text = control.text();
    const int at = int(text.indexOf(sep));
    int decimals = 0;
    if (at >= 0 && IsNumericText(text.mid(at + 1)))
        decimals = int(text.size()) - at - 1;
    if (key == sep.at(0).unicode()) {
        if (text.isEmpty()) {
            key = 0;
            control.setText(QStringLiteral("0") + sep);
        } else if (at >= 0) {
            key = 0;
        }
    } else if (!isDigit(key)) {
        key = 0;
    }
    if (decimals == limit)
        key = 0;
    control.setSelection(int(control.text().size()), 0);
}

} // namespace

void Validar::TextBox(int& key, Field& control, int type, int limit)
{
    if (key == KeyCode::Return) {
        key = 0;
        if (auto* window = qobject_cast<Controller*>(control.parent()))
            window->sendTab();
        return;
    }
    if (key == KeyCode::Back)
        return;
    if (limit > 0 && type != Decimal && type != SignedDecimal && control.text().size() == limit) {
        key = 0;
        return;
    }
    const bool blank = control.text().trimmed().isEmpty();
    switch (type) {
    case NoDigits:
        if (isDigit(key))
            key = 0;
        break;
    case Digits:
        if (!isDigit(key))
            key = 0;
        break;
    case Decimal: decimalKey(key, control, limit); break;
    case SignedInteger:
        if (key == '-' ? !blank : !isDigit(key))
            key = 0;
        break;
    case SignedDecimal:
        if (key == '-' && blank)
            break;
        decimalKey(key, control, limit);
        if (control.text().size() >= 2 && !IsNumericText(control.text()))
            key = 0;
        break;
    case DigitsAndDash:
        if (key == '-' ? blank : !isDigit(key))
            key = 0;
        break;
    default: break;
    }
}

bool Validar::FechaPeriodoEx(const QString& valor, int mes, int anio, int modo)
{
    DateParts date;
    if (checkDate(valor, date) != DateFault::None)
        return false;
    if (modo == 0 && !notAfter(date, mes, anio)) {
        warn(QStringLiteral("La fecha ingresada no puede ser mayor a la del periodo."));
        return false;
    }
    if (modo == 1 && !notBefore(date, mes, anio)) {
        warn(QStringLiteral("La fecha ingresada no puede ser menor a la del periodo."));
        return false;
    }
    if (modo == 2 && (date.month != mes || date.year != anio)) {
        warn(QStringLiteral("La fecha ingresada debe ser igual a la del periodo."));
        return false;
    }
    return true;
}

bool Validar::FechaPeriodo(Field& control, int mes, int anio, int modo, bool obligatoria)
{
    if (control.text() == kBlankDate && !obligatoria)
        return true;
    DateParts date;
    if (!checkDateField(control, date))
        return false;
    const bool inPeriod = modo == 1 ? notBefore(date, mes, anio) : notAfter(date, mes, anio);
    if (inPeriod)
        return true;
    warn(modo == 1 ? QStringLiteral("La fecha ingresada no puede ser menor a la del periodo.")
                   : QStringLiteral("La fecha ingresada no puede ser mayor a la del periodo."));
    control.selectAll();
    return false;
}

bool Validar::Fecha(Field& control)
{
    DateParts date;
    return checkDateField(control, date);
}
