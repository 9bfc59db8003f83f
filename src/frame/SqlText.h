#pragma once

#include <QString>

// A value to splice between single quotes in SQL text: each quote doubled, so
// that a street such as O'HIGGINS is stored as typed and no typed text can
// break or alter a statement. A text without quotes comes back unchanged.
inline QString Sq(const QString& value)
{
    QString out = value;
    return out.replace(u'\'', QStringLiteral("''"));
}
