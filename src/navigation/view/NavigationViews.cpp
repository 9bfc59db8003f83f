#include <QDialog>
#include <QEvent>
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
// than cutting them, and its one column is never narrower than the tree, so a
// chosen node is marked across the whole row.
class ContribuyentesDatosView : public FormView<Ui::ContribuyentesDatos, QDialog>
{
public:
    ContribuyentesDatosView()
    {
        m_tree = findChild<QTreeWidget*>(QStringLiteral("trvDatos"));
        if (!m_tree)
            return;
        m_tree->header()->setStretchLastSection(false);
        m_tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        m_tree->viewport()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Resize && m_tree && watched == m_tree->viewport())
            m_tree->header()->setMinimumSectionSize(m_tree->viewport()->width());
        return FormView::eventFilter(watched, event);
    }

private:
    QTreeWidget* m_tree = nullptr;
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
