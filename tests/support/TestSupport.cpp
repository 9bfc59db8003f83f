#include "TestSupport.h"

#include <QSettings>
#include <QStandardPaths>

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
    CloseDatabase();
    setUi(nullptr);
    Regional::reload();
}

QString TestEnv::dataPath() const { return gAppPath; }

QString TestEnv::path(const QString& name) const { return m_dir.filePath(name); }

void TestEnv::createDatabase() { CreateCurrentDatabase(); }
