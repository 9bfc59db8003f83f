#include "TreeIndex.h"

#include "FormTables.h"
#include "TreeModel.h"

namespace {

const QString kPeriodo = QStringLiteral(";Periodo=");
const QString kFormulario = QStringLiteral(";Formulario=");

// The length of the key cut after the value of `marker`, or -1 when the key
// lacks it.
int cutAfterValue(const QString& key, const QString& marker)
{
    const int at = int(key.indexOf(marker));
    if (at < 0)
        return -1;
    const int end = int(key.indexOf(u';', at + marker.size()));
    return end < 0 ? int(key.size()) : end;
}

// The same, for a key that may begin with `last`, the cut of an earlier key
// after the same marker: when it does, and a value ends there, the key's
// cut is that one (the marker's first place in the key lies inside that
// beginning, as it did in the earlier key), found without a search. The
// declarations of one month, and the versions of one form, so follow each
// other.
int cutAfterValue(const QString& key, const QString& marker, const QString& last)
{
    const qsizetype length = last.size();
    if (length > 0 && key.size() >= length &&
        (key.size() == length || key.at(length) == u';') && QStringView(key).left(length) == last)
        return int(length);
    return cutAfterValue(key, marker);
}

// Puts the key cut at `length` into `set`, unless it is the cut last put
// there: the nodes of one month (and the versions of one form) come one after
// another, so most cuts repeat the one before.
void takeCut(QSet<QString>& set, QString& last, const QString& key, int length)
{
    if (length <= 0)
        return;
    if (last.size() == length && QStringView(key).left(length) == last)
        return;
    last = key.left(length);
    set.insert(last);
}

// The value of `marker` when it is the last entry of `text`, else "". A key
// contains such a text exactly when its own cut after that value equals it,
// provided no value the tree uses is the beginning of another: two-digit
// months and the eight form ids are such values.
QString lastValueOf(const QString& text, const QString& marker)
{
    const int at = int(text.indexOf(marker));
    if (at <= 0 || text.indexOf(u';', at + marker.size()) >= 0)
        return {};
    return text.mid(at + marker.size());
}

bool isTwoDigitMonth(const QString& value)
{
    return value.size() == 2 && value.at(0).isDigit() && value.at(1).isDigit();
}

bool startsLikeATreeKey(const QString& text)
{
    return text.startsWith(QStringLiteral("Padrón N° ")) ||
           text.startsWith(QStringLiteral("Padron="));
}

} // namespace

void TreeIndex::reset(const TreeModel& tree)
{
    m_tree = &tree;
    m_count = 0;
    m_lastKey.clear();
    m_lastPeriod.clear();
    m_lastForm.clear();
    m_periods.clear();
    m_forms.clear();
    m_months.clear();
}

void TreeIndex::release()
{
    *this = TreeIndex();
}

void TreeIndex::sync(const TreeModel& tree)
{
    const bool same = m_tree == &tree && tree.count() >= m_count &&
                      (m_count == 0 || tree.node(m_count - 1).key == m_lastKey);
    if (!same)
        reset(tree);
    for (int i = m_count; i < tree.count(); ++i)
        take(tree.node(i).key, i);
    m_count = tree.count();
    m_lastKey = m_count > 0 ? tree.node(m_count - 1).key : QString();
}

void TreeIndex::take(const QString& key, int index)
{
    takeCut(m_periods, m_lastPeriod, key, cutAfterValue(key, kPeriodo, m_lastPeriod));
    const int form = cutAfterValue(key, kFormulario, m_lastForm);
    takeCut(m_forms, m_lastForm, key, form);
    if (form < 0 && key.contains(QStringLiteral("Periodo")) &&
        !key.contains(QStringLiteral("Formulario")))
        m_months.push_back(index);
}

bool TreeIndex::anyKeyContains(const TreeModel& tree, const QString& text)
{
    sync(tree);
    if (text.isEmpty())
        return tree.count() > 0;
    if (tree.contains(text))
        return true;
    if (startsLikeATreeKey(text)) {
        const QString form = lastValueOf(text, kFormulario);
        if (FormTables::find(form) && FormTables::find(form)->id == form)
            return m_forms.contains(text);
        if (!text.contains(kFormulario) && isTwoDigitMonth(lastValueOf(text, kPeriodo)))
            return m_periods.contains(text);
    }
    for (const TreeNode& node : tree.nodes())
        if (node.key.contains(text))
            return true;
    return false;
}
