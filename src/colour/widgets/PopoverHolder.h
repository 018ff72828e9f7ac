#pragma once

#include <QPointer>
#include <QWidget>

namespace Ombrel {

// Holds a picker's last popover, open or closed, so that the next press can
// close it before another one opens. Closing a closed popover does nothing.
// The popover held is deleted when another takes its place or the holder
// goes.
class PopoverHolder
{
public:
    PopoverHolder() = default;
    ~PopoverHolder();
    PopoverHolder(const PopoverHolder &) = delete;
    PopoverHolder &operator=(const PopoverHolder &) = delete;

    QWidget *popover() const { return m_popover; }
    void hold(QWidget *popover);
    void close();

private:
    QPointer<QWidget> m_popover;
};

} // namespace Ombrel
