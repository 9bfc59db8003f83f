#include <QtTest>

#include "Controller.h"
#include "Globals.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kPadron = QStringLiteral("0000000000001 - Objeto N° 0000000000002");
// The code of May 2021 of that premises, without its final letter: padrón,
// month, year, objeto.
const QString kCode = QStringLiteral("0000000000001") + "052021" + "0000000000002";

enum Filter { Decimal, Rate, Letter };

// Rows numbered from 1 in their first cell.
void fillGrid(Field& grid, int rows)
{
    grid.setHeader({QStringLiteral("A"), QStringLiteral("B")});
    for (int i = 1; i <= rows; ++i)
        grid.addRow({QString::number(i), QString()});
}

} // namespace

Q_DECLARE_METATYPE(Filter)

// The general routines: amounts as the person reads them, CUIT checks, key
// filters, grid trimming and the rectification date against the tables.
class TstUtil : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
    }
    void cleanup() { env.reset(); }

    void amounts_data()
    {
        // clang-format off
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("formatted");
        QTest::addColumn<QString>("sql");
        QTest::newRow("thousands") << "1234,5" << "1.234,50" << "1234.50";
        QTest::newRow("millions, negative") << "-1234567,891" << "-1.234.567,89" << "-1234567.89";
        QTest::newRow("already formatted") << "1.234,50" << "1.234,50" << "1234.50";
        QTest::newRow("half up on the decimal value") << "1,005" << "1,01" << "1.01";
        QTest::newRow("2,675 is not 2,67") << "2,675" << "2,68" << "2.68";
        QTest::newRow("negative half away from zero") << "-0,125" << "-0,13" << "-0.13";
        QTest::newRow("tiny negative is zero") << "-0,001" << "0,00" << "0.00";
        QTest::newRow("blanks around") << " 7 " << "7,00" << "7.00";
        QTest::newRow("not a figure") << "abc" << "abc" << "abc";
        QTest::newRow("empty") << "" << "" << "";
        // clang-format on
    }
    void amounts()
    {
        QFETCH(QString, text);
        QFETCH(QString, formatted);
        QFETCH(QString, sql);
        QCOMPARE(FormatAmount(text), formatted);
        QCOMPARE(AmountToSqlText(text), sql);
    }

    void textHelpers()
    {
        QCOMPARE(ZeroIfEmpty(""), QString("0,00"));
        QCOMPARE(ZeroIfEmpty("12"), QString("12"));
        QCOMPARE(ZeroIfEmpty(" "), QString(" "));
        QCOMPARE(NullToText(QVariant()), QString());
        QCOMPARE(NullToText(QVariant(1.5)), QString("1,5"));
        QCOMPARE(TextToDouble("1.234,5"), 1234.5);
        QCOMPARE(TextToDouble("12x"), 0.0);
        QCOMPARE(DigitsOnly(" 20-12.345,678/6 "), QString("20123456786"));
        QCOMPARE(NormalizeAmount("1234.5"), QString("1234,50"));
        QCOMPARE(NormalizeAmount("1,234.5"), QString("1234,50"));
        QCOMPARE(NormalizeAmount("0.6"), QString("0,60"));
        QCOMPARE(FormatCuit("20123456786"), QString("20-12345678-6"));
    }

    // The application's own regional symbols rule, whatever the machine's.
    void amountsFollowTheRegionalSettings()
    {
        Regional::set(Regional::SDecimal, ".");
        Regional::set(Regional::SThousand, ",");
        QCOMPARE(GetDecimalSymbol(), QString("."));
        QCOMPARE(FormatAmount("1234.5"), QString("1,234.50"));
        QCOMPARE(AmountToSqlText("1,234.5"), QString("1234.50"));
        QCOMPARE(ZeroIfEmpty(""), QString("0.00"));
        int key = ',';
        FilterDecimalKey(key, true);
        QCOMPARE(key, 0);
        QCOMPARE(gDecimalSymbol, QString("."));
    }

    void isValidCuit_data()
    {
        // clang-format off
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QString>("after");
        QTest::newRow("right check digit") << "20-12345678-6" << true << "20123456786";
        QTest::newRow("wrong check digit") << "20-12345678-9" << false << "20123456789";
        QTest::newRow("company") << "30500010912" << true << "30500010912";
        QTest::newRow("short figure passes") << "123" << true << "123";
        QTest::newRow("ten digits pass") << "20-12345678-" << true << "2012345678";
        QTest::newRow("letters") << "abc" << false << "abc";
        // clang-format on
    }
    void isValidCuit()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QFETCH(QString, after);
        QCOMPARE(IsValidCuit(text), valid);
        QCOMPARE(text, after);
    }

    void validateCuitField_data()
    {
        // clang-format off
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("answer"); // 0: no question expected
        QTest::addColumn<bool>("passes");
        QTest::addColumn<QString>("message");
        QTest::newRow("right") << "20123456786" << true << 0 << true << "";
        QTest::newRow("too short") << "2012345678" << true << 0 << false
                                   << "Número de CUIT incorrecto";
        QTest::newRow("blank") << "" << true << 0 << false << "Número de CUIT incorrecto";
        QTest::newRow("disabled") << "" << false << 0 << true << "";
        QTest::newRow("wrong, go on") << "20123456789" << true << int(Msg::Yes) << true
                                      << "Número de CUIT incorrecto, desea continuar?";
        QTest::newRow("wrong, stop") << "20123456789" << true << int(Msg::No) << false
                                     << "Número de CUIT incorrecto, desea continuar?";
        // clang-format on
    }
    void validateCuitField()
    {
        QFETCH(int, answer);
        QFETCH(bool, passes);
        QFETCH(QString, message);
        QFETCH(QString, text);
        QFETCH(bool, enabled);
        Field cuit("txtCuit", FieldKind::Text);
        cuit.setMask("##-########-#");
        cuit.setText(text);
        cuit.setEnabled(enabled);
        if (answer)
            env->ui().answer("desea continuar", answer);

        QCOMPARE(ValidateCuitField(cuit), passes);
        QCOMPARE(env->ui().lastText(), message);
        if (answer) {
            QCOMPARE(env->ui().messages().last().title, QString("Atención !"));
            QCOMPARE(env->ui().messages().last().style, int(Msg::YesNo));
        } else if (!message.isEmpty()) {
            QCOMPARE(env->ui().messages().last().style, int(Msg::Exclamation));
        }
        QCOMPARE(cuit.selLength(), passes ? 0 : 13);
        VERIFY_UI_CLEAN(*env);
    }

    void keyFilters_data()
    {
        // clang-format off
        QTest::addColumn<Filter>("filter");
        QTest::addColumn<bool>("flag");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("result");
        QTest::newRow("digit") << Decimal << false << int('5') << int('5');
        QTest::newRow("backspace") << Decimal << false << 8 << 8;
        QTest::newRow("separator allowed") << Decimal << true << int(',') << int(',');
        QTest::newRow("separator not allowed") << Decimal << false << int(',') << 0;
        QTest::newRow("point is not the separator") << Decimal << true << int('.') << 0;
        QTest::newRow("minus") << Decimal << true << int('-') << 0;
        QTest::newRow("rate 1") << Rate << false << int('1') << int('1');
        QTest::newRow("rate 0") << Rate << false << int('0') << 0;
        QTest::newRow("rate 8") << Rate << false << int('8') << 0;
        QTest::newRow("rate 9") << Rate << false << int('9') << 0;
        QTest::newRow("rate separator") << Rate << true << int(',') << int(',');
        QTest::newRow("lower case to capital") << Letter << false << int('a') << int('A');
        QTest::newRow("blank") << Letter << false << int(' ') << int(' ');
        QTest::newRow("digit without digits") << Letter << false << int('5') << 0;
        QTest::newRow("digit with digits") << Letter << true << int('5') << int('5');
        QTest::newRow("enye with digits") << Letter << true << 0xF1 << 0xD1;
        QTest::newRow("enye without digits") << Letter << false << 0xF1 << 0;
        QTest::newRow("accent") << Letter << true << 0xE1 << 0;
        QTest::newRow("quote") << Letter << true << int('\'') << 0;
        // clang-format on
    }
    void keyFilters()
    {
        QFETCH(Filter, filter);
        QFETCH(bool, flag);
        QFETCH(int, key);
        QFETCH(int, result);
        gDecimalSymbol = "x";
        if (filter == Decimal)
            FilterDecimalKey(key, flag);
        else if (filter == Rate)
            FilterRateKey(key, flag);
        else
            FilterLetterKey(key, flag);
        QCOMPARE(key, result);
        if (filter != Letter)
            QCOMPARE(gDecimalSymbol, QString(","));
    }

    void findComboIndex()
    {
        Field combo("cbo", FieldKind::Combo);
        for (const char* item : {"0,60", "1,20", "0,60", "2,00"})
            combo.addItem(item);
        QCOMPARE(FindComboIndex(combo, "0,60"), 2);
        QCOMPARE(FindComboIndex(combo, "2,00"), 3);
        QCOMPARE(FindComboIndex(combo, "9,99"), 0);
    }

    void trimGridRows_data()
    {
        // clang-format off
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("after");
        QTest::newRow("kind 1") << 4 << 3 << 1 << 3;
        QTest::newRow("kind 1, one row") << 4 << 1 << 1 << 2;
        QTest::newRow("kind 2") << 5 << 2 << 2 << 2;
        QTest::newRow("kind 2, one row") << 5 << 1 << 2 << 0;
        QTest::newRow("kind 3 below 4") << 6 << 3 << 3 << 3;
        QTest::newRow("kind 3 from 4") << 8 << 5 << 3 << 2;
        QTest::newRow("other kind, one row") << 3 << 1 << 0 << 2;
        QTest::newRow("never below empty") << 1 << 1 << 1 << 0;
        // clang-format on
    }
    void trimGridRows()
    {
        QFETCH(int, before);
        QFETCH(int, after);
        QFETCH(int, rows);
        QFETCH(int, kind);
        Field g("grid", FieldKind::Grid);
        fillGrid(g, before);
        TrimGridRows(g, rows, kind);
        QCOMPARE(g.rowCount(), after);
        if (after > 0) // the first rows go, the last ones stay
            QCOMPARE(g.cell(after - 1, 0), QString::number(before));
    }

    void removeAdjustmentRows()
    {
        Field list("lvw", FieldKind::Grid);
        list.setHeader({"Fecha", "Tipo", "Importe"});
        list.setRows({{"01-05-2021", "FA", "10,00"},
                      {"01-05-2021", "AJUSTE", "0,01"},
                      {"AJUSTE", "FA", "5,00"},
                      {"02-05-2021", "NC", "AJUSTE"}});
        RemoveAdjustmentRows(list);
        QCOMPARE(list.rowCount(), 2);
        QCOMPARE(list.cell(0, 2), QString("10,00"));
        QCOMPARE(list.cell(1, 0), QString("AJUSTE")); // the first column is no sub-item
    }

    void validateRectificationDate_data()
    {
        // clang-format off
        QTest::addColumn<QString>("parameters");
        QTest::addColumn<QString>("date");
        QTest::addColumn<bool>("passes");
        const QString withCode = "Padron=" + kPadron + ";Anio=2021;Periodo=05;Formulario=F976;"
                                 "Nuevo=Verdadero;Codigo=" + kCode + "R;";
        const QString noCode = "Padron=" + kPadron + ";Anio=2021;Periodo=05;Formulario=F976;"
                               "Nuevo=True;Codigo=;";
        const QString longPeriod = "Padron=" + kPadron + ";Periodo=05-2021;Formulario=F976;"
                                   "Nuevo=Verdadero;Codigo=XYZ;";
        const QString notNew = "Padron=" + kPadron + ";Anio=2021;Periodo=05;Formulario=F976;"
                               "Nuevo=Falso;Codigo=" + kCode + "O;";
        const QString otherPeriod = "Padron=" + kPadron + ";Anio=2021;Periodo=06;Formulario=F976;"
                                    "Nuevo=Verdadero;Codigo=;";
        // The latest stored rectification of May 2021 is 10-05-2021.
        QTest::newRow("next day") << withCode << "11-05-2021" << true;
        QTest::newRow("same day") << withCode << "10-05-2021" << false;
        QTest::newRow("earlier month, later day") << withCode << "30-04-2021" << false;
        QTest::newRow("later month, earlier day") << withCode << "01-06-2021" << true;
        QTest::newRow("later year, earlier month") << withCode << "01-01-2022" << true;
        QTest::newRow("earlier year, later month") << withCode << "31-12-2020" << false;
        QTest::newRow("slashes") << withCode << "11/05/2021" << true;
        QTest::newRow("blank mask") << withCode << "__-__-____" << true;
        QTest::newRow("an original's 0") << withCode << "0" << false;
        QTest::newRow("code rebuilt from the period") << noCode << "09-05-2021" << false;
        QTest::newRow("code rebuilt from mm-yyyy") << longPeriod << "09-05-2021" << false;
        QTest::newRow("not a new declaration") << notNew << "09-05-2021" << true;
        QTest::newRow("nothing stored") << otherPeriod << "09-05-2021" << true;
        QTest::newRow("0 with nothing stored") << otherPeriod << "0" << true;
        // clang-format on
    }
    void validateRectificationDate()
    {
        QFETCH(QString, parameters);
        QFETCH(QString, date);
        QFETCH(bool, passes);
        ZoAccess& db = gAccess();
        db.Execute("CREATE TABLE F976 (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), "
                   "Padron TEXT(50), Periodo TEXT(50), FechaRectificativa TEXT(50))");
        for (const char* row : {"O', '0", "R', '09-05-2021", "R', '10-05-2021"})
            db.Execute("INSERT INTO F976 (Codigo, FechaRectificativa) VALUES ('" + kCode + row +
                       "')");
        db.Execute("INSERT INTO F976 (Codigo, FechaRectificativa) VALUES ('" + kCode.left(13) +
                   "062020" + kCode.right(13) + "R', '01-01-2030')");

        QCOMPARE(ValidateRectificationDate(parameters, date), passes);
        if (passes) {
            QVERIFY(env->ui().messages().isEmpty());
        } else {
            QCOMPARE(env->ui().lastText(), QString("La fecha de Rectificativa debe ser mayor a la "
                                                   "del formulario a rectificar."));
            QCOMPARE(env->ui().messages().last().style, int(Msg::Information));
        }
    }

    void taxpayerLookups()
    {
        ZoAccess& db = gAccess();
        db.Execute("CREATE TABLE Contribuyentes (idContribuyente Counter NOT NULL PRIMARY KEY, "
                   "Cuit TEXT(50), ApellidoNombre TEXT(100))");
        db.Execute("CREATE TABLE tPadronesComerciales (cuit TEXT(50), padron TEXT(50), "
                   "objeto TEXT(50))");
        db.Execute("CREATE TABLE TPadrones_Formularios (Id Counter NOT NULL PRIMARY KEY, "
                   "Padron TEXT(50), Objeto TEXT(50), Periodo TEXT(50), idFormulario TEXT(50))");
        db.Execute("INSERT INTO Contribuyentes (Cuit, ApellidoNombre) VALUES "
                   "('20-12345678-6', 'PEREZ JUAN'), ('30-50001091-2', 'LA ROSA SA'), "
                   "('20-O''NEIL-1', 'O''NEIL')");
        db.Execute("INSERT INTO tPadronesComerciales VALUES ('20123456786', 'P1', 'O1'), "
                   "('20123456786', 'P2', 'O2'), ('30500010912', 'P3', 'O3')");
        db.Execute("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, idFormulario) "
                   "VALUES ('P2', 'O2', '05-2021', 'F976'), ('P3', 'O1', '05-2021', 'F976')");

        QVERIFY(ContribuyenteHasForms("1"));  // its second premises has a declaration
        QVERIFY(!ContribuyenteHasForms("2")); // padrón and objeto must both agree
        QVERIFY(!ContribuyenteHasForms("9"));
        QVERIFY(!CuitIsFree("20-12345678-6"));
        QVERIFY(CuitIsFree("20-00000000-1"));
        QVERIFY(!CuitIsFree("20-O'NEIL-1")); // a quote cannot break the statement
    }

    void isNodeOfFormPresent()
    {
        Field tree("trvDatos", FieldKind::Tree);
        tree.tree().add("", "Padron=" + kPadron + ";", "premises");
        tree.tree().add("Padron=" + kPadron + ";",
                        "Padron=" + kPadron + ";Anio=2021;Periodo=05;Formulario=F977;Nuevo=Falso;",
                        "F977");
        const QString period = "Padron=" + kPadron + ";Anio=2021;Periodo=05;";
        QVERIFY(IsNodeOfFormPresent(period + "Formulario=F977;", tree));
        QVERIFY(!IsNodeOfFormPresent(period + "Formulario=F976;", tree));
        QVERIFY(!IsNodeOfFormPresent(period, tree)); // the forms differ: none against F977
        QVERIFY(!IsNodeOfFormPresent("Anio=2022;", tree));
    }

    void newShortGuid()
    {
        const QString a = NewShortGuid();
        QVERIFY2(QRegularExpression("^[0-9A-F]{12}$").match(a).hasMatch(), qPrintable(a));
        QVERIFY(NewShortGuid() != a);
    }
};

QTEST_GUILESS_MAIN(TstUtil)
#include "tst_util.moc"
