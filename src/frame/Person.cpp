#include "Person.h"

#include "Controller.h"

namespace {

void insertInMask(Field& f, QChar c)
{
    const QString mask = f.mask();
    QString text = f.text();
    int pos = f.selStart();
    while (pos < mask.size() && mask.at(pos) != u'#')
        ++pos;
    if (pos >= mask.size() || !c.isDigit())
        return;
    text[pos] = c;
    f.setText(text);
    f.setSelection(pos + 1, 0);
}

void insertPlain(Field& f, QChar c)
{
    QString text = f.text();
    const int start = f.selStart();
    const int length = f.selLength();
    text.remove(start, length);
    if (f.maxLength() > 0 && text.size() >= f.maxLength())
        return;
    text.insert(start, c);
    if (f.kind() == FieldKind::Combo)
        f.setEditedText(text);
    else
        f.setText(text);
    f.setSelection(start + 1, 0);
}

// Text boxes and the text part of a combo (an open list such as the rates)
// take typing.
bool typable(const Field& f)
{
    return f.enabled() && !f.locked() &&
           (f.kind() == FieldKind::Text || f.kind() == FieldKind::Combo);
}

} // namespace

bool Person::focus(const QString& name)
{
    if (m_window.focused() == name)
        return true;
    Field& f = m_window.field(name);
    if (!f.mask().isEmpty()) {
        const int blank = int(f.text().indexOf(u'_'));
        f.setSelection(blank < 0 ? 0 : blank, 0);
    } else {
        f.setSelection(int(f.text().size()), 0);
    }
    return m_window.setFocus(name);
}

void Person::type(const QString& name, const QString& text)
{
    if (!focus(name))
        return;
    for (QChar c : text) {
        if (m_window.focused() != name)
            return;
        typeChar(m_window.field(name), c);
    }
}

void Person::retype(const QString& name, const QString& text)
{
    if (!focus(name))
        return;
    Field& f = m_window.field(name);
    f.selectAll();
    if (text.isEmpty()) {
        key(name, KeyCode::Back);
        return;
    }
    type(name, text);
}

void Person::typeChar(Field& f, QChar c)
{
    EventArgs press;
    press.key = c.unicode();
    m_window.fire(f.name(), Ev::KeyPress, press);
    if (press.key == 0)
        return;
    if (press.key == KeyCode::Back) {
        backspace(f);
        return;
    }
    if (!typable(f))
        return;
    const QString before = f.text();
    const QChar typed(press.key);
    if (f.mask().isEmpty())
        insertPlain(f, typed);
    else
        insertInMask(f, typed);
    if (f.text() != before)
        m_window.fire(f.name(), Ev::Change);
}

void Person::backspace(Field& f)
{
    if (!typable(f))
        return;
    const QString before = f.text();
    QString text = before;
    int start = f.selStart();
    int length = f.selLength();
    if (length == 0 && start > 0) {
        --start;
        length = 1;
    }
    if (f.kind() == FieldKind::Combo) {
        text.remove(start, length);
        f.setEditedText(text);
        f.setSelection(start, 0);
        if (f.text() != before)
            m_window.fire(f.name(), Ev::Change);
        return;
    }
    if (f.mask().isEmpty()) {
        text.remove(start, length);
    } else {
        for (int i = start; i < start + length && i < text.size(); ++i)
            if (f.mask().at(i) == u'#')
                text[i] = u'_';
    }
    f.setText(text);
    f.setSelection(start, 0);
    if (f.text() != before)
        m_window.fire(f.name(), Ev::Change);
}

void Person::key(const QString& name, int keyCode, int shift)
{
    if (!focus(name))
        return;
    EventArgs down;
    down.key = keyCode;
    down.shift = shift;
    m_window.fireFormKeyDown(down);
    if (down.key == 0)
        return;
    m_window.fire(name, Ev::KeyDown, down);
    if (down.key == 0)
        return;
    const bool hasChar = keyCode == KeyCode::Return || keyCode == KeyCode::Back ||
                         keyCode == KeyCode::Escape;
    if (hasChar && m_window.focused() == name)
        typeChar(m_window.field(name), QChar(keyCode));
    if (m_window.focused() == name) {
        EventArgs up;
        up.key = keyCode;
        up.shift = shift;
        m_window.fire(name, Ev::KeyUp, up);
    }
}

bool Person::leave(const QString& name)
{
    if (!focus(name))
        return false;
    m_window.sendTab();
    return m_window.focused() != name;
}

void Person::click(const QString& name, int index)
{
    Field& f = m_window.field(name);
    if (!f.enabled() || !f.visible())
        return;
    const bool takesFocus = f.kind() != FieldKind::Menu && f.kind() != FieldKind::Tabs;
    if (takesFocus && !focus(name))
        return;
    EventArgs args;
    args.index = index;
    if (f.kind() == FieldKind::Check) {
        f.setValue(f.value() == 1 ? 0 : 1);
    } else if (f.kind() == FieldKind::Option) {
        for (Field* other : m_window.fields())
            if (other != &f && other->kind() == FieldKind::Option && other->group() == f.group())
                other->setValue(0);
        f.setValue(1);
    } else if (f.kind() == FieldKind::Tabs) {
        f.setValue(index);
    }
    m_window.fire(name, Ev::Click, args);
}

void Person::dblClick(const QString& name, int index)
{
    Field& f = m_window.field(name);
    if (!f.enabled() || !focus(name))
        return;
    EventArgs args;
    args.index = index;
    m_window.fire(name, Ev::DblClick, args);
}

void Person::check(const QString& name, bool on)
{
    if (m_window.field(name).checked() != on)
        click(name);
}

void Person::choose(const QString& name, int index)
{
    Field& f = m_window.field(name);
    if (!f.enabled() || !focus(name))
        return;
    f.setListIndex(index);
    if (f.kind() == FieldKind::Combo)
        m_window.fire(name, Ev::Change);
    EventArgs args;
    args.index = index;
    m_window.fire(name, Ev::Click, args);
}

void Person::choose(const QString& name, const QString& text)
{
    const Field& f = m_window.field(name);
    for (int i = 0; i < f.listCount(); ++i)
        if (f.itemText(i) == text) {
            choose(name, i);
            return;
        }
}

void Person::clickRow(const QString& name, int row, int col)
{
    Field& f = m_window.field(name);
    if (!f.enabled() || !focus(name))
        return;
    f.setCurrentRow(row);
    f.setCurrentColumn(col);
    EventArgs args;
    args.index = row;
    m_window.fire(name, Ev::Click, args);
}

void Person::clickNode(const QString& name, const QString& key)
{
    Field& f = m_window.field(name);
    if (!focus(name))
        return;
    const int index = f.tree().indexOf(key);
    f.tree().setSelected(index);
    f.treeChanged();
    EventArgs args;
    args.index = index;
    m_window.fire(name, Ev::Click, args);
}

void Person::dblClickNode(const QString& name, const QString& key)
{
    clickNode(name, key);
    EventArgs args;
    args.index = m_window.field(name).tree().selected();
    m_window.fire(name, Ev::DblClick, args);
}

bool Person::closeWindow() { return m_window.closeByUser(); }
