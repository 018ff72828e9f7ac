#include "ColorPaletteGrid.h"

#include "colour/ColorPickerModel.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

constexpr int titlePixelSize = 11;
constexpr int chevronSize = 10;

} // namespace

// One line of secondary text that fills the width it is given and ends in an
// ellipsis when longer.
class ColorPaletteGrid::TitleLabel : public QWidget
{
public:
    explicit TitleLabel(QWidget *parent) : QWidget(parent)
    {
        setFont(fontOfSize(titlePixelSize));
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    QString text() const { return m_text; }
    void setText(const QString &text)
    {
        m_text = text;
        update();
    }

    QSize sizeHint() const override { return QSize(0, fontMetrics().height()); }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setPen(secondaryColor(palette()));
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
    }

private:
    QString m_text;
};

// The cells of a page: painted in one pass, pressed like buttons (a press and
// a release on the same cell), each with its entry's name as tooltip.
class ColorPaletteGrid::PaletteCells : public QWidget
{
public:
    PaletteCells(const QList<ColorPaletteEntry> &entries, std::function<void(int)> onPress,
                 QWidget *parent)
        : QWidget(parent), m_entries(entries), m_onPress(std::move(onPress))
    {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override
    {
        const int count = int(m_entries.size());
        const int rows = (count + paletteColumns - 1) / paletteColumns;
        const int height = rows == 0 ? 0
                                     : rows * ColorPaletteGrid::cellSide +
                                           (rows - 1) * ColorPaletteGrid::cellSpacing;
        return QSize(ColorPaletteGrid::rowWidth, height);
    }

    void entriesChanged()
    {
        m_pressed = -1;
        updateGeometry();
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        constexpr qreal strokeWidth = 0.5;
        const qreal inset = strokeWidth / 2;
        const QPen stroke(QColor::fromRgbF(0, 0, 0, 0.15f), strokeWidth);
        for (int i = 0; i < m_entries.size(); ++i) {
            const QRectF cell = ColorPaletteGrid::cellRect(i);
            painter.setPen(Qt::NoPen);
            painter.setBrush(m_entries[i].color.toQColor());
            painter.drawRoundedRect(cell, 3, 3);
            painter.setPen(stroke);
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(cell.adjusted(inset, inset, -inset, -inset), 3, 3);
        }
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip) {
            auto *help = static_cast<QHelpEvent *>(event);
            const int index = indexAt(help->pos());
            if (index < 0)
                QToolTip::hideText();
            else
                QToolTip::showText(help->globalPos(), m_entries[index].name, this,
                                   ColorPaletteGrid::cellRect(index));
            return true;
        }
        return QWidget::event(event);
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        m_pressed = event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : -1;
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const int pressed = m_pressed;
        m_pressed = -1;
        if (event->button() == Qt::LeftButton && pressed >= 0 &&
            indexAt(event->position().toPoint()) == pressed)
            m_onPress(pressed);
    }

private:
    int indexAt(QPoint pos) const
    {
        for (int i = 0; i < m_entries.size(); ++i) {
            if (ColorPaletteGrid::cellRect(i).contains(pos))
                return i;
        }
        return -1;
    }

    const QList<ColorPaletteEntry> &m_entries;
    std::function<void(int)> m_onPress;
    int m_pressed = -1;
};

ColorPaletteGrid::ColorPaletteGrid(ColorPickerModel &model, const QList<ColorList> &lists,
                                   PickCallback onPick, QWidget *parent)
    : QWidget(parent), m_model(model), m_lists(lists), m_onPick(std::move(onPick))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    if (hasPaletteHeader(m_lists)) {
        m_header = new QWidget(this);
        auto *row = new QHBoxLayout(m_header);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(4);
        const auto makeChevron = [this] {
            auto *button = new QToolButton(m_header);
            button->setAutoRaise(true);
            button->setFocusPolicy(Qt::NoFocus);
            button->setIconSize(QSize(chevronSize, chevronSize));
            return button;
        };
        m_previous = makeChevron();
        m_title = new TitleLabel(m_header);
        m_next = makeChevron();
        row->addWidget(m_previous);
        row->addWidget(m_title, 1);
        row->addWidget(m_next);
        column->addWidget(m_header);
        drawChevrons();
        connect(m_previous, &QToolButton::clicked, this, [this] { m_model.showPreviousList(); });
        connect(m_next, &QToolButton::clicked, this,
                [this] { m_model.showNextList(int(m_lists.size())); });
    }
    m_cells = new PaletteCells(
        m_entries, [this](int index) { m_onPick(m_entries[index].hex()); }, this);
    column->addWidget(m_cells);
    connect(&m_model, &ColorPickerModel::paletteIndexChanged, this, &ColorPaletteGrid::showPage);
    showPage();
}

QString ColorPaletteGrid::title() const
{
    return m_title ? m_title->text() : QString();
}

QWidget *ColorPaletteGrid::cellsWidget() const
{
    return m_cells;
}

QRect ColorPaletteGrid::cellRect(int index)
{
    const int row = index / paletteColumns;
    const int column = index % paletteColumns;
    return QRect(column * (cellSide + cellSpacing), row * (cellSide + cellSpacing), cellSide,
                 cellSide);
}

void ColorPaletteGrid::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_header)
        drawChevrons();
}

void ColorPaletteGrid::showPage()
{
    const int index = m_model.paletteIndex();
    m_entries = paletteEntries(m_lists, index);
    m_cells->entriesChanged();
    if (m_header) {
        m_title->setText(paletteTitle(m_lists, index));
        m_previous->setEnabled(canShowPreviousList(index));
        m_next->setEnabled(canShowNextList(index, int(m_lists.size())));
    }
}

void ColorPaletteGrid::drawChevrons()
{
    const QColor colour = secondaryColor(palette());
    m_previous->setIcon(symbolIcon(QStringLiteral("chevron.left"), chevronSize, colour));
    m_next->setIcon(symbolIcon(QStringLiteral("chevron.right"), chevronSize, colour));
}

} // namespace Ombrel
