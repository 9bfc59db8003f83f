#include "BackupArchive.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QList>
#include <QProcess>
#include <QStringList>

#include "ErrorLog.h"
#include "RegionalSettings.h"
#include "output/ZoGenerateDisk.h"

namespace {

const QString kSource = QStringLiteral("BackupArchive");
const QString kMember = QStringLiteral("Morvel.db");
const QString kNotABackup = QStringLiteral("El archivo no es una copia de seguridad de Morvel: ");

// A listing larger than this is no listing of a backup (one entry).
constexpr qint64 kLargestListing = 64 * 1024;
// The archiver never waits longer than this for its listing or its member.
constexpr int kListingTime = 60 * 1000;
constexpr int kExtractionTime = 10 * 60 * 1000;
// Room kept free beside the restored database for its journal.
constexpr qint64 kFreeMargin = 16 * 1024 * 1024;

using Entry = QHash<QString, QString>;

// The entries behind the line "----------": "Key = Value" lines, an entry
// beginning at each "Path".
QList<Entry> entriesOf(const QByteArray& listing)
{
    QList<Entry> entries;
    bool body = false;
    for (const QByteArray& raw : listing.split('\n')) {
        const QString line = QString::fromUtf8(raw).remove(u'\r');
        if (!body) {
            body = line == QLatin1String("----------");
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1String(" = "));
        const QString key = eq < 0 ? line.trimmed() : line.left(eq);
        const QString value = eq < 0 ? QString() : line.mid(eq + 3);
        if (key == QLatin1String("Path"))
            entries.append(Entry());
        if (!entries.isEmpty() && !key.isEmpty())
            entries.last().insert(key, value);
    }
    return entries;
}

// A Unix mode as the archiver writes it ("-rw-r--r--", "lrwxrwxrwx").
bool isUnixMode(const QString& token)
{
    static const QString kinds = QStringLiteral("-dlcbps");
    static const QString rights = QStringLiteral("-rwxsStT");
    if (token.size() != 10 || !kinds.contains(token.front()))
        return false;
    for (qsizetype i = 1; i < token.size(); ++i)
        if (!rights.contains(token.at(i)))
            return false;
    return true;
}

// True when the attributes name anything but a plain file: a folder ("D"),
// or a Unix mode of a link, a folder or a device.
bool isSpecialFile(const QString& attributes)
{
    for (const QString& token : attributes.split(u' ', Qt::SkipEmptyParts)) {
        if (isUnixMode(token)) {
            if (token.front() != u'-')
                return true;
        } else if (!token.startsWith(QLatin1String("0x")) && token.contains(u'D')) {
            return true;
        }
    }
    return false;
}

QString megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / 1048576.0, 'f', 1)
               .replace(u'.', Regional::decimalSymbol()) +
           QStringLiteral(" Mb.");
}

BackupArchive::Listing refuse(const QString& why)
{
    return {why, 0};
}

// The archiver, started on `arguments` with nothing to read and no place to
// ask for a password.
void startArchiver(QProcess& process, const QStringList& arguments)
{
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(SevenZipProgram(), arguments);
}

void stop(QProcess& process)
{
    process.kill();
    process.waitForFinished();
}

// The archiver's options that keep it from asking anything: every answer
// yes, a password given so that it never waits for one.
QStringList quietOptions()
{
    return {QStringLiteral("-tzip"), QStringLiteral("-y"), QStringLiteral("-bd"),
            QStringLiteral("-pMorvel")};
}

} // namespace

bool BackupArchive::IsPlainFile(const QHash<QString, QString>& entry)
{
    return entry.value(QStringLiteral("Folder")) != QLatin1String("+") &&
           entry.value(QStringLiteral("Symbolic Link")).isEmpty() &&
           entry.value(QStringLiteral("Hard Link")).isEmpty() &&
           !isSpecialFile(entry.value(QStringLiteral("Attributes")));
}

