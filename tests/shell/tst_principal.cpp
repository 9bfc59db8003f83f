#include <QDir>
#include <QtTest>
#include <sqlite3.h>

#include "BrokenDatabase.h"
#include "Db.h"
#include "Globals.h"
#include "Person.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "shell/MMain.h"
#include "shell/Principal.h"

namespace {

QStringList menuTexts()
{
    QStringList out;
    for (const ListItem& item : gPrincipal().field("mnuListadoContribuyentes").items())
        out << item.text + (item.enabled ? "" : " [off]");
    return out;
}

// A database of another program, made by the engine alone.
void writeForeignDatabase(const QString& path, const QStringList& statements)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    sqlite3* db = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    for (const QString& sql : statements)
        QCOMPARE(sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

} // namespace

// The start of a run and the main window, driven through their fields with a
// scripted person.
class TstPrincipal : public EnvTest
{
    Q_OBJECT
    void tearDown() override
    {
        if (gPrincipal().isLoaded())
            gPrincipal().unload();
    }

public:
    TstPrincipal() : EnvTest(false) {}

private slots:
    void firstStartShowsTheSplashThenAnEmptyList()
    {
        QStringList statuses;
        env->ui().onShow("Inicial", [&](Controller& splash) {
            QObject::connect(&splash.field("lbl"), &Field::changed, [&](Field* f, Field::Aspect a) {
                if (a == Field::TextAspect)
                    statuses << f->text();
            });
        });
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(statuses, (QStringList{"Verificando Base de Datos...", "Aplicando mejoras..."}));
        QCOMPARE(env->ui().shownWindows(), (QStringList{"Inicial", "Principal"}));
        QCOMPARE(gPrincipal().caption(), QString("Sistema Morvel de Declaraciones"));
        QCOMPARE(menuTexts(), QStringList{"(Vacio) [off]"});
        QCOMPARE(gPrincipal()["txtVersion"].text(), VersionText());
        QVERIFY(QFileInfo::exists(DatabasePath()));
        QCOMPARE(gDecimalSymbol, QString(","));
        QCOMPARE(gImportNames.size(), 13);
    }

    // A second start changes nothing stored; the program's databases carry
    // its mark, new and older ones alike, and run with the write-ahead journal.
    void secondStartChangesNothing()
    {
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(Db::column("PRAGMA application_id"), QStringList{"1297241676"});
        QCOMPARE(Db::column("PRAGMA journal_mode"), QStringList{"wal"});
        Db::exec("PRAGMA application_id = 0"); // as before the mark
        Db::insert("Contribuyentes",
                   {"idContribuyente=1", "ApellidoNombre=PEREZ JUAN", "Cuit=20-12345678-6"});
        Db::insert("F976", {"Codigo=X", "BaseImponible=1.234,50"});
        gPrincipal().unload();
        const QString before = Db::dump();
        CloseDatabase();
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(Db::dump(), before);
        QCOMPARE(Db::column("PRAGMA application_id"), QStringList{"1297241676"});
        QVERIFY(env->ui().messages().isEmpty());
    }

    void menuListsTaxpayers_data()
    {
        Columns<QStringList, QStringList>("rows", "menu");
        Row("none", QStringList{}, QStringList{"(Vacio) [off]"});
        Row("two", QStringList{"1|PEREZ JUAN|20-12345678-6", "2|ACME S.A.|30-71234567-1"},
            QStringList{"1: PEREZ JUAN - 20-12345678-6", "2: ACME S.A. - 30-71234567-1"});
        Row("stops before a row without CUIT", QStringList{"1|A|20-1", "2|B|", "3|C|20-3"},
            QStringList{"1: A - 20-1"});
    }
    void menuListsTaxpayers()
    {
        const auto [rows, menu] = Fetch<QStringList, QStringList>("rows", "menu");
        env->createDatabase();
        for (const QString& row : rows) {
            const QStringList c = row.split('|');
            Db::insert("Contribuyentes",
                       {"idContribuyente=" + c[0], "ApellidoNombre=" + c[1], "Cuit=" + c[2]});
        }
        gPrincipal().FillMenu();
        QCOMPARE(menuTexts(), menu);
        // a second fill replaces the list, never appends to it
        gPrincipal().FillMenu();
        QCOMPARE(menuTexts(), menu);
    }

    void menuCommands()
    {
        env->createDatabase();
        Person person(gPrincipal());
        person.click("mnuAcercaDe");
        QCOMPARE(env->ui().shownWindows(), QStringList{"frmAbout"});
        person.click("mnuManualUso");
        person.key("txtVersion", KeyCode::F1);
        QCOMPARE(env->ui().openedDocuments().size(), 2);
        QVERIFY(env->ui().openedDocuments().first().endsWith("/help/index.html"));
        QVERIFY(QFileInfo::exists(env->ui().openedDocuments().first()));
        person.click("mnuSalir");
        QVERIFY(env->ui().programEnded());
        QVERIFY(!gPrincipal().isLoaded());
    }

