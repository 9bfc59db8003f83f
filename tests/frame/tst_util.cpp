#include <QtTest>

#include "Controller.h"
#include "Globals.h"
#include "RegionalSettings.h"
#include "Seed.h"
#include "TestSupport.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kPadron = QStringLiteral("0000000000001 - Objeto N° 0000000000002");
// The code of May 2021 of that premises, without its final letter: padrón,
// month, year, objeto.
const QString kCode = QStringLiteral("0000000000001") + "052021" + "0000000000002";

} // namespace

// The general routines: amounts as the person reads them, the rectification
// date against the tables, the taxpayer lookups.
class TstUtil : public EnvTest
{
    Q_OBJECT
public:
    TstUtil() : EnvTest(false) {}

private slots:
    void amounts_data()
    {
        Columns<QString, QString, QString>("text", "formatted", "sql");
        Row("thousands", "1234,5", "1.234,50", "1234.50");
        Row("millions, negative", "-1234567,891", "-1.234.567,89", "-1234567.89");
        Row("already formatted", "1.234,50", "1.234,50", "1234.50");
        Row("half up on the decimal value", "1,005", "1,01", "1.01");
        Row("2,675 is not 2,67", "2,675", "2,68", "2.68");
        Row("negative half away from zero", "-0,125", "-0,13", "-0.13");
        Row("tiny negative is zero", "-0,001", "0,00", "0.00");
        Row("blanks around", " 7 ", "7,00", "7.00");
        Row("not a figure", "abc", "abc", "abc");
        Row("empty", "", "", "");
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

    // A CUIT is written with its dashes whatever its length, and checked by
    // its digits' sum: eleven digits, dashed or not, and any other writing.
    void cuitWritingAndCheck_data()
    {
        Columns<QString, QString, bool>("text", "written", "valid");
        Row("eleven digits", "20123456786", "20-12345678-6", true);
        Row("a wrong check digit", "20123456787", "20-12345678-7", false);
        Row("all zeros", "00000000000", "00-00000000-0", true);
        Row("dashed", "20-12345678-6", "20--1234567-6", true);
        Row("short", "201", "20-1-1", true);
        Row("two digits", "20", "20--0", true);
        Row("one digit", "2", "2--2", true);
        Row("empty", "", "--", false);
        Row("letters", "2012345678X", "20-12345678-X", false);
        Row("eleven digits with a space", "2012345678 6", "20-12345678-6", false);
        Row("wide digits", "２０123456786", "２０-12345678-6", false);
    }
    void cuitWritingAndCheck()
    {
        QFETCH(QString, text);
        QFETCH(QString, written);
        QFETCH(bool, valid);
        QCOMPARE(FormatCuit(text), written);
        QString checked = text;
        QCOMPARE(IsValidCuit(checked), valid);
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
    }

    void validateRectificationDate_data()
    {
        Columns<QString, QString, bool>("parameters", "date", "passes");
        const QString withCode = "Padron=" + kPadron +
                                 ";Anio=2021;Periodo=05;Formulario=F976;"
                                 "Nuevo=Verdadero;Codigo=" +
                                 kCode + "R;";
        const QString noCode = "Padron=" + kPadron +
                               ";Anio=2021;Periodo=05;Formulario=F976;"
                               "Nuevo=True;Codigo=;";
        const QString longPeriod = "Padron=" + kPadron +
                                   ";Periodo=05-2021;Formulario=F976;"
                                   "Nuevo=Verdadero;Codigo=XYZ;";
        const QString notNew = "Padron=" + kPadron +
                               ";Anio=2021;Periodo=05;Formulario=F976;"
                               "Nuevo=Falso;Codigo=" +
                               kCode + "O;";
        const QString otherPeriod = "Padron=" + kPadron +
                                    ";Anio=2021;Periodo=06;Formulario=F976;"
                                    "Nuevo=Verdadero;Codigo=;";
        // The latest stored rectification of May 2021 is 10-05-2021.
        Row("next day", withCode, "11-05-2021", true);
        Row("same day", withCode, "10-05-2021", false);
        Row("earlier month, later day", withCode, "30-04-2021", false);
        Row("later month, earlier day", withCode, "01-06-2021", true);
        Row("later year, earlier month", withCode, "01-01-2022", true);
        Row("earlier year, later month", withCode, "31-12-2020", false);
        Row("slashes", withCode, "11/05/2021", true);
        Row("blank mask", withCode, "__-__-____", true);
        Row("an original's 0", withCode, "0", false);
        Row("code rebuilt from the period", noCode, "09-05-2021", false);
        Row("code rebuilt from mm-yyyy", longPeriod, "09-05-2021", false);
        Row("not a new declaration", notNew, "09-05-2021", true);
        Row("nothing stored", otherPeriod, "09-05-2021", true);
        Row("0 with nothing stored", otherPeriod, "0", true);
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
        env->createDatabase();
        Seed::AddTaxpayer(1, "PEREZ JUAN", "20-12345678-6");
        Seed::AddTaxpayer(2, "LA ROSA SA", "30-50001091-2");
        Seed::AddTaxpayer(3, "O'NEIL", "20-O'NEIL-1");
        Seed::AddPremises("1", "1");
        Seed::AddPremises("2", "2");
        Seed::AddPremises("3", "3", {"cuit=30500010912"});
        Seed::AddDeclaration({"F976", "05-2021", 0, "0", "2", "2"});
        Seed::AddDeclaration({"F976", "05-2021", 0, "0", "3", "1"});

        QVERIFY(ContribuyenteHasForms("1"));  // its second premises has a declaration
        QVERIFY(!ContribuyenteHasForms("2")); // padrón and objeto must both agree
        QVERIFY(!ContribuyenteHasForms("9"));
        QVERIFY(!CuitIsFree("20-12345678-6"));
        QVERIFY(CuitIsFree("20-00000000-1"));
        QVERIFY(!CuitIsFree("20-O'NEIL-1")); // a quote cannot break the statement
    }
};

QTEST_GUILESS_MAIN(TstUtil)
#include "tst_util.moc"
