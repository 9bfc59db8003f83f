#include "ZoParameterString.h"

#include "Tovak.h"

QString ZoParameterString::ReadValue(const QString& parameters, const QString& key) const
{
    return ReadParameter(parameters, key);
}

QString ZoParameterString::SetValue(const QString& parameters, const QString& key,
                                    const QString& value) const
{
    return SetParameter(parameters, key, value);
}
