#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"
#include "workspace/CanvasTab.h"
#include "workspace/WorkspaceServices.h"

#include <QMetaObject>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>

class QFileSystemWatcher;

namespace Ombrel {

class OriginalStore;
struct KeptOriginal;

// The controller of one window: the open folder, its stylesheets in path
// order, the selection, the one-shot command flags through which menu
// commands reach the views, the visible tab, and the watch on the folder.
//
// Every observable field has a getter, a setter and a notify signal; changed()
// follows every notify signal, and also every change of the selected file, for
// views that redraw wholesale. Signals fire after the new value is stored, so
// a slot reads the new state; the follow-up work of selectedFile and
// selectedRuleset runs after their observers were told.
//
// Construction sets the defaults and nothing else: no settings are read, no
// file is opened and the workspace is registered nowhere. Everything runs on
// the thread of the event loop, and no operation reports a failure: what the
// file system refuses is left as far as it got.
class Workspace : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString folderPath READ folderPath WRITE setFolderPath NOTIFY folderPathChanged)
    Q_PROPERTY(bool shouldShowNewRulesetSheet READ shouldShowNewRulesetSheet WRITE
                   setShouldShowNewRulesetSheet NOTIFY shouldShowNewRulesetSheetChanged)
    Q_PROPERTY(bool shouldAddProperty READ shouldAddProperty WRITE setShouldAddProperty NOTIFY
                   shouldAddPropertyChanged)
    Q_PROPERTY(bool shouldFocusSearch READ shouldFocusSearch WRITE setShouldFocusSearch NOTIFY
                   shouldFocusSearchChanged)
    Q_PROPERTY(bool shouldFocusPropertyPanel READ shouldFocusPropertyPanel WRITE
                   setShouldFocusPropertyPanel NOTIFY shouldFocusPropertyPanelChanged)
    Q_PROPERTY(bool shouldRenameRuleset READ shouldRenameRuleset WRITE setShouldRenameRuleset NOTIFY
                   shouldRenameRulesetChanged)
    Q_PROPERTY(bool shouldDuplicateRuleset READ shouldDuplicateRuleset WRITE
                   setShouldDuplicateRuleset NOTIFY shouldDuplicateRulesetChanged)
    Q_PROPERTY(bool shouldDeleteRuleset READ shouldDeleteRuleset WRITE setShouldDeleteRuleset NOTIFY
                   shouldDeleteRulesetChanged)
    Q_PROPERTY(bool shouldAddVariable READ shouldAddVariable WRITE setShouldAddVariable NOTIFY
                   shouldAddVariableChanged)
    Q_PROPERTY(bool shouldRenameVariable READ shouldRenameVariable WRITE setShouldRenameVariable
                   NOTIFY shouldRenameVariableChanged)
    Q_PROPERTY(bool shouldDuplicateVariable READ shouldDuplicateVariable WRITE
                   setShouldDuplicateVariable NOTIFY shouldDuplicateVariableChanged)
    Q_PROPERTY(bool shouldDeleteVariable READ shouldDeleteVariable WRITE setShouldDeleteVariable
                   NOTIFY shouldDeleteVariableChanged)
    Q_PROPERTY(QUuid selectedVariablePropID READ selectedVariablePropID WRITE
                   setSelectedVariablePropID NOTIFY selectedVariablePropIDChanged)
    Q_PROPERTY(QUuid selectedVariableRulesetID READ selectedVariableRulesetID WRITE
                   setSelectedVariableRulesetID NOTIFY selectedVariableRulesetIDChanged)
    Q_PROPERTY(QUuid pendingRenameFileID READ pendingRenameFileID WRITE setPendingRenameFileID
                   NOTIFY pendingRenameFileIDChanged)

