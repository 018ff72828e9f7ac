#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QUuid>

namespace Ombrel {

class CanvasState;
class UndoManager;
class Workspace;

// The operations that change the list of rulesets of the selected file: add,
// add a variable, duplicate, delete, rename and reorder. Each edits the file,
// marks it changed and registers one step, with the file as target, on the
// window's undo manager when there is one.
//
// The undo steps hold their objects the way each operation needs: the ruleset
// a step brings back is held strongly, one that a step only removes or
// renames is held weakly and may have gone (a code edit replaces rulesets),
// and a move looks its rulesets up by id. Only the moves and New Ruleset can
// be redone, the moves without limit and New Ruleset once; the others have
// no redo at all.
class RulesetOperations
{
public:
    // undoManager may be null: then moves do nothing and the other operations
    // run without an undo step.
    RulesetOperations(Workspace &workspace, CanvasState &state, UndoManager *undoManager);

    // Appends a ruleset with the selector trimmed of spaces and tabs, selects
    // it and shows it on the rulesets tab; a blank selector only closes the
    // sheet. Shortly after, the inspector is asked to open its add row.
    void addRuleset(const QString &selector);
    // Adds "--name: value" to the ruleset the variable sheet names (the
    // first of equal selectors, ignoring case), making the ruleset when the
    // file has none of that selector. A name that is too short or a blank
    // value only closes the sheet.
    void addVariable(const QString &name, const QString &value);
    // The name as a variable gets it: trimmed, with "--" in front.
    static QString variableName(const QString &name);
    // Whether addVariable takes these: the variable name has three
    // characters or more and the trimmed value is not empty.
    static bool acceptsVariable(const QString &name, const QString &value);
    // Inserts a copy with fresh ids right behind the ruleset and selects it.
    void duplicateRuleset(const CSSRulesetPtr &ruleset);
    // Removes the ruleset; when it was selected, the file's first remaining
    // ruleset is selected instead.
    void deleteRuleset(const CSSRulesetPtr &ruleset);
    // Opens the card's inline editor on the ruleset's selector.
    void beginRenameRuleset(const CSSRulesetPtr &ruleset);
    // Closes the inline editor and applies its trimmed text unless blank or
    // unchanged.
    void commitRenameRuleset(const CSSRulesetPtr &ruleset);
    // Moves one ruleset before the one of beforeID, or to the end when that
    // is null or unknown. Without an undo manager nothing moves.
    void moveRuleset(const QUuid &sourceID, const QUuid &beforeID);
    // Moves the multi-selection, in file order, as one block before the
    // ruleset of beforeID (looked up once the block is out), or to the end.
    void moveSelectedRulesets(const QUuid &beforeID);

private:
    CSSFilePtr file() const;
    void registerNewRuleset(const CSSFilePtr &file, const CSSRulesetPtr &ruleset);

    Workspace &m_workspace;
    CanvasState &m_state;
    QPointer<UndoManager> m_undoManager;
};

} // namespace Ombrel
