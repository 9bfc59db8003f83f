#include "ViewBinder.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <vector>

#include "TreeIcons.h"

namespace {

// "##-##-####" in the old masks; Qt's "0" is an optional digit, "_" the blank.
QString qtMask(const QString& mask)
{
    if (mask.isEmpty())
        return {};
    QString out = mask;
    out.replace(u'#', u'0');
    return out + QStringLiteral(";_");
}

// A cell of a grid. The cells of the column that stretches show their whole
// text as a tip, since it may be cut short.
class GridItem : public QTableWidgetItem
{
public:
    GridItem(const QString& text, Qt::Alignment alignment) : QTableWidgetItem(text)
    {
        setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        setTextAlignment(alignment);
    }
    void showTip() { m_tip = true; }
    QVariant data(int role) const override
    {
        if (role == Qt::ToolTipRole && m_tip)
            return text();
        return QTableWidgetItem::data(role);
    }

private:
    bool m_tip = false;
};

// The delegate of a grid, which measures each text once: the widths of the
// columns are measured again over a thousand lines with every change of the
// rows, and most of those lines are the ones measured the time before. A
// measure holds as long as the font and the layout of the cells stay.
class MeasuringDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (option.font != m_font || option.rect != m_rect || option.features != m_features ||
            option.decorationSize != m_decorationSize || m_sizes.size() > kMostSizes) {
            m_sizes.clear();
            m_font = option.font;
            m_rect = option.rect;
            m_features = option.features;
            m_decorationSize = option.decorationSize;
        }
        const QPair<QString, int> key(index.data(Qt::DisplayRole).toString(),
                                      index.data(Qt::TextAlignmentRole).toInt());
        auto it = m_sizes.constFind(key);
        if (it == m_sizes.cend())
            it = m_sizes.insert(key, QStyledItemDelegate::sizeHint(option, index));
        return *it;
    }

private:
    static constexpr qsizetype kMostSizes = 50000;
    mutable QHash<QPair<QString, int>, QSize> m_sizes;
    mutable QFont m_font;
    mutable QRect m_rect;
    mutable QStyleOptionViewItem::ViewItemFeatures m_features;
    mutable QSize m_decorationSize;
};

const char* const kPorDefecto = "porDefecto";

class UpdateGuard
{
public:
    explicit UpdateGuard(int& counter) : m_counter(counter) { ++m_counter; }
    ~UpdateGuard() { --m_counter; }

private:
    int& m_counter;
};

} // namespace

ViewBinder::ViewBinder(QWidget* view, Controller& controller)
    : QObject(view), m_view(view), m_controller(controller)
{
    connect(&controller, &Controller::focusRequested, this, &ViewBinder::focusField);
    connect(&controller, &Controller::focusReturned, this, &ViewBinder::returnFocus);
    connect(&controller, &Controller::fieldsRebuilt, this, &ViewBinder::bindAll);
    connect(&controller, &Controller::captionChanged, view, &QWidget::setWindowTitle);
    // A view waiting to be deleted may outlive its window's controller: from
    // then on it is hidden and its widgets' events reach nothing.
    connect(&controller, &QObject::destroyed, this, [this] {
        m_controllerGone = true;
        m_view->hide();
    });
    bindAll();
}

void ViewBinder::bindAll()
{
    m_widgets.clear();
    m_fieldOf.clear();
    m_actions.clear();
    m_view->setWindowTitle(m_controller.caption());
    for (Field* f : m_controller.fields())
        bind(f);
    if (!m_controller.focused().isEmpty())
        focusField(m_controller.focused());
}

void ViewBinder::bind(Field* field)
{
    connect(field, &Field::changed, this, &ViewBinder::push, Qt::UniqueConnection);
    if (field->kind() == FieldKind::Menu) {
        if (auto* action = m_view->findChild<QAction*>(field->name())) {
            connectAction(field, action);
        } else if (auto* menu = m_view->findChild<QMenu*>(field->name())) {
            connectAction(field, menu->menuAction());
        }
        pushAll(field);
        return;
    }
    auto* widget = m_view->findChild<QWidget*>(field->name());
    if (!widget)
        return;
    m_widgets.insert(field, widget);
    m_fieldOf.insert(widget, field);
    connectWidget(field, widget);
    pushAll(field);
}

