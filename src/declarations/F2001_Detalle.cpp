#include "F2001_Detalle.h"

F2001_Detalle::F2001_Detalle()
    : DetalleActividad(QStringLiteral("F2001_Detalle"),
                       {QStringLiteral("F2001_Detalle"), QStringLiteral("F2001"),
                        QStringLiteral("txtAlicuota2"), true, true,
                        QStringLiteral("El dato ingresado es incorrecto. Verifique por favor."),
                        false})
{
}
