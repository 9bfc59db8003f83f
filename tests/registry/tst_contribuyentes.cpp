#include <QtTest>

#include "BrokenDatabase.h"
#include "Person.h"
#include "RegistryTestData.h"
#include "TestSupport.h"
#include "registry/Contribuyentes.h"

namespace {

const QString kPremises = "SELECT cuit, padron, objeto, regimen, percepcion, retencion, Principal "
                          "FROM tPadronesComerciales ORDER BY padron";
const QString kTaxpayers = "SELECT idContribuyente, ApellidoNombre, Cuit FROM Contribuyentes";
const QString kNotice = "Número de CUIT incorrecto";

// A premises typed into the premises dialog when it opens next.
void nextPremises(ScriptedUi& ui, const Reg::Premises& premises)
{
    ui.onShow("frmLocalComercial", [premises](Controller& w) { Reg::addPremises(w, premises); });
}

QStringList comboTexts(Contribuyentes& w)
{
    QStringList out;
    for (const ListItem& item : w["cboPadronPrincipal"].items())
        out << item.text;
    return out;
}

QStringList messagesWithTitles(const ScriptedUi& ui)
{
    QStringList out;
    for (const ScriptedUi::Message& m : ui.messages())
        out << m.text + " @" + m.title;
    return out;
}

} // namespace

// The taxpayer dialog driven as a person does, with the premises dialog
// scripted inside it: the CUIT notices and checks, the save, the principal
// premises, the removals and what Cancelar cleans.
class TstContribuyentes : public EnvTest
{
    Q_OBJECT

    // A stored taxpayer with three premises, the first one principal.
    void storedTaxpayer()
    {
        Seed::AddTaxpayer(1, "PEREZ JUAN", Reg::kCuitMasked);
        Reg::insertPremises(Reg::kCuit, "0000000000001", "0000000000001", "CENTRAL", true);
        Reg::insertPremises(Reg::kCuit, "0000000000002", "0000000000001", "NORTE");
        Reg::insertPremises(Reg::kCuit, "0000000000003", "0000000000001", QString());
    }

    void openStored(Contribuyentes& w)
    {
        w.Id = "1";
        w.NewRecord = false;
        w.load();
    }

private slots:
    // Premises added before the taxpayer is stored take the CUIT typed; the
    // taxpayer's fields stay open until Aceptar stores them all.
    void newTaxpayerWithTwoPremises()
    {
        Contribuyentes w;
        QVERIFY(!w["cmdModificar"].enabled() && !w["cmdQuitar"].enabled() &&
                !w["cmdQuitarTodo"].enabled());
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        p.type("txtApellidoNombre", "perez juan");
        p.click("sstFichas", 1);
        nextPremises(env->ui(), {.padron = "123", .objeto = "1", .fantasia = "CENTRAL"});
        p.click("cmdAgregar");
        nextPremises(env->ui(), {.padron = "45",
                                 .objeto = "2",
                                 .fantasia = "SUCURSAL",
                                 .actividad = Reg::kFiambres,
                                 .general = false,
                                 .procom = true,
                                 .retencion = true});
        p.click("cmdAgregar");
        QVERIFY(w["txtCuit"].enabled() && w["txtApellidoNombre"].enabled());
        QCOMPARE(w["gridLocales"].header().first(), QString("Padrón"));
        QCOMPARE(w["gridLocales"].row(1).mid(0, 5),
                 (QStringList{"0000000000045", "0000000000002", "A", "", "SUCURSAL"}));
        QCOMPARE(comboTexts(w),
                 (QStringList{"------------", "0000000000123/0000000000001 - CENTRAL",
                              "0000000000045/0000000000002 - SUCURSAL"}));
        p.clickRow("gridLocales", 0);
        QVERIFY(w["cmdModificar"].enabled() && w["cmdQuitar"].enabled() &&
                w["cmdQuitarTodo"].enabled());
        p.choose("cboPadronPrincipal", 2);
        p.click("cmdAceptar");
        QVERIFY(w.Saved);
        QCOMPARE(Db::rows(kPremises),
                 (QStringList{"20123456786|0000000000045|0000000000002|1|0|1|X",
                              "20123456786|0000000000123|0000000000001|0|0|0|<null>"}));
        QCOMPARE(Db::rows("SELECT cuit, padron, ActP FROM Actividades_x_padrones ORDER BY padron"),
                 (QStringList{"20123456786|0000000000045|" + Reg::kFiambres,
                              "20123456786|0000000000123|" + Reg::kBovino}));
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(!ErrorsLogged());
    }

