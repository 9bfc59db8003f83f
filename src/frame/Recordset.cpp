#include "Recordset.h"

#include "RegionalSettings.h"

Recordset::Recordset(QStringList columns, QVector<QVector<QVariant>> rows)
    : m_columns(std::move(columns)), m_rows(std::move(rows))
{
}

int ColumnIndex(const QStringList& columns, const QString& name)
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    // a qualified name (pf.Periodo) answers to its bare column name
    const int dot = int(name.lastIndexOf(u'.'));
    if (dot >= 0)
        return ColumnIndex(columns, name.mid(dot + 1));
    return -1;
}

int Recordset::indexOf(const QString& name) const
{
    return ColumnIndex(m_columns, name);
}

QVariant Recordset::Field(int index, bool* ok) const
{
    const bool valid = m_open && !EOF_() && m_position >= 0 && index >= 0 &&
                       index < m_columns.size();
    if (ok)
        *ok = valid;
    return valid ? m_rows.at(m_position).at(index) : QVariant();
}

QVariant Recordset::Field(const QString& name, bool* ok) const
{
    return Field(indexOf(name), ok);
}

QString Recordset::Text(int index) const { return VariantText(Field(index)); }

QString Recordset::Text(const QString& name) const { return VariantText(Field(name)); }

bool Recordset::IsNull(const QString& name) const { return Field(name).isNull(); }

bool Recordset::IsNull(int index) const { return Field(index).isNull(); }

QString VariantText(const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return {};
    if (value.typeId() == QMetaType::Double) {
        QString s = QString::number(value.toDouble(), 'g', 15);
        return s.replace(u'.', Regional::decimalSymbol());
    }
    return value.toString();
}
