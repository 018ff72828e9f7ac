#include "SystemColorLists.h"

#include "colour/ToolkitColor.h"

#include <QColorDialog>
#include <QCoreApplication>

namespace Ombrel {

namespace {

ColorList listByHex(const QString &name, int count, QColor (*colorAt)(int))
{
    ColorList list{name, {}, {}};
    for (int i = 0; i < count; ++i) {
        const QColor qcolor = colorAt(i);
        list.add(cssHexOf(qcolor), colorFromToolkit(qcolor));
    }
    return list;
}

} // namespace

QList<ColorList> systemColorLists()
{
    // The dialog's 48 standard colours, its grid of six rows of eight.
    constexpr int standardColorCount = 48;
    QList<ColorList> lists;
    lists.append(listByHex(QCoreApplication::translate("Ombrel::ColorPaletteGrid", "Basic Colors"),
                           standardColorCount, &QColorDialog::standardColor));
    ColorList named{
        QCoreApplication::translate("Ombrel::ColorPaletteGrid", "Named Colors"), {}, {}};
    for (const QString &name : QColor::colorNames())
        named.add(name, colorFromToolkit(QColor::fromString(name)));
    lists.append(named);
    lists.append(listByHex(QCoreApplication::translate("Ombrel::ColorPaletteGrid", "Custom Colors"),
                           QColorDialog::customCount(), &QColorDialog::customColor));
    return lists;
}

const QList<ColorList> &availableColorLists()
{
    return ColorListStore::lists(systemColorLists);
}

} // namespace Ombrel
