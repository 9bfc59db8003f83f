#include "F987.h"

#include "AnexoDatos.h"
#include "F987_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionPercepciones(
        QStringLiteral("F987"),
        QStringLiteral("Formulario F987 T.I.S.S.H. Anexo Informativo de Percepciones"));
    d.crearDetalle = [] { return std::make_unique<F987_Detalle>(); };
    return d;
}

} // namespace

F987::F987()
    : AnexoComprobantes(Definicion(), {QStringLiteral("F988"), QStringLiteral("ImpPercibidoF987")})
{
}
