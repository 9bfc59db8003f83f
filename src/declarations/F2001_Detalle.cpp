#include "F2001_Detalle.h"

F2001_Detalle::F2001_Detalle() : DetalleDialog(QStringLiteral("F2001_Detalle")) {}

void F2001_Detalle::design() {}
