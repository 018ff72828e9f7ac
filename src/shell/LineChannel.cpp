#include "LineChannel.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QPointer>
#include <QSocketNotifier>

#if defined(Q_OS_UNIX)
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace Ombrel {

#if defined(Q_OS_UNIX)

namespace {

// A peer that went away must end the write with an error, not end the
// process with a signal.
#if defined(MSG_NOSIGNAL)
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif

bool addressOf(const QString &path, sockaddr_un &address)
{
    const QByteArray native = QFile::encodeName(path);
    address = {};
    if (native.isEmpty() || size_t(native.size()) >= sizeof(address.sun_path))
        return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, native.constData(), size_t(native.size()) + 1);
    return true;
}

// Non-blocking, and not handed down to the programs this one starts.
bool prepare(int socket)
{
    if (socket < 0)
        return false;
#if defined(SO_NOSIGPIPE)
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    return ::fcntl(socket, F_SETFD, FD_CLOEXEC) == 0 &&
           ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK) == 0;
}

int newSocket()
{
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (socket >= 0 && !prepare(socket)) {
        ::close(socket);
        return -1;
    }
    return socket;
}

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

// Closes the socket when it goes out of scope.
class SocketHolder
{
public:
    explicit SocketHolder(int socket) : m_socket(socket) {}
    ~SocketHolder()
    {
        if (m_socket >= 0)
            ::close(m_socket);
    }
    SocketHolder(const SocketHolder &) = delete;
    SocketHolder &operator=(const SocketHolder &) = delete;

    int get() const { return m_socket; }

private:
    int m_socket;
};

// Waits until the socket is ready for events or the deadline has passed.
bool waitFor(int socket, short events, const QDeadlineTimer &deadline)
{
    for (;;) {
        pollfd entry{socket, events, 0};
        const int ready = ::poll(&entry, 1, int(deadline.remainingTime()));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

// One client of the server: lines in, answers out, until the client ends
// or misbehaves.
class LineConnection : public QObject
{
public:
    LineConnection(int socket, const LineServer::Responder &responder, QObject *parent)
        : QObject(parent), m_socket(socket), m_responder(responder),
          m_reader(new QSocketNotifier(socket, QSocketNotifier::Read, this)),
          m_writer(new QSocketNotifier(socket, QSocketNotifier::Write, this))
    {
        m_writer->setEnabled(false);
        connect(m_reader, &QSocketNotifier::activated, this, &LineConnection::read);
        connect(m_writer, &QSocketNotifier::activated, this, &LineConnection::write);
    }

    ~LineConnection() override
    {
        delete m_reader;
        delete m_writer;
        ::close(m_socket);
    }

private:
    void read()
    {
        char buffer[4096];
        for (;;) {
            const ssize_t count = ::recv(m_socket, buffer, sizeof buffer, 0);
            if (count > 0) {
                m_input.append(buffer, count);
                if (m_input.size() > LineServer::maxLineBytes + qsizetype(sizeof buffer))
                    break;
                continue;
            }
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && wouldBlock())
                break;
            // The client has said all it will.
            m_inputEnded = true;
            m_reader->setEnabled(false);
            break;
        }
        // An answer may run the event loop: no more of this client is read
        // until it is done, and the client may be gone by then.
        m_reader->setEnabled(false);
        const QPointer<LineConnection> self(this);
        for (qsizetype end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
            const QByteArray answer = m_responder(m_input.left(end).trimmed());
            if (!self)
                return;
            m_output += answer + '\n';
            m_input.remove(0, end + 1);
        }
        if (m_input.size() > LineServer::maxLineBytes) {
            finish();
            return;
        }
        m_reader->setEnabled(!m_inputEnded);
        write();
    }

    void write()
    {
        while (!m_output.isEmpty()) {
            const ssize_t count =
                ::send(m_socket, m_output.constData(), size_t(m_output.size()), sendFlags);
            if (count > 0) {
                m_output.remove(0, count);
                continue;
            }
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && wouldBlock())
                break;
            finish();
            return;
        }
        m_writer->setEnabled(!m_output.isEmpty());
        if (m_output.isEmpty() && m_inputEnded)
            finish();
    }

    void finish()
    {
        m_reader->setEnabled(false);
        m_writer->setEnabled(false);
        deleteLater();
    }

    int m_socket;
    LineServer::Responder m_responder;
    QSocketNotifier *m_reader;
    QSocketNotifier *m_writer;
    QByteArray m_input;
    QByteArray m_output;
    bool m_inputEnded = false;
};

} // namespace

