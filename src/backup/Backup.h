#pragma once

#include <QString>

// Automatic copies of the database at start (moment 0) and at close
// (moment 9), on the schedule the person chose; manual copies, compaction and
// restoration.

// --- Settings (per user, group "Backup", all text) ---------------------------

namespace BackupKey {
inline const QString Cierre = QStringLiteral("blnCierre");
inline const QString Inicio = QStringLiteral("blnInicio");
inline const QString CopiaSeguridad = QStringLiteral("blnCopiaSeguridad");
inline const QString CompactaRepara = QStringLiteral("blnCompactaRepara");
inline const QString CantDias = QStringLiteral("strCantDias");
inline const QString FechaUlt = QStringLiteral("strFechaUlt");
inline const QString BackupDirectory = QStringLiteral("strBackupDirectory");
} // namespace BackupKey

// Truth values of the settings.
inline const QString kSettingOn = QStringLiteral("-1");
inline const QString kSettingOff = QStringLiteral("0");

// The value stored under `key`, or `missing` when there is none.
QString GetBackupSetting(const QString& key, const QString& missing);
void SaveBackupSetting(const QString& key, const QString& value);
// "-1" (any number but 0) is on; "0" and anything that is no number is off.
bool IsSettingOn(const QString& value);
QString SettingText(bool on);

// The folder of the backups on a first start: {data folder}/BDBKUP.
QString DefaultBackupFolder();

// --- Routines ----------------------------------------------------------------

// Stores the initial values of the settings that are missing; the folder of
// the backups only with the first start. Removes what copies and restores
// that were stopped left behind.
void InitBackupSettings();

// Removes the work folders of copies and restores that never ended
// ({data folder}/tmp/copia-*, restaura-*), an archive left half-written in
// the backup folder and the compaction's work file.
void RemoveInterruptedWork();

// The work file of the compaction of `original`: "MorvelTMP.db" beside it.
QString CompactionWorkFile(const QString& original);

// The copy on the schedule: moment 0 at start, 9 at close.
void RunScheduledBackup(int moment);

// Zips a consistent copy of the database, as the member "Morvel.db", into
// {folder}/Morvel.{yyyymmddHHmmss}, and stores the stamp and the folder. False,
// with the settings untouched, when anything fails.
bool BackupDatabase();

// Rewrites the database without its free space. The compacted copy takes the
// place of the original only once it has been checked; on any failure the
// database stays exactly as it was.
bool CompactDatabase();

// Puts the database of a backup archive in place of the current one, once it
// has been checked to be a database of this system; otherwise changes nothing
// and tells why in `reason`. The archive must hold one regular file,
// Morvel.db, that the data folder has room for; nothing else is extracted.
bool RestoreDatabase(const QString& file, QString* reason = nullptr);

// The sizes of every file below `folder`, in bytes.
qint64 GetDirectorySize(const QString& folder);

// A size in megabytes rounded to two decimals, with the regional decimal
// symbol and " Mb." ("1,5 Mb.", "0 Mb.").
QString MegabytesText(qint64 bytes);

// The name of a backup file from its stamp: "Morvel." {yyyymmddHHmmss}.
QString BackupFileName(const QString& stamp);
// True when the part of `name` behind "Morvel." is a stamp of 14 digits.
bool IsBackupFileName(const QString& name);
