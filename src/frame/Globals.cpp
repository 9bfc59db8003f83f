#include "Globals.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

QString gAppPath;
QString gSql;
QString gDecimalSymbol;
QStringList gImportNames;
QStringList gImportNamesPlain;

void SetAppPath(const QString& folder)
{
    QString path = QDir::cleanPath(folder);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    QDir().mkpath(path);
    gAppPath = path;
}

QString DatabasePath()
{
    return gAppPath + QStringLiteral("/Morvel.db");
}

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
