#include "F978_Detalle.h"

F978_Detalle::F978_Detalle() : DetalleDialog(QStringLiteral("F978_Detalle")) {}

void F978_Detalle::design() {}
