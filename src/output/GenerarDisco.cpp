#include "GenerarDisco.h"

GenerarDisco::GenerarDisco() : Controller(QStringLiteral("GenerarDisco")) {}

void GenerarDisco::design() {}
