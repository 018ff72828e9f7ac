#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

namespace Ombrel {

// Takes Return and Tab from one window while active and runs a callback for
// them on the next turn of the event loop, so that with a card selected these
// keys go to the inspector. Keys typed into a text field pass on.
//
// The filter sits on the application, because a key goes to the focused
// widget and never reaches the window's own filters; it only looks at
// widgets of its window, and goes with the box.
class KeyInterceptBox : public QObject
{
    Q_OBJECT

public:
    explicit KeyInterceptBox(QObject *parent = nullptr);

    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }

    // Stores the callback and starts watching the keys of window.
    void setup(QWidget *window, std::function<void()> callback);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_active = false;
    std::function<void()> m_callback;
    QPointer<QWidget> m_window;
    bool m_installed = false;
};

} // namespace Ombrel
