// The accountant's desk at its sizes, each against a reference that does the
// same work bare, at the machine's limit, in one run:
//  - the finder filtering 5,000 taxpayers, keystroke by keystroke, through
//    the main window's fields, against a plain scan of pre-folded names;
//  - the filing calendar of a taxpayer with 20 years of filings, opened,
//    against one query of the same rows into a hash;
//  - a period generated for 100 taxpayers with four forms each, with their
//    printed forms as PDF and without, against the 400 archiver runs on the
//    same texts, as many at a time as the machine has cores; the three taken
//    in turn, run after run, and their medians compared.
// Usage: bench_desk [runs] [finder|calendar|generation]
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <algorithm>
#include <sys/resource.h>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "Globals.h"
#include "Person.h"
#include "Recordset.h"
#include "Transaction.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "desk/BuscadorContribuyentes.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/GeneracionLote.h"
#include "desk/MensajesRegistrados.h"
#include "output/SevenZipRun.h"
#include "output/ZoGenerateDisk.h"
#include "shell/Principal.h"

namespace {

QTextStream out(stdout);

const QStringList kSurnames = {"GONZÁLEZ", "RODRÍGUEZ", "GÓMEZ",   "FERNÁNDEZ", "LÓPEZ",
                               "DÍAZ",     "MARTÍNEZ",  "PÉREZ",   "GARCÍA",    "SÁNCHEZ",
                               "ROMERO",   "SOSA",      "ÁLVAREZ", "TORRES",    "RUIZ"};
const QStringList kNames = {"JUAN", "MARÍA", "CARLOS", "ANA", "JOSÉ", "LUCÍA", "JORGE"};

QString cuitOf(int id)
{
    return QStringLiteral("20%1").arg(id, 8, 10, QLatin1Char('0')) + u'6';
}

QString masked(const QString& cuit)
{
    return cuit.left(2) + u'-' + cuit.mid(2, 8) + u'-' + cuit.right(1);
}

QString pad(int n)
{
    return QStringLiteral("%1").arg(n, 13, 10, QLatin1Char('0'));
}

void exec(const QString& sql)
{
    gAccess().Execute(sql);
}

void addTaxpayer(int id, const QString& name, const QString& flags)
{
    exec(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) "
                        "VALUES (%1, '%2', '%3')")
             .arg(id)
             .arg(name, masked(cuitOf(id))));
    exec(QStringLiteral("INSERT INTO tPadronesComerciales (cuit, padron, objeto, grupo, regimen, "
                        "razon_social, calle_numero, localidad_departamento, cp, %1) VALUES "
                        "('%2', '%3', '%4', '1', '0', 'RAZON %5', 'SAN MARTIN 100', 'CAPITAL', "
                        "'5500', %6)")
             .arg(QStringLiteral("retencion, percepcion"), cuitOf(id), pad(id), pad(1),
                  QString::number(id), flags));
}

