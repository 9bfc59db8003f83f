#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include "TreeModel.h"

// One named field of a window controller: what the logic reads and writes of a
// control, with no widget behind it. The view binder mirrors it to a widget of
// the same objectName and back.
enum class FieldKind {
    Text,     // text box, masked box
    Label,    // caption only
    Button,   // command button
    Check,    // check box: value 0, 1 (2 greyed)
    Option,   // option button: value 0 or 1, exclusive within its group
    Combo,    // combo box: items, list index, text
    List,     // list box: items, list index
    Grid,     // flex grid and list view: header, rows of cells, current row and col
    Tree,     // tree view: nodes
    Progress, // progress bar: min, max, value
    Status,   // status bar: text of its one panel
    Tabs,     // tabbed pages: value is the page shown
    Menu,     // menu item, or a menu item array (items)
    Frame,    // a container whose enabled and visible matter
};

struct ListItem {
    QString text;
    qint64 data = 0;
    bool enabled = true;
};

class Field : public QObject
{
    Q_OBJECT
public:
    enum Aspect { TextAspect, StateAspect, ItemsAspect, SelectionAspect, GridAspect, TreeAspect };
    Q_ENUM(Aspect)

    Field(const QString& name, FieldKind kind, QObject* parent = nullptr);

    const QString& name() const { return m_name; }
    FieldKind kind() const { return m_kind; }

    // text: the text of a box, the caption of a label, button or menu item
    const QString& text() const { return m_text; }
    void setText(const QString& text);
    // Whether the logic ever wrote the text; a caption never written keeps
    // the one the view was drawn with.
    bool textSet() const { return m_textSet; }
    // Text typed into the box of a combo: no entry of the list is selected
    // any more, the text stays as typed.
    void setEditedText(const QString& text);
    bool enabled() const { return m_enabled; }
    void setEnabled(bool on);
    bool visible() const { return m_visible; }
    void setVisible(bool on);
    bool locked() const { return m_locked; }
    void setLocked(bool on);

    int value() const { return m_value; }
    void setValue(int value);
    bool checked() const { return m_value != 0; }

    int maxLength() const { return m_maxLength; }
    void setMaxLength(int length);

    // Masked boxes: "#" stands for a digit; the text always shows the mask
    // with "_" for each blank, as the logic compares against it.
    const QString& mask() const { return m_mask; }
    void setMask(const QString& mask);
    QString blankMask() const;
    bool isBlankMask() const { return !m_mask.isEmpty() && m_text == blankMask(); }
    // The text with the mask's literals and blanks taken out.
    QString clipText() const;

    int selStart() const { return m_selStart; }
    int selLength() const { return m_selLength; }
    void setSelection(int start, int length);
    void selectAll() { setSelection(0, int(m_text.size())); }
    QString selectedText() const { return m_text.mid(m_selStart, m_selLength); }

    // lists and combos
    const QVector<ListItem>& items() const { return m_items; }
    void clearItems();
    void addItem(const QString& text, qint64 data = 0);
    void addItems(const QVector<ListItem>& items);
    void setItemEnabled(int index, bool on);
    void setItemText(int index, const QString& text);
    void removeItemsFrom(int index);
    int listCount() const { return int(m_items.size()); }
    int listIndex() const { return m_listIndex; }
    void setListIndex(int index);
    qint64 itemData(int index) const;
    QString itemText(int index) const;

    // progress bar
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    void setMaximum(int max);
    void setMinimum(int min);

    // grids and list views: header row separate from the data rows
    const QStringList& header() const { return m_header; }
    void setHeader(const QStringList& header);
    QVector<int> rightAligned; // columns shown right-aligned
    int rowCount() const { return int(m_rows.size()); }
    int columnCount() const { return int(m_header.size()); }
    QString cell(int row, int col) const;
    void setCell(int row, int col, const QString& text);
    const QStringList& row(int row) const { return m_rows.at(row); }
    void addRow(const QStringList& cells);
    void setRows(QVector<QStringList> rows);
    void removeRow(int row);
    void clearRows();
    int currentRow() const { return m_currentRow; }
    void setCurrentRow(int row);
    int currentColumn() const { return m_currentColumn; }
    void setCurrentColumn(int col);
    const QVector<QStringList>& rows() const { return m_rows; }

    // trees
    TreeModel& tree() { return m_tree; }
    const TreeModel& tree() const { return m_tree; }
    // Tell the view that the tree changed in bulk.
    void treeChanged();

    // Option buttons of one group exclude each other.
    const QString& group() const { return m_group; }
    void setGroup(const QString& group) { m_group = group; }

signals:
    void changed(Field* field, Field::Aspect aspect);

private:
    void notify(Aspect aspect) { emit changed(this, aspect); }

    QString m_name;
    FieldKind m_kind;
    QString m_text;
    bool m_textSet = false;
    bool m_enabled = true;
    bool m_visible = true;
    bool m_locked = false;
    int m_value = 0;
    int m_maxLength = 0;
    QString m_mask;
    int m_selStart = 0;
    int m_selLength = 0;
    QVector<ListItem> m_items;
    int m_listIndex = -1;
    int m_minimum = 0;
    int m_maximum = 100;
    QStringList m_header;
    QVector<QStringList> m_rows;
    int m_currentRow = -1;
    int m_currentColumn = 0;
    TreeModel m_tree;
    QString m_group;
};
