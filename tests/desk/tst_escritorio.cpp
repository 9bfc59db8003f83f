#include <QtTest>

#include "DeskFixture.h"
#include "Person.h"
#include "TestSupport.h"
#include "declarations/FormulariosDDJJ.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/ControlMensual.h"
#include "desk/EscritorioMensual.h"
#include "desk/EstadoPresentaciones.h"
#include "desk/RevisionMensual.h"

namespace {

// Taxpayer 1, regime 0 and both agent flags: January with F976 (retentions
// declared) and its F977, February rectified twice, March with F986 alone.
void seedCalendar()
{
    Desk::addTaxpayer(1, "PEREZ JUAN", {"retencion=1", "percepcion=1"});
    Desk::addDeclaration(1, "F976", "01-2024", 0,
                         {"Retenciones=100,00", "Percepciones=0,00", "TotalAPagar=500,00"});
    Desk::addDeclaration(1, "F977", "01-2024", 0, {"TotalPercepciones=100,00"});
    for (int ctrl = 0; ctrl < 3; ++ctrl)
        Desk::addDeclaration(1, "F976", "02-2024", ctrl,
                             {"Retenciones=0,00", "Percepciones=0,00",
                              "TotalAPagar=" + QString::number(500 + 100 * ctrl) + ",00"});
    Desk::addDeclaration(1, "F986", "03-2024", 0, {"ImporteDepositar=42,50"});
    // Taxpayer 2, no agent flags: January filed whole.
    Desk::addTaxpayer(2, "ACME SRL");
    Desk::addDeclaration(2, "F976", "01-2024", 0,
                         {"Retenciones=0,00", "Percepciones=0,00", "TotalAPagar=10,00"});
}

QString cellText(int id, const QString& form, const QString& periodo)
{
    EstadoPresentaciones estado;
    estado.Cargar(id);
    for (const FilaPresentacion& fila : estado.filas())
        if (fila.formulario == form)
            return EstadoPresentaciones::Texto(fila.celda(periodo));
    return "<no row>";
}

} // namespace

// The filing calendar, the desk of the year and the month's check, read as
// the person reads them: cell texts, summaries, report lines.
class TstEscritorio : public EnvTest
{
    Q_OBJECT
    void seed() override
    {
        RegistrarFormularios();
        seedCalendar();
    }

private slots:
    void calendarCells_data()
    {
        Columns<QString, QString, QString>("form", "periodo", "texto");
        Row("original with its total", "F976", "01-2024", "✓ 500,00");
        Row("annex filed", "F977", "01-2024", "✓ 100,00");
        Row("annex without an amount to back is not offered", "F978", "01-2024", "");
        Row("agent's return offered, not filed", "F986", "01-2024", "Pendiente");
        Row("rectified twice, latest total", "F976", "02-2024", "R2 700,00");
        Row("retentions declared nothing: no F977", "F977", "02-2024", "");
        Row("agent's return alone", "F986", "03-2024", "✓ 42,50");
        Row("main form offered beside it", "F976", "03-2024", "Pendiente");
        Row("month not opened", "F976", "04-2024", "");
        Row("other regime's form never listed", "F2001", "01-2024", "<no row>");
    }
    void calendarCells()
    {
        QFETCH(QString, form);
        QFETCH(QString, periodo);
        QFETCH(QString, texto);
        QCOMPARE(cellText(1, form, periodo), texto);
    }

    void calendarWindowBrowsesYears()
    {
        CalendarioPresentaciones calendario;
        calendario.IdContribuyente = 1;
        calendario.Anio = 2024;
        Person person(calendario);
        QCOMPARE(calendario["lblContribuyente"].text(),
                 QString("Contribuyente: PEREZ JUAN - 20-00000001-6"));
        QCOMPARE(calendario["lblAnio"].text(), QString("Año 2024"));
        const Field& grid = calendario["gridCalendario"];
        QCOMPARE(grid.header().mid(0, 3),
                 (QStringList{"Formulario / Padrón-Objeto", "Ene", "Feb"}));
        QCOMPARE(grid.rowCount(), 7); // the seven forms that regime 0 and both flags offer
        QStringList f976;
        for (const QStringList& row : grid.rows())
            if (row.first() == "F976  Padrón 1-1")
                f976 = row.mid(1, 4);
        QCOMPARE(f976, (QStringList{"✓ 500,00", "R2 700,00", "Pendiente", ""}));
        person.click("cmdAnioAnterior");
        QCOMPARE(calendario["lblAnio"].text(), QString("Año 2023"));
        for (const QStringList& row : calendario["gridCalendario"].rows())
            QCOMPARE(row.mid(1).join(""), QString());
        person.click("cmdAnioSiguiente");
        QCOMPARE(calendario["lblAnio"].text(), QString("Año 2024"));
        calendario.unload();
    }

