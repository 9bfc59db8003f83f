#include "Globals.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <memory>

#include "SqliteDatabase.h"
#include "ZoAccess.h"
#include "ZoParameterString.h"
#include "declarations/Validar.h"
#include "navigation/ZoForms.h"

QString gAppPath;
QString gSql;
QString gDecimalSymbol;
QStringList gImportNames;
QStringList gImportNamesPlain;

namespace {
std::unique_ptr<ZoAccess> g_access;
} // namespace

ZoAccess& gAccess()
{
    if (!g_access)
        g_access = std::make_unique<ZoAccess>();
    return *g_access;
}

ZoParameterString& gParameters()
{
    static ZoParameterString parameters;
    return parameters;
}

Validar& gValidar()
{
    static Validar validar;
    return validar;
}

void SetAppPath(const QString& folder)
{
    QString path = QDir::cleanPath(folder);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    QDir().mkpath(path);
    gAppPath = path;
}

QString DatabasePath() { return gAppPath + QStringLiteral("/Morvel.db"); }

QString AssetsPath()
{
    // Installed: {prefix}/share/morvel beside {prefix}/bin. Built: the build
    // tree's share/morvel beside its src/ folder, the copy of the assets that
    // holds the manual with the pictures of the windows. Otherwise (tests,
    // tools) the source tree's assets folder.
    const QString beside =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/morvel");
    if (QFileInfo::exists(beside + QStringLiteral("/db")) ||
        QFileInfo::exists(beside + QStringLiteral("/help/index.html")))
        return QDir::cleanPath(beside);
    return QStringLiteral(MORVEL_SOURCE_ASSETS);
}

void CloseDatabase()
{
    if (g_access)
        g_access->Dispose();
    g_access.reset();
    ResetForms();
    SqliteDatabase::closeAll();
}
