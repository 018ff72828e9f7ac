#include "ColorLists.h"

#include <QCoreApplication>

namespace Ombrel {

std::optional<Color> ColorList::color(const QString &key) const
{
    const auto found = colors.constFind(key);
    if (found == colors.constEnd())
        return std::nullopt;
    return *found;
}

void ColorList::add(const QString &key, const Color &color)
{
    if (!colors.contains(key))
        keys.append(key);
    colors.insert(key, color);
}

namespace {

struct Store
{
    ColorListProvider replacement;
    std::optional<QList<ColorList>> lists;
};

Store &store()
{
    static Store instance;
    return instance;
}

} // namespace

void ColorListStore::replaceProvider(ColorListProvider provider)
{
    store().replacement = std::move(provider);
}

const QList<ColorList> &ColorListStore::lists(const ColorListProvider &systemLists)
{
    Store &s = store();
    if (!s.lists)
        s.lists = s.replacement ? s.replacement() : systemLists();
    return *s.lists;
}

QList<ColorPaletteEntry> paletteEntries(const QList<ColorList> &lists, int index)
{
    QList<ColorPaletteEntry> entries;
    if (index < 0 || index >= lists.size())
        return entries;
    const ColorList &list = lists[index];
    for (const QString &key : list.keys.mid(0, maximumPaletteKeys)) {
        if (const std::optional<Color> color = list.color(key))
            entries.append(ColorPaletteEntry(key, *color));
    }
    return entries;
}

QString paletteTitle(const QList<ColorList> &lists, int index)
{
    if (index >= 0 && index < lists.size() && !lists[index].name.isEmpty())
        return lists[index].name;
    return QCoreApplication::translate("Ombrel::ColorPaletteGrid", "Palette %1").arg(index + 1);
}

bool hasPaletteHeader(const QList<ColorList> &lists)
{
    return lists.size() >= 2;
}

bool canShowPreviousList(int index)
{
    return index > 0;
}

bool canShowNextList(int index, int listCount)
{
    return index < listCount - 1;
}

} // namespace Ombrel
