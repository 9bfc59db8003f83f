#include "ReportDriver.h"

#include <QDate>

#include "Globals.h"
#include "MontoEnLetras.h"
#include "ReportPrinter.h"
#include "SqlText.h"
#include "Tovak.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoHashGuid.h"

namespace {

const QString kCopies[] = {QStringLiteral("ORIGINAL MUNICIPALIDAD"),
                           QStringLiteral("DUPLICADO CONTRIBUYENTE")};

// What every form's printing shares: the declaration's key and the premises'
// data, read once.
struct Declaration {
    QString parametros;
    QString form;
    QString padron;
    QString objeto;
    QString periodo;
    QString codigo;
    QString fecha;     // as stored, for the filters
    QString fechaText; // as printed: "dd-mm-yyyy" or "0"
    QString ctrl;
    bool rectificativa = false;
    QString hoy;
    QString cuit;
    QString domicilio;
    QString cp;
    QString razonSocial;
    QString suscriptor;
    QString caracter;
    QString principal;
    QString apellidoNombre;
};

bool IsTrueText(const QString& text)
{
    return text.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0 ||
           text.compare(QStringLiteral("Verdadero"), Qt::CaseInsensitive) == 0;
}

QString Mark(bool on)
{
    return on ? QStringLiteral("X") : QString();
}

Declaration ReadDeclaration(const QString& parametros)
{
    Declaration d;
    d.parametros = parametros;
    d.parametros.replace(QStringLiteral("Padrón N° "), QStringLiteral("Padron="));
    const QString& p = d.parametros;
    d.form = ReadParameter(p, QStringLiteral("Formulario")).toUpper();
    const QString padron = ReadParameter(p, QStringLiteral("Padron"));
    d.padron = padron.left(13);
    d.objeto = padron.mid(26, 13);
    d.periodo = ReadParameter(p, QStringLiteral("Periodo")) + u'-' +
                ReadParameter(p, QStringLiteral("Anio"));
    d.periodo = d.periodo.left(7);
    d.fecha = ReadParameter(p, QStringLiteral("FechaRectificativa"));
    d.ctrl = ReadParameter(p, QStringLiteral("ctrl"));
    d.rectificativa = IsTrueText(ReadParameter(p, QStringLiteral("Rectificativa")));
    // A form hands over its Codigo; the tree's keys of a month do not carry
    // one, and the row code is then built as the submission file builds it.
    d.codigo = ReadParameter(p, QStringLiteral("Codigo"));
    if (d.codigo.isEmpty())
        d.codigo = d.padron + d.periodo.left(2) + d.periodo.right(4) + d.objeto +
                   (d.rectificativa ? u'R' : u'O');
    if (d.fecha != QLatin1String("0")) {
        const QDate day = TextToDate(d.fecha);
        d.fechaText = day.isValid() ? day.toString(QStringLiteral("dd-MM-yyyy")) : d.fecha;
    } else {
        d.fechaText = QStringLiteral("0");
    }
    d.hoy = QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"));

    RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM tPadronesComerciales WHERE Padron = '") + Sq(d.padron) +
        QStringLiteral("' and objeto = '") + Sq(d.objeto) + QStringLiteral("' "));
    if (rs && !rs->EOF_()) {
        d.cuit = rs->Text(QStringLiteral("cuit"));
        d.domicilio = rs->Text(QStringLiteral("calle_numero")) + QStringLiteral(" -  ") +
                      rs->Text(QStringLiteral("localidad_departamento"));
        d.cp = rs->Text(QStringLiteral("cp"));
        d.razonSocial = rs->Text(QStringLiteral("Razon_Social"));
        d.suscriptor = rs->Text(QStringLiteral("Suscriptor"));
        d.caracter = rs->Text(QStringLiteral("Caracter"));
    }
    d.principal = gAccess().GetString(
        QStringLiteral("SELECT padron & ' - ' & objeto FROM tPadronesComerciales WHERE cuit = '") +
        Sq(d.cuit) + QStringLiteral("' AND Principal IS NOT NULL"));
    if (d.principal.isEmpty())
        d.principal = QStringLiteral("------------");
    // Taxpayers keep their CUIT masked, premises bare: the masked spelling
    // finds the name when the bare one does not.
    const QString nameSql =
        QStringLiteral("SELECT ApellidoNombre FROM CONTRIBUYENTES WHERE Cuit = '");
    d.apellidoNombre = gAccess().GetString(nameSql + Sq(d.cuit) + u'\'');
    if (d.apellidoNombre.isEmpty() && !d.cuit.isEmpty())
        d.apellidoNombre = gAccess().GetString(nameSql + Sq(FormatCuit(d.cuit)) + u'\'');
    return d;
}

