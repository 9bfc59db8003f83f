#include "PeriodCopy.h"

#include <QStringList>

#include "FormTables.h"
#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace {

// Only the original first version of a model declaration is a source.
const QString kFirstVersion = QStringLiteral("FECHARECTIFICATIVA = '0' AND ctrl = '0'");

QString insertSql(const QString& table, const QStringList& columns, const QStringList& values)
{
    QStringList cells;
    for (const QString& v : values)
        cells << Quoted(v);
    return QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") + columns.join(u',') +
           QStringLiteral(") VALUES (") + cells.join(u',') + u')';
}

// The row's values of `columns`, Null as "".
QStringList valuesOf(const Recordset& row, const QStringList& columns)
{
    QStringList out;
    for (const QString& c : columns)
        out << row.Text(c);
    return out;
}

} // namespace

PeriodCopy::PeriodCopy(const QString& padron, const QString& objeto, const QString& modelPeriod,
                       const QString& mm, const QString& yyyy)
    : m_padron(padron), m_objeto(objeto), m_modelPeriod(modelPeriod), m_mm(mm), m_yyyy(yyyy)
{
}

QString PeriodCopy::originalFilter() const
{
    return QStringLiteral("RECTIFICATIVA in ('Falso','False') AND ") + kFirstVersion;
}

bool PeriodCopy::Copy(const FormTables& form) const
{
    ZoAccess& db = gAccess();
    const QString newPeriod = m_mm + u'-' + m_yyyy;
    if (alreadyCopied(form, newPeriod))
        return true;
    const RecordsetPtr rows = db.FillRecordSet(
        QStringLiteral("SELECT * FROM ") + form.id + QStringLiteral(" WHERE PADRON = ") +
        Quoted(m_padron) + QStringLiteral(" AND Objeto = ") + Quoted(m_objeto) +
        QStringLiteral(" AND  PERIODO = ") + Quoted(m_modelPeriod) + QStringLiteral(" AND ") +
        originalFilter());
    if (!rows)
        return false;
    for (; !rows->EOF_(); rows->MoveNext()) {
        QStringList columns = {QStringLiteral("Padron"), QStringLiteral("Objeto"),
                               QStringLiteral("Periodo"), QStringLiteral("Rectificativa"),
                               QStringLiteral("FechaRectificativa")};
        QStringList values = {m_padron, m_objeto, newPeriod, QStringLiteral("False"),
                              QStringLiteral("0")};
        QString oldCodigo, newCodigo;
        if (form.hasCodigo) {
            // The objeto of the new key comes from the old key, from character 20.
            oldCodigo = rows->Text(QStringLiteral("Codigo"));
            newCodigo = m_padron + m_mm + m_yyyy + oldCodigo.mid(19, 13) + u'O';
            columns.prepend(QStringLiteral("Codigo"));
            values.prepend(newCodigo);
        }
        columns << form.copyColumns << QStringLiteral("ctrl");
        values << valuesOf(*rows, form.copyColumns) << QStringLiteral("0");
        if (!db.Execute(insertSql(form.id, columns, values)))
            return false;
        if (!form.detailTable.isEmpty() && !copyLines(form, oldCodigo, newCodigo))
            return false;
        if (!db.Execute(insertSql(QStringLiteral("TPADRONES_FORMULARIOS"),
                                  {QStringLiteral("Padron"), QStringLiteral("Objeto"),
                                   QStringLiteral("Periodo"), QStringLiteral("idFormulario"),
                                   QStringLiteral("Rectificativa"),
                                   QStringLiteral("FechaRectificativa"), QStringLiteral("ctrl")},
                                  {m_padron, m_objeto, newPeriod, form.id, QStringLiteral("False"),
                                   QStringLiteral("0"), QStringLiteral("0")})))
            return false;
    }
    return true;
}

bool PeriodCopy::alreadyCopied(const FormTables& form, const QString& newPeriod) const
{
    // Another workstation may have started the same month a moment ago, its
    // tree not yet shown here: under the month's reservation (the one a form's
    // save takes), a month that has its original keeps it and gets no second.
    ZoAccess& db = gAccess();
    const QString month = DeclarationScope(m_padron, m_objeto, newPeriod);
    db.ReserveKeys(form.id, month);
    return db.GetLong(QStringLiteral("SELECT COUNT(1) FROM ") + form.id +
                      QStringLiteral(" WHERE ") + month + QStringLiteral(" AND ") +
                      originalFilter()) > 0;
}

bool PeriodCopy::copyLines(const FormTables& form, const QString& oldCodigo,
                           const QString& newCodigo) const
{
    ZoAccess& db = gAccess();
    const RecordsetPtr lines = db.FillRecordSet(
        QStringLiteral("SELECT * FROM ") + form.detailTable + QStringLiteral(" WHERE CODIGO = ") +
        Quoted(oldCodigo) + QStringLiteral(" AND ") + kFirstVersion);
    if (!lines)
        return false;
    const QStringList columns =
        QStringList{QStringLiteral("Codigo"), QStringLiteral("FechaRectificativa"),
                    QStringLiteral("CodigoDetalle")} +
        form.copyDetailColumns + QStringList{QStringLiteral("ctrl")};
    for (; !lines->EOF_(); lines->MoveNext()) {
        const QStringList values = QStringList{newCodigo, QStringLiteral("0"),
                                               lines->Text(QStringLiteral("CodigoDetalle"))} +
                                   valuesOf(*lines, form.copyDetailColumns) +
                                   QStringList{QStringLiteral("0")};
        if (!db.Execute(insertSql(form.detailTable, columns, values)))
            return false;
    }
    return true;
}
