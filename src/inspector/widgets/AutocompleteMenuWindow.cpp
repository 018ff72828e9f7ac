#include "AutocompleteMenuWindow.h"

#include "inspector/AutocompleteMenu.h"
#include "inspector/widgets/InspectorStyle.h"
#include "widgets/SymbolIcon.h"

#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace Ombrel {

namespace {

constexpr int symbolSize = 10;
constexpr int symbolSpacing = 6;
constexpr int captionSize = 11;
constexpr int emptyInset = 8;

bool isLastRow(const QModelIndex &index)
{
    return index.row() == index.model()->rowCount() - 1;
}

} // namespace

AutocompleteRowDelegate::AutocompleteRowDelegate(QObject *parent)
    : QStyledItemDelegate(parent), m_font(InspectorStyle::monospacedFont())
{}

QSize AutocompleteRowDelegate::sizeHint(const QStyleOptionViewItem &,
                                        const QModelIndex &index) const
{
    const QFontMetrics metrics(m_font);
    const bool typed = index.data(AutocompleteMenu::IsTypedRole).toBool();
    const int width = 2 * horizontalInset + metrics.horizontalAdvance(index.data().toString()) +
                      (typed ? symbolSize + symbolSpacing : 0);
    const int divider = isLastRow(index) ? 0 : 1;
    return QSize(width, 2 * verticalInset + metrics.height() + divider);
}

void AutocompleteRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const
{
    const QPalette &palette = option.palette;
    QRect row = option.rect;
    if (!isLastRow(index)) {
        row.setBottom(row.bottom() - 1);
        painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                          InspectorStyle::separator(palette));
    }
    const bool selected = index.data(AutocompleteMenu::IsSelectedRole).toBool();
    if (selected)
        painter->fillRect(row, InspectorStyle::accent(palette));
    const QColor textColor = selected ? QColor(Qt::white) : palette.color(QPalette::WindowText);

    QRect content = row.adjusted(horizontalInset, verticalInset, -horizontalInset, -verticalInset);
    if (index.data(AutocompleteMenu::IsTypedRole).toBool()) {
        const QColor symbolColor =
            selected ? QColor(Qt::white) : InspectorStyle::secondary(palette);
        const QPixmap symbol = symbolPixmap(QStringLiteral("text.cursor"), symbolSize, symbolColor,
                                            painter->device()->devicePixelRatioF());
        painter->drawPixmap(content.left(), content.center().y() - symbolSize / 2 + 1, symbol);
        content.setLeft(content.left() + symbolSize + symbolSpacing);
    }
    painter->setFont(m_font);
    painter->setPen(textColor);
    const QString label =
        QFontMetrics(m_font).elidedText(index.data().toString(), Qt::ElideRight, content.width());
    painter->drawText(content, Qt::AlignLeft | Qt::AlignVCenter, label);
}

AutocompleteMenuWindow::AutocompleteMenuWindow(AutocompleteMenu &menu, QWidget *parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_menu(menu), m_list(new QListView(this)), m_empty(new QLabel(tr("No suggestions"), this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    // A window of its own, drawn in the colours of the field's window.
    setAttribute(Qt::WA_WindowPropagation);
    if (parent)
        setPalette(parent->palette());
    setFocusPolicy(Qt::NoFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, verticalInset, 1, verticalInset);
    layout->setSpacing(0);

    m_list->setModel(&menu);
    m_list->setItemDelegate(new AutocompleteRowDelegate(m_list));
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->setAutoFillBackground(false);
    layout->addWidget(m_list);
    connect(m_list, &QListView::clicked, this,
            [this](const QModelIndex &index) { Q_EMIT rowClicked(index.row()); });

    m_empty->setFont(fontOfCaption());
    m_empty->setContentsMargins(emptyInset, emptyInset, emptyInset, emptyInset);
    InspectorStyle::setTextColor(m_empty, InspectorStyle::secondary(palette()));
    layout->addWidget(m_empty);
}

QFont AutocompleteMenuWindow::fontOfCaption()
{
    QFont font;
    font.setPixelSize(captionSize);
    return font;
}

void AutocompleteMenuWindow::placeUnder(const QWidget *field)
{
    const bool empty = m_menu.rowCount() == 0;
    m_list->setVisible(!empty);
    m_empty->setVisible(empty);
    int content = 0;
    if (empty) {
        content = m_empty->sizeHint().height();
    } else {
        QStyleOptionViewItem option;
        option.initFrom(m_list);
        for (int row = 0; row < m_menu.rowCount(); ++row)
            content += m_list->itemDelegate()->sizeHint(option, m_menu.index(row)).height();
    }
    const int height = std::min(maximumHeight, content + 2 * verticalInset);
    const int width = std::max(minimumWidth, field->width());
    setGeometry(QRect(field->mapToGlobal(QPoint(0, field->height())), QSize(width, height)));
}

void AutocompleteMenuWindow::scrollToSelection()
{
    const QModelIndex selected = m_menu.index(m_menu.selectedIndex());
    // The rows of a window that just appeared are laid out when first
    // painted; the scroll needs them now.
    layout()->activate();
    m_list->doItemsLayout();
    if (selected.isValid())
        m_list->scrollTo(selected, QAbstractItemView::PositionAtTop);
}

void AutocompleteMenuWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(InspectorStyle::separator(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace Ombrel
