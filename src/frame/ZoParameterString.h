#pragma once

#include <QString>

// The object form of the parameter-string routines, used by the dispatcher and
// the form selection; same rules as ReadParameter and SetParameter.
class ZoParameterString
{
public:
    QString ReadValue(const QString& parameters, const QString& key) const;
    QString SetValue(const QString& parameters, const QString& key, const QString& value) const;
};
