#include <QtTest>

#include "FormFixture.h"
#include "Person.h"
#include "declarations/F985.h"
#include "declarations/F986.h"
#include "declarations/F987.h"
#include "declarations/F988.h"
#include "output/ReportPrinter.h"
#include "output/ZoGenerateDisk.h"

using namespace fx;

namespace {

QStringList constancia(const QString& nro, const QString& importe)
{
    return {QStringLiteral("05-03-2024"),
            QStringLiteral("FACA - Factura A"),
            nro.rightJustified(15, u'0'),
            QStringLiteral("CLIENTE ") + nro,
            QStringLiteral("30-71234567-1"),
            QStringLiteral("0000000000099"),
            importe};
}

// An agent's return stored as the form saves it, with its registration row.
void declareAgent(const QString& form, const QString& amount,
                  const QString& rect = QStringLiteral("False"),
                  const QString& fecha = QStringLiteral("0"),
                  const QString& ctrl = QStringLiteral("0"))
{
    const QString informed = form == "F986" ? "ImpPercibidoF985" : "ImpPercibidoF987";
    gAccess().Execute(
        QString("INSERT INTO %1 (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, "
                "ctrl, %2, AccesoriosCoef, Multas, Otros, ImporteDepositar) VALUES ('%3', '%4', "
                "'%5', '%6', '%7', '%8', '%9', '1,00', '2,00', '3,00', 'dep')")
            .arg(form, informed, kPadron, kObjeto, kPeriodo, rect, fecha, ctrl, amount));
    gAccess().Execute(QString("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES "
                              "('%1', '%2', '%3', '%4', '%5', '%6', '%7')")
                          .arg(kPadron, kObjeto, kPeriodo, form, rect, fecha, ctrl));
}

std::unique_ptr<AnexoComprobantes> annex(const QString& form)
{
    if (form == "F985")
        return std::make_unique<F985>();
    return std::make_unique<F987>();
}

std::unique_ptr<DeclaracionAgente> agentReturn(const QString& form)
{
    if (form == "F986")
        return std::make_unique<F986>();
    return std::make_unique<F988>();
}

QString informedField(const QString& form)
{
    return form == "F986" ? "txtImpPerF985" : "txtImpPerF987";
}

const char* const kAmounts[] = {"txtAccesorioCoef", "txtMultas", "txtOtros"};

} // namespace

