#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>

#include "Field.h"

// The events a window forwards to its controller, as the old controls raised
// them.
enum class Ev { Click, DblClick, Change, KeyPress, KeyDown, KeyUp, GotFocus, LostFocus, Validate };

struct EventArgs {
    int index = -1;      // item of a control array (menu list), or node/row
    int key = 0;         // KeyPress: character code; KeyDown/KeyUp: key code
    int shift = 0;       // shift state of KeyDown/KeyUp
    bool cancel = false; // Validate: keep the focus
};

using Handler = std::function<void(EventArgs&)>;

// Key codes of the old keyboard events that the logic names.
namespace KeyCode {
constexpr int Back = 8;
constexpr int Tab = 9;
constexpr int Return = 13;
constexpr int Shift = 16;
constexpr int Escape = 27;
constexpr int Up = 38;
constexpr int Down = 40;
constexpr int F1 = 112;
constexpr int F3 = 114;
} // namespace KeyCode

// A window of the system without its widgets: named fields, public properties
// and the handlers of its events. The view binder (or a test) drives it.
class Controller : public QObject
{
    Q_OBJECT
public:
    explicit Controller(const QString& windowName, QObject* parent = nullptr);
    ~Controller() override;

    const QString& windowName() const { return m_windowName; }
    const QString& caption() const { return m_caption; }
    void setCaption(const QString& caption);

    // A field of the window; touching a field of a window that is not loaded
    // loads it first, as the old forms did.
    Field& field(const QString& name);
    Field& operator[](const QString& name) { return field(name); }
    bool hasField(const QString& name) const { return m_fields.contains(name); }
    QList<Field*> fields() const;

    bool isLoaded() const { return m_loaded; }
    void load();
    // Closes the window from code (query mode 1): QueryUnload, then Unload.
    bool unload();
    // Closes the window from its close box (query mode 0).
    bool closeByUser();
    // Hides the window and keeps it loaded.
    void hide();
    bool isShown() const { return m_shown; }

    // Shows the window through the UI port; a modal call returns when it closes.
    void show(bool modal = true);

    // Focus, with the validation of the field that loses it.
    const QString& focused() const { return m_focused; }
    bool setFocus(const QString& name);
    // The "{TAB}" the forms send: focus to the next field in tab order.
    void sendTab();
    const QStringList& tabOrder() const { return m_tabOrder; }
    void setTabOrder(const QStringList& order) { m_tabOrder = order; }

    // Raises an event of a field: runs its handler when there is one.
    void fire(const QString& fieldName, Ev ev, EventArgs& args);
    void fire(const QString& fieldName, Ev ev);
    bool hasHandler(const QString& fieldName, Ev ev) const;

    // Window-level key preview (the form's own KeyDown), e.g. F1 for help.
    void fireFormKeyDown(EventArgs& args);

    // Called by the view when it is shown or closed.
    void setShown(bool shown) { m_shown = shown; }

signals:
    void closeRequested();
    void focusRequested(const QString& name);
    // The focus stays on the field the person was leaving: its validation
    // refused the move.
    void focusReturned(const QString& name);
    void captionChanged(const QString& caption);
    void fieldsRebuilt();

protected:
    // Creates the fields with their design-time values, in tab order.
    virtual void design() = 0;
    virtual void onLoad() {}
    virtual void onQueryUnload(bool& cancel, int mode) {}
    virtual void onUnload() {}
    virtual void onFormKeyDown(EventArgs& args) {}

    Field& add(const QString& name, FieldKind kind, const QString& text = {});
    void on(const QString& fieldName, Ev ev, Handler handler);

private:
    bool isFocusable(const Field& f) const;
    bool runUnload(int mode);

    QString m_windowName;
    QString m_caption;
    QHash<QString, Field*> m_fields;
    QStringList m_order; // fields in the order they were added
    QStringList m_tabOrder;
    std::map<std::pair<QString, Ev>, Handler> m_handlers;
    QString m_focused;
    bool m_loaded = false;
    bool m_loading = false;
    bool m_shown = false;
    bool m_validating = false;
};
