#include "FormTables.h"

namespace {

QStringList split(const char* names)
{
    return QString::fromLatin1(names).split(u',');
}

FormTables annex(const char* id, const char* amounts)
{
    const QString name = QString::fromLatin1(id);
    return {name,
            name + QStringLiteral("_Detalle"),
            true,
            split("Domicilio,RazonSocial,Transporte,TotalPercepciones"),
            split("Fecha,TipoComprobante,NroComprobante,Denominacion,Cuit,Padron,ImportePercibido"),
            split(amounts),
            false};
}

FormTables agent(const char* id, const char* informed)
{
    const QString column = QString::fromLatin1(informed);
    return {QString::fromLatin1(id),
            QString(),
            false,
            split("RazonSocial,Contribuyente,Domicilio") + QStringList{column} +
                split("AccesoriosCoef,Multas,Otros,ImporteDepositar"),
            {},
            split("AccesoriosCoef,ImporteDepositar") + QStringList{column} + split("Multas,Otros"),
            true};
}

QVector<FormTables> makeForms()
{
    const QStringList f976Header =
        split("BaseImponible,Impuesto,Accesorios,Multas,PagoACuenta,Percepciones,Retenciones,"
              "SaldoAFavor,SaldoAFavorF,SubtotalDeterminado,TotalAPagar,Tasa");
    const QStringList f2001Header =
        split("BaseImponible,Impuesto,Total,SaldoAFavor,Retenciones,Percepciones,Desgrabaciones,"
              "SubtotalCol12,SubtotalColumna2,DiferenciaCol12,DiferenciaColumna2,PagoACuenta,"
              "TotalAPagar");
    return {
        {QStringLiteral("F2001"), QStringLiteral("F2001_Detalle"), true, f2001Header,
         split("CodigoActividad,TipoActividad,BaseImponible,Alicuota,Impuesto"), f2001Header,
         false},
        {QStringLiteral("F976"), QStringLiteral("F976_Detalle"), true, f976Header,
         split("TipoActividad,CodigoActividad,BaseImponible,Alicuota,Impuesto"), f976Header, false},
        annex("F977", "Transporte,TotalPercepciones"),
        annex("F978", "Transporte,TotalPercepciones"),
        agent("F988", "ImpPercibidoF987"),
        agent("F986", "ImpPercibidoF985"),
        annex("F987", "Transporte"),
        annex("F985", "Transporte"),
    };
}

} // namespace

const QVector<FormTables>& FormTables::all()
{
    static const QVector<FormTables> forms = makeForms();
    return forms;
}

const FormTables* FormTables::find(const QString& id)
{
    for (const FormTables& f : all())
        if (f.id.compare(id, Qt::CaseInsensitive) == 0)
            return &f;
    return nullptr;
}
