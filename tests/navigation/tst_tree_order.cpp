#include <QtTest>

#include "Db.h"
#include "NavigationData.h"
#include "TestSupport.h"
#include "TreeModel.h"

using namespace nav;

namespace {

QString leyenda(const QString& form)
{
    return Db::column("SELECT LeyendaGenerado FROM Formularios WHERE idFormulario = '" + form + "'")
        .value(0);
}

// A declaration's row as saved: "form|mm-yyyy" or "form|mm-yyyy|ctrl|date".
void save(const QString& row)
{
    const QStringList part = row.split(u'|');
    const int ctrl = part.value(2, "0").toInt();
    Db::insert("TPadrones_Formularios",
               {"Padron=" + Pad13("1"), "Objeto=" + Pad13("1"), "Periodo=" + part.at(1),
                "idFormulario=" + part.at(0),
                QString("Rectificativa=") + (ctrl == 0 ? "False" : "Verdadero"),
                "FechaRectificativa=" + part.value(3, "0"), "ctrl=" + QString::number(ctrl)});
}

// The declarations the tree shows, in its order: "yyyy/mm caption".
QStringList declarations(const TreeModel& tree)
{
    QStringList out;
    const int premises = tree.indexOf(PremisesKey("1"));
    for (int year : premises < 0 ? QVector<int>{} : tree.node(premises).children)
        for (int month : tree.node(year).children)
            for (int node : tree.node(month).children)
                if (!tree.node(node).text.startsWith("Nuevo - "))
                    out << tree.node(year).text.section(": ", 1) + u'/' +
                               tree.node(month).text.section(": ", 1) + u' ' + tree.node(node).text;
    return out;
}

} // namespace

// A taxpayer's tree lists the declarations of each premises by year, month,
// the form's place among the forms, and the order they were saved in,
// whatever order they were saved in and however their rows are written.
class TstTreeOrder : public EnvTest
{
    Q_OBJECT

    void seed() override
    {
        AddTaxpayer(1, "PEREZ JUAN", kCuit);
        AddPremises("1", "0");
    }

private slots:
    void declarationsInTheTreesOrder_data()
    {
        // saved: the rows in the order saved; more: statements run after
        // them; shown: the declarations the tree lists, {F...} a form's legend
        Columns<QStringList, QStringList, QStringList>("saved", "more", "shown");
        Row("forms in their place, not as saved",
            QStringList{"F977|01-2010", "F978|01-2010", "F976|01-2010"}, QStringList{},
            QStringList{"2010/01 {F976}", "2010/01 {F978}", "2010/01 {F977}"});
        Row("years and months in order, not as saved",
            QStringList{"F976|03-2011", "F976|12-2010", "F976|01-2011", "F976|02-2009"},
            QStringList{},
            QStringList{"2009/02 {F976}", "2010/12 {F976}", "2011/01 {F976}", "2011/03 {F976}"});
        Row("versions in the order saved",
            QStringList{"F976|01-2010", "F978|01-2010", "F976|01-2010|1|15-02-2010",
                        "F976|01-2010|2|10-03-2010"},
            QStringList{},
            QStringList{"2010/01 {F976}", "2010/01 {F976} (Rectif. N° 1 15-02-2010)",
                        "2010/01 {F976} (Rectif. N° 2 10-03-2010)", "2010/01 {F978}"});
        Row("a form id in small letters joins its form",
            QStringList{"F978|01-2010", "f976|01-2010"}, QStringList{},
            QStringList{"2010/01 {F976}", "2010/01 {F978}"});
        Row("a month written with one digit",
            QStringList{"F976|1-2010", "F976|01-2010", "F978|1-2010"}, QStringList{},
            QStringList{"2010/01 {F976}", "2010/1- {F976}", "2010/1- {F978}"});
        Row("a form that no longer exists is left out",
            QStringList{"F976|01-2010", "F999|01-2010", "F978|01-2010"}, QStringList{},
            QStringList{"2010/01 {F976}", "2010/01 {F978}"});
        Row("forms in a place of their own",
            QStringList{"F976|01-2010", "F978|01-2010", "F977|01-2010"},
            QStringList{"UPDATE Formularios SET Orden = 0 WHERE idFormulario = 'F977'"},
            QStringList{"2010/01 {F977}", "2010/01 {F976}", "2010/01 {F978}"});
        Row("premises listed twice",
            QStringList{"F976|01-2010", "F976|01-2010|1|15-02-2010", "F978|01-2010"},
            QStringList{"INSERT INTO tPadronesComerciales (cuit, padron, objeto, regimen, "
                        "retencion, percepcion) SELECT cuit, padron, objeto, regimen, retencion, "
                        "percepcion FROM tPadronesComerciales"},
            QStringList{"2010/01 {F976}", "2010/01 {F976} (Rectif. N° 1 15-02-2010)",
                        "2010/01 {F978}"});
        Row("no declaration", QStringList{}, QStringList{}, QStringList{});
    }
    void declarationsInTheTreesOrder()
    {
        QFETCH(QStringList, saved);
        QFETCH(QStringList, more);
        QFETCH(QStringList, shown);
        for (const QString& row : saved)
            save(row);
        for (const QString& sql : more)
            Db::exec(sql);
        for (QString& line : shown)
            for (const char* form : {"F976", "F977", "F978"})
                line.replace(QString("{%1}").arg(form), leyenda(form));
        auto window = OpenTaxpayer();
        QCOMPARE(declarations((*window)["trvDatos"].tree()), shown);
        window->unload();
    }
};

QTEST_GUILESS_MAIN(TstTreeOrder)
#include "tst_tree_order.moc"
