#pragma once

#include <QString>

class Field;

// The one shared validator of typed input (gValidar).
class Validar
{
public:
    // Filters one key of a text box; key := 0 refuses it. Types 0 to 5.
    void TextBox(int& key, Field& control, int type, int limit);
    // Date checks against a period; true when acceptable.
    bool FechaPeriodoEx(const QString& valor, int mes, int anio, int modo);
    bool FechaPeriodo(Field& control, int mes, int anio, int modo, bool obligatoria);
    bool Fecha(Field& control);
};
