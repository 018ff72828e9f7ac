#pragma once

// Shared by the workspace tests: real folders and files on disk, the settings
// store the session is written to, and prompts answered from a script.

#include "StylesheetFiles.h"
#include "workspace/Workspace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include <memory>

namespace WorkspaceTest {

using StylesheetFiles::readFile;
using StylesheetFiles::writeFile;

// The workspace's files as paths relative to its folder, in list order.
inline QStringList relativePaths(const Ombrel::Workspace &workspace)
{
    const QDir folder(workspace.folderPath());
    QStringList paths;
    for (const Ombrel::CSSFilePtr &file : workspace.files())
        paths.append(folder.relativeFilePath(file->path()));
    return paths;
}

inline Ombrel::CSSFilePtr fileNamed(const Ombrel::Workspace &workspace, const QString &relative)
{
    const QString path = QDir::cleanPath(workspace.folderPath() + QLatin1Char('/') + relative);
    for (const Ombrel::CSSFilePtr &file : workspace.files()) {
        if (file->path() == path)
            return file;
    }
    return nullptr;
}

// The store that holds the session; the test executable points it at a
// folder of the build tree before any test runs.
inline QSettings sessionStore()
{
    return QSettings(QStringLiteral("Ombrel"), QStringLiteral("Ombrel"));
}

// Answers prompts in order from a list and records what was asked.
class PromptScript
{
public:
    explicit PromptScript(QList<int> answers = {})
        : m_state(std::make_shared<State>(State{{}, std::move(answers)}))
    {}

    Ombrel::PromptHandler handler() const
    {
        return [state = m_state](const Ombrel::Prompt &prompt) {
            state->asked.append(prompt);
            // An unscripted prompt gets an answer that is no button at all.
            return state->answers.isEmpty() ? 0 : state->answers.takeFirst();
        };
    }

    const QList<Ombrel::Prompt> &asked() const { return m_state->asked; }

private:
    struct State
    {
        QList<Ombrel::Prompt> asked;
        QList<int> answers;
    };
    std::shared_ptr<State> m_state;
};

} // namespace WorkspaceTest
