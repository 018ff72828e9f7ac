// The session of the next launch: one for the whole application, in the
// user's settings, written by whichever window changed its selection last.
// A ruleset is remembered by its selector, since ids die with the process.

#include "Workspace.h"

#include "shell/AppPreferences.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSettings>
#include <QVariant>

namespace Ombrel {

namespace {

namespace SessionKeys {
const QString folderPath = QStringLiteral("lastFolderPath");
const QString selectedFile = QStringLiteral("lastSelectedFilePath");
const QString selectedRuleset = QStringLiteral("lastSelectedRulesetSelector");
} // namespace SessionKeys

// One store held open for the life of the application, as the platform's
// defaults are: a write is seen at once by every reader in the process, and
// reaches the disk on the next turn of the event loop or when the application
// ends. A store made for each write would wait for the disk every time, and
// opening a folder writes three times.
QSettings &sessionStore()
{
    static QPointer<QSettings> store;
    if (!store)
        store = new QSettings(QStringLiteral("Ombrel"), QStringLiteral("Ombrel"),
                              QCoreApplication::instance());
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