BackupArchive::Listing BackupArchive::ReadListing(const QByteArray& listing)
{
    const QList<Entry> entries = entriesOf(listing);
    for (const Entry& entry : entries)
        if (entry.value(QStringLiteral("Path")) == kMember && !IsPlainFile(entry))
            return refuse(kNotABackup + kMember +
                          QStringLiteral(" no es un archivo común (es un enlace o una carpeta)."));
    if (entries.size() != 1 || entries.first().value(QStringLiteral("Path")) != kMember)
        return refuse(kNotABackup + QStringLiteral("debe contener solamente la base de datos ") +
                      kMember + u'.');
    const Entry& entry = entries.first();
    if (entry.value(QStringLiteral("Encrypted")) == QLatin1String("+"))
        return refuse(kNotABackup + QStringLiteral("está protegido con contraseña."));
    bool number = false;
    const qint64 size = entry.value(QStringLiteral("Size")).toLongLong(&number);
    if (!number || size <= 0)
        return refuse(kNotABackup + QStringLiteral("no indica el tamaño de ") + kMember + u'.');
    if (size > kLargestDatabase)
        return refuse(kNotABackup + kMember + QStringLiteral(" ocuparía ") + megabytes(size) +
                      QStringLiteral(", más de lo que puede ocupar una base de datos de Morvel."));
    return {QString(), size};
}

BackupArchive::Listing BackupArchive::Inspect(const QString& archive, qint64 freeBytes)
{
    if (SevenZipProgram().isEmpty())
        return refuse(QStringLiteral("No se encontró el programa 7za, que abre las copias."));
    QProcess process;
    startArchiver(process, QStringList{QStringLiteral("l"), QStringLiteral("-slt")} +
                               quietOptions() + QStringList{archive});
    QByteArray listing;
    QElapsedTimer clock;
    clock.start();
    process.waitForStarted();
    while (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(250);
        listing += process.readAllStandardOutput();
        if (listing.size() > kLargestListing || clock.elapsed() > kListingTime) {
            stop(process);
            return refuse(kNotABackup + QStringLiteral("contiene demasiados archivos."));
        }
    }
    listing += process.readAllStandardOutput();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        LogError(QString::number(process.exitCode()),
                 QStringLiteral("7za no pudo leer ") + archive + u'\n' +
                     QString::fromUtf8(listing.left(2000)),
                 kSource);
        return refuse(kNotABackup + QStringLiteral("no es un archivo comprimido sano."));
    }
    Listing judged = ReadListing(listing);
    if (judged.refusal.isEmpty() && judged.size > freeBytes - kFreeMargin)
        return refuse(QStringLiteral("La copia de seguridad ocupa ") + megabytes(judged.size) +
                      QStringLiteral(" al descomprimirse y en la carpeta de datos quedan ") +
                      megabytes(qMax<qint64>(freeBytes, 0)) + QStringLiteral(" libres."));
    return judged;
}

QString BackupArchive::Extract(const QString& archive, const QString& target, qint64 size)
{
    const QString damaged = QStringLiteral("El archivo de la copia está dañado: ") + kMember +
                            QStringLiteral(" no se pudo descomprimir completo.");
    QFile out(target);
    if (!out.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return QStringLiteral("No se pudo escribir en la carpeta de datos.");
    QProcess process;
    startArchiver(process, QStringList{QStringLiteral("e"), QStringLiteral("-so")} +
                               quietOptions() + QStringList{archive, kMember});
    qint64 written = 0;
    QString why;
    QElapsedTimer clock;
    clock.start();
    process.waitForStarted();
    while (why.isEmpty() &&
           (process.state() != QProcess::NotRunning || process.bytesAvailable() > 0)) {
        if (process.bytesAvailable() == 0) {
            process.waitForReadyRead(250);
            if (clock.elapsed() > kExtractionTime)
                why = damaged;
            continue;
        }
        const QByteArray chunk = process.read(1024 * 1024);
        written += chunk.size();
        if (written > size)
            why = damaged; // more than the archive claims: a forged size
        else if (out.write(chunk) != chunk.size())
            why = QStringLiteral("No se pudo escribir la base de datos restaurada: ") +
                  out.errorString();
    }
    if (process.state() != QProcess::NotRunning)
        stop(process);
    out.close();
    if (why.isEmpty() && (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 ||
                          written != size))
        why = damaged;
    if (!why.isEmpty()) {
        LogError(QStringLiteral("-1"), why + QStringLiteral(" (") + archive + u')', kSource);
        QFile::remove(target);
    }
    return why;
}
