#include <QtTest>

#include "BrokenDatabase.h"
#include "Db.h"
#include "Globals.h"
#include "ServerTestKit.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "backup/CopiaBaseDatos.h"
#include "output/ZoGenerateDisk.h"

namespace {

const QString kPadron = "0000000012345";
const QString kObjeto = "0000000000001";
const QStringList kForms = {"F976", "F2001", "F977", "F978", "F985", "F987", "F986", "F988"};

// Runs the statements of the file of declarations the submission texts were
// written from, one a line.
void loadDeclarations()
{
    const QByteArray text = ReadBytes(MORVEL_OUTPUT_DATA "/declaraciones.sql");
    QVERIFY(!text.isEmpty());
    for (const QString& line : QString::fromUtf8(text).split('\n'))
        if (!line.trimmed().isEmpty() && !line.trimmed().startsWith("--"))
            Db::exec(line.trimmed());
}

// What a person's database holds besides: a name with a quote, a Null
// apart from an empty text, and a row whose id is far past the others.
void loadOddRows()
{
    Db::exec("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) VALUES "
             "(7, 'O''HIGGINS ÑANDÚ S.A.', '30-71234567-1')");
    Db::exec("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) VALUES "
             "(8, '', NULL)");
    Db::exec("INSERT INTO TPadrones_Formularios (Id, Padron, Objeto, Periodo, idFormulario, "
             "Rectificativa, FechaRectificativa, ctrl) VALUES (900, '0000000054321', "
             "'0000000000002', '02-2010', 'F976', 'False', '0', '0')");
    Db::exec("INSERT INTO Opciones (Nombre, Valor) VALUES ('AnioMinimo', '2005')");
}

// Every table of a database, each row as text (Null as <null>) behind its
// table's name and sorted; first the table's columns. A server spells names
// in lower case: `exact` compares the spelling too.
QStringList contents(const QString& connection, bool exact)
{
    ZoAccess db;
    db.SetConnectionString(connection);
    QStringList out;
    QStringList tables = db.TableNames();
    for (QString& table : tables)
        table = exact ? table : table.toLower();
    tables.sort(Qt::CaseInsensitive);
    for (const QString& table : tables) {
        const RecordsetPtr rs = db.FillRecordSet("SELECT * FROM " + table);
        if (!rs)
            return {"unreadable " + table};
        const QString columns = rs->FieldNames().join('|');
        out << table + " # " + (exact ? columns : columns.toLower());
        QStringList rows;
        for (; !rs->EOF_(); rs->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < rs->FieldCount(); ++i)
                cells << (rs->IsNull(i) ? "<null>" : rs->Text(i));
            rows << table + ": " + cells.join('|');
        }
        rows.sort();
        out << rows;
    }
    db.Dispose();
    return out;
}

QString fileOf(const QString& path)
{
    return CopiaBaseDatos::Archivo(path);
}

QString serverOf(const ServerKit::Scratch& db)
{
    return CopiaBaseDatos::Servidor(db.location());
}

// The text of the submission file of each form's declaration of January
// 2010, from the workstation's database.
QStringList submissionTexts()
{
    QStringList texts;
    for (const QString& form : kForms) {
        const bool rect = form == "F2001" || form == "F978" || form == "F987" || form == "F988";
        const QString fecha = form == "F2001"  ? "15-03-2010"
                              : form == "F978" ? "10-02-2010"
                              : form == "F987" ? "25-02-2010"
                              : form == "F988" ? "20-02-2010"
                                               : "0";
        ZoGenerateDisk disk;
        disk.Parametros = "Padron=" + kPadron + " - Objeto N° " + kObjeto +
                          ";Periodo=01;Anio=2010;Rectificativa=" + (rect ? "Verdadero" : "Falso") +
                          ";Codigo=" + kPadron + "012010" + kObjeto + (rect ? "R" : "O") +
                          ";Formulario=" + form + ";FechaRectificativa=" + fecha +
                          ";ctrl=" + (rect ? "1" : "0") + ";Nuevo=False;ConDatos=True;";
        const bool written = disk.CreateFile(gAppPath + "/09760110.DJ", true);
        texts << form + ": " +
                     (written ? QString::fromLatin1(ReadBytes(disk.TemporaryPath()).toHex())
                              : "not written");
    }
    return texts;
}

