#pragma once

#include "knowledge/Color.h"
#include "model/CSSVariables.h"

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringView>

#include <optional>

namespace Ombrel {

class CSSRuleset;

// The preview at the right end of a card whose ruleset has a background
// image or gradient. Made afresh at each draw and never cached, so an edit of
// the value or of the image file shows at the next paint.
struct BackgroundThumbnail
{
    enum class Kind {
        // Nothing is drawn in the thumbnail area.
        none,
        // image, scaled to fill the area.
        image,
        // The "photo" symbol on a faint background: an image that failed.
        photoMark,
        // colors spaced evenly from top to bottom.
        linearGradient,
        // colors spaced evenly from the centre out to radialEndRadius.
        radialGradient,
    };

    Kind kind = Kind::none;
    QImage image;
    QList<Color> colors;

    static constexpr double radialEndRadius = 30;

    // The thumbnail of a card. fillSize is the area in device pixels, so that
    // a large image is decoded no larger than the area needs; filePath is the
    // stylesheet's path, empty for none.
    static BackgroundThumbnail of(const std::optional<QString> &resolvedBackgroundValue,
                                  const QString &filePath, QSize fillSize);
};

namespace BackgroundImage {

// Limits on what one thumbnail may read and decode, so that a draw never
// stalls on a large image: larger files and images show the "photo" mark.
// Most formats cost their whole pixel count whatever the size they are
// decoded to, about 20 ns a pixel for a photograph in PNG, so their bound
// keeps one decode at a few milliseconds. JPEG and SVG scale while they
// decode (JPEG by its DCT, to an eighth at least), and a Full HD image of
// theirs still shows.
inline constexpr qint64 maxFileBytes = 16 * 1024 * 1024;
inline constexpr qint64 maxDecodedPixels = 400 * 400;
inline constexpr qint64 maxScaledDecodePixels = 1920 * 1080;

// The raw background-image, or else background, through resolveVars; none
// when neither is declared.
std::optional<QString> resolvedBackgroundValue(const CSSRuleset &ruleset,
                                               const CSSVariables &variables);

// The text inside the first "url(" of text, trimmed of blanks and of one pair
// of matching quotes; none without "url(" or without its closing parenthesis.
std::optional<QString> urlArgument(QStringView text);

// The image of the first url() of text: a data: URL decoded from base64, an
// absolute path, or a path relative to the folder of filePath (empty for
// none). An image larger than fillSize in both directions is decoded at the
// smallest size that still covers fillSize; an invalid fillSize decodes the
// image whole. None for every failure.
std::optional<QImage> loadImageFromCSS(QStringView text, const QString &filePath, QSize fillSize);

// The colours of the first linear-, radial- or conic-gradient() of value, in
// order; stop positions, angles and directions are dropped. One gray when no
// gradient or no colour is found.
QList<Color> gradientColors(QStringView value);

} // namespace BackgroundImage

} // namespace Ombrel
