#pragma once

#include <QSet>
#include <QString>
#include <QVector>

class TreeModel;

// Lookups over the declaration tree that the builders ask thousands of times:
// "is there a node of this month and form", "is this month there", "which
// nodes are months". The answers are those of a walk over every node's key,
// given the shape of the keys the tree is made of: each key begins with its
// premises' caption and then carries ";Anio=", ";Periodo=", ";Formulario=" in
// that order. The index follows the tree as nodes are added and starts anew
// when the tree was cleared.
class TreeIndex
{
public:
    // Takes in the nodes added since the last call.
    void sync(const TreeModel& tree);

    // Whether some key contains `text`; texts that are not of the shapes
    // indexed are answered by a walk.
    bool anyKeyContains(const TreeModel& tree, const QString& text);

    // Gives back what the index holds; the next look-up builds it again.
    void release();

    // Indices of the month nodes (key holding "Periodo" but not "Formulario"),
    // in node order.
    const QVector<int>& months() const { return m_months; }

private:
    void reset(const TreeModel& tree);
    void take(const QString& key, int index);

    const TreeModel* m_tree = nullptr;
    int m_count = 0;
    QString m_lastKey;
    QSet<QString> m_periods; // each key cut after its Periodo value
    QSet<QString> m_forms;   // each key cut after its Formulario value
    QString m_lastPeriod;    // the cut last put in m_periods
    QString m_lastForm;      // ... and in m_forms
    QVector<int> m_months;
};
