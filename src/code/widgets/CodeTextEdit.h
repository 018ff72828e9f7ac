#pragma once

#include <QPlainTextEdit>
#include <QPointer>
#include <QTextBlock>

#include <vector>

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
//
// A line that a paste (or a drop) makes longer than
// CodeHighlighter::maxPaintedBlock units is laid out in pieces of about
// pieceLength units, cut in what the paste brought: Qt lays out a paragraph
// as a whole at every change, which on a minified stylesheet of megabytes
// takes most of a second per key. Each piece is a block of the document; the
// separators between the pieces of a line are soft, marked in the block
// format of the piece they start, and are no part of the text: rawText(),
// the offsets, copying and the keys all skip them, so that a soft separator
// shows as a wrap of the line and nothing more. Undo and redo bring them
// back with their blocks. Return inside a piece makes a real line break;
// text given to insertPlainText() breaks lines as QTextCursor does, each new
// block taking the format of the block it is inserted in.
class CodeTextEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    static constexpr qsizetype pieceLength = 8'192;

    // undoManager may be null: undo keys then do nothing.
    explicit CodeTextEdit(UndoManager *undoManager, QWidget *parent = nullptr);

    // The text, each paragraph separator of the document read as a line feed
    // and soft ones left out. With no line in pieces, it is the document's
    // raw text, so that a cursor position is its offset. Unlike
    // toPlainText(), no-break spaces stay as they are.
    QString rawText() const;
    // The text between two positions of the document, as rawText() reads it.
    QString textBetween(int from, int to) const;
    // The length of rawText().
    qsizetype textLength() const;

    // The offset in the text of a position of the document, and the first
    // position of the document at an offset of the text.
    qsizetype textOffset(int position) const;
    int documentPosition(qsizetype offset) const;

    // Whether the block is one of the pieces of a line laid out in pieces.
    bool isPiece(const QTextBlock &block) const;

    // The first block the view shows, and at most how many blocks it shows:
    // a block takes one line at least.
    QTextBlock firstShownBlock() const { return firstVisibleBlock(); }
    int shownBlockLimit() const;

Q_SIGNALS:
    // The user ended editing: the focus went elsewhere, other than to a
    // popup of the view or away with the whole window.
    void editingEnded();
    // The view is about to paint what it shows.
    void aboutToPaint();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    bool isTakenByWindowMenu(const QKeyEvent *event) const;
    // Keys whose meaning at a soft separator differs from Qt's: deleting or
    // moving by a character or a word never stops at a soft separator alone,
    // and Return makes a real line break. Returns false for other keys.
    bool handlePieceKey(QKeyEvent *event);
    // Whether the document's separator at position is soft.
    bool isSoftBreak(int position) const;
    bool hasSoftBreakIn(int from, int to) const;
    void followChange(int position, int charsRemoved, int charsAdded);

    QPointer<UndoManager> m_undoManager;
    // The positions of the soft separators of the document, in order.
    std::vector<int> m_softBreaks;
    int m_documentLength = 0;
    // Once the document held a line in pieces, each change is searched for
    // soft separators: undo and redo bring them back.
    bool m_hasHeldPieces = false;
    // While the document reports a paste: where it went, and its text.
    struct Paste
    {
        int from = -1;
        int to = -1;
        QString text;
    };
    Paste m_paste;
};

} // namespace Ombrel
