#include "NuevoAnio.h"

#include <QDate>

#include "UiPort.h"

namespace {
const QString kAnio = QStringLiteral("txtAnio");
const QString kAceptar = QStringLiteral("cmdAceptar");
} // namespace

NuevoAnio::NuevoAnio() : Controller(QStringLiteral("NuevoAnio")) {}

void NuevoAnio::design()
{
    setCaption(QStringLiteral("Selección de Formularios"));
    add(QStringLiteral("lblAnio"), FieldKind::Label, QStringLiteral("Ingrese el Año"));
    add(kAnio, FieldKind::Text).setMask(QStringLiteral("####"));
    add(kAceptar, FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));

    on(kAnio, Ev::Change,
       [this](EventArgs&) { field(kAceptar).setEnabled(!field(kAnio).clipText().isEmpty()); });
    // Aceptar is the default button.
    on(kAnio, Ev::KeyPress, [this](EventArgs& e) {
        if (e.key == KeyCode::Return) {
            e.key = 0;
            if (field(kAceptar).enabled())
                aceptar();
        }
    });
    on(kAceptar, Ev::Click, [this](EventArgs&) { aceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) {
        Anio = 0;
        unload();
    });
}

void NuevoAnio::onLoad()
{
    Anio = 0;
    field(kAnio).setText(QString::number(QDate::currentDate().year()));
    field(kAceptar).setEnabled(true);
    setFocus(kAnio);
}

void NuevoAnio::onQueryUnload(bool& cancel, int mode)
{
    Q_UNUSED(cancel);
    if (mode == 0)
        Anio = 0;
}

void NuevoAnio::aceptar()
{
    Anio = field(kAnio).clipText().toInt();
    if (Anio < Min || Anio > Max) {
        MsgBox(QStringLiteral("El año ingresado es incorrecto, verifique por favor"),
               Msg::Exclamation, QStringLiteral("Error"));
        setFocus(kAnio);
        return;
    }
    unload();
}
