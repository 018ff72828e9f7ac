#include "CanvasState.h"

namespace Ombrel {

CanvasState::CanvasState(QObject *parent) : QObject(parent) {}

template<typename T>
void CanvasState::assign(T &field, const T &value, void (CanvasState::*notify)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*notify)();
}

void CanvasState::setShowNewRulesetSheet(bool value)
{
    assign(m_showNewRulesetSheet, value, &CanvasState::showNewRulesetSheetChanged);
}

void CanvasState::setNewSelectorText(const QString &text)
{
    assign(m_newSelectorText, text, &CanvasState::newSelectorTextChanged);
}

void CanvasState::setScrollToID(const QUuid &id)
{
    assign(m_scrollToID, id, &CanvasState::scrollToIDChanged);
}

void CanvasState::setSearchText(const QString &text)
{
    assign(m_searchText, text, &CanvasState::searchTextChanged);
}

void CanvasState::setSearchFocused(bool value)
{
    assign(m_searchFocused, value, &CanvasState::searchFocusedChanged);
}

void CanvasState::setVariableSearchText(const QString &text)
{
    assign(m_variableSearchText, text, &CanvasState::variableSearchTextChanged);
}

void CanvasState::setVariableSearchFocused(bool value)
{
    assign(m_variableSearchFocused, value, &CanvasState::variableSearchFocusedChanged);
}

void CanvasState::setShowNewVariableSheet(bool value)
{
    assign(m_showNewVariableSheet, value, &CanvasState::showNewVariableSheetChanged);
}

void CanvasState::setNewVariableName(const QString &text)
{
    assign(m_newVariableName, text, &CanvasState::newVariableNameChanged);
}

void CanvasState::setNewVariableValue(const QString &text)
{
    assign(m_newVariableValue, text, &CanvasState::newVariableValueChanged);
}

void CanvasState::setNewVariableSelector(const QString &text)
{
    assign(m_newVariableSelector, text, &CanvasState::newVariableSelectorChanged);
}

void CanvasState::setCollapsedGroups(const QSet<QUuid> &ids)
{
    assign(m_collapsedGroups, ids, &CanvasState::collapsedGroupsChanged);
}

void CanvasState::setVariableScrollToPropID(const QUuid &id)
{
    assign(m_variableScrollToPropID, id, &CanvasState::variableScrollToPropIDChanged);
}

void CanvasState::setCodeJumpRulesetID(const QUuid &id)
{
    assign(m_codeJumpRulesetID, id, &CanvasState::codeJumpRulesetIDChanged);
}

void CanvasState::setCodeJumpPropID(const QUuid &id)
{
    assign(m_codeJumpPropID, id, &CanvasState::codeJumpPropIDChanged);
}

void CanvasState::setEditingRulesetID(const QUuid &id)
{
    assign(m_editingRulesetID, id, &CanvasState::editingRulesetIDChanged);
}

void CanvasState::setEditingRulesetText(const QString &text)
{
    assign(m_editingRulesetText, text, &CanvasState::editingRulesetTextChanged);
}

void CanvasState::setDraggingRulesetID(const QUuid &id)
{
    assign(m_draggingRulesetID, id, &CanvasState::draggingRulesetIDChanged);
}

void CanvasState::setDropTargetIndex(std::optional<int> index)
{
    assign(m_dropTargetIndex, index, &CanvasState::dropTargetIndexChanged);
}

} // namespace Ombrel
