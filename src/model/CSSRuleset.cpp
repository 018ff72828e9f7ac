#include "CSSRuleset.h"

#include "CSSFile.h"
#include "Uuid.h"

#include <algorithm>

namespace Ombrel {

CSSRuleset::CSSRuleset(QString selector, CSSPropertyList properties, QPointF position)
    : m_id(newUuid()), m_selector(std::move(selector)), m_properties(std::move(properties)),
      m_cssStringSize(measureCssString()), m_position(position)
{}

namespace {

// Whether two declaration lists hold the same custom properties, with the
// same values in the same order: all that the file's readings take from them.
bool sameCustomProperties(const CSSPropertyList &a, const CSSPropertyList &b)
{
    auto left = a.cbegin();
    auto right = b.cbegin();
    while (true) {
        while (left != a.cend() && !left->isCustomProperty())
            ++left;
        while (right != b.cend() && !right->isCustomProperty())
            ++right;
        if (left == a.cend() || right == b.cend())
            return left == a.cend() && right == b.cend();
        if (left->name != right->name || left->value != right->value)
            return false;
        ++left;
        ++right;
    }
}

} // namespace

void CSSRuleset::tellFile(bool customPropertiesChanged, qsizetype sizeBefore)
{
    if (m_file)
        m_file->rulesetEdited(customPropertiesChanged, m_cssStringSize - sizeBefore);
}

void CSSRuleset::setSelector(const QString &selector)
{
    if (m_selector == selector)
        return;
    const qsizetype sizeBefore = m_cssStringSize;
    m_selector = selector;
    m_cssStringSize = measureCssString();
    tellFile(false, sizeBefore);
    Q_EMIT selectorChanged();
    Q_EMIT changed();
}

void CSSRuleset::setProperties(const CSSPropertyList &properties)
{
    if (m_properties == properties)
        return;
    const bool customPropertiesChanged = !sameCustomProperties(m_properties, properties);
    const qsizetype sizeBefore = m_cssStringSize;
    m_properties = properties;
    m_cssStringSize = measureCssString();
    tellFile(customPropertiesChanged, sizeBefore);
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
    QString out(cssStringSize(), Qt::Uninitialized);
    writeCssString(out.data());
    return out;
}

namespace {

// Spelled out once, so that the size and the writing cannot disagree.
constexpr QStringView selectorEnd = u" {\n";
constexpr QStringView indent = u"    ";
constexpr QStringView colon = u": ";
constexpr QStringView declarationEnd = u";\n";
constexpr QStringView blockEnd = u"}";

QChar *write(QChar *out, QStringView text)
{
    return std::copy(text.begin(), text.end(), out);
}

} // namespace

qsizetype CSSRuleset::measureCssString() const
{
    qsizetype size = m_selector.size() + selectorEnd.size() + blockEnd.size();
    for (const CSSProperty &property : m_properties) {
        size += indent.size() + property.name.size() + colon.size() + property.value.size() +
                declarationEnd.size();
    }
    return size;
}

QChar *CSSRuleset::writeCssString(QChar *out) const
{
    out = write(out, m_selector);
    out = write(out, selectorEnd);
    for (const CSSProperty &property : m_properties) {
        out = write(out, indent);
        out = write(out, property.name);
        out = write(out, colon);
        out = write(out, property.value);
        out = write(out, declarationEnd);
    }
    return write(out, blockEnd);
}

} // namespace Ombrel
