#include <QtTest>

#include "PrintingFixture.h"
#include "output/MontoEnLetras.h"
#include "output/ReportDriver.h"
#include "output/ReportRenderer.h"

using namespace PrintingFixture;

// The printed forms read back from their PDF files: what the office reads on
// paper must be there, in words and figures.
class TstPrintingPdf : public QObject
{
    Q_OBJECT

private:
    Database m_db;
    std::unique_ptr<TestEnv> m_env;

    // The text of the form's printings written as one PDF.
    QString printedText(const QString& form)
    {
        const QList<ReportJob> jobs = ReportDriver::Prepare(parameters(form));
        const QString path = m_env->path(form + ".pdf");
        if (!WriteReportPdf(jobs, path))
            return QStringLiteral("not written");
        keep(path, form);
        return pdfText(path);
    }

    // MORVEL_PRINTING_KEEP names a folder where the PDFs are kept to look at.
    static void keep(const QString& path, const QString& name)
    {
        const QString folder = qEnvironmentVariable("MORVEL_PRINTING_KEEP");
        if (folder.isEmpty())
            return;
        QDir().mkpath(folder);
        QFile::remove(folder + "/" + name + ".pdf");
        QFile::copy(path, folder + "/" + name + ".pdf");
    }

    static QString squeeze(QString text) { return text.simplified(); }

private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("pdftotext (poppler-utils) is not installed");
        QVERIFY(m_db.build());
    }

    void init()
    {
        m_env = std::make_unique<TestEnv>();
        QVERIFY(m_db.install());
    }

    void cleanup()
    {
        CloseDatabase();
        m_env.reset();
    }

    void formText_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QStringList>("expected");
        const QString ident = kPadron;
        QTest::newRow("F976") << "F976"
                              << QStringList{"FORMULARIO",
                                             "976",
                                             ident,
                                             kObjeto,
                                             "01-2010",
                                             "20-12345678-6",
                                             "PEREZ @ HIJOS S.A.",
                                             "Servicios @ domicilio",
                                             "100.000,00",
                                             "234,57",
                                             "123.456,78",
                                             "634,57",
                                             "1.122,07",
                                             MontoEnLetras(1122.07).simplified(),
                                             "0A1B2C3D4E5F",
                                             "PEREZ JUAN CARLOS",
                                             "Presidente"};
        QTest::newRow("F2001") << "F2001"
                               << QStringList{"2001",       ident,         "Actividad PROCOM",
                                              "50.000,00",  "1.500,00",    "1.074,50",
                                              "15-03-2010", "2001ABCDEF01"};
        QTest::newRow("F977") << "F977" << QStringList{"977",
                                                       ident,
                                                       "ACME S.R.L.",
                                                       "O'HIGGINS @ CIA",
                                                       "1.000,00",
                                                       "500,00",
                                                       "1.500,00",
                                                       "977000000001",
                                                       "ORIGINAL MUNICIPALIDAD",
                                                       "DUPLICADO CONTRIBUYENTE"};
        QTest::newRow("F978") << "F978"
                              << QStringList{"978",      "FACA - Factura A", "Distribuidora Ñandú",
                                             "2.245,60", "2.345,60",         "978000000001"};
        QTest::newRow("F985") << "F985"
                              << QStringList{"985", "Juan Pérez", "300,00", "985000000001"};
        QTest::newRow("F987") << "F987"
                              << QStringList{"987",    "Kiosco \"El Sol\"", "1.234,56",
                                             "-34,56", "1.200,00",          "987000000001"};
        QTest::newRow("F986") << "F986"
                              << QStringList{"986",
                                             ident,
                                             "PEREZ JUAN",
                                             "2.000,00",
                                             "10,00",
                                             "2.010,00",
                                             MontoEnLetras(2010).simplified(),
                                             "986000000001",
                                             "DUPLICADO CONTRIBUYENTE"};
        QTest::newRow("F988") << "F988" << QStringList{"988",      "1.200,00",   "50,00",
                                                       "1.250,00", "20-02-2010", "988000000001"};
    }

    void formText()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, expected);
        const QString text = squeeze(printedText(form));
        for (const QString& piece : expected)
            QVERIFY2(text.contains(piece), qPrintable(piece + " missing in: " + text));
        QVERIFY2(!text.contains("Otra version"), "the other version of the period printed");
    }

    // Thirty lines take two pages in each copy; the first carries its sum
    // over to the second, and the total closes the last.
    void annexTransport()
    {
        addF987Lines(30);
        gAccess().Execute("UPDATE F987 SET TotalPercepciones = '465,00' WHERE ctrl = '1'");
        const QList<ReportJob> jobs = ReportDriver::Prepare(parameters("F987"));
        const QString path = m_env->path("transporte.pdf");
        QVERIFY(WriteReportPdf(jobs, path));
        keep(path, "F987-transporte");
        const QString read = squeeze(pdfText(path));
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
        QVERIFY(!WriteReportPdf({job}, m_env->path("x.pdf")));
    }
};

QTEST_MAIN(TstPrintingPdf)
#include "tst_printing_pdf.moc"
