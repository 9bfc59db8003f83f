#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

#include "Recordset.h"

struct FormLayout;

// Writes the submission file of one declaration (records 1 to 4, Windows-1252
// with CR LF) and zips it with the external archiver; also the wrapper of the
// archiver that the backups use.
class ZoGenerateDisk
{
public:
    ZoGenerateDisk();

    QString Parametros;
    QString Path;

    // Writes the declaration's records to the temporary file and, unless
    // noCompress, zips it into `path`. A network path, or a folder that does
    // not exist or cannot be written, is refused with a message (false). The
    // result is otherwise the writer's: true for the eight forms, whether or
    // not the destination came out. The destination appears only whole: a
    // text the writer could not complete (header or premises refused, a write
    // that failed) or a failed archiver leaves no destination and no
    // temporary file behind. With noCompress the temporary file stays.
    bool CreateFile(const QString& path, bool noCompress = false);
    // Writes the declaration's records to the temporary file alone: true
    // when the text came out whole, otherwise Falla() tells why. The
    // temporary file's folder must exist.
    bool CreateText();
    // Record 1, the envelope; starts the temporary file afresh. False when
    // the form has no codes, or for a premises of regime "2" on the annexes
    // of retentions and perceptions suffered (the file is then left empty).
    bool CreateHeader(const QString& temporaryPath);
    // Record 2, the premises; false when the premises has no row or no group.
    bool CreateDatosPadron(const QString& temporaryPath);

    // Zips `source` alone into `destination` through 7za ("a -tzip").
    bool Compress(const QString& source, const QString& destination);
    // Extracts `archive` into `folder` through 7za ("e -y"); with a member
    // name, true only when that member came out. An empty folder becomes
    // {data folder}/TEMP.
    bool Expand(const QString& archive, QString& member, QString& folder);
    bool DeleteFile(const QString& path);
    QString RutaCorta(QString& path);
    bool Is64bit();
    bool Compres(const QString&, const QString&) { return false; }
    bool Uncompres(const QString&, const QString&) { return false; }

    // Where the records are written before they are zipped.
    QString TemporaryPath() const { return m_temporaryPath; }
    // Another place for the records: a run that writes many files at once
    // gives each its own folder. The name stays TEMPFILE.DJ, the member's
    // name in the archive.
    void SetTemporaryFolder(const QString& folder);
    // Why the last CreateFile left no destination, in the person's words;
    // "" when it came out.
    QString Falla() const { return m_falla; }

private:
    void ParseParametros();
    bool DriveExists(const QString& path) const;
    // The one writer of records 3 and 4, driven by the form's layout.
    bool WriteForm(const FormLayout& layout);
    QString FillQuery(const QString& sqlTemplate, const QString& table, const QString& code) const;
    // Appends lines, each ended by CR LF, in Windows-1252; `truncate` starts
    // the file afresh. A failed open or write is remembered.
    bool WriteLines(const QString& path, const QStringList& lines, bool truncate);

    QString m_temporaryPath;
    QString m_idContribuyente;
    QString m_Padron;
    QString m_Objeto;
    QString m_Anio;
    QString m_Periodo;
    QString m_Formulario;
    QString m_Rectificativa;
    QString m_FechaRectificativa;
    QString m_Nuevo;
    QString m_ConDatos;
    QString m_ctrl;
    QString m_kind;
    bool m_known = false; // the form has a writer
    bool m_complete = false;
    bool m_writeFailed = false;
    QString m_falla;
};

// The folder of the work files of the submission file and of the digest
// ({data folder}/tmp), created when missing.
QString WorkFolder();

// The archiver: 7za beside the program, else on the PATH; "" when missing.
QString SevenZipProgram();

// Runs the archiver with `arguments`, waiting for its end; its exit code, or
// -1 when it could not run.
int RunSevenZip(const QStringList& arguments);

// Why a whole text did not reach its destination as an archive.
QString ArchiveFailureText();

// The archiver's arguments that zip `member` alone into `archive`, with
// `options` ("-mx=1") before the names.
QStringList ArchiveArguments(const QString& member, const QString& archive,
                             const QStringList& options = {});
// Gives a finished `archive` the name `target`, only whole: it goes to a
// side name first ("{target}.part"), so that a full disk never leaves half a
// file that looks good. The archive is gone afterwards, whatever the answer.
bool PlaceArchive(const QString& archive, const QString& target);
// Zips `member` alone into the work file `archive` (started afresh) and
// places it as `target`: the submission file at the archiver's default
// level, a backup with "-mx=1". True when `target` came out.
bool ArchiveAlone(const QString& member, const QString& archive, const QString& target,
                  const QStringList& options = {});

// The time a submission text carries into its archive, which keeps its
// modification time: now, or what the clock set here says, so that the same
// declaration zipped twice gives the same bytes (an empty clock is now again).
QDateTime SubmissionTime();
void SetSubmissionClock(std::function<QDateTime()> clock);
// Gives the file at `path` the modification time SubmissionTime().
bool StampSubmissionTime(const QString& path);
