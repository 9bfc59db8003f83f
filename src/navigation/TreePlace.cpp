#include "TreePlace.h"

#include "TreeModel.h"

namespace {

const QString kFormularioTag = QStringLiteral(";Formulario=");

} // namespace

TreePlace::TreePlace(const TreeModel& tree)
{
    m_keys.reserve(tree.count());
    for (const TreeNode& node : tree.nodes()) {
        m_keys.insert(node.key);
        if (node.expanded)
            m_expanded.insert(node.key);
    }
    for (int i = tree.selected(); i >= 0 && i < tree.count(); i = tree.node(i).parent)
        m_path << tree.node(i).key;
    if (m_path.isEmpty())
        return;
    // A saved form leaves a node of another key for the same form and month:
    // the key of the month, the form's id, and what follows it.
    const QString& chosen = m_path.first();
    const int tag = int(chosen.indexOf(kFormularioTag));
    const int end = tag < 0 ? -1 : int(chosen.indexOf(u';', tag + kFormularioTag.size()));
    if (end >= 0)
        m_newVersion = chosen.left(end + 1);
}

void TreePlace::restore(TreeModel& tree) const
{
    for (int i = 0; i < tree.count(); ++i) {
        TreeNode& node = tree.node(i);
        if (m_keys.contains(node.key))
            node.expanded = m_expanded.contains(node.key);
    }
    const int chosen = handledNode(tree);
    tree.setSelected(chosen);
    tree.ensureVisible(chosen);
}

// The declaration that came with the form closed, when one did; otherwise
// the node chosen before, or the nearest of its parents still there.
int TreePlace::handledNode(const TreeModel& tree) const
{
    if (!m_newVersion.isEmpty())
        for (int i = tree.count() - 1; i >= 0; --i) {
            const QString& key = tree.node(i).key;
            if (key.startsWith(m_newVersion) && !m_keys.contains(key))
                return i;
        }
    for (const QString& key : m_path) {
        const int index = tree.indexOf(key);
        if (index >= 0)
            return index;
    }
    return -1;
}
