#include "Controller.h"

#include "UiPort.h"

Controller::Controller(const QString& windowName, QObject* parent)
    : QObject(parent), m_windowName(windowName)
{
    setObjectName(windowName);
}

Controller::~Controller() = default;

void Controller::setCaption(const QString& caption)
{
    m_caption = caption;
    emit captionChanged(caption);
}

Field& Controller::field(const QString& name)
{
    if (!m_loaded && !m_loading)
        load();
    auto it = m_fields.find(name);
    if (it == m_fields.end()) {
        // A name the window does not have is a fault of the program, not of
        // the person: keep going on a scratch field so nothing is lost.
        qWarning("%s has no field %s", qPrintable(m_windowName), qPrintable(name));
        return add(name, FieldKind::Label);
    }
    return **it;
}

QList<Field*> Controller::fields() const
{
    QList<Field*> out;
    for (const QString& name : m_order)
        out.append(m_fields.value(name));
    return out;
}

void Controller::load()
{
    if (m_loaded || m_loading)
        return;
    m_loading = true;
    qDeleteAll(m_fields);
    m_fields.clear();
    m_order.clear();
    m_tabOrder.clear();
    m_handlers.clear();
    m_focused.clear();
    design();
    emit fieldsRebuilt();
    m_loaded = true;
    m_loading = false;
    onLoad();
}

bool Controller::runUnload(int mode)
{
    if (!m_loaded)
        return true;
    bool cancel = false;
    onQueryUnload(cancel, mode);
    if (cancel)
        return false;
    onUnload();
    m_loaded = false;
    m_shown = false;
    m_focused.clear();
    emit closeRequested();
    return true;
}

bool Controller::unload() { return runUnload(1); }

bool Controller::closeByUser() { return runUnload(0); }

void Controller::hide()
{
    m_shown = false;
    emit closeRequested();
}

void Controller::show(bool modal)
{
    if (!m_loaded)
        load();
    if (!m_loaded)
        return;
    if (modal)
        ui().showModal(*this);
    else
        ui().showModeless(*this);
}

bool Controller::isFocusable(const Field& f) const
{
    switch (f.kind()) {
    case FieldKind::Label:
    case FieldKind::Progress:
    case FieldKind::Status:
    case FieldKind::Menu:
    case FieldKind::Frame:
    case FieldKind::Tabs:
        return false;
    default:
        return f.enabled() && f.visible();
    }
}

bool Controller::setFocus(const QString& name)
{
    if (!m_fields.contains(name))
        return false;
    if (m_focused == name) {
        emit focusRequested(name);
        return true;
    }
    const QString leaving = m_focused;
    if (!leaving.isEmpty() && !m_validating) {
        EventArgs validate;
        m_validating = true;
        fire(leaving, Ev::Validate, validate);
        m_validating = false;
        if (validate.cancel) {
            emit focusReturned(m_focused);
            return false;
        }
        if (m_focused != leaving) // the handler moved the focus itself
            return m_focused == name;
        m_focused = name;
        fire(leaving, Ev::LostFocus);
        if (m_focused != name)
            return false;
    } else {
        m_focused = name;
    }
    emit focusRequested(name);
    fire(name, Ev::GotFocus);
    return true;
}

void Controller::sendTab()
{
    const QStringList& order = m_tabOrder;
    if (order.isEmpty())
        return;
    int start = int(order.indexOf(m_focused));
    for (int step = 1; step <= order.size(); ++step) {
        const QString& next = order.at((start + step) % order.size());
        const Field* f = m_fields.value(next);
        if (f && isFocusable(*f)) {
            setFocus(next);
            return;
        }
    }
}

void Controller::fire(const QString& fieldName, Ev ev, EventArgs& args)
{
    auto it = m_handlers.find({fieldName, ev});
    if (it != m_handlers.end())
        it->second(args);
}

void Controller::fire(const QString& fieldName, Ev ev)
{
    EventArgs args;
    fire(fieldName, ev, args);
}

bool Controller::hasHandler(const QString& fieldName, Ev ev) const
{
    return m_handlers.count({fieldName, ev}) > 0;
}

void Controller::fireFormKeyDown(EventArgs& args) { onFormKeyDown(args); }

Field& Controller::add(const QString& name, FieldKind kind, const QString& text)
{
    auto* f = new Field(name, kind, this);
    if (!text.isEmpty())
        f->setText(text);
    m_fields.insert(name, f);
    m_order.append(name);
    switch (kind) {
    case FieldKind::Label:
    case FieldKind::Progress:
    case FieldKind::Status:
    case FieldKind::Menu:
    case FieldKind::Frame:
    case FieldKind::Tabs:
        break;
    default:
        m_tabOrder.append(name);
    }
    return *f;
}

void Controller::on(const QString& fieldName, Ev ev, Handler handler)
{
    m_handlers[{fieldName, ev}] = std::move(handler);
}
