#include "ServerBackup.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QVersionNumber>
#include <algorithm>

#include "Backup.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "MainWindowLink.h"

namespace {

const QString kSource = QStringLiteral("ServerBackup");
const QString kPrefix = QStringLiteral("Morvel.");
const QString kSuffix = QStringLiteral(".dump");
// How long a client program waits for the server to answer, and for a table
// that another workstation holds, before it gives up with a message.
const QString kConnectSeconds = QStringLiteral("10");
const QString kLockWait = QStringLiteral("60s");

struct Known {
    const char* pattern; // what the client programs say, in English
    const char* text;    // what the person reads; %1 is the pattern's first group
};

// In order: the first that matches names the cause.
const Known kKnown[] = {
    {"password authentication failed", "el usuario o la contraseña no son correctos."},
    {"no password supplied",
     "el servidor pide una contraseña y no hay ninguna guardada para esta conexión."},
    {"database \"([^\"]*)\" does not exist", "la base de datos «%1» no existe en el servidor."},
    {"role \"([^\"]*)\" does not exist", "el usuario «%1» no existe en el servidor."},
    {"could not translate host name", "no se encontró un servidor con ese nombre."},
    {"Connection refused|No such file or directory\\s+Is the server running",
     "el servidor no responde en esa dirección y puerto."},
    {"timeout expired", "el servidor no respondió a tiempo."},
    {"No space left on device|File too large",
     "no hay lugar en el disco para el archivo de la copia."},
    {"could not open output file", "no se pudo crear el archivo de la copia."},
    {"does not appear to be a valid archive|could not read (from )?input file|unexpected end of "
     "file|did not find magic string|unsupported version|appears to be a text format",
     "el archivo está dañado o no es una copia de una base del servidor."},
    {"server version mismatch",
     "el programa pg_dump es de una versión anterior a la del servidor."},
    {"lock timeout|could not obtain lock",
     "otra estación está usando la base de datos; vuelva a intentarlo cuando nadie la use."},
    {"permission denied|must be owner",
     "el usuario no tiene permiso para esa operación en el servidor."},
};

// The first line of what was said, without the program's name and the
// server's level ("pg_dump: error: ", "FATAL:  ").
QString firstLine(const QString& said)
{
    static const QRegularExpression noise(
        QStringLiteral("^(pg_dump|pg_restore)(: (error|detail|hint))?: |^(FATAL|ERROR):\\s+"));
    for (QString line : said.split(u'\n', Qt::SkipEmptyParts)) {
        line = line.trimmed();
        QString before;
        while (before != line) {
            before = line;
            line.remove(noise);
        }
        if (!line.isEmpty() && !line.startsWith(QStringLiteral("warning")))
            return line;
    }
    return said.trimmed();
}

// A client program of the server: on the PATH, else in the server's own
// folder, newest version first.
QString clientProgram(const QString& name)
{
    const QString onPath = QStandardPaths::findExecutable(name);
    if (!onPath.isEmpty())
        return onPath;
    const QString root = QStringLiteral("/usr/lib/postgresql");
    QStringList versions = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::sort(versions.begin(), versions.end(), [](const QString& a, const QString& b) {
        return QVersionNumber::fromString(a) > QVersionNumber::fromString(b);
    });
    for (const QString& version : versions) {
        const QString found =
            QStandardPaths::findExecutable(name, {root + u'/' + version + QStringLiteral("/bin")});
        if (!found.isEmpty())
            return found;
    }
    return {};
}

struct Run {
    bool ok = false;
    QString output; // standard output
    QString said;   // what went wrong, in the person's words
};

// Runs a client program of the server to its end, its messages in English
// so that the known causes can be told in Spanish, never asking for a
// password on a terminal.
Run runClient(const QString& name, const QStringList& arguments)
{
    Run run;
    const QString program = clientProgram(name);
    if (program.isEmpty()) {
        run.said = QStringLiteral("no se encontró el programa ") + name +
                   QStringLiteral(" (paquete postgresql-client).");
        return run;
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_MESSAGES"), QStringLiteral("C"));
    environment.remove(QStringLiteral("LANGUAGE"));
    environment.insert(QStringLiteral("PGCONNECT_TIMEOUT"), kConnectSeconds);
    environment.insert(QStringLiteral("PGOPTIONS"), QStringLiteral("-c lock_timeout=") + kLockWait);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, QStringList{QStringLiteral("--no-password")} + arguments);
    if (!process.waitForStarted() || !process.waitForFinished(-1)) {
        run.said = name + QStringLiteral(" no pudo ejecutarse: ") + process.errorString();
        return run;
    }
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    run.ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!run.ok) {
        LogError(QString::number(process.exitCode()),
                 name + u' ' + arguments.join(u' ') + u'\n' + errors, kSource);
        run.said = errors.trimmed().isEmpty()
                       ? name + QStringLiteral(" se interrumpió antes de terminar.")
                       : ServerBackup::FailureText(errors);
    }
    return run;
}

