#pragma once

#include <QString>

// Removes a premises with everything it holds, in the order the system always
// did: its activities, the declarations with lines of F2001, F976 and F978, the
// agents' returns, the index of declarations, and the premises itself.
class PadronCascade
{
public:
    // An empty objeto takes every objeto of the padrón.
    static void Run(const QString& padron, const QString& objeto);
};
