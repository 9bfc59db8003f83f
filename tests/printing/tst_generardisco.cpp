#include <QtTest>

#include "Person.h"
#include "PrintingFixture.h"
#include "output/GenerarDisco.h"
#include "output/ZoGenerateDisk.h"

using namespace PrintingFixture;

namespace {

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

// The generate dialog driven as a person does: the destination, the copies,
// "Aceptar", and what lands in the folder and on paper.
class TstGenerarDisco : public QObject
{
    Q_OBJECT

private:
    Database m_db;
    std::unique_ptr<TestEnv> m_env;
    PdfFolderPrinter m_printer;
    QString m_destino;

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

private slots:
    void initTestCase()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("the archiver 7za is not installed");
        QVERIFY(m_db.build());
    }

    void init()
    {
        m_env = std::make_unique<TestEnv>();
        QVERIFY(m_db.install());
        m_destino = m_env->path("destino");
        QDir().mkpath(m_destino);
        m_printer.clear();
        m_printer.setFolder(m_env->path("reportes"));
        SetReportPrinter(&m_printer);
    }

    void cleanup()
    {
        SetReportPrinter(nullptr);
        CloseDatabase();
        m_env.reset();
    }

    void nombreMes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("name");
        QTest::newRow("01") << "01"
                            << "Enero";
        QTest::newRow("09") << "09"
                            << "Septiembre";
        QTest::newRow("12") << "12"
                            << "Diciembre";
        QTest::newRow("13") << "13"
                            << "";
        QTest::newRow("1") << "1"
                           << "";
        QTest::newRow("empty") << ""
                               << "";
    }

    void nombreMes()
    {
        QFETCH(QString, code);
        QFETCH(QString, name);
        QCOMPARE(GenerarDisco::NombreMes(code), name);
    }

    void nombreArchivo_data()
    {
        QTest::addColumn<QString>("destino");
        QTest::addColumn<QString>("parametros");
        QTest::addColumn<QString>("expected");
        QTest::newRow("F976") << "/d" << parameters("F976") << "/d/09760110.DJ";
        QTest::newRow("F2001") << "/d" << parameters("F2001") << "/d/20010110.DJ";
        QTest::newRow("F988 mm-yyyy")
            << "/d/" << parameters("F988", "01-2010", "") << "/d/09880110.DJ";
        QTest::newRow("lower case form") << "/d"
                                         << "Formulario=f985;Periodo=3;Anio=2021;"
                                         << "/d/09850321.DJ";
        QTest::newRow("empty destination") << "" << parameters("F977") << "/09770110.DJ";
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
        QCOMPARE(w.caption(), QString("Generación de Disco"));
        QCOMPARE(w["lblRotuloTitulo"].text(), QString("Generación del Formulario F2001"));
        QCOMPARE(w["txtDestino"].text(), QDir::homePath());
        QCOMPARE(w["txtCantidadImpresiones"].text(), QString("1"));
        QVERIFY(w["cmdVistaPrevia"].enabled());
        GenerarDisco period;
        period.TotalPeriodo = true;
        period.load();
        QVERIFY(!period["cmdVistaPrevia"].enabled());
    }

    void oneDeclaration()
    {
        GenerarDisco w;
        open(w, parameters("F977"), false, "2");
        Person(w).click("cmdAceptar");
        QCOMPARE(delivered(), QStringList{"09770110.DJ"});
        QVERIFY(zipIsSound(m_destino + "/09770110.DJ"));
        QCOMPARE(m_printer.files().size(), 2);   // two runs of the annex
        QCOMPARE(m_printer.printed().size(), 4); // each of two copies
        QCOMPARE(m_env->ui().lastText(), kDone);
        QCOMPARE(m_env->ui().messages().last().title, QString("Atención !"));
        QVERIFY(!w.isLoaded());
        VERIFY_UI_CLEAN(*m_env);
    }

    // A period: every form gets its own file; no copies asked, no paper.
    void periodOfThreeForms()
    {
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
        QCOMPARE(m_env->ui().lastText(), kDone);
    }

    // A destination that cannot be written stops the run with the writer's
    // message; the dialog stays for another destination.
    void unwritableDestination()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "1");
        Person(w).retype("txtDestino", m_env->path("no-existe"));
        Person(w).click("cmdAceptar");
        QVERIFY(m_env->ui().lastText() != kDone);
        QVERIFY(!m_env->ui().texts().contains(kDone));
        QVERIFY(m_printer.files().isEmpty());
        QVERIFY(w.isLoaded());
    }

    // A failed compression leaves no file: the person is told so instead of
    // the success message, and the dialog stays.
    void missingArchiverIsSaid()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", "/nonexistent");
        GenerarDisco w;
        open(w, parameters("F976"), false, "1");
        Person(w).click("cmdAceptar");
        qputenv("PATH", path);
        QVERIFY(delivered().isEmpty());
        QVERIFY2(m_env->ui().lastText().contains("7za"), qPrintable(m_env->ui().lastText()));
        QVERIFY(!m_env->ui().texts().contains(kDone));
        QVERIFY(m_printer.files().isEmpty());
        QVERIFY(w.isLoaded());
    }

    void copiesNotANumber()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "");
        w["txtCantidadImpresiones"].setText("dos");
        Person(w).click("cmdAceptar");
        QVERIFY(m_env->ui().lastText().contains("número"));
        QVERIFY(delivered().isEmpty());
        QVERIFY(w.isLoaded());
    }

    void previewNeedsNoDestination()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "");
        w["txtDestino"].setText("");
        Person(w).click("cmdVistaPrevia");
        QCOMPARE(m_printer.previewed().size(), 1);
        QVERIFY(m_printer.printed().isEmpty());
        QVERIFY(m_env->ui().messages().isEmpty());
        QVERIFY(w.isLoaded());
    }

    void browseForDestination()
    {
        GenerarDisco w;
        open(w, parameters("F976"), false, "1");
        m_env->ui().setFolder(m_env->path("elegida"));
        Person(w).click("cmdBuscarDestino");
        QCOMPARE(w["txtDestino"].text(), m_env->path("elegida"));
        m_env->ui().setFolder("");
        Person(w).click("cmdBuscarDestino");
        QCOMPARE(w["txtDestino"].text(), GenerarDisco::DestinoPorDefecto());
    }
};

QTEST_MAIN(TstGenerarDisco)
#include "tst_generardisco.moc"
