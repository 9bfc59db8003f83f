#include "ReportLayout.h"

#include <QHash>
#include <QRegularExpression>

#include "MontoEnLetras.h"
#include "Numbers.h"
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
    l.columns = {{QStringLiteral("Código"), QStringLiteral("{CODIGO%n}"), 18, false},
                 {QStringLiteral("Actividad"), activity, 84, false},
                 {QStringLiteral("Base imponible"), QStringLiteral("{BASEIMPONIBLE%n}"), 38, true},
                 {QStringLiteral("Alícuota"), QStringLiteral("{ALICUOTA%n}"), 16, true},
                 {QStringLiteral("Impuesto"), tax, 34, true}};
    l.suscriptor = QStringLiteral("{SUSCRIPTOR}");
    l.caracter = QStringLiteral("{CARACTER}");
    l.principal = QStringLiteral("{PADRONPRINCIPAL}");
    l.guidv = QStringLiteral("{GUIDV}");
    return l;
}

// The formulas of F976: its return in two columns, credits (I) and levy
// (II). The determined subtotal of the credits is the stored one, the
// levy's is the rate or minimum; the balance between them (the parameter
// SUBTOTALDETERMINADO, a plain figure) falls on the side of the greater.
QString F976Formula(const QString& name, const ReportJob& job)
{
    const double credits = TextToDouble(job.field(QStringLiteral("SUBTOTALDETERMINADO")));
    const double levy = TextToDouble(job.parameter(QStringLiteral("TASA")));
    const QString balance =
        LocaleFixed(TextToDouble(job.parameter(QStringLiteral("SUBTOTALDETERMINADO"))), 2, true);
    const QString zero = LocaleFixed(0, 2, true);
    if (name == QLatin1String("SUBTOTALI"))
        return LocaleFixed(credits, 2, true);
    if (name == QLatin1String("SALDOI"))
        return levy < credits ? balance : zero;
    if (name == QLatin1String("SALDOII"))
        return levy < credits ? zero : balance;
    if (name == QLatin1String("PERIODOSALDO")) {
        // The period of the return that left the balance, when one was typed.
        static const QRegularExpression period(QStringLiteral("^\\d\\d-\\d{4}$"));
        const QString text = job.parameter(QStringLiteral("SALDOAFAVORF"));
        return period.match(text).hasMatch() ? QStringLiteral(" (período ") + text + u')'
                                             : QString();
    }
    return {};
}

ReportLayout F976Layout()
{
    ReportLayout l = MonthlyReturn(
        QStringLiteral("F976"), QStringLiteral("DECLARACIÓN JURADA MENSUAL - RÉGIMEN GENERAL"),
        QStringLiteral("{ACTIVIDADES%n}"), QStringLiteral("{TASA%n}"), QStringLiteral("{PERIODO}"));
    l.fecha = QStringLiteral("{FECHA}");
    l.fechaRectificativa = QStringLiteral("{$FECHARECTIFICATIVA}");
    l.totalCaption = QStringLiteral("TOTAL TASA DETERMINADA");
    l.totalValue = QStringLiteral("{BASEIMPONIBLE|amount}");
    l.totalTax = QStringLiteral("{IMPUESTO|amount}");
    l.formula = F976Formula;
    l.totals = {
        {QStringLiteral("Tasa o Mínimo (el mayor)"), QStringLiteral("{TASA|amount}"), false},
        {QStringLiteral("Retenciones"), {}, false, QStringLiteral("{RETENCIONES|amount}")},
        {QStringLiteral("Percepciones"), {}, false, QStringLiteral("{PERCEPCIONES|amount}")},
        {QStringLiteral("Saldo a Favor - DDJJ{=PERIODOSALDO}"),
         {},
         false,
         QStringLiteral("{SALDOAFAVOR|amount}")},
        {QStringLiteral("Subtotal Determinado"), QStringLiteral("{TASA|amount}"), true,
         QStringLiteral("{=SUBTOTALI}")},
        {QStringLiteral("Saldo a Favor del Contrib./QRTM"), QStringLiteral("{=SALDOII}"), false,
         QStringLiteral("{=SALDOI}")},
        {QStringLiteral("Accesorios"), QStringLiteral("{ACCESORIOS|amount}"), false},
        {QStringLiteral("Multas"), QStringLiteral("{MULTAS|amount}"), false},
        {QStringLiteral("Pago a Cuenta"), {}, false, QStringLiteral("{PAGOACUENTA|amount}")},
        {QStringLiteral("TOTAL A PAGAR"), QStringLiteral("{TOTALAPAGAR|amount}"), true}};
    l.totalsNote = QStringLiteral(
        "Total a pagar = saldo de la columna II + accesorios + multas - saldo de la columna I "
        "- pago a cuenta; cuando el resultado es negativo, el total a pagar es cero.");
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
    l.totalCaption = QStringLiteral("TOTAL TASA DETERMINADA");
    l.totalValue = QStringLiteral("{TOTALIMPONIBLE|amount}");
    l.totalTax = QStringLiteral("{TOTALIMPUESTO|amount}");
    l.totals = {
        {QStringLiteral("Tasa o Mínimo (el mayor)"),
         QStringLiteral("{TOTALTASADETERMINADA|amount}"), false},
        {QStringLiteral("Saldo a Favor DDJJ"), {}, false, QStringLiteral("{SALDOAFAVOR|amount}")},
        {QStringLiteral("Retenciones"), {}, false, QStringLiteral("{RETENCIONES|amount}")},
        {QStringLiteral("Percepciones"), {}, false, QStringLiteral("{PERCEPCIONES|amount}")},
        {QStringLiteral("Desgravaciones"), {}, false, QStringLiteral("{DESGRABACIONES|amount}")},
        {QStringLiteral("Subtotal Col. I y II"), QStringLiteral("{SUBTOTALCOLII|amount}"), true,
         QStringLiteral("{SUBTOTALCOLI|amount}")},
        {QStringLiteral("DIFERENCIAS COL. I Y COL. II"), QStringLiteral("{DIFERENCIACOLII|amount}"),
         false, QStringLiteral("{DIFERENCIACOLI|amount}")},
        {QStringLiteral("Pago a Cuenta"), {}, false, QStringLiteral("{PAGOACUENTA|amount}")},
        {QStringLiteral("TOTAL A PAGAR"), QStringLiteral("{TOTALAPAGAR|amount}"), true}};
    l.totalsNote = QStringLiteral(
        "Total a pagar = diferencia de la columna II - pago a cuenta; cuando el resultado es "
        "negativo, el total a pagar es cero. La diferencia de la columna I queda a favor del "
        "contribuyente.");
    // F2001 is not handed the total in words; its layout spells it out.
    l.formula = [](const QString& name, const ReportJob& job) {
        return name == QLatin1String("LETRAS")
                   ? MontoEnLetras(TextToDouble(job.parameter(QStringLiteral("TOTALAPAGAR"))))
                   : QString();
    };
    l.words = QStringLiteral("{=LETRAS}");
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
    l.identification = {PremisesRow(QStringLiteral("{PADRON1}"), QStringLiteral("{$PERIODO}")),
                        {{QStringLiteral("Apellido y nombre o razón social"),
                          QStringLiteral("{$RAZONSOCIAL}"), 160},
                         {QStringLiteral("Código postal"), QStringLiteral("{$CP}"), 30}},
                        {{QStringLiteral("Domicilio"), QStringLiteral("{$DOMICILIO}"), 190}}};
    l.columns = {{QStringLiteral("Fecha"), QStringLiteral("{#FECHA}"), 20, false}};
    if (withType)
        l.columns << LayoutColumn{QStringLiteral("Tipo comprobante"),
                                  QStringLiteral("{#TIPOCOMPROBANTE}"), 30, false};
    l.columns << LayoutColumn{QStringLiteral("Nº comprobante"), QStringLiteral("{#NROCOMPROBANTE}"),
                              28, false}
              << LayoutColumn{counterpart, QStringLiteral("{#DENOMINACION}"),
                              withType ? 52.0 : 82.0, false}
              << LayoutColumn{QStringLiteral("C.U.I.T."), QStringLiteral("{#CUIT|cuit}"), 30, false}
              << LayoutColumn{QStringLiteral("Importe"),
                              QStringLiteral("{#IMPORTEPERCIBIDO|amount}"), 30, true};
    l.totalCaption = QStringLiteral("TOTAL");
    l.totalValue = QStringLiteral("{TOTALPERCEPCIONES|amount}");
    l.suscriptor = QStringLiteral("{SUSCRIPTOR}");
    l.caracter = QStringLiteral("{CARACTER}");
    l.copy = QStringLiteral("{PIEREPORTE}");
    l.guidv = QStringLiteral("{GUIDV}");
    return l;
}

