#include "InstanceChannel.h"

#include "shell/MainWindow.h"
#include "shell/OmbrelApp.h"
#include "workspace/Workspace.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>

namespace Ombrel {

namespace {

constexpr int handOverTimeoutMs = 3000;

} // namespace

InstanceChannel::InstanceChannel(OmbrelApp *app)
    : QObject(app), m_app(app), m_server(new QLocalServer(this))
{
    connect(m_server, &QLocalServer::newConnection, this, &InstanceChannel::accept);
}

QString InstanceChannel::serverName()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QDir(runtime.isEmpty() ? QDir::tempPath() : runtime)
        .filePath(QStringLiteral("ombrel.socket"));
}

bool InstanceChannel::forwardToRunning(const QStringList &paths)
{
    QLocalSocket socket;
    socket.connectToServer(serverName());
    if (!socket.waitForConnected(handOverTimeoutMs))
        return false;
    const QJsonObject message{{QStringLiteral("open"), QJsonArray::fromStringList(paths)}};
    socket.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
    if (!socket.waitForBytesWritten(handOverTimeoutMs))
        return false;
    // The reply says the files were taken; a running instance that does not
    // answer is as good as none.
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(handOverTimeoutMs))
            return false;
    }
    return true;
}

bool InstanceChannel::listen()
{
    // A socket left by an instance that crashed would refuse the listen.
    QLocalServer::removeServer(serverName());
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    return m_server->listen(serverName());
}

void InstanceChannel::accept()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { serve(socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        serve(socket);
    }
}

void InstanceChannel::serve(QLocalSocket *socket)
{
    while (socket->canReadLine())
        socket->write(answer(socket->readLine().trimmed()) + '\n');
    socket->flush();
}

QByteArray InstanceChannel::answer(const QByteArray &line)
{
    const QJsonObject message = QJsonDocument::fromJson(line).object();
    if (message.contains(QStringLiteral("open"))) {
        QStringList paths;
        for (const QJsonValue &path : message.value(QStringLiteral("open")).toArray())
            paths.append(path.toString());
        // A launch without files asks for a window, as a click on the
        // application's icon does.
        if (paths.isEmpty())
            m_app->openWindow(WindowConfig(true));
        else
            m_app->delegate().openFiles(paths);
        return QJsonDocument(QJsonObject{{QStringLiteral("ok"), true}})
            .toJson(QJsonDocument::Compact);
    }
    if (message.value(QStringLiteral("query")).toString() == QLatin1String("windows")) {
        QJsonArray windows;
        for (MainWindow *window : m_app->windows()) {
            const Workspace *workspace = window->workspace();
            const CSSFilePtr selected = workspace->selectedFile();
            windows.append(QJsonObject{
                {QStringLiteral("title"), window->windowTitle()},
                {QStringLiteral("folder"), workspace->folderPath()},
                {QStringLiteral("selectedFile"), selected ? selected->path() : QString()},
            });
        }
        return QJsonDocument(QJsonObject{{QStringLiteral("windows"), windows}})
            .toJson(QJsonDocument::Compact);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("ok"), false}}).toJson(QJsonDocument::Compact);
}

} // namespace Ombrel
