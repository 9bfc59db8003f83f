#pragma once

#include <QString>
#include <QTemporaryDir>
#include <memory>

#include "ScriptedUi.h"

// A run of the program in a folder of its own: a temporary data folder, the
// settings store inside it, and a scripted person at the keyboard. Nothing
// touches the person's real data or settings.
class TestEnv
{
public:
    TestEnv();
    ~TestEnv();
    TestEnv(const TestEnv&) = delete;
    TestEnv& operator=(const TestEnv&) = delete;

    QString dataPath() const;
    QString path(const QString& name) const; // a file in the temporary folder
    ScriptedUi& ui() { return *m_ui; }

    // A database at the current level, as a first start leaves it.
    void createDatabase();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<ScriptedUi> m_ui;
};

// Fails the current test when the scripted person met a question it was not
// told to expect, or was told to expect one that never came.
#define VERIFY_UI_CLEAN(env)                                                            \
    do {                                                                                \
        QVERIFY2((env).ui().faults().isEmpty(), qPrintable((env).ui().faults().join('\n'))); \
        QVERIFY2((env).ui().pendingAnswers().isEmpty(),                                 \
                 qPrintable("unasked: " + (env).ui().pendingAnswers().join('|')));      \
    } while (0)
