#include "F976_Detalle.h"

F976_Detalle::F976_Detalle()
    : DetalleActividad(QStringLiteral("F976_Detalle"),
                       {QStringLiteral("F976_Detalle"), QStringLiteral("F976"),
                        QStringLiteral("txtAlicuota3"), false, false,
                        QStringLiteral("El dato ingresado es incorrecto. Por favor verifique."),
                        true})
{
}
