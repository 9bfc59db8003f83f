#include <QtTest>

#include <QApplication>
#include <QDir>
#include <QLineEdit>

#include "FormFixture.h"
#include "declarations/F985.h"
#include "declarations/F986.h"
#include "declarations/F987.h"
#include "declarations/F988.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"

using namespace fx;

// The agents' four forms on real widgets, offscreen, filled as a person
// leaves them: every field has its widget and the amounts are right-aligned.
// The pictures go to MORVEL_SCREENSHOTS when it is set.
class TstVistasAgentes : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;
    QtUi qtUi;

    void draw(FormularioDDJJ& form)
    {
        QWidget* view = OpenView(form);
        QVERIFY(view);
        view->show();
        QApplication::processEvents();
        for (Field* f : form.fields())
            if (f->kind() != FieldKind::Label && f->kind() != FieldKind::Progress)
                QVERIFY2(view->findChild<QWidget*>(f->name()), qPrintable(f->name()));
        for (const CampoFormulario& c : form.definicion().campos)
            QVERIFY2(view->findChild<QLineEdit*>(c.campo)->alignment() & Qt::AlignRight,
                     qPrintable(c.campo));
        const QString folder = qEnvironmentVariable("MORVEL_SCREENSHOTS");
        if (!folder.isEmpty() && QDir().mkpath(folder))
            view->grab().save(folder + "/" + form.definicion().id + ".png");
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

    void annexes()
    {
        F985 f985;
        f985.Parametros = nuevo("F985");
        F987 f987;
        f987.Parametros = nuevo("F987");
        for (int i = 1; i <= 3; ++i) {
            const QString n = QString::number(i);
            const QStringList line{"1" + n + "-03-2024", "FACB - Factura B",
                                   "00045000000000" + n, "CLIENTE MAYORISTA " + n,
                                   "30-70987654-3",      "00000000000" + n + "5",
                                   n + ".150,00"};
            writeLine("F985_Detalle", f985.Parametros, kComprobante, line);
            writeLine("F987_Detalle", f987.Parametros, kComprobante, line);
        }
        f985.load();
        QCOMPARE(f985["txtTotalPercepciones"].text(), QStringLiteral("6.450,00"));
        draw(f985);
        f987.load();
        draw(f987);
    }

    void returns()
    {
        F986 f986;
        f986.Parametros = nuevo("F986");
        f986.load();
        F988 f988;
        f988.Parametros = nuevo("F988");
        f988.load();
        for (FormularioDDJJ* f :
             {static_cast<FormularioDDJJ*>(&f986), static_cast<FormularioDDJJ*>(&f988)}) {
            const QString informed = f == &f986 ? "txtImpPerF985" : "txtImpPerF987";
            (*f)[informed].setText("6.450,00");
            (*f)["txtAccesorioCoef"].setText("32,25");
            (*f)["txtMultas"].setText("0,00");
            (*f)["txtOtros"].setText("0,00");
            static_cast<DeclaracionAgente*>(f)->ImporteDepositar();
            QCOMPARE((*f)["txtImporteDepositar"].text(), QStringLiteral("6.482,25"));
            draw(*f);
        }
    }
};

QTEST_MAIN(TstVistasAgentes)
#include "tst_vistas_agentes.moc"
