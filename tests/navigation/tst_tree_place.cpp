#include <QPointer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#include "GuiSupport.h"
#include "NavigationData.h"
#include "Person.h"
#include "TestSupport.h"
#include "Util.h"
#include "declarations/FormulariosDDJJ.h"
#include "frame/view/QtUi.h"
#include "navigation/ZoForms.h"
#include "shell/view/ShellViews.h"

using namespace nav;

namespace {

// The item down the path of captions from "Padrones Comerciales", the last
// one read by its beginning.
QTreeWidgetItem* item(QTreeWidget* tree, const QStringList& path)
{
    QTreeWidgetItem* at = tree->invisibleRootItem();
    for (int step = 0; at && step < path.size(); ++step) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < at->childCount() && !next; ++i)
            if (step + 1 < path.size() ? at->child(i)->text(0) == path.at(step)
                                       : at->child(i)->text(0).startsWith(path.at(step)))
                next = at->child(i);
        at = next;
    }
    return at;
}

// Every branch of the tree on screen, indented, with "+" when open.
QStringList branches(QTreeWidget* tree)
{
    QStringList out;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if ((*it)->childCount() == 0)
            continue;
        out << QString(Gui::depthOf(*it) * 2, u' ') + (*it)->text(0) +
                   ((*it)->isExpanded() ? " +" : " -");
    }
    return out;
}

// The person on the tree: a click on the item, then a key.
void press(QTreeWidget* tree, QTreeWidgetItem* target, Qt::Key key)
{
    QVERIFY(target);
    tree->scrollToItem(target);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(target).center());
    QTest::keyClick(tree, key);
}

} // namespace

// After a form closes, the taxpayer's tree is rebuilt from the tables and
// shows the person's place again: the declaration just handled chosen and in
// sight, the other branches open or closed as they were.
class TstTreePlace : public EnvTest
{
    Q_OBJECT

    void seed() override
    {
        AddTaxpayer(1, "PEREZ JUAN", kCuit);
        AddPremises("1", "2", "0", "1"); // a perception agent: F987 and F988
        // A year long enough that, open, it pushes the next one out of sight.
        for (int month = 1; month <= 12; ++month)
            AddDeclaration({"F987", QString("%1-2023").arg(month, 2, 10, QChar(u'0'))});
        AddDeclaration({"F987", "03-2024"});
    }

    // Runs `script` on the next window of that name, with its view on screen.
    void onScreen(const QString& window, std::function<void(Controller&)> script)
    {
        env->ui().onShow(window, [script](Controller& w) {
            QPointer<QWidget> view = OpenView(w);
            QVERIFY(view);
            view->show();
            Gui::settle();
            script(w);
        });
    }

private slots:
    void initTestCase()
    {
        RegisterAllViews();
        RegistrarFormularios();
    }

    void aSavedReturnIsChosenAndTheBranchesStayAsTheyWere()
    {
        QStringList before, after;
        QString chosen, chosenParents;
        bool inSight = false;
        onScreen("F988", [](Controller& f) {
            Person p(f);
            p.retype("txtImpPerF987", "100");
            p.leave("txtImpPerF987");
            p.click("cmdAceptar");
            QVERIFY(!f.isLoaded());
        });
        onScreen("ContribuyentesDatos", [&](Controller& w) {
            QTreeWidget* tree = Gui::find<QTreeWidget>("trvDatos");
            QVERIFY(tree);
            const QStringList premises = {"Padrones Comerciales", PremisesKey("1")};
            // Opens both years, closes January 2023.
            press(tree, item(tree, premises + QStringList{"Formularios Año: 2023"}), Qt::Key_Right);
            press(tree, item(tree, premises + QStringList{"Formularios Año: 2024"}), Qt::Key_Right);
            press(tree, item(tree, premises + QStringList{"Formularios Año: 2023", "Periodo: 01"}),
                  Qt::Key_Left);
            before = branches(tree);
            QTreeWidgetItem* start = item(
                tree, premises + QStringList{"Formularios Año: 2024", "Periodo: 03", "Nuevo - "});
            QVERIFY(start && start->text(0).endsWith("F988"));
            Gui::doubleClickItem(tree, start);
            Gui::settle();
            tree = Gui::find<QTreeWidget>("trvDatos");
            QVERIFY(tree && tree->currentItem());
            after = branches(tree);
            QTreeWidgetItem* current = tree->currentItem();
            chosen = current->text(0);
            for (QTreeWidgetItem* p = current->parent(); p; p = p->parent())
                chosenParents.prepend(p->text(0) + " / ");
            inSight = tree->viewport()->rect().contains(tree->visualItemRect(current));
            QCOMPARE(w["trvDatos"].tree().selectedNode()->text, chosen);
            Person(w).click("cmbSalir");
        });
        window().show(true);
        QVERIFY2(before.contains("      Periodo: 01 -"), qPrintable(before.join('\n')));
        QCOMPARE(after, before);
        QVERIFY2(chosen.startsWith("Formulario Generado - ") && chosen.endsWith("F988"),
                 qPrintable(chosen));
        QCOMPARE(chosenParents, "Padrones Comerciales / " + PremisesKey("1") +
                                    " / Formularios Año: 2024 / Periodo: 03 / ");
        QVERIFY(inSight);
        QCOMPARE(Db::count("F988"), 1);
    }

private:
    ContribuyentesDatos& window()
    {
        if (!m_window) {
            m_window = std::make_unique<ContribuyentesDatos>();
            m_window->IdContribuyente = 1;
            m_window->NombreContribuyente = "PEREZ JUAN";
            m_window->CuitContribuyente = FormatCuit(kCuit);
        }
        return *m_window;
    }
    void tearDown() override
    {
        m_window.reset();
        Gui::settle();
        ResetForms();
    }
    std::unique_ptr<ContribuyentesDatos> m_window;
};

QTEST_MAIN(TstTreePlace)
#include "tst_tree_place.moc"
