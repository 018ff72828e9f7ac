#pragma once

#include <QLineEdit>

namespace Ombrel {

// A borderless text field for the toolbar, bound to a text and a focused
// flag: it shows the text, reports edits, and takes or leaves focus when the
// flag says so. Escape empties it and leaves it.
class ToolbarTextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit ToolbarTextField(const QString &placeholder, QWidget *parent = nullptr);

    // Shows text unless the field already does.
    void showText(const QString &text);
    // Takes or leaves the focus on the next turn of the event loop.
    void showFocused(bool focused);

Q_SIGNALS:
    void textChangedByUser(const QString &text);
    void focusedChanged(bool focused);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};

} // namespace Ombrel
