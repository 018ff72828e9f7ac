#include "Workspace.h"

#include "workspace/StylesheetFolder.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace Ombrel {

namespace {

QString absoluteCleanPath(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

// Without a file manager of its own the desktop can at least open the folder
// that holds the file.
void openContainingFolder(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

} // namespace

Workspace::Workspace(QObject *parent) : QObject(parent), m_fileRevealer(openContainingFolder) {}

Workspace::~Workspace() = default;

template<typename T> void Workspace::assign(T &field, const T &value, void (Workspace::*notify)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*notify)();
    Q_EMIT changed();
}

void Workspace::setFolderPath(const QString &path)
{
    assign(m_folderPath, path, &Workspace::folderPathChanged);
}

void Workspace::setFiles(const CSSFileList &files)
{
    m_files = files;
    Q_EMIT filesChanged();
    Q_EMIT changed();
}

void Workspace::setSelectedFile(const CSSFilePtr &file)
{
    assign(m_selectedFile, file, &Workspace::selectedFileChanged);
    saveSession();
    setSelectedRulesetIDs({});
    // The connection ends with either object, so a file that outlives this
    // workspace has nobody left to tell.
    disconnect(m_selectedFileConnection);
    disconnect(m_selectedFileContentConnection);
    if (m_selectedFile) {
        m_selectedFileConnection =
            connect(m_selectedFile.get(), &CSSFile::changed, this, &Workspace::changed);
        m_selectedFileContentConnection =
            connect(m_selectedFile.get(), &CSSFile::contentChanged, this, &Workspace::changed);
    }
}

void Workspace::setSelectedRuleset(const CSSRulesetPtr &ruleset)
{
    assign(m_selectedRuleset, ruleset, &Workspace::selectedRulesetChanged);
    saveSession();
}

void Workspace::setSelectedRulesetIDs(const QSet<QUuid> &ids)
{
    assign(m_selectedRulesetIDs, ids, &Workspace::selectedRulesetIDsChanged);
}

void Workspace::setShouldShowNewRulesetSheet(bool value)
{
    assign(m_shouldShowNewRulesetSheet, value, &Workspace::shouldShowNewRulesetSheetChanged);
}

void Workspace::setShouldAddProperty(bool value)
{
    assign(m_shouldAddProperty, value, &Workspace::shouldAddPropertyChanged);
}

void Workspace::setShouldFocusSearch(bool value)
{
    assign(m_shouldFocusSearch, value, &Workspace::shouldFocusSearchChanged);
}

void Workspace::setShouldFocusPropertyPanel(bool value)
{
    assign(m_shouldFocusPropertyPanel, value, &Workspace::shouldFocusPropertyPanelChanged);
}

void Workspace::setShouldRenameRuleset(bool value)
{
    assign(m_shouldRenameRuleset, value, &Workspace::shouldRenameRulesetChanged);
}

void Workspace::setShouldDuplicateRuleset(bool value)
{
    assign(m_shouldDuplicateRuleset, value, &Workspace::shouldDuplicateRulesetChanged);
}

void Workspace::setShouldDeleteRuleset(bool value)
{
    assign(m_shouldDeleteRuleset, value, &Workspace::shouldDeleteRulesetChanged);
}

void Workspace::setShouldAddVariable(bool value)
{
    assign(m_shouldAddVariable, value, &Workspace::shouldAddVariableChanged);
}

void Workspace::setShouldRenameVariable(bool value)
{
    assign(m_shouldRenameVariable, value, &Workspace::shouldRenameVariableChanged);
}

void Workspace::setShouldDuplicateVariable(bool value)
{
    assign(m_shouldDuplicateVariable, value, &Workspace::shouldDuplicateVariableChanged);
}

void Workspace::setShouldDeleteVariable(bool value)
{
    assign(m_shouldDeleteVariable, value, &Workspace::shouldDeleteVariableChanged);
}

void Workspace::setSelectedVariablePropID(const QUuid &id)
{
    assign(m_selectedVariablePropID, id, &Workspace::selectedVariablePropIDChanged);
}

void Workspace::setSelectedVariableRulesetID(const QUuid &id)
{
    assign(m_selectedVariableRulesetID, id, &Workspace::selectedVariableRulesetIDChanged);
}

void Workspace::setCanvasTab(CanvasTab tab)
{
    assign(m_canvasTab, tab, &Workspace::canvasTabChanged);
}

void Workspace::setPendingRenameFileID(const QUuid &id)
{
    assign(m_pendingRenameFileID, id, &Workspace::pendingRenameFileIDChanged);
}

QString Workspace::folderName() const
{
    if (!hasFolder())
        return tr("No Folder Open");
    return QFileInfo(m_folderPath).fileName();
}

bool Workspace::hasAnyUnsavedChanges() const
{
    return std::any_of(m_files.cbegin(), m_files.cend(),
                       [](const CSSFilePtr &file) { return file->hasUnsavedChanges(); });
}

void Workspace::setPromptHandler(PromptHandler handler)
{
    m_promptHandler = std::move(handler);
}

void Workspace::setFolderChooser(FolderChooser chooser)
{
    m_folderChooser = std::move(chooser);
}

void Workspace::setFileRevealer(FileRevealer revealer)
{
    m_fileRevealer = revealer ? std::move(revealer) : FileRevealer(openContainingFolder);
}

int Workspace::ask(const Prompt &prompt) const
{
    if (m_promptHandler)
        return m_promptHandler(prompt);
    return FirstButtonResponse + int(prompt.buttons.size()) - 1;
}

void Workspace::openFolderPanel()
{
    // The menu or button that asked returns before the chooser runs.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_folderChooser)
                return;
            const QString chosen =
                m_folderChooser({tr("Open Folder"), tr("Choose a folder containing CSS files")});
            if (!chosen.isEmpty())
                openFolder(chosen);
        },
        Qt::QueuedConnection);
}

