#include "VariableListModel.h"

#include "VariablesController.h"
#include "canvas/CanvasState.h"

#include <QSet>

namespace Ombrel {

using VariableRoles::Kind;

VariableListModel::VariableListModel(VariablesController &controller, QObject *parent)
    : QAbstractListModel(parent), m_controller(controller)
{
    connect(&controller, &VariablesController::listingChanged, this, &VariableListModel::refresh);
    connect(&controller, &VariablesController::rowStateChanged, this,
            &VariableListModel::rowStateChanged);
    refresh();
}

int VariableListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant VariableListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const Row &row = m_rows[index.row()];
    if (role == VariableRoles::RowKind)
        return int(row.kind);
    if (role == VariableRoles::RulesetID)
        return row.rulesetID;
    if (row.kind == Kind::Header) {
        switch (role) {
        case Qt::DisplayRole:
        case VariableRoles::Selector:
            return row.selector;
        case VariableRoles::CountText:
            return row.totalCount == 1 ? tr("1 var") : tr("%1 vars").arg(row.totalCount);
        case VariableRoles::Collapsed:
            return row.collapsed;
        default:
            return QVariant();
        }
    }
    const VariableEntry &entry = row.entry;
    switch (role) {
    case Qt::DisplayRole:
    case VariableRoles::Name:
        return entry.name;
    case VariableRoles::PropID:
        return entry.propID;
    case VariableRoles::Value:
        return entry.value;
    case VariableRoles::FlatIdx:
        return row.flatIdx;
    case VariableRoles::Selected:
        return m_controller.isSelected(entry.propID);
    case VariableRoles::Editing:
        return m_controller.isEditingValue(entry.propID) ||
               m_controller.isRenamingName(entry.propID);
    case VariableRoles::EditingValue:
        return m_controller.isEditingValue(entry.propID);
    case VariableRoles::RenamingName:
        return m_controller.isRenamingName(entry.propID);
    case VariableRoles::LocalValue:
        return m_controller.localValue(entry);
    case VariableRoles::LocalName:
        return m_controller.localName(entry);
    case VariableRoles::ColorValue:
        return m_controller.isColorValue(entry);
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> VariableListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(VariableRoles::RowKind, "kind");
    names.insert(VariableRoles::Selector, "selector");
    names.insert(VariableRoles::CountText, "countText");
    names.insert(VariableRoles::Collapsed, "collapsed");
    names.insert(VariableRoles::RulesetID, "rulesetID");
    names.insert(VariableRoles::PropID, "propID");
    names.insert(VariableRoles::Name, "name");
    names.insert(VariableRoles::Value, "value");
    names.insert(VariableRoles::FlatIdx, "flatIdx");
    names.insert(VariableRoles::Selected, "selected");
    names.insert(VariableRoles::Editing, "editing");
    names.insert(VariableRoles::EditingValue, "editingValue");
    names.insert(VariableRoles::RenamingName, "renamingName");
    names.insert(VariableRoles::LocalValue, "localValue");
    names.insert(VariableRoles::LocalName, "localName");
    names.insert(VariableRoles::ColorValue, "colorValue");
    return names;
}

Kind VariableListModel::kindAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].kind : Kind::Header;
}

std::optional<VariableEntry> VariableListModel::entryAt(int row) const
{
    if (row < 0 || row >= m_rows.size() || m_rows[row].kind != Kind::Entry)
        return std::nullopt;
    return m_rows[row].entry;
}

int VariableListModel::flatIdxAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].flatIdx : -1;
}

QUuid VariableListModel::groupAt(int row) const
{
    return row >= 0 && row < m_rows.size() && m_rows[row].kind == Kind::Header
               ? m_rows[row].rulesetID
               : QUuid();
}

int VariableListModel::rowOfEntry(const QUuid &propID) const
{
    return m_entryRows.value(propID, -1);
}

int VariableListModel::rowOfGroup(const QUuid &rulesetID) const
{
    return m_groupRows.value(rulesetID, -1);
}

void VariableListModel::refresh()
{
    const QSet<QUuid> collapsed = m_controller.canvasState().collapsedGroups();
    const VariableListing::Listing &listing = m_controller.listing();
    QList<Row> next;
    next.reserve(listing.groups.size() + listing.flat.size());
    for (const VarGroup &group : listing.groups) {
        Row header;
        header.rulesetID = group.id;
        header.selector = group.selector;
        header.totalCount = group.totalCount;
        header.collapsed = collapsed.contains(group.id);
        next.append(std::move(header));
        for (const VarGroupItem &item : group.items) {
            Row row;
            row.kind = Kind::Entry;
            row.rulesetID = group.id;
            row.entry = item.entry;
            row.flatIdx = item.flatIdx;
            next.append(std::move(row));
        }
    }
    setRows(next);
}

