#include "F2001.h"

#include "F2001_Detalle.h"
#include "UiPort.h"
#include "Util.h"

namespace {

const QString kTotal = QStringLiteral("txtTotalTasaDeterminada");
const QString kColumna2 = QStringLiteral("txtSubtotalColumna2");

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DeclaracionMensual::DefinicionMensual(
        QStringLiteral("F2001"), QStringLiteral("Formulario F2001 T.I.S.S.H  PROCOM  DJ Mensual"));
    d.crearDetalle = [] { return std::make_unique<F2001_Detalle>(); };
    d.mensajeLimite = QStringLiteral("No puede ingresar más de 6 actividades.");
    d.tituloMonto = QStringLiteral("Mensaje");
    d.mensajeMonto = QStringLiteral("El dato ingresado es incorrecto. Por favor verifique.-");
    using T = TipoCampo;
    d.campos = {
        {"txtBaseImponible", "Total Impuesto", "BaseImponible", T::Derivado, false},
        {"txtImpuesto", "TOTAL TASA DETERMINADA", "Impuesto", T::Derivado},
        {"txtTotalTasaDeterminada", "Tasa o Mínimo (el mayor)", "Total", T::Ingresado},
        {"txtSaldoAFavorDDJJ", "Saldo a Favor DDJJ", "SaldoAFavor", T::Ingresado},
        {"txtRetenciones", "Retenciones", "Retenciones", T::Ingresado},
        {"txtPercepciones", "Percepciones", "Percepciones", T::Ingresado},
        {"txtDesgravaciones", "Desgravaciones", "Desgrabaciones", T::Ingresado},
        {"txtSubtotalCol12", "Subtotal Col. I y II", "SubtotalCol12", T::Derivado},
        {"txtSubtotalColumna2", "", "SubtotalColumna2", T::Derivado},
        {"txtDifCols12", "DIFERENCIAS COL. I Y COL. II", "DiferenciaCol12", T::Derivado},
        {"txtDifColumna2", "", "DiferenciaColumna2", T::Derivado},
        {"txtPagoACuenta", "Pago a Cuenta", "PagoACuenta", T::Ingresado},
        {"txtTotalAPagar", "TOTAL A PAGAR", "TotalAPagar", T::Derivado},
    };
    return d;
}

QVector<DeclaracionMensual::Requerido> Requeridos()
{
    auto both = [](const char* campo, const char* mensaje) {
        return DeclaracionMensual::Requerido{QString::fromUtf8(campo), QString::fromUtf8(mensaje),
                                             QString::fromUtf8(mensaje)};
    };
    return {{"txtBaseImponible", {}, {}},
            {"txtImpuesto", {}, {}},
            both("txtTotalTasaDeterminada", "Debe ingresar el Total de Tasa Determinada"),
            {"txtSaldoAFavorDDJJ", {}, {}},
            {"txtRetenciones", {}, {}},
            {"txtPercepciones", {}, {}},
            {"txtDesgravaciones", {}, {}},
            both("txtSubtotalCol12", "Debe ingresar el Subtotal Col. I y II"),
            both("txtSubtotalColumna2", "Debe ingresar el Subtotal Columna 2"),
            both("txtDifCols12", "Debe ingresar la Dif. Cols. I y II"),
            both("txtDifColumna2", "Debe ingresar la Dif. Columna 2"),
            {"txtPagoACuenta", {}, QStringLiteral("Debe ingresar el Pago a Cuenta")},
            {"txtTotalAPagar", {}, QStringLiteral("Debe ingresar el Total a Pagar")}};
}

} // namespace

F2001::F2001() : DeclaracionMensual(Definicion(), kTotal, Requeridos()) {}

void F2001::RecalcularTotales()
{
    VueloOLimpio();
    auto normal = [this](const char* campo) {
        const QString name = QString::fromLatin1(campo);
        fijar(name, FormatAmount(ZeroIfEmpty(texto(name))));
        return numero(name);
    };
    const double d = normal("txtDesgravaciones");
    const double p = normal("txtPercepciones");
    const double r = normal("txtRetenciones");
    const double s = normal("txtSaldoAFavorDDJJ");
    normal("txtSubtotalColumna2");
    normal("txtPagoACuenta");
    fijar(QStringLiteral("txtSubtotalCol12"), Monto(p + d + r + s));
    const double col1 = numero(QStringLiteral("txtSubtotalCol12"));
    const double col2 = numero(kColumna2);
    // A credit surplus is shown and stored, and stays out of the total.
    fijar(QStringLiteral("txtDifCols12"), col1 - col2 > 0 ? Monto(col1 - col2) : cero());
    fijar(QStringLiteral("txtDifColumna2"), col2 - col1 >= 0 ? Monto(col2 - col1) : cero());
    const double resto =
        numero(QStringLiteral("txtDifColumna2")) - numero(QStringLiteral("txtPagoACuenta"));
    marcarNegativo(resto < 0);
    fijar(QStringLiteral("txtTotalAPagar"), resto >= 0 ? Monto(resto) : cero());
}

void F2001::cargarMontos(int tipo)
{
    DeclaracionMensual::cargarMontos(tipo);
    // The rate or minimum is never below the levy of the lines.
    if (numero(kTotal) < numero(QStringLiteral("txtImpuesto")))
        fijar(kTotal, texto(QStringLiteral("txtImpuesto")));
    fijar(kColumna2, ZeroIfEmpty(texto(kTotal)));
}

bool F2001::ValidoPunto(const QString& campo)
{
    const QString t = texto(campo);
    const int first = int(t.indexOf(u'.'));
    if (first < 0 || t.indexOf(u'.', first + 1) < 0)
        return true;
    MsgBox(QStringLiteral("El dato ingresado es incorrecto. Por favor verifique."),
           Msg::Exclamation, QStringLiteral("Mensaje"));
    return false;
}

bool F2001::rechazaMonto(const QString& campo)
{
    return !ValidoPunto(campo);
}

void F2001::alSalirMonto(const QString& campo)
{
    if (campo == kTotal) {
        if (numero(kTotal) < numero(QStringLiteral("txtImpuesto"))) {
            MsgBox(QStringLiteral("El Total Tasa Determinada no puede ser menor que el Total "
                                  "Impuesto"),
                   Msg::Information);
            fijar(kTotal, texto(QStringLiteral("txtImpuesto")));
            setFocus(kTotal);
            return;
        }
        fijar(kColumna2, texto(kTotal));
    }
    DeclaracionMensual::alSalirMonto(campo);
}

QVector<QPair<QString, QString>> F2001::columnasAlta()
{
    // The one form whose row gets its identifier at the first saving.
    return {{QStringLiteral("Guidv"), NewShortGuid()}};
}
