#include "InstanceChannel.h"

#include "shell/LineChannel.h"
#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelApp.h"
#include "workspace/Workspace.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace Ombrel {

namespace {

constexpr std::chrono::milliseconds handOverTimeout(3000);

} // namespace

InstanceChannel::InstanceChannel(OmbrelApp *app)
    : QObject(app), m_app(app),
      m_server(new LineServer([this](const QByteArray &line) { return answer(line); }, this))
{}

QString InstanceChannel::serverName()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QDir(runtime.isEmpty() ? QDir::tempPath() : runtime)
        .filePath(QStringLiteral("ombrel.socket"));
}

bool InstanceChannel::forwardToRunning(const QStringList &paths)
{
    const QJsonObject message{{QStringLiteral("open"), QJsonArray::fromStringList(paths)}};
    // The reply says the files were taken; a running instance that does not
    // answer is as good as none.
    return exchangeLine(serverName(), QJsonDocument(message).toJson(QJsonDocument::Compact),
                        handOverTimeout)
        .has_value();
}

bool InstanceChannel::listen()
{
    return m_server->listen(serverName());
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
