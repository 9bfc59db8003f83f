#include <QtTest>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>

#include "RegistryTestData.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "registry/Busqueda.h"
#include "registry/Contribuyentes.h"

namespace {

// The shown window whose view holds a widget of that name.
QWidget* windowWith(const QString& name)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible() && top->findChild<QWidget*>(name))
            return top;
    return nullptr;
}

template <class T> T* in(QWidget* window, const QString& name)
{
    T* found = window ? window->findChild<T*>(name) : nullptr;
    if (!found)
        qWarning("no widget %s", qPrintable(name));
    return found;
}

void typeInto(QWidget* window, const QString& name, const QString& text)
{
    auto* edit = in<QLineEdit>(window, name);
    edit->setFocus();
    QApplication::processEvents();
    QTest::keyClicks(edit, text);
}

void showPage(QWidget* window, const QString& tabs, int page)
{
    in<QTabWidget>(window, tabs)->setCurrentIndex(page);
    QApplication::processEvents();
}

// Any message box that shows up is answered and remembered, so that a
// message nobody expected fails the test instead of hanging it.
class MessageWatch
{
public:
    MessageWatch()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m_texts << box->text();
                box->done(0);
            }
        });
        m_timer.start(20);
    }
    const QStringList& texts() const { return m_texts; }

private:
    QTimer m_timer;
    QStringList m_texts;
};

void fillPremisesWindow()
{
    QWidget* local = windowWith("txtPadron");
    QVERIFY(local);
    QCOMPARE(local->windowTitle(), QString("Local Comercial"));
    QCOMPARE(in<QTabWidget>(local, "SSTabLocalesComerciales")->currentIndex(), 0);
    QCOMPARE(in<QLineEdit>(local, "txtCP")->text(), QString("9180"));
    QVERIFY(!in<QLineEdit>(local, "txtPrincipal")->isEnabled());
    typeInto(local, "txtPadron", "12x3");
    typeInto(local, "txtObjeto", "1");
    QCOMPARE(in<QLineEdit>(local, "txtPadron")->text(), QString("0000000000123"));
    typeInto(local, "txtGrupo", "b");
    QCOMPARE(in<QLineEdit>(local, "txtGrupo")->text(), QString("B"));
    typeInto(local, "txtRazonSocial", "sur s.a.");
    QCOMPARE(in<QLineEdit>(local, "txtRazonSocial")->text(), QString("SUR SA"));
    in<QCheckBox>(local, "chkRegimenProcom")->click();
    in<QCheckBox>(local, "chkRetencion")->click();
    showPage(local, "SSTabLocalesComerciales", 2);
    typeInto(local, "txtCalleNumero", "o'higgins 1234");
    typeInto(local, "txtSuscriptor", "Ana Diaz");
    QCOMPARE(in<QLineEdit>(local, "txtCalleNumero")->text(), QString("O'HIGGINS 1234"));
    typeInto(local, "txtCaracter", "Titular");
    showPage(local, "SSTabLocalesComerciales", 1);
    typeInto(local, "txtIdPrincipal", Reg::kBovino);
    QTest::mouseClick(in<QPushButton>(local, "cmdAceptar"), Qt::LeftButton);
}

} // namespace

// The registry windows on real widgets, offscreen: the mask and the binding of
// the taxpayer's fields, the premises window opened modally from it, the
// search list's keys, and pictures of the three windows to look at.
class TstRegistryGui : public QObject
{
    Q_OBJECT
    QtUi port;

private slots:
    void initTestCase() { RegisterAllViews(); }
    void init() { setUi(&port); }
    void cleanup() { setUi(nullptr); }

