#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"

#include <QAbstractListModel>
#include <QList>
#include <QMetaObject>

#include <optional>

namespace Ombrel {

class CanvasController;

// The cards of the canvas: one row per ruleset of the selected file that the
// filter finds, in file order, answering the roles of NodeRoles.
//
// It follows the file, its rulesets and the filter text at a cost that does
// not grow with the number of changes: one run of rows that appears or goes
// (a ruleset added, duplicated or deleted) is one insertion or removal, rows
// that only change places are one layout change, and anything else, such as
// a filter that hides rows all over the list, is one reset. Edits of the
// rulesets themselves are taken once per turn of the event loop, from the
// file: the filter is applied again then, and every row is told to restyle.
// A keystroke that lengthens the filter text only narrows the rows shown, and
// one that takes a character back finds the rows it had before.
// Qt::DisplayRole is the selector, and Qt::EditRole the text of the inline
// selector editor.
class NodeListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit NodeListModel(CanvasController &controller, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    CSSRulesetPtr rulesetAt(int row) const;
    // The row of the ruleset with that id, or -1 when it is not shown.
    int rowOf(const QUuid &id) const;
    // The rulesets shown, in row order.
    const CSSRulesetList &rows() const { return m_rows; }

private:
    void followFile();
    void refresh();
    void contentChanged();
    void setRows(const CSSRulesetList &next);
    bool moveRowsWithin(const CSSRulesetList &next, qsizetype first, qsizetype end);
    void allRowsChanged(const QList<int> &roles);

    CanvasController &m_controller;
    CSSFilePtr m_file;
    QList<QMetaObject::Connection> m_fileConnections;
    CSSRulesetList m_rows;
    // The queries typed since the filter last started from the whole file,
    // each with the rulesets it found, each narrowing the one before; valid
    // while the file's content revision stays the one noted. A longer query
    // narrows the last rows it contains, and erasing back to a query of the
    // trail finds its rows there.
    struct Filtered
    {
        QString query;
        CSSRulesetList rows;
    };
    QList<Filtered> m_trail;
    std::optional<quint64> m_trailRevision;
    CSSRulesetList filteredRows(const QString &query);
};

} // namespace Ombrel