// The agents' forms: the annexes F985 and F987 against their returns, and the
// returns F986 and F988 with their amount to deposit, their warning and their
// row found without a Codigo.
class TstAgentes : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
        premises(QStringLiteral("2"));
    }
    void cleanup() { env.reset(); }

    void annexAgainstTheReturn_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("total");
        QTest::addColumn<QString>("declared"); // "" when no return is registered
        QTest::addColumn<QString>("rectified");
        QTest::addColumn<QString>("outcome"); // the adjustment, "refused" or "silent"
        QTest::newRow("F985 9,99 below adjusts") << "F985"
                                                 << "90,01"
                                                 << "100,00"
                                                 << ""
                                                 << "9,99";
        QTest::newRow("F985 10,00 below refuses") << "F985"
                                                  << "90,00"
                                                  << "100,00"
                                                  << ""
                                                  << "refused";
        QTest::newRow("F987 9,99 above adjusts") << "F987"
                                                 << "109,99"
                                                 << "100,00"
                                                 << ""
                                                 << "-9,99";
        QTest::newRow("F987 10,00 above refuses") << "F987"
                                                  << "110,00"
                                                  << "100,00"
                                                  << ""
                                                  << "refused";
        QTest::newRow("F985 without F986") << "F985"
                                           << "999.999,00"
                                           << ""
                                           << ""
                                           << "silent";
        QTest::newRow("F987 equal") << "F987"
                                    << "100,00"
                                    << "100,00"
                                    << ""
                                    << "silent";
        QTest::newRow("F985 rectified return") << "F985"
                                               << "95,00"
                                               << "100,00"
                                               << "05-04-2024"
                                               << "5,00";
    }

    void annexAgainstTheReturn()
    {
        QFETCH(QString, form);
        QFETCH(QString, total);
        QFETCH(QString, declared);
        QFETCH(QString, rectified);
        QFETCH(QString, outcome);
        const QString partner = form == "F985" ? "F986" : "F988";
        if (!declared.isEmpty())
            declareAgent(partner, declared, rectified.isEmpty() ? "False" : "Verdadero",
                         rectified.isEmpty() ? "0" : rectified);
        auto f = annex(form);
        const QString parametros = nuevo(form);
        writeLine(f->definicion().tablaDetalle, parametros, kComprobante, constancia("1", total));
        f->Parametros = parametros;
        f->load();
        Person(*f).click("cmdAceptar");
        const QString tabla = form + "_Detalle";
        if (outcome == "silent") {
            QVERIFY(env->ui().messages().isEmpty());
            QCOMPARE(column("SELECT TotalPercepciones FROM " + form), QStringList{total});
            return;
        }
        const QString rect = rectified.isEmpty() ? "" : " (Rectif. " + rectified + ")";
        const QString head = "El importe total no coincide con el declarado en el Formulario " +
                             partner + " " + rect + "\r\nImporte declarado: $ " + declared + "\r\n";
        QCOMPARE(env->ui().messages().last().title, QStringLiteral("Ajuste"));
        if (outcome == "refused") {
            QCOMPARE(env->ui().lastText(), head + "Revise los importes ingresados");
            QVERIFY(f->isLoaded());
            QCOMPARE(count("SELECT COUNT(*) FROM " + form), 0);
            return;
        }
        QCOMPARE(env->ui().lastText(), head + "Se ajustará automáticamente");
        QCOMPARE(column("SELECT TipoComprobante || '|' || Denominacion || '|' || Cuit || '|' || "
                        "ImportePercibido FROM " +
                        tabla + " WHERE CodigoDetalle = '9999'"),
                 QStringList{"AJUS - Ajuste|Ajuste|00-00000000-0|" + outcome});
        QCOMPARE(column("SELECT TotalPercepciones FROM " + form), QStringList{declared});
    }

    void importeDepositar_data()
    {
        QTest::addColumn<QStringList>("typed"); // informed, accessories, fines, others
        QTest::addColumn<QString>("expected");
        QTest::newRow("all blank") << QStringList{"", "", "", ""} << "0,00";
        QTest::newRow("only informed") << QStringList{"1.000,50", "", "", ""} << "1.000,50";
        QTest::newRow("partial") << QStringList{"", "10", "", "0,25"} << "10,25";
        QTest::newRow("all four") << QStringList{"1.234,56", "1", "2,5", "1000"} << "2.238,06";
        QTest::newRow("informed led by a comma") << QStringList{",5", "1", "", ""} << "1,00";
    }

    void importeDepositar()
    {
        QFETCH(QStringList, typed);
        QFETCH(QString, expected);
        for (const char* form : {"F986", "F988"}) {
            auto f = agentReturn(form);
            f->Parametros = nuevo(form);
            f->load();
            const QStringList names{informedField(form), kAmounts[0], kAmounts[1], kAmounts[2]};
            for (int i = 0; i < names.size(); ++i)
                (*f)[names[i]].setText(typed[i]);
            // Any change of the four works the sum out again.
            Person(*f).retype(names[3], "9");
            Person(*f).retype(names[3], typed[3]);
            QCOMPARE((*f)["txtImporteDepositar"].text(), expected);
        }
    }

    void acceptRequiresTheAmountsAndSaves_data()
    {
        QTest::addColumn<QString>("form");
        QTest::newRow("F986") << "F986";
        QTest::newRow("F988") << "F988";
    }

    void acceptRequiresTheAmountsAndSaves()
    {
        QFETCH(QString, form);
        auto f = agentReturn(form);
        f->Parametros = nuevo(form);
        f->load();
        QCOMPARE((*f)["lblDomicilio"].text(), QStringLiteral("Domicilio Fiscal"));
        QCOMPARE((*f)["txtContribuyente"].text(), QStringLiteral("GÓMEZ, ANA"));
        Person p(*f);
        p.click("cmdAceptar");
        const QString verb = form == "F986" ? "retenido" : "percibido";
        const QString annexId = form == "F986" ? "F985" : "F987";
        QCOMPARE(env->ui().lastText(),
                 "Debe ingresar el Importe " + verb + " según detalle " + annexId);
        // Leaving an amount works the sum out: the amount to deposit is found
        // blank only when no amount was left, as with a figure set from outside.
        auto g = agentReturn(form);
        g->Parametros = nuevo(form);
        g->load();
        (*g)[informedField(form)].setText("500,00");
        Person(*g).click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), QStringLiteral("Debe ingresar el Importe a Depositar"));
        QCOMPARE(g->focused(), QStringLiteral("txtImporteDepositar"));
        p.type(informedField(form), "500");
        p.leave(informedField(form));
        p.retype("txtImporteDepositar", "480");
        p.click("cmdAceptar");
        QVERIFY(!f->isLoaded());
        const QString informed = form == "F986" ? "ImpPercibidoF985" : "ImpPercibidoF987";
        QCOMPARE(column("SELECT Padron || '|' || Objeto || '|' || Periodo || '|' || Rectificativa "
                        "|| '|' || FechaRectificativa || '|' || ctrl || '|' || RazonSocial || '|' "
                        "|| Contribuyente || '|' || " +
                        informed +
                        " || '|' || AccesoriosCoef || "
                        "'|' || Multas || '|' || Otros || '|' || ImporteDepositar FROM " +
                        form),
                 QStringList{kPadron + "|" + kObjeto +
                             "|03-2024|False|0|0|ALMACÉN O'HIGGINS|"
                             "GÓMEZ, ANA|500,00|0,00|0,00|0,00|480,00"});
        QCOMPARE(column("SELECT idFormulario || '|' || Rectificativa || '|' || FechaRectificativa "
                        "FROM TPadrones_Formularios"),
                 QStringList{form + "|False|0"});
        QCOMPARE(env->ui().messages().size(), 2);
    }

    void warningAgainstTheAnnexSavesAllTheSame_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("warned");
        QTest::newRow("F986 one cent off") << "F986"
                                           << "100,01" << true;
        QTest::newRow("F988 one cent off") << "F988"
                                           << "99,99" << true;
        QTest::newRow("F986 equal") << "F986"
                                    << "100" << false;
    }

    void warningAgainstTheAnnexSavesAllTheSame()
    {
        QFETCH(QString, form);
        QFETCH(QString, typed);
        QFETCH(bool, warned);
        const QString annexId = form == "F986" ? "F985" : "F987";
        storeVersion(annexId, "TotalPercepciones", "100,00");
        auto f = agentReturn(form);
        f->Parametros = nuevo(form);
        f->load();
        Person p(*f);
        p.type(informedField(form), typed);
        p.leave(informedField(form));
        p.click("cmdAceptar");
        QVERIFY(!f->isLoaded());
        QCOMPARE(count("SELECT COUNT(*) FROM " + form), 1);
        if (!warned) {
            QVERIFY(env->ui().messages().isEmpty());
            return;
        }
        QCOMPARE(env->ui().messages().size(), 1);
        QCOMPARE(env->ui().messages().last().title, QStringLiteral("Advertencia"));
        QCOMPARE(env->ui().lastText(),
                 "El importe total no coincide con el declarado en el Formulario " + annexId +
                     " \r\nImporte declarado: $ 100,00\r\nRevise por favor...");
    }

    void rectificationIsKeyedWithoutCodigo()
    {
        declareAgent("F986", "700,00");
        F986 f;
        f.Parametros = rectificativa("F986", true, "0", "1", "10-04-2024");
        f.load();
        QCOMPARE(f["txtImpPerF985"].text(), QStringLiteral("700,00"));
        QCOMPARE(f["txtImporteDepositar"].text(), QStringLiteral("dep"));
        QCOMPARE(f["txtFechaDDJJ"].text(), QStringLiteral("10-04-2024"));
        QVERIFY(!f["optOriginal"].enabled());
        Person p(f);
        p.retype("txtMultas", "5");
        p.leave("txtMultas");
        QCOMPARE(f["txtImporteDepositar"].text(), QStringLiteral("709,00"));
        p.click("cmdAceptar");
        QVERIFY(!f.isLoaded());
        QCOMPARE(column("SELECT Rectificativa || '|' || FechaRectificativa || '|' || ctrl || '|' "
                        "|| Multas || '|' || ImporteDepositar FROM F986 ORDER BY Id"),
                 (QStringList{"False|0|0|2,00|dep", "Verdadero|10-04-2024|1|5,00|709,00"}));
        // Opened again, the same version is updated in place.
        f.Parametros = existente("F986", "Verdadero", "10-04-2024", "1");
        f.load();
        QCOMPARE(f["txtMultas"].text(), QStringLiteral("5,00"));
        Person(f).retype("txtImporteDepositar", "1000");
        Person(f).click("cmdAceptar");
        QCOMPARE(column("SELECT ImporteDepositar FROM F986 WHERE ctrl = '1'"),
                 QStringList{"1.000,00"});
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 2);
        VERIFY_UI_CLEAN(*env);
    }

    void f988ReadsZeroAsFalse()
    {
        F988 f;
        f.Parametros = QStringLiteral("Padron=") + kPadron + " - Objeto N° " + kObjeto +
                       ";Anio=2024;Periodo=03;Formulario=F988;Rectificativa=0;"
                       "FechaRectificativa=0;Nuevo=Verdadero;ConDatos=Falso;ctrl=0;";
        f.load();
        QVERIFY(f.Parametros.contains("Rectificativa=Falso;"));
        QVERIFY(f.Parametros.contains("FechaRectificativaNueva=0;"));
        QCOMPARE(f["optOriginal"].value(), 1);
        QCOMPARE(f["txtFechaDDJJ"].text(), QStringLiteral("__-__-____"));
        Person p(f);
        p.type("txtImpPerF987", "10");
        p.leave("txtImpPerF987");
        p.click("cmdAceptar");
        QCOMPARE(column("SELECT Rectificativa || '|' || FechaRectificativa FROM F988"),
                 QStringList{"False|0"});
    }

    void cancelNeverRemovesASavedReturn()
    {
        declareAgent("F988", "50,00");
        F988 f;
        f.Parametros = existente("F988");
        f.load();
        Person(f).click("cmdCancelar");
        QVERIFY(!f.isLoaded());
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM F988"), 1);
    }

    void importFillsTheAnnexAndReloads()
    {
        const QString file = env->path("retenciones.txt");
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("1@F985@O@03@2024@20-12345678-6@\r\n"
                  "2@05-03-2024@0001-00000123@CLIENTE UNO@20-12345678-6@4567@1500.00\r\n"
                  "2@12-03-2024@0001-00000124@CLIENTE DOS@20-12345678-6@4568@250.50\r\n"
                  "3@2@1750.50\r\n");
        out.close();
        env->ui().setOpenFile(file);
        F985 f;
        f.Parametros = nuevo("F985");
        f.load();
        Person(f).click("cmdImportar");
        QCOMPARE(f["gridFormulario"].rowCount(), 2);
        QCOMPARE(f["txtTotalPercepciones"].text(), QStringLiteral("1.750,50"));
        QCOMPARE(count("SELECT COUNT(*) FROM F985_Detalle"), 2);
        VERIFY_UI_CLEAN(*env);
    }

    void generateSavesWritesTheFileAndPrints()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("the archiver 7za is not installed");
        PdfFolderPrinter printer(env->path("pdf"));
        SetReportPrinter(&printer);
        const QString destino = env->path("destino");
        QDir().mkpath(destino);
        // The submission file names the premises' group.
        gAccess().Execute("UPDATE tPadronesComerciales SET grupo = '3'");
        env->ui().onShow("GenerarDisco", [&](Controller& w) {
            Person p(w);
            p.retype("txtDestino", destino);
            p.retype("txtCantidadImpresiones", "1");
            p.click("cmdAceptar");
        });
        F986 f;
        f.Parametros = nuevo("F986");
        f.load();
        Person p(f);
        p.type("txtImpPerF985", "1234,5");
        p.leave("txtImpPerF985");
        p.type("txtMultas", "10");
        p.leave("txtMultas");
        p.click("cmdGenerar");
        SetReportPrinter(nullptr);
        QCOMPARE(column("SELECT ImpPercibidoF985 || '|' || Multas || '|' || ImporteDepositar FROM "
                        "F986"),
                 QStringList{"1.234,50|10,00|1.244,50"});
        QVERIFY(f.Parametros.contains("Nuevo=Falso"));
        QVERIFY(QFile::exists(destino + "/09860324.DJ"));
        QVERIFY(!printer.files().isEmpty());
    }
};

QTEST_MAIN(TstAgentes)
#include "tst_agentes.moc"
