#include "ReportLayout.h"

#include <QHash>
#include <QRegularExpression>

#include "Util.h"

namespace {

const QString kTissh = QStringLiteral("Tasa de Inspección de Seguridad, Salubridad e Higiene");

QList<LayoutBox> PremisesRow(const QString& padron, const QString& periodo)
{
    return {{QStringLiteral("Padrón"), padron, 42},
            {QStringLiteral("Objeto"), QStringLiteral("{OBJETO}"), 42},
            {QStringLiteral("Período"), periodo, 36},
            {QStringLiteral("C.U.I.T."), QStringLiteral("{CUIT|cuit}"), 70}};
}

ReportLayout MonthlyReturn(const QString& name, const QString& title, const QString& activity,
                           const QString& tax, const QString& periodo)
{
    ReportLayout l;
    l.name = name;
    l.number = name.mid(1);
    l.title = title;
    l.subtitle = kTissh;
    l.kind = LayoutKind::Return;
    l.original = QStringLiteral("{ORIGINAL}");
    l.rectificativa = QStringLiteral("{RECTIFICATIVA}");
    l.identification = {PremisesRow(QStringLiteral("{PADRON}"), periodo),
                        {{QStringLiteral("Apellido y nombre o razón social"),
                          QStringLiteral("{RAZONSOCIAL}"), 190}},
                        {{QStringLiteral("Domicilio"), QStringLiteral("{DOMICILIO}"), 190}}};
    l.columns = {{QStringLiteral("Código"), QStringLiteral("{CODIGO%n}"), 22, false},
                 {QStringLiteral("Actividad"), activity, 80, false},
                 {QStringLiteral("Base imponible"), QStringLiteral("{BASEIMPONIBLE%n}"), 34, true},
                 {QStringLiteral("Alícuota"), QStringLiteral("{ALICUOTA%n}"), 20, true},
                 {QStringLiteral("Impuesto"), tax, 34, true}};
    l.suscriptor = QStringLiteral("{SUSCRIPTOR}");
    l.caracter = QStringLiteral("{CARACTER}");
    l.principal = QStringLiteral("{PADRONPRINCIPAL}");
    l.guidv = QStringLiteral("{GUIDV}");
    return l;
}

ReportLayout F976Layout()
{
    ReportLayout l = MonthlyReturn(
        QStringLiteral("F976"), QStringLiteral("DECLARACIÓN JURADA MENSUAL - RÉGIMEN GENERAL"),
        QStringLiteral("{ACTIVIDADES%n}"), QStringLiteral("{TASA%n}"), QStringLiteral("{PERIODO}"));
    l.fecha = QStringLiteral("{FECHA}");
    l.totalCaption = QStringLiteral("Totales");
    l.totalValue = QStringLiteral("{BASEIMPONIBLE}");
    l.totalTax = QStringLiteral("{IMPUESTO}");
    l.totals = {
        {QStringLiteral("Impuesto determinado"), QStringLiteral("{IMPUESTO}"), false},
        {QStringLiteral("Tasa mínima"), QStringLiteral("{TASA}"), false},
        {QStringLiteral("Subtotal determinado"), QStringLiteral("{SUBTOTALDETERMINADO}"), true},
        {QStringLiteral("Menos: saldo a favor del período anterior"),
         QStringLiteral("{SALDOAFAVOR}"), false},
        {QStringLiteral("Menos: retenciones sufridas"), QStringLiteral("{RETENCIONES}"), false},
        {QStringLiteral("Menos: percepciones sufridas"), QStringLiteral("{PERCEPCIONES}"), false},
        {QStringLiteral("Menos: pagos a cuenta"), QStringLiteral("{PAGOACUENTA}"), false},
        {QStringLiteral("Más: accesorios"), QStringLiteral("{ACCESORIOS}"), false},
        {QStringLiteral("Más: multas"), QStringLiteral("{MULTAS}"), false},
        {QStringLiteral("Saldo a favor del contribuyente"), QStringLiteral("{SALDOAFAVORF}"),
         false},
        {QStringLiteral("TOTAL A PAGAR"), QStringLiteral("{TOTALAPAGAR}"), true}};
    l.words = QStringLiteral("{TOTALAPAGARLETRA}");
    return l;
}

ReportLayout F2001Layout()
{
    ReportLayout l = MonthlyReturn(
        QStringLiteral("F2001"), QStringLiteral("DECLARACIÓN JURADA MENSUAL - RÉGIMEN PROCOM"),
        QStringLiteral("{DESCRIPCION%n}"), QStringLiteral("{IMPUESTO%n}"),
        QStringLiteral("{PMES}-{PANIO}"));
    l.number = QStringLiteral("2001");
    l.fechaRectificativa = QStringLiteral("{DIA}-{MES}-{ANIO}");
    l.identification[2] = {{QStringLiteral("Domicilio"), QStringLiteral("{DOMICILIO}"), 160},
                           {QStringLiteral("Código postal"), QStringLiteral("{CODIGOPOSTAL}"), 30}};
    l.totalCaption = QStringLiteral("Totales");
    l.totalValue = QStringLiteral("{TOTALIMPONIBLE}");
    l.totalTax = QStringLiteral("{TOTALIMPUESTO}");
    l.totals = {
        {QStringLiteral("Total impuesto"), QStringLiteral("{TOTALIMPUESTO}"), false},
        {QStringLiteral("Total tasa determinada"), QStringLiteral("{TOTALTASADETERMINADA}"), true},
        {QStringLiteral("Menos: desgravaciones"), QStringLiteral("{DESGRABACIONES}"), false},
        {QStringLiteral("Menos: saldo a favor"), QStringLiteral("{SALDOAFAVOR}"), false},
        {QStringLiteral("Menos: retenciones sufridas"), QStringLiteral("{RETENCIONES}"), false},
        {QStringLiteral("Menos: percepciones sufridas"), QStringLiteral("{PERCEPCIONES}"), false},
        {QStringLiteral("Subtotal columna I"), QStringLiteral("{SUBTOTALCOLI}"), false},
        {QStringLiteral("Subtotal columna II"), QStringLiteral("{SUBTOTALCOLII}"), false},
        {QStringLiteral("Diferencia columna I"), QStringLiteral("{DIFERENCIACOLI}"), false},
        {QStringLiteral("Diferencia columna II"), QStringLiteral("{DIFERENCIACOLII}"), false},
        {QStringLiteral("Menos: pagos a cuenta"), QStringLiteral("{PAGOACUENTA}"), false},
        {QStringLiteral("TOTAL A PAGAR"), QStringLiteral("{TOTALAPAGAR}"), true}};
    return l;
}

// The annexes of vouchers: 25 lines a page; F977 and F985 have no voucher
// type, and their name column takes its room.
ReportLayout Annex(const QString& name, const QString& title, const QString& counterpart,
                   bool withType)
{
    ReportLayout l;
    l.name = name;
    l.number = name.mid(1);
    l.title = title;
    l.subtitle = kTissh;
    l.kind = LayoutKind::Annex;
    l.fechaRectificativa = QStringLiteral("{FECHARECTIFICATIVA}");
    l.identification = {PremisesRow(QStringLiteral("{PADRON1}"), QStringLiteral("{#PERIODO}")),
                        {{QStringLiteral("Apellido y nombre o razón social"),
                          QStringLiteral("{#RAZON_SOCIAL}"), 160},
                         {QStringLiteral("Código postal"), QStringLiteral("{#CP}"), 30}},
                        {{QStringLiteral("Domicilio"), QStringLiteral("{#DOMICILIO}"), 190}}};
    l.columns = {{QStringLiteral("Fecha"), QStringLiteral("{#FECHA}"), 20, false}};
    if (withType)
        l.columns << LayoutColumn{QStringLiteral("Tipo comprobante"),
                                  QStringLiteral("{#TIPOCOMPROBANTE}"), 30, false};
    l.columns << LayoutColumn{QStringLiteral("Nº comprobante"), QStringLiteral("{#NROCOMPROBANTE}"),
                              28, false}
              << LayoutColumn{counterpart, QStringLiteral("{#DENOMINACION}"),
                              withType ? 52.0 : 82.0, false}
              << LayoutColumn{QStringLiteral("C.U.I.T."), QStringLiteral("{#CUIT|cuit}"), 30, false}
              << LayoutColumn{QStringLiteral("Importe"), QStringLiteral("{#IMPORTEPERCIBIDO}"), 30,
                              true};
    l.totalCaption = QStringLiteral("TOTAL");
    l.totalValue = QStringLiteral("{TOTALPERCEPCIONES}");
    l.suscriptor = QStringLiteral("{SUSCRIPTOR}");
    l.caracter = QStringLiteral("{CARACTER}");
    l.copy = QStringLiteral("{PIEREPORTE}");
    l.guidv = QStringLiteral("{GUIDV}");
    return l;
}

ReportLayout AgentReturn(const QString& name, const QString& title, const QString& annex)
{
    ReportLayout l;
    l.name = name;
    l.number = name.mid(1);
    l.title = title;
    l.subtitle = kTissh;
    l.kind = LayoutKind::AgentReturn;
    l.original = QStringLiteral("{ORIGINAL}");
    l.rectificativa = QStringLiteral("{RECTIFICATIVA}");
    l.fechaRectificativa = QStringLiteral("{PRECTIFICATIVA}");
    l.identification = {PremisesRow(QStringLiteral("{PADRON}"), QStringLiteral("{MES}-{ANIO}")),
                        {{QStringLiteral("Apellido y nombre o razón social"),
                          QStringLiteral("{APELLIDONOMBRE}"), 190}},
                        {{QStringLiteral("Domicilio"), QStringLiteral("{DOMICILIO}"), 190}}};
    l.totals = {{QStringLiteral("Importe según anexo ") + annex,
                 QStringLiteral("{IMPORTERETENIDO}"), false},
                {QStringLiteral("Más: accesorios"), QStringLiteral("{ACCESORIOS}"), false},
                {QStringLiteral("Más: multas"), QStringLiteral("{MULTAS}"), false},
                {QStringLiteral("Más: otros"), QStringLiteral("{OTROS}"), false},
                {QStringLiteral("IMPORTE A DEPOSITAR"), QStringLiteral("{IMPORTEDEPOSITAR}"), true},
                {QStringLiteral("Importe pagado"), QStringLiteral("{IMPORTEPAGADO}"), false}};
    l.words = QStringLiteral("{IMPORTELETRAS}");
    l.copy = QStringLiteral("{COMPROBANTE}");
    l.guidv = QStringLiteral("{GUIDV}");
    return l;
}

QHash<QString, ReportLayout> BuildLayouts()
{
    const QList<ReportLayout> all = {
        F976Layout(),
        F2001Layout(),
        Annex(QStringLiteral("F977"), QStringLiteral("ANEXO - RETENCIONES SUFRIDAS"),
              QStringLiteral("Agente de retención"), false),
        Annex(QStringLiteral("F978"), QStringLiteral("ANEXO - PERCEPCIONES SUFRIDAS"),
              QStringLiteral("Agente de percepción"), true),
        Annex(QStringLiteral("F985"), QStringLiteral("ANEXO - RETENCIONES PRACTICADAS"),
              QStringLiteral("Sujeto retenido"), false),
        Annex(QStringLiteral("F987"), QStringLiteral("ANEXO - PERCEPCIONES PRACTICADAS"),
              QStringLiteral("Sujeto percibido"), true),
        AgentReturn(QStringLiteral("F986"),
                    QStringLiteral("DECLARACIÓN JURADA MENSUAL - AGENTE DE RETENCIÓN"),
                    QStringLiteral("F985")),
        AgentReturn(QStringLiteral("F988"),
                    QStringLiteral("DECLARACIÓN JURADA MENSUAL - AGENTE DE PERCEPCIÓN"),
                    QStringLiteral("F987"))};
    QHash<QString, ReportLayout> layouts;
    for (const ReportLayout& layout : all)
        layouts.insert(layout.name, layout);
    return layouts;
}

} // namespace

const ReportLayout* FindReportLayout(const QString& name)
{
    static const QHash<QString, ReportLayout> layouts = BuildLayouts();
    const auto it = layouts.constFind(name.toUpper());
    return it == layouts.constEnd() ? nullptr : &*it;
}

QString ExpandTemplate(const QString& text, const ReportJob& job, int row)
{
    static const QRegularExpression field(QStringLiteral("\\{(#?)([A-Z0-9_%n]+)(\\|cuit)?\\}"));
    QString result;
    qsizetype last = 0;
    for (auto it = field.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        result += text.mid(last, match.capturedStart() - last);
        QString name = match.captured(2);
        name.replace(QStringLiteral("%n"), QString::number(row + 1));
        QString value = match.captured(1).isEmpty() ? job.parameter(name) : job.cell(row, name);
        if (!match.captured(3).isEmpty() && value.size() == 11)
            value = FormatCuit(value);
        result += value;
        last = match.capturedEnd();
    }
    return result + text.mid(last);
}