void ViewBinder::connectAction(Field* field, QAction* action)
{
    m_actions.insert(field, action);
    connect(action, &QAction::triggered, this, [this, field] {
        if (field->items().isEmpty())
            clickFromWidget(field);
    });
}

void ViewBinder::pushSelection(Field* field, QLineEdit* edit)
{
    if (field->selLength() > 0)
        edit->setSelection(field->selStart(), field->selLength());
    else
        edit->setCursorPosition(field->selStart());
}

void ViewBinder::trackSelection(Field* field, QLineEdit* edit)
{
    connect(edit, &QLineEdit::selectionChanged, this, [this, field, edit] {
        if (m_updating)
            return;
        UpdateGuard guard(m_updating);
        if (edit->hasSelectedText())
            field->setSelection(edit->selectionStart(), int(edit->selectedText().size()));
    });
    connect(edit, &QLineEdit::cursorPositionChanged, this, [this, field, edit](int, int pos) {
        if (m_updating || edit->hasSelectedText())
            return;
        UpdateGuard guard(m_updating);
        field->setSelection(pos, 0);
    });
}

void ViewBinder::connectWidget(Field* field, QWidget* widget)
{
    widget->installEventFilter(this);
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        connect(edit, &QLineEdit::textEdited, this, [this, field, edit] {
            if (m_updating)
                return;
            {
                UpdateGuard guard(m_updating);
                field->setText(edit->displayText());
                field->setSelection(edit->cursorPosition(), 0);
            }
            m_controller.fire(field->name(), Ev::Change);
        });
        trackSelection(field, edit);
    } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (QLineEdit* edit = combo->lineEdit()) {
            // an open list (the rates): the typed text is the field's text
            m_fieldOf.insert(edit, field);
            edit->installEventFilter(this);
            connect(edit, &QLineEdit::textEdited, this, [this, field, edit](const QString& text) {
                if (m_updating)
                    return;
                {
                    UpdateGuard guard(m_updating);
                    field->setEditedText(text);
                    field->setSelection(edit->cursorPosition(), 0);
                }
                m_controller.fire(field->name(), Ev::Change);
            });
            // The key filters of the rates read what is selected, as in a box.
            trackSelection(field, edit);
        }
        connect(combo, &QComboBox::activated, this, [this, field](int index) {
            // an open list completes what was typed as its window closes:
            // that choice reaches a window no longer loaded, which it would
            // load again
            if (m_updating || !m_controller.isLoaded())
                return;
            {
                UpdateGuard guard(m_updating);
                field->setListIndex(index);
            }
            m_controller.fire(field->name(), Ev::Change);
            clickFromWidget(field, index);
        });
    } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
        connect(list, &QListWidget::currentRowChanged, this, [this, field](int row) {
            if (m_updating)
                return;
            {
                UpdateGuard guard(m_updating);
                field->setListIndex(row);
            }
            clickFromWidget(field, row);
        });
        connect(list, &QListWidget::itemDoubleClicked, this, [this, field] {
            EventArgs args;
            args.index = field->listIndex();
            m_controller.fire(field->name(), Ev::DblClick, args);
        });
    } else if (auto* table = qobject_cast<QTableWidget*>(widget)) {
        if (!dynamic_cast<MeasuringDelegate*>(table->itemDelegate()))
            table->setItemDelegate(new MeasuringDelegate(table));
        connect(table, &QTableWidget::cellClicked, this, [this, field](int row, int col) {
            {
                UpdateGuard guard(m_updating);
                field->setCurrentRow(row);
                field->setCurrentColumn(col);
            }
            clickFromWidget(field, row);
        });
        connect(table, &QTableWidget::cellDoubleClicked, this, [this, field](int row, int col) {
            {
                UpdateGuard guard(m_updating);
                field->setCurrentRow(row);
                field->setCurrentColumn(col);
            }
            EventArgs args;
            args.index = row;
            m_controller.fire(field->name(), Ev::DblClick, args);
        });
    } else if (auto* tree = qobject_cast<QTreeWidget*>(widget)) {
        auto indexOf = [](QTreeWidgetItem* item) { return item->data(0, Qt::UserRole).toInt(); };
        connect(tree, &QTreeWidget::itemClicked, this,
                [this, field, indexOf](QTreeWidgetItem* item) {
                    field->tree().setSelected(indexOf(item));
                    clickFromWidget(field, indexOf(item));
                });
        connect(tree, &QTreeWidget::itemDoubleClicked, this,
                [this, field, indexOf](QTreeWidgetItem* item) {
                    field->tree().setSelected(indexOf(item));
                    EventArgs args;
                    args.index = indexOf(item);
                    m_controller.fire(field->name(), Ev::DblClick, args);
                });
        connect(tree, &QTreeWidget::itemExpanded, this, [field, indexOf](QTreeWidgetItem* item) {
            field->tree().node(indexOf(item)).expanded = true;
        });
        connect(tree, &QTreeWidget::itemCollapsed, this, [field, indexOf](QTreeWidgetItem* item) {
            field->tree().node(indexOf(item)).expanded = false;
        });
    } else if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
        connect(tabs, &QTabWidget::currentChanged, this, [this, field](int index) {
            if (m_updating)
                return;
            {
                UpdateGuard guard(m_updating);
                field->setValue(index);
            }
            clickFromWidget(field, index);
        });
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        if (auto* push = qobject_cast<QPushButton*>(button)) {
            // The button the view marks default is pressed by Enter in a text
            // box (pressDefault); Qt's own default would also take the Enter
            // that the logic turns into a Tab.
            if (push->isDefault())
                push->setProperty(kPorDefecto, true);
            push->setAutoDefault(false);
            push->setDefault(false);
        }
        connect(button, &QAbstractButton::clicked, this, [this, field, button] {
            if (m_updating)
                return;
            if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option) {
                UpdateGuard guard(m_updating);
                field->setValue(button->isChecked() ? 1 : 0);
            }
            clickFromWidget(field);
        });
    }
}

