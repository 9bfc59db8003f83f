#include <QtTest>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include "FormFixture.h"
#include "Person.h"
#include "declarations/F2001.h"
#include "declarations/F976.h"
#include "declarations/F977.h"
#include "declarations/F978.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace fx;

// The four forms on real widgets, offscreen: every field of the controller
// has its widget, amounts are right-aligned, there is no close box, and a
// filled form is drawn (saved to MORVEL_SCREENSHOTS when it is set).
class TstVistasFormularios : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;
    QtUi qtUi;

    void check(FormularioDDJJ& form, const QString& shot)
    {
        QWidget* view = OpenView(form);
        QVERIFY(view);
        view->resize(view->sizeHint().expandedTo(QSize(860, 0)));
        view->show();
        QApplication::processEvents();
        QVERIFY(!(view->windowFlags() & Qt::WindowCloseButtonHint));
        for (Field* f : form.fields()) {
            if (f->kind() == FieldKind::Label || f->kind() == FieldKind::Progress)
                continue;
            QVERIFY2(view->findChild<QWidget*>(f->name()), qPrintable(f->name()));
        }
        for (const CampoFormulario& c : form.definicion().campos) {
            auto* edit = view->findChild<QLineEdit*>(c.campo);
            if (c.tipo != TipoCampo::Periodo)
                QVERIFY2(edit->alignment() & Qt::AlignRight, qPrintable(c.campo));
        }
        QVERIFY(view->findChild<QTableWidget*>("gridFormulario")->rowCount() > 0);
        const QString folder = qEnvironmentVariable("MORVEL_SCREENSHOTS");
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            view->grab().save(folder + "/" + shot + ".png");
        }
        form.unload();
        QApplication::processEvents();
    }

private slots:
    void initTestCase() { RegisterAllViews(); }
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
        premises(QStringLiteral("2"));
        setUi(&qtUi);
    }
    void cleanup() { env.reset(); }

    void monthlyReturns()
    {
        F976 f976;
        f976.Parametros = nuevo("F976");
        writeLine(
            "F976_Detalle", f976.Parametros, kActividad,
            {"620100", "SERVICIOS DE CONSULTORES EN INFORMÁTICA", "152.300,00", "3,5", "5.330,50"});
        writeLine("F976_Detalle", f976.Parametros, kActividad,
                  {"477310", "VENTA AL POR MENOR DE PRODUCTOS FARMACÉUTICOS", "48.000,00", "2,8",
                   "1.344,00"});
        f976.load();
        f976["txtRetenciones"].setText("1.200,00");
        f976["txtPercepciones"].setText("350,25");
        f976["txtMultas"].setText("100,00");
        f976.RecalcularTotales();
        check(f976, "F976");

        F2001 f2001;
        f2001.Parametros = nuevo("F2001");
        writeLine(
            "F2001_Detalle", f2001.Parametros, kActividad,
            {"620100", "SERVICIOS DE CONSULTORES EN INFORMÁTICA", "52.300,00", "1,5", "784,50"});
        f2001.load();
        f2001["txtRetenciones"].setText("200,00");
        f2001["txtDesgravaciones"].setText("84,50");
        f2001.RecalcularTotales();
        check(f2001, "F2001");
    }

    void annexes()
    {
        F977 f977;
        f977.Parametros = nuevo("F977");
        F978 f978;
        f978.Parametros = nuevo("F978");
        for (int i = 1; i <= 4; ++i) {
            const QString n = QString::number(i);
            const QStringList line{"0" + n + "-03-2024",
                                   "FACA - Factura A",
                                   QString("00012000000000") + n,
                                   "DISTRIBUIDORA NORTE " + n,
                                   "30-71234567-1",
                                   "0000000000099",
                                   n + "20,50"};
            writeLine("F977_Detalle", f977.Parametros, kComprobante, line);
            writeLine("F978_Detalle", f978.Parametros, kComprobante, line);
        }
        f977.load();
        check(f977, "F977");
        f978.load();
        check(f978, "F978");
    }
};

QTEST_MAIN(TstVistasFormularios)
#include "tst_vistas_formularios.moc"
