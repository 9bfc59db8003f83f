#include <QtTest>

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "Globals.h"
#include "GuiSupport.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "shell/MMain.h"
#include "shell/Principal.h"
#include "shell/view/ShellViews.h"

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

// A grid and a tree, as the forms and the taxpayer's window have them.
class Lists : public Controller
{
public:
    Lists() : Controller("ListsGui") {}

protected:
    void design() override
    {
        add("gridLineas", FieldKind::Grid);
        add("trvNodos", FieldKind::Tree);
    }
};

QWidget* listsView()
{
    auto* w = new QWidget;
    auto* layout = new QVBoxLayout(w);
    auto* grid = new QTableWidget(w);
    grid->setObjectName("gridLineas");
    layout->addWidget(grid);
    auto* tree = new QTreeWidget(w);
    tree->setObjectName("trvNodos");
    layout->addWidget(tree);
    w->resize(640, 480);
    return w;
}

QStringList cellsOf(const QTableWidget* table)
{
    QStringList cells;
    for (int r = 0; r < table->rowCount(); ++r)
        for (int c = 0; c < table->columnCount(); ++c)
            cells << (table->item(r, c) ? table->item(r, c)->text() : "<none>");
    return cells;
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
        RegisterView("ListsGui", listsView);
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

    // What the grid shows after each change of its rows: the cells, the
    // amounts on the right, every column as wide as its text (as a bare grid
    // fitted to its contents would have it) but the widest text column, which
    // takes the room left and shows its whole text as a tip.
    void gridShowsRowsFittedAndStretched_data()
    {
        QTest::addColumn<QVector<QStringList>>("rows");
        QTest::addColumn<int>("removed");
        QTest::addColumn<int>("stretched");
        const QVector<QStringList> lines = {
            {"0001", "FACA - Factura A", "PROVEEDOR DEL NORTE S.R.L.", "1.250,00"},
            {"0002", "NCRA - Nota de Crédito A", "ANA", "12,50"},
            {"0003", "RECA", "DISTRIBUIDORA", "99.999,99"}};
        QTest::newRow("three lines") << lines << -1 << 2;
        QTest::newRow("the long name removed") << lines << 0 << 1;
        QTest::newRow("no lines: the titles") << QVector<QStringList>{} << -1 << 2;
        // more lines than are measured: the widest text far down still counts
        QVector<QStringList> many;
        for (int i = 0; i < 40; ++i)
            many << QStringList{QString("%1").arg(i, 4, 10, QChar('0')), "RECA", "ANA", "1,00"};
        many[33] = {"0033", "NCRA - Nota de Crédito A", "ANA", "99.999.999,99"};
        many[35] = {"0035", "WWWWWW", "ANA", "1,00"};
        QTest::newRow("many lines") << many << -1 << 1;
    }

    void gridShowsRowsFittedAndStretched()
    {
        QFETCH(QVector<QStringList>, rows);
        QFETCH(int, removed);
        QFETCH(int, stretched);
        TestEnv env;
        setUi(&port);
        Lists w;
        Gui::showModal(w, [&] {
            auto* table = Gui::find<QTableWidget>("gridLineas");
            QVERIFY(table);
            Field& grid = w["gridLineas"];
            grid.rightAligned = {3};
            grid.setHeader({"Código", "Comprobante", "Denominación", "Importe"});
            grid.setRows(rows);
            if (removed >= 0)
                grid.removeRow(removed);
            grid.setCurrentRow(grid.rowCount() - 1);
            QApplication::processEvents();

            QStringList expected;
            for (const QStringList& row : grid.rows())
                expected << row;
            QCOMPARE(cellsOf(table), expected);
            if (grid.rowCount() > 0) {
                QCOMPARE(table->currentRow(), grid.rowCount() - 1);
                QCOMPARE(table->item(0, 3)->textAlignment(),
                         int(Qt::AlignRight | Qt::AlignVCenter));
                QCOMPARE(table->item(0, 1)->textAlignment(), int(Qt::AlignLeft | Qt::AlignVCenter));
                QCOMPARE(table->item(0, stretched)->toolTip(), grid.cell(0, stretched));
            }

            QTableWidget bare(table->parentWidget()); // the same font and style, never shown
            bare.hide();
            bare.setColumnCount(4);
            bare.setHorizontalHeaderLabels(grid.header());
            bare.setRowCount(grid.rowCount());
            for (int r = 0; r < grid.rowCount(); ++r)
                for (int c = 0; c < 4; ++c)
                    bare.setItem(r, c, new QTableWidgetItem(grid.cell(r, c)));
            bare.resizeColumnsToContents();
            QHeaderView* header = table->horizontalHeader();
            for (int c = 0; c < 4; ++c) {
                if (c == stretched) {
                    QCOMPARE(header->sectionResizeMode(c), QHeaderView::Stretch);
                    continue;
                }
                QVERIFY(header->sectionResizeMode(c) != QHeaderView::Interactive);
                QCOMPARE(table->columnWidth(c), bare.columnWidth(c));
            }
        });
        setUi(nullptr);
    }

    // The tree shows the nodes of its model under their parents, with the
    // expanded ones open and the selected one current, after each refill.
    void treeShowsNodesUnderParents()
    {
        TestEnv env;
        setUi(&port);
        Lists w;
        Gui::showModal(w, [&] {
            auto* view = Gui::find<QTreeWidget>("trvNodos");
            QVERIFY(view);
            Field& tree = w["trvNodos"];
            for (int fill = 1; fill <= 2; ++fill) {
                TreeModel& model = tree.tree();
                model.clear();
                model.add({}, "Modificar=0", "Modificar datos personales", "Modificar");
                const int root = model.add({}, "LocCom", "Padrones Comerciales", "Carpeta");
                model.add("LocCom", "P1", "Padrón N° 1", "Carpeta");
                const int year =
                    model.add("P1", "P1;Anio=2024", "Formularios Año: 2024", "Carpeta");
                for (int month = 1; month <= fill * 2; ++month)
                    model.add("P1;Anio=2024", QString("P1;Anio=2024;Periodo=%1").arg(month),
                              QString("Periodo: %1").arg(month), "Carpeta");
                model.node(root).expanded = true;
                model.ensureVisible(year);
                model.setSelected(year);
                tree.treeChanged();
                QApplication::processEvents();

                QCOMPARE(view->topLevelItemCount(), 2);
                QTreeWidgetItem* locales = view->topLevelItem(1);
                QCOMPARE(locales->text(0), QString("Padrones Comerciales"));
                QVERIFY(locales->isExpanded());
                QTreeWidgetItem* premises = locales->child(0);
                QVERIFY(premises->isExpanded());
                QTreeWidgetItem* yearItem = premises->child(0);
                QVERIFY(!yearItem->isExpanded());
                QCOMPARE(view->currentItem(), yearItem);
                QCOMPARE(yearItem->childCount(), fill * 2);
                QCOMPARE(yearItem->child(fill * 2 - 1)->text(0),
                         QString("Periodo: %1").arg(fill * 2));
                QVERIFY(!view->topLevelItem(0)->icon(0).isNull());
            }
        });
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
