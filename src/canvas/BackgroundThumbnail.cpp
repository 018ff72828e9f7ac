#include "BackgroundThumbnail.h"

#include "model/CSSRuleset.h"
#include "text/TextScan.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace Ombrel {

namespace {

// The smallest size of the image's shape that covers fill, or the image's
// own size when it is already no larger than that.
QSize decodeSize(QSize imageSize, QSize fill)
{
    if (!fill.isValid() || fill.isEmpty())
        return imageSize;
    const QSize covering = imageSize.scaled(fill, Qt::KeepAspectRatioByExpanding);
    if (covering.width() >= imageSize.width() || covering.height() >= imageSize.height())
        return imageSize;
    return covering.expandedTo(QSize(1, 1));
}

// The most pixels an image of the reader's format may have.
qint64 pixelBound(const QImageReader &reader)
{
    const QByteArray format = reader.format();
    return format == "jpeg" || format == "svg" ? BackgroundImage::maxScaledDecodePixels
                                               : BackgroundImage::maxDecodedPixels;
}

// Qt reads PNG itself. Naming the format spares the reader from loading
// every image plugin to ask each whether it knows the data, which costs
// milliseconds the first time: the card of the first file shown may be
// drawing the window's first frame.
void nameBuiltInFormat(QImageReader &reader)
{
    static const QByteArray pngSignature("\x89PNG\r\n\x1a\n", 8);
    if (reader.device()->peek(pngSignature.size()) != pngSignature)
        return;
    reader.setFormat("png");
    reader.setAutoDetectImageFormat(false);
}

std::optional<QImage> readBounded(QImageReader &reader, QSize fill)
{
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        return std::nullopt;
    if (qint64(size.width()) * size.height() > pixelBound(reader))
        return std::nullopt;
    reader.setScaledSize(decodeSize(size, fill));
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return image;
}

std::optional<QImage> imageFromData(QByteArray data, QSize fill)
{
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    nameBuiltInFormat(reader);
    return readBounded(reader, fill);
}

std::optional<QImage> imageFromFile(const QString &path, QSize fill)
{
    // Only regular files: a pipe or a device could block the draw.
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > BackgroundImage::maxFileBytes)
        return std::nullopt;
    // Made from the name, the reader finds other formats by its suffix as
    // well as by content; it reads from the file opened here.
    QImageReader reader(path);
    if (!reader.device()->open(QIODevice::ReadOnly))
        return std::nullopt;
    nameBuiltInFormat(reader);
    return readBounded(reader, fill);
}

std::optional<QByteArray> strictBase64(QStringView text)
{
    // Blanks, line breaks and missing padding all fail, as a strict decoder
    // with default options would have it.
    if (text.size() % 4 != 0 || text.size() > BackgroundImage::maxFileBytes / 3 * 4)
        return std::nullopt;
    auto decoded = QByteArray::fromBase64Encoding(
        text.toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return std::move(decoded.decoded);
}

} // namespace

