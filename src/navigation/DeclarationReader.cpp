#include "DeclarationReader.h"

#include "FormTables.h"
#include "Globals.h"
#include "NavigationText.h"
#include "SqlText.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoParameterString.h"

namespace {

} // namespace

QString DeclarationReader::NormalDate(const QString& text)
{
    const QString t = text.trimmed();
    if (t.isEmpty() || t == QLatin1String("0") || t == QLatin1String("NO") ||
        t == QLatin1String("__-__-____"))
        return QStringLiteral("0");
    const QDate date = TextToDate(t);
    return date.isValid() ? date.toString(QStringLiteral("dd-MM-yyyy")) : t;
}

DeclarationHeader DeclarationReader::Read(QString& parameters)
{
    const ZoParameterString& ps = gParameters();
    auto read = [&](const char* key) { return ps.ReadValue(parameters, QString::fromLatin1(key)); };
    DeclarationHeader h;
    const QString padron = read("Padron");
    h.Padron = PadronOfValue(padron);
    h.Objeto = ObjetoOfValue(padron);
    const QString periodo = read("Periodo");
    h.Periodo = periodo.size() > 2 ? periodo.left(2) : TwoDigits(periodo);
    h.Anio = periodo.size() > 2 ? periodo.right(4) : read("Anio");
    h.Formulario = read("Formulario");
    h.Nuevo = read("Nuevo");
    h.ConDatos = read("ConDatos");
    h.Rectificativa = read("Rectificativa");

    // The only place where ctrl grows: a new version of a rectification.
    if (IsYesText(h.Rectificativa) && IsYesText(h.Nuevo))
        parameters = ps.SetValue(parameters, QStringLiteral("ctrl"),
                                 QString::number(read("ctrl").trimmed().toInt() + 1));
    h.ctrl = read("ctrl");

    const QString base = h.Padron + h.Periodo + h.Anio + h.Objeto;
    h.Codigo = base + (IsNoText(h.Rectificativa) ? u'O' : u'R');
    if (!parameters.endsWith(u';'))
        parameters += u';';
    parameters += QStringLiteral("Codigo=") + h.Codigo + u';';

    h.FechaRectificativa = NormalDate(read("FechaRectificativa"));
    h.FechaRectificativaNueva = NormalDate(read("FechaRectificativaNueva"));

    // Which stored row the form starts from.
    h.CodigoLeido = h.Codigo;
    if (!IsYesText(h.Nuevo)) {
        h.FechaLeida = h.FechaRectificativa;
    } else if (!IsYesText(h.Rectificativa)) {
        h.FechaLeida = h.FechaRectificativaNueva;
    } else if (!IsYesText(h.ConDatos)) {
        h.FechaLeida = h.FechaRectificativa != QLatin1String("0") ? h.FechaRectificativa
                                                                  : h.FechaRectificativaNueva;
    } else {
        // A rectification with data starts from the version it comes from.
        h.CodigoLeido = base + (h.FechaRectificativa == QLatin1String("0") ? u'O' : u'R');
        h.FechaLeida = h.FechaRectificativa;
    }

    const FormTables* form = FormTables::find(h.Formulario);
    readPremises(h, form && form->addressWithCp);
    if (form)
        readRow(h, form->hasCodigo, form->amountColumns);
    return h;
}

void DeclarationReader::readPremises(DeclarationHeader& h, bool addressWithCp)
{
    ZoAccess& db = gAccess();
    const RecordsetPtr premises = db.FillRecordSet(
        QStringLiteral("SELECT * FROM tPadronesComerciales WHERE Padron = ") + Quoted(h.Padron) +
        QStringLiteral(" and objeto = ") + Quoted(h.Objeto) + u' ');
    if (premises && !premises->EOF_()) {
        h.Cuit = premises->Text(QStringLiteral("cuit"));
        h.RazonSocial = premises->Text(QStringLiteral("razon_social"));
        h.Domicilio = premises->Text(QStringLiteral("calle_numero")) + QStringLiteral(" - ") +
                      premises->Text(QStringLiteral("localidad_departamento")) +
                      (addressWithCp ? QStringLiteral(" C.P. ") : QStringLiteral(" - ")) +
                      premises->Text(QStringLiteral("cp"));
    }
    const RecordsetPtr taxpayer =
        db.FillRecordSet(QStringLiteral("SELECT * FROM Contribuyentes WHERE Cuit = ") +
                         Quoted(FormatCuit(DigitsOnly(h.Cuit))));
    if (taxpayer && !taxpayer->EOF_()) {
        h.Contribuyente = taxpayer->Text(QStringLiteral("ApellidoNombre"));
        h.IdContribuyente = taxpayer->Text(QStringLiteral("idContribuyente"));
    }
}

void DeclarationReader::readRow(DeclarationHeader& h, bool byCodigo,
                                const QStringList& amountColumns)
{
    QString sql = QStringLiteral("SELECT * FROM ") + h.Formulario;
    if (byCodigo)
        sql += QStringLiteral(" WHERE Codigo = ") + Quoted(h.CodigoLeido) + u' ';
    else
        sql += QStringLiteral(" WHERE PADRON = ") + Quoted(h.Padron) +
               QStringLiteral(" AND OBJETO = ") + Quoted(h.Objeto) +
               QStringLiteral(" AND PERIODO = ") + Quoted(h.PeriodoCompleto()) + u' ';
    sql += QStringLiteral("AND FECHARECTIFICATIVA = ") + Quoted(h.FechaLeida) +
           QStringLiteral("  AND ctrl = ") + Quoted(h.ctrl) + u' ';
    const RecordsetPtr row = gAccess().FillRecordSet(sql);
    h.RowFound = row && !row->EOF_();
    if (!h.RowFound || !IsYesText(h.ConDatos))
        return;
    for (const QString& column : amountColumns)
        h.Montos.insert(column, row->Text(column));
}
