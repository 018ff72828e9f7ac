#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>

namespace Ombrel {

class UndoManager;
class Workspace;

// The two text cells of a property row.
enum class PropertyField { Name, Value };

// A row asked to begin editing with the keyboard in one of its cells.
struct PropertyFocusRequest
{
    QUuid id;
    PropertyField field = PropertyField::Name;

    friend bool operator==(const PropertyFocusRequest &, const PropertyFocusRequest &) = default;
};

// What the inspector lists for the present selection, read in one pass so
// that a refresh of the panel reads the selection once and not once per row.
struct SelectionReading
{
    // The selected rulesets of the file, in file order.
    CSSRulesetList selected;
    bool isMultiSelect = false;
    // The primary ruleset's properties, in its order; in a multi-selection
    // only those whose name every selected ruleset has.
    CSSPropertyList properties;
    // Names of the primary ruleset whose first value differs between the
    // selected rulesets that have them.
    QSet<QString> mixedNames;
};

// The logic of the inspector, free of widgets: which properties it lists for
// the selection, how a typed edit reaches the model keystroke by keystroke,
// how it spreads over a multi-selection, what one undo step is and what a
// cancel puts back.
//
// It edits one primary ruleset (the workspace's selected ruleset) of one
// file, and the other selected rulesets of that file with it. Every change
// marks the file; every undo step is registered with the file as target and
// ends by marking it. The steps hold the primary ruleset weakly and do
// nothing to it once it has gone; the rulesets an edit spread to are held
// strongly. Only "Move Property" and "Edit Color" can be redone, without
// limit; the other steps register nothing while they undo.
//
// Two outcomes are asymmetric on purpose: undoing an edit of a
// multi-selection gives the other rulesets their old name but leaves the
// value that the edit spread to them, and redoing a colour change writes
// the other rulesets' values from before the commit rather than the new
// colour.
class PropertyEditorController : public QObject
{
    Q_OBJECT

public:
    // undoManager may be null: edits, additions, deletions, moves and renames
    // then take effect without an undo step, while sorting and colour commits
    // do nothing. A raised shouldAddProperty flag is taken at once.
    PropertyEditorController(Workspace &workspace, UndoManager *undoManager,
                             QObject *parent = nullptr);

    Workspace &workspace() const { return m_workspace; }
    UndoManager *undoManager() const;

    CSSRulesetPtr ruleset() const { return m_ruleset; }
    CSSFilePtr file() const { return m_file; }
    // Points the inspector at another primary ruleset and its file, keeping
    // the panel's state. A selector edit in progress is saved to the ruleset
    // it was typed for, and a property edit in progress is committed to the
    // ruleset it was made in, before the new one takes over.
    void setTarget(const CSSRulesetPtr &ruleset, const CSSFilePtr &file);

    // --- Readings ---
    //
    // Read from the selection and the file, and kept until either changes:
    // a refresh of the panel and the rows it shows share one pass over the
    // selection, and an edit reads it again only once it has written.

    CSSRulesetList allSelectedRulesets() const;
    bool isMultiSelect() const;
    CSSPropertyList displayProperties() const;
    bool isMixedValue(const QString &name) const;
    // All of the above in one pass over the selection.
    SelectionReading reading() const;

    // --- State of the panel ---

    // The property whose row is being edited; null when none.
    QUuid editingPropertyID() const { return m_editingPropertyID; }
    struct NameValue
    {
        QString name;
        QString value;
        friend bool operator==(const NameValue &, const NameValue &) = default;
    };
    // The name and value of each property as they stood when its edit began.
    const QHash<QUuid, NameValue> &editingOriginals() const { return m_editingOriginals; }
    struct MixedOriginal
    {
        QUuid propID;
        QString value;
        friend bool operator==(const MixedOriginal &, const MixedOriginal &) = default;
    };
    // For an edit that began on a mixed value: per ruleset id, its property
    // of that name and the value it had.
    const QHash<QUuid, MixedOriginal> &mixedEditOriginals() const { return m_mixedEditOriginals; }

    QString newPropertyName() const { return m_newPropertyName; }
    void setNewPropertyName(const QString &name);
    QString newPropertyValue() const { return m_newPropertyValue; }
    void setNewPropertyValue(const QString &value);
    bool isAddingProperty() const { return m_isAddingProperty; }

    bool isEditingSelector() const { return m_isEditingSelector; }
    QString selectorText() const { return m_selectorText; }
    void setSelectorText(const QString &text);

    QUuid draggingPropertyID() const { return m_draggingPropertyID; }
    std::optional<int> dropPropertyTargetIndex() const { return m_dropPropertyTargetIndex; }

    std::optional<PropertyFocusRequest> requestedPropertyFocus() const
    {
        return m_requestedPropertyFocus;
    }
    // The field requested of the row of id, if any.
    std::optional<PropertyField> requestedFocus(const QUuid &id) const;
    // A row took its request: any write of the binding clears it.
    void clearRequestedPropertyFocus();

    // --- Operations ---

