#include <QtTest>

#include "Db.h"
#include "Globals.h"
#include "shell/MMain.h"
#include "Person.h"
#include "shell/Principal.h"
#include "RegionalSettings.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "database/Schema.h"

namespace {

QStringList menuTexts()
{
    QStringList out;
    for (const ListItem& item : gPrincipal().field("mnuListadoContribuyentes").items())
        out << item.text + (item.enabled ? "" : " [off]");
    return out;
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

    void secondStartChangesNothing()
    {
        QVERIFY(Main(env->dataPath()));
        Db::insert("Contribuyentes",
                   {"idContribuyente=1", "ApellidoNombre=PEREZ JUAN", "Cuit=20-12345678-6"});
        Db::insert("F976", {"Codigo=X", "BaseImponible=1.234,50"});
        gPrincipal().unload();
        const QString before = Db::dump();
        CloseDatabase();
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(Db::dump(), before);
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
        QFETCH(QStringList, rows);
        QFETCH(QStringList, menu);
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

    void notADatabaseIsKeptAndTheWindowOpensEmpty()
    {
        const QByteArray junk = QByteArray("not a database, but a person's file. ").repeated(100);
        QVERIFY(WriteBytes(env->dataPath() + "/Morvel.db", junk));
        QVERIFY(Main(env->dataPath()));
        QCOMPARE(menuTexts(), QStringList{"(Vacio) [off]"});
        CloseDatabase();
        QCOMPARE(ReadBytes(env->dataPath() + "/Morvel.db"), junk);
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