    void doubleClickOpensAsTheTreeWould_data()
    {
        Columns<QString, int, QString>("form", "mes", "window");
        Row("a filed declaration asks what to do", "F976", 2, "SeleccionFormulario");
        Row("a form to start opens at once", "F986", 1, "F986");
        Row("a month not opened opens nothing", "F976", 4, "");
    }
    void doubleClickOpensAsTheTreeWould()
    {
        QFETCH(QString, form);
        QFETCH(int, mes);
        QFETCH(QString, window);
        CalendarioPresentaciones calendario;
        calendario.IdContribuyente = 1;
        calendario.Anio = 2024;
        Person person(calendario);
        int row = -1;
        for (int r = 0; r < calendario["gridCalendario"].rowCount(); ++r)
            if (calendario["gridCalendario"].cell(r, 0).startsWith(form + " "))
                row = r;
        calendario["gridCalendario"].setCurrentColumn(mes);
        person.dblClick("gridCalendario", row);
        QCOMPARE(env->ui().shownWindows(), window.isEmpty() ? QStringList{} : QStringList{window});
        if (window == "SeleccionFormulario") {
            // it was handed the key of the latest version
            QCOMPARE(calendario.Celda(row, mes).clave.right(6), QString("ctrl=2"));
        }
        calendario.unload();
    }

    void deskSaysWhetherEachMonthIsComplete()
    {
        EscritorioMensual escritorio;
        escritorio.Anio = 2024;
        Person person(escritorio);
        const Field& grid = escritorio["gridEscritorio"];
        QCOMPARE(grid.header().mid(0, 4), (QStringList{"Contribuyente", "CUIT", "Ene", "Feb"}));
        QCOMPARE(grid.rows().at(0).mid(0, 6),
                 (QStringList{"ACME SRL", "20-00000002-6", "✓", "", "", ""}));
        // January: F985, F986, F987, F988 offered and not filed; February:
        // the four agents' forms again; March: F976 and three agents' forms
        QCOMPARE(grid.rows().at(1).mid(0, 6),
                 (QStringList{"PEREZ JUAN", "20-00000001-6", "−4", "−4", "−4", ""}));
        escritorio.unload();
    }

    void monthCheckFindsWhatWouldGoWrong()
    {
        // annex disagreeing by one cent, an amount that is no number, a
        // premises without group, and a month not opened
        Desk::addTaxpayer(3, "ZETA SA", {"retencion=1", "grupo=<null>"});
        Desk::addDeclaration(3, "F976", "01-2024", 0,
                             {"Retenciones=100,01", "TotalAPagar=12,3x", "Percepciones=0,00"});
        Desk::addDeclaration(3, "F977", "01-2024", 0, {"TotalPercepciones=100,00"});
        Desk::addTaxpayer(4, "SIN MOVIMIENTO SA");
        Desk::addDeclaration(4, "F976", "12-2023", 0, {"TotalAPagar=1,00"});
        QStringList lines;
        for (const Observacion& o : RevisionMensual::Revisar("01-2024"))
            lines << o.contribuyente + " | " + o.formulario + " | " + o.texto;
        lines.sort();
        QCOMPARE(lines, (QStringList{
                            "PEREZ JUAN | F985 | Formulario ofrecido sin declaración.",
                            "PEREZ JUAN | F986 | Formulario ofrecido sin declaración.",
                            "PEREZ JUAN | F987 | Formulario ofrecido sin declaración.",
                            "PEREZ JUAN | F988 | Formulario ofrecido sin declaración.",
                            "SIN MOVIMIENTO SA |  | Período no abierto: ningún formulario cargado.",
                            "ZETA SA | F976 | El importe declarado en Retenciones ($ 100,01) no "
                            "coincide con el anexo F977 ($ 100,00).",
                            "ZETA SA | F976 | El padrón no tiene grupo: el archivo no puede "
                            "escribirse entero.",
                            "ZETA SA | F976 | el importe TotalAPagar \"12,3x\" no es un número y "
                            "el archivo no puede llevarlo.",
                            "ZETA SA | F977 | El padrón no tiene grupo: el archivo no puede "
                            "escribirse entero.",
                            "ZETA SA | F985 | Formulario ofrecido sin declaración.",
                            "ZETA SA | F986 | Formulario ofrecido sin declaración.",
                        }));
        // one taxpayer alone
        QCOMPARE(RevisionMensual::Revisar("01-2024", {2}).size(), 0);
    }

