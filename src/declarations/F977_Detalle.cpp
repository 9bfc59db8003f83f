#include "F977_Detalle.h"

F977_Detalle::F977_Detalle()
    : DetalleComprobante(QStringLiteral("F977_Detalle"),
                         {QStringLiteral("F977_Detalle"), false, QStringLiteral("Constancia Nro"),
                          QStringLiteral("Importe Retenido"), QStringLiteral("La constancia "),
                          false})
{
}
