#include "ErrorLog.h"

#include <QDateTime>
#include <QFile>

#include "Globals.h"
#include "RegionalSettings.h"

namespace {
// The locale's short date turned into a pattern QDate understands.
QString todayText()
{
    QString pattern = Regional::shortDatePattern();
    if (pattern.isEmpty())
        pattern = QStringLiteral("dd-MM-yyyy");
    return QDate::currentDate().toString(pattern);
}
} // namespace

QString ErrorLogPath()
{
    return gAppPath + QStringLiteral("/Errores_") + todayText() + QStringLiteral(".txt");
}

void LogError(const QString& number, const QString& description, const QString& source)
{
    // With a short date that holds "/" the name is no valid file name, and
    // nothing is written: the old routine failed the same way.
    if (todayText().contains(u'/'))
        return;
    QFile file(ErrorLogPath());
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return;
    const QString eol = QStringLiteral("\n");
    QString record = todayText() + QStringLiteral(" - ") +
                     QTime::currentTime().toString(QStringLiteral("HH:mm:ss")) + eol;
    if (!source.isEmpty())
        record += source + eol;
    record += number + eol + description + eol + QStringLiteral("********************") + eol;
    file.write(record.toUtf8());
}
