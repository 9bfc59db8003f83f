#include "WindowFit.h"

#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QWindow>

namespace {

const QString kGroup = QStringLiteral("Ventanas");

// The frame of a window that has none yet: the one the active window wears,
// or a title bar and thin borders.
QMargins frameMargins()
{
    if (QWidget* active = QApplication::activeWindow()) {
        const QRect outer = active->frameGeometry();
        const QRect inner = active->geometry();
        return {inner.left() - outer.left(), inner.top() - outer.top(),
                outer.right() - inner.right(), outer.bottom() - inner.bottom()};
    }
    return {};
}

bool fitsIn(const QSize& size, const QSize& room)
{
    return size.width() <= room.width() && size.height() <= room.height();
}

// The widget whose layout holds the window's fields.
QWidget* holderOf(QWidget* view)
{
    if (auto* main = qobject_cast<QMainWindow*>(view))
        return main->centralWidget();
    return view;
}

// Moves every item of `from` but the row of buttons into `to`, in order.
void moveFields(QBoxLayout* from, QBoxLayout* to)
{
    for (int i = 0; i < from->count();) {
        QLayoutItem* item = from->itemAt(i);
        if (item->layout() && item->layout()->objectName() == QLatin1String("layoutBotones")) {
            ++i;
            continue;
        }
        const int stretch = from->stretch(i);
        from->takeAt(i);
        if (QWidget* widget = item->widget()) {
            to->addWidget(widget, stretch, item->alignment());
            delete item;
        } else if (QLayout* layout = item->layout()) {
            to->addLayout(layout, stretch);
        } else {
            to->addItem(item);
        }
    }
}

// The fields of the window go into a scroll area that takes the place of
// the layout's first item; the buttons stay below it. A field reached by the
// keyboard scrolls into sight.
void scrollFields(QWidget* view)
{
    QWidget* holder = holderOf(view);
    auto* outer = holder ? qobject_cast<QBoxLayout*>(holder->layout()) : nullptr;
    if (!outer || holder->findChild<QScrollArea*>(QStringLiteral("scrCampos")))
        return;
    auto* scroll = new QScrollArea(holder);
    scroll->setObjectName(QStringLiteral("scrCampos"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* body = new QWidget;
    body->setObjectName(QStringLiteral("wdgCampos"));
    // In the window before the fields move into it: they keep their places
    // in the window's Tab order.
    scroll->setWidget(body);
    auto* inner = new QBoxLayout(outer->direction(), body);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->setSpacing(outer->spacing());
    moveFields(outer, inner);
    outer->insertWidget(0, scroll, 1);
    QObject::connect(qApp, &QApplication::focusChanged, scroll,
                     [scroll, body](QWidget*, QWidget* now) {
                         if (now && body->isAncestorOf(now))
                             scroll->ensureWidgetVisible(now);
                     });
}

// Remembers the size and place of a window when it is hidden or closed.
class PlaceKeeper : public QObject
{
public:
    PlaceKeeper(QWidget* view, const QString& name) : QObject(view), m_name(name) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* view = static_cast<QWidget*>(watched);
        // a window minimised is hidden by the desktop: its place stays
        if (event->type() == QEvent::Hide && !event->spontaneous() && view->isWindow()) {
            QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
            settings.beginGroup(kGroup);
            // A place already kept is not written again (the file would be
            // rewritten and flushed to disk on every close).
            const QRect place = view->isMaximized() ? view->normalGeometry() : view->geometry();
            if (settings.value(m_name).toRect() != place || !settings.contains(m_name))
                settings.setValue(m_name, place);
        }
        return false;
    }

private:
    QString m_name;
};

// A window opens centred on the window it was opened from, or on the screen
// when it is the first one (the splash is no owner), and never beyond the
// screen's edges.
void centreOnOwner(QWidget* view)
{
    QWidget* owner = QApplication::activeWindow();
    const bool hasOwner = owner && owner != view && owner->windowType() != Qt::SplashScreen;
    const QRect screen = (hasOwner ? owner->screen() : view->screen())->availableGeometry();
    // The view has no frame before it is shown: it will get the owner's.
    QRect frame = hasOwner ? QRect(QPoint(), view->size()).marginsAdded(frameMargins())
                           : view->frameGeometry();
    frame.moveCenter(hasOwner ? owner->frameGeometry().center() : screen.center());
    frame.moveRight(qMin(frame.right(), screen.right()));
    frame.moveBottom(qMin(frame.bottom(), screen.bottom()));
    frame.moveLeft(qMax(frame.left(), screen.left()));
    frame.moveTop(qMax(frame.top(), screen.top()));
    view->move(frame.topLeft());
}

} // namespace

QSize RoomOnScreen(QWidget* view)
{
    QWidget* active = QApplication::activeWindow();
    QScreen* screen = (active && active != view ? active : view)->screen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 720);
    return available.marginsRemoved(frameMargins()).size();
}

void FitInto(QWidget* view, const QSize& room)
{
    const QSize wanted = view->size().expandedTo(view->sizeHint());
    if (fitsIn(wanted, room)) {
        view->resize(wanted);
        return;
    }
    if (!fitsIn(view->minimumSizeHint(), room)) {
        scrollFields(view);
        // the window's least size follows its layout at once, not later
        for (QWidget* w : {holderOf(view), view})
            if (w && w->layout())
                w->layout()->activate();
    }
    view->resize(wanted.boundedTo(room));
}

bool RestorePlace(QWidget* view, const QString& windowName)
{
    if (!view->property("lugarRecordado").toBool()) {
        view->setProperty("lugarRecordado", true);
        view->installEventFilter(new PlaceKeeper(view, windowName));
    }
    QSettings settings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
    settings.beginGroup(kGroup);
    const QRect place = settings.value(windowName).toRect();
    if (!place.isValid() || !fitsIn(view->minimumSize(), place.size()))
        return false;
    const QRect framed = place.marginsAdded(frameMargins());
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (!screen->availableGeometry().contains(framed))
            continue;
        view->setGeometry(place);
        return true;
    }
    return false;
}

void PlaceWindow(QWidget* view, const QString& windowName)
{
    FitInto(view, RoomOnScreen(view));
    if (!RestorePlace(view, windowName))
        centreOnOwner(view);
}
