#include <QtTest>

#include "Db.h"
#include "ErrorLog.h"
#include "Field.h"
#include "Globals.h"
#include "shell/Inicial.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "database/Upgrade.h"

using namespace Db;

namespace {

QString one(const QString& sql)
{
    return gAccess().GetString(sql);
}

// A database as an older release left it: the installed tables only (no
// agents' annexes, no Act4/Act5, no Orden, no Guidv) holding amounts with "."
// decimals and activity names with ";".
void fillOlderDatabase()
{
    exec("INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, "
         "BaseImponible, Impuesto, Accesorios, Multas, PagoACuenta, Percepciones, Retenciones, "
         "SaldoAFavor, SaldoAFavorF, SubtotalDeterminado, TotalAPagar, Tasa, ctrl) VALUES "
         "('C1', '0000000000001', '0000000000002', '01-2010', 'False', '0', '1,234.50', '44.44', "
         "'0', '0.00', '12.345', NULL, '', '-1,000.5', '1,234.50', '1234567.891', 'abc', '3.6', "
         "'0')");
    exec("INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, "
         "CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES "
         "('C1', '0', '0001', 'A;B', '471110', '1,234.50', '3.6', '44.44', '0')");
    exec("INSERT INTO F2001_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, "
         "CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES "
         "('C2', '0', '0001', 'X;Y;Z', '471120', '100', '2', '2', '0')");
    exec("INSERT INTO F977_Detalle (Codigo, FechaRectificativa, CodigoDetalle, ImportePercibido, "
         "ctrl) VALUES ('C1', '0', '0001', '1,234.50', '0')");
    exec("INSERT INTO tMenores (Codigo) VALUES ('1,234.50')");
    exec("INSERT INTO tActividades (idTActividad, Nombre) VALUES (999998, 'A;B')");
}

void buildOlderDatabase()
{
    QVERIFY(EnsureBaseSchema());
    fillOlderDatabase();
}

void upgrade(Inicial& splash)
{
    VerifyDatabase(DatabasePath(), splash);
    ApplyUpgrades(splash);
    UpgradeAddGuidColumns();
}

// Watches the splash's bar for a value beyond its maximum or going back.
struct BarWatch {
    Field& pb;
    bool beyond = false;
    int changes = 0;
    explicit BarWatch(Inicial& splash) : pb(splash.field("pb"))
    {
        QObject::connect(&pb, &Field::changed, [this](Field*, Field::Aspect) {
            ++changes;
            if (pb.value() > pb.maximum())
                beyond = true;
        });
    }
};

const QString kAlterMessage =
    "Se produjo un error al intentar alterar la Base de Datos.\nLa aplicación se cerrará.";

} // namespace

// Every start brings a database of any older release to the current level:
// new tables and columns, renamed forms, amounts rewritten once from "." to
// "," decimals, no ";" in activity names.
class TstUpgrade : public EnvTest
{
    Q_OBJECT
public:
    TstUpgrade() : EnvTest(false) {}

private slots:
    void commaDecimalFromDotted_data()
    {
        Columns<QString, QString>("stored", "converted");
        Row("groups and decimals", "1,234.50", "1.234,50");
        Row("no groups", "1234.5", "1.234,50");
        Row("whole", "12", "12,00");
        Row("zero", "0", "0,00");
        Row("millions", "1000000", "1.000.000,00");
        Row("negative", "-1,000.5", "-1.000,50");
        Row("half away from zero", "0.005", "0,01");
        Row("on its decimal value", "2.675", "2,68");
        Row("no negative zero", "-0.001", "0,00");
        Row("blanks around", " 7.5 ", "7,50");
        Row("empty stays", "", "");
        Row("text stays", "abc", "abc");
        Row("two dots is no number", "1.2.3", "1.2.3");
        // Why the conversion must run once: a converted amount read again.
        Row("converted twice is damaged", "1.234,50", "1,23");
    }
    void commaDecimalFromDotted()
    {
        QFETCH(QString, stored);
        QFETCH(QString, converted);
        QCOMPARE(CommaDecimalFromDotted(stored), converted);
    }

