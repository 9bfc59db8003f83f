#include <QApplication>
#include <QIcon>
#include <QStandardPaths>

#include "shell/MMain.h"
#include "frame/view/QtUi.h"
#include "frame/view/SpanishTranslations.h"
#include "frame/view/ViewRegistry.h"
#include "shell/view/ShellViews.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Morvel"));
    InstallSpanishTranslations();
    QApplication::setQuitOnLastWindowClosed(false);
    // The icon of the desktop entry, in every window's title bar; the desktop
    // matches the windows to the entry morvel.desktop by this name.
    QApplication::setWindowIcon(QIcon(AssetsPath() + QStringLiteral("/icons/morvel.svg")));
    QGuiApplication::setDesktopFileName(QStringLiteral("morvel"));
    QtUi port;
    setUi(&port);
    RegisterAllViews();
    if (!Main(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)))
        return 0;
    const int rc = QApplication::exec();
    CloseDatabase();
    return rc;
}
