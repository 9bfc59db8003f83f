#include "F987_Detalle.h"

F987_Detalle::F987_Detalle()
    : DetalleComprobante(QStringLiteral("F987_Detalle"),
                         {QStringLiteral("F987_Detalle"), true, QStringLiteral("Comprobante Nro"),
                          QStringLiteral("Importe Percibido"), QStringLiteral("El comprobante "),
                          true})
{
}
