#include <QtTest>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>

#include "DeskFixture.h"
#include "GuiSupport.h"
#include "TestSupport.h"
#include "declarations/FormulariosDDJJ.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/ControlMensual.h"
#include "desk/EscritorioMensual.h"
#include "frame/view/QtUi.h"
#include "shell/Principal.h"
#include "shell/view/ShellViews.h"

namespace {

// Where the pictures of the desk go, to be looked at.
void shoot(QWidget* view, const QString& name)
{
    const QString folder = qEnvironmentVariableIsSet("MORVEL_SHOTS")
                               ? qEnvironmentVariable("MORVEL_SHOTS")
                               : QStringLiteral(MORVEL_SHOTS_DIR);
    QDir().mkpath(folder);
    QVERIFY(view->grab().save(folder + u'/' + name + QStringLiteral(".png")));
}

QStringList column(QTableWidget* table, int col)
{
    QStringList out;
    for (int r = 0; r < table->rowCount(); ++r)
        out << table->item(r, col)->text();
    return out;
}

} // namespace

// The desk on real widgets, offscreen, over a desk of 200 taxpayers: the
// finder of the main window, a taxpayer's calendar and the month's check,
// each drawn into a picture.
class TstEscritorioGui : public EnvTest
{
    Q_OBJECT
    void seed() override
    {
        RegistrarFormularios();
        Desk::seedDesk(200, 2024);
    }
    void tearDown() override
    {
        if (gPrincipal().isLoaded())
            Gui::closeView(gPrincipal());
    }

private slots:
    void initTestCase() { RegisterAllViews(); }

