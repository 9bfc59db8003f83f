#include <QtTest>

#include <QApplication>
#include <QTableWidget>

#include "FormFixture.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace fx;

// The eight forms on real widgets, offscreen, opened with lines in them:
// every field of the controller has its widget, the lines are listed, and
// there is no close box.
class TstVistasFormularios : public EnvTest
{
    Q_OBJECT
    QtUi qtUi;

    void seed() override
    {
        premises("2");
        setUi(&qtUi);
    }

private slots:
    void initTestCase() { RegisterAllViews(); }

    void openedWithItsLines_data()
    {
        QTest::addColumn<QString>("form");
        for (const char* form : {"F976", "F2001", "F977", "F978", "F985", "F986", "F987", "F988"})
            QTest::newRow(form) << QString(form);
    }
    void openedWithItsLines()
    {
        QFETCH(QString, form);
        auto f = crearForm(form);
        QVector<QStringList> lines;
        if (form == "F976" || form == "F2001")
            lines << QStringList{"620100", "SERVICIOS DE CONSULTORES EN INFORMÁTICA", "152.300,00",
                                 "3,5", "5.330,50"};
        else if (form != "F986" && form != "F988")
            for (const QString& n : QStringList{"1", "2", "3"})
                lines << QStringList{"0" + n + "-03-2024", "FACA - Factura A",
                                     "00012000000000" + n, "DISTRIBUIDORA NORTE " + n,
                                     "30-71234567-1",      "0000000000099",
                                     n + "20,50"};
        abrirForm(*f, nuevo(form), lines);

        QWidget* view = OpenView(*f);
        QVERIFY(view);
        view->show();
        QApplication::processEvents();
        QVERIFY(!(view->windowFlags() & Qt::WindowCloseButtonHint));
        for (Field* field : f->fields())
            if (field->kind() != FieldKind::Label && field->kind() != FieldKind::Progress)
                QVERIFY2(view->findChild<QWidget*>(field->name()), qPrintable(field->name()));
        if (auto* grid = view->findChild<QTableWidget*>("gridFormulario"))
            QCOMPARE(grid->rowCount(), lines.size());
        f->unload();
        QApplication::processEvents();
    }
};

QTEST_MAIN(TstVistasFormularios)
#include "tst_vistas_formularios.moc"
