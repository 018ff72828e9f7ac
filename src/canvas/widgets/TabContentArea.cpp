#include "TabContentArea.h"

#include <QGraphicsOpacityEffect>
#include <QVariantAnimation>

namespace Ombrel {

namespace {

void setOpacity(QWidget *pane, double opacity)
{
    auto *effect = qobject_cast<QGraphicsOpacityEffect *>(pane->graphicsEffect());
    if (!effect) {
        effect = new QGraphicsOpacityEffect(pane);
        pane->setGraphicsEffect(effect);
    }
    effect->setOpacity(opacity);
}

} // namespace

TabContentArea::TabContentArea(QWidget *parent)
    : QWidget(parent), m_fade(new QVariantAnimation(this))
{
    m_fade->setStartValue(0.0);
    m_fade->setEndValue(1.0);
    m_fade->setDuration(fadeDurationMs);
    m_fade->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { showProgress(value.toDouble()); });
    connect(m_fade, &QVariantAnimation::finished, this, &TabContentArea::finishFade);
}

void TabContentArea::showPane(QWidget *pane, bool animated)
{
    m_fade->stop();
    dropLeaving();
    const QWidget *focus = window()->focusWidget();
    const bool focusLeaves = focus && m_current && m_current->isAncestorOf(focus);
    if (m_current) {
        m_leaving = m_current;
        m_leavingFrom = opacityOf(m_current);
    }
    m_current = pane;
    pane->setParent(this);
    pane->setGeometry(rect());
    pane->raise();
    pane->show();
    // Hidden with the focus, a pane would hand it on down the focus chain,
    // into whatever field comes next; the area keeps it instead.
    if (focusLeaves)
        setFocus(Qt::OtherFocusReason);
    if (!animated || !m_leaving) {
        finishFade();
        return;
    }
    setOpacity(pane, 0);
    m_fade->start();
}

double TabContentArea::opacityOf(const QWidget *pane)
{
    const auto *effect = qobject_cast<const QGraphicsOpacityEffect *>(pane->graphicsEffect());
    return effect ? effect->opacity() : 1;
}

void TabContentArea::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    for (QWidget *pane : {m_current.data(), m_leaving.data()}) {
        if (pane)
            pane->setGeometry(rect());
    }
}

void TabContentArea::showProgress(double progress)
{
    if (m_current)
        setOpacity(m_current, progress);
    if (m_leaving)
        setOpacity(m_leaving, m_leavingFrom * (1 - progress));
}

// The pane in front draws without an effect again: an effect renders its
// pane off screen at each paint.
void TabContentArea::finishFade()
{
    dropLeaving();
    if (m_current)
        m_current->setGraphicsEffect(nullptr);
}

// Later: the pane may be the sender of the event that brought the new one.
void TabContentArea::dropLeaving()
{
    if (!m_leaving)
        return;
    m_leaving->hide();
    m_leaving->deleteLater();
    m_leaving = nullptr;
}

} // namespace Ombrel
