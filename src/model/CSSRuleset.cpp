#include "CSSRuleset.h"

#include "Uuid.h"

namespace Ombrel {

CSSRuleset::CSSRuleset(QString selector, CSSPropertyList properties, QPointF position)
    : m_id(newUuid()), m_selector(std::move(selector)), m_properties(std::move(properties)),
      m_position(position)
{}

void CSSRuleset::setSelector(const QString &selector)
{
    if (m_selector == selector)
        return;
    m_selector = selector;
    Q_EMIT selectorChanged();
    Q_EMIT changed();
}

void CSSRuleset::setProperties(const CSSPropertyList &properties)
{
    if (m_properties == properties)
        return;
    m_properties = properties;
    Q_EMIT propertiesChanged();
    Q_EMIT changed();
}

void CSSRuleset::setPosition(QPointF position)
{
    if (m_position == position)
        return;
    m_position = position;
    Q_EMIT positionChanged();
    Q_EMIT changed();
}

void CSSRuleset::setDragOffset(QSizeF offset)
{
    if (m_dragOffset == offset)
        return;
    m_dragOffset = offset;
    Q_EMIT dragOffsetChanged();
    Q_EMIT changed();
}

QString CSSRuleset::cssString() const
{
    QString out;
    appendCssString(out);
    return out;
}

void CSSRuleset::appendCssString(QString &out) const
{
    out += m_selector;
    out += QLatin1String(" {\n");
    for (const CSSProperty &property : m_properties) {
        out += QLatin1String("    ");
        out += property.name;
        out += QLatin1String(": ");
        out += property.value;
        out += QLatin1String(";\n");
    }
    out += QLatin1Char('}');
}

} // namespace Ombrel
