#include <QtTest>

#include "Db.h"
#include "Person.h"
#include "TestSupport.h"
#include "desk/BuscadorContribuyentes.h"
#include "shell/Principal.h"

namespace {

const QStringList kDesk = {"PÉREZ JUAN|20-12345678-6", "ÑANDÚ S.A.|30-71234567-1",
                           "Acme SRL|30-50000000-7", "perez hnos|27-22222222-3",
                           "Zapata María|23-33333333-9"};

void seedDesk()
{
    int id = 0;
    for (const QString& row : kDesk)
        Db::insert("Contribuyentes",
                   {"idContribuyente=" + QString::number(++id),
                    "ApellidoNombre=" + row.section('|', 0, 0), "Cuit=" + row.section('|', 1)});
}

QStringList names(const BuscadorContribuyentes& finder, const QVector<int>& found)
{
    QStringList out;
    for (int i : found)
        out << finder.at(i).nombre;
    return out;
}

QStringList gridNames()
{
    QStringList out;
    for (const QStringList& row : gPrincipal().field("gridContribuyentes").rows())
        out << row.at(0);
    return out;
}

} // namespace

// The finder of the main window: what it lists for what one types, in which
// order, and what Enter, a double click and Ctrl+F do.
class TstBuscador : public EnvTest
{
    Q_OBJECT
    void seed() override { seedDesk(); }
    void tearDown() override
    {
        if (gPrincipal().isLoaded())
            gPrincipal().unload();
    }

private slots:
    void filtra_data()
    {
        Columns<QString, int, QStringList>("texto", "orden", "nombres");
        Row("nothing typed lists all by name", "", 1,
            QStringList{"Acme SRL", "ÑANDÚ S.A.", "perez hnos", "PÉREZ JUAN", "Zapata María"});
        Row("accents and case ignored", "perez", 1, QStringList{"perez hnos", "PÉREZ JUAN"});
        Row("Ñ and accents typed plain", "nandu", 1, QStringList{"ÑANDÚ S.A."});
        Row("accents typed match plain names", "ACMÉ", 1, QStringList{"Acme SRL"});
        Row("words in any order", "juan  PEREZ", 1, QStringList{"PÉREZ JUAN"});
        Row("CUIT digits", "3071234", 1, QStringList{"ÑANDÚ S.A."});
        Row("CUIT as masked", "27-2222", 1, QStringList{"perez hnos"});
        Row("name and CUIT together", "perez 2012", 1, QStringList{"PÉREZ JUAN"});
        Row("nothing matches", "gomez", 1, QStringList{});
        Row("by CUIT", "", 2,
            QStringList{"PÉREZ JUAN", "Zapata María", "perez hnos", "Acme SRL", "ÑANDÚ S.A."});
    }
    void filtra()
    {
        QFETCH(QString, texto);
        QFETCH(int, orden);
        QFETCH(QStringList, nombres);
        BuscadorContribuyentes finder;
        finder.Cargar();
        QCOMPARE(names(finder, finder.Filtrar(texto, BuscadorContribuyentes::Orden(orden))),
                 nombres);
    }

    void recentlyOpenedComeFirst()
    {
        BuscadorContribuyentes::RecordarReciente("23-33333333-9");
        BuscadorContribuyentes::RecordarReciente("30-50000000-7");
        BuscadorContribuyentes::RecordarReciente("23-33333333-9");
        BuscadorContribuyentes finder;
        finder.Cargar();
        QCOMPARE(
            names(finder, finder.Filtrar("", BuscadorContribuyentes::Recientes)),
            (QStringList{"Zapata María", "Acme SRL", "ÑANDÚ S.A.", "perez hnos", "PÉREZ JUAN"}));
        // a recent one that does not match stays out
        QCOMPARE(names(finder, finder.Filtrar("perez", BuscadorContribuyentes::Recientes)),
                 (QStringList{"perez hnos", "PÉREZ JUAN"}));
        for (int i = 0; i < 15; ++i)
            BuscadorContribuyentes::RecordarReciente(QString::number(i));
        QCOMPARE(BuscadorContribuyentes::ListaRecientes().size(),
                 BuscadorContribuyentes::kRecientes);
        QCOMPARE(BuscadorContribuyentes::ListaRecientes().first(), QString("14"));
    }

    void typingFiltersTheMainWindowsList()
    {
        Person person(gPrincipal());
        QCOMPARE(gridNames().size(), 5);
        QCOMPARE(gPrincipal()["lblCantidad"].text(), QString("5 de 5 contribuyentes"));
        person.type("txtBuscar", "PÉR");
        QCOMPARE(gridNames(), (QStringList{"perez hnos", "PÉREZ JUAN"}));
        QCOMPARE(gPrincipal()["lblCantidad"].text(), QString("2 de 5 contribuyentes"));
        person.choose("cboOrden", "Por CUIT");
        QCOMPARE(gridNames(), (QStringList{"PÉREZ JUAN", "perez hnos"}));
        person.retype("txtBuscar", "");
        QCOMPARE(gridNames().size(), 5);
        // the menu list stays as it was
        QCOMPARE(gPrincipal()["mnuListadoContribuyentes"].itemText(1),
                 QString("2: ÑANDÚ S.A. - 30-71234567-1"));
    }

    void enterAndDoubleClickOpenTheTaxpayerAndMakeItRecent()
    {
        QStringList captions;
        auto record = [&] {
            env->ui().onShow("ContribuyentesDatos",
                             [&](Controller& w) { captions << w.caption(); });
        };
        record();
        Person person(gPrincipal());
        person.type("txtBuscar", "zapata");
        person.key("txtBuscar", KeyCode::Return);
        QCOMPARE(captions, QStringList{"Contribuyente: Zapata María - 23-33333333-9"});
        person.retype("txtBuscar", "acme");
        record();
        person.dblClick("gridContribuyentes", 0);
        QCOMPARE(captions.last(), QString("Contribuyente: Acme SRL - 30-50000000-7"));
        QCOMPARE(BuscadorContribuyentes::ListaRecientes(),
                 (QStringList{"30-50000000-7", "23-33333333-9"}));
        person.retype("txtBuscar", "");
        QCOMPARE(gridNames().mid(0, 2), (QStringList{"Acme SRL", "Zapata María"}));
        // a menu opening counts as recent too
        person.click("mnuListadoContribuyentes", 0);
        QCOMPARE(BuscadorContribuyentes::ListaRecientes().first(), QString("20-12345678-6"));
    }

    void ctrlFReachesTheSearchBox()
    {
        Person person(gPrincipal());
        person.focus("gridContribuyentes");
        person.key("gridContribuyentes", 'F', 2);
        QCOMPARE(gPrincipal().focused(), QString("txtBuscar"));
    }

    void aNewTaxpayerAppearsAfterTheDialog()
    {
        Person person(gPrincipal());
        QCOMPARE(gridNames().size(), 5);
        Db::insert("Contribuyentes",
                   {"idContribuyente=9", "ApellidoNombre=Nuevo SA", "Cuit=30-99999999-1"});
        gPrincipal().FillMenu();
        person.type("txtBuscar", "nuevo");
        QCOMPARE(gridNames(), QStringList{"Nuevo SA"});
    }
};

QTEST_GUILESS_MAIN(TstBuscador)
#include "tst_buscador.moc"
