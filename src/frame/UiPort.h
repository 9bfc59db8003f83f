#pragma once

#include <QString>
#include <QStringList>

class Controller;

// Styles and answers of the old message boxes.
namespace Msg {
constexpr int OkOnly = 0;
constexpr int OkCancel = 1;
constexpr int YesNo = 4;
constexpr int Critical = 16;
constexpr int Question = 32;
constexpr int Exclamation = 48;
constexpr int Information = 64;
constexpr int DefaultButton2 = 256;
constexpr int Ok = 1;
constexpr int Cancel = 2;
constexpr int Yes = 6;
constexpr int No = 7;
} // namespace Msg

// How the controllers reach the person: message boxes, other windows, file and
// folder choosers, printing. The Qt implementation shows real dialogs; the
// scripted one records and answers for tests.
class UiPort
{
public:
    virtual ~UiPort() = default;

    // Shows a message; returns the button pressed (Msg::Ok, Msg::Yes, ...).
    virtual int messageBox(const QString& text, int style, const QString& title) = 0;
    // Shows another window; a modal call returns when it has closed.
    virtual void showModal(Controller& window) = 0;
    virtual void showModeless(Controller& window) = 0;
    // Lets pending events run once.
    virtual void yield() = 0;
    // Folder and file choosers; "" when the person cancels.
    virtual QString chooseFolder(const QString& title) = 0;
    virtual QString chooseOpenFile(const QString& title, const QString& filter,
                                   const QString& folder) = 0;
    virtual QString chooseSaveFile(const QString& title, const QString& filter,
                                   const QString& suggested) = 0;
    // Opens a document (the manual) with the desktop's viewer.
    virtual bool openDocument(const QString& path) = 0;
    virtual void setBusy(bool busy) = 0;
    // Ends the program once the current event is done.
    virtual void endProgram() = 0;
};

// The port in use: the Qt one in the program, a scripted one in tests.
UiPort& ui();
void setUi(UiPort* port);

// The old MsgBox: the title defaults to the application's title.
int MsgBox(const QString& text, int style = Msg::OkOnly, const QString& title = {});

// The title of the application, used by message boxes without a title.
QString AppTitle();
