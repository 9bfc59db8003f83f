#include <QtTest>

#include <QDirIterator>

#include "DeskFixture.h"
#include "Globals.h"
#include "Person.h"
#include "TestSupport.h"
#include "desk/EstadoPresentaciones.h"
#include "desk/GeneracionLote.h"
#include "desk/GenerarLote.h"
#include "output/GenerarDisco.h"
#include "output/ReportDriver.h"
#include "output/ReportRenderer.h"
#include "output/ZoGenerateDisk.h"

namespace {

// January 2024: taxpayer 1 files every form its premises offers (F976 with
// retentions and its F977, rectified once); taxpayer 2, a retention agent,
// leaves its F985 and F986 unfiled;
// taxpayer 3's premises has no group.
void seedPeriod()
{
    Desk::addTaxpayer(1, "PÉREZ JUAN");
    Desk::addDeclaration(1, "F976", "01-2024", 0, {"Retenciones=50,00", "TotalAPagar=1.234,50"});
    Desk::addDeclaration(1, "F977", "01-2024", 0, {"TotalPercepciones=50,00"});
    Desk::addDeclaration(1, "F976", "01-2024", 1, {"Retenciones=50,00", "TotalAPagar=1.300,00"});
    Desk::addTaxpayer(2, "ACME SRL", {"retencion=1"});
    Desk::addDeclaration(2, "F976", "01-2024", 0, {"TotalAPagar=10,00"});
    Desk::addTaxpayer(3, "SIN GRUPO SA", {"grupo=<null>"});
    Desk::addDeclaration(3, "F976", "01-2024", 0, {"TotalAPagar=1,00"});
}

// The text inside a submission file: its one member, extracted.
QByteArray member(const QString& archive)
{
    QTemporaryDir out;
    QString name = QStringLiteral("TEMPFILE.DJ");
    QString folder = out.path();
    ZoGenerateDisk disk;
    if (!disk.Expand(archive, name, folder))
        return {};
    return ReadBytes(folder + u'/' + name);
}

// What a person sees of a PDF: each page as a grey picture, and its text
// as laid out; empty when the tools are missing.
QList<QByteArray> looks(const QString& pdf)
{
    QTemporaryDir out;
    QProcess tool;
    tool.start("pdftoppm", {"-r", "60", "-gray", pdf, out.filePath("page")});
    if (!tool.waitForFinished() || tool.exitCode() != 0)
        return {};
    QList<QByteArray> seen;
    QDirIterator pages(out.path(), QDir::Files);
    QStringList names;
    while (pages.hasNext())
        names << pages.next();
    names.sort();
    for (const QString& page : names)
        seen << ReadBytes(page);
    tool.start("pdftotext", {"-layout", pdf, "-"});
    if (!tool.waitForFinished())
        return {};
    return seen << tool.readAllStandardOutput();
}

QStringList filesUnder(const QString& root)
{
    QStringList out;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(root).relativeFilePath(it.next());
    out.sort();
    return out;
}

} // namespace

// A whole period generated at once: the files it writes are those of the
// generate dialog, what it skips is told, and the command line says so in its
// exit status.
class TstLote : public EnvTest
{
    Q_OBJECT
    void seed() override { seedPeriod(); }

private slots:
    void writesAFolderPerTaxpayerAndTellsWhatItSkipped()
    {
        GeneracionLote lote;
        lote.Periodo = "01-2024";
        lote.Destino = env->path("lote");
        QDir().mkpath(lote.Destino);
        QStringList progress;
        lote.Progreso = [&](int done, int total, const QString& what) {
            progress << QString("%1/%2 %3").arg(done).arg(total).arg(what);
            return true;
        };
        const ResumenLote resumen = lote.Ejecutar();
        QCOMPARE(filesUnder(lote.Destino),
                 (QStringList{
                     "20000000016 PÉREZ JUAN/09760124.DJ", "20000000016 PÉREZ JUAN/09760124.pdf",
                     "20000000016 PÉREZ JUAN/09770124.DJ", "20000000016 PÉREZ JUAN/09770124.pdf",
                     "20000000026 ACME SRL/09760124.DJ", "20000000026 ACME SRL/09760124.pdf"}));
        QCOMPARE(resumen.escritos.size(), 6);
        QStringList omitidos = resumen.omitidos;
        omitidos.sort();
        QCOMPARE(omitidos,
                 (QStringList{"20000000026 ACME SRL F985 padrón 0000000000002: ofrecido y no "
                              "presentado.",
                              "20000000026 ACME SRL F986 padrón 0000000000002: ofrecido y no "
                              "presentado.",
                              "20000000036 SIN GRUPO SA F976 padrón 0000000000003: El padrón no "
                              "tiene grupo: el archivo no puede escribirse entero."}));
        QCOMPARE(resumen.Linea(), QString("Generados: 6 archivos; omitidos: 3"));
        QCOMPARE(progress.first(), QString("0/4 20000000026 ACME SRL"));
        QCOMPARE(progress.last(), QString("4/4 Terminado."));
        // the printed form is the rectification's
        QProcess text;
        text.start("pdftotext", {env->path("lote/20000000016 PÉREZ JUAN/09760124.pdf"), "-"});
        QVERIFY(text.waitForFinished());
        QVERIFY(QString::fromUtf8(text.readAllStandardOutput()).contains("1.300,00"));
    }

