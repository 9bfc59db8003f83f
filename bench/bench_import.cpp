// The import of an agent's informative annex of perceptions (F987) from text
// files of 10,000 and 100,000 lines that raise no question. Prints the lines
// per second of each and the peak memory after it: the time should grow with
// the lines and the memory stay flat, since the file is streamed.
// Usage: bench_import [lines...]
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <sys/resource.h>

#include "Globals.h"
#include "ScriptedUi.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "import/ZoImport.h"

namespace {

const QString kPadron = QStringLiteral("0000000004711");
const QString kObjeto = QStringLiteral("0000000000001");
const char* const kTipos[] = {"FACA", "FACB", "NCRA", "RECA"};

// Header, `lines` details and the trailer with their count and signed sum.
void writeFile(const QString& path, int lines)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    QByteArray buffer = "1@F987@O@03@2024@30-71234567-1@\r\n";
    qint64 cents = 0;
    for (int i = 0; i < lines; ++i) {
        const char* tipo = kTipos[i % 4];
        const qint64 amount = 100 + (i * 37) % 99900;
        cents += tipo[0] == 'N' ? -amount : amount;
        buffer += QStringLiteral("2@%1-03-2024@%2@%3@CLIENTE NÚMERO %4@20-12345678-6@%5@%6.%7\r\n")
                      .arg(1 + i % 28, 2, 10, QChar(u'0'))
                      .arg(QLatin1String(tipo))
                      .arg(i + 1)
                      .arg(i % 1000)
                      .arg(i % 5000)
                      .arg(amount / 100)
                      .arg(amount % 100, 2, 10, QChar(u'0'))
                      .toUtf8();
        if (buffer.size() > (1 << 20)) {
            f.write(buffer);
            buffer.clear();
        }
    }
    const QString sign = cents < 0 ? QStringLiteral("-") : QString();
    buffer += QStringLiteral("3@%1@%2%3.%4\r\n")
                  .arg(lines)
                  .arg(sign)
                  .arg(qAbs(cents) / 100)
                  .arg(qAbs(cents) % 100, 2, 10, QChar(u'0'))
                  .toUtf8();
    f.write(buffer);
}

// Processor time of this process, in milliseconds: on a busy machine the
// clock on the wall says more about the neighbours than about the import.
qint64 cpuMilliseconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
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
    gAccess().Execute(QStringLiteral("INSERT INTO tPadronesComerciales (cuit, padron, objeto) "
                                     "VALUES ('30712345671', '%1', '%2')")
                          .arg(kPadron, kObjeto));
    QTextStream out(stdout);
    int status = 0;
    for (const int lines : sizes) {
        gAccess().Execute(QStringLiteral("DELETE * FROM F987_Detalle"));
        const QString path = dir.filePath(QStringLiteral("f987_%1.txt").arg(lines));
        writeFile(path, lines);
        QString parametros = QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") +
                             kObjeto +
                             QStringLiteral(";Anio=2024;Periodo=03;Formulario=F987;"
                                            "Rectificativa=Falso;FechaRectificativa=0;ctrl=0;"
                                            "Codigo=") +
                             kPadron + QStringLiteral("032024") + kObjeto + QStringLiteral("O;");
        ZoImport import;
        import.IdFormulario = QStringLiteral("F987");
        import.Path = path;
        const qint64 cpuBefore = cpuMilliseconds();
        QElapsedTimer timer;
        timer.start();
        const bool ok = import.Importar(parametros, false);
        const qint64 ms = qMax<qint64>(1, timer.elapsed());
        const qint64 cpu = cpuMilliseconds() - cpuBefore;
        const int stored = gAccess().GetLong(QStringLiteral("SELECT count(*) FROM F987_Detalle"));
        out << lines << " lines: " << ms << " ms, " << qint64(lines) * 1000 / ms << " lines/s ("
            << cpu << " ms of processor), " << stored << " stored, peak memory "
            << peakKilobytes() / 1024 << " MiB"
            << (ok && stored == lines ? "" : "  [FAILED: " + person.texts().join(" | ") + "]")
            << Qt::endl;
        if (!ok || stored != lines)
            status = 1;
        QFile::remove(path);
    }
    setUi(nullptr);
    CloseDatabase();
    return status;
}
