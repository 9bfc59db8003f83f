// The declaration tree of a large taxpayer on its window, with the real
// widgets on the offscreen platform: years of declarations of all eight forms,
// each with two rectifications (twenty years: 6,024 nodes). Times the window
// opened until its tree is painted, and the tree refilled and painted again
// as after a saved form; beside each, the reference: the same window, as
// drawn, whose tree gets the same nodes as bare items from one prepared
// SQLite read. Program
// and reference run in turn, several times; medians. Then the resident memory
// with the tree open (the main window and the taxpayer's window, each process
// started anew) beside a bare window of the taxpayer's window's size with as
// many bare tree items.
// Usage: bench_tree [runs] [years...]   (default 5 runs of 1, 5, 10, 20, 40)
#include <QApplication>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QWindow>
#include <sqlite3.h>

#include "BenchSupport.h"
#include "Globals.h"
#include "SqliteDatabase.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "frame/view/ViewRegistry.h"
#include "navigation/ContribuyentesDatos.h"
#include "navigation/ZoForms.h"
#include "shell/MMain.h"
#include "shell/Principal.h"
#include "shell/view/ShellViews.h"

namespace {

constexpr double kGoal = 2.0;
constexpr double kMemoryGoal = 1.3;

// --- the reference: bare items from one prepared read --------------------------

class ReferenceTree
{
public:
    explicit ReferenceTree(QTreeWidget& tree) : m_tree(tree) {}

    int fill(sqlite3* db)
    {
        m_tree.setUpdatesEnabled(false);
        m_tree.clear();
        int nodes = 0;
        auto* modify = new QTreeWidgetItem(&m_tree, {QStringLiteral("Modificar datos personales")});
        auto* remove = new QTreeWidgetItem(&m_tree, {QStringLiteral("Eliminar Contribuyente")});
        auto* root = new QTreeWidgetItem(&m_tree, {QStringLiteral("Padrones Comerciales")});
        Q_UNUSED(modify);
        Q_UNUSED(remove);
        nodes += 3;
        sqlite3_stmt* premises = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT padron, objeto FROM tPadronesComerciales WHERE cuit = "
                           "'30712345671'",
                           -1, &premises, nullptr);
        sqlite3_stmt* rows = nullptr;
        sqlite3_prepare_v2(
            db,
            "SELECT pf.Periodo, pf.Rectificativa, pf.FechaRectificativa, fo.LeyendaGenerado "
            "FROM TPadrones_Formularios pf JOIN Formularios fo ON pf.idFormulario = "
            "fo.idFormulario WHERE pf.padron = ? AND pf.objeto = ? ORDER BY "
            "substr(pf.Periodo, 4, 4), substr(pf.Periodo, 1, 2), fo.Orden, pf.Id, "
            "pf.FechaRectificativa DESC",
            -1, &rows, nullptr);
        while (sqlite3_step(premises) == SQLITE_ROW) {
            const QString padron = text(premises, 0);
            const QString objeto = text(premises, 1);
            auto* local = new QTreeWidgetItem(root, {QStringLiteral("Padrón N° ") + padron +
                                                     QStringLiteral(" - Objeto N° ") + objeto});
            ++nodes;
            const QByteArray padronText = padron.toUtf8();
            const QByteArray objetoText = objeto.toUtf8();
            sqlite3_bind_text(rows, 1, padronText.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(rows, 2, objetoText.constData(), -1, SQLITE_TRANSIENT);
            QString year, month;
            QTreeWidgetItem* yearItem = nullptr;
            QTreeWidgetItem* monthItem = nullptr;
            int rectifications = 0;
            while (sqlite3_step(rows) == SQLITE_ROW) {
                const QString period = text(rows, 0);
                if (!yearItem || period.right(4) != year) {
                    year = period.right(4);
                    yearItem =
                        new QTreeWidgetItem(local, {QStringLiteral("Formularios Año: ") + year});
                    month.clear();
                    ++nodes;
                }
                if (!monthItem || period.left(2) != month) {
                    month = period.left(2);
                    monthItem =
                        new QTreeWidgetItem(yearItem, {QStringLiteral("Periodo: ") + month});
                    ++nodes;
                }
                QString caption = text(rows, 3);
                if (text(rows, 1) == QLatin1String("Verdadero"))
                    caption += QStringLiteral(" (Rectif. N° ") + QString::number(++rectifications) +
                               u' ' + text(rows, 2) + u')';
                else
                    rectifications = 0;
                new QTreeWidgetItem(monthItem, {caption});
                ++nodes;
            }
            sqlite3_reset(rows);
        }
        sqlite3_finalize(rows);
        sqlite3_finalize(premises);
        root->setExpanded(true);
        m_tree.setUpdatesEnabled(true);
        return nodes;
    }

private:
    static QString text(sqlite3_stmt* statement, int column)
    {
        return QString::fromUtf8(
            reinterpret_cast<const char*>(sqlite3_column_text(statement, column)));
    }

