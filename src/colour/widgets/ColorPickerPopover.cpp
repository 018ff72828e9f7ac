#include "ColorPickerPopover.h"

#include "ColorPaletteGrid.h"
#include "ColorSwatchView.h"
#include "colour/ColorPickerModel.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"

#include <QAbstractButton>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

constexpr int padding = 12;
constexpr int topRowSpacing = 8;
constexpr int previewSide = 36;
constexpr int panelButtonSide = 22;
constexpr int bodyPixelSize = 13;
constexpr int keywordPixelSize = 10;
constexpr qreal hairline = 0.5;

QFont monospacedFont(int pixelSize)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    return font;
}

// A rounded rectangle filled with fill and outlined with a hairline of the
// separator colour.
void paintPlate(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
                const QPalette &palette)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
    const qreal inset = hairline / 2;
    painter.setPen(QPen(palette.color(QPalette::Mid), hairline));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
}

// A one-point line in the separator colour.
class Divider : public QWidget
{
public:
    explicit Divider(QWidget *parent) : QWidget(parent)
    {
        setFixedHeight(1);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), palette().color(QPalette::Mid));
    }
};

} // namespace

// The square button with the palette symbol that hands over to the chooser.
class ColorPickerPopover::PanelButton : public QAbstractButton
{
public:
    explicit PanelButton(QWidget *parent) : QAbstractButton(parent)
    {
        setFixedSize(panelButtonSide, panelButtonSide);
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr int symbolSize = 13;
        QPainter painter(this);
        paintPlate(painter, rect(), 5, palette().color(QPalette::Base), palette());
        const QPixmap symbol = symbolPixmap(QStringLiteral("paintpalette"), symbolSize,
                                            secondaryColor(palette()), devicePixelRatioF());
        const int offset = (panelButtonSide - symbolSize) / 2;
        painter.drawPixmap(QRect(offset, offset, symbolSize, symbolSize), symbol);
    }
};

// A keyword in monospaced text on a plate that takes a tint of the accent
// when the field holds exactly that keyword.
class ColorPickerPopover::KeywordButton : public QAbstractButton
{
public:
    KeywordButton(const QString &keyword, QWidget *parent) : QAbstractButton(parent)
    {
        setText(keyword);
        setFont(monospacedFont(keywordPixelSize));
        setCursor(Qt::PointingHandCursor);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    void setHighlighted(bool highlighted)
    {
        if (highlighted == m_highlighted)
            return;
        m_highlighted = highlighted;
        update();
    }
    bool isHighlighted() const { return m_highlighted; }

    QSize sizeHint() const override
    {
        constexpr int horizontalPadding = 6;
        constexpr int verticalPadding = 3;
        const QFontMetrics metrics = fontMetrics();
        return QSize(metrics.horizontalAdvance(text()) + 2 * horizontalPadding,
                     metrics.height() + 2 * verticalPadding);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QColor fill = palette().color(QPalette::Base);
        if (m_highlighted) {
            fill = palette().color(QPalette::Highlight);
            fill.setAlphaF(0.15f);
        }
        paintPlate(painter, rect(), 4, fill, palette());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    bool m_highlighted = false;
};

ColorPickerPopover::ColorPickerPopover(ColorPickerModel &model, const QList<ColorList> &lists,
                                       TextCallback onPick, TextCallback onHexSubmit,
                                       std::function<void()> onOpenPanel, QWidget *parent)
    : QWidget(nullptr, Qt::Popup), m_model(model), m_onPick(std::move(onPick)),
      m_onHexSubmit(std::move(onHexSubmit)), m_onOpenPanel(std::move(onOpenPanel))
{
    // A window does not take its owner's palette and font unless told to
    // before it has the owner.
    setAttribute(Qt::WA_WindowPropagation);
    setParent(parent, Qt::Popup);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(12);
    column->setSizeConstraint(QLayout::SetFixedSize);

    auto *top = new QHBoxLayout;
    top->setSpacing(topRowSpacing);
    m_preview = new ColorSwatchView(this, SwatchShape{previewSide, 6, 0.15});
    top->addWidget(m_preview, 0, Qt::AlignVCenter);
    auto *fieldColumn = new QVBoxLayout;
    fieldColumn->setSpacing(2);
    fieldColumn->addWidget(makeSecondaryLabel(tr("Hex / CSS value"), 10, this));
    m_field = new QLineEdit(this);
    m_field->setPlaceholderText(tr("e.g. #3b82f6"));
    m_field->setFont(monospacedFont(bodyPixelSize));
    m_field->setFixedWidth(ColorPaletteGrid::rowWidth - previewSide - panelButtonSide -
                           2 * topRowSpacing);
    fieldColumn->addWidget(m_field);
    top->addLayout(fieldColumn);
    m_panelButton = new PanelButton(this);
    m_panelButton->setToolTip(tr("Open Color Panel"));
    top->addWidget(m_panelButton, 0, Qt::AlignVCenter);
    column->addLayout(top);

    column->addWidget(new Divider(this));
    m_grid = new ColorPaletteGrid(
        m_model, lists,
        [this](const QString &hex) {
            m_model.setHexInput(hex);
            m_onPick(hex);
        },
        this);
    column->addWidget(m_grid);
    column->addWidget(new Divider(this));

    auto *keywords = new QHBoxLayout;
    keywords->setSpacing(6);
    for (const QString &keyword : colorKeywords()) {
        auto *button = new KeywordButton(keyword, this);
        connect(button, &QAbstractButton::clicked, this, [this, keyword] {
            m_model.setHexInput(keyword);
            m_onPick(keyword);
        });
        m_keywordButtons.append(button);
        keywords->addWidget(button);
    }
    keywords->addStretch(1);
    column->addLayout(keywords);

    connect(m_field, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_model.setHexInput(text); });
    connect(m_field, &QLineEdit::returnPressed, this, &ColorPickerPopover::commitHex);
    connect(m_panelButton, &QAbstractButton::clicked, this, [this] { m_onOpenPanel(); });
    connect(&m_model, &ColorPickerModel::hexInputChanged, this, &ColorPickerPopover::showHexInput);
    showHexInput(m_model.hexInput());
    m_field->setFocus();
}

bool ColorPickerPopover::hexFocused() const
{
    return m_field->hasFocus();
}

QAbstractButton *ColorPickerPopover::keywordButton(const QString &keyword) const
{
    for (KeywordButton *button : m_keywordButtons) {
        if (button->text() == keyword)
            return button;
    }
    return nullptr;
}

void ColorPickerPopover::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ColorPickerPopover::showHexInput(const QString &hexInput)
{
    if (m_field->text() != hexInput)
        m_field->setText(hexInput);
    m_preview->setColor(Color::fromCssString(hexInput));
    for (KeywordButton *button : m_keywordButtons)
        button->setHighlighted(isKeywordHighlighted(hexInput, button->text()));
}

void ColorPickerPopover::commitHex()
{
    if (const std::optional<QString> text = submittedText(m_model.hexInput()))
        m_onHexSubmit(*text);
}

} // namespace Ombrel
