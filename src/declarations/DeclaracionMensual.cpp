#include "DeclaracionMensual.h"

#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

// One annex as the return sees it: whether its row exists, its total, and
// the text naming its rectification.
struct Anexo {
    bool existe = false;
    QString total;
    QString rect = QStringLiteral(" ");
};

} // namespace

DefinicionFormulario DeclaracionMensual::DefinicionMensual(const QString& id,
                                                           const QString& caption)
{
    DefinicionFormulario d = DefinicionDe(id, caption, true);
    d.titulosGrilla =
        QStringLiteral("Codigo Detalle|Codigo|Actividades|Base Imponible|Alicuota|Tasa")
            .split(u'|');
    d.columnasGrilla = {QStringLiteral("CodigoDetalle"), QStringLiteral("CodigoActividad"),
                        QStringLiteral("TipoActividad"), QStringLiteral("BaseImponible"),
                        QStringLiteral("Alicuota"),      QStringLiteral("Impuesto")};
    d.columnasDerecha = {3, 4, 5};
    d.columnasUltimo = 6;
    d.limiteFilas = 6;
    return d;
}

DeclaracionMensual::DeclaracionMensual(DefinicionFormulario definicion, QString campoTasa,
                                       QVector<Requerido> requeridos)
    : FormularioDDJJ(std::move(definicion)), m_campoTasa(std::move(campoTasa)),
      m_requeridos(std::move(requeridos))
{
}

void DeclaracionMensual::Limpio()
{
    for (const CampoFormulario& c : definicion().campos)
        fijar(c.campo, c.tipo == TipoCampo::Periodo ? QStringLiteral("__-____") : cero());
    field(QStringLiteral("cmdModificar")).setEnabled(false);
    field(QStringLiteral("cmdQuitar")).setEnabled(false);
    field(QStringLiteral("cmdQuitarT")).setEnabled(true);
    // With the close box gone, an empty return is left through "Aceptar",
    // which offers to delete it.
    field(QStringLiteral("cmdCancelar")).setEnabled(false);
}

void DeclaracionMensual::Vuelvo()
{
    field(QStringLiteral("cmdQuitarT")).setEnabled(true);
    field(QStringLiteral("cmdCancelar")).setEnabled(true);
}

void DeclaracionMensual::VueloOLimpio()
{
    const Field& grid = field(QStringLiteral("gridFormulario"));
    if (grid.rowCount() > 0 && !grid.cell(0, 0).isEmpty())
        Vuelvo();
    else
        Limpio();
}

void DeclaracionMensual::iniciarSumas()
{
    m_sumaBase = 0;
    m_sumaImpuesto = 0;
}

void DeclaracionMensual::sumarLinea(const LineaDetalle& linea)
{
    m_sumaBase += TextToDouble(linea.texto(QStringLiteral("BaseImponible")));
    m_sumaImpuesto += TextToDouble(linea.texto(QStringLiteral("Impuesto")));
}

void DeclaracionMensual::cargarMontos(int tipo)
{
    if (tipo != 1) {
        // What the person put above the levy stays above the new levy.
        const double exceso = numero(m_campoTasa) - numero(QStringLiteral("txtImpuesto"));
        fijar(m_campoTasa, Monto(m_sumaImpuesto + exceso));
    } else {
        leerMontosGuardados();
    }
    fijar(QStringLiteral("txtImpuesto"), Monto(m_sumaImpuesto));
    fijar(QStringLiteral("txtBaseImponible"), Monto(m_sumaBase));
}

void DeclaracionMensual::leerMontosGuardados()
{
    // A new version starts from the figures of the version it comes from.
    const bool nuevo = EsVerdadero(param(QStringLiteral("Nuevo")));
    const Version& previa = versionPrevia();
    const QString f = nuevo ? previa.fecha : fecha();
    const QString cod = nuevo ? previa.codigo : codigo();
    const QString c = nuevo ? previa.ctrl : ctrl();
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM ") + definicion().tabla +
        QStringLiteral("  WHERE FECHARECTIFICATIVA = ") + Quoted(f) + QStringLiteral(" AND CODIGO = ") +
        Quoted(cod) + QStringLiteral(" AND ctrl = ") + Quoted(c));
    const bool hay = rs && !rs->EOF_();
    for (const CampoFormulario& cf : definicion().campos) {
        // The levy and the base are the sums of the lines.
        if (cf.columna.isEmpty() || cf.campo == QLatin1String("txtImpuesto") ||
            cf.campo == QLatin1String("txtBaseImponible"))
            continue;
        const QString v = hay ? rs->Text(cf.columna) : QString();
        if (cf.tipo == TipoCampo::Periodo)
            fijar(cf.campo, v.isEmpty() ? QStringLiteral("__-____") : v);
        else
            fijar(cf.campo, v.isEmpty() ? cero() : v);
    }
}

