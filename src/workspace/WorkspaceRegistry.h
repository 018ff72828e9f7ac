#pragma once

#include "model/CSSFile.h"

#include <QHash>
#include <QString>

#include <memory>

namespace Ombrel {

class Workspace;

// Every workspace whose window is on screen, held strongly from the moment
// its window shows until it leaves: the way file-open events, quitting and
// menu commands without a focused window reach the windows. The table has no
// useful order; walks meet the workspaces in an arbitrary one.
class WorkspaceRegistry
{
public:
    static WorkspaceRegistry &shared();

    void registerWorkspace(const std::shared_ptr<Workspace> &workspace);
    void unregisterWorkspace(const Workspace *workspace);

    // An arbitrary registered workspace; nullptr when none is.
    std::shared_ptr<Workspace> any() const;
    bool hasAnyUnsaved() const;
    // The unsaved files of every workspace, workspace after workspace, each
    // in its files() order. One file unsaved in two windows counts twice.
    CSSFileList allUnsavedFiles() const;
    // saveAllFiles() on every workspace.
    void saveAll() const;
    // The first workspace met that shows this folder; spellings with a
    // trailing slash, "." or ".." match, a folder above or below does not.
    std::shared_ptr<Workspace> workspaceForFolder(const QString &path) const;

private:
    WorkspaceRegistry() = default;

    QHash<const Workspace *, std::shared_ptr<Workspace>> m_entries;
};

} // namespace Ombrel
