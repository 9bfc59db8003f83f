#include <QtTest>

#include "Person.h"
#include "PrintingFixture.h"
#include "Util.h"
#include "output/GenerarDisco.h"
#include "output/MontoEnLetras.h"
#include "output/ReportDriver.h"
#include "output/ReportRenderer.h"
#include "output/ZoGenerateDisk.h"

using namespace PrintingFixture;

namespace {

QStringList names(const ReportJob& job)
{
    QStringList result;
    for (const QString& field : job.parameters)
        result << field.section(u';', 0, 0);
    return result;
}

// Names split at blanks; a name ending in "#" stands for its six lines.
QStringList layoutNames(const char* text)
{
    QStringList result;
    for (const QString& name : QString(text).split(u' '))
        for (int i = 1; i <= (name.endsWith(u'#') ? 6 : 1); ++i)
            result << (name.endsWith(u'#') ? name.chopped(1) + QString::number(i) : name);
    return result;
}

const QString kDone = QStringLiteral("La generación se realizó correctamente.");

bool zipIsSound(const QString& path)
{
    if (QStandardPaths::findExecutable("unzip").isEmpty())
        return QFileInfo(path).size() > 0;
    QProcess unzip;
    unzip.start("unzip", {"-t", path});
    return unzip.waitForFinished() && unzip.exitCode() == 0;
}

} // namespace

// The printed forms: the parameters each layout is fed in slot order and
// value, the staging rows of the annexes, the copies and the printer, and
// the text of the PDF read back; and the generate dialog driven as a person
// does: the destination, the copies, "Aceptar", and what lands in the folder
// and on paper.
class TstPrinting : public EnvTest
{
    Q_OBJECT
    Database m_db;
    PdfFolderPrinter m_printer;
    QString m_destino;

    QList<ReportJob> prepare(const QString& form)
    {
        return ReportDriver::Prepare(parameters(form));
    }

    // The text of the form's printings written as one PDF.
    QString printedText(const QString& form)
    {
        const QString path = env->path(form + ".pdf");
        if (!WriteReportPdf(prepare(form), path))
            return QStringLiteral("not written");
        return pdfText(path).simplified();
    }
    static void skipWithoutPdfText()
    {
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("pdftotext (poppler-utils) is not installed");
    }
    static void skipWithoutArchiver()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("the archiver 7za is not installed");
    }

    void open(GenerarDisco& w, const QString& parametros, bool periodo, const QString& copies)
    {
        w.Parametros = parametros;
        w.TotalPeriodo = periodo;
        w.load();
        Person p(w);
        p.retype("txtDestino", m_destino);
        p.retype("txtCantidadImpresiones", copies);
    }

    QStringList delivered() const
    {
        return QDir(m_destino).entryList({"*.DJ"}, QDir::Files, QDir::Name);
    }

    void seed() override
    {
        QVERIFY(m_db.install());
        m_destino = env->path("destino");
        QDir().mkpath(m_destino);
        m_printer.clear();
        m_printer.setFolder(env->path("reportes"));
        m_printer.setHasPrinter(true);
        SetReportPrinter(&m_printer);
    }
    void tearDown() override { SetReportPrinter(nullptr); }

public:
    TstPrinting() : EnvTest(false) {}

