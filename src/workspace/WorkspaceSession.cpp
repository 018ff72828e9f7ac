// The session of the next launch: one for the whole application, in the
// user's settings, written by whichever window changed its selection last.
// A ruleset is remembered by its selector, since ids die with the process.

#include "Workspace.h"

#include "workspace/AppPreferences.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSettings>
#include <QTimer>
#include <QVariant>

namespace Ombrel {

namespace {

namespace SessionKeys {
const QString folderPath = QStringLiteral("lastFolderPath");
const QString selectedFile = QStringLiteral("lastSelectedFilePath");
const QString selectedRuleset = QStringLiteral("lastSelectedRulesetSelector");
} // namespace SessionKeys

// How long the changes of a burst gather before they are written together.
constexpr int diskWriteDelayMs = 1000;

// One store held open for the life of the application, as the platform's
// defaults are: a write is seen at once by every reader in the process, and
// reaches the disk a second after the first change of a burst, or when the
// application ends. Every write to disk waits for it twice (the lock, then
// the file), so a store made for each change, or written on the next turn of
// the event loop, would keep a launch that opens a folder from its first
// frame and write again for every selection.
class SessionStore : public QSettings
{
public:
    explicit SessionStore(QObject *parent)
        : QSettings(QStringLiteral("Ombrel"), QStringLiteral("Ombrel"), parent)
    {
        m_diskWrite.setSingleShot(true);
        m_diskWrite.setInterval(diskWriteDelayMs);
        connect(&m_diskWrite, &QTimer::timeout, this, &QSettings::sync);
    }

protected:
    // QSettings asks for this once after its first unwritten change; the
    // write that follows answers every change made until then.
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest) {
            if (!m_diskWrite.isActive())
                m_diskWrite.start();
            return true;
        }
        return QSettings::event(event);
    }

private:
    QTimer m_diskWrite;
};

QSettings &sessionStore()
{
    static QPointer<QSettings> store;
    if (!store)
        store = new SessionStore(QCoreApplication::instance());
    return *store;
}

// A value that is not text reads as absent.
std::optional<QString> readString(const QSettings &store, const QString &key)
{
    const QVariant value = store.value(key);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

} // namespace

void Workspace::saveSession()
{
    QSettings &store = sessionStore();
    if (hasFolder())
        store.setValue(SessionKeys::folderPath, m_folderPath);
    if (m_selectedFile)
        store.setValue(SessionKeys::selectedFile, m_selectedFile->path());
    else
        store.remove(SessionKeys::selectedFile);
    if (m_selectedRuleset)
        store.setValue(SessionKeys::selectedRuleset, m_selectedRuleset->selector());
    else
        store.remove(SessionKeys::selectedRuleset);
}

void Workspace::rememberFolder()
{
    sessionStore().setValue(SessionKeys::folderPath, m_folderPath);
}

void Workspace::forgetSession()
{
    QSettings &store = sessionStore();
    store.remove(SessionKeys::folderPath);
    store.remove(SessionKeys::selectedFile);
    store.remove(SessionKeys::selectedRuleset);
}

void Workspace::restoreSession()
{
    if (!AppPreferences::shared().restoreSession())
        return;
    const QSettings &store = sessionStore();
    const std::optional<QString> remembered = readString(store, SessionKeys::folderPath);
    // A folder that has gone opens nothing and leaves the keys for later.
    if (!remembered || !QFileInfo::exists(*remembered))
        return;
    const QString folder = QDir::cleanPath(QFileInfo(*remembered).absoluteFilePath());
    setFolderPath(folder);
    // Both are read before loading, which selects and so overwrites them.
    const std::optional<QString> filePath = readString(store, SessionKeys::selectedFile);
    const std::optional<QString> selector = readString(store, SessionKeys::selectedRuleset);
    loadFiles(folder, filePath, selector);
    startWatching(folder);
}

} // namespace Ombrel
