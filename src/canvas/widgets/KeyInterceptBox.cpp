#include "KeyInterceptBox.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>

namespace Ombrel {

namespace {

// A widget that edits text, where Return and Tab belong to the typing.
// (Item views also take input methods, for their keyboard search, so that
// attribute does not tell.)
bool isTextInput(const QWidget *widget)
{
    if (!widget)
        return false;
    if (const auto *combo = qobject_cast<const QComboBox *>(widget))
        return combo->isEditable();
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget) ||
           qobject_cast<const QPlainTextEdit *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget);
}

} // namespace

KeyInterceptBox::KeyInterceptBox(QObject *parent) : QObject(parent) {}

void KeyInterceptBox::setup(QWidget *window, std::function<void()> callback)
{
    m_window = window;
    m_callback = std::move(callback);
    if (!m_installed) {
        qApp->installEventFilter(this);
        m_installed = true;
    }
}

bool KeyInterceptBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !m_active || !m_callback)
        return false;
    const auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || !m_window || widget->window() != m_window)
        return false;
    if (isTextInput(QApplication::focusWidget()))
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Tab)
        return false;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_callback)
                m_callback();
        },
        Qt::QueuedConnection);
    return true;
}

} // namespace Ombrel
