#include <QListWidget>
#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTextBrowser>
#include <QtTest>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <functional>
#include <memory>

#include "shell/view/ShellViews.h"
#include "Globals.h"
#include "HelpPages.h"
#include "frame/view/HelpViewer.h"
#include "../declarations/FormFixture.h"
#include "shell/Inicial.h"
#include "shell/Principal.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "declarations/FormularioDDJJ.h"
#include "declarations/FormulariosDDJJ.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/ControlMensual.h"
#include "desk/EscritorioMensual.h"
#include "desk/GenerarLote.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "frame/view/WindowFit.h"
#include "shell/frmAbout.h"
#include "shell/frmBaseDatos.h"
#include "navigation/ContribuyentesDatos.h"
#include "navigation/CopiarDDJJ.h"
#include "navigation/NuevoAnio.h"
#include "navigation/NuevoPeriodo.h"
#include "navigation/SeleccionFormulario.h"
#include "output/GenerarDisco.h"
#include "registry/Busqueda.h"
#include "registry/Contribuyentes.h"
#include "registry/frmLocalComercial.h"

namespace {

// The smallest screen a window must fit, 1280 by 720, less its title bar;
// and a smaller one still, where the tall forms scroll.
const QSize kRoom(1280, 720 - 32);
const QSize kNetbook(1024, 600 - 32);

using Window = std::unique_ptr<Controller>;

template <class T> std::unique_ptr<T> make(const std::function<void(T&)>& prepare = {})
{
    auto window = std::make_unique<T>();
    if (prepare)
        prepare(*window);
    return window;
}

// Each window with what its opener sets before showing it, over taxpayer 1
// and its premises.
Window window(const QString& name)
{
    if (IsDeclarationFormRegistered(name)) {
        auto form = CreateDeclarationForm(name);
        form->Parametros = fx::nuevo(name);
        return form;
    }
    if (name.endsWith(QLatin1String("_Detalle"))) { // a line of March, as its form opens it
        auto d = fx::dialogo(name.section(u'_', 0, 0));
        d->Parametros = fx::detalle(name.section(u'_', 0, 0));
        d->EsAgrega = true;
        return d;
    }
    static const QHash<QString, std::function<Window()>> windows = {
        {"Inicial", [] { return make<Inicial>(); }},
        {"Principal", [] { return make<Principal>(); }},
        {"frmAbout", [] { return make<frmAbout>(); }},
        {"frmBaseDatos", [] { return make<frmBaseDatos>(); }},
        {"Busqueda",
         [] {
             return make<Busqueda>(
                 [](Busqueda& w) { w.SelectCommandText = Busqueda::ActivitiesSql({}); });
         }},
        {"Contribuyentes",
         [] {
             return make<Contribuyentes>([](Contribuyentes& w) {
                 w.Id = QStringLiteral("1");
                 w.NewRecord = false;
             });
         }},
        {"frmLocalComercial",
         [] {
             return make<frmLocalComercial>([](frmLocalComercial& w) {
                 w.Cuit = QStringLiteral("20123456786");
                 w.Padron = fx::kPadron;
                 w.Objeto = fx::kObjeto;
                 w.Modificar = true;
                 w.cargaDatos();
             });
         }},
        {"ContribuyentesDatos",
         [] {
             return make<ContribuyentesDatos>([](ContribuyentesDatos& w) {
                 w.IdContribuyente = 1;
                 w.NombreContribuyente = QStringLiteral("GÓMEZ, ANA");
                 w.CuitContribuyente = QStringLiteral("20-12345678-6");
             });
         }},
        {"NuevoAnio", [] { return make<NuevoAnio>(); }},
        {"NuevoPeriodo", [] { return make<NuevoPeriodo>(); }},
        {"CopiarDDJJ",
         [] { return make<CopiarDDJJ>([](CopiarDDJJ& w) { w.Padron = fx::kPadron; }); }},
        {"SeleccionFormulario",
         [] {
             return make<SeleccionFormulario>([](SeleccionFormulario& w) {
                 w.Parametros = fx::existente(QStringLiteral("F976"));
             });
         }},
        {"GenerarDisco",
         [] {
             return make<GenerarDisco>(
                 [](GenerarDisco& w) { w.Parametros = fx::existente(QStringLiteral("F976")); });
         }},
        {"frmBackup", [] { return make<frmBackup>(); }},
        {"frmBackupArchivos", [] { return make<frmBackupArchivos>(); }},
        {"CalendarioPresentaciones",
         [] {
             return make<CalendarioPresentaciones>(
                 [](CalendarioPresentaciones& w) { w.IdContribuyente = 1; });
         }},
        {"EscritorioMensual", [] { return make<EscritorioMensual>(); }},
        {"ControlMensual",
         [] { return make<ControlMensual>([](ControlMensual& w) { w.IdContribuyente = 1; }); }},
        {"GenerarLote", [] { return make<GenerarLote>(); }},
    };
    const auto it = windows.constFind(name);
    return it == windows.constEnd() ? nullptr : (*it)();
}

// The boxes that hold amounts and counts, read right-aligned: a form names
// its own; the other windows are listed here.
QStringList figures(Controller& w)
{
    if (auto* form = qobject_cast<FormularioDDJJ*>(&w)) {
        QStringList out;
        for (const CampoFormulario& c : form->definicion().campos)
            if (c.tipo != TipoCampo::Periodo)
                out << c.campo;
        return out;
    }
    const QStringList lines{"txtBaseImponible", "txtTasa"};
    const QStringList receipts{"txtImportePercibido"};
    static const QHash<QString, QStringList> listed = {
        {"F976_Detalle", lines},
        {"F2001_Detalle", lines},
        {"F977_Detalle", receipts},
        {"F978_Detalle", receipts},
        {"F985_Detalle", receipts},
        {"F987_Detalle", receipts},
        {"GenerarDisco", {"txtCantidadImpresiones"}},
        {"frmBackup", {"txtDias"}},
    };
    return listed.value(w.windowName());
}

// The fields, in the order the keyboard's Tab visits their widgets.
QStringList tabChain(QWidget* view, const Controller& w)
{
    QStringList chain;
    QSet<QWidget*> seen;
    for (QWidget* next = view->nextInFocusChain(); next != view && !seen.contains(next);
         next = next->nextInFocusChain()) {
        seen.insert(next);
        if ((next->focusPolicy() & Qt::TabFocus) && w.hasField(next->objectName()))
            chain << next->objectName();
    }
    return chain;
}

// Captions shown on the page in view whose text does not fit their widget.
QStringList clipped(QWidget* view)
{
    QStringList out;
    for (QWidget* caption : view->findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(caption);
        const bool text = (label && !label->wordWrap() && !label->text().isEmpty()) ||
                          qobject_cast<QCheckBox*>(caption) || qobject_cast<QRadioButton*>(caption);
        if (text && caption->isVisible() && caption->sizeHint().width() > caption->width())
            out << caption->objectName();
    }
    return out;
}

// The window loaded, its view shown and active as the person has it; null
// when it never became active.
std::unique_ptr<QWidget> showActive(Controller& w)
{
    w.load();
    std::unique_ptr<QWidget> view(OpenView(w));
    view->show();
    view->activateWindow();
    if (!QTest::qWaitForWindowActive(view.get()))
        return nullptr;
    return view;
}

// A run over taxpayer 1 and its premises with the window of that name, its
// view shown and active as the person has it: `view` is null when it never
// became active. With `port`, the program's look talks to the person.
struct Shown {
    TestEnv env;
    Window w;
    std::unique_ptr<QWidget> view;
};
std::unique_ptr<Shown> showWindow(const QString& name, UiPort* port = nullptr)
{
    auto s = std::make_unique<Shown>();
    s->env.createDatabase();
    fx::premises();
    if (port)
        setUi(port);
    s->w = window(name);
    if (s->w)
        s->view = showActive(*s->w);
    return s;
}

// The first text box with a text that Tab can reach from the widget before
// it: entered by Tab, its text is selected whole.
void tabSelects(QWidget* view)
{
    for (QLineEdit* box : view->findChildren<QLineEdit*>()) {
        if (!box->isVisible() || !box->isEnabled() || box->isReadOnly() ||
            !(box->focusPolicy() & Qt::TabFocus) || box->text().isEmpty())
            continue;
        QWidget* before = box->previousInFocusChain();
        if (!before->isVisible() || !before->isEnabled())
            continue;
        before->setFocus(Qt::MouseFocusReason);
        QApplication::processEvents();
        if (QApplication::focusWidget() != before || before->nextInFocusChain() != box)
            continue;
        QTest::keyClick(before, Qt::Key_Tab);
        QApplication::processEvents();
        if (QApplication::focusWidget() == box)
            QVERIFY2(box->selectionStart() == 0 &&
                         box->selectionLength() == box->displayText().size(),
                     qPrintable(box->objectName() + ": " + box->selectedText()));
        return;
    }
}

// Enter in the first text box that takes the focus: it moves on, or it
// presses the window's default button, where there is one.
void enterMovesOnOrAccepts(QWidget* view)
{
    QPushButton* byDefault = nullptr;
    for (QPushButton* button : view->findChildren<QPushButton*>())
        if (button->property("porDefecto").toBool() && button->isEnabled())
            byDefault = button;
    for (QLineEdit* box : view->findChildren<QLineEdit*>()) {
        if (!byDefault || !box->isVisible() || !box->isEnabled() || box->isReadOnly() ||
            !(box->focusPolicy() & Qt::TabFocus))
            continue;
        box->setFocus(Qt::MouseFocusReason);
        QApplication::processEvents();
        if (QApplication::focusWidget() != box)
            continue;
        QSignalSpy pressed(byDefault, &QPushButton::clicked);
        QTest::keyClick(box, Qt::Key_Return);
        QApplication::processEvents();
        QVERIFY2(QApplication::focusWidget() != box || pressed.count() == 1,
                 qPrintable(box->objectName()));
        return;
    }
}

} // namespace

