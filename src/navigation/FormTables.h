#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Where each of the eight declaration forms keeps its rows, as the navigation
// reads, copies and deletes them: the differences between forms are data.
struct FormTables {
    QString id;            // IdFormulario, also the header table's name
    QString detailTable;   // "" for a form without lines
    bool hasCodigo = true; // the agents' returns are keyed by padrón, objeto and period
    // Header columns a period copy carries over, besides the identity.
    QStringList copyColumns;
    // Line columns a period copy carries over, besides Codigo,
    // FechaRectificativa, CodigoDetalle and ctrl.
    QStringList copyDetailColumns;
    // Header columns the dispatcher reads into the header record.
    QStringList amountColumns;
    // The address of the agents' returns ends in " C.P. " and the postcode.
    bool addressWithCp = false;

    // The form of that id, or nullptr.
    static const FormTables* find(const QString& id);
    // All eight, in the order the period copy tries them.
    static const QVector<FormTables>& all();
};
