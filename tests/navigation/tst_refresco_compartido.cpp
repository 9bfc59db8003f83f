#include <QProcess>
#include <QtTest>

#include "Globals.h"
#include "NavigationData.h"
#include "TestSupport.h"
#include "Transaction.h"
#include "TreeModel.h"

using namespace nav;

namespace {

const char* const kOtherStation = "--otra-estacion";

// What the other workstation saves, each in one unit as a form's save is.
void saveAsAnotherStation(const QString& what)
{
    SaveWhole([&] {
        if (what == "declaracion")
            AddDeclaration(Declaration("F976", "03-2010"));
        else if (what == "anio")
            AddDeclaration(Declaration("F976", "05-2011"));
        else if (what == "rectificativa")
            AddDeclaration(Declaration("F976", "01-2010", 1, "15-02-2010"));
        else if (what == "borrada")
            Db::exec("DELETE * FROM TPadrones_Formularios WHERE idFormulario = 'F978'");
        return true;
    });
}

// The other workstation: a process of its own on the same database (the
// data folder's file, or the server that MORVEL_DATABASE_SERVER names).
int otherStation(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    ScriptedUi person;
    setUi(&person);
    SetAppPath(QString::fromLocal8Bit(argv[2]));
    gDecimalSymbol = QStringLiteral(",");
    saveAsAnotherStation(QString::fromLocal8Bit(argv[3]));
    CloseDatabase();
    setUi(nullptr);
    return ErrorsLogged() || !person.messages().isEmpty() ? 1 : 0;
}

QString leyenda(const QString& form)
{
    return Db::column("SELECT LeyendaGenerado FROM Formularios WHERE idFormulario = '" + form + "'")
        .value(0);
}

} // namespace

// A taxpayer's tree shows what another workstation saved on the same
// database once the person's tree is refreshed: by opening the taxpayer
// again, or as a form closing after a save refreshes it.
class TstRefrescoCompartido : public EnvTest
{
    Q_OBJECT

    void seed() override
    {
        AddTaxpayer(1, "PEREZ JUAN", kCuit);
        AddPremises("1", "0");
        AddDeclaration(Declaration("F976", "01-2010"));
        AddDeclaration(Declaration("F978", "01-2010"));
    }

private slots:
    void othersSaves_data()
    {
        // caption: the node the month must show ("" when it must show none of
        // `gone`)
        Columns<QString, QString, QString, QString, QString>("what", "refresh", "year", "month",
                                                             "caption");
        Row("a new declaration, taxpayer opened again", "declaracion", "reopen", "2010", "03",
            "{F976}");
        Row("a new declaration, after a form's save", "declaracion", "save", "2010", "03",
            "{F976}");
        Row("a new year", "anio", "reopen", "2011", "05", "{F976}");
        Row("a rectification", "rectificativa", "save", "2010", "01",
            "{F976} (Rectif. N° 1 15-02-2010)");
        Row("a declaration deleted", "borrada", "reopen", "2010", "01", "-{F978}");
    }
    void othersSaves()
    {
        QFETCH(QString, what);
        QFETCH(QString, refresh);
        QFETCH(QString, year);
        QFETCH(QString, month);
        QFETCH(QString, caption);
        const bool gone = caption.startsWith('-');
        caption = caption.mid(gone ? 1 : 0)
                      .replace("{F976}", leyenda("F976"))
                      .replace("{F978}", leyenda("F978"));
        const QString monthKey = MonthKey("1", year, month);
        auto window = OpenTaxpayer();
        QCOMPARE(ChildCaptions((*window)["trvDatos"].tree(), monthKey).contains(caption), gone);

        QProcess other;
        other.start(QCoreApplication::applicationFilePath(),
                    {kOtherStation, env->dataPath(), what});
        QVERIFY(other.waitForFinished(60000));
        QVERIFY2(other.exitCode() == 0, other.readAllStandardError().constData());

        if (refresh == "reopen") {
            window->unload();
            window = OpenTaxpayer();
        } else {
            window->ActualizoVista();
        }
        QCOMPARE(ChildCaptions((*window)["trvDatos"].tree(), monthKey).contains(caption), !gone);
        window->unload();
    }
};

int main(int argc, char* argv[])
{
    if (argc > 3 && QByteArray(argv[1]) == kOtherStation)
        return otherStation(argc, argv);
    QCoreApplication app(argc, argv);
    TstRefrescoCompartido test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_refresco_compartido.moc"
