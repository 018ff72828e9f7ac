#pragma once

#include "shell/FileRowText.h"

#include <QHash>
#include <QStyleOptionViewItem>
#include <QUuid>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListView;
class QMenu;
class QToolButton;

namespace Ombrel {

class FileListModel;
class FileRowView;
class Workspace;

// The stylesheets of the window's folder under the folder's name, with a bar
// below for opening a folder and creating a file. Choosing a row here is the
// only way a file is selected by hand.
class SidebarView : public QWidget
{
    Q_OBJECT

public:
    explicit SidebarView(Workspace *workspace, QWidget *parent = nullptr);

    QListView *listView() const { return m_list; }
    FileListModel *model() const { return m_model; }

    // Puts the row's name into an edit field with its base name selected.
    // The field stays open, wherever the focus goes, until Return renames the
    // file or Escape leaves it as it was, or until the file leaves the list.
    void beginRename(int row);
    // The open rename field of a row; nullptr when the row is not renamed.
    QLineEdit *renameField(int row) const;
    // The context menu of a row, as it would pop up.
    QMenu *createContextMenu(int row, QWidget *parent);
    // The tint a row's icon is drawn with now.
    RowTint iconTintOf(int row) const;
    RowTint unsavedMarkTintOf(int row) const;
    // Where a row's symbol and unsaved mark are drawn, in the list's viewport.
    QRect iconRectOf(int row) const;
    QRectF unsavedMarkRectOf(int row) const;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    // What an open rename field holds, kept across the list's resets, which
    // take every field down.
    struct RenameField
    {
        QString text;
        bool focused = false;
        int cursor = 0;
        int selectionStart = -1;
        int selectionLength = 0;
    };

    QLineEdit *renameFieldOf(const QUuid &fileId) const;
    // The file whose rename field this is; null when it is none.
    QUuid renamedFileOf(const QWidget *field) const;
    QLineEdit *openRenameField(int row, const QString &text);
    void rememberRenameFields();
    void reopenRenameFields();
    void endRename(QWidget *field, bool commit);
    void selectionChangedByUser();
    void showSelectedFile();
    void servePendingRename();
    void updateFolderState();
    void applyPalette();
    QStyleOptionViewItem optionFor(int row) const;

    Workspace *m_workspace;
    FileListModel *m_model;
    FileRowView *m_rowView;
    QLabel *m_header;
    QListView *m_list;
    QToolButton *m_newFileButton;
    // The files whose rows are being renamed, each with its own field.
    QHash<QUuid, RenameField> m_renames;
    // Set while the list follows the workspace, so that the follow is not
    // taken for a choice by hand.
    bool m_followingWorkspace = false;
};

} // namespace Ombrel
