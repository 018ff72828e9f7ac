#include "ToolbarTextField.h"

#include <QKeyEvent>
#include <QTimer>

namespace Ombrel {

ToolbarTextField::ToolbarTextField(const QString &placeholder, QWidget *parent) : QLineEdit(parent)
{
    setPlaceholderText(placeholder);
    setFrame(false);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    QFont small = font();
    small.setPointSizeF(12);
    setFont(small);
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
    connect(this, &QLineEdit::textEdited, this, &ToolbarTextField::textChangedByUser);
}

void ToolbarTextField::showText(const QString &text)
{
    if (this->text() != text)
        setText(text);
}

void ToolbarTextField::showFocused(bool focused)
{
    if (focused == hasFocus())
        return;
    QTimer::singleShot(0, this, [this, focused] {
        if (focused)
            setFocus(Qt::OtherFocusReason);
        else if (hasFocus())
            clearFocus();
    });
}

void ToolbarTextField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    clear();
    Q_EMIT textChangedByUser(QString());
    Q_EMIT focusedChanged(false);
    clearFocus();
}

void ToolbarTextField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    Q_EMIT focusedChanged(true);
}

void ToolbarTextField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    Q_EMIT focusedChanged(false);
}

} // namespace Ombrel
