#include "OriginalNotice.h"

#include "canvas/SaveNotice.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"
#include "workspace/Workspace.h"

#include <QEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace Ombrel {

namespace {

constexpr int symbolSize = 14;
constexpr int horizontalPadding = 10;
constexpr int verticalPadding = 5;
constexpr int spacing = 8;
constexpr int dismissSize = 18;

// How much of the accent colour tints the window's behind the line.
constexpr qreal tint = 0.14;

QColor mixed(const QColor &base, const QColor &over, qreal amount)
{
    return QColor::fromRgbF(base.redF() + (over.redF() - base.redF()) * amount,
                            base.greenF() + (over.greenF() - base.greenF()) * amount,
                            base.blueF() + (over.blueF() - base.blueF()) * amount);
}

// Whether a notice dismissed in one state is still dismissed in another: a
// kept original is what the notice before the save promised.
bool staysDismissed(OriginalState dismissedIn, OriginalState now)
{
    return dismissedIn == now ||
           (dismissedIn == OriginalState::BeforeSave && now == OriginalState::Kept);
}

} // namespace

OriginalNotice::OriginalNotice(Workspace &workspace, QWidget *parent)
    : QWidget(parent), m_workspace(workspace), m_dismiss(new QToolButton(this))
{
    setObjectName(QStringLiteral("originalNotice"));
    m_dismiss->setObjectName(QStringLiteral("dismissNotice"));
    m_dismiss->setAutoRaise(true);
    m_dismiss->setFocusPolicy(Qt::NoFocus);
    m_dismiss->setIconSize(QSize(11, 11));
    m_dismiss->setFixedSize(dismissSize, dismissSize);
    m_dismiss->setToolTip(tr("Dismiss"));
    connect(m_dismiss, &QToolButton::clicked, this, &OriginalNotice::dismiss);
    connect(&workspace, &Workspace::selectedFileChanged, this, &OriginalNotice::followSelectedFile);
    applyPalette();
    followSelectedFile();
}

void OriginalNotice::followSelectedFile()
{
    disconnect(m_fileConnection);
    m_file = m_workspace.selectedFile();
    if (m_file)
        m_fileConnection = connect(m_file.get(), &CSSFile::originalStateChanged, this,
                                   &OriginalNotice::updateNotice);
    updateNotice();
}

void OriginalNotice::updateNotice()
{
    m_text = m_file ? saveNoticeText(*m_file) : QString();
    setToolTip(m_text);
    const auto dismissed = m_file ? m_dismissed.constFind(m_file->id()) : m_dismissed.cend();
    const bool hidden = dismissed != m_dismissed.cend() &&
                        staysDismissed(dismissed.value(), m_file->originalState());
    setVisible(!m_text.isEmpty() && !hidden);
    update();
}

void OriginalNotice::dismiss()
{
    if (!m_file)
        return;
    m_dismissed.insert(m_file->id(), m_file->originalState());
    updateNotice();
}

QSize OriginalNotice::sizeHint() const
{
    const int height = std::max({fontMetrics().height(), symbolSize, dismissSize});
    return QSize(horizontalPadding * 2 + symbolSize + spacing +
                     fontMetrics().horizontalAdvance(m_text) + spacing + dismissSize,
                 height + verticalPadding * 2 + 1);
}

QSize OriginalNotice::minimumSizeHint() const
{
    // One line that elides, however narrow the pane.
    return QSize(horizontalPadding * 2 + symbolSize + spacing * 2 + dismissSize,
                 sizeHint().height());
}

QRect OriginalNotice::textRect() const
{
    const int left = horizontalPadding + symbolSize + spacing;
    const int right = width() - horizontalPadding - dismissSize - spacing;
    return QRect(left, 0, std::max(0, right - left), height() - 1);
}

void OriginalNotice::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QPalette &colours = palette();
    const QColor accent = colours.color(QPalette::Highlight);
    painter.fillRect(rect(), mixed(colours.color(QPalette::Window), accent, tint));
    painter.fillRect(QRect(0, height() - 1, width(), 1), colours.color(QPalette::Mid));

    const bool notKept = m_file && m_file->originalState() == OriginalState::NotKept;
    const QString symbol =
        notKept ? QStringLiteral("exclamationmark.triangle") : QStringLiteral("info.circle");
    const QColor symbolColour = notKept ? colours.color(QPalette::WindowText) : accent;
    const int symbolTop = (height() - 1 - symbolSize) / 2;
    painter.drawPixmap(QRect(horizontalPadding, symbolTop, symbolSize, symbolSize),
                       symbolPixmap(symbol, symbolSize, symbolColour, devicePixelRatioF()));

    const QRect area = textRect();
    painter.setPen(colours.color(QPalette::WindowText));
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, area.width()));
}

void OriginalNotice::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_dismiss->move(width() - horizontalPadding - dismissSize, (height() - 1 - dismissSize) / 2);
}

void OriginalNotice::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void OriginalNotice::applyPalette()
{
    m_dismiss->setIcon(symbolIcon(QStringLiteral("xmark"), 20, secondaryColor(palette())));
}

} // namespace Ombrel
