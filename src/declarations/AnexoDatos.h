#pragma once

#include <QStringList>

#include "DefinicionFormulario.h"

// What every annex of receipts has in common as data; each annex fills in
// its own names, grid and partner.
DefinicionFormulario DefinicionAnexo(const QString& id, const QString& caption,
                                     const QString& captionTotal, const QStringList& columnas,
                                     const QStringList& titulos);
