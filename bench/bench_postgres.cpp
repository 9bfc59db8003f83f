// The same work on a firm's PostgreSQL server and on the data folder's SQLite
// file, in one run: the import of an agent's annex of 100,000 lines, and the
// declaration tree of a taxpayer with twenty years of declarations of all
// eight forms (opened until painted, and refreshed as after a saved form).
// The two backends run in turn, several times; medians, and the server's
// time over the file's. The tree's database is built in a file and put on
// the server by the program's own copy, which is timed too.
//
// The server is a private one, started for the run in a temporary folder by
// the tests' script (socket only, fsync off as for the tests) and stopped at
// the end.
// Usage: bench_postgres [runs] [lines] [years]   (default 3 runs, 100000 lines, 20 years)
#include <QApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <libpq-fe.h>

#include "BenchSupport.h"
#include "backup/CopiaBaseDatos.h"
#include "shell/view/ShellViews.h"

namespace {

constexpr int kPort = 55499;
constexpr double kGoal = 2.0;

// The private server, up for the life of the object.
class Server
{
public:
    explicit Server(const QString& folder) : m_folder(folder)
    {
        // Run as root, the script serves as another user, who must pass
        // through the folder above.
        QFile::setPermissions(QFileInfo(folder).absolutePath(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                  QFile::ExeGroup | QFile::ExeOther);
        QProcess script;
        script.start(QStringLiteral("bash"),
                     {QStringLiteral(MORVEL_PG_SERVER_SCRIPT), QStringLiteral("start"), m_folder,
                      QString::number(kPort)});
        script.waitForFinished(120000);
        const QList<QByteArray> lines = script.readAllStandardOutput().trimmed().split('\n');
        if (script.exitCode() == 0 && !lines.isEmpty())
            m_admin = DatabaseLocation::fromConnectionInfo(QString::fromUtf8(lines.last()));
        else
            std::printf("the server did not start: %s\n",
                        script.readAllStandardError().constData());
    }
    ~Server()
    {
        QProcess::execute(QStringLiteral("bash"), {QStringLiteral(MORVEL_PG_SERVER_SCRIPT),
                                                   QStringLiteral("stop"), m_folder});
    }

    bool up() const { return !m_admin.host.isEmpty(); }

    // A new database of that name on the server.
    DatabaseLocation create(const QString& name) const
    {
        PGconn* conn = PQconnectdb(m_admin.connectionInfo().toUtf8().constData());
        PQclear(PQexec(conn, ("CREATE DATABASE " + name).toUtf8().constData()));
        PQfinish(conn);
        DatabaseLocation location = m_admin;
        location.database = name;
        return location;
    }

private:
    QString m_folder;
    DatabaseLocation m_admin;
};

// The workstation's database is the file of `folder`, or the server's
// database; the connection is made before anything is timed.
void useFile(const QString& folder)
{
    ResetForms();
    CloseDatabase();
    qunsetenv("MORVEL_DATABASE_SERVER");
    SetAppPath(folder + QStringLiteral("/data"));
    gAccess().TableNames();
}

void useServer(const DatabaseLocation& location)
{
    ResetForms();
    CloseDatabase();
    qputenv("MORVEL_DATABASE_SERVER", location.connectionInfo().toUtf8());
    gAccess().TableNames();
}

void printLine(const QString& what, double server, double file, const char* unit)
{
    const double ratio = file > 0 ? server / file : 0;
    std::printf("%-40s %9.1f %-3s %9.1f %-3s %6.2fx  %s\n", qPrintable(what), server, unit, file,
                unit, ratio, ratio <= kGoal ? "ok" : "OVER GOAL");
    std::fflush(stdout);
}

void printHeader(const char* title)
{
    std::printf("%s (goal: PostgreSQL within %.1fx SQLite)\n", title, kGoal);
    std::printf("%-40s %13s %13s %7s\n", "", "PostgreSQL", "SQLite", "PG/SQL");
}

// The annex imported into each backend in turn; the time of each import.
void benchImport(const QString& folder, const DatabaseLocation& server, int runs, int lines)
{
    useFile(folder);
    CreateCurrentDatabase();
    Bench::addAnnexPremises();
    useServer(server);
    CreateCurrentDatabase();
    Bench::addAnnexPremises();
    const QString path = folder + QStringLiteral("/f987.txt");
    Bench::writeAnnexFile(path, lines);
    std::vector<double> onServer, onFile;
    for (int run = 0; run < runs; ++run) {
        useFile(folder);
        const double fileRate = Bench::importAnnex(path, lines);
        useServer(server);
        const double serverRate = Bench::importAnnex(path, lines);
        if (fileRate <= 0 || serverRate <= 0)
            std::printf("an import did not store its %d lines\n", lines);
        onFile.push_back(lines / qMax(1.0, fileRate) * 1000);
        onServer.push_back(lines / qMax(1.0, serverRate) * 1000);
    }
    printHeader("import of an annex, median of the runs");
    printLine(QStringLiteral("%1 lines").arg(lines), Bench::median(onServer), Bench::median(onFile),
              "ms");
    std::printf("%-40s %9.0f l/s %9.0f l/s\n", "lines per second",
                lines / Bench::median(onServer) * 1000, lines / Bench::median(onFile) * 1000);
}

// The tree opened and refreshed on each backend in turn.
void benchTree(const QString& folder, const DatabaseLocation& server, int runs, int years)
{
    Bench::buildTreeData(folder, years);
    QElapsedTimer timer;
    timer.start();
    CopiaBaseDatos copy(CopiaBaseDatos::Archivo(folder + QStringLiteral("/data/Morvel.db")),
                        CopiaBaseDatos::Servidor(server));
    if (!copy.Copiar()) {
        std::printf("the copy to the server failed: %s\n", qPrintable(copy.Motivo()));
        return;
    }
    std::printf("copy of the %d-year database to the server: %.0f ms (%d tables, %lld rows)\n",
                years, Bench::ms(timer), copy.Tablas(), static_cast<long long>(copy.Filas()));
    Bench::TreeTimes onServer, onFile;
    for (int run = 0; run < runs; ++run) {
        useFile(folder);
        Bench::openTree(onFile);
        useServer(server);
        Bench::openTree(onServer);
    }
    printHeader("declaration tree on its window, median of the runs");
    printLine(QStringLiteral("%1 years, %2 nodes (%3): open")
                  .arg(years)
                  .arg(onServer.nodes)
                  .arg(onFile.nodes),
              Bench::median(onServer.open), Bench::median(onFile.open), "ms");
    printLine(QStringLiteral("%1 years: refresh after a save").arg(years),
              Bench::median(onServer.refresh), Bench::median(onFile.refresh), "ms");
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int runs = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 3;
    const int lines = argc > 2 ? qMax(1, QString::fromLocal8Bit(argv[2]).toInt()) : 100000;
    const int years = argc > 3 ? qBound(1, QString::fromLocal8Bit(argv[3]).toInt(), 60) : 20;
    QTemporaryDir dir;
    const Server server(dir.filePath(QStringLiteral("servidor")));
    if (!server.up())
        return 2;
    Bench::AnsweringUi port;
    setUi(&port);
    RegisterAllViews();
    gDecimalSymbol = QStringLiteral(",");
    Bench::isolateSettings(dir.path());

    benchTree(dir.filePath(QStringLiteral("arbol")), server.create(QStringLiteral("arbol")), runs,
              years);
    benchImport(dir.filePath(QStringLiteral("importacion")),
                server.create(QStringLiteral("importacion")), runs, lines);

    ResetForms();
    CloseDatabase();
    qunsetenv("MORVEL_DATABASE_SERVER");
    setUi(nullptr);
    return 0;
}
