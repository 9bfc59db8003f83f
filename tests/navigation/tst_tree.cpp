#include <QtTest>

#include "Globals.h"
#include "NavigationData.h"
#include "Person.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "navigation/ZoForms.h"
#include "output/GenerarDisco.h"

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

} // namespace

// The taxpayer's tree, the years and months opened under it, the copy of a
// month, and what the window's buttons do to the tree.
class TstTree : public EnvTest
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

    void seed() override { AddTaxpayer(1, "PEREZ JUAN", kCuit); }
    void tearDown() override
    {
        window.reset();
        ResetForms();
    }

private slots:
    void offerByRegimeAndFlags_data()
    {
        QTest::addColumn<QString>("flags"); // regimen, retención, percepción
        QTest::addColumn<QString>("offer");
        QTest::addColumn<QString>("newMonth"); // no main return yet: no annex
        auto row = [](const char* name, const char* flags, const char* offer,
                      const char* newMonth) { QTest::newRow(name) << flags << offer << newMonth; };
        row("general, retention", "0 1 0", "F976 F978 F977 F986 F985", "F976 F986 F985");
        row("general, perception", "0 0 1", "F976 F978 F977 F988 F987", "F976 F988 F987");
        row("general, both", "0 1 1", "F976 F978 F977 F988 F987 F986 F985",
            "F976 F988 F987 F986 F985");
        row("general", "0 0 0", "F976 F978 F977", "F976");
        row("procom, retention", "1 1 0", "F2001 F978 F977 F986 F985", "F2001 F986 F985");
        row("procom, perception", "1 0 1", "F2001 F978 F977 F988 F987", "F2001 F988 F987");
        row("procom, both", "1 1 1", "F2001 F978 F977 F988 F987 F986 F985",
            "F2001 F988 F987 F986 F985");
        row("procom", "1 0 0", "F2001 F978 F977", "F2001");
        row("agent, retention", "2 1 0", "F986 F985", "F986 F985");
        row("agent, perception", "2 0 1", "F988 F987", "F988 F987");
        row("agent, both", "2 1 1", "F988 F987 F986 F985", "F988 F987 F986 F985");
        // all eight; annexes need no main return here, one main return only
        row("agent, no flag", "2 0 0", "F976 F2001 F978 F977 F988 F987 F986 F985",
            "F976 F978 F977 F988 F987 F986 F985");
        row("another regime", "5 1 1", "F976 F2001 F978 F977 F988 F987 F986 F985", "");
        row("an empty flag is on", "0 _ 0", "F976 F978 F977 F986 F985", "F976 F986 F985");
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
        QTest::addColumn<QStringList>("rows"); // form:ctrl in Id order
        QTest::addColumn<QStringList>("numbers");
        QTest::newRow("three count up") << QStringList{"F976:0", "F976:1", "F976:2", "F976:3"}
                                        << QStringList{"", "1", "2", "3"};
        QTest::newRow("an original in between starts again")
            << QStringList{"F976:0", "F976:1", "F978:0", "F978:1"} << QStringList{"", "1", "", "1"};
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
        QTest::addColumn<QString>("regimen");
        QTest::addColumn<QString>("stored");
        // clang-format off
        QTest::newRow("F976 under Procom") << "1" << "F976";
        QTest::newRow("F2001 under the general regime") << "0" << "F2001";
        QTest::newRow("F2001 of an agent") << "2" << "F2001";
        // clang-format on
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
        QTest::addColumn<QString>("regimen");
        QTest::addColumn<QStringList>("versions"); // retenciones|percepciones in Id order
        QTest::addColumn<QString>("annexes");
        QTest::newRow("retentions back F977") << "0" << QStringList{"150,00|0,00"} << "F977";
        QTest::newRow("perceptions back F978") << "0" << QStringList{"0,00|2.500,50"} << "F978";
        QTest::newRow("cents count") << "0" << QStringList{"0,01|0,50"} << "F978 F977";
        QTest::newRow("blank backs nothing") << "0" << QStringList{"|"} << "";
        QTest::newRow("the latest version decides")
            << "0" << QStringList{"100,00|100,00", "0,00|100,00"} << "F978";
        QTest::newRow("Procom reads F2001") << "1" << QStringList{"10,00|0,00"} << "F977";
        QTest::newRow("agents need no main return") << "2" << QStringList{} << "F978 F977";
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
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<QString>("limit"); // AnioMaximo; "" takes the options away
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("created"); // "" when refused
        auto row = [](const char* name, const char* dialog, const char* limit, const char* typed,
                      const char* created) {
            QTest::newRow(name) << dialog << limit << typed << created;
        };
        row("2050 with the seed", "NuevoAnio", "2050", "2050", "Año: 2050");
        row("2051 with the seed", "NuevoAnio", "2050", "2051", "");
        row("the options widen it", "NuevoAnio", "2060", "2055", "Año: 2055");
        row("below the minimum", "NuevoAnio", "2050", "1999", "");
        row("built-in limits", "NuevoAnio", "", "1950", "Año: 1950");
        row("one digit is padded", "NuevoPeriodo", "", "7", "Periodo: 07");
        row("month 13", "NuevoPeriodo", "", "13", "");
        row("month 00", "NuevoPeriodo", "", "00", "");
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
        gForms().InsertCopiaDDJJ("1", "08", "2024", "2024", "09", Pad13("1"), Pad13("1"));
        QCOMPARE(
            Db::column("SELECT idFormulario FROM TPadrones_Formularios WHERE Periodo = '09-2024' "
                       "ORDER BY 1"),
            (QStringList{"F986", "F988"}));
        QCOMPARE(Db::column("SELECT ImporteDepositar FROM F988 WHERE Periodo = '09-2024'"),
                 QStringList{"1.234,56"});
    }

    void buttonsFollowTheClickedNode_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<bool>("nuevoPeriodo");
        QTest::addColumn<bool>("generar");
        QTest::newRow("year") << "Formularios Año: 2024" << true << false;
        QTest::newRow("month") << "Periodo: 03" << false << true;
        QTest::newRow("declaration") << "Formulario Generado" << false << true;
        QTest::newRow("form to start") << "Nuevo - " << false << false;
        QTest::newRow("premises") << "Padrón N°" << false << false;
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
        QTest::addColumn<QString>("principal");
        QTest::addColumn<bool>("declared");
        QTest::addColumn<QString>("message");
        QTest::newRow("principal") << "X" << false
                                   << "El Padrón que se desea eliminar es el Padrón Principal.\r\n"
                                      "Por favor defina un nuevo Padrón Principal para continuar.";
        QTest::newRow("declared") << "" << true
                                  << "No puede eliminar un padrón que posea formularios cargados";
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
};

QTEST_GUILESS_MAIN(TstTree)
#include "tst_tree.moc"