public:
    explicit Workspace(QObject *parent = nullptr);
    ~Workspace() override;

    // --- Observable fields ---

    // Absolute, clean path of the open folder; empty when no folder is open.
    QString folderPath() const { return m_folderPath; }
    void setFolderPath(const QString &path);
    bool hasFolder() const { return !m_folderPath.isEmpty(); }

    // Every stylesheet of the folder, ascending by full path, paths distinct.
    const CSSFileList &files() const { return m_files; }
    // Emits on every assignment, also of an equal list: a rename changes a
    // file's path without changing the list, and views learn of it here.
    void setFiles(const CSSFileList &files);

    // The file on the canvas, one of files(). Every assignment, also of the
    // same file, saves the session, empties selectedRulesetIDs and forwards
    // the new file's changes, and those of its content, to changed().
    CSSFilePtr selectedFile() const { return m_selectedFile; }
    void setSelectedFile(const CSSFilePtr &file);

    // The ruleset the inspector edits. It may be stale, no longer one of the
    // selected file's rulesets. Every assignment saves the session.
    CSSRulesetPtr selectedRuleset() const { return m_selectedRuleset; }
    void setSelectedRuleset(const CSSRulesetPtr &ruleset);

    // The rulesets of a multi-selection on the canvas.
    QSet<QUuid> selectedRulesetIDs() const { return m_selectedRulesetIDs; }
    void setSelectedRulesetIDs(const QSet<QUuid> &ids);

    // One-shot command flags: a command raises one, and the view that watches
    // it acts on the rising edge and lowers it again. They carry no data; the
    // target is the current selection.
    bool shouldShowNewRulesetSheet() const { return m_shouldShowNewRulesetSheet; }
    void setShouldShowNewRulesetSheet(bool value);
    bool shouldAddProperty() const { return m_shouldAddProperty; }
    void setShouldAddProperty(bool value);
    bool shouldFocusSearch() const { return m_shouldFocusSearch; }
    void setShouldFocusSearch(bool value);
    bool shouldFocusPropertyPanel() const { return m_shouldFocusPropertyPanel; }
    void setShouldFocusPropertyPanel(bool value);
    bool shouldRenameRuleset() const { return m_shouldRenameRuleset; }
    void setShouldRenameRuleset(bool value);
    bool shouldDuplicateRuleset() const { return m_shouldDuplicateRuleset; }
    void setShouldDuplicateRuleset(bool value);
    bool shouldDeleteRuleset() const { return m_shouldDeleteRuleset; }
    void setShouldDeleteRuleset(bool value);
    bool shouldAddVariable() const { return m_shouldAddVariable; }
    void setShouldAddVariable(bool value);
    bool shouldRenameVariable() const { return m_shouldRenameVariable; }
    void setShouldRenameVariable(bool value);
    bool shouldDuplicateVariable() const { return m_shouldDuplicateVariable; }
    void setShouldDuplicateVariable(bool value);
    bool shouldDeleteVariable() const { return m_shouldDeleteVariable; }
    void setShouldDeleteVariable(bool value);

    // The custom property selected on the variables tab, and the ruleset that
    // holds it; null when none.
    QUuid selectedVariablePropID() const { return m_selectedVariablePropID; }
    void setSelectedVariablePropID(const QUuid &id);
    QUuid selectedVariableRulesetID() const { return m_selectedVariableRulesetID; }
    void setSelectedVariableRulesetID(const QUuid &id);

    CanvasTab canvasTab() const { return m_canvasTab; }
    void setCanvasTab(CanvasTab tab);

    // The file whose sidebar row must enter inline rename; null when none.
    QUuid pendingRenameFileID() const { return m_pendingRenameFileID; }
    void setPendingRenameFileID(const QUuid &id);

    // --- Computed values ---

    // Last component of the folder path, or "No Folder Open".
    QString folderName() const;
    bool hasAnyUnsavedChanges() const;

    // --- Services installed by the window ---

    // Answers the delete and close prompts. Without one every prompt gets its
    // last button, Cancel, and nothing is deleted or closed.
    void setPromptHandler(PromptHandler handler);
    // Chooses the folder for openFolderPanel(). Without one nothing is chosen.
    void setFolderChooser(FolderChooser chooser);
    // Shows a file for showInFileManager(). Without one the desktop opens the
    // file's folder.
    void setFileRevealer(FileRevealer revealer);

    // --- Folder and files ---

    // On the next turn of the event loop asks the folder chooser for a folder
    // and opens it; nothing happens when none is chosen. Unsaved changes of
    // the present folder are dropped without a question.
    void openFolderPanel();
    // Makes path the open folder, remembers it for the next launch, loads its
    // stylesheets and watches it. A folder that cannot be listed leaves the
    // previous files and selection in place.
    void openFolder(const QString &path);
    // Selects the file at path when it is one of files(); spellings with "."
    // or ".." match. The selected ruleset stays as it was.
    void selectFile(const QString &path);
    // Saves the selected file; a failure is dropped and the file stays dirty.
    void saveCurrentFile();
    // Saves every file with unsaved changes, going on past failures.
    void saveAllFiles();

    // --- File operations ---

    // Drops the selected ruleset unless it is one of the selected file's
    // rulesets, then reverts the file to the text regarded as on disk.
    void revertCurrentFile();
    // Creates "untitled.css" (or "untitled N.css", N from 2) empty at the top
    // of the folder, selects it and asks for its inline rename.
    void createNewFile();
    // Copies the file as it is on disk to "{base} copy.{ext}" (or
    // "{base} copy N.{ext}") beside it, and selects the copy.
    void duplicateFile(const CSSFilePtr &file);
    // Renames the file in its folder, trimmed of spaces and tabs and given a
    // ".css" ending when it has none; a taken name is refused silently. The
    // object, its selection and its unsaved changes stay.
    void renameFile(const CSSFilePtr &file, const QString &name);
    void showInFileManager(const CSSFilePtr &file);
    // After a confirming prompt moves the file to the trash and drops it; the
    // first other file takes its place when it was selected.
    void deleteFile(const CSSFilePtr &file);
    // After a prompt when files are unsaved: stops watching, returns to no
    // folder and forgets the session, so the next launch opens nothing.
    void closeProject();
    // Writes a kept original of the selected file back over it, atomically,
    // and reloads the file from those bytes. Unsaved changes are first put to
    // a prompt that offers to save them. What the file held on disk goes into
    // the store before, so that a restore can be taken back the same way.
    // Returns whether the file was restored. An original that is not one of
    // the file's in the store, or whose bytes cannot be read or are not
    // UTF-8, changes nothing.
    bool restoreOriginal(OriginalStore &store, const KeptOriginal &original);

    // --- Disk and session ---

    // Brings files() in step with the stylesheets that exist in the folder:
    // vanished ones are dropped with their unsaved changes, new ones are read
    // and added unselected, and files already held are never read again.
    // Called on every change the folder watch reports.
    void reloadFiles();
    // Reopens the folder, file and ruleset of the last session when the
    // preference asks for it and the folder still exists.
    void restoreSession();

