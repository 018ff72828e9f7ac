#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

class QSocketNotifier;

namespace Ombrel {

// Lines of text over a stream socket in the file system, the channel between
// two launches of Ombrel. It stands in for Qt's local sockets because every
// launch passes through it: Qt Network and the libraries it brings in cost a
// start more than the whole channel does. Each line a client sends gets one
// line of answer, in order. A Unix domain socket; elsewhere there is no
// channel and every launch stands alone.
class LineServer : public QObject
{
    Q_OBJECT

public:
    using Responder = std::function<QByteArray(const QByteArray &line)>;

    // A client whose line grows past this without an end is dropped.
    static constexpr qsizetype maxLineBytes = 1 << 20;

    explicit LineServer(Responder responder, QObject *parent = nullptr);
    ~LineServer() override;

    // Listens at path, readable and writable by the user alone, replacing
    // any socket file left there.
    bool listen(const QString &path);
    bool isListening() const { return m_socket >= 0; }
    // The connections open now.
    int connectionCount() const;

private:
    void acceptPending();

    Responder m_responder;
    int m_socket = -1;
    QString m_path;
    QSocketNotifier *m_notifier = nullptr;
};

// Sends line and waits for one line of answer, without its end. None when
// nothing listens at path or the answer has not come within timeout.
std::optional<QByteArray> exchangeLine(const QString &path, const QByteArray &line,
                                       std::chrono::milliseconds timeout);

} // namespace Ombrel
