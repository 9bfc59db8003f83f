#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPointer>

#include "backup/frmBackupArchivos.h"
#include "frame/view/ViewRegistry.h"
#include "ui_frmBackup.h"
#include "ui_frmBackupArchivos.h"

namespace {

// The window of backup files. The list of several choices shows a tick per
// item, kept in step with the window's ticks both ways; the status label is
// cleared when the window clears it.
class ArchivosView : public FormView<Ui::frmBackupArchivos, QDialog>
{
public:
    explicit ArchivosView(frmBackupArchivos* window) : m_window(window)
    {
        m_list = findChild<QListWidget*>(QStringLiteral("lst1"));
        if (!m_window || !m_list)
            return;
        connect(m_list->model(), &QAbstractItemModel::rowsInserted, this, [this] { showTicks(); });
        connect(m_window, &frmBackupArchivos::ticksChanged, this, [this] { showTicks(); });
        connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
            if (!m_showing && m_window)
                m_window->SetTicked(m_list->row(item), item->checkState() == Qt::Checked);
        });
        auto* status = findChild<QLabel*>(QStringLiteral("lbl"));
        Field& lbl = m_window->field(QStringLiteral("lbl"));
        connect(&lbl, &Field::changed, this, [status](Field* f, Field::Aspect aspect) {
            if (status && aspect == Field::TextAspect)
                status->setText(f->text());
        });
    }

private:
    void showTicks()
    {
        if (!m_window)
            return;
        m_showing = true;
        for (int i = 0; i < m_list->count(); ++i) {
            QListWidgetItem* item = m_list->item(i);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(m_window->Ticked(i) ? Qt::Checked : Qt::Unchecked);
        }
        m_showing = false;
    }

    QPointer<frmBackupArchivos> m_window;
    QListWidget* m_list = nullptr;
    bool m_showing = false;
};

} // namespace

// The views of the backup windows, by window name.
void RegisterBackupViews()
{
    RegisterFormView<Ui::frmBackup, QDialog>(QStringLiteral("frmBackup"));
    RegisterView(QStringLiteral("frmBackupArchivos"),
                 [] { return new ArchivosView(frmBackupArchivos::Current()); });
}
