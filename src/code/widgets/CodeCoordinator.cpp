#include "CodeCoordinator.h"

#include "code/CursorMapping.h"
#include "code/RulesetMerge.h"
#include "code/widgets/CodeHighlighter.h"
#include "code/widgets/CodeTextEdit.h"
#include "workspace/UndoManager.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace Ombrel {

namespace {

// Undoes (or redoes) one step of the document and registers the way back,
// as long as the text view lives.
void stepDocument(const QPointer<CodeTextEdit> &view, const QPointer<UndoManager> &undoManager,
                  bool undo)
{
    if (!view)
        return;
    if (undo)
        view->document()->undo();
    else
        view->document()->redo();
    if (undoManager)
        undoManager->registerUndo(
            view.data(), [view, undoManager, undo] { stepDocument(view, undoManager, !undo); });
}

} // namespace

CodeCoordinator::CodeCoordinator(CSSFilePtr file, CodeTextEdit *textView, UndoManager *undoManager,
                                 QObject *parent)
    : CodeCursorSource(parent), m_file(std::move(file)), m_textView(textView),
      m_undoManager(undoManager)
{
    QTextDocument *document = textView->document();
    connect(document, &QTextDocument::contentsChange, this, &CodeCoordinator::textDidChange);
    connect(document, &QTextDocument::undoCommandAdded, this, &CodeCoordinator::registerTextUndo);
    connect(textView, &CodeTextEdit::editingEnded, this, &CodeCoordinator::textDidEndEditing);
    m_highlighter = new CodeHighlighter(*textView, m_scanner);
}

bool CodeCoordinator::isDark() const
{
    if (!m_textView)
        return false;
    const QPalette &palette = m_textView->palette();
    return palette.color(QPalette::Window).lightnessF() <
           palette.color(QPalette::WindowText).lightnessF();
}

void CodeCoordinator::viewShown()
{
    if (!m_awaitingPaint || !m_textView)
        return;
    m_awaitingPaint = false;
    m_isApplyingContent = true;
    m_highlighter->setSuspended(false);
    m_highlighter->setDark(isDark());
    m_highlighter->rehighlight();
    m_isApplyingContent = false;
}

void CodeCoordinator::applyContent(const QString &text)
{
    if (!m_textView)
        return;
    m_isApplyingContent = true;
    m_highlighter->setSuspended(true);
    m_textView->setPlainText(text);
    // The document makes one line break of CR LF and of a lone CR; the text
    // is what it holds.
    m_text = m_textView->rawText();
    m_parse.reset(m_text);
    m_scanner.reset(m_text);
    // A hidden view is coloured once it is first shown.
    m_awaitingPaint = !m_textView->isVisible();
    if (!m_awaitingPaint) {
        m_highlighter->setSuspended(false);
        m_highlighter->setDark(isDark());
        m_highlighter->rehighlight();
    }
    if (m_undoManager)
        m_undoManager->removeAllActions(m_textView.data());
    m_isApplyingContent = false;
}

void CodeCoordinator::textDidChange(int documentPosition, int, int charsAdded)
{
    if (m_isApplyingContent || !m_textView)
        return;
    // What changed, read from the document: the range it reports may
    // include its own closing paragraph separator, which is no text. The
    // text view has followed the change already.
    QTextDocument *document = m_textView->document();
    const int documentAdded =
        std::clamp(charsAdded, 0, document->characterCount() - 1 - documentPosition);
    const QString inserted =
        m_textView->textBetween(documentPosition, documentPosition + documentAdded);
    const qsizetype position = m_textView->textOffset(documentPosition);
    const qsizetype added = inserted.size();
    const qsizetype removed = m_text.size() - (m_textView->textLength() - added);
    // A change that puts back the very text it took away (a character typed
    // over its own selection, a soft separator removed) is no change of the
    // text.
    if (removed == added && QStringView(m_text).sliced(position, removed) == inserted)
        return;
    m_text.replace(position, removed, inserted);

    m_userIsEditing = true;
    m_parse.edit(m_text, position, removed, added);
    if (m_file) {
        RulesetMerge::mergeRulesets(*m_file, m_parse.rulesets());
        m_file->markChanged();
    }

    const QTextCursor selection = m_textView->textCursor();
    m_isApplyingContent = true;
    const auto [from, to] = m_scanner.edit(m_text, position, removed, added);
    const bool dark = isDark();
    if (dark != m_highlighter->isDark()) {
        // The whole text takes the appearance of this moment.
        m_highlighter->setDark(dark);
        m_highlighter->rehighlight();
    } else {
        m_highlighter->refresh(from, to, position, position + added);
    }
    m_isApplyingContent = false;
    const QTextCursor after = m_textView->textCursor();
    if (after.anchor() != selection.anchor() || after.position() != selection.position())
        m_textView->setTextCursor(selection);
}

void CodeCoordinator::textDidEndEditing()
{
    m_userIsEditing = false;
}

void CodeCoordinator::registerTextUndo()
{
    if (!m_undoManager || !m_textView)
        return;
    m_undoManager->registerUndo(m_textView.data(),
                                [view = m_textView, undoManager = m_undoManager] {
                                    stepDocument(view, undoManager, true);
                                });
}

CodeCursorHit CodeCoordinator::rulesetAndPropAtCursor() const
{
    if (!m_textView || !m_file)
        return {};
    const CursorMapping::RulesetAndProp hit = CursorMapping::rulesetAndPropAt(
        m_textView->textOffset(m_textView->textCursor().selectionStart()), m_text,
        m_file->rulesets());
    return {hit.rulesetID, hit.propID};
}

void CodeCoordinator::clearUndoHistory()
{
    if (m_textView && m_undoManager)
        m_undoManager->removeAllActions(m_textView.data());
}

} // namespace Ombrel
