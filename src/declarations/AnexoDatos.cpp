#include "AnexoDatos.h"

DefinicionFormulario DefinicionAnexo(const QString& id, const QString& caption,
                                     const QString& captionTotal, const QStringList& columnas,
                                     const QStringList& titulos)
{
    DefinicionFormulario d = DefinicionDe(id, caption, true);
    d.columnasGrilla = columnas;
    d.titulosGrilla = titulos;
    d.columnasDerecha = {int(columnas.size()) - 1};
    d.columnasUltimo = int(columnas.size());
    d.tituloMonto = QStringLiteral("Mensaje");
    d.mensajeMonto = QStringLiteral("El dato ingresado es incorrecto. Por favor verifique.-");
    d.campos = {
        {QStringLiteral("txtTransporte"), QStringLiteral("Transporte"),
         QStringLiteral("Transporte"), TipoCampo::Ingresado},
        {QStringLiteral("txtTotalPercepciones"), captionTotal, QStringLiteral("TotalPercepciones"),
         TipoCampo::Derivado},
    };
    return d;
}

DefinicionFormulario DefinicionRetenciones(const QString& id, const QString& caption)
{
    return DefinicionAnexo(
        id, caption, QStringLiteral("Total de Retenciones"),
        {QStringLiteral("CodigoDetalle"), QStringLiteral("Fecha"), QStringLiteral("NroComprobante"),
         QStringLiteral("Denominacion"), QStringLiteral("Cuit"), QStringLiteral("Padron"),
         QStringLiteral("ImportePercibido")},
        QStringLiteral(
            "Codigo Detalle|Fecha|N° Constancia|Denominacion|CUIT|Padrón|Importe Retenido")
            .split(u'|'));
}

DefinicionFormulario DefinicionPercepciones(const QString& id, const QString& caption)
{
    return DefinicionAnexo(
        id, caption, QStringLiteral("Total de Percepciones"),
        {QStringLiteral("CodigoDetalle"), QStringLiteral("Fecha"),
         QStringLiteral("TipoComprobante"), QStringLiteral("NroComprobante"),
         QStringLiteral("Denominacion"), QStringLiteral("Cuit"), QStringLiteral("Padron"),
         QStringLiteral("ImportePercibido")},
        QStringLiteral("Codigo Detalle|Fecha|Tipo Comprobante|N° Comprobante|Denominacion|CUIT|"
                       "Padrón|Importe Percibido")
            .split(u'|'));
}
