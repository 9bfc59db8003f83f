#include "ZoHashGuid.h"

#include <QFile>
#include <QRegularExpression>

#include "ErrorLog.h"
#include "Globals.h"
#include "SqlText.h"
#include "Tovak.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoGenerateDisk.h"
#include "ZoHash.h"

namespace {

// A table name or a number spliced bare into SQL text: anything else is
// refused rather than allowed to alter the statement.
bool isTableName(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return pattern.match(text).hasMatch();
}

bool isWholeNumber(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^-?[0-9]+$"));
    return pattern.match(text).hasMatch();
}

QString declarationFilter(const DeclarationKey& key)
{
    return QStringLiteral(" WHERE Padron = '") + Sq(key.padron) +
           QStringLiteral("' AND Objeto = '") + Sq(key.objeto) +
           QStringLiteral("' AND Periodo = '") + Sq(key.mes) + u'-' + Sq(key.anio) +
           QStringLiteral("' AND ctrl = '") + Sq(key.ctrl) + u'\'';
}

QString readGuidv(const DeclarationKey& key)
{
    return gAccess().GetString(QStringLiteral("SELECT Guidv FROM ") + key.formulario +
                               declarationFilter(key));
}

QString readEncFormularios(const QString& column, const QString& parameters)
{
    const QString id = ReadParameter(parameters, QStringLiteral("idEncFormulario"));
    if (!isWholeNumber(id))
        return {};
    return gAccess().GetString(QStringLiteral("SELECT EncFormularios.") + column +
                               QStringLiteral(" From EncFormularios WHERE "
                                              "(((EncFormularios.idEncFormulario)=") +
                               id + QStringLiteral("));"));
}

} // namespace

DeclarationKey ParseDeclarationKey(const QString& parameters)
{
    QString text = parameters;
    text.replace(QStringLiteral("Padrón N° "), QStringLiteral("Padron="));
    DeclarationKey key;
    const QString padron = ReadParameter(text, QStringLiteral("Padron"));
    key.padron = padron.left(13);
    key.objeto = padron.mid(26, 13);
    key.mes = ReadParameter(text, QStringLiteral("Periodo"));
    key.anio = ReadParameter(text, QStringLiteral("Anio"));
    if (key.anio.isEmpty()) {
        key.anio = key.mes.right(4);
        key.mes = key.mes.left(2);
    }
    key.formulario = ReadParameter(text, QStringLiteral("Formulario"));
    key.ctrl = ReadParameter(text, QStringLiteral("ctrl"));
    return key;
}

void EnsureDeclarationGuidv(const QString& parameters)
{
    const DeclarationKey key = ParseDeclarationKey(parameters);
    if (!isTableName(key.formulario))
        return;
    if (!readGuidv(key).isEmpty())
        return;
    const QString id = gAccess().GetString(QStringLiteral("SELECT Id FROM ") + key.formulario +
                                           declarationFilter(key));
    if (!id.isEmpty())
        SetRowGuidv(key.formulario, id);
}

QString GetDeclarationGuidv(const QString& parameters)
{
    EnsureDeclarationGuidv(parameters);
    const DeclarationKey key = ParseDeclarationKey(parameters);
    return isTableName(key.formulario) ? readGuidv(key) : QString();
}

void SetRowGuidv(const QString& table, const QString& id)
{
    if (!isTableName(table) || !isWholeNumber(id))
        return;
    gAccess().Execute(QStringLiteral("UPDATE ") + table + QStringLiteral(" SET Guidv = '") +
                      NewShortGuid() + QStringLiteral("' WHERE Id = ") + id);
}

QString ReadStoredHash(const QString& parameters)
{
    return readEncFormularios(QStringLiteral("Hash"), parameters);
}

QString ReadStoredGuidv(const QString& parameters)
{
    return readEncFormularios(QStringLiteral("Guidv"), parameters);
}

QString HashProbePath()
{
    return WorkFolder() + QStringLiteral("/Hash.txt");
}

// Not the temporary file of the submission writer: the digest has always read
// a file of its own name, and the two stay apart.
QString DigestSourcePath()
{
    return WorkFolder() + QStringLiteral("/TempFile.DJ");
}

bool RefreshDeclarationDigest(const QString& parameters, const QString& oldHash,
                              const QString& oldGuidv)
{
    ZoGenerateDisk disk;
    disk.Parametros = parameters;
    // The destination only answers the drive test: with no compression it is
    // never written.
    disk.CreateFile(HashProbePath(), true);

    ZoHash hash;
    bool read = false;
    const QString digest = hash.DigestFileToHexStr(DigestSourcePath(), &read);
    if (!read)
        return false;

    const QString id = ReadParameter(parameters, QStringLiteral("idEncFormulario"));
    // A save that leaves the submission text as it was keeps its identifier.
    const bool changed = digest != oldHash;
    const QString newHash = changed ? digest : oldHash;
    const QString newGuidv = changed ? NewShortGuid() : oldGuidv;
    if (isWholeNumber(id))
        gAccess().Execute(QStringLiteral("UPDATE EncFormularios SET HASH = '") + Sq(newHash) +
                          QStringLiteral("', GUIDV = '") + Sq(newGuidv) +
                          QStringLiteral("' WHERE IDENCFORMULARIO = ") + id);
    else
        LogError(QStringLiteral("3075"),
                 QStringLiteral("idEncFormulario no numérico: \"") + id + u'"',
                 QStringLiteral("ZoHashGuid.RefreshDeclarationDigest"));

    QFile::remove(HashProbePath());
    QFile::remove(DigestSourcePath());
    return true;
}
