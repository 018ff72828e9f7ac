#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"

#include <QAbstractListModel>
#include <QHash>
#include <QMetaObject>

namespace Ombrel {

class CanvasController;

// The cards of the canvas: one row per ruleset of the selected file that the
// filter finds, in file order, answering the roles of NodeRoles.
//
// It follows the file, its rulesets and the filter text with row insertions,
// removals and moves, never with a reset, so that the view keeps its scroll
// position and its editor while the user types; a change of one ruleset is a
// change of its row. Qt::DisplayRole is the selector, and Qt::EditRole the
// text of the inline selector editor.
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

private:
    void followFile();
    void refresh();
    void setRows(const CSSRulesetList &next);
    void observeRulesets();
    void rulesetChanged(CSSRuleset *ruleset);
    void allRowsChanged(int role);

    CanvasController &m_controller;
    CSSFilePtr m_file;
    QMetaObject::Connection m_fileConnection;
    CSSRulesetList m_rows;
    // The rulesets of the file whose changes restyle or refilter their row,
    // held until the next change of the file's list.
    QHash<CSSRuleset *, std::pair<CSSRulesetPtr, QMetaObject::Connection>> m_observed;
};

} // namespace Ombrel
