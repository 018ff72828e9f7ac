#include "OmbrelMain.h"

#include "shell/widgets/ApplicationIcon.h"
#include "shell/widgets/InstanceChannel.h"
#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelApp.h"

#include <QApplication>
#include <QFileInfo>

#if defined(OMBREL_FONTCONFIG)
#include <fontconfig/fontconfig.h>

#include <thread>
#endif

namespace Ombrel {

int runOmbrel(int argc, char **argv, const std::function<void(QMainWindow *)> &firstWindowMade)
{
#if defined(OMBREL_FONTCONFIG)
    // The first text laid out reads the whole font configuration, the longest
    // single step on the way to the first frame. It is read here, beside the
    // connection to the display, and Qt finds it loaded; the thread is joined
    // as the application ends.
    const std::jthread fontConfiguration([] { FcInit(); });
#endif
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Ombrel"));
    QApplication::setApplicationName(QStringLiteral("Ombrel"));
    QApplication::setApplicationVersion(QStringLiteral(OMBREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("ombrel"));

    // The desktop hands over files as paths; Qt has taken its own options.
    QStringList paths;
    for (const QString &argument : QApplication::arguments().mid(1))
        paths.append(QFileInfo(argument).absoluteFilePath());
    if (InstanceChannel::forwardToRunning(paths))
        return 0;

    QApplication::setWindowIcon(applicationIcon());
    QApplication::setQuitOnLastWindowClosed(OmbrelApp::quitsWithLastWindow());
    OmbrelApp ombrel(ShellServices::desktop());
    auto *channel = new InstanceChannel(&ombrel);
    channel->listen();

    // Files arrive before the first window, which takes the last of them.
    ombrel.delegate().openFiles(paths);
    auto *first = new MainWindow(&ombrel, WindowConfig());
    if (firstWindowMade)
        firstWindowMade(first);
    ombrel.adoptWindow(first);
    return application.exec();
}

} // namespace Ombrel