    // The batch writes its printed forms on threads of their own, by groups:
    // every file shows, page by page and word by word, what the same forms
    // written alone show.
    void printedFormsShowWhatAFileOfTheirOwnShows_data()
    {
        Columns<int, QString, QString, int>("id", "form", "file", "pages");
        Row("the rectified return, one copy", 1, "F976", "20000000016 PÉREZ JUAN/09760124.pdf", 1);
        Row("an annex, two copies", 1, "F977", "20000000016 PÉREZ JUAN/09770124.pdf", 2);
        Row("another taxpayer's return", 2, "F976", "20000000026 ACME SRL/09760124.pdf", 1);
    }
    void printedFormsShowWhatAFileOfTheirOwnShows()
    {
        QFETCH(int, id);
        QFETCH(QString, form);
        QFETCH(QString, file);
        QFETCH(int, pages);
        if (QStandardPaths::findExecutable("pdftoppm").isEmpty())
            QSKIP("pdftoppm (poppler-utils) is not installed");
        GeneracionLote lote;
        lote.Periodo = "01-2024";
        lote.Destino = env->path("lote");
        QDir().mkpath(lote.Destino);
        lote.Ejecutar();
        EstadoPresentaciones estado;
        estado.Cargar(id);
        QString key;
        for (const FilaPresentacion& fila : estado.filas())
            if (fila.formulario == form)
                key = fila.celda("01-2024").clave;
        const QString alone = env->path("solo.pdf");
        QVERIFY(WriteReportPdf(ReportDriver::Prepare(key), alone));
        const QList<QByteArray> expected = looks(alone);
        QCOMPARE(expected.size(), pages + 1);
        const QList<QByteArray> seen = looks(lote.Destino + u'/' + file);
        QCOMPARE(seen.size(), expected.size());
        for (int n = 0; n < seen.size(); ++n)
            QVERIFY2(seen.at(n) == expected.at(n), qPrintable(QString("page %1").arg(n + 1)));
        // the title is the form's, as in a file of its own
        QProcess info;
        info.start("pdfinfo", {lote.Destino + u'/' + file});
        QVERIFY(info.waitForFinished());
        QVERIFY(QString::fromUtf8(info.readAllStandardOutput())
                    .contains(QRegularExpression("Title: +Formulario " + form + "\\n")));
    }

