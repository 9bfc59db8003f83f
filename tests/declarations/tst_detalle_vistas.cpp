#include <QtTest>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <memory>

#include "DetalleTestData.h"
#include "Person.h"
#include "TestSupport.h"
#include "declarations/F2001_Detalle.h"
#include "declarations/F976_Detalle.h"
#include "declarations/F977_Detalle.h"
#include "declarations/F978_Detalle.h"
#include "declarations/F985_Detalle.h"
#include "declarations/F987_Detalle.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace DetalleTest;

namespace {

std::unique_ptr<DetalleDialog> Dialogo(const QString& ventana)
{
    if (ventana == "F976_Detalle")
        return std::make_unique<F976_Detalle>();
    if (ventana == "F2001_Detalle")
        return std::make_unique<F2001_Detalle>();
    if (ventana == "F977_Detalle")
        return std::make_unique<F977_Detalle>();
    if (ventana == "F978_Detalle")
        return std::make_unique<F978_Detalle>();
    if (ventana == "F985_Detalle")
        return std::make_unique<F985_Detalle>();
    return std::make_unique<F987_Detalle>();
}

void Llenar(DetalleDialog& d)
{
    Person p(d);
    if (d.hasField("txtIdActividad")) {
        p.type("txtIdActividad", "620100");
        p.type("txtActividad", "SERVICIOS DE CONSULTORES EN INFORMATICA");
        p.type("txtBaseImponible", "125000");
        p.leave("txtBaseImponible");
        p.choose("txtAlicuota", "2,40");
        p.focus("txtBaseImponible");
        return;
    }
    p.type("txtFecha", "15032024");
    if (d.hasField("cboComprobante"))
        p.choose("cboComprobante", "FACA - Factura A");
    p.type("txtNroComprobante", "4711");
    p.type("txtDenominacion", "DISTRIBUIDORA DEL SUR S.A.");
    p.type("txtCuit", "30712345671");
    p.type("txtPadron", "1234");
    p.type("txtImportePercibido", "1530,5");
    p.leave("txtImportePercibido");
    p.focus("txtDenominacion");
}

} // namespace

// The views of the detail dialogs: every field has its widget, the dialogs
// draw filled in, and what the person types reaches the fields.
class TstDetalleVistas : public QObject
{
    Q_OBJECT
    QtUi port;

private slots:
    void initTestCase()
    {
        RegisterAllViews();
        QDir().mkpath("/tmp/details");
    }

    void filledDialog_data()
    {
        QTest::addColumn<QString>("ventana");
        for (const char* name : {"F976_Detalle", "F2001_Detalle", "F977_Detalle", "F978_Detalle",
                                 "F985_Detalle", "F987_Detalle"})
            QTest::newRow(name) << QString(name);
    }
    void filledDialog()
    {
        QFETCH(QString, ventana);
        TestEnv env;
        env.createDatabase();
        setUi(&env.ui());
        auto d = Dialogo(ventana);
        d->Parametros = Parametros(ventana.section('_', 0, 0));
        d->EsAgrega = true;
        d->load();
        QWidget* view = OpenView(*d);
        QVERIFY(view);
        for (Field* f : d->fields()) {
            if (f->visible())
                QVERIFY2(view->findChild<QWidget*>(f->name()), qPrintable(f->name()));
        }
        Llenar(*d);
        view->show();
        QApplication::processEvents();
        QVERIFY(view->findChild<QLabel*>("lblF3")->isVisible());
        QVERIFY(view->grab().save("/tmp/details/" + ventana + ".png"));
        QCOMPARE(view->windowTitle(), d->caption());
        d->unload();
        QApplication::processEvents();
        setUi(nullptr);
    }

    // A rate outside the list is typed into the open list of rates.
    void rateTypedIntoTheList()
    {
        TestEnv env;
        env.createDatabase();
        setUi(&env.ui());
        F976_Detalle d;
        d.Parametros = Parametros("F976");
        d.load();
        QWidget* view = OpenView(d);
        view->show();
        QApplication::processEvents();
        auto* combo = view->findChild<QComboBox*>("txtAlicuota");
        QVERIFY(combo && combo->isEditable());
        QCOMPARE(combo->count(), 8);
        combo->setFocus();
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo->lineEdit(), "1,5");
        QApplication::processEvents();
        QEXPECT_FAIL("", "the view binder does not yet forward the text typed in an open list",
                     Continue);
        QCOMPARE(d.field("txtAlicuota").text(), QString("1,5"));
        d.unload();
        QApplication::processEvents();
        setUi(nullptr);
    }
};

QTEST_MAIN(TstDetalleVistas)
#include "tst_detalle_vistas.moc"
