#pragma once

// Image files written by the card tests: small solid PNGs, and PNGs that
// declare any size without holding its pixels.

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>
#include <QtEndian>

namespace TestImages {

inline QByteArray pngBytes(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

inline QByteArray pngChunk(const char *type, const QByteArray &data)
{
    const QByteArray body = QByteArray(type) + data;
    QByteArray length(4, '\0');
    qToBigEndian<quint32>(quint32(data.size()), length.data());
    quint32 crc = 0xffffffffu;
    for (const char byte : body) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    QByteArray check(4, '\0');
    qToBigEndian<quint32>(crc ^ 0xffffffffu, check.data());
    return length + body + check;
}

// A black greyscale PNG of the given size. With pixels it is a whole valid
// file; without, only its header is valid, enough to declare the size.
inline QByteArray greyPng(quint32 width, quint32 height, bool withPixels)
{
    QByteArray header(13, '\0');
    qToBigEndian<quint32>(width, header.data());
    qToBigEndian<quint32>(height, header.data() + 4);
    header[8] = 8; // bits per sample
    QByteArray png = QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header);
    if (withPixels) {
        // One filter byte and width zero samples per row; qCompress puts a
        // length before the zlib stream.
        const QByteArray rows(qsizetype(width + 1) * height, '\0');
        png += pngChunk("IDAT", qCompress(rows).mid(4));
    } else {
        png += pngChunk("IDAT", QByteArray(64, '\0'));
    }
    return png + pngChunk("IEND", {});
}

} // namespace TestImages
