#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QAction;

namespace Ombrel {

// The undo history of one window, shared by every pane that edits its files.
//
// Steps are closures registered against a target (a CSSFile, a text view),
// so that the steps of one target can be dropped together. All registrations
// made in one turn of the event loop form one group, which Undo and Redo
// treat as a single step. A registration made while a group is being undone
// becomes part of its redo, and one made while redoing becomes part of the
// undo again; a group whose steps register nothing in turn has no redo.
// Unlike QUndoStack, nothing here requires a step to be reversible.
class UndoManager : public QObject
{
    Q_OBJECT

public:
    explicit UndoManager(QObject *parent = nullptr);

    // Adds a step to the group collected now: the open group of this turn of
    // the event loop, or the redo (undo) group while undoing (redoing). A
    // registration outside undo and redo discards everything to redo.
    void registerUndo(const void *target, std::function<void()> handler);

    // Names the group collected now; without one the name goes nowhere. A
    // group that is undone or redone keeps its name unless a step renames it.
    void setActionName(const QString &name);

    bool canUndo() const { return !m_undoStack.isEmpty(); }
    bool canRedo() const { return !m_redoStack.isEmpty(); }

    // Name of the group that the next undo (redo) runs; empty when none.
    QString undoActionName() const;
    QString redoActionName() const;

    // "Undo {name}" / "Redo {name}", or the bare word when the name is empty.
    QString undoMenuItemTitle() const;
    QString redoMenuItemTitle() const;

    bool isUndoing() const { return m_mode == Mode::Undoing; }
    bool isRedoing() const { return m_mode == Mode::Redoing; }

    // Close the group of this turn, then run the steps of the newest group
    // in the reverse order of their registration. Calls from inside a
    // running step are ignored.
    void undo();
    void redo();

    void removeAllActions();
    // Drops the target's steps from both stacks; a group left empty goes.
    void removeAllActions(const void *target);

    // The Edit menu's actions: their text is the menu item title and they
    // are enabled only while there is something to undo (redo). Made on
    // first request, since a QAction needs the GUI application.
    QAction *undoAction();
    QAction *redoAction();

Q_SIGNALS:
    // Emitted when what can be undone or redone, or its name, changed.
    void changed();

private:
    struct Step
    {
        const void *target;
        std::function<void()> handler;
    };
    struct Group
    {
        QString actionName;
        std::vector<Step> steps;
    };
    enum class Mode { Idle, Undoing, Redoing };

    void closeGroup();
    void run(QList<Group> &from, QList<Group> &to, Mode mode);
    void updateActions();

    QList<Group> m_undoStack;
    QList<Group> m_redoStack;
    // The newest group of m_undoStack still collects this turn's steps.
    bool m_groupOpen = false;
    // Tells the queued close of one group from that of a later one.
    quint64 m_groupSerial = 0;
    Mode m_mode = Mode::Idle;
    // The inverse collected while a group is undone or redone.
    Group m_collecting;
    QAction *m_undoAction = nullptr;
    QAction *m_redoAction = nullptr;
};

} // namespace Ombrel
