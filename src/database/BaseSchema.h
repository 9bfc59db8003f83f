#pragma once

#include <QStringList>

// The creation script of the database as it was installed, before any of the
// start-up upgrades: one Jet statement per table.
const QStringList& BaseSchemaStatements();
