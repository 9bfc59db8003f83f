#pragma once

#include <QString>

class Field;

// The one shared validator of typed input (gValidar): a key filter for text
// boxes and the date checks of the forms, which explain a refusal in a message
// box titled "Atención !" and select the part of the date at fault.
class Validar
{
public:
    // Kinds of text for TextBox.
    enum Type {
        NoDigits = 0,
        Digits = 1,
        Decimal = 2, // positive; the limit is the number of decimals
        SignedInteger = 3,
        SignedDecimal = 4, // the limit is the number of decimals
        DigitsAndDash = 5, // digits with a "-" inside, not first
    };

    // Filters one typed key of `control`; key := 0 refuses it. Enter moves the
    // focus on to the next field of the control's window. A limit above 0
    // bounds the length of the text, except for the decimal types.
    void TextBox(int& key, Field& control, int type, int limit);

    // A date text against the period `mes`-`anio`. Mode 0: not after the
    // period; 1: not before it; 2: within it; any other mode: any date.
    bool FechaPeriodoEx(const QString& valor, int mes, int anio, int modo);

    // The date of a masked field against the period: mode 1 not before it,
    // any other mode not after it. The blank mask passes unless `obligatoria`.
    bool FechaPeriodo(Field& control, int mes, int anio, int modo, bool obligatoria);

    // The date of a masked field, with no period.
    bool Fecha(Field& control);
};
