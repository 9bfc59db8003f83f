#include <QtTest>

#include "BrokenDatabase.h"
#include "Person.h"
#include "RegistryTestData.h"
#include "TestSupport.h"
#include "registry/frmLocalComercial.h"

namespace {

const QString kStored =
    "SELECT idContribuyente, cuit, padron, objeto, grupo, categoria, razon_social, "
    "nombre_fantasia, percepcion, retencion, regimen, suscriptor, caracter, "
    "calle_numero, localidad_departamento, cp FROM tPadronesComerciales";
const QString kActivities = "SELECT * FROM Actividades_x_padrones";
const QString kRepeat = "Está ingresando una actividad repetida. Verifique los datos por favor.";

// The search dialog, as a person answers it: the first activity matching the
// text, or Escape.
void searchAnswers(ScriptedUi& ui, const QString& typed, bool choose = true)
{
    ui.onShow("Busqueda", [typed, choose](Controller& b) {
        Person p(b);
        p.type("txtBuscar", typed);
        p.key("txtBuscar", KeyCode::Down);
        if (choose)
            p.choose("lstRegistros", 0);
        p.key("lstRegistros", choose ? KeyCode::Return : KeyCode::Escape);
    });
}

} // namespace

// The premises dialog driven as a person does: key rules, padding, the
// duplicate pair, the regime boxes, the activity lookups and their repeat
// test, the validation in its order, and what is stored.
class TstLocalComercial : public EnvTest
{
    Q_OBJECT
    std::unique_ptr<frmLocalComercial> w;

    void tearDown() override { w.reset(); }

    frmLocalComercial& newDialog()
    {
        w = std::make_unique<frmLocalComercial>();
        w->Cuit = Reg::kCuit;
        w->Modificar = false;
        w->load();
        return *w;
    }

    frmLocalComercial& editDialog(const QString& padron, const QString& objeto)
    {
        w = std::make_unique<frmLocalComercial>();
        w->Cuit = Reg::kCuit;
        w->Padron = padron;
        w->Objeto = objeto;
        w->Modificar = true;
        w->cargaDatos();
        return *w;
    }

