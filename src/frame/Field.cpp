#include "Field.h"

namespace {

bool isPlaceholder(QChar m) { return m == u'#'; }

// Fits `text` to `mask`: a text already shaped like the mask is kept, any other
// has its digits poured into the placeholders in order.
QString fitToMask(const QString& mask, const QString& text)
{
    QString out;
    out.reserve(mask.size());
    if (text.size() == mask.size()) {
        for (int i = 0; i < mask.size(); ++i) {
            const QChar c = text.at(i);
            if (isPlaceholder(mask.at(i)))
                out += (c.isDigit() ? c : QChar(u'_'));
            else
                out += mask.at(i);
        }
        return out;
    }
    int next = 0;
    for (QChar m : mask) {
        if (!isPlaceholder(m)) {
            out += m;
            continue;
        }
        while (next < text.size() && !text.at(next).isDigit())
            ++next;
        out += next < text.size() ? text.at(next++) : QChar(u'_');
    }
    return out;
}

} // namespace

Field::Field(const QString& name, FieldKind kind, QObject* parent)
    : QObject(parent), m_name(name), m_kind(kind)
{
}

void Field::setText(const QString& text)
{
    const QString fitted = m_mask.isEmpty() ? text : fitToMask(m_mask, text);
    const bool first = !m_textSet;
    m_textSet = true;
    if (fitted == m_text && !first)
        return;
    m_text = fitted;
    if (m_selStart > m_text.size())
        m_selStart = int(m_text.size());
    m_selLength = 0;
    notify(TextAspect);
}

void Field::setEditedText(const QString& text)
{
    m_listIndex = -1;
    if (m_text == text) {
        notify(SelectionAspect);
        return;
    }
    m_text = text;
    notify(TextAspect);
}

void Field::setEnabled(bool on)
{
    if (m_enabled == on)
        return;
    m_enabled = on;
    notify(StateAspect);
}

void Field::setVisible(bool on)
{
    if (m_visible == on)
        return;
    m_visible = on;
    notify(StateAspect);
}

void Field::setLocked(bool on)
{
    if (m_locked == on)
        return;
    m_locked = on;
    notify(StateAspect);
}

void Field::setValue(int value)
{
    if (m_value == value)
        return;
    m_value = value;
    notify(StateAspect);
}

void Field::setMaxLength(int length)
{
    m_maxLength = length;
    notify(StateAspect);
}

void Field::setMask(const QString& mask)
{
    m_mask = mask;
    m_text = mask.isEmpty() ? QString() : blankMask();
    notify(StateAspect);
    notify(TextAspect);
}

QString Field::blankMask() const
{
    QString blank = m_mask;
    for (QChar& c : blank)
        if (isPlaceholder(c))
            c = u'_';
    return blank;
}

QString Field::clipText() const
{
    if (m_mask.isEmpty())
        return m_text;
    QString out;
    for (int i = 0; i < m_text.size() && i < m_mask.size(); ++i)
        if (isPlaceholder(m_mask.at(i)) && m_text.at(i) != u'_')
            out += m_text.at(i);
    return out;
}

void Field::setSelection(int start, int length)
{
    start = qBound(0, start, int(m_text.size()));
    length = qBound(0, length, int(m_text.size()) - start);
    m_selStart = start;
    m_selLength = length;
    notify(SelectionAspect);
}

void Field::clearItems()
{
    m_items.clear();
    m_listIndex = -1;
    if (m_kind == FieldKind::Combo)
        m_text.clear();
    notify(ItemsAspect);
}

void Field::addItem(const QString& text, qint64 data)
{
    m_items.push_back(ListItem{text, data, true});
    notify(ItemsAspect);
}

void Field::addItems(const QVector<ListItem>& items)
{
    m_items += items;
    notify(ItemsAspect);
}

void Field::setItemEnabled(int index, bool on)
{
    if (index < 0 || index >= m_items.size())
        return;
    m_items[index].enabled = on;
    notify(ItemsAspect);
}

void Field::setItemText(int index, const QString& text)
{
    if (index < 0 || index >= m_items.size())
        return;
    m_items[index].text = text;
    notify(ItemsAspect);
}

void Field::removeItemsFrom(int index)
{
    if (index < 0 || index >= m_items.size())
        return;
    m_items.resize(index);
    if (m_listIndex >= index)
        m_listIndex = -1;
    notify(ItemsAspect);
}

void Field::setListIndex(int index)
{
    if (index < -1 || index >= m_items.size())
        return;
    m_listIndex = index;
    if (m_kind == FieldKind::Combo)
        m_text = index >= 0 ? m_items.at(index).text : QString();
    notify(SelectionAspect);
}

qint64 Field::itemData(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items.at(index).data : 0;
}

QString Field::itemText(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items.at(index).text : QString();
}

void Field::setMaximum(int max)
{
    m_maximum = max;
    notify(StateAspect);
}

void Field::setMinimum(int min)
{
    m_minimum = min;
    notify(StateAspect);
}

void Field::setHeader(const QStringList& header)
{
    m_header = header;
    for (QStringList& r : m_rows)
        while (r.size() < m_header.size())
            r.append(QString());
    notify(GridAspect);
}

QString Field::cell(int row, int col) const
{
    if (row < 0 || row >= m_rows.size() || col < 0 || col >= m_rows.at(row).size())
        return {};
    return m_rows.at(row).at(col);
}

void Field::setCell(int row, int col, const QString& text)
{
    if (row < 0 || row >= m_rows.size() || col < 0)
        return;
    QStringList& r = m_rows[row];
    while (r.size() <= col)
        r.append(QString());
    r[col] = text;
    notify(GridAspect);
}

void Field::addRow(const QStringList& cells)
{
    QStringList r = cells;
    while (r.size() < m_header.size())
        r.append(QString());
    m_rows.push_back(r);
    notify(GridAspect);
}

void Field::setRows(QVector<QStringList> rows)
{
    for (QStringList& r : rows)
        while (r.size() < m_header.size())
            r.append(QString());
    m_rows = std::move(rows);
    if (m_currentRow >= m_rows.size())
        m_currentRow = int(m_rows.size()) - 1;
    notify(GridAspect);
}

void Field::removeRow(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    m_rows.removeAt(row);
    if (m_currentRow >= m_rows.size())
        m_currentRow = int(m_rows.size()) - 1;
    notify(GridAspect);
}

void Field::clearRows()
{
    m_rows.clear();
    m_currentRow = -1;
    notify(GridAspect);
}

void Field::setCurrentRow(int row)
{
    m_currentRow = row;
    notify(SelectionAspect);
}

void Field::setCurrentColumn(int col)
{
    m_currentColumn = col;
    notify(SelectionAspect);
}

void Field::treeChanged()
{
    notify(TreeAspect);
}
