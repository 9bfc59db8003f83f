#include "Look.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleFactory>
#include <QTableWidget>
#include <QTimer>

namespace {

// Disabled text stays readable: the activity descriptions and a stored
// taxpayer's CUIT are disabled, yet the person must read them.
const QColor kDisabledText(0x60, 0x60, 0x60);

// A box the person cannot type into (a derived amount, the header of a form)
// is drawn on the window's ground, so the boxes to fill stand out.
class ReadOnlyShade : public QObject
{
public:
    using QObject::QObject;

    static void shade(QLineEdit* edit)
    {
        QPalette palette = edit->palette();
        const QPalette& app = QApplication::palette();
        const QColor ground =
            edit->isReadOnly() ? app.color(QPalette::Window) : app.color(QPalette::Base);
        for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, QPalette::Base, ground);
        edit->setPalette(palette);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ReadOnlyChange)
            shade(static_cast<QLineEdit*>(watched));
        return false;
    }
};

// Keyboard manners of a text box: entered by the keyboard (Tab, Shift+Tab, a
// shortcut, or Enter moving on) it selects its text, so what is typed next
// replaces it; a box the person cannot type into stays out of the Tab order,
// and so does one that another field fills (its view marks it "fueraDelTab").
// Focus that only returns to the box (its leaving was refused, the window was
// activated again) leaves its text as the person had it.
class TextBoxManners : public QObject
{
public:
    using QObject::QObject;

    static void placeInTabOrder(QLineEdit* edit)
    {
        const bool skipped = edit->isReadOnly() || edit->property("fueraDelTab").toBool();
        edit->setFocusPolicy(skipped ? Qt::ClickFocus : Qt::StrongFocus);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* edit = static_cast<QLineEdit*>(watched);
        if (event->type() == QEvent::ReadOnlyChange)
            placeInTabOrder(edit);
        if (event->type() == QEvent::FocusIn) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason)
                QTimer::singleShot(0, edit, [edit] {
                    if (edit->hasFocus())
                        edit->selectAll();
                });
        }
        return false;
    }
};

void tidyGrid(QTableWidget* grid)
{
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 8);
    grid->horizontalHeader()->setHighlightSections(false);
    grid->setAlternatingRowColors(true);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setWordWrap(false);
}

// The buttons of the row at the bottom of a window share the widest one's width.
void evenButtons(QBoxLayout* row)
{
    QList<QPushButton*> buttons;
    int width = 0;
    for (int i = 0; i < row->count(); ++i) {
        auto* button = qobject_cast<QPushButton*>(row->itemAt(i)->widget());
        if (!button)
            continue;
        buttons << button;
        width = qMax(width, button->sizeHint().width());
    }
    for (QPushButton* button : buttons)
        button->setMinimumWidth(width);
}

} // namespace

void ApplyLook()
{
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    static bool applied = false;
    if (!app || applied)
        return;
    applied = true;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setFamilies({QStringLiteral("DejaVu Sans"), QStringLiteral("Noto Sans"),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial")});
    font.setPointSize(9);
    QApplication::setFont(font);
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Disabled, QPalette::Text, kDisabledText);
    QApplication::setPalette(palette);
}

void TidyView(QWidget* view)
{
    for (QTableWidget* grid : view->findChildren<QTableWidget*>())
        tidyGrid(grid);
    auto* shade = new ReadOnlyShade(view);
    auto* manners = new TextBoxManners(view);
    for (QLineEdit* edit : view->findChildren<QLineEdit*>()) {
        edit->installEventFilter(manners);
        // the box inside a combo or a spin box is drawn, and placed in the
        // Tab order, by its owner
        QWidget* owner = edit->parentWidget();
        if (qobject_cast<QComboBox*>(owner) || qobject_cast<QAbstractSpinBox*>(owner))
            continue;
        TextBoxManners::placeInTabOrder(edit);
        edit->installEventFilter(shade);
        ReadOnlyShade::shade(edit);
    }
    // an open list of figures (the rates) reads like the amounts beside it
    for (QComboBox* combo : view->findChildren<QComboBox*>())
        if (combo->lineEdit() && combo->property("numeric").toBool())
            combo->lineEdit()->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QBoxLayout* row : view->findChildren<QBoxLayout*>(QStringLiteral("layoutBotones")))
        evenButtons(row);
}
