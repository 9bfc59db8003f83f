#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>

#include "BrokenDatabase.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "RegionalSettings.h"
#include "database/Schema.h"

TestEnv::TestEnv() : m_ui(std::make_unique<ScriptedUi>())
{
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
