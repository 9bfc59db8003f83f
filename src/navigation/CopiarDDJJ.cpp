#include "CopiarDDJJ.h"

#include "Globals.h"
#include "SqlText.h"
#include "UiPort.h"
#include "ZoAccess.h"

namespace {
const QString kAnios = QStringLiteral("cboAnios");
const QString kPeriodos = QStringLiteral("cboPeriodos");
const QString kAtencion = QStringLiteral("Atención !");
} // namespace

CopiarDDJJ::CopiarDDJJ() : Controller(QStringLiteral("CopiarDDJJ")) {}

void CopiarDDJJ::design()
{
    setCaption(QStringLiteral("Copiar Declaraciones Juradas"));
    add(QStringLiteral("lblAnios"), FieldKind::Label, QStringLiteral("Año:"));
    add(kAnios, FieldKind::Combo);
    add(QStringLiteral("lblPeriodos"), FieldKind::Label, QStringLiteral("Periodo:"));
    add(kPeriodos, FieldKind::Combo);
    add(QStringLiteral("cmbAceptar"), FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmbCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));

    on(kAnios, Ev::Click, [this](EventArgs&) { fillMonths(); });
    on(QStringLiteral("cmbAceptar"), Ev::Click, [this](EventArgs&) { aceptar(); });
    on(QStringLiteral("cmbCancelar"), Ev::Click, [this](EventArgs&) {
        Anio.clear();
        Periodo.clear();
        unload();
    });
}

void CopiarDDJJ::onLoad()
{
    Anio.clear();
    Periodo.clear();
    gAccess().FillComboBoxAnios(
        QStringLiteral("SELECT Periodo FROM TPADRONES_FORMULARIOS WHERE Padron = '") + Sq(Padron) +
            QStringLiteral("' ORDER BY right(periodo,4), mid(periodo,1,2)"),
        field(kAnios), QString());
}

void CopiarDDJJ::onQueryUnload(bool& cancel, int mode)
{
    Q_UNUSED(cancel);
    if (mode == 0) {
        Anio.clear();
        Periodo.clear();
    }
}

void CopiarDDJJ::fillMonths()
{
    Field& years = field(kAnios);
    if (years.listIndex() < 0)
        return;
    gAccess().FillComboBoxMes(
        QStringLiteral("SELECT DISTINCT Periodo FROM TPADRONES_FORMULARIOS WHERE Padron = '") +
            Sq(Padron) + u'\'',
        field(kPeriodos), years.itemText(years.listIndex()));
}

void CopiarDDJJ::aceptar()
{
    const Field& years = field(kAnios);
    const Field& months = field(kPeriodos);
    if (years.listIndex() < 0) {
        MsgBox(QStringLiteral("Debe seleccionar un año para continuar."), Msg::Exclamation,
               kAtencion);
        return;
    }
    if (months.listIndex() < 0) {
        MsgBox(QStringLiteral("Debe seleccionar un periodo para continuar."), Msg::Exclamation,
               kAtencion);
        return;
    }
    Anio = years.itemText(years.listIndex());
    Periodo = months.itemText(months.listIndex());
    unload();
}