bool refuse(QString* reason, const QString& why)
{
    LogError(QStringLiteral("-1"), why, kSource);
    if (reason)
        *reason = why;
    return false;
}

// The archive's table of contents lists the taxpayers' table: it is a
// database of this system.
bool holdsSystemTables(const QString& contents)
{
    static const QRegularExpression taxpayers(
        QStringLiteral("\\bTABLE\\s+\\S+\\s+\"?contribuyentes\"?\\s"),
        QRegularExpression::CaseInsensitiveOption);
    return contents.contains(taxpayers);
}

QString g_lastFailure;

QString backupFolder()
{
    const QString folder = GetBackupSetting(BackupKey::BackupDirectory, QString());
    return folder.isEmpty() ? DefaultBackupFolder() : folder;
}

} // namespace

namespace ServerBackup {

bool InUse()
{
    return DatabaseLocation::current().isServer();
}

QString FileName(const QString& stamp)
{
    return kPrefix + stamp + kSuffix;
}

bool IsArchiveName(const QString& name)
{
    return name.endsWith(kSuffix, Qt::CaseInsensitive) &&
           IsBackupFileName(name.chopped(kSuffix.size()));
}

bool IsListedName(const QString& name)
{
    return InUse() ? IsArchiveName(name) : IsBackupFileName(name);
}

QString FailureText(const QString& said)
{
    for (const Known& known : kKnown) {
        const QRegularExpression pattern(QString::fromUtf8(known.pattern),
                                         QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch match = pattern.match(said);
        if (!match.hasMatch())
            continue;
        QString text = QString::fromUtf8(known.text);
        if (text.contains(QStringLiteral("%1")))
            text = text.arg(match.captured(1));
        return text;
    }
    return firstLine(said);
}

bool Dump(const DatabaseLocation& location, const QString& target, QString* reason)
{
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    const Run run = runClient(QStringLiteral("pg_dump"),
                              {QStringLiteral("--format=custom"),
                               QStringLiteral("--lock-wait-timeout=") + kLockWait,
                               QStringLiteral("--file=") + partial,
                               QStringLiteral("--dbname=") + location.connectionInfo()});
    const auto fail = [&](const QString& why) {
        QFile::remove(partial);
        return refuse(reason, QStringLiteral("No se pudo hacer la copia de la base de datos del "
                                             "servidor: ") +
                                  why);
    };
    if (!run.ok)
        return fail(run.said);
    QFile::remove(target);
    if (!QFile::rename(partial, target))
        return fail(QStringLiteral("no se pudo dar su nombre al archivo ") + target);
    return true;
}

bool Restore(const DatabaseLocation& location, const QString& archive, QString* reason)
{
    const Run listing =
        runClient(QStringLiteral("pg_restore"), {QStringLiteral("--list"), archive});
    if (!listing.ok)
        return refuse(reason, QStringLiteral("El archivo no es una copia de seguridad de la base "
                                             "de datos del servidor: ") +
                                  listing.said);
    if (!holdsSystemTables(listing.output))
        return refuse(reason, QStringLiteral("El archivo no es una copia de seguridad de Morvel: "
                                             "no tiene la tabla de contribuyentes."));
    const Run run =
        runClient(QStringLiteral("pg_restore"),
                  {QStringLiteral("--clean"), QStringLiteral("--if-exists"),
                   QStringLiteral("--single-transaction"), QStringLiteral("--exit-on-error"),
                   QStringLiteral("--no-owner"), QStringLiteral("--no-privileges"),
                   QStringLiteral("--dbname=") + location.connectionInfo(), archive});
    if (!run.ok)
        return refuse(reason,
                      QStringLiteral("No se pudo restaurar la copia en el servidor: ") + run.said);
    return true;
}

bool BackupDatabase()
{
    const QString folder = backupFolder();
    if (!QFileInfo(folder).isDir() &&
        !(QDir().mkpath(folder) &&
          QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)))
        return refuse(&g_lastFailure,
                      QStringLiteral("No se pudo crear la carpeta de copias ") + folder);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"));
    if (!Dump(DatabaseLocation::current(), folder + u'/' + FileName(stamp), &g_lastFailure))
        return false;
    g_lastFailure.clear();
    SaveBackupSetting(BackupKey::FechaUlt, stamp);
    SaveBackupSetting(BackupKey::BackupDirectory, folder);
    return true;
}

QString LastFailure()
{
    return g_lastFailure;
}

bool RestoreDatabase(const QString& file, QString* reason)
{
    CloseDatabase();
    if (!Restore(DatabaseLocation::current(), file, reason))
        return false;
    RefreshMainWindowTaxpayers();
    return true;
}

} // namespace ServerBackup
