#include <QtTest>

#include "Db.h"
#include "FormFixture.h"
#include "Person.h"
#include "declarations/F2001.h"
#include "declarations/F976.h"

using namespace fx;

namespace {

QStringList actividad(const QString& codigo, const QString& base, const QString& impuesto)
{
    return {codigo, QStringLiteral("COMERCIO ") + codigo, base, QStringLiteral("3,5"), impuesto};
}

} // namespace

// The monthly returns F976 and F2001 driven as a person: their computation,
// their lines, the versions of a declaration and the warnings against the
// annexes.
class TstDeclaracionMensual : public EnvTest
{
    Q_OBJECT
    void seed() override { premises("0", "0", "0"); }

private slots:
    // A rate typed above the levy is saved as typed, and "Modificar" shows
    // every saved figure again; Cancelar there keeps the lines.
    void savedFiguresComeBackInModificar()
    {
        F976 form;
        abrirForm(form, nuevo("F976"),
                  {actividad("101", "10.000,00", "350,00"), actividad("202", "2.000,00", "70,00")});
        QCOMPARE(form["txtRazonSocial"].text(), QStringLiteral("ALMACÉN O'HIGGINS"));
        QCOMPARE(form["txtPeriodo"].text(), kPeriodo);
        Person p(form);
        for (const QString typed : {"txtTasa=500", "txtRetenciones=100", "txtMultas=12,5"}) {
            p.type(typed.section('=', 0, 0), typed.section('=', 1));
            p.leave(typed.section('=', 0, 0));
        }
        QCOMPARE(form["txtTotalAPagar"].text(), QStringLiteral("412,50"));
        p.click("cmdAceptar");
        QCOMPARE(Db::rows("SELECT Tasa, Retenciones, Multas, TotalAPagar, Rectificativa, ctrl FROM "
                          "F976"),
                 QStringList{"500,00|100,00|12,50|412,50|False|0"});
        abrirForm(form, existente("F976"));
        QCOMPARE(form["gridFormulario"].rowCount(), 2);
        QCOMPARE((QStringList{form["txtTasa"].text(), form["txtRetenciones"].text(),
                              form["txtTotalAPagar"].text()}),
                 (QStringList{"500,00", "100,00", "412,50"}));
        QVERIFY(!form["optRectificativa"].enabled());
        Person(form).click("cmdCancelar");
        QCOMPARE(Db::count("F976_Detalle"), 2);
    }

