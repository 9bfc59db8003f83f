#include "F977_Detalle.h"

F977_Detalle::F977_Detalle() : DetalleDialog(QStringLiteral("F977_Detalle")) {}

void F977_Detalle::design() {}
