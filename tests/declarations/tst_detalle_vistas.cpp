#include <QtTest>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "DetalleTestData.h"
#include "Person.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace DetalleTest;

namespace {

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
// show filled in, and what the person types reaches the fields.
class TstDetalleVistas : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { RegisterAllViews(); }

    void filledDialog_data()
    {
        QTest::addColumn<QString>("ventana");
        for (const char* form : {"F976", "F2001", "F977", "F978", "F985", "F987"})
            QTest::newRow(form) << QString(form);
    }
    void filledDialog()
    {
        QFETCH(QString, ventana);
        TestEnv env;
        env.createDatabase();
        auto d = Abrir(ventana);
        QWidget* view = OpenView(*d);
        QVERIFY(view);
        for (Field* f : d->fields()) {
            if (f->visible())
                QVERIFY2(view->findChild<QWidget*>(f->name()), qPrintable(f->name()));
        }
        view->show();
        Llenar(*d);
        QApplication::processEvents();
        for (Field* f : d->fields())
            if (auto* edit = view->findChild<QLineEdit*>(f->name()))
                QCOMPARE(edit->text(), f->text());
        QVERIFY(view->findChild<QLabel*>("lblF3")->isVisible());
        d->unload();
        QApplication::processEvents();
    }

    // A rate outside the list is typed into the open list of rates.
    void rateTypedIntoTheList()
    {
        TestEnv env;
        env.createDatabase();
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
        QCOMPARE(d.field("txtAlicuota").text(), QString("1,5"));
        d.unload();
        QApplication::processEvents();
    }
};

QTEST_MAIN(TstDetalleVistas)
#include "tst_detalle_vistas.moc"
