#include "VariablePickerPopover.h"

#include "colour/widgets/ColorSwatchView.h"
#include "knowledge/Color.h"

#include "inspector/widgets/InspectorStyle.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace Ombrel {

namespace {

constexpr int rowHorizontalInset = 12;
constexpr int rowVerticalInset = 7;
constexpr int rowSpacing = 8;
constexpr int swatchSize = 14;
constexpr qreal swatchRadius = 2;
constexpr qreal swatchStrokeOpacity = 0.15;
constexpr int checkmarkSize = 10;
constexpr int dividerInset = 12;

QFrame *divider(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, InspectorStyle::separator(palette));
    line->setPalette(palette);
    return line;
}

// The frame of the filter: the text background at 0.7 in a rounded box
// with a hairline of the separator colour.
class FilterBox : public QWidget
{
public:
    explicit FilterBox(QWidget *parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor base = palette().color(QPalette::Base);
        base.setAlphaF(0.7f * base.alphaF());
        painter.setBrush(base);
        painter.setPen(QPen(InspectorStyle::separator(palette()), 0.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.25, 0.25, -0.25, -0.25), 5, 5);
    }
};

} // namespace

VariableRowDelegate::VariableRowDelegate(QObject *parent)
    : QStyledItemDelegate(parent), m_nameFont(InspectorStyle::monospacedFont(12)),
      m_valueFont(fontOfSize(10))
{}

QSize VariableRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    const int text = QFontMetrics(m_nameFont).height() + 1 + QFontMetrics(m_valueFont).height();
    // The divider under the row.
    return QSize(VariablePickerPopover::fixedWidth, 2 * rowVerticalInset + text + 1);
}

void VariableRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    const QPalette &palette = option.palette;
    QRect row = option.rect;
    row.setBottom(row.bottom() - 1);
    painter->fillRect(
        QRect(row.left() + dividerInset, option.rect.bottom(), row.width() - dividerInset, 1),
        InspectorStyle::separator(palette));
    const bool active = index.data(VariablePickerModel::IsActiveRole).toBool();
    if (active)
        painter->fillRect(row, InspectorStyle::accent(palette, 0.08));

    QRect content =
        row.adjusted(rowHorizontalInset, rowVerticalInset, -rowHorizontalInset, -rowVerticalInset);
    const QString raw = index.data(VariablePickerModel::ValueRole).toString();
    if (const std::optional<Color> color = Color::fromCssString(raw)) {
        const QRectF swatch(content.left(), content.center().y() - swatchSize / 2.0 + 0.5,
                            swatchSize, swatchSize);
        paintColorSwatch(*painter, swatch, color, swatchRadius, swatchStrokeOpacity);
        content.setLeft(content.left() + swatchSize + rowSpacing);
    }
    if (active) {
        const QPixmap check =
            symbolPixmap(QStringLiteral("checkmark"), checkmarkSize,
                         InspectorStyle::accent(palette), painter->device()->devicePixelRatioF());
        painter->drawPixmap(content.right() - checkmarkSize + 1,
                            content.center().y() - checkmarkSize / 2, check);
        content.setRight(content.right() - checkmarkSize - rowSpacing);
    }

    const QFontMetrics nameMetrics(m_nameFont);
    const QFontMetrics valueMetrics(m_valueFont);
    const QRect name(content.left(), content.top(), content.width(), nameMetrics.height());
    const QRect value(content.left(), name.bottom() + 2, content.width(), valueMetrics.height());
    painter->setFont(m_nameFont);
    painter->setPen(palette.color(QPalette::WindowText));
    painter->drawText(
        name, Qt::AlignLeft | Qt::AlignVCenter,
        nameMetrics.elidedText(index.data().toString(), Qt::ElideRight, name.width()));
    painter->setFont(m_valueFont);
    painter->setPen(InspectorStyle::secondary(palette));
    painter->drawText(value, Qt::AlignLeft | Qt::AlignVCenter,
                      valueMetrics.elidedText(raw, Qt::ElideRight, value.width()));
}

