#pragma once

#include "knowledge/Color.h"

#include <QString>
#include <QUuid>

namespace Ombrel {

// One colour of a palette page: its key in its list and the colour.
struct ColorPaletteEntry
{
    ColorPaletteEntry(const QString &name, const Color &color);

    QUuid id;
    QString name;
    Color color;

    // What a press on the entry writes.
    QString hex() const { return color.cssHexString(); }
};

} // namespace Ombrel
