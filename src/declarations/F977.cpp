#include "F977.h"

#include "AnexoDatos.h"
#include "F977_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionRetenciones(
        QStringLiteral("F977"), QStringLiteral("Formulario F977 T.I.S.S.H. Anexo Retenciones"));
    // Whether the declaration has begun is asked of the sister annex's lines.
    d.tablaPruebaAgregar = QStringLiteral("F978_Detalle");
    d.crearDetalle = [] { return std::make_unique<F977_Detalle>(); };
    return d;
}

} // namespace

F977::F977() : AnexoComprobantes(Definicion(), {{}, QStringLiteral("Retenciones")}) {}
