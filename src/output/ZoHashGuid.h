#pragma once

#include <QString>

// The identifier that ties a declaration's submission file to its paper
// copies (`Guidv`, twelve hexadecimal digits), and the digest of the older
// filing scheme's declarations.

// The declaration that a parameter string names: padrón and objeto from
// "Padron" (the older spelling "Padrón N° " is read too), the month and year
// from "Periodo" and "Anio" or from an "mm-yyyy" period, the form and `ctrl`.
struct DeclarationKey {
    QString padron;
    QString objeto;
    QString mes;
    QString anio;
    QString formulario;
    QString ctrl;
};
DeclarationKey ParseDeclarationKey(const QString& parameters);

// Gives the declaration a `Guidv` when its row has none; a row that has one
// keeps it for good. With several rows of the period (original and
// rectification of one `ctrl`), the first found is served.
void EnsureDeclarationGuidv(const QString& parameters);
// The declaration's `Guidv` after EnsureDeclarationGuidv; "" when it has no
// row.
QString GetDeclarationGuidv(const QString& parameters);
// Writes a fresh identifier into the row `id` of `table`.
void SetRowGuidv(const QString& table, const QString& id);

// `Hash` and `Guidv` of the older scheme's header row named by
// "idEncFormulario".
QString ReadStoredHash(const QString& parameters);
QString ReadStoredGuidv(const QString& parameters);

// After a save of an older-scheme declaration: digests the text of its
// submission file and, when the digest changed, stores it with a new `Guidv`;
// an unchanged text keeps its identifier. False, with nothing stored and the
// work files left in place, when the digested file cannot be read.
bool RefreshDeclarationDigest(const QString& parameters, const QString& oldHash,
                              const QString& oldGuidv);

// The work files of the digest (the old "C:\Hash.txt" and "C:\TempFile.DJ"),
// in the data folder's tmp folder.
QString HashProbePath();
QString DigestSourcePath();
