#pragma once

#include "colour/ColorLists.h"

namespace Ombrel {

// The toolkit's colour lists, in this order: "Basic Colors" (the colour
// dialog's standard colours), "Named Colors" (the SVG colour names) and
// "Custom Colors" (the colour dialog's custom colours). The keys of the lists
// without names of their own are their colours' hex text.
QList<ColorList> systemColorLists();

// The lists every palette grid shows: read once per process, from
// systemColorLists unless a test replaced the provider first.
const QList<ColorList> &availableColorLists();

} // namespace Ombrel
