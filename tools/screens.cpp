// Draws the program's windows offscreen and saves each as a PNG, so that the
// manual's pictures and a reviewer's look follow the program when it changes.
// Usage: morvel_screens <output folder>
#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include "Globals.h"
#include "Inicial.h"
#include "MMain.h"
#include "Principal.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "frmAbout.h"

namespace {

QString g_out;

void save(QWidget* view, const QString& name)
{
    view->grab().save(g_out + u'/' + name + QStringLiteral(".png"));
}

// The main window with the taxpayers' menu open, as one picture.
void saveWithMenu(QMainWindow* main, const QString& name)
{
    auto* declaracion = main->findChild<QMenu*>(QStringLiteral("mnuDeclaracion"));
    auto* list = main->findChild<QMenu*>(QStringLiteral("mnuContribuyentes"));
    if (!declaracion || !list)
        return;
    emit list->aboutToShow();
    QPixmap shot = main->grab();
    QPainter p(&shot);
    const QPoint origin = main->menuBar()->actionGeometry(declaracion->menuAction()).bottomLeft();
    declaracion->adjustSize();
    p.drawPixmap(origin, declaracion->grab());
    list->adjustSize();
    const QRect item = declaracion->actionGeometry(list->menuAction());
    p.drawPixmap(origin + QPoint(declaracion->width() - 4, item.top()), list->grab());
    p.end();
    shot.save(g_out + u'/' + name + QStringLiteral(".png"));
}

// Opens the controller's view (not modal), lets it draw, saves it, closes it.
void shoot(Controller& window, const QString& name, const std::function<void()>& prepare = {})
{
    window.load();
    if (prepare)
        prepare();
    QWidget* view = OpenView(window);
    if (!view)
        return;
    view->adjustSize();
    view->show();
    QApplication::processEvents();
    save(view, name);
    window.unload();
    QApplication::processEvents();
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Morvel"));
    QApplication::setQuitOnLastWindowClosed(false);
    g_out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("screens");
    QDir().mkpath(g_out);
    QTemporaryDir data;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, data.filePath("settings"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, data.filePath("settings"));
    QtUi port;
    setUi(&port);
    RegisterAllViews();
    SetAppPath(data.filePath("data"));

    Inicial splash;
    shoot(splash, QStringLiteral("Inicial"), [&] {
        splash.field(QStringLiteral("pb")).setMaximum(24);
        AdvanceSplash(splash, 9, QStringLiteral("Verificando Base de Datos..."));
    });
    Main(data.filePath("data"));
    QApplication::processEvents();
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* main = qobject_cast<QMainWindow*>(w); main && main->isVisible()) {
            save(main, QStringLiteral("Principal"));
            saveWithMenu(main, QStringLiteral("Principal_menu"));
        }
    frmAbout about;
    shoot(about, QStringLiteral("frmAbout"));
    CloseDatabase();
    return 0;
}