Q_SIGNALS:
    void folderPathChanged();
    void filesChanged();
    void selectedFileChanged();
    void selectedRulesetChanged();
    void selectedRulesetIDsChanged();
    void shouldShowNewRulesetSheetChanged();
    void shouldAddPropertyChanged();
    void shouldFocusSearchChanged();
    void shouldFocusPropertyPanelChanged();
    void shouldRenameRulesetChanged();
    void shouldDuplicateRulesetChanged();
    void shouldDeleteRulesetChanged();
    void shouldAddVariableChanged();
    void shouldRenameVariableChanged();
    void shouldDuplicateVariableChanged();
    void shouldDeleteVariableChanged();
    void selectedVariablePropIDChanged();
    void selectedVariableRulesetIDChanged();
    void canvasTabChanged();
    void pendingRenameFileIDChanged();
    // After any notify signal above, and on every change of the selected file,
    // its content included (once per turn of the event loop, as
    // CSSFile::contentChanged() comes).
    void changed();

private:
    template<typename T> void assign(T &field, const T &value, void (Workspace::*notify)());
    int ask(const Prompt &prompt) const;

    // Replaces files() with the stylesheets of folder and selects the file at
    // restoringFilePath with the first ruleset of rulesetSelector, or else the
    // first file. Changes nothing when the folder cannot be listed.
    void loadFiles(const QString &folder, const std::optional<QString> &restoringFilePath,
                   const std::optional<QString> &rulesetSelector);
    // Adds a file of the folder to files() in path order and selects it.
    void insertAndSelect(const CSSFilePtr &file);

    void startWatching(const QString &folder);
    void stopWatching();

    // Writes the folder (when one is open), the selected file and the selected
    // ruleset's selector as the session of the next launch.
    void saveSession();
    void rememberFolder();
    void forgetSession();

    QString m_folderPath;
    CSSFileList m_files;
    QMetaObject::Connection m_selectedFileConnection;
    QMetaObject::Connection m_selectedFileContentConnection;
    CSSFilePtr m_selectedFile;
    CSSRulesetPtr m_selectedRuleset;
    QSet<QUuid> m_selectedRulesetIDs;
    bool m_shouldShowNewRulesetSheet = false;
    bool m_shouldAddProperty = false;
    bool m_shouldFocusSearch = false;
    bool m_shouldFocusPropertyPanel = false;
    bool m_shouldRenameRuleset = false;
    bool m_shouldDuplicateRuleset = false;
    bool m_shouldDeleteRuleset = false;
    QUuid m_selectedVariablePropID;
    QUuid m_selectedVariableRulesetID;
    bool m_shouldAddVariable = false;
    bool m_shouldRenameVariable = false;
    bool m_shouldDuplicateVariable = false;
    bool m_shouldDeleteVariable = false;
    CanvasTab m_canvasTab = CanvasTab::Nodes;
    QFileSystemWatcher *m_watcher = nullptr;
    QUuid m_pendingRenameFileID;

    PromptHandler m_promptHandler;
    FolderChooser m_folderChooser;
    FileRevealer m_fileRevealer;
};

} // namespace Ombrel
