#pragma once

#include <QList>
#include <QString>

#include "ReportJob.h"

// The drawing of a printed form, as data: which boxes, columns and totals it
// has and where each takes its value from. Values are templates: "{NAME}" is
// a parameter field, "{#COLUMN}" a staging column of the line, "%n" the line
// number inside a parameter's name ("{CODIGO%n}"), and "|cuit" after a name
// prints eleven digits as a CUIT ("{CUIT|cuit}").
enum class LayoutKind { Return, Annex, AgentReturn };

struct LayoutBox {
    QString caption;
    QString value;
    double width; // mm
};

struct LayoutColumn {
    QString caption;
    QString value;
    double width; // mm
    bool amount;  // right-aligned
};

struct LayoutTotal {
    QString caption;
    QString value;
    bool strong;
};

struct ReportLayout {
    QString name;   // "F976"
    QString number; // "976"
    QString title;
    QString subtitle;
    LayoutKind kind;
    // The marks of the declaration's kind; empty for the annexes, whose kind
    // follows from the rectification date.
    QString original;
    QString rectificativa;
    QString fechaRectificativa;
    QString fecha;
    QList<QList<LayoutBox>> identification;
    QList<LayoutColumn> columns;
    QString totalCaption; // the lines' total row, with its value
    QString totalValue;
    QString totalTax; // the monthly returns' total of the tax column
    QList<LayoutTotal> totals;
    QString words;
    QString suscriptor;
    QString caracter;
    QString principal;
    QString copy;
    QString guidv;
};

// The layout of a form; null for an unknown name.
const ReportLayout* FindReportLayout(const QString& name);

// The template's text for the job, `row` being the line (0 up) that "{#...}"
// and "%n" refer to.
QString ExpandTemplate(const QString& text, const ReportJob& job, int row = 0);
