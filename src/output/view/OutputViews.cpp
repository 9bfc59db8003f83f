#include <QDialog>
#include <QLineEdit>
#include <QSpinBox>

#include "frame/view/ViewRegistry.h"
#include "output/view/QtReportPrinter.h"
#include "ui_GenerarDisco.h"

namespace {

// The copies box and its up-down move together, as the old buddy control
// did: the arrows write the box's text, and a typed figure moves the arrows.
class GenerarDiscoView : public FormView<Ui::GenerarDisco, QDialog>
{
public:
    GenerarDiscoView()
    {
        auto* box = findChild<QLineEdit*>(QStringLiteral("txtCantidadImpresiones"));
        auto* upDown = findChild<QSpinBox*>(QStringLiteral("UpD"));
        if (!box || !upDown)
            return;
        // The arrows edit the box as typing would, so that the window hears it.
        connect(upDown, &QSpinBox::valueChanged, box, [box](int value) {
            const QString text = QString::number(value);
            if (box->text() != text) {
                box->setText(text);
                emit box->textEdited(text);
            }
        });
        connect(box, &QLineEdit::textChanged, upDown, [upDown](const QString& text) {
            bool ok = false;
            const int value = text.toInt(&ok);
            if (ok && value != upDown->value()) {
                const QSignalBlocker quiet(upDown);
                upDown->setValue(value);
            }
        });
    }
};

} // namespace

// The views of the output windows, by window name, and the printer of the
// printed forms.
void RegisterOutputViews()
{
    RegisterView(QStringLiteral("GenerarDisco"), [] { return new GenerarDiscoView(); });
    static QtReportPrinter printer;
    SetReportPrinter(&printer);
}
