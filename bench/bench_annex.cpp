// An annex of perceptions (F978) on its form, with the real widgets on the
// offscreen platform, as the person waits for it: the form opened until its
// grid is painted, the lines read again after a line was changed
// (recalculate), one line removed ("Quitar", answered "Sí"), and "Aceptar"
// until the form is closed. Beside each, the reference: the same grid (a
// QTableWidget of the same size and titles, columns fitted to their text)
// filled with bare items from one prepared SQLite read and painted. Program
// and reference run in turn in one process, several times; medians.
// Usage: bench_annex [runs] [lines...]   (default 5 runs of 500, 5000, 50000)
#include <QApplication>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <sqlite3.h>

#include "BenchSupport.h"
#include "Globals.h"
#include "RegionalSettings.h"
#include "SqliteDatabase.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "declarations/F978.h"
#include "shell/view/ShellViews.h"

namespace {

const QString kPadron = QStringLiteral("0000000012345");
const QString kObjeto = QStringLiteral("0000000000007");
const QString kCodigo = kPadron + QStringLiteral("032024") + kObjeto + QStringLiteral("O");
constexpr double kGoal = 2.0;

void seedHeader()
{
    ZoAccess& db = gAccess();
    db.Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) "
                              "VALUES (1, 'GÓMEZ, ANA', '20-12345678-6')"));
    db.Execute(QStringLiteral("INSERT INTO tPadronesComerciales (idContribuyente, cuit, padron, "
                              "objeto, razon_social, percepcion, retencion, regimen) VALUES (1, "
                              "'20123456786', '") +
               kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', 'ALMACÉN', '1', '0', '1')"));
    db.Execute(QStringLiteral("INSERT INTO F2001 (Codigo, Padron, Objeto, Periodo, Rectificativa, "
                              "FechaRectificativa, Percepciones, ctrl) VALUES ('") +
               kCodigo + QStringLiteral("', '") + kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', '03-2024', 'False', '0', '62.505,00', '0')"));
    db.Execute(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES ('") +
               kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', '03-2024', 'F2001', 'False', '0', '0')"));
}

// The annex anew before each run: `lines` lines and no stored F978 row.
void seedLines(int lines)
{
    sqlite3* db = SqliteDatabase::connection(DatabasePath());
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    // The PROCOM return of the period declares five pesos more than the
    // lines left after one is removed: the save adjusts.
    const qint64 cents = qint64(lines - 1) * 1250 + 500;
    const QByteArray declared = QLocale(QLocale::German).toString(cents / 100).toUtf8() + ',' +
                                QByteArray::number(cents % 100).rightJustified(2, '0');
    sqlite3_exec(db, ("UPDATE F2001 SET Percepciones = '" + declared + "'").constData(), nullptr,
                 nullptr, nullptr);
    sqlite3_exec(db,
                 "DELETE FROM F978_Detalle; DELETE FROM F978; DELETE FROM "
                 "TPadrones_Formularios WHERE idFormulario = 'F978'",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO F978_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                       "Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, "
                       "ImportePercibido, ctrl) VALUES (?, '0', ?, '05-03-2024', 'FACA - Factura "
                       "A', ?, ?, '30-71234567-1', '0000000000099', '12,50', '0')",
                       -1, &insert, nullptr);
    const QByteArray codigo = kCodigo.toUtf8();
    for (int i = 1; i <= lines; ++i) {
        const QByteArray detalle = QByteArray::number(i).rightJustified(5, '0');
        const QByteArray numero = QByteArray::number(i).rightJustified(15, '0');
        const QByteArray nombre = "PROVEEDOR " + QByteArray::number(i % 97);
        sqlite3_bind_text(insert, 1, codigo.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 2, detalle.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 3, numero.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 4, nombre.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
}

struct Times {
    std::vector<double> load, recalc, remove, accept;
};

QString parametros()
{
    return QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=03;Formulario=F978;Nuevo=Falso;"
                          "ConDatos=Verdadero;Rectificativa=Falso;"
                          "FechaRectificativa=0;ctrl=0;Codigo=") +
           kCodigo + u';';
}

// --- the program ---------------------------------------------------------------

QSize g_gridSize(700, 300);

Bench::AnsweringUi& port()
{
    static Bench::AnsweringUi instance;
    return instance;
}
QStringList g_titles, g_columns;

void runProgram(Times& times, int lines)
{
    F978 form;
    form.Parametros = parametros();
    QElapsedTimer t;
    QTimer::singleShot(0, [&] {
        auto* grid = Bench::shown<QTableWidget>(QStringLiteral("gridFormulario"));
        if (!grid) {
            std::printf("the form's grid is not shown\n");
            form.unload();
            return;
        }
        Bench::PaintWatch watch(grid->viewport());
        watch.waitPaintedAfter(0);
        times.load.push_back(Bench::ms(t));
        g_gridSize = grid->size();
        g_titles = form.definicion().titulosGrilla;
        g_columns = form.definicion().columnasGrilla;

        // The lines read again, as after a line was changed in its dialog.
        int painted = watch.paints();
        t.restart();
        form.cargaDatos(2);
        form.PropGrid();
        watch.waitPaintedAfter(painted);
        times.recalc.push_back(Bench::ms(t));

        // A line chosen with the mouse and removed.
        emit grid->cellClicked(lines / 2, 1);
        QApplication::processEvents();
        painted = watch.paints();
        t.restart();
        Bench::shown<QPushButton>(QStringLiteral("cmdQuitar"))->click();
        watch.waitPaintedAfter(painted);
        times.remove.push_back(Bench::ms(t));
        if (form["gridFormulario"].rowCount() != lines - 1)
            std::printf("  the line was not removed\n");

        t.restart();
        Bench::shown<QPushButton>(QStringLiteral("cmdAceptar"))->click();
        QApplication::processEvents();
        times.accept.push_back(Bench::ms(t));
        if (form.isLoaded()) {
            std::printf("  the form stayed open after Aceptar: %s\n",
                        qPrintable(port().m_texts.join(QStringLiteral(" | "))));
            form.unload();
        }
    });
    t.start();
    form.show(true);
    QApplication::processEvents();
}

// --- the reference: bare items from one prepared read --------------------------

void fillReference(QTableWidget& table, sqlite3* db)
{
    const QByteArray sql = "SELECT " + g_columns.join(QStringLiteral(", ")).toUtf8() +
                           " FROM F978_Detalle WHERE Codigo = ? AND FechaRectificativa = '0' "
                           "AND ctrl = '0' ORDER BY CodigoDetalle";
    sqlite3_stmt* read = nullptr;
    sqlite3_prepare_v2(db, sql.constData(), -1, &read, nullptr);
    const QByteArray codigo = kCodigo.toUtf8();
    sqlite3_bind_text(read, 1, codigo.constData(), -1, SQLITE_STATIC);
    const int columns = int(g_columns.size());
    QVector<QStringList> rows;
    while (sqlite3_step(read) == SQLITE_ROW) {
        QStringList cells;
        cells.reserve(columns);
        for (int c = 0; c < columns; ++c)
            cells << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(read, c)));
        rows << cells;
    }
    table.setUpdatesEnabled(false);
    table.clearContents();
    table.setColumnCount(columns);
    table.setHorizontalHeaderLabels(g_titles);
    table.setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r)
        for (int c = 0; c < columns; ++c)
            table.setItem(r, c, new QTableWidgetItem(rows.at(r).at(c)));
    sqlite3_finalize(read);
    table.resizeColumnsToContents();
    table.setUpdatesEnabled(true);
}

void runReference(Times& times)
{
    sqlite3* db = SqliteDatabase::connection(DatabasePath());
    QElapsedTimer t;
    t.start();
    QTableWidget table;
    table.resize(g_gridSize);
    Bench::PaintWatch watch(table.viewport());
    fillReference(table, db);
    table.show();
    watch.waitPaintedAfter(0);
    times.load.push_back(Bench::ms(t));
    for (std::vector<double>* step : {&times.recalc, &times.remove, &times.accept}) {
        const int painted = watch.paints();
        t.restart();
        fillReference(table, db);
        watch.waitPaintedAfter(painted);
        step->push_back(Bench::ms(t));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int runs = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 5;
    QList<int> sizes;
    for (int i = 2; i < argc; ++i)
        sizes << qMax(2, QString::fromLocal8Bit(argv[i]).toInt());
    if (sizes.isEmpty())
        sizes = {500, 5000, 50000};
    QTemporaryDir dir;
    SetAppPath(dir.filePath(QStringLiteral("data")));
    Regional::reload();
    gDecimalSymbol = QStringLiteral(",");
    Bench::AnsweringUi& port = ::port();
    setUi(&port);
    RegisterAllViews();
    CreateCurrentDatabase();
    seedHeader();

    for (const int lines : sizes) {
        Times program, reference;
        for (int run = 0; run < runs; ++run) {
            seedLines(lines);
            runProgram(program, lines);
            seedLines(lines);
            runReference(reference);
        }
        char title[96];
        std::snprintf(title, sizeof title, "annex of %d lines on its form, median of %d", lines,
                      runs);
        Bench::printHeader(title, kGoal);
        Bench::printRatio("load (opened to painted)", Bench::median(program.load),
                          Bench::median(reference.load), kGoal);
        Bench::printRatio("recalculate (lines read again)", Bench::median(program.recalc),
                          Bench::median(reference.recalc), kGoal);
        Bench::printRatio("remove one line", Bench::median(program.remove),
                          Bench::median(reference.remove), kGoal);
        Bench::printRatio("accept (until closed)", Bench::median(program.accept),
                          Bench::median(reference.accept), kGoal);
    }
    port.m_texts.removeDuplicates();
    std::printf("messages answered: %s\n", qPrintable(port.m_texts.join(QStringLiteral(" | "))));
    CloseDatabase();
    setUi(nullptr);
    return 0;
}
