#include <QtTest>

#include "BrokenDatabase.h"
#include "FormFixture.h"
#include "Person.h"
#include "declarations/F986.h"
#include "output/ReportPrinter.h"
#include "output/ZoGenerateDisk.h"

using namespace fx;

namespace {

QString annexOf(const QString& form)
{
    return form == "F986" ? "F985" : "F987";
}

QString informedField(const QString& form)
{
    return "txtImpPer" + annexOf(form);
}

// An agent's return stored as the form saves it, with its registration row.
void declareAgent(const QString& form, const QString& amount, int ctrl = 0,
                  const QString& fecha = "0")
{
    Seed::AddDeclaration({form,
                          kPeriodo,
                          ctrl,
                          fecha,
                          "12345",
                          "7",
                          {"ImpPercibido" + annexOf(form) + "=" + amount, "AccesoriosCoef=1,00",
                           "Multas=2,00", "Otros=3,00", "ImporteDepositar=dep"}});
}

// The form as the dispatcher makes it, opened with `parametros`.
std::unique_ptr<FormularioDDJJ> openForm(const QString& form, const QString& parametros,
                                         const QVector<QStringList>& lines = {})
{
    auto f = crearForm(form);
    abrirForm(*f, parametros, lines);
    return f;
}

void agentReturns()
{
    QTest::addColumn<QString>("form");
    Row("F986", "F986");
    Row("F988", "F988");
}

} // namespace

// The agents' returns F986 and F988: their amount to deposit, their warning
// against the annex, and their row found without a Codigo.
class TstAgentes : public EnvTest
{
    Q_OBJECT
    void seed() override { premises("2"); }

private slots:
    // The amount to deposit is the sum of the four amounts, worked out again
    // on any change of them; typed over (a row of one), it takes digits and
    // the decimal symbol only, and leaving it rounds to cents.
    void importeDepositar_data()
    {
        // typed: informed, accessories, fines, others; or the amount to deposit alone
        Columns<QStringList, QString>("typed", "expected");
        Row("all blank", QStringList{"", "", "", ""}, "0,00");
        Row("only informed", QStringList{"1.000,50", "", "", ""}, "1.000,50");
        Row("partial", QStringList{"", "10", "", "0,25"}, "10,25");
        Row("all four", QStringList{"1.234,56", "1", "2,5", "1000"}, "2.238,06");
        Row("informed led by a comma", QStringList{",5", "1", "", ""}, "1,00");
        Row("typed over: third decimal rounds", QStringList{"150,555"}, "150,56");
        Row("typed over: a dot is no separator", QStringList{"1.5"}, "15,00");
        Row("typed over: letters are refused", QStringList{"12a3"}, "123,00");
        Row("typed over: thousands", QStringList{"1234,5"}, "1.234,50");
    }
    void importeDepositar()
    {
        const auto [typed, expected] = Fetch<QStringList, QString>("typed", "expected");
        for (const QString form : {"F986", "F988"}) {
            auto f = openForm(form, nuevo(form));
            Person p(*f);
            const QStringList names{informedField(form), "txtAccesorioCoef", "txtMultas",
                                    "txtOtros"};
            if (typed.size() == 1) {
                p.retype("txtImporteDepositar", typed[0]);
                p.leave("txtImporteDepositar");
            } else {
                for (int i = 0; i < names.size(); ++i)
                    (*f)[names[i]].setText(typed[i]);
                p.retype(names[3], "9");
                p.retype(names[3], typed[3]);
            }
            QCOMPARE((*f)["txtImporteDepositar"].text(), expected);
        }
    }

