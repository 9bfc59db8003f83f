#include <QtTest>

#include "Controller.h"
#include "Globals.h"
#include "Person.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "declarations/Validar.h"

namespace {

// A window with one box filtered by TextBox, as the forms wire their amount
// and code fields, and a masked date.
class Scratch : public Controller
{
public:
    Scratch() : Controller("Scratch") {}
    int type = Validar::Decimal;
    int limit = 2;

protected:
    void design() override
    {
        add("txtImporte", FieldKind::Text);
        add("txtFecha", FieldKind::Text).setMask("##-##-####");
        add("txtOtro", FieldKind::Text);
        on("txtImporte", Ev::KeyPress,
           [this](EventArgs& e) { gValidar().TextBox(e.key, field("txtImporte"), type, limit); });
    }
};

const QString kIncorrect = QStringLiteral("La fecha ingresada es incorrecta.");
const QString kBefore = QStringLiteral("La fecha ingresada no puede ser menor a la del periodo.");

} // namespace

// The shared validators as a person meets them: what typing leaves in a box,
// and which dates are refused with which message and selection.
class TstValidar : public EnvTest
{
    Q_OBJECT

    void verifyMessage(const QString& message)
    {
        if (message.isEmpty()) {
            QVERIFY(env->ui().messages().isEmpty());
            return;
        }
        QCOMPARE(env->ui().messages().size(), 1);
        QCOMPARE(env->ui().lastText(), message);
        QCOMPARE(env->ui().messages().last().title, QString("Atención !"));
        QCOMPARE(env->ui().messages().last().style, int(Msg::Exclamation));
    }

public:
    TstValidar() : EnvTest(false) {}

private slots:
    void textBox_data()
    {
        // clang-format off
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("limit");
        QTest::addColumn<QString>("before"); // typed over, as a selected text
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        QTest::newRow("comma twice") << 2 << 2 << "" << "12,,5" << "12,5";
        QTest::newRow("point is the separator") << 2 << 2 << "" << "12.5" << "12,5";
        QTest::newRow("point then comma") << 2 << 2 << "" << "1.,5" << "1,5";
        QTest::newRow("third decimal") << 2 << 2 << "" << "1,234" << "1,23";
        QTest::newRow("separator first") << 2 << 2 << "" << ",5" << "0,5";
        QTest::newRow("letters and minus") << 2 << 2 << "" << "1a-2" << "12";
        QTest::newRow("selection is typed over") << 2 << 2 << "9,99" << "5" << "5";
        QTest::newRow("backspace frees a decimal") << 2 << 2 << "" << "1,23\b4" << "1,24";
        QTest::newRow("digits") << 1 << 0 << "" << "1a2-3" << "123";
        QTest::newRow("digits, limit") << 1 << 3 << "" << "12345" << "123";
        QTest::newRow("backspace at the limit") << 1 << 2 << "" << "12\b3" << "13";
        // clang-format on
    }
    void textBox()
    {
        QFETCH(int, type);
        QFETCH(int, limit);
        QFETCH(QString, before);
        QFETCH(QString, typed);
        QFETCH(QString, after);
        Scratch window;
        window.type = type;
        window.limit = limit;
        window.field("txtImporte").setText(before);
        Person person(window);
        if (before.isEmpty())
            person.type("txtImporte", typed);
        else
            person.retype("txtImporte", typed);
        QCOMPARE(window.field("txtImporte").text(), after);
        QVERIFY(env->ui().messages().isEmpty());
    }

    void enterMovesOn()
    {
        Scratch window;
        Person person(window);
        person.type("txtImporte", "5");
        person.key("txtImporte", KeyCode::Return);
        QCOMPARE(window.focused(), QString("txtFecha"));
        QCOMPARE(window.field("txtImporte").text(), QString("5"));
    }

    void fechaPeriodo_data()
    {
        // clang-format off
        QTest::addColumn<QString>("date");
        QTest::addColumn<int>("mes");
        QTest::addColumn<bool>("obligatoria");
        QTest::addColumn<QString>("message"); // "" when accepted
        // The period is mes-2021; a later date passes (mode 1, the one the forms ask).
        QTest::newRow("31st of February") << "31-02-2021" << 2 << false << kIncorrect;
        QTest::newRow("half typed") << "15-03-20__" << 3 << false << kIncorrect;
        QTest::newRow("blank") << "" << 3 << false << "";
        QTest::newRow("blank, required") << "" << 3 << true << kIncorrect;
        QTest::newRow("before the period") << "15-03-2021" << 4 << false << kBefore;
        QTest::newRow("in the period") << "15-03-2021" << 3 << false << "";
        QTest::newRow("after the period") << "15-03-2021" << 2 << false << "";
        QTest::newRow("earlier year") << "15-12-2020" << 1 << false << kBefore;
        QTest::newRow("later year, earlier month") << "15-01-2022" << 4 << false << "";
        // clang-format on
    }
    void fechaPeriodo()
    {
        QFETCH(QString, date);
        QFETCH(int, mes);
        QFETCH(bool, obligatoria);
        QFETCH(QString, message);
        Scratch window;
        Field& fecha = window.field("txtFecha");
        Person(window).type("txtFecha", QString(date).remove('-').remove('_'));
        if (!date.isEmpty())
            QCOMPARE(fecha.text(), date);

        QCOMPARE(gValidar().FechaPeriodo(fecha, mes, 2021, 1, obligatoria), message.isEmpty());
        verifyMessage(message);
        if (!message.isEmpty()) // the whole date is selected to be typed over
            QCOMPARE(fecha.selLength(), 10);
    }
};

QTEST_GUILESS_MAIN(TstValidar)
#include "tst_validar.moc"
