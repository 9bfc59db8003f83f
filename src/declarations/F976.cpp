#include "F976.h"

#include "F976_Detalle.h"
#include "UiPort.h"
#include "Util.h"

namespace {

DefinicionFormulario Definicion()
{
    DefinicionFormulario d = DeclaracionMensual::DefinicionMensual(
        QStringLiteral("F976"),
        QStringLiteral("Formulario F976 T.I.S.S.H Régimen General DJ Mensual"));
    d.crearDetalle = [] { return std::make_unique<F976_Detalle>(); };
    d.mensajeLimite = QStringLiteral("No puede ingresar mas de 6 detalles");
    d.tituloMonto = QStringLiteral("Advertencia...");
    d.mensajeMonto = QStringLiteral("El dato ingresado es incorrecto. Por favor verifique.");
    using T = TipoCampo;
    d.campos = {
        {"txtBaseImponible", "Total Base Imponible", "BaseImponible", T::Derivado, false},
        {"txtImpuesto", "TOTAL TASA DETERMINADA", "Impuesto", T::Derivado},
        {"txtTasa", "Tasa o Mínimo (el mayor)", "Tasa", T::Ingresado},
        {"txtRetenciones", "Retenciones", "Retenciones", T::Ingresado},
        {"txtPercepciones", "Percepciones", "Percepciones", T::Ingresado},
        {"txtSaldoAFavorDDJJ", "Saldo a Favor - DDJJ", "SaldoAFavor", T::Ingresado},
        {"txtSaldoAFavorDDJJF", "", "SaldoAFavorF", T::Periodo},
        {"txtSubtotalDeterminado", "Subtotal Determinado", "SubtotalDeterminado", T::Derivado},
        {"txtSubtotalDeterminado2", "", "", T::Derivado},
        {"txtSaldo", "Saldo a Favor del Contrib./QRTM", "", T::Derivado},
        {"txtSaldo2", "", "", T::Derivado},
        {"txtAccesorios", "Accesorios", "Accesorios", T::Ingresado},
        {"txtMultas", "Multas", "Multas", T::Ingresado},
        {"txtPagoACuenta", "Pago a Cuenta", "PagoACuenta", T::Ingresado},
        {"txtTotalAPagar", "TOTAL A PAGAR", "TotalAPagar", T::Derivado},
    };
    return d;
}

QVector<DeclaracionMensual::Requerido> Requeridos()
{
    const QString tasa = QStringLiteral("Debe ingresar la tasa o mínimo");
    const QString subtotal = QStringLiteral("Debe ingresar el subtotal determinado");
    const QString total = QStringLiteral("Debe ingresar el total a pagar");
    return {{"txtTasa", tasa, tasa},
            {"txtBaseImponible", {}, {}},
            {"txtImpuesto", {}, {}},
            {"txtRetenciones", {}, {}},
            {"txtPercepciones", {}, {}},
            {"txtSaldoAFavorDDJJ", {}, {}},
            {"txtSubtotalDeterminado", subtotal, subtotal},
            {"txtAccesorios", {}, {}},
            {"txtMultas", {}, {}},
            {"txtPagoACuenta", {}, {}},
            {"txtTotalAPagar", total, total}};
}

// Every amount the recalculation reads, blank ones shown as zero first.
const char* const kNormalizados[] = {
    "txtTasa",
    "txtRetenciones",
    "txtPercepciones",
    "txtSaldoAFavorDDJJ",
    "txtSubtotalDeterminado",
    "txtAccesorios",
    "txtMultas",
    "txtPagoACuenta",
    "txtTotalAPagar",
    "txtSaldo",
    "txtSaldo2",
    "txtSubtotalDeterminado2",
    "txtImpuesto",
};

} // namespace

F976::F976() : DeclaracionMensual(Definicion(), QStringLiteral("txtTasa"), Requeridos()) {}

void F976::RecalcularTotales()
{
    VueloOLimpio();
    for (const char* name : kNormalizados)
        fijar(QString::fromLatin1(name), ZeroIfEmpty(texto(QString::fromLatin1(name))));
    if (texto(QStringLiteral("txtTasa")) == cero())
        fijar(QStringLiteral("txtTasa"), ZeroIfEmpty(texto(QStringLiteral("txtImpuesto"))));
    fijar(QStringLiteral("txtSubtotalDeterminado"),
          Monto(numero(QStringLiteral("txtRetenciones")) +
                numero(QStringLiteral("txtPercepciones")) +
                numero(QStringLiteral("txtSaldoAFavorDDJJ"))));
    fijar(QStringLiteral("txtSubtotalDeterminado2"), Monto(numero(QStringLiteral("txtTasa"))));
    const double credito = numero(QStringLiteral("txtSubtotalDeterminado"));
    const double tasa = numero(QStringLiteral("txtSubtotalDeterminado2"));
    if (tasa < credito) {
        fijar(QStringLiteral("txtSaldo"), Monto(credito - tasa));
        fijar(QStringLiteral("txtSaldo2"), cero());
    } else {
        fijar(QStringLiteral("txtSaldo"), cero());
        fijar(QStringLiteral("txtSaldo2"), Monto(tasa - credito));
    }
    // The signed difference: a balance in favour reduces the total.
    const double total = tasa - credito + numero(QStringLiteral("txtMultas")) +
                         numero(QStringLiteral("txtAccesorios")) -
                         numero(QStringLiteral("txtPagoACuenta"));
    fijar(QStringLiteral("txtTotalAPagar"), Monto(total));
    const bool negativo = numero(QStringLiteral("txtTotalAPagar")) < 0;
    marcarNegativo(negativo);
    if (negativo)
        fijar(QStringLiteral("txtTotalAPagar"), cero());
}

void F976::alSalirMonto(const QString& campo)
{
    if (campo == QLatin1String("txtTasa") &&
        numero(QStringLiteral("txtImpuesto")) > numero(QStringLiteral("txtTasa"))) {
        MsgBox(QStringLiteral("La Tasa o Mínimo no puede ser menor que el Total Impuesto"),
               Msg::Information);
        fijar(campo, texto(QStringLiteral("txtImpuesto")));
        setFocus(campo);
        return;
    }
    DeclaracionMensual::alSalirMonto(campo);
}

void F976::despuesDeBorrarTodo()
{
    fijar(QStringLiteral("txtTasa"), cero());
    RecalcularTotales();
}
