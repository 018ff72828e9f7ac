#include "CodeTextEdit.h"

#include "code/widgets/CodeHighlighter.h"
#include "workspace/UndoManager.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace Ombrel {

namespace {

// Set in the block format of a piece that continues the line of the block
// before it: the separator before it is soft.
constexpr int continuesLineProperty = QTextFormat::UserProperty + 1;

bool continuesLine(const QTextBlock &block)
{
    return block.blockFormat().boolProperty(continuesLineProperty);
}

QTextBlockFormat continuationFormat()
{
    QTextBlockFormat format;
    format.setProperty(continuesLineProperty, true);
    return format;
}

// The units that QTextCursor::insertText() makes a block separator of (a CR
// followed by a LF makes one).
bool breaksLine(QChar unit)
{
    return unit == u'\n' || unit == u'\r' || unit == QChar::ParagraphSeparator ||
           unit == QChar(0xFDD0) || unit == QChar(0xFDD1);
}

// Where the piece of line that starts at from ends: after the last "}" of
// its last quarter, where a minified stylesheet breaks best, else after its
// last ";", else after its last blank, else at its length, never between the
// two halves of a surrogate pair.
qsizetype pieceEnd(QStringView line, qsizetype from)
{
    const qsizetype end = from + CodeTextEdit::pieceLength;
    if (end >= line.size())
        return line.size();
    const qsizetype earliest = end - CodeTextEdit::pieceLength / 4;
    for (const auto endsPiece :
         {+[](QChar unit) { return unit == u'}'; }, +[](QChar unit) { return unit == u';'; },
          +[](QChar unit) { return unit == u' ' || unit == u'\t'; }}) {
        for (qsizetype i = end; i > earliest; --i) {
            if (endsPiece(line[i - 1]))
                return i;
        }
    }
    return line[end - 1].isHighSurrogate() && line[end].isLowSurrogate() ? end - 1 : end;
}

// Inserts a line too long to lay out as one, without its break, in pieces.
void insertPieces(QTextCursor &cursor, QStringView line, const QTextCharFormat &format)
{
    for (qsizetype from = 0; from < line.size();) {
        const qsizetype to = pieceEnd(line, from);
        if (from > 0)
            cursor.insertBlock(continuationFormat(), format);
        cursor.insertText(line.sliced(from, to - from).toString(), format);
        from = to;
    }
}

// Inserts text whose lines are short enough to lay out whole, its breaks
// real ones. QTextCursor gives each block it makes the format of the block
// it inserts into: in a piece, the first break is made here.
void insertShortLines(QTextCursor &cursor, QStringView text, const QTextCharFormat &format)
{
    if (continuesLine(cursor.block())) {
        qsizetype i = 0;
        while (i < text.size() && !breaksLine(text[i]))
            ++i;
        if (i == text.size()) {
            if (!text.isEmpty())
                cursor.insertText(text.toString(), format);
            return;
        }
        if (i > 0)
            cursor.insertText(text.first(i).toString(), format);
        cursor.insertBlock(QTextBlockFormat(), format);
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        text = text.sliced(i + 1);
    }
    if (!text.isEmpty())
        cursor.insertText(text.toString(), format);
}

// The platform's bindings and the common ones, whatever the platform binds.
bool isUndoKey(const QKeyEvent *event)
{
    return event->matches(QKeySequence::Undo) ||
           event->keyCombination() == QKeyCombination(Qt::ControlModifier, Qt::Key_Z);
}

bool isRedoKey(const QKeyEvent *event)
{
    return event->matches(QKeySequence::Redo) ||
           event->keyCombination() ==
               QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Z);
}

// The text as the document holds it once inserted, each break a line feed.
QString withLineFeeds(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(),
                     [](QChar unit) { return unit != u'\n' && breaksLine(unit); }))
        return text;
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!breaksLine(text[i])) {
            result += text[i];
            continue;
        }
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        result += u'\n';
    }
    return result;
}

} // namespace

CodeTextEdit::CodeTextEdit(UndoManager *undoManager, QWidget *parent)
    : QPlainTextEdit(parent), m_undoManager(undoManager)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(12);
    // Latin text needs no shaping; skipping it keeps a long line quick.
    font.setStyleStrategy(QFont::PreferNoShaping);
    setFont(font);
    document()->setDocumentMargin(12);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(document(), &QTextDocument::contentsChange, this, &CodeTextEdit::followChange);
}

QString CodeTextEdit::rawText() const
{
    if (!m_softBreaks.empty())
        return textBetween(0, m_documentLength);
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text;
}

