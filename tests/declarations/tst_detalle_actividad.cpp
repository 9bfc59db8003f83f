#include <QtTest>

#include <memory>

#include "DetalleTestData.h"
#include "Person.h"
#include "TestSupport.h"
#include "declarations/F2001_Detalle.h"
#include "declarations/F976_Detalle.h"
#include "registry/Busqueda.h"

using namespace DetalleTest;

namespace {

std::unique_ptr<DetalleDialog> Dialogo(const QString& formulario)
{
    if (formulario == QStringLiteral("F976"))
        return std::make_unique<F976_Detalle>();
    return std::make_unique<F2001_Detalle>();
}

// A dialog opened by the form's "Agregar" (no `id`) or "Modificar".
std::unique_ptr<DetalleDialog> Abrir(const QString& formulario, const QString& id = {},
                                     const QStringList& ultimo = {})
{
    auto d = Dialogo(formulario);
    d->Parametros = Parametros(formulario, id);
    d->EsAgrega = id.isEmpty();
    d->Ultimo = ultimo;
    d->load();
    return d;
}

void Linea(const QString& formulario, const QString& codigoDetalle, const QString& actividad,
           const QString& base)
{
    gAccess().Execute(QStringLiteral("INSERT INTO %1_Detalle (Codigo,FechaRectificativa,"
                                     "CodigoDetalle,TipoActividad,CodigoActividad,BaseImponible,"
                                     "Alicuota,Impuesto,ctrl) VALUES ('%2','0','%3','Comercio',"
                                     "'%4','%5','2,40','0,00','0')")
                          .arg(formulario, kCodigo, codigoDetalle, actividad, base));
}

void Rate(DetalleDialog& d, const QString& rate)
{
    // A rate of the list is chosen; another one is typed into the open list,
    // which reaches the field as its text and a change.
    Person p(d);
    Field& f = d.field(QStringLiteral("txtAlicuota"));
    if (DetalleActividad::Alicuotas().contains(rate)) {
        p.choose(QStringLiteral("txtAlicuota"), rate);
        return;
    }
    p.focus(QStringLiteral("txtAlicuota"));
    f.setListIndex(-1);
    f.setText(rate);
    d.fire(QStringLiteral("txtAlicuota"), Ev::Change);
}

} // namespace

