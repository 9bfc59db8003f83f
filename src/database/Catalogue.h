#pragma once

#include <QStringList>

// The catalogue rows an installed database comes with: activities, voucher
// kinds, municipalities, forms and their submission codes, options. As Jet
// INSERT statements, in the order they are written.
QStringList CatalogueStatements();

// The name and captions of a form in the tree: {name}, "Nuevo - " {name},
// "Formulario Generado - " {name}.
QString LeyendaNuevo(const QString& nombre);
QString LeyendaGenerado(const QString& nombre);
