#include "StartupProbe.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace {

long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

class FirstPaintProbe : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && !m_seen) {
            m_seen = true;
            // The frame reaches the screen when the paint in progress has been
            // flushed, after this turn of the event loop.
            QTimer::singleShot(0, this, [] {
                const auto now = std::chrono::system_clock::now().time_since_epoch();
                std::printf("painted-ns %lld\nrss-kb %ld\n",
                            static_cast<long long>(
                                std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()),
                            residentKilobytes());
                std::fflush(stdout);
                QCoreApplication::exit(0);
            });
        }
        return QObject::eventFilter(object, event);
    }

private:
    bool m_seen = false;
};

} // namespace

void exitAfterFirstPaint(QWidget *window)
{
    window->installEventFilter(new FirstPaintProbe(window));
}
