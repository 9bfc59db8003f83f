#pragma once

#include <QString>

// Small readings of the texts the navigation passes around.

// A text boolean: "True" or "Verdadero" for yes, "False" or "Falso" for no.
inline bool IsYesText(const QString& value)
{
    return value.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0 ||
           value.compare(QStringLiteral("Verdadero"), Qt::CaseInsensitive) == 0;
}

inline bool IsNoText(const QString& value)
{
    return value.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0 ||
           value.compare(QStringLiteral("Falso"), Qt::CaseInsensitive) == 0;
}

// The padrón and the objeto of the value of `Padron` in a parameter string:
// {padron} " - Objeto N° " {objeto}, each of 13 characters.
inline QString PadronOfValue(const QString& value)
{
    return value.left(13);
}

inline QString ObjetoOfValue(const QString& value)
{
    return value.mid(26);
}

// A month as two digits ("7" gives "07"); a text that is no number stays.
inline QString TwoDigits(const QString& text)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    return ok ? QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')) : text;
}

// The caption and key of a premises node: the padrón starts at character 11
// and the objeto at character 37.
inline QString PremisesCaption(const QString& padron, const QString& objeto)
{
    return QStringLiteral("Padrón N° ") + padron + QStringLiteral(" - Objeto N° ") + objeto;
}

inline QString PadronOfCaption(const QString& caption)
{
    return caption.mid(10, 13).trimmed();
}

inline QString ObjetoOfCaption(const QString& caption)
{
    return caption.mid(36).trimmed();
}
