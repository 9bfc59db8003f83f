#include <QDialog>
#include <QTabBar>
#include <QTabWidget>

#include "frame/view/ViewRegistry.h"
#include "ui_Busqueda.h"
#include "ui_Contribuyentes.h"
#include "ui_frmLocalComercial.h"

namespace {

// A registry dialog drawn from its Designer form. Escape leaves as the close
// box does, so the window's own logic decides what closing means; the tab
// bars take no focus, so the keyboard goes from field to field as the window
// orders them and a click on a tab never leaves a field behind.
template <class UiForm> class RegistryDialog : public FormView<UiForm, QDialog>
{
public:
    RegistryDialog()
    {
        for (QTabWidget* tabs : this->template findChildren<QTabWidget*>()) {
            tabs->setFocusPolicy(Qt::NoFocus);
            tabs->tabBar()->setFocusPolicy(Qt::NoFocus);
        }
    }

protected:
    void reject() override { this->close(); }
};

template <class UiForm> void registerDialog(const QString& windowName)
{
    RegisterView(windowName, [] { return new RegistryDialog<UiForm>(); });
}

} // namespace

// The views of the registry windows, by window name.
void RegisterRegistryViews()
{
    registerDialog<Ui::Contribuyentes>(QStringLiteral("Contribuyentes"));
    registerDialog<Ui::frmLocalComercial>(QStringLiteral("frmLocalComercial"));
    registerDialog<Ui::Busqueda>(QStringLiteral("Busqueda"));
}
