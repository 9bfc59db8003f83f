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
        // symbols: date, decimal, thousands, currency decimal; answer: to the question; 0: none
        // asked; message: the one message shown, or ""; after: decimal, thousands, currency decimal
        Columns<QString, QString, QString, int, bool, QString, QString>(
            "language", "shortDate", "symbols", "answer", "goesOn", "message", "after");
        const QString es = "Español (Argentina)";
        Row("Spanish with slashes passes", es, "dd/MM/yyyy", "/,.,", 0, true, "", ",.,");
        Row("first-start values pass", es, "dd-MM-yyyy", "-,.,", 0, true, "", ",.,");
        Row("English passes the language test", "English (United States)", "dd/MM/yyyy", "/,.,", 0,
            true, "", ",.,");
        Row("language compared in capitals", "español", "dd-mm-yyyy", "-,.,", 0, true, "", ",.,");
        Row("pattern inside a longer one passes", es, "dddd, dd/MM/yyyy", "/,.,", 0, true, "",
            ",.,");
        Row("blank thousands symbol passes", es, "dd/MM/yyyy", "/, ,", 0, true, "", ", ,");
        Row("other language ends", "Deutsch (Deutschland)", "dd.MM.yyyy", ".,.,", 0, false,
            kRefused.arg("idioma: Deutsch (Deutschland)", "Español"), ",.,");
        Row("US date ends", "English (United States)", "M/d/yyyy", "/.,.", 0, false,
            kRefused.arg("fecha: M/d/yyyy", "DD/MM/YYYY"), ".,.");
        Row("same symbols end, even both commas", es, "dd/MM/yyyy", "/,,,", 0, false,
            kRefused.arg("separadores de miles y de decimales el mismo simbolo (,)",
                         "simbolos diferentes"),
            ",,,");
        Row("dot decimal, OK changes number and currency", es, "dd/MM/yyyy", "/.,.", Msg::Ok, true,
            kQuestion, ",.,");
        Row("dot decimal, Cancel ends and changes nothing", es, "dd/MM/yyyy", "/.,.", Msg::Cancel,
            false, kQuestion, ".,.");
        Row("dot currency decimal alone asks too", es, "dd/MM/yyyy", "/,..", Msg::Ok, true,
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
        Row("language", int(Regional::SLanguage));
        Row("date separator", int(Regional::SDate));
        Row("decimal", int(Regional::SDecimal));
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
