#pragma once

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QUuid>

#include <optional>

class QVariantAnimation;

namespace Ombrel {

// How far each card has come into or out of its selected look. A card that
// joins or leaves the selection passes over with ease-in-out in durationMs,
// from wherever it stood; the other cards show their selection as it is. One
// animation drives every card in passage and reports which of them moved, so
// that only those are drawn again.
class SelectionFade : public QObject
{
    Q_OBJECT

public:
    static constexpr int durationMs = 120;

    explicit SelectionFade(QObject *parent = nullptr);

    // The ids drawn as selected from now on. Each id that joined or left
    // since the last call starts its passage, and they are returned; the
    // first call only notes them.
    QSet<QUuid> follow(const QSet<QUuid> &selected);
    // 0 for the plain look, 1 for the selected one, and between while the
    // card passes over; none for a card that is not passing.
    std::optional<double> shown(const QUuid &id) const;
    bool isRunning() const { return !m_passages.isEmpty(); }

Q_SIGNALS:
    // The cards whose look changed, the last step of each passage included.
    void moved(const QSet<QUuid> &ids);

private:
    struct Passage
    {
        double from = 0;
        double to = 1;
        qint64 startMs = 0;
        double shown = 0;
    };

    void step(bool toTheEnd);

    QHash<QUuid, Passage> m_passages;
    QSet<QUuid> m_selected;
    bool m_following = false;
    QElapsedTimer m_clock;
    QEasingCurve m_easing{QEasingCurve::InOutQuad};
    QVariantAnimation *m_ticker;
};

} // namespace Ombrel
