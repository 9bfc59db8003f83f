#include <QtTest>

#include "PrintingFixture.h"
#include "Util.h"
#include "output/MontoEnLetras.h"
#include "output/ReportDriver.h"
#include "output/ReportRenderer.h"

using namespace PrintingFixture;

namespace {

QStringList names(const ReportJob& job)
{
    QStringList result;
    for (const QString& field : job.parameters)
        result << field.section(u';', 0, 0);
    return result;
}

QStringList numbered(const QStringList& prefixes)
{
    QStringList result;
    for (const QString& prefix : prefixes)
        for (int i = 1; i <= 6; ++i)
            result << prefix + QString::number(i);
    return result;
}

} // namespace

class TstPrintingValues : public QObject
{
    Q_OBJECT

private:
    Database m_db;
    std::unique_ptr<TestEnv> m_env;
    PdfFolderPrinter m_printer;

    QList<ReportJob> prepare(const QString& form)
    {
        return ReportDriver::Prepare(parameters(form));
    }

private slots:
    void initTestCase() { QVERIFY(m_db.build()); }

    void init()
    {
        m_env = std::make_unique<TestEnv>();
        QVERIFY(m_db.install());
        m_printer.clear();
        m_printer.setFolder(m_env->path("reportes"));
        m_printer.setHasPrinter(true);
        SetReportPrinter(&m_printer);
    }

    void cleanup()
    {
        SetReportPrinter(nullptr);
        CloseDatabase();
        m_env.reset();
    }