QString CodeTextEdit::textBetween(int from, int to) const
{
    if (from == m_paste.from && to == m_paste.to)
        return m_paste.text;
    QTextCursor range(document());
    range.setPosition(from);
    range.setPosition(to, QTextCursor::KeepAnchor);
    QString raw = range.selectedText();
    if (hasSoftBreakIn(from, to)) {
        QString kept;
        kept.reserve(raw.size());
        qsizetype start = 0;
        for (auto it = std::lower_bound(m_softBreaks.begin(), m_softBreaks.end(), from);
             it != m_softBreaks.end() && *it < to; ++it) {
            kept += QStringView(raw).sliced(start, *it - from - start);
            start = *it - from + 1;
        }
        kept += QStringView(raw).sliced(start);
        raw = std::move(kept);
    }
    raw.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return raw;
}

qsizetype CodeTextEdit::textLength() const
{
    return m_documentLength - qsizetype(m_softBreaks.size());
}

qsizetype CodeTextEdit::textOffset(int position) const
{
    const auto before = std::lower_bound(m_softBreaks.begin(), m_softBreaks.end(), position);
    return position - (before - m_softBreaks.begin());
}

int CodeTextEdit::documentPosition(qsizetype offset) const
{
    qsizetype position = offset;
    for (const int softBreak : m_softBreaks) {
        if (softBreak >= position)
            break;
        ++position;
    }
    return int(position);
}

bool CodeTextEdit::isSoftBreak(int position) const
{
    return std::binary_search(m_softBreaks.begin(), m_softBreaks.end(), position);
}

bool CodeTextEdit::hasSoftBreakIn(int from, int to) const
{
    const auto first = std::lower_bound(m_softBreaks.begin(), m_softBreaks.end(), from);
    return first != m_softBreaks.end() && *first < to;
}

bool CodeTextEdit::isPiece(const QTextBlock &block) const
{
    if (m_softBreaks.empty())
        return false;
    return isSoftBreak(block.position() - 1) || isSoftBreak(block.position() + block.length() - 1);
}

int CodeTextEdit::shownBlockLimit() const
{
    return viewport()->height() / std::max(1, fontMetrics().lineSpacing()) + 2;
}

void CodeTextEdit::followChange(int position, int, int charsAdded)
{
    // The range the document reports may include its closing separator,
    // which is no change: the removed count is read from the lengths.
    const int newLength = document()->characterCount() - 1;
    const int added = std::clamp(charsAdded, 0, newLength - position);
    const int removed = m_documentLength - (newLength - added);
    m_documentLength = newLength;
    if (m_softBreaks.empty() && !m_hasHeldPieces)
        return;
    auto first = std::lower_bound(m_softBreaks.begin(), m_softBreaks.end(), position);
    first =
        m_softBreaks.erase(first, std::lower_bound(first, m_softBreaks.end(), position + removed));
    for (auto it = first; it != m_softBreaks.end(); ++it)
        *it += added - removed;
    // The separators the change brought, each before the block it starts.
    std::vector<int> brought;
    for (QTextBlock block = document()->findBlock(position).next();
         block.isValid() && block.position() <= position + added; block = block.next()) {
        if (continuesLine(block))
            brought.push_back(block.position() - 1);
    }
    m_softBreaks.insert(first, brought.begin(), brought.end());
}