void ViewBinder::clickFromWidget(Field* field, int index)
{
    if (m_controllerGone || !m_controller.isLoaded())
        return;
    const bool takesFocus = field->kind() == FieldKind::Button ||
                            field->kind() == FieldKind::Check || field->kind() == FieldKind::Option;
    if (takesFocus && m_refused == field) {
        // the field left behind already held the focus and said why
        m_refused = nullptr;
        return;
    }
    if (takesFocus && m_controller.focused() != field->name() &&
        !m_controller.setFocus(field->name()))
        return;
    EventArgs args;
    args.index = index;
    m_controller.fire(field->name(), Ev::Click, args);
}

void ViewBinder::pushAll(Field* field)
{
    for (Field::Aspect a : {Field::StateAspect, Field::ItemsAspect, Field::TextAspect,
                            Field::SelectionAspect, Field::GridAspect, Field::TreeAspect})
        push(field, a);
}

void ViewBinder::push(Field* field, Field::Aspect aspect)
{
    if (m_updating)
        return;
    UpdateGuard guard(m_updating);
    if (field->kind() == FieldKind::Menu) {
        if (QAction* action = m_actions.value(field)) {
            if (field->items().isEmpty()) {
                action->setText(field->text());
                action->setEnabled(field->enabled());
                action->setVisible(field->visible());
            } else {
                action->setVisible(false);
                pushMenuItems(field);
            }
        }
        return;
    }
    QWidget* w = m_widgets.value(field);
    if (!w)
        return;
    if (aspect == Field::StateAspect) {
        w->setEnabled(field->enabled());
        if (field->visible() != !w->isHidden())
            w->setVisible(field->visible());
    }
    if (auto* edit = qobject_cast<QLineEdit*>(w)) {
        if (aspect == Field::StateAspect) {
            edit->setReadOnly(field->locked());
            const QString mask = qtMask(field->mask());
            if (edit->inputMask() != mask)
                edit->setInputMask(mask);
        }
        if ((aspect == Field::TextAspect || aspect == Field::StateAspect) &&
            edit->displayText() != field->text())
            edit->setText(field->text());
        if (aspect == Field::SelectionAspect || aspect == Field::TextAspect)
            pushSelection(field, edit);
    } else if (auto* label = qobject_cast<QLabel*>(w)) {
        if (aspect == Field::TextAspect && field->textSet())
            label->setText(field->text());
    } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
        if (aspect == Field::ItemsAspect || aspect == Field::SelectionAspect)
            pushItems(field, w);
        // An open list keeps what the logic wrote in its box, even when the
        // list's choice is pushed again, and the box's selection with it.
        const bool textOrSelection =
            aspect == Field::TextAspect || aspect == Field::SelectionAspect;
        if (textOrSelection && combo->isEditable() && combo->currentText() != field->text())
            combo->setEditText(field->text());
        if (textOrSelection && combo->lineEdit())
            pushSelection(field, combo->lineEdit());
    } else if (auto* list = qobject_cast<QListWidget*>(w)) {
        if (aspect == Field::ItemsAspect || aspect == Field::SelectionAspect)
            pushItems(field, w);
        Q_UNUSED(list);
    } else if (auto* table = qobject_cast<QTableWidget*>(w)) {
        // The cells are pushed with every change of the rows; a new current
        // row only moves the selection.
        if (aspect == Field::GridAspect)
            pushGrid(field, w);
        else if (aspect == Field::SelectionAspect)
            pushGridSelection(field, table);
    } else if (qobject_cast<QTreeWidget*>(w)) {
        if (aspect == Field::TreeAspect)
            pushTree(field, w);
    } else if (auto* bar = qobject_cast<QProgressBar*>(w)) {
        // A bar moved on draws with the next pending events (the run yields
        // as it goes), not at once on every step.
        bar->setUpdatesEnabled(false);
        bar->setRange(field->minimum(), field->maximum());
        bar->setValue(field->value());
        bar->setUpdatesEnabled(true);
    } else if (auto* status = qobject_cast<QStatusBar*>(w)) {
        if (aspect == Field::TextAspect)
            status->showMessage(field->text());
    } else if (auto* tabs = qobject_cast<QTabWidget*>(w)) {
        if (aspect == Field::StateAspect && tabs->currentIndex() != field->value())
            tabs->setCurrentIndex(field->value());
    } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
        if (aspect == Field::TextAspect && !field->text().isEmpty())
            button->setText(field->text());
        if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option)
            button->setChecked(field->value() != 0);
    } else if (auto* group = qobject_cast<QGroupBox*>(w)) {
        if (aspect == Field::TextAspect && !field->text().isEmpty())
            group->setTitle(field->text());
    }
}

