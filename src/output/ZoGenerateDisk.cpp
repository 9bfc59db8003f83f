#include "ZoGenerateDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QSysInfo>

#include "ErrorLog.h"
#include "Globals.h"
#include "UiPort.h"

ZoGenerateDisk::ZoGenerateDisk()
    : m_temporaryPath(gAppPath + QStringLiteral("/tmp/TEMPFILE.DJ"))
{
}

QString SevenZipProgram()
{
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/7za");
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStandardPaths::findExecutable(QStringLiteral("7za"));
}

int RunSevenZip(const QStringList& arguments)
{
    const QString program = SevenZipProgram();
    if (program.isEmpty()) {
        LogError(QStringLiteral("-1"), QStringLiteral("No se encontró el programa 7za"),
                 QStringLiteral("ZoGenerateDisk"));
        return -1;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForFinished(-1)) {
        LogError(QStringLiteral("-1"), QStringLiteral("7za no pudo ejecutarse: ") +
                                           process.errorString(),
                 QStringLiteral("ZoGenerateDisk"));
        return -1;
    }
    const int code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    if (code != 0)
        LogError(QString::number(code),
                 QStringLiteral("7za ") + arguments.join(u' ') + QStringLiteral("\n") +
                     QString::fromLocal8Bit(process.readAll()),
                 QStringLiteral("ZoGenerateDisk"));
    return code;
}

bool ZoGenerateDisk::Compress(const QString& source, const QString& destination)
{
    ui().yield();
    const QString archive = gAppPath + QStringLiteral("/TEMPFILE.ZIP");
    // A zip left by a run that stopped would take the new member beside its
    // old one: start from none.
    QFile::remove(archive);
    const int code = RunSevenZip({QStringLiteral("a"), QStringLiteral("-tzip"), archive, source});
    if (code != 0 || !QFileInfo::exists(archive)) {
        QFile::remove(archive);
        return false;
    }
    // The copy goes to a side name first and takes the destination's name
    // only whole, so that a full disk never leaves half a file as if it were
    // good.
    const QString partial = destination + QStringLiteral(".part");
    QFile::remove(partial);
    const bool copied = QFile::copy(archive, partial);
    QFile::remove(archive);
    if (!copied) {
        QFile::remove(partial);
        return false;
    }
    QFile::remove(destination);
    if (!QFile::rename(partial, destination)) {
        QFile::remove(partial);
        return false;
    }
    return QFileInfo::exists(destination);
}

bool ZoGenerateDisk::Expand(const QString& archive, QString& member, QString& folder)
{
    if (folder.endsWith(u'/') || folder.endsWith(u'\\'))
        folder.chop(1);
    if (folder.isEmpty())
        folder = gAppPath + QStringLiteral("/TEMP");
    QDir().mkpath(folder);
    const int code = RunSevenZip(
        {QStringLiteral("e"), QStringLiteral("-y"), archive, QStringLiteral("-o") + folder});
    if (code != 0)
        return false;
    return member.isEmpty() || QFileInfo::exists(folder + u'/' + member);
}

bool ZoGenerateDisk::DeleteFile(const QString& path)
{
    QFile::remove(path);
    return true;
}

QString ZoGenerateDisk::RutaCorta(QString& path)
{
    QString compact = path;
    compact.remove(u' ');
    const QString head = compact.left(3);
    const QStringList parts = compact.mid(3).split(u'\\');
    QStringList out;
    for (int i = 0; i < parts.size(); ++i) {
        const QString& name = parts.at(i);
        const bool last = i == parts.size() - 1;
        out << (!last && name.size() > 8 ? name.left(6) + QStringLiteral("~1") : name);
    }
    return (head + out.join(u'\\')).toUpper();
}

bool ZoGenerateDisk::Is64bit()
{
    // The old question was whether a 32-bit program ran on a 64-bit system.
    return QSysInfo::buildCpuArchitecture() != QSysInfo::currentCpuArchitecture();
}

bool ZoGenerateDisk::CreateFile(const QString&, bool) { return false; }
bool ZoGenerateDisk::CreateHeader(const QString&) { return false; }
bool ZoGenerateDisk::CreateDatosPadron(const QString&) { return false; }