VariablePickerPopover::VariablePickerPopover(VariableChoices variables,
                                             std::optional<QString> activeVarName,
                                             std::function<void(const QString &)> onSelect,
                                             std::function<void()> onClearVar, QWidget *parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint),
      m_model(std::move(variables), std::move(activeVarName)), m_onSelect(std::move(onSelect)),
      m_onClearVar(std::move(onClearVar))
{
    setAttribute(Qt::WA_DeleteOnClose);
    // A window of its own, drawn in the colours of the row's window.
    setAttribute(Qt::WA_WindowPropagation);
    if (parent)
        setPalette(parent->palette());
    setFixedWidth(fixedWidth);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildHeader());
    layout->addWidget(divider(this));

    m_list = new QListView(this);
    m_list->setModel(&m_model);
    m_list->setItemDelegate(new VariableRowDelegate(m_list));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setUniformItemSizes(true);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->setAutoFillBackground(false);
    m_list->setMouseTracking(true);
    connect(m_list, &QListView::clicked, this, [this](const QModelIndex &index) {
        if (m_onSelect)
            m_onSelect(index.data().toString());
    });
    layout->addWidget(m_list);

    m_empty = new QLabel(this);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setFont(fontOfSize(12));
    m_empty->setContentsMargins(0, 20, 0, 20);
    InspectorStyle::setTextColor(m_empty, InspectorStyle::secondary(palette()));
    layout->addWidget(m_empty);

    if (m_onClearVar) {
        layout->addWidget(divider(this));
        auto *button = new SymbolButton(QStringLiteral("xmark.circle"), 11, this);
        button->setText(tr("Use raw value"));
        button->setSymbolColor(InspectorStyle::secondary(palette()));
        button->setInsets(QMargins(12, 8, 12, 8));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(button, &QAbstractButton::clicked, this, [this] {
            if (m_onClearVar)
                m_onClearVar();
        });
        layout->addWidget(button);
        m_useRawValue = button;
    }

    connect(&m_model, &VariablePickerModel::searchTextChanged, this,
            &VariablePickerPopover::updateList);
    updateList();
}

QWidget *VariablePickerPopover::buildHeader()
{
    auto *header = new QWidget(this);
    auto *column = new QVBoxLayout(header);
    column->setContentsMargins(12, 10, 12, 8);
    column->setSpacing(6);

    auto *title = makeLabel(tr("Variables"), 11, QFont::DemiBold, header);
    InspectorStyle::setTextColor(title, InspectorStyle::secondary(palette()));
    column->addWidget(title);

    auto *box = new FilterBox(header);
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(6, 3, 6, 3);
    row->setSpacing(4);
    auto *glass = new QLabel(box);
    glass->setPixmap(symbolPixmap(QStringLiteral("magnifyingglass"), 10,
                                  InspectorStyle::secondary(palette()), devicePixelRatioF()));
    row->addWidget(glass);
    m_filter = new QLineEdit(box);
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setFont(fontOfSize(12));
    m_filter->setFrame(false);
    QPalette clear = m_filter->palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    m_filter->setPalette(clear);
    connect(m_filter, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_model.setSearchText(text); });
    row->addWidget(m_filter, 1);
    m_clearFilter = new SymbolButton(QStringLiteral("xmark.circle.fill"), 10, box);
    m_clearFilter->setSymbolColor(InspectorStyle::secondary(palette()));
    m_clearFilter->setToolTip(tr("Clear"));
    connect(m_clearFilter, &QAbstractButton::clicked, this, [this] { m_filter->clear(); });
    row->addWidget(m_clearFilter);
    column->addWidget(box);
    return header;
}

void VariablePickerPopover::updateList()
{
    const bool empty = m_model.rowCount() == 0;
    m_clearFilter->setVisible(!m_model.searchText().isEmpty());
    m_list->setVisible(!empty);
    m_empty->setVisible(empty);
    m_empty->setText(m_model.searchText().isEmpty() ? tr("No variables") : tr("No matches"));
    if (!empty) {
        const int rowHeight = m_list->sizeHintForRow(0);
        m_list->setFixedHeight(std::min(maximumListHeight, rowHeight * m_model.rowCount()));
    }
    adjustSize();
}

void VariablePickerPopover::popup(const QPoint &globalPosition)
{
    move(globalPosition);
    show();
    m_filter->setFocus(Qt::PopupFocusReason);
}

void VariablePickerPopover::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(InspectorStyle::separator(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void VariablePickerPopover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void VariablePickerPopover::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    Q_EMIT closed();
}

} // namespace Ombrel