// One version of a declaration with its registration row (and a line for F976).
void addDeclaration(int id, const QString& form, const QString& periodo, int ctrl)
{
    const QString rect = ctrl == 0 ? QStringLiteral("False") : QStringLiteral("Verdadero");
    const QString fecha =
        ctrl == 0 ? QStringLiteral("0") : QStringLiteral("2%1-").arg(ctrl) + periodo;
    const QString codigo =
        pad(id) + periodo.left(2) + periodo.right(4) + pad(1) + (ctrl == 0 ? u'O' : u'R');
    const QString identity = QStringLiteral("'%1', '%2', '%3', '%4', '%5', '%6'")
                                 .arg(pad(id), pad(1), periodo, rect, fecha, QString::number(ctrl));
    exec(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                        "Rectificativa, FechaRectificativa, ctrl, idFormulario) VALUES (") +
         identity + QStringLiteral(", '") + form + QStringLiteral("')"));
    if (form == QLatin1String("F986")) {
        exec(QStringLiteral("INSERT INTO F986 (Padron, Objeto, Periodo, Rectificativa, "
                            "FechaRectificativa, ctrl, ImporteDepositar) VALUES (") +
             identity + QStringLiteral(", '120,50')"));
        return;
    }
    const QString columns = form == QLatin1String("F976")
                                ? QStringLiteral("Retenciones, Percepciones, TotalAPagar")
                                : QStringLiteral("Transporte, TotalPercepciones, Domicilio");
    const QString values = form == QLatin1String("F976")
                               ? QStringLiteral("'10,00', '20,00', '1.234,50'")
                               : QStringLiteral("'0,00', '10,00', 'SAN MARTIN 100'");
    exec(QStringLiteral("INSERT INTO ") + form +
         QStringLiteral(" (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, ctrl, "
                        "Codigo, ") +
         columns + QStringLiteral(") VALUES (") + identity + QStringLiteral(", '") + codigo +
         QStringLiteral("', ") + values + u')');
    if (form == QLatin1String("F976"))
        exec(QStringLiteral("INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                            "TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, "
                            "ctrl) VALUES ('%1', '%2', '0001', 'Comercio', '620100', '10.000,00', "
                            "'1,00', '100,00', '%3')")
                 .arg(codigo, fecha, QString::number(ctrl)));
}

// The best of `runs` timings, in milliseconds.
double best(int runs, const std::function<void()>& work)
{
    double fastest = -1;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        const double ms = timer.nsecsElapsed() / 1e6;
        fastest = fastest < 0 ? ms : qMin(fastest, ms);
    }
    return fastest;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

void report(const QString& what, double program, double reference)
{
    out << qSetFieldWidth(44) << Qt::left << what << qSetFieldWidth(0) << "program "
        << QString::number(program, 'f', 2) << " ms, reference "
        << QString::number(reference, 'f', 2) << " ms, ratio "
        << QString::number(reference > 0 ? program / reference : 0, 'f', 2) << Qt::endl;
}

void benchFinder(int runs)
{
    {
        Transaction unit(gAccess(), Transaction::Mode::KeepWhatPassed);
        for (int id = 1; id <= 5000; ++id)
            exec(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, "
                                "Cuit) VALUES (%1, '%2 %3', '%4')")
                     .arg(id)
                     .arg(kSurnames.at(id % kSurnames.size()), kNames.at(id / 15 % kNames.size()),
                          masked(cuitOf(id))));
    }
    const QString typed = QStringLiteral("gonzalez juan");
    Principal& window = gPrincipal();
    window.load();
    Person person(window);
    double worst = 0, total = 0;
    for (int run = 0; run < runs; ++run) {
        person.retype(QStringLiteral("txtBuscar"), {});
        for (const QChar c : typed) {
            QElapsedTimer timer;
            timer.start();
            person.type(QStringLiteral("txtBuscar"), QString(c));
            const double ms = timer.nsecsElapsed() / 1e6;
            worst = qMax(worst, ms);
            total += ms;
        }
    }
    const int keystrokes = int(typed.size()) * runs;
    // The reference: the same names folded once, each keystroke a plain scan.
    QVector<QString> folded;
    QVector<QStringList> names;
    for (int id = 1; id <= 5000; ++id) {
        const QString name =
            kSurnames.at(id % kSurnames.size()) + u' ' + kNames.at(id / 15 % kNames.size());
        folded << BuscadorContribuyentes::Plegar(name);
        names << QStringList{name, masked(cuitOf(id))};
    }
    double refTotal = 0;
    for (int run = 0; run < runs; ++run)
        for (int n = 1; n <= typed.size(); ++n) {
            const QStringList words = typed.left(n).split(u' ', Qt::SkipEmptyParts);
            QElapsedTimer timer;
            timer.start();
            QVector<QStringList> rows;
            for (int i = 0; i < folded.size(); ++i) {
                bool all = true;
                for (const QString& w : words)
                    all = all && folded.at(i).contains(w);
                if (all)
                    rows << names.at(i);
            }
            refTotal += timer.nsecsElapsed() / 1e6;
        }
    report(QStringLiteral("finder, 5,000 taxpayers, per keystroke"), total / keystrokes,
           refTotal / keystrokes);
    out << "  slowest keystroke " << QString::number(worst, 'f', 2) << " ms" << Qt::endl;
    window.unload();
}

