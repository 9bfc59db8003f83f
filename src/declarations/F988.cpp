#include "F988.h"

F988::F988()
    : DeclaracionAgente(
          QStringLiteral("F988"),
          QStringLiteral("Formulario F988 T.I.S.S.H  Agentes de Percepción DJ Mensual"),
          {QStringLiteral("F987"), QStringLiteral("txtImpPerF987"),
           QStringLiteral("Importe percibido según detalle F987"),
           QStringLiteral("ImpPercibidoF987"),
           QStringLiteral("Debe ingresar el Importe percibido según detalle F987"), true})
{
}