QMenu* ViewBinder::menuOf(Field* field) const
{
    QAction* placeholder = m_actions.value(field);
    if (!placeholder)
        return nullptr;
    for (QMenu* menu : m_view->findChildren<QMenu*>())
        if (menu->actions().contains(placeholder))
            return menu;
    return nullptr;
}

void ViewBinder::pushMenuItems(Field* field)
{
    // A long list (thousands of taxpayers) is built when its menu opens, not
    // every time the list changes.
    QMenu* menu = menuOf(field);
    if (!menu)
        return;
    if (!m_pendingMenus.contains(field)) {
        m_pendingMenus.insert(field);
        connect(menu, &QMenu::aboutToShow, this, [this, field] { buildMenuItems(field); });
    }
    m_staleMenus.insert(field);
}

void ViewBinder::buildMenuItems(Field* field)
{
    if (!m_staleMenus.remove(field))
        return;
    QMenu* menu = menuOf(field);
    QAction* placeholder = m_actions.value(field);
    if (!menu)
        return;
    for (QAction* old : m_menuItems.value(field)) {
        menu->removeAction(old);
        old->deleteLater();
    }
    QList<QAction*> created;
    for (int i = 0; i < field->listCount(); ++i) {
        auto* action = new QAction(field->items().at(i).text, menu);
        action->setEnabled(field->items().at(i).enabled);
        connect(action, &QAction::triggered, this, [this, field, i] { clickFromWidget(field, i); });
        created.append(action);
    }
    menu->insertActions(placeholder, created);
    m_menuItems.insert(field, created);
}

