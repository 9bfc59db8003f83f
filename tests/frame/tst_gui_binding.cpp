#include <QtTest>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "Globals.h"
#include "shell/view/ShellViews.h"
#include "GuiSupport.h"
#include "shell/MMain.h"
#include "shell/Principal.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

namespace {

class Sample : public Controller
{
public:
    Sample() : Controller("SampleGui") {}
    QStringList log;

protected:
    void design() override
    {
        setCaption("Muestra");
        add("txtCuit", FieldKind::Text).setMask("##-########-#");
        add("txtNombre", FieldKind::Text).setMaxLength(10);
        add("cmdAceptar", FieldKind::Button, "&Aceptar");
        on("txtNombre", Ev::KeyPress, [](EventArgs& e) {
            e.key = QChar(e.key).toUpper().unicode();
            if (QChar(e.key).isDigit())
                e.key = 0;
        });
        on("txtCuit", Ev::Validate, [this](EventArgs& e) {
            e.cancel = field("txtCuit").clipText().size() != 11;
            if (e.cancel)
                log << "held";
        });
        on("cmdAceptar", Ev::Click, [this](EventArgs&) {
            log << "aceptar " + field("txtCuit").text() + " " + field("txtNombre").text();
            unload();
        });
    }
};

QWidget* sampleView()
{
    auto* w = new QWidget;
    auto* layout = new QVBoxLayout(w);
    for (const char* name : {"txtCuit", "txtNombre"}) {
        auto* edit = new QLineEdit(w);
        edit->setObjectName(name);
        layout->addWidget(edit);
    }
    auto* ok = new QPushButton(w);
    ok->setObjectName("cmdAceptar");
    layout->addWidget(ok);
    return w;
}

} // namespace

// The real widgets, offscreen: typing into a masked box, the focus held by
// validation, a click that closes a modal window, the main window's menu.
class TstGuiBinding : public QObject
{
    Q_OBJECT
    QtUi port;

private slots:
    void initTestCase()
    {
        RegisterAllViews();
        RegisterView("SampleGui", sampleView);
    }

    void typingValidationAndModalClose()
    {
        TestEnv env;
        setUi(&port);
        Sample w;
        Gui::showModal(w, [&] {
            auto* cuit = Gui::find<QLineEdit>("txtCuit");
            auto* name = Gui::find<QLineEdit>("txtNombre");
            auto* ok = Gui::find<QPushButton>("cmdAceptar");
            QVERIFY(cuit && name && ok);
            QCOMPARE(ok->text(), QString("&Aceptar"));
            QCOMPARE(cuit->parentWidget()->window()->windowTitle(), QString("Muestra"));
            cuit->setFocus();
            QApplication::processEvents();
            QTest::keyClicks(cuit, "2012");
            QCOMPARE(w["txtCuit"].text(), QString("20-12______-_"));
            name->setFocus(); // refused: the CUIT is incomplete
            QApplication::processEvents();
            QApplication::processEvents();
            QVERIFY(w.log.contains("held"));
            QCOMPARE(w.focused(), QString("txtCuit"));
            QTest::keyClicks(cuit, "3456786");
            QCOMPARE(w["txtCuit"].text(), QString("20-12345678-6"));
            name->setFocus();
            QApplication::processEvents();
            QTest::keyClicks(name, "ab1c");
            QCOMPARE(name->text(), QString("ABC"));
            QCOMPARE(w["txtNombre"].text(), QString("ABC"));
            w["txtNombre"].setText("DESDE LOGICA");
            QCOMPARE(name->text(), QString("DESDE LOGICA"));
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        QVERIFY(!w.isLoaded());
        QCOMPARE(w.log.last(), QString("aceptar 20-12345678-6 DESDE LOGICA"));
        setUi(nullptr);
    }

    void mainWindowAndItsMenu()
    {
        TestEnv env;
        setUi(&port);
        QVERIFY(Main(env.dataPath()));
        auto* main = qobject_cast<QMainWindow*>(Gui::windowWith("centralwidget"));
        QVERIFY(main && main->isVisible());
        QCOMPARE(main->windowTitle(), QString("Sistema Morvel de Declaraciones"));
        auto* list = Gui::find<QMenu>("mnuContribuyentes");
        QVERIFY(list);
        emit list->aboutToShow(); // the list is built when the menu opens
        QStringList texts;
        for (QAction* a : list->actions())
            if (a->isVisible() && !a->isSeparator())
                texts << a->text() + (a->isEnabled() ? "" : " [off]");
        QCOMPARE(texts, (QStringList{"&Nuevo", "(Vacio) [off]"}));
        QCOMPARE(Gui::find<QLabel>("txtVersion")->text(), VersionText());

        // the About box opens modally from the menu and closes with its button
        QTimer::singleShot(0, [] {
            auto closeAnyway = qScopeGuard([] {
                if (QWidget* about = Gui::windowWith("cmdOK"))
                    about->close();
            });
            auto* ok = Gui::find<QPushButton>("cmdOK");
            QVERIFY(ok);
            QVERIFY(Gui::find<QLabel>("lblFecha")->text() == "(07/01/2015)");
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        Gui::find<QAction>("mnuAcercaDe")->trigger();
        QVERIFY(!Gui::find("cmdOK"));

        main->close(); // the close box unloads the window and ends the program
        QVERIFY(!gPrincipal().isLoaded());
        setUi(nullptr);
    }
};

QTEST_MAIN(TstGuiBinding)
#include "tst_gui_binding.moc"
