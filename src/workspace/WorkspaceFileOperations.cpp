// The operations that change which files exist or what is on disk. Each takes
// effect at once; what the file system refuses stops the operation where it
// stands, without a message.

#include "Workspace.h"

#include "text/TextScan.h"
#include "workspace/OriginalStore.h"
#include "workspace/StylesheetFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace Ombrel {

void Workspace::insertAndSelect(const CSSFilePtr &file)
{
    CSSFileList files = m_files;
    files.append(file);
    StylesheetFolder::sortByPath(files);
    setFiles(files);
    setSelectedFile(file);
    setSelectedRuleset(nullptr);
}

void Workspace::revertCurrentFile()
{
    if (!m_selectedFile)
        return;
    // Checked before the revert on purpose: the revert makes new rulesets, so
    // a selection that passes this check is left detached from the file.
    const CSSRulesetList &rulesets = m_selectedFile->rulesets();
    const bool inFile =
        m_selectedRuleset && std::any_of(rulesets.cbegin(), rulesets.cend(), [&](const auto &r) {
            return r->id() == m_selectedRuleset->id();
        });
    if (!inFile)
        setSelectedRuleset(nullptr);
    m_selectedFile->revert();
}

void Workspace::createNewFile()
{
    if (!hasFolder())
        return;
    const QDir folder(m_folderPath);
    QString candidate = folder.filePath(QStringLiteral("untitled.css"));
    for (int n = 2; QFileInfo::exists(candidate); ++n)
        candidate = folder.filePath(QStringLiteral("untitled %1.css").arg(n));
    // A file that cannot be created still joins the list: its first save
    // decides whether it comes to exist.
    QFile(candidate).open(QIODevice::WriteOnly);
    const auto file = std::make_shared<CSSFile>(candidate, CSSRulesetList(), QString());
    insertAndSelect(file);
    setPendingRenameFileID(file->id());
}

void Workspace::duplicateFile(const CSSFilePtr &file)
{
    const QFileInfo source(file->path());
    const QDir folder = source.dir();
    const QString base = source.completeBaseName();
    const QString extension = source.suffix();
    QString candidate = folder.filePath(QStringLiteral("%1 copy.%2").arg(base, extension));
    for (int n = 2; QFileInfo::exists(candidate); ++n)
        candidate = folder.filePath(
            QStringLiteral("%1 copy %2.%3").arg(base, QString::number(n), extension));
    if (!QFile::copy(file->path(), candidate))
        return;
    // A copy that cannot be read stays on disk, outside the list.
    if (CSSFilePtr copy = StylesheetFolder::readStylesheet(candidate))
        insertAndSelect(copy);
}

void Workspace::renameFile(const CSSFilePtr &file, const QString &name)
{
    // A blank name becomes ".css", a hidden file: refusing blank input is
    // left to the field that asks for the name.
    QString newName = TextScan::trimmedWhitespace(name).toString();
    if (!newName.toLower().endsWith(QLatin1String(".css")))
        newName += QLatin1String(".css");
    if (newName == file->name())
        return;
    // Joined as text, so that a name with a slash names a path below the
    // file's folder.
    const QString newPath =
        QDir::cleanPath(QFileInfo(file->path()).absolutePath() + QLatin1Char('/') + newName);
    if (QFileInfo::exists(newPath) || !QFile::rename(file->path(), newPath))
        return;
    file->setPath(newPath);
    CSSFileList files = m_files;
    StylesheetFolder::sortByPath(files);
    setFiles(files);
}

void Workspace::showInFileManager(const CSSFilePtr &file)
{
    m_fileRevealer(file->path());
}

void Workspace::deleteFile(const CSSFilePtr &file)
{
    const Prompt prompt{tr("Delete \"%1\"?").arg(file->name()),
                        tr("This will move the file to the Trash."),
                        {tr("Delete"), tr("Cancel")}};
    if (ask(prompt) != FirstButtonResponse)
        return;
    if (!QFile::moveToTrash(file->path()))
        return;
    const QUuid id = file->id();
    if (m_selectedFile && m_selectedFile->id() == id) {
        const auto other = std::find_if(m_files.cbegin(), m_files.cend(),
                                        [&](const CSSFilePtr &f) { return f->id() != id; });
        setSelectedFile(other != m_files.cend() ? *other : nullptr);
        setSelectedRuleset(nullptr);
    }
    CSSFileList files = m_files;
    files.removeIf([&](const CSSFilePtr &f) { return f->id() == id; });
    setFiles(files);
}

void Workspace::closeProject()
{
    CSSFileList unsaved;
    std::copy_if(m_files.cbegin(), m_files.cend(), std::back_inserter(unsaved),
                 [](const CSSFilePtr &file) { return file->hasUnsavedChanges(); });
    if (!unsaved.isEmpty()) {
        const QString message =
            unsaved.size() == 1
                ? tr("Save changes to \"%1\" before closing?").arg(unsaved.first()->name())
                : tr("Save changes to %1 files before closing?").arg(unsaved.size());
        const int response = ask({message,
                                  tr("Your changes will be lost if you don't save."),
                                  {tr("Save"), tr("Don't Save"), tr("Cancel")}});
        if (response == FirstButtonResponse) {
            // A file that cannot be written is closed all the same.
            for (const CSSFilePtr &file : unsaved)
                file->save();
        } else if (response != SecondButtonResponse) {
            return;
        }
    }
    stopWatching();
    setFolderPath(QString());
    setFiles({});
    setSelectedFile(nullptr);
    setSelectedRuleset(nullptr);
    forgetSession();
}

namespace {

// The bytes at path; none when it cannot be read.
QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

bool Workspace::restoreOriginal(OriginalStore &store, const KeptOriginal &original)
{
    const CSSFilePtr file = m_selectedFile;
    if (!file || !store.originals(file->path()).contains(original))
        return false;
    if (file->hasUnsavedChanges()) {
        const int response = ask({tr("Save changes to \"%1\" before restoring?").arg(file->name()),
                                  tr("Your changes will be lost if you don't save."),
                                  {tr("Save"), tr("Don't Save"), tr("Cancel")}});
        if (response == FirstButtonResponse)
            file->save();
        else if (response != SecondButtonResponse)
            return false;
    }
    QFile source(original.path);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = source.readAll();
    const std::optional<QString> text = StylesheetFolder::decodeStylesheet(bytes);
    if (source.error() != QFileDevice::NoError || !text)
        return false;
    // The restore goes on when the bytes it replaces cannot be kept: it is
    // what the user asked for.
    if (readFile(file->path()) != bytes)
        store.keep(file->path());
    QSaveFile target(file->path());
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() ||
        !target.commit())
        return false;
    setSelectedRuleset(nullptr);
    setSelectedRulesetIDs({});
    file->reload(*text);
    return true;
}

} // namespace Ombrel