    // One amount of each kind of table, written by an older release, read
    // back after a start.
    void amountsOfEveryTable_data()
    {
        Columns<QString, QString, QString, QString>("table", "column", "stored", "expected");
        Row("F976 base", "F976", "BaseImponible", "1,234.50", "1.234,50");
        Row("F976 rate", "F976", "Tasa", "3.6", "3,60");
        Row("F976 SaldoAFavorF left out", "F976", "SaldoAFavorF", "1,234.50", "1,234.50");
        Row("F976 key untouched", "F976", "Codigo", "1.5", "1.5");
        Row("F2001", "F2001", "Desgrabaciones", "1000", "1.000,00");
        Row("F2001_Detalle", "F2001_Detalle", "BaseImponible", "0.005", "0,01");
        Row("F976_Detalle rate", "F976_Detalle", "Alicuota", "0.43", "0,43");
        Row("F976_Detalle tax", "F976_Detalle", "Impuesto", "44.444", "44,44");
        Row("F976_Detalle ctrl untouched", "F976_Detalle", "ctrl", "1.5", "1.5");
        Row("F977", "F977", "Transporte", "2,000", "2.000,00");
        Row("F977_Detalle", "F977_Detalle", "ImportePercibido", "1,234.50", "1.234,50");
        Row("F977 report", "F977_DETALLE_REPORTE", "IMPORTEPERCIBIDO", "7.5", "7,50");
        Row("F978", "F978", "TotalPercepciones", "99.999", "100,00");
        Row("F985", "F985", "TotalPercepciones", "5.5", "5,50");
        Row("F985_Detalle", "F985_Detalle", "ImportePercibido", "5.5", "5,50");
        Row("F986", "F986", "ImpPercibidoF985", "12.34", "12,34");
        Row("F986 name untouched", "F986", "RazonSocial", "S.A.", "S.A.");
        Row("F987", "F987", "Transporte", "1,000,000", "1.000.000,00");
        Row("F987_Detalle", "F987_Detalle", "ImportePercibido", "0.1", "0,10");
        Row("F988", "F988", "ImporteDepositar", "99.99", "99,99");
        Row("tMenores", "tMenores", "Codigo", "1,500.00", "1.500,00");
    }
    void amountsOfEveryTable()
    {
        QFETCH(QString, table);
        QFETCH(QString, column);
        QFETCH(QString, stored);
        QFETCH(QString, expected);
        QVERIFY(EnsureBaseSchema());
        Inicial splash;
        VerifyDatabase(DatabasePath(), splash); // makes the agents' tables
        exec("INSERT INTO " + table + " (" + column + ") VALUES ('" + stored + "')");
        ApplyUpgrades(splash);
        QCOMPARE(one("SELECT " + column + " FROM " + table), expected);
    }

