#include <QtTest>

#include "FormFixture.h"
#include "Person.h"
#include "declarations/F977.h"
#include "declarations/F978.h"

using namespace fx;

// The annexes F977 and F978: their total, their agreement with the return of
// the period (with the adjustment line under PROCOM), and their lines.
class TstAnexos : public EnvTest
{
    Q_OBJECT
private slots:
    void againstTheGeneralReturnOneCentRefuses()
    {
        premises("0");
        storeVersion("F976", "Retenciones", "100,00");
        F977 form;
        abrirForm(form, nuevo("F977"), {comprobante("1", "99,99")});
        QCOMPARE(form["txtTotalPercepciones"].text(), QStringLiteral("99,99"));
        Person(form).click("cmdAceptar");
        QCOMPARE(env->ui().messages().size(), 1);
        QCOMPARE(env->ui().lastText(),
                 QStringLiteral("El importe total debe coincidir con el declarado en el Formulario "
                                "F976\r\nImporte declarado: $ 100,00\r\nRevise los importes "
                                "ingresados"));
        QCOMPARE(env->ui().messages().last().title, QStringLiteral("Ajuste"));
        QVERIFY(form.isLoaded());
        QCOMPARE(Db::count("F977"), 0);
        QCOMPARE(Db::count("F977_Detalle"), 1);
    }

    void againstProcomTheToleranceAdjusts_data()
    {
        // ajuste: "" when refused
        Columns<QString, QString, QString, QString>("form", "linea", "declarado", "ajuste");
        Row("F977 9,99 below", "F977", "90,01", "100,00", "9,99");
        Row("F977 10,00 below", "F977", "90,00", "100,00", "");
        Row("F978 above", "F978", "1.005,00", "1.000,00", "-5,00");
        Row("F978 10,00 above", "F978", "1.010,00", "1.000,00", "");
    }
    void againstProcomTheToleranceAdjusts()
    {
        QFETCH(QString, form);
        QFETCH(QString, linea);
        QFETCH(QString, declarado);
        QFETCH(QString, ajuste);
        premises("1");
        storeVersion("F2001", form == "F977" ? "Retenciones" : "Percepciones", declarado);
        auto f = crearForm(form);
        abrirForm(*f, nuevo(form), {comprobante("1", linea)});
        Person(*f).click("cmdAceptar");
        const QString head = "El importe total no coincide con el declarado en el Formulario "
                             "F2001\r\nImporte declarado: $ " +
                             declarado + "\r\n";
        if (ajuste.isEmpty()) {
            QCOMPARE(env->ui().lastText(), head + "Revise los importes ingresados");
            QVERIFY(f->isLoaded());
            QCOMPARE(Db::count(form), 0);
            return;
        }
        QCOMPARE(env->ui().lastText(), head + "Se ajustará automáticamente");
        QVERIFY(!f->isLoaded());
        QCOMPARE(Db::rows("SELECT CodigoDetalle, TipoComprobante, Cuit, ImportePercibido FROM " +
                          form + "_Detalle WHERE CodigoDetalle = '9999'"),
                 QStringList{"9999|AJUS - Ajuste|00-00000000-0|" + ajuste});
        QCOMPARE(Db::rows("SELECT TotalPercepciones, Domicilio, RazonSocial FROM " + form),
                 QStringList{declarado + "|O'HIGGINS 1234 - CAPITAL|ALMACÉN O'HIGGINS"});
    }

    void savingTwiceLeavesOneAdjustmentAndRemovalRenumbers()
    {
        premises("1");
        storeVersion("F2001", "Retenciones", "100,00");
        F977 form;
        abrirForm(form, nuevo("F977"), {comprobante("1", "50,00"), comprobante("2", "45,00")});
        Person(form).click("cmdAceptar");
        env->ui().clearMessages();
        abrirForm(form, existente("F977"));
        QCOMPARE(form["gridFormulario"].rowCount(), 3);
        Person(form).click("cmdAceptar");
        QCOMPARE(Db::count("F977_Detalle", "TipoComprobante = 'AJUS - Ajuste'"), 1);
        QCOMPARE(Db::count("F977"), 1);

        abrirForm(form, existente("F977"));
        Person p(form);
        p.clickRow("gridFormulario", 0);
        env->ui().answer("Desea eliminar el registro?", Msg::Yes);
        p.click("cmdQuitar");
        QCOMPARE(Db::rows("SELECT CodigoDetalle, ImportePercibido FROM F977_Detalle ORDER BY Id"),
                 (QStringList{"0001|45,00", "0002|5,00"}));
        QCOMPARE(form["gridFormulario"].cell(1, 0), QStringLiteral("0002"));
        QCOMPARE(form["txtTotalPercepciones"].text(), QStringLiteral("50,00"));
    }

    void creditNoteReducesTheTotal()
    {
        premises("2");
        F978 form;
        abrirForm(form, nuevo("F978"),
                  {comprobante("1", "1.200,00"),
                   comprobante("2", "200,50", "NCA - Nota de Crédito A"),
                   comprobante("3", "0,50")});
        QCOMPARE(form["txtTotalPercepciones"].text(), QStringLiteral("1.000,00"));
        QCOMPARE(form["txtTransporte"].text(), QStringLiteral("0,00"));
        QCOMPARE(form["gridFormulario"].cell(1, 2), QStringLiteral("NCA - Nota de Crédito A"));
        // Regime 2 has no return to compare with.
        Person(form).click("cmdAceptar");
        QVERIFY(env->ui().messages().isEmpty());
        QCOMPARE(Db::column("SELECT TotalPercepciones FROM F978"), QStringList{"1.000,00"});
    }

    void linesComeThroughTheDialogAndRectificationCopiesThem()
    {
        premises("2");
        scriptLines(*env, "F977_Detalle", "F977_Detalle", kComprobante,
                    {comprobante("7", "10,00"), comprobante("8", "")});
        F977 form;
        abrirForm(form, nuevo("F977"));
        Person(form).click("cmdAgregar");
        Person(form).click("cmdAgregar");
        QCOMPARE(form["gridFormulario"].rowCount(), 2);
        Person(form).click("cmdAceptar");
        // The copy writes one blank for a type the line lacked.
        Db::exec("UPDATE F977_Detalle SET TipoComprobante = NULL");
        abrirForm(form, rectificativa("F977", true, "0", "1", "02-05-2024 09:00:00"));
        QCOMPARE(Db::rows("SELECT CodigoDetalle, FechaRectificativa, ctrl, TipoComprobante, "
                          "NroComprobante FROM F977_Detalle WHERE ctrl = '1'"),
                 (QStringList{"0001|02-05-2024|1| |000000000000007",
                              "0002|02-05-2024|1| |000000000000008"}));
    }
};

QTEST_GUILESS_MAIN(TstAnexos)
#include "tst_anexos.moc"
