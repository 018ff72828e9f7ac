#pragma once

#include <QLineEdit>

namespace Ombrel {

// The inline field that renames a card's selector. Return commits, Escape
// cancels, and focus moving elsewhere commits. After either ends the edit,
// the field reports nothing more until it takes focus again, so the closing
// of the field never commits a second time or after a cancel.
class SelectorEditor : public QLineEdit
{
    Q_OBJECT

public:
    explicit SelectorEditor(QWidget *parent = nullptr);

    // Puts the text in once; later calls leave what the user typed.
    void start(const QString &text);

Q_SIGNALS:
    void committed();
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void finish(void (SelectorEditor::*signal)());

    bool m_started = false;
    bool m_appeared = false;
    bool m_finished = false;
};

} // namespace Ombrel
