#pragma once

#include "canvas/CodeCursorBridge.h"
#include "code/IncrementalParse.h"
#include "code/SyntaxScanner.h"
#include "model/CSSFile.h"

#include <QPointer>
#include <QString>
#include <QUuid>

namespace Ombrel {

class CodeHighlighter;
class CodeTextEdit;
class UndoManager;

// Keeps the code tab's text and the model in step, one per text view.
//
// Every change of the text that the program did not make itself is parsed
// at once and merged into the file by selector, and the file is marked
// changed; the user's own spacing and comments stay on screen meanwhile.
// From the first such change until the user ends editing, the text is not
// replaced from the model. The file is the one the coordinator was made
// with, also after another file is selected while the tab shows: typing
// then goes on writing into that first file.
//
// The document keeps its own undo history; each of its steps is mirrored
// as one step of the window's history that undoes the document's step and
// registers its redo.
class CodeCoordinator : public CodeCursorSource
{
    Q_OBJECT

public:
    CodeCoordinator(CSSFilePtr file, CodeTextEdit *textView, UndoManager *undoManager,
                    QObject *parent = nullptr);

    CSSFilePtr file() const { return m_file; }
    CodeTextEdit *textView() const { return m_textView; }

    // True while the program itself writes the text or its colours.
    bool isApplyingContent() const { return m_isApplyingContent; }
    // True from the first change by the user until editing ends.
    bool userIsEditing() const { return m_userIsEditing; }

    // The last targets for which a cursor positioning was scheduled, so
    // that each is positioned once per text view.
    QUuid lastPositionedRulesetID() const { return m_lastPositionedRulesetID; }
    void setLastPositionedRulesetID(const QUuid &id) { m_lastPositionedRulesetID = id; }
    QUuid lastPositionedPropID() const { return m_lastPositionedPropID; }
    void setLastPositionedPropID(const QUuid &id) { m_lastPositionedPropID = id; }

    CodeHighlighter *highlighter() const { return m_highlighter; }

    // The text as the view holds it.
    const QString &text() const { return m_text; }

    // The program replaces the whole text: it is coloured afresh, and the
    // text view's undo steps are dropped with the document's history.
    void applyContent(const QString &text);

    // The dark appearance: the palette's window darker than its text.
    bool isDark() const;
    // The view is about to be seen for the first time. Text set while it was
    // hidden is coloured now, in the appearance of the window it is seen in,
    // which a view outside its window cannot know.
    void viewShown();

    CodeCursorHit rulesetAndPropAtCursor() const override;
    void clearUndoHistory() override;

private:
    // What the document reports of a change, in positions of the document;
    // the removed count is read from the lengths instead.
    void textDidChange(int documentPosition, int charsRemoved, int charsAdded);
    void textDidEndEditing();
    void registerTextUndo();

    const CSSFilePtr m_file;
    QPointer<CodeTextEdit> m_textView;
    QPointer<UndoManager> m_undoManager;
    bool m_isApplyingContent = false;
    bool m_userIsEditing = false;
    // Text was set while the view was hidden and is not coloured yet.
    bool m_awaitingPaint = false;
    QUuid m_lastPositionedRulesetID;
    QUuid m_lastPositionedPropID;

    QString m_text;
    IncrementalParse m_parse;
    SyntaxScanner m_scanner;
    CodeHighlighter *m_highlighter;
};

} // namespace Ombrel
