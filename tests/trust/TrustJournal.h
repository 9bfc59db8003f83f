#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <fcntl.h>
#include <unistd.h>

// The driver's journal: one line per step begun ("begin save") and one per
// declaration committed ("F977 K3-17 12": table, code, lines), the latter
// flushed to disk before the driver goes on, so that a line read back is a
// promise that the declaration is stored.
namespace TrustJournal {

struct Committed {
    QString table;
    QString code;
    int lines = 0;
};

inline void append(const QString& path, const QString& line, bool durable)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (fd < 0)
        return;
    const QByteArray bytes = line.toUtf8() + '\n';
    if (::write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size() && durable)
        ::fsync(fd);
    ::close(fd);
}

// The whole lines of the journal (a line cut by the kill is no promise).
inline QList<QStringList> lines(const QString& path)
{
    QFile file(path);
    QList<QStringList> out;
    if (!file.open(QIODevice::ReadOnly))
        return out;
    const QByteArray all = file.readAll();
    const QList<QByteArray> rows = all.split('\n');
    for (qsizetype i = 0; i + 1 < rows.size(); ++i)
        out << QString::fromUtf8(rows.at(i)).split(u' ');
    return out;
}

inline QList<Committed> committed(const QString& path)
{
    QList<Committed> out;
    for (const QStringList& fields : lines(path))
        if (fields.size() == 3 && fields.first() != QLatin1String("begin"))
            out.append({fields.at(0), fields.at(1), fields.at(2).toInt()});
    return out;
}

// The step the driver had begun last.
inline QString lastStep(const QString& path)
{
    QString step = QStringLiteral("start");
    for (const QStringList& fields : lines(path))
        if (fields.size() == 2 && fields.first() == QLatin1String("begin"))
            step = fields.at(1);
    return step;
}

} // namespace TrustJournal
