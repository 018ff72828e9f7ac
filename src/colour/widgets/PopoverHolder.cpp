#include "PopoverHolder.h"

namespace Ombrel {

PopoverHolder::~PopoverHolder()
{
    delete m_popover.data();
}

void PopoverHolder::hold(QWidget *popover)
{
    if (m_popover && m_popover != popover)
        m_popover->deleteLater();
    m_popover = popover;
}

void PopoverHolder::close()
{
    if (m_popover)
        m_popover->close();
}

} // namespace Ombrel
