#include "TreeModel.h"

void TreeModel::clear()
{
    m_nodes.clear();
    m_byKey.clear();
    m_selected = -1;
}

int TreeModel::add(const QString& parentKey, const QString& key, const QString& text,
                   const QString& image)
{
    if (m_byKey.contains(key))
        return -1;
    int parent = -1;
    if (!parentKey.isEmpty()) {
        parent = indexOf(parentKey);
        if (parent < 0)
            return -1;
    }
    const int index = int(m_nodes.size());
    m_nodes.push_back(TreeNode{key, text, image, parent, false, {}});
    m_byKey.insert(key, index);
    if (parent >= 0)
        m_nodes[parent].children.push_back(index);
    return index;
}

void TreeModel::ensureVisible(int index)
{
    for (int p = index >= 0 ? m_nodes.at(index).parent : -1; p >= 0; p = m_nodes.at(p).parent)
        m_nodes[p].expanded = true;
}
