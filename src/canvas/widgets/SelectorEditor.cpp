#include "SelectorEditor.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace Ombrel {

SelectorEditor::SelectorEditor(QWidget *parent) : QLineEdit(parent)
{
    setFrame(false);
    setAutoFillBackground(false);
    setPlaceholderText(QStringLiteral("selector"));
    // Typing after an ended edit, in a field that is still open, edits anew.
    connect(this, &QLineEdit::textEdited, this, [this] { m_finished = false; });
}

void SelectorEditor::start(const QString &text)
{
    if (m_started)
        return;
    m_started = true;
    setText(text);
}

void SelectorEditor::finish(void (SelectorEditor::*signal)())
{
    if (m_finished)
        return;
    m_finished = true;
    Q_EMIT(this->*signal)();
}

void SelectorEditor::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish(&SelectorEditor::committed);
        return;
    case Qt::Key_Escape:
        finish(&SelectorEditor::cancelled);
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void SelectorEditor::focusInEvent(QFocusEvent *event)
{
    m_finished = false;
    QLineEdit::focusInEvent(event);
}

void SelectorEditor::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // A menu of the field or another window taking the keyboard leaves the
    // edit going; only focus moving within the window ends it.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    finish(&SelectorEditor::committed);
}

void SelectorEditor::showEvent(QShowEvent *event)
{
    QLineEdit::showEvent(event);
    // The field takes focus as it first appears, once the view has placed
    // it; a view shows it again after scrolling it back in, and that must
    // not pull the focus back.
    if (m_appeared)
        return;
    m_appeared = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            setFocus(Qt::OtherFocusReason);
            selectAll();
        },
        Qt::QueuedConnection);
}

} // namespace Ombrel
