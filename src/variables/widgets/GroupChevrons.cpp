#include "GroupChevrons.h"

#include <QEasingCurve>
#include <QVariantAnimation>

namespace Ombrel {

namespace {

constexpr qreal openAngle = 90;

} // namespace

GroupChevrons::GroupChevrons(QObject *parent) : QObject(parent) {}

qreal GroupChevrons::angle(const QUuid &group, bool collapsed) const
{
    if (const QVariantAnimation *turn = m_turns.value(group))
        return turn->currentValue().toReal();
    return collapsed ? 0 : openAngle;
}

void GroupChevrons::turn(const QUuid &group, bool collapsing)
{
    const qreal from = angle(group, !collapsing);
    if (QVariantAnimation *running = m_turns.take(group)) {
        running->disconnect(this);
        delete running;
    }
    auto *animation = new QVariantAnimation(this);
    animation->setDuration(durationMs);
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    animation->setStartValue(from);
    animation->setEndValue(collapsing ? 0.0 : openAngle);
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this, group] { Q_EMIT moved(group); });
    connect(animation, &QVariantAnimation::finished, this, [this, group, animation] {
        if (m_turns.value(group) == animation)
            m_turns.remove(group);
        animation->deleteLater();
        Q_EMIT moved(group);
    });
    m_turns.insert(group, animation);
    animation->start();
}

} // namespace Ombrel
