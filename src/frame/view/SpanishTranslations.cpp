#include "SpanishTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

bool InstallSpanishTranslations()
{
    const QLocale spanish(QLocale::Spanish, QLocale::Argentina);
    QLocale::setDefault(spanish);
    static QTranslator qtbase;
    if (!qtbase.isEmpty())
        return true;
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!qtbase.load(spanish, QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        return false;
    QCoreApplication::installTranslator(&qtbase);
    return true;
}
