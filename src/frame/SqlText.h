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

// A value as an SQL text literal: between single quotes, each quote doubled.
inline QString Quoted(const QString& value)
{
    return u'\'' + Sq(value) + u'\'';
}

// The rows of one declaration, all its versions. Its versions are numbered and
// its month is copied under a reservation of this scope, so every place that
// takes it must spell it alike.
inline QString DeclarationScope(const QString& padron, const QString& objeto,
                                const QString& periodo)
{
    return QStringLiteral("Padron = ") + Quoted(padron) + QStringLiteral(" AND Objeto = ") +
           Quoted(objeto) + QStringLiteral(" AND Periodo = ") + Quoted(periodo);
}
