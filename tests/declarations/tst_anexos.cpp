#include <QtTest>

#include "FormFixture.h"
#include "Person.h"
#include "declarations/F977.h"
#include "declarations/F978.h"

using namespace fx;

// The annexes: their total, their agreement with the return of the period
// (with the adjustment line under PROCOM and for the agents), and their lines.
class TstAnexos : public EnvTest
{
    Q_OBJECT
private slots:
    // An annex's total against the amount its return declared: the general
    // return allows no difference; under Procom and for the agents' annexes
    // less than $ 10,00 is adjusted by a line of its own, more refused; an
    // agent's annex without its return saves silently.
    void againstTheDeclaredAmount_data()
    {
        // declared: "" when no return is registered; outcome: the adjustment, "refused" or "silent"
        Columns<QString, QString, QString, QString, QString, QString>(
            "form", "regimen", "total", "declared", "rectified", "outcome");
        Row("F977 general one cent below refuses", "F977", "0", "99,99", "100,00", "", "refused");
        Row("F977 Procom 9,99 below adjusts", "F977", "1", "90,01", "100,00", "", "9,99");
        Row("F977 Procom 10,00 below refuses", "F977", "1", "90,00", "100,00", "", "refused");
        Row("F978 Procom above adjusts", "F978", "1", "1.005,00", "1.000,00", "", "-5,00");
        Row("F978 Procom 10,00 above refuses", "F978", "1", "1.010,00", "1.000,00", "", "refused");
        Row("F985 9,99 below adjusts", "F985", "2", "90,01", "100,00", "", "9,99");
        Row("F985 10,00 below refuses", "F985", "2", "90,00", "100,00", "", "refused");
        Row("F987 9,99 above adjusts", "F987", "2", "109,99", "100,00", "", "-9,99");
        Row("F987 10,00 above refuses", "F987", "2", "110,00", "100,00", "", "refused");
        Row("F985 without F986", "F985", "2", "999.999,00", "", "", "silent");
        Row("F987 equal", "F987", "2", "100,00", "100,00", "", "silent");
        Row("F985 rectified return", "F985", "2", "95,00", "100,00", "05-04-2024", "5,00");
    }
    void againstTheDeclaredAmount()
    {
        const auto [form, regimen, total, declared, rectified, outcome] =
            Fetch<QString, QString, QString, QString, QString, QString>(
                "form", "regimen", "total", "declared", "rectified", "outcome");
        premises(regimen);
        const bool agent = form == "F985" || form == "F987";
        const QString partner = agent ? (form == "F985" ? "F986" : "F988")
                                      : (regimen == "1" ? "F2001" : "F976");
        const QString column = agent                ? "ImpPercibido" + form
                               : form == "F977" ? QStringLiteral("Retenciones")
                                                : QStringLiteral("Percepciones");
        // An agent's return is stored without a Codigo, as its form saves it.
        if (!declared.isEmpty())
            Seed::AddDeclaration({partner, kPeriodo, rectified.isEmpty() ? 0 : 1,
                                  rectified.isEmpty() ? "0" : rectified, "12345", "7",
                                  {column + "=" + declared}});
        auto f = crearForm(form);
        abrirForm(*f, nuevo(form), {comprobante("1", total)});
        QCOMPARE((*f)["txtTotalPercepciones"].text(), total);
        Person(*f).click("cmdAceptar");
        if (outcome == "silent") {
            QVERIFY(env->ui().messages().isEmpty());
            QCOMPARE(Db::column("SELECT TotalPercepciones FROM " + form), QStringList{total});
            return;
        }
        const QString rect = rectified.isEmpty() ? "" : " (Rectif. " + rectified + ")";
        const QString head = "El importe total " +
                             QString(regimen == "0" ? "debe coincidir" : "no coincide") +
                             " con el declarado en el Formulario " + partner +
                             (agent ? " " + rect : QString()) + "\r\nImporte declarado: $ " +
                             declared + "\r\n";
        QCOMPARE(env->ui().messages().size(), 1);
        QCOMPARE(env->ui().messages().last().title, QStringLiteral("Ajuste"));
        if (outcome == "refused") {
            QCOMPARE(env->ui().lastText(), head + "Revise los importes ingresados");
            QVERIFY(f->isLoaded());
            QCOMPARE(Db::count(form), 0);
            QCOMPARE(Db::count(form + "_Detalle"), 1);
            return;
        }
        QCOMPARE(env->ui().lastText(), head + "Se ajustará automáticamente");
        QVERIFY(!f->isLoaded());
        QCOMPARE(Db::rows("SELECT CodigoDetalle, TipoComprobante, Denominacion, Cuit, "
                          "ImportePercibido FROM " +
                          form + "_Detalle WHERE CodigoDetalle = '9999'"),
                 QStringList{"9999|AJUS - Ajuste|Ajuste|00-00000000-0|" + outcome});
        QCOMPARE(Db::rows("SELECT TotalPercepciones, Domicilio, RazonSocial FROM " + form),
                 QStringList{declared + "|O'HIGGINS 1234 - CAPITAL|ALMACÉN O'HIGGINS"});
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
