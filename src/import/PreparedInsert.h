#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "ZoAccess.h"

// The one INSERT an import repeats for every line, prepared once through the
// gateway and run with the line's values bound: no value, whatever its
// characters, can break the statement or the lines around it, and the engine
// parses the statement once instead of once a line. Every value is bound as
// text, as the spliced literal stored it. A failure is written to the daily
// error log like the gateway's, and told to the caller, who tells the person.
class PreparedInsert
{
public:
    PreparedInsert() = default;
    PreparedInsert(const PreparedInsert&) = delete;
    PreparedInsert& operator=(const PreparedInsert&) = delete;

    // Inserts one row into the gateway's database; false, with failure(),
    // when the engine refused it.
    bool insert(const QString& table, const QStringList& columns, const QStringList& values);
    // "No se pudo guardar: ..." for the last refusal.
    const QString& failure() const { return m_failure; }

private:
    bool fail();

    std::unique_ptr<ZoAccess::Prepared> m_statement;
    DatabaseConnection* m_connection = nullptr;
    QString m_table;
    QStringList m_columns;
    QString m_failure;
};
