#include <QtTest>

#include "BrokenDatabase.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "NavigationData.h"
#include "Person.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "navigation/SeleccionFormulario.h"
#include "navigation/ZoForms.h"
#include "output/GenerarDisco.h"
#include "registry/Contribuyentes.h"

using namespace nav;

namespace {

const QString kF976 = "Formulario Generado - T.I.S.S.H. Régimen General DDJJ Mensual: F976";

// The person in a dialog: retypes `field` and accepts with `accept`; when the
// dialog refuses, cancels with `cancel`.
std::function<void(Controller&)> enter(const QString& field, const QString& text,
                                       const QString& accept = "cmdAceptar",
                                       const QString& cancel = "cmdCancelar")
{
    return [=](Controller& w) {
        Person p(w);
        p.retype(field, "");
        p.type(field, text);
        p.leave(field);
        p.click(accept);
        if (w.isShown())
            p.click(cancel);
    };
}

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

// The taxpayer's tree: the years and months opened under it, the copy of a
// month, what the window's buttons do to it; and a double click on it, with
// the choice on a declaration that exists, the string and header record each
// form is handed, and the taxpayer's options.
class TstNavigation : public EnvTest
{
    Q_OBJECT
    std::unique_ptr<ContribuyentesDatos> window;

    TreeModel& tree() { return (*window)["trvDatos"].tree(); }
    void open() { window = OpenTaxpayer(); }
    void click(const QString& node, const QString& button)
    {
        Person person(*window);
        person.clickNode("trvDatos", node);
        person.click(button);
    }
    void dblClick(const QString& key)
    {
        QVERIFY2(tree().contains(key), qPrintable(key));
        Person(*window).dblClickNode("trvDatos", key);
    }
    // Opens taxpayer 1 and double-clicks a declaration through the dialog.
    void select(const Declaration& d, std::function<void(Controller&)> script)
    {
        if (!window)
            open();
        env->ui().onShow("SeleccionFormulario", std::move(script));
        dblClick(NodeKey(d));
    }
    // Opens a month of premises 1 and the first form it offers to start.
    void startForm(const QString& mm)
    {
        open();
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
    void offerByRegimeAndFlags_data()
    {
        // flags: regimen, retención, percepción; newMonth: with no main return yet, no annex
        Columns<QString, QString, QString>("flags", "offer", "newMonth");
        Row("general, retention", "0 1 0", "F976 F978 F977 F986 F985", "F976 F986 F985");
        Row("general, perception", "0 0 1", "F976 F978 F977 F988 F987", "F976 F988 F987");
        Row("general, both", "0 1 1", "F976 F978 F977 F988 F987 F986 F985",
            "F976 F988 F987 F986 F985");
        Row("general", "0 0 0", "F976 F978 F977", "F976");
        Row("procom, retention", "1 1 0", "F2001 F978 F977 F986 F985", "F2001 F986 F985");
        Row("procom, perception", "1 0 1", "F2001 F978 F977 F988 F987", "F2001 F988 F987");
        Row("procom, both", "1 1 1", "F2001 F978 F977 F988 F987 F986 F985",
            "F2001 F988 F987 F986 F985");
        Row("procom", "1 0 0", "F2001 F978 F977", "F2001");
        Row("agent, retention", "2 1 0", "F986 F985", "F986 F985");
        Row("agent, perception", "2 0 1", "F988 F987", "F988 F987");
        Row("agent, both", "2 1 1", "F988 F987 F986 F985", "F988 F987 F986 F985");
        // all eight; annexes need no main return here, one main return only
        Row("agent, no flag", "2 0 0", "F976 F2001 F978 F977 F988 F987 F986 F985",
            "F976 F978 F977 F988 F987 F986 F985");
        Row("another regime", "5 1 1", "F976 F2001 F978 F977 F988 F987 F986 F985", "");
        Row("an empty flag is on", "0 _ 0", "F976 F978 F977 F986 F985", "F976 F986 F985");
    }
    void offerByRegimeAndFlags()
    {
        QFETCH(QString, flags);
        QFETCH(QString, offer);
        QFETCH(QString, newMonth);
        QStringList f = flags.split(' ').replaceInStrings("_", "");
        RecordsetPtr rs = gForms().GetSelectFormulariosNuevos(f[1], f[2], f[0]);
        QStringList ids;
        for (; rs && !rs->EOF_(); rs->MoveNext())
            ids << rs->Text(0);
        QCOMPARE(ids.join(' '), offer);

        // Nuevo Año, then Nuevo Periodo on it, as the person does.
        AddPremises("1", f[0], f[1], f[2]);
        open();
        env->ui().onShow("NuevoAnio", enter("txtAnio", "2024"));
        click(PremisesKey("1"), "cmbNuevoAnio");
        QCOMPARE(ChildCaptions(tree(), PremisesKey("1")), QStringList{"Formularios Año: 2024"});
        env->ui().onShow("NuevoPeriodo", enter("txtPeriodo", "3"));
        click(PremisesKey("1") + ";Anio=2024", "cmbNuevoPeriodo");
        QCOMPARE(NewForms(tree(), MonthKey("1", "2024", "03")).join(' '), newMonth);
        // nothing is written until a form is saved
        QCOMPARE(Db::count("TPadrones_Formularios"), 0);
        window->ActualizoVista();
        QCOMPARE(ChildCaptions(tree(), PremisesKey("1")), QStringList{});
    }

    void theTreeOfATaxpayer()
    {
        AddPremises("1", "0", "1");
        AddPremises("2", "2", "0", "1"); // a perception agent: its forms stay its own
        AddDeclaration({"F976", "05-2023", 0, "0", "1", "1", {"Retenciones=150,00"}});
        AddDeclaration({"F986", "05-2023"});
        AddDeclaration({"F976", "02-2024"});
        AddDeclaration({"F976", "02-2024", 1, "10-03-2024"});
        AddDeclaration({"F976", "05-2024"}); // the same month of the next year
        open();
        const QString f986 = "T.I.S.S.H. Agentes de Retención DDJJ Mensual: F986";
        const QString f985 = "Nuevo - T.I.S.S.H. Anexo Informativo de Retenciones Realizadas: F985";
        QCOMPARE(Outline(tree()),
                 (QStringList{"Modificar datos personales",
                              "Eliminar Contribuyente",
                              "Padrones Comerciales",
                              "  Padrón N° 0000000000001 - Objeto N° 0000000000001",
                              "    Formularios Año: 2023",
                              "      Periodo: 05",
                              "        " + kF976,
                              "        Formulario Generado - " + f986,
                              "        Nuevo - T.I.S.S.H. Anexo Retenciones Deducidas: F977",
                              "        " + f985,
                              "    Formularios Año: 2024",
                              "      Periodo: 02",
                              "        " + kF976,
                              "        " + kF976 + " (Rectif. N° 1 10-03-2024)",
                              "        Nuevo - " + f986,
                              "        " + f985,
                              "      Periodo: 05",
                              "        " + kF976,
                              "        Nuevo - " + f986,
                              "        " + f985,
                              "  Padrón N° 0000000000002 - Objeto N° 0000000000001"}));
        // keys to the character: they are what the dispatcher acts on
        const QString month = MonthKey("1", "2024", "02");
        QCOMPARE(tree().node(0).key, QString("Modificar=0;idContribuyente=1"));
        QCOMPARE(tree().node(1).key, QString("Eliminar=0;idContribuyente=1"));
        QCOMPARE(tree().node(2).key, QString("LocCom"));
        QVERIFY(tree().contains(NodeKey({"F976", "02-2024", 1, "10-03-2024"})));
        QVERIFY(tree().contains(month +
                                ";Formulario=F986;Rectificativa=Falso;"
                                "FechaRectificativa=0;FechaRectificativaNueva=0;"
                                "Nuevo=Verdadero;ConDatos=Falso;idEncFormulario=-1;ctrl=0"));
        const QVector<int>& children = tree().node(tree().indexOf(month)).children;
        QCOMPARE(tree().node(children.at(0)).image, QString("Archivo"));
        QCOMPARE(tree().node(children.at(2)).image, QString("Blank"));
        QCOMPARE(tree().node(tree().indexOf(month)).image, QString("Carpeta"));
        QCOMPARE(tree().node(0).image, QString("Modificar"));
        QVERIFY(tree().node(tree().indexOf(PremisesKey("1"))).expanded);
        QVERIFY(tree().node(tree().indexOf(month)).expanded);
        QCOMPARE(window->caption(), QString("Contribuyente: PEREZ JUAN - 20-12345678-6"));

        // the fast lookups answer as a walk over every key would
        Field& trv = (*window)["trvDatos"];
        QStringList texts = {"LocCom", "ctrl=0", "Padrón N° 0000000000002", ";Periodo=02"};
        for (const QString& mm : QStringList{"02", "03", "2", "0"})
            for (const QString& f :
                 QStringList{"", "F976", "F2001", "F986", "F985", "F98", "F9761"})
                texts << MonthKey("1", "2024", mm) + (f.isEmpty() ? "" : ";Formulario=" + f);
        for (const QString& text : texts) {
            bool walk = false;
            for (const TreeNode& node : tree().nodes())
                walk = walk || node.key.contains(text);
            QVERIFY2(gForms().VerifyNode(text, trv) == walk, qPrintable(text));
        }
    }

    void rectificationCaptions_data()
    {
        // rows: form:ctrl in Id order
        Columns<QStringList, QStringList>("rows", "numbers");
        Row("three count up", QStringList{"F976:0", "F976:1", "F976:2", "F976:3"},
            QStringList{"", "1", "2", "3"});
        Row("an original in between starts again",
            QStringList{"F976:0", "F976:1", "F978:0", "F978:1"}, QStringList{"", "1", "", "1"});
    }
    void rectificationCaptions()
    {
        QFETCH(QStringList, rows);
        QFETCH(QStringList, numbers);
        AddPremises("1", "0");
        QStringList expected;
        for (int i = 0; i < rows.size(); ++i) {
            const int ctrl = rows[i].section(':', 1).toInt();
            const QString fecha = ctrl ? QString("0%1-02-2024").arg(i) : "0";
            AddDeclaration({rows[i].section(':', 0, 0), "01-2024", ctrl, fecha});
            expected << (numbers[i].isEmpty() ? ""
                                              : " (Rectif. N° " + numbers[i] + " " + fecha + ")");
        }
        open();
        QStringList got;
        for (const QString& c : ChildCaptions(tree(), MonthKey("1", "2024", "01")))
            if (c.startsWith("Formulario Generado"))
                got << c.mid(c.indexOf(": F97") + 6);
        QCOMPARE(got, expected);
    }

    void aTaxpayerWithoutPremisesShowsItsTwoOptionsOnly()
    {
        open();
        QCOMPARE(Outline(tree()),
                 (QStringList{"Modificar datos personales", "Eliminar Contribuyente"}));
    }

    void oneMainReturnPerMonthWhateverTheRegimeNow_data()
    {
        Columns<QString, QString>("regimen", "stored");
        Row("F976 under Procom", "1", "F976");
        Row("F2001 under the general regime", "0", "F2001");
        Row("F2001 of an agent", "2", "F2001");
    }
    void oneMainReturnPerMonthWhateverTheRegimeNow()
    {
        QFETCH(QString, regimen);
        QFETCH(QString, stored);
        AddPremises("1", regimen);
        AddDeclaration({stored, "06-2024"});
        open();
        const QStringList offered = NewForms(tree(), MonthKey("1", "2024", "06"));
        QVERIFY2(!offered.contains("F976") && !offered.contains("F2001"),
                 qPrintable(offered.join(' ')));
    }

    void annexesNeedTheMainReturnToDeclareTheirAmount_data()
    {
        // versions: retenciones|percepciones in Id order
        Columns<QString, QStringList, QString>("regimen", "versions", "annexes");
        Row("retentions back F977", "0", QStringList{"150,00|0,00"}, "F977");
        Row("perceptions back F978", "0", QStringList{"0,00|2.500,50"}, "F978");
        Row("cents count", "0", QStringList{"0,01|0,50"}, "F978 F977");
        Row("blank backs nothing", "0", QStringList{"|"}, "");
        Row("the latest version decides", "0", QStringList{"100,00|100,00", "0,00|100,00"}, "F978");
        Row("Procom reads F2001", "1", QStringList{"10,00|0,00"}, "F977");
        Row("agents need no main return", "2", QStringList{}, "F978 F977");
    }
    void annexesNeedTheMainReturnToDeclareTheirAmount()
    {
        QFETCH(QString, regimen);
        QFETCH(QStringList, versions);
        QFETCH(QString, annexes);
        AddPremises("1", regimen);
        for (int ctrl = 0; ctrl < versions.size(); ++ctrl) {
            const QStringList amounts{"Retenciones=" + versions[ctrl].section('|', 0, 0),
                                      "Percepciones=" + versions[ctrl].section('|', 1)};
            AddDeclaration({regimen == "1" ? "F2001" : "F976", "04-2024", ctrl,
                            ctrl ? "20-05-2024" : "0", "1", "1", amounts});
        }
        if (versions.isEmpty())
            AddDeclaration({"F986", "04-2024"});
        open();
        const QStringList offered = NewForms(tree(), MonthKey("1", "2024", "04"));
        QStringList got;
        for (const QString& id : offered)
            if (id == "F977" || id == "F978")
                got << id;
        QCOMPARE(got.join(' '), annexes);
    }

    void yearsAndMonthsThatAreThereAreRefused()
    {
        AddPremises("1", "0");
        AddDeclaration({"F976", "02-2023"});
        AddDeclaration({"F976", "05-2024"});
        open();
        const int nodes = tree().count();
        for (const QString& year : QStringList{"2023", "2024"}) {
            env->ui().onShow("NuevoAnio", enter("txtAnio", year));
            click(PremisesKey("1"), "cmbNuevoAnio");
            QCOMPARE(env->ui().lastText(), QString("Año ingresado."));
        }
        // a month, whether or not it is to be a copy
        env->ui().onShow("NuevoPeriodo", enter("txtPeriodo", "05"));
        click(PremisesKey("1") + ";Anio=2024", "cmbNuevoPeriodo");
        QCOMPARE(env->ui().lastText(), QString("Periodo ya ingresado."));
        env->ui().onShow("CopiarDDJJ", [](Controller& w) {
            Person p(w);
            p.choose("cboAnios", "2023");
            p.choose("cboPeriodos", "02");
            p.click("cmbAceptar");
        });
        env->ui().onShow("NuevoPeriodo", [](Controller& w) {
            Person p(w);
            p.click("cmdCopiar");
            QCOMPARE(w["txtPeriodoModelo"].text(), QString("02-2023"));
            p.retype("txtPeriodo", "05");
            p.click("cmdAceptar");
        });
        click(PremisesKey("1") + ";Anio=2024", "cmbNuevoPeriodo");
        QCOMPARE(env->ui().lastText(), QString("Periodo ya ingresado."));
        QCOMPARE(env->ui().messages().last().title, QString("Atención !"));
        QCOMPARE(tree().count(), nodes);
        QCOMPARE(Db::count("TPadrones_Formularios"), 2);
    }

    void yearAndMonthEntry_data()
    {
        // limit: AnioMaximo; "" takes the options away; created: "" when refused
        Columns<QString, QString, QString, QString>("dialog", "limit", "typed", "created");
        Row("2050 with the seed", "NuevoAnio", "2050", "2050", "Año: 2050");
        Row("2051 with the seed", "NuevoAnio", "2050", "2051", "");
        Row("the options widen it", "NuevoAnio", "2060", "2055", "Año: 2055");
        Row("below the minimum", "NuevoAnio", "2050", "1999", "");
        Row("built-in limits", "NuevoAnio", "", "1950", "Año: 1950");
        Row("one digit is padded", "NuevoPeriodo", "", "7", "Periodo: 07");
        Row("month 13", "NuevoPeriodo", "", "13", "");
        Row("month 00", "NuevoPeriodo", "", "00", "");
    }
    void yearAndMonthEntry()
    {
        QFETCH(QString, dialog);
        QFETCH(QString, limit);
        QFETCH(QString, typed);
        QFETCH(QString, created);
        if (limit.isEmpty())
            gAccess().Execute("DELETE FROM Opciones WHERE Nombre LIKE 'Anio%'");
        else
            gAccess().Execute("UPDATE Opciones SET Valor = '" + limit +
                              "' WHERE Nombre = 'AnioMaximo'");
        AddPremises("1", "0");
        AddDeclaration({"F976", "02-2024"});
        open();
        const bool year = dialog == "NuevoAnio";
        const QString parent = year ? PremisesKey("1") : PremisesKey("1") + ";Anio=2024";
        const QStringList before = ChildCaptions(tree(), parent);
        QString shown;
        env->ui().onShow(dialog, [&](Controller& w) {
            shown = w[year ? "txtAnio" : "txtPeriodo"].text();
            enter(year ? "txtAnio" : "txtPeriodo", typed)(w);
        });
        click(parent, year ? "cmbNuevoAnio" : "cmbNuevoPeriodo");
        const QDate today = QDate::currentDate();
        QCOMPARE(shown, year ? QString::number(today.year()) : today.toString("MM"));
        const QStringList added = ChildCaptions(tree(), parent).mid(before.size());
        QCOMPARE(added.join(""), created.isEmpty() ? "" : (year ? "Formularios " : "") + created);
        QCOMPARE(env->ui().texts().join("|"),
                 created.isEmpty() ? QString("El %1 ingresado es incorrecto, verifique por favor")
                                         .arg(year ? "año" : "periodo")
                                   : QString());
    }

    void aMonthCopiesTheOriginalsOfItsModelWithTheirLines()
    {
        AddPremises("1", "0", "1");
        const QStringList header{"Impuesto=30,00", "Retenciones=12,50", "SaldoAFavorF=02-2023",
                                 "Guidv=ABCDEF012345"};
        const QString c976 = AddDeclaration({"F976", "03-2023", 0, "0", "1", "1", header});
        AddLine("F976", c976, "0", "0", "0001", {"TipoActividad=VENTA", "Impuesto=18,00"});
        AddLine("F976", c976, "0", "0", "0002", {"TipoActividad=O'HIGGINS", "Impuesto=12,00"});
        const QString c977 = AddDeclaration(
            {"F977", "03-2023", 0, "0", "1", "1", {"RazonSocial=ACME", "TotalPercepciones=12,50"}});
        AddLine("F977", c977, "0", "0", "0001", {"Cuit=30712345671", "ImportePercibido=12,50"});
        // a rectification of the model month is never a source
        const QString r976 =
            AddDeclaration({"F976", "03-2023", 1, "10-04-2023", "1", "1", {"Impuesto=99,00"}});
        AddLine("F976", r976, "10-04-2023", "1", "0001");
        AddDeclaration({"F986", "01-2024"});
        open();
        env->ui().onShow("CopiarDDJJ", [](Controller& w) {
            Person p(w);
            QCOMPARE(w["cboAnios"].listCount(), 2);
            p.click("cmbAceptar");
            p.choose("cboAnios", "2023");
            p.click("cmbAceptar");
            p.choose("cboPeriodos", "03");
            p.click("cmbAceptar");
        });
        env->ui().onShow("NuevoPeriodo", [](Controller& w) {
            Person p(w);
            p.click("cmdCopiar");
            p.retype("txtPeriodo", "06");
            p.click("cmdAceptar");
        });
        click(PremisesKey("1") + ";Anio=2024", "cmbNuevoPeriodo");
        QCOMPARE(env->ui().texts(), (QStringList{"Debe seleccionar un año para continuar.",
                                                 "Debe seleccionar un periodo para continuar."}));

        const QString code = Pad13("1") + "062024" + Pad13("1") + "O";
        QCOMPARE(
            Db::column("SELECT Codigo || Rectificativa || FechaRectificativa || ctrl || '|' || "
                       "Impuesto || Retenciones || SaldoAFavorF || IFNULL(Guidv, '-') FROM F976 "
                       "WHERE Periodo = '06-2024'"),
            QStringList{code + "False00|30,0012,5002-2023-"});
        QCOMPARE(
            Db::column("SELECT CodigoDetalle || TipoActividad || Impuesto || FechaRectificativa || "
                       "ctrl FROM F976_Detalle WHERE Codigo = '" +
                       code + "' ORDER BY 1"),
            (QStringList{"0001VENTA18,0000", "0002O'HIGGINS12,0000"}));
        QCOMPARE(Db::column("SELECT RazonSocial || TotalPercepciones FROM F977 WHERE Codigo = '" +
                            code + "'"),
                 QStringList{"ACME12,50"});
        QCOMPARE(Db::column("SELECT Cuit || ImportePercibido FROM F977_Detalle WHERE Codigo = '" +
                            code + "'"),
                 QStringList{"3071234567112,50"});
        QCOMPARE(
            Db::column("SELECT idFormulario || Rectificativa || FechaRectificativa || ctrl FROM "
                       "TPadrones_Formularios WHERE Periodo = '06-2024' ORDER BY 1"),
            (QStringList{"F976False00", "F977False00"}));
        // the tree was rebuilt; the annex found its amount in the copied main return
        QCOMPARE(ChildCaptions(tree(), MonthKey("1", "2024", "06")).mid(0, 2),
                 (QStringList{
                     kF976, "Formulario Generado - T.I.S.S.H. Anexo Retenciones Deducidas: F977"}));

        // the agents' returns have no Codigo; a model of rectifications only copies nothing
        for (const QString& form : QStringList{"F986", "F988"})
            AddDeclaration({form, "08-2024", 0, "0", "1", "1", {"ImporteDepositar=1.234,56"}});
        AddDeclaration({"F978", "08-2024", 1, "02-09-2024"});
        // a second workstation starting the same month, its tree not yet
        // showing it, copies nothing twice
        for (int workstation = 1; workstation <= 2; ++workstation) {
            gForms().InsertCopiaDDJJ("1", "08", "2024", "2024", "09", Pad13("1"), Pad13("1"));
            QCOMPARE(Db::column("SELECT idFormulario FROM TPadrones_Formularios WHERE Periodo = "
                                "'09-2024' ORDER BY 1"),
                     (QStringList{"F986", "F988"}));
        }
        QCOMPARE(Db::column("SELECT ImporteDepositar FROM F988 WHERE Periodo = '09-2024'"),
                 QStringList{"1.234,56"});
        QCOMPARE(Db::column("SELECT COUNT(*) FROM F986 WHERE Periodo = '09-2024'"),
                 QStringList{"1"});
    }

    void buttonsFollowTheClickedNode_data()
    {
        Columns<QString, bool, bool>("caption", "nuevoPeriodo", "generar");
        Row("year", "Formularios Año: 2024", true, false);
        Row("month", "Periodo: 03", false, true);
        Row("declaration", "Formulario Generado", false, true);
        Row("form to start", "Nuevo - ", false, false);
        Row("premises", "Padrón N°", false, false);
    }
    void buttonsFollowTheClickedNode()
    {
        QFETCH(QString, caption);
        QFETCH(bool, nuevoPeriodo);
        QFETCH(bool, generar);
        AddPremises("1", "0", "1");
        AddDeclaration({"F976", "03-2024"});
        open();
        QVERIFY(!(*window)["cmbNuevoPeriodo"].enabled() && !(*window)["cmbGenerar"].enabled());
        Person person(*window);
        person.clickNode("trvDatos", PremisesKey("1") + ";Anio=2024");
        person.clickNode("trvDatos", MonthKey("1", "2024", "03"));
        for (const TreeNode& n : tree().nodes())
            if (n.text.startsWith(caption)) {
                person.clickNode("trvDatos", n.key);
                break;
            }
        QCOMPARE((*window)["cmbNuevoPeriodo"].enabled(), nuevoPeriodo);
        QCOMPARE((*window)["cmbGenerar"].enabled(), generar);
        person.click("cmdDesplegar");
        for (const TreeNode& n : tree().nodes())
            QVERIFY(n.children.isEmpty() || n.expanded);
        person.click("cmdContraer");
        for (const TreeNode& n : tree().nodes())
            QCOMPARE(n.expanded, n.text.startsWith("Padr"));
    }

    void generarHandsOneDeclarationOrAWholeMonth()
    {
        AddPremises("1", "0", "1");
        AddDeclaration({"F976", "03-2024"});
        AddDeclaration({"F986", "03-2024"});
        AddDeclaration({"F976", "04-2024"});
        open();
        QStringList handed;
        auto record = [&](Controller& w) {
            auto& g = static_cast<GenerarDisco&>(w);
            handed << QString::number(g.TotalPeriodo) + g.Parametros;
        };
        env->ui().onShow("GenerarDisco", record);
        env->ui().onShow("GenerarDisco", record);
        const QString f976 = NodeKey({"F976", "03-2024"});
        const QString f986 = NodeKey({"F986", "03-2024"});
        click(f986, "cmbGenerar");
        click(MonthKey("1", "2024", "03"), "cmbGenerar");
        QCOMPARE(handed, (QStringList{"0" + f986, "1" + f976 + "#" + f986}));
    }

    void borrarPadronRefusals_data()
    {
        Columns<QString, bool, QString>("principal", "declared", "message");
        Row("principal", "X", false,
            "El Padrón que se desea eliminar es el Padrón Principal.\r\n"
            "Por favor defina un nuevo Padrón Principal para continuar.");
        Row("declared", "", true, "No puede eliminar un padrón que posea formularios cargados");
    }
    void borrarPadronRefusals()
    {
        QFETCH(QString, principal);
        QFETCH(bool, declared);
        QFETCH(QString, message);
        AddPremises("1", "0", "0", "0", "1", principal);
        if (declared)
            AddDeclaration({"F976", "03-2024"});
        open();
        click(PremisesKey("1"), "cmdBorrarPadron");
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE(Db::count("tPadronesComerciales"), 1);
    }

    void borrarPadronDeletesThePremisesWithAllItHolds()
    {
        for (const QString& objeto : QStringList{"1", "2"}) { // the same padrón, two objetos
            AddPremises("7", "0", "0", "0", objeto);
            gAccess().Execute(QString("INSERT INTO Actividades_x_padrones (padron, objeto) "
                                      "VALUES ('%1', '%2')")
                                  .arg(Pad13("7"), Pad13(objeto)));
            for (const QString& form : QStringList{"F2001", "F976", "F978", "F986", "F988"}) {
                const QString codigo = AddDeclaration({form, "01-2020", 0, "0", "7", objeto});
                if (!codigo.isEmpty())
                    AddLine(form, codigo, "0", "0", "0001");
            }
        }
        gAccess().Execute("DELETE FROM TPadrones_Formularios"); // rows left behind
        open();
        env->ui().answer("Desea eliminar el Padrón-Objeto N° 0000000000007-0000000000001", Msg::No);
        click(PremisesKey("7", "1"), "cmdBorrarPadron");
        QCOMPARE(Db::count("tPadronesComerciales"), 2);
        env->ui().answer("Desea eliminar el Padrón-Objeto", Msg::Yes);
        click(PremisesKey("7", "1"), "cmdBorrarPadron");
        for (const QString& table : QStringList{"tPadronesComerciales", "Actividades_x_padrones",
                                                "F2001", "F976", "F978", "F986", "F988"})
            QCOMPARE(Db::column("SELECT objeto FROM " + table), QStringList{Pad13("2")});
        for (const QString& table : QStringList{"F2001_Detalle", "F976_Detalle", "F978_Detalle"})
            QCOMPARE(Db::column("SELECT substr(Codigo, 20, 13) FROM " + table),
                     QStringList{Pad13("2")});
        QVERIFY(!tree().contains(PremisesKey("7", "1")) && tree().contains(PremisesKey("7", "2")));
    }

    // --- A double click on the tree -----------------------------------------

    void aFormToStartOpensAtOnce()
    {
        AddPremises("1", "0", "1");
        AddDeclaration({"F976", "05-2024"});
        open();
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
        // tail: after kHead + "Formulario=F976;"
        Columns<QString, QString, QString>("option", "date", "tail");
        auto row = [](const char* name, const char* option, const char* date, const QString& flags,
                      const QString& ctrl, const QString& nueva) {
            const QString letter = ctrl == "0" ? "O" : "R";
            Row(name, option, date,
                flags + ";FechaRectificativa=0;ctrl=" + ctrl + ";idContribuyente=1;" + nueva +
                    "Codigo=" + kCode + letter + ";");
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
        // enabled: Consultar, Modificar, sin, con, Eliminar
        Columns<int, QString, QString>("ctrl", "enabled", "checked");
        Row("the original", 0, "10000", "10000");
        Row("the first rectification", 1, "10000", "10000");
        Row("the latest", 2, "11111", "01000");
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
        // message: "" when accepted
        Columns<QString, QString, QString>("form", "typed", "message");
        const QString later = "La fecha de Rectificativa debe ser mayor a la del formulario";
        // the latest rectification is of 15-03-2024; the period is 01-2023
        Row("the same day", "F976", "15032024", later);
        Row("the day before", "F976", "14032024", later);
        Row("the day after", "F976", "16032024", "");
        Row("a later month of an earlier year", "F976", "10042023", "");
        Row("F978", "F978", "15032024", later);
        Row("F2001", "F2001", "01022024", later);
        Row("F986 by padrón and period", "F986", "15032024", later);
        Row("F988", "F988", "16032024", "");
        // these compare with what the previous statement answered
        Row("F977", "F977", "15032024", "");
        Row("F985", "F985", "01012024", "");
        Row("no date", "F976", "", "Debe ingresar una fecha.");
        Row("before the period", "F976", "31122022",
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
            Row(qPrintable(form), form);
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

    // A deletion the database refuses takes nothing away: not the
    // declaration without its lines, nor its registration without it.
    void refusedDeletionKeepsTheDeclaration_data() { BrokenDatabase::Rows(); }
    void refusedDeletionKeepsTheDeclaration()
    {
        FETCH_BREAKAGE(how);
        AddPremises("1", "2", "1", "1");
        const Declaration original{"F976", "05-2024"};
        AddLine("F976", AddDeclaration(original), "0", "0", "0001");
        SeleccionFormulario w;
        w.Parametros = kHead + "Formulario=F976;Nuevo=Falso;ConDatos=Verdadero;"
                               "Rectificativa=False;FechaRectificativa=0;ctrl=0;";
        w.load();
        BrokenDatabase::Break(how, "TPadrones_Formularios");
        env->ui().answer("Esta seguro de eliminar el formulario?", Msg::Yes);
        w.Eliminar();
        QCOMPARE(env->ui().lastText(), BrokenDatabase::SaveFailure(how));
        BrokenDatabase::Mend();
        QCOMPARE(Db::count("F976"), 1);
        QCOMPARE(Db::count("F976_Detalle"), 1);
    }

    void theHeaderRecordOfEachForm_data()
    {
        // amounts: what the record reads, column=value
        Columns<QString, QStringList>("form", "amounts");
        auto row = [](const char* form, const char* amounts) {
            Row(form, form, QString(amounts).split(' '));
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
        QVERIFY(
            QString::fromUtf8(ReadBytes(ErrorLogPath())).contains("No hay formulario para F988"));
        QVERIFY(window->isLoaded());
        QCOMPARE(Outline(tree()).size(), 4); // rebuilt from the tables
    }

    void theTaxpayerOptions()
    {
        AddPremises("1", "0");
        AddDeclaration({"F976", "05-2024"});
        open();
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
        // the question names the taxpayer: CUIT and name
        const QString named =
            Db::rows("SELECT Cuit, ApellidoNombre FROM Contribuyentes WHERE idContribuyente = 1")
                .value(0)
                .replace(u'|', u' ');
        QVERIFY(named.contains(u'-'));
        open();
        env->ui().answer("Desea eliminar el contribuyente?", Msg::No);
        env->ui().answer("Desea eliminar el contribuyente?", Msg::Yes);
        dblClick("Eliminar=0;idContribuyente=1");
        QVERIFY(window->isLoaded());
        QCOMPARE(env->ui().lastText(), "Desea eliminar el contribuyente?\n" + named);
        QCOMPARE(Db::count("Contribuyentes"), 2);
        dblClick("Eliminar=0;idContribuyente=1");
        QVERIFY(!window->isLoaded());
        QCOMPARE(Db::column("SELECT idContribuyente FROM Contribuyentes"), QStringList{"2"});
        QCOMPARE(Db::column("SELECT objeto FROM tPadronesComerciales"), QStringList{Pad13("9")});
        QCOMPARE(Db::column("SELECT objeto FROM Actividades_x_padrones"), QStringList{Pad13("9")});
    }
};

QTEST_GUILESS_MAIN(TstNavigation)
#include "tst_navigation.moc"
