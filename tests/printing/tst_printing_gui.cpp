#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <QLineEdit>
#include <QSpinBox>

#include "PrintingFixture.h"
#include "shell/view/ShellViews.h"

#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "output/GenerarDisco.h"
#include "output/ReportDriver.h"
#include "output/view/QtReportPrinter.h"

using namespace PrintingFixture;

namespace {

QDialog* openDialog(const QString& name)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QDialog*>(top);
            dialog && dialog->objectName() == name && dialog->isVisible())
            return dialog;
    return nullptr;
}

// The preview when it opened; whatever came instead is closed, so that the
// test never waits.
QDialog* openPreview()
{
    QDialog* dialog = openDialog("VistaPrevia");
    if (!dialog)
        if (auto* other = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            other->reject();
    return dialog;
}

} // namespace

// The printer of the desktop: the program installs it, and its preview
// shows every page of the printing with its buttons.
class TstPrintingGui : public QObject
{
    Q_OBJECT
    QtUi m_port;
    Database m_db;

private slots:
    void initTestCase()
    {
        QVERIFY(m_db.build());
        RegisterAllViews();
    }

    // The preview shows every page of the printing, fits the screen with its
    // buttons, moves from page to page and zooms: in, out, to the width and
    // to the whole page.
    void previewShowsEveryPageAndNavigates()
    {
        TestEnv env;
        QVERIFY(m_db.install());
        setUi(&m_port);
        addF987Lines(30);
        QtReportPrinter& printer = dynamic_cast<QtReportPrinter&>(reportPrinter());
        QStringList seen, buttons;
        bool fits = false;
        int pages = -1;
        QTimer::singleShot(0, [&] {
            QDialog* dialog = openPreview();
            if (!dialog)
                return;
            pages = 0;
            for (QLabel* label : dialog->findChildren<QLabel*>())
                pages += label->pixmap().isNull() ? 0 : 1;
            for (QPushButton* button : dialog->findChildren<QPushButton*>())
                buttons << button->text();
            // MORVEL_SHOT=file.png keeps a picture of the preview to be looked at.
            if (qEnvironmentVariableIsSet("MORVEL_SHOT"))
                dialog->grab().save(qEnvironmentVariable("MORVEL_SHOT"));
            const QRect room = dialog->screen()->availableGeometry();
            fits = dialog->frameGeometry().height() <= room.height() &&
                   dialog->frameGeometry().width() <= room.width();
            auto label = [&](const char* name) { return dialog->findChild<QLabel*>(name)->text(); };
            auto click = [&](const char* name) {
                dialog->findChild<QPushButton*>(name)->click();
                QApplication::processEvents();
            };
            seen << label("lblPagina");
            click("cmdSiguiente");
            click("cmdSiguiente");
            seen << label("lblPagina");
            click("cmdAnterior");
            seen << label("lblPagina");
            click("cmdPagina");
            const QString whole = label("lblZoom");
            click("cmdAcercar");
            seen << QString::number(label("lblZoom").chopped(1).toInt() > whole.chopped(1).toInt());
            click("cmdAlejar");
            click("cmdAlejar");
            seen << QString::number(label("lblZoom").chopped(1).toInt() < whole.chopped(1).toInt());
            seen << label("lblPagina");
            dialog->reject();
        });
        printer.preview(ReportDriver::Prepare(parameters("F987")));
        QCOMPARE(pages, 4); // two copies of two pages
        QVERIFY(buttons.contains("Guardar como PDF"));
        QVERIFY(buttons.contains("Imprimir"));
        QVERIFY(fits);
        QCOMPARE(seen, (QStringList{"Página 1 de 4", "Página 3 de 4", "Página 2 de 4", "1", "1",
                                    "Página 2 de 4"}));
        CloseDatabase();
    }

    // The dialog as the person sees it; the up-down writes the copies box.
    void generarDiscoView()
    {
        TestEnv env;
        QVERIFY(m_db.install());
        setUi(&m_port);
        GenerarDisco w;
        w.Parametros = parameters("F976");
        w.load();
        QWidget* view = OpenView(w);
        QVERIFY(view);
        view->show();
        QApplication::processEvents();
        auto* upDown = view->findChild<QSpinBox*>("UpD");
        auto* copies = view->findChild<QLineEdit*>("txtCantidadImpresiones");
        QVERIFY(upDown && copies);
        upDown->stepUp();
        upDown->stepUp();
        QApplication::processEvents();
        QCOMPARE(w["txtCantidadImpresiones"].text(), QString("3"));
        QCOMPARE(view->findChild<QLabel*>("lblRotuloTitulo")->text(),
                 QString("Generación del Formulario F976"));
        w.unload();
        CloseDatabase();
    }
};

QTEST_MAIN(TstPrintingGui)
#include "tst_printing_gui.moc"
