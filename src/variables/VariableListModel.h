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

    void refresh();
    void setRows(const QList<Row> &next);
    static QList<Key> keysOf(const QList<Row> &rows);
    void indexRows();
    void rowStateChanged(const QUuid &propID);

    VariablesController &m_controller;
    QList<Row> m_rows;
    QList<Key> m_keys;
    QHash<QUuid, int> m_entryRows;
    QHash<QUuid, int> m_groupRows;
};

} // namespace Ombrel