    // Each figure typed and left, the form computes the rest, each step to two
    // decimals; a negative total asks before it is accepted.
    void computation_data()
    {
        // typed: field=value, typed in this order; expected: field=value
        Columns<QString, QString, QStringList, QStringList, bool>("form", "impuesto", "typed",
                                                                  "expected", "negative");
        auto row = [](const char* name, const char* form, const char* impuesto, const char* typed,
                      const QString& expected, bool negative) {
            Row(name, form, impuesto, QString(typed).split(' ', Qt::SkipEmptyParts),
                QString(expected).split(' '), negative);
        };
        const char* f976 = "txtSubtotalDeterminado=%1 txtSubtotalDeterminado2=%2 txtSaldo=%3 "
                           "txtSaldo2=%4 txtTotalAPagar=%5";
        const char* f2001 = "txtSubtotalCol12=%1 txtSubtotalColumna2=%2 txtDifCols12=%3 "
                            "txtDifColumna2=%4 txtTotalAPagar=%5";
        auto out = [](const char* pattern, const char* values) {
            QString text = pattern;
            for (const QString& v : QString(values).split(' '))
                text = text.arg(v);
            return text;
        };
        row("F976 thousands", "F976", "1.234,56",
            "txtRetenciones=1000 txtPercepciones=200,1 txtAccesorios=10 txtMultas=5,5",
            out(f976, "1.200,10 1.234,56 0,00 34,46 49,96"), false);
        row("F976 millions", "F976", "1.234.567,89", "txtTasa=2000000 txtPagoACuenta=765432,11",
            out(f976, "0,00 2.000.000,00 0,00 2.000.000,00 1.234.567,89"), false);
        row("F976 favour exceeds", "F976", "500,00", "txtRetenciones=600 txtSaldoAFavorDDJJ=50,25",
            out(f976, "650,25 500,00 150,25 0,00 0,00"), true);
        row("F976 favour eaten by fines", "F976", "500,00", "txtRetenciones=600 txtMultas=200",
            out(f976, "600,00 500,00 100,00 0,00 100,00"), false);
        row("F976 credits equal levy", "F976", "1.000,00",
            "txtRetenciones=999,99 txtPercepciones=0,01",
            out(f976, "1.000,00 1.000,00 0,00 0,00 0,00"), false);
        row("F976 payment above", "F976", "100,00", "txtPagoACuenta=100,01",
            out(f976, "0,00 100,00 0,00 100,00 0,00"), true);
        row("F2001 levy above credits", "F2001", "1.500,00",
            "txtTotalTasaDeterminada=2000 txtSaldoAFavorDDJJ=100 txtRetenciones=200,5 "
            "txtDesgravaciones=50 txtPagoACuenta=300",
            out(f2001, "350,50 2.000,00 0,00 1.649,50 1.349,50"), false);
        row("F2001 credit surplus stays out", "F2001", "100,00", "txtRetenciones=150",
            out(f2001, "150,00 100,00 50,00 0,00 0,00"), false);
        row("F2001 columns equal with payment", "F2001", "100,00",
            "txtRetenciones=60 txtPercepciones=40 txtPagoACuenta=10",
            out(f2001, "100,00 100,00 0,00 0,00 0,00"), true);
        row("F2001 payment above difference", "F2001", "2.000,00", "txtPagoACuenta=2000,01",
            out(f2001, "0,00 2.000,00 0,00 2.000,00 0,00"), true);
    }
    void computation()
    {
        const auto [form, impuesto, typed, expected, negative] =
            Fetch<QString, QString, QStringList, QStringList, bool>("form", "impuesto", "typed",
                                                                    "expected", "negative");
        auto f = crearForm<DeclaracionMensual>(form);
        abrirForm(*f, nuevo(form), {actividad("101", "1,00", impuesto)});
        if (form == "F2001")
            QCOMPARE((*f)["txtTotalTasaDeterminada"].text(), impuesto);
        Person p(*f);
        for (const QString& pair : typed) {
            p.type(pair.section('=', 0, 0), pair.section('=', 1));
            p.leave(pair.section('=', 0, 0));
        }
        QStringList got;
        for (const QString& pair : expected)
            got << pair.section('=', 0, 0) + "=" + (*f)[pair.section('=', 0, 0)].text();
        QCOMPARE(got, expected);
        QCOMPARE(f->totalNegativo(), negative);
        if (negative && form == "F976") { // No keeps the return open
            env->ui().answer("monto negativo", Msg::No);
            p.click("cmdAceptar");
            QVERIFY(f->isLoaded());
            QCOMPARE(Db::count("F976"), 0);
        }
    }

    void rateNeverBelowLevy_data()
    {
        Columns<QString, QString, QString>("form", "field", "message");
        Row("F976", "F976", "txtTasa", "La Tasa o Mínimo no puede ser menor que el Total Impuesto");
        Row("F2001", "F2001", "txtTotalTasaDeterminada",
            "El Total Tasa Determinada no puede ser menor que el Total Impuesto");
    }
    void rateNeverBelowLevy()
    {
        const auto [form, field, message] =
            Fetch<QString, QString, QString>("form", "field", "message");
        auto f = crearForm<DeclaracionMensual>(form);
        abrirForm(*f, nuevo(form), {actividad("1", "1", "250,00")});
        Person p(*f);
        p.type(field, "249,99");
        p.leave(field);
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE((*f)[field].text(), QStringLiteral("250,00"));
        env->ui().clearMessages();
        p.type(field, "250");
        p.leave(field);
        QVERIFY(env->ui().messages().isEmpty()); // equality passes
    }

