#include <QtTest>

#include "ErrorLog.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "database/RegionalGuard.h"

namespace {
const QString kQuestion =
    "Se ha detectado que la configuración de su sistema tiene como separadores de decimales el "
    "simbolo (.) Aceptar = Cambiar a simbolo (,) Punto y continuar. 0 Cancelar? ";
const QString kRefused = "Se ha detectado que la configuración de su sistema tiene como %1\n"
                         "Se recomienda cambiar a %2, de lo contrario no iniciara el sistema.";
} // namespace

// The start refuses settings under which stored amounts and dates would be
// misread, and offers to switch a "." decimal to ",".
class TstRegional : public EnvTest
{
    Q_OBJECT
public:
    TstRegional() : EnvTest(false) {}

private slots:
    void guard_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("shortDate");
        QTest::addColumn<QString>("symbols"); // date, decimal, thousands, currency decimal
        QTest::addColumn<int>("answer");      // to the question; 0: none asked
        QTest::addColumn<bool>("goesOn");
        QTest::addColumn<QString>("message"); // the one message shown, or ""
        QTest::addColumn<QString>("after");   // decimal, thousands, currency decimal
        const QString es = "Español (Argentina)";
        auto row = [](const char* name, const QString& language, const char* date,
                      const char* symbols, int answer, bool goesOn, const QString& message,
                      const char* after) {
            QTest::newRow(name) << language << date << symbols << answer << goesOn << message
                                << after;
        };
        row("Spanish with slashes passes", es, "dd/MM/yyyy", "/,.,", 0, true, "", ",.,");
        row("first-start values pass", es, "dd-MM-yyyy", "-,.,", 0, true, "", ",.,");
        row("English passes the language test", "English (United States)", "dd/MM/yyyy", "/,.,", 0,
            true, "", ",.,");
        row("language compared in capitals", "español", "dd-mm-yyyy", "-,.,", 0, true, "", ",.,");
        row("pattern inside a longer one passes", es, "dddd, dd/MM/yyyy", "/,.,", 0, true, "",
            ",.,");
        row("blank thousands symbol passes", es, "dd/MM/yyyy", "/, ,", 0, true, "", ", ,");
        row("other language ends", "Deutsch (Deutschland)", "dd.MM.yyyy", ".,.,", 0, false,
            kRefused.arg("idioma: Deutsch (Deutschland)", "Español"), ",.,");
        row("US date ends", "English (United States)", "M/d/yyyy", "/.,.", 0, false,
            kRefused.arg("fecha: M/d/yyyy", "DD/MM/YYYY"), ".,.");
        row("same symbols end, even both commas", es, "dd/MM/yyyy", "/,,,", 0, false,
            kRefused.arg("separadores de miles y de decimales el mismo simbolo (,)",
                         "simbolos diferentes"),
            ",,,");
        row("dot decimal, OK changes number and currency", es, "dd/MM/yyyy", "/.,.", Msg::Ok, true,
            kQuestion, ",.,");
        row("dot decimal, Cancel ends and changes nothing", es, "dd/MM/yyyy", "/.,.", Msg::Cancel,
            false, kQuestion, ".,.");
        row("dot currency decimal alone asks too", es, "dd/MM/yyyy", "/,..", Msg::Ok, true,
            kQuestion, ",.,");
    }
    void guard()
    {
        QFETCH(QString, language);
        QFETCH(QString, shortDate);
        QFETCH(QString, symbols);
        QFETCH(int, answer);
        QFETCH(bool, goesOn);
        QFETCH(QString, message);
        QFETCH(QString, after);
        Regional::set(Regional::SLanguage, language);
        Regional::set(Regional::SShortDate, shortDate);
        Regional::set(Regional::SDate, symbols.mid(0, 1));
        Regional::set(Regional::SDecimal, symbols.mid(1, 1));
        Regional::set(Regional::SThousand, symbols.mid(2, 1));
        Regional::set(Regional::SMonDecimalSep, symbols.mid(3, 1));
        Regional::set(Regional::SMonThousandSep, symbols.mid(2, 1));
        Regional::set(Regional::SList, ",");
        if (answer)
            env->ui().answer("Aceptar = Cambiar", answer);
        gRegionalChanged = false;

        QCOMPARE(CheckRegionalSettings(), goesOn);

        const auto& shown = env->ui().messages();
        QCOMPARE(shown.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QCOMPARE(shown.at(0).text, message);
            QCOMPARE(shown.at(0).style,
                     answer ? Msg::OkCancel + Msg::Exclamation : int(Msg::Information));
            QCOMPARE(shown.at(0).title, answer ? QString("... Atención !") : AppTitle());
        }
        QCOMPARE(gRegionalChanged, answer == Msg::Ok);

        // Written for good: read back from the settings store.
        Regional::reload();
        QCOMPARE(Regional::get(Regional::SList), QString(";"));
        QCOMPARE(Regional::get(Regional::SDecimal) + Regional::get(Regional::SThousand) +
                     Regional::get(Regional::SMonDecimalSep),
                 after);
        if (answer == Msg::Ok)
            QCOMPARE(Regional::get(Regional::SMonThousandSep), QString("."));
        QCOMPARE(Regional::get(Regional::SShortDate), shortDate);
    }

    // A value that cannot be read is a failure of the routine: logged, and
    // the start goes on; the list separator is set all the same.
    void anEmptyValueIsLoggedAndTheStartGoesOn_data()
    {
        QTest::addColumn<int>("item");
        QTest::newRow("language") << int(Regional::SLanguage);
        QTest::newRow("date separator") << int(Regional::SDate);
        QTest::newRow("decimal") << int(Regional::SDecimal);
    }
    void anEmptyValueIsLoggedAndTheStartGoesOn()
    {
        QFETCH(int, item);
        Regional::set(Regional::SList, ",");
        Regional::set(Regional::SThousand, ","); // would be refused if it got that far
        Regional::set(Regional::Item(item), "");
        QVERIFY(CheckRegionalSettings());
        QVERIFY(env->ui().messages().isEmpty());
        QCOMPARE(Regional::get(Regional::SList), QString(";"));
        QVERIFY(QString::fromUtf8(ReadBytes(ErrorLogPath())).contains("CONFIGURACION_REG\n5\n"));
    }
};

QTEST_GUILESS_MAIN(TstRegional)
#include "tst_regional.moc"
