#include <QtTest>

#include "Controller.h"
#include "Person.h"
#include "TestSupport.h"

namespace {

// A small window with the shapes the forms use: a masked CUIT, a limited
// name with a key filter, a field that validates, an option group, a button.
class Sample : public Controller
{
public:
    Sample() : Controller("Sample") {}
    QStringList log;
    bool refuseLeavingAmount = false;

protected:
    void design() override
    {
        add("txtCuit", FieldKind::Text).setMask("##-########-#");
        add("txtNombre", FieldKind::Text).setMaxLength(5);
        add("txtImporte", FieldKind::Text);
        add("optOriginal", FieldKind::Option).setGroup("tipo");
        add("optRectificativa", FieldKind::Option).setGroup("tipo");
        add("cmdAceptar", FieldKind::Button, "&Aceptar");
        add("lblEstado", FieldKind::Label);
        field("optOriginal").setValue(1);

        on("txtNombre", Ev::KeyPress, [](EventArgs& e) {
            if (QChar(e.key).isDigit())
                e.key = 0;
            else
                e.key = QChar(e.key).toUpper().unicode();
        });
        on("txtImporte", Ev::Validate, [this](EventArgs& e) {
            log << "validate txtImporte";
            e.cancel = refuseLeavingAmount;
        });
        for (const char* name : {"txtCuit", "txtNombre", "txtImporte", "cmdAceptar"}) {
            const QString n = QString::fromLatin1(name);
            on(n, Ev::GotFocus, [this, n](EventArgs&) { log << "got " + n; });
            on(n, Ev::LostFocus, [this, n](EventArgs&) { log << "lost " + n; });
        }
        on("txtNombre", Ev::Change,
           [this](EventArgs&) { log << "change " + field("txtNombre").text(); });
        on("cmdAceptar", Ev::Click, [this](EventArgs&) { log << "click"; });
    }
    void onLoad() override { log << "load"; }
    void onQueryUnload(bool& cancel, int mode) override { log << QString("query %1").arg(mode); }
    void onUnload() override { log << "unload"; }
};

} // namespace

// The window pattern every screen builds on: typing passes the key handler,
// the mask and the length limit; focus moves with validation; events come in
// the order the old windows raised them.
class TstWindow : public EnvTest
{
    Q_OBJECT
public:
    TstWindow() : EnvTest(false) {}

private slots:
    void maskedTyping_data()
    {
        Columns<QString, QString, QString>("typed", "shown", "clip");
        Row("untouched", "", "__-________-_", "");
        Row("partial", "2012", "20-12______-_", "2012");
        Row("full", "20123456786", "20-12345678-6", "20123456786");
        Row("letters refused", "2a0", "20-________-_", "20");
        Row("too many", "201234567861", "20-12345678-6", "20123456786");
    }
    void maskedTyping()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(QString, clip);
        Sample w;
        Person(w).type("txtCuit", typed);
        QCOMPARE(w["txtCuit"].text(), shown);
        QCOMPARE(w["txtCuit"].clipText(), clip);
    }

    void keyHandlerAndLimit()
    {
        Sample w;
        Person p(w);
        p.type("txtNombre", "ab1cdefg");
        QCOMPARE(w["txtNombre"].text(), QString("ABCDE"));
        QCOMPARE(w.log.filter("change").size(), 5);
        p.key("txtNombre", KeyCode::Back);
        QCOMPARE(w["txtNombre"].text(), QString("ABCD"));
        p.retype("txtNombre", "zz");
        QCOMPARE(w["txtNombre"].text(), QString("ZZ"));
    }

    void focusOrderAndValidation()
    {
        Sample w;
        Person p(w);
        p.focus("txtImporte");
        w.log.clear();
        w.refuseLeavingAmount = true;
        p.click("cmdAceptar");
        QCOMPARE(w.log, (QStringList{"validate txtImporte"}));
        QCOMPARE(w.focused(), QString("txtImporte"));
        w.refuseLeavingAmount = false;
        w.log.clear();
        p.click("cmdAceptar");
        QCOMPARE(w.log, (QStringList{"validate txtImporte", "lost txtImporte", "got cmdAceptar",
                                     "click"}));
    }

    void disabledFieldsAreSkippedByTab()
    {
        Sample w;
        w["txtNombre"].setEnabled(false);
        Person p(w);
        p.focus("txtCuit");
        w.sendTab();
        QCOMPARE(w.focused(), QString("txtImporte"));
        p.click("txtNombre"); // disabled: nothing happens
        QCOMPARE(w.focused(), QString("txtImporte"));
    }

    void optionsExcludeEachOther()
    {
        Sample w;
        Person p(w);
        p.click("optRectificativa");
        QCOMPARE(w["optOriginal"].value(), 0);
        QCOMPARE(w["optRectificativa"].value(), 1);
    }

    void loadAndUnloadRebuildTheFields()
    {
        Sample w;
        w["txtNombre"].setText("X"); // touching a field loads the window
        QCOMPARE(w.log.first(), QString("load"));
        QVERIFY(w.unload());
        QCOMPARE(w.log.mid(w.log.size() - 2), (QStringList{"query 1", "unload"}));
        QVERIFY(!w.isLoaded());
        QCOMPARE(w["txtNombre"].text(), QString()); // a new load: design values
        QVERIFY(w.closeByUser());
        QVERIFY(w.log.contains("query 0"));
    }

    void scriptedModalShow()
    {
        Sample w;
        env->ui().onShow("Sample", [](Controller& c) { Person(c).type("txtNombre", "hola"); });
        w.show(true);
        QCOMPARE(env->ui().shownWindows(), QStringList{"Sample"});
        QVERIFY(!w.isLoaded()); // the person closed it
        QVERIFY(w.log.contains("change HOLA"));
    }
};

QTEST_GUILESS_MAIN(TstWindow)
#include "tst_window.moc"