    void sixLinesFitTheSeventhIsRefused_data()
    {
        Columns<QString, QString>("form", "message");
        Row("F976", "F976", QString("No puede ingresar mas de 6 detalles"));
        Row("F2001", "F2001", QString("No puede ingresar más de 6 actividades."));
    }
    void sixLinesFitTheSeventhIsRefused()
    {
        const auto [form, message] = Fetch<QString, QString>("form", "message");
        auto f = crearForm<DeclaracionMensual>(form);
        QVector<QStringList> five;
        for (int i = 1; i <= 5; ++i)
            five << actividad(QString::number(i), "100,00", "3,50");
        abrirForm(*f, nuevo(form), five);
        scriptLines(*env, form + "_Detalle", form + "_Detalle", kActividad,
                    {actividad("6", "100,00", "3,50"), actividad("7", "100,00", "3,50")});
        Person p(*f);
        p.click("cmdAgregar");
        QCOMPARE((*f)["gridFormulario"].rowCount(), 6);
        QVERIFY(env->ui().messages().isEmpty());
        p.click("cmdAgregar");
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE(Db::count(form + "_Detalle"), 6);
    }

    void threeStatesUnderAceptarAndCancelar()
    {
        scriptLines(*env, "F976_Detalle", "F976_Detalle", kActividad,
                    {actividad("1", "1000", "35,00"), actividad("2", "1000", "35,00"),
                     actividad("3", "1000", "35,00")});
        auto state = [] {
            return QStringList{QString::number(Db::count("F976_Detalle")),
                               QString::number(Db::count("F976")),
                               QString::number(Db::count("TPadrones_Formularios"))}
                .join(u'/');
        };
        F976 form;
        abrirForm(form, nuevo("F976"));
        QVERIFY(!form["cmdCancelar"].enabled()); // an empty return is left by "Aceptar"
        Person(form).click("cmdAgregar");
        QCOMPARE(state(), QStringLiteral("1/0/0")); // lines only
        Person(form).click("cmdCancelar");
        QCOMPARE(state(), QStringLiteral("0/0/0")); // back to nothing

        abrirForm(form, nuevo("F976"));
        Person(form).click("cmdAgregar");
        Person(form).click("cmdAceptar");
        QCOMPARE(state(), QStringLiteral("1/1/1")); // header, lines, registration

        abrirForm(form, existente("F976"));
        Person(form).click("cmdAgregar");
        Person(form).click("cmdCancelar");
        QCOMPARE(state(), QStringLiteral("2/1/1")); // a saved version keeps everything

        // A new rectification with data starts from those lines; Cancelar
        // leaves the version before it as it was.
        abrirForm(form, rectificativa("F976", true, "0", "1", "20-04-2024 08:00:00"));
        QCOMPARE(state(), QStringLiteral("4/1/1"));
        Person(form).click("cmdCancelar");
        QCOMPARE(Db::rows("SELECT DISTINCT Codigo, ctrl FROM F976_Detalle"),
                 QStringList{codigo(u'O') + "|0"});
        QCOMPARE(state(), QStringLiteral("2/1/1"));

        // Accepting with no line left offers to delete the declaration.
        abrirForm(form, existente("F976"));
        env->ui().answer("todos los registros", Msg::Yes);
        Person(form).click("cmdQuitarT");
        env->ui().answer("Desea eliminar el formulario?", Msg::Yes);
        Person(form).click("cmdAceptar");
        QVERIFY(env->ui().texts().contains("No puede guardar un formulario sin comprobantes"));
        QCOMPARE(state(), QStringLiteral("0/0/0"));
        QVERIFY(!form.isLoaded());
    }

