#include "QtUi.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <QWidget>

#include "Controller.h"
#include "ErrorLog.h"
#include "HelpPages.h"
#include "HelpViewer.h"
#include "Look.h"
#include "ViewBinder.h"
#include "ViewRegistry.h"
#include "WindowFit.h"

namespace {

// Sends the close box to the controller, which decides whether the window
// closes (its QueryUnload may refuse).
class CloseBoxFilter : public QObject
{
public:
    CloseBoxFilter(QWidget* view, Controller& controller) : QObject(view), m_controller(controller)
    {
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::Close || m_closing)
            return false;
        event->ignore();
        if (m_controller.isLoaded() && m_controller.isShown())
            m_controller.closeByUser();
        return true;
    }

public:
    bool m_closing = false;

private:
    Controller& m_controller;
};

QMessageBox::Icon iconOf(int style)
{
    switch (style & 0x70) {
    case Msg::Critical: return QMessageBox::Critical;
    case Msg::Question: return QMessageBox::Question;
    case Msg::Exclamation: return QMessageBox::Warning;
    case Msg::Information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

// F1 in any window opens the manual at that window's page, unless a menu of
// the window already answers F1 (the main window's "Manual de Uso").
void addHelpKey(QWidget* view, const QString& windowName)
{
    const QKeySequence f1(Qt::Key_F1);
    for (const QAction* action : view->findChildren<QAction*>())
        if (action->shortcut() == f1)
            return;
    auto* help = new QShortcut(f1, view);
    help->setContext(Qt::WindowShortcut);
    const QString helpPath = HelpPathFor(windowName);
    QObject::connect(help, &QShortcut::activated, view,
                     [helpPath] { HelpViewer::instance().showPage(helpPath); });
}

// Escape presses "Cancelar" wherever the window has it enabled; elsewhere a
// dialog takes Escape as its close box, as before.
void addEscapeKey(QWidget* view)
{
    auto* cancel = view->findChild<QPushButton*>(QStringLiteral("cmdCancelar"));
    if (!cancel)
        return;
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), view);
    escape->setContext(Qt::WindowShortcut);
    QObject::connect(escape, &QShortcut::activated, view, [view, cancel] {
        if (cancel->isEnabled() && cancel->isVisible())
            cancel->click();
        else if (auto* dialog = qobject_cast<QDialog*>(view))
            dialog->reject();
    });
}

} // namespace

QtUi::QtUi()
{
    ApplyLook();
}

QWidget* OpenView(Controller& window)
{
    QWidget* view = CreateView(window.windowName());
    if (!view) {
        LogError(QStringLiteral("0"), QStringLiteral("No hay vista para ") + window.windowName(),
                 QStringLiteral("QtUi"));
        return nullptr;
    }
    TidyView(view);
    view->setAttribute(Qt::WA_DeleteOnClose, false);
    new ViewBinder(view, window);
    addHelpKey(view, window.windowName());
    addEscapeKey(view);
    auto* filter = new CloseBoxFilter(view, window);
    view->installEventFilter(filter);
    QPointer<QWidget> guarded(view);
    QObject::connect(&window, &Controller::closeRequested, view, [guarded, filter] {
        if (!guarded)
            return;
        filter->m_closing = true;
        guarded->close();
        guarded->deleteLater();
    });
    // Escape in a dialog hides it without a close event: treat it as the
    // close box, which the controller may refuse.
    if (auto* dialog = qobject_cast<QDialog*>(view)) {
        QObject::connect(dialog, &QDialog::rejected, &window, [guarded, &window] {
            if (!window.isLoaded() || !window.isShown())
                return;
            if (!window.closeByUser() && guarded)
                guarded->show();
        });
    }
    window.setShown(true);
    return view;
}

int QtUi::messageBox(const QString& text, int style, const QString& title)
{
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    QMessageBox box(iconOf(style), title, shown, QMessageBox::NoButton,
                    QApplication::activeWindow());
    QAbstractButton* second = nullptr;
    QAbstractButton* first = nullptr;
    switch (style & 0xF) {
    case Msg::YesNo:
        first = box.addButton(QStringLiteral("&Sí"), QMessageBox::YesRole);
        second = box.addButton(QStringLiteral("&No"), QMessageBox::NoRole);
        break;
    case Msg::OkCancel:
        first = box.addButton(QStringLiteral("Aceptar"), QMessageBox::AcceptRole);
        second = box.addButton(QStringLiteral("Cancelar"), QMessageBox::RejectRole);
        break;
    default: first = box.addButton(QStringLiteral("Aceptar"), QMessageBox::AcceptRole); break;
    }
    box.setDefaultButton(
        qobject_cast<QPushButton*>((style & Msg::DefaultButton2) && second ? second : first));
    box.exec();
    const bool pressedSecond = box.clickedButton() == second && second;
    switch (style & 0xF) {
    case Msg::YesNo: return pressedSecond || !box.clickedButton() ? Msg::No : Msg::Yes;
    case Msg::OkCancel: return pressedSecond || !box.clickedButton() ? Msg::Cancel : Msg::Ok;
    default: return Msg::Ok;
    }
}

void QtUi::showModal(Controller& window)
{
    QWidget* view = OpenView(window);
    if (!view) {
        window.unload();
        return;
    }
    view->setWindowModality(Qt::ApplicationModal);
    PlaceWindow(view, window.windowName());
    view->show();
    view->raise();
    view->activateWindow();
    if (!window.focused().isEmpty())
        emit window.focusRequested(window.focused());
    QEventLoop loop;
    QObject::connect(&window, &Controller::closeRequested, &loop, &QEventLoop::quit);
    if (window.isLoaded() && window.isShown())
        loop.exec();
    window.setShown(false);
}

void QtUi::showModeless(Controller& window)
{
    QWidget* view = OpenView(window);
    if (!view)
        return;
    PlaceWindow(view, window.windowName());
    view->show();
}

void QtUi::yield()
{
    // Pending events run at most once a frame: a loop that yields on every
    // step keeps the window alive without painting it a hundred times.
    static QElapsedTimer sinceLast;
    if (sinceLast.isValid() && sinceLast.elapsed() < 16)
        return;
    QCoreApplication::processEvents();
    sinceLast.start();
}

QString QtUi::chooseFolder(const QString& title)
{
    return QFileDialog::getExistingDirectory(QApplication::activeWindow(), title);
}

QString QtUi::chooseOpenFile(const QString& title, const QString& filter, const QString& folder)
{
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, folder, filter);
}

QString QtUi::chooseSaveFile(const QString& title, const QString& filter, const QString& suggested)
{
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), title, suggested, filter);
}

bool QtUi::openDocument(const QString& path)
{
    // The manual opens inside the program: no browser is needed.
    if (path.contains(QLatin1String(".html")))
        return HelpViewer::instance().showPage(path), true;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void QtUi::setBusy(bool busy)
{
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtUi::endProgram()
{
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}
