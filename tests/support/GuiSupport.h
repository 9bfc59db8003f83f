#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "Controller.h"
#include "frame/view/QtUi.h"

// What the tests on real widgets share: finding a widget in the windows on
// screen, typing into it, answering stray message boxes, and showing a window
// modally while a script drives it.
namespace Gui {

// The widget of that name in the shown windows.
template <class T = QWidget> T* find(const QString& name)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible())
            if (T* found = top->findChild<T*>(name))
                return found;
    return nullptr;
}

// The shown window that holds a widget of that name.
inline QWidget* windowWith(const QString& name)
{
    QWidget* found = find(name);
    return found ? found->window() : nullptr;
}

inline void typeInto(const QString& name, const QString& text)
{
    auto* edit = find<QLineEdit>(name);
    QVERIFY2(edit, qPrintable(name));
    edit->setFocus();
    QApplication::processEvents();
    QTest::keyClicks(edit, text);
}

// Lets the views catch up, and deletes those of the windows that closed.
inline void settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The view of `window` (loaded first when it is not) shown, active and drawn,
// at `size` when one is given; null when the window has no view.
inline QWidget* showView(Controller& window, QSize size = {})
{
    if (!window.isLoaded())
        window.load();
    QWidget* view = OpenView(window);
    if (!view)
        return nullptr;
    if (size.isValid())
        view->resize(size);
    view->show();
    QApplication::setActiveWindow(view);
    QApplication::processEvents();
    return view;
}

// Closes the window; its view goes with it.
inline void closeView(Controller& window)
{
    window.unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A click and a double click of the mouse at the centre of `rect` of the
// item view, as a person opens what is there.
inline void doubleClickAt(QAbstractItemView* view, const QRect& rect)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rect.center());
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, rect.center());
    QApplication::processEvents();
}
inline void doubleClickItem(QTreeWidget* tree, QTreeWidgetItem* item)
{
    tree->scrollToItem(item);
    doubleClickAt(tree, tree->visualItemRect(item));
}
inline void doubleClickCell(QTableWidget* table, int row, int col)
{
    doubleClickAt(table, table->visualRect(table->model()->index(row, col)));
}

// How deep an item of a tree stands: 0 at the top.
inline int depthOf(const QTreeWidgetItem* item)
{
    int depth = 0;
    for (const QTreeWidgetItem* p = item->parent(); p; p = p->parent())
        ++depth;
    return depth;
}

// Shows `window` modally on real widgets and runs `script` once it stands on
// screen; whatever the script leaves open is closed from the close box, so
// that a failed check never leaves the test waiting.
inline void showModal(Controller& window, const std::function<void()>& script)
{
    QTimer::singleShot(0, [&window, script] {
        auto close = qScopeGuard([&window] {
            if (window.isLoaded())
                window.closeByUser();
        });
        script();
    });
    window.show(true);
}

// Any message box that shows up is answered and remembered, so that a
// message nobody expected fails the test instead of hanging it. It is closed
// unanswered, or, for a person who goes ahead, with its Yes or OK button.
class MessageWatch
{
public:
    enum class Answer { Close, GoAhead };
    explicit MessageWatch(Answer answer = Answer::Close)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            m_texts << box->text();
            for (QAbstractButton* button : box->buttons()) {
                const auto role = box->buttonRole(button);
                if (answer == Answer::GoAhead &&
                    (role == QMessageBox::YesRole || role == QMessageBox::AcceptRole)) {
                    button->click();
                    return;
                }
            }
            box->done(0);
        });
        m_timer.start(20);
    }
    const QStringList& texts() const { return m_texts; }

private:
    QTimer m_timer;
    QStringList m_texts;
};

} // namespace Gui
