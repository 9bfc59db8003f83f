#include "Backup.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <memory>

#include "BackupArchive.h"
#include "DatabaseFile.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "MainWindowLink.h"
#include "RegionalSettings.h"
#include "ServerBackup.h"
#include "Tovak.h"
#include "ZoAccess.h"
#include "output/ZoGenerateDisk.h"

namespace {

const QString kSource = QStringLiteral("Backup");
const QString kMember = QStringLiteral("Morvel.db");
const QString kMissingMarker = QStringLiteral("@");
// The work folders under {data folder}/tmp: "copia-XXXXXX", "restaura-XXXXXX".
const QString kBackupWork = QStringLiteral("copia");
const QString kRestoreWork = QStringLiteral("restaura");

// The first start's values, in the order they are looked at.
struct InitialValue {
    const QString& key;
    const char* value;
};

const InitialValue kInitialValues[] = {
    {BackupKey::Cierre, "0"},          {BackupKey::Inicio, "-1"},
    {BackupKey::CopiaSeguridad, "-1"}, {BackupKey::CompactaRepara, "-1"},
    {BackupKey::CantDias, "15"},
};

// The group "Backup" of the per-user settings of Morvel.
class BackupStore : public QSettings
{
public:
    BackupStore() : QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel"))
    {
        beginGroup(QStringLiteral("Backup"));
    }
};

bool fail(const QString& what)
{
    LogError(QStringLiteral("-1"), what, kSource);
    return false;
}

// A folder for the work of one copy or restore, beside the database so that
// the finished file takes its place with a rename.
std::unique_ptr<QTemporaryDir> workFolder(const QString& prefix)
{
    const QString parent = gAppPath + QStringLiteral("/tmp");
    QDir().mkpath(parent);
    auto folder =
        std::make_unique<QTemporaryDir>(parent + u'/' + prefix + QStringLiteral("-XXXXXX"));
    if (!folder->isValid())
        return nullptr;
    return folder;
}

bool makePrivateFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    if (!QDir().mkpath(folder))
        return false;
    // What the hidden, system and read-only attributes were to the old
    // folder: nobody but the person reads the copies of their declarations.
    return QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// Zips `member` alone, at the archiver's fastest level (a copy is made at
// every start or close; a restore reads any level), into `archive`, and
// gives it the name `target` only once whole.
bool zipAlone(const QString& member, const QString& archive, const QString& target)
{
    return ArchiveAlone(member, archive, target, {QStringLiteral("-mx=1")});
}

// The day of a stamp "yyyymmddHHmmss" (characters 7-8, 5-6 and 1-4).
QDate stampDate(const QString& stamp)
{
    return QDate(stamp.mid(0, 4).toInt(), stamp.mid(4, 2).toInt(), stamp.mid(6, 2).toInt());
}

} // namespace

QString GetBackupSetting(const QString& key, const QString& missing)
{
    return BackupStore().value(key, missing).toString();
}

void SaveBackupSetting(const QString& key, const QString& value)
{
    BackupStore store;
    store.setValue(key, value);
    store.sync();
}

bool IsSettingOn(const QString& value)
{
    bool number = false;
    const int n = value.trimmed().toInt(&number);
    return number && n != 0;
}

QString SettingText(bool on)
{
    return on ? kSettingOn : kSettingOff;
}

QString DefaultBackupFolder()
{
    return gAppPath + QStringLiteral("/BDBKUP");
}

QString BackupFileName(const QString& stamp)
{
    return QStringLiteral("Morvel.") + stamp;
}

bool IsBackupFileName(const QString& name)
{
    static const QString prefix = QStringLiteral("Morvel.");
    if (!name.startsWith(prefix, Qt::CaseInsensitive))
        return false;
    const QString stamp = name.mid(prefix.size());
    if (stamp.size() != 14)
        return false;
    return std::all_of(stamp.cbegin(), stamp.cend(), [](QChar c) { return c.isDigit(); });
}

