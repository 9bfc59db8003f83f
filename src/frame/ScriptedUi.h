#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

#include "UiPort.h"

// A person at the keyboard, scripted: records every message shown, answers
// questions from a queue, and runs a script when a window opens. A question it
// was not told to expect is recorded as a fault (strict mode).
class ScriptedUi : public UiPort
{
public:
    struct Message {
        QString text;
        QString title;
        int style = 0;
        int answer = 0;
    };

    // The next question whose text contains `fragment` gets `answer`.
    void answer(const QString& fragment, int answer);
    // When the window named `windowName` is shown, run `script` on it; when the
    // script leaves it open, it is closed from its close box.
    void onShow(const QString& windowName, std::function<void(Controller&)> script);
    void setFolder(const QString& folder) { m_folder = folder; }
    void setOpenFile(const QString& file) { m_openFile = file; }
    void setSaveFile(const QString& file) { m_saveFile = file; }
    void setStrict(bool strict) { m_strict = strict; }

    const QVector<Message>& messages() const { return m_messages; }
    QStringList texts() const;
    QString lastText() const { return m_messages.isEmpty() ? QString() : m_messages.last().text; }
    void clearMessages() { m_messages.clear(); }
    const QStringList& faults() const { return m_faults; }
    QStringList pendingAnswers() const;
    const QStringList& shownWindows() const { return m_shown; }
    const QStringList& openedDocuments() const { return m_documents; }
    int yields() const { return m_yields; }

    int messageBox(const QString& text, int style, const QString& title) override;
    void showModal(Controller& window) override;
    void showModeless(Controller& window) override;
    void yield() override { ++m_yields; }
    QString chooseFolder(const QString& title) override;
    QString chooseOpenFile(const QString& title, const QString& filter,
                           const QString& folder) override;
    QString chooseSaveFile(const QString& title, const QString& filter,
                           const QString& suggested) override;
    bool openDocument(const QString& path) override;
    void setBusy(bool) override {}
    void endProgram() override { m_ended = true; }
    bool programEnded() const { return m_ended; }

private:
    struct Answer {
        QString fragment;
        int answer;
    };
    QVector<Answer> m_answers;
    QVector<QPair<QString, std::function<void(Controller&)>>> m_scripts;
    QVector<Message> m_messages;
    QStringList m_faults;
    QStringList m_shown;
    QStringList m_documents;
    QString m_folder, m_openFile, m_saveFile;
    bool m_strict = true;
    int m_yields = 0;
    bool m_ended = false;
};
