#include "CanvasTabButtons.h"

#include "widgets/SymbolIcon.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVariantAnimation>

namespace Ombrel {

namespace {

struct TabInfo
{
    CanvasTab tab;
    const char *label;
    const char *symbol;
};

constexpr TabInfo tabInfos[] = {
    {CanvasTab::Nodes, QT_TRANSLATE_NOOP("Ombrel::CanvasTabButtons", "Rulesets"),
     "rectangle.3.group"},
    {CanvasTab::Variables, QT_TRANSLATE_NOOP("Ombrel::CanvasTabButtons", "Variables"),
     "curlybraces"},
    {CanvasTab::Code, QT_TRANSLATE_NOOP("Ombrel::CanvasTabButtons", "Code"),
     "chevron.left.forwardslash.chevron.right"},
};

QColor mixed(const QColor &from, const QColor &to, double progress)
{
    const auto mix = [progress](float a, float b) { return a + float(progress) * (b - a); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

} // namespace

CanvasTabButtons::CanvasTabButtons(QWidget *parent)
    : QWidget(parent), m_animation(new QVariantAnimation(this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (const TabInfo &info : tabInfos) {
        auto *button = new QToolButton(this);
        button->setText(tr(info.label));
        button->setIconSize(QSize(12, 12));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this,
                [this, tab = info.tab] { Q_EMIT tabClicked(tab); });
        m_buttons[int(info.tab)] = button;
        row->addWidget(button);
    }

    m_animation->setStartValue(0.0);
    m_animation->setEndValue(1.0);
    m_animation->setDuration(colourDurationMs);
    m_animation->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { showColours(value.toDouble()); });
    setCurrent(CanvasTab::Nodes, false);
}

void CanvasTabButtons::setCurrent(CanvasTab tab, bool animated)
{
    m_animation->stop();
    m_current = tab;
    for (const TabInfo &info : tabInfos) {
        QToolButton *button = m_buttons[int(info.tab)];
        QFont font = button->font();
        font.setPointSizeF(12);
        font.setWeight(info.tab == tab ? QFont::DemiBold : QFont::Normal);
        button->setFont(font);
    }
    m_from = m_shown;
    if (animated)
        m_animation->start();
    else
        showColours(1);
}

void CanvasTabButtons::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setCurrent(m_current, false);
}

QColor CanvasTabButtons::targetColour(CanvasTab tab) const
{
    return palette().color(tab == m_current ? QPalette::WindowText : QPalette::PlaceholderText);
}

void CanvasTabButtons::showColours(double progress)
{
    for (const TabInfo &info : tabInfos) {
        const int index = int(info.tab);
        const QColor target = targetColour(info.tab);
        applyColour(info.tab, progress < 1 && m_from[index].isValid()
                                  ? mixed(m_from[index], target, progress)
                                  : target);
    }
}

void CanvasTabButtons::applyColour(CanvasTab tab, const QColor &colour)
{
    const int index = int(tab);
    if (m_shown[index] == colour)
        return;
    m_shown[index] = colour;
    QToolButton *button = m_buttons[index];
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, colour);
    palette.setColor(QPalette::WindowText, colour);
    button->setPalette(palette);
    button->setIcon(symbolIcon(QString::fromLatin1(tabInfos[index].symbol), 32, colour));
}

} // namespace Ombrel
