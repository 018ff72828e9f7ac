#pragma once

#include "ColorPaletteEntry.h"
#include "knowledge/Color.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace Ombrel {

// A named list of colours, as the desktop offers them: keys in their order,
// each with a colour (a key may lack one, and then it is not shown).
struct ColorList
{
    QString name;
    QStringList keys;
    QHash<QString, Color> colors;

    std::optional<Color> color(const QString &key) const;
    // Appends key with its colour; a key already there keeps its place and
    // takes the new colour, as keys in a list are unique.
    void add(const QString &key, const Color &color);
};

using ColorListProvider = std::function<QList<ColorList>()>;

// The colour lists of the process, read once, at their first use, and kept
// in their order.
class ColorListStore
{
public:
    // Replaces where the lists come from. It counts only before the first
    // read, which is what a test that wants lists of its own relies on.
    static void replaceProvider(ColorListProvider provider);
    // The lists, read at the first call from the replacement if there is
    // one, else from systemLists; later calls answer the same lists.
    static const QList<ColorList> &lists(const ColorListProvider &systemLists);
};

// Keys beyond this many in a list are never shown.
inline constexpr int maximumPaletteKeys = 60;
// Entries per row of the grid.
inline constexpr int paletteColumns = 10;

// The entries of the list at index: the first maximumPaletteKeys keys that
// have a colour. None when index is not a list.
QList<ColorPaletteEntry> paletteEntries(const QList<ColorList> &lists, int index);
// The header's title of the list at index; "Palette N" (from 1) when the list
// has no name.
QString paletteTitle(const QList<ColorList> &lists, int index);
// The page header shows only when there is more than one list.
bool hasPaletteHeader(const QList<ColorList> &lists);
bool canShowPreviousList(int index);
bool canShowNextList(int index, int listCount);

} // namespace Ombrel