LineServer::LineServer(Responder responder, QObject *parent)
    : QObject(parent), m_responder(std::move(responder))
{}

LineServer::~LineServer()
{
    if (m_socket < 0)
        return;
    delete m_notifier;
    ::close(m_socket);
    ::unlink(QFile::encodeName(m_path).constData());
}

bool LineServer::listen(const QString &path)
{
    sockaddr_un address;
    if (isListening() || !addressOf(path, address))
        return false;
    const int socket = newSocket();
    if (socket < 0)
        return false;
    // A socket left by an instance that crashed would refuse the bind.
    ::unlink(address.sun_path);
    if (::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::chmod(address.sun_path, S_IRUSR | S_IWUSR) != 0 || ::listen(socket, SOMAXCONN) != 0) {
        ::close(socket);
        return false;
    }
    m_socket = socket;
    m_path = path;
    m_notifier = new QSocketNotifier(socket, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &LineServer::acceptPending);
    return true;
}

int LineServer::connectionCount() const
{
    int count = 0;
    for (QObject *child : children())
        count += dynamic_cast<LineConnection *>(child) != nullptr;
    return count;
}

void LineServer::acceptPending()
{
    for (;;) {
        const int client = ::accept(m_socket, nullptr, nullptr);
        if (client < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        if (!prepare(client)) {
            ::close(client);
            continue;
        }
        new LineConnection(client, m_responder, this);
    }
}

std::optional<QByteArray> exchangeLine(const QString &path, const QByteArray &line,
                                       std::chrono::milliseconds timeout)
{
    const QDeadlineTimer deadline(timeout);
    sockaddr_un address;
    if (!addressOf(path, address))
        return std::nullopt;
    const SocketHolder socket(newSocket());
    if (socket.get() < 0)
        return std::nullopt;
    // A listener whose queue is full refuses for now; one that is not
    // there refuses for good.
    while (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) !=
           0) {
        if (errno != EINTR && !wouldBlock())
            return std::nullopt;
        if (deadline.hasExpired())
            return std::nullopt;
        ::poll(nullptr, 0, 10);
    }

    QByteArray output = line + '\n';
    while (!output.isEmpty()) {
        const ssize_t count =
            ::send(socket.get(), output.constData(), size_t(output.size()), sendFlags);
        if (count > 0)
            output.remove(0, count);
        else if (count < 0 && errno != EINTR && !wouldBlock())
            return std::nullopt;
        else if (!waitFor(socket.get(), POLLOUT, deadline))
            return std::nullopt;
    }

    QByteArray input;
    for (;;) {
        if (const qsizetype end = input.indexOf('\n'); end >= 0)
            return input.left(end);
        char buffer[4096];
        const ssize_t count = ::recv(socket.get(), buffer, sizeof buffer, 0);
        if (count > 0)
            input.append(buffer, count);
        else if (count == 0 || (errno != EINTR && !wouldBlock()))
            return std::nullopt;
        else if (!waitFor(socket.get(), POLLIN, deadline))
            return std::nullopt;
    }
}

#else

LineServer::LineServer(Responder responder, QObject *parent)
    : QObject(parent), m_responder(std::move(responder))
{}

LineServer::~LineServer() = default;

bool LineServer::listen(const QString &)
{
    return false;
}

int LineServer::connectionCount() const
{
    return 0;
}

void LineServer::acceptPending() {}

std::optional<QByteArray> exchangeLine(const QString &, const QByteArray &,
                                       std::chrono::milliseconds)
{
    return std::nullopt;
}

#endif

} // namespace Ombrel
