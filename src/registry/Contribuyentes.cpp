#include "Contribuyentes.h"

Contribuyentes::Contribuyentes() : Controller(QStringLiteral("Contribuyentes")) {}

void Contribuyentes::design() {}
