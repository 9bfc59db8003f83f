#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <unistd.h>

// A file of this process's own under /dev/shm (else the temporary folder)
// holding the input, for readers that take a path.
inline QString FuzzInputFile(const char* extension, const uint8_t* data, size_t size)
{
    static const QString path =
        (QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                   : QDir::tempPath()) +
        QStringLiteral("/morvel-fuzz-%1").arg(getpid()) + QLatin1String(extension);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char*>(data), qint64(size));
    return path;
}
