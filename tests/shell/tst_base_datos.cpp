#include <QtTest>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QRadioButton>

#include "../backup/ServerTestKit.h"
#include "Db.h"
#include "Globals.h"
#include "GuiSupport.h"
#include "Person.h"
#include "TestSupport.h"
#include "frame/view/QtUi.h"
#include "shell/PgPass.h"
#include "shell/Principal.h"
#include "shell/frmBaseDatos.h"
#include "shell/view/ShellViews.h"

namespace {

const QString kCorrecta = "Conexión correcta.";
const QString kNoConecta = "No se pudo conectar con el servidor: ";
const QString kProxima = "La base de datos elegida se usará la próxima vez que se inicie Morvel.";

// "{db}" stands for the test's own database in the rows below.
QString withDb(QString text, const QString& db)
{
    return text.replace("{db}", db);
}

QStringList withDb(QStringList texts, const QString& db)
{
    for (QString& text : texts)
        text = withDb(text, db);
    return texts;
}

// What the settings keep: "archivo", or "servidor base@puerto usuario".
QString kept()
{
    const DatabaseLocation location = DatabaseLocation::current();
    if (!location.isServer())
        return "archivo";
    return QString("servidor %1@%2 %3")
        .arg(location.database)
        .arg(location.port)
        .arg(location.user);
}

QString filePermissions(const QString& path)
{
    return QString::number(int(QFileInfo(path).permissions() & 0x0fff), 16);
}

} // namespace

// Choosing where the database lives: the password file, the connection
// test's messages, and the window "Base de Datos" driven as a person would,
// on the tests' own server.
class TstBaseDatos : public EnvTest
{
    Q_OBJECT
    QString m_pgpass;

    void seed() override
    {
        m_pgpass = env->path("pgpass");
        qputenv("PGPASSFILE", m_pgpass.toUtf8());
    }
    void tearDown() override
    {
        qunsetenv("PGPASSFILE");
        if (gPrincipal().isLoaded())
            gPrincipal().unload();
    }

private slots:
    void initTestCase() { RegisterAllViews(); }

