// Linked into every test executable: before any test runs, the user and
// system QSettings stores and the application's data folder are pointed at a
// folder of the build tree that starts empty, so that no test reads or writes
// the user's real settings or data. The folder stays after the run, for
// inspection of a failure.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>

namespace {

void isolateSettings()
{
    QDir dir(QStringLiteral(OMBREL_TEST_SETTINGS_DIR));
    dir.removeRecursively();
    dir.mkpath(QStringLiteral("user"));
    dir.mkpath(QStringLiteral("system"));
    dir.mkpath(QStringLiteral("data"));
    qputenv("XDG_DATA_HOME", QFile::encodeName(dir.filePath(QStringLiteral("data"))));
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat}) {
        QSettings::setPath(format, QSettings::UserScope, dir.filePath(QStringLiteral("user")));
        QSettings::setPath(format, QSettings::SystemScope, dir.filePath(QStringLiteral("system")));
    }
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(isolateSettings)
