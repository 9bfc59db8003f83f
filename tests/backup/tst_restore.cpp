#include <QtTest>

#include "BackupTestKit.h"
#include "Person.h"
#include "TestSupport.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "database/Schema.h"

namespace {

const QString kFailed = "La restauración no se pudo realizar correctamente.";
const QString kDone = "La restauración se realizó correctamente. Se cerrará la aplicación.";
const QString kConfirm = "Esta acción restaurará la base de datos. Sus datos actuales se "
                         "perderán.\n¿Desea continuar?";

// A backup of the current database, made by the program; its path.
QString makeBackup()
{
    InitBackupSettings();
    if (!BackupDatabase())
        return {};
    return Kit::folder() + "/Morvel." + GetBackupSetting(BackupKey::FechaUlt, QString());
}

struct RestoreRun {
    bool stillOpen = false;
    QStringList statuses;
    int lastBar = 0;
};

// The person opens "Copia de Seguridad", asks to restore (from `folder`
// when given), chooses the item `index` and confirms with `answer`.
RestoreRun restoreThroughDialogs(TestEnv& env, const QString& folder, int index,
                                 int answer = Msg::Yes)
{
    RestoreRun run;
    env.ui().answer("¿Desea buscar la ubicación", folder.isEmpty() ? Msg::No : Msg::Yes);
    env.ui().setFolder(folder);
    env.ui().answer("Esta acción restaurará", answer);
    env.ui().onShow("frmBackupArchivos", [&](Controller& w) {
        QObject::connect(&w["lbl"], &Field::changed, [&](Field* f, Field::Aspect a) {
            if (a == Field::TextAspect && !f->text().isEmpty())
                run.statuses << f->text();
        });
        QObject::connect(&w["pb"], &Field::changed, [&](Field* f, Field::Aspect) {
            run.lastBar = qMax(run.lastBar, f->value());
        });
        Person p(w);
        p.choose("lst0", index);
        p.click("cmdAccion");
        run.stillOpen = w.isLoaded();
        if (w.isLoaded())
            p.click("cmdSalir");
    });
    frmBackup dialog;
    dialog.load();
    Person(dialog).click("cmdRestaurar");
    return run;
}

} // namespace

// Restoring a backup: the taxpayers come back, an older database is brought
// up to date by the next start, and a file that is no backup of this program
// changes nothing.
class TstRestore : public EnvTest
{
    Q_OBJECT
public:
    TstRestore() : EnvTest(false) {}

private slots:

    void goodBackupBringsBackItsTaxpayers_data()
    {
        QTest::addColumn<QString>("where");
        QTest::newRow("from the backup folder") << "here";
        QTest::newRow("made on another machine") << "another machine";
        QTest::newRow("onto a database gone missing") << "database gone";
    }
    void goodBackupBringsBackItsTaxpayers()
    {
        QFETCH(QString, where);
        QTemporaryDir usb;
        env->createDatabase();
        Kit::addTaxpayers({"ACOSTA", "BENITEZ"});
        const QString archive = makeBackup();
        QVERIFY(!archive.isEmpty());
        QString folder;
        if (where == "another machine") {
            QVERIFY(QFile::copy(archive, usb.filePath(QFileInfo(archive).fileName())));
            env.reset();
            env = std::make_unique<TestEnv>(); // its own data folder and settings
            env->createDatabase();
            folder = usb.path();
        }
        Kit::addTaxpayers({"CASTRO"});
        if (where == "database gone") {
            CloseDatabase();
            QVERIFY(QFile::remove(DatabasePath()));
        }

        const RestoreRun run = restoreThroughDialogs(*env, folder, 0);

        QVERIFY(!run.stillOpen);
        QVERIFY(env->ui().programEnded());
        QCOMPARE(run.statuses, (QStringList{"Restaurando base de datos desde archivo...",
                                            "Verificando base de datos..."}));
        QCOMPARE(run.lastBar, 100);
        QCOMPARE(env->ui().texts().last(), kDone);
        QCOMPARE(env->ui().messages().at(1).text, kConfirm);
        QCOMPARE(env->ui().messages().at(1).title, QString("Restaurar"));
        QVERIFY(env->ui().messages().at(1).style & Msg::DefaultButton2);
        QCOMPARE(Kit::taxpayers(), (QStringList{"ACOSTA", "BENITEZ"}));
        QVERIFY(QDir(gAppPath + "/tmp").isEmpty()); // no work left behind
    }

