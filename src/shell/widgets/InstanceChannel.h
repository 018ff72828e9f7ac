#pragma once

#include <QObject>
#include <QStringList>

namespace Ombrel {

class LineServer;
class OmbrelApp;

// One running Ombrel per user session: a later launch hands its stylesheets
// to the running one over a local socket (a LineServer) and exits. Each message is one line
// of JSON: {"open": [paths]} opens files as the desktop's file-open requests
// do; {"query": "windows"} answers with the windows on screen, their titles,
// folders and selected files.
class InstanceChannel : public QObject
{
    Q_OBJECT

public:
    explicit InstanceChannel(OmbrelApp *app);

    // The socket's path, in the user's runtime folder.
    static QString serverName();

    // Hands the paths to a running instance; false when none answers.
    static bool forwardToRunning(const QStringList &paths);

    // Starts answering later launches.
    bool listen();

private:
    QByteArray answer(const QByteArray &line);

    OmbrelApp *m_app;
    LineServer *m_server;
};

} // namespace Ombrel
