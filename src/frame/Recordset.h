#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>

// Where the column `name` stands among `columns`, whatever its case; -1 when
// it is not there.
int ColumnIndex(const QStringList& columns, const QString& name);

// A client-side cursor over the rows a read returned: it can be counted and
// walked after the statement is done. A Null column reads as a null QVariant,
// distinct from the empty text.
class Recordset
{
public:
    Recordset(QStringList columns, QVector<QVector<QVariant>> rows);

    bool isOpen() const { return m_open; }
    void Close() { m_open = false; }

    int RecordCount() const { return int(m_rows.size()); }
    bool EOF_() const { return m_position >= m_rows.size(); }
    bool BOF() const { return m_position < 0 || m_rows.isEmpty(); }
    void MoveNext() { if (m_position < m_rows.size()) ++m_position; }
    void MoveFirst() { m_position = 0; }
    void MoveLast() { m_position = qMax(0, int(m_rows.size()) - 1); }
    int position() const { return m_position; }

    int FieldCount() const { return int(m_columns.size()); }
    QString FieldName(int index) const { return m_columns.value(index); }
    const QStringList& FieldNames() const { return m_columns; }
    int indexOf(const QString& name) const;

    // The value of the current row; a missing column or no current row gives
    // an invalid QVariant, reported by ok = false.
    QVariant Field(int index, bool* ok = nullptr) const;
    QVariant Field(const QString& name, bool* ok = nullptr) const;
    // The value as text: Null gives "".
    QString Text(int index) const;
    QString Text(const QString& name) const;
    bool IsNull(const QString& name) const;
    bool IsNull(int index) const;

    const QVector<QVector<QVariant>>& rows() const { return m_rows; }

private:
    QStringList m_columns;
    QVector<QVector<QVariant>> m_rows;
    int m_position = 0;
    bool m_open = true;
};

using RecordsetPtr = std::shared_ptr<Recordset>;

// The text of a value as the old runtime printed it: Null gives "", a number
// uses the decimal symbol of the regional settings.
QString VariantText(const QVariant& value);
