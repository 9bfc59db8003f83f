#pragma once

#include <QStringList>

#include "UiPort.h"

// While a long run goes on unattended (a whole period generated in one go, a
// scheduled run from the command line), the messages that each declaration
// would show are kept instead, to be told in the run's summary; everything
// else goes to the port that was in use, if any. Installed for its lifetime.
class MensajesRegistrados : public UiPort
{
public:
    MensajesRegistrados();
    ~MensajesRegistrados() override;
    MensajesRegistrados(const MensajesRegistrados&) = delete;
    MensajesRegistrados& operator=(const MensajesRegistrados&) = delete;

    // The messages kept since the last call, and forgets them.
    QStringList Tomar();

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

private:
    UiPort* m_previo = nullptr;
    QStringList m_textos;
};

// The port without a screen that the command line installs: nothing to show.
UiPort* PuertoSinPantalla();
