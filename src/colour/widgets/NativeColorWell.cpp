#include "NativeColorWell.h"

#include "ColorSwatchView.h"
#include "SharedColorDialog.h"
#include "colour/SharedColorPanel.h"
#include "colour/ToolkitColor.h"

#include <QPainter>

namespace Ombrel {

NativeColorWell::NativeColorWell(const QString &cssValue, Callback onActivate, Callback onCommit,
                                 QWidget *parent)
    : QAbstractButton(parent), m_cssValue(cssValue), m_color(colorOf(cssValue)),
      m_onActivate(std::move(onActivate)), m_onCommit(std::move(onCommit))
{
    installSharedColorDialog();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    SharedColorPanel &panel = SharedColorPanel::instance();
    connect(&panel, &SharedColorPanel::colorChanged, this, &NativeColorWell::chooserChanged);
    connect(&panel, &SharedColorPanel::closed, this, [this] { setActive(false); });
    connect(&panel, &SharedColorPanel::presenting, this, [this] {
        if (!m_presenting)
            setActive(false);
    });
    connect(this, &QAbstractButton::clicked, this, &NativeColorWell::toggle);
}

Color NativeColorWell::colorOf(const QString &cssValue)
{
    return Color::fromCssString(cssValue).value_or(Palette::black);
}

void NativeColorWell::setCssValue(const QString &cssValue)
{
    if (m_active)
        return;
    m_cssValue = cssValue;
    m_color = colorOf(cssValue);
    update();
}

QSize NativeColorWell::sizeHint() const
{
    return QSize(28, 20);
}

void NativeColorWell::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRectF frame = rect();
    paintColorSwatch(painter, frame, m_color, 4, 0.2);
    if (m_active) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), 4, 4);
    }
}

void NativeColorWell::toggle()
{
    if (m_active) {
        setActive(false);
        return;
    }
    // Taking the chooser lets go of whoever held it; the well's own opening
    // must not count as that.
    m_presenting = true;
    SharedColorPanel::instance().present(m_color);
    m_presenting = false;
    setActive(true);
}

void NativeColorWell::setActive(bool active)
{
    m_active = active;
    update();
    if (active && !m_wasActive) {
        m_wasActive = true;
        if (m_onActivate)
            m_onActivate();
    } else if (!active && m_wasActive) {
        m_wasActive = false;
        if (m_onCommit)
            m_onCommit();
    }
}

void NativeColorWell::chooserChanged(const QColor &color)
{
    if (!m_active)
        return;
    m_color = colorFromToolkit(color);
    m_cssValue = m_color.cssHexString();
    update();
    Q_EMIT cssValueWritten(m_cssValue);
}

} // namespace Ombrel
