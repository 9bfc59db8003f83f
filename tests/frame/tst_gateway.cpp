#include <QtTest>

#include "Controller.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "JetSql.h"
#include "TestSupport.h"
#include "ZoAccess.h"

namespace {
class Scratch : public Controller
{
public:
    Scratch() : Controller("Scratch") {}

protected:
    void design() override
    {
        add("cbo", FieldKind::Combo);
        add("lst", FieldKind::List);
    }
};
} // namespace

// The gateway runs the system's Jet statements on SQLite and keeps the old
// answers for failures, Null and missing rows.
class TstGateway : public EnvTest
{
    Q_OBJECT
    ZoAccess db;

public:
    TstGateway() : EnvTest(false) {}

protected:
    void seed() override
    {
        db = ZoAccess();
        db.Execute("CREATE TABLE t (Id Counter NOT NULL PRIMARY KEY, Nombre TEXT(50), Valor "
                   "TEXT(50), N INTEGER)");
        db.Execute("INSERT INTO t (Nombre, Valor, N) VALUES ('Verdadero', '1,50', 7)");
        db.Execute("INSERT INTO t (Nombre, Valor, N) VALUES ('abc', NULL, 40000)");
        db.Execute("INSERT INTO t (Nombre, Valor, N) VALUES ('12 abc', '', NULL)");
    }

private slots:
    void translation_data()
    {
        Columns<QString, QStringList>("jet", "sqlite");
        Row("delete star", "DELETE * FROM F976 WHERE a = 'x'",
            QStringList{"DELETE  FROM F976 WHERE a = 'x'"});
        Row("top", "SELECT TOP 1 * FROM t ORDER BY Id;",
            QStringList{"SELECT   * FROM t ORDER BY Id LIMIT 1"});
        Row("ampersand outside strings", "SELECT padron & ' - & ' & objeto FROM p",
            QStringList{"SELECT padron || ' - & ' || objeto FROM p"});
        Row("double quotes are text", "SELECT * FROM t WHERE a = \"it's\"",
            QStringList{"SELECT * FROM t WHERE a = 'it''s'"});
        Row("alter column is nothing",
            "ALTER TABLE F977_DETALLE_REPORTE ALTER COLUMN DOMICILIO TEXT(255)", QStringList{});
        Row("several columns", "ALTER TABLE x ADD COLUMN Act4 Text(50), Act4_Desc Text(250)",
            QStringList{"ALTER TABLE x ADD COLUMN Act4 TEXT(50) COLLATE NOCASE",
                        "ALTER TABLE x ADD COLUMN Act4_Desc TEXT(250) COLLATE NOCASE"});
        Row("counter and text",
            "CREATE TABLE F985 (Id Counter NOT NULL PRIMARY KEY,Codigo TEXT(50))",
            QStringList{"CREATE TABLE F985 (Id INTEGER NOT NULL PRIMARY KEY,Codigo TEXT(50) "
                        "COLLATE NOCASE)"});
    }
    void translation()
    {
        QFETCH(QString, jet);
        QFETCH(QStringList, sqlite);
        QCOMPARE(TranslateJetSql(jet).statements, sqlite);
    }

    void jetFunctionsRun_data()
    {
        Columns<QString, QString>("sql", "result");
        Row("mid", "SELECT MID('03-2015', 1, 2)", "03");
        Row("right", "SELECT right('03-2015', 4)", "2015");
        Row("left", "SELECT left('03-2015', 2)", "03");
        Row("len", "SELECT LEN('Ñandú')", "5");
        Row("ucase", "SELECT UCASE('ñandú')", "ÑANDÚ");
        Row("instr", "SELECT INSTR('A;B', ';')", "2");
        Row("instr ignores case", "SELECT INSTR('Deducidas', 'DED')", "1");
        Row("iif", "SELECT IIF(1 = 1, 'si', 'no')", "si");
        Row("text compare without case",
            "SELECT COUNT(1) FROM t WHERE Nombre IN ('VERDADERO','True')", "1");
        Row("like without case", "SELECT Nombre FROM t WHERE Nombre LIKE '%ABC%' ORDER BY Id",
            "abc");
        Row("period order",
            "SELECT p FROM (SELECT '01-2016' AS p UNION SELECT '03-2015') ORDER BY right(p,4), "
            "mid(p,1,2)",
            "03-2015");
    }
    void jetFunctionsRun()
    {
        QFETCH(QString, sql);
        QFETCH(QString, result);
        QCOMPARE(db.GetString(sql), result);
    }

