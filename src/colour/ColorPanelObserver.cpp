#include "ColorPanelObserver.h"

#include "SharedColorPanel.h"
#include "ToolkitColor.h"
#include "knowledge/Color.h"

namespace Ombrel {

ColorPanelObserver::ColorPanelObserver(QObject *parent) : QObject(parent)
{
    SharedColorPanel &panel = SharedColorPanel::instance();
    connect(&panel, &SharedColorPanel::colorChanged, this, &ColorPanelObserver::colorChanged);
    connect(&panel, &SharedColorPanel::closed, this, &ColorPanelObserver::closed);
}

void ColorPanelObserver::open(const QString &initialHex)
{
    m_currentHex = initialHex;
    SharedColorPanel::instance().present(Color::fromCssString(initialHex));
    m_isOpen = true;
}

void ColorPanelObserver::colorChanged(const QColor &color)
{
    if (!m_isOpen)
        return;
    m_currentHex = cssHexOf(color);
    if (onChange)
        onChange(m_currentHex);
}

void ColorPanelObserver::closed()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    if (onClose)
        onClose(m_currentHex);
}

} // namespace Ombrel