    // A new taxpayer whose save the database refuses is not lost in silence:
    // the person reads why and the dialog stays open with what was typed,
    // its premises kept, until a save stands.
    void refusedSaveKeepsTheDialog_data() { BrokenDatabase::Rows(); }
    void refusedSaveKeepsTheDialog()
    {
        FETCH_BREAKAGE(how);
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        p.type("txtApellidoNombre", "perez juan");
        nextPremises(env->ui(), {.padron = "123", .objeto = "1", .fantasia = "CENTRAL"});
        p.click("cmdAgregar");
        BrokenDatabase::Break(how);
        p.click("cmdAceptar");
        QCOMPARE(env->ui().lastText(), BrokenDatabase::SaveFailure(how));
        QVERIFY(w.isLoaded());
        QVERIFY(!w.Saved);
        QCOMPARE(w["txtCuit"].text(), Reg::kCuitMasked);
        QCOMPARE(w["txtApellidoNombre"].text(), QString("PEREZ JUAN"));
        BrokenDatabase::Mend();
        QCOMPARE(Db::count("tPadronesComerciales"), 1);
        if (how == Breakage::Damaged)
            return;
        QCOMPARE(Db::count("Contribuyentes"), 0);
        p.click("cmdAceptar");
        QVERIFY(w.Saved);
        QCOMPARE(Db::rows(kTaxpayers), QStringList{"1|PEREZ JUAN|" + Reg::kCuitMasked});
    }

    void aSecondTaxpayerGetsTheNextId()
    {
        Seed::AddTaxpayer(7, "OTRO", Reg::kOtherCuitMasked);
        Contribuyentes w; // shown as the main window's "Nuevo" shows it
        w.NewRecord = true;
        env->ui().onShow("Contribuyentes", [](Controller& c) {
            Person p(c);
            p.type("txtCuit", Reg::kCuit);
            p.type("txtApellidoNombre", "ana");
            p.click("cmdAceptar");
        });
        w.show(true);
        QVERIFY(w.Saved);
        QCOMPARE(w.Id, QString("8"));
        QCOMPARE(w.GetNombre, QString("ANA"));
        QCOMPARE(Db::rows(kTaxpayers),
                 (QStringList{"7|OTRO|30-71234567-1", "8|ANA|20-12345678-6"}));
    }

    void cuitNoticesAndChecks_data()
    {
        // notices: shown on leaving the field; answer: to "desea continuar?", 0 when not asked;
        // refusal: at Aceptar, "" when saved
        Columns<QString, int, int, QString>("typed", "notices", "answer", "refusal");
        Row("right", Reg::kCuit, 0, 0, "");
        Row("untouched", "", 1, 0, "Debe especificar el Nº de CUIT. @Atención !");
        Row("prefix 24, right digit: a notice, savable", "24123456781", 1, 0, "");
        Row("prefix 24, wrong digit: one notice", "24123456780", 1, int(Msg::No),
            "Número de CUIT incorrecto, desea continuar? @Atención !");
        Row("wrong digit, Sí", "20123456789", 1, int(Msg::Yes), "");
        Row("wrong digit, No", "20123456789", 1, int(Msg::No),
            "Número de CUIT incorrecto, desea continuar? @Atención !");
        Row("incomplete", "2012345", 1, 0, "Número de CUIT incorrecto @");
        Row("prefix 27", "27123456780", 0, 0, "");
    }
    void cuitNoticesAndChecks()
    {
        const auto [typed, notices, answer, refusal] =
            Fetch<QString, int, int, QString>("typed", "notices", "answer", "refusal");
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", typed);
        p.leave("txtCuit");
        QCOMPARE(w.focused(), QString("txtApellidoNombre"));
        QCOMPARE(messagesWithTitles(env->ui()), QStringList(notices, kNotice + " @Mensaje..."));
        for (const ScriptedUi::Message& m : env->ui().messages())
            QCOMPARE(m.style, int(Msg::Information));
        env->ui().clearMessages();
        p.type("txtApellidoNombre", "perez");
        if (answer)
            env->ui().answer("desea continuar?", answer);
        p.click("cmdAceptar");
        const bool saved = refusal.isEmpty() || answer == Msg::Yes;
        QCOMPARE(w.Saved, saved);
        QCOMPARE(Db::count("Contribuyentes"), saved ? 1 : 0);
        if (saved)
            return;
        QVERIFY(messagesWithTitles(env->ui()).contains(refusal.endsWith("@") ? refusal + AppTitle()
                                                                             : refusal));
        QCOMPARE(w.focused(), QString("txtCuit"));
        QCOMPARE(w["sstFichas"].value(), 0);
        if (!w["txtCuit"].clipText().isEmpty())
            QCOMPARE(w["txtCuit"].selectedText(), w["txtCuit"].text());
    }

