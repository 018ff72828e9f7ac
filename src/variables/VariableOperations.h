#pragma once

#include "model/CSSFile.h"

#include <QPointer>
#include <QString>
#include <QUuid>

#include <functional>

namespace Ombrel {

class UndoManager;
class Workspace;

// The operations of the variables tab on the custom properties of one file:
// edit a value, rename (which rewrites the file's var() references to the
// name), duplicate, delete and move. Each finds its property by the ids it is
// given, stops quietly when they no longer lead anywhere, marks the file
// changed and registers one step, with the file as target, on the window's
// undo manager when there is one.
//
// The steps hold what each needs: Edit and Rename hold the ruleset weakly and
// find their properties by id when undone, so that a code edit that replaced
// them leaves the step nothing to change; Delete holds the removed property
// and its ruleset strongly and always puts it back; Duplicate holds the
// ruleset weakly; Move keeps two ids and works out the way back when undone.
// Only Move can be redone, and it alternates without limit.
class VariableOperations
{
public:
    // Acts on the workspace's selected file; deleting the selected variable
    // clears the workspace's variable selection. undoManager may be null:
    // then moves do nothing and the other operations have no undo step.
    VariableOperations(Workspace &workspace, UndoManager *undoManager);
    // Acts on one file, with no selection to keep.
    VariableOperations(CSSFilePtr file, UndoManager *undoManager);

    // Writes the value unless it is the one the property has.
    void updateVariable(const QUuid &propID, const QUuid &rulesetID, const QString &newValue);
    // Gives the property the new name, which must start with "--", and
    // rewrites var(OLD), var(OLD, and "var(OLD " in every value of the file,
    // in that order, one replacement after the other.
    void renameVariable(const QUuid &propID, const QUuid &rulesetID, const QString &newName);
    // Inserts NAME-copy with the same value right behind the property.
    void duplicateVariable(const QUuid &propID, const QUuid &rulesetID);
    // Removes the property; var() references to it stay as written.
    void deleteVariable(const QUuid &propID, const QUuid &rulesetID);
    // Moves the property in front of the one of beforeID, wherever that is,
    // or with a null beforeID behind the last ruleset that has a custom
    // property. A beforeID that leads nowhere leaves the property out.
    void moveVariable(const QUuid &sourceID, const QUuid &beforeID);

private:
    CSSFilePtr file() const;

    std::function<CSSFilePtr()> m_file;
    Workspace *m_workspace = nullptr;
    QPointer<UndoManager> m_undoManager;
};

} // namespace Ombrel
