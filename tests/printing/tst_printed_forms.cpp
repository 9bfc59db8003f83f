#include <QPdfWriter>
#include <QtTest>

#include "Numbers.h"
#include "PrintingFixture.h"
#include "Util.h"
#include "output/ReportDriver.h"
#include "output/ReportQrCode.h"
#include "output/ReportRenderer.h"

using namespace PrintingFixture;

namespace {

// The declarations at their longest (tests/data/output/printing/largos.sql):
// each form as an original (ctrl 0) and a rectification (ctrl 1).
bool loadLongDeclarations()
{
    Seed::AddTaxpayer(1, "FERNÁNDEZ DE LA FUENTE Y RODRÍGUEZ PEÑA, MARÍA DE LOS ÁNGELES",
                      "30-71234567-9");
    return loadStatements(QStringLiteral("printing/largos.sql"));
}

QString run(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(60000))
        return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

bool have(const char* program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

// The job with one parameter's value replaced.
void setParameter(ReportJob& job, const QString& name, const QString& value)
{
    for (QString& field : job.parameters)
        if (field.startsWith(name + u';'))
            field = ParameterField(name, value);
}

// The amounts of a line of `pdftotext -layout`, each with the column where
// it ends.
QList<QPair<double, int>> amountsOf(const QString& line)
{
    static const QRegularExpression amount(QStringLiteral("-?\\d{1,3}(\\.\\d{3})*,\\d\\d"));
    QList<QPair<double, int>> found;
    for (auto it = amount.globalMatch(line); it.hasNext();) {
        const auto m = it.next();
        found << qMakePair(TextToDouble(m.captured()), int(m.capturedEnd()));
    }
    return found;
}

} // namespace

// The printed forms as the office reads them: the text of each form at its
// longest compared with its golden text, nothing cut, the liquidation adding
// up as printed, every word searchable, and the verification code on each
// page decoding to the declaration's identity.
class TstPrintedForms : public EnvTest
{
    Q_OBJECT
    FixtureDatabase m_db;

    QList<ReportJob> prepare(const QString& form, bool rect)
    {
        return ReportDriver::Prepare(
            parametersOf(form, rect ? QStringList{"Verdadero", "15-03-2010", "1"}
                                    : QStringList{"Falso", "0", "0"}));
    }
    QString writePdf(const QList<ReportJob>& jobs, const QString& name)
    {
        const QString path = env->path(name + ".pdf");
        return WriteReportPdf(jobs, path) ? path : QString();
    }
    static void skipWithout(const char* program, const char* package)
    {
        if (!have(program))
            QSKIP(qPrintable(QString("%1 (%2) is not installed").arg(program, package)));
    }
    void seed() override { QVERIFY(m_db.install()); }

    // One row per form and version, named "F976 original".
    static void formRows()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("rect");
        for (const QString& form : kForms)
            for (bool rect : {false, true})
                QTest::addRow("%s %s", qPrintable(form), rect ? "rectificativa" : "original")
                    << form << rect;
    }

public:
    TstPrintedForms() : EnvTest(false) {}

private slots:
    void initTestCase() { QVERIFY(m_db.build(false, loadLongDeclarations)); }

    void golden_data() { formRows(); }
    // The text of the PDF, laid out as on paper, is the committed one (the
    // day of printing aside); every word of it can be searched.
    // MORVEL_WRITE_GOLDEN=1 writes the texts anew after a reviewed change.
    void golden()
    {
        skipWithout("pdftotext", "poppler-utils");
        QFETCH(QString, form);
        QFETCH(bool, rect);
        const QList<ReportJob> jobs = prepare(form, rect);
        QVERIFY(!jobs.isEmpty());
        const QString pdf = writePdf(jobs, form);
        // MORVEL_KEEP_PDF=folder keeps the PDFs to be looked at.
        const QString keep = qEnvironmentVariable("MORVEL_KEEP_PDF");
        if (!keep.isEmpty())
            QFile::copy(pdf, keep + "/" + QString("%1_%2.pdf").arg(form, rect ? "R" : "O"));
        QString text = pdfText(pdf);
        text.replace(QDate::currentDate().toString("dd/MM/yyyy"), "dd/mm/aaaa");
        const QString name =
            QString("printing/%1_%2.txt").arg(form, rect ? "rectificativa" : "original");
        if (qEnvironmentVariableIsSet("MORVEL_WRITE_GOLDEN"))
            QVERIFY(WriteBytes(dataFile(name), text.toUtf8()));
        QCOMPARE(text, QString::fromUtf8(ReadBytes(dataFile(name))));
        // Searching the PDF finds the taxpayer and the tie to the file.
        QVERIFY(text.contains("30-71234567-9"));
        QVERIFY(text.contains(jobs.first().field("GUIDV")));
        if (rect)
            QVERIFY(text.contains("Fecha rectificativa: 15-03-2010"));
        QVERIFY2(!text.contains(QChar(0xFB01)) && !text.contains(QChar(0xFB02)),
                 "a typographic ligature in the text");
    }

