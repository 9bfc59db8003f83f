#pragma once

#include <QString>
#include <QStringList>

// The three families of import rules: activity lines of the monthly returns,
// annexes of the perceptions and retentions suffered, and the informative
// annexes of agents.
enum class ImportFamily { Actividades, Anexos, Agentes };

// What the import of one form's detail lines differs in: the rest is shared.
struct ImportRule {
    QString formulario; // "F976", "F2001", ...
    ImportFamily familia;
    QString tablaTexto;   // detail table written by the text rule
    QString tablaHoja;    // detail table written by the spreadsheet rule
    bool conTipo = false; // the lines carry TipoComprobante
    QStringList columnas; // spreadsheet headings, in order (with accents)
    QString fechaTexto;   // message of a malformed date in the text rule

    // The rule of a form; null for forms without detail import.
    static const ImportRule* Find(const QString& formulario);
};
