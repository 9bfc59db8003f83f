// Start-up time, as a person waits for it: from the start of a process to the
// main window painted, for Morvel on an empty database and on one with 2,000
// taxpayers, beside the reference: a bare Qt program that paints one main
// window with a menu and a label. Each is run as its own process, in turn,
// several times; medians in milliseconds. The warm in-process time of Main
// is printed too.
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "BenchSupport.h"
#include "Globals.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "shell/MMain.h"
#include "shell/Principal.h"
#include "shell/view/ShellViews.h"

namespace {

constexpr int kRuns = 15;
constexpr double kGoal = 1.5;
using Bench::median;

void isolateSettings(const QString& folder)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder + "/settings");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder + "/settings");
}

// The child processes: each shows its window, lets it paint, and ends.
int bareChild(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QMainWindow w;
    w.menuBar()->addMenu(QStringLiteral("&Archivo"))->addAction(QStringLiteral("&Salir"));
    w.setCentralWidget(new QLabel(QStringLiteral("Morvel")));
    w.resize(900, 620);
    Bench::PaintWatch watch(&w);
    w.show();
    watch.waitPaintedAfter(0);
    return 0;
}

// Notes the first paint of a main window, wherever in the start-up it comes.
class MainWindowPainted : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched))
            painted = true;
        return false;
    }
};

int morvelChild(int argc, char* argv[], const QString& folder)
{
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    isolateSettings(folder);
    QtUi port;
    setUi(&port);
    RegisterAllViews();
    MainWindowPainted watch;
    app.installEventFilter(&watch);
    Main(folder + "/data");
    QElapsedTimer guard;
    guard.start();
    while (!watch.painted && guard.elapsed() < 5000)
        QApplication::processEvents();
    gPrincipal().unload();
    CloseDatabase();
    return 0;
}

double timeChild(const QStringList& args)
{
    QElapsedTimer t;
    t.start();
    QProcess::execute(QCoreApplication::applicationFilePath(), args);
    return t.nsecsElapsed() / 1e6;
}

double warmStart(const QString& folder)
{
    QElapsedTimer t;
    t.start();
    Main(folder + "/data");
    QApplication::processEvents();
    gPrincipal().unload();
    QApplication::processEvents();
    // The closed window's view goes now, as the event loop would let it go,
    // before the next start opens a new one over the same fields.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const double ms = t.nsecsElapsed() / 1e6;
    CloseDatabase();
    return ms;
}

void prepare(const QString& folder, int taxpayers)
{
    isolateSettings(folder);
    Main(folder + "/data");
    gPrincipal().unload();
    ZoAccess db;
    {
        Transaction unit(db, Transaction::Mode::KeepWhatPassed);
        for (int i = 1; i <= taxpayers; ++i)
            db.Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, "
                                      "Cuit) VALUES (%1, 'CONTRIBUYENTE %1', '20-%2-6')")
                           .arg(i)
                           .arg(10000000 + i));
    }
    CloseDatabase();
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc > 1 && QByteArray(argv[1]) == "--bare")
        return bareChild(argc, argv);
    if (argc > 2 && QByteArray(argv[1]) == "--morvel")
        return morvelChild(argc, argv, QString::fromLocal8Bit(argv[2]));

    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QTemporaryDir dir;
    QtUi port;
    setUi(&port);
    RegisterAllViews();
    const QString empty = dir.filePath("empty");
    const QString full = dir.filePath("full");
    prepare(empty, 0);
    prepare(full, 2000);

    std::vector<double> bare, emptyRuns, fullRuns, warmEmpty, warmFull;
    for (int i = 0; i < kRuns; ++i) {
        bare.push_back(timeChild({"--bare"}));
        emptyRuns.push_back(timeChild({"--morvel", empty}));
        fullRuns.push_back(timeChild({"--morvel", full}));
    }
    for (int i = 0; i < kRuns; ++i) {
        isolateSettings(empty);
        warmEmpty.push_back(warmStart(empty));
        isolateSettings(full);
        warmFull.push_back(warmStart(full));
    }
    const double b = median(bare);
    char title[160];
    std::snprintf(title, sizeof title,
                  "process start to main window painted, median of %d (reference: bare main "
                  "window with a menu and a label)",
                  kRuns);
    Bench::printHeader(title, kGoal);
    Bench::printRatio("empty database", median(emptyRuns), b, kGoal);
    Bench::printRatio("2,000 taxpayers", median(fullRuns), b, kGoal);
    std::printf("warm, Main to main window closed, in one process:\n");
    std::printf("  empty database:                     %7.1f ms\n", median(warmEmpty));
    std::printf("  2,000 taxpayers:                    %7.1f ms\n", median(warmFull));
    return 0;
}
