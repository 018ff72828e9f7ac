#pragma once

#include "canvas/CanvasState.h"
#include "canvas/CodeCursorBridge.h"
#include "canvas/RulesetOperations.h"
#include "model/CSSFile.h"
#include "workspace/CanvasTab.h"

#include <QObject>
#include <QUuid>

#include <optional>

namespace Ombrel {

class UndoManager;
class Workspace;

// The logic of one window's canvas pane, free of widgets: it turns clicks,
// drags, the sheets' buttons and the workspace's command flags into selection
// changes and ruleset operations, and keeps the pane's view state.
//
// The pane shows the workspace's selected file and follows it when another
// file is selected; its view state (filter, tab, sheets) carries over.
class CanvasController : public QObject
{
    Q_OBJECT

public:
    // undoManager may be null; see RulesetOperations.
    CanvasController(Workspace &workspace, UndoManager *undoManager, QObject *parent = nullptr);

    Workspace &workspace() const { return m_workspace; }
    CanvasState &state() { return m_state; }
    RulesetOperations &operations() { return m_operations; }
    // The window's undo history, or null.
    UndoManager *undoManager() const { return m_undoManager; }
    // Through which the canvas reads the code tab's cursor.
    CodeCursorBridge &codeCursorBridge() { return m_codeCursorBridge; }

    CSSFilePtr file() const;
    // The rulesets the card list shows: all of the file's, or those that the
    // filter text finds, in file order.
    CSSRulesetList filteredRulesets() const;
    // Whether the filter of the tab in front can be used, in the toolbar and
    // the menu alike: the rulesets' while the file has rulesets, the
    // variables' while it has a custom property, none on the code tab.
    static bool isFilterAvailable(const Workspace &workspace);
    // Drawn as selected: in the multi-selection, or, only while that is
    // empty, the primary selection.
    bool isSelected(const CSSRuleset &ruleset) const;
    // The ids of the rulesets drawn as selected, by the same rule.
    QSet<QUuid> selectedCardIDs() const;
    // Drawn faded: the dragged card, or every selected card while a selected
    // card is dragged.
    bool isDragged(const CSSRuleset &ruleset) const;

    // A click on a card at timestampMs (milliseconds on the clock of the
    // input events). Shift extends from the primary selection, Ctrl (Cmd on
    // macOS) toggles, and a plain click selects; a second plain click on the
    // same card within 0.35 s starts its rename.
    void clickCard(const CSSRulesetPtr &ruleset, Qt::KeyboardModifiers modifiers,
                   qint64 timestampMs);
    // Any press on the card list, cards included, leaves the filter field.
    void tapScrollArea();
    // A click on the list outside the cards commits a running rename.
    void tapBackground();
    // The context menu's "Rename".
    void renameFromMenu(const CSSRulesetPtr &ruleset);
    // Escape in the inline editor: the rename ends without a change.
    void cancelRename();

    // A drag of the card showing ruleset, translationY points down from where
    // it started, over a list whose rows follow each other every rowPitch
    // points. Ignored while a filter is set and while another card is being
    // dragged.
    void dragCard(const CSSRulesetPtr &ruleset, double translationY, double rowPitch);
    // The drag is over: the card, or the block of selected cards it belongs
    // to, moves to the drop index.
    void endDrag();

    // The toolbar's tab buttons: the code tab's first notes where its cursor
    // should go.
    void selectTab(CanvasTab tab);
    // Entering the code tab from the variables tab aims its cursor at the
    // variable selected there; from another tab the selected ruleset alone
    // decides, so the aim is cleared.
    void captureCodeJump(CanvasTab from);
    // Leaving the code tab selects what its cursor is in: on the rulesets
    // tab the ruleset, on the variables tab the variable (a declaration whose
    // name begins with "--"). A cursor in nothing changes nothing.
    void reverseCodeJump(CanvasTab to);

    void startNewRuleset();
    void startNewVariable();

    // The keys of the card list. Up and Down step from the card the keyboard
    // stands on (the last one clicked or stepped to), Home and End go to the
    // first and last card; with nothing selected, Down and Home start at the
    // first card, Up and End at the last. A plain key selects that card
    // alone, as a click does, without counting towards a double click; with
    // Shift the selection runs from the primary selection to it, as a
    // Shift-click does, and the primary stays.
    enum class ListStep { Previous, Next, First, Last };
    // Steps through shown, the rulesets of the list in its order; returns
    // the card stepped to, or null when the list is empty.
    CSSRulesetPtr stepSelection(const CSSRulesetList &shown, ListStep step, bool extend);
    // The card the keyboard stands on: the primary selection, unless a
    // Shift-click or Shift-key took it further. Null when none.
    QUuid cursorID() const { return m_cursorID; }
    // Delete and Backspace: the context menu's "Delete" on the primary
    // selection, with its undo step.
    void deleteSelection();
    // F2: the context menu's "Rename" on the primary selection.
    void renameSelection();

    // Whether Return and Tab are taken from the window for the inspector: on
    // the rulesets tab, with a selected ruleset, neither renaming nor in the
    // filter field.
    bool keyInterceptActive() const { return m_keyInterceptActive; }
    // What an intercepted Return or Tab does.
    void focusPropertyPanel();

Q_SIGNALS:
    void keyInterceptActiveChanged();
    // The card the keyboard stands on changed.
    void cursorChanged();
    // The view should leave no widget of the window focused.
    void focusReleaseRequested();

private:
    void selectionChanged();
    void tabChanged();
    void syncKeyIntercept();
    void setCursorID(const QUuid &id);
    bool extendSelection(const CSSRulesetList &rulesets, const CSSRulesetPtr &ruleset);
    void selectAlone(const CSSRulesetPtr &ruleset);
    void showNewVariableSheet();
    void handleShowNewRulesetSheet();
    void handleFocusSearch();
    void handleAddVariable();
    void handleRulesetCommand(bool (Workspace::*flag)() const, void (Workspace::*clear)(bool),
                              void (RulesetOperations::*operation)(const CSSRulesetPtr &));
    CSSRulesetPtr rulesetWithID(const QUuid &id) const;

    Workspace &m_workspace;
    UndoManager *m_undoManager;
    CanvasState m_state;
    RulesetOperations m_operations;
    CodeCursorBridge m_codeCursorBridge;
    QUuid m_selectedID;
    CanvasTab m_tab;
    std::optional<qint64> m_lastTapTime;
    QUuid m_lastTapRulesetID;
    QUuid m_cursorID;
    bool m_keyInterceptActive = false;
};

} // namespace Ombrel
