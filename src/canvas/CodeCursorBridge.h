#pragma once

#include <QObject>
#include <QPointer>
#include <QUuid>

namespace Ombrel {

// The ruleset and declaration under the code tab's cursor; null ids when
// none.
struct CodeCursorHit
{
    QUuid rulesetID;
    QUuid propID;

    friend bool operator==(const CodeCursorHit &, const CodeCursorHit &) = default;
};

// What the code tab's text view answers to the canvas. The code subsystem,
// which lies above the canvas, implements it and registers with the
// canvas's CodeCursorBridge.
class CodeCursorSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual CodeCursorHit rulesetAndPropAtCursor() const = 0;
    // Drops the text view's own steps from the window's undo history.
    virtual void clearUndoHistory() = 0;
};

// The canvas's link to the code tab's current text view, made once with the
// canvas. The link does not own the view's coordinator: once that has gone
// the bridge answers none and does nothing.
class CodeCursorBridge
{
public:
    void setCoordinator(CodeCursorSource *coordinator) { m_coordinator = coordinator; }
    CodeCursorSource *coordinator() const { return m_coordinator; }

    CodeCursorHit rulesetAndPropAtCursor() const
    {
        return m_coordinator ? m_coordinator->rulesetAndPropAtCursor() : CodeCursorHit();
    }

    void clearUndoHistory()
    {
        if (m_coordinator)
            m_coordinator->clearUndoHistory();
    }

private:
    QPointer<CodeCursorSource> m_coordinator;
};

} // namespace Ombrel