    void readersKeepTheirDefaults()
    {
        QCOMPARE(db.GetString("SELECT Nombre FROM t WHERE Id = 99"), QString());
        QCOMPARE(db.GetInteger("SELECT N FROM t WHERE Id = 99"), -1);
        QCOMPARE(db.GetLong("SELECT N FROM t WHERE Id = 99"), -1);
        QCOMPARE(db.GetBoolean("SELECT N FROM t WHERE Id = 99"), false);
        QCOMPARE(db.GetString("SELECT Valor FROM t WHERE Id = 2"), QString());
        QCOMPARE(db.GetInteger("SELECT N FROM t WHERE Id = 2"), -1); // beyond 16 bits
        QCOMPARE(db.GetLong("SELECT N FROM t WHERE Id = 2"), 40000);
        QCOMPARE(db.GetLong("SELECT Nombre FROM t WHERE Id = 3"), 12); // "12 abc"
        QCOMPARE(db.GetInteger("SELECT Nombre FROM t WHERE Id = 3"), -1);
        QCOMPARE(db.GetBoolean("SELECT N FROM t WHERE Id = 1"), true);
        QCOMPARE(db.GetString("SELECT FROM nothing"), QString());
    }

    void nullStaysApartFromEmptyText()
    {
        RecordsetPtr rs = db.FillRecordSet("SELECT Valor FROM t ORDER BY Id");
        QVERIFY(rs);
        QCOMPARE(rs->RecordCount(), 3);
        QVERIFY(!rs->IsNull(0));
        rs->MoveNext();
        QVERIFY(rs->IsNull("valor"));
        rs->MoveNext();
        QVERIFY(!rs->IsNull(0));
        QCOMPARE(rs->Text(0), QString());
        rs->MoveNext();
        QVERIFY(rs->EOF_());
    }

    void failedStatementIsSilentButLogged()
    {
        QVERIFY(db.Execute("INSERT INTO nowhere VALUES (1)"));
        QVERIFY(env->ui().messages().isEmpty());
        const QString text = QString::fromUtf8(ReadBytes(ErrorLogPath()));
        QVERIFY(text.contains("INSERT INTO nowhere VALUES (1)"));
        QVERIFY(text.contains("no such table"));
        QVERIFY(db.Execute("INSERT INTO t (Nombre) VALUES ('after')"));
        QCOMPARE(db.GetString("SELECT Nombre FROM t WHERE Id = 4"), QString("after"));
    }

    void severalColumnsAreAddedAllOrNone()
    {
        db.Execute("ALTER TABLE t ADD COLUMN Extra TEXT(50), Nombre TEXT(50)");
        RecordsetPtr rs = db.FillRecordSet("SELECT TOP 1 * FROM t");
        QCOMPARE(rs->FieldCount(), 4);
        db.Execute("ALTER TABLE t ADD COLUMN Extra TEXT(50), Other TEXT(50)");
        rs = db.FillRecordSet("SELECT TOP 1 * FROM t");
        QCOMPARE(rs->FieldCount(), 6);
    }

    void bindingStoresEmptyAsNull()
    {
        QStringList values{"x", ""};
        db.ExecuteNonQuery("INSERT INTO t (Nombre, Valor) VALUES (?, ?)", values);
        QCOMPARE(db.GetString("SELECT COUNT(1) FROM t WHERE Nombre = 'x' AND Valor IS NULL"),
                 QString("1"));
    }

    void deleteRecordAsks()
    {
        env->ui().answer("Esta seguro de eliminar el registro?", Msg::No);
        QVERIFY(!db.DeleteRecord("DELETE * FROM t", true));
        QCOMPARE(db.GetString("SELECT COUNT(1) FROM t"), QString("3"));
        env->ui().answer("Esta seguro de eliminar el registro?", Msg::Yes);
        QVERIFY(db.DeleteRecord("DELETE * FROM t", true));
        QCOMPARE(db.GetString("SELECT COUNT(1) FROM t"), QString("0"));
        QCOMPARE(env->ui().messages().first().title, QString("Eliminar"));
    }

    void fills()
    {
        Scratch w;
        QVERIFY(
            db.FillListBox("SELECT N, Nombre FROM t WHERE N IS NOT NULL ORDER BY Id", w["lst"]));
        QCOMPARE(w["lst"].itemText(1), QString("abc"));
        QCOMPARE(w["lst"].itemData(1), 40000);

        db.Execute("CREATE TABLE periods (p TEXT(10))");
        for (const char* p : {"01-2014", "02-2014", "02-2014", "05-2015"})
            db.Execute(QString("INSERT INTO periods VALUES ('%1')").arg(p));
        QVERIFY(db.FillComboBoxAnios("SELECT p FROM periods ORDER BY right(p,4)", w["cbo"], "1"));
        QCOMPARE(w["cbo"].listCount(), 2);
        QCOMPARE(w["cbo"].listIndex(), 1);
        QVERIFY(db.FillComboBoxMes("SELECT p FROM periods", w["cbo"], "2014"));
        QCOMPARE(w["cbo"].listCount(), 2);
        QCOMPARE(w["cbo"].itemText(1), QString("02"));
    }
};

QTEST_GUILESS_MAIN(TstGateway)
#include "tst_gateway.moc"
