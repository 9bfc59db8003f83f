#include "F977.h"

#include "AnexoDatos.h"
#include "F977_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionAnexo(
        QStringLiteral("F977"), QStringLiteral("Formulario F977 T.I.S.S.H. Anexo Retenciones"),
        QStringLiteral("Total de Retenciones"),
        {QStringLiteral("CodigoDetalle"), QStringLiteral("Fecha"), QStringLiteral("NroComprobante"),
         QStringLiteral("Denominacion"), QStringLiteral("Cuit"), QStringLiteral("Padron"),
         QStringLiteral("ImportePercibido")},
        QStringLiteral(
            "Codigo Detalle|Fecha|N° Constancia|Denominacion|CUIT|Padrón|Importe Retenido")
            .split(u'|'));
    // Whether the declaration has begun is asked of the sister annex's lines.
    d.tablaPruebaAgregar = QStringLiteral("F978_Detalle");
    d.crearDetalle = [] { return std::make_unique<F977_Detalle>(); };
    return d;
}

} // namespace

F977::F977() : AnexoComprobantes(Definicion(), {{}, QStringLiteral("Retenciones")}) {}
