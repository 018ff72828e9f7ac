#pragma once

#include <QHash>
#include <QObject>
#include <QUuid>

class QVariantAnimation;

namespace Ombrel {

// The turn of the groups' chevrons: pointing down while a group is open and
// right while it is folded, passing from one to the other in 0.15 s.
class GroupChevrons : public QObject
{
    Q_OBJECT

public:
    static constexpr int durationMs = 150;

    explicit GroupChevrons(QObject *parent = nullptr);

    // The chevron's angle in degrees for a group in that state: 90 open, 0
    // folded, or in between while it turns.
    qreal angle(const QUuid &group, bool collapsed) const;
    // The group is about to fold (or to open): its chevron starts turning.
    void turn(const QUuid &group, bool collapsing);
    bool isTurning() const { return !m_turns.isEmpty(); }

Q_SIGNALS:
    // The chevron of the group moved and needs painting.
    void moved(const QUuid &group);

private:
    QHash<QUuid, QVariantAnimation *> m_turns;
};

} // namespace Ombrel
