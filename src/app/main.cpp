#include <QApplication>
#include <QStandardPaths>

#include "MMain.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Morvel"));
    QApplication::setQuitOnLastWindowClosed(false);
    QtUi port;
    setUi(&port);
    RegisterAllViews();
    if (!Main(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)))
        return 0;
    const int rc = QApplication::exec();
    CloseDatabase();
    return rc;
}
