#include "CanvasController.h"

#include "canvas/CanvasDrag.h"
#include "canvas/RulesetFilter.h"
#include "workspace/Workspace.h"

#include <QTimer>

#include <algorithm>
#include <cstdlib>

namespace Ombrel {

namespace {

// Two plain clicks on one card closer than this start its rename.
constexpr qint64 renameClickIntervalMs = 350;
// Back on the rulesets tab, the list scrolls to the selected card once it
// has had the time to be laid out.
constexpr int returnScrollDelayMs = 100;

qsizetype indexOfID(const CSSRulesetList &rulesets, const QUuid &id)
{
    const auto found =
        std::find_if(rulesets.begin(), rulesets.end(),
                     [&id](const CSSRulesetPtr &ruleset) { return ruleset->id() == id; });
    return found == rulesets.end() ? -1 : found - rulesets.begin();
}

} // namespace

CanvasController::CanvasController(Workspace &workspace, UndoManager *undoManager, QObject *parent)
    : QObject(parent), m_workspace(workspace), m_undoManager(undoManager),
      m_operations(workspace, m_state, undoManager), m_tab(workspace.canvasTab())
{
    if (const CSSRulesetPtr selected = workspace.selectedRuleset()) {
        m_selectedID = selected->id();
        m_cursorID = m_selectedID;
    }
    connect(&workspace, &Workspace::selectedRulesetChanged, this,
            &CanvasController::selectionChanged);
    connect(&workspace, &Workspace::canvasTabChanged, this, &CanvasController::tabChanged);
    // A window tears its workspace down before its views: the focus the
    // views then lose must not reach a controller whose workspace is gone.
    connect(&workspace, &QObject::destroyed, this,
            [this] { disconnect(&m_state, nullptr, this, nullptr); });
    connect(&m_state, &CanvasState::editingRulesetIDChanged, this,
            &CanvasController::syncKeyIntercept);
    connect(&m_state, &CanvasState::searchFocusedChanged, this,
            &CanvasController::syncKeyIntercept);

    connect(&workspace, &Workspace::shouldShowNewRulesetSheetChanged, this,
            &CanvasController::handleShowNewRulesetSheet);
    connect(&workspace, &Workspace::shouldFocusSearchChanged, this,
            &CanvasController::handleFocusSearch);
    connect(&workspace, &Workspace::shouldAddVariableChanged, this,
            &CanvasController::handleAddVariable);
    connect(&workspace, &Workspace::shouldRenameRulesetChanged, this, [this] {
        handleRulesetCommand(&Workspace::shouldRenameRuleset, &Workspace::setShouldRenameRuleset,
                             &RulesetOperations::beginRenameRuleset);
    });
    connect(&workspace, &Workspace::shouldDuplicateRulesetChanged, this, [this] {
        handleRulesetCommand(&Workspace::shouldDuplicateRuleset,
                             &Workspace::setShouldDuplicateRuleset,
                             &RulesetOperations::duplicateRuleset);
    });
    connect(&workspace, &Workspace::shouldDeleteRulesetChanged, this, [this] {
        handleRulesetCommand(&Workspace::shouldDeleteRuleset, &Workspace::setShouldDeleteRuleset,
                             &RulesetOperations::deleteRuleset);
    });
    syncKeyIntercept();
}

CSSFilePtr CanvasController::file() const
{
    return m_workspace.selectedFile();
}

CSSRulesetList CanvasController::filteredRulesets() const
{
    const CSSFilePtr file = this->file();
    return file ? RulesetFilter::filtered(file->rulesets(), m_state.searchText())
                : CSSRulesetList();
}

bool CanvasController::isFilterAvailable(const Workspace &workspace)
{
    const CSSFilePtr file = workspace.selectedFile();
    if (!file)
        return false;
    switch (workspace.canvasTab()) {
    case CanvasTab::Nodes:
        return !file->rulesets().isEmpty();
    case CanvasTab::Variables:
        return file->hasVariables();
    case CanvasTab::Code:
        break;
    }
    return false;
}

bool CanvasController::isSelected(const CSSRuleset &ruleset) const
{
    const QSet<QUuid> &ids = m_workspace.selectedRulesetIDs();
    if (!ids.isEmpty())
        return ids.contains(ruleset.id());
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    return selected && selected->id() == ruleset.id();
}

QSet<QUuid> CanvasController::selectedCardIDs() const
{
    const QSet<QUuid> &ids = m_workspace.selectedRulesetIDs();
    if (!ids.isEmpty())
        return ids;
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    return selected ? QSet<QUuid>{selected->id()} : QSet<QUuid>();
}

bool CanvasController::isDragged(const CSSRuleset &ruleset) const
{
    const QUuid dragged = m_state.draggingRulesetID();
    if (dragged.isNull())
        return false;
    if (dragged == ruleset.id())
        return true;
    const QSet<QUuid> &ids = m_workspace.selectedRulesetIDs();
    return ids.contains(dragged) && ids.contains(ruleset.id());
}

CSSRulesetPtr CanvasController::rulesetWithID(const QUuid &id) const
{
    const CSSFilePtr file = this->file();
    if (!file || id.isNull())
        return nullptr;
    const qsizetype index = indexOfID(file->rulesets(), id);
    return index < 0 ? nullptr : file->rulesets()[index];
}

void CanvasController::clickCard(const CSSRulesetPtr &ruleset, Qt::KeyboardModifiers modifiers,
                                 qint64 timestampMs)
{
    const CSSFilePtr file = this->file();
    if (!ruleset || !file)
        return;
    const CSSRulesetList &rulesets = file->rulesets();

    if (modifiers.testFlag(Qt::ShiftModifier) && extendSelection(rulesets, ruleset))
        return;

    if (modifiers.testFlag(Qt::ControlModifier)) {
        QSet<QUuid> ids = m_workspace.selectedRulesetIDs();
        if (ids.remove(ruleset->id())) {
            m_workspace.setSelectedRulesetIDs(ids);
            const CSSRulesetPtr selected = m_workspace.selectedRuleset();
            if (selected && selected->id() == ruleset->id()) {
                const auto first = std::find_if(
                    rulesets.begin(), rulesets.end(),
                    [&ids](const CSSRulesetPtr &other) { return ids.contains(other->id()); });
                m_workspace.setSelectedRuleset(first == rulesets.end() ? nullptr : *first);
            }
        } else {
            ids.insert(ruleset->id());
            m_workspace.setSelectedRulesetIDs(ids);
            m_workspace.setSelectedRuleset(ruleset);
        }
        setCursorID(ruleset->id());
        return;
    }

    if (m_lastTapTime && timestampMs - *m_lastTapTime < renameClickIntervalMs &&
        m_lastTapRulesetID == ruleset->id())
        m_operations.beginRenameRuleset(ruleset);
    selectAlone(ruleset);
    m_lastTapTime = timestampMs;
    m_lastTapRulesetID = ruleset->id();
    m_state.setSearchFocused(false);
}

// The selection from the primary to ruleset, both ends and the rulesets a
// filter hides between them included; false without a primary in the file.
bool CanvasController::extendSelection(const CSSRulesetList &rulesets, const CSSRulesetPtr &ruleset)
{
    const CSSRulesetPtr anchor = m_workspace.selectedRuleset();
    const qsizetype from = anchor ? indexOfID(rulesets, anchor->id()) : -1;
    const qsizetype to = indexOfID(rulesets, ruleset->id());
    if (from < 0 || to < 0)
        return false;
    QSet<QUuid> ids;
    ids.reserve(std::abs(to - from) + 1);
    for (qsizetype i = std::min(from, to); i <= std::max(from, to); ++i)
        ids.insert(rulesets[i]->id());
    m_workspace.setSelectedRulesetIDs(ids);
    setCursorID(ruleset->id());
    return true;
}

void CanvasController::selectAlone(const CSSRulesetPtr &ruleset)
{
    m_workspace.setSelectedRulesetIDs({ruleset->id()});
    m_workspace.setSelectedRuleset(ruleset);
    setCursorID(ruleset->id());
}

void CanvasController::setCursorID(const QUuid &id)
{
    if (m_cursorID == id)
        return;
    m_cursorID = id;
    Q_EMIT cursorChanged();
}

CSSRulesetPtr CanvasController::stepSelection(const CSSRulesetList &shown, ListStep step,
                                              bool extend)
{
    const CSSFilePtr file = this->file();
    if (!file || shown.isEmpty())
        return nullptr;
    const qsizetype last = shown.size() - 1;
    qsizetype row = indexOfID(shown, m_cursorID);
    if (row < 0 && m_workspace.selectedRuleset())
        row = indexOfID(shown, m_workspace.selectedRuleset()->id());
    switch (step) {
    case ListStep::Previous:
        row = row < 0 ? last : std::max<qsizetype>(row - 1, 0);
        break;
    case ListStep::Next:
        row = row < 0 ? 0 : std::min(row + 1, last);
        break;
    case ListStep::First:
        row = 0;
        break;
    case ListStep::Last:
        row = last;
        break;
    }
    const CSSRulesetPtr target = shown[row];
    if (!extend || !extendSelection(file->rulesets(), target))
        selectAlone(target);
    return target;
}

void CanvasController::deleteSelection()
{
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    if (const CSSRulesetPtr ruleset = selected ? rulesetWithID(selected->id()) : nullptr)
        m_operations.deleteRuleset(ruleset);
}

void CanvasController::renameSelection()
{
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    if (const CSSRulesetPtr ruleset = selected ? rulesetWithID(selected->id()) : nullptr)
        renameFromMenu(ruleset);
}

void CanvasController::tapScrollArea()
{
    m_state.setSearchFocused(false);
}

void CanvasController::tapBackground()
{
    if (const CSSRulesetPtr editing = rulesetWithID(m_state.editingRulesetID())) {
        m_operations.commitRenameRuleset(editing);
        Q_EMIT focusReleaseRequested();
    }
}

void CanvasController::renameFromMenu(const CSSRulesetPtr &ruleset)
{
    m_workspace.setSelectedRuleset(ruleset);
    m_operations.beginRenameRuleset(ruleset);
}

void CanvasController::cancelRename()
{
    m_state.setEditingRulesetID(QUuid());
}

void CanvasController::dragCard(const CSSRulesetPtr &ruleset, double translationY, double rowPitch)
{
    const CSSFilePtr file = this->file();
    if (!ruleset || !file || !m_state.searchText().isEmpty())
        return;
    if (m_state.draggingRulesetID().isNull())
        m_state.setDraggingRulesetID(ruleset->id());
    if (m_state.draggingRulesetID() != ruleset->id())
        return;
    const qsizetype index = indexOfID(file->rulesets(), ruleset->id());
    if (index < 0)
        return;
    m_state.setDropTargetIndex(CanvasDrag::dropTargetIndex(int(index), translationY,
                                                           int(file->rulesets().size()), rowPitch));
}

void CanvasController::endDrag()
{
    const CSSFilePtr file = this->file();
    const std::optional<int> target = m_state.dropTargetIndex();
    const QUuid dragged = m_state.draggingRulesetID();
    if (file && target && !dragged.isNull()) {
        const QSet<QUuid> ids = m_workspace.selectedRulesetIDs();
        if (ids.size() > 1 && ids.contains(dragged)) {
            m_operations.moveSelectedRulesets(
                CanvasDrag::blockMoveBeforeID(file->rulesets(), ids, *target));
        } else {
            m_operations.moveRuleset(dragged,
                                     CanvasDrag::singleMoveBeforeID(file->rulesets(), *target));
        }
    }
    m_state.setDraggingRulesetID(QUuid());
    m_state.setDropTargetIndex(std::nullopt);
}

void CanvasController::selectTab(CanvasTab tab)
{
    if (tab == CanvasTab::Code)
        captureCodeJump(m_workspace.canvasTab());
    m_workspace.setCanvasTab(tab);
}

void CanvasController::captureCodeJump(CanvasTab from)
{
    const bool fromVariables = from == CanvasTab::Variables;
    m_state.setCodeJumpRulesetID(fromVariables ? m_workspace.selectedVariableRulesetID() : QUuid());
    m_state.setCodeJumpPropID(fromVariables ? m_workspace.selectedVariablePropID() : QUuid());
}

void CanvasController::reverseCodeJump(CanvasTab to)
{
    const CodeCursorHit hit = m_codeCursorBridge.rulesetAndPropAtCursor();
    const CSSRulesetPtr ruleset = rulesetWithID(hit.rulesetID);
    if (!ruleset)
        return;
    switch (to) {
    case CanvasTab::Nodes:
        m_workspace.setSelectedRuleset(ruleset);
        break;
    case CanvasTab::Variables: {
        const CSSPropertyList &properties = ruleset->properties();
        const bool isVariable =
            !hit.propID.isNull() &&
            std::any_of(properties.begin(), properties.end(), [&hit](const CSSProperty &property) {
                return property.id == hit.propID && property.isCustomProperty();
            });
        if (!isVariable)
            return;
        m_workspace.setSelectedVariableRulesetID(hit.rulesetID);
        m_workspace.setSelectedVariablePropID(hit.propID);
        m_state.setVariableScrollToPropID(hit.propID);
        break;
    }
    case CanvasTab::Code:
        break;
    }
}

void CanvasController::startNewRuleset()
{
    m_state.setNewSelectorText(QString());
    m_state.setShowNewRulesetSheet(true);
}

void CanvasController::startNewVariable()
{
    m_workspace.setCanvasTab(CanvasTab::Variables);
    showNewVariableSheet();
}

void CanvasController::showNewVariableSheet()
{
    const CSSFilePtr file = this->file();
    m_state.setNewVariableName(QStringLiteral("--"));
    m_state.setNewVariableValue(QString());
    m_state.setNewVariableSelector(file && !file->rulesets().isEmpty()
                                       ? file->rulesets().first()->selector()
                                       : QStringLiteral(":root"));
    m_state.setShowNewVariableSheet(true);
}

void CanvasController::focusPropertyPanel()
{
    m_workspace.setShouldFocusPropertyPanel(true);
}

void CanvasController::selectionChanged()
{
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    const QUuid id = selected ? selected->id() : QUuid();
    if (id == m_selectedID)
        return;
    m_selectedID = id;
    setCursorID(id);
    if (id.isNull())
        m_workspace.setSelectedRulesetIDs({});
    else if (!m_workspace.selectedRulesetIDs().contains(id))
        m_workspace.setSelectedRulesetIDs({id});
    const QUuid editing = m_state.editingRulesetID();
    if (!editing.isNull() && editing != id) {
        if (const CSSRulesetPtr ruleset = rulesetWithID(editing)) {
            m_operations.commitRenameRuleset(ruleset);
            Q_EMIT focusReleaseRequested();
        }
    }
    syncKeyIntercept();
}

void CanvasController::tabChanged()
{
    const CanvasTab from = m_tab;
    m_tab = m_workspace.canvasTab();
    if (m_tab == from)
        return;
    if (m_tab == CanvasTab::Code)
        captureCodeJump(from);
    // While the code tab's text view still lives: its cursor picks the
    // selection, then its own undo steps leave the window's history.
    if (from == CanvasTab::Code) {
        reverseCodeJump(m_tab);
        m_codeCursorBridge.clearUndoHistory();
    }
    // The id goes to none first, so that the list scrolls even when it is
    // the one it scrolled to before.
    if (m_tab == CanvasTab::Nodes) {
        if (const CSSRulesetPtr selected = m_workspace.selectedRuleset()) {
            m_state.setScrollToID(QUuid());
            QTimer::singleShot(returnScrollDelayMs, this,
                               [this, id = selected->id()] { m_state.setScrollToID(id); });
        }
    }
    syncKeyIntercept();
}

void CanvasController::syncKeyIntercept()
{
    const bool active = m_workspace.canvasTab() == CanvasTab::Nodes &&
                        m_state.editingRulesetID().isNull() && !m_state.searchFocused() &&
                        m_workspace.selectedRuleset() != nullptr;
    if (active == m_keyInterceptActive)
        return;
    m_keyInterceptActive = active;
    Q_EMIT keyInterceptActiveChanged();
}

void CanvasController::handleShowNewRulesetSheet()
{
    if (!m_workspace.shouldShowNewRulesetSheet())
        return;
    m_workspace.setShouldShowNewRulesetSheet(false);
    startNewRuleset();
}

void CanvasController::handleFocusSearch()
{
    if (!m_workspace.shouldFocusSearch())
        return;
    m_workspace.setShouldFocusSearch(false);
    switch (m_workspace.canvasTab()) {
    case CanvasTab::Nodes:
        m_state.setSearchFocused(true);
        break;
    case CanvasTab::Variables:
        m_state.setVariableSearchFocused(true);
        break;
    case CanvasTab::Code:
        m_workspace.setCanvasTab(CanvasTab::Nodes);
        m_state.setSearchFocused(true);
        break;
    }
}

void CanvasController::handleAddVariable()
{
    if (!m_workspace.shouldAddVariable())
        return;
    m_workspace.setShouldAddVariable(false);
    startNewVariable();
}

void CanvasController::handleRulesetCommand(
    bool (Workspace::*flag)() const, void (Workspace::*clear)(bool),
    void (RulesetOperations::*operation)(const CSSRulesetPtr &))
{
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    if (!(m_workspace.*flag)() || !selected)
        return;
    (m_workspace.*clear)(false);
    (m_operations.*operation)(selected);
}

} // namespace Ombrel
