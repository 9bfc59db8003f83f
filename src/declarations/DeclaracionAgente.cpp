#include "DeclaracionAgente.h"

#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kDepositar = QStringLiteral("txtImporteDepositar");
// The three amounts that are added to the declared one.
const QString kAccesorios = QStringLiteral("txtAccesorioCoef");
const QString kMultas = QStringLiteral("txtMultas");
const QString kOtros = QStringLiteral("txtOtros");

DefinicionFormulario Definicion(const QString& id, const QString& caption,
                                const DeclaracionAgente::Datos& datos)
{
    DefinicionFormulario d = DefinicionDe(id, caption, false);
    d.tieneCodigo = false;
    d.exigeFechaAlAceptar = false;
    d.tituloMonto = QStringLiteral("Mensaje");
    d.mensajeMonto = QStringLiteral("El dato ingresado es incorrecto. Por favor verifique.-");
    // The amount to deposit is worked out, but the person may type another.
    d.campos = {
        {datos.campo, datos.caption, datos.columna},
        {kAccesorios, QStringLiteral("Accesorio coeficiente"), QStringLiteral("AccesoriosCoef")},
        {kMultas, QStringLiteral("Multas"), QStringLiteral("Multas")},
        {kOtros, QStringLiteral("Otros"), QStringLiteral("Otros")},
        {kDepositar, QStringLiteral("Importe a Depositar"), QStringLiteral("ImporteDepositar"),
         TipoCampo::Reescribible},
    };
    return d;
}

bool EsFalso(const QString& text)
{
    return text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 ||
           text.compare(QLatin1String("Falso"), Qt::CaseInsensitive) == 0;
}

} // namespace

DeclaracionAgente::DeclaracionAgente(const QString& id, const QString& caption, Datos datos)
    : FormularioDDJJ(Definicion(id, caption, datos)), m_datos(std::move(datos))
{
}

void DeclaracionAgente::design()
{
    FormularioDDJJ::design();
    field(QStringLiteral("lblDomicilio")).setText(QStringLiteral("Domicilio Fiscal"));
    for (const QString& campo : {m_datos.campo, kAccesorios, kMultas, kOtros})
        on(campo, Ev::Change, [this](EventArgs&) { ImporteDepositar(); });
}

void DeclaracionAgente::onLoad()
{
    if (m_datos.ceroEsFalso && param(QStringLiteral("Rectificativa")) == QLatin1String("0"))
        fijarParam(QStringLiteral("Rectificativa"), QStringLiteral("Falso"));
    if (NormalizarFecha(param(QStringLiteral("FechaRectificativaNueva"))) == QLatin1String("0"))
        fijarParam(QStringLiteral("FechaRectificativaNueva"), QStringLiteral("0"));
    FormularioDDJJ::onLoad();
}

bool DeclaracionAgente::sumaEnDepositar(const QString& campo) const
{
    return campo == m_datos.campo || campo == kAccesorios || campo == kMultas || campo == kOtros;
}

void DeclaracionAgente::ImporteDepositar()
{
    const QString declarado = texto(m_datos.campo);
    double total = 0;
    if (!declarado.isEmpty() && !declarado.startsWith(u',') && !declarado.startsWith(u'.'))
        total = TextToDouble(declarado);
    for (const QString& campo : {kAccesorios, kMultas, kOtros})
        total += TextToDouble(ZeroIfEmpty(texto(campo)));
    fijar(kDepositar, Monto(total));
}

void DeclaracionAgente::alSalirMonto(const QString& campo)
{
    if (sumaEnDepositar(campo))
        ImporteDepositar();
}

void DeclaracionAgente::cargarMontos(int)
{
    // A declaration opened without data starts blank; any other shows the
    // amounts of its stored row.
    if (EsFalso(param(QStringLiteral("ConDatos")))) {
        for (const CampoFormulario& c : definicion().campos)
            fijar(c.campo, QString());
        return;
    }
    leerMontosGuardados();
}

