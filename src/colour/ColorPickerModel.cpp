#include "ColorPickerModel.h"

#include "text/TextScan.h"

#include <algorithm>

namespace Ombrel {

ColorPickerModel::ColorPickerModel(const QString &hexInput, QObject *parent)
    : QObject(parent), m_hexInput(hexInput)
{}

void ColorPickerModel::setHexInput(const QString &text)
{
    if (text == m_hexInput)
        return;
    m_hexInput = text;
    Q_EMIT hexInputChanged(m_hexInput);
}

void ColorPickerModel::setPaletteIndex(int index)
{
    if (index == m_paletteIndex)
        return;
    m_paletteIndex = index;
    Q_EMIT paletteIndexChanged(m_paletteIndex);
}

void ColorPickerModel::showPreviousList()
{
    setPaletteIndex(std::max(0, m_paletteIndex - 1));
}

void ColorPickerModel::showNextList(int listCount)
{
    setPaletteIndex(std::min(listCount - 1, m_paletteIndex + 1));
}

const QStringList &colorKeywords()
{
    static const QStringList keywords = {QStringLiteral("transparent"), QStringLiteral("inherit"),
                                         QStringLiteral("currentColor")};
    return keywords;
}

std::optional<QString> submittedText(const QString &fieldText)
{
    const QStringView trimmed = TextScan::trimmedWhitespace(fieldText);
    if (trimmed.isEmpty())
        return std::nullopt;
    return trimmed.toString();
}

bool isKeywordHighlighted(const QString &hexInput, const QString &keyword)
{
    return hexInput == keyword;
}

} // namespace Ombrel
