#include "NodeListModel.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeRoles.h"
#include "canvas/RulesetFilter.h"
#include "workspace/Workspace.h"

#include <QHash>
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
            [this] { allRowsChanged({NodeRoles::Selected}); });
    connect(&workspace, &Workspace::selectedRulesetChanged, this,
            [this] { allRowsChanged({NodeRoles::Selected}); });
    connect(&state, &CanvasState::editingRulesetIDChanged, this,
            [this] { allRowsChanged({NodeRoles::EditingSelector}); });
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
    for (const QMetaObject::Connection &connection : std::as_const(m_fileConnections))
        disconnect(connection);
    m_fileConnections.clear();
    m_file = file;
    m_trailRevision.reset();
    if (m_file) {
        m_fileConnections = {
            connect(m_file.get(), &CSSFile::rulesetsChanged, this, &NodeListModel::refresh),
            connect(m_file.get(), &CSSFile::contentChanged, this, &NodeListModel::contentChanged),
        };
    }
    refresh();
}

void NodeListModel::refresh()
{
    setRows(filteredRows(RulesetFilter::queryOf(m_controller.state().searchText())));
}

CSSRulesetList NodeListModel::filteredRows(const QString &query)
{
    if (!m_file) {
        m_trail.clear();
        return {};
    }
    if (m_trailRevision != m_file->contentRevision()) {
        m_trail.clear();
        m_trailRevision = m_file->contentRevision();
    }
    for (qsizetype at = m_trail.size() - 1; at >= 0; --at) {
        if (m_trail[at].query.compare(query, Qt::CaseInsensitive) == 0) {
            m_trail.resize(at + 1);
            return m_trail[at].rows;
        }
        if (RulesetFilter::narrows(query, m_trail[at].query)) {
            m_trail.resize(at + 1);
            m_trail.append({query, RulesetFilter::filtered(m_trail[at].rows, query)});
            return m_trail.last().rows;
        }
    }
    m_trail = {{query, RulesetFilter::filtered(m_file->rulesets(), query)}};
    return m_trail.last().rows;
}

// However many rulesets a turn changed, one pass: the filter may now find
// others, and every card may look different.
void NodeListModel::contentChanged()
{
    if (!RulesetFilter::queryOf(m_controller.state().searchText()).isEmpty())
        refresh();
    allRowsChanged({});
}

void NodeListModel::allRowsChanged(const QList<int> &roles)
{
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_rows.size()) - 1), roles);
}

// Rows kept at both ends are left alone; what differs between them is one
// run that appeared, one that went, rows that changed places, or else
// anything, which resets the model.
void NodeListModel::setRows(const CSSRulesetList &next)
{
    if (next == m_rows)
        return;
    const qsizetype from = m_rows.size();
    const qsizetype to = next.size();
    qsizetype prefix = 0;
    while (prefix < from && prefix < to && m_rows[prefix] == next[prefix])
        ++prefix;
    qsizetype suffix = 0;
    while (suffix < from - prefix && suffix < to - prefix &&
           m_rows[from - 1 - suffix] == next[to - 1 - suffix])
        ++suffix;

    if (prefix + suffix == to) {
        beginRemoveRows(QModelIndex(), int(prefix), int(from - suffix - 1));
        m_rows = next;
        endRemoveRows();
    } else if (prefix + suffix == from) {
        beginInsertRows(QModelIndex(), int(prefix), int(to - suffix - 1));
        m_rows = next;
        endInsertRows();
    } else if (from != to || !moveRowsWithin(next, prefix, from - suffix)) {
        beginResetModel();
        m_rows = next;
        endResetModel();
    }
}

// When the rows in [first, end) of next are those of the model in another
// order, moves them as one layout change that carries the views' persistent
// indexes along.
bool NodeListModel::moveRowsWithin(const CSSRulesetList &next, qsizetype first, qsizetype end)
{
    QHash<const CSSRuleset *, int> newRow;
    newRow.reserve(end - first);
    for (qsizetype row = first; row < end; ++row)
        newRow.insert(next[row].get(), int(row));
    if (newRow.size() != end - first)
        return false;
    QSet<const CSSRuleset *> seen;
    seen.reserve(end - first);
    for (qsizetype row = first; row < end; ++row) {
        const CSSRuleset *ruleset = m_rows[row].get();
        if (!newRow.contains(ruleset) || seen.contains(ruleset))
            return false;
        seen.insert(ruleset);
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &old : before) {
        const int row = old.row();
        after.append(row >= first && row < end ? index(newRow.value(m_rows[row].get())) : old);
    }
    m_rows = next;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    return true;
}

} // namespace Ombrel