    void newTaxpayerThroughTheRealWindows()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        MessageWatch messages;
        Contribuyentes w;
        QTimer::singleShot(0, [&] {
            auto closeAnyway = qScopeGuard([&] {
                if (w.isLoaded())
                    w.closeByUser();
            });
            QWidget* window = windowWith("txtCuit");
            QVERIFY(window);
            QCOMPARE(window->windowTitle(), QString("Contribuyentes / Locales Comerciales"));
            auto* cuit = in<QLineEdit>(window, "txtCuit");
            QCOMPARE(cuit->inputMask(), QString("00-00000000-0;_"));
            typeInto(window, "txtCuit", "2012345678");
            QCOMPARE(w["txtCuit"].text(), QString("20-12345678-_"));
            QTest::keyClicks(cuit, "6");
            QCOMPARE(w["txtCuit"].text(), QString("20-12345678-6"));
            typeInto(window, "txtApellidoNombre", "perez, juan");
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
            QCOMPARE(Reg::count("tPadronesComerciales", "Principal = 'X'"), 1);
            QTest::mouseClick(in<QPushButton>(window, "cmdAceptar"), Qt::LeftButton);
        });
        w.show(true);
        QVERIFY(!w.isLoaded());
        QVERIFY(w.Saved);
        QCOMPARE(messages.texts(), QStringList{});
        QCOMPARE(Reg::rows("SELECT idContribuyente, ApellidoNombre, Cuit FROM Contribuyentes"),
                 QStringList{"1|PEREZ JUAN|20-12345678-6"});
        QCOMPARE(Reg::rows("SELECT padron, regimen, retencion, calle_numero, suscriptor, Principal "
                           "FROM tPadronesComerciales"),
                 QStringList{"0000000000123|1|1|O'HIGGINS 1234|Ana Diaz|X"});
        QCOMPARE(Reg::rows("SELECT ActP, ActP_Desc FROM Actividades_x_padrones"),
                 QStringList{Reg::kBovino + "|" + Reg::kBovinoName});
    }

    void searchListKeys()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        Busqueda search;
        search.SelectCommandText = Busqueda::ActivitiesSql(QString());
        QTimer::singleShot(0, [&] {
            auto closeAnyway = qScopeGuard([&] {
                if (search.isLoaded())
                    search.closeByUser();
            });
            QWidget* window = windowWith("txtBuscar");
            QVERIFY(window);
            auto* list = in<QListWidget>(window, "lstRegistros");
            auto* status = in<QStatusBar>(window, "StatusBar");
            QCOMPARE(status->currentMessage(),
                     "Total reg.: " + QString::number(Reg::count("tActividades")));
            typeInto(window, "txtBuscar", "n de fiambres");
            QCOMPARE(list->count(), 1);
            QTest::keyClick(in<QLineEdit>(window, "txtBuscar"), Qt::Key_Down);
            QCOMPARE(search.focused(), QString("lstRegistros"));
            list->setCurrentRow(0);
            QCOMPARE(status->currentMessage(), "Código: " + Reg::kFiambres);
            QTest::keyClick(list, Qt::Key_Return);
        });
        search.show(true);
        QVERIFY(!search.isLoaded());
        QCOMPARE(search.Id, Reg::kFiambres);
        QCOMPARE(search.Description, Reg::kFiambresName);
    }

    void escapeLeavesLikeTheCloseBox()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        Busqueda search;
        search.SelectCommandText = Busqueda::ActivitiesSql("bovino");
        QTimer::singleShot(0, [&] {
            auto closeAnyway = qScopeGuard([&] {
                if (search.isLoaded())
                    search.closeByUser();
            });
            QWidget* window = windowWith("txtBuscar");
            QVERIFY(window);
            in<QLineEdit>(window, "txtBuscar")->setFocus();
            QTest::keyClick(in<QLineEdit>(window, "txtBuscar"), Qt::Key_Escape);
            QVERIFY(!search.isLoaded());
        });
        search.show(true);
        QVERIFY(!search.isLoaded());
        QCOMPARE(search.Description, QString());
    }

    // Pictures of the three windows, filled, for a person to look at: set
    // MORVEL_SHOTS to the folder that receives them.
    void pictures()
    {
        const QString folder = qEnvironmentVariable("MORVEL_SHOTS");
        if (folder.isEmpty())
            QSKIP("MORVEL_SHOTS names no folder");
        QDir().mkpath(folder);
        TestEnv env;
        env.createDatabase();
        setUi(&port);
        Reg::insertTaxpayer(1, "PEREZ JUAN", Reg::kCuitMasked);
        Reg::insertPremises(Reg::kCuit, "0000000000123", "0000000000001", "CASA CENTRAL", true);
        Reg::insertPremises(Reg::kCuit, "0000000000456", "0000000000002", "SUCURSAL NORTE");
        gAccess().Execute("UPDATE tPadronesComerciales SET calle_numero = 'O''HIGGINS 1234', "
                          "localidad_departamento = 'VALDO - CAPITAL', suscriptor = 'JUAN PEREZ', "
                          "caracter = 'TITULAR', categoria = '3'");
        gAccess().Execute("UPDATE Actividades_x_padrones SET Act1 = '" + Reg::kFiambres +
                          "', Act1_Desc = '" + Reg::kFiambresName + "'");
        auto shoot = [&](Controller& c, const QString& tabs, int pages, const QString& name) {
            QWidget* view = OpenView(c);
            QVERIFY(view);
            view->adjustSize(); // as the modal windows open
            view->show();
            for (int page = 0; page < pages; ++page) {
                if (!tabs.isEmpty())
                    c[tabs].setValue(page);
                QApplication::processEvents();
                QVERIFY(view->grab().save(folder + "/" + name + QString::number(page) + ".png"));
            }
            c.unload();
            QApplication::processEvents();
        };
        Contribuyentes w;
        w.Id = "1";
        w.NewRecord = false;
        w.load();
        shoot(w, "sstFichas", 2, "Contribuyentes");
        frmLocalComercial local;
        local.Cuit = Reg::kCuit;
        local.Padron = "0000000000123";
        local.Objeto = "0000000000001";
        local.Modificar = true;
        local.cargaDatos();
        shoot(local, "SSTabLocalesComerciales", 3, "frmLocalComercial");
        Busqueda search;
        search.SelectCommandText = Busqueda::ActivitiesSql(QString());
        search.load();
        Person(search).type("txtBuscar", "venta al por menor");
        Person(search).choose("lstRegistros", 2);
        shoot(search, QString(), 1, "Busqueda");
    }
};

QTEST_MAIN(TstRegistryGui)
#include "tst_registry_gui.moc"