    void slotOrder_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QStringList>("expected");
        const QStringList annex = {"CUIT",       "FECHARECTIFICATIVA", "PIEREPORTE",
                                   "PADRON1",    "TOTALPERCEPCIONES",  "OBJETO",
                                   "SUSCRIPTOR", "CARACTER",           "GUIDV"};
        const QStringList agent = {
            "ACCESORIOS",     "ANIO",          "APELLIDONOMBRE",  "RECTIFICATIVA",
            "ORIGINAL",       "MES",           "PADRON",          "PERIODO",
            "PRECTIFICATIVA", "DOMICILIO",     "IMPORTERETENIDO", "CUIT",
            "COMPROBANTE",    "MULTAS",        "OTROS",           "IMPORTEDEPOSITAR",
            "IMPORTEPAGADO",  "IMPORTELETRAS", "OBJETO",          "GUIDV"};
        QTest::newRow("F976")
            << "F976"
            << QStringList{"DOMICILIO", "ORIGINAL", "RECTIFICATIVA", "FECHA",
                           "CUIT",      "PADRON",   "RAZONSOCIAL",   "PERIODO"} +
                   numbered({"CODIGO", "ACTIVIDADES", "BASEIMPONIBLE", "ALICUOTA", "TASA"}) +
                   QStringList{
                       "IMPUESTO",         "TASA",         "RETENCIONES",         "PERCEPCIONES",
                       "SALDOAFAVOR",      "SALDOAFAVORF", "SUBTOTALDETERMINADO", "ACCESORIOS",
                       "MULTAS",           "PAGOACUENTA",  "TOTALAPAGAR",         "BASEIMPONIBLE",
                       "TOTALAPAGARLETRA", "OBJETO",       "SUSCRIPTOR",          "CARACTER",
                       "PADRONPRINCIPAL",  "GUIDV"};
        QTest::newRow("F2001")
            << "F2001"
            << QStringList{"CUIT", "ORIGINAL",    "RECTIFICATIVA", "DIA",          "MES",
                           "ANIO", "RAZONSOCIAL", "DOMICILIO",     "CODIGOPOSTAL", "PADRON"} +
                   numbered({"CODIGO", "DESCRIPCION", "BASEIMPONIBLE", "ALICUOTA", "IMPUESTO"}) +
                   QStringList{"TOTALTASADETERMINADA",
                               "SALDOAFAVOR",
                               "RETENCIONES",
                               "PERCEPCIONES",
                               "SUBTOTALCOLI",
                               "SUBTOTALCOLII",
                               "DIFERENCIACOLI",
                               "DIFERENCIACOLII",
                               "PAGOACUENTA",
                               "TOTALAPAGAR",
                               "TOTALIMPONIBLE",
                               "TOTALIMPUESTO",
                               "PMES",
                               "PANIO",
                               "DESGRABACIONES",
                               "OBJETO",
                               "SUSCRIPTOR",
                               "CARACTER",
                               "PADRONPRINCIPAL",
                               "GUIDV"};
        for (const char* form : {"F977", "F978", "F985", "F987"})
            QTest::newRow(form) << form << annex;
        for (const char* form : {"F986", "F988"})
            QTest::newRow(form) << form << agent;
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
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        const QString words976 = MontoEnLetras(1122.07);
        const QString domicilio = "Av. España N° 1.234 -  Córdoba";
        const QList<QStringList> rows = {
            {"F976", "DOMICILIO", domicilio},
            {"F976", "ORIGINAL", "X"},
            {"F976", "RECTIFICATIVA", ""},
            {"F976", "FECHA", QDate::currentDate().toString("dd/MM/yyyy")},
            {"F976", "CUIT", "20123456786"},
            {"F976", "PADRON", kPadron},
            {"F976", "OBJETO", kObjeto},
            {"F976", "RAZONSOCIAL", "PEREZ @ HIJOS S.A."},
            {"F976", "PERIODO", "01-2010"},
            {"F976", "CODIGO1", "620100"},
            {"F976", "ACTIVIDADES2", "Servicios @ domicilio"},
            {"F976", "BASEIMPONIBLE1", "100.000,00"},
            {"F976", "ALICUOTA2", "1,00"},
            {"F976", "TASA2", "234,57"},
            {"F976", "CODIGO3", ""},
            {"F976", "TASA3", ""},
            {"F976", "BASEIMPONIBLE", "123.456,78"},
            {"F976", "IMPUESTO", "1.234,57"},
            {"F976", "TASA", "500,00"},
            {"F976", "PERCEPCIONES", "-12,50"},
            {"F976", "RETENCIONES", "1.000.000,00"},
            {"F976", "SALDOAFAVORF", "1.234,50"},
            {"F976", "SUBTOTALDETERMINADO", "634,57"},
            {"F976", "TOTALAPAGAR", "1.122,07"},
            {"F976", "TOTALAPAGARLETRA", words976},
            {"F976", "SUSCRIPTOR", "PEREZ JUAN CARLOS"},
            {"F976", "CARACTER", "Presidente"},
            {"F976", "PADRONPRINCIPAL", kPadron + " - " + kObjeto},
            {"F976", "GUIDV", "0A1B2C3D4E5F"},
            {"F2001", "ORIGINAL", ""},
            {"F2001", "RECTIFICATIVA", "X"},
            {"F2001", "DIA", "15"},
            {"F2001", "MES", "03"},
            {"F2001", "ANIO", "2010"},
            {"F2001", "PMES", "01"},
            {"F2001", "PANIO", "2010"},
            {"F2001", "CODIGOPOSTAL", "5000"},
            {"F2001", "CODIGO1", "101"},
            {"F2001", "DESCRIPCION1", "Actividad PROCOM"},
            {"F2001", "IMPUESTO1", "1.500,00"},
            {"F2001", "TOTALTASADETERMINADA", "1.500,00"},
            {"F2001", "SUBTOTALCOLI", "1.274,50"},
            {"F2001", "PAGOACUENTA", "200,00"},
            {"F2001", "TOTALAPAGAR", "1.074,50"},
            {"F2001", "TOTALIMPONIBLE", "50.000,00"},
            {"F2001", "DESGRABACIONES", ""},
            {"F2001", "GUIDV", "2001ABCDEF01"},
            {"F977", "FECHARECTIFICATIVA", "0"},
            {"F977", "PADRON1", kPadron},
            {"F977", "TOTALPERCEPCIONES", "1.500,00"},
            {"F977", "GUIDV", "977000000001"},
            {"F978", "FECHARECTIFICATIVA", "10-02-2010"},
            {"F978", "TOTALPERCEPCIONES", "2.345,60"},
            {"F987", "TOTALPERCEPCIONES", "1.200,00"},
            {"F987", "SUSCRIPTOR", "PEREZ JUAN CARLOS"},
            {"F986", "ACCESORIOS", "10,00"},
            {"F986", "MES", "01"},
            {"F986", "ANIO", "2010"},
            {"F986", "PERIODO", "01-2010"},
            {"F986", "APELLIDONOMBRE", "PEREZ JUAN"},
            {"F986", "ORIGINAL", "X"},
            {"F986", "PRECTIFICATIVA", "0"},
            {"F986", "IMPORTERETENIDO", "2.000,00"},
            {"F986", "IMPORTEDEPOSITAR", "2.010,00"},
            {"F986", "IMPORTEPAGADO", "2.010,00"},
            {"F986", "IMPORTELETRAS", MontoEnLetras(2010.0)},
            {"F986", "GUIDV", "986000000001"},
            {"F988", "RECTIFICATIVA", "X"},
            {"F988", "ORIGINAL", ""},
            {"F988", "PRECTIFICATIVA", "20-02-2010"},
            {"F988", "IMPORTERETENIDO", "1.200,00"},
            {"F988", "MULTAS", "50,00"},
            {"F988", "IMPORTEDEPOSITAR", "1.250,00"},
            {"F988", "GUIDV", "988000000001"}};
        for (const QStringList& row : rows)
            QTest::addRow("%s %s", qPrintable(row[0]), qPrintable(row[1]))
                << row[0] << row[1] << row[2];
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
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("field");
        for (const char* form : {"F977", "F978", "F985", "F987"})
            QTest::newRow(form) << form << "PIEREPORTE";
        for (const char* form : {"F986", "F988"})
            QTest::newRow(form) << form << "COMPROBANTE";
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
        QTest::addColumn<QString>("subtotal");
        QTest::addColumn<QString>("tasa");
        QTest::addColumn<QString>("expected");
        QTest::newRow("subtotal above") << "1.134,57"
                                        << "500,00"
                                        << "634,57";
        QTest::newRow("rate above") << "50,00"
                                    << "100,00"
                                    << "50";
        QTest::newRow("equal") << "100,00"
                               << "100,00"
                               << "0";
        QTest::newRow("no groups in result") << "2.000.000,50"
                                             << "0,25"
                                             << "2000000,25";
        QTest::newRow("empty rate") << "10,10"
                                    << ""
                                    << "10,1";
    }

    void saldoRule()
    {
        QFETCH(QString, subtotal);
        QFETCH(QString, tasa);
        QFETCH(QString, expected);
        QVERIFY(gAccess().Execute("UPDATE F976 SET SubtotalDeterminado = '" + subtotal +
                                  "', Tasa = '" + tasa + "' WHERE ctrl = '0'"));
        const QList<ReportJob> jobs = prepare("F976");
        QCOMPARE(jobs.size(), 1);
        QCOMPARE(jobs.first().parameter("SUBTOTALDETERMINADO"), expected);
        QCOMPARE(jobs.first().parameter("SUBTOTALDETERMINADO;"), expected);
    }

    // The balance in the taxpayer's favour and the one carried in are two
    // columns, each printed in its own slot.
    void saldoAFavorF()
    {
        QVERIFY(gAccess().Execute(
            "UPDATE F976 SET SaldoAFavor = '11,00', SaldoAFavorF = '22,00' WHERE ctrl = '0'"));
        const ReportJob job = prepare("F976").value(0);
        QCOMPARE(job.parameter("SALDOAFAVOR"), QString("11,00"));
        QCOMPARE(job.parameter("SALDOAFAVORF"), QString("22,00"));
    }

    // Seven activity lines: the first six print, the seventh stops nothing.
    void sixLinesAtMost()
    {
        for (int i = 3; i <= 7; ++i) {
            QVERIFY(gAccess().Execute(
                QString("INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                        "TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) "
                        "VALUES ('%1O', '0', '000%2', 'Linea %2', '70000%2', '%2,00', '1,00', "
                        "'0,0%2', '0')")
                    .arg(kPadron + "012010" + kObjeto)
                    .arg(i)));
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
        QVERIFY(gAccess().Execute("DELETE * FROM F976_Detalle"));
        QVERIFY(prepare("F976").isEmpty());
        QVERIFY(!ReportDriver::Imprimir(parameters("F976")));
        QVERIFY(m_printer.files().isEmpty());
    }

    // Every annex page is full: 25 lines, blank rows of amount "0.00" after
    // the real ones; no line, no row.
    void blankRows_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("rows");
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("one") << 1 << 25;
        QTest::newRow("a full page") << 25 << 25;
        QTest::newRow("one over") << 26 << 50;
        QTest::newRow("two pages") << 50 << 50;
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
        // A table already of full pages gets no further blank row.
        QCOMPARE(ReportDriver::CompletarDetalleReporte("F987"), rows);
        QCOMPARE(gAccess().GetInteger("SELECT COUNT(*) FROM F987_DETALLE_REPORTE"), rows);
    }

    // The staging rows are those of the declaration only, in line order,
    // whether or not the lines carry a voucher type.
    void stagingRows_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("firstName");
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("lines");
        QTest::newRow("F977") << "F977"
                              << "ACME S.R.L."
                              << "" << 2;
        QTest::newRow("F978") << "F978"
                              << "Distribuidora Ñandú"
                              << "FACA - Factura A" << 1;
        QTest::newRow("F985") << "F985"
                              << "Juan Pérez"
                              << "" << 1;
        QTest::newRow("F987") << "F987"
                              << "Kiosco \"El Sol\""
                              << "FACB - Factura B" << 2;
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

    void printingTwiceGivesTheSameStaging()
    {
        addF987Lines(30);
        const QList<ReportJob> first = prepare("F987");
        const QList<ReportJob> second = prepare("F987");
        QCOMPARE(second.first().rows, first.first().rows);
        QCOMPARE(second.first().parameters, first.first().parameters);
        QCOMPARE(gAccess().GetInteger("SELECT COUNT(*) FROM F987_DETALLE_REPORTE"), 50);
    }

    // A declaration without an identifier gets one before it is printed,
    // and the paper carries it.
    void guidvGivenBeforePrinting()
    {
        QVERIFY(gAccess().Execute("UPDATE F976 SET Guidv = NULL"));
        const QString guidv = prepare("F976").value(0).parameter("GUIDV");
        QCOMPARE(guidv.size(), 12);
        QCOMPARE(gAccess().GetString("SELECT Guidv FROM F976 WHERE ctrl = '0'"), guidv);
    }

    void noPrinter()
    {
        m_printer.setHasPrinter(false);
        QVERIFY(!ReportDriver::Imprimir(parameters("F986")));
        QCOMPARE(m_env->ui().lastText(),
                 QString("El reporte no puede ser impreso por no tener una impresora instalada"));
        QCOMPARE(m_env->ui().messages().last().title, QString("Atención"));
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
        VERIFY_UI_CLEAN(*m_env);
    }

    void saveAsPdf()
    {
        const QString path = m_env->path("copia.pdf");
        m_env->ui().setSaveFile(path);
        QVERIFY(m_printer.saveAsPdf(prepare("F988")));
        QVERIFY(QFileInfo(path).size() > 1000);
    }
};

QTEST_MAIN(TstPrintingValues)
#include "tst_printing_values.moc"