void DeclaracionAgente::leerMontosGuardados()
{
    // A new rectification starts from the figures of the version before it.
    const bool nueva = EsVerdadero(param(QStringLiteral("Nuevo"))) &&
                       EsVerdadero(param(QStringLiteral("Rectificativa")));
    const QString f = nueva ? versionPrevia().fecha : fecha();
    const QString c = nueva ? versionPrevia().ctrl : ctrl();
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM ") + definicion().tabla + QStringLiteral(" WHERE PADRON = ") +
        Quoted(padron()) + QStringLiteral(" AND OBJETO = ") + Quoted(objeto()) +
        QStringLiteral(" AND PERIODO = ") + Quoted(periodo()) +
        QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(f) + QStringLiteral(" AND ctrl = ") +
        Quoted(c));
    const bool hay = rs && !rs->EOF_();
    for (const CampoFormulario& cf : definicion().campos)
        fijar(cf.campo, hay ? rs->Text(cf.columna) : QString());
}

bool DeclaracionAgente::exigir(const QString& campo, const QString& mensaje)
{
    if (!texto(campo).trimmed().isEmpty())
        return true;
    MsgBox(mensaje, Msg::Information);
    setFocus(campo);
    return false;
}

bool DeclaracionAgente::CamposRequeridos(bool)
{
    if (!exigir(m_datos.campo, m_datos.mensaje) ||
        !exigir(kDepositar, QStringLiteral("Debe ingresar el Importe a Depositar")))
        return false;
    for (const QString& campo : {kAccesorios, kMultas, kOtros})
        Vaciar(campo);
    return true;
}

bool DeclaracionAgente::VerificarSocio()
{
    VerificarAnexoInformativo();
    return true;
}

void DeclaracionAgente::VerificarAnexoInformativo()
{
    if (!ContribuyenteHasForms(idContribuyente()))
        return;
    const float declarado = float(numero(m_datos.campo));
    const RegistroSocio r = UltimoRegistro(m_datos.anexo);
    if (!r.existe)
        return;
    QString rect;
    const QString totalTexto =
        CifraSocio(m_datos.anexo, QStringLiteral("TotalPercepciones"), r, rect);
    if (float(TextToDouble(totalTexto)) == declarado)
        return;
    MsgBox(QStringLiteral("El importe total no coincide con el declarado en el Formulario ") +
               m_datos.anexo + u' ' + rect + QStringLiteral("\r\nImporte declarado: $ ") +
               FormatAmount(totalTexto) + QStringLiteral("\r\nRevise por favor..."),
           Msg::Exclamation, QStringLiteral("Advertencia"));
}

bool DeclaracionAgente::versionIniciada()
{
    const bool rect = EsVerdadero(param(QStringLiteral("Rectificativa")));
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT PADRON FROM ") + definicion().tabla +
        QStringLiteral(" WHERE PADRON = ") + Quoted(padron()) + QStringLiteral(" AND OBJETO = ") +
        Quoted(objeto()) + QStringLiteral(" AND PERIODO = ") + Quoted(periodo()) + u' ' +
        (rect ? QStringLiteral("AND RECTIFICATIVA IN ('VERDADERO','TRUE')")
              : QStringLiteral("AND RECTIFICATIVA IN ('FALSO','FALSE')")) +
        QStringLiteral(" AND ctrl = ") + Quoted(ctrl()));
    return rs && !rs->EOF_();
}

QVector<QPair<QString, QString>> DeclaracionAgente::columnasEncabezado()
{
    QVector<QPair<QString, QString>> out{
        {QStringLiteral("RazonSocial"), texto(QStringLiteral("txtRazonSocial"))},
        {QStringLiteral("Contribuyente"), texto(QStringLiteral("txtContribuyente"))},
        {QStringLiteral("Domicilio"), texto(QStringLiteral("txtDomicilio"))},
    };
    out += FormularioDDJJ::columnasEncabezado();
    return out;
}