void ViewBinder::pushItems(Field* field, QWidget* w)
{
    QStringList texts;
    for (const ListItem& item : field->items())
        texts << item.text;
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        bool same = combo->count() == texts.size();
        for (int i = 0; same && i < texts.size(); ++i)
            same = combo->itemText(i) == texts.at(i);
        if (!same) {
            combo->clear();
            combo->addItems(texts);
        }
        combo->setCurrentIndex(field->listIndex());
        if (combo->isEditable() && field->listIndex() < 0)
            combo->setEditText(field->text());
    } else if (auto* list = qobject_cast<QListWidget*>(w)) {
        bool same = list->count() == texts.size();
        for (int i = 0; same && i < texts.size(); ++i)
            same = list->item(i)->text() == texts.at(i);
        if (!same) {
            list->clear();
            list->addItems(texts);
        }
        list->setCurrentRow(field->listIndex());
    }
}

void ViewBinder::pushGrid(Field* field, QWidget* w)
{
    auto* table = static_cast<QTableWidget*>(w);
    table->setUpdatesEnabled(false);
    if (table->columnCount() != field->columnCount())
        table->setColumnCount(field->columnCount());
    table->setHorizontalHeaderLabels(field->header());
    table->setRowCount(field->rowCount());
    const int columns = field->columnCount();
    QVector<Qt::Alignment> alignments(columns);
    for (int c = 0; c < columns; ++c)
        alignments[c] =
            Qt::AlignVCenter | (field->rightAligned.contains(c) ? Qt::AlignRight : Qt::AlignLeft);
    for (int r = 0; r < field->rowCount(); ++r) {
        const QStringList& cells = field->row(r);
        for (int c = 0; c < columns; ++c) {
            const QString& text = c < cells.size() ? cells.at(c) : QString();
            QTableWidgetItem* item = table->item(r, c);
            if (!item) {
                // Filled before it joins the table, which then hears of it once.
                item = new GridItem(text, alignments.at(c));
                table->setItem(r, c, item);
                continue;
            }
            if (item->text() != text)
                item->setText(text);
            if (item->textAlignment() != int(alignments.at(c)))
                item->setTextAlignment(alignments.at(c));
        }
    }
    pushGridSelection(field, table);
    fitColumns(field, table);
    table->setUpdatesEnabled(true);
}

void ViewBinder::pushGridSelection(Field* field, QTableWidget* table)
{
    if (field->currentRow() >= 0 && field->currentRow() < field->rowCount())
        table->selectRow(field->currentRow());
}

namespace {

// The width a column's texts ask for, as the table's own measure of a column
// gives it, but from its longest texts alone: the widest is among them, and a
// list of thousands of rows is not laid out row by row to find it. The
// lengths are those of the field's rows when the table shows them all.
int widthOfLongest(const QVector<QStringList>& rows, const QTableWidget* table, int column)
{
    constexpr int kMeasured = 16;
    std::vector<std::pair<qsizetype, int>> longest; // length, row
    longest.reserve(kMeasured + 1);
    const bool fromRows = rows.size() == table->rowCount();
    for (int r = 0; r < table->rowCount(); ++r) {
        const QTableWidgetItem* item = fromRows ? nullptr : table->item(r, column);
        const qsizetype length =
            fromRows ? rows.at(r).value(column).size() : item ? item->text().size() : 0;
        if (int(longest.size()) == kMeasured && length <= longest.back().first)
            continue;
        const auto at = std::find_if(longest.begin(), longest.end(),
                                     [length](const auto& kept) { return kept.first < length; });
        longest.insert(at, {length, r});
        if (int(longest.size()) > kMeasured)
            longest.pop_back();
    }
    const QAbstractItemView* view = table; // where the measure of a cell is public
    int width = 0;
    for (const auto& [length, row] : longest)
        width = qMax(width, view->sizeHintForIndex(table->model()->index(row, column)).width());
    // A ruled table gives each column a dot more for its line.
    return table->showGrid() ? width + 1 : width;
}

} // namespace