    void nameIsRequiredAndUpperCased()
    {
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        p.type("txtApellidoNombre", "o'brien, josé 2º");
        QCOMPARE(w["txtApellidoNombre"].text(), QString("OBRIEN JOS 2"));
        p.retype("txtApellidoNombre", "   ");
        p.click("cmdAceptar");
        QCOMPARE(messagesWithTitles(env->ui()),
                 QStringList{"Debe especificar el Apellido y Nombre ó Razón Social. @Atención !"});
        QCOMPARE(w.focused(), QString("txtApellidoNombre"));
        QVERIFY(!w.Saved);
    }

    void quotesAreStoredAndShownBack()
    {
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        p.focus("txtApellidoNombre");
        w["txtApellidoNombre"].setText("D'ANGELO & O'BRIEN S.A."); // pasted past the key filter
        nextPremises(env->ui(), {.padron = "9",
                                 .objeto = "9",
                                 .fantasia = "SUR",
                                 .calle = "O'HIGGINS 1234",
                                 .suscriptor = "MARÍA D'ALESSIO",
                                 .caracter = "APODERADA 'A'"});
        p.click("cmdAgregar");
        p.choose("cboPadronPrincipal", 1);
        p.click("cmdAceptar");
        QVERIFY(w.Saved);
        QCOMPARE(Db::rows("SELECT ApellidoNombre FROM Contribuyentes"),
                 QStringList{"D'ANGELO & O'BRIEN S.A."});
        QCOMPARE(
            Db::rows(
                "SELECT calle_numero, suscriptor, caracter, Principal FROM tPadronesComerciales"),
            QStringList{"O'HIGGINS 1234|MARÍA D'ALESSIO|APODERADA 'A'|X"});

        Contribuyentes again;
        openStored(again);
        QCOMPARE(again["txtApellidoNombre"].text(), QString("D'ANGELO & O'BRIEN S.A."));
        QCOMPARE(again["txtCuit"].text(), Reg::kCuitMasked);
        QVERIFY(!again["txtCuit"].enabled() && !again["txtApellidoNombre"].enabled());
        QString street;
        env->ui().onShow("frmLocalComercial", [&](Controller& l) {
            street = l["txtCalleNumero"].text();
            Person(l).click("cmdCancelar");
        });
        Person(again).dblClick("gridLocales");
        QCOMPARE(street, QString("O'HIGGINS 1234"));
        QVERIFY(!ErrorsLogged());
    }

    void takenCuit_data()
    {
        QTest::addColumn<bool>("storedBeforeTyping");
        Row("known on leaving the field", true);
        Row("stored meanwhile, caught at Aceptar", false);
    }
    void takenCuit()
    {
        QFETCH(bool, storedBeforeTyping);
        if (storedBeforeTyping)
            Seed::AddTaxpayer(1, "PRIMERO", Reg::kCuitMasked);
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        if (storedBeforeTyping) {
            QVERIFY(!p.leave("txtCuit"));
            QCOMPARE(env->ui().texts(),
                     QStringList{"El cuit ya existe en la base. Por favor corrija el mismo.-"});
            QCOMPARE(w.focused(), QString("txtCuit"));
            p.click("cmdAceptar"); // the field holds the focus: no click
            QCOMPARE(env->ui().texts().size(), 2);
        } else {
            p.type("txtApellidoNombre", "segundo");
            Seed::AddTaxpayer(1, "PRIMERO", Reg::kCuitMasked);
            p.click("cmdAceptar");
            QCOMPARE(env->ui().texts(), QStringList{"Cuit Repetido"});
            QCOMPARE(w["txtCuit"].text(), QString("__-________-_"));
            QCOMPARE(w.focused(), QString("txtCuit"));
        }
        QVERIFY(!w.Saved);
        QCOMPARE(Db::rows("SELECT ApellidoNombre FROM Contribuyentes"), QStringList{"PRIMERO"});
    }

