#include "F986.h"

F986::F986()
    : DeclaracionAgente(
          QStringLiteral("F986"),
          QStringLiteral("Formulario F986 T.I.S.S.H  Agentes de Retención DJ Mensual"),
          {QStringLiteral("F985"), QStringLiteral("txtImpPerF985"),
           QStringLiteral("Importe retenido según detalle F985"),
           QStringLiteral("ImpPercibidoF985"),
           QStringLiteral("Debe ingresar el Importe retenido según detalle F985"), false})
{
}