    void nothingCut_data() { formRows(); }
    void nothingCut()
    {
        QFETCH(QString, form);
        QFETCH(bool, rect);
        const QStringList unfit = ReportRenderer::UnfitTexts(prepare(form, rect));
        QVERIFY2(unfit.isEmpty(), qPrintable(unfit.join(" | ")));
    }

    // Every activity of the catalogue on the monthly returns, every voucher
    // type on the annexes, prints whole.
    void catalogueFits_data()
    {
        Columns<QString, QString, QString>("form", "table", "parameter");
        Row("F976 activities", "F976", "tActividades", "ACTIVIDADES");
        Row("F2001 activities", "F2001", "tActividades", "DESCRIPCION");
        Row("F978 vouchers", "F978", "tComprobantes", "TIPOCOMPROBANTE");
        Row("F987 vouchers", "F987", "tComprobantes", "TIPOCOMPROBANTE");
    }
    void catalogueFits()
    {
        QFETCH(QString, form);
        QFETCH(QString, table);
        QFETCH(QString, parameter);
        QStringList names;
        for (RecordsetPtr rs = gAccess().FillRecordSet("SELECT Nombre FROM " + table);
             rs && !rs->EOF_(); rs->MoveNext())
            names << rs->Text(0);
        QVERIFY(names.size() > 20);
        const ReportJob base = prepare(form, false).first();
        QList<ReportJob> jobs;
        if (parameter == "TIPOCOMPROBANTE") {
            ReportJob job = base;
            const int column = job.columns.indexOf(parameter);
            for (int r = 0; r < names.size(); ++r)
                job.rows[r % job.realLines][column] = names.at(r);
            jobs << job;
        } else {
            for (int first = 0; first < names.size(); first += ReportDriver::kActivityLines) {
                ReportJob job = base;
                for (int i = 0; i < ReportDriver::kActivityLines; ++i)
                    setParameter(job, parameter + QString::number(i + 1), names.value(first + i));
                jobs << job;
            }
        }
        const QStringList unfit = ReportRenderer::UnfitTexts(jobs);
        QVERIFY2(unfit.isEmpty(),
                 qPrintable(QString::number(unfit.size()) + " cut: " + unfit.join(" | ")));
    }

    // A text that cannot fit even wrapped and shrunk is reported, never
    // silently elided.
    void overlongTextIsReported_data()
    {
        Columns<QString, QString, QString>("form", "parameter", "value");
        Row("a name of three lines", "F976", "RAZONSOCIAL", QString(400, u'N'));
        Row("an amount beyond its box", "F976", "BASEIMPONIBLE1",
            "9.999.999.999.999.999.999.999.999.999.999.999,99");
        Row("a signer of four lines", "F986", "APELLIDONOMBRE",
            QString("NOMBRE MUY LARGO ").repeated(20));
    }
    void overlongTextIsReported()
    {
        QFETCH(QString, form);
        QFETCH(QString, parameter);
        QFETCH(QString, value);
        ReportJob job = prepare(form, false).first();
        setParameter(job, parameter, value);
        QVERIFY(ReportRenderer::UnfitTexts({job}).join('|').contains(value));
    }