// The workstation's database is now the server's.
void useServer(const ServerKit::Scratch& db)
{
    CloseDatabase();
    qputenv("MORVEL_DATABASE_SERVER", db.location().connectionInfo().toUtf8());
}

} // namespace

// The whole database copied from a file into an empty database of a server
// and back into a new file: every table and row, the submission files
// unchanged, the server's counters past the ids copied; what is refused, and
// a copy that stops half way leaving its target as it was.
class TstCopiaBase : public EnvTest
{
    Q_OBJECT

    void seed() override
    {
        loadDeclarations();
        loadOddRows();
    }
    void tearDown() override { qunsetenv("MORVEL_DATABASE_SERVER"); }

private slots:
    void roundTrip()
    {
        REQUIRE_SERVER();
        ServerKit::Scratch server;
        QVERIFY(server.ok());
        const QStringList original = contents(fileOf(DatabasePath()), true);
        QStringList reports;

        CopiaBaseDatos there(fileOf(DatabasePath()), serverOf(server));
        there.OnAvance = [&](qint64 done, qint64 total, const QString& what) {
            reports << QString("%1/%2 %3").arg(done).arg(total).arg(what);
        };
        QVERIFY2(there.Copiar(), qPrintable(there.Motivo()));
        QCOMPARE(contents(serverOf(server), false), contents(fileOf(DatabasePath()), false));
        QCOMPARE(there.Tablas(), Db::tables().size());
        QCOMPARE(there.Filas(), qint64(original.size() - Db::tables().size()));
        QCOMPARE(reports.first(), QString("0/%1 Creando las tablas...").arg(there.Filas()));
        QVERIFY2(reports.last().startsWith(QString("%1/%1 ").arg(there.Filas())),
                 qPrintable(reports.last()));

        const QString back = env->path("vuelta/Morvel.db");
        QDir().mkpath(env->path("vuelta"));
        CopiaBaseDatos home(serverOf(server), fileOf(back));
        QVERIFY2(home.Copiar(), qPrintable(home.Motivo()));
        QCOMPARE(QDir(env->path("vuelta")).entryList(QDir::Files), QStringList{"Morvel.db"});
        QCOMPARE(contents(fileOf(back), true), original);
        QCOMPARE(home.Filas(), there.Filas());

        // A declaration generated from the server gives the very bytes it
        // gave from the file; new rows there are numbered past the ids copied.
        const QStringList fromFile = submissionTexts();
        QVERIFY(!fromFile.join(' ').contains("not written"));
        useServer(server);
        QCOMPARE(submissionTexts(), fromFile);
        gAccess().Execute("INSERT INTO TPadrones_Formularios (Padron) VALUES ('nuevo')");
        QCOMPARE(Db::column("SELECT Id FROM TPadrones_Formularios WHERE Padron = 'nuevo'"),
                 QStringList{"901"});
    }