QString DeclarationFilter(const Declaration& d)
{
    return QStringLiteral(" WHERE Codigo = '") + Sq(d.codigo) +
           QStringLiteral("' AND FECHARECTIFICATIVA = '") + Sq(d.fecha) +
           QStringLiteral("' AND ctrl = '") + Sq(d.ctrl) + u'\'';
}

QString Amount(const RecordsetPtr& rs, const QString& column)
{
    return rs && !rs->EOF_() ? FormatAmount(rs->Text(column)) : QString();
}

// The activity lines of a monthly return, at most six.
struct Lines {
    QStringList codigo, descripcion, base, alicuota, impuesto;
    int read = 0;
};

Lines ReadLines(const Declaration& d)
{
    Lines lines;
    RecordsetPtr rs = gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + d.form +
                                              QStringLiteral("_Detalle") + DeclarationFilter(d));
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        ++lines.read;
        if (lines.codigo.size() >= ReportDriver::kActivityLines)
            continue; // a seventh line finds no slot and is not printed
        lines.codigo << rs->Text(QStringLiteral("CodigoActividad"));
        lines.descripcion << rs->Text(QStringLiteral("TipoActividad"));
        lines.base << FormatAmount(rs->Text(QStringLiteral("BaseImponible")));
        lines.alicuota << rs->Text(QStringLiteral("Alicuota"));
        lines.impuesto << FormatAmount(rs->Text(QStringLiteral("Impuesto")));
    }
    return lines;
}

void AddNumbered(ReportJob& job, const QString& name, const QStringList& values)
{
    for (int i = 0; i < ReportDriver::kActivityLines; ++i)
        job.addParameter(name + QString::number(i + 1), values.value(i));
}

// The plain text of a real number, with the regional decimal and no groups,
// as the old runtime wrote a Double: up to 15 significant digits.
QString PlainNumber(double value)
{
    return QString::number(value, 'g', 15).replace(u'.', GetDecimalSymbol());
}

// The declaration's identity that the verification code of each page
// carries, beside the parameter fields.
void SetIdentity(ReportJob& job, const Declaration& d, const QString& periodo, const QString& total)
{
    job.record.insert(QStringLiteral("FORMULARIO"), d.form);
    job.record.insert(QStringLiteral("CUIT"), d.cuit);
    job.record.insert(QStringLiteral("PADRON"), d.padron);
    job.record.insert(QStringLiteral("OBJETO"), d.objeto);
    job.record.insert(QStringLiteral("PERIODO"), periodo);
    job.record.insert(QStringLiteral("RECTIFICACION"),
                      d.ctrl.isEmpty() ? QStringLiteral("0") : d.ctrl);
    job.record.insert(QStringLiteral("GUIDV"), job.parameter(QStringLiteral("GUIDV")));
    job.record.insert(QStringLiteral("TOTAL"), FormatAmount(total));
}

