#include "VariableListModel.h"

#include "VariablesController.h"
#include "canvas/CanvasState.h"

#include <QSet>

#include <algorithm>
#include <numeric>

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
    return parent.isValid() ? 0 : count();
}

QVariant VariableListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const Row &row = rowAt(index.row());
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

const VariableListModel::Row &VariableListModel::rowAt(int row) const
{
    switch (m_pass) {
    case Pass::Removing:
        return row < m_split ? m_rows[row] : m_aside[m_aside.size() - 1 - (row - m_split)];
    case Pass::Inserting:
        return row < m_aside.size() ? m_aside[row] : m_rows[m_split + row - m_aside.size()];
    case Pass::None:
        break;
    }
    return m_rows[row];
}

int VariableListModel::count() const
{
    switch (m_pass) {
    case Pass::Removing:
        return int(m_split + m_aside.size());
    case Pass::Inserting:
        return int(m_aside.size() + m_rows.size() - m_split);
    case Pass::None:
        break;
    }
    return int(m_rows.size());
}

Kind VariableListModel::kindAt(int row) const
{
    return row >= 0 && row < count() ? rowAt(row).kind : Kind::Header;
}

std::optional<VariableEntry> VariableListModel::entryAt(int row) const
{
    if (row < 0 || row >= count() || rowAt(row).kind != Kind::Entry)
        return std::nullopt;
    return rowAt(row).entry;
}

int VariableListModel::flatIdxAt(int row) const
{
    return row >= 0 && row < count() ? rowAt(row).flatIdx : -1;
}

QUuid VariableListModel::groupAt(int row) const
{
    return row >= 0 && row < count() && rowAt(row).kind == Kind::Header ? rowAt(row).rulesetID
                                                                        : QUuid();
}

int VariableListModel::rowOfEntry(const QUuid &propID) const
{
    indexRows();
    return m_entryRows.value(propID, -1);
}

int VariableListModel::rowOfGroup(const QUuid &rulesetID) const
{
    indexRows();
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
    setRows(std::move(next));
}

// A key for each row, and in positions where each key stands.
QList<VariableListModel::Key> VariableListModel::keysOf(const QList<Row> &rows,
                                                        QHash<Key, int> &positions)
{
    QList<Key> keys;
    keys.reserve(rows.size());
    positions.reserve(rows.size());
    for (const Row &row : rows) {
        Key key{row.kind, row.id(), 0};
        // Stored one up, so that a fresh slot's 0 tells it is new.
        int *slot = &positions[key];
        while (*slot != 0) {
            ++key.occurrence;
            slot = &positions[key];
        }
        *slot = int(keys.size()) + 1;
        keys.append(key);
    }
    return keys;
}

// Brings the rows to next in four passes, each with the signals the views
// need to keep their state: runs of vanished rows are removed, the rows that
// stay are reordered as one layout change, runs of new rows are inserted,
// and the rows whose content changed say so.
void VariableListModel::setRows(QList<Row> next)
{
    QHash<Key, int> inNext;
    const QList<Key> nextKeys = keysOf(next, inNext);
    QList<bool> isNew(next.size(), false);
    if (nextKeys != m_keys) {
        m_indexed = false;
        isNew.fill(true);
        QList<int> positions;
        positions.reserve(m_keys.size());
        for (const Key &key : std::as_const(m_keys)) {
            const int position = inNext.value(key) - 1;
            positions.append(position);
            if (position >= 0)
                isNew[position] = false;
        }
        removeVanished(positions);
        positions.removeIf([](int position) { return position < 0; });
        reorderKept(std::move(positions));
        insertNew(next, nextKeys, isNew);
        m_indexed = false;
    }
    changeContents(next, isNew);
}

// From the last run to the first, so that the rows before a run keep their
// place; the rows behind it are set aside as the runs pass.
void VariableListModel::removeVanished(const QList<int> &positions)
{
    m_pass = Pass::Removing;
    m_split = m_rows.size();
    for (qsizetype last = m_rows.size() - 1; last >= 0;) {
        if (positions[last] >= 0) {
            --last;
            continue;
        }
        qsizetype first = last;
        while (first > 0 && positions[first - 1] < 0)
            --first;
        beginRemoveRows(QModelIndex(), int(first), int(last));
        for (qsizetype row = m_split - 1; row > last; --row) {
            m_aside.append(std::move(m_rows[row]));
            m_asideKeys.append(m_keys[row]);
        }
        m_split = first;
        endRemoveRows();
        last = first - 1;
    }
    if (m_split < m_rows.size()) {
        m_rows.resize(m_split);
        m_keys.resize(m_split);
        for (qsizetype row = m_aside.size() - 1; row >= 0; --row) {
            m_rows.append(std::move(m_aside[row]));
            m_keys.append(m_asideKeys[row]);
        }
    }
    m_aside.clear();
    m_asideKeys.clear();
    m_pass = Pass::None;
}

