#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <tuple>

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

    // Whether this run's databases live on the tests' PostgreSQL server
    // (MORVEL_TEST_BACKEND=postgres): each TestEnv then has a fresh database
    // of its own there, dropped at its end.
    static bool onServer();

private:
    QTemporaryDir m_dir;
    QString m_serverDatabase;
    std::unique_ptr<ScriptedUi> m_ui;
};

// The base of a test class whose every function runs in a fresh TestEnv,
// with a database at the current level unless told otherwise, and ends with
// the scripted person clean (VERIFY_UI_CLEAN). `seed` puts in place what
// every function of the class starts from; `tearDown` closes what a function
// left open before its run goes.
class EnvTest : public QObject
{
    Q_OBJECT
public:
    explicit EnvTest(bool withDatabase = true) : m_withDatabase(withDatabase) {}

protected:
    virtual void seed() {}
    virtual void tearDown() {}
    std::unique_ptr<TestEnv> env;

private slots:
    void init();
    void cleanup();

private:
    bool m_withDatabase;
};

// The columns of a data-driven test: their types in order, then their names.
template <class... Types, class... Names> void Columns(const Names&... names)
{
    static_assert(sizeof...(Types) == sizeof...(Names), "one name for each type");
    (QTest::addColumn<Types>(names), ...);
}

// A row of a data-driven test: its name, then its values column by column. A
// quoted literal fills a text column; a byte column wants a QByteArray.
template <class... Values> void Row(const char* name, const Values&... values)
{
    (QTest::newRow(name) << ... << values);
}

// The values of the current row in those columns, to bind in one line:
//   const auto [from, to] = Fetch<QString, int>("from", "to");
// A column of another type fails the test, as with QFETCH.
template <class... Types, class... Names> std::tuple<Types...> Fetch(const Names&... names)
{
    static_assert(sizeof...(Types) == sizeof...(Names), "one name for each type");
    return {*static_cast<Types*>(QTest::qData(names, ::qMetaTypeId<Types>()))...};
}

// Skips the current test on the server run: what it looks at is the file
// itself (a damaged or read-only file, its journal).
#define SKIP_ON_SERVER(why)                                                                        \
    do {                                                                                           \
        if (TestEnv::onServer())                                                                   \
            QSKIP(why);                                                                            \
    } while (0)

QByteArray ReadBytes(const QString& path);
// Writes the file whole, making its folder first.
bool WriteBytes(const QString& path, const QByteArray& bytes);
// Whether the daily error log of the run holds anything.
bool ErrorsLogged();

// Fails the current test when the scripted person met a question it was not
// told to expect, or was told to expect one that never came.
#define VERIFY_UI_CLEAN(env)                                                                       \
    do {                                                                                           \
        QVERIFY2((env).ui().faults().isEmpty(), qPrintable((env).ui().faults().join('\n')));       \
        QVERIFY2((env).ui().pendingAnswers().isEmpty(),                                            \
                 qPrintable("unasked: " + (env).ui().pendingAnswers().join('|')));                 \
    } while (0)