    // The liquidation of F976 read off the paper: the subtotals, the balance
    // on the side of the greater column, and the total that follows from
    // them, whether the levy or the credits are the greater.
    void liquidationAddsUp_data()
    {
        Columns<bool, QString>("rect", "total");
        Row("levy above credits", false, "174.474.475,74");
        Row("credits above levy", true, "0,00");
    }
    void liquidationAddsUp()
    {
        skipWithout("pdftotext", "poppler-utils");
        QFETCH(bool, rect);
        QFETCH(QString, total);
        const QString text = pdfText(writePdf(prepare("F976", rect), "F976"));
        const QStringList lines = text.split('\n');
        int columnII = -1;
        QHash<QString, QPair<double, double>> rows; // caption: column I, column II
        for (const QString& line : lines) {
            if (line.contains("LIQUIDACIÓN"))
                columnII = line.indexOf("Columna II");
            const QString caption = line.trimmed().section("  ", 0, 0);
            if (columnII < 0 || caption.isEmpty() || rows.contains(caption))
                continue;
            QPair<double, double> values(0, 0);
            for (const auto& [value, end] : amountsOf(line))
                (end > columnII ? values.second : values.first) = value;
            rows.insert(caption.section(" (período", 0, 0), values);
        }
        auto I = [&](const char* c) { return rows.value(c).first; };
        auto II = [&](const char* c) { return rows.value(c).second; };
        QVERIFY2(rows.contains("Subtotal Determinado"), qPrintable(text));
        QCOMPARE(I("Subtotal Determinado"),
                 I("Retenciones") + I("Percepciones") + I("Saldo a Favor - DDJJ"));
        QCOMPARE(II("Subtotal Determinado"), II("Tasa o Mínimo (el mayor)"));
        const double balanceI = I("Saldo a Favor del Contrib./QRTM");
        const double balanceII = II("Saldo a Favor del Contrib./QRTM");
        QVERIFY(balanceI == 0 || balanceII == 0);
        QCOMPARE(balanceII - balanceI, II("Subtotal Determinado") - I("Subtotal Determinado"));
        const double expected =
            qMax(0.0, balanceII + II("Accesorios") + II("Multas") - balanceI - I("Pago a Cuenta"));
        QCOMPARE(LocaleFixed(II("TOTAL A PAGAR"), 2, true), total);
        QCOMPARE(LocaleFixed(expected, 2, true), total);
        QVERIFY(rect ? balanceI > 0 : balanceII > 0);
        QVERIFY(text.contains(rect ? "(período 12-2009)" : "(período 11-2009)"));
    }

    // An annex without lines still heads its page with the declaration's
    // period, the premises' name, postal code and domicile.
    void emptyAnnexHeader()
    {
        skipWithout("pdftotext", "poppler-utils");
        Db::exec("DELETE * FROM F978_Detalle");
        const QList<ReportJob> jobs = prepare("F978", true);
        QCOMPARE(jobs.first().realLines, 0);
        const QString text = pdfText(writePdf(jobs, "F978")).simplified();
        for (const QString& piece : {"01-2010", "K4700XAB", "COMPAÑÍA ARGENTINA DE DISTRIBUCIÓN",
                                     "Avenida General José de San Martín"})
            QVERIFY2(text.count(piece) == 2, qPrintable(piece + " in " + text));
    }

