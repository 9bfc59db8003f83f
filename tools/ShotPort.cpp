#include "ShotPort.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <cstdio>

#include "Controller.h"
#include "frame/view/WindowFit.h"

namespace {

void note(const QString& text)
{
    std::printf("  %s\n", qPrintable(text));
    std::fflush(stdout);
}

void settle()
{
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace

ShotPort::ShotPort(const QString& folder) : m_folder(folder) {}

void ShotPort::plan(const QString& window, const QString& picture, Scene before, Scene after)
{
    m_plans[window].append(Plan{picture, std::move(before), std::move(after)});
}

QStringList ShotPort::untaken() const
{
    QStringList out;
    for (auto it = m_plans.cbegin(); it != m_plans.cend(); ++it)
        for (const Plan& p : it.value())
            if (!p.picture.isEmpty())
                out << p.picture;
    return out;
}

void ShotPort::save(const QPixmap& pixmap, const QString& picture)
{
    if (pixmap.save(m_folder + u'/' + picture + QStringLiteral(".png")))
        m_taken << picture;
    else
        note(QStringLiteral("no se pudo guardar ") + picture + QStringLiteral(".png"));
}

QWidget* ShotPort::present(Controller& window)
{
    QWidget* view = OpenView(window);
    if (!view) {
        note(QStringLiteral("la ventana ") + window.windowName() +
             QStringLiteral(" no tiene vista registrada: sin imagen"));
        return nullptr;
    }
    if (!m_wholeScreen) {
        view->resize(view->size().expandedTo(view->sizeHint()));
        view->show();
        settle();
        return view;
    }
    PlaceWindow(view, window.windowName());
    view->show();
    view->activateWindow();
    // the window manager maps and frames the window in its own time
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 500)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    return view;
}

QPixmap ShotPort::picture(QWidget* view) const
{
    return m_wholeScreen ? view->screen()->grabWindow(0) : view->grab();
}

bool ShotPort::shoot(Controller& window, const QString& picture, const Scene& before)
{
    window.load();
    if (before)
        before(window);
    QWidget* view = present(window);
    if (view)
        save(this->picture(view), picture);
    if (window.isLoaded())
        window.unload();
    window.setShown(false);
    settle();
    return view != nullptr;
}

void ShotPort::showModal(Controller& window)
{
    QList<Plan>& plans = m_plans[window.windowName()];
    if (plans.isEmpty()) {
        note(QStringLiteral("(") + window.windowName() + QStringLiteral(" se abrió y se cerró)"));
        window.unload();
        window.setShown(false);
        return;
    }
    const Plan plan = plans.takeFirst();
    if (plan.before)
        plan.before(window);
    QWidget* view = present(window);
    if (view && !plan.picture.isEmpty())
        save(picture(view), plan.picture);
    if (plan.after)
        plan.after(window);
    if (window.isLoaded() && window.isShown())
        window.unload();
    window.setShown(false);
    settle();
}

void ShotPort::showModeless(Controller& window)
{
    QWidget* view = present(window);
    if (view)
        m_modeless.insert(window.windowName(), view);
}

int ShotPort::messageBox(const QString& text, int style, const QString& title)
{
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral(" / "))
        .replace(u'\n', QStringLiteral(" / "));
    note(QStringLiteral("mensaje «") + title + QStringLiteral("»: ") + shown);
    switch (style & 0xF) {
    case Msg::YesNo: return Msg::No;
    case Msg::OkCancel: return Msg::Cancel;
    default: return Msg::Ok;
    }
}

void ShotPort::yield()
{
    QApplication::processEvents();
}

QString ShotPort::chooseFolder(const QString&)
{
    return {};
}

QString ShotPort::chooseOpenFile(const QString&, const QString&, const QString&)
{
    return {};
}

QString ShotPort::chooseSaveFile(const QString&, const QString&, const QString&)
{
    return {};
}

bool ShotPort::openDocument(const QString&)
{
    return false;
}

void ShotPort::setBusy(bool) {}

void ShotPort::endProgram() {}