    void olderDatabaseReachesTheCurrentLevel()
    {
        buildOlderDatabase();
        QCOMPARE(columns("Actividades_x_padrones").size(), 11);
        QVERIFY(!tables().contains("F985"));

        Inicial splash;
        upgrade(splash);

        // Amounts rewritten; Null, empty and text left alone.
        QCOMPARE(Db::rows("SELECT BaseImponible, Impuesto, Accesorios, PagoACuenta, SaldoAFavor, "
                          "SaldoAFavorF, SubtotalDeterminado, TotalAPagar, Percepciones, "
                          "Retenciones FROM F976 WHERE Codigo = 'C1'"),
                 QStringList{"1.234,50|44,44|0,00|12,35|-1.000,50|1,234.50|1.234.567,89|abc|"
                             "<null>|"});
        QCOMPARE(one("SELECT BaseImponible & '|' & Alicuota & '|' & Impuesto FROM F976_Detalle"),
                 QString("1.234,50|3,60|44,44"));
        QCOMPARE(one("SELECT ImportePercibido FROM F977_Detalle"), QString("1.234,50"));
        QCOMPARE(one("SELECT Codigo FROM tMenores"), QString("1.234,50"));

        // No ";" left in activity names.
        QCOMPARE(one("SELECT Nombre FROM tActividades WHERE idTActividad = 999998"),
                 QString("A,B"));
        QCOMPARE(one("SELECT TipoActividad FROM F976_Detalle"), QString("A,B"));
        QCOMPARE(one("SELECT TipoActividad FROM F2001_Detalle"), QString("X,Y,Z"));

        // New tables and columns.
        for (const char* t :
             {"F985", "F985_Detalle", "F985_DETALLE_REPORTE", "F987", "F987_Detalle",
              "F987_DETALLE_REPORTE", "Configuracion_Regional", "F978_DETALLE_REPORTE"})
            QVERIFY2(tables().contains(t), t);
        QCOMPARE(columns("Actividades_x_padrones").size(), 15);
        QVERIFY(columns("Actividades_x_padrones").endsWith("Act5_Desc"));
        for (const char* c : {"Principal", "Suscriptor", "Caracter"})
            QVERIFY2(columns("tPadronesComerciales").contains(c), c);
        for (const char* t : {"F2001", "F976", "F977", "F978", "F985", "F986", "F987", "F988"})
            QVERIFY2(columns(t).last() == "Guidv", t);

        // Forms renamed, added and ordered.
        QCOMPARE(one("SELECT LeyendaNuevo FROM Formularios WHERE idFormulario = 'F977'"),
                 QString("Nuevo - T.I.S.S.H. Anexo Retenciones Deducidas: F977"));
        QCOMPARE(one("SELECT LeyendaGenerado FROM Formularios WHERE idFormulario = 'F978'"),
                 QString("Formulario Generado - T.I.S.S.H. Anexo Percepciones Deducidas: F978"));
        QCOMPARE(one("SELECT COUNT(*) FROM Formularios WHERE Orden IS NOT NULL"), QString("8"));
        QCOMPARE(one("SELECT codigo_formulario FROM tCodigos_Formularios WHERE Id = 8"),
                 QString("0087"));

        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("S"));
        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'GUID'"), QString("S"));
        QVERIFY(env->ui().messages().isEmpty());
    }

    void runningAgainChangesNothing()
    {
        buildOlderDatabase();
        {
            Inicial splash;
            upgrade(splash);
            EnsureIndices();
        }
        const QString first = Db::dump();
        QVERIFY(first.contains("1.234,50"));
        QFile::remove(ErrorLogPath());

        CreateCurrentDatabase();
        {
            Inicial splash;
            upgrade(splash);
        }
        QCOMPARE(Db::dump(), first);
        QVERIFY(env->ui().messages().isEmpty());
        // A current database passes every guard: no statement failed.
        QVERIFY2(!QFile::exists(ErrorLogPath()), qPrintable(ErrorLogPath()));
    }

    void splashBarFillsAndNeverPassesItsMaximum()
    {
        buildOlderDatabase();
        Inicial splash;
        BarWatch watch(splash);
        VerifyDatabase(DatabasePath(), splash);
        QCOMPARE(watch.pb.maximum(), 24);
        QCOMPARE(watch.pb.value(), 24);
        QVERIFY(watch.pb.visible());
        QVERIFY(splash.field("lbl").visible());

        // One step per row of the converted tables, from 2.
        exec("INSERT INTO F988 (ImporteDepositar) VALUES ('1.5')");
        const int rows = 6; // F976, F976_Detalle, F2001_Detalle, F977_Detalle, tMenores, F988
        ApplyUpgrades(splash);
        QCOMPARE(watch.pb.maximum(), rows);
        QCOMPARE(watch.pb.value(), rows);
        QVERIFY(!watch.beyond);
    }

    // Installed tables without a row: the bar stays in range, the activities
    // get their new columns, a name (with a quote) loses its ";".
    void anEmptyOlderDatabase()
    {
        QVERIFY(EnsureBaseSchema());
        exec("INSERT INTO tActividades (idTActividad, Nombre) VALUES (999997, 'O''Higgins;Sur')");
        Inicial splash;
        BarWatch watch(splash);
        VerifyDatabase(DatabasePath(), splash);
        ApplyUpgrades(splash);
        QCOMPARE(watch.pb.maximum(), 0);
        QCOMPARE(watch.pb.value(), 0);
        QVERIFY(!watch.beyond);
        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("S"));
        QCOMPARE(columns("Actividades_x_padrones").size(), 15);
        QCOMPARE(one("SELECT Nombre FROM tActividades WHERE idTActividad = 999997"),
                 QString("O'Higgins,Sur"));
        QVERIFY(env->ui().messages().isEmpty());
    }

    void convertedOnceSkipsTheConversion()
    {
        buildOlderDatabase();
        exec("INSERT INTO Opciones (Nombre, Valor) VALUES ('PuntoPorComa', 'S')");
        Inicial splash;
        VerifyDatabase(DatabasePath(), splash);
        Field& pb = splash.field("pb");
        pb.setValue(7);
        ApplyUpgrades(splash);
        QCOMPARE(pb.maximum(), 24);
        QCOMPARE(pb.value(), 7);
        QCOMPARE(one("SELECT BaseImponible FROM F976"), QString("1,234.50"));
        QCOMPARE(one("SELECT COUNT(*) FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("1"));
    }

    // A failure half way converts nothing and leaves the flag unset; the next
    // start converts everything once.
    void aFailureHalfWayConvertsNothing()
    {
        buildOlderDatabase();
        exec("INSERT INTO F978_Detalle (ImportePercibido) VALUES ('2.5')");
        if (TestEnv::onServer()) {
            exec("CREATE FUNCTION locked() RETURNS trigger LANGUAGE plpgsql AS "
                 "$$ BEGIN RAISE EXCEPTION 'locked'; END $$");
            exec("CREATE TRIGGER locked BEFORE UPDATE ON F978_Detalle FOR EACH ROW "
                 "EXECUTE FUNCTION locked()");
        } else {
            exec("CREATE TRIGGER locked BEFORE UPDATE ON F978_Detalle BEGIN "
                 "SELECT RAISE(ABORT, 'locked'); END");
        }
        Inicial splash;
        VerifyDatabase(DatabasePath(), splash);
        ApplyUpgrades(splash);
        QCOMPARE(one("SELECT BaseImponible FROM F976"), QString("1,234.50"));
        QCOMPARE(one("SELECT Codigo FROM tMenores"), QString("1,234.50"));
        QCOMPARE(one("SELECT ImportePercibido FROM F978_Detalle"), QString("2.5"));
        QCOMPARE(one("SELECT COUNT(*) FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("0"));
        QVERIFY(QFile::exists(ErrorLogPath()));

        exec(TestEnv::onServer() ? "DROP TRIGGER locked ON F978_Detalle" : "DROP TRIGGER locked");
        ApplyUpgrades(splash);
        ApplyUpgrades(splash);
        QCOMPARE(one("SELECT BaseImponible FROM F976"), QString("1.234,50"));
        QCOMPARE(one("SELECT ImportePercibido FROM F978_Detalle"), QString("2,50"));
        QCOMPARE(one("SELECT COUNT(*) FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("1"));
    }

    // What an old database lacks does not stop the conversion of the rest.
    void missingTablesAndColumnsDoNotStopTheRest()
    {
        buildOlderDatabase();
        exec("DROP TABLE F2001");    // first of the list
        exec("DROP TABLE tMenores"); // last of the list
        exec("ALTER TABLE F976 DROP COLUMN Tasa");
        Inicial splash;
        BarWatch watch(splash);
        upgrade(splash);
        QCOMPARE(one("SELECT BaseImponible FROM F976"), QString("1.234,50"));
        QCOMPARE(one("SELECT ImportePercibido FROM F977_Detalle"), QString("1.234,50"));
        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("S"));
        QVERIFY(!watch.beyond);
        QVERIFY(env->ui().messages().isEmpty());
    }

    // When the activities cannot be given their two new columns the message
    // is shown once, and the start carries on with the rest.
    void activitiesThatCannotBeAlteredAreReported()
    {
        buildOlderDatabase();
        exec("DROP TABLE Actividades_x_padrones");
        exec("CREATE VIEW Actividades_x_padrones AS SELECT cuit, padron, objeto, regimen AS ActP, "
             "grupo AS ActP_Desc, categoria AS Act1, razon_social AS Act1_Desc, "
             "nombre_fantasia AS Act2, percepcion AS Act2_Desc, retencion AS Act3, "
             "cp AS Act3_Desc FROM tPadronesComerciales");
        Inicial splash;
        VerifyDatabase(DatabasePath(), splash);
        QCOMPARE(env->ui().messages().size(), 1);
        QCOMPARE(env->ui().messages().at(0).text, kAlterMessage);
        QCOMPARE(env->ui().messages().at(0).style, 16);
        QCOMPARE(one("SELECT Nombre FROM tActividades WHERE idTActividad = 999998"),
                 QString("A,B"));
        QCOMPARE(splash.field("pb").value(), 24);
    }
};

QTEST_GUILESS_MAIN(TstUpgrade)
#include "tst_upgrade.moc"
