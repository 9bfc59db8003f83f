#include "F987_Detalle.h"

F987_Detalle::F987_Detalle() : DetalleDialog(QStringLiteral("F987_Detalle")) {}

void F987_Detalle::design() {}
