#include "ReportJob.h"

namespace {

QString BareName(QString name)
{
    if (name.endsWith(u';'))
        name.chop(1);
    return name;
}

} // namespace

QString ParameterField(const QString& name, const QString& value)
{
    return BareName(name) + u';' + value + QStringLiteral(";TRUE");
}

void ReportJob::addParameter(const QString& name, const QString& value)
{
    parameters.append(ParameterField(name, value));
}

QString ReportJob::parameter(const QString& name) const
{
    const QString prefix = BareName(name) + u';';
    static const QString suffix = QStringLiteral(";TRUE");
    for (const QString& field : parameters) {
        if (field.startsWith(prefix) && field.endsWith(suffix))
            return field.mid(prefix.size(), field.size() - prefix.size() - suffix.size());
    }
    return {};
}

QString ReportJob::cell(int row, const QString& column) const
{
    const int index = columns.indexOf(column);
    if (row < 0 || row >= rows.size() || index < 0)
        return {};
    return rows.at(row).value(index);
}
