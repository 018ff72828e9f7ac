#include "WorkspaceRegistry.h"

#include "workspace/Workspace.h"

#include <QDir>

namespace Ombrel {

WorkspaceRegistry &WorkspaceRegistry::shared()
{
    static WorkspaceRegistry instance;
    return instance;
}

void WorkspaceRegistry::registerWorkspace(const std::shared_ptr<Workspace> &workspace)
{
    m_entries.insert(workspace.get(), workspace);
}

void WorkspaceRegistry::unregisterWorkspace(const Workspace *workspace)
{
    m_entries.remove(workspace);
}

std::shared_ptr<Workspace> WorkspaceRegistry::any() const
{
    return m_entries.isEmpty() ? nullptr : m_entries.cbegin().value();
}

bool WorkspaceRegistry::hasAnyUnsaved() const
{
    return std::any_of(m_entries.cbegin(), m_entries.cend(),
                       [](const auto &workspace) { return workspace->hasAnyUnsavedChanges(); });
}

CSSFileList WorkspaceRegistry::allUnsavedFiles() const
{
    CSSFileList unsaved;
    for (const std::shared_ptr<Workspace> &workspace : m_entries) {
        for (const CSSFilePtr &file : workspace->files()) {
            if (file->hasUnsavedChanges())
                unsaved.append(file);
        }
    }
    return unsaved;
}

void WorkspaceRegistry::saveAll() const
{
    for (const std::shared_ptr<Workspace> &workspace : m_entries)
        workspace->saveAllFiles();
}

std::shared_ptr<Workspace> WorkspaceRegistry::workspaceForFolder(const QString &path) const
{
    const QString wanted = QDir::cleanPath(path);
    for (const std::shared_ptr<Workspace> &workspace : m_entries) {
        if (workspace->hasFolder() && QDir::cleanPath(workspace->folderPath()) == wanted)
            return workspace;
    }
    return nullptr;
}

} // namespace Ombrel