void InitBackupSettings()
{
    bool firstStart = false;
    for (const InitialValue& initial : kInitialValues) {
        if (GetBackupSetting(initial.key, kMissingMarker) != kMissingMarker)
            continue;
        SaveBackupSetting(initial.key, QString::fromLatin1(initial.value));
        if (initial.key == BackupKey::CantDias)
            firstStart = true;
    }
    if (firstStart)
        SaveBackupSetting(BackupKey::BackupDirectory, DefaultBackupFolder());
    RemoveInterruptedWork();
}

void RunScheduledBackup(int moment)
{
    const bool automatic = IsSettingOn(GetBackupSetting(BackupKey::CopiaSeguridad, kSettingOff));
    const QString days = GetBackupSetting(BackupKey::CantDias, QStringLiteral("10"));
    const QString last = GetBackupSetting(BackupKey::FechaUlt, QString());
    const bool atStart = IsSettingOn(GetBackupSetting(BackupKey::Inicio, kSettingOff));
    const bool atClose = IsSettingOn(GetBackupSetting(BackupKey::Cierre, kSettingOff));
    const bool compact = IsSettingOn(GetBackupSetting(BackupKey::CompactaRepara, kSettingOn));

    if (!automatic)
        return;
    if (!(moment == 0 && atStart) && !(moment == 9 && atClose))
        return;
    const QDate lastDay = stampDate(last);
    if (last.isEmpty() || !lastDay.isValid()) {
        // The first copy (or one after a stamp that reads as no day) is
        // taken as the database is, without compacting.
        BackupDatabase();
        return;
    }
    if (lastDay.daysTo(QDate::currentDate()) < days.trimmed().toInt())
        return;
    if (compact)
        CompactDatabase();
    BackupDatabase();
}

bool BackupDatabase()
{
    if (ServerBackup::InUse())
        return ServerBackup::BackupDatabase();
    CloseDatabase();
    const QString source = DatabasePath();
    QString folder = GetBackupSetting(BackupKey::BackupDirectory, QString());
    if (folder.isEmpty())
        folder = DefaultBackupFolder();
    if (!makePrivateFolder(folder))
        return fail(QStringLiteral("No se pudo crear la carpeta de copias ") + folder);

    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"));
    const auto work = workFolder(kBackupWork);
    if (!work)
        return fail(QStringLiteral("No se pudo crear la carpeta de trabajo de la copia"));
    const QString target = folder + u'/' + BackupFileName(stamp);
    const QString archive = work->filePath(QStringLiteral("copia.zip"));
    // The file itself is zipped when it alone is the whole database and is
    // held still meanwhile; otherwise a snapshot of it is.
    bool zipped = false;
    const bool direct = QFileInfo(source).fileName() == kMember &&
                        DatabaseFile::WhileWhole(source, [&] {
                            DatabaseFile::ReachStage(QStringLiteral("copied"));
                            zipped = zipAlone(source, archive, target);
                            return true;
                        });
    if (!direct) {
        const QString snapshot = work->filePath(kMember);
        if (!DatabaseFile::Snapshot(source, snapshot))
            return false;
        DatabaseFile::ReachStage(QStringLiteral("copied"));
        zipped = zipAlone(snapshot, archive, target);
    }
    if (!zipped)
        return fail(QStringLiteral("No se pudo comprimir la copia en ") + target);
    SaveBackupSetting(BackupKey::FechaUlt, stamp);
    SaveBackupSetting(BackupKey::BackupDirectory, folder);
    return true;
}

QString CompactionWorkFile(const QString& original)
{
    const QFileInfo info(original);
    return info.absolutePath() + u'/' + info.completeBaseName() + QStringLiteral("TMP.") +
           info.suffix();
}

