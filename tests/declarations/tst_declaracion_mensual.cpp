#include <QtTest>

#include "FormFixture.h"
#include "Person.h"
#include "declarations/F2001.h"
#include "declarations/F976.h"

using namespace fx;

namespace {

const QString kF976Lines = QStringLiteral("F976_Detalle");

QStringList actividad(const QString& codigo, const QString& base, const QString& impuesto)
{
    return {codigo, QStringLiteral("COMERCIO ") + codigo, base, QStringLiteral("3,5"), impuesto};
}

// Opens `form` as the dispatcher does, with `lines` already in the version.
template <class Form>
void openWithLines(Form& form, const QString& parametros, const QVector<QStringList>& lines)
{
    const QString tabla = form.definicion().tablaDetalle;
    for (const QStringList& l : lines)
        writeLine(tabla, parametros, kActividad, l);
    form.Parametros = parametros;
    form.load();
}

} // namespace

// The monthly returns F976 and F2001 driven as a person: their computation,
// their lines, the versions of a declaration and the warnings against the
// annexes.
class TstDeclaracionMensual : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
        premises(QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"));
    }
    void cleanup() { env.reset(); }

    void newReturnAcceptedThenModifiedThenRectifiedWithData()
    {
        scriptLines(
            *env, QStringLiteral("F976_Detalle"), kF976Lines, kActividad,
            {actividad("101", "10.000,00", "350,00"), actividad("202", "2.000,00", "70,00")});
        F976 form;
        form.Parametros = nuevo(QStringLiteral("F976"));
        form.load();
        Person p(form);
        QCOMPARE(form["txtRazonSocial"].text(), QStringLiteral("ALMACÉN O'HIGGINS"));
        QCOMPARE(form["txtPeriodo"].text(), kPeriodo);
        QVERIFY(!form["cmdCancelar"].enabled()); // an empty return is left by "Aceptar"
        p.click("cmdAgregar");
        p.click("cmdAgregar");
        QCOMPARE(form["gridFormulario"].rowCount(), 2);
        QCOMPARE(form["gridFormulario"].cell(1, 0), QStringLiteral("0002"));
        QCOMPARE(form["txtImpuesto"].text(), QStringLiteral("420,00"));
        QCOMPARE(form["txtTasa"].text(), QStringLiteral("420,00"));
        p.type("txtTasa", "500");
        p.leave("txtTasa");
        p.type("txtRetenciones", "100");
        p.leave("txtRetenciones");
        p.type("txtMultas", "12,5");
        p.leave("txtMultas");
        QCOMPARE(form["txtTotalAPagar"].text(), QStringLiteral("412,50"));
        p.click("cmdAceptar");
        QVERIFY(!form.isLoaded());
        QCOMPARE(
            column("SELECT Tasa || '|' || Retenciones || '|' || Multas || '|' || TotalAPagar || "
                   "'|' || Rectificativa || '|' || ctrl FROM F976"),
            QStringList{"500,00|100,00|12,50|412,50|False|0"});
        QCOMPARE(column("SELECT idFormulario || '|' || Periodo || '|' || Rectificativa FROM "
                        "TPadrones_Formularios"),
                 QStringList{"F976|03-2024|False"});

        // "Modificar" shows the same figures, and the added rate stays above
        // the levy.
        F976 again;
        again.Parametros = existente(QStringLiteral("F976"));
        again.load();
        QCOMPARE(again["gridFormulario"].rowCount(), 2);
        QCOMPARE(again["txtTasa"].text(), QStringLiteral("500,00"));
        QCOMPARE(again["txtRetenciones"].text(), QStringLiteral("100,00"));
        QCOMPARE(again["txtTotalAPagar"].text(), QStringLiteral("412,50"));
        QVERIFY(!again["optRectificativa"].enabled());
        Person(again).click("cmdCancelar");
        QCOMPARE(count("SELECT COUNT(*) FROM F976_Detalle"), 2);

        // A rectification with data starts from those lines, under a raised
        // ctrl and the new date, and leaves the original alone.
        F976 rect;
        rect.Parametros = rectificativa(QStringLiteral("F976"), true, QStringLiteral("0"),
                                        QStringLiteral("1"), QStringLiteral("15-04-2024 10:20:30"));
        rect.load();
        QCOMPARE(rect["gridFormulario"].rowCount(), 2);
        QCOMPARE(rect["txtFechaDDJJ"].text(), QStringLiteral("15-04-2024"));
        QCOMPARE(rect["txtRetenciones"].text(), QStringLiteral("100,00"));
        QCOMPARE(rect["optRectificativa"].value(), 1);
        QCOMPARE(
            column("SELECT Codigo || '|' || FechaRectificativa || '|' || CodigoDetalle || '|' "
                   "|| ctrl || '|' || Impuesto FROM F976_Detalle WHERE ctrl = '1' ORDER BY Id"),
            (QStringList{codigo(u'R') + "|15-04-2024|0001|1|350,00",
                         codigo(u'R') + "|15-04-2024|0002|1|70,00"}));
        QCOMPARE(count("SELECT COUNT(*) FROM F976_Detalle WHERE ctrl = '0'"), 2);
        Person(rect).click("cmdAceptar");
        QCOMPARE(
            column("SELECT Codigo || '|' || Rectificativa || '|' || FechaRectificativa || '|' "
                   "|| ctrl FROM F976 ORDER BY Id"),
            (QStringList{codigo(u'O') + "|False|0|0", codigo(u'R') + "|Verdadero|15-04-2024|1"}));
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 2);
        VERIFY_UI_CLEAN(*env);
    }

    void f976Computation_data()
    {
        QTest::addColumn<QString>("impuesto");
        QTest::addColumn<QStringList>("typed");    // tasa, ret, perc, saldo, acc, multas, pago
        QTest::addColumn<QStringList>("expected"); // subtotal, subtotal2, saldo, saldo2, total
        QTest::addColumn<bool>("negative");
        QTest::newRow("thousands")
            << "1.234,56" << QStringList{"", "1000", "200,1", "", "10", "5,5", ""}
            << QStringList{"1.200,10", "1.234,56", "0,00", "34,46", "49,96"} << false;
        QTest::newRow("millions") << "1.234.567,89"
                                  << QStringList{"2000000", "", "", "", "", "", "765432,11"}
                                  << QStringList{"0,00", "2.000.000,00", "0,00", "2.000.000,00",
                                                 "1.234.567,89"}
                                  << false;
        QTest::newRow("favour exceeds")
            << "500,00" << QStringList{"", "600", "", "50,25", "", "", ""}
            << QStringList{"650,25", "500,00", "150,25", "0,00", "0,00"} << true;
        QTest::newRow("favour eaten by fines")
            << "500,00" << QStringList{"", "600", "", "", "", "200", ""}
            << QStringList{"600,00", "500,00", "100,00", "0,00", "100,00"} << false;
        QTest::newRow("credits equal levy")
            << "1.000,00" << QStringList{"", "999,99", "0,01", "", "", "", ""}
            << QStringList{"1.000,00", "1.000,00", "0,00", "0,00", "0,00"} << false;
        QTest::newRow("payment above")
            << "100,00" << QStringList{"", "", "", "", "", "", "100,01"}
            << QStringList{"0,00", "100,00", "0,00", "100,00", "0,00"} << true;
    }

    void f976Computation()
    {
        QFETCH(QString, impuesto);
        QFETCH(QStringList, typed);
        QFETCH(QStringList, expected);
        QFETCH(bool, negative);
        F976 form;
        openWithLines(form, nuevo("F976"), {actividad("101", "1,00", impuesto)});
        Person p(form);
        const char* fields[] = {
            "txtTasa",       "txtRetenciones", "txtPercepciones", "txtSaldoAFavorDDJJ",
            "txtAccesorios", "txtMultas",      "txtPagoACuenta"};
        for (int i = 0; i < 7; ++i) {
            if (typed.at(i).isEmpty())
                continue;
            p.type(fields[i], typed.at(i));
            p.leave(fields[i]);
        }
        const QStringList got{form["txtSubtotalDeterminado"].text(),
                              form["txtSubtotalDeterminado2"].text(), form["txtSaldo"].text(),
                              form["txtSaldo2"].text(), form["txtTotalAPagar"].text()};
        QCOMPARE(got, expected);
        QCOMPARE(form.totalNegativo(), negative);
        // Accepting a negative total asks first; No keeps the return open.
        if (negative) {
            env->ui().answer("monto negativo", Msg::No);
            p.click("cmdAceptar");
            QVERIFY(form.isLoaded());
            QCOMPARE(count("SELECT COUNT(*) FROM F976"), 0);
        }
        VERIFY_UI_CLEAN(*env);
    }

    void f2001Computation_data()
    {
        QTest::addColumn<QString>("impuesto");
        QTest::addColumn<QStringList>("typed");    // total, saldo, ret, perc, desg, pago
        QTest::addColumn<QStringList>("expected"); // col12, col2, dif12, dif2, total
        QTest::addColumn<bool>("negative");
        QTest::newRow("levy above credits")
            << "1.500,00" << QStringList{"2000", "100", "200,5", "", "50", "300"}
            << QStringList{"350,50", "2.000,00", "0,00", "1.649,50", "1.349,50"} << false;
        QTest::newRow("credit surplus stays out")
            << "100,00" << QStringList{"", "", "150", "", "", ""}
            << QStringList{"150,00", "100,00", "50,00", "0,00", "0,00"} << false;
        QTest::newRow("columns equal with payment")
            << "100,00" << QStringList{"", "", "60", "40", "", "10"}
            << QStringList{"100,00", "100,00", "0,00", "0,00", "0,00"} << true;
        QTest::newRow("payment above difference")
            << "2.000,00" << QStringList{"", "", "", "", "", "2000,01"}
            << QStringList{"0,00", "2.000,00", "0,00", "2.000,00", "0,00"} << true;
    }

    void f2001Computation()
    {
        QFETCH(QString, impuesto);
        QFETCH(QStringList, typed);
        QFETCH(QStringList, expected);
        QFETCH(bool, negative);
        F2001 form;
        openWithLines(form, nuevo("F2001"), {actividad("101", "1,00", impuesto)});
        QCOMPARE(form["txtTotalTasaDeterminada"].text(), impuesto);
        Person p(form);
        const char* fields[] = {"txtTotalTasaDeterminada", "txtSaldoAFavorDDJJ", "txtRetenciones",
                                "txtPercepciones",         "txtDesgravaciones",  "txtPagoACuenta"};
        for (int i = 0; i < 6; ++i) {
            if (typed.at(i).isEmpty())
                continue;
            p.type(fields[i], typed.at(i));
            p.leave(fields[i]);
        }
        const QStringList got{form["txtSubtotalCol12"].text(), form["txtSubtotalColumna2"].text(),
                              form["txtDifCols12"].text(), form["txtDifColumna2"].text(),
                              form["txtTotalAPagar"].text()};
        QCOMPARE(got, expected);
        QCOMPARE(form.totalNegativo(), negative);
        VERIFY_UI_CLEAN(*env);
    }

    void rateNeverBelowLevy_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("message");
        QTest::newRow("F976") << "F976"
                              << "txtTasa"
                              << "La Tasa o Mínimo no puede ser menor que el Total Impuesto";
        QTest::newRow("F2001") << "F2001"
                               << "txtTotalTasaDeterminada"
                               << "El Total Tasa Determinada no puede ser menor que el Total "
                                  "Impuesto";
    }

    void rateNeverBelowLevy()
    {
        QFETCH(QString, form);
        QFETCH(QString, field);
        QFETCH(QString, message);
        std::unique_ptr<DeclaracionMensual> f;
        if (form == "F976")
            f = std::make_unique<F976>();
        else
            f = std::make_unique<F2001>();
        f->Parametros = nuevo(form);
        writeLine(form + "_Detalle", f->Parametros, kActividad, actividad("1", "1", "250,00"));
        f->load();
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
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("message");
        QTest::newRow("F976") << "F976"
                              << "No puede ingresar mas de 6 detalles";
        QTest::newRow("F2001") << "F2001"
                               << "No puede ingresar más de 6 actividades.";
    }

    void sixLinesFitTheSeventhIsRefused()
    {
        QFETCH(QString, form);
        QFETCH(QString, message);
        std::unique_ptr<DeclaracionMensual> f;
        if (form == "F976")
            f = std::make_unique<F976>();
        else
            f = std::make_unique<F2001>();
        QVector<QStringList> five;
        for (int i = 1; i <= 5; ++i)
            five << actividad(QString::number(i), "100,00", "3,50");
        openWithLines(*f, nuevo(form), five);
        scriptLines(*env, form + "_Detalle", form + "_Detalle", kActividad,
                    {actividad("6", "100,00", "3,50"), actividad("7", "100,00", "3,50")});
        Person p(*f);
        p.click("cmdAgregar");
        QCOMPARE((*f)["gridFormulario"].rowCount(), 6);
        QVERIFY(env->ui().messages().isEmpty());
        p.click("cmdAgregar");
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE(count("SELECT COUNT(*) FROM " + form + "_Detalle"), 6);
    }

    void threeStatesUnderAceptarAndCancelar()
    {
        scriptLines(*env, "F976_Detalle", kF976Lines, kActividad,
                    {actividad("1", "1000", "35,00"), actividad("2", "1000", "35,00"),
                     actividad("3", "1000", "35,00")});
        auto state = [] {
            return QStringList{QString::number(count("SELECT COUNT(*) FROM F976_Detalle")),
                               QString::number(count("SELECT COUNT(*) FROM F976")),
                               QString::number(count("SELECT COUNT(*) FROM TPadrones_Formularios"))}
                .join(u'/');
        };
        F976 form;
        form.Parametros = nuevo("F976");
        form.load();
        Person(form).click("cmdAgregar");
        QCOMPARE(state(), QStringLiteral("1/0/0")); // lines only
        Person(form).click("cmdCancelar");
        QCOMPARE(state(), QStringLiteral("0/0/0")); // back to nothing

        form.Parametros = nuevo("F976");
        form.load();
        Person(form).click("cmdAgregar");
        Person(form).click("cmdAceptar");
        QCOMPARE(state(), QStringLiteral("1/1/1")); // header, lines, registration

        form.Parametros = existente("F976");
        form.load();
        Person(form).click("cmdAgregar");
        Person(form).click("cmdCancelar");
        QCOMPARE(state(), QStringLiteral("2/1/1")); // a saved version keeps everything

        // Accepting with no line left offers to delete the declaration.
        form.Parametros = existente("F976");
        form.load();
        env->ui().answer("todos los registros", Msg::Yes);
        Person(form).click("cmdQuitarT");
        env->ui().answer("Desea eliminar el formulario?", Msg::Yes);
        Person(form).click("cmdAceptar");
        QVERIFY(env->ui().texts().contains("No puede guardar un formulario sin comprobantes"));
        QCOMPARE(state(), QStringLiteral("0/0/0"));
        QVERIFY(!form.isLoaded());
        VERIFY_UI_CLEAN(*env);
    }

    void cancelOnNewRectificationKeepsThePreviousVersion()
    {
        F976 form;
        openWithLines(form, nuevo("F976"), {actividad("1", "1000", "35,00")});
        Person(form).click("cmdAceptar");
        form.Parametros = rectificativa("F976", true, "0", "1", "20-04-2024 08:00:00");
        form.load();
        QCOMPARE(count("SELECT COUNT(*) FROM F976_Detalle"), 2);
        Person(form).click("cmdCancelar");
        QCOMPARE(column("SELECT Codigo || '|' || ctrl FROM F976_Detalle"),
                 QStringList{codigo(u'O') + "|0"});
        QCOMPARE(count("SELECT COUNT(*) FROM F976"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 1);
    }

    void rectificativaSpellingsReadAlike_data()
    {
        QTest::addColumn<QString>("spelling");
        QTest::newRow("Verdadero") << "Verdadero";
        QTest::newRow("True") << "True";
    }

    void rectificativaSpellingsReadAlike()
    {
        QFETCH(QString, spelling);
        storeVersion("F976", "Retenciones", "77,00", spelling, "10-04-2024", "1");
        gAccess().Execute("UPDATE F976 SET Tasa = '35,00'");
        writeLine(kF976Lines, existente("F976", spelling, "10-04-2024", "1"), kActividad,
                  actividad("1", "1000", "35,00"));
        F976 form;
        form.Parametros = existente("F976", spelling, "10-04-2024", "1");
        form.load();
        QCOMPARE(form["optRectificativa"].value(), 1);
        QCOMPARE(form["txtFechaDDJJ"].text(), QStringLiteral("10-04-2024"));
        QCOMPARE(form["txtRetenciones"].text(), QStringLiteral("77,00"));
        Person(form).click("cmdCancelar");
        QCOMPARE(count("SELECT COUNT(*) FROM F976_Detalle"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 1);

        // Saving again updates that row and adds no other.
        form.Parametros = existente("F976", spelling, "10-04-2024", "1");
        form.load();
        Person p(form);
        p.type("txtRetenciones", "10");
        p.leave("txtRetenciones");
        p.click("cmdAceptar");
        QCOMPARE(column("SELECT Retenciones || '|' || Rectificativa FROM F976"),
                 QStringList{"10,00|" + spelling});
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 1);
    }

    void consultarAllowsNoChange()
    {
        storeVersion("F976", "Tasa", "35,00");
        writeLine(kF976Lines, existente("F976"), kActividad, actividad("1", "1000", "35,00"));
        F976 form;
        form.Parametros = existente("F976", "Falso", "0", "0", "Consultar");
        form.load();
        for (const char* name : {"txtTasa", "txtRetenciones", "cmdAgregar", "cmdQuitarT",
                                 "cmdAceptar", "cmdGenerar", "optRectificativa"})
            QVERIFY2(!form[name].enabled(), name);
        Person p(form);
        p.type("txtRetenciones", "5");
        QCOMPARE(form["txtRetenciones"].text(), QStringLiteral("0,00"));
        QVERIFY(!p.closeWindow()); // no close box
        p.click("cmdCancelar");
        QVERIFY(!form.isLoaded());
        QCOMPARE(count("SELECT COUNT(*) FROM F976_Detalle"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM F976"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM TPadrones_Formularios"), 1);
    }

    void rectificationDateOfAnEarlierYearIsBlanked()
    {
        F976 form;
        form.Parametros = nuevo("F976");
        form.load();
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
        QTest::addColumn<QString>("f977"); // total of F977, "" when none
        QTest::addColumn<QString>("f978");
        QTest::addColumn<bool>("f977Rect");    // F977 registered as a rectification
        QTest::addColumn<QString>("expected"); // "" for no warning
        const QString tail = "\r\nRevise por favor.";
        QTest::newRow("both agree") << "100,00"
                                    << "50,00" << false << "";
        QTest::newRow("both differ")
            << "100,01"
            << "49,00" << false
            << "El importe declarado en Retenciones y Percepciones no coincide con los importes "
               "de los anexos F977 de Retenciones y F978 de Percepciones.\r\nImporte de "
               "Retenciones en anexo F977 : $100,01\r\nImporte de Percepciones en anexo F978 : "
               "$49,00" +
                   tail;
        QTest::newRow("retentions by a cent")
            << "99,99"
            << "50,00" << false
            << "El importe declarado en Retenciones no coincide con el importe del anexo F977 de "
               "Retenciones.\r\nImporte de Retenciones en anexo F977 : $99,99" +
                   tail;
        QTest::newRow("perceptions") << ""
                                     << "1.050,00" << false
                                     << "El importe declarado en Percepciones no coincide con el "
                                        "importes del anexo F978 de Percepciones.\r\nImporte de "
                                        "Percepciones en anexo F978 : $1.050,00" +
                                            tail;
        QTest::newRow("rectified annex")
            << "90,00"
            << "" << true
            << "El importe declarado en Retenciones no coincide con el importe del anexo F977 "
               "(Rectif. N° 1 20-04-2024) de Retenciones.\r\nImporte de Retenciones en anexo "
               "F977 (Rectif. N° 1 20-04-2024) : $90,00" +
                   tail;
        QTest::newRow("no annex registered") << ""
                                             << "" << false << "";
    }

    void annexWarnings()
    {
        QFETCH(QString, f977);
        QFETCH(QString, f978);
        QFETCH(bool, f977Rect);
        QFETCH(QString, expected);
        gAccess().Execute("UPDATE tPadronesComerciales SET retencion = '1', percepcion = '1'");
        if (!f977.isEmpty()) {
            if (f977Rect)
                storeVersion("F977", "TotalPercepciones", "1,00", "False", "0", "0");
            storeVersion("F977", "TotalPercepciones", f977, f977Rect ? "Verdadero" : "False",
                         f977Rect ? "20-04-2024" : "0", f977Rect ? "1" : "0");
        }
        if (!f978.isEmpty())
            storeVersion("F978", "TotalPercepciones", f978);
        F976 form;
        openWithLines(form, nuevo("F976"), {actividad("1", "10000", "350,00")});
        Person p(form);
        p.type("txtRetenciones", "100");
        p.leave("txtRetenciones");
        p.type("txtPercepciones", "50");
        p.leave("txtPercepciones");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().messages().isEmpty() ? QString() : env->ui().lastText(), expected);
        if (!expected.isEmpty())
            QCOMPARE(env->ui().messages().last().title, QStringLiteral("Advertencia... "));
        QCOMPARE(count("SELECT COUNT(*) FROM F976"), 1); // a warning never stops the saving
    }

    void removingALineRecomputes()
    {
        F976 form;
        openWithLines(form, nuevo("F976"),
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
        VERIFY_UI_CLEAN(*env);
    }
};

QTEST_GUILESS_MAIN(TstDeclaracionMensual)
#include "tst_declaracion_mensual.moc"