void ViewBinder::fitColumns(Field* field, QTableWidget* table)
{
    // Every column is as wide as what it shows, but the widest column of text
    // (a description, a name) takes what room is left or gives it up, so that
    // the amounts on the right always stay in sight. Each column's text is
    // measured once per push: the widths are fixed to what was measured
    // rather than measured again at every layout of the header.
    QHeaderView* header = table->horizontalHeader();
    const int columns = table->columnCount();
    QVector<int> widths(columns);
    for (int c = 0; c < columns; ++c)
        widths[c] = qBound(header->minimumSectionSize(),
                           qMax(widthOfLongest(field->rows(), table, c),
                                header->sectionSizeHint(c)),
                           header->maximumSectionSize());
    int widest = -1;
    int widestWidth = 0;
    for (int c = 0; c < columns; ++c) {
        if (!field->rightAligned.contains(c) && widths.at(c) > widestWidth) {
            widest = c;
            widestWidth = widths.at(c);
        }
    }
    if (widest >= 0)
        header->setStretchLastSection(false);
    for (int c = 0; c < columns; ++c) {
        if (c == widest)
            continue;
        header->setSectionResizeMode(c, QHeaderView::Fixed);
        header->resizeSection(c, widths.at(c));
    }
    if (widest < 0)
        return;
    header->setSectionResizeMode(widest, QHeaderView::Stretch);
    for (int r = 0; r < table->rowCount(); ++r)
        if (auto* item = dynamic_cast<GridItem*>(table->item(r, widest)))
            item->showTip(); // the whole text when it is cut short
}

void ViewBinder::pushTree(Field* field, QWidget* w)
{
    auto* tree = static_cast<QTreeWidget*>(w);
    tree->setUpdatesEnabled(false);
    tree->clear();
    const TreeModel& model = field->tree();
    // The items are built apart and handed to the tree in one piece: the view
    // hears of them once, not once per node.
    QVector<QTreeWidgetItem*> items(model.count(), nullptr);
    QList<QTreeWidgetItem*> roots;
    for (int i = 0; i < model.count(); ++i) {
        const TreeNode& node = model.node(i);
        auto* item = new QTreeWidgetItem;
        item->setText(0, node.text);
        item->setData(0, Qt::UserRole, i);
        item->setIcon(0, TreeIcon(node.image));
        if (node.parent < 0)
            roots.append(item);
        else
            items.at(node.parent)->addChild(item);
        items[i] = item;
    }
    tree->addTopLevelItems(roots);
    for (int i = 0; i < model.count(); ++i)
        if (model.node(i).expanded)
            items.at(i)->setExpanded(true);
    if (model.selected() >= 0 && model.selected() < items.size())
        tree->setCurrentItem(items.at(model.selected()));
    tree->setUpdatesEnabled(true);
}

void ViewBinder::focusField(const QString& name) { focusWidget(name, Qt::OtherFocusReason); }

void ViewBinder::returnFocus(const QString& name)
{
    m_refusedNow = true;
    focusWidget(name, Qt::ActiveWindowFocusReason);
}

void ViewBinder::focusWidget(const QString& name, Qt::FocusReason reason)
{
    for (auto it = m_widgets.cbegin(); it != m_widgets.cend(); ++it) {
        if (it.key()->name() != name || !it.value())
            continue;
        if (!it.value()->hasFocus()) {
            m_focusing = true;
            it.value()->setFocus(reason);
            m_focusing = false;
        }
        return;
    }
}

