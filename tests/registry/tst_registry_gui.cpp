#include <QtTest>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>

#include "GuiSupport.h"
#include "shell/view/ShellViews.h"
#include "RegistryTestData.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "registry/Busqueda.h"
#include "registry/Contribuyentes.h"

namespace {

template <class T> T* in(QWidget* window, const QString& name)
{
    return window ? window->findChild<T*>(name) : nullptr;
}

void showPage(QWidget* window, const QString& tabs, int page)
{
    in<QTabWidget>(window, tabs)->setCurrentIndex(page);
    QApplication::processEvents();
}

void fillPremisesWindow()
{
    QWidget* local = Gui::windowWith("txtPadron");
    QVERIFY(local);
    QCOMPARE(in<QTabWidget>(local, "SSTabLocalesComerciales")->currentIndex(), 0);
    QCOMPARE(in<QLineEdit>(local, "txtCP")->text(), QString("9180"));
    QVERIFY(!in<QLineEdit>(local, "txtPrincipal")->isEnabled());
    Gui::typeInto("txtPadron", "12x3");
    Gui::typeInto("txtObjeto", "1");
    QCOMPARE(in<QLineEdit>(local, "txtPadron")->text(), QString("0000000000123"));
    Gui::typeInto("txtGrupo", "b");
    QCOMPARE(in<QLineEdit>(local, "txtGrupo")->text(), QString("B"));
    Gui::typeInto("txtRazonSocial", "sur s.a.");
    QCOMPARE(in<QLineEdit>(local, "txtRazonSocial")->text(), QString("SUR SA"));
    in<QCheckBox>(local, "chkRegimenProcom")->click();
    in<QCheckBox>(local, "chkRetencion")->click();
    showPage(local, "SSTabLocalesComerciales", 2);
    Gui::typeInto("txtCalleNumero", "o'higgins 1234");
    Gui::typeInto("txtSuscriptor", "Ana Diaz");
    QCOMPARE(in<QLineEdit>(local, "txtCalleNumero")->text(), QString("O'HIGGINS 1234"));
    Gui::typeInto("txtCaracter", "Titular");
    showPage(local, "SSTabLocalesComerciales", 1);
    Gui::typeInto("txtIdPrincipal", Reg::kBovino);
    QTest::mouseClick(in<QPushButton>(local, "cmdAceptar"), Qt::LeftButton);
}

} // namespace

// The registry windows on real widgets, offscreen: the mask and the binding of
// the taxpayer's fields, the premises window opened modally from it, and the
// search list's keys.
class TstRegistryGui : public QObject
{
    Q_OBJECT
    QtUi port;

private slots:
    void initTestCase() { RegisterAllViews(); }

    void newTaxpayerThroughTheRealWindows()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        Gui::MessageWatch messages;
        Contribuyentes w;
        Gui::showModal(w, [&] {
            QWidget* window = Gui::windowWith("txtCuit");
            QVERIFY(window);
            auto* cuit = in<QLineEdit>(window, "txtCuit");
            QCOMPARE(cuit->inputMask(), QString("00-00000000-0;_"));
            Gui::typeInto("txtCuit", "2012345678");
            QCOMPARE(w["txtCuit"].text(), QString("20-12345678-_"));
            QTest::keyClicks(cuit, "6");
            QCOMPARE(w["txtCuit"].text(), QString("20-12345678-6"));
            Gui::typeInto("txtApellidoNombre", "perez, juan");
            QCOMPARE(in<QLineEdit>(window, "txtApellidoNombre")->text(), QString("PEREZ JUAN"));
            showPage(window, "sstFichas", 1);
            QCOMPARE(w["sstFichas"].value(), 1);
            QVERIFY(!in<QPushButton>(window, "cmdModificar")->isEnabled());

            QTimer::singleShot(0, fillPremisesWindow);
            QTest::mouseClick(in<QPushButton>(window, "cmdAgregar"), Qt::LeftButton);
            QVERIFY(!w["txtCuit"].text().isEmpty());
            auto* grid = in<QTableWidget>(window, "gridLocales");
            QCOMPARE(grid->rowCount(), 1);
            QCOMPARE(grid->horizontalHeaderItem(7)->text(), QString("C.P."));
            QCOMPARE(grid->item(0, 5)->text(), QString("O'HIGGINS 1234"));
            auto* combo = in<QComboBox>(window, "cboPadronPrincipal");
            QCOMPARE(combo->count(), 2);
            combo->setFocus();
            QTest::keyClick(combo, Qt::Key_Down);
            QCOMPARE(w["cboPadronPrincipal"].listIndex(), 1);
            QCOMPARE(Db::count("tPadronesComerciales", "Principal = 'X'"), 1);
            QTest::mouseClick(in<QPushButton>(window, "cmdAceptar"), Qt::LeftButton);
        });
        QVERIFY(!w.isLoaded());
        QVERIFY(w.Saved);
        QCOMPARE(messages.texts(), QStringList{});
        QCOMPARE(Db::rows("SELECT idContribuyente, ApellidoNombre, Cuit FROM Contribuyentes"),
                 QStringList{"1|PEREZ JUAN|20-12345678-6"});
        QCOMPARE(Db::rows("SELECT padron, regimen, retencion, calle_numero, suscriptor, Principal "
                          "FROM tPadronesComerciales"),
                 QStringList{"0000000000123|1|1|O'HIGGINS 1234|Ana Diaz|X"});
        QCOMPARE(Db::rows("SELECT ActP, ActP_Desc FROM Actividades_x_padrones"),
                 QStringList{Reg::kBovino + "|" + Reg::kBovinoName});
    }

    // Down carries the focus to the list, Return there takes the activity;
    // Escape in the box leaves like the close box, with nothing chosen.
    void searchListKeys_data()
    {
        Columns<int, QString>("key", "taken");
        Row("Return", int(Qt::Key_Return), Reg::kFiambresName);
        Row("Escape", int(Qt::Key_Escape), QString());
    }
    void searchListKeys()
    {
        const auto [key, taken] = Fetch<int, QString>("key", "taken");
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        Busqueda search;
        search.SelectCommandText = Busqueda::ActivitiesSql(QString());
        Gui::showModal(search, [&] {
            QWidget* window = Gui::windowWith("txtBuscar");
            QVERIFY(window);
            auto* box = in<QLineEdit>(window, "txtBuscar");
            auto* list = in<QListWidget>(window, "lstRegistros");
            auto* status = in<QStatusBar>(window, "StatusBar");
            QCOMPARE(status->currentMessage(),
                     "Total reg.: " + QString::number(Db::count("tActividades")));
            Gui::typeInto("txtBuscar", "n de fiambres");
            QCOMPARE(list->count(), 1);
            if (key == Qt::Key_Return) {
                QTest::keyClick(box, Qt::Key_Down);
                QCOMPARE(search.focused(), QString("lstRegistros"));
                list->setCurrentRow(0);
                QCOMPARE(status->currentMessage(), "Código: " + Reg::kFiambres);
            }
            QTest::keyClick(key == Qt::Key_Return ? static_cast<QWidget*>(list) : box,
                            Qt::Key(key));
            QVERIFY(!search.isLoaded());
        });
        QCOMPARE(search.Description, taken);
    }
};

QTEST_MAIN(TstRegistryGui)
#include "tst_registry_gui.moc"
