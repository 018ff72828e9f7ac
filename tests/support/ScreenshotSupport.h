#pragma once

// Shared by the tests that write pictures for review: one light and one dark
// palette, and the look pinned (style, font), so that the pictures of every
// area compare across runs and beside each other.

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QFont>
#include <QImage>
#include <QPalette>
#include <QStyle>
#include <QWidget>

namespace Screenshots {

inline QPalette lightPalette()
{
    // The application's style is Fusion once pinLook() ran.
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Window, QColor(0xf5, 0xf5, 0xf7));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x64, 0xd8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x86, 0x86, 0x8b));
    palette.setColor(QPalette::Mid, QColor(0xd2, 0xd2, 0xd7));
    return palette;
}

inline QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::WindowText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Base, QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::AlternateBase, QColor(0x32, 0x32, 0x32));
    palette.setColor(QPalette::Text, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
    palette.setColor(QPalette::ButtonText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x98, 0x98, 0x9d));
    palette.setColor(QPalette::Mid, QColor(0x48, 0x48, 0x4a));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

inline QPalette palette(bool dark)
{
    return dark ? darkPalette() : lightPalette();
}

// Fusion and DejaVu Sans at 10 points, whatever the desktop says.
inline void pinLook()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    QApplication::setFont(font);
}

// The widget as it is painted once pending events ran, written to folder
// as name.png; a null image when it could not be written.
inline QImage savePicture(QWidget *widget, const QDir &folder, const QString &name)
{
    QApplication::processEvents();
    const QImage image = widget->grab().toImage();
    if (image.isNull() || !image.save(folder.filePath(name + QStringLiteral(".png"))))
        return {};
    return image;
}

} // namespace Screenshots
