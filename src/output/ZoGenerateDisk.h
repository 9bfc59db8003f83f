#pragma once

#include <QString>

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
    // noCompress, zips it into `path`. The result is the writer's.
    bool CreateFile(const QString& path, bool noCompress = false);
    bool CreateHeader(const QString& temporaryPath);
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

private:
    QString m_temporaryPath;
};

// The archiver: 7za beside the program, else on the PATH; "" when missing.
QString SevenZipProgram();

// Runs the archiver with `arguments`, waiting for its end; its exit code, or
// -1 when it could not run.
int RunSevenZip(const QStringList& arguments);