    // A Morvel.db that is not this program's is never written, not even
    // beside it: the person is told, naming the file, and the run ends.
    void foreignFileIsNeverWritten_data()
    {
        Columns<QStringList, QByteArray, QString>("statements", "bytes", "why");
        const QString foreign = "no es una base de datos de Morvel: pertenece a otro programa.";
        const QString damaged = "está dañado o no es una base de datos.";
        Row("another program's tables",
            QStringList{"PRAGMA journal_mode=DELETE", "CREATE TABLE clientes (nombre TEXT)",
                        "INSERT INTO clientes VALUES ('ÑANDÚ S.A.')"},
            QByteArray(), foreign);
        Row("another program's mark on tables like ours",
            QStringList{"PRAGMA application_id = 1234", "CREATE TABLE Contribuyentes (Cuit TEXT)",
                        "CREATE TABLE Opciones (Opcion TEXT)"},
            QByteArray(), foreign);
        Row("only one of our tables", QStringList{"CREATE TABLE Contribuyentes (Cuit TEXT)"},
            QByteArray(), foreign);
        Row("not a database", QStringList{},
            QByteArray("not a database, but a person's file. ").repeated(100), damaged);
        Row("a database whose header is spoilt", QStringList{},
            QByteArray("SQLite format 3").append(QByteArray(4081, '\x01')), damaged);
    }
    void foreignFileIsNeverWritten()
    {
        const auto [statements, bytes, why] =
            Fetch<QStringList, QByteArray, QString>("statements", "bytes", "why");
        const QString path = env->dataPath() + "/Morvel.db";
        if (statements.isEmpty())
            QVERIFY(WriteBytes(path, bytes));
        else
            writeForeignDatabase(path, statements);
        const QByteArray before = ReadBytes(path);
        QVERIFY(!Main(env->dataPath()));
        QCOMPARE(env->ui().lastText(), "El archivo " + path + " " + why +
                                           "\r\nNo se modificará. El programa se cerrará.");
        QVERIFY(env->ui().shownWindows().isEmpty());
        // Whatever else asks the gateway to write, nothing reaches the file.
        gAccess().Execute("CREATE TABLE Intruso (a TEXT)");
        CreateCurrentDatabase();
        CloseDatabase();
        QCOMPARE(ReadBytes(path), before);
        QCOMPARE(QDir(env->dataPath()).entryList({"Morvel.db*"}, QDir::Files),
                 QStringList{"Morvel.db"});
    }

    // A database that can only be read opens for reading, with nothing
    // written in it or beside it, and the person knows nothing will be saved.
    void readOnlyDatabaseIsReadAndLeftAlone()
    {
        env->createDatabase();
        Db::insert("Contribuyentes",
                   {"idContribuyente=1", "ApellidoNombre=PEREZ JUAN", "Cuit=20-12345678-6"});
        CloseDatabase();
        const QString path = DatabasePath();
        const QByteArray before = ReadBytes(path);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup));
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(env->ui().lastText(),
                 "La base de datos " + path +
                     " es de solo lectura: podrá consultar los datos, pero no se guardará ningún "
                     "cambio.");
        QCOMPARE(menuTexts(), QStringList{"1: PEREZ JUAN - 20-12345678-6"});
        gPrincipal().unload();
        CloseDatabase();
        QCOMPARE(ReadBytes(path), before);
        QCOMPARE(QDir(env->dataPath()).entryList({"Morvel.db*"}, QDir::Files),
                 QStringList{"Morvel.db"});
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    }

    // A first start on a full disk makes no half database and says why the
    // program opens empty.
    void firstStartOnAFullDiskSaysSo()
    {
        BrokenDatabase::Break(Breakage::DiskFull);
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(env->ui().lastText(), "No se pudo crear la base de datos " + DatabasePath() +
                                           ".\r\nNo se pudo guardar: el disco está lleno.");
        QCOMPARE(menuTexts(), QStringList{"(Vacio) [off]"});
        gPrincipal().unload();
        BrokenDatabase::Mend();
        QCOMPARE(Db::tables(), QStringList{});
    }

    // A read-only run of an older version left read-only journal files
    // beside the database: once the database may be written again, they no
    // longer stand in the way of a save.
    void readOnlyJournalFilesAreMended()
    {
        env->createDatabase();
        CloseDatabase();
        const QString path = DatabasePath();
        for (const char* suffix : {"-wal", "-shm"})
            QVERIFY(WriteBytes(path + suffix, QByteArray()));
        for (const char* suffix : {"-wal", "-shm"})
            QVERIFY(QFile::setPermissions(path + suffix, QFile::ReadOwner | QFile::ReadGroup));
        QVERIFY(Main(env->dataPath()));
        QVERIFY(env->ui().messages().isEmpty());
        Db::insert("Contribuyentes",
                   {"idContribuyente=1", "ApellidoNombre=PEREZ JUAN", "Cuit=20-12345678-6"});
        for (const char* suffix : {"-wal", "-shm"})
            QVERIFY(QFileInfo(path + suffix).permissions() & QFile::WriteOwner);
        gPrincipal().unload();
        CloseDatabase();
        QCOMPARE(Db::count("Contribuyentes"), 1);
    }

    void rejectedRegionalSettingsEndBeforeTheSplash()
    {
        Regional::set(Regional::SShortDate, "M/d/yyyy");
        QVERIFY(!Main(env->dataPath()));
        QVERIFY(env->ui().shownWindows().isEmpty());
        QVERIFY(env->ui().lastText().contains("tiene como fecha"));
    }
};

QTEST_GUILESS_MAIN(TstPrincipal)
#include "tst_principal.moc"
