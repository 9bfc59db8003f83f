#pragma once

#include <QHash>
#include <QString>
#include <QVector>

// The nodes of a tree view in the order they were added, as the node
// collection of the old tree control numbered them; keys are unique.
struct TreeNode {
    QString key;
    QString text;
    QString image;
    int parent = -1; // index of the parent node, -1 for a root
    bool expanded = false;
    QVector<int> children;
};

class TreeModel
{
public:
    void clear();
    // Adds a node under the node with key `parentKey` ("" for a root); returns
    // its index, or -1 when the key is taken or the parent is missing.
    int add(const QString& parentKey, const QString& key, const QString& text,
            const QString& image = {});
    // The same under the node at index `parent` (-1 for a root), for builders
    // that hold it already.
    int addUnder(int parent, const QString& key, const QString& text, const QString& image = {});
    int count() const { return int(m_nodes.size()); }
    const TreeNode& node(int index) const { return m_nodes.at(index); }
    TreeNode& node(int index) { return m_nodes[index]; }
    int indexOf(const QString& key) const { return m_byKey.value(key, -1); }
    bool contains(const QString& key) const { return m_byKey.contains(key); }
    const QVector<TreeNode>& nodes() const { return m_nodes; }

    int selected() const { return m_selected; }
    void setSelected(int index) { m_selected = index; }
    const TreeNode* selectedNode() const
    {
        return m_selected >= 0 && m_selected < count() ? &m_nodes.at(m_selected) : nullptr;
    }

    // Gives back the room kept for nodes yet to come, once a build is done.
    void squeeze()
    {
        m_nodes.squeeze();
        m_byKey.squeeze();
    }

    // Expands every ancestor so that the node shows.
    void ensureVisible(int index);

private:
    QVector<TreeNode> m_nodes;
    QHash<QString, int> m_byKey;
    int m_selected = -1;
};