    void olderLevelIsUpgradedByTheNextStart()
    {
        QVERIFY(EnsureBaseSchema()); // the tables as first installed
        Kit::addTaxpayers({"ANTIGUO"});
        Db::exec("INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, BaseImponible, ctrl) "
                 "VALUES ('C1', '0000000000001', '0000000000002', '01-2010', '1,234.50', '0')");
        QVERIFY(!Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));
        const QString archive = makeBackup();
        QVERIFY(!archive.isEmpty());

        CreateCurrentDatabase();
        Kit::addTaxpayers({"NUEVO"});
        QVERIFY(Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));

        QVERIFY(RestoreDatabase(archive));
        QCOMPARE(Kit::taxpayers(), QStringList{"ANTIGUO"});
        QVERIFY(!Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));

        CreateCurrentDatabase(); // what the next start does
        QVERIFY(Db::columns("F976").contains("Guidv", Qt::CaseInsensitive));
        QCOMPARE(Kit::taxpayers(), QStringList{"ANTIGUO"});
        QCOMPARE(gAccess().GetString("SELECT BaseImponible FROM F976 WHERE Codigo = 'C1'"),
                 QString("1.234,50"));
    }

    void refusedFileChangesNothing_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("good backup, but the person says no") << "answer no";
        QTest::newRow("no archive") << "text";
        QTest::newRow("cut archive") << "cut";
        QTest::newRow("archive without Morvel.db") << "other member";
        QTest::newRow("Morvel.db that is no database") << "garbage member";
        QTest::newRow("database of another program") << "foreign database";
        QTest::newRow("damaged database") << "damaged database";
    }
    void refusedFileChangesNothing()
    {
        QFETCH(QString, kind);
        env->createDatabase();
        Kit::addTaxpayers({"INTACTO"});
        const QString good = makeBackup();
        QVERIFY(!good.isEmpty());
        const QString bad = Kit::folder() + "/Morvel.20000101120000";
        QVERIFY(QFile::rename(good, bad));
        prepareRefusedFile(kind, bad);
        CloseDatabase();
        const QByteArray before = ReadBytes(DatabasePath());
        QVERIFY(!before.isEmpty());

        const bool asked = kind != "answer no";
        const RestoreRun run =
            restoreThroughDialogs(*env, QString(), 0, asked ? Msg::Yes : Msg::No);

        QVERIFY(run.stillOpen);
        QVERIFY(!env->ui().programEnded());
        QCOMPARE(env->ui().texts().contains(kFailed), asked);
        QVERIFY(!env->ui().texts().contains(kDone));
        QCOMPARE(ReadBytes(DatabasePath()), before);
        QCOMPARE(Kit::taxpayers(), QStringList{"INTACTO"});
    }

private:
    void prepareRefusedFile(const QString& kind, const QString& path)
    {
        QTemporaryDir work;
        if (kind == "text") {
            Kit::write(path, "Esto no es un archivo comprimido.\n");
        } else if (kind == "cut") {
            const QByteArray whole = ReadBytes(path);
            Kit::write(path, whole.left(whole.size() / 2));
        } else if (kind == "other member") {
            QVERIFY(Kit::zip(path, {{"Otro.db", ReadBytes(DatabasePath())}}));
        } else if (kind == "garbage member") {
            QVERIFY(Kit::zip(path, {{"Morvel.db", QByteArray(70000, 'q')}}));
        } else if (kind == "foreign database") {
            ZoAccess foreign;
            foreign.SetConnectionString(DefaultConnectionString(work.filePath("ajena.db")));
            QVERIFY(foreign.Execute("CREATE TABLE Clientes (Nombre TEXT)"));
            foreign.Dispose();
            CloseDatabase();
            QVERIFY(Kit::zip(path, {{"Morvel.db", ReadBytes(work.filePath("ajena.db"))}}));
        } else if (kind == "damaged database") {
            CloseDatabase();
            QByteArray bytes = ReadBytes(DatabasePath());
            // Scribbles over the pages after the first: the header still
            // reads as a database, the tables do not.
            for (int i = 4096; i < bytes.size(); i += 7)
                bytes[i] = char(i * 31);
            QVERIFY(Kit::zip(path, {{"Morvel.db", bytes}}));
        }
    }
};

QTEST_GUILESS_MAIN(TstRestore)
#include "tst_restore.moc"