QList<ReportJob> PrepareF976(const Declaration& d)
{
    const Lines lines = ReadLines(d);
    if (lines.read == 0)
        return {};
    RecordsetPtr rs =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM F976") + DeclarationFilter(d));
    auto col = [&](const char* name) { return Amount(rs, QString::fromLatin1(name)); };
    const double subtotal = TextToDouble(col("SubtotalDeterminado"));
    const double tasa = TextToDouble(col("Tasa"));

    ReportJob job;
    job.layout = QStringLiteral("F976");
    job.addParameter(QStringLiteral("DOMICILIO"), d.domicilio);
    job.addParameter(QStringLiteral("ORIGINAL"), Mark(!d.rectificativa));
    job.addParameter(QStringLiteral("RECTIFICATIVA"), Mark(d.rectificativa));
    job.addParameter(QStringLiteral("FECHA"), d.hoy);
    job.addParameter(QStringLiteral("CUIT"), d.cuit);
    job.addParameter(QStringLiteral("PADRON"), d.padron);
    job.addParameter(QStringLiteral("RAZONSOCIAL"), d.razonSocial);
    job.addParameter(QStringLiteral("PERIODO"),
                     rs && !rs->EOF_() ? rs->Text(QStringLiteral("Periodo")) : d.periodo);
    AddNumbered(job, QStringLiteral("CODIGO"), lines.codigo);
    AddNumbered(job, QStringLiteral("ACTIVIDADES"), lines.descripcion);
    AddNumbered(job, QStringLiteral("BASEIMPONIBLE"), lines.base);
    AddNumbered(job, QStringLiteral("ALICUOTA"), lines.alicuota);
    AddNumbered(job, QStringLiteral("TASA"), lines.impuesto);
    job.addParameter(QStringLiteral("IMPUESTO"), col("Impuesto"));
    job.addParameter(QStringLiteral("TASA"), col("Tasa"));
    job.addParameter(QStringLiteral("RETENCIONES"), col("Retenciones"));
    job.addParameter(QStringLiteral("PERCEPCIONES"), col("Percepciones"));
    job.addParameter(QStringLiteral("SALDOAFAVOR"), col("SaldoAFavor"));
    job.addParameter(QStringLiteral("SALDOAFAVORF"), col("SaldoAFavorF"));
    // The determined subtotal prints as the distance between the stored
    // subtotal and the minimum rate, the smaller taken from the greater.
    job.addParameter(QStringLiteral("SUBTOTALDETERMINADO"),
                     PlainNumber(qMax(subtotal, tasa) - qMin(subtotal, tasa)));
    job.addParameter(QStringLiteral("ACCESORIOS"), col("Accesorios"));
    job.addParameter(QStringLiteral("MULTAS"), col("Multas"));
    job.addParameter(QStringLiteral("PAGOACUENTA"), col("PagoACuenta"));
    job.addParameter(QStringLiteral("TOTALAPAGAR"), col("TotalAPagar"));
    job.addParameter(QStringLiteral("BASEIMPONIBLE"), col("BaseImponible"));
    job.addParameter(QStringLiteral("TOTALAPAGARLETRA"),
                     MontoEnLetras(TextToDouble(col("TotalAPagar"))));
    job.addParameter(QStringLiteral("OBJETO"), d.objeto);
    job.addParameter(QStringLiteral("SUSCRIPTOR"), d.suscriptor);
    job.addParameter(QStringLiteral("CARACTER"), d.caracter);
    job.addParameter(QStringLiteral("PADRONPRINCIPAL"), d.principal);
    job.addParameter(QStringLiteral("GUIDV"),
                     rs && !rs->EOF_() ? rs->Text(QStringLiteral("Guidv")) : QString());
    job.record.insert(QStringLiteral("SUBTOTALDETERMINADO"), col("SubtotalDeterminado"));
    job.record.insert(QStringLiteral("FECHARECTIFICATIVA"), d.fechaText);
    SetIdentity(job, d, job.parameter(QStringLiteral("PERIODO")), col("TotalAPagar"));
    return {job};
}