bool CodeTextEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (isUndoKey(key) || isRedoKey(key)) {
            key->accept();
            return true;
        }
        if (isTakenByWindowMenu(key)) {
            key->ignore();
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

void CodeTextEdit::keyPressEvent(QKeyEvent *event)
{
    if (!m_softBreaks.empty() && handlePieceKey(event))
        return;
    if (isUndoKey(event) || isRedoKey(event)) {
        if (m_undoManager) {
            if (isUndoKey(event))
                m_undoManager->undo();
            else
                m_undoManager->redo();
        }
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

bool CodeTextEdit::handlePieceKey(QKeyEvent *event)
{
    QTextCursor cursor = textCursor();
    const int position = cursor.position();
    const bool editable = !isReadOnly();
    if (editable && event->matches(QKeySequence::InsertParagraphSeparator)) {
        // The new block would take the format of a piece it is made in, and
        // the line break would be soft.
        cursor.insertBlock(QTextBlockFormat());
        setTextCursor(cursor);
        ensureCursorVisible();
        return true;
    }
    const bool deletesBack =
        (event->key() == Qt::Key_Backspace && !(event->modifiers() & ~Qt::ShiftModifier)) ||
        event->matches(QKeySequence::DeleteStartOfWord);
    const bool deletesOn =
        event->matches(QKeySequence::Delete) || event->matches(QKeySequence::DeleteEndOfWord);
    if (editable && (deletesBack || deletesOn) && !cursor.hasSelection()) {
        // Deleting from a soft separator deletes from the text beyond it.
        int at = position;
        while (deletesBack && isSoftBreak(at - 1))
            --at;
        while (deletesOn && isSoftBreak(at))
            ++at;
        if (at == position)
            return false;
        cursor.setPosition(at);
        setTextCursor(cursor);
        QPlainTextEdit::keyPressEvent(event);
        return true;
    }
    constexpr QKeySequence::StandardKey steps[] = {
        QKeySequence::MoveToNextChar, QKeySequence::MoveToPreviousChar,
        QKeySequence::SelectNextChar, QKeySequence::SelectPreviousChar,
        QKeySequence::MoveToNextWord, QKeySequence::MoveToPreviousWord,
        QKeySequence::SelectNextWord, QKeySequence::SelectPreviousWord,
    };
    if (std::none_of(std::begin(steps), std::end(steps),
                     [event](QKeySequence::StandardKey key) { return event->matches(key); }))
        return false;
    QPlainTextEdit::keyPressEvent(event);
    // A step that went over a soft separator alone moved nowhere in the
    // text: it goes on.
    const int moved = textCursor().position();
    if (moved != position && textOffset(moved) == textOffset(position))
        QPlainTextEdit::keyPressEvent(event);
    return true;
}

void CodeTextEdit::paintEvent(QPaintEvent *event)
{
    Q_EMIT aboutToPaint();
    QPlainTextEdit::paintEvent(event);
}

void CodeTextEdit::insertFromMimeData(const QMimeData *source)
{
    if (isReadOnly() || !source)
        return;
    const QString text = source->text();
    if (text.isNull())
        return;
    // Shown while the text is still short, the scroll bar narrows it at no
    // cost; appearing after a long paste, it would have every line of the
    // paste laid out again.
    const bool hadScrollBar = verticalScrollBar()->isVisible();
    if (!hadScrollBar)
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    QTextCharFormat format = cursor.charFormat();
    format.clearProperty(QTextFormat::ObjectType);
    const int at = cursor.position();
    // The first and last lines pasted join the text around the cursor: the
    // line is what must be short enough to lay out whole.
    const qsizetype before = cursor.positionInBlock();
    const qsizetype after = cursor.block().length() - 1 - before;
    // The lines short enough to lay out whole go in together, in as few
    // calls as the pieces of the long ones allow.
    const QStringView all(text);
    qsizetype shortFrom = 0;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i <= all.size(); ++i) {
        if (i < all.size() && !breaksLine(all[i]))
            continue;
        const qsizetype lineEnd = i;
        if (i < all.size() && all[i] == u'\r' && i + 1 < all.size() && all[i + 1] == u'\n')
            ++i;
        const qsizetype joined = (lineStart == 0 ? before : 0) + (lineEnd - lineStart) +
                                 (lineEnd == all.size() ? after : 0);
        if (joined > CodeHighlighter::maxPaintedBlock) {
            insertShortLines(cursor, all.sliced(shortFrom, lineStart - shortFrom), format);
            insertPieces(cursor, all.sliced(lineStart, lineEnd - lineStart), format);
            m_hasHeldPieces = true;
            if (lineEnd < all.size())
                cursor.insertBlock(QTextBlockFormat(), format);
            shortFrom = std::min(i + 1, all.size());
        }
        lineStart = i + 1;
    }
    insertShortLines(cursor, all.sliced(shortFrom), format);
    // Read back from the document, megabytes would take long.
    m_paste = {at, cursor.position(), withLineFeeds(text)};
    cursor.endEditBlock();
    m_paste = {};
    if (!hadScrollBar)
        setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setTextCursor(cursor);
    ensureCursorVisible();
}

QMimeData *CodeTextEdit::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    if (!hasSoftBreakIn(cursor.selectionStart(), cursor.selectionEnd()))
        return QPlainTextEdit::createMimeDataFromSelection();
    auto *data = new QMimeData;
    data->setText(textBetween(cursor.selectionStart(), cursor.selectionEnd()));
    return data;
}

void CodeTextEdit::focusOutEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        Q_EMIT editingEnded();
}

void CodeTextEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (m_undoManager) {
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            QAction *replacement = nullptr;
            if (action->objectName() == QLatin1String("edit-undo"))
                replacement = m_undoManager->undoAction();
            else if (action->objectName() == QLatin1String("edit-redo"))
                replacement = m_undoManager->redoAction();
            if (replacement) {
                menu->insertAction(action, replacement);
                menu->removeAction(action);
            }
        }
    }
    menu->popup(event->globalPos());
}

bool CodeTextEdit::isTakenByWindowMenu(const QKeyEvent *event) const
{
    const QKeySequence sequence(event->keyCombination());
    const QList<QMenu *> menus = window()->findChildren<QMenu *>();
    for (const QMenu *menu : menus) {
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions) {
            if (action->isEnabled() && action->shortcuts().contains(sequence))
                return true;
        }
    }
    return false;
}

} // namespace Ombrel
