#include "Seed.h"

#include "Db.h"
#include "Util.h"

namespace Seed {

QString Pad13(const QString& text)
{
    return text.rightJustified(13, u'0');
}

void AddTaxpayer(int id, const QString& name, const QString& cuit)
{
    Db::insert("Contribuyentes",
               {"idContribuyente=" + QString::number(id), "ApellidoNombre=" + name,
                "Cuit=" + (cuit.contains(u'-') ? cuit : FormatCuit(cuit))});
}

void AddPremises(const QString& padron, const QString& objeto, const QStringList& more)
{
    QStringList pairs{"cuit=" + kCuit,
                      "padron=" + Pad13(padron),
                      "objeto=" + Pad13(objeto),
                      "regimen=0",
                      "retencion=0",
                      "percepcion=0",
                      "razon_social=RAZON " + padron,
                      "calle_numero=SAN MARTIN 100",
                      "localidad_departamento=CAPITAL",
                      "cp=5500"};
    for (const QString& pair : more) {
        const QString name = pair.section(u'=', 0, 0) + u'=';
        pairs.erase(std::remove_if(
                        pairs.begin(), pairs.end(),
                        [&](const QString& p) { return p.startsWith(name, Qt::CaseInsensitive); }),
                    pairs.end());
        pairs << pair;
    }
    Db::insert("tPadronesComerciales", pairs);
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
    Db::insert(d.form, identity + d.columns +
                           (codigo.isEmpty() ? QStringList{} : QStringList{"Codigo=" + codigo}));
    Db::insert("TPadrones_Formularios", identity + QStringList{"idFormulario=" + d.form});
    return codigo;
}

void AddLine(const QString& form, const QString& codigo, const QString& fecha, const QString& ctrl,
             const QString& codigoDetalle, const QStringList& columns)
{
    Db::insert(form + "_Detalle",
               columns + QStringList{"Codigo=" + codigo, "FechaRectificativa=" + fecha,
                                     "ctrl=" + ctrl, "CodigoDetalle=" + codigoDetalle});
}

} // namespace Seed
