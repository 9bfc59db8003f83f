#include "ScriptedUi.h"

#include "Controller.h"

namespace {
bool asksQuestion(int style)
{
    const int buttons = style & 0xF;
    return buttons != Msg::OkOnly;
}

int defaultAnswer(int style)
{
    const int buttons = style & 0xF;
    const bool second = style & Msg::DefaultButton2;
    if (buttons == Msg::YesNo)
        return second ? Msg::No : Msg::Yes;
    if (buttons == Msg::OkCancel)
        return second ? Msg::Cancel : Msg::Ok;
    return Msg::Ok;
}
} // namespace

void ScriptedUi::answer(const QString& fragment, int answer)
{
    m_answers.push_back(Answer{fragment, answer});
}

void ScriptedUi::onShow(const QString& windowName, std::function<void(Controller&)> script)
{
    m_scripts.push_back({windowName, std::move(script)});
}

QStringList ScriptedUi::texts() const
{
    QStringList out;
    for (const Message& m : m_messages)
        out << m.text;
    return out;
}

QStringList ScriptedUi::pendingAnswers() const
{
    QStringList out;
    for (const Answer& a : m_answers)
        out << a.fragment;
    return out;
}

int ScriptedUi::messageBox(const QString& text, int style, const QString& title)
{
    Message m{text, title, style, Msg::Ok};
    if (asksQuestion(style)) {
        auto it = std::find_if(m_answers.begin(), m_answers.end(),
                               [&](const Answer& a) { return text.contains(a.fragment); });
        if (it != m_answers.end()) {
            m.answer = it->answer;
            m_answers.erase(it);
        } else {
            m.answer = defaultAnswer(style);
            if (m_strict)
                m_faults << QStringLiteral("unexpected question: ") + text;
        }
    }
    m_messages.push_back(m);
    return m.answer;
}

void ScriptedUi::showModal(Controller& window)
{
    m_shown << window.windowName();
    window.setShown(true);
    auto it = std::find_if(m_scripts.begin(), m_scripts.end(),
                           [&](const auto& s) { return s.first == window.windowName(); });
    if (it != m_scripts.end()) {
        auto script = it->second;
        m_scripts.erase(it);
        script(window);
    }
    if (window.isLoaded() && window.isShown())
        window.closeByUser();
    window.setShown(false);
}

void ScriptedUi::showModeless(Controller& window)
{
    m_shown << window.windowName();
    window.setShown(true);
    auto it = std::find_if(m_scripts.begin(), m_scripts.end(),
                           [&](const auto& s) { return s.first == window.windowName(); });
    if (it != m_scripts.end()) {
        auto script = it->second;
        m_scripts.erase(it);
        script(window);
    }
}

QString ScriptedUi::chooseFolder(const QString&) { return m_folder; }

QString ScriptedUi::chooseOpenFile(const QString&, const QString&, const QString&)
{
    return m_openFile;
}

QString ScriptedUi::chooseSaveFile(const QString&, const QString&, const QString&)
{
    return m_saveFile;
}

bool ScriptedUi::openDocument(const QString& path)
{
    m_documents << path;
    return true;
}