QList<ReportJob> PrepareF2001(const Declaration& d)
{
    const Lines lines = ReadLines(d);
    RecordsetPtr rs =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM F2001") + DeclarationFilter(d));
    auto col = [&](const char* name) { return Amount(rs, QString::fromLatin1(name)); };
    const QString fecha =
        rs && !rs->EOF_() ? rs->Text(QStringLiteral("FechaRectificativa")) : d.fecha;

    ReportJob job;
    job.layout = QStringLiteral("F2001");
    job.addParameter(QStringLiteral("CUIT"), d.cuit);
    job.addParameter(QStringLiteral("ORIGINAL"), Mark(!d.rectificativa));
    job.addParameter(QStringLiteral("RECTIFICATIVA"), Mark(d.rectificativa));
    job.addParameter(QStringLiteral("DIA"), fecha.mid(0, 2));
    job.addParameter(QStringLiteral("MES"), fecha.mid(3, 2));
    job.addParameter(QStringLiteral("ANIO"), fecha.right(4));
    job.addParameter(QStringLiteral("RAZONSOCIAL"), d.razonSocial);
    job.addParameter(QStringLiteral("DOMICILIO"), d.domicilio);
    job.addParameter(QStringLiteral("CODIGOPOSTAL"), d.cp);
    job.addParameter(QStringLiteral("PADRON"), d.padron);
    AddNumbered(job, QStringLiteral("CODIGO"), lines.codigo);
    AddNumbered(job, QStringLiteral("DESCRIPCION"), lines.descripcion);
    AddNumbered(job, QStringLiteral("BASEIMPONIBLE"), lines.base);
    AddNumbered(job, QStringLiteral("ALICUOTA"), lines.alicuota);
    AddNumbered(job, QStringLiteral("IMPUESTO"), lines.impuesto);
    const char* const totals[][2] = {
        {"TOTALTASADETERMINADA", "Total"},     {"SALDOAFAVOR", "SaldoAFavor"},
        {"RETENCIONES", "Retenciones"},        {"PERCEPCIONES", "Percepciones"},
        {"SUBTOTALCOLI", "SubtotalCol12"},     {"SUBTOTALCOLII", "SubtotalColumna2"},
        {"DIFERENCIACOLI", "DiferenciaCol12"}, {"DIFERENCIACOLII", "DiferenciaColumna2"},
        {"PAGOACUENTA", "PagoACuenta"},        {"TOTALAPAGAR", "TotalAPagar"},
        {"TOTALIMPONIBLE", "BaseImponible"},   {"TOTALIMPUESTO", "Impuesto"}};
    for (const auto& total : totals)
        job.addParameter(QString::fromLatin1(total[0]), col(total[1]));
    job.addParameter(QStringLiteral("PMES"), d.periodo.left(2));
    job.addParameter(QStringLiteral("PANIO"), d.periodo.right(4));
    job.addParameter(QStringLiteral("DESGRABACIONES"), col("Desgrabaciones"));
    job.addParameter(QStringLiteral("OBJETO"), d.objeto);
    job.addParameter(QStringLiteral("SUSCRIPTOR"), d.suscriptor);
    job.addParameter(QStringLiteral("CARACTER"), d.caracter);
    job.addParameter(QStringLiteral("PADRONPRINCIPAL"), d.principal);
    job.addParameter(QStringLiteral("GUIDV"), GetDeclarationGuidv(d.parametros));
    SetIdentity(job, d, d.periodo, col("TotalAPagar"));
    return {job};
}

// The staging columns, in the order of the table; F977 and F985 have no
// voucher type in their lines.
QString StagingInsert(const QString& form)
{
    const bool withType = form == QLatin1String("F978") || form == QLatin1String("F987");
    const QString staging = form + QStringLiteral("_DETALLE_REPORTE");
    const QString detail = form + QStringLiteral("_Detalle");
    return QStringLiteral("INSERT INTO ") + staging +
           QStringLiteral(" (PADRON, DOMICILIO, PERIODO, RECTIFICATIVA, TOTALPERCEPCIONES, "
                          "FECHARECTIFICATIVA, CODIGO, FECHA, ") +
           (withType ? QStringLiteral("TIPOCOMPROBANTE, ") : QString()) +
           QStringLiteral(
               "NROCOMPROBANTE, DENOMINACION, CUIT, IMPORTEPERCIBIDO, RAZON_SOCIAL, CP)") +
           QStringLiteral(" SELECT ") + detail + QStringLiteral(".Padron, ") + form +
           QStringLiteral(".Domicilio, ") + form + QStringLiteral(".Periodo, ") + form +
           QStringLiteral(".Rectificativa, ") + form + QStringLiteral(".TotalPercepciones , ") +
           form + QStringLiteral(".FechaRectificativa, ") + detail + QStringLiteral(".Codigo, ") +
           detail + QStringLiteral(".Fecha, ") +
           (withType ? detail + QStringLiteral(".TipoComprobante, ") : QString()) + detail +
           QStringLiteral(".NroComprobante, ") + detail + QStringLiteral(".Denominacion, ") +
           detail + QStringLiteral(".cuit, ") + detail + QStringLiteral(".ImportePercibido, ") +
           QStringLiteral(" tPadronesComerciales.razon_social, tPadronesComerciales.CP ") +
           QStringLiteral(" From ") + detail + QStringLiteral(", ") + form +
           QStringLiteral(", tPadronesComerciales ") + QStringLiteral(" WHERE ") + detail +
           QStringLiteral(".Codigo=") + form + QStringLiteral(".Codigo And ") + detail +
           QStringLiteral(".FechaRectificativa=") + form + QStringLiteral(".FechaRectificativa ") +
           QStringLiteral(" And ") + form + QStringLiteral(".Padron=tPadronesComerciales.Padron ") +
           QStringLiteral(" And ") + form + QStringLiteral(".Objeto=tPadronesComerciales.Objeto ");
}

