// The channel between two launches: a server on a thread of its own, real
// sockets in a temporary folder, and clients that behave and misbehave.

#include "shell/LineChannel.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Ombrel;
using namespace std::chrono_literals;

namespace {

// A LineServer answering "got:" and the line, run by the event loop of a
// thread of its own, as a running instance would be while a launch waits.
class ServerThread
{
public:
    ServerThread()
    {
        m_thread.start();
        m_server = new LineServer([](const QByteArray &line) { return "got:" + line; });
        m_server->moveToThread(&m_thread);
    }

    ~ServerThread()
    {
        QMetaObject::invokeMethod(
            m_server, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

    bool listen(const QString &path)
    {
        bool listening = false;
        QMetaObject::invokeMethod(
            m_server, [this, &path, &listening] { listening = m_server->listen(path); },
            Qt::BlockingQueuedConnection);
        return listening;
    }

    int connectionCount()
    {
        int count = 0;
        QMetaObject::invokeMethod(
            m_server, [this, &count] { count = m_server->connectionCount(); },
            Qt::BlockingQueuedConnection);
        return count;
    }

private:
    QThread m_thread;
    LineServer *m_server;
};

sockaddr_un addressOf(const QString &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray native = QFile::encodeName(path);
    std::memcpy(address.sun_path, native.constData(), size_t(native.size()) + 1);
    return address;
}

// A plain blocking client socket, closed at the end of the test.
class RawClient
{
public:
    explicit RawClient(const QString &path) : m_socket(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        const sockaddr_un address = addressOf(path);
        m_connected =
            ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    ~RawClient() { close(); }

    bool connected() const { return m_connected; }

    bool send(const QByteArray &bytes)
    {
        qsizetype sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count = ::send(m_socket, bytes.constData() + sent,
                                         size_t(bytes.size() - sent), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            sent += count;
        }
        return true;
    }

    // Reads until count lines have come, the peer ends, or a few seconds pass.
    QByteArray receiveLines(int count, bool *ended = nullptr)
    {
        QByteArray input;
        while (input.count('\n') < count) {
            pollfd entry{m_socket, POLLIN, 0};
            if (::poll(&entry, 1, 5000) <= 0)
                break;
            char buffer[4096];
            const ssize_t read = ::recv(m_socket, buffer, sizeof buffer, 0);
            if (read <= 0) {
                if (ended)
                    *ended = true;
                break;
            }
            input.append(buffer, read);
        }
        return input;
    }

    void close()
    {
        if (m_socket >= 0)
            ::close(m_socket);
        m_socket = -1;
    }

private:
    int m_socket;
    bool m_connected = false;
};

} // namespace

class TestLineChannel : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_counter = 0;

    // A fresh socket path for each test.
    QString socketPath() { return m_folder.filePath(QStringLiteral("s%1").arg(++m_counter)); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void aLineGetsItsAnswer()
    {
        ServerThread server;
        const QString path = socketPath();
        QVERIFY(server.listen(path));
        QCOMPARE(exchangeLine(path, "hello", 5s), std::optional<QByteArray>("got:hello"));
        QCOMPARE(exchangeLine(path, "  again  ", 5s), std::optional<QByteArray>("got:again"));
    }

    void linesSentTogetherAreAnsweredInOrder()
    {
        ServerThread server;
        const QString path = socketPath();
        QVERIFY(server.listen(path));
        RawClient client(path);
        QVERIFY(client.connected());
        QVERIFY(client.send("one\ntwo\nthr"));
        QVERIFY(client.send("ee\n"));
        QCOMPARE(client.receiveLines(3), QByteArray("got:one\ngot:two\ngot:three\n"));
    }

    void nothingListeningIsNoAnswer()
    {
        QCOMPARE(exchangeLine(socketPath(), "hello", 5s), std::nullopt);
    }

    void aSocketLeftByACrashIsReplaced()
    {
        const QString path = socketPath();
        {
            // Bound and then closed without removing its file, as a process
            // that crashed leaves it.
            const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
            const sockaddr_un address = addressOf(path);
            QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address),
                     0);
            QCOMPARE(::listen(socket, 1), 0);
            ::close(socket);
        }
        QVERIFY(QFileInfo::exists(path));
        QCOMPARE(exchangeLine(path, "hello", 5s), std::nullopt);

        ServerThread server;
        QVERIFY(server.listen(path));
        QCOMPARE(exchangeLine(path, "hello", 5s), std::optional<QByteArray>("got:hello"));
    }

    void aListenerThatNeverAnswersTimesOut()
    {
        const QString path = socketPath();
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const sockaddr_un address = addressOf(path);
        QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        QCOMPARE(::listen(socket, 4), 0);
        QCOMPARE(exchangeLine(path, "hello", 200ms), std::nullopt);
        ::close(socket);
    }

    void theSocketIsTheUsersAloneAndGoesWithTheServer()
    {
        const QString path = socketPath();
        {
            ServerThread server;
            QVERIFY(server.listen(path));
            QCOMPARE(QFileInfo(path).permissions() & ~(QFile::ReadUser | QFile::WriteUser |
                                                       QFile::ReadOwner | QFile::WriteOwner),
                     QFile::Permissions());
            QVERIFY(!server.listen(socketPath()));
        }
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(exchangeLine(path, "hello", 5s), std::nullopt);
    }

    void aClientThatLeavesEarlyIsForgotten()
    {
        ServerThread server;
        const QString path = socketPath();
        QVERIFY(server.listen(path));
        {
            RawClient client(path);
            QVERIFY(client.connected());
            QVERIFY(client.send("hello\n"));
        }
        {
            RawClient silent(path);
            QVERIFY(silent.connected());
        }
        QTRY_COMPARE(server.connectionCount(), 0);
        QCOMPARE(exchangeLine(path, "next", 5s), std::optional<QByteArray>("got:next"));
    }

    void aLineWithoutEndIsCutOff()
    {
        ServerThread server;
        const QString path = socketPath();
        QVERIFY(server.listen(path));
        RawClient client(path);
        QVERIFY(client.connected());
        const QByteArray chunk(64 * 1024, 'x');
        bool sent = true;
        for (qsizetype total = 0; sent && total <= LineServer::maxLineBytes; total += chunk.size())
            sent = client.send(chunk);
        bool ended = false;
        QCOMPARE(client.receiveLines(1, &ended), QByteArray());
        QVERIFY(ended);
        QTRY_COMPARE(server.connectionCount(), 0);
        QCOMPARE(exchangeLine(path, "next", 5s), std::optional<QByteArray>("got:next"));
    }

    void aPathTooLongForASocketIsRefused()
    {
        const QString path = m_folder.filePath(QString(200, u'p'));
        ServerThread server;
        QVERIFY(!server.listen(path));
        QCOMPARE(exchangeLine(path, "hello", 5s), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestLineChannel)
#include "tst_linechannel.moc"
