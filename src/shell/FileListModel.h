#pragma once

#include "model/CSSFile.h"

#include <QAbstractListModel>
#include <QPointer>

namespace Ombrel {

class Workspace;

// The stylesheets of a workspace as a flat list, in files() order, for the
// sidebar. Assistive technology reads a row's name (Qt::DisplayRole) and its
// description (Qt::AccessibleDescriptionRole): whether it has unsaved
// changes, and the counts line.
class FileListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        // The file's name (also Qt::DisplayRole and Qt::EditRole).
        NameRole = Qt::UserRole + 1,
        // The counts line under the name.
        CountsRole,
        // bool: the file has unsaved changes.
        UnsavedRole,
        // QUuid: the file's id.
        FileIdRole,
    };

    explicit FileListModel(Workspace *workspace, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QHash<int, QByteArray> roleNames() const override;

    CSSFilePtr fileAt(int row) const;
    // The row of the file with this id; -1 when none.
    int rowOf(const QUuid &id) const;

private:
    void resetFromWorkspace();
    void fileChanged(const CSSFile *file);

    QPointer<Workspace> m_workspace;
    CSSFileList m_files;
    QHash<const CSSFile *, int> m_rows;
};

} // namespace Ombrel
