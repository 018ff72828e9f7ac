#include "ViewStyle.h"

#include "widgets/SymbolIcon.h"

#include <QLabel>
#include <QPushButton>

namespace Ombrel {

QFont fontOfSize(int pixelSize, QFont::Weight weight)
{
    QFont font;
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QLabel *makeLabel(const QString &text, int pixelSize, QFont::Weight weight, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(fontOfSize(pixelSize, weight));
    return label;
}

QColor secondaryColor(const QPalette &palette)
{
    return palette.color(QPalette::PlaceholderText);
}

QLabel *makeSecondaryLabel(const QString &text, int pixelSize, QWidget *parent)
{
    QLabel *label = makeLabel(text, pixelSize, QFont::Normal, parent);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, secondaryColor(palette));
    label->setPalette(palette);
    return label;
}

QPushButton *makeProminentButton(const QString &symbol, const QString &title, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    button->setFont(fontOfSize(14, QFont::Medium));
    button->setIcon(symbolIcon(symbol, 14, button->palette().color(QPalette::HighlightedText)));
    button->setIconSize(QSize(14, 14));
    button->setDefault(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral(
        "QPushButton { background-color: palette(highlight); color: palette(highlighted-text);"
        " border: none; border-radius: 6px; padding: 10px 24px; }"
        "QPushButton:pressed { background-color: palette(dark); }"));
    return button;
}

} // namespace Ombrel
