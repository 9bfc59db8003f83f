#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QShortcut>
#include <QTableWidget>
#include <QWidget>

#include "ShellViews.h"
#include "frame/view/TreeIcons.h"
#include "frame/view/ViewRegistry.h"
#include "ui_Inicial.h"
#include "ui_Principal.h"
#include "ui_frmAbout.h"
#include "ui_frmBaseDatos.h"

namespace {

void showPicture(QWidget* view, const char* name, int width, int height)
{
    if (auto* label = view->findChild<QLabel*>(QString::fromLatin1(name)))
        label->setPixmap(AppPicture(width, height));
}

class PrincipalView : public FormView<Ui::Principal, QMainWindow>
{
public:
    PrincipalView()
    {
        showPicture(this, "imgImagen", 360, 96);
        resize(900, 620);
        // Ctrl+F reaches the search box of the finder from anywhere in the window.
        auto* find = new QShortcut(QKeySequence::Find, this);
        connect(find, &QShortcut::activated, this, [this] {
            if (auto* box = findChild<QLineEdit*>(QStringLiteral("txtBuscar"))) {
                box->setFocus(Qt::ShortcutFocusReason);
                box->selectAll();
            }
        });
        // The arrows move the current taxpayer of the list as a click does,
        // so that Enter opens the one that is highlighted.
        if (auto* list = findChild<QTableWidget*>(QStringLiteral("gridContribuyentes"))) {
            connect(list, &QTableWidget::currentCellChanged, list, [list](int row, int col) {
                if (row >= 0)
                    emit list->cellClicked(row, col);
            });
        }
    }
};

class InicialView : public FormView<Ui::Inicial, QWidget>
{
public:
    InicialView()
    {
        setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
        showPicture(this, "imgImagen", 480, 128);
    }
};

class AboutView : public FormView<Ui::frmAbout, QDialog>
{
public:
    AboutView()
    {
        if (auto* icon = findChild<QLabel*>(QStringLiteral("imgIcono")))
            icon->setPixmap(AppPicture(64, 64).copy(0, 0, 64, 64));
    }
};

} // namespace

void RegisterShellViews()
{
    RegisterView(QStringLiteral("Principal"), [] { return new PrincipalView; });
    RegisterView(QStringLiteral("Inicial"), [] { return new InicialView; });
    RegisterView(QStringLiteral("frmAbout"), [] { return new AboutView; });
    RegisterFormView<Ui::frmBaseDatos, QDialog>(QStringLiteral("frmBaseDatos"));
}

void RegisterRegistryViews();
void RegisterNavigationViews();
void RegisterDeclarationsViews();
void RegisterOutputViews();
void RegisterBackupViews();
void RegisterDeskViews();

void RegisterAllViews()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    RegisterShellViews();
    RegisterRegistryViews();
    RegisterNavigationViews();
    RegisterDeclarationsViews();
    RegisterOutputViews();
    RegisterBackupViews();
    RegisterDeskViews();
}