    void runStep(Person& p, const QString& step)
    {
        if (step == "aceptar") {
            p.click("cmdAceptar");
        } else if (step.startsWith("leave:")) {
            p.leave(step.mid(6));
        } else {
            const QStringList pair = step.split('=');
            p.retype(pair[0], pair[1]);
            p.leave(pair[0]);
        }
    }

private slots:
    // A premises is stored with its activities or not at all: a save the
    // database refuses half way leaves neither, says why, and keeps the
    // dialog open as typed.
    void refusedSaveStoresNothing_data() { BrokenDatabase::Rows(); }
    void refusedSaveStoresNothing()
    {
        FETCH_BREAKAGE(how);
        frmLocalComercial& d = newDialog();
        Reg::typePremises(d, {.padron = "123", .objeto = "1", .fantasia = "CENTRAL"});
        BrokenDatabase::Break(how, "Actividades_x_padrones");
        Person(d).click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), BrokenDatabase::SaveFailure(how));
        QVERIFY(d.isLoaded());
        QCOMPARE(d["txtNombreFantasia"].text(), QString("CENTRAL"));
        BrokenDatabase::Mend();
        QCOMPARE(Db::count("tPadronesComerciales"), 0);
    }

    void newPremisesIsStoredAsTyped()
    {
        frmLocalComercial& d = newDialog();
        Person p(d);
        p.type("txtCategoria", "3");
        p.type("txtIdSecundaria1", Reg::kFiambres);
        p.leave("txtIdSecundaria1");
        Reg::addPremises(d, {.padron = "123",
                             .objeto = "45",
                             .grupo = u'C',
                             .razonSocial = "comercial sur",
                             .fantasia = "el sol",
                             .percepcion = true,
                             .calle = "o'higgins 1234"});
        QVERIFY(!d.isLoaded());
        QCOMPARE(Db::rows(kStored),
                 QStringList{"1|20123456786|0000000000123|0000000000045|C|3|COMERCIAL SUR|EL SOL|"
                             "1|0|0|JUAN PEREZ|TITULAR|O'HIGGINS 1234|VALDO - CAPITAL|9180"});
        QCOMPARE(Db::rows(kActivities),
                 QStringList{"20123456786|0000000000123|0000000000045|" + Reg::kBovino + "|" +
                             Reg::kBovinoName + "|" + Reg::kFiambres + "|" + Reg::kFiambresName +
                             "||||||||"});
        QVERIFY(Db::rows("SELECT Principal FROM tPadronesComerciales") == QStringList{"<null>"});
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(!ErrorsLogged());
    }

    void keyRules_data()
    {
        Columns<QString, QString, QString>("name", "typed", "shown");
        Row("padrón: digits", "txtPadron", "12a.3-4", "1234");
        Row("padrón: thirteen at most", "txtPadron", "12345678901234567", "1234567890123");
        Row("activity code: six digits", "txtIdSecundaria2", "45 1,1234", "451123");
        Row("category: 1 to 7", "txtCategoria", "0890a7", "7");
        Row("postal code: capitals and digits", "txtCP", "b1900-ñ", "B1900Ñ");
        Row("razón social: no signs", "txtRazonSocial", "la o'higgins s.a.", "LA OHIGGINS SA");
        Row("street: anything", "txtCalleNumero", "o'higgins 12 (b)", "o'higgins 12 (b)");
        Row("description: only a lookup fills it", "txtPrincipal", "abc", "");
    }
    void keyRules()
    {
        const auto [name, typed, shown] =
            Fetch<QString, QString, QString>("name", "typed", "shown");
        frmLocalComercial& d = newDialog();
        Person(d).retype(name, typed);
        QCOMPARE(d[name].text(), shown);
    }

    void groupIsOneLetterFromAToH_data()
    {
        Columns<QList<int>, QString>("keys", "shown");
        Row("A", QList<int>{'A'}, "A");
        Row("H", QList<int>{'H'}, "H");
        Row("a second letter replaces the first", QList<int>{'B', 'E'}, "E");
        Row("I empties it", QList<int>{'C', 'I'}, "");
        Row("a digit empties it", QList<int>{'C', '5'}, "");
        Row("Shift released alone empties it", QList<int>{'D', KeyCode::Shift}, "");
    }
    void groupIsOneLetterFromAToH()
    {
        const auto [keys, shown] = Fetch<QList<int>, QString>("keys", "shown");
        frmLocalComercial& d = newDialog();
        for (int key : keys)
            Person(d).key("txtGrupo", key);
        QCOMPARE(d["txtGrupo"].text(), shown);
    }

    void leavingTheNames()
    {
        frmLocalComercial& d = newDialog();
        Person p(d);
        const QStringList upper{"txtRazonSocial", "txtNombreFantasia", "txtCalleNumero",
                                "txtLocalidadDepartamento"};
        for (const QString& name : upper + QStringList{"txtSuscriptor"}) {
            p.focus(name);
            d[name].setText("perez & cía"); // pasted: no key filter
            p.leave(name);
            QCOMPARE(d[name].text(), upper.contains(name) ? "PEREZ & CÍA" : "perez & cía");
        }
        // Enter moves on from the names
        p.key("txtNombreFantasia", KeyCode::Return);
        QCOMPARE(d.focused(), QString("chkRegimenGeneral"));
        QCOMPARE(d["txtNombreFantasia"].text(), QString("PEREZ & CÍA"));
    }

    void takenPairIsRefused_data()
    {
        Columns<QString, QString, bool, bool>("ownerCuit", "objeto", "edit", "refused");
        Row("under another taxpayer", Reg::kOtherCuit, "1", false, true);
        Row("under the same taxpayer", Reg::kCuit, "1", false, true);
        Row("same padrón, other objeto", Reg::kOtherCuit, "2", false, false);
        Row("editing that premises", Reg::kCuit, "1", true, false);
    }
    void takenPairIsRefused()
    {
        const auto [ownerCuit, objeto, edit, refused] =
            Fetch<QString, QString, bool, bool>("ownerCuit", "objeto", "edit", "refused");
        Reg::insertPremises(ownerCuit, "0000000000123", "0000000000001", "CENTRAL");
        frmLocalComercial& d = edit ? editDialog("0000000000123", "0000000000001") : newDialog();
        Person p(d);
        d["txtPadron"].setText("123");
        p.focus("txtObjeto");
        d["txtObjeto"].setText(objeto);
        p.leave("txtObjeto");
        if (refused) {
            QCOMPARE(env->ui().lastText(),
                     QString("Ya existe el Padrón / Objeto especificado. Verifique.-"));
            QCOMPARE(env->ui().messages().last().style, int(Msg::Information));
            QCOMPARE(d.focused(), QString("txtPadron"));
            QCOMPARE(d["txtPadron"].selectedText(), QString("0000000000123"));
            // the focus stays held until the pair changes
            QVERIFY(!p.leave("txtPadron"));
        } else {
            QVERIFY(env->ui().messages().isEmpty());
            QCOMPARE(d.focused(), QString("txtGrupo"));
        }
        QCOMPARE(d["txtObjeto"].text(), QString("%1").arg(objeto.toInt(), 13, 10, QChar('0')));
    }

    void regimeBoxes_data()
    {
        // boxes: General, PROCOM as checked; stored: regimen|percepcion|retencion
        Columns<QStringList, QString, QString>("clicks", "boxes", "stored");
        const QString general = "chkRegimenGeneral", procom = "chkRegimenProcom";
        Row("general", QStringList{general}, "10", "0|0|0");
        Row("procom", QStringList{procom}, "01", "1|0|0");
        Row("procom unchecks general", QStringList{general, procom}, "01", "1|0|0");
        Row("general unchecks procom", QStringList{procom, general}, "10", "0|0|0");
        Row("retention agent without regime", QStringList{"chkRetencion"}, "00", "2|0|1");
        Row("perception agent without regime", QStringList{"chkPercepcion"}, "00", "2|1|0");
        Row("general and both agents", QStringList{general, "chkPercepcion", "chkRetencion"}, "10",
            "0|1|1");
        Row("procom and retention agent", QStringList{procom, "chkRetencion"}, "01", "1|0|1");
        Row("general taken back", QStringList{general, general, "chkPercepcion"}, "00", "2|1|0");
    }
    void regimeBoxes()
    {
        const auto [clicks, boxes, stored] =
            Fetch<QStringList, QString, QString>("clicks", "boxes", "stored");
        frmLocalComercial& d = newDialog();
        Reg::typePremises(d, {.padron = "1", .objeto = "1", .general = false});
        Person p(d);
        for (const QString& box : clicks)
            p.click(box);
        QCOMPARE(QString::number(d["chkRegimenGeneral"].value()) +
                     QString::number(d["chkRegimenProcom"].value()),
                 boxes);
        p.click("cmdAceptar");
        QCOMPARE(Db::rows("SELECT regimen, percepcion, retencion FROM tPadronesComerciales"),
                 QStringList{stored});
    }

    void validationInOrder_data()
    {
        // answers: question fragment=Sí or No; message: "" when stored
        Columns<QStringList, QStringList, QString>("blank", "answers", "message");
        auto row = [](const char* name, const char* blank, const char* answers,
                      const QString& message) {
            Row(name, QString(blank).split(' ', Qt::SkipEmptyParts),
                QString(answers).split(' ', Qt::SkipEmptyParts), message);
        };
        row("padrón", "txtPadron", "", "Debe ingresar un N° de Padrón Comercial");
        row("objeto", "txtObjeto", "", "Debe ingresar un N° de Objeto");
        row("grupo", "txtGrupo", "", "Debe ingresar un Grupo");
        row("razón social", "txtRazonSocial", "", "Debe ingresar una Razón Social");
        row("no regime nor agent", "chkRegimenGeneral", "",
            "La selección actual no es válida.\nDebe seleccionar Régimen / Agente de Percepción / "
            "Agente de Retención");
        row("grupo before the regime", "chkRegimenGeneral txtGrupo", "", "Debe ingresar un Grupo");
        row("no activity code", "txtIdPrincipal", "", "Debe ingresar una actividad");
        row("no signatory, No", "txtSuscriptor", "Suscriptor=No",
            "Ingrese un Suscriptor para continuar.");
        row("no signatory, Sí", "txtSuscriptor", "Suscriptor=Sí", "");
        row("no capacity, No", "txtCaracter", "Carácter=No", "Ingrese el Carácter para continuar.");
        row("neither, Sí and Sí", "txtSuscriptor txtCaracter", "Suscriptor=Sí Carácter=Sí", "");
        row("blank category is fine", "txtCategoria", "", "");
    }
    void validationInOrder()
    {
        const auto [blank, answers, message] =
            Fetch<QStringList, QStringList, QString>("blank", "answers", "message");
        frmLocalComercial& d = newDialog();
        Reg::typePremises(d, {.padron = "1", .objeto = "1"});
        for (const QString& name : blank) {
            if (name.startsWith("chk"))
                Person(d).check(name, false);
            else
                d[name].setText(QString());
        }
        for (const QString& a : answers) {
            const QStringList pair = a.split('=');
            env->ui().answer(pair[0], pair[1] == "Sí" ? Msg::Yes : Msg::No);
        }
        Person(d).click("cmdAceptar");
        for (const ScriptedUi::Message& m : env->ui().messages())
            if (m.style & Msg::YesNo)
                QCOMPARE(m.title, QString("Local Comercial"));
        if (message.isEmpty()) {
            QVERIFY(!d.isLoaded());
            QCOMPARE(Db::count("tPadronesComerciales"), 1);
            return;
        }
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE(env->ui().messages().last().style, int(Msg::Information));
        QVERIFY(d.isLoaded());
        QCOMPARE(Db::count("tPadronesComerciales"), 0);
        QCOMPARE(Db::count("Actividades_x_padrones"), 0);
    }

    void requiredDataOnlyStoresZeros()
    {
        frmLocalComercial& d = newDialog();
        Reg::typePremises(d, {.padron = "5", .objeto = "5", .actividad = ""});
        d["txtCP"].setText(QString());
        d["txtLocalidadDepartamento"].setText(QString());
        Person(d).click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), QString("Debe ingresar una actividad"));
        // the refused Aceptar leaves the zeros it wrote on the screen
        for (const char* name :
             {"txtNombreFantasia", "txtCP", "txtLocalidadDepartamento", "txtCalleNumero"})
            QCOMPARE(d[name].text(), QString("0"));
        Person p(d);
        p.type("txtIdPrincipal", Reg::kBovino);
        p.click("cmdAceptar");
        QCOMPARE(Db::rows("SELECT nombre_fantasia, calle_numero, localidad_departamento, cp, "
                          "categoria FROM tPadronesComerciales"),
                 QStringList{"0|0|0|0|"});
    }

    void lookupByCode_data()
    {
        // search: "" none, else the text typed, "-" Escape
        Columns<QString, QString, QString, QString, QString, QString>(
            "line", "typed", "search", "code", "description", "focus");
        const QString bovino = Reg::kBovino, fiambres = Reg::kFiambres;
        Row("principal found", "Principal", bovino, "", bovino, Reg::kBovinoName, "cmdPrincipal");
        Row("read as a whole number", "Secundaria1", "000011", "", "000011", "ACTIVIDAD ONCE",
            "cmdSecundaria1");
        Row("third secondary found goes to Aceptar", "Secundaria3", bovino, "", bovino,
            Reg::kBovinoName, "cmdAceptar");
        Row("fifth secondary found goes to Aceptar", "Secundaria5", bovino, "", bovino,
            Reg::kBovinoName, "cmdAceptar");
        Row("unknown, chosen in the search", "Principal", "999999", "fiambres", fiambres,
            Reg::kFiambresName, "cmdPrincipal");
        Row("unknown, search left with Escape", "Secundaria2", "999999", "-", "", "",
            "cmdSecundaria2");
        Row("third secondary back from a search", "Secundaria3", "999999", "fiambres", fiambres,
            Reg::kFiambresName, "txtIdSecundaria3");
    }
    void lookupByCode()
    {
        const auto [line, typed, search, code, description, focus] =
            Fetch<QString, QString, QString, QString, QString, QString>(
                "line", "typed", "search", "code", "description", "focus");
        Db::insert("tActividades", {"idTActividad=11", "Nombre=ACTIVIDAD ONCE"});
        frmLocalComercial& d = newDialog();
        d["txt" + line].setText("BEFORE");
        if (!search.isEmpty())
            searchAnswers(env->ui(), search, search != "-");
        Person p(d);
        p.type("txtId" + line, typed);
        p.leave("txtId" + line);
        QCOMPARE(env->ui().shownWindows(),
                 search.isEmpty() ? QStringList{} : QStringList{"Busqueda"});
        QCOMPARE(d["txtId" + line].text(), code);
        QCOMPARE(d["txt" + line].text(), description);
        QCOMPARE(d.focused(), focus);
    }

    void lookupByButton_data()
    {
        Columns<QString, QString, bool, QString, QString>("line", "before", "choose", "code",
                                                          "focus");
        const QString fiambres = Reg::kFiambres;
        Row("principal goes to the first secondary", "Principal", QString(), true, fiambres,
            "txtIdSecundaria1");
        Row("a secondary goes to the following line", "Secundaria2", QString(), true, fiambres,
            "txtIdSecundaria3");
        Row("no choice, no code: stays", "Secundaria4", QString(), false, QString(),
            "cmdSecundaria4");
        Row("no choice keeps the code and moves on", "Secundaria4", Reg::kBovino, false,
            Reg::kBovino, "txtIdSecundaria5");
    }
    void lookupByButton()
    {
        const auto [line, before, choose, code, focus] =
            Fetch<QString, QString, bool, QString, QString>("line", "before", "choose", "code",
                                                            "focus");
        frmLocalComercial& d = newDialog();
        Person p(d);
        p.type("txtId" + line, before);
        searchAnswers(env->ui(), "fiambres", choose);
        p.click("cmd" + line);
        QCOMPARE(env->ui().shownWindows(), QStringList{"Busqueda"});
        QCOMPARE(d["txtId" + line].text(), code);
        QCOMPARE(d["txt" + line].text(), code.isEmpty()         ? QString()
                                         : code == Reg::kBovino ? Reg::kBovinoName
                                                                : Reg::kFiambresName);
        QCOMPARE(d.focused(), focus);
    }

    void repeatedActivities_data()
    {
        Columns<QStringList, int, bool>("steps", "refusals", "stored");
        const QString p = "txtIdPrincipal=" + Reg::kBovino;
        const QString s1 = "txtIdSecundaria1=" + Reg::kBovino;
        Row("different codes", QStringList{p, "txtIdSecundaria1=" + Reg::kFiambres, "aceptar"}, 0,
            true);
        Row("same code twice", QStringList{p, s1, "aceptar"}, 1, false);
        Row("a second Aceptar lets it through", QStringList{p, s1, "aceptar", "aceptar"}, 1, true);
        Row("a lookup after the refusal finds it again",
            QStringList{p, s1, "aceptar", "leave:txtIdSecundaria1", "aceptar"}, 2, false);
        Row("repeat among the secondary lines",
            QStringList{p, "txtIdSecundaria2=" + Reg::kFiambres,
                        "txtIdSecundaria5=" + Reg::kFiambres, "aceptar"},
            1, false);
    }
    void repeatedActivities()
    {
        const auto [steps, refusals, stored] =
            Fetch<QStringList, int, bool>("steps", "refusals", "stored");
        frmLocalComercial& d = newDialog();
        Reg::typePremises(d, {.padron = "1", .objeto = "1", .actividad = ""});
        Person p(d);
        for (const QString& step : steps)
            runStep(p, step);
        int shown = 0;
        for (const ScriptedUi::Message& m : env->ui().messages()) {
            QCOMPARE(m.text, kRepeat);
            QCOMPARE(m.title, QString("Atención..."));
            QCOMPARE(m.style, int(Msg::Critical));
            ++shown;
        }
        QCOMPARE(shown, refusals);
        QCOMPARE(Db::count("tPadronesComerciales"), stored ? 1 : 0);
        QCOMPARE(d.isLoaded(), !stored);
    }

    void editLoadsTheStoredPremisesAndReplacesItsActivities()
    {
        Seed::AddPremises("123", "45",
                          {"idContribuyente=4", "grupo=B", "categoria=6", "razon_social=RAZON",
                           "nombre_fantasia=FANTASIA", "percepcion=1", "regimen=1",
                           "suscriptor=ANA", "caracter=SOCIA", "calle_numero=O'HIGGINS 1234",
                           "cp=4000", "Principal=X"});
        Db::insert("Actividades_x_padrones",
                   {"cuit=" + Reg::kCuit, "padron=0000000000123", "objeto=0000000000045",
                    "ActP=" + Reg::kBovino, "ActP_Desc=BOVINO", "Act1=" + Reg::kBovino,
                    "Act1_Desc=BOVINO", "Act2=" + Reg::kFiambres, "Act2_Desc=FIAMBRES"});
        frmLocalComercial& d = editDialog("0000000000123", "0000000000045");
        QStringList texts;
        for (const char* name :
             {"txtPadron", "txtObjeto", "txtGrupo", "txtCategoria", "txtRazonSocial",
              "txtNombreFantasia", "txtSuscriptor", "txtCaracter", "txtCalleNumero",
              "txtLocalidadDepartamento", "txtCP", "txtIdPrincipal", "txtPrincipal",
              "txtIdSecundaria1", "txtIdSecundaria2", "txtSecundaria2", "txtIdSecundaria3"})
            texts << d[name].text();
        QCOMPARE(texts.join('|'), "0000000000123|0000000000045|B|6|RAZON|FANTASIA|ANA|SOCIA|"
                                  "O'HIGGINS 1234|CAPITAL|4000|" +
                                      Reg::kBovino + "|BOVINO|" + Reg::kBovino + "|" +
                                      Reg::kFiambres + "|FIAMBRES|");
        QVERIFY(d["txtPadron"].locked() && d["txtObjeto"].locked());
        QCOMPARE(d["chkPercepcion"].value(), 1);
        QCOMPARE(d["chkRetencion"].value(), 0);
        QCOMPARE(d["chkRegimenGeneral"].value(), 0);
        QCOMPARE(d["chkRegimenProcom"].value(), 1);

        // an emptied principal code is refused: the activities row stays
        Person p(d);
        p.retype("txtIdPrincipal", "");
        p.leave("txtIdPrincipal");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), QString("Debe ingresar una actividad"));
        QCOMPARE(Db::count("Actividades_x_padrones"), 1);

        // a lookup takes every code on the screen into the repeat test
        p.type("txtIdPrincipal", Reg::kFiambres);
        p.leave("txtIdPrincipal");
        p.retype("txtIdSecundaria2", "");
        p.leave("txtIdSecundaria2");
        p.retype("txtCategoria", "");
        p.retype("txtCalleNumero", "san martín 55");
        p.click("cmdAceptar");
        QVERIFY(!d.isLoaded());
        QCOMPARE(
            Db::rows(kStored),
            QStringList{"4|20123456786|0000000000123|0000000000045|B|<null>|RAZON|FANTASIA|1|0|1|"
                        "ANA|SOCIA|SAN MARTÍN 55|CAPITAL|4000"});
        QCOMPARE(Db::rows("SELECT Principal FROM tPadronesComerciales"), QStringList{"X"});
        QCOMPARE(
            Db::rows("SELECT ActP, Act1, Act1_Desc, Act2, Act2_Desc FROM Actividades_x_padrones"),
            QStringList{Reg::kFiambres + "|" + Reg::kBovino + "|BOVINO||"});
    }

    void loadedCodesAreNoRepeat()
    {
        // codes only loaded for an edit are not in the repeat test
        Reg::insertPremises(Reg::kCuit, "0000000000001", "0000000000001", "CENTRAL");
        Db::exec("UPDATE Actividades_x_padrones SET Act1 = ActP, Act1_Desc = ActP_Desc");
        Db::exec("UPDATE tPadronesComerciales SET suscriptor = 'A', caracter = 'B'");
        frmLocalComercial& d = editDialog("0000000000001", "0000000000001");
        QCOMPARE(d["txtIdSecundaria1"].text(), d["txtIdPrincipal"].text());
        Person(d).click("cmdAceptar");
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(!d.isLoaded());
        QCOMPARE(Db::rows("SELECT ActP, Act1 FROM Actividades_x_padrones"),
                 QStringList{Reg::kBovino + "|" + Reg::kBovino});
    }

    void regimeAsLoaded_data()
    {
        Columns<QString, QString>("stored", "boxes");
        for (const char* row : {"Null|NULL|10", "empty|''|10", "0|'0'|10", "1|'1'|01", "2|'2'|00",
                                "unknown leaves the boxes|'7'|00"}) {
            const QStringList cells = QString(row).split('|');
            Row(qPrintable(cells[0]), cells[1], cells[2]);
        }
    }
    void regimeAsLoaded()
    {
        const auto [stored, boxes] = Fetch<QString, QString>("stored", "boxes");
        Db::exec("INSERT INTO tPadronesComerciales (cuit, padron, objeto, regimen) VALUES ('" +
                 Reg::kCuit + "', '0000000000001', '0000000000001', " + stored + ")");
        frmLocalComercial& d = editDialog("0000000000001", "0000000000001");
        QCOMPARE(QString::number(d["chkRegimenGeneral"].value()) +
                     QString::number(d["chkRegimenProcom"].value()),
                 boxes);
    }

    void premisesCarryTheNextTaxpayerId_data()
    {
        Columns<QList<int>, QString>("taxpayers", "stored");
        Row("none yet", QList<int>{}, "1");
        Row("one", QList<int>{1}, "2");
        Row("a gap", QList<int>{1, 5}, "6");
    }
    void premisesCarryTheNextTaxpayerId()
    {
        const auto [taxpayers, stored] = Fetch<QList<int>, QString>("taxpayers", "stored");
        for (int id : taxpayers)
            Seed::AddTaxpayer(id, "T" + QString::number(id),
                              "20-0000000" + QString::number(id) + "-0");
        frmLocalComercial& d = newDialog();
        Reg::addPremises(d, {.padron = "1", .objeto = "1"});
        QCOMPARE(Db::rows("SELECT idContribuyente FROM tPadronesComerciales"), QStringList{stored});
    }

    void categoryIsCheckedOnLeavingThePostalCode_data()
    {
        Columns<QString, bool>("categoria", "notice");
        Row("empty", "", false);
        Row("1", "1", false);
        Row("7", "7", false);
        Row("0", "0", true);
        Row("8", "8", true);
        Row("a letter", "x", true);
    }
    void categoryIsCheckedOnLeavingThePostalCode()
    {
        const auto [categoria, notice] = Fetch<QString, bool>("categoria", "notice");
        frmLocalComercial& d = newDialog();
        d["txtCategoria"].setText(categoria); // reached the field by other means than typing
        Person p(d);
        p.leave("txtCategoria");
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(p.leave("txtCP")); // a notice, the focus moves on
        QCOMPARE(
            env->ui().texts(),
            notice
                ? QStringList{"El valor ingresado es incorecto. Valores aceptados: números del 1 "
                              "al 7, o vacío.-"}
                : QStringList{});
    }
};

QTEST_GUILESS_MAIN(TstLocalComercial)
#include "tst_localcomercial.moc"
