#include "F976_Detalle.h"

F976_Detalle::F976_Detalle() : DetalleDialog(QStringLiteral("F976_Detalle")) {}

void F976_Detalle::design() {}
