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
class TstGenerarDisco : public EnvTest
{
    Q_OBJECT
    Database m_db;
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

    void seed() override
    {
        QVERIFY(m_db.install());
        m_destino = env->path("destino");
        QDir().mkpath(m_destino);
        m_printer.clear();
        m_printer.setFolder(env->path("reportes"));
        SetReportPrinter(&m_printer);
    }
    void tearDown() override { SetReportPrinter(nullptr); }

public:
    TstGenerarDisco() : EnvTest(false) {}

private slots:
    void initTestCase()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("the archiver 7za is not installed");
        QVERIFY(m_db.build());
    }

    void nombreArchivo_data()
    {
        QTest::addColumn<QString>("destino");
        QTest::addColumn<QString>("parametros");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("F976") << "/d" << parameters("F976") << "/d/09760110.DJ";
        QTest::newRow("F2001") << "/d" << parameters("F2001") << "/d/20010110.DJ";
        QTest::newRow("F988 mm-yyyy") << "/d/" << parameters("F988", "01-2010", "")
            << "/d/09880110.DJ";
        QTest::newRow("lower case form") << "/d" << "Formulario=f985;Periodo=3;Anio=2021;"
            << "/d/09850321.DJ";
        QTest::newRow("empty destination") << "" << parameters("F977") << "/09770110.DJ";
        // clang-format on
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
        QCOMPARE(env->ui().lastText(), kDone);
        QCOMPARE(env->ui().messages().last().title, QString("Atención !"));
        QVERIFY(!w.isLoaded());
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
        QCOMPARE(env->ui().lastText(), kDone);
    }

    // A run that cannot be made stops with its message, nothing delivered nor
    // printed, and the dialog stays for another try: a destination that
    // cannot be written, no archiver (the person is told instead of the
    // success message), copies that are no number.
    void refusedRunKeepsTheDialog_data()
    {
        QTest::addColumn<QString>("destino");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("copies");
        QTest::addColumn<QString>("said");
        // clang-format off
        QTest::newRow("unwritable destination") << "no-existe" << QByteArray() << "1" << QString();
        QTest::newRow("no archiver") << QString() << QByteArray("/nonexistent") << "1" << "7za";
        QTest::newRow("copies not a number") << QString() << QByteArray() << "dos" << "número";
        // clang-format on
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

QTEST_MAIN(TstGenerarDisco)
#include "tst_generardisco.moc"
