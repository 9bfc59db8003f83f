#include "NavigationData.h"

#include <functional>

#include "TreeModel.h"
#include "Util.h"

namespace nav {

void AddPremises(const QString& padron, const QString& regimen, const QString& retencion,
                 const QString& percepcion, const QString& objeto, const QString& principal,
                 const QString& cuit)
{
    Seed::AddPremises(padron, objeto,
                      {"regimen=" + regimen, "retencion=" + retencion, "percepcion=" + percepcion,
                       "Principal=" + principal, "cuit=" + cuit});
}

QString PremisesKey(const QString& padron, const QString& objeto)
{
    return "Padrón N° " + Pad13(padron) + " - Objeto N° " + Pad13(objeto);
}

QString MonthKey(const QString& padron, const QString& yyyy, const QString& mm)
{
    return PremisesKey(padron) + ";Anio=" + yyyy + ";Periodo=" + mm;
}

QString NodeKey(const Declaration& d)
{
    return PremisesKey(d.padron, d.objeto) + ";Anio=" + d.periodo.right(4) +
           ";Periodo=" + d.periodo.left(2) + ";Formulario=" + d.form +
           ";Nuevo=Falso;ConDatos=Verdadero;Rectificativa=" + d.rectificativa() +
           ";FechaRectificativa=" + d.fecha + ";ctrl=" + QString::number(d.ctrl);
}

QStringList ChildCaptions(const TreeModel& tree, const QString& key)
{
    QStringList out;
    const int index = tree.indexOf(key);
    if (index < 0)
        return {"<no node " + key + u'>'};
    for (int child : tree.node(index).children)
        out << tree.node(child).text;
    return out;
}

QStringList NewForms(const TreeModel& tree, const QString& monthKey)
{
    QStringList out;
    for (const QString& c : ChildCaptions(tree, monthKey))
        if (c.startsWith("Nuevo - "))
            out << c.section(": ", -1);
    return out;
}

QString ChildKey(const TreeModel& tree, const QString& key, const QString& caption)
{
    const int index = tree.indexOf(key);
    for (int child : index < 0 ? QVector<int>{} : tree.node(index).children)
        if (tree.node(child).text.startsWith(caption))
            return tree.node(child).key;
    return {};
}

QStringList Outline(const TreeModel& tree)
{
    QStringList out;
    std::function<void(int, int)> walk = [&](int index, int depth) {
        out << QString(depth * 2, u' ') + tree.node(index).text;
        for (int child : tree.node(index).children)
            walk(child, depth + 1);
    };
    for (int i = 0; i < tree.count(); ++i)
        if (tree.node(i).parent < 0)
            walk(i, 0);
    return out;
}

std::unique_ptr<ContribuyentesDatos> OpenTaxpayer()
{
    auto window = std::make_unique<ContribuyentesDatos>();
    window->IdContribuyente = 1;
    window->NombreContribuyente = "PEREZ JUAN";
    window->CuitContribuyente = FormatCuit(kCuit);
    window->load();
    return window;
}

} // namespace nav
