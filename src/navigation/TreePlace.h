#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

class TreeModel;

// Where the person stands in the declaration tree: the chosen node and the
// branches left open or closed, by key. A tree rebuilt from the tables after
// a form closes is put back in that place, with the declaration just handled
// chosen and in sight.
class TreePlace
{
public:
    explicit TreePlace(const TreeModel& tree);

    // Opens and closes again the branches that were there before, chooses
    // the node of the declaration handled and opens the way to it.
    void restore(TreeModel& tree) const;

private:
    int handledNode(const TreeModel& tree) const;

    QSet<QString> m_keys;     // every node before
    QSet<QString> m_expanded; // ... of them, the open ones
    QStringList m_path;       // the chosen node's key, then its parents' up to the top
    QString m_newVersion;     // how the key of a version of the chosen form begins
};