    QTreeWidget& m_tree;
};

// The size the taxpayer's window opens at: the memory's bare window is as
// large, so that both are painted over the same area.
QSize g_windowSize(640, 480);

// The taxpayer's window as drawn, without its controller and binder; or, for
// the memory, a bare window with a bare tree.
int runReference(Bench::TreeTimes& times, sqlite3* db, const std::function<void()>& script = {})
{
    QElapsedTimer t;
    t.start();
    std::unique_ptr<QWidget> window;
    QTreeWidget* tree = nullptr;
    if (script) {
        window = std::make_unique<QWidget>();
        window->resize(g_windowSize);
        tree = new QTreeWidget(window.get());
        tree->setHeaderHidden(true);
        tree->setGeometry(8, 8, g_windowSize.width() - 16, g_windowSize.height() - 16);
    } else {
        window.reset(CreateView(QStringLiteral("ContribuyentesDatos")));
        tree = window->findChild<QTreeWidget*>(QStringLiteral("trvDatos"));
    }
    Bench::PaintWatch watch(tree->viewport());
    ReferenceTree reference(*tree);
    const int nodes = reference.fill(db);
    window->show();
    watch.waitPaintedAfter(0);
    times.open.push_back(Bench::ms(t));
    if (script) {
        // The memory is read with the window on screen and painted, as the
        // program's is.
        QElapsedTimer wait;
        wait.start();
        while (!window->windowHandle()->isExposed() && wait.elapsed() < 2000)
            QApplication::processEvents(QEventLoop::AllEvents, 10);
        window->repaint();
        if (qEnvironmentVariableIsSet("BENCH_DEBUG"))
            std::fprintf(stderr, "reference window %dx%d exposed %d\n", window->width(),
                         window->height(), window->windowHandle()->isExposed());
        script();
    } else {
        const int painted = watch.paints();
        t.restart();
        reference.fill(db);
        watch.waitPaintedAfter(painted);
        times.refresh.push_back(Bench::ms(t));
    }
    times.nodes = nodes;
    return nodes;
}

// --- the memory children -------------------------------------------------------

void printMemory()
{
    std::printf("%.1f\n", Bench::residentMiB());
    std::fflush(stdout);
}

int programMemoryChild(int argc, char* argv[], const QString& folder)
{
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Bench::isolateSettings(folder);
    Bench::AnsweringUi port;
    setUi(&port);
    RegisterAllViews();
    Main(folder + QStringLiteral("/data"));
    QApplication::processEvents();
    if (qEnvironmentVariableIsSet("BENCH_DEBUG"))
        std::fprintf(stderr, "after Main: %.1f MiB\n", Bench::residentMiB());
    Bench::TreeTimes times;
    Bench::openTree(times, printMemory);
    gPrincipal().unload();
    CloseDatabase();
    return 0;
}

int referenceMemoryChild(int argc, char* argv[], const QString& folder)
{
    QApplication app(argc, argv);
    if (argc > 3) {
        const QStringList size = QString::fromLocal8Bit(argv[3]).split(u'x');
        g_windowSize = QSize(size.value(0).toInt(), size.value(1).toInt());
    }
    sqlite3* db = nullptr;
    sqlite3_open((folder + QStringLiteral("/data/Morvel.db")).toUtf8().constData(), &db);
    Bench::TreeTimes times;
    runReference(times, db, printMemory);
    sqlite3_close(db);
    return 0;
}

double childMemory(const QString& mode, const QString& folder)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {mode, folder,
                 QStringLiteral("%1x%2").arg(g_windowSize.width()).arg(g_windowSize.height())});
    child.waitForFinished(60000);
    const QList<QByteArray> lines = child.readAllStandardOutput().trimmed().split('\n');
    return lines.isEmpty() ? 0 : lines.last().toDouble();
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc > 2 && QByteArray(argv[1]) == "--program-memory")
        return programMemoryChild(argc, argv, QString::fromLocal8Bit(argv[2]));
    if (argc > 2 && QByteArray(argv[1]) == "--reference-memory")
        return referenceMemoryChild(argc, argv, QString::fromLocal8Bit(argv[2]));

    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int runs = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 5;
    QList<int> sizes;
    for (int i = 2; i < argc; ++i)
        sizes << qBound(1, QString::fromLocal8Bit(argv[i]).toInt(), 60);
    if (sizes.isEmpty())
        sizes = {1, 5, 10, 20, 40};
    QTemporaryDir dir;
    if (qEnvironmentVariableIsSet("BENCH_KEEP")) {
        dir.setAutoRemove(false);
        std::printf("data kept in %s\n", qPrintable(dir.path()));
    }
    Bench::AnsweringUi port;
    setUi(&port);
    RegisterAllViews();
    gDecimalSymbol = QStringLiteral(",");

    Bench::printHeader("declaration tree on its window", kGoal);
    QString folder20;
    for (const int years : sizes) {
        const QString folder = dir.filePath(QStringLiteral("years%1").arg(years));
        Bench::buildTreeData(folder, years);
        if (years == 20 || folder20.isEmpty())
            folder20 = folder;
        SetAppPath(folder + QStringLiteral("/data"));
        gAccess();
        sqlite3* db = SqliteDatabase::connection(DatabasePath());
        Bench::TreeTimes program, reference;
        for (int run = 0; run < runs; ++run) {
            Bench::openTree(program);
            runReference(reference, db);
        }
        ResetForms();
        CloseDatabase();
        char what[96];
        std::snprintf(what, sizeof what, "%d years, %d nodes (%d): open", years, program.nodes,
                      reference.nodes);
        Bench::printRatio(what, Bench::median(program.open), Bench::median(reference.open), kGoal);
        std::snprintf(what, sizeof what, "%d years: refresh after a save", years);
        Bench::printRatio(what, Bench::median(program.refresh), Bench::median(reference.refresh),
                          kGoal);
    }

    {
        const std::unique_ptr<QWidget> view(CreateView(QStringLiteral("ContribuyentesDatos")));
        g_windowSize = view->size();
    }
    std::vector<double> programMiB, referenceMiB;
    for (int run = 0; run < 3; ++run) {
        programMiB.push_back(childMemory(QStringLiteral("--program-memory"), folder20));
        referenceMiB.push_back(childMemory(QStringLiteral("--reference-memory"), folder20));
    }
    Bench::printHeader("resident memory with the tree open, main window included", kMemoryGoal);
    Bench::printRatio("tree of the largest size up to 20 years", Bench::median(programMiB),
                      Bench::median(referenceMiB), kMemoryGoal, "MiB");
    setUi(nullptr);
    return 0;
}
