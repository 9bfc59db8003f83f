#include "RememberedFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {
QString keyOf(const QString& purpose)
{
    return QStringLiteral("Carpetas/") + purpose;
}
} // namespace

QString RememberedFolder(const QString& purpose)
{
    const QString folder = QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel"))
                               .value(keyOf(purpose))
                               .toString();
    return !folder.isEmpty() && QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

void RememberFolder(const QString& purpose, const QString& folderOrFile)
{
    if (folderOrFile.trimmed().isEmpty())
        return;
    const QFileInfo info(folderOrFile);
    const QString folder = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
    QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel")).setValue(keyOf(purpose), folder);
}