// The rows that stay, all of them in next, in next's order.
void VariableListModel::reorderKept(QList<int> positions)
{
    if (std::is_sorted(positions.begin(), positions.end()))
        return;
    QList<int> byOrder(positions.size());
    std::iota(byOrder.begin(), byOrder.end(), 0);
    std::sort(byOrder.begin(), byOrder.end(),
              [&positions](int a, int b) { return positions[a] < positions[b]; });
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QList<int> newRowOfOld(positions.size());
    QList<Row> rows;
    QList<Key> keys;
    rows.reserve(positions.size());
    keys.reserve(positions.size());
    for (qsizetype row = 0; row < byOrder.size(); ++row) {
        newRowOfOld[byOrder[row]] = int(row);
        rows.append(std::move(m_rows[byOrder[row]]));
        keys.append(m_keys[byOrder[row]]);
    }
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex &old : from)
        to.append(index(newRowOfOld[old.row()]));
    m_rows = std::move(rows);
    m_keys = std::move(keys);
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

// From the first run to the last; the rows before a run are set aside as
// the runs pass, and the rest follow at the end. New rows are taken from
// next.
void VariableListModel::insertNew(QList<Row> &next, const QList<Key> &nextKeys,
                                  const QList<bool> &isNew)
{
    if (!isNew.contains(true))
        return;
    m_pass = Pass::Inserting;
    m_split = 0;
    m_aside.reserve(next.size());
    m_asideKeys.reserve(next.size());
    for (qsizetype first = 0; first < next.size();) {
        if (!isNew[first]) {
            ++first;
            continue;
        }
        qsizetype end = first;
        while (end < next.size() && isNew[end])
            ++end;
        while (m_aside.size() < first) {
            m_aside.append(std::move(m_rows[m_split]));
            m_asideKeys.append(m_keys[m_split]);
            ++m_split;
        }
        beginInsertRows(QModelIndex(), int(first), int(end - 1));
        for (qsizetype row = first; row < end; ++row) {
            m_aside.append(std::move(next[row]));
            m_asideKeys.append(nextKeys[row]);
        }
        endInsertRows();
        first = end;
    }
    for (; m_split < m_rows.size(); ++m_split) {
        m_aside.append(std::move(m_rows[m_split]));
        m_asideKeys.append(m_keys[m_split]);
    }
    m_rows = std::move(m_aside);
    m_keys = std::move(m_asideKeys);
    m_aside.clear();
    m_asideKeys.clear();
    m_pass = Pass::None;
}

// Field by field: a filter moves the flat position of most entries and
// nothing else of theirs. One change covers every row that changed.
void VariableListModel::changeContents(const QList<Row> &next, const QList<bool> &isNew)
{
    qsizetype first = -1;
    qsizetype last = -1;
    for (qsizetype index = 0; index < next.size(); ++index) {
        if (isNew[index])
            continue;
        Row &row = m_rows[index];
        const Row &now = next[index];
        bool changed = false;
        if (row.flatIdx != now.flatIdx) {
            row.flatIdx = now.flatIdx;
            changed = true;
        }
        if (row.totalCount != now.totalCount || row.collapsed != now.collapsed) {
            row.totalCount = now.totalCount;
            row.collapsed = now.collapsed;
            changed = true;
        }
        if (row.rulesetID != now.rulesetID) {
            row.rulesetID = now.rulesetID;
            changed = true;
        }
        if (row.selector != now.selector) {
            row.selector = now.selector;
            changed = true;
        }
        if (!(row.entry == now.entry)) {
            row.entry = now.entry;
            changed = true;
        }
        if (changed) {
            first = first < 0 ? index : first;
            last = index;
        }
    }
    if (first >= 0)
        Q_EMIT dataChanged(this->index(int(first)), this->index(int(last)));
}

void VariableListModel::indexRows() const
{
    if (m_indexed)
        return;
    m_entryRows.clear();
    m_groupRows.clear();
    for (qsizetype row = count() - 1; row >= 0; --row) {
        const Row &at = rowAt(int(row));
        (at.kind == Kind::Entry ? m_entryRows : m_groupRows).insert(at.id(), int(row));
    }
    m_indexed = true;
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