    void rectificativaSpellingsReadAlike_data()
    {
        QTest::addColumn<QString>("spelling");
        Row("Verdadero", "Verdadero");
        Row("True", "True");
    }
    void rectificativaSpellingsReadAlike()
    {
        QFETCH(QString, spelling);
        storeVersion("F976", "Retenciones", "77,00", spelling, "10-04-2024", "1");
        Db::exec("UPDATE F976 SET Tasa = '35,00'");
        writeLine("F976_Detalle", existente("F976", spelling, "10-04-2024", "1"), kActividad,
                  actividad("1", "1000", "35,00"));
        F976 form;
        abrirForm(form, existente("F976", spelling, "10-04-2024", "1"));
        QCOMPARE(form["optRectificativa"].value(), 1);
        QCOMPARE(form["txtFechaDDJJ"].text(), QStringLiteral("10-04-2024"));
        QCOMPARE(form["txtRetenciones"].text(), QStringLiteral("77,00"));
        Person(form).click("cmdCancelar");
        QCOMPARE(Db::count("F976_Detalle"), 1);
        QCOMPARE(Db::count("TPadrones_Formularios"), 1);

        // Saving again updates that row and adds no other.
        abrirForm(form, existente("F976", spelling, "10-04-2024", "1"));
        Person p(form);
        p.type("txtRetenciones", "10");
        p.leave("txtRetenciones");
        p.click("cmdAceptar");
        QCOMPARE(Db::rows("SELECT Retenciones, Rectificativa FROM F976"),
                 QStringList{"10,00|" + spelling});
        QCOMPARE(Db::count("TPadrones_Formularios"), 1);
    }

    void consultarAllowsNoChange()
    {
        storeVersion("F976", "Tasa", "35,00");
        writeLine("F976_Detalle", existente("F976"), kActividad, actividad("1", "1000", "35,00"));
        F976 form;
        abrirForm(form, existente("F976", "Falso", "0", "0", "Consultar"));
        for (const char* name : {"txtTasa", "txtRetenciones", "cmdAgregar", "cmdQuitarT",
                                 "cmdAceptar", "cmdGenerar", "optRectificativa"})
            QVERIFY2(!form[name].enabled(), name);
        Person p(form);
        p.type("txtRetenciones", "5");
        QCOMPARE(form["txtRetenciones"].text(), QStringLiteral("0,00"));
        QVERIFY(!p.closeWindow()); // no close box
        p.click("cmdCancelar");
        QVERIFY(!form.isLoaded());
        QCOMPARE(Db::count("F976_Detalle"), 1);
        QCOMPARE(Db::count("F976"), 1);
        QCOMPARE(Db::count("TPadrones_Formularios"), 1);
    }

    void rectificationDateOfAnEarlierYearIsBlanked()
    {
        F976 form;
        abrirForm(form, nuevo("F976"));
        Person p(form);
        p.click("optRectificativa");
        QCOMPARE(ReadParameter(form.Parametros, "ConDatos"), QStringLiteral("Falso"));
        QCOMPARE(ReadParameter(form.Parametros, "Rectificativa"), QStringLiteral("True"));
        QCOMPARE(form.codigo(), codigo(u'R'));
        p.type("txtFechaDDJJ", "15032023");
        QVERIFY(!p.leave("txtFechaDDJJ"));
        QCOMPARE(env->ui().lastText(), QStringLiteral("Periodo Incorrecto"));
        QCOMPARE(form["txtFechaDDJJ"].text(), QStringLiteral("__-__-____"));
        p.retype("txtFechaDDJJ", "15042024");
        QVERIFY(p.leave("txtFechaDDJJ"));
        QCOMPARE(form.fecha(), QStringLiteral("15-04-2024"));
        // Without a date a rectification takes no line.
        form["txtFechaDDJJ"].setText("__-__-____");
        p.click("cmdAgregar");
        QCOMPARE(env->ui().lastText(), QStringLiteral("Debe ingresar una fecha de rectificativa"));
    }

