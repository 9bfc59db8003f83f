#include <QDialog>
#include <QHeaderView>
#include <QTableWidget>

#include "frame/view/ViewRegistry.h"
#include "ui_CalendarioPresentaciones.h"
#include "ui_ControlMensual.h"
#include "ui_EscritorioMensual.h"
#include "ui_GenerarLote.h"

namespace {

// The arrows move the current cell of a grid as a click does, so that Enter
// opens the declaration, taxpayer or line that is highlighted.
template <class UiForm> class DeskView : public FormView<UiForm, QDialog>
{
public:
    DeskView()
    {
        for (QTableWidget* grid : this->template findChildren<QTableWidget*>()) {
            QObject::connect(grid, &QTableWidget::currentCellChanged, grid,
                             [grid](int row, int col) {
                                 if (row >= 0)
                                     emit grid->cellClicked(row, col);
                             });
        }
    }
};

template <class UiForm> void registerDesk(const QString& name)
{
    RegisterView(name, [] { return new DeskView<UiForm>; });
}

} // namespace

// The views of the accountant's desk, by window name.
void RegisterDeskViews()
{
    registerDesk<Ui::CalendarioPresentaciones>(QStringLiteral("CalendarioPresentaciones"));
    registerDesk<Ui::EscritorioMensual>(QStringLiteral("EscritorioMensual"));
    registerDesk<Ui::GenerarLote>(QStringLiteral("GenerarLote"));
    registerDesk<Ui::ControlMensual>(QStringLiteral("ControlMensual"));
}
