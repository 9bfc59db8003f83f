#pragma once

#include <QStringList>

#include "DefinicionFormulario.h"

// What every annex of receipts has in common as data; each annex fills in
// its own names, grid and partner.
DefinicionFormulario DefinicionAnexo(const QString& id, const QString& caption,
                                     const QString& captionTotal, const QStringList& columnas,
                                     const QStringList& titulos);

// The annexes of retentions (F977, F985): constancy number, no receipt type.
DefinicionFormulario DefinicionRetenciones(const QString& id, const QString& caption);
// The annexes of perceptions (F978, F987): receipts with their type.
DefinicionFormulario DefinicionPercepciones(const QString& id, const QString& caption);
