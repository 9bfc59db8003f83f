#include <QtTest>

#include "Person.h"
#include "RegistryTestData.h"
#include "TestSupport.h"
#include "registry/Busqueda.h"

namespace {

const QString kAll = Busqueda::ActivitiesSql(QString());

QStringList entries(Busqueda& w)
{
    QStringList out;
    for (const ListItem& item : w["lstRegistros"].items())
        out << QString::number(item.data) + " " + item.text;
    return out;
}

QString premisesSql(const QString& padron)
{
    return "SELECT ACTP, ACTP_DESC,  ACT1, ACT1_DESC,  ACT2, ACT2_DESC,  ACT3, ACT3_DESC,  ACT4, "
           "ACT4_DESC,  ACT5, ACT5_DESC  FROM ACTIVIDADES_X_PADRONES WHERE PADRON = '" +
           padron + "' AND OBJETO = '0000000000001' ";
}

} // namespace

// The pick-list of activities: what it lists, how typing narrows it, and what
// each way of closing hands back.
class TstBusqueda : public EnvTest
{
    Q_OBJECT
private slots:
    void listsTheQueryAndCountsIt()
    {
        Busqueda w;
        w.SelectCommandText = kAll;
        w.load();
        const int total = Db::count("tActividades");
        QVERIFY(total > 100);
        QCOMPARE(w["lstRegistros"].listCount(), total);
        QCOMPARE(w["StatusBar"].text(), "Total reg.: " + QString::number(total));
        // ordered by name, the code behind each entry
        QVERIFY(entries(w).contains(Reg::kBovino + " " + Reg::kBovinoName));
        QVERIFY(w["lstRegistros"].itemText(0) < w["lstRegistros"].itemText(1));
    }

    void typingNarrows_data()
    {
        Columns<QString, QStringList>("typed", "expected");
        Row("a word", "bovino", QStringList{Reg::kBovino + " " + Reg::kBovinoName});
        Row("any case", "GANADO BOV", QStringList{Reg::kBovino + " " + Reg::kBovinoName});
        Row("inside the name", "ción de fiambres",
            QStringList{Reg::kFiambres + " " + Reg::kFiambresName});
        // Case is ignored for accented letters too.
        Row("ELABORACIÓN", "ELABORACIÓN DE QUESOS", QStringList{"105020 Elaboración de quesos"});
        Row("FABRICACIÓN", "FABRICACIÓN DE FIAMBRES",
            QStringList{Reg::kFiambres + " " + Reg::kFiambresName});
        Row("DE PANADERÍA", "DE PANADERÍA N",
            QStringList{"107129 Elaboración de productos de panadería n.c.p."});
        Row("nothing matches", "zzzz", QStringList{});
        Row("a quote", "o'higgins", QStringList{});
    }
    void typingNarrows()
    {
        const auto [typed, expected] = Fetch<QString, QStringList>("typed", "expected");
        Busqueda w;
        w.SelectCommandText = kAll;
        const QString total = w["StatusBar"].text();
        Person(w).type("txtBuscar", typed);
        QCOMPARE(entries(w), expected);
        QCOMPARE(w.SelectCommandText, Busqueda::ActivitiesSql(typed));
        // only loading writes the count
        QCOMPARE(w["StatusBar"].text(), total);
        // a quote typed into the search breaks no statement
        QVERIFY(!ErrorsLogged());
        // erasing the text brings every activity back
        Person(w).retype("txtBuscar", "");
        QCOMPARE(w["lstRegistros"].listCount(), Db::count("tActividades"));
    }

    void premisesMode_data()
    {
        Columns<QString, QStringList>("form", "expected");
        const QStringList premises{"101011 VENTA", "101040 SERVICIOS", "452101 LAVADO"};
        Row("F976", "F976", premises);
        Row("F2001", "F2001", premises);
        Row("F978", "F978", premises);
        // any other form reads the row as a plain code and name
        Row("F977", "F977", QStringList{"101011 VENTA"});
    }
    void premisesMode()
    {
        const auto [form, expected] = Fetch<QString, QStringList>("form", "expected");
        // an empty description and a repeated one are left out
        Db::insert("Actividades_x_padrones",
                   {"cuit=" + Reg::kCuit, "padron=0000000000007", "objeto=0000000000001",
                    "ActP=101011", "ActP_Desc=VENTA", "Act1=101040", "Act1_Desc=SERVICIOS",
                    "Act2=", "Act2_Desc=", "Act3=101011", "Act3_Desc=VENTA", "Act4=452101",
                    "Act4_Desc=LAVADO"});
        Busqueda w;
        w.SelectCommandText = premisesSql("0000000000007");
        w.NombreFormulario = form;
        w.load();
        QCOMPARE(entries(w), expected);
        QCOMPARE(w["StatusBar"].text(), "Total reg.: " + QString::number(expected.size()));
        // typing searches every activity, not the premises' ones
        Person(w).type("txtBuscar", "bovino");
        QCOMPARE(entries(w), QStringList{Reg::kBovino + " " + Reg::kBovinoName});
    }

    void closing_data()
    {
        Columns<QString, bool, QString, QString>("how", "select", "id", "description");
        const QString id = Reg::kFiambres, name = Reg::kFiambresName;
        Row("enter", "enter", true, id, name);
        Row("double click", "dblclick", true, id, name);
        Row("close box copies too", "box", true, id, name);
        Row("escape keeps them empty", "escape", true, QString(), QString());
        Row("nothing selected", "box", false, QString(), QString());
        Row("enter, nothing selected", "enter", false, QString(), QString());
    }
    void closing()
    {
        const auto [how, select, id, description] =
            Fetch<QString, bool, QString, QString>("how", "select", "id", "description");
        Busqueda w;
        w.SelectCommandText = kAll;
        env->ui().onShow("Busqueda", [&](Controller&) {
            Person p(w);
            p.type("txtBuscar", "fiambres");
            p.key("txtBuscar", KeyCode::Down);
            if (select)
                p.choose("lstRegistros", 0);
            if (how == "enter")
                p.key("lstRegistros", KeyCode::Return);
            else if (how == "escape")
                p.key("lstRegistros", KeyCode::Escape);
            else if (how == "dblclick")
                p.dblClick("lstRegistros");
            if (how != "box")
                QVERIFY(!w.isLoaded());
        });
        w.show(true);
        QVERIFY(!w.isLoaded());
        QCOMPARE(w.Id, id);
        QCOMPARE(w.Description, description);
    }
};

QTEST_GUILESS_MAIN(TstBusqueda)
#include "tst_busqueda.moc"