    void fileProblems_data()
    {
        Columns<QString, QString, QString>("premises", "form", "problem");
        Row("regime 2 annex", "regimen=2", "F977",
            "Anexo de un padrón de régimen 2: el archivo no puede escribirse.");
        Row("no codes for the form", "grupo=1", "F986",
            "El formulario F986 no tiene códigos: el archivo no puede escribirse.");
        Row("at sign in the name", "razon_social=PEREZ @ HIJOS", "F986",
            "En el padrón, el dato razon_social contiene \"@\", que corre los campos del archivo.");
    }
    void fileProblems()
    {
        QFETCH(QString, premises);
        QFETCH(QString, form);
        QFETCH(QString, problem);
        Desk::addTaxpayer(5, "CINCO", {premises});
        Desk::addDeclaration(5, form, "05-2024");
        Db::exec("DELETE FROM tCodigos_Formularios WHERE idFormulario = 'F986'");
        QStringList texts;
        for (const Observacion& o : RevisionMensual::Revisar("05-2024", {5}))
            if (o.formulario == form)
                texts << o.texto;
        QVERIFY2(texts.contains(problem), qPrintable(texts.join('\n')));
    }

    void checkWindowAndItsPdf()
    {
        ControlMensual control;
        control.IdContribuyente = 1;
        Person person(control);
        QVERIFY(control["optUno"].checked());
        person.retype("txtPeriodo", "01-2024");
        person.click("cmdRevisar");
        QCOMPARE(control["gridObservaciones"].rowCount(), 4);
        int f986 = -1;
        for (int r = 0; r < 4; ++r)
            if (control["gridObservaciones"].cell(r, 3) == "F986")
                f986 = r;
        QVERIFY(f986 >= 0);
        QCOMPARE(control["gridObservaciones"].row(f986),
                 (QStringList{"PEREZ JUAN", "20-00000001-6", "0000000000001-0000000000001", "F986",
                              "Formulario ofrecido sin declaración."}));
        QCOMPARE(control["lblResumen"].text(),
                 QString("4 observaciones en el período 01-2024. Doble clic en una línea abre la "
                         "declaración."));
        // a line opens the form it names
        person.dblClick("gridObservaciones", f986);
        QCOMPARE(env->ui().shownWindows(), QStringList{"F986"});
        const QString pdf = env->path("control.pdf");
        env->ui().setSaveFile(pdf);
        person.click("cmdGuardarPdf");
        QProcess text;
        text.start("pdftotext", {"-layout", pdf, "-"});
        QVERIFY(text.waitForFinished());
        const QString out = QString::fromUtf8(text.readAllStandardOutput());
        QVERIFY2(out.contains("Control del mes 01-2024 - 4 observaciones"), qPrintable(out));
        QVERIFY(out.contains("Formulario ofrecido sin declaración."));
        QCOMPARE(out.count("PEREZ JUAN"), 4);
        person.retype("txtPeriodo", "13-2024");
        person.click("cmdRevisar");
        QCOMPARE(env->ui().lastText(),
                 QString("El periodo ingresado es incorrecto, verifique por favor"));
        control.unload();
    }
};

QTEST_MAIN(TstEscritorio)
#include "tst_escritorio.moc"
