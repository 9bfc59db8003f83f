#include <QtTest>

#include <QApplication>
#include <QPushButton>
#include <QTreeWidget>

#include "NavigationData.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "navigation/ContribuyentesDatos.h"
#include "navigation/ZoForms.h"

using namespace nav;

namespace {

QStringList g_opened;

const QStringList kForms = {"F976", "F2001", "F977", "F978", "F985", "F986", "F987", "F988"};

class FakeForm : public DeclarationForm
{
public:
    explicit FakeForm(const QString& id) : DeclarationForm(id) {}

protected:
    void design() override {}
    void onLoad() override { g_opened << Parametros; }
};

void addData()
{
    AddTaxpayer(1, "DISTRIBUIDORA DEL OESTE S.A.", kCuit);
    AddPremises("1045", "0", "1");
    AddPremises("2210", "0", "1");
    AddPremises("2210", "2", "0", "1", "2");
    const QStringList none = {"Retenciones=0,00"};
    AddDeclaration({"F976", "11-2023", 0, "0", "1045", "1", none});
    AddDeclaration({"F976", "12-2023", 0, "0", "1045", "1", {"Retenciones=120,00"}});
    AddDeclaration({"F976", "01-2024", 0, "0", "1045", "1", none});
    AddDeclaration({"F976", "01-2024", 1, "15-02-2024", "1045", "1", none});
    AddDeclaration({"F976", "01-2024", 2, "01-03-2024", "1045", "1", {"Retenciones=35,50"}});
    AddDeclaration({"F986", "01-2024", 0, "0", "1045"});
    AddDeclaration({"F976", "02-2024", 0, "0", "1045", "1", none});
    AddDeclaration({"F976", "02-2024", 0, "0", "2210", "1", none});
}

// Opens the controller's view at the size the program shows it and lets it
// draw.
QWidget* show(Controller& window)
{
    window.load();
    QWidget* view = OpenView(window);
    if (!view)
        return nullptr;
    view->resize(view->size().expandedTo(view->sizeHint()));
    view->show();
    QApplication::processEvents();
    return view;
}

} // namespace

// The taxpayer's tree on real widgets, offscreen: its items and icons, and a
// double click on a real item.
class TstNavigationGui : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { RegisterAllViews(); }

    void theTreeOnScreen()
    {
        TestEnv env;
        env.createDatabase();
        addData();
        for (const QString& id : kForms)
            RegisterDeclarationForm(id, [id] { return std::make_unique<FakeForm>(id); });
        ContribuyentesDatos window;
        window.IdContribuyente = 1;
        window.NombreContribuyente = "DISTRIBUIDORA DEL OESTE S.A.";
        window.CuitContribuyente = "20-12345678-6";
        window["trvDatos"].tree().ensureVisible(
            window["trvDatos"].tree().indexOf(MonthKey("1045", "2024", "01")));
        window["trvDatos"].treeChanged();
        QWidget* view = show(window);
        QVERIFY(view);
        QCOMPARE(view->windowTitle(),
                 QString("Contribuyente: DISTRIBUIDORA DEL OESTE S.A. - 20-12345678-6"));
        auto* tree = view->findChild<QTreeWidget*>("trvDatos");
        QVERIFY(tree);
        QCOMPARE(tree->topLevelItemCount(), 3);
        QCOMPARE(tree->topLevelItem(2)->childCount(), 3);
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            QVERIFY(!tree->topLevelItem(i)->icon(0).isNull());
        QVERIFY(!view->findChild<QPushButton*>("cmbNuevoPeriodo")->isEnabled());

        // a double click on a real item reaches the form with its string
        QTreeWidgetItem* month = tree->topLevelItem(2)->child(0)->child(1)->child(0);
        QCOMPARE(month->text(0), QString("Periodo: 01"));
        QTreeWidgetItem* start = nullptr;
        for (int i = 0; i < month->childCount(); ++i)
            if (month->child(i)->text(0).startsWith("Nuevo - "))
                start = start ? start : month->child(i);
        QVERIFY(start);
        const QRect r = tree->visualItemRect(start);
        QVERIFY(r.isValid());
        const QString startForm = start->text(0).section(": ", -1);
        // a double click is a press, a release and the second press
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, r.center());
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, r.center());
        QApplication::processEvents();
        QCOMPARE(g_opened.size(), 1);
        QVERIFY(g_opened.first().startsWith("Padron=" + Pad13("1045") + " - Objeto N° "));
        QVERIFY(g_opened.first().contains(";Formulario=" + startForm + ";Rectificativa=Falso;"));
        window.unload();
        QApplication::processEvents();
        for (const QString& id : kForms)
            UnregisterDeclarationForm(id);
        ResetForms();
    }
};

QTEST_MAIN(TstNavigationGui)
#include "tst_navigation_gui.moc"
