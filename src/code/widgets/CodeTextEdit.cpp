#include "CodeTextEdit.h"

#include "workspace/UndoManager.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QTextDocument>

namespace Ombrel {

namespace {

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
}

QString CodeTextEdit::rawText() const
{
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text;
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