    void straightFileLooksAsPainted_data() { formRows(); }
    // The file written straight from the forms' strokes shows what a painter
    // on a PDF device draws: the same words in the same order, and pages that
    // differ by no more than the edges of a few letters.
    void straightFileLooksAsPainted()
    {
        skipWithout("pdftoppm", "poppler-utils");
        skipWithout("pdftotext", "poppler-utils");
        QFETCH(QString, form);
        QFETCH(bool, rect);
        const QList<ReportJob> jobs = prepare(form, rect);
        QStringList missed;
        const QByteArray straight = ReportRenderer::StraightPdf(jobs, missed);
        QVERIFY(!straight.isEmpty());
        QFile file(env->path("straight.pdf"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(straight) == straight.size());
        file.close();
        QPdfWriter writer(env->path("painted.pdf"));
        ReportRenderer::SetUpPdf(writer, jobs);
        QVERIFY(ReportRenderer::Render(writer, jobs));
        const auto words = [](const QString& pdf) {
            return run("pdftotext", {pdf, "-"}).split(QRegularExpression("\\s+"), Qt::SkipEmptyParts);
        };
        QCOMPARE(words(env->path("straight.pdf")), words(env->path("painted.pdf")));
        const auto pages = [](const QString& pdf, const QString& prefix) {
            run("pdftoppm", {"-r", "60", "-gray", pdf, prefix});
            QList<QImage> found;
            QDir dir(QFileInfo(prefix).path());
            for (const QString& name :
                 dir.entryList({QFileInfo(prefix).fileName() + "*.pgm"}, QDir::Files, QDir::Name))
                found << QImage(dir.filePath(name)).convertToFormat(QImage::Format_Grayscale8);
            return found;
        };
        const QList<QImage> seen = pages(env->path("straight.pdf"), env->path("seen"));
        const QList<QImage> drawn = pages(env->path("painted.pdf"), env->path("drawn"));
        QCOMPARE(seen.size(), drawn.size());
        for (int n = 0; n < seen.size(); ++n) {
            QCOMPARE(seen.at(n).size(), drawn.at(n).size());
            int differing = 0, inked = 0;
            for (int y = 0; y < seen.at(n).height(); ++y) {
                const uchar* a = seen.at(n).constScanLine(y);
                const uchar* b = drawn.at(n).constScanLine(y);
                for (int x = 0; x < seen.at(n).width(); ++x) {
                    differing += std::abs(a[x] - b[x]) > 96;
                    inked += b[x] < 128;
                }
            }
            QVERIFY2(differing * 50 < inked,
                     qPrintable(QString("page %1: %2 dots differ of %3 inked")
                                    .arg(n + 1).arg(differing).arg(inked)));
        }
    }

    // A character the straight file's letters lack is still printed: the
    // painter draws that file.
    void characterBeyondTheLettersStillPrinted()
    {
        skipWithout("pdftotext", "poppler-utils");
        QList<ReportJob> jobs = prepare("F976", false);
        setParameter(jobs.first(), "RAZONSOCIAL", "ŁÓDŹ Ωmega SRL");
        QStringList missed;
        QVERIFY(ReportRenderer::StraightPdf(jobs, missed).isEmpty());
        const QString pdf = writePdf(jobs, "beyond");
        QVERIFY(!pdf.isEmpty());
        QVERIFY(run("pdftotext", {pdf, "-"}).contains("ŁÓDŹ Ωmega SRL"));
    }

    void verificationCode_data() { formRows(); }
    // Each page carries the code; read back from the paper by a scanner it
    // gives the declaration's identity.
    void verificationCode()
    {
        skipWithout("pdftoppm", "poppler-utils");
        skipWithout("zbarimg", "zbar-tools");
        QFETCH(QString, form);
        QFETCH(bool, rect);
        const QList<ReportJob> jobs = prepare(form, rect);
        const QString pdf = writePdf(jobs, form);
        const QString prefix = env->path("page");
        run("pdftoppm", {"-r", "150", "-png", pdf, prefix});
        const QStringList pages = QDir(QFileInfo(prefix).path()).entryList({"page*.png"});
        int expectedPages = 0;
        for (const ReportJob& job : jobs)
            expectedPages += ReportRenderer::PageCount(job);
        QCOMPARE(pages.size(), expectedPages);
        const ReportJob& job = jobs.first();
        const QString identity = ReportQrCode::Text(job);
        for (const QString& page : pages) {
            const QString read =
                run("zbarimg", {"--raw", "-q", QFileInfo(prefix).path() + "/" + page}).trimmed();
            QCOMPARE(read, identity);
        }
        QVERIFY(identity.startsWith("Formulario=" + form + ";CUIT=30-71234567-9;Padron=" + kPadron +
                                    ";Objeto=" + kObjeto + ";Periodo=01-2010;"));
        QVERIFY(identity.contains(QString(";Rectificacion=%1;").arg(rect ? 1 : 0)));
        QVERIFY(identity.contains(";Guidv=" + job.parameter("GUIDV") + ";"));
        QVERIFY(!job.field("TOTAL").isEmpty());
        QVERIFY(identity.endsWith(";Total=" + job.field("TOTAL") + ";"));
    }
};

QTEST_MAIN(TstPrintedForms)
#include "tst_printed_forms.moc"
