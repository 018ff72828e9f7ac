#pragma once

#include "knowledge/Color.h"

#include <QAbstractButton>
#include <QColor>
#include <QString>

#include <functional>

namespace Ombrel {

// A colour well over a text value: a small button showing cssValue's colour
// (black when the text is no colour) that opens the shared colour chooser
// with it. It is active while the chooser is open for it: from its press
// until the chooser closes, another well or picker takes the chooser, or it
// is pressed again. Becoming active calls onActivate, each change of the
// chooser in between writes cssValue, and ceasing to be active calls
// onCommit. While active, changes of the value from outside are ignored, so
// that they do not fight the chooser.
class NativeColorWell : public QAbstractButton
{
    Q_OBJECT

public:
    using Callback = std::function<void()>;

    explicit NativeColorWell(const QString &cssValue, Callback onActivate = {},
                             Callback onCommit = {}, QWidget *parent = nullptr);

    QString cssValue() const { return m_cssValue; }
    // From the owner: the value changed outside. Ignored while active.
    void setCssValue(const QString &cssValue);
    bool isActive() const { return m_active; }
    // The colour the well shows.
    QColor shownColor() const { return m_color.toQColor(); }

    QSize sizeHint() const override;

Q_SIGNALS:
    // The well wrote its value: the two-way binding's write side.
    void cssValueWritten(const QString &cssValue);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    static Color colorOf(const QString &cssValue);
    void toggle();
    void setActive(bool active);
    void chooserChanged(const QColor &color);

    QString m_cssValue;
    Color m_color;
    Callback m_onActivate;
    Callback m_onCommit;
    bool m_active = false;
    bool m_wasActive = false;
    bool m_presenting = false;
};

} // namespace Ombrel
