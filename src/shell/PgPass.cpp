#include "PgPass.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>
#include <pwd.h>
#include <unistd.h>

namespace {

// The five fields of a line, unescaped; fewer when the line is no entry.
QStringList fields(const QString& line)
{
    QStringList out;
    QString current;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c == u'\\' && i + 1 < line.size()) {
            current += line.at(++i);
        } else if (c == u':' && out.size() < 4) {
            out << current;
            current.clear();
        } else {
            current += c;
        }
    }
    out << current;
    return out;
}

QString loginName()
{
    const passwd* entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : qEnvironmentVariable("USER");
}

// The four fields that name a server's database and user.
QStringList keyOf(const DatabaseLocation& location)
{
    return {location.host.isEmpty() ? QStringLiteral("localhost") : location.host,
            QString::number(location.port), location.database,
            location.user.isEmpty() ? loginName() : location.user};
}

} // namespace

namespace PgPass {

QString FilePath()
{
    const QString named = qEnvironmentVariable("PGPASSFILE");
    return named.isEmpty() ? QDir::homePath() + QStringLiteral("/.pgpass") : named;
}

QString Escape(const QString& field)
{
    QString text = field;
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u':', QStringLiteral("\\:"));
    return text;
}

QString Line(const DatabaseLocation& location, const QString& password)
{
    QStringList escaped;
    const QStringList line = keyOf(location) << password;
    for (const QString& field : line)
        escaped << Escape(field);
    return escaped.join(u':');
}

bool Store(const DatabaseLocation& location, const QString& password, QString* reason)
{
    const QString path = FilePath();
    QStringList lines;
    QFile old(path);
    if (old.exists()) {
        if (!old.open(QIODevice::ReadOnly)) {
            if (reason)
                *reason = old.errorString();
            return false;
        }
        lines = QString::fromUtf8(old.readAll()).split(u'\n');
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
    }
    const QStringList key = keyOf(location);
    const QString line = Line(location, password);
    // The first line for the same server, database and user takes the new
    // password; a later one would never be read, and goes.
    QStringList kept;
    bool replaced = false;
    for (const QString& existing : lines) {
        if (existing.startsWith(u'#') || fields(existing).mid(0, 4) != key) {
            kept << existing;
            continue;
        }
        if (!replaced)
            kept << line;
        replaced = true;
    }
    if (!replaced)
        kept << line;

    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                         file.write((kept.join(u'\n') + u'\n').toUtf8()) >= 0 && file.commit();
    if (!written) {
        if (reason)
            *reason = file.errorString();
        return false;
    }
    return QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

} // namespace PgPass
