// The folder watch tracks which stylesheets exist and nothing more: a file
// that is held is never read again, so its text belongs to the model and the
// next save overwrites whatever another program wrote to it.

#include "Workspace.h"

#include "workspace/StylesheetFolder.h"

#include <QFileSystemWatcher>
#include <QSet>

namespace Ombrel {

void Workspace::startWatching(const QString &folder)
{
    stopWatching();
    // One watch per folder of the tree, fixed now: a folder made later is
    // not watched until the folder is opened again. Watching folders only,
    // an entry added, removed or renamed is reported and a write inside an
    // existing file is not. A folder that cannot be watched is left out.
    m_watcher = new QFileSystemWatcher(this);
    m_watcher->addPaths(StylesheetFolder::directories(folder));
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &Workspace::reloadFiles);
}

void Workspace::stopWatching()
{
    if (!m_watcher)
        return;
    // The watcher may be the sender of the signal that led here, so it is
    // silenced now and deleted once its emission is over.
    m_watcher->disconnect(this);
    m_watcher->deleteLater();
    m_watcher = nullptr;
}

void Workspace::reloadFiles()
{
    if (!hasFolder())
        return;
    const std::optional<QStringList> onDisk = StylesheetFolder::stylesheetPaths(m_folderPath);
    if (!onDisk)
        return;

    QSet<QString> known;
    known.reserve(m_files.size());
    for (const CSSFilePtr &file : std::as_const(m_files))
        known.insert(file->path());
    const QSet<QString> present(onDisk->cbegin(), onDisk->cend());
    const QSet<QString> removed = QSet<QString>(known).subtract(present);
    QStringList added;
    for (const QString &path : *onDisk) {
        if (!known.contains(path))
            added.append(path);
    }
    if (removed.isEmpty() && added.isEmpty())
        return;

    CSSFileList files = m_files;
    if (!removed.isEmpty()) {
        // The new selection is settled while the list still holds the files
        // that are about to go.
        if (m_selectedFile && removed.contains(m_selectedFile->path())) {
            const auto survivor =
                std::find_if(m_files.cbegin(), m_files.cend(), [&](const CSSFilePtr &file) {
                    return !removed.contains(file->path());
                });
            setSelectedFile(survivor != m_files.cend() ? *survivor : nullptr);
            setSelectedRuleset(nullptr);
        }
        files.removeIf([&](const CSSFilePtr &file) { return removed.contains(file->path()); });
    }
    // A new file is never selected. One that cannot be read yet is new again
    // at the next scan.
    files.append(StylesheetFolder::readStylesheets(added));
    StylesheetFolder::sortByPath(files);
    setFiles(files);
}

} // namespace Ombrel
