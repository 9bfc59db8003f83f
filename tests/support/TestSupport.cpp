#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <libpq-fe.h>
#include <unistd.h>

#include "BrokenDatabase.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "RegionalSettings.h"
#include "database/Schema.h"

namespace {

// Runs one statement on the tests' server, outside any database of a test.
bool onTestServer(const QString& sql)
{
    PGconn* conn = PQconnectdb(qgetenv("MORVEL_TEST_PG").constData());
    PGresult* res = PQexec(conn, sql.toUtf8().constData());
    const bool ok = PQresultStatus(res) == PGRES_COMMAND_OK;
    if (!ok)
        qWarning("%s: %s", qPrintable(sql), PQerrorMessage(conn));
    PQclear(res);
    PQfinish(conn);
    return ok;
}

} // namespace

bool TestEnv::onServer()
{
    return qgetenv("MORVEL_TEST_BACKEND") == "postgres";
}

TestEnv::TestEnv() : m_ui(std::make_unique<ScriptedUi>())
{
    if (onServer()) {
        static int counter = 0;
        m_serverDatabase =
            QStringLiteral("morvel_test_%1_%2").arg(::getpid()).arg(++counter);
        onTestServer(QStringLiteral("CREATE DATABASE ") + m_serverDatabase);
        qputenv("MORVEL_DATABASE_SERVER",
                qgetenv("MORVEL_TEST_PG") + " dbname=" + m_serverDatabase.toUtf8());
    }
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.filePath("settings"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir.filePath("settings"));
    Regional::reload();
    SetAppPath(m_dir.filePath("data"));
    gDecimalSymbol = QStringLiteral(",");
    setUi(m_ui.get());
}

TestEnv::~TestEnv()
{
    BrokenDatabase::RepairDisk();
    CloseDatabase();
    setUi(nullptr);
    Regional::reload();
    if (!m_serverDatabase.isEmpty()) {
        qunsetenv("MORVEL_DATABASE_SERVER");
        onTestServer(QStringLiteral("DROP DATABASE IF EXISTS ") + m_serverDatabase +
                     QStringLiteral(" WITH (FORCE)"));
    }
}

QString TestEnv::dataPath() const
{
    return gAppPath;
}

QString TestEnv::path(const QString& name) const
{
    return m_dir.filePath(name);
}

void TestEnv::createDatabase()
{
    CreateCurrentDatabase();
}

void EnvTest::init()
{
    env = std::make_unique<TestEnv>();
    if (m_withDatabase)
        env->createDatabase();
    seed();
}

void EnvTest::cleanup()
{
    tearDown();
    VERIFY_UI_CLEAN(*env);
    env.reset();
}

QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool ErrorsLogged()
{
    return QFileInfo(ErrorLogPath()).size() > 0;
}
