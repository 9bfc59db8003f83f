#include "F985.h"

#include "AnexoDatos.h"
#include "F985_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionRetenciones(
        QStringLiteral("F985"),
        QStringLiteral("Formulario F985 T.I.S.S.H. Anexo Informativo de Retenciones"));
    // As F977 does, whether the declaration has begun is asked of the
    // perceptions' lines: kept, since declarations filed so far depend on it.
    d.tablaPruebaAgregar = QStringLiteral("F978_Detalle");
    d.crearDetalle = [] { return std::make_unique<F985_Detalle>(); };
    return d;
}

} // namespace

F985::F985()
    : AnexoComprobantes(Definicion(), {QStringLiteral("F986"), QStringLiteral("ImpPercibidoF985")})
{
}
