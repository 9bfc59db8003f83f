#include <QtTest>

#include "Controller.h"
#include "Globals.h"
#include "Person.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "Validar.h"

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
        // before: typed over, as a selected text
        Columns<int, int, QString, QString, QString>("type", "limit", "before", "typed", "after");
        Row("comma twice", 2, 2, "", "12,,5", "12,5");
        Row("point is the separator", 2, 2, "", "12.5", "12,5");
        Row("point then comma", 2, 2, "", "1.,5", "1,5");
        Row("third decimal", 2, 2, "", "1,234", "1,23");
        Row("separator first", 2, 2, "", ",5", "0,5");
        Row("letters and minus", 2, 2, "", "1a-2", "12");
        Row("selection is typed over", 2, 2, "9,99", "5", "5");
        Row("backspace frees a decimal", 2, 2, "", "1,23\b4", "1,24");
        Row("digits", 1, 0, "", "1a2-3", "123");
        Row("digits, limit", 1, 3, "", "12345", "123");
        Row("backspace at the limit", 1, 2, "", "12\b3", "13");
    }
    void textBox()
    {
        const auto [type, limit, before, typed, after] =
            Fetch<int, int, QString, QString, QString>("type", "limit", "before", "typed", "after");
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
        // message: "" when accepted
        Columns<QString, int, bool, QString>("date", "mes", "obligatoria", "message");
        // The period is mes-2021; a later date passes (mode 1, the one the forms ask).
        Row("31st of February", "31-02-2021", 2, false, kIncorrect);
        Row("half typed", "15-03-20__", 3, false, kIncorrect);
        Row("blank", "", 3, false, "");
        Row("blank, required", "", 3, true, kIncorrect);
        Row("before the period", "15-03-2021", 4, false, kBefore);
        Row("in the period", "15-03-2021", 3, false, "");
        Row("after the period", "15-03-2021", 2, false, "");
        Row("earlier year", "15-12-2020", 1, false, kBefore);
        Row("later year, earlier month", "15-01-2022", 4, false, "");
    }
    void fechaPeriodo()
    {
        const auto [date, mes, obligatoria, message] =
            Fetch<QString, int, bool, QString>("date", "mes", "obligatoria", "message");
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