    // The password is kept for its server, database and user: a new file, a
    // line replaced in place, other lines kept, ":" and "\" escaped, and the
    // file readable by its owner alone.
    void pgpass_data()
    {
        Columns<QByteArray, QString, QString, QString, QByteArray>("before", "database", "user",
                                                                   "password", "after");
        Row("new file", QByteArray(), "estudio", "ana", "secreto",
            QByteArray("srv:5432:estudio:ana:secreto\n"));
        Row("same server, database and user: replaced", QByteArray("srv:5432:estudio:ana:vieja\n"),
            "estudio", "ana", "nueva", QByteArray("srv:5432:estudio:ana:nueva\n"));
        Row("other lines kept in their place",
            QByteArray("# del estudio\notro:5432:estudio:ana:x\nsrv:5432:estudio:ana:vieja\n"
                       "srv:5433:estudio:ana:y\nsrv:5432:estudio:juan:z\nsrv:5432:estudio:ana:w"),
            "estudio", "ana", "nueva",
            QByteArray("# del estudio\notro:5432:estudio:ana:x\nsrv:5432:estudio:ana:nueva\n"
                       "srv:5433:estudio:ana:y\nsrv:5432:estudio:juan:z\n"));
        Row("colons and backslashes escaped", QByteArray("srv:5432:a\\:b:c\\\\d:vieja\n"), "a:b",
            "c\\d", "p:a\\s", QByteArray("srv:5432:a\\:b:c\\\\d:p\\:a\\\\s\n"));
    }
    void pgpass()
    {
        const auto [before, database, user, password, after] =
            Fetch<QByteArray, QString, QString, QString, QByteArray>("before", "database", "user",
                                                                     "password", "after");
        if (!before.isNull()) {
            QVERIFY(WriteBytes(m_pgpass, before));
            QFile::setPermissions(m_pgpass,
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        }
        DatabaseLocation location;
        location.kind = DatabaseLocation::Kind::Server;
        location.host = "srv";
        location.database = database;
        location.user = user;

        QString reason;
        QVERIFY2(PgPass::Store(location, password, &reason), qPrintable(reason));

        QCOMPARE(ReadBytes(m_pgpass), after);
        QCOMPARE(filePermissions(m_pgpass), QString("600"));
    }

    // "Probar conexión" says what the server answered.
    void probe_data()
    {
        Columns<QString, int, QString, QString>("database", "port", "user", "said");
        Row("good server", "{db}", 0, "", kCorrecta);
        Row("wrong port", "{db}", 1, "",
            kNoConecta + "el servidor no responde en esa dirección y puerto.");
        Row("wrong database", "{db}_no", 0, "",
            kNoConecta + "la base de datos «{db}_no» no existe en el servidor.");
        Row("unknown user", "{db}", 0, "fantasma",
            kNoConecta + "el usuario «fantasma» no existe en el servidor.");
    }
    void probe()
    {
        REQUIRE_SERVER();
        const auto [database, port, user, said] =
            Fetch<QString, int, QString, QString>("database", "port", "user", "said");
        ServerKit::Scratch db;
        QVERIFY(db.ok());
        DatabaseLocation location = db.location();
        location.database = withDb(database, db.name());
        if (port)
            location.port = port;
        if (!user.isEmpty())
            location.user = user;
        bool ok = false;
        QCOMPARE(frmBaseDatos::ProbarConexion(location, "clave", &ok), withDb(said, db.name()));
        QCOMPARE(ok, said == kCorrecta);
    }

    // The window as a person fills it: the choice kept on "Aceptar" (and
    // the password in the password file), or not kept.
    void window_data()
    {
        // answer: to "¿Desea guardar esta elección de todos modos?", 0 when not asked
        Columns<QString, QString, QString, int, QStringList, QString, bool, QByteArray>(
            "choice", "database", "password", "answer", "messages", "kept", "open", "pgpass");
        const QStringList tested{kCorrecta, kProxima};
        const QString noDb = kNoConecta + "la base de datos «{db}_no» no existe en el servidor.";
        const QString keep = noDb + "\n¿Desea guardar esta elección de todos modos?";
        Row("server with a password", "servidor", "{db}", "cla:ve", 0, tested,
            "servidor {db}@55432 morvel", false, QByteArray("{host}:55432:{db}:morvel:cla\\:ve\n"));
        Row("server, password left as it was", "servidor", "{db}", "", 0, tested,
            "servidor {db}@55432 morvel", false, QByteArray());
        Row("no connection: not kept", "servidor", "{db}_no", "x", Msg::No,
            QStringList{noDb, keep}, "archivo", true, QByteArray());
        Row("no connection: kept all the same", "servidor", "{db}_no", "", Msg::Yes,
            QStringList{noDb, keep, kProxima}, "servidor {db}_no@55432 morvel", false,
            QByteArray());
        Row("server without a database", "servidor", "", "x", 0,
            QStringList{"Escriba el nombre de la base de datos del servidor.",
                        "Escriba el nombre de la base de datos del servidor."},
            "archivo", true, QByteArray());
        Row("the data folder's file", "archivo", "", "", 0, QStringList{}, "archivo", false,
            QByteArray());
    }
    void window()
    {
        REQUIRE_SERVER();
        const auto [choice, database, password, answer, messages, kept, open, pgpass] =
            Fetch<QString, QString, QString, int, QStringList, QString, bool, QByteArray>(
                "choice", "database", "password", "answer", "messages", "kept", "open", "pgpass");
        ServerKit::Scratch db;
        QVERIFY(db.ok());
        const DatabaseLocation server = db.location();
        if (answer)
            env->ui().answer("¿Desea guardar esta elección", answer);

        frmBaseDatos w;
        w.load();
        QCOMPARE(w["lblArchivo"].text(), DatabasePath());
        QVERIFY(w["optArchivo"].checked());
        QVERIFY(!w["txtServidor"].enabled() && !w["cmdProbar"].enabled());
        Person p(w);
        p.click(choice == "servidor" ? "optServidor" : "optArchivo");
        QCOMPARE(w["txtServidor"].enabled(), choice == "servidor");
        if (choice == "servidor") {
            QCOMPARE(w["txtPuerto"].text(), QString("5432"));
            p.retype("txtServidor", server.host);
            p.retype("txtPuerto", "55a432");
            p.type("txtBase", withDb(database, db.name()));
            p.type("txtUsuario", server.user);
            p.type("txtContrasena", password);
            p.click("cmdProbar");
        }
        p.click("cmdAceptar");

        QCOMPARE(env->ui().texts(), withDb(messages, db.name()));
        QCOMPARE(::kept(), withDb(kept, db.name()));
        QCOMPARE(w.isLoaded(), open);
        QCOMPARE(ReadBytes(m_pgpass), QByteArray(withDb(QString::fromUtf8(pgpass), db.name())
                                                     .replace("{host}", PgPass::Escape(server.host))
                                                     .toUtf8()));
        if (w.isLoaded())
            p.click("cmdCancelar");
        QVERIFY(!w.isLoaded());
    }

    // A server chosen before comes back in the window; "Cancelar" keeps it,
    // and choosing the file again keeps the file.
    void serverChosenBefore()
    {
        DatabaseLocation server;
        server.kind = DatabaseLocation::Kind::Server;
        server.host = "srv.estudio";
        server.port = 5544;
        server.database = "estudio";
        server.user = "ana";
        DatabaseLocation::setCurrent(server);
        frmBaseDatos w;
        w.load();
        QVERIFY(w["optServidor"].checked() && w["txtBase"].enabled());
        QCOMPARE(w.Eleccion(), server);
        Person(w).click("cmdCancelar");
        QCOMPARE(kept(), QString("servidor estudio@5544 ana"));

        frmBaseDatos again;
        Person p(again);
        p.click("optArchivo");
        p.click("cmdAceptar");
        QCOMPARE(env->ui().texts(), QStringList{kProxima});
        QCOMPARE(kept(), QString("archivo"));
    }

    // The copies the window offers, as a person makes them on the server
    // typed in: the data folder's file into its empty database, then that
    // database into a new file; each asked first, and told what was copied,
    // or declined; a second copy into the same database is refused.
    void copies_data()
    {
        Columns<int>("answer");
        Row("copied", int(Msg::Yes));
        Row("declined", int(Msg::No));
    }
    void copies()
    {
        REQUIRE_SERVER();
        QFETCH(int, answer);
        ServerKit::Scratch db;
        QVERIFY(db.ok());
        Db::exec("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) VALUES "
                 "(1, 'PEREZ JUAN', '20-12345678-6')");
        int rows = 0;
        for (const QString& table : Db::tables())
            rows += Db::count(table);
        const QString told = QString("Se copiaron %1 tablas y %2 filas de %3 a %4.")
                                 .arg(Db::tables().size())
                                 .arg(rows);
        const QString server = db.location().describe();
        const QString file = env->path("copia.db");
        env->ui().setSaveFile(file);
        for (int i = 0; i < (answer == Msg::Yes ? 3 : 2); ++i)
            env->ui().answer("¿Desea continuar?", answer);

        frmBaseDatos w;
        w.load();
        Person p(w);
        p.click("optServidor");
        p.retype("txtServidor", db.location().host);
        p.retype("txtPuerto", "55432");
        p.type("txtBase", db.name());
        p.type("txtUsuario", "morvel");
        p.click("cmdCopiarAlServidor");
        p.click("cmdCopiarAArchivo");
        if (answer == Msg::Yes)
            p.click("cmdCopiarAlServidor");

        const QString toServer = "Se copiará la base de datos del archivo " + DatabasePath() +
                                 " a la base de datos " + server +
                                 " del servidor, que debe estar vacía.\n¿Desea continuar?";
        const QString toFile = "Se copiará la base de datos " + server +
                               " del servidor al archivo nuevo " + file + ".\n¿Desea continuar?";
        QStringList messages{toServer, toFile};
        if (answer == Msg::Yes)
            messages = QStringList{toServer,
                                   told.arg(DatabasePath(), server),
                                   toFile,
                                   told.arg(server, file),
                                   toServer,
                                   "La base de datos " + server +
                                       " del servidor no está vacía: ya tiene tablas. La copia se "
                                       "hace solo en una base de datos vacía.\nNo se copió nada: " +
                                       server + " quedó como estaba."};
        QCOMPARE(env->ui().texts(), messages);
        QCOMPARE(db.query("SELECT ApellidoNombre FROM contribuyentes"),
                 answer == Msg::Yes ? QStringList{"PEREZ JUAN"} : QStringList{});
        QCOMPARE(QFile::exists(file), answer == Msg::Yes);
        QVERIFY(w.isLoaded() && !w["pb"].visible());
        QCOMPARE(kept(), QString("archivo"));
        p.click("cmdCancelar");
    }

    // "Opciones › Base de Datos..." opens the window.
    void menu()
    {
        gPrincipal().load();
        Person(gPrincipal()).click("mnuBaseDatos");
        QCOMPARE(env->ui().shownWindows(), QStringList{"frmBaseDatos"});
    }

    // On real widgets: the server's boxes wake with its option, the typed
    // fields reach the window, the test speaks, and Escape leaves without
    // keeping anything.
    void realWidgets()
    {
        REQUIRE_SERVER();
        ServerKit::Scratch db;
        QVERIFY(db.ok());
        QtUi port;
        setUi(&port);
        Gui::MessageWatch watch;
        frmBaseDatos w;
        Gui::showModal(w, [&] {
            auto* base = Gui::find<QLineEdit>("txtBase");
            QVERIFY(base && !base->isEnabled());
            QCOMPARE(Gui::find<QLineEdit>("txtContrasena")->echoMode(), QLineEdit::Password);
            Gui::find<QRadioButton>("optServidor")->click();
            QVERIFY(base->isEnabled());
            Gui::find<QLineEdit>("txtServidor")->clear();
            Gui::typeInto("txtServidor", db.location().host);
            Gui::find<QLineEdit>("txtPuerto")->clear();
            Gui::typeInto("txtPuerto", "55432");
            Gui::typeInto("txtBase", db.name());
            Gui::typeInto("txtUsuario", "morvel");
            QCOMPARE(w.Eleccion(), db.location());
            QTest::mouseClick(Gui::find<QAbstractButton>("cmdProbar"), Qt::LeftButton);
            QTest::keyClick(Gui::windowWith("txtBase"), Qt::Key_Escape);
            QTRY_VERIFY(!w.isLoaded());
        });
        setUi(&env->ui());
        QCOMPARE(watch.texts(), QStringList{kCorrecta});
        QCOMPARE(kept(), QString("archivo"));
    }
};

QTEST_MAIN(TstBaseDatos)
#include "tst_base_datos.moc"
