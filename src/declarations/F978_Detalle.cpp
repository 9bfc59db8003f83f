#include "F978_Detalle.h"

F978_Detalle::F978_Detalle()
    : DetalleComprobante(QStringLiteral("F978_Detalle"),
                         {QStringLiteral("F978_Detalle"), true, QStringLiteral("Comprobante Nro"),
                          QStringLiteral("Importe Percibido"), QStringLiteral("El comprobante "),
                          false})
{
}