namespace BackgroundImage {

std::optional<QString> resolvedBackgroundValue(const CSSRuleset &ruleset,
                                               const CSSVariables &variables)
{
    std::optional<QString> raw = ruleset.value(u"background-image");
    if (!raw)
        raw = ruleset.value(u"background");
    if (!raw)
        return std::nullopt;
    return CSSRuleset::resolveVars(*raw, variables);
}

std::optional<QString> urlArgument(QStringView text)
{
    static const QString opening = QStringLiteral("url(");
    const qsizetype start = text.indexOf(opening);
    if (start < 0)
        return std::nullopt;
    const qsizetype open = start + opening.size();
    const qsizetype close = TextScan::closingParenthesis(text, open);
    if (close < 0)
        return std::nullopt;
    QStringView inner = TextScan::trimmedWhitespace(text.sliced(open, close - open));
    for (const QChar quote : {QChar(u'"'), QChar(u'\'')}) {
        if (inner.size() >= 2 && inner.startsWith(quote) && inner.endsWith(quote)) {
            inner = inner.sliced(1, inner.size() - 2);
            break;
        }
    }
    return inner.toString();
}

std::optional<QImage> loadImageFromCSS(QStringView text, const QString &filePath, QSize fillSize)
{
    const std::optional<QString> inner = urlArgument(text);
    if (!inner)
        return std::nullopt;
    if (inner->startsWith(QLatin1String("data:"))) {
        const qsizetype comma = inner->indexOf(u',');
        if (comma < 0)
            return std::nullopt;
        const std::optional<QByteArray> data = strictBase64(QStringView(*inner).sliced(comma + 1));
        if (!data)
            return std::nullopt;
        return imageFromData(*data, fillSize);
    }
    if (filePath.isEmpty())
        return std::nullopt;
    if (inner->startsWith(u'/'))
        return imageFromFile(*inner, fillSize);
    return imageFromFile(QFileInfo(filePath).path() + QLatin1Char('/') + *inner, fillSize);
}

QList<Color> gradientColors(QStringView value)
{
    std::optional<QStringView> arguments;
    for (const QLatin1String prefix :
         {QLatin1String("linear-gradient("), QLatin1String("radial-gradient("),
          QLatin1String("conic-gradient(")}) {
        const qsizetype start = value.indexOf(prefix, 0, Qt::CaseInsensitive);
        if (start < 0)
            continue;
        const qsizetype open = start + prefix.size();
        const qsizetype close = TextScan::closingParenthesis(value, open);
        if (close < 0)
            continue;
        arguments = value.sliced(open, close - open);
        break;
    }
    if (!arguments)
        return {Palette::gray};

    QList<QStringView> parts;
    int depth = 0;
    qsizetype partStart = 0;
    for (qsizetype at = 0; at < arguments->size(); ++at) {
        const QChar c = arguments->at(at);
        if (c == u'(')
            ++depth;
        else if (c == u')')
            --depth;
        else if (c == u',' && depth == 0) {
            parts.append(TextScan::trimmedWhitespace(arguments->sliced(partStart, at - partStart)));
            partStart = at + 1;
        }
    }
    const QStringView last = TextScan::trimmedWhitespace(arguments->sliced(partStart));
    if (!last.isEmpty())
        parts.append(last);

    QList<Color> colors;
    for (const QStringView part : parts) {
        if (const std::optional<Color> whole = Color::fromCssString(part)) {
            colors.append(*whole);
            continue;
        }
        qsizetype wordStart = 0;
        for (qsizetype at = 0; at <= part.size(); ++at) {
            if (at < part.size() && !TextScan::isWhitespace(part[at].unicode()))
                continue;
            const std::optional<Color> color =
                Color::fromCssString(part.sliced(wordStart, at - wordStart));
            wordStart = at + 1;
            if (color) {
                colors.append(*color);
                break;
            }
        }
    }
    if (colors.isEmpty())
        return {Palette::gray};
    return colors;
}

} // namespace BackgroundImage

BackgroundThumbnail BackgroundThumbnail::of(const std::optional<QString> &resolvedBackgroundValue,
                                            const QString &filePath, QSize fillSize)
{
    BackgroundThumbnail thumbnail;
    if (!resolvedBackgroundValue)
        return thumbnail;
    const QString &value = *resolvedBackgroundValue;
    if (value.contains(QLatin1String("url("))) {
        if (std::optional<QImage> image =
                BackgroundImage::loadImageFromCSS(value, filePath, fillSize)) {
            thumbnail.kind = Kind::image;
            thumbnail.image = std::move(*image);
        } else {
            thumbnail.kind = Kind::photoMark;
        }
        return thumbnail;
    }
    if (value.contains(QLatin1String("gradient"))) {
        thumbnail.colors = BackgroundImage::gradientColors(value);
        thumbnail.kind = value.contains(QLatin1String("radial-gradient"), Qt::CaseInsensitive)
                             ? Kind::radialGradient
                             : Kind::linearGradient;
    }
    return thumbnail;
}

} // namespace Ombrel