void benchCalendar(int runs)
{
    const int id = 9001;
    {
        Transaction unit(gAccess(), Transaction::Mode::KeepWhatPassed);
        addTaxpayer(id, QStringLiteral("GRAN CONTRIBUYENTE S.A."), QStringLiteral("'1', '0'"));
        for (int year = 2005; year < 2025; ++year)
            for (int month = 1; month <= 12; ++month) {
                const QString periodo =
                    QStringLiteral("%1-%2").arg(month, 2, 10, QLatin1Char('0')).arg(year);
                addDeclaration(id, QStringLiteral("F976"), periodo, 0);
                if (month % 4 == 0)
                    addDeclaration(id, QStringLiteral("F976"), periodo, 1);
                addDeclaration(id, QStringLiteral("F977"), periodo, 0);
                addDeclaration(id, QStringLiteral("F986"), periodo, 0);
            }
    }
    const double program = best(runs, [&] {
        CalendarioPresentaciones calendario;
        calendario.IdContribuyente = id;
        calendario.Anio = 2024;
        calendario.load();
        calendario.unload();
    });
    const double reference = best(runs, [&] {
        // the registrations and the totals of the same premises, one query each
        QHash<QString, QString> totals, cells;
        const RecordsetPtr amounts = gAccess().FillRecordSet(
            QStringLiteral("SELECT Periodo, ctrl, TotalAPagar FROM F976 WHERE Padron = '") +
            pad(id) + u'\'');
        for (; amounts && !amounts->EOF_(); amounts->MoveNext())
            totals.insert(amounts->Text(0) + amounts->Text(1), amounts->Text(2));
        const RecordsetPtr rs = gAccess().FillRecordSet(
            QStringLiteral("SELECT Periodo, idFormulario, ctrl FROM TPadrones_Formularios WHERE "
                           "Padron = '") +
            pad(id) + u'\'');
        for (; rs && !rs->EOF_(); rs->MoveNext())
            cells.insert(rs->Text(0) + rs->Text(1), totals.value(rs->Text(0) + rs->Text(2)));
    });
    report(QStringLiteral("calendar, 20 years, opened"), program, reference);
}

// An empty `folder`, as a person generating into a new one starts from. The
// last run's files are set aside, not removed: a file system that has just
// freed a thousand files is slow to make new ones, which no person making a
// period's files meets. They go when the benchmark ends.
void empty(const QString& folder)
{
    static int aside = 0;
    QDir().rename(folder, folder + QStringLiteral(".%1").arg(++aside));
    QDir().mkpath(folder);
}

// A period generated into `folder`; the files written.
int generate(const QString& folder, const QVector<int>& ids, bool conPdf)
{
    GeneracionLote lote;
    lote.Periodo = QStringLiteral("03-2025");
    lote.Destino = folder;
    lote.Ids = ids;
    lote.ConPdf = conPdf;
    return int(lote.Ejecutar().escritos.size());
}

// The reference: each text zipped alone by one archiver run, with as many
// runs at a time as the machine has cores, the oldest waited for when all
// are taken.
void zipAll(const QStringList& texts, int parallel)
{
    std::deque<std::unique_ptr<SevenZipRun>> running;
    for (const QString& text : texts) {
        if (int(running.size()) >= parallel) {
            running.front()->Wait();
            running.pop_front();
        }
        const QString zip = text + QStringLiteral(".zip");
        QFile::remove(zip);
        running.push_back(std::make_unique<SevenZipRun>());
        running.back()->Start(ArchiveArguments(text, zip, {}), false);
    }
    while (!running.empty()) {
        running.front()->Wait();
        running.pop_front();
    }
}

// The processor time of this process, its threads and its children waited
// for, in milliseconds: what the work costs whatever else the machine runs.
double cpuMs()
{
    double ms = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& t : {usage.ru_utime, usage.ru_stime})
            ms += t.tv_sec * 1e3 + t.tv_usec / 1e3;
    }
    return ms;
}

