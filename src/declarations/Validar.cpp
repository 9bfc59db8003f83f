#include "Validar.h"

void Validar::TextBox(int&, Field&, int, int) {}
bool Validar::FechaPeriodoEx(const QString&, int, int, int) { return true; }
bool Validar::FechaPeriodo(Field&, int, int, int, bool) { return true; }
bool Validar::Fecha(Field&) { return true; }
