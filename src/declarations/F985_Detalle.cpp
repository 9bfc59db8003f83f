#include "F985_Detalle.h"

F985_Detalle::F985_Detalle()
    : DetalleComprobante(QStringLiteral("F985_Detalle"),
                         {QStringLiteral("F985_Detalle"), false, QStringLiteral("Constancia Nro"),
                          QStringLiteral("Importe Retenido"), QStringLiteral("La constancia "),
                          false})
{
}
