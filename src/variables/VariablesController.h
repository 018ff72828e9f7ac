#pragma once

#include "VariableEntry.h"
#include "VariableListing.h"
#include "VariableOperations.h"
#include "model/CSSFile.h"

#include <QHash>
#include <QMetaObject>
#include <QObject>
#include <QUuid>

#include <optional>

namespace Ombrel {

class CanvasController;
class CanvasState;
class UndoManager;
class Workspace;

// The logic of the variables tab, free of widgets: the listing of the
// selected file's custom properties, the view state of its rows (kept by
// property id, so that a row that scrolls out and back keeps it), the rename
// in progress, the drag, and the workspace's variable commands.
//
// The filter, the folded groups and the scroll request belong to the canvas
// pane and carry over from one showing of the tab to the next; the rest
// lives as long as this controller, which the tab makes each time it shows.
//
// The listing is made again once per change: at once when the filter, the
// folded groups or the file change, and on the next turn of the event loop
// after edits of the file's rulesets, however many rulesets an edit touched.
// The variables of each ruleset are kept between changes, and only those of
// the rulesets an edit touched are read again.
class VariablesController : public QObject
{
    Q_OBJECT

public:
    // The distance between two entry rows: the rows are drawn this high, and
    // a drag moves its drop position by one row per pitch.
    static constexpr double rowPitch = 43;
    // The delay before a field that appears with a redraw takes focus, and
    // before the list scrolls to a requested row.
    static constexpr int settleDelayMs = 50;

    // undoManager may be null; see VariableOperations.
    VariablesController(CanvasController &canvas, UndoManager *undoManager,
                        QObject *parent = nullptr);

    CanvasController &canvas() const { return m_canvas; }
    Workspace &workspace() const;
    CanvasState &canvasState() const;
    VariableOperations &operations() { return m_operations; }
    CSSFilePtr file() const;

    const VariableListing::Listing &listing() const { return m_listing; }
    // The filter as it applies: trimmed of spaces and tabs.
    QString query() const;
    // Which face the tab shows: the empty state when the file declares no
    // custom property at all, with a button for a ruleset when it has none.
    bool showsEmptyState() const { return m_listing.entryCount == 0; }
    bool fileHasRulesets() const;
    // The message under the groups while the filter keeps no visible entry;
    // empty otherwise.
    QString noMatchText() const;

    // A row's view state. The texts start as the entry's and follow it while
    // that field is not being edited.
    QString localValue(const VariableEntry &entry) const;
    QString localName(const VariableEntry &entry) const;
    bool isEditingValue(const QUuid &propID) const;
    bool isRenamingName(const QUuid &propID) const { return m_renamingPropID == propID; }
    bool isSelected(const QUuid &propID) const;
    // Whether the value being shown reads as a colour: raw text, no var()
    // substituted.
    bool isColorValue(const VariableEntry &entry) const;
    QUuid renamingPropID() const { return m_renamingPropID; }
    // The rows whose value is being edited.
    QList<QUuid> editingValuePropIDs() const;

    // What the rows ask of the panel.
    void select(const VariableEntry &entry);
    void change(const VariableEntry &entry, const QString &value);
    void rename(const VariableEntry &entry, const QString &name);
    void beginRename(const VariableEntry &entry);
    void cancelRename();
    void duplicate(const VariableEntry &entry);
    void remove(const VariableEntry &entry);

    // A click on the value: the row is selected and its value edited, the
    // field taking focus shortly after.
    void startValueEdit(const VariableEntry &entry);
    // A click on the name, or the context menu's "Rename".
    void startRename(const VariableEntry &entry);
    // Typing in the row's fields.
    void editLocalValue(const VariableEntry &entry, const QString &text);
    void editLocalName(const VariableEntry &entry, const QString &text);
    // Return or focus loss in the value field: a value not blank once
    // trimmed is written, and the edit ends either way.
    void commitValue(const VariableEntry &entry);
    // Escape in the value field: the edit ends and the model is untouched.
    void cancelValue(const VariableEntry &entry);
    // Return or Tab in the name field: "--" is put in front when missing; a
    // name of two characters or fewer ends the rename, any other renames and
    // moves on into the value.
    void commitRenameAndEditValue(const VariableEntry &entry);
    // A colour committed from the row's swatch: one edit of the value.
    void commitColor(const VariableEntry &entry, const QString &hex);

    // A click on a group's header folds or unfolds it.
    void toggleGroup(const QUuid &rulesetID);

    // A drag of the entry at flatIdx by translationY points down. Ignored
    // while the filter holds text and while another row is dragged.
    void dragRow(const VariableEntry &entry, int flatIdx, double translationY);
    // The drag is over: the variable moves before the entry at the drop
    // position, or behind the last one.
    void endDrag();
    QUuid draggingVarID() const { return m_draggingVarID; }
    std::optional<int> dropVarTargetIndex() const { return m_dropVarTargetIndex; }

    // The empty state's buttons.
    void addVariable();
    void addRuleset();

    // The tab came on screen, or left it: a scroll request is served by the
    // tab on screen, and when it comes on screen.
    void setShown(bool shown);

Q_SIGNALS:
    // The listing was read again.
    void listingChanged();
    // Something a row shows changed other than its entry: local texts,
    // editing, renaming or selection.
    void rowStateChanged(const QUuid &propID);
    void dragChanged();
    // The value field of the row should take focus.
    void valueFocusRequested(const QUuid &propID);
    // No widget of the window should keep focus.
    void focusReleaseRequested();
    // The row of the variable should stand in the middle of the list.
    void scrollRequested(const QUuid &propID);

private:
    struct RowState
    {
        QString localValue;
        QString localName;
        bool isEditingValue = false;
        // The entry's texts when last seen, to follow their changes.
        QString seenValue;
        QString seenName;
    };

    // The file's entry of the property, wherever it stands, as last read.
    std::optional<VariableEntry> entryWithID(const QUuid &propID) const;
    RowState &stateOf(const VariableEntry &entry);
    void setRenamingPropID(const QUuid &id);
    void followFile();
    void observeRulesets();
    void rulesetChanged(const CSSRuleset *ruleset);
    void readVariables();
    void scheduleRefresh();
    void refresh();
    void relist();
    void followEntries();
    void selectionChanged();
    void serveScrollRequest();
    void handleRenameCommand();
    void handleDuplicateCommand();
    void handleDeleteCommand();
    void handleVariableCommand(bool (Workspace::*flag)() const, void (Workspace::*clear)(bool),
                               void (VariableOperations::*operation)(const QUuid &, const QUuid &));

    CanvasController &m_canvas;
    VariableOperations m_operations;
    CSSFilePtr m_file;
    QMetaObject::Connection m_fileConnection;
    // The rulesets whose edits are followed, held weakly since an address
    // can be taken again by a later ruleset, with their variables as last
    // read; an edit reads again only the rulesets it touched.
    struct Observed
    {
        std::weak_ptr<CSSRuleset> ruleset;
        QMetaObject::Connection connection;
        VariableListing::RulesetVariables variables;
        bool stale = true;
    };
    QHash<const CSSRuleset *, Observed> m_observed;
    QList<VariableListing::RulesetVariables> m_variables;
    bool m_refreshPending = false;
    VariableListing::Listing m_listing;
    QHash<QUuid, RowState> m_rows;
    QUuid m_renamingPropID;
    QUuid m_selectedPropID;
    QUuid m_draggingVarID;
    std::optional<int> m_dropVarTargetIndex;
    bool m_shown = false;
};

} // namespace Ombrel
