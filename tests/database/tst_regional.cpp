#include <QtTest>

#include "ErrorLog.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "database/RegionalGuard.h"

namespace {
const QString kQuestion =
    "Se ha detectado que la configuración de su sistema tiene como separadores de decimales el "
    "simbolo (.) Aceptar = Cambiar a simbolo (,) Punto y continuar. 0 Cancelar? ";
} // namespace

// The start refuses settings under which stored amounts and dates would be
// misread, and offers to switch a "." decimal to ",".
class TstRegional : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init() { env = std::make_unique<TestEnv>(); }
    void cleanup()
    {
        VERIFY_UI_CLEAN(*env);
        env.reset();
    }

    void guard_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("shortDate");
        QTest::addColumn<QString>("dateSeparator");
        QTest::addColumn<QString>("decimal");
        QTest::addColumn<QString>("thousands");
        QTest::addColumn<QString>("currencyDecimal");
        QTest::addColumn<int>("answer"); // to the question; 0: none asked
        QTest::addColumn<bool>("goesOn");
        QTest::addColumn<QString>("message"); // the one message shown, or ""
        QTest::addColumn<QString>("symbols"); // decimal, thousands, currency after

        const QString es = "Español (Argentina)";
        QTest::newRow("Spanish with slashes passes") << es << "dd/MM/yyyy"
                                                     << "/"
                                                     << ","
                                                     << "."
                                                     << "," << 0 << true << ""
                                                     << ",.,";
        QTest::newRow("first-start values pass") << es << "dd-MM-yyyy"
                                                 << "-"
                                                 << ","
                                                 << "."
                                                 << "," << 0 << true << ""
                                                 << ",.,";
        QTest::newRow("English passes the language test") << "English (United States)"
                                                          << "dd/MM/yyyy"
                                                          << "/"
                                                          << ","
                                                          << "."
                                                          << "," << 0 << true << ""
                                                          << ",.,";
        QTest::newRow("language compared in capitals") << "español"
                                                       << "dd-mm-yyyy"
                                                       << "-"
                                                       << ","
                                                       << "."
                                                       << "," << 0 << true << ""
                                                       << ",.,";
        QTest::newRow("pattern inside a longer one passes") << es << "dddd, dd/MM/yyyy"
                                                            << "/"
                                                            << ","
                                                            << "."
                                                            << "," << 0 << true << ""
                                                            << ",.,";
        QTest::newRow("blank thousands symbol passes") << es << "dd/MM/yyyy"
                                                       << "/"
                                                       << ","
                                                       << " "
                                                       << "," << 0 << true << ""
                                                       << ", ,";
        QTest::newRow("other language ends")
            << "Deutsch (Deutschland)"
            << "dd.MM.yyyy"
            << "."
            << ","
            << "."
            << "," << 0 << false
            << "Se ha detectado que la configuración de su sistema tiene como idioma: Deutsch "
               "(Deutschland)\nSe recomienda cambiar a Español, de lo contrario no iniciara el "
               "sistema."
            << ",.,";
        QTest::newRow("US date ends")
            << "English (United States)"
            << "M/d/yyyy"
            << "/"
            << "."
            << ","
            << "." << 0 << false
            << "Se ha detectado que la configuración de su sistema tiene como fecha: M/d/yyyy\n"
               "Se recomienda cambiar a DD/MM/YYYY, de lo contrario no iniciara el sistema."
            << ".,.";
        QTest::newRow("same symbols end, even both commas")
            << es << "dd/MM/yyyy"
            << "/"
            << ","
            << ","
            << "," << 0 << false
            << "Se ha detectado que la configuración de su sistema tiene como separadores de "
               "miles y de decimales el mismo simbolo (,)\nSe recomienda cambiar a simbolos "
               "diferentes, de lo contrario no iniciara el sistema."
            << ",,,";
        QTest::newRow("dot decimal, OK changes number and currency")
            << es << "dd/MM/yyyy"
            << "/"
            << "."
            << ","
            << "." << Msg::Ok << true << kQuestion << ",.,";
        QTest::newRow("dot decimal, Cancel ends and changes nothing")
            << es << "dd/MM/yyyy"
            << "/"
            << "."
            << ","
            << "." << Msg::Cancel << false << kQuestion << ".,.";
        QTest::newRow("dot currency decimal alone asks too")
            << es << "dd/MM/yyyy"
            << "/"
            << ","
            << "."
            << "." << Msg::Ok << true << kQuestion << ",.,";
    }
    void guard()
    {
        QFETCH(QString, language);
        QFETCH(QString, shortDate);
        QFETCH(QString, dateSeparator);
        QFETCH(QString, decimal);
        QFETCH(QString, thousands);
        QFETCH(QString, currencyDecimal);
        QFETCH(int, answer);
        QFETCH(bool, goesOn);
        QFETCH(QString, message);
        QFETCH(QString, symbols);

        Regional::set(Regional::SLanguage, language);
        Regional::set(Regional::SShortDate, shortDate);
        Regional::set(Regional::SDate, dateSeparator);
        Regional::set(Regional::SDecimal, decimal);
        Regional::set(Regional::SThousand, thousands);
        Regional::set(Regional::SMonDecimalSep, currencyDecimal);
        Regional::set(Regional::SMonThousandSep, thousands);
        Regional::set(Regional::SList, ",");
        if (answer)
            env->ui().answer("Aceptar = Cambiar", answer);
        gRegionalChanged = false;

        QCOMPARE(CheckRegionalSettings(), goesOn);

        const auto& shown = env->ui().messages();
        if (message.isEmpty()) {
            QVERIFY(shown.isEmpty());
        } else {
            QCOMPARE(shown.size(), 1);
            QCOMPARE(shown.at(0).text, message);
            if (answer) {
                QCOMPARE(shown.at(0).style, Msg::OkCancel + Msg::Exclamation);
                QCOMPARE(shown.at(0).title, QString("... Atención !"));
            } else {
                QCOMPARE(shown.at(0).style, Msg::Information);
                QCOMPARE(shown.at(0).title, AppTitle());
            }
        }
        QCOMPARE(gRegionalChanged, answer == Msg::Ok);

        // Written for good: read back from the settings store.
        Regional::reload();
        QCOMPARE(Regional::get(Regional::SList), QString(";"));
        QCOMPARE(Regional::get(Regional::SDecimal) + Regional::get(Regional::SThousand) +
                     Regional::get(Regional::SMonDecimalSep),
                 symbols);
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
        QFile log(ErrorLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY(text.contains("CONFIGURACION_REG\n5\n"));
    }
};

QTEST_GUILESS_MAIN(TstRegional)
#include "tst_regional.moc"
