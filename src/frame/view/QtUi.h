#pragma once

#include "UiPort.h"

// The UI port on real Qt widgets: message boxes, the views of the windows,
// file dialogs and the desktop's document viewer.
// Installing it gives the program its one look (Look.h).
class QtUi : public UiPort
{
public:
    QtUi();
    int messageBox(const QString& text, int style, const QString& title) override;
    void showModal(Controller& window) override;
    void showModeless(Controller& window) override;
    void yield() override;
    QString chooseFolder(const QString& title) override;
    QString chooseOpenFile(const QString& title, const QString& filter,
                           const QString& folder) override;
    QString chooseSaveFile(const QString& title, const QString& filter,
                           const QString& suggested) override;
    bool openDocument(const QString& path) override;
    void setBusy(bool busy) override;
    void endProgram() override;
};

class QWidget;
// The view that shows `window`, bound to it, or nullptr when it has none.
QWidget* OpenView(Controller& window);