    void editModeShowsTheStoredTaxpayer()
    {
        storedTaxpayer();
        Contribuyentes w;
        openStored(w);
        QCOMPARE(w["txtCuit"].text(), Reg::kCuitMasked);
        QVERIFY(!w["txtCuit"].enabled() && !w["txtApellidoNombre"].enabled());
        QVERIFY(w["cmdQuitarTodo"].enabled() && w["cmdModificar"].enabled());
        QCOMPARE(w["gridLocales"].rowCount(), 3);
        QCOMPARE(w["gridLocales"].currentRow(), 0);
        QCOMPARE(
            comboTexts(w),
            (QStringList{"------------", "0000000000001/0000000000001 - CENTRAL",
                         "0000000000002/0000000000001 - NORTE", "0000000000003/0000000000001"}));
        QCOMPARE(w["cboPadronPrincipal"].listIndex(), 1);
        // nothing changed: Aceptar keeps the row as it was
        Person(w).click("cmdAceptar");
        QVERIFY(w.Saved);
        QCOMPARE(Db::rows(kTaxpayers), QStringList{"1|PEREZ JUAN|20-12345678-6"});
        QVERIFY(env->ui().messages().isEmpty());
    }

    void principalMarkIsWrittenAtOnce_data()
    {
        // marked: padrones with the mark
        Columns<int, QString>("entry", "marked");
        Row("another premises", 2, "0000000000002");
        Row("the same again", 1, "0000000000001");
        Row("the placeholder clears it", 0, "");
        Row("one without fantasy name", 3, "0000000000003");
    }
    void principalMarkIsWrittenAtOnce()
    {
        const auto [entry, marked] = Fetch<int, QString>("entry", "marked");
        storedTaxpayer();
        Contribuyentes w;
        openStored(w);
        Person p(w);
        p.choose("cboPadronPrincipal", entry);
        const QString sql = "SELECT padron FROM tPadronesComerciales WHERE Principal = 'X'";
        const QStringList expected = marked.isEmpty() ? QStringList{} : QStringList{marked};
        QCOMPARE(Db::rows(sql), expected);
        p.click("cmdCancelar");
        QVERIFY(!w.Saved);
        QCOMPARE(Db::rows(sql), expected); // Cancelar undoes nothing
        QCOMPARE(Db::count("tPadronesComerciales"), 3);
    }

    void anObjetoNotThirteenLongCannotBeMarked()
    {
        Seed::AddTaxpayer(1, "PEREZ JUAN", Reg::kCuitMasked);
        Reg::insertPremises(Reg::kCuit, "0000000000001", "12", "VIEJO");
        Contribuyentes w;
        openStored(w);
        Person(w).choose("cboPadronPrincipal", "0000000000001/12 - VIEJO");
        QCOMPARE(Db::count("tPadronesComerciales", "Principal = 'X'"), 0);
    }

    void cancelRemovesWhatBelongsToNobody_data()
    {
        Columns<bool, bool, int>("stored", "closeBox", "premisesLeft");
        Row("new, Cancelar", false, false, 0);
        Row("new, close box", false, true, 0);
        Row("stored, Cancelar", true, false, 4);
        Row("stored, close box", true, true, 4);
    }
    void cancelRemovesWhatBelongsToNobody()
    {
        const auto [stored, closeBox, premisesLeft] =
            Fetch<bool, bool, int>("stored", "closeBox", "premisesLeft");
        // another taxpayer's premises are never touched
        Seed::AddTaxpayer(2, "OTRO", Reg::kOtherCuitMasked);
        Reg::insertPremises(Reg::kOtherCuit, "0000000000077", "0000000000001", "AJENO");
        if (stored)
            storedTaxpayer();
        Contribuyentes w;
        if (stored)
            openStored(w);
        Person p(w);
        p.type("txtCuit", Reg::kCuit);
        p.type("txtApellidoNombre", "perez");
        nextPremises(env->ui(), {.padron = "500", .objeto = "1"});
        p.click("cmdAgregar");
        QCOMPARE(Db::count("tPadronesComerciales", "cuit = '" + Reg::kCuit + "'"), stored ? 4 : 1);
        if (closeBox)
            QVERIFY(p.closeWindow());
        else
            p.click("cmdCancelar");
        QVERIFY(!w.isLoaded());
        QVERIFY(!w.Saved);
        QCOMPARE(w.GetNombre, stored ? QString("PEREZ JUAN") : QString("PEREZ"));
        QCOMPARE(Db::count("tPadronesComerciales", "cuit = '" + Reg::kCuit + "'"), premisesLeft);
        QCOMPARE(Db::count("Actividades_x_padrones", "cuit = '" + Reg::kCuit + "'"), premisesLeft);
        QCOMPARE(Db::count("tPadronesComerciales", "cuit = '" + Reg::kOtherCuit + "'"), 1);
        QCOMPARE(Db::count("Contribuyentes"), stored ? 2 : 1);
    }

