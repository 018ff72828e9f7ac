#pragma once

#include "model/CSSFile.h"

#include <QString>

namespace Ombrel {

// The one line the canvas shows over a file whose loaded text a save does not
// keep whole: before the first save, what the save drops, counted from the
// file, and that the original is kept; after it, whether the original could
// be kept. Empty when there is nothing to tell.
QString saveNoticeText(OriginalState state, const CSSParser::DroppedCounts &dropped);

inline QString saveNoticeText(const CSSFile &file)
{
    return saveNoticeText(file.originalState(), file.droppedCounts());
}

} // namespace Ombrel
