#include "EstadoPresentaciones.h"

#include <algorithm>

#include "SqlText.h"
#include "Field.h"
#include "Globals.h"
#include "Recordset.h"
#include "Tovak.h"
#include "Util.h"
#include "ZoAccess.h"
#include "navigation/NavigationText.h"
#include "navigation/ZoForms.h"

namespace {

const QString kFormulario = QStringLiteral(";Formulario=");

// The tree of the taxpayer, as its window builds it.
void llenarArbol(Field& tree, int id)
{
    gForms().FillTreeViewContribuyenteOpciones(tree, QString::number(id));
    gForms().FillTreeViewLocales(tree, QString::number(id));
}

QString periodoDe(const QString& key)
{
    return TwoDigits(ReadParameter(key, QStringLiteral("Periodo"))) + u'-' +
           ReadParameter(key, QStringLiteral("Anio"));
}

QString versionDe(const QString& periodo, const QString& rectificativa, const QString& fecha,
                  const QString& ctrl)
{
    return periodo + u'|' + (IsYesText(rectificativa) ? u'R' : u'O') + u'|' + fecha + u'|' + ctrl;
}

QHash<QString, int> ordenDeFormularios()
{
    QHash<QString, int> orden;
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT idFormulario, Orden FROM Formularios ORDER BY Orden"));
    for (; rs && !rs->EOF_(); rs->MoveNext())
        orden.insert(rs->Text(0), rs->Text(1).toInt());
    return orden;
}

} // namespace

QString MesCorto(int mes)
{
    static const QStringList meses = {"Ene", "Feb", "Mar", "Abr", "May", "Jun",
                                      "Jul", "Ago", "Sep", "Oct", "Nov", "Dic"};
    return mes >= 1 && mes <= 12 ? meses.at(mes - 1) : QString();
}

QString EstadoPresentaciones::ColumnaTotal(const QString& formulario)
{
    if (formulario == QLatin1String("F976") || formulario == QLatin1String("F2001"))
        return QStringLiteral("TotalAPagar");
    if (formulario == QLatin1String("F986") || formulario == QLatin1String("F988"))
        return QStringLiteral("ImporteDepositar");
    return QStringLiteral("TotalPercepciones");
}

QString EstadoPresentaciones::Texto(const CeldaPresentacion& celda)
{
    const QString monto =
        celda.total.trimmed().isEmpty() ? QString() : u' ' + FormatAmount(celda.total);
    switch (celda.estado) {
    case EstadoMes::SinAbrir: return {};
    case EstadoMes::Pendiente: return QStringLiteral("Pendiente");
    case EstadoMes::Original: return QStringLiteral("✓") + monto;
    case EstadoMes::Rectificada: return u'R' + QString::number(celda.rectificaciones) + monto;
    }
    return {};
}

QString EstadoPresentaciones::Rotulo(const FilaPresentacion& fila)
{
    auto corto = [](const QString& numero) {
        QString out = numero;
        while (out.size() > 1 && out.startsWith(u'0'))
            out.remove(0, 1);
        return out;
    };
    return fila.formulario + QStringLiteral("  Padrón ") + corto(fila.padron) + u'-' +
           corto(fila.objeto);
}

void EstadoPresentaciones::Cargar(int idContribuyente)
{
    m_id = idContribuyente;
    m_filas.clear();
    m_premisas.clear();
    m_abiertos.clear();
    m_totalDe.clear();
    const QString cuit = DigitsOnly(gAccess().GetString(
        QStringLiteral("SELECT Cuit FROM Contribuyentes WHERE idContribuyente = ") +
        QString::number(idContribuyente)));
    if (cuit.isEmpty())
        return;
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT padron, objeto, retencion, percepcion, regimen FROM "
                       "tPadronesComerciales WHERE Cuit = ") +
        Quoted(cuit));
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        const QString padron = rs->Text(0), objeto = rs->Text(1);
        m_premisas << padron + u'|' + objeto;
        agregarOfrecidos(padron, objeto, rs->Text(2).trimmed(), rs->Text(3).trimmed(),
                         rs->Text(4).trimmed());
    }
    leerTotales();
    leerArbol();
    ordenar();
}

FilaPresentacion& EstadoPresentaciones::fila(const QString& padron, const QString& objeto,
                                             const QString& form)
{
    for (FilaPresentacion& f : m_filas) {
        if (f.padron == padron && f.objeto == objeto && f.formulario == form)
            return f;
    }
    m_filas.push_back(FilaPresentacion{padron, objeto, form, {}});
    return m_filas.last();
}