ReportLayout AgentReturn(const QString& name, const QString& title, const QString& annex,
                         const QString& verb)
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
    l.totals = {
        {QStringLiteral("Importe ") + verb + QStringLiteral(" según detalle ") + annex,
         QStringLiteral("{IMPORTERETENIDO|amount}"), false},
        {QStringLiteral("Accesorio coeficiente"), QStringLiteral("{ACCESORIOS|amount}"), false},
        {QStringLiteral("Multas"), QStringLiteral("{MULTAS|amount}"), false},
        {QStringLiteral("Otros"), QStringLiteral("{OTROS|amount}"), false},
        {QStringLiteral("Importe a Depositar"), QStringLiteral("{IMPORTEDEPOSITAR|amount}"), true}};
    l.totalsNote = QStringLiteral("Importe a depositar = importe ") + verb +
                   QStringLiteral(" + accesorio coeficiente + multas + otros. Importe pagado: "
                                  "{IMPORTEPAGADO|amount}");
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
                    QStringLiteral("F985"), QStringLiteral("retenido")),
        AgentReturn(QStringLiteral("F988"),
                    QStringLiteral("DECLARACIÓN JURADA MENSUAL - AGENTE DE PERCEPCIÓN"),
                    QStringLiteral("F987"), QStringLiteral("percibido"))};
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
    static const QRegularExpression field(
        QStringLiteral("\\{([#$=]?)([A-Z0-9_%n]+)(\\|cuit|\\|amount)?\\}"));
    QString result;
    qsizetype last = 0;
    for (auto it = field.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        result += text.mid(last, match.capturedStart() - last);
        QString name = match.captured(2);
        name.replace(QStringLiteral("%n"), QString::number(row + 1));
        const QString source = match.captured(1);
        QString value;
        if (source.isEmpty()) {
            value = job.parameter(name);
        } else if (source == QLatin1String("#")) {
            value = job.cell(row, name);
        } else if (source == QLatin1String("$")) {
            value = job.field(name);
        } else {
            const ReportLayout* layout = FindReportLayout(job.layout);
            value = layout && layout->formula ? layout->formula(name, job) : QString();
        }
        if (match.captured(3) == QLatin1String("|cuit") && value.size() == 11)
            value = FormatCuit(value);
        else if (match.captured(3) == QLatin1String("|amount"))
            value = LocaleFixed(TextToDouble(value), 2, true);
        result += value;
        last = match.capturedEnd();
    }
    return result + text.mid(last);
}
