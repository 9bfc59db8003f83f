#include <QRandomGenerator>
#include <QtTest>
#include <sqlite3.h>

#include <libpq-fe.h>

#include "Controller.h"
#include "EditLock.h"
#include "Db.h"
#include "ErrorLog.h"
#include "FoldedText.h"
#include "Globals.h"
#include "JetSql.h"
#include "TestSupport.h"
#include "Transaction.h"
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

    // Text compares as Jet compared it: case is ignored for every letter,
    // accented ones and Ñ included, in NOCASE columns, LIKE, UPPER and LOWER;
    // accents still count, and letters sort as in Spanish.
    void textFoldsEveryLetter_data()
    {
        Columns<QString, QString>("sql", "result");
        Row("equal", "SELECT Nombre FROM w WHERE Nombre = 'ÑANDÚ'", "Ñandú");
        Row("in a list", "SELECT COUNT(*) FROM w WHERE Nombre IN ('ÁRBOL', 'x')", "1");
        Row("like", "SELECT Nombre FROM w WHERE Nombre LIKE '%CIÓN%'", "elaboración");
        Row("like in mixed case", "SELECT Nombre FROM w WHERE Nombre LIKE 'eLaBoRaCiÓn'",
            "elaboración");
        Row("one character is a whole letter", "SELECT Nombre FROM w WHERE Nombre LIKE '_ANDÚ'",
            "Ñandú");
        Row("escape", "SELECT Nombre FROM w WHERE Nombre LIKE '%0!%%' ESCAPE '!'", "100% natural");
        Row("accents count", "SELECT COUNT(*) FROM w WHERE Nombre = 'NANDU'", "0");
        Row("like null", "SELECT COUNT(*) FROM w WHERE Nombre LIKE NULL", "0");
        Row("upper", "SELECT UPPER('ñandú árbol')", "ÑANDÚ ÁRBOL");
        Row("ucase", "SELECT UCASE('elaboración')", "ELABORACIÓN");
        Row("lower", "SELECT LOWER('ÑANDÚ ÁRBOL')", "ñandú árbol");
        Row("spanish order",
            "SELECT Nombre FROM w ORDER BY Nombre",
            "100% natural|ábaco|Árbol|Azul|elaboración|Nube|Ñandú|ñu|Oso");
        Row("distinct", "SELECT COUNT(*) FROM (SELECT DISTINCT UPPER(Nombre) FROM w)", "9");
    }
    void textFoldsEveryLetter()
    {
        QFETCH(QString, sql);
        QFETCH(QString, result);
        db.Execute("CREATE TABLE w (Nombre TEXT(50))");
        db.Execute("CREATE INDEX ix_w ON w (Nombre)");
        for (const char* name : {"Oso", "ñu", "Ñandú", "Nube", "elaboración", "Azul", "Árbol",
                                 "ábaco", "100% natural"})
            db.Execute(QStringLiteral("INSERT INTO w (Nombre) VALUES ('%1')").arg(name));
        QCOMPARE(Db::column(sql).join(u'|'), result);
        if (!TestEnv::onServer()) // the file's index still finds every row
            QCOMPARE(db.GetString("PRAGMA integrity_check"), QString("ok"));
    }

    // Plain ASCII text sorts exactly as the engine's own NOCASE sorted it, so
    // that an index made before keeps its order.
    void asciiSortsAsTheEngineDid()
    {
        const QByteArray letters = "aAzZbB09 _[]^`{}~@-.";
        QRandomGenerator random(1976);
        auto text = [&] {
            QByteArray t;
            for (int n = random.bounded(0, 6); n > 0; --n)
                t += letters.at(random.bounded(letters.size()));
            return t;
        };
        for (int i = 0; i < 5000; ++i) {
            const QByteArray a = text();
            const QByteArray b = text();
            const int ours =
                CompareFolded(a.constData(), int(a.size()), b.constData(), int(b.size()));
            const int engine = sqlite3_stricmp(a.constData(), b.constData());
            QVERIFY2((ours > 0) == (engine > 0) && (ours < 0) == (engine < 0),
                     qPrintable(a + " / " + b));
        }
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

    // A large read may take its rows as texts, one at a time: each cell
    // reads as the recordset's Text() reads it, Null apart from the empty
    // text, and a text shared with the row before reads the same.
    void textRowsReadAsTheRecordset_data()
    {
        Columns<QString>("sql");
        Row("texts, null and empty", "SELECT Nombre, Valor FROM t ORDER BY Id");
        Row("whole and decimal numbers", "SELECT N, N * 1.5, N / 4, Id FROM t ORDER BY Id");
        Row("sums and counts", "SELECT SUM(N), COUNT(*), MAX(Nombre), MIN(Valor) FROM t");
        Row("truth values", "SELECT N > 10, Nombre = 'abc' FROM t ORDER BY Id");
        Row("Jet functions", "SELECT UCASE(Nombre), LEN(Valor), MID(Nombre, 2, 2), "
                             "IIF(N IS NULL, 'nada', Valor) FROM t ORDER BY Id");
        Row("a date written as text", "SELECT '25-11-2026', Nombre & '-' & Id FROM t ORDER BY Id");
        Row("repeated texts", "SELECT 'mismo', t.Nombre FROM t, t AS u ORDER BY t.Id, u.Id");
        Row("no row", "SELECT Nombre FROM t WHERE Id < 0");
    }
    void textRowsReadAsTheRecordset()
    {
        QFETCH(QString, sql);
        const auto cell = [](bool null, const QString& text) {
            return null ? QStringLiteral("<null>") : text;
        };
        QStringList expected;
        RecordsetPtr rs = db.FillRecordSet(sql);
        QVERIFY(rs);
        for (; !rs->EOF_(); rs->MoveNext())
            for (int c = 0; c < rs->FieldCount(); ++c)
                expected << cell(rs->IsNull(c), rs->Text(c));
        QStringList read, previous(rs->FieldCount());
        QVERIFY(db.ReadTexts(sql, [&](const TextRow& row) {
            // the same columns, found by name whatever the engine's spelling
            for (const QString& name : rs->FieldNames())
                QCOMPARE(ColumnIndex(row.columns(), name), rs->indexOf(name));
            for (int c = 0; c < rs->FieldCount(); ++c) {
                const QString text = row.text(c);
                QCOMPARE(row.sharedText(c, previous[c]), text);
                QCOMPARE(row.sharedText(c, text), text);
                if (const auto number = row.integer(c))
                    QCOMPARE(QString::number(*number), text);
                previous[c] = text;
                read << cell(row.isNull(c), text);
            }
        }));
        QCOMPARE(read, expected);
        QVERIFY(env->ui().messages().isEmpty());
    }

    void aFailedTextReadIsLogged()
    {
        int rows = 0;
        QVERIFY(!db.ReadTexts("SELECT Nombre FROM nowhere", [&](const TextRow&) { ++rows; }));
        QCOMPARE(rows, 0);
        QVERIFY(env->ui().messages().isEmpty());
        QVERIFY(QString::fromUtf8(ReadBytes(ErrorLogPath())).contains("SELECT Nombre FROM nowhere"));
    }

    void failedStatementIsSilentButLogged()
    {
        QVERIFY(db.Execute("INSERT INTO nowhere VALUES (1)"));
        QVERIFY(env->ui().messages().isEmpty());
        const QString text = QString::fromUtf8(ReadBytes(ErrorLogPath()));
        QVERIFY(text.contains("INSERT INTO nowhere VALUES (1)"));
        QVERIFY(text.contains(TestEnv::onServer() ? "does not exist" : "no such table"));
        QVERIFY(db.Execute("INSERT INTO t (Nombre) VALUES ('after')"));
        QCOMPARE(db.GetString("SELECT Nombre FROM t WHERE Id = 4"), QString("after"));
    }

    // A declaration open on one workstation is refused to another, naming
    // the first, until the first's session lets it go, however it ends.
    void editLockIsHeldByOneWorkstation()
    {
        QCOMPARE(EditLock::Acquire("F976 0001"), QString());
        QCOMPARE(EditLock::Acquire("F976 0001"), QString()); // held here already
        if (!TestEnv::onServer())
            return; // a file has one person: the lock is always granted
        PGconn* other = PQconnectdb(qgetenv("MORVEL_DATABASE_SERVER") +
                                    " application_name=puesto2");
        auto ask = [&](const char* sql) {
            PGresult* r = PQexec(other, sql);
            const QString value = QString::fromUtf8(PQgetvalue(r, 0, 0));
            PQclear(r);
            return value;
        };
        QCOMPARE(ask("SELECT pg_try_advisory_lock(72650, hashtext('F976 0001'))"), QString("f"));
        QCOMPARE(ask("SELECT pg_try_advisory_lock(72650, hashtext('F976 0002'))"), QString("t"));
        QCOMPARE(EditLock::Acquire("F976 0002"), QString("puesto2"));
        QCOMPARE(EditLock::HeldText("puesto2"),
                 QString("La declaración está siendo editada en puesto2"));
        PQfinish(other); // the other program ends
        QTRY_COMPARE(EditLock::Acquire("F976 0002"), QString());
        EditLock::Release("F976 0001");
        EditLock::Release("F976 0002");
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

    // An import binds its lines as texts: each is stored as the same value
    // bound one by one would be, empty text apart from Null, after a longer
    // line has been bound on the same statement.
    void preparedTextsStoreAsBoundValues_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("marks");
        QTest::addColumn<QStringList>("stored"); // "<null>" for Null

        QTest::newRow("accented") << QStringList{"Año ñandú €", "ÁÉÍÓÚ ü"} << 2
                                  << QStringList{"Año ñandú €", "ÁÉÍÓÚ ü"};
        QTest::newRow("empty is text") << QStringList{"", ""} << 2 << QStringList{"", ""};
        QTest::newRow("numbers as written") << QStringList{"1,50", "-40000"} << 2
                                            << QStringList{"1,50", "-40000"};
        QTest::newRow("missing are null") << QStringList{"a"} << 2 << QStringList{"a", "<null>"};
        QTest::newRow("none") << QStringList{} << 2 << QStringList{"<null>", "<null>"};
        QTest::newRow("extra ignored") << QStringList{"a", "b", "c"} << 2
                                       << QStringList{"a", "b"};
        QTest::newRow("quotes") << QStringList{"O'Brien; DROP", "\\\"x\\\""} << 2
                                << QStringList{"O'Brien; DROP", "\\\"x\\\""};
    }

    void preparedTextsStoreAsBoundValues()
    {
        QFETCH(QStringList, texts);
        QFETCH(int, marks);
        QFETCH(QStringList, stored);
        db.Execute("DELETE * FROM t");
        auto insert = db.Prepare("INSERT INTO t (Nombre, Valor) VALUES (?, ?)");
        QVERIFY(insert);
        const QString longer(300, u'ñ');
        QVERIFY(insert->runTexts({longer, longer}, marks));
        QVERIFY(insert->runTexts(texts, marks));
        QVector<QVariant> values;
        for (int i = 0; i < marks; ++i)
            values << (i < texts.size() ? QVariant(texts.at(i)) : QVariant());
        QVERIFY(insert->run(values));
        RecordsetPtr rs = db.FillRecordSet("SELECT Nombre, Valor FROM t ORDER BY Id");
        QVERIFY(rs);
        QCOMPARE(rs->RecordCount(), 3);
        QCOMPARE(rs->Text(0), longer);
        for (int row = 1; row < 3; ++row) {
            rs->MoveNext();
            for (int column = 0; column < 2; ++column)
                QCOMPARE(rs->IsNull(column) ? QString("<null>") : rs->Text(column),
                         stored.at(column));
        }
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

    // A unit of work ends on every path: a save stands whole or not at all, a
    // grouped loop keeps what passed, and nothing stays open for later
    // statements to fall into (they would be lost when the database closes).
    void transactionEnds_data()
    {
        Columns<int, bool, bool, QStringList>("mode", "failing", "earlyRollback", "rowsAfter");
        const int all = int(Transaction::Mode::AllOrNothing);
        const int keep = int(Transaction::Mode::KeepWhatPassed);
        Row("save that passes", all, false, false, QStringList{"abc", "uno", "dos"});
        Row("save with a failed statement", all, true, false, QStringList{"abc"});
        Row("save undone on purpose", all, false, true, QStringList{"abc"});
        Row("loop keeps what passed", keep, true, false, QStringList{"abc", "uno", "dos"});
    }
    void transactionEnds()
    {
        QFETCH(int, mode);
        QFETCH(bool, failing);
        QFETCH(bool, earlyRollback);
        QFETCH(QStringList, rowsAfter);
        db.Execute("DELETE FROM t WHERE Nombre <> 'abc'");
        {
            Transaction unit(db, Transaction::Mode(mode));
            db.Execute("INSERT INTO t (Nombre) VALUES ('uno')");
            if (failing)
                db.Execute("INSERT INTO NoSuchTable (x) VALUES (1)");
            db.Execute("INSERT INTO t (Nombre) VALUES ('dos')");
            QCOMPARE(unit.ok(), !failing);
            if (earlyRollback)
                unit.rollback();
        }
        // Nothing is left open: a later statement stands by itself even when
        // the connection is closed right after it.
        db.Execute("INSERT INTO t (Nombre) VALUES ('después')");
        CloseDatabase();
        rowsAfter << "después";
        QCOMPARE(Db::column("SELECT Nombre FROM t ORDER BY Id"), rowsAfter);
    }

    void nestedUnitsJoinTheOuter()
    {
        {
            Transaction outer(db, Transaction::Mode::AllOrNothing);
            db.Execute("INSERT INTO t (Nombre) VALUES ('fuera')");
            {
                Transaction inner(db, Transaction::Mode::AllOrNothing);
                db.Execute("INSERT INTO t (Nombre) VALUES ('dentro')");
                QVERIFY(inner.commit());
            }
            outer.rollback();
        }
        CloseDatabase();
        QCOMPARE(db.GetInteger("SELECT COUNT(*) FROM t WHERE Nombre IN ('fuera', 'dentro')"), 0);
    }

    void failureIsTold_data()
    {
        Columns<int, QString>("code", "text");
        Row("full disk", 13, "No se pudo guardar: el disco está lleno.");
        Row("read-only", 8, "No se pudo guardar: la base de datos es de solo lectura.");
        Row("read-only wal", 8 | (1 << 8),
            "No se pudo guardar: la base de datos es de solo lectura.");
        Row("damaged", 11, "No se pudo guardar: la base de datos está dañada.");
        Row("not a database", 26, "No se pudo guardar: la base de datos está dañada.");
    }
    void failureIsTold()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        QCOMPARE(SaveFailureText(code, "engine"), text);
    }
};

QTEST_GUILESS_MAIN(TstGateway)
#include "tst_gateway.moc"