    // With the clock fixed, as two runs at the same moment would be: the
    // same zip bytes, the text's time inside them included.
    void filesEqualThoseOfTheGenerateDialog()
    {
        SetSubmissionClock([] { return QDateTime(QDate(2024, 2, 10), QTime(9, 30, 12)); });
        const auto realClock = qScopeGuard([] { SetSubmissionClock({}); });
        EstadoPresentaciones estado;
        estado.Cargar(1);
        QStringList keys;
        for (const FilaPresentacion& fila : estado.filas())
            if (!fila.celda("01-2024").clave.isEmpty())
                keys << fila.celda("01-2024").clave;
        QCOMPARE(keys.size(), 2);
        const QString byDialog = env->path("dialogo");
        QDir().mkpath(byDialog);
        for (const QString& key : keys) {
            GenerarDisco dialog;
            dialog.Parametros = key;
            Person person(dialog);
            person.retype("txtDestino", byDialog);
            person.retype("txtCantidadImpresiones", "0");
            person.click("cmdAceptar");
            QVERIFY2(env->ui().lastText().startsWith("La generación se realizó correctamente."),
                     qPrintable(env->ui().lastText()));
        }
        GeneracionLote lote;
        lote.Periodo = "01-2024";
        lote.Destino = env->path("lote");
        lote.Ids = {1};
        lote.ConPdf = false;
        QDir().mkpath(lote.Destino);
        QCOMPARE(lote.Ejecutar().omitidos, QStringList{});
        const QStringList dialogFiles = filesUnder(byDialog);
        QCOMPARE(dialogFiles, (QStringList{"09760124.DJ", "09770124.DJ"}));
        for (const QString& name : dialogFiles) {
            QVERIFY(member(byDialog + u'/' + name).startsWith("1@"));
            const QByteArray zip = ReadBytes(byDialog + u'/' + name);
            QCOMPARE(ReadBytes(lote.Destino + "/20000000016 PÉREZ JUAN/" + name).toHex(),
                     zip.toHex());
        }
    }

    void generateWindowRunsAndCancels()
    {
        GenerarLote window;
        Person person(window);
        QCOMPARE(window["gridContribuyentes"].rowCount(), 3);
        person.retype("txtPeriodo", "01-2024");
        person.retype("txtDestino", env->path("nada"));
        person.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(),
                 QString("No se puede acceder a la unidad. Verifique por favor."));
        QDir().mkpath(env->path("ventana"));
        person.retype("txtDestino", env->path("ventana"));
        person.dblClick("gridContribuyentes", 0); // ACME SRL left out
        person.dblClick("gridContribuyentes", 2); // SIN GRUPO SA left out
        person.click("cmdAceptar");
        QCOMPARE(window["lblResumen"].text(), QString("Generados: 4 archivos; omitidos: 0"));
        QCOMPARE(window["gridResumen"].rowCount(), 4);
        QCOMPARE(window["pbProgreso"].value(), window["pbProgreso"].maximum());
        QCOMPARE(filesUnder(env->path("ventana")).size(), 4);
        // a cancel pressed while it runs stops it before the next declaration
        person.click("cmdTodos");
        QObject::connect(&window["lblEstado"], &Field::changed,
                         [&](Field*, Field::Aspect) { window.fire("cmdCancelar", Ev::Click); });
        person.click("cmdAceptar");
        QVERIFY(window["lblResumen"].text().endsWith("(cancelado)"));
        QVERIFY(window.isLoaded());
        window.unload();
    }

    void commandLine_data()
    {
        Columns<QStringList, int, QString>("args", "status", "summary");
        Row("one taxpayer filed whole", QStringList{"--cuit", "20-00000001-6"}, 0,
            "Generados: 4 archivos; omitidos: 0");
        Row("all: something skipped", QStringList{}, 1, "Generados: 6 archivos; omitidos: 3");
        Row("a CUIT not registered", QStringList{"--cuit", "30999999991"}, 1,
            "Generados: 0 archivos; omitidos: 1");
        Row("no files wanted but the submission", QStringList{"--cuit", "20000000016", "--sin-pdf"},
            0, "Generados: 2 archivos; omitidos: 0");
        Row("a period that is none", QStringList{"--periodo", "13-2024"}, 2, "");
    }
    void commandLine()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, summary);
        CloseDatabase();
        const QString destino = env->path("cli");
        QDir().mkpath(destino);
        QProcess run;
        QStringList all{"--destino", destino, "--datos", env->dataPath()};
        if (!args.contains("--periodo"))
            all << "--periodo"
                << "01-2024";
        run.start(MORVEL_LOTE, all + args);
        QVERIFY(run.waitForFinished(120000));
        const QStringList out =
            QString::fromUtf8(run.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(run.exitStatus(), QProcess::NormalExit);
        QCOMPARE(run.exitCode(), status);
        if (summary.isEmpty()) {
            QVERIFY(QString::fromUtf8(run.readAllStandardError()).contains("mm-aaaa"));
            return;
        }
        QCOMPARE(out.last(), summary);
        QCOMPARE(filesUnder(destino).size(), summary.section(' ', 1, 1).toInt());
    }
};

QTEST_MAIN(TstLote)
#include "tst_lote.moc"
