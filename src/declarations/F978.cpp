#include "F978.h"

#include "AnexoDatos.h"
#include "F978_Detalle.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DefinicionAnexo(
        QStringLiteral("F978"), QStringLiteral("Formulario F978 T.I.S.S.H. Anexo Percepciones"),
        QStringLiteral("Total de Percepciones"),
        {QStringLiteral("CodigoDetalle"), QStringLiteral("Fecha"),
         QStringLiteral("TipoComprobante"), QStringLiteral("NroComprobante"),
         QStringLiteral("Denominacion"), QStringLiteral("Cuit"), QStringLiteral("Padron"),
         QStringLiteral("ImportePercibido")},
        QStringLiteral("Codigo Detalle|Fecha|Tipo Comprobante|N° Comprobante|Denominacion|CUIT|"
                       "Padrón|Importe Percibido")
            .split(u'|'));
    d.crearDetalle = [] { return std::make_unique<F978_Detalle>(); };
    return d;
}

} // namespace

F978::F978() : AnexoComprobantes(Definicion(), {{}, QStringLiteral("Percepciones")}) {}
