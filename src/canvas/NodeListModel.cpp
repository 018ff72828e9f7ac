#include "NodeListModel.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeRoles.h"
#include "canvas/RulesetFilter.h"
#include "workspace/Workspace.h"

#include <QSet>

namespace Ombrel {

NodeListModel::NodeListModel(CanvasController &controller, QObject *parent)
    : QAbstractListModel(parent), m_controller(controller)
{
    Workspace &workspace = controller.workspace();
    CanvasState &state = controller.state();
    connect(&workspace, &Workspace::selectedFileChanged, this, &NodeListModel::followFile);
    connect(&state, &CanvasState::searchTextChanged, this, &NodeListModel::refresh);
    connect(&workspace, &Workspace::selectedRulesetIDsChanged, this,
            [this] { allRowsChanged(NodeRoles::Selected); });
    connect(&workspace, &Workspace::selectedRulesetChanged, this,
            [this] { allRowsChanged(NodeRoles::Selected); });
    connect(&state, &CanvasState::editingRulesetIDChanged, this,
            [this] { allRowsChanged(NodeRoles::EditingSelector); });
    followFile();
}

int NodeListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant NodeListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const CSSRulesetPtr &ruleset = m_rows[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return ruleset->selector();
    case Qt::EditRole:
        return m_controller.state().editingRulesetText();
    case NodeRoles::Ruleset:
        return QVariant::fromValue<QObject *>(ruleset.get());
    case NodeRoles::Selected:
        return m_controller.isSelected(*ruleset);
    case NodeRoles::EditingSelector:
        return m_controller.state().editingRulesetID() == ruleset->id();
    default:
        return QVariant();
    }
}

bool NodeListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return false;
    m_controller.state().setEditingRulesetText(value.toString());
    return true;
}

Qt::ItemFlags NodeListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return QAbstractListModel::flags(index);
    return QAbstractListModel::flags(index) | Qt::ItemIsEditable;
}

CSSRulesetPtr NodeListModel::rulesetAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row] : nullptr;
}

int NodeListModel::rowOf(const QUuid &id) const
{
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row]->id() == id)
            return int(row);
    }
    return -1;
}

void NodeListModel::followFile()
{
    const CSSFilePtr file = m_controller.file();
    if (file == m_file)
        return;
    disconnect(m_fileConnection);
    m_file = file;
    if (m_file)
        m_fileConnection =
            connect(m_file.get(), &CSSFile::rulesetsChanged, this, &NodeListModel::refresh);
    refresh();
}

void NodeListModel::refresh()
{
    observeRulesets();
    setRows(m_controller.filteredRulesets());
}

void NodeListModel::observeRulesets()
{
    QHash<CSSRuleset *, std::pair<CSSRulesetPtr, QMetaObject::Connection>> observed;
    if (m_file) {
        observed.reserve(m_file->rulesets().size());
        for (const CSSRulesetPtr &ruleset : m_file->rulesets()) {
            CSSRuleset *key = ruleset.get();
            if (auto kept = m_observed.find(key); kept != m_observed.end()) {
                observed.insert(key, *kept);
                m_observed.erase(kept);
            } else {
                observed.insert(key, {ruleset, connect(key, &CSSRuleset::changed, this,
                                                       [this, key] { rulesetChanged(key); })});
            }
        }
    }
    for (const auto &[ruleset, connection] : std::as_const(m_observed))
        disconnect(connection);
    m_observed = std::move(observed);
}

void NodeListModel::rulesetChanged(CSSRuleset *ruleset)
{
    if (!RulesetFilter::queryOf(m_controller.state().searchText()).isEmpty())
        setRows(m_controller.filteredRulesets());
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].get() == ruleset) {
            const QModelIndex changed = index(int(row));
            Q_EMIT dataChanged(changed, changed);
            return;
        }
    }
}

void NodeListModel::allRowsChanged(int role)
{
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_rows.size()) - 1), {role});
}

// Brings the rows to next in three passes, each with the signals the views
// need to keep their state: runs of vanished rows are removed, the rows that
// stay are reordered as one layout change, and runs of new rows are inserted.
void NodeListModel::setRows(const CSSRulesetList &next)
{
    if (next == m_rows)
        return;
    QSet<const CSSRuleset *> inNext;
    inNext.reserve(next.size());
    for (const CSSRulesetPtr &ruleset : next)
        inNext.insert(ruleset.get());

    for (qsizetype last = m_rows.size() - 1; last >= 0;) {
        if (inNext.contains(m_rows[last].get())) {
            --last;
            continue;
        }
        qsizetype first = last;
        while (first > 0 && !inNext.contains(m_rows[first - 1].get()))
            --first;
        beginRemoveRows(QModelIndex(), int(first), int(last));
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first - 1;
    }

    QHash<const CSSRuleset *, int> current;
    current.reserve(m_rows.size());
    for (qsizetype row = 0; row < m_rows.size(); ++row)
        current.insert(m_rows[row].get(), int(row));
    CSSRulesetList kept;
    kept.reserve(m_rows.size());
    for (const CSSRulesetPtr &ruleset : next) {
        if (current.contains(ruleset.get()))
            kept.append(ruleset);
    }
    if (kept != m_rows) {
        Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
        QList<int> newRowOfOld(m_rows.size());
        for (qsizetype row = 0; row < kept.size(); ++row)
            newRowOfOld[current.value(kept[row].get())] = int(row);
        const QModelIndexList from = persistentIndexList();
        QModelIndexList to;
        to.reserve(from.size());
        for (const QModelIndex &old : from)
            to.append(index(newRowOfOld[old.row()]));
        m_rows = kept;
        changePersistentIndexList(from, to);
        Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    }

    for (qsizetype first = 0; first < next.size();) {
        if (current.contains(next[first].get())) {
            ++first;
            continue;
        }
        qsizetype end = first;
        while (end < next.size() && !current.contains(next[end].get()))
            ++end;
        beginInsertRows(QModelIndex(), int(first), int(end - 1));
        m_rows.insert(first, end - first, nullptr);
        std::copy(next.begin() + first, next.begin() + end, m_rows.begin() + first);
        endInsertRows();
        first = end;
    }
}

} // namespace Ombrel
