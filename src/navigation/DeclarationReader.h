#pragma once

#include <QString>

#include "DeclarationForm.h"

// What the dispatcher does to a declaration's parameter string before a form
// gets it: a new rectification takes the next ctrl, the declaration's Codigo
// is appended, and the premises, the taxpayer and the stored row are read into
// the header record.
class DeclarationReader
{
public:
    // Completes `parameters` in place and returns the header record.
    static DeclarationHeader Read(QString& parameters);

    // A rectification date as the forms compare it: "dd-mm-yyyy", or "0" for
    // none ("NO", the blank mask and the empty text included).
    static QString NormalDate(const QString& text);

private:
    static void readPremises(DeclarationHeader& header, bool addressWithCp);
    static void readRow(DeclarationHeader& header, bool byCodigo, const QStringList& amountColumns);
};