void Workspace::openFolder(const QString &path)
{
    const QString folder = absoluteCleanPath(path);
    setFolderPath(folder);
    rememberFolder();
    loadFiles(folder, std::nullopt, std::nullopt);
    startWatching(folder);
}

void Workspace::loadFiles(const QString &folder, const std::optional<QString> &restoringFilePath,
                          const std::optional<QString> &rulesetSelector)
{
    const std::optional<QStringList> paths = StylesheetFolder::stylesheetPaths(folder);
    if (!paths)
        return;
    CSSFileList loaded = StylesheetFolder::readStylesheets(*paths);
    StylesheetFolder::sortByPath(loaded);
    setFiles(loaded);

    CSSFilePtr restored;
    if (restoringFilePath) {
        const auto found = std::find_if(m_files.cbegin(), m_files.cend(), [&](const auto &file) {
            return file->path() == *restoringFilePath;
        });
        if (found != m_files.cend())
            restored = *found;
    }
    if (!restored) {
        setSelectedFile(m_files.isEmpty() ? nullptr : m_files.first());
        setSelectedRuleset(nullptr);
        return;
    }
    setSelectedFile(restored);
    // A stylesheet that repeats a selector restores to the first of them.
    CSSRulesetPtr ruleset;
    if (rulesetSelector) {
        const CSSRulesetList &rulesets = restored->rulesets();
        const auto found = std::find_if(rulesets.cbegin(), rulesets.cend(), [&](const auto &r) {
            return r->selector() == *rulesetSelector;
        });
        if (found != rulesets.cend())
            ruleset = *found;
    }
    setSelectedRuleset(ruleset);
}

void Workspace::selectFile(const QString &path)
{
    const QString wanted = QDir::cleanPath(path);
    const auto found = std::find_if(m_files.cbegin(), m_files.cend(),
                                    [&](const CSSFilePtr &file) { return file->path() == wanted; });
    if (found != m_files.cend())
        setSelectedFile(*found);
}

void Workspace::saveCurrentFile()
{
    if (m_selectedFile)
        m_selectedFile->save();
}

void Workspace::saveAllFiles()
{
    const CSSFileList files = m_files;
    for (const CSSFilePtr &file : files) {
        if (file->hasUnsavedChanges())
            file->save();
    }
}

} // namespace Ombrel
