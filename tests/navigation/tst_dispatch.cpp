#include <QtTest>

#include "ErrorLog.h"
#include "Globals.h"
#include "NavigationData.h"
#include "Person.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "navigation/SeleccionFormulario.h"
#include "navigation/ZoForms.h"
#include "registry/Contribuyentes.h"

using namespace nav;

namespace {

const QStringList kForms = {"F976", "F2001", "F977", "F978", "F985", "F986", "F987", "F988"};
// How every dispatched string of premises 1 in 05-2024 begins, and its key.
const QString kHead = "Padron=0000000000001 - Objeto N° 0000000000001;Anio=2024;Periodo=05;";
const QString kCode = "0000000000001052024"
                      "0000000000001";

// What the forms were handed, each time one was shown.
struct Handed {
    QString parameters;
    QString contribuyenteId;
    DeclarationHeader header;
};
QVector<Handed> g_handed;

class FakeForm : public DeclarationForm
{
public:
    explicit FakeForm(const QString& id) : DeclarationForm(id) {}

protected:
    void design() override {}
    void onLoad() override { g_handed.push_back({Parametros, ContribuyenteId, Encabezado}); }
};

// The person in "Selección de Formulario": picks an option, perhaps types the
// date, accepts.
std::function<void(Controller&)> choose(const QString& option, const QString& date = {})
{
    return [option, date](Controller& w) {
        Person p(w);
        p.click(option);
        p.type("txtFecha", date);
        p.click("cmdAceptar");
    };
}

QString withoutTime(QString text)
{
    return text.replace(QRegularExpression(" \\d\\d:\\d\\d:\\d\\d;"), " hh:mm:ss;");
}

} // namespace

// A double click on the tree: the choice on a declaration that exists, the
// string and header record each form is handed, and the taxpayer's options.
class TstDispatch : public EnvTest
{
    Q_OBJECT
    std::unique_ptr<ContribuyentesDatos> window;

    TreeModel& tree() { return (*window)["trvDatos"].tree(); }
    void dblClick(const QString& key)
    {
        QVERIFY2(tree().contains(key), qPrintable(key));
        Person(*window).dblClickNode("trvDatos", key);
    }
    // Opens taxpayer 1 and double-clicks a declaration through the dialog.
    void select(const Declaration& d, std::function<void(Controller&)> script)
    {
        if (!window)
            window = OpenTaxpayer();
        env->ui().onShow("SeleccionFormulario", std::move(script));
        dblClick(NodeKey(d));
    }
    // Opens a month of premises 1 and the first form it offers to start.
    void startForm(const QString& mm)
    {
        window = OpenTaxpayer();
        Field& trv = (*window)["trvDatos"];
        gForms().FillTreeViewNuevoAnio(trv, "2024", "1", PremisesKey("1"));
        gForms().FillTreeViewNuevoPeriodo(trv, mm, tree().indexOf(PremisesKey("1") + ";Anio=2024"),
                                          "1", Pad13("1"), Pad13("1"), "1", "1", "2");
        dblClick(ChildKey(tree(), MonthKey("1", "2024", mm), "Nuevo - "));
    }

    void seed() override
    {
        AddTaxpayer(1, "PEREZ JUAN", kCuit);
        g_handed.clear();
        for (const QString& id : kForms)
            RegisterDeclarationForm(id, [id] { return std::make_unique<FakeForm>(id); });
    }
    void tearDown() override
    {
        window.reset();
        ResetForms();
        for (const QString& id : kForms)
            UnregisterDeclarationForm(id);
    }

private slots:
    void aFormToStartOpensAtOnce()
    {
        AddPremises("1", "0", "1");
        AddDeclaration({"F976", "05-2024"});
        window = OpenTaxpayer();
        const QString key = ChildKey(tree(), MonthKey("1", "2024", "05"), "Nuevo - ");
        dblClick(key);
        // nodes without a form open nothing
        for (const QString& other :
             {PremisesKey("1"), MonthKey("1", "2024", "05"), QString("LocCom")})
            dblClick(other);
        QCOMPARE(env->ui().shownWindows(), QStringList{"F986"});
        QCOMPARE(g_handed.size(), 1);
        QCOMPARE(g_handed[0].parameters,
                 kHead +
                     "Formulario=F986;Rectificativa=Falso;FechaRectificativa=0;"
                     "FechaRectificativaNueva=0;Nuevo=Verdadero;ConDatos=Falso;"
                     "idEncFormulario=-1;ctrl=0;idContribuyente=1;Codigo=" +
                     kCode + "O;");
        QCOMPARE(g_handed[0].contribuyenteId, QString("1"));
        // Enter does what the double click does
        Person(*window).clickNode("trvDatos", key);
        Person(*window).key("trvDatos", KeyCode::Return);
        QCOMPARE(g_handed.size(), 2);
    }

