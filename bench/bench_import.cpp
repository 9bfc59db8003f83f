// The import of an agent's informative annex of perceptions (F987) from text
// files of 10,000 and 100,000 lines that raise no question, beside the
// reference: the same file read, split at "@" and stored by one prepared
// INSERT with bound values in one transaction. Program and reference run in
// turn, three times; medians of their lines per second, and the program's
// share of the reference's speed. The peak memory is printed too: the time
// should grow with the lines and the memory stay flat, since the file is
// streamed.
// Usage: bench_import [lines...]
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <sqlite3.h>
#include <sys/resource.h>

#include "BenchSupport.h"
#include "Globals.h"
#include "ScriptedUi.h"
#include "SqliteDatabase.h"
#include "ZoAccess.h"
#include "database/Schema.h"

namespace {

// Processor time of this process, in milliseconds: on a busy machine the
// clock on the wall says more about the neighbours than about the import.
qint64 cpuMilliseconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
}

// The reference: each detail line split at "@" and bound to one prepared
// INSERT, all in one transaction.
int referenceImport(const QString& path, const QString& codigo)
{
    sqlite3* db = SqliteDatabase::connection(DatabasePath());
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO F987_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                       "Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, "
                       "ImportePercibido, ctrl) VALUES (?, '0', ?, ?, ?, ?, ?, ?, ?, ?, '0')",
                       -1, &insert, nullptr);
    const QByteArray code = codigo.toUtf8();
    int stored = 0;
    while (!f.atEnd()) {
        const QByteArray line = f.readLine().trimmed();
        if (!line.startsWith("2@"))
            continue;
        const QList<QByteArray> parts = line.split('@');
        if (parts.size() < 8)
            continue;
        const QByteArray detalle = QByteArray::number(stored + 1).rightJustified(4, '0');
        sqlite3_bind_text(insert, 1, code.constData(), int(code.size()), SQLITE_STATIC);
        sqlite3_bind_text(insert, 2, detalle.constData(), int(detalle.size()), SQLITE_TRANSIENT);
        for (int i = 1; i < 8; ++i)
            sqlite3_bind_text(insert, i + 2, parts.at(i).constData(), int(parts.at(i).size()),
                              SQLITE_TRANSIENT);
        sqlite3_step(insert);
        sqlite3_reset(insert);
        ++stored;
    }
    sqlite3_finalize(insert);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    return stored;
}

long peakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QList<int> sizes;
    for (int i = 1; i < argc; ++i)
        sizes << qMax(1, QString::fromLocal8Bit(argv[i]).toInt());
    if (sizes.isEmpty())
        sizes = {10000, 100000};
    QTemporaryDir dir;
    SetAppPath(dir.filePath(QStringLiteral("data")));
    gDecimalSymbol = QStringLiteral(",");
    CreateCurrentDatabase();
    ScriptedUi person;
    setUi(&person);
    Bench::addAnnexPremises();
    QTextStream out(stdout);
    int status = 0;
    constexpr int kRuns = 3;
    constexpr double kGoal = 0.6;
    const QString codigo = Bench::annexCodigo();
    for (const int lines : sizes) {
        const QString path = dir.filePath(QStringLiteral("f987_%1.txt").arg(lines));
        Bench::writeAnnexFile(path, lines);
        std::vector<double> program, reference;
        qint64 cpu = 0;
        for (int run = 0; run < kRuns; ++run) {
            const qint64 cpuBefore = cpuMilliseconds();
            const double rate = Bench::importAnnex(path, lines);
            program.push_back(rate);
            cpu = cpuMilliseconds() - cpuBefore;
            if (rate <= 0) {
                out << lines << " lines: [FAILED: " << person.texts().join(" | ") << "]"
                    << Qt::endl;
                status = 1;
            }

            gAccess().Execute(QStringLiteral("DELETE * FROM F987_Detalle"));
            QElapsedTimer timer;
            timer.start();
            const int referenceStored = referenceImport(path, codigo);
            reference.push_back(lines / qMax(1e-9, timer.nsecsElapsed() / 1e9));
            if (referenceStored != lines)
                out << "reference stored " << referenceStored << " lines" << Qt::endl;
        }
        const double p = Bench::median(program);
        const double r = Bench::median(reference);
        std::printf("import of %d lines, median of %d (goal: program at %.1f of the reference's "
                    "speed or more)\n",
                    lines, kRuns, kGoal);
        std::printf("%-34s %9.0f lines/s %9.0f lines/s %6.2f  %s\n", "program, reference, share", p,
                    r, p / r, p / r >= kGoal ? "ok" : "UNDER GOAL");
        std::printf("%-34s %lld ms of processor (last run), peak memory %ld MiB\n", "",
                    static_cast<long long>(cpu), peakKilobytes() / 1024);
        std::fflush(stdout);
        QFile::remove(path);
    }
    setUi(nullptr);
    CloseDatabase();
    return status;
}
