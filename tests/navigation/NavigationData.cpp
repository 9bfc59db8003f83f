#include "NavigationData.h"

#include <functional>

#include "Globals.h"
#include "Recordset.h"
#include "TreeModel.h"
#include "Util.h"
#include "ZoAccess.h"

namespace nav {

const QString kCuit = QStringLiteral("20123456786");

namespace {

void insert(const QString& table, const QStringList& pairs)
{
    QStringList columns, values;
    for (const QString& p : pairs) {
        columns << p.section(u'=', 0, 0);
        values << u'\'' + p.section(u'=', 1).replace(u'\'', QStringLiteral("''")) + u'\'';
    }
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(table, columns.join(u','), values.join(u','));
    if (!gAccess().Execute(sql))
        qFatal("test data not written: %s", qPrintable(sql));
}

} // namespace

QString Pad13(const QString& text)
{
    return text.rightJustified(13, u'0');
}

void AddTaxpayer(int id, const QString& name, const QString& cuit)
{
    insert("Contribuyentes", {"idContribuyente=" + QString::number(id), "ApellidoNombre=" + name,
                              "Cuit=" + FormatCuit(cuit)});
}

void AddPremises(const QString& padron, const QString& regimen, const QString& retencion,
                 const QString& percepcion, const QString& objeto, const QString& principal,
                 const QString& cuit)
{
    insert("tPadronesComerciales",
           {"cuit=" + cuit, "padron=" + Pad13(padron), "objeto=" + Pad13(objeto),
            "regimen=" + regimen, "retencion=" + retencion, "percepcion=" + percepcion,
            "Principal=" + principal, "razon_social=RAZON " + padron, "calle_numero=SAN MARTIN 100",
            "localidad_departamento=CAPITAL", "cp=5500"});
}

QString Declaration::rectificativa() const
{
    return ctrl == 0 ? QStringLiteral("False") : QStringLiteral("Verdadero");
}

QString AddDeclaration(const Declaration& d)
{
    const QStringList identity = {
        "Padron=" + Pad13(d.padron),     "Objeto=" + Pad13(d.objeto),
        "Periodo=" + d.periodo,          "Rectificativa=" + d.rectificativa(),
        "FechaRectificativa=" + d.fecha, "ctrl=" + QString::number(d.ctrl)};
    QString codigo;
    if (d.form != "F986" && d.form != "F988")
        codigo = Pad13(d.padron) + d.periodo.left(2) + d.periodo.right(4) + Pad13(d.objeto) +
                 (d.ctrl == 0 ? u'O' : u'R');
    insert(d.form, identity + d.columns +
                       (codigo.isEmpty() ? QStringList{} : QStringList{"Codigo=" + codigo}));
    insert("TPadrones_Formularios", identity + QStringList{"idFormulario=" + d.form});
    return codigo;
}

void AddLine(const QString& form, const QString& codigo, const QString& fecha, const QString& ctrl,
             const QString& codigoDetalle, const QStringList& columns)
{
    insert(form + "_Detalle",
           columns + QStringList{"Codigo=" + codigo, "FechaRectificativa=" + fecha, "ctrl=" + ctrl,
                                 "CodigoDetalle=" + codigoDetalle});
}

QStringList Column(const QString& sql)
{
    QStringList out;
    const RecordsetPtr rs = gAccess().FillRecordSet(sql);
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

int Count(const QString& table, const QString& where)
{
    return Column("SELECT COUNT(*) FROM " + table + (where.isEmpty() ? "" : " WHERE " + where))
        .value(0)
        .toInt();
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