bool CompactDatabase()
{
    if (ServerBackup::InUse())
        return true; // the server reclaims its own free space
    const QString original =
        ReadParameter(gAccess().ConnectionString(), QStringLiteral("Data Source"));
    const QString work = CompactionWorkFile(original);
    CloseDatabase();
    // A work file left by a compaction that stopped is only ever a copy.
    QFile::remove(work);
    if (!DatabaseFile::WriteCompacted(original, work))
        return false;
    DatabaseFile::ReachStage(QStringLiteral("written"));
    if (!DatabaseFile::IsSystemDatabase(work)) {
        QFile::remove(work);
        return fail(QStringLiteral("La copia compactada no pasó la verificación"));
    }
    DatabaseFile::ReachStage(QStringLiteral("checked"));
    if (!DatabaseFile::Replace(work, original)) {
        QFile::remove(work);
        return false;
    }
    DatabaseFile::ReachStage(QStringLiteral("replaced"));
    return true;
}

bool RestoreDatabase(const QString& file, QString* reason)
{
    if (ServerBackup::InUse())
        return ServerBackup::RestoreDatabase(file, reason);
    const auto refuse = [&](const QString& why) {
        LogError(QStringLiteral("-1"), why + QStringLiteral(" (") + file + u')', kSource);
        if (reason)
            *reason = why;
        return false;
    };
    CloseDatabase();
    const auto work = workFolder(kRestoreWork);
    if (!work)
        return refuse(QStringLiteral("No se pudo crear la carpeta de trabajo de la restauración."));
    const BackupArchive::Listing listing =
        BackupArchive::Inspect(file, QStorageInfo(gAppPath).bytesAvailable());
    if (!listing.refusal.isEmpty())
        return refuse(listing.refusal);
    const QString restored = work->filePath(kMember);
    const QString damaged = BackupArchive::Extract(file, restored, listing.size);
    if (!damaged.isEmpty())
        return refuse(damaged);
    DatabaseFile::ReachStage(QStringLiteral("written"));
    const QString unsound = DatabaseFile::Soundness(restored);
    if (!unsound.isEmpty())
        return refuse(QStringLiteral("El archivo no es una copia de seguridad de Morvel: ") +
                      unsound);
    DatabaseFile::ReachStage(QStringLiteral("checked"));
    if (!DatabaseFile::Replace(restored, DatabasePath()))
        return refuse(QStringLiteral("La base de datos actual está abierta por otro programa o "
                                     "no se pudo reemplazar."));
    DatabaseFile::ReachStage(QStringLiteral("replaced"));
    RefreshMainWindowTaxpayers();
    return true;
}

void RemoveInterruptedWork()
{
    // A copy or a restore that was stopped (the program killed, the machine
    // switched off) leaves its work folder, a whole copy of the database.
    const QString parent = gAppPath + QStringLiteral("/tmp");
    const QStringList leftovers = QDir(parent).entryList(
        {kBackupWork + QStringLiteral("-*"), kRestoreWork + QStringLiteral("-*")},
        QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : leftovers) {
        const QString path = parent + u'/' + name;
        if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
            QDir(path).removeRecursively();
        else
            QFile::remove(path);
    }
    // An archive stopped half-way in the backup folder never took a copy's
    // name; the compaction's work file is only ever a copy.
    QString folder = GetBackupSetting(BackupKey::BackupDirectory, QString());
    if (folder.isEmpty())
        folder = DefaultBackupFolder();
    for (const QString& name :
         QDir(folder).entryList({QStringLiteral("Morvel.*.part")}, QDir::Files | QDir::Hidden))
        QFile::remove(folder + u'/' + name);
    QFile::remove(CompactionWorkFile(DatabasePath()));
}

qint64 GetDirectorySize(const QString& folder)
{
    qint64 total = 0;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        total += it.fileInfo().size();
    }
    return total;
}

QString MegabytesText(qint64 bytes)
{
    const double megabytes = std::round(double(bytes) / 1048576.0 * 100.0) / 100.0;
    QString text = QString::number(megabytes, 'f', 2);
    while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
        text.chop(1);
    text.replace(u'.', Regional::decimalSymbol());
    return text + QStringLiteral(" Mb.");
}
