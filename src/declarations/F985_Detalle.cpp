#include "F985_Detalle.h"

F985_Detalle::F985_Detalle() : DetalleDialog(QStringLiteral("F985_Detalle")) {}

void F985_Detalle::design() {}