// The line dialogs of the monthly returns, driven as a person would.
class TstDetalleActividad : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
    }
    void cleanup() { env.reset(); }

    void formularios_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::newRow("F976") << "F976";
        QTest::newRow("F2001") << "F2001";
    }

    void blankActivityIsUnclassifiedOnce_data() { formularios_data(); }
    void blankActivityIsUnclassifiedOnce()
    {
        QFETCH(QString, formulario);
        const QString tabla = formulario + QStringLiteral("_Detalle");
        for (int vez = 0; vez < 2; ++vez) {
            auto d = Abrir(formulario);
            Person p(*d);
            p.type("txtBaseImponible", "1000");
            p.leave("txtBaseImponible");
            Rate(*d, "2,40");
            p.click("cmdAceptar");
            QCOMPARE(d->Aceptado, vez == 0);
        }
        QCOMPARE(Columna(tabla, "CodigoActividad"), QStringList{"999999"});
        QCOMPARE(Columna(tabla, "TipoActividad"), QStringList{"Actividades A Clasificar"});
        QCOMPARE(Columna(tabla, "CodigoDetalle"), QStringList{"0001"});
        QCOMPARE(env->ui().lastText(),
                 QString("Ya existe un detalle con esta actividad. Verifique.-"));
        QCOMPARE(env->ui().messages().size(), 1);
    }

    void taxOfTheLine_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("alicuota");
        QTest::addColumn<QString>("baseMostrada");
        QTest::addColumn<QString>("tasa");
        QTest::newRow("1000 at 2.40") << "F976"
                                      << "1000"
                                      << "2,40"
                                      << "1.000,00"
                                      << "24,00";
        QTest::newRow("rate 0 accepted") << "F976"
                                         << "1000"
                                         << "0,00"
                                         << "1.000,00"
                                         << "0,00";
        QTest::newRow("millions grouped") << "F976"
                                          << "1234567,89"
                                          << "2,40"
                                          << "1.234.567,89"
                                          << "29.629,63";
        QTest::newRow("rounded to cents") << "F2001"
                                          << "333,33"
                                          << "0,43"
                                          << "333,33"
                                          << "1,43";
        QTest::newRow("half cent up") << "F2001"
                                      << "112,5"
                                      << "0,60"
                                      << "112,50"
                                      << "0,68";
        QTest::newRow("rate off the list") << "F976"
                                           << "2000"
                                           << "1,50"
                                           << "2.000,00"
                                           << "30,00";
        QTest::newRow("top rate") << "F2001"
                                  << "1000000"
                                  << "6,00"
                                  << "1.000.000,00"
                                  << "60.000,00";
    }
    void taxOfTheLine()
    {
        QFETCH(QString, formulario);
        QFETCH(QString, base);
        QFETCH(QString, alicuota);
        QFETCH(QString, baseMostrada);
        QFETCH(QString, tasa);
        auto d = Abrir(formulario);
        Person p(*d);
        p.type("txtBaseImponible", base);
        p.leave("txtBaseImponible");
        Rate(*d, alicuota);
        QCOMPARE(d->field("txtTasa").text(), tasa);
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        const QString tabla = formulario + QStringLiteral("_Detalle");
        QCOMPARE(Columna(tabla, "BaseImponible"), QStringList{baseMostrada});
        QCOMPARE(Columna(tabla, "Alicuota"), QStringList{alicuota});
        QCOMPARE(Columna(tabla, "Impuesto"), QStringList{tasa});
        QCOMPARE(Columna(tabla, "FechaRectificativa"), QStringList{"0"});
        QCOMPARE(Columna(tabla, "ctrl"), QStringList{"0"});
        VERIFY_UI_CLEAN(*env);
    }

    void newLineShowsZeros()
    {
        auto d = Abrir("F976");
        QCOMPARE(d->field("txtBaseImponible").text(), QString("0,00"));
        QCOMPARE(d->field("txtAlicuota").text(), QString("0,00"));
        QCOMPARE(d->field("txtTasa").text(), QString("0,00"));
        QCOMPARE(d->field("txtAlicuota").listCount(), 8);
        QCOMPARE(d->field("txtAlicuota").itemText(7), QString("6,00"));
        QVERIFY(d->field("txtIdActividad").enabled());
        QVERIFY(d->field("cmdPrincipal").enabled());
    }

    void editKeepsTheLineNumber_data() { formularios_data(); }
    void editKeepsTheLineNumber()
    {
        QFETCH(QString, formulario);
        const QString tabla = formulario + QStringLiteral("_Detalle");
        Linea(formulario, "0001", "111111", "100,00");
        Linea(formulario, "0002", "222222", "200,00");
        auto d = Abrir(formulario, "0002");
        QCOMPARE(d->field("txtIdActividad").text(), QString("222222"));
        QCOMPARE(d->field("txtBaseImponible").text(), QString("200,00"));
        QCOMPARE(d->field("txtAlicuota").listIndex(), 5);
        QVERIFY(!d->field("txtIdActividad").enabled());
        QVERIFY(!d->field("cmdPrincipal").enabled());
        Person p(*d);
        p.retype("txtBaseImponible", "5000");
        p.leave("txtBaseImponible");
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(Columna(tabla, "CodigoDetalle"), (QStringList{"0001", "0002"}));
        QCOMPARE(Columna(tabla, "CodigoActividad"), (QStringList{"111111", "222222"}));
        QCOMPARE(Columna(tabla, "BaseImponible"), (QStringList{"100,00", "5.000,00"}));
        QCOMPARE(Columna(tabla, "Impuesto").last(), QString("120,00"));
        VERIFY_UI_CLEAN(*env);
    }

    void lineNumbers_data()
    {
        QTest::addColumn<QStringList>("existentes");
        QTest::addColumn<QString>("siguiente");
        QTest::newRow("first") << QStringList{} << "0001";
        QTest::newRow("second") << QStringList{"0001"} << "0002";
        QTest::newRow("after a gap") << QStringList{"0001", "0007"} << "0008";
        QTest::newRow("after an adjustment") << QStringList{"0001", "9999"} << "10000";
        QTest::newRow("past the adjustment") << QStringList{"0001", "9999", "10000"} << "10001";
    }
    void lineNumbers()
    {
        QFETCH(QStringList, existentes);
        QFETCH(QString, siguiente);
        int n = 0;
        for (const QString& codigo : existentes)
            Linea("F976", codigo, QString::number(100000 + ++n), "1,00");
        auto d = Abrir("F976");
        Person p(*d);
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QVERIFY(Columna("F976_Detalle", "CodigoDetalle").contains(siguiente));
        QCOMPARE(Columna("F976_Detalle", "CodigoDetalle").size(), existentes.size() + 1);
    }

    void recallOfThePreviousLine()
    {
        const QStringList ultimo{"0001", "620100", "Comercio", "1.500,00", "3,60", "54,00"};
        auto d = Abrir("F976", {}, ultimo);
        Person p(*d);
        p.focus("txtBaseImponible");
        QVERIFY(d->field("lblF3").visible());
        p.key("txtBaseImponible", KeyCode::F3);
        QCOMPARE(d->field("txtBaseImponible").text(), QString("1.500,00"));
        QCOMPARE(d->focused(), QString("txtAlicuota"));
        p.key("txtAlicuota", KeyCode::F3);
        QCOMPARE(d->field("txtAlicuota").listIndex(), 6);
        QCOMPARE(d->field("txtTasa").text(), QString("54,00"));
        p.click("cmdAceptar");
        QVERIFY(!d->field("lblF3").visible());
        QCOMPARE(Columna("F976_Detalle", "BaseImponible"), QStringList{"1.500,00"});
    }

    void recallDoesNothingInAnEdit()
    {
        Linea("F2001", "0001", "111111", "100,00");
        auto d = Abrir("F2001", "0001", {"0001", "111111", "X", "9.999,00", "6,00", "599,94"});
        Person p(*d);
        p.focus("txtBaseImponible");
        QVERIFY(!d->field("lblF3").visible());
        p.key("txtBaseImponible", KeyCode::F3);
        QCOMPARE(d->field("txtBaseImponible").text(), QString("100,00"));
        QCOMPARE(d->focused(), QString("txtBaseImponible"));
    }

    void recallOfABlankCellStays()
    {
        auto d = Abrir("F976", {}, {"0001", "1", "X", "", "", ""});
        Person p(*d);
        p.key("txtTasa", KeyCode::F3);
        QCOMPARE(d->field("txtTasa").text(), QString());
        QCOMPARE(d->focused(), QString("txtTasa"));
    }

    // Each form asks for the missing data in its own order; F2001 names the
    // activity before it asks for the tax.
    void orderOfChecks_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::addColumn<bool>("sinAlicuota");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<QString>("actividad");
        QTest::addColumn<QString>("foco");
        QTest::newRow("F976 rate") << "F976" << true << "Debe ingresar el dato Alicuota"
                                   << ""
                                   << "txtAlicuota";
        QTest::newRow("F2001 rate") << "F2001" << true << "Debe ingresar el dato Alicuota"
                                    << ""
                                    << "txtAlicuota";
        QTest::newRow("F976 tax") << "F976" << false << "Debe ingresar el dato Tasa"
                                  << ""
                                  << "txtTasa";
        QTest::newRow("F2001 tax") << "F2001" << false << "Debe ingresar el dato Tasa"
                                   << "999999"
                                   << "txtTasa";
    }
    void orderOfChecks()
    {
        QFETCH(QString, formulario);
        QFETCH(bool, sinAlicuota);
        QFETCH(QString, mensaje);
        QFETCH(QString, actividad);
        QFETCH(QString, foco);
        auto d = Abrir(formulario);
        Person p(*d);
        p.retype("txtTasa", "");
        if (sinAlicuota)
            d->field("txtAlicuota").setListIndex(-1);
        p.click("cmdAceptar");
        QVERIFY(!d->Aceptado);
        QCOMPARE(env->ui().texts(), QStringList{mensaje});
        QCOMPARE(d->field("txtIdActividad").text(), actividad);
        QCOMPARE(d->focused(), foco);
        QVERIFY(Columna(formulario + "_Detalle", "Id").isEmpty());
    }

    // A pasted amount that starts with its decimal symbol is refused.
    void amountStartingWithTheSeparator_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::addColumn<QString>("mensaje");
        QTest::newRow("F976") << "F976"
                              << "El dato ingresado es incorrecto. Por favor verifique.";
        QTest::newRow("F2001") << "F2001"
                               << "El dato ingresado es incorrecto. Verifique por favor.";
    }
    void amountStartingWithTheSeparator()
    {
        QFETCH(QString, formulario);
        QFETCH(QString, mensaje);
        auto d = Abrir(formulario);
        Person p(*d);
        p.focus("txtBaseImponible");
        d->field("txtBaseImponible").setText(",5");
        QVERIFY(!p.leave("txtBaseImponible"));
        QCOMPARE(env->ui().lastText(), mensaje);
        QCOMPARE(env->ui().messages().last().title, QString("Advertencia..."));
        QCOMPARE(env->ui().messages().last().style, Msg::Exclamation);
        QCOMPARE(d->field("txtBaseImponible").text(), QString("0,00"));
        QCOMPARE(d->focused(), QString("txtBaseImponible"));
    }

    // The search offers the premises' own activities; the one chosen is the
    // line's, and a second line of it is refused.
    void searchOfThePremisesActivities_data() { formularios_data(); }
    void searchOfThePremisesActivities()
    {
        QFETCH(QString, formulario);
        gAccess().Execute("INSERT INTO Actividades_x_padrones (cuit, padron, objeto, ActP, "
                          "ActP_Desc, Act1, Act1_Desc) VALUES ('20123456786', '" +
                          kPadron + "', '" + kObjeto +
                          "', '471110', 'Venta al por menor', '620100', "
                          "'Servicios de consultores en informática')");
        QString pedido, nombre;
        int ofrecidas = 0;
        for (int vez = 0; vez < 2; ++vez) {
            env->ui().onShow("Busqueda", [&](Controller& c) {
                auto& b = static_cast<Busqueda&>(c);
                pedido = b.SelectCommandText;
                nombre = b.NombreFormulario;
                ofrecidas = c.field("lstRegistros").listCount();
                Person(c).choose("lstRegistros", "Servicios de consultores en informática");
                Person(c).dblClick("lstRegistros");
            });
            auto d = Abrir(formulario);
            Person p(*d);
            p.click("cmdPrincipal");
            QCOMPARE(d->field("txtIdActividad").text(), QString("620100"));
            p.type("txtBaseImponible", "10");
            p.click("cmdAceptar");
            QCOMPARE(d->Aceptado, vez == 0);
        }
        QCOMPARE(ofrecidas, 2);
        QCOMPARE(nombre, formulario);
        QVERIFY(pedido.contains("FROM ACTIVIDADES_X_PADRONES WHERE PADRON = '" + kPadron +
                                "' AND OBJETO = '" + kObjeto + "'"));
        QCOMPARE(Columna(formulario + "_Detalle", "TipoActividad"),
                 QStringList{"Servicios de consultores en informática"});
        QCOMPARE(env->ui().texts(),
                 QStringList{"Ya existe un detalle con esta actividad. Verifique.-"});
    }

    void searchLeftWithoutChoiceChangesNothing()
    {
        env->ui().onShow("Busqueda",
                         [](Controller& c) { Person(c).key("lstRegistros", KeyCode::Escape); });
        auto d = Abrir("F976");
        Person p(*d);
        p.type("txtIdActividad", "123");
        p.click("cmdPrincipal");
        QCOMPARE(d->field("txtIdActividad").text(), QString("123"));
    }

    void cancelWritesNothing()
    {
        auto d = Abrir("F2001");
        Person p(*d);
        p.type("txtBaseImponible", "10");
        p.click("cmdCancelar");
        QVERIFY(!d->Aceptado);
        QVERIFY(Columna("F2001_Detalle", "Id").isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstDetalleActividad)
#include "tst_detalle_actividad.moc"