    // A save the database refuses tells why, keeps the form open with what
    // was typed, and leaves no row of it: not the return without its
    // registration, nor the other way round.
    void refusedSaveKeepsTheForm_data() { BrokenDatabase::Rows(); }
    void refusedSaveKeepsTheForm()
    {
        FETCH_BREAKAGE(how);
        auto f = openForm("F986", nuevo("F986"));
        Person p(*f);
        p.type("txtImpPerF985", "500");
        p.leave("txtImpPerF985");
        BrokenDatabase::Break(how, "TPadrones_Formularios");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), BrokenDatabase::SaveFailure(how));
        QVERIFY(f->isLoaded());
        QCOMPARE((*f)["txtImpPerF985"].text(), QStringLiteral("500,00"));
        BrokenDatabase::Mend();
        QCOMPARE(Db::count("F986"), 0);
        if (how == Breakage::Damaged)
            return;
        QCOMPARE(Db::count("TPadrones_Formularios"), 0);
        // With the disk writable again the same Aceptar saves.
        p.click("cmdAceptar");
        QVERIFY(!f->isLoaded());
        QCOMPARE(Db::count("F986"), 1);
        QCOMPARE(Db::count("TPadrones_Formularios"), 1);
    }

    void acceptRequiresTheAmountsAndSaves_data() { agentReturns(); }
    void acceptRequiresTheAmountsAndSaves()
    {
        QFETCH(QString, form);
        auto f = openForm(form, nuevo(form));
        QCOMPARE((*f)["lblDomicilio"].text(), QStringLiteral("Domicilio Fiscal"));
        QCOMPARE((*f)["txtContribuyente"].text(), QStringLiteral("GÓMEZ, ANA"));
        Person p(*f);
        p.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), "Debe ingresar el Importe " +
                                           QString(form == "F986" ? "retenido" : "percibido") +
                                           " según detalle " + annexOf(form));
        // Leaving an amount works the sum out: the amount to deposit is found
        // blank only when no amount was left, as with a figure set from outside.
        auto g = openForm(form, nuevo(form));
        (*g)[informedField(form)].setText("500,00");
        Person(*g).click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), QStringLiteral("Debe ingresar el Importe a Depositar"));
        QCOMPARE(g->focused(), QStringLiteral("txtImporteDepositar"));
        p.type(informedField(form), "500");
        p.leave(informedField(form));
        p.retype("txtImporteDepositar", "480");
        p.click("cmdAceptar");
        QVERIFY(!f->isLoaded());
        QCOMPARE(
            Db::rows("SELECT Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, ctrl, "
                     "RazonSocial, Contribuyente, ImpPercibido" +
                     annexOf(form) + ", AccesoriosCoef, Multas, Otros, ImporteDepositar FROM " +
                     form),
            QStringList{kPadron + "|" + kObjeto +
                        "|03-2024|False|0|0|ALMACÉN O'HIGGINS|GÓMEZ, ANA|500,00|0,00|0,00|"
                        "0,00|480,00"});
        QCOMPARE(Db::rows("SELECT idFormulario, Rectificativa, FechaRectificativa FROM "
                          "TPadrones_Formularios"),
                 QStringList{form + "|False|0"});
        QCOMPARE(env->ui().messages().size(), 2);
    }

    void warningAgainstTheAnnexSavesAllTheSame_data()
    {
        Columns<QString, QString, bool>("form", "typed", "warned");
        Row("F986 one cent off", "F986", "100,01", true);
        Row("F988 one cent off", "F988", "99,99", true);
        Row("F986 equal", "F986", "100", false);
    }

    void warningAgainstTheAnnexSavesAllTheSame()
    {
        const auto [form, typed, warned] = Fetch<QString, QString, bool>("form", "typed", "warned");
        storeVersion(annexOf(form), "TotalPercepciones", "100,00");
        auto f = openForm(form, nuevo(form));
        Person p(*f);
        p.type(informedField(form), typed);
        p.leave(informedField(form));
        p.click("cmdAceptar");
        QVERIFY(!f->isLoaded());
        QCOMPARE(Db::count(form), 1);
        QCOMPARE(env->ui().messages().size(), warned ? 1 : 0);
        if (!warned)
            return;
        QCOMPARE(env->ui().messages().last().title, QStringLiteral("Advertencia"));
        QCOMPARE(env->ui().lastText(),
                 "El importe total no coincide con el declarado en el Formulario " + annexOf(form) +
                     " \r\nImporte declarado: $ 100,00\r\nRevise por favor...");
    }

    void rectificationIsKeyedWithoutCodigo()
    {
        declareAgent("F986", "700,00");
        F986 f;
        abrirForm(f, rectificativa("F986", true, "0", "1", "10-04-2024"));
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
        QCOMPARE(Db::rows("SELECT Rectificativa, FechaRectificativa, ctrl, Multas, "
                          "ImporteDepositar FROM F986 ORDER BY Id"),
                 (QStringList{"False|0|0|2,00|dep", "Verdadero|10-04-2024|1|5,00|709,00"}));
        // Opened again, the same version is updated in place.
        abrirForm(f, existente("F986", "Verdadero", "10-04-2024", "1"));
        QCOMPARE(f["txtMultas"].text(), QStringLiteral("5,00"));
        Person(f).retype("txtImporteDepositar", "1000");
        Person(f).click("cmdAceptar");
        QCOMPARE(Db::column("SELECT ImporteDepositar FROM F986 WHERE ctrl = '1'"),
                 QStringList{"1.000,00"});
        QCOMPARE(Db::count("TPadrones_Formularios"), 2);
    }

    void f988ReadsZeroAsFalse()
    {
        auto f = openForm("F988", cabeza("F988") + ";Rectificativa=0;FechaRectificativa=0;"
                                                   "Nuevo=Verdadero;ConDatos=Falso;ctrl=0;");
        QVERIFY(f->Parametros.contains("Rectificativa=Falso;"));
        QVERIFY(f->Parametros.contains("FechaRectificativaNueva=0;"));
        QCOMPARE((*f)["optOriginal"].value(), 1);
        QCOMPARE((*f)["txtFechaDDJJ"].text(), QStringLiteral("__-__-____"));
        Person p(*f);
        p.type("txtImpPerF987", "10");
        p.leave("txtImpPerF987");
        p.click("cmdAceptar");
        QCOMPARE(Db::rows("SELECT Rectificativa, FechaRectificativa FROM F988"),
                 QStringList{"False|0"});
    }

    void cancelNeverRemovesASavedReturn()
    {
        declareAgent("F988", "50,00");
        auto f = openForm("F988", existente("F988"));
        Person(*f).click("cmdCancelar");
        QVERIFY(!f->isLoaded());
        QCOMPARE(Db::count("TPadrones_Formularios"), 1);
        QCOMPARE(Db::count("F988"), 1);
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
        Db::exec("UPDATE tPadronesComerciales SET grupo = '3'");
        env->ui().onShow("GenerarDisco", [&](Controller& w) {
            Person p(w);
            p.retype("txtDestino", destino);
            p.retype("txtCantidadImpresiones", "1");
            p.click("cmdAceptar");
        });
        auto f = openForm("F986", nuevo("F986"));
        Person p(*f);
        p.type("txtImpPerF985", "1234,5");
        p.leave("txtImpPerF985");
        p.type("txtMultas", "10");
        p.leave("txtMultas");
        p.click("cmdGenerar");
        SetReportPrinter(nullptr);
        QCOMPARE(Db::rows("SELECT ImpPercibidoF985, Multas, ImporteDepositar FROM F986"),
                 QStringList{"1.234,50|10,00|1.244,50"});
        QVERIFY(f->Parametros.contains("Nuevo=Falso"));
        QVERIFY(QFile::exists(destino + "/09860324.DJ"));
        QVERIFY(!printer.files().isEmpty());
    }
};

QTEST_MAIN(TstAgentes)
#include "tst_agentes.moc"
