#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QWidget>

#include "ShellViews.h"
#include "frame/view/TreeIcons.h"
#include "frame/view/ViewRegistry.h"
#include "ui_Inicial.h"
#include "ui_Principal.h"
#include "ui_frmAbout.h"

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
        showPicture(this, "imgImagen", 480, 128);
        resize(900, 620);
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
}

void RegisterRegistryViews();
void RegisterNavigationViews();
void RegisterDeclarationsViews();
void RegisterOutputViews();
void RegisterBackupViews();

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
}
