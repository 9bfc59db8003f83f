#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

// One printing of one form: the layout that draws it, its parameter fields in
// slot order ("NAME;value;TRUE") and, for the annexes, the rows of the staging
// table in print order, already completed to full pages.
struct ReportJob {
    QString layout;
    QStringList parameters;
    QStringList columns;
    QVector<QStringList> rows;
    // The lines of the declaration among `rows`; the rest are blank fillers.
    int realLines = 0;
    // What the layout reads from the declaration's own row and its premises
    // beside the parameter fields: the annexes' header, which must not hang on
    // the lines, and the identity that the verification code carries.
    QHash<QString, QString> record;

    // "NAME;value;TRUE" appended to the slots.
    void addParameter(const QString& name, const QString& value);
    // The value of a parameter ("CODIGO1" or "CODIGO1;"), "" when absent.
    QString parameter(const QString& name) const;
    // The text of a staging column in row `row`, "" when absent.
    QString cell(int row, const QString& column) const;
    // The declaration's own value `name` ("PERIODO"), "" when absent.
    QString field(const QString& name) const { return record.value(name); }
};

// The parameter field's text: the name without its ";", the value, ";TRUE".
QString ParameterField(const QString& name, const QString& value);
