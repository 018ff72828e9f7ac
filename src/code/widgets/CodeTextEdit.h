#pragma once

#include <QPlainTextEdit>
#include <QPointer>

namespace Ombrel {

class UndoManager;

// The text view of the code tab: plain text in the monospaced font at 12,
// wrapped at the view's width, 12 from every edge; Tab inserts a tab.
//
// Undo and Redo, by key or from the context menu, go to the window's undo
// history rather than straight to the document, so that text steps and
// model steps are undone in the one order they were made in. Keys that a
// menu of the window is bound to reach the menu, also those that the text
// view would otherwise keep for itself.
class CodeTextEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    // undoManager may be null: undo keys then do nothing.
    explicit CodeTextEdit(UndoManager *undoManager, QWidget *parent = nullptr);

    // The text as the document holds it, each paragraph separator read as a
    // line feed, so that a cursor position is its offset. Unlike
    // toPlainText(), no-break spaces stay as they are.
    QString rawText() const;

Q_SIGNALS:
    // The user ended editing: the focus went elsewhere, other than to a
    // popup of the view or away with the whole window.
    void editingEnded();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    bool isTakenByWindowMenu(const QKeyEvent *event) const;

    QPointer<UndoManager> m_undoManager;
};

} // namespace Ombrel