    // Each keystroke of a running edit: writes name and value into the
    // primary ruleset's property, and in a multi-selection into the first
    // property of the old name of each other selected ruleset. No undo step.
    void liveUpdateProperty(const QUuid &id, const QString &name, const QString &value);
    // Turns the live updates since the edit began into one "Edit Property".
    void commitProperty(const QUuid &id);
    // The end of a swatch interaction: one "Edit Color", which spreads the
    // colour over a multi-selection.
    void commitColorChange(const QUuid &id, const QString &origValue, const QString &newValue);
    // Removes the property from the primary ruleset only.
    void deleteProperty(const QUuid &id);
    // Moves a property of the primary ruleset before the one of beforeID, or
    // to the end when that is null or unknown.
    void moveProperty(const QUuid &sourceID, const QUuid &beforeID);
    // The add row's content, trimmed, as a new property of every selected
    // ruleset; a blank name or value only closes the row.
    void commitNewProperty();
    void cancelNewProperty();
    // A tap on the property list: ends the edit and the add row in progress.
    void commitCurrentEdit();
    void restoreMixedOriginalsIfNeeded();
    void sortPropertiesAlphabetically();
    // Applies the trimmed selector text to the primary ruleset unless it is
    // blank or unchanged, and closes the selector field.
    void commitRenameSelector();
    // The workspace's shouldAddProperty flag rose (or stood raised).
    void handleShouldAddProperty(bool value);

    // --- The callbacks of the row showing property ---

    void startEditing(const CSSProperty &property);
    // The row committed: the edit becomes its undo step and ends.
    void finishEditing(const QUuid &id);
    // The row cancelled, after putting its start values back.
    void cancelEditing(const QUuid &id);
    // Tab out of the value of the row at index of the listed properties,
    // after its commit: the next row's name is edited, or the focus leaves.
    void tabFromValue(int index);

    // --- The panel's own controls ---

    // The add button: the add row opens empty.
    void openAddRow();
    // The selector field opens on the primary ruleset's selector and takes
    // the focus shortly after.
    void startSelectorEdit();
    // Escape in the selector field: closes it, dropping the text.
    void cancelSelectorEdit();
    // Tab in the selector field: commits it, then edits the first property's
    // name.
    void tabFromSelector();
    // The drag of the row of id, at index of the listed properties, moved by
    // translationY since it began.
    void dragProperty(const QUuid &id, int index, double translationY);
    // The drag of the row of id ended: the property moves to the drop index.
    void endPropertyDrag(const QUuid &id);

    // A drag moves one place per row pitch.
    static constexpr int rowPitch = 41;
    // Delay before a field that appears with the next layout takes the focus.
    static constexpr int focusDelayMs = 50;

Q_SIGNALS:
    // The target, the selection or the file's content changed (any ruleset's
    // declarations count, since the variables offered come from all of
    // them); once per turn of the event loop.
    void readingChanged();
    void targetChanged();
    void editingPropertyIDChanged();
    void newPropertyNameChanged();
    void newPropertyValueChanged();
    void isAddingPropertyChanged();
    void isEditingSelectorChanged();
    void selectorTextChanged();
    void dragChanged();
    void requestedPropertyFocusChanged();
    // The selector field should take the keyboard focus.
    void selectorFocusRequested();
    // No widget of the window should keep the keyboard focus.
    void focusReleaseRequested();

private:
    template<typename T>
    void assign(T &field, const T &value, void (PropertyEditorController::*notify)());
    CSSRulesetList otherSelectedRulesets() const;
    void setEditingPropertyID(const QUuid &id);
    void setIsAddingProperty(bool value);
    void setIsEditingSelector(bool value);
    void setDrag(const QUuid &id, std::optional<int> index);
    void setRequestedPropertyFocus(std::optional<PropertyFocusRequest> request);
    void renameRuleset(const CSSRulesetPtr &ruleset, const QString &selector);
    void invalidateReading();
    void reportReading();
    // The kept reading, read afresh first if the file or the selection
    // changed since; the intersection only when withProperties asks for it.
    const SelectionReading &keptReading(bool withProperties) const;

    Workspace &m_workspace;
    QPointer<UndoManager> m_undoManager;
    CSSRulesetPtr m_ruleset;
    CSSFilePtr m_file;

    QUuid m_editingPropertyID;
    QHash<QUuid, NameValue> m_editingOriginals;
    QHash<QUuid, MixedOriginal> m_mixedEditOriginals;
    QString m_newPropertyName;
    QString m_newPropertyValue;
    bool m_isAddingProperty = false;
    bool m_isEditingSelector = false;
    QString m_selectorText;
    QUuid m_draggingPropertyID;
    std::optional<int> m_dropPropertyTargetIndex;
    std::optional<PropertyFocusRequest> m_requestedPropertyFocus;

    QMetaObject::Connection m_fileConnection;
    bool m_readingPosted = false;
    // The file's content revision at the last readingChanged().
    quint64 m_reportedRevision = 0;

    struct KeptReading
    {
        // The file's content revision it was read at.
        quint64 revision = 0;
        bool hasProperties = false;
        SelectionReading reading;
    };
    // Dropped when the selection or the target changes.
    mutable std::optional<KeptReading> m_kept;
};

} // namespace Ombrel
