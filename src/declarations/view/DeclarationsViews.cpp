#include <QDialog>

#include "frame/view/ViewRegistry.h"
// forms
#include "ui_F2001.h"
#include "ui_F976.h"
#include "ui_F977.h"
#include "ui_F978.h"
#include "ui_F986.h"
#include "ui_F988.h"
// detail dialogs
#include "ui_F976_Detalle.h"
#include "ui_F2001_Detalle.h"
#include "ui_F977_Detalle.h"
#include "ui_F978_Detalle.h"

// forms
namespace {

// A declaration form is left by its buttons only: its window has no close box.
template <class UiForm> class VistaFormulario : public FormView<UiForm, QDialog>
{
public:
    VistaFormulario() { this->setWindowFlag(Qt::WindowCloseButtonHint, false); }
};

template <class UiForm> void RegistrarVistaFormulario(const char* name)
{
    RegisterView(QString::fromLatin1(name), [] { return new VistaFormulario<UiForm>; });
}

} // namespace

// The views of the declarations windows, by window name.
void RegisterDeclarationsViews()
{
    // forms
    RegistrarVistaFormulario<Ui::F976>("F976");
    RegistrarVistaFormulario<Ui::F2001>("F2001");
    RegistrarVistaFormulario<Ui::F977>("F977");
    RegistrarVistaFormulario<Ui::F978>("F978");
    // The agents' annexes show the grids of the annexes they copy; their
    // captions come from the forms.
    RegistrarVistaFormulario<Ui::F977>("F985");
    RegistrarVistaFormulario<Ui::F986>("F986");
    RegistrarVistaFormulario<Ui::F978>("F987");
    RegistrarVistaFormulario<Ui::F988>("F988");
    // detail dialogs
    RegisterFormView<Ui::F976_Detalle, QDialog>(QStringLiteral("F976_Detalle"));
    RegisterFormView<Ui::F2001_Detalle, QDialog>(QStringLiteral("F2001_Detalle"));
    RegisterFormView<Ui::F977_Detalle, QDialog>(QStringLiteral("F977_Detalle"));
    RegisterFormView<Ui::F978_Detalle, QDialog>(QStringLiteral("F978_Detalle"));
    // The agents' receipts are typed in the dialogs of the annexes they copy.
    RegisterFormView<Ui::F977_Detalle, QDialog>(QStringLiteral("F985_Detalle"));
    RegisterFormView<Ui::F978_Detalle, QDialog>(QStringLiteral("F987_Detalle"));
}