    void theStringEachChoiceHandsToTheForm_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("tail"); // after kHead + "Formulario=F976;"
        auto row = [](const char* name, const char* option, const char* date, const QString& flags,
                      const QString& ctrl, const QString& nueva) {
            const QString letter = ctrl == "0" ? "O" : "R";
            QTest::newRow(name) << option << date
                                << flags + ";FechaRectificativa=0;ctrl=" + ctrl +
                                       ";idContribuyente=1;" + nueva + "Codigo=" + kCode + letter +
                                       ";";
        };
        row("Consultar", "optConsultar", "", "Nuevo=Consultar;ConDatos=True;Rectificativa=False",
            "0", "");
        row("Modificar", "optModificar", "", "Nuevo=False;ConDatos=True;Rectificativa=False", "0",
            "");
        row("sin datos", "optRectificativaSinDatos", "20062024",
            "Nuevo=True;ConDatos=False;Rectificativa=True", "1",
            "FechaRectificativaNueva=20-06-2024;");
        row("con datos", "optRectificativaConDatos", "20062024",
            "Nuevo=True;ConDatos=True;Rectificativa=True", "1",
            "FechaRectificativaNueva=20-06-2024 hh:mm:ss;");
    }
    void theStringEachChoiceHandsToTheForm()
    {
        QFETCH(QString, option);
        QFETCH(QString, date);
        QFETCH(QString, tail);
        AddPremises("1", "0");
        AddDeclaration({"F976", "05-2024"});
        select({"F976", "05-2024"}, choose(option, date));
        QCOMPARE(env->ui().shownWindows(), (QStringList{"SeleccionFormulario", "F976"}));
        QCOMPARE(g_handed.size(), 1);
        QCOMPARE(withoutTime(g_handed[0].parameters), kHead + "Formulario=F976;" + tail);
    }

    void onlyTheLatestVersionCanChange_data()
    {
        QTest::addColumn<int>("ctrl");
        QTest::addColumn<QString>("enabled"); // Consultar, Modificar, sin, con, Eliminar
        QTest::addColumn<QString>("checked");
        // clang-format off
        QTest::newRow("the original") << 0 << "10000" << "10000";
        QTest::newRow("the first rectification") << 1 << "10000" << "10000";
        QTest::newRow("the latest") << 2 << "11111" << "01000";
        // clang-format on
    }
    void onlyTheLatestVersionCanChange()
    {
        QFETCH(int, ctrl);
        QFETCH(QString, enabled);
        QFETCH(QString, checked);
        const QStringList dates = {"0", "10-06-2024", "20-06-2024"};
        for (int i = 0; i < 3; ++i)
            AddDeclaration({"F976", "05-2024", i, dates[i]});
        AddPremises("1", "0");
        QString gotEnabled, gotChecked;
        select({"F976", "05-2024", ctrl, dates[ctrl]}, [&](Controller& w) {
            for (const char* name : {"optConsultar", "optModificar", "optRectificativaSinDatos",
                                     "optRectificativaConDatos", "optEliminar"}) {
                gotEnabled += w[name].enabled() ? '1' : '0';
                gotChecked += w[name].checked() ? '1' : '0';
            }
            Person(w).click("cmdCancelar");
        });
        QCOMPARE(gotEnabled, enabled);
        QCOMPARE(gotChecked, checked);
        QVERIFY(g_handed.isEmpty()); // Cancelar opens nothing
    }

    void theRectificationDateMustFollowTheLatestOne_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message"); // "" when accepted
        const QString later = "La fecha de Rectificativa debe ser mayor a la del formulario";
        // the latest rectification is of 15-03-2024; the period is 01-2023
        auto row = [](const char* name, const char* form, const char* typed,
                      const QString& message) { QTest::newRow(name) << form << typed << message; };
        row("the same day", "F976", "15032024", later);
        row("the day before", "F976", "14032024", later);
        row("the day after", "F976", "16032024", "");
        row("a later month of an earlier year", "F976", "10042023", "");
        row("F978", "F978", "15032024", later);
        row("F2001", "F2001", "01022024", later);
        row("F986 by padrón and period", "F986", "15032024", later);
        row("F988", "F988", "16032024", "");
        // these compare with what the previous statement answered
        row("F977", "F977", "15032024", "");
        row("F985", "F985", "01012024", "");
        row("no date", "F976", "", "Debe ingresar una fecha.");
        row("before the period", "F976", "31122022",
            "La fecha ingresada no puede ser menor a la del periodo.");
    }
    void theRectificationDateMustFollowTheLatestOne()
    {
        QFETCH(QString, form);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        AddPremises("1", "2");
        AddDeclaration({form, "01-2023"});
        AddDeclaration({form, "01-2023", 1, "15-03-2024"});
        bool stayed = false;
        select({form, "01-2023", 1, "15-03-2024"}, [&](Controller& w) {
            choose("optRectificativaSinDatos", typed)(w);
            stayed = w.isShown();
        });
        QCOMPARE(stayed, !message.isEmpty());
        QCOMPARE(env->ui().texts().join("|"), message);
        QCOMPARE(g_handed.size(), message.isEmpty() ? 1 : 0);
    }

    void aFourthVersionIsRefused()
    {
        AddPremises("1", "0");
        const QStringList dates = {"0", "10-06-2024", "11-06-2024", "12-06-2024"};
        for (int i = 0; i < 4; ++i)
            AddDeclaration({"F976", "05-2024", i, dates[i]});
        select({"F976", "05-2024", 3, dates[3]}, choose("optRectificativaSinDatos", "20062024"));
        QCOMPARE(
            env->ui().lastText(),
            QString("Ya existen 3 formularios rectificativos F976.\r\nNo se puede continuar."));
        QCOMPARE(env->ui().messages().last().title, QString("Advertencia..."));
        QVERIFY(g_handed.isEmpty());
        // with two rectifications a third may be made, and takes the next ctrl
        Db::exec("DELETE FROM TPadrones_Formularios WHERE ctrl = '3'");
        Db::exec("DELETE FROM F976 WHERE ctrl = '3'");
        window->ActualizoVista();
        select({"F976", "05-2024", 2, dates[2]}, choose("optRectificativaConDatos", "20062024"));
        QCOMPARE(g_handed.size(), 1);
        const DeclarationHeader& h = g_handed[0].header;
        QCOMPARE(h.ctrl, QString("3"));
        // a rectification with data starts from the version it comes from
        QCOMPARE(h.CodigoLeido + " " + h.FechaLeida, kCode + "R 11-06-2024");
    }

    void eliminarDeletesTheLatestVersionFirst_data()
    {
        QTest::addColumn<QString>("form");
        for (const QString& form : kForms)
            QTest::newRow(qPrintable(form)) << form;
    }
    void eliminarDeletesTheLatestVersionFirst()
    {
        QFETCH(QString, form);
        AddPremises("1", "2", "1", "1");
        const Declaration original{form, "05-2024"};
        const Declaration rectification{form, "05-2024", 1, "20-06-2024"};
        for (const Declaration& d : {original, rectification}) {
            const QString codigo = AddDeclaration(d);
            if (!codigo.isEmpty())
                AddLine(form, codigo, d.fecha, QString::number(d.ctrl), "0001");
        }
        AddDeclaration({form, "06-2024"}); // another month stays
        const QString rows = "SELECT ctrl || Periodo FROM %1 ORDER BY Id";

        // an earlier version cannot go first
        SeleccionFormulario early;
        early.Parametros = kHead + "Formulario=" + form +
                           ";Nuevo=Falso;ConDatos=Verdadero;"
                           "Rectificativa=False;FechaRectificativa=0;ctrl=0;";
        early.load();
        QVERIFY(!early["optEliminar"].enabled());
        early.Eliminar();
        QCOMPARE(env->ui().lastText(),
                 QString("No se puede eliminar este formulario.\r\n"
                         "Debe eliminar los formularios mas recientes primero."));
        QCOMPARE(Db::count(form), 3);

        env->ui().answer("Esta seguro de eliminar el formulario?", Msg::No);
        env->ui().answer("Esta seguro de eliminar el formulario?", Msg::Yes);
        select(rectification, [](Controller& w) {
            choose("optEliminar")(w);
            QVERIFY(w.isShown()); // No keeps the dialog open
            Person(w).click("cmdAceptar");
        });
        QCOMPARE(env->ui().messages().last().title, QString("Eliminar"));
        QCOMPARE(Db::column(rows.arg(form)), (QStringList{"005-2024", "006-2024"}));
        QCOMPARE(Db::column(rows.arg("TPadrones_Formularios")),
                 (QStringList{"005-2024", "006-2024"}));
        if (form != "F986" && form != "F988")
            QCOMPARE(Db::column("SELECT ctrl FROM " + form + "_Detalle"), QStringList{"0"});
        // the tree was rebuilt, and the original is the latest again
        QVERIFY(!tree().contains(NodeKey(rectification)));
        select(original, [](Controller& w) {
            QVERIFY(w["optEliminar"].enabled());
            Person(w).click("cmdCancelar");
        });
        QVERIFY(g_handed.isEmpty());
    }

    void theHeaderRecordOfEachForm_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QStringList>("amounts"); // what the record reads, column=value
        auto row = [](const char* form, const char* amounts) {
            QTest::newRow(form) << form << QString(amounts).split(' ');
        };
        row("F976", "BaseImponible=1.000,00 Impuesto=30,00 Accesorios=1,00 Multas=2,00 "
                    "PagoACuenta=3,00 Percepciones=4,00 Retenciones=5,00 SaldoAFavor=6,00 "
                    "SaldoAFavorF=04-2024 SubtotalDeterminado=15,00 TotalAPagar=18,00 Tasa=30,00");
        row("F2001", "BaseImponible=10,00 Impuesto=1,00 Total=2,00 SaldoAFavor=3,00 "
                     "Retenciones=4,00 Percepciones=5,00 Desgrabaciones=6,00 SubtotalCol12=7,00 "
                     "SubtotalColumna2=8,00 DiferenciaCol12=9,00 DiferenciaColumna2=1,00 "
                     "PagoACuenta=1,50 TotalAPagar=2,50");
        row("F977", "Transporte=7,00 TotalPercepciones=8,00");
        row("F978", "Transporte=1,00 TotalPercepciones=2,00");
        row("F985", "Transporte=3,00");
        row("F987", "Transporte=4,00");
        row("F986", "AccesoriosCoef=1,00 ImporteDepositar=2,00 ImpPercibidoF985=3,00 Multas=4,00 "
                    "Otros=5,00");
        row("F988", "AccesoriosCoef=1,50 ImporteDepositar=2,50 ImpPercibidoF987=3,50 Multas=4,50 "
                    "Otros=5,50");
    }
    void theHeaderRecordOfEachForm()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, amounts);
        AddPremises("1", "2", "1", "1");
        AddDeclaration({form, "05-2024", 0, "0", "1", "1", amounts + QStringList{"Guidv=X"}});
        select({form, "05-2024"}, choose("optModificar"));
        QCOMPARE(g_handed.size(), 1);
        const DeclarationHeader& h = g_handed[0].header;
        const bool agent = form == "F986" || form == "F988";
        QCOMPARE(QStringList({h.Formulario, h.Padron, h.Objeto, h.PeriodoCompleto(), h.Cuit,
                              h.RazonSocial, h.Domicilio, h.Contribuyente, h.IdContribuyente}),
                 QStringList({form, Pad13("1"), Pad13("1"), "05-2024", kCuit, "RAZON 1",
                              agent ? "SAN MARTIN 100 - CAPITAL C.P. 5500"
                                    : "SAN MARTIN 100 - CAPITAL - 5500",
                              "PEREZ JUAN", "1"}));
        QStringList read;
        for (const QString& a : amounts)
            read << a.section('=', 0, 0) + "=" + h.Monto(a.section('=', 0, 0));
        QCOMPARE(read, amounts);
        QCOMPARE(h.Montos.size(), amounts.size());
        QCOMPARE(gForms().Encabezado(form).Montos, h.Montos);

        // a form to start carries no amounts
        g_handed.clear();
        startForm("01");
        QCOMPARE(g_handed.size(), 1);
        QVERIFY(g_handed[0].header.Montos.isEmpty() && !g_handed[0].header.RowFound);
    }

    void aFormThatIsNotThereIsLoggedAndTheTreeCarriesOn()
    {
        UnregisterDeclarationForm("F988"); // the first form an agent's month offers
        AddPremises("1", "2", "1", "1");
        startForm("03");
        QVERIFY(g_handed.isEmpty());
        QFile log(ErrorLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(log.readAll()).contains("No hay formulario para F988"));
        QVERIFY(window->isLoaded());
        QCOMPARE(Outline(tree()).size(), 4); // rebuilt from the tables
    }

    void theTaxpayerOptions()
    {
        AddPremises("1", "0");
        AddDeclaration({"F976", "05-2024"});
        window = OpenTaxpayer();
        QString id = "?";
        env->ui().onShow("Contribuyentes", [&](Controller& w) {
            auto& dialog = static_cast<Contribuyentes&>(w);
            id = dialog.Id + (dialog.NewRecord ? " new" : "");
        });
        dblClick("Modificar=0;idContribuyente=1");
        QCOMPARE(id, QString("1"));
        dblClick("Eliminar=0;idContribuyente=1");
        QCOMPARE(env->ui().lastText(),
                 QString("No puede eliminar un Contribuyente que posea formularios cargados"));
        QVERIFY(window->isLoaded());
    }

    void eliminarContribuyenteDeletesItsPremisesAndClosesTheWindow()
    {
        AddPremises("1", "0");
        AddPremises("2", "0");
        AddTaxpayer(2, "OTRO", "20111111112");
        AddPremises("1", "0", "0", "0", "9", {}, "20111111112"); // its objeto of the same padrón
        for (const QString& objeto : QStringList{"1", "9"})
            Db::insert("Actividades_x_padrones",
                       {"padron=" + Pad13("1"), "objeto=" + Pad13(objeto)});
        window = OpenTaxpayer();
        env->ui().answer("Desea eliminar el contribuyente?", Msg::No);
        env->ui().answer("Desea eliminar el contribuyente?", Msg::Yes);
        dblClick("Eliminar=0;idContribuyente=1");
        QVERIFY(window->isLoaded());
        QCOMPARE(Db::count("Contribuyentes"), 2);
        dblClick("Eliminar=0;idContribuyente=1");
        QVERIFY(!window->isLoaded());
        QCOMPARE(Db::column("SELECT idContribuyente FROM Contribuyentes"), QStringList{"2"});
        QCOMPARE(Db::column("SELECT objeto FROM tPadronesComerciales"), QStringList{Pad13("9")});
        QCOMPARE(Db::column("SELECT objeto FROM Actividades_x_padrones"), QStringList{Pad13("9")});
    }
};

QTEST_GUILESS_MAIN(TstDispatch)
#include "tst_dispatch.moc"
