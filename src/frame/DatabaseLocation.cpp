#include "DatabaseLocation.h"

#include "Globals.h"

#include <QSettings>

namespace {
const char* const kGroup = "BaseDeDatos/";

QSettings settings()
{
    return QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel"));
}

QString key(const char* name)
{
    return QLatin1String(kGroup) + QLatin1String(name);
}

// A value as the client library reads it: quoted, with quotes and
// backslashes escaped.
QString quoted(const QString& value)
{
    QString text = value;
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

// Splits "k=v k='v w' ..." into its pairs, undoing the quoting above.
void readPairs(const QString& text, DatabaseLocation& location)
{
    int i = 0;
    const int n = text.size();
    while (i < n) {
        while (i < n && text[i].isSpace())
            ++i;
        const int eq = text.indexOf(QLatin1Char('='), i);
        if (eq < 0)
            return;
        const QString name = text.mid(i, eq - i).trimmed();
        i = eq + 1;
        while (i < n && text[i].isSpace())
            ++i;
        QString value;
        if (i < n && text[i] == QLatin1Char('\'')) {
            for (++i; i < n && text[i] != QLatin1Char('\''); ++i) {
                if (text[i] == QLatin1Char('\\') && i + 1 < n)
                    ++i;
                value += text[i];
            }
            ++i;
        } else {
            while (i < n && !text[i].isSpace())
                value += text[i++];
        }
        if (name == QLatin1String("host"))
            location.host = value;
        else if (name == QLatin1String("port"))
            location.port = value.toInt();
        else if (name == QLatin1String("dbname"))
            location.database = value;
        else if (name == QLatin1String("user"))
            location.user = value;
    }
}
} // namespace

QString DatabaseLocation::connectionInfo() const
{
    if (!isServer())
        return {};
    QString text = QStringLiteral("host=") + quoted(host) + QStringLiteral(" port=") +
                   QString::number(port) + QStringLiteral(" dbname=") + quoted(database);
    if (!user.isEmpty())
        text += QStringLiteral(" user=") + quoted(user);
    return text;
}

QString DatabaseLocation::describe() const
{
    if (!isServer())
        return DatabasePath();
    QString text =
        database + QStringLiteral(" en ") + host + QLatin1Char(':') + QString::number(port);
    if (!user.isEmpty())
        text += QStringLiteral(" (") + user + QLatin1Char(')');
    return text;
}

DatabaseLocation DatabaseLocation::fromConnectionInfo(const QString& text)
{
    DatabaseLocation location;
    location.kind = Kind::Server;
    readPairs(text, location);
    return location;
}

DatabaseLocation DatabaseLocation::current()
{
    const QByteArray forced = qgetenv("MORVEL_DATABASE_SERVER");
    if (!forced.isEmpty())
        return fromConnectionInfo(QString::fromUtf8(forced));
    QSettings s = settings();
    DatabaseLocation location;
    if (s.value(key("Tipo")).toString() != QLatin1String("servidor"))
        return location;
    location.kind = Kind::Server;
    location.host = s.value(key("Servidor")).toString();
    location.port = s.value(key("Puerto"), 5432).toInt();
    location.database = s.value(key("Base")).toString();
    location.user = s.value(key("Usuario")).toString();
    return location;
}

void DatabaseLocation::setCurrent(const DatabaseLocation& location)
{
    QSettings s = settings();
    s.setValue(key("Tipo"),
               location.isServer() ? QStringLiteral("servidor") : QStringLiteral("archivo"));
    s.setValue(key("Servidor"), location.host);
    s.setValue(key("Puerto"), location.port);
    s.setValue(key("Base"), location.database);
    s.setValue(key("Usuario"), location.user);
}
