#pragma once

#include <QList>
#include <QString>

#include "ReportJob.h"

// The drawing of a printed form, as data: which boxes, columns and totals it
// has and where each takes its value from. Values are templates: "{NAME}" is
// a parameter field, "{#COLUMN}" a staging column of the line, "%n" the line
// number inside a parameter's name ("{CODIGO%n}"), "{$NAME}" a value of the
// declaration's own record, "{=NAME}" a formula of the layout worked out from
// the others; "|cuit" after a name prints eleven digits as a CUIT
// ("{CUIT|cuit}") and "|amount" a figure with its groups of thousands and two
// decimals, a blank one as zero.
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

// A row of the liquidation: the levy's side (or the only column) and, on the
// monthly returns, the credits' side.
struct LayoutTotal {
    QString caption;
    QString value;
    bool strong;
    QString credit = {};
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
    // How the liquidation's total follows from its rows, under them.
    QString totalsNote;
    // The values a layout works out from the parameters, as a printed form's
    // formulas do; null when it has none.
    QString (*formula)(const QString& name, const ReportJob& job) = nullptr;
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
