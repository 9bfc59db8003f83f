#pragma once

#include "SqlText.h"

// A value between single quotes for SQL text, its own quotes doubled.
inline QString Comillas(const QString& value)
{
    return u'\'' + Sq(value) + u'\'';
}