void EstadoPresentaciones::agregarOfrecidos(const QString& padron, const QString& objeto,
                                            const QString& retencion, const QString& percepcion,
                                            const QString& regimen)
{
    const bool conocido = regimen == QLatin1String("0") || regimen == QLatin1String("1") ||
                          regimen == QLatin1String("2");
    const RecordsetPtr forms = gForms().GetSelectFormulariosNuevos(retencion, percepcion, regimen);
    for (; conocido && forms && !forms->EOF_(); forms->MoveNext()) {
        const QString id = forms->Text(0);
        if (ZoForms::VerificaRegimen(regimen, id))
            fila(padron, objeto, id);
    }
}

void EstadoPresentaciones::leerTotales()
{
    for (const QString& premisa : std::as_const(m_premisas)) {
        const QString padron = premisa.section(u'|', 0, 0), objeto = premisa.section(u'|', 1);
        for (const QString& form :
             {"F976", "F2001", "F977", "F978", "F985", "F986", "F987", "F988"}) {
            const RecordsetPtr rs = gAccess().FillRecordSet(
                QStringLiteral("SELECT Periodo, Rectificativa, FechaRectificativa, ctrl, ") +
                ColumnaTotal(form) + QStringLiteral(" FROM ") + form +
                QStringLiteral(" WHERE Padron = ") + Quoted(padron) +
                QStringLiteral(" AND Objeto = ") + Quoted(objeto));
            for (; rs && !rs->EOF_(); rs->MoveNext())
                m_totalDe.insert(form + u'|' + padron + u'|' + objeto + u'|' +
                                     versionDe(rs->Text(0), rs->Text(1), rs->Text(2), rs->Text(3)),
                                 rs->Text(4));
        }
    }
}

void EstadoPresentaciones::leerArbol()
{
    Field tree(QStringLiteral("trvDatos"), FieldKind::Tree);
    llenarArbol(tree, m_id);
    for (const TreeNode& node : tree.tree().nodes()) {
        const QString& key = node.key;
        if (!key.startsWith(QStringLiteral("Padrón N° ")) ||
            !key.contains(QStringLiteral(";Periodo=")))
            continue;
        const QString caption = key.section(u';', 0, 0);
        const QString padron = PadronOfCaption(caption), objeto = ObjetoOfCaption(caption);
        const QString periodo = periodoDe(key);
        const int cut = int(key.indexOf(kFormulario));
        if (cut < 0) {
            m_abiertos[periodo] << padron + u'|' + objeto;
            continue;
        }
        const QString form = ReadParameter(key, QStringLiteral("Formulario"));
        CeldaPresentacion& celda = fila(padron, objeto, form).celdas[periodo];
        if (IsYesText(ReadParameter(key, QStringLiteral("Nuevo")))) {
            celda.estado = EstadoMes::Pendiente;
            celda.clave = key;
            continue;
        }
        const QString rect = ReadParameter(key, QStringLiteral("Rectificativa"));
        if (IsYesText(rect)) {
            ++celda.rectificaciones;
            celda.estado = EstadoMes::Rectificada;
        } else {
            celda.rectificaciones = 0;
            celda.estado = EstadoMes::Original;
        }
        celda.clave = key;
        celda.total = m_totalDe.value(
            form + u'|' + padron + u'|' + objeto + u'|' +
            versionDe(periodo, rect, ReadParameter(key, QStringLiteral("FechaRectificativa")),
                      ReadParameter(key, QStringLiteral("ctrl"))));
    }
}

void EstadoPresentaciones::ordenar()
{
    const QHash<QString, int> orden = ordenDeFormularios();
    auto premisa = [this](const FilaPresentacion& f) {
        return int(m_premisas.indexOf(f.padron + u'|' + f.objeto));
    };
    std::stable_sort(m_filas.begin(), m_filas.end(),
                     [&](const FilaPresentacion& a, const FilaPresentacion& b) {
                         if (premisa(a) != premisa(b))
                             return premisa(a) < premisa(b);
                         return orden.value(a.formulario) < orden.value(b.formulario);
                     });
}

QStringList EstadoPresentaciones::anios() const
{
    QStringList out;
    for (auto it = m_abiertos.cbegin(); it != m_abiertos.cend(); ++it) {
        const QString anio = it.key().right(4);
        if (!out.contains(anio))
            out << anio;
    }
    std::sort(out.begin(), out.end());
    return out;
}

QStringList EstadoPresentaciones::premisasAbiertas(const QString& periodo) const
{
    return m_abiertos.value(periodo);
}

bool AbrirDeclaracion(int idContribuyente, const QString& clave)
{
    Field tree(QStringLiteral("trvDatos"), FieldKind::Tree);
    llenarArbol(tree, idContribuyente);
    const int node = tree.tree().indexOf(clave);
    if (node < 0 || clave.isEmpty())
        return false;
    tree.tree().setSelected(node);
    int result = 0;
    gForms().ShowForm(tree, QString::number(idContribuyente), result);
    return true;
}