private slots:
    void initTestCase() { QVERIFY(m_db.build()); }

    void slotOrder_data()
    {
        Columns<QString, QStringList>("form", "expected");
        Row("F976", "F976",
            layoutNames("DOMICILIO ORIGINAL RECTIFICATIVA FECHA CUIT PADRON RAZONSOCIAL "
                        "PERIODO CODIGO# ACTIVIDADES# BASEIMPONIBLE# ALICUOTA# TASA# "
                        "IMPUESTO TASA RETENCIONES PERCEPCIONES SALDOAFAVOR SALDOAFAVORF "
                        "SUBTOTALDETERMINADO ACCESORIOS MULTAS PAGOACUENTA TOTALAPAGAR "
                        "BASEIMPONIBLE TOTALAPAGARLETRA OBJETO SUSCRIPTOR CARACTER "
                        "PADRONPRINCIPAL GUIDV"));
        Row("F2001", "F2001",
            layoutNames("CUIT ORIGINAL RECTIFICATIVA DIA MES ANIO RAZONSOCIAL DOMICILIO "
                        "CODIGOPOSTAL PADRON CODIGO# DESCRIPCION# BASEIMPONIBLE# "
                        "ALICUOTA# IMPUESTO# TOTALTASADETERMINADA SALDOAFAVOR "
                        "RETENCIONES PERCEPCIONES SUBTOTALCOLI SUBTOTALCOLII "
                        "DIFERENCIACOLI DIFERENCIACOLII PAGOACUENTA TOTALAPAGAR "
                        "TOTALIMPONIBLE TOTALIMPUESTO PMES PANIO DESGRABACIONES OBJETO "
                        "SUSCRIPTOR CARACTER PADRONPRINCIPAL GUIDV"));
        for (const char* form : {"F977", "F978", "F985", "F987"})
            Row(form, form,
                layoutNames("CUIT FECHARECTIFICATIVA PIEREPORTE PADRON1 "
                            "TOTALPERCEPCIONES OBJETO SUSCRIPTOR CARACTER GUIDV"));
        for (const char* form : {"F986", "F988"})
            Row(form, form,
                layoutNames("ACCESORIOS ANIO APELLIDONOMBRE RECTIFICATIVA ORIGINAL MES "
                            "PADRON PERIODO PRECTIFICATIVA DOMICILIO IMPORTERETENIDO CUIT "
                            "COMPROBANTE MULTAS OTROS IMPORTEDEPOSITAR IMPORTEPAGADO "
                            "IMPORTELETRAS OBJETO GUIDV"));
    }

    // Every printing carries its layout's fields in slot order, each as
    // "NAME;value;TRUE"; the monthly return fills all 56 slots.
    void slotOrder()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, expected);
        const QList<ReportJob> jobs = prepare(form);
        QVERIFY(!jobs.isEmpty());
        for (const ReportJob& job : jobs) {
            QCOMPARE(job.layout, form);
            QCOMPARE(names(job), expected);
            for (const QString& field : job.parameters)
                QVERIFY2(field.endsWith(";TRUE"), qPrintable(field));
        }
        if (form == "F976")
            QCOMPARE(jobs.first().parameters.size(), 56);
    }

    void values_data()
    {
        Columns<QString, QString, QString>("form", "name", "expected");
        const QString words976 = MontoEnLetras(1122.07);
        const QString domicilio = "Av. España N° 1.234 -  Córdoba";
        auto form = [](const char* id, const QStringList& pairs) {
            for (const QString& pair : pairs)
                QTest::addRow("%s %s", id, qPrintable(pair.section('=', 0, 0)))
                    << id << pair.section('=', 0, 0) << pair.section('=', 1);
        };
        form("F976",
             {"ORIGINAL=X", "RECTIFICATIVA=", "CUIT=20123456786", "RAZONSOCIAL=PEREZ @ HIJOS S.A.",
              "PERIODO=01-2010", "CODIGO1=620100", "ACTIVIDADES2=Servicios @ domicilio",
              "BASEIMPONIBLE1=100.000,00", "ALICUOTA2=1,00", "TASA2=234,57", "CODIGO3="});
        form("F976", {"TASA3=", "BASEIMPONIBLE=123.456,78", "IMPUESTO=1.234,57", "TASA=500,00",
                      "PERCEPCIONES=-12,50", "RETENCIONES=1.000.000,00", "SALDOAFAVORF=1.234,50",
                      "SALDOAFAVOR=0,00",
                      "SUBTOTALDETERMINADO=634,57", "TOTALAPAGAR=1.122,07",
                      "SUSCRIPTOR=PEREZ JUAN CARLOS", "CARACTER=Presidente", "GUIDV=0A1B2C3D4E5F"});
        form("F976",
             {"DOMICILIO=" + domicilio, "FECHA=" + QDate::currentDate().toString("dd/MM/yyyy"),
              "PADRON=" + kPadron, "OBJETO=" + kObjeto, "TOTALAPAGARLETRA=" + words976,
              "PADRONPRINCIPAL=" + kPadron + " - " + kObjeto});
        form("F2001",
             {"ORIGINAL=", "RECTIFICATIVA=X", "DIA=15", "MES=03", "ANIO=2010", "PMES=01",
              "PANIO=2010", "CODIGOPOSTAL=5000", "CODIGO1=101", "DESCRIPCION1=Actividad PROCOM",
              "IMPUESTO1=1.500,00", "TOTALTASADETERMINADA=1.500,00", "SUBTOTALCOLI=1.274,50",
              "PAGOACUENTA=200,00", "TOTALAPAGAR=1.074,50", "TOTALIMPONIBLE=50.000,00",
              "DESGRABACIONES=", "GUIDV=2001ABCDEF01"});
        form("F977", {"FECHARECTIFICATIVA=0", "PADRON1=" + kPadron, "TOTALPERCEPCIONES=1.500,00",
                      "GUIDV=977000000001"});
        form("F978", {"FECHARECTIFICATIVA=10-02-2010", "TOTALPERCEPCIONES=2.345,60"});
        form("F987", {"TOTALPERCEPCIONES=1.200,00", "SUSCRIPTOR=PEREZ JUAN CARLOS"});
        form("F986",
             {"ACCESORIOS=10,00", "MES=01", "ANIO=2010", "PERIODO=01-2010",
              "APELLIDONOMBRE=PEREZ JUAN", "ORIGINAL=X", "PRECTIFICATIVA=0",
              "IMPORTERETENIDO=2.000,00", "IMPORTEDEPOSITAR=2.010,00", "IMPORTEPAGADO=2.010,00",
              "IMPORTELETRAS=" + MontoEnLetras(2010.0), "GUIDV=986000000001"});
        form("F988", {"RECTIFICATIVA=X", "ORIGINAL=", "PRECTIFICATIVA=20-02-2010",
                      "IMPORTERETENIDO=1.200,00", "MULTAS=50,00", "IMPORTEDEPOSITAR=1.250,00",
                      "GUIDV=988000000001"});
    }
    void values()
    {
        QFETCH(QString, form);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const QList<ReportJob> jobs = prepare(form);
        QVERIFY(!jobs.isEmpty());
        QCOMPARE(jobs.first().parameter(name), expected);
    }

    // The annexes and the agents' returns print twice, office copy first.
    void copies_data()
    {
        Columns<QString, QString>("form", "field");
        for (const char* form : {"F977", "F978", "F985", "F987"})
            Row(form, form, "PIEREPORTE");
        for (const char* form : {"F986", "F988"})
            Row(form, form, "COMPROBANTE");
    }
    void copies()
    {
        QFETCH(QString, form);
        QFETCH(QString, field);
        const QList<ReportJob> jobs = prepare(form);
        QCOMPARE(jobs.size(), 2);
        QCOMPARE(jobs[0].parameter(field), QString("ORIGINAL MUNICIPALIDAD"));
        QCOMPARE(jobs[1].parameter(field), QString("DUPLICADO CONTRIBUYENTE"));
    }

    // The determined subtotal is the distance between the stored subtotal
    // and the minimum rate, whichever is greater, as a plain figure.
    void saldoRule_data()
    {
        Columns<QString, QString, QString>("subtotal", "tasa", "expected");
        for (const char* row :
             {"subtotal above|1.134,57|500,00|634,57", "rate above|50,00|100,00|50",
              "equal|100,00|100,00|0", "no groups in result|2.000.000,50|0,25|2000000,25",
              "empty rate|10,10||10,1"}) {
            const QStringList cells = QString(row).split(u'|');
            Row(qPrintable(cells[0]), cells[1], cells[2], cells[3]);
        }
    }
    void saldoRule()
    {
        QFETCH(QString, subtotal);
        QFETCH(QString, tasa);
        QFETCH(QString, expected);
        Db::exec("UPDATE F976 SET SubtotalDeterminado = '" + subtotal + "', Tasa = '" + tasa +
                 "' WHERE ctrl = '0'");
        const QList<ReportJob> jobs = prepare("F976");
        QCOMPARE(jobs.size(), 1);
        QCOMPARE(jobs.first().parameter("SUBTOTALDETERMINADO"), expected);
        QCOMPARE(jobs.first().parameter("SUBTOTALDETERMINADO;"), expected);
    }

    // Seven activity lines: the first six print, the seventh stops nothing.
    void sixLinesAtMost()
    {
        for (int i = 3; i <= 7; ++i) {
            Db::exec(
                QString("INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                        "TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) "
                        "VALUES ('%1O', '0', '000%2', 'Linea %2', '70000%2', '%2,00', '1,00', "
                        "'0,0%2', '0')")
                    .arg(kPadron + "012010" + kObjeto)
                    .arg(i));
        }
        const ReportJob job = prepare("F976").value(0);
        QCOMPARE(job.parameters.size(), 56);
        QCOMPARE(job.parameter("CODIGO6"), QString("700006"));
        QCOMPARE(job.parameter("TASA6"), QString("0,06"));
        QVERIFY(!job.parameters.join('|').contains("700007"));
        QCOMPARE(job.parameter("TOTALAPAGAR"), QString("1.122,07"));
    }

    void noLinesNoF976()
    {
        Db::exec("DELETE * FROM F976_Detalle");
        QVERIFY(prepare("F976").isEmpty());
        QVERIFY(!ReportDriver::Imprimir(parameters("F976")));
        QVERIFY(m_printer.files().isEmpty());
    }

    // Every annex page is full: 25 lines, blank rows of amount "0.00" after
    // the real ones; no line, no row.
    void blankRows_data()
    {
        Columns<int, int>("lines", "rows");
        Row("none", 0, 0);
        Row("one", 1, 25);
        Row("a full page", 25, 25);
        Row("one over", 26, 50);
        Row("two pages", 50, 50);
    }
    void blankRows()
    {
        QFETCH(int, lines);
        QFETCH(int, rows);
        addF987Lines(lines);
        const QList<ReportJob> jobs = prepare("F987");
        QCOMPARE(jobs.size(), 2);
        const ReportJob& job = jobs.first();
        QCOMPARE(job.rows.size(), rows);
        QCOMPARE(job.realLines, lines);
        QCOMPARE(gAccess().GetInteger("SELECT COUNT(*) FROM F987_DETALLE_REPORTE"), rows);
        QCOMPARE(gAccess().GetInteger(
                     "SELECT COUNT(*) FROM F987_DETALLE_REPORTE WHERE IMPORTEPERCIBIDO = '0.00' "
                     "AND CODIGO = ''"),
                 rows - lines);
        for (int r = 0; r < lines; ++r)
            QCOMPARE(job.cell(r, "DENOMINACION"),
                     QString("Cliente %1").arg(r + 1, 4, 10, QChar('0')));
        QCOMPARE(ReportRenderer::PageCount(job), qMax(1, rows / 25));
        // A table already of full pages gets no further blank row, and a
        // second printing stages the same.
        QCOMPARE(ReportDriver::CompletarDetalleReporte("F987"), rows);
        QCOMPARE(gAccess().GetInteger("SELECT COUNT(*) FROM F987_DETALLE_REPORTE"), rows);
        const QList<ReportJob> again = prepare("F987");
        QCOMPARE(again.first().rows, job.rows);
        QCOMPARE(again.first().parameters, job.parameters);
        QCOMPARE(gAccess().GetInteger("SELECT COUNT(*) FROM F987_DETALLE_REPORTE"), rows);
    }

    // The staging rows are those of the declaration only, in line order,
    // whether or not the lines carry a voucher type.
    void stagingRows_data()
    {
        Columns<QString, QString, QString, int>("form", "firstName", "type", "lines");
        Row("F977", "F977", "ACME S.R.L.", QString(), 2);
        Row("F978", "F978", "Distribuidora Ñandú", "FACA - Factura A", 1);
        Row("F985", "F985", "Juan Pérez", QString(), 1);
        Row("F987", "F987", "Kiosco \"El Sol\"", "FACB - Factura B", 2);
    }
    void stagingRows()
    {
        QFETCH(QString, form);
        QFETCH(QString, firstName);
        QFETCH(QString, type);
        QFETCH(int, lines);
        const ReportJob job = prepare(form).value(0);
        QCOMPARE(job.realLines, lines);
        QCOMPARE(job.rows.size(), 25);
        QCOMPARE(job.cell(0, "DENOMINACION"), firstName);
        QCOMPARE(job.cell(0, "TIPOCOMPROBANTE"), type);
        QCOMPARE(job.cell(0, "RAZON_SOCIAL"), QString("PEREZ @ HIJOS S.A."));
        QCOMPARE(job.cell(0, "CP"), QString("5000"));
        QVERIFY(!job.rows.first().join('|').contains("Otra version"));
    }

    // A declaration without an identifier gets one before it is printed,
    // and the paper carries it.
    void guidvGivenBeforePrinting()
    {
        Db::exec("UPDATE F976 SET Guidv = NULL");
        const QString guidv = prepare("F976").value(0).parameter("GUIDV");
        QCOMPARE(guidv.size(), 12);
        QCOMPARE(gAccess().GetString("SELECT Guidv FROM F976 WHERE ctrl = '0'"), guidv);
    }

    void noPrinter()
    {
        m_printer.setHasPrinter(false);
        QVERIFY(!ReportDriver::Imprimir(parameters("F986")));
        QCOMPARE(env->ui().lastText(),
                 QString("El reporte no puede ser impreso por no tener una impresora instalada"));
        QCOMPARE(env->ui().messages().last().title, QString("Atención"));
        QVERIFY(m_printer.files().isEmpty());
    }

    void printAndPreview()
    {
        QVERIFY(ReportDriver::Imprimir(parameters("F978")));
        QCOMPARE(m_printer.printed().size(), 2);
        QVERIFY(ReportDriver::Imprimir(parameters("F976"), true));
        QCOMPARE(m_printer.previewed().size(), 1);
        QCOMPARE(m_printer.files().size(), 2);
        for (const QString& file : m_printer.files())
            QVERIFY(QFileInfo(file).size() > 1000);
    }

    // --- The PDF read back: what the office reads on paper, in words and figures

    void formText_data()
    {
        Columns<QString, QStringList>("form", "expected");
        auto row = [](const char* form, const QString& pieces) {
            Row(form, form, pieces.split(u'|'));
        };
        row("F976",
            "FORMULARIO|976|" + kPadron + "|" + kObjeto +
                "|01-2010|20-12345678-6|PEREZ @ HIJOS S.A.|Servicios @ domicilio|100.000,00|"
                "234,57|123.456,78|634,57|1.122,07|" +
                MontoEnLetras(1122.07).simplified() + "|0A1B2C3D4E5F|PEREZ JUAN CARLOS|Presidente");
        row("F2001", "2001|" + kPadron +
                         "|Actividad PROCOM|50.000,00|1.500,00|1.074,50|15-03-2010|2001ABCDEF01");
        row("F977", "977|" + kPadron +
                        "|ACME S.R.L.|O'HIGGINS @ CIA|1.000,00|500,00|1.500,00|977000000001|"
                        "ORIGINAL MUNICIPALIDAD|DUPLICADO CONTRIBUYENTE");
        row("F978", "978|FACA - Factura A|Distribuidora Ñandú|2.245,60|2.345,60|978000000001");
        row("F985", "985|Juan Pérez|300,00|985000000001");
        row("F987", "987|Kiosco \"El Sol\"|1.234,56|-34,56|1.200,00|987000000001");
        row("F986", "986|" + kPadron + "|PEREZ JUAN|2.000,00|10,00|2.010,00|" +
                        MontoEnLetras(2010).simplified() + "|986000000001|DUPLICADO CONTRIBUYENTE");
        row("F988", "988|1.200,00|50,00|1.250,00|20-02-2010|988000000001");
    }
    void formText()
    {
        skipWithoutPdfText();
        QFETCH(QString, form);
        QFETCH(QStringList, expected);
        const QString text = printedText(form);
        for (const QString& piece : expected)
            QVERIFY2(text.contains(piece), qPrintable(piece + " missing in: " + text));
        QVERIFY2(!text.contains("Otra version"), "the other version of the period printed");
    }

    // Thirty lines take two pages in each copy; the first carries its sum
    // over to the second, and the total closes the last.
    void annexTransport()
    {
        skipWithoutPdfText();
        addF987Lines(30);
        Db::exec("UPDATE F987 SET TotalPercepciones = '465,00' WHERE ctrl = '1'");
        const QString read = printedText("F987");
        // 1 + 2 + ... + 25 = 325 carried; 26 + ... + 30 = 140 more.
        QCOMPARE(read.count("Transporte a hoja siguiente 325,00"), 2);
        QCOMPARE(read.count("Transporte de hoja anterior 325,00"), 2);
        QCOMPARE(read.count("TOTAL 465,00"), 2);
        QCOMPARE(read.count("Hoja 2 de 2"), 2);
        QVERIFY(read.contains("Cliente 0030"));
    }

    void unknownLayoutWritesNothing()
    {
        ReportJob job;
        job.layout = "F999";
        QVERIFY(!WriteReportPdf({job}, env->path("x.pdf")));
    }

    // --- The generate dialog ---------------------------------------------------

    void nombreArchivo_data()
    {
        Columns<QString, QString, QString>("destino", "parametros", "expected");
        Row("F976", "/d", parameters("F976"), "/d/09760110.DJ");
        Row("F2001", "/d", parameters("F2001"), "/d/20010110.DJ");
        Row("F988 mm-yyyy", "/d/", parameters("F988", "01-2010", ""), "/d/09880110.DJ");
        Row("lower case form", "/d", "Formulario=f985;Periodo=3;Anio=2021;", "/d/09850321.DJ");
        Row("empty destination", "", parameters("F977"), "/09770110.DJ");
    }
    void nombreArchivo()
    {
        QFETCH(QString, destino);
        QFETCH(QString, parametros);
        QFETCH(QString, expected);
        QCOMPARE(GenerarDisco::NombreArchivo(destino, parametros), expected);
    }

    void loadSetsTheScreen()
    {
        GenerarDisco w;
        w.Parametros = parameters("F2001");
        w.load();
        QCOMPARE(w["lblRotuloTitulo"].text(), QString("Generación del Formulario F2001"));
        QCOMPARE(w["txtDestino"].text(), QDir::homePath());
        QCOMPARE(w["txtCantidadImpresiones"].text(), QString("1"));
        QVERIFY(w["cmdVistaPrevia"].enabled());
        GenerarDisco period;
        period.TotalPeriodo = true;
        period.Parametros = parameters("F976") + "#" + parameters("F977");
        period.load();
        QVERIFY(!period["cmdVistaPrevia"].enabled());
        // a whole month is named as such, not after its first form
        QCOMPARE(period["lblRotuloTitulo"].text(), QString("Generación del Período 01-2010"));
    }

    // The destination of the last generation is offered the next time, also
    // in a later run; a folder that is gone gives the home folder again.
    void destinationIsRemembered()
    {
        skipWithoutArchiver();
        GenerarDisco w;
        open(w, parameters("F977"), false, "0");
        Person(w).click("cmdAceptar");
        QCOMPARE(delivered(), QStringList{"09770110.DJ"});
        GenerarDisco again;
        again.Parametros = parameters("F976");
        again.load();
        QCOMPARE(again["txtDestino"].text(), m_destino);
        again.unload();
        QVERIFY(QDir(m_destino).removeRecursively());
        GenerarDisco gone;
        gone.Parametros = parameters("F976");
        gone.load();
        QCOMPARE(gone["txtDestino"].text(), QDir::homePath());
    }

    void oneDeclaration()
    {
        skipWithoutArchiver();
        GenerarDisco w;
        open(w, parameters("F977"), false, "2");
        Person(w).click("cmdAceptar");
        QCOMPARE(delivered(), QStringList{"09770110.DJ"});
        QVERIFY(zipIsSound(m_destino + "/09770110.DJ"));
        QCOMPARE(m_printer.files().size(), 2);   // two runs of the annex
        QCOMPARE(m_printer.printed().size(), 4); // each of two copies
        QCOMPARE(env->ui().lastText(),
                 kDone + "\n\nArchivos generados en " + m_destino + ":\n  09770110.DJ");
        QCOMPARE(env->ui().messages().last().title, QString("Atención !"));
        QVERIFY(!w.isLoaded());
    }

    // A period: every form gets its own file; no copies asked, no paper.
    void periodOfThreeForms()
    {
        skipWithoutArchiver();
        GenerarDisco w;
        const QString list =
            parameters("F976") + "#" + parameters("F977") + "#sin formulario#" + parameters("F986");
        open(w, list, true, "0");
        Person(w).click("cmdAceptar");
        QCOMPARE(delivered(), (QStringList{"09760110.DJ", "09770110.DJ", "09860110.DJ"}));
        for (const QString& file : delivered())
            QVERIFY(zipIsSound(m_destino + "/" + file));
        QVERIFY(m_printer.files().isEmpty());
        QCOMPARE(w.Parametros, parameters("F986"));
        QCOMPARE(env->ui().lastText(), kDone + "\n\nArchivos generados en " + m_destino +
                                           ":\n  09760110.DJ\n  09770110.DJ\n  09860110.DJ");
    }

    // A run that cannot be made stops with its message, nothing delivered nor
    // printed, and the dialog stays for another try: a destination that
    // cannot be written, no archiver (the person is told instead of the
    // success message), copies that are no number.
    void refusedRunKeepsTheDialog_data()
    {
        Columns<QString, QByteArray, QString, QString>("destino", "path", "copies", "said");
        Row("unwritable destination", "no-existe", QByteArray(), "1", QString());
        Row("no archiver", QString(), QByteArray("/nonexistent"), "1", "7za");
        Row("copies not a number", QString(), QByteArray(), "dos", "número");
    }
    void refusedRunKeepsTheDialog()
    {
        QFETCH(QString, destino);
        QFETCH(QByteArray, path);
        QFETCH(QString, copies);
        QFETCH(QString, said);
        const QByteArray pathBefore = qgetenv("PATH");
        if (!path.isEmpty())
            qputenv("PATH", path);
        GenerarDisco w;
        open(w, parameters("F976"), false, "1");
        if (!destino.isEmpty())
            Person(w).retype("txtDestino", env->path(destino));
        w["txtCantidadImpresiones"].setText(copies);
        Person(w).click("cmdAceptar");
        qputenv("PATH", pathBefore);
        QVERIFY(!env->ui().texts().isEmpty());
        QVERIFY(!env->ui().texts().contains(kDone));
        QVERIFY2(env->ui().lastText().contains(said), qPrintable(env->ui().lastText()));
        QVERIFY(delivered().isEmpty());
        QVERIFY(m_printer.files().isEmpty());
        QVERIFY(w.isLoaded());
    }

    // What kept a submission file from being written is named, never blamed
    // on the archiver or the disk; nothing is delivered nor printed.
    void realCauseOfAnUnwrittenFile_data()
    {
        Columns<QString, QString, QString>("form", "statement", "cause");
        Row("regime 2 with F977", "F977", "UPDATE tPadronesComerciales SET regimen = '2'",
            "es de régimen 2, que no presenta el formulario F977.");
        Row("premises without group", "F976", "UPDATE tPadronesComerciales SET grupo = NULL",
            "no tiene grupo asignado.");
        Row("premises missing", "F986", "DELETE * FROM tPadronesComerciales",
            "no está registrado.");
        Row("no codes for the form", "F978",
            "DELETE * FROM tCodigos_Formularios WHERE idFormulario = 'F978'",
            "no tiene sus códigos de presentación (tabla tCodigos_Formularios).");
    }
    void realCauseOfAnUnwrittenFile()
    {
        QFETCH(QString, form);
        QFETCH(QString, statement);
        QFETCH(QString, cause);
        Db::exec(statement);
        GenerarDisco w;
        open(w, parameters(form), false, "1");
        Person(w).click("cmdAceptar");
        const QString said = env->ui().lastText();
        QVERIFY2(said.startsWith("No se pudo crear el archivo " + m_destino + "/"),
                 qPrintable(said));
        QVERIFY2(said.endsWith(cause), qPrintable(said));
        QVERIFY(!said.contains("7za"));
        QVERIFY(delivered().isEmpty());
        QVERIFY(m_printer.files().isEmpty());
        QVERIFY(w.isLoaded());
    }

    // The final message names the files and their folder, and the copies
    // that did not reach the printer, and why.
    void finalMessageTellsWhatWasNotPrinted_data()
    {
        Columns<bool, QString, QString>("printer", "copies", "notPrinted");
        Row("no printer", false, "2",
            "\n\nCopias no impresas:\n  F986: 2 de 2 copias, porque no hay una impresora "
            "instalada.\n  F976: 2 de 2 copias, porque no hay una impresora instalada.");
        Row("an F976 without lines", true, "1",
            "\n\nCopias no impresas:\n  F976: 1 de 1 copia, porque el formulario no tiene "
            "actividades que imprimir.");
    }
    void finalMessageTellsWhatWasNotPrinted()
    {
        skipWithoutArchiver();
        QFETCH(bool, printer);
        QFETCH(QString, copies);
        QFETCH(QString, notPrinted);
        m_printer.setHasPrinter(printer);
        if (printer)
            Db::exec("DELETE * FROM F976_Detalle");
        GenerarDisco w;
        open(w, parameters("F986") + "#" + parameters("F976"), true, copies);
        Person(w).click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), kDone + "\n\nArchivos generados en " + m_destino +
                                           ":\n  09860110.DJ\n  09760110.DJ" + notPrinted);
        QCOMPARE(delivered(), (QStringList{"09760110.DJ", "09860110.DJ"}));
        if (!printer)
            QCOMPARE(env->ui().texts().count(
                         "El reporte no puede ser impreso por no tener una impresora instalada"),
                     2);
        QVERIFY(!w.isLoaded());
    }

    // The PDF proposed for one taxpayer's declaration is named after it, so
    // that another's never overwrites it, in the folder last used; saved, it
    // is there.
    void pdfNameAndFolder()
    {
        const QString home = QDir::homePath();
        QCOMPARE(ReportPrinter::SuggestedPdfPath(prepare("F976").first()),
                 home + "/20123456786_F976_01-2010.pdf");
        QCOMPARE(ReportPrinter::SuggestedPdfPath(prepare("F2001").first()),
                 home + "/20123456786_F2001_01-2010_R1.pdf");
        QDir().mkpath(env->path("carpeta"));
        env->ui().setSaveFile(env->path("carpeta/copia.pdf"));
        QVERIFY(m_printer.saveAsPdf(prepare("F988")));
        QVERIFY(QFileInfo(env->path("carpeta/copia.pdf")).size() > 1000);
        QCOMPARE(ReportPrinter::SuggestedPdfPath(prepare("F977").first()),
                 env->path("carpeta") + "/20123456786_F977_01-2010.pdf");
    }

    void previewNeedsNoDestination()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "");
        w["txtDestino"].setText("");
        Person(w).click("cmdVistaPrevia");
        QCOMPARE(m_printer.previewed().size(), 1);
        QVERIFY(m_printer.printed().isEmpty());
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(w.isLoaded());
    }

    void browseForDestination()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "1");
        env->ui().setFolder(env->path("elegida"));
        Person(w).click("cmdBuscarDestino");
        QCOMPARE(w["txtDestino"].text(), env->path("elegida"));
        env->ui().setFolder("");
        Person(w).click("cmdBuscarDestino");
        QCOMPARE(w["txtDestino"].text(), GenerarDisco::DestinoPorDefecto());
    }
};

QTEST_MAIN(TstPrinting)
#include "tst_printing.moc"