// Every window's view, offscreen: its amounts right-aligned, its Tab order
// that of the window's fields, no caption cut short on any page, and its size
// within a small screen.
class TstLook : public QObject
{
    Q_OBJECT
    QtUi port; // the program's look

private slots:
    void initTestCase()
    {
        RegisterAllViews();
        RegistrarFormularios();
    }

    void view_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : RegisteredViews())
            Row(qPrintable(name), name);
    }

    void view()
    {
        QFETCH(QString, name);
        TestEnv env;
        env.createDatabase();
        fx::premises();
        Window w = window(name);
        QVERIFY2(w, "no window is made for this view");
        w->load();
        std::unique_ptr<QWidget> view(OpenView(*w));
        QVERIFY(view);
        FitInto(view.get(), kRoom);
        view->show();
        QApplication::processEvents();

        for (const QString& amount : figures(*w)) {
            auto* box = view->findChild<QLineEdit*>(amount);
            QVERIFY2(box && (box->alignment() & Qt::AlignRight), qPrintable(amount));
        }
        QStringList expected;
        for (const QString& field : w->tabOrder())
            if (auto* widget = view->findChild<QWidget*>(field))
                if (widget->focusPolicy() & Qt::TabFocus)
                    expected << field;
        QCOMPARE(tabChain(view.get(), *w), expected);
        QVERIFY2(clipped(view.get()).isEmpty(), qPrintable(clipped(view.get()).join(u' ')));
        // Colours come from the palette: a fixed one vanishes on a dark desktop.
        for (const QWidget* widget : view->findChildren<QWidget*>())
            QVERIFY2(!widget->styleSheet().contains("color"), qPrintable(widget->objectName()));
        for (QTabWidget* tabs : view->findChildren<QTabWidget*>())
            for (int page = 0; page < tabs->count(); ++page) {
                tabs->setCurrentIndex(page);
                QApplication::processEvents();
                QVERIFY2(clipped(view.get()).isEmpty(), qPrintable(clipped(view.get()).join(u' ')));
            }
        for (const QSize& room : {kRoom, kNetbook}) {
            FitInto(view.get(), room);
            QApplication::processEvents();
            QVERIFY2(view->width() <= room.width() && view->height() <= room.height(),
                     qPrintable(QStringLiteral("%1x%2").arg(view->width()).arg(view->height())));
            // the buttons of its bottom row in sight
            for (QBoxLayout* row : view->findChildren<QBoxLayout*>("layoutBotones"))
                for (int i = 0; i < row->count(); ++i)
                    if (QWidget* button = row->itemAt(i)->widget(); button && button->isVisible())
                        QVERIFY2(view->rect().contains(QRect(button->mapTo(view.get(), QPoint()),
                                                             button->size())),
                                 qPrintable(button->objectName()));
        }
        QCOMPARE(tabChain(view.get(), *w), expected); // the same, fields scrolled or not
        w->unload();
    }

    // A window opens where it was last closed, when that place is still on
    // the screen; otherwise it is centred.
    void placeRemembered_data()
    {
        Columns<QRect, bool>("stored", "restored");
        Row("on the screen", QRect(40, 50, 330, 130), true);
        Row("off the screen", QRect(5000, 50, 330, 130), false);
    }
    void placeRemembered()
    {
        const auto [stored, restored] = Fetch<QRect, bool>("stored", "restored");
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        QSettings("Morvel", "Morvel").setValue("Ventanas/NuevoAnio", stored);
        QRect left; // where the person left the window
        const auto shownAt = [&left](const QPoint& moveTo) {
            NuevoAnio dialog;
            QRect place;
            QTimer::singleShot(0, [&] {
                for (QWidget* top : QApplication::topLevelWidgets())
                    if (top->isVisible() && top->objectName() == "NuevoAnio") {
                        place = top->geometry();
                        if (!moveTo.isNull())
                            top->move(moveTo);
                        QApplication::processEvents();
                        left = top->geometry();
                    }
                dialog.unload();
            });
            dialog.show(true);
            return place;
        };
        const QRect first = shownAt(QPoint(70, 80));
        QCOMPARE(first == stored, restored);
        if (!restored)
            QVERIFY(first.topLeft() != stored.topLeft() &&
                    QApplication::primaryScreen()->availableGeometry().contains(first));
        const QRect movedTo = left;
        QCOMPARE(shownAt({}), movedTo);
        setUi(&env.ui());
    }

    // The manual's search ignores case and accents and lists the pages that
    // hold every word; a result opens its page, and Atrás returns.
    void helpSearch_data()
    {
        Columns<QString, QString>("words", "page");
        Row("accents ignored", "LIQUIDACION", "Formulario F976: DJ mensual, Régimen General");
        Row("nothing found", "zzzqqq", "Ninguna página contiene lo buscado.");
    }
    void helpSearch()
    {
        const auto [words, page] = Fetch<QString, QString>("words", "page");
        HelpViewer& help = HelpViewer::instance();
        help.showPage(HelpPathFor("F976"));
        help.showPage(AssetsPath() + "/help/index.html");
        auto* box = help.findChild<QLineEdit*>("txtBuscar");
        box->setText(words);
        QTest::keyClick(box, Qt::Key_Return);
        auto* results = help.findChild<QListWidget*>("lstResultados");
        QStringList titles;
        for (int i = 0; i < results->count(); ++i)
            titles << results->item(i)->text();
        QVERIFY2(titles.contains(page), qPrintable(titles.join(" | ")));
        auto* back = help.findChild<QPushButton*>("cmdAtras");
        QVERIFY(back->isEnabled());
        back->click();
        QCOMPARE(help.browser()->source().fileName(), QString("f976.html"));
        help.hide();
    }

    // The manners every window keeps: F1 opens the manual inside the
    // program at the window's page, with no browser needed; a text box
    // entered with Tab has its text selected, so what is typed replaces it;
    // Escape presses "Cancelar" wherever it is enabled; and, shown again,
    // Enter in a text box moves on where the logic says so, and otherwise
    // presses the button the window has as its default: never nothing.
    void manners_data() { view_data(); }
    void manners()
    {
        QFETCH(QString, name);
        auto s = showWindow(name, &port);
        QVERIFY(s->view);
        HelpViewer::instance().hide();
        QTest::keyClick(s->view.get(), Qt::Key_F1);
        QVERIFY(HelpViewer::instance().isVisible());
        const QUrl shown = HelpViewer::instance().browser()->source();
        QCOMPARE(shown.fileName() + (shown.hasFragment() ? "#" + shown.fragment() : QString()),
                 HelpPageFor(name));
        QVERIFY(!HelpViewer::instance().browser()->toPlainText().trimmed().isEmpty());
        HelpViewer::instance().hide();
        setUi(&s->env.ui());
        s->view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(s->view.get()));

        tabSelects(s->view.get());
        auto* cancel = s->view->findChild<QPushButton*>("cmdCancelar");
        if (cancel && cancel->isEnabled() && cancel->isVisible()) {
            QSignalSpy pressed(cancel, &QPushButton::clicked);
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget()
                                                        : s->view.get(),
                            Qt::Key_Escape);
            QCOMPARE(pressed.count(), 1);
        }
        if (s->w->isLoaded())
            s->w->unload();

        s->view.reset();
        s->w = window(name);
        s->view = showActive(*s->w);
        QVERIFY(s->view);
        s->env.ui().setStrict(false); // a question of Aceptar is answered No
        enterMovesOnOrAccepts(s->view.get());
        if (s->w->isLoaded())
            s->w->unload();
    }

    // What the person types after Tab or Enter lands in the next box: a
    // typed activity code brings its description and Tab goes on to the base,
    // past it; the rate box entered by Tab has its text selected; Enter in the
    // date of a receipt moves on; Enter in "Local Comercial" accepts it.
    void typingOn_data()
    {
        Columns<QString, QString, QString, int, QString, QString, QString, QString>(
            "name", "start", "typed", "key", "next", "then", "other", "shows");
        Row("activity code, Tab", "F976_Detalle", "txtIdActividad", "101011", int(Qt::Key_Tab),
            "txtBaseImponible", "1000", "txtActividad", "Matanza de ganado bovino");
        Row("rate entered by Tab", "F2001_Detalle", "txtBaseImponible", "1000", int(Qt::Key_Tab),
            "txtAlicuota", "3", "txtAlicuota", "3");
        Row("receipt date, Enter", "F977_Detalle", "txtFecha", "15032024", int(Qt::Key_Return),
            "txtNroComprobante", "4711", "txtFecha", "15-03-2024");
        Row("Local Comercial, Enter", "frmLocalComercial", "txtCP", "", int(Qt::Key_Return), "",
            "", "", "");
    }
    void typingOn()
    {
        const auto [name, start, typed, key, next, then, other, shows] =
            Fetch<QString, QString, QString, int, QString, QString, QString, QString>(
                "name", "start", "typed", "key", "next", "then", "other", "shows");
        auto s = showWindow(name);
        QVERIFY(s->view);
        QWidget* view = s->view.get();
        Controller* w = s->w.get();
        auto* from = view->findChild<QWidget*>(start);
        from->setFocus(Qt::MouseFocusReason);
        QApplication::processEvents();
        QTest::keyClicks(from, typed);
        QSignalSpy accepted(view->findChild<QPushButton*>("cmdAceptar"), &QPushButton::clicked);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        QApplication::processEvents();
        QCOMPARE(accepted.count(), next.isEmpty() ? 1 : 0);
        if (next.isEmpty()) {
            if (w->isLoaded())
                w->unload();
            return;
        }
        QCOMPARE(QApplication::focusWidget()->objectName(), next);
        QTest::keyClicks(QApplication::focusWidget(), then);
        QCOMPARE((*w)[next].text(), then);
        QCOMPARE((*w)[other].text(), shows);
        w->unload();
    }

    // Enter presses the command button that has the focus; on a choice of the
    // selection dialog it accepts, Aceptar being the default button there.
    void enterAccepts()
    {
        TestEnv env;
        env.createDatabase();
        fx::premises();
        auto press = [](Controller& w, const QString& name) {
            w.load();
            std::unique_ptr<QWidget> view(OpenView(w));
            view->show();
            auto* widget = view->findChild<QWidget*>(name);
            widget->setFocus();
            QApplication::processEvents();
            QTest::keyClick(widget, Qt::Key_Return);
        };
        NuevoAnio anio;
        press(anio, QStringLiteral("cmdCancelar"));
        QVERIFY(!anio.isLoaded());
        SeleccionFormulario seleccion;
        seleccion.Parametros = fx::existente(QStringLiteral("F976"));
        press(seleccion, QStringLiteral("optModificar"));
        QCOMPARE(seleccion.OpcionesSeleccion, 0);
        QVERIFY(!seleccion.isShown());
    }

    // A dialog opens centred on the window it was opened from.
    void centredOnOwner()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        QWidget owner;
        owner.setGeometry(100, 80, 900, 620);
        owner.show();
        owner.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        NuevoAnio dialog;
        QPoint centre;
        QTimer::singleShot(0, [&] {
            for (QWidget* top : QApplication::topLevelWidgets())
                if (top->isVisible() && top != &owner)
                    centre = top->frameGeometry().center();
            dialog.unload();
        });
        dialog.show(true);
        QVERIFY((centre - owner.frameGeometry().center()).manhattanLength() <= 2);
    }
};

QTEST_MAIN(TstLook)
#include "tst_look.moc"