    void annexWarnings_data()
    {
        // f977: total of F977, "" when none; f977Rect: F977 registered as a rectification;
        // expected: "" for no warning
        Columns<QString, QString, bool, QString>("f977", "f978", "f977Rect", "expected");
        auto row = [](const char* name, const char* f977, const char* f978, bool f977Rect,
                      const QString& expected) {
            Row(name, f977, f978, f977Rect,
                (expected.isEmpty() ? expected : expected + "\r\nRevise por favor."));
        };
        row("both agree", "100,00", "50,00", false, "");
        row("both differ", "100,01", "49,00", false,
            "El importe declarado en Retenciones y Percepciones no coincide con los importes de "
            "los anexos F977 de Retenciones y F978 de Percepciones.\r\nImporte de Retenciones en "
            "anexo F977 : $100,01\r\nImporte de Percepciones en anexo F978 : $49,00");
        row("retentions by a cent", "99,99", "50,00", false,
            "El importe declarado en Retenciones no coincide con el importe del anexo F977 de "
            "Retenciones.\r\nImporte de Retenciones en anexo F977 : $99,99");
        row("perceptions", "", "1.050,00", false,
            "El importe declarado en Percepciones no coincide con el importes del anexo F978 de "
            "Percepciones.\r\nImporte de Percepciones en anexo F978 : $1.050,00");
        row("rectified annex", "90,00", "", true,
            "El importe declarado en Retenciones no coincide con el importe del anexo F977 "
            "(Rectif. N° 1 20-04-2024) de Retenciones.\r\nImporte de Retenciones en anexo F977 "
            "(Rectif. N° 1 20-04-2024) : $90,00");
        row("no annex registered", "", "", false, "");
    }
    void annexWarnings()
    {
        const auto [f977, f978, f977Rect, expected] =
            Fetch<QString, QString, bool, QString>("f977", "f978", "f977Rect", "expected");
        Db::exec("UPDATE tPadronesComerciales SET retencion = '1', percepcion = '1'");
        if (!f977.isEmpty()) {
            if (f977Rect)
                storeVersion("F977", "TotalPercepciones", "1,00", "False", "0", "0");
            storeVersion("F977", "TotalPercepciones", f977, f977Rect ? "Verdadero" : "False",
                         f977Rect ? "20-04-2024" : "0", f977Rect ? "1" : "0");
        }
        if (!f978.isEmpty())
            storeVersion("F978", "TotalPercepciones", f978);
        F976 form;
        abrirForm(form, nuevo("F976"), {actividad("1", "10000", "350,00")});
        Person p(form);
        p.type("txtRetenciones", "100");
        p.leave("txtRetenciones");
        p.type("txtPercepciones", "50");
        p.leave("txtPercepciones");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().messages().isEmpty() ? QString() : env->ui().lastText(), expected);
        if (!expected.isEmpty())
            QCOMPARE(env->ui().messages().last().title, QStringLiteral("Advertencia... "));
        QCOMPARE(Db::count("F976"), 1); // a warning never stops the saving
    }

    void removingALineRecomputes()
    {
        F976 form;
        abrirForm(form, nuevo("F976"),
                  {actividad("1", "1000", "35,00"), actividad("2", "2000", "70,00")});
        Person p(form);
        QVERIFY(!form["cmdQuitar"].enabled());
        p.clickRow("gridFormulario", 0);
        QVERIFY(form["cmdQuitar"].enabled());
        env->ui().answer("Desea eliminar el registro?", Msg::Yes);
        p.click("cmdQuitar");
        QCOMPARE(form["gridFormulario"].rowCount(), 1);
        QCOMPARE(form["txtImpuesto"].text(), QStringLiteral("70,00"));
        QCOMPARE(form["txtTasa"].text(), QStringLiteral("70,00"));
        QVERIFY(!form["cmdQuitar"].enabled());
    }
};

QTEST_GUILESS_MAIN(TstDeclaracionMensual)
#include "tst_declaracion_mensual.moc"