QList<ReportJob> PrepareAnnex(const Declaration& d)
{
    const QString staging = d.form + QStringLiteral("_DETALLE_REPORTE");
    const QString detail = d.form + QStringLiteral("_DETALLE");
    gAccess().Execute(QStringLiteral("DELETE * FROM ") + staging + u' ');
    gAccess().Execute(StagingInsert(d.form) + QStringLiteral(" And ") + detail +
                      QStringLiteral(".Codigo = '") + Sq(d.codigo) + QStringLiteral("' And ") +
                      detail + QStringLiteral(".FechaRectificativa = '") + Sq(d.fecha) +
                      QStringLiteral("' And ") + detail + QStringLiteral(".ctrl = '") + Sq(d.ctrl) +
                      QStringLiteral("' ORDER BY ") + detail + QStringLiteral(".CodigoDetalle "));
    const int lines = ReportDriver::CompletarDetalleReporte(d.form);

    ReportJob base;
    base.layout = d.form;
    base.realLines = qMax(0, lines);
    RecordsetPtr rs = gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + staging);
    if (rs) {
        for (const QString& column : rs->FieldNames())
            base.columns << column.toUpper();
        for (const auto& row : rs->rows()) {
            QStringList texts;
            for (const QVariant& value : row)
                texts << NullToText(value);
            base.rows << texts;
        }
    }
    // The distinct total of the lines; the blank rows carry none.
    QString total;
    RecordsetPtr totals = gAccess().FillRecordSet(
        QStringLiteral("SELECT distinct TOTALPERCEPCIONES FROM ") + staging + u' ');
    for (; totals && !totals->EOF_() && total.isEmpty(); totals->MoveNext())
        total = totals->Text(0);

    // The header comes from the declaration and its premises, lines or none.
    RecordsetPtr row =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + d.form + DeclarationFilter(d));
    const bool found = row && !row->EOF_();
    const QString periodo = found ? row->Text(QStringLiteral("Periodo")) : d.periodo;
    const QString domicilio = found ? row->Text(QStringLiteral("Domicilio")) : QString();
    base.record.insert(QStringLiteral("PERIODO"), periodo);
    base.record.insert(QStringLiteral("DOMICILIO"), domicilio.isEmpty() ? d.domicilio : domicilio);
    base.record.insert(QStringLiteral("RAZONSOCIAL"), d.razonSocial);
    base.record.insert(QStringLiteral("CP"), d.cp);

    QList<ReportJob> jobs;
    for (const QString& copy : kCopies) {
        ReportJob job = base;
        job.addParameter(QStringLiteral("CUIT"), d.cuit);
        job.addParameter(QStringLiteral("FECHARECTIFICATIVA"), d.fechaText);
        job.addParameter(QStringLiteral("PIEREPORTE"), copy);
        job.addParameter(QStringLiteral("PADRON1"), d.padron);
        job.addParameter(QStringLiteral("TOTALPERCEPCIONES"), FormatAmount(total));
        job.addParameter(QStringLiteral("OBJETO"), d.objeto);
        job.addParameter(QStringLiteral("SUSCRIPTOR"), d.suscriptor);
        job.addParameter(QStringLiteral("CARACTER"), d.caracter);
        job.addParameter(QStringLiteral("GUIDV"), GetDeclarationGuidv(d.parametros));
        SetIdentity(job, d, periodo, total);
        jobs << job;
    }
    return jobs;
}

