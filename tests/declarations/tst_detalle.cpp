#include <QtTest>

#include "BrokenDatabase.h"
#include "Db.h"
#include "FormFixture.h"
#include "Person.h"
#include "TestSupport.h"
#include "declarations/DetalleActividad.h"
#include "registry/Busqueda.h"

using namespace fx;

namespace {

void Linea(const QString& formulario, const QString& codigoDetalle, const QString& actividad,
           const QString& base)
{
    Db::insert(formulario + "_Detalle",
               {"Codigo=" + codigo(u'O'), "FechaRectificativa=0", "CodigoDetalle=" + codigoDetalle,
                "TipoActividad=Comercio", "CodigoActividad=" + actividad, "BaseImponible=" + base,
                "Alicuota=2,40", "Impuesto=0,00", "ctrl=0"});
}

// A rate of the list is chosen; another one is typed into the open list,
// which reaches the field as its text and a change.
void Rate(DetalleDialog& d, const QString& rate)
{
    Person p(d);
    if (DetalleActividad::Alicuotas().contains(rate)) {
        p.choose("txtAlicuota", rate);
        return;
    }
    p.focus("txtAlicuota");
    d.field("txtAlicuota").setListIndex(-1);
    d.field("txtAlicuota").setText(rate);
    d.fire("txtAlicuota", Ev::Change);
}

// The three data every receipt needs; the rest is left to its defaults.
void Minimo(DetalleDialog& d, const QString& fecha = "15-03-2024",
            const QString& cuit = "20123456786")
{
    Person p(d);
    p.type("txtFecha", fecha);
    p.type("txtCuit", cuit);
    p.type("txtImportePercibido", "150");
    p.leave("txtImportePercibido");
}

bool conTipo(const QString& formulario)
{
    return formulario == "F978" || formulario == "F987";
}

void forms(std::initializer_list<const char*> names)
{
    QTest::addColumn<QString>("formulario");
    for (const char* name : names)
        Row(name, QString(name));
}

const QString kRepetida = "Ya existe un detalle con esta actividad. Verifique.-";

} // namespace

// The line dialogs of the forms driven as a person would: the activities of
// the monthly returns (F976, F2001) and the receipts of the annexes.
class TstDetalle : public EnvTest
{
    Q_OBJECT
private slots:
    // --- Activities ---------------------------------------------------------

    void blankActivityIsUnclassifiedOnce_data() { forms({"F976", "F2001"}); }
    void blankActivityIsUnclassifiedOnce()
    {
        QFETCH(QString, formulario);
        const QString tabla = formulario + "_Detalle";
        for (int vez = 0; vez < 2; ++vez) {
            auto d = abrirDetalle(formulario);
            Person p(*d);
            p.type("txtBaseImponible", "1000");
            p.leave("txtBaseImponible");
            Rate(*d, "2,40");
            p.click("cmdAceptar");
            QCOMPARE(d->Aceptado, vez == 0);
        }
        QCOMPARE(lineas(tabla, "CodigoActividad"), QStringList{"999999"});
        QCOMPARE(lineas(tabla, "TipoActividad"), QStringList{"Actividades A Clasificar"});
        QCOMPARE(lineas(tabla, "CodigoDetalle"), QStringList{"0001"});
        QCOMPARE(env->ui().texts(), QStringList{kRepetida});
    }

