#include "F978.h"

#include "AnexoDatos.h"
#include "F978_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionPercepciones(
        QStringLiteral("F978"), QStringLiteral("Formulario F978 T.I.S.S.H. Anexo Percepciones"));
    d.crearDetalle = [] { return std::make_unique<F978_Detalle>(); };
    return d;
}

} // namespace

F978::F978() : AnexoComprobantes(Definicion(), {{}, QStringLiteral("Percepciones")}) {}
