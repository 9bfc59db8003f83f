#include "AnexoComprobantes.h"

#include "Globals.h"
#include "Numbers.h"
#include "Recordset.h"
#include "SqlText.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kAjuste = QStringLiteral("AJUS - Ajuste");
// The column of TipoComprobante in the lines' table.
constexpr int kColumnaTipo = 5;

} // namespace

AnexoComprobantes::AnexoComprobantes(DefinicionFormulario definicion, Socio socio)
    : FormularioDDJJ(std::move(definicion)), m_socio(std::move(socio))
{
}

void AnexoComprobantes::sumarLinea(const LineaDetalle& linea)
{
    // A credit note takes away what the other receipts add.
    const double importe = TextToDouble(linea.texto(QStringLiteral("ImportePercibido")));
    if (linea.texto(QStringLiteral("TipoComprobante")).left(2) == QLatin1String("NC"))
        m_total -= importe;
    else
        m_total += importe;
}

void AnexoComprobantes::cargarMontos(int)
{
    fijar(QStringLiteral("txtTotalPercepciones"), Monto(m_total));
    // The carried amount is not read back: it shows zero after every load.
    fijar(QStringLiteral("txtTransporte"), cero());
}

bool AnexoComprobantes::validaFechaAlAgregar() const
{
    return EsVerdadero(param(QStringLiteral("Rectificativa")));
}

bool AnexoComprobantes::CamposRequeridos(bool generar)
{
    if (generar && texto(QStringLiteral("txtTransporte")).isEmpty()) {
        MsgBox(QStringLiteral("Debe ingresar el Transporte"), Msg::Information);
        setFocus(QStringLiteral("txtTransporte"));
        return false;
    }
    DeshabilitarDetalle();
    return true;
}

QString AnexoComprobantes::valorCopiado(int indice, const QString& valor) const
{
    if (indice == kColumnaTipo && valor.isEmpty())
        return QStringLiteral(" ");
    return valor;
}

void AnexoComprobantes::despuesDeBorrarLinea()
{
    RenumerarDetalle();
    if (!EsVerdadero(param(QStringLiteral("ConDatos"))))
        Parametros.replace(QStringLiteral("Nuevo=False"), QStringLiteral("Nuevo=True"));
}

void AnexoComprobantes::RenumerarDetalle()
{
    const QString tabla = definicion().tablaDetalle;
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT Id FROM ") + tabla + QStringLiteral(" WHERE Codigo = ") +
        Quoted(codigo()) + QStringLiteral(" AND ctrl = ") + Quoted(ctrl()) + QStringLiteral(" ORDER BY Id"));
    if (!rs)
        return;
    Transaction unit(Transaction::Mode::KeepWhatPassed);
    for (int n = 1; !rs->EOF_(); rs->MoveNext(), ++n)
        gAccess().Execute(QStringLiteral("UPDATE ") + tabla +
                          QStringLiteral(" SET CodigoDetalle = ") +
                          Quoted(QString::number(n).rightJustified(4, u'0')) +
                          QStringLiteral(" WHERE Id = ") + rs->Text(0));
}

QVector<QPair<QString, QString>> AnexoComprobantes::columnasEncabezado()
{
    QVector<QPair<QString, QString>> out = FormularioDDJJ::columnasEncabezado();
    const QString premisa = QStringLiteral(" FROM tPadronesComerciales WHERE padron = ") +
                            Quoted(padron()) + QStringLiteral(" AND objeto = ") + Quoted(objeto());
    const QString domicilio =
        gAccess().GetString(QStringLiteral("SELECT calle_numero") + premisa) +
        QStringLiteral(" - ") +
        gAccess().GetString(QStringLiteral("SELECT localidad_departamento") + premisa);
    out.append({QStringLiteral("Domicilio"), domicilio});
    out.append({QStringLiteral("RazonSocial"), texto(QStringLiteral("txtRazonSocial"))});
    return out;
}

QString AnexoComprobantes::socio()
{
    if (!m_socio.fijo.isEmpty())
        return m_socio.fijo;
    const QString regimen = gAccess().GetString(
        QStringLiteral("SELECT regimen FROM tPadronesComerciales WHERE Padron = ") + Quoted(padron()) +
        QStringLiteral(" AND Objeto = ") + Quoted(objeto()));
    if (regimen == QLatin1String("2"))
        return {};
    return regimen == QLatin1String("1") ? QStringLiteral("F2001") : QStringLiteral("F976");
}

bool AnexoComprobantes::VerificarDeclarado()
{
    if (!ContribuyenteHasForms(idContribuyente()))
        return true;
    const QString partner = socio();
    if (partner.isEmpty())
        return true;
    const RegistroSocio r = UltimoRegistro(partner);
    if (!r.existe)
        return true;
    QString rect;
    const QString declaradoTexto = CifraSocio(partner, m_socio.columna, r, rect);
    const float declarado = float(TextToDouble(declaradoTexto));

    // The total compared is always the one without an earlier adjustment.
    const QString tabla = definicion().tablaDetalle;
    gAccess().Execute(QStringLiteral("DELETE FROM ") + tabla + QStringLiteral(" WHERE Codigo = ") +
                      Quoted(codigo()) + QStringLiteral(" AND FechaRectificativa = ") + Quoted(fecha()) +
                      QStringLiteral(" AND TipoComprobante = ") + Quoted(kAjuste) +
                      QStringLiteral(" AND ctrl = ") + Quoted(ctrl()));
    cargaDatos(2);
    PropGrid();
    const double totalDoble = numero(QStringLiteral("txtTotalPercepciones"));
    const float total = float(totalDoble);
    if (total == declarado)
        return true;

    // Only the general regime's return allows no difference at all; agents
    // always have the tolerance.
    const bool tolera = partner != QLatin1String("F976");
    const bool ajusta = tolera && total > declarado - 10.0f && total < declarado + 10.0f;
    const QString cabeza = tolera ? QStringLiteral("El importe total no coincide con el declarado "
                                                   "en el Formulario ")
                                  : QStringLiteral("El importe total debe coincidir con el "
                                                   "declarado en el Formulario ");
    // The agents' message names its fixed partner followed by a blank.
    const QString nombre = m_socio.fijo.isEmpty() ? partner : partner + u' ';
    MsgBox(cabeza + nombre + rect + QStringLiteral("\r\nImporte declarado: $ ") +
               FormatAmount(declaradoTexto) +
               (ajusta ? QStringLiteral("\r\nSe ajustará automáticamente")
                       : QStringLiteral("\r\nRevise los importes ingresados")),
           Msg::Exclamation, QStringLiteral("Ajuste"));
    if (!ajusta)
        return false;
    const QString importe = LocaleFixed(TextToDouble(declaradoTexto) - totalDoble, 2, false);
    gAccess().Execute(QStringLiteral("INSERT INTO ") + tabla +
                      QStringLiteral(" (Codigo, FechaRectificativa, CodigoDetalle, Fecha, "
                                     "TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, "
                                     "ImportePercibido, ctrl) VALUES (") +
                      Quoted(codigo()) + QStringLiteral(", ") + Quoted(fecha()) +
                      QStringLiteral(", '9999', ' ', ") + Quoted(kAjuste) +
                      QStringLiteral(", ' ', 'Ajuste', '00-00000000-0', ' ', ") + Quoted(importe) +
                      QStringLiteral(", ") + Quoted(ctrl()) + u')');
    cargaDatos(2);
    PropGrid();
    return true;
}
