#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>

namespace Ombrel {

// The view state of one window's canvas pane: the sheets and what they hold,
// the filters, the inline rename, the drag in progress and the scroll
// requests. It lives as long as the pane, so it carries over when another
// file is selected. A null QUuid stands for "none".
//
// Each field has a getter, a setter that only notifies on a real change, and a
// notify signal.
class CanvasState : public QObject
{
    Q_OBJECT

public:
    explicit CanvasState(QObject *parent = nullptr);

    bool showNewRulesetSheet() const { return m_showNewRulesetSheet; }
    void setShowNewRulesetSheet(bool value);
    QString newSelectorText() const { return m_newSelectorText; }
    void setNewSelectorText(const QString &text);
    // The card the list scrolls to the top; a change to null scrolls nowhere.
    QUuid scrollToID() const { return m_scrollToID; }
    void setScrollToID(const QUuid &id);

    // The filter of the card list, as typed, and whether its field has focus.
    QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    bool searchFocused() const { return m_searchFocused; }
    void setSearchFocused(bool value);
    QString variableSearchText() const { return m_variableSearchText; }
    void setVariableSearchText(const QString &text);
    bool variableSearchFocused() const { return m_variableSearchFocused; }
    void setVariableSearchFocused(bool value);

    bool showNewVariableSheet() const { return m_showNewVariableSheet; }
    void setShowNewVariableSheet(bool value);
    QString newVariableName() const { return m_newVariableName; }
    void setNewVariableName(const QString &text);
    QString newVariableValue() const { return m_newVariableValue; }
    void setNewVariableValue(const QString &text);
    // The selector typed or picked in the variable sheet; a selector no
    // ruleset has yet makes a new ruleset.
    QString newVariableSelector() const { return m_newVariableSelector; }
    void setNewVariableSelector(const QString &text);

    // Rulesets whose group is folded on the variables tab.
    QSet<QUuid> collapsedGroups() const { return m_collapsedGroups; }
    void setCollapsedGroups(const QSet<QUuid> &ids);
    QUuid variableScrollToPropID() const { return m_variableScrollToPropID; }
    void setVariableScrollToPropID(const QUuid &id);

    // Where the code tab puts its cursor when it opens: the variable picked
    // on the variables tab, when that is the tab it was entered from.
    QUuid codeJumpRulesetID() const { return m_codeJumpRulesetID; }
    void setCodeJumpRulesetID(const QUuid &id);
    QUuid codeJumpPropID() const { return m_codeJumpPropID; }
    void setCodeJumpPropID(const QUuid &id);

    // The card whose selector is being edited inline, and the text of its
    // editor.
    QUuid editingRulesetID() const { return m_editingRulesetID; }
    void setEditingRulesetID(const QUuid &id);
    QString editingRulesetText() const { return m_editingRulesetText; }
    void setEditingRulesetText(const QString &text);

    // The card being dragged, and the list index its drop would go before
    // (the count for behind the last card).
    QUuid draggingRulesetID() const { return m_draggingRulesetID; }
    void setDraggingRulesetID(const QUuid &id);
    std::optional<int> dropTargetIndex() const { return m_dropTargetIndex; }
    void setDropTargetIndex(std::optional<int> index);

Q_SIGNALS:
    void showNewRulesetSheetChanged();
    void newSelectorTextChanged();
    void scrollToIDChanged();
    void searchTextChanged();
    void searchFocusedChanged();
    void variableSearchTextChanged();
    void variableSearchFocusedChanged();
    void showNewVariableSheetChanged();
    void newVariableNameChanged();
    void newVariableValueChanged();
    void newVariableSelectorChanged();
    void collapsedGroupsChanged();
    void variableScrollToPropIDChanged();
    void codeJumpRulesetIDChanged();
    void codeJumpPropIDChanged();
    void editingRulesetIDChanged();
    void editingRulesetTextChanged();
    void draggingRulesetIDChanged();
    void dropTargetIndexChanged();

private:
    template<typename T> void assign(T &field, const T &value, void (CanvasState::*notify)());

    bool m_showNewRulesetSheet = false;
    QString m_newSelectorText;
    QUuid m_scrollToID;
    QString m_searchText;
    bool m_searchFocused = false;
    QString m_variableSearchText;
    bool m_variableSearchFocused = false;
    bool m_showNewVariableSheet = false;
    QString m_newVariableName = QStringLiteral("--");
    QString m_newVariableValue;
    QString m_newVariableSelector;
    QSet<QUuid> m_collapsedGroups;
    QUuid m_variableScrollToPropID;
    QUuid m_codeJumpRulesetID;
    QUuid m_codeJumpPropID;
    QUuid m_editingRulesetID;
    QString m_editingRulesetText;
    QUuid m_draggingRulesetID;
    std::optional<int> m_dropTargetIndex;
};

} // namespace Ombrel
