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
    int parent = -1;
    if (!parentKey.isEmpty()) {
        parent = indexOf(parentKey);
        if (parent < 0)
            return -1;
    }
    return addUnder(parent, key, text, image);
}

int TreeModel::addUnder(int parent, const QString& key, const QString& text, const QString& image)
{
    if (parent < -1 || parent >= count())
        return -1;
    // One look-up of the new key: it takes the next index unless it is taken.
    const int index = int(m_nodes.size());
    const qsizetype before = m_byKey.size();
    int& slot = m_byKey[key];
    if (m_byKey.size() == before)
        return -1;
    slot = index;
    m_nodes.push_back(TreeNode{key, text, image, parent, false, {}});
    if (parent >= 0)
        m_nodes[parent].children.push_back(index);
    return index;
}

void TreeModel::ensureVisible(int index)
{
    for (int p = index >= 0 ? m_nodes.at(index).parent : -1; p >= 0; p = m_nodes.at(p).parent)
        m_nodes[p].expanded = true;
}
