#include "SelectionFade.h"

#include <QVariantAnimation>

#include <algorithm>

namespace Ombrel {

SelectionFade::SelectionFade(QObject *parent)
    : QObject(parent), m_ticker(new QVariantAnimation(this))
{
    m_clock.start();
    // The ticker lasts as long as the latest passage; each passage reads
    // its own time from the clock.
    m_ticker->setStartValue(0.0);
    m_ticker->setEndValue(1.0);
    m_ticker->setDuration(durationMs);
    connect(m_ticker, &QVariantAnimation::valueChanged, this, [this] { step(false); });
    connect(m_ticker, &QVariantAnimation::finished, this, [this] { step(true); });
}

QSet<QUuid> SelectionFade::follow(const QSet<QUuid> &selected)
{
    if (!m_following) {
        m_following = true;
        m_selected = selected;
        return {};
    }
    if (selected == m_selected)
        return {};
    const qint64 now = m_clock.elapsed();
    QSet<QUuid> started;
    const auto start = [this, now, &started](const QUuid &id, double to) {
        const auto passing = m_passages.constFind(id);
        const double from = passing == m_passages.cend() ? 1 - to : passing->shown;
        m_passages.insert(id, Passage{from, to, now, from});
        started.insert(id);
    };
    for (const QUuid &id : selected) {
        if (!m_selected.contains(id))
            start(id, 1);
    }
    for (const QUuid &id : std::as_const(m_selected)) {
        if (!selected.contains(id))
            start(id, 0);
    }
    m_selected = selected;
    m_ticker->stop();
    m_ticker->start();
    return started;
}

std::optional<double> SelectionFade::shown(const QUuid &id) const
{
    const auto passing = m_passages.constFind(id);
    if (passing == m_passages.cend())
        return std::nullopt;
    return passing->shown;
}

void SelectionFade::step(bool toTheEnd)
{
    if (m_passages.isEmpty())
        return;
    const qint64 now = m_clock.elapsed();
    QSet<QUuid> changed;
    for (auto passage = m_passages.begin(); passage != m_passages.end();) {
        const double time =
            toTheEnd ? 1 : std::clamp(double(now - passage->startMs) / durationMs, 0.0, 1.0);
        const double shown =
            passage->from + (passage->to - passage->from) * m_easing.valueForProgress(time);
        if (shown != passage->shown)
            changed.insert(passage.key());
        passage->shown = shown;
        if (time >= 1) {
            changed.insert(passage.key());
            passage = m_passages.erase(passage);
        } else {
            ++passage;
        }
    }
    if (!changed.isEmpty())
        Q_EMIT moved(changed);
}

} // namespace Ombrel