int ViewBinder::keyCodeOf(int qtKey, const QString& text)
{
    switch (qtKey) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Delete: return 46;
    default: break;
    }
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return 112 + (qtKey - Qt::Key_F1);
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey;
    return text.isEmpty() ? 0 : text.at(0).toUpper().unicode();
}

bool ViewBinder::handleKey(Field* field, QKeyEvent* event)
{
    const int code = keyCodeOf(event->key(), event->text());
    EventArgs down;
    down.key = code;
    down.shift = int(event->modifiers() >> 25) & 7;
    m_controller.fireFormKeyDown(down);
    if (code != 0 && down.key == 0)
        return true;
    m_controller.fire(field->name(), Ev::KeyDown, down);
    if (code != 0 && down.key == 0)
        return true;
    int ascii = 0;
    if (code == 8 || code == 13 || code == 27)
        ascii = code;
    else if (!event->text().isEmpty() && event->text().at(0).isPrint())
        ascii = event->text().at(0).unicode();
    if (ascii == 0)
        return false;
    if (ascii >= 32 && field->maxLength() > 0 &&
        field->text().size() - field->selLength() >= field->maxLength())
        return true; // the limit binds typing only; the logic may write more
    EventArgs press;
    press.key = ascii;
    const QString before = m_controller.focused();
    m_refusedNow = false;
    m_controller.fire(field->name(), Ev::KeyPress, press);
    if (ascii == 13 && pressDefault(field, before))
        return true;
    if (press.key == 0)
        return true;
    if (press.key != ascii) {
        auto* edit = qobject_cast<QLineEdit*>(m_widgets.value(field));
        if (auto* combo = qobject_cast<QComboBox*>(m_widgets.value(field)))
            edit = combo->lineEdit();
        if (edit) {
            edit->insert(QString(QChar(press.key)));
            emit edit->textEdited(edit->text());
        }
        return true;
    }
    if (ascii == 13) {
        // Enter presses the command button that has the focus, as it always
        // did; in a text box it does nothing by itself.
        if (auto* button = qobject_cast<QPushButton*>(m_widgets.value(field))) {
            button->click();
            return true;
        }
        return qobject_cast<QLineEdit*>(m_widgets.value(field)) != nullptr;
    }
    return false;
}

bool ViewBinder::pressDefault(Field* field, const QString& before)
{
    // Enter that the logic did not turn into a move (the field kept the
    // focus, and no refusal of its leaving held it there) presses the
    // window's default button, as a dialog does.
    const bool typed = field->kind() == FieldKind::Text || field->kind() == FieldKind::Combo;
    if (!typed || m_refusedNow || !m_controller.isLoaded() || !m_controller.isShown() ||
        m_controller.focused() != before)
        return false;
    for (QPushButton* button : m_view->findChildren<QPushButton*>())
        if (button->property(kPorDefecto).toBool() && button->isEnabled() &&
            button->isVisible()) {
            button->click();
            return true;
        }
    return false;
}

bool ViewBinder::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    Field* field = widget && !m_controllerGone ? m_fieldOf.value(widget) : nullptr;
    if (!field)
        return false;
    switch (event->type()) {
    case QEvent::FocusIn:
        if (!m_focusing && m_controller.focused() != field->name()) {
            m_refused = nullptr;
            if (!m_controller.setFocus(field->name())) {
                m_refused = field;
                const QString back = m_controller.focused();
                QTimer::singleShot(0, this, [this, back] { returnFocus(back); });
            }
        }
        break;
    case QEvent::KeyPress: return handleKey(field, static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->isAutoRepeat())
            break;
        EventArgs up;
        up.key = keyCodeOf(key->key(), key->text());
        up.shift = int(key->modifiers() >> 25) & 7;
        m_controller.fire(field->name(), Ev::KeyUp, up);
        break;
    }
    case QEvent::MouseButtonDblClick:
        if (qobject_cast<QLineEdit*>(widget) || qobject_cast<QAbstractButton*>(widget))
            m_controller.fire(field->name(), Ev::DblClick);
        break;
    default: break;
    }
    return false;
}