// The wall and processor times of each run of a piece of work, what readies
// it (`before`) left out.
struct Times {
    std::vector<double> wall, cpu;
    void time(const std::function<void()>& work, const std::function<void()>& ready = {})
    {
        if (ready)
            ready();
        const double before = cpuMs();
        QElapsedTimer timer;
        timer.start();
        work();
        wall.push_back(timer.nsecsElapsed() / 1e6);
        cpu.push_back(cpuMs() - before);
    }
};

void benchGeneration(int runs, const QString& root)
{
    {
        Transaction unit(gAccess(), Transaction::Mode::KeepWhatPassed);
        for (int id = 10001; id <= 10100; ++id) {
            addTaxpayer(id, QStringLiteral("CONTRIBUYENTE %1").arg(id), QStringLiteral("'1', '1'"));
            for (const char* form : {"F976", "F977", "F978", "F986"})
                addDeclaration(id, QString::fromLatin1(form), QStringLiteral("03-2025"), 0);
        }
    }
    QVector<int> ids;
    for (int id = 10001; id <= 10100; ++id)
        ids << id;
    // A first run gives the texts of the reference, and warms what the
    // runs share (fonts, the archiver on the disk cache).
    const QString bare = root + QStringLiteral("/lote");
    const QString printed = root + QStringLiteral("/lote-pdf");
    empty(bare);
    empty(printed);
    const int files = generate(bare, ids, false);
    const int filesWithPdf = generate(printed, ids, true);
    QStringList texts;
    QDirIterator zips(bare, QDir::Files, QDirIterator::Subdirectories);
    const QString plain = root + QStringLiteral("/textos");
    for (int n = 0; zips.hasNext(); ++n) {
        QString member = QStringLiteral("TEMPFILE.DJ");
        QString into = plain + QStringLiteral("/%1").arg(n);
        QDir().mkpath(into);
        ZoGenerateDisk disk;
        disk.Expand(zips.next(), member, into);
        texts << into + QStringLiteral("/TEMPFILE.DJ");
    }
    const int parallel = qMax(1, QThread::idealThreadCount());
    // One run of each in turn, so that what else the machine does weighs on
    // the three alike; the medians.
    Times withPdf, withoutPdf, reference;
    for (int run = 0; run < runs; ++run) {
        withPdf.time([&] { generate(printed, ids, true); }, [&] { empty(printed); });
        withoutPdf.time([&] { generate(bare, ids, false); }, [&] { empty(bare); });
        reference.time([&] { zipAll(texts, parallel); });
    }
    const double ref = median(reference.wall);
    report(QStringLiteral("generation, 100 x 4, with the PDFs"), median(withPdf.wall), ref);
    report(QStringLiteral("generation, 100 x 4, without the PDFs"), median(withoutPdf.wall), ref);
    const double refCpu = median(reference.cpu);
    report(QStringLiteral("  processor time, with the PDFs"), median(withPdf.cpu), refCpu);
    report(QStringLiteral("  processor time, without the PDFs"), median(withoutPdf.cpu), refCpu);
    out << "  files written " << filesWithPdf << " with the PDFs, " << files << " without; "
        << texts.size() << " archiver runs, " << parallel << " at a time; medians of " << runs
        << " runs" << Qt::endl;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv); // the printed forms' fonts
    const int runs = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 3;
    QTemporaryDir dir;
    SetAppPath(dir.filePath(QStringLiteral("data")));
    gDecimalSymbol = QStringLiteral(",");
    setUi(PuertoSinPantalla());
    CreateCurrentDatabase();
    const QString only = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    if (only.isEmpty() || only == QLatin1String("finder"))
        benchFinder(runs);
    if (only.isEmpty() || only == QLatin1String("calendar"))
        benchCalendar(runs);
    if (only.isEmpty() || only == QLatin1String("generation"))
        benchGeneration(runs, dir.path());
    CloseDatabase();
    return 0;
}