QList<VariableListModel::Key> VariableListModel::keysOf(const QList<Row> &rows)
{
    QList<Key> keys;
    keys.reserve(rows.size());
    QHash<std::pair<int, QUuid>, int> seen;
    for (const Row &row : rows) {
        int &count = seen[{int(row.kind), row.id()}];
        keys.append({row.kind, row.id(), count++});
    }
    return keys;
}

// Brings the rows to next in four passes, each with the signals the views
// need to keep their state: runs of vanished rows are removed, the rows that
// stay are reordered as one layout change, runs of new rows are inserted,
// and the rows whose content changed say so.
void VariableListModel::setRows(const QList<Row> &next)
{
    const QList<Key> nextKeys = keysOf(next);
    if (nextKeys != m_keys) {
        const QSet<Key> inNext(nextKeys.begin(), nextKeys.end());
        for (qsizetype last = m_rows.size() - 1; last >= 0;) {
            if (inNext.contains(m_keys[last])) {
                --last;
                continue;
            }
            qsizetype first = last;
            while (first > 0 && !inNext.contains(m_keys[first - 1]))
                --first;
            beginRemoveRows(QModelIndex(), int(first), int(last));
            m_rows.remove(first, last - first + 1);
            m_keys.remove(first, last - first + 1);
            endRemoveRows();
            last = first - 1;
        }

        QHash<Key, int> current;
        current.reserve(m_keys.size());
        for (qsizetype row = 0; row < m_keys.size(); ++row)
            current.insert(m_keys[row], int(row));
        QList<Key> kept;
        kept.reserve(m_keys.size());
        for (const Key &key : nextKeys) {
            if (current.contains(key))
                kept.append(key);
        }
        if (kept != m_keys) {
            Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
            QList<int> newRowOfOld(m_keys.size());
            QList<Row> reordered;
            reordered.reserve(kept.size());
            for (qsizetype row = 0; row < kept.size(); ++row) {
                const int old = current.value(kept[row]);
                newRowOfOld[old] = int(row);
                reordered.append(m_rows[old]);
            }
            const QModelIndexList from = persistentIndexList();
            QModelIndexList to;
            to.reserve(from.size());
            for (const QModelIndex &old : from)
                to.append(index(newRowOfOld[old.row()]));
            m_rows = std::move(reordered);
            m_keys = kept;
            changePersistentIndexList(from, to);
            Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
        }

        for (qsizetype first = 0; first < nextKeys.size();) {
            if (current.contains(nextKeys[first])) {
                ++first;
                continue;
            }
            qsizetype end = first;
            while (end < nextKeys.size() && !current.contains(nextKeys[end]))
                ++end;
            beginInsertRows(QModelIndex(), int(first), int(end - 1));
            m_rows.insert(first, end - first, Row());
            m_keys.insert(first, end - first, Key());
            std::copy(next.begin() + first, next.begin() + end, m_rows.begin() + first);
            std::copy(nextKeys.begin() + first, nextKeys.begin() + end, m_keys.begin() + first);
            endInsertRows();
            first = end;
        }
    }

    for (qsizetype first = 0; first < next.size();) {
        if (m_rows[first] == next[first]) {
            ++first;
            continue;
        }
        qsizetype end = first;
        while (end < next.size() && !(m_rows[end] == next[end])) {
            m_rows[end] = next[end];
            ++end;
        }
        Q_EMIT dataChanged(index(int(first)), index(int(end - 1)));
        first = end;
    }
    indexRows();
}

void VariableListModel::indexRows()
{
    m_entryRows.clear();
    m_groupRows.clear();
    for (qsizetype row = m_rows.size() - 1; row >= 0; --row) {
        (m_rows[row].kind == Kind::Entry ? m_entryRows : m_groupRows)
            .insert(m_rows[row].id(), int(row));
    }
}

void VariableListModel::rowStateChanged(const QUuid &propID)
{
    const int row = rowOfEntry(propID);
    if (row < 0)
        return;
    const QModelIndex changed = index(row);
    Q_EMIT dataChanged(changed, changed,
                       {VariableRoles::Selected, VariableRoles::Editing,
                        VariableRoles::EditingValue, VariableRoles::RenamingName,
                        VariableRoles::LocalValue, VariableRoles::LocalName,
                        VariableRoles::ColorValue});
}

} // namespace Ombrel