QList<ReportJob> PrepareAgentReturn(const Declaration& d)
{
    QString sql = QStringLiteral("SELECT * FROM ") + d.form + QStringLiteral(" WHERE Padron = '") +
                  Sq(d.padron) + QStringLiteral("' AND Objeto = '") + Sq(d.objeto) +
                  QStringLiteral("' AND Periodo = '") + Sq(d.periodo) +
                  QStringLiteral("' AND RECTIFICATIVA in ") +
                  (d.rectificativa ? QStringLiteral("('True','Verdadero') ")
                                   : QStringLiteral("('False','Falso') "));
    if (!d.rectificativa && d.form == QLatin1String("F986"))
        sql += QStringLiteral("AND FECHARECTIFICATIVA = '0'");
    RecordsetPtr rs = gAccess().FillRecordSet(sql);
    // Of several versions of the period, the one the parameters name.
    if (rs) {
        for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext()) {
            if (rs->Text(QStringLiteral("ctrl")) == d.ctrl)
                break;
        }
        if (rs->EOF_())
            rs->MoveFirst();
    }
    auto col = [&](const QString& name) { return Amount(rs, name); };
    const QString periodo = rs && !rs->EOF_() ? rs->Text(QStringLiteral("Periodo")) : d.periodo;
    const QString retenido = d.form == QLatin1String("F986") ? QStringLiteral("ImpPercibidoF985")
                                                             : QStringLiteral("ImpPercibidoF987");
    const QString depositar = col(QStringLiteral("ImporteDepositar"));

    QList<ReportJob> jobs;
    for (const QString& copy : kCopies) {
        ReportJob job;
        job.layout = d.form;
        job.addParameter(QStringLiteral("ACCESORIOS"), col(QStringLiteral("AccesoriosCoef")));
        job.addParameter(QStringLiteral("ANIO"), periodo.right(4));
        job.addParameter(QStringLiteral("APELLIDONOMBRE"), d.apellidoNombre);
        job.addParameter(QStringLiteral("RECTIFICATIVA"), Mark(d.rectificativa));
        job.addParameter(QStringLiteral("ORIGINAL"), Mark(!d.rectificativa));
        job.addParameter(QStringLiteral("MES"), periodo.left(2));
        job.addParameter(QStringLiteral("PADRON"), d.padron);
        job.addParameter(QStringLiteral("PERIODO"), periodo);
        job.addParameter(QStringLiteral("PRECTIFICATIVA"), d.fechaText);
        job.addParameter(QStringLiteral("DOMICILIO"), d.domicilio);
        job.addParameter(QStringLiteral("IMPORTERETENIDO"), col(retenido));
        job.addParameter(QStringLiteral("CUIT"), d.cuit);
        job.addParameter(QStringLiteral("COMPROBANTE"), copy);
        job.addParameter(QStringLiteral("MULTAS"), col(QStringLiteral("Multas")));
        job.addParameter(QStringLiteral("OTROS"), col(QStringLiteral("Otros")));
        job.addParameter(QStringLiteral("IMPORTEDEPOSITAR"), depositar);
        job.addParameter(QStringLiteral("IMPORTEPAGADO"), depositar);
        job.addParameter(QStringLiteral("IMPORTELETRAS"), MontoEnLetras(TextToDouble(depositar)));
        job.addParameter(QStringLiteral("OBJETO"), d.objeto);
        job.addParameter(QStringLiteral("GUIDV"), GetDeclarationGuidv(d.parametros));
        SetIdentity(job, d, periodo, depositar);
        jobs << job;
    }
    return jobs;
}

} // namespace

QList<ReportJob> ReportDriver::Prepare(const QString& parametros)
{
    EnsureDeclarationGuidv(parametros);
    const Declaration d = ReadDeclaration(parametros);
    if (d.form == QLatin1String("F976"))
        return PrepareF976(d);
    if (d.form == QLatin1String("F2001"))
        return PrepareF2001(d);
    if (d.form == QLatin1String("F986") || d.form == QLatin1String("F988"))
        return PrepareAgentReturn(d);
    static const QStringList annexes = {"F977", "F978", "F985", "F987"};
    if (annexes.contains(d.form))
        return PrepareAnnex(d);
    return {};
}

int ReportDriver::CompletarDetalleReporte(const QString& form)
{
    const QString staging = form + QStringLiteral("_DETALLE_REPORTE");
    const int count =
        gAccess().GetInteger(QStringLiteral(" SELECT COUNT(*) AS CANT FROM ") + staging + u' ');
    if (count <= 0)
        return qMax(count, 0);
    const int blanks = (kLinesPerPage - count % kLinesPerPage) % kLinesPerPage;
    const QString insert =
        QStringLiteral("INSERT INTO ") + staging +
        QStringLiteral(" VALUES('','','','','','','','','','','','','0.00','','') ");
    for (int i = 0; i < blanks; ++i)
        gAccess().Execute(insert);
    return count;
}

bool ReportDriver::Imprimir(const QString& parametros, bool preview, QString* why)
{
    QString reason;
    const QList<ReportJob> jobs = Prepare(parametros);
    if (jobs.isEmpty()) {
        reason = QStringLiteral("el formulario no tiene actividades que imprimir");
    } else if (preview) {
        reportPrinter().preview(jobs);
        return true;
    } else if (reportPrinter().print(jobs)) {
        return true;
    } else {
        reason = reportPrinter().hasPrinter()
                     ? QStringLiteral("la impresión fue cancelada o no pudo completarse")
                     : QStringLiteral("no hay una impresora instalada");
    }
    if (why)
        *why = reason;
    return false;
}