bool DeclaracionMensual::antesDeFecha()
{
    if (numero(QStringLiteral("txtTotalAPagar")) < 0)
        m_negativo = true;
    if (!m_negativo)
        return true;
    return MsgBox(QStringLiteral("El campo Total a Pagar está en cero porque este tiene monto "
                                 "negativo. Verifique. ¿Desea Continuar?"),
                  Msg::YesNo) == Msg::Yes;
}

bool DeclaracionMensual::CamposRequeridos(bool generar)
{
    for (const Requerido& r : m_requeridos) {
        if (!texto(r.campo).isEmpty())
            continue;
        const QString& mensaje = generar ? r.mensajeGenerar : r.mensaje;
        if (mensaje.isEmpty()) {
            fijar(r.campo, cero());
            continue;
        }
        MsgBox(mensaje, Msg::Information);
        setFocus(r.campo);
        return false;
    }
    if (numero(QStringLiteral("txtTotalAPagar")) < 0) {
        MsgBox(QStringLiteral("El monto Total a pagar no puede ser menor a cero. Verifique.-"),
               Msg::Information);
        fijar(QStringLiteral("txtTotalAPagar"), cero());
    }
    return true;
}

bool DeclaracionMensual::VerificarAnexos()
{
    const QString id = gAccess().GetString(
        QStringLiteral("SELECT idContribuyente FROM tPadronesComerciales WHERE padron = ") +
        Quoted(padron()) + QStringLiteral(" AND objeto = ") + Quoted(objeto()));
    if (!ContribuyenteHasForms(id))
        return true;
    const QString premisa = QStringLiteral(" FROM tPadronesComerciales WHERE idContribuyente = ") +
                            id + QStringLiteral(" AND padron = ") + Quoted(padron()) +
                            QStringLiteral(" AND Objeto = ") + Quoted(objeto());
    const bool esperaF978 =
        gAccess().GetString(QStringLiteral("SELECT percepcion") + premisa) == QLatin1String("1");
    const bool esperaF977 =
        gAccess().GetString(QStringLiteral("SELECT retencion") + premisa) == QLatin1String("1");

    // The annex's total, from its latest registered version.
    auto leerAnexo = [this](const QString& form) {
        Anexo a;
        const RegistroSocio r = UltimoRegistro(form);
        if (!r.existe)
            return a;
        a.existe = true;
        QString sql = QStringLiteral("SELECT TotalPercepciones FROM ") + form +
                      QStringLiteral(" WHERE Padron = ") + Quoted(padron()) +
                      QStringLiteral(" AND Objeto = ") + Quoted(objeto()) +
                      QStringLiteral(" AND Periodo = ") + Quoted(periodo());
        if (r.rectificativa) {
            sql += QStringLiteral(" AND FechaRectificativa = ") + Quoted(r.fecha);
            a.rect =
                QStringLiteral(" (Rectif. N° ") + r.ctrl + u' ' + r.fecha + QStringLiteral(") ");
        }
        a.total = gAccess().GetString(sql + QStringLiteral(" ORDER BY Id DESC"));
        return a;
    };
    const Anexo f978 = esperaF978 ? leerAnexo(QStringLiteral("F978")) : Anexo{};
    const Anexo f977 = esperaF977 ? leerAnexo(QStringLiteral("F977")) : Anexo{};

    // The comparison is made in single precision, with no tolerance.
    auto difiere = [this](const QString& campo, const Anexo& a) {
        return a.existe && float(numero(campo)) != float(TextToDouble(a.total));
    };
    const bool difRet = difiere(QStringLiteral("txtRetenciones"), f977);
    const bool difPer = difiere(QStringLiteral("txtPercepciones"), f978);
    QString texto;
    int flag = 0;
    if (difRet && difPer) {
        flag = 11;
        texto = QStringLiteral("El importe declarado en Retenciones y Percepciones no coincide con "
                               "los importes de los anexos F977") +
                f977.rect + QStringLiteral("de Retenciones y F978") + f978.rect +
                QStringLiteral("de Percepciones.");
    } else if (difRet) {
        flag = 10;
        texto = QStringLiteral("El importe declarado en Retenciones no coincide con el importe del "
                               "anexo F977") +
                f977.rect + QStringLiteral("de Retenciones.");
    } else if (difPer) {
        flag = 1;
        texto =
            QStringLiteral("El importe declarado en Percepciones no coincide con el importes del "
                           "anexo F978") +
            f978.rect + QStringLiteral("de Percepciones.");
    }
    if (flag == 0)
        return true;
    if (flag >= 10)
        texto += QStringLiteral("\r\nImporte de Retenciones en anexo F977") + f977.rect +
                 QStringLiteral(": $") + FormatAmount(f977.total);
    if (flag % 10 == 1)
        texto += QStringLiteral("\r\nImporte de Percepciones en anexo F978") + f978.rect +
                 QStringLiteral(": $") + FormatAmount(f978.total);
    MsgBox(texto + QStringLiteral("\r\nRevise por favor."), Msg::Exclamation,
           QStringLiteral("Advertencia... "));
    return true;
}
