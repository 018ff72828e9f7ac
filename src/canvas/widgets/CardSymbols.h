#pragma once

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace Ombrel {

// The small monochrome symbols of the cards ("character", "app", "photo"),
// drawn from the application's own SVG resources in any colour. Tinted
// pixmaps are kept per name, size, scale and colour: a card repaints often
// and its symbols come in few variants.
class CardSymbols
{
public:
    // Draws the symbol filling a square of side size centred in rect.
    void paint(QPainter *painter, const QString &name, const QRectF &rect, double size,
               const QColor &color);

private:
    QPixmap tinted(const QString &name, int pixels, const QColor &color);

    QHash<QString, QPixmap> m_pixmaps;
};

} // namespace Ombrel