    // A line the database refuses is not taken as written: the person reads
    // why and the dialog stays open with the line as typed.
    void refusedLineKeepsTheDialog_data() { BrokenDatabase::Rows(); }
    void refusedLineKeepsTheDialog()
    {
        FETCH_BREAKAGE(how);
        auto d = abrirDetalle("F976");
        Person p(*d);
        p.type("txtBaseImponible", "1000");
        p.leave("txtBaseImponible");
        Rate(*d, "2,40");
        BrokenDatabase::Break(how, "F976_Detalle");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), BrokenDatabase::SaveFailure(how));
        QVERIFY(!d->Aceptado);
        QVERIFY(d->isLoaded());
        QCOMPARE((*d)["txtBaseImponible"].text(), QString("1.000,00"));
        BrokenDatabase::Mend();
        if (how == Breakage::Damaged)
            return;
        QCOMPARE(lineas("F976_Detalle", "CodigoDetalle"), QStringList{});
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(lineas("F976_Detalle", "CodigoDetalle"), QStringList{"0001"});
    }

    void taxOfTheLine_data()
    {
        Columns<QString, QString, QString, QString, QString>("formulario", "base", "alicuota",
                                                             "baseMostrada", "tasa");
        Row("1000 at 2.40", "F976", "1000", "2,40", "1.000,00", "24,00");
        Row("rate 0 accepted", "F976", "1000", "0,00", "1.000,00", "0,00");
        Row("millions grouped", "F976", "1234567,89", "2,40", "1.234.567,89", "29.629,63");
        Row("rounded to cents", "F2001", "333,33", "0,43", "333,33", "1,43");
        Row("half cent up", "F2001", "112,5", "0,60", "112,50", "0,68");
        Row("rate off the list", "F976", "2000", "1,50", "2.000,00", "30,00");
        Row("top rate", "F2001", "1000000", "6,00", "1.000.000,00", "60.000,00");
    }
    void taxOfTheLine()
    {
        const auto [formulario, base, alicuota, baseMostrada, tasa] =
            Fetch<QString, QString, QString, QString, QString>("formulario", "base", "alicuota",
                                                               "baseMostrada", "tasa");
        auto d = abrirDetalle(formulario);
        QCOMPARE(d->field("txtTasa").text(), QString("0,00")); // a new line shows zeros
        Person p(*d);
        p.type("txtBaseImponible", base);
        p.leave("txtBaseImponible");
        Rate(*d, alicuota);
        QCOMPARE(d->field("txtTasa").text(), tasa);
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(Db::rows("SELECT BaseImponible, Alicuota, Impuesto, FechaRectificativa, ctrl "
                          "FROM " +
                          formulario + "_Detalle"),
                 QStringList{baseMostrada + "|" + alicuota + "|" + tasa + "|0|0"});
    }

    void editKeepsTheLineNumber_data() { forms({"F976", "F2001"}); }
    void editKeepsTheLineNumber()
    {
        QFETCH(QString, formulario);
        const QString tabla = formulario + "_Detalle";
        Linea(formulario, "0001", "111111", "100,00");
        Linea(formulario, "0002", "222222", "200,00");
        auto d = abrirDetalle(formulario, "0002");
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
        QCOMPARE(Db::rows("SELECT CodigoDetalle, CodigoActividad, BaseImponible, Impuesto FROM " +
                          tabla + " ORDER BY CodigoDetalle"),
                 (QStringList{"0001|111111|100,00|0,00", "0002|222222|5.000,00|120,00"}));
    }

    void lineNumbers_data()
    {
        Columns<QStringList, QString>("existentes", "siguiente");
        Row("first", QStringList{}, "0001");
        Row("second", QStringList{"0001"}, "0002");
        Row("after a gap", QStringList{"0001", "0007"}, "0008");
        Row("after an adjustment", QStringList{"0001", "9999"}, "10000");
        Row("past the adjustment", QStringList{"0001", "9999", "10000"}, "10001");
    }
    void lineNumbers()
    {
        const auto [existentes, siguiente] = Fetch<QStringList, QString>("existentes", "siguiente");
        int n = 0;
        for (const QString& codigo : existentes)
            Linea("F976", codigo, QString::number(100000 + ++n), "1,00");
        auto d = abrirDetalle("F976");
        Person(*d).click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QVERIFY(lineas("F976_Detalle", "CodigoDetalle").contains(siguiente));
        QCOMPARE(lineas("F976_Detalle", "CodigoDetalle").size(), existentes.size() + 1);
    }

    void recallOfThePreviousLine()
    {
        const QStringList ultimo{"0001", "620100", "Comercio", "1.500,00", "3,60", "54,00"};
        auto d = abrirDetalle("F976", {}, ultimo);
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
        QCOMPARE(lineas("F976_Detalle", "BaseImponible"), QStringList{"1.500,00"});

        // a blank cell of the line before is not recalled
        auto blank = abrirDetalle("F976", {}, {"0001", "1", "X", "", "", ""});
        Person(*blank).key("txtTasa", KeyCode::F3);
        QCOMPARE(blank->field("txtTasa").text(), QString());
        QCOMPARE(blank->focused(), QString("txtTasa"));

        // nor anything in an edit of a stored line
        Linea("F2001", "0001", "111111", "100,00");
        auto edit =
            abrirDetalle("F2001", "0001", {"0001", "111111", "X", "9.999,00", "6,00", "599,94"});
        Person q(*edit);
        q.focus("txtBaseImponible");
        QVERIFY(!edit->field("lblF3").visible());
        q.key("txtBaseImponible", KeyCode::F3);
        QCOMPARE(edit->field("txtBaseImponible").text(), QString("100,00"));
        QCOMPARE(edit->focused(), QString("txtBaseImponible"));
    }

    // Each form asks for the missing data in its own order; F2001 names the
    // activity before it asks for the tax.
    void orderOfChecks_data()
    {
        Columns<QString, bool, QString, QString, QString>("formulario", "sinAlicuota", "mensaje",
                                                          "actividad", "foco");
        const QString rate = "Debe ingresar el dato Alicuota", tax = "Debe ingresar el dato Tasa";
        Row("F976 rate", "F976", true, rate, QString(), "txtAlicuota");
        Row("F2001 rate", "F2001", true, rate, QString(), "txtAlicuota");
        Row("F976 tax", "F976", false, tax, QString(), "txtTasa");
        Row("F2001 tax", "F2001", false, tax, "999999", "txtTasa");
    }
    void orderOfChecks()
    {
        const auto [formulario, sinAlicuota, mensaje, actividad, foco] =
            Fetch<QString, bool, QString, QString, QString>("formulario", "sinAlicuota", "mensaje",
                                                            "actividad", "foco");
        auto d = abrirDetalle(formulario);
        Person p(*d);
        p.retype("txtTasa", "");
        if (sinAlicuota)
            d->field("txtAlicuota").setListIndex(-1);
        p.click("cmdAceptar");
        QVERIFY(!d->Aceptado);
        QCOMPARE(env->ui().texts(), QStringList{mensaje});
        QCOMPARE(d->field("txtIdActividad").text(), actividad);
        QCOMPARE(d->focused(), foco);
        QVERIFY(lineas(formulario + "_Detalle", "Id").isEmpty());
    }

    // The search offers the premises' own activities; the one chosen is the
    // line's, and a second line of it is refused.
    void searchOfThePremisesActivities_data() { forms({"F976", "F2001"}); }
    void searchOfThePremisesActivities()
    {
        QFETCH(QString, formulario);
        const QString servicios = "Servicios de consultores en informática";
        Db::insert("Actividades_x_padrones",
                   {"cuit=20123456786", "padron=" + kPadron, "objeto=" + kObjeto, "ActP=471110",
                    "ActP_Desc=Venta al por menor", "Act1=620100", "Act1_Desc=" + servicios});
        QString pedido, nombre;
        int ofrecidas = 0;
        for (int vez = 0; vez < 2; ++vez) {
            env->ui().onShow("Busqueda", [&](Controller& c) {
                auto& b = static_cast<Busqueda&>(c);
                pedido = b.SelectCommandText;
                nombre = b.NombreFormulario;
                ofrecidas = c.field("lstRegistros").listCount();
                Person(c).choose("lstRegistros", servicios);
                Person(c).dblClick("lstRegistros");
            });
            auto d = abrirDetalle(formulario);
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
        QCOMPARE(lineas(formulario + "_Detalle", "TipoActividad"), QStringList{servicios});
        QCOMPARE(env->ui().texts(), QStringList{kRepetida});
    }

    void searchLeftOrCancelChangesNothing()
    {
        env->ui().onShow("Busqueda",
                         [](Controller& c) { Person(c).key("lstRegistros", KeyCode::Escape); });
        auto d = abrirDetalle("F2001");
        Person p(*d);
        p.type("txtIdActividad", "123");
        p.click("cmdPrincipal");
        QCOMPARE(d->field("txtIdActividad").text(), QString("123"));
        p.type("txtBaseImponible", "10");
        p.click("cmdCancelar");
        QVERIFY(!d->Aceptado);
        QVERIFY(lineas("F2001_Detalle", "Id").isEmpty());
    }

    // A pasted amount that starts with its decimal symbol is refused.
    void amountStartingWithTheSeparator_data()
    {
        Columns<QString, QString, QString, QString, QString>("formulario", "campo", "pegado",
                                                             "mensaje", "titulo");
        auto row = [](const char* formulario, const char* campo, const char* pegado,
                      const char* mensaje, const char* titulo) {
            Row(formulario, formulario, campo, pegado, mensaje, titulo);
        };
        row("F976", "txtBaseImponible", ",5",
            "El dato ingresado es incorrecto. Por favor verifique.", "Advertencia...");
        row("F2001", "txtBaseImponible", ",5",
            "El dato ingresado es incorrecto. Verifique por favor.", "Advertencia...");
        row("F977", "txtImportePercibido", ".75",
            "El dato ingresado es incorrecto. Por favor verifique.-", "Mensaje");
    }
    void amountStartingWithTheSeparator()
    {
        const auto [formulario, campo, pegado, mensaje, titulo] =
            Fetch<QString, QString, QString, QString, QString>("formulario", "campo", "pegado",
                                                               "mensaje", "titulo");
        auto d = abrirDetalle(formulario);
        Person p(*d);
        p.focus(campo);
        d->field(campo).setText(pegado);
        QVERIFY(!p.leave(campo));
        QCOMPARE(env->ui().texts(), QStringList{mensaje});
        QCOMPARE(env->ui().messages().last().title, titulo);
        QCOMPARE(d->field(campo).text(), QString("0,00"));
        QCOMPARE(d->focused(), campo);
    }

    // --- Receipts -----------------------------------------------------------

    // The period is March 2024: a later month is refused, an older one passes.
    void dateOnLeaving_data()
    {
        Columns<QString, QString, QString>("fecha", "mensaje", "titulo");
        const QString wrong = "La fecha ingresa es incorrecta.";
        const QString later =
            "La fecha ingresada no puede ser mayor a la del período en cuestión. Verifique.";
        auto row = [](const char* fecha, const QString& mensaje, const char* titulo) {
            Row(fecha, fecha, mensaje, titulo);
        };
        row("29-02-2024", "", ""); // leap day
        row("31-03-2024", "", ""); // last of the period
        row("31-12-2023", "", "");
        row("15-12-2019", "", "");
        row("29-02-2023", wrong, "Atención...");
        row("30-02-2024", wrong, "Atención...");
        row("31-04-2023", wrong, "Atención...");
        row("00-01-2024", wrong, "Atención...");
        row("10-13-2023", wrong, "Atención...");
        row("01-04-2024", later, "Mensaje...");
        row("01-01-2025", later, "Mensaje...");
    }
    void dateOnLeaving()
    {
        const auto [fecha, mensaje, titulo] =
            Fetch<QString, QString, QString>("fecha", "mensaje", "titulo");
        auto d = abrirDetalle("F977");
        Person p(*d);
        p.type("txtFecha", fecha);
        QCOMPARE(p.leave("txtFecha"), mensaje.isEmpty());
        QCOMPARE(env->ui().texts(), mensaje.isEmpty() ? QStringList{} : QStringList{mensaje});
        if (mensaje.isEmpty())
            return;
        QCOMPARE(env->ui().messages().last().title, titulo);
        QCOMPARE(d->focused(), QString("txtFecha"));
    }

    void cuitOnLeaving_data()
    {
        Columns<QString, bool>("cuit", "aviso");
        Row("valid 20", "20123456786", false);
        Row("valid 27", "27171717170", false);
        Row("valid 30", "30712345671", false);
        Row("prefix 24", "24123456781", true);
        Row("check digit", "20123456780", true);
        Row("short", "2012345", true);
        Row("blank", "", false);
    }
    void cuitOnLeaving()
    {
        const auto [cuit, aviso] = Fetch<QString, bool>("cuit", "aviso");
        auto d = abrirDetalle("F978");
        Person p(*d);
        p.type("txtCuit", cuit);
        QVERIFY(p.leave("txtCuit")); // a notice: the person goes on
        QCOMPARE(env->ui().texts(),
                 aviso ? QStringList{"Número de CUIT incorrecto"} : QStringList{});
    }

    void requiredData_data()
    {
        Columns<QString, QString, QString, QString, QString>("fecha", "cuit", "importe", "mensaje",
                                                             "foco");
        Row("date", "", "20123456786", "1", "Debe ingresar el dato Fecha", "txtFecha");
        Row("cuit", "15-03-2024", "", "1", "Debe ingresar el dato Cuit", "txtCuit");
        Row("short cuit", "15-03-2024", "2012345678", "1", "El CUIT debe tener 11 dígitos.",
            "txtCuit");
        Row("amount", "15-03-2024", "20123456786", "", "Debe ingresar el dato Importe Percibido",
            "txtImportePercibido");
    }
    void requiredData()
    {
        const auto [fecha, cuit, importe, mensaje, foco] =
            Fetch<QString, QString, QString, QString, QString>("fecha", "cuit", "importe",
                                                               "mensaje", "foco");
        auto d = abrirDetalle("F977");
        Person p(*d);
        p.type("txtFecha", fecha);
        p.type("txtCuit", cuit);
        p.focus("txtDenominacion");
        d->field("txtImportePercibido").setText(importe);
        p.click("cmdAceptar");
        QVERIFY(!d->Aceptado);
        QCOMPARE(env->ui().lastText(), mensaje);
        QCOMPARE(d->focused(), foco);
        QVERIFY(lineas("F977_Detalle", "Id").isEmpty());
    }

    void defaultsOfAnUntypedReceipt_data() { forms({"F977", "F978", "F985", "F987"}); }
    void defaultsOfAnUntypedReceipt()
    {
        QFETCH(QString, formulario);
        auto d = abrirDetalle(formulario);
        Minimo(*d);
        Person(*d).click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(Db::rows("SELECT CodigoDetalle, NroComprobante, Padron, Denominacion, "
                          "TipoComprobante, Fecha, Cuit, ImportePercibido FROM " +
                          formulario + "_Detalle WHERE Codigo = '" + codigo(u'O') + "'"),
                 QStringList{"0001|000000000000000|0000000000000|0|" +
                             QString(conTipo(formulario) ? "OTRO - Otros" : "<null>") +
                             "|15-03-2024|20-12345678-6|150,00"});
    }

    void numbersArePaddedAndNamesCut()
    {
        auto d = abrirDetalle("F985");
        Person p(*d);
        p.type("txtNroComprobante", "4711");
        p.type("txtPadron", "1234");
        p.leave("txtPadron");
        QCOMPARE(d->field("txtNroComprobante").text(), QString("000000000004711"));
        QCOMPARE(d->field("txtPadron").text(), QString("0000000001234"));
        p.type("txtNroComprobante", "x");
        QCOMPARE(d->field("txtNroComprobante").text(), QString("000000000004711"));

        const QString nombre = QString("DISTRIBUIDORA ").repeated(4); // 56 characters
        p.type("txtDenominacion", nombre);
        p.leave("txtDenominacion");
        QCOMPARE(env->ui().texts(),
                 QStringList{"El dato ingresado no puede superar los 50 caracteres. Verifique.-"});
        QCOMPARE(d->field("txtDenominacion").text(), nombre.left(50));
    }

    // The same number twice in a version is refused; on the perception
    // annexes the number repeats under another type.
    void repeatedReceipt_data()
    {
        Columns<QString, QString, QString>("formulario", "tipo2", "mensaje");
        const QString tail = " 000000000000123 - ACME SA, ya está dado de alta para este "
                             "período. Verifique.-";
        Row("F977", "F977", QString(), "La constancia" + tail);
        Row("F985", "F985", QString(), "La constancia" + tail);
        Row("F978 same type", "F978", "FACA - Factura A", "El comprobante" + tail);
        Row("F978 other type", "F978", "FACB - Factura B", QString());
        Row("F987 other type", "F987", "NCRA - Nota de Crédito A", QString());
    }
    void repeatedReceipt()
    {
        const auto [formulario, tipo2, mensaje] =
            Fetch<QString, QString, QString>("formulario", "tipo2", "mensaje");
        for (const QString& tipo : {QString("FACA - Factura A"), tipo2}) {
            auto d = abrirDetalle(formulario);
            Person p(*d);
            if (conTipo(formulario))
                p.choose("cboComprobante", tipo);
            p.type("txtNroComprobante", "123");
            p.type("txtDenominacion", "ACME SA");
            Minimo(*d);
            p.click("cmdAceptar");
            if (!d->Aceptado)
                QCOMPARE(d->focused(), QString("txtNroComprobante"));
        }
        QCOMPARE(lineas(formulario + "_Detalle", "Id").size(), mensaje.isEmpty() ? 2 : 1);
        QCOMPARE(env->ui().texts(), mensaje.isEmpty() ? QStringList{} : QStringList{mensaje});
    }

    void typeListLeavesTheAdjustmentOut()
    {
        auto d = abrirDetalle("F978");
        const Field& f = d->field("cboComprobante");
        QCOMPARE(f.itemText(0), QString("FACA - Factura A"));
        for (int i = 0; i < f.listCount(); ++i)
            QVERIFY(!f.itemText(i).startsWith("AJUS"));
        QVERIFY(!abrirDetalle("F977")->hasField("cboComprobante"));
    }

    // A stored line is shown for edit: F987 finds the description of a
    // type kept by its code alone.
    void storedLineIsShown_data()
    {
        Columns<QString, QString, QString>("formulario", "guardado", "mostrado");
        Row("F987 code only", "F987", "FACB", "FACB - Factura B");
        Row("F987 code and text", "F987", "NCRA - Nota de Crédito A", "NCRA - Nota de Crédito A");
        Row("F978 code and text", "F978", "RECC - Recibo C", "RECC - Recibo C");
    }
    void storedLineIsShown()
    {
        const auto [formulario, guardado, mostrado] =
            Fetch<QString, QString, QString>("formulario", "guardado", "mostrado");
        Db::insert(formulario + "_Detalle",
                   {"Codigo=" + codigo(u'O'), "FechaRectificativa=0", "CodigoDetalle=0001",
                    "Fecha=02-03-2024", "TipoComprobante=" + guardado,
                    "NroComprobante=000000000000777", "Denominacion=Acme Sa", "Cuit=20123456786",
                    "Padron=0000000000099", "ImportePercibido=1.234,56", "ctrl=0"});
        auto d = abrirDetalle(formulario, "0001");
        QCOMPARE(d->field("cboComprobante").text(), mostrado);
        QVERIFY(d->field("cboComprobante").listIndex() >= 0);
        QCOMPARE(d->field("txtCuit").text(), QString("20-12345678-6"));
        QCOMPARE(d->field("txtDenominacion").text(), QString("ACME SA"));
        QCOMPARE(d->field("txtFecha").text(), QString("02-03-2024"));
        Person p(*d);
        p.retype("txtImportePercibido", "99");
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(Db::rows("SELECT CodigoDetalle, ImportePercibido, TipoComprobante FROM " +
                          formulario + "_Detalle"),
                 QStringList{"0001|99,00|" + mostrado});
    }

    void recallOfThePreviousReceipt()
    {
        const QStringList ultimo{"0001",    "10-03-2024",    "FACB - Factura B", "000000000000001",
                                 "ACME SA", "20-12345678-6", "0000000000099",    "300,00"};
        auto d = abrirDetalle("F978", {}, ultimo);
        Person p(*d);
        for (const char* name : {"txtFecha", "cboComprobante", "txtDenominacion", "txtCuit",
                                 "txtPadron", "txtImportePercibido"})
            p.key(name, KeyCode::F3);
        QStringList shown;
        for (const char* name : {"txtFecha", "txtDenominacion", "txtCuit", "txtPadron",
                                 "txtImportePercibido", "txtNroComprobante"})
            shown << d->field(name).text();
        // every field but the number, which is never recalled
        QCOMPARE(shown, (QStringList{"10-03-2024", "ACME SA", "20-12345678-6", "0000000000099",
                                     "300,00", ""}));
        QCOMPARE(d->field("cboComprobante").listIndex(), 1);
        QCOMPARE(d->focused(), QString("cmdAceptar"));
    }
};

QTEST_GUILESS_MAIN(TstDetalle)
#include "tst_detalle.moc"
