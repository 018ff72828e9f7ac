#include "ColorPaletteEntry.h"

#include "model/Uuid.h"

namespace Ombrel {

ColorPaletteEntry::ColorPaletteEntry(const QString &name, const Color &color)
    : id(newUuid()), name(name), color(color)
{}

} // namespace Ombrel
