#include "NuevoPeriodo.h"

#include <QDate>

#include "CopiarDDJJ.h"
#include "NavigationText.h"
#include "UiPort.h"

namespace {
const QString kPeriodo = QStringLiteral("txtPeriodo");
const QString kModelo = QStringLiteral("txtPeriodoModelo");
const QString kModeloLabel = QStringLiteral("lblPeriodoModelo");
const QString kAceptar = QStringLiteral("cmdAceptar");
} // namespace

NuevoPeriodo::NuevoPeriodo() : Controller(QStringLiteral("NuevoPeriodo")) {}

void NuevoPeriodo::design()
{
    setCaption(QStringLiteral("Selección de Formularios"));
    add(QStringLiteral("lblPeriodo"), FieldKind::Label, QStringLiteral("Ingrese el periodo"));
    add(kPeriodo, FieldKind::Text).setMask(QStringLiteral("##"));
    add(kModeloLabel, FieldKind::Label, QStringLiteral("Periodo modelo")).setVisible(false);
    Field& modelo = add(kModelo, FieldKind::Text);
    modelo.setVisible(false);
    modelo.setLocked(true);
    add(QStringLiteral("lblNota"), FieldKind::Label,
        QStringLiteral("Para copiar todos los formularios de un periodo anterior utilice el "
                       "botón Copiar."));
    add(kAceptar, FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));
    add(QStringLiteral("cmdCopiar"), FieldKind::Button, QStringLiteral("Copiar"));

    on(kPeriodo, Ev::Change,
       [this](EventArgs&) { field(kAceptar).setEnabled(!field(kPeriodo).clipText().isEmpty()); });
    on(kPeriodo, Ev::LostFocus, [this](EventArgs&) { padMonth(); });
    on(kPeriodo, Ev::KeyPress, [this](EventArgs& e) {
        if (e.key == KeyCode::Return) {
            e.key = 0;
            padMonth();
            if (field(kAceptar).enabled())
                aceptar();
        }
    });
    on(kAceptar, Ev::Click, [this](EventArgs&) { aceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { cancelar(); });
    on(QStringLiteral("cmdCopiar"), Ev::Click, [this](EventArgs&) { copiar(); });
}

void NuevoPeriodo::onLoad()
{
    Periodo.clear();
    AnioModelo.clear();
    m_periodoModelo.clear();
    field(kPeriodo).setText(TwoDigits(QString::number(QDate::currentDate().month())));
    field(kAceptar).setEnabled(true);
    setFocus(kPeriodo);
}

void NuevoPeriodo::onQueryUnload(bool& cancel, int mode)
{
    Q_UNUSED(cancel);
    if (mode == 0) {
        Periodo.clear();
        AnioModelo.clear();
        m_periodoModelo.clear();
    }
}

// A single digit typed alone becomes a month of two ("7" gives "07").
void NuevoPeriodo::padMonth()
{
    Field& periodo = field(kPeriodo);
    if (!periodo.text().contains(u'_'))
        return;
    const QString digits = periodo.clipText();
    if (!digits.isEmpty())
        periodo.setText(TwoDigits(digits));
}

void NuevoPeriodo::aceptar()
{
    const int month = field(kPeriodo).clipText().toInt();
    if (month < Min || month > Max) {
        MsgBox(QStringLiteral("El periodo ingresado es incorrecto, verifique por favor"),
               Msg::Exclamation, QStringLiteral("Error"));
        setFocus(kPeriodo);
        return;
    }
    Periodo = TwoDigits(field(kPeriodo).clipText());
    if (!field(kModelo).visible()) {
        AnioModelo = QStringLiteral("-1");
        m_periodoModelo = QStringLiteral("-1");
    }
    unload();
}

void NuevoPeriodo::cancelar()
{
    Periodo.clear();
    AnioModelo.clear();
    m_periodoModelo.clear();
    unload();
}

void NuevoPeriodo::copiar()
{
    CopiarDDJJ copia;
    copia.IdContribuyente = IdContribuyente;
    copia.Padron = Padron;
    copia.show(true);
    if (copia.Anio.toInt() < 1)
        return;
    field(kModeloLabel).setVisible(true);
    field(kModelo).setVisible(true);
    AnioModelo = copia.Anio;
    m_periodoModelo = copia.Periodo;
    field(kModelo).setText(copia.Periodo + u'-' + copia.Anio);
}