    void finderFiltersAsOneTypesAndOpensWithEnter()
    {
        QPointer<QWidget> view(Gui::showView(gPrincipal(), {900, 640}));
        QVERIFY(view);
        auto* table = view->findChild<QTableWidget*>("gridContribuyentes");
        auto* box = view->findChild<QLineEdit*>("txtBuscar");
        QCOMPARE(table->rowCount(), 200);
        QCOMPARE(view->findChild<QLabel*>("lblCantidad")->text(),
                 QString("200 de 200 contribuyentes"));
        // Ctrl+F from the list reaches the search box
        table->setFocus();
        QTest::keyClick(table, Qt::Key_F, Qt::ControlModifier);
        QApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), box);
        QTest::keyClicks(box, "perez");
        QApplication::processEvents();
        QCOMPARE(table->rowCount(), 10);
        for (const QString& name : column(table, 0))
            QVERIFY2(name.startsWith("PÉREZ "), qPrintable(name));
        shoot(view, "buscador");
        QTest::keyClicks(box, " JUAN");
        QApplication::processEvents();
        QCOMPARE(column(table, 0), QStringList{"PÉREZ JUAN"});
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(env->ui().shownWindows(), QStringList{"ContribuyentesDatos"});
        // the one opened now comes first, the list whole again
        box->clear();
        QTest::keyClicks(box, "a");
        QTest::keyClick(box, Qt::Key_Backspace);
        QApplication::processEvents();
        QCOMPARE(table->item(0, 0)->text(), QString("PÉREZ JUAN"));
        // arrows and a double click pick another
        Gui::doubleClickCell(table, 3, 0);
        QCOMPARE(env->ui().shownWindows().size(), 2);
        QCOMPARE(view->findChild<QComboBox*>("cboOrden")->currentText(),
                 QString("Recientes primero"));
    }

    void calendarShowsTheYearAndOpensADeclaration()
    {
        CalendarioPresentaciones calendario;
        // a retention agent who filed to August, its F986 to June
        calendario.IdContribuyente = 4;
        calendario.Anio = 2024;
        QPointer<QWidget> view(Gui::showView(calendario, {1000, 300}));
        QVERIFY(view);
        auto* table = view->findChild<QTableWidget*>("gridCalendario");
        QCOMPARE(table->horizontalHeaderItem(1)->text(), QString("Ene"));
        QCOMPARE(table->rowCount(), calendario["gridCalendario"].rowCount());
        int f986 = -1, f976 = -1;
        for (int r = 0; r < table->rowCount(); ++r) {
            f986 = table->item(r, 0)->text().startsWith("F986 ") ? r : f986;
            f976 = table->item(r, 0)->text().startsWith("F976 ") ? r : f976;
        }
        QVERIFY(f986 >= 0 && f976 >= 0);
        QVERIFY(table->item(f976, 1)->text().startsWith("✓ "));
        QCOMPARE(table->item(f986, 6)->text(), QString("✓ 104,50"));
        QCOMPARE(table->item(f986, 7)->text(), QString("Pendiente"));
        QCOMPARE(table->item(f976, 12)->text(), QString(""));
        shoot(view, "calendario");
        QTest::mouseClick(view->findChild<QPushButton*>("cmdAnioAnterior"), Qt::LeftButton);
        QCOMPARE(view->findChild<QLabel*>("lblAnio")->text(), QString("Año 2023"));
        QCOMPARE(table->item(f976, 1)->text(), QString(""));
        QTest::mouseClick(view->findChild<QPushButton*>("cmdAnioSiguiente"), Qt::LeftButton);
        Gui::doubleClickCell(table, f976, 1);
        QCOMPARE(env->ui().shownWindows(), QStringList{"SeleccionFormulario"});
        Gui::doubleClickCell(table, f986, 7);
        QCOMPARE(env->ui().shownWindows().last(), QString("F986"));
        Gui::closeView(calendario);
    }

    void deskShowsEveryTaxpayersYear()
    {
        EscritorioMensual escritorio;
        escritorio.Anio = 2024;
        QPointer<QWidget> view(Gui::showView(escritorio, {1000, 620}));
        QVERIFY(view);
        auto* table = view->findChild<QTableWidget*>("gridEscritorio");
        QCOMPARE(table->rowCount(), 200);
        // taxpayer 4 (LÓPEZ MARÍA) left F985 unfiled all year and filed to August
        int row = -1;
        for (int r = 0; r < table->rowCount(); ++r)
            row = table->item(r, 1)->text() == "20-00000004-6" ? r : row;
        QVERIFY(row >= 0);
        QCOMPARE(table->item(row, 2)->text(), QString("−1"));
        QCOMPARE(table->item(row, 8)->text(), QString("−2"));
        QCOMPARE(table->item(row, 13)->text(), QString());
        shoot(view, "escritorio");
        Gui::doubleClickCell(table, row, 3);
        QCOMPARE(env->ui().shownWindows(), QStringList{"CalendarioPresentaciones"});
        Gui::closeView(escritorio);
    }

    void checkReportListsTheDeskAndOpensALine()
    {
        ControlMensual control;
        QPointer<QWidget> view(Gui::showView(control, {1000, 580}));
        QVERIFY(view);
        auto* period = view->findChild<QLineEdit*>("txtPeriodo");
        period->selectAll();
        QTest::keyClicks(period, "062024");
        QTest::mouseClick(view->findChild<QPushButton*>("cmdRevisar"), Qt::LeftButton);
        auto* table = view->findChild<QTableWidget*>("gridObservaciones");
        QVERIFY(table->rowCount() > 40);
        QCOMPARE(table->rowCount(), control.Observaciones().size());
        QVERIFY(view->findChild<QLabel*>("lblResumen")->text().contains("período 06-2024"));
        shoot(view, "control");
        int pending = -1;
        for (int r = 0; r < table->rowCount() && pending < 0; ++r)
            if (!control.Observaciones().at(r).clave.isEmpty())
                pending = r;
        QVERIFY(pending >= 0);
        Gui::doubleClickCell(table, pending, 4);
        QCOMPARE(env->ui().shownWindows().size(), 1);
        Gui::closeView(control);
    }
};

QTEST_MAIN(TstEscritorioGui)
#include "tst_escritorio_gui.moc"
