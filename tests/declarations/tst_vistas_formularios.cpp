#include <QtTest>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>

#include "shell/view/ShellViews.h"
#include "FormFixture.h"
#include "Person.h"
#include "declarations/F976_Detalle.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace fx;

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

// The eight forms on real widgets, offscreen, opened with lines in them:
// every field of the controller has its widget, the lines are listed, and
// there is no close box. The views of their detail dialogs: every field has
// its widget, the dialogs show filled in, and what the person types reaches
// the fields.
class TstVistasFormularios : public EnvTest
{
    Q_OBJECT
    QtUi qtUi;

    void seed() override { premises("2"); }

private slots:
    void initTestCase() { RegisterAllViews(); }

    void openedWithItsLines_data()
    {
        QTest::addColumn<QString>("form");
        for (const char* form : {"F976", "F2001", "F977", "F978", "F985", "F986", "F987", "F988"})
            Row(form, QString(form));
    }
    // The eight forms with their lines: the amounts of the grid in one
    // format, whether they were typed ("5.330,50") or imported ("152300").
    void openedWithItsLines()
    {
        QFETCH(QString, form);
        setUi(&qtUi);
        auto f = crearForm(form);
        QVector<QStringList> lines;
        if (form == "F976" || form == "F2001")
            lines << QStringList{"620100", "SERVICIOS DE CONSULTORES EN INFORMÁTICA", "152300",
                                 "3,5", "5.330,50"};
        else if (form != "F986" && form != "F988")
            for (const QString& n : QStringList{"1", "2", "3"})
                lines << comprobante(n, n + "020,5");
        abrirForm(*f, nuevo(form), lines);

        QWidget* view = OpenView(*f);
        QVERIFY(view);
        view->show();
        QApplication::processEvents();
        QVERIFY(!(view->windowFlags() & Qt::WindowCloseButtonHint));
        for (Field* field : f->fields())
            if (field->kind() != FieldKind::Label && field->kind() != FieldKind::Progress)
                QVERIFY2(view->findChild<QWidget*>(field->name()), qPrintable(field->name()));
        if (auto* grid = view->findChild<QTableWidget*>("gridFormulario")) {
            QCOMPARE(grid->rowCount(), lines.size());
            const bool activities = form == "F976" || form == "F2001";
            QStringList amounts;
            for (int c : activities ? QList<int>{3, 4, 5} : QList<int>{grid->columnCount() - 1})
                amounts << grid->item(0, c)->text();
            const QStringList shown = activities
                                          ? QStringList{"152.300,00", "3,50", "5.330,50"}
                                          : QStringList{"1.020,50"};
            QCOMPARE(amounts, shown);
        }
        f->unload();
        QApplication::processEvents();
    }

    void filledDialog_data()
    {
        QTest::addColumn<QString>("ventana");
        for (const char* form : {"F976", "F2001", "F977", "F978", "F985", "F987"})
            Row(form, QString(form));
    }
    void filledDialog()
    {
        QFETCH(QString, ventana);
        auto d = abrirDetalle(ventana);
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
        F976_Detalle d;
        d.Parametros = detalle("F976");
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

QTEST_MAIN(TstVistasFormularios)
#include "tst_vistas_formularios.moc"
