#include <QDialog>
#include <QHeaderView>
#include <QTreeWidget>

#include "frame/view/ViewRegistry.h"
#include "ui_ContribuyentesDatos.h"
#include "ui_CopiarDDJJ.h"
#include "ui_NuevoAnio.h"
#include "ui_NuevoPeriodo.h"
#include "ui_SeleccionFormulario.h"

namespace {

// The captions of declarations are long: the tree scrolls sideways rather
// than cutting them.
class ContribuyentesDatosView : public FormView<Ui::ContribuyentesDatos, QDialog>
{
public:
    ContribuyentesDatosView()
    {
        if (auto* tree = findChild<QTreeWidget*>(QStringLiteral("trvDatos"))) {
            tree->header()->setStretchLastSection(false);
            tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        }
    }
};

} // namespace

// The views of the navigation windows, by window name.
void RegisterNavigationViews()
{
    RegisterView(QStringLiteral("ContribuyentesDatos"), [] { return new ContribuyentesDatosView; });
    RegisterFormView<Ui::NuevoAnio, QDialog>(QStringLiteral("NuevoAnio"));
    RegisterFormView<Ui::NuevoPeriodo, QDialog>(QStringLiteral("NuevoPeriodo"));
    RegisterFormView<Ui::CopiarDDJJ, QDialog>(QStringLiteral("CopiarDDJJ"));
    RegisterFormView<Ui::SeleccionFormulario, QDialog>(QStringLiteral("SeleccionFormulario"));
}