    void removingPremises_data()
    {
        Columns<QString, int, int, QStringList, QStringList>("button", "row", "answer", "left",
                                                             "texts");
        // the question names the premises it deletes
        const auto one = [](const QString& padron) {
            return "Desea eliminar el Local Comercial?\nPadrón " + padron +
                   " - Objeto N° 0000000000001";
        };
        const QString all =
            "Desea eliminar todos los Locales Comerciales?\n3 del contribuyente 20-12345678-6 "
            "PEREZ JUAN";
        const QString refused = "No puede eliminar un padrón que posea formularios cargados";
        Row("Quitar", "cmdQuitar", 1, int(Msg::Yes), QStringList{"0000000000001", "0000000000003"},
            QStringList{one("0000000000002")});
        Row("Quitar, No", "cmdQuitar", 1, int(Msg::No),
            QStringList{"0000000000001", "0000000000002", "0000000000003"},
            QStringList{one("0000000000002")});
        Row("Quitar one with declarations", "cmdQuitar", 0, int(Msg::Yes),
            QStringList{"0000000000001", "0000000000002", "0000000000003"},
            QStringList{one("0000000000001"), refused});
        Row("QuitarTodo passes over it silently", "cmdQuitarTodo", 0, int(Msg::Yes),
            QStringList{"0000000000001"}, QStringList{all});
        Row("QuitarTodo, No", "cmdQuitarTodo", 0, int(Msg::No),
            QStringList{"0000000000001", "0000000000002", "0000000000003"}, QStringList{all});
    }
    void removingPremises()
    {
        const auto [button, row, answer, left, texts] =
            Fetch<QString, int, int, QStringList, QStringList>("button", "row", "answer", "left",
                                                               "texts");
        storedTaxpayer();
        Seed::AddDeclaration({"F976", "03-2024"});
        Contribuyentes w;
        openStored(w);
        Person p(w);
        p.clickRow("gridLocales", row);
        env->ui().answer("Desea eliminar", answer);
        p.click(button);
        QCOMPARE(env->ui().texts(), texts);
        QCOMPARE(Db::rows("SELECT padron FROM tPadronesComerciales ORDER BY padron"), left);
        QCOMPARE(w["gridLocales"].rowCount(), left.size());
        QCOMPARE(w["cboPadronPrincipal"].listCount(), left.size() + 1);
        // the activities of a removed premises stay
        QCOMPARE(Db::count("Actividades_x_padrones"), 3);
    }

    void modifyingPremisesRefreshesTheGrid()
    {
        storedTaxpayer();
        Contribuyentes w;
        openStored(w);
        Person p(w);
        QStringList keys;
        env->ui().onShow("frmLocalComercial", [&](Controller& l) {
            auto& local = static_cast<frmLocalComercial&>(l);
            keys << local.Cuit << local.Padron << local.Objeto
                 << (local.Modificar ? "edit" : "new");
            QVERIFY(l["txtPadron"].locked());
            QCOMPARE(l["txtNombreFantasia"].text(), QString("NORTE"));
            Person q(l);
            q.retype("txtNombreFantasia", "norte nuevo");
            q.type("txtSuscriptor", "ANA");
            q.type("txtCaracter", "TITULAR");
            q.click("cmdAceptar");
        });
        p.clickRow("gridLocales", 1);
        p.click("cmdModificar");
        QCOMPARE(keys, (QStringList{Reg::kCuit, "0000000000002", "0000000000001", "edit"}));
        QCOMPARE(w["gridLocales"].cell(1, 4), QString("NORTE NUEVO"));
        QCOMPARE(comboTexts(w).at(2), QString("0000000000002/0000000000001 - NORTE NUEVO"));
        QCOMPARE(w["cboPadronPrincipal"].listIndex(), 1);
    }

    // Agregar opens no premises without the CUIT and the name (with both,
    // newTaxpayerWithTwoPremises adds its premises under the CUIT typed).
    void addingNeedsCuitAndName_data()
    {
        Columns<QString, QString>("cuit", "name");
        Row("neither", QString(), QString());
        Row("name only", QString(), "perez");
    }
    void addingNeedsCuitAndName()
    {
        const auto [cuit, name] = Fetch<QString, QString>("cuit", "name");
        Contribuyentes w;
        Person p(w);
        p.type("txtCuit", cuit);
        p.type("txtApellidoNombre", name);
        p.click("cmdAgregar");
        QCOMPARE(env->ui().shownWindows(), QStringList{});
    }
};

QTEST_GUILESS_MAIN(TstContribuyentes)
#include "tst_contribuyentes.moc"
