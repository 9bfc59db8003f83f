#include "BuscadorContribuyentes.h"

#include <QHash>
#include <QSettings>
#include <algorithm>
#include <numeric>

#include "Globals.h"
#include "Recordset.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kGrupo = QStringLiteral("Buscador/Recientes");

QString claveDe(const QString& nombre, const QString& cuit)
{
    return BuscadorContribuyentes::Plegar(nombre) + u'\n' + cuit + u'\n' + DigitsOnly(cuit);
}

} // namespace

QString BuscadorContribuyentes::Plegar(const QString& text)
{
    const QString split = text.normalized(QString::NormalizationForm_D);
    QString out;
    out.reserve(split.size());
    for (const QChar c : split) {
        if (c.category() != QChar::Mark_NonSpacing)
            out += c.toCaseFolded();
    }
    return out;
}

void BuscadorContribuyentes::Cargar()
{
    QVector<ContribuyenteListado> lista;
    const RecordsetPtr rs = gAccess().FillRecordSetReader(
        QStringLiteral("SELECT IDCONTRIBUYENTE, APELLIDONOMBRE, CUIT FROM CONTRIBUYENTES ORDER BY "
                       "IDCONTRIBUYENTE"));
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        ContribuyenteListado item;
        item.id = rs->Text(0).toInt();
        item.nombre = rs->Text(1).trimmed();
        item.cuit = rs->Text(2).trimmed();
        lista.push_back(item);
    }
    Asignar(std::move(lista));
}

void BuscadorContribuyentes::Asignar(QVector<ContribuyenteListado> lista)
{
    m_lista = std::move(lista);
    for (ContribuyenteListado& item : m_lista)
        item.clave = claveDe(item.nombre, item.cuit);
    ordenar();
}

void BuscadorContribuyentes::ordenar()
{
    // The texts compared, made once for each taxpayer and not at each
    // comparison.
    QVector<QString> nombres(m_lista.size());
    QVector<QString> digitos(m_lista.size());
    for (int i = 0; i < m_lista.size(); ++i) {
        nombres[i] = m_lista.at(i).clave.section(u'\n', 0, 0);
        digitos[i] = DigitsOnly(m_lista.at(i).cuit);
    }
    m_porNombre.resize(m_lista.size());
    std::iota(m_porNombre.begin(), m_porNombre.end(), 0);
    m_porCuit = m_porNombre;
    std::stable_sort(m_porNombre.begin(), m_porNombre.end(), [&](int a, int b) {
        const int c = QString::localeAwareCompare(nombres.at(a), nombres.at(b));
        return c != 0 ? c < 0 : m_lista.at(a).cuit < m_lista.at(b).cuit;
    });
    std::stable_sort(m_porCuit.begin(), m_porCuit.end(),
                     [&](int a, int b) { return digitos.at(a) < digitos.at(b); });
}

bool BuscadorContribuyentes::coincide(const QString& clave, const QStringList& palabras)
{
    for (const QString& palabra : palabras) {
        if (!clave.contains(palabra))
            return false;
    }
    return true;
}

QVector<int> BuscadorContribuyentes::Filtrar(const QString& texto, Orden orden) const
{
    const QStringList palabras = Plegar(texto).split(u' ', Qt::SkipEmptyParts);
    QVector<int> out;
    out.reserve(m_lista.size());
    QHash<QString, int> recientes;
    if (orden == Recientes) {
        const QStringList cuits = ListaRecientes();
        for (int i = 0; i < cuits.size(); ++i)
            recientes.insert(cuits.at(i), i);
        QVector<int> primeros(cuits.size(), -1);
        for (int i : m_porNombre) {
            const int at = recientes.value(m_lista.at(i).cuit, -1);
            if (at >= 0 && primeros.at(at) < 0 && coincide(m_lista.at(i).clave, palabras))
                primeros[at] = i;
        }
        for (int i : primeros) {
            if (i >= 0)
                out.push_back(i);
        }
    }
    for (int i : orden == PorCuit ? m_porCuit : m_porNombre) {
        if (recientes.contains(m_lista.at(i).cuit) && out.contains(i))
            continue;
        if (coincide(m_lista.at(i).clave, palabras))
            out.push_back(i);
    }
    return out;
}

QStringList BuscadorContribuyentes::ListaRecientes()
{
    QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
    return settings.value(kGrupo).toStringList();
}

void BuscadorContribuyentes::RecordarReciente(const QString& cuit)
{
    if (cuit.trimmed().isEmpty())
        return;
    QStringList cuits = ListaRecientes();
    cuits.removeAll(cuit.trimmed());
    cuits.prepend(cuit.trimmed());
    while (cuits.size() > kRecientes)
        cuits.removeLast();
    QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
    settings.setValue(kGrupo, cuits);
}
