#pragma once

#include "VariableEntry.h"
#include "VariableRoles.h"

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QUuid>

#include <optional>

namespace Ombrel {

class VariablesController;

// The rows of the variables tab over the controller's listing: a header for
// each group, then, unless the group is folded, a row for each of its
// entries, answering the roles of VariableRoles.
//
// It follows the listing with row removals, moves and insertions, and with
// changes of the rows that stay, never with a reset, so that the view keeps
// its scroll position and the editor of the row being edited.
class VariableListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit VariableListModel(VariablesController &controller, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    VariableRoles::Kind kindAt(int row) const;
    // The entry of an entry row; none for a header or a row out of range.
    std::optional<VariableEntry> entryAt(int row) const;
    int flatIdxAt(int row) const;
    // The id of a header's ruleset; null for an entry.
    QUuid groupAt(int row) const;
    // The row of the entry, or of the group's header; -1 when not shown.
    int rowOfEntry(const QUuid &propID) const;
    int rowOfGroup(const QUuid &rulesetID) const;

private:
    struct Row
    {
        VariableRoles::Kind kind = VariableRoles::Kind::Header;
        QUuid rulesetID;
        QString selector;
        int totalCount = 0;
        bool collapsed = false;
        VariableEntry entry;
        int flatIdx = -1;

        QUuid id() const { return kind == VariableRoles::Kind::Header ? rulesetID : entry.propID; }
        friend bool operator==(const Row &, const Row &) = default;
    };
    // A row's identity across listings: the same id may stand twice, for a
    // property copied with its id, so its occurrence counts too.
    struct Key
    {
        VariableRoles::Kind kind;
        QUuid id;
        int occurrence;
        friend bool operator==(const Key &, const Key &) = default;
        friend size_t qHash(const Key &key, size_t seed = 0)
        {
            return qHashMulti(seed, int(key.kind), key.id, key.occurrence);
        }
    };

    // The rows as views see them. While rows are being removed or inserted
    // run by run, the rows already passed wait aside, so that each run costs
    // only its own rows rather than a shift of all the rows behind it.
    const Row &rowAt(int row) const;
    int count() const;

    void refresh();
    void setRows(QList<Row> next);
    // With each present row's position in next, or -1 for one that goes.
    void removeVanished(const QList<int> &positions);
    void reorderKept(QList<int> positions);
    void insertNew(QList<Row> &next, const QList<Key> &nextKeys, const QList<bool> &isNew);
    void changeContents(const QList<Row> &next, const QList<bool> &isNew);
    static QList<Key> keysOf(const QList<Row> &rows, QHash<Key, int> &positions);
    void indexRows() const;
    void rowStateChanged(const QUuid &propID);

    enum class Pass { None, Removing, Inserting };

    VariablesController &m_controller;
    QList<Row> m_rows;
    QList<Key> m_keys;
    Pass m_pass = Pass::None;
    // Removing: the rows before m_split are m_rows', those after it are
    // m_aside, last first. Inserting: the rows before m_aside's end are
    // m_aside's, those after it m_rows' from m_split on.
    qsizetype m_split = 0;
    QList<Row> m_aside;
    QList<Key> m_asideKeys;
    // Where each entry and header stands, made again when first asked after
    // the rows moved.
    mutable QHash<QUuid, int> m_entryRows;
    mutable QHash<QUuid, int> m_groupRows;
    mutable bool m_indexed = false;
};

} // namespace Ombrel