    // What is refused, with its message, writing nothing anywhere.
    void refused_data()
    {
        // from, to: "file", "server" (the test's empty database), "full server"
        // (one with a table), "missing file", "existing file", "empty server",
        // "closed port"
        Columns<QString, QString, QString>("from", "to", "said");
        Row("server database with tables", "file", "full server",
            "La base de datos {to} del servidor no está vacía: ya tiene tablas. La copia se hace "
            "solo en una base de datos vacía.");
        Row("existing file", "file", "existing file",
            "El archivo {to} ya existe. La copia se hace solo en un archivo nuevo: elija otro "
            "nombre.");
        Row("no such file", "missing file", "server", "No existe el archivo {from}.");
        Row("nothing to copy", "empty server", "missing file",
            "La base de datos {from} no tiene tablas: no hay nada que copiar.");
        Row("server not answering", "file", "closed port",
            "No se pudo conectar con la base de datos {to}: el servidor no responde en esa "
            "dirección y puerto.");
    }
    void refused()
    {
        REQUIRE_SERVER();
        const auto [from, to, said] = Fetch<QString, QString, QString>("from", "to", "said");
        ServerKit::Scratch server;
        QVERIFY(server.ok());
        QVERIFY(server.exec("CREATE TABLE ajena (n integer); INSERT INTO ajena VALUES (1)"));
        ServerKit::Scratch empty;
        QVERIFY(empty.ok());
        DatabaseLocation closed = empty.location();
        closed.port = 1;
        const QString existing = env->path("existente.db");
        QVERIFY(WriteBytes(existing, "lo que había"));
        const QHash<QString, QString> places = {{"file", fileOf(DatabasePath())},
                                                {"full server", serverOf(server)},
                                                {"server", serverOf(empty)},
                                                {"empty server", serverOf(empty)},
                                                {"existing file", fileOf(existing)},
                                                {"missing file", fileOf(env->path("no.db"))},
                                                {"closed port", CopiaBaseDatos::Servidor(closed)}};
        const QStringList before = contents(fileOf(DatabasePath()), true);

        CopiaBaseDatos copy(places.value(from), places.value(to));
        QVERIFY(!copy.Copiar());
        QCOMPARE(copy.Motivo(),
                 QString(said).replace("{from}", copy.Origen()).replace("{to}", copy.Destino()));
        QCOMPARE(copy.Tablas(), 0);
        QCOMPARE(server.query("SELECT count(*) FROM information_schema.tables WHERE "
                              "table_schema = 'public'"),
                 QStringList{"1"});
        QCOMPARE(empty.query("SELECT count(*) FROM information_schema.tables WHERE "
                             "table_schema = 'public'"),
                 QStringList{"0"});
        QCOMPARE(ReadBytes(existing), QByteArray("lo que había"));
        QVERIFY(!QFile::exists(env->path("no.db")));
        QCOMPARE(contents(fileOf(DatabasePath()), true), before);
    }

    // A copy that fails after some tables were copied leaves its target as
    // it was: the server's database empty, no file; the source untouched.
    void failureHalfWay_data()
    {
        Columns<QString, QString>("toward", "said");
        Row("a value the server refuses", "server",
            "No se pudo copiar la tabla Formularios: invalid input syntax for type integer: "
            "\"X\"");
        Row("the disk fills up", "file",
            "No se pudo confirmar la copia en {to}: el disco está lleno.");
    }
    void failureHalfWay()
    {
        REQUIRE_SERVER();
        const auto [toward, said] = Fetch<QString, QString>("toward", "said");
        ServerKit::Scratch server;
        QVERIFY(server.ok());
        const QString target = env->path("copia.db");
        qint64 copiedBefore = 0;
        QStringList before;
        CopiaBaseDatos copy(fileOf(DatabasePath()), serverOf(server));
        if (toward == "server") {
            // An old file kept a word where the form's order is a number.
            Db::exec("UPDATE Formularios SET Orden = 'X' WHERE idFormulario = 'F977'");
            before = contents(fileOf(DatabasePath()), true);
            copy.OnAvance = [&](qint64 done, qint64, const QString&) { copiedBefore = done; };
        } else {
            QVERIFY2(CopiaBaseDatos(fileOf(DatabasePath()), serverOf(server)).Copiar(),
                     "the server's database to copy from");
            before = contents(serverOf(server), false);
            // The disk that fills up is in place before the target is made.
            BrokenDatabase::Break(Breakage::DiskFull);
            BrokenDatabase::Mend();
            copy = CopiaBaseDatos(serverOf(server), fileOf(target));
            copy.OnAvance = [&](qint64 done, qint64, const QString&) {
                if (done > 0 && !copiedBefore)
                    BrokenDatabase::Break(Breakage::DiskFull);
                copiedBefore = done;
            };
        }
        QVERIFY(!copy.Copiar());
        BrokenDatabase::RepairDisk();
        QCOMPARE(copy.Motivo(), QString(said).replace("{to}", copy.Destino()));
        QVERIFY2(copiedBefore > 0, "the copy stopped before any row was copied");
        if (toward == "server") {
            QCOMPARE(server.query("SELECT count(*) FROM information_schema.tables WHERE "
                                  "table_schema = 'public'"),
                     QStringList{"0"});
            QCOMPARE(contents(fileOf(DatabasePath()), true), before);
        } else {
            QCOMPARE(QDir(env->path({})).entryList({"copia*"}, QDir::Files), QStringList{});
            QCOMPARE(contents(serverOf(server), false), before);
        }
    }
};

QTEST_MAIN(TstCopiaBase)
#include "tst_copia_base.moc"
