#include "ComboBox.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

namespace Ombrel {

ComboBox::ComboBox(QWidget *parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    completer()->setCompletionMode(QCompleter::InlineCompletion);
    connect(this, &QComboBox::editTextChanged, this, &ComboBox::textChangedByUser);
    // A pick is reported once the box has settled on it.
    connect(this, &QComboBox::activated, this, [this](int index) {
        QMetaObject::invokeMethod(
            this,
            [this, index] {
                const QVariant item = itemData(index, Qt::DisplayRole);
                Q_EMIT textChangedByUser(item.canConvert<QString>() ? item.toString()
                                                                    : currentText());
            },
            Qt::QueuedConnection);
    });
}

void ComboBox::showText(const QString &text)
{
    if (currentText() != text)
        setEditText(text);
}

bool ComboBox::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress && m_onTab) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Tab && key->modifiers() == Qt::NoModifier) {
            m_onTab();
            return true;
        }
    }
    return QComboBox::event(event);
}

} // namespace Ombrel
