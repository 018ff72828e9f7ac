#include "FileListModel.h"

#include "shell/FileRowText.h"
#include "workspace/Workspace.h"

namespace Ombrel {

FileListModel::FileListModel(Workspace *workspace, QObject *parent)
    : QAbstractListModel(parent), m_workspace(workspace)
{
    connect(workspace, &Workspace::filesChanged, this, &FileListModel::resetFromWorkspace);
    resetFromWorkspace();
}

void FileListModel::resetFromWorkspace()
{
    beginResetModel();
    for (const CSSFilePtr &file : std::as_const(m_files))
        disconnect(file.get(), nullptr, this, nullptr);
    m_files = m_workspace ? m_workspace->files() : CSSFileList();
    m_rows.clear();
    m_rows.reserve(m_files.size());
    for (int row = 0; row < m_files.size(); ++row) {
        const CSSFile *file = m_files.at(row).get();
        m_rows.insert(file, row);
        connect(file, &CSSFile::changed, this, [this, file] { fileChanged(file); });
        // The counts line follows edits of the rulesets once per turn.
        connect(file, &CSSFile::contentChanged, this, [this, file] { fileChanged(file); });
    }
    endResetModel();
}

void FileListModel::fileChanged(const CSSFile *file)
{
    const int row = m_rows.value(file, -1);
    if (row < 0)
        return;
    const QModelIndex changed = index(row);
    Q_EMIT dataChanged(changed, changed);
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_files.size());
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const CSSFile &file = *m_files.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case NameRole:
        return file.name();
    case Qt::ToolTipRole:
        return file.path();
    case Qt::AccessibleDescriptionRole:
        // What the unsaved mark and the counts line show, for those who hear
        // the row rather than see it.
        return file.hasUnsavedChanges() ? tr("Unsaved changes, %1").arg(countsLine(file))
                                        : countsLine(file);
    case CountsRole:
        return countsLine(file);
    case UnsavedRole:
        return file.hasUnsavedChanges();
    case FileIdRole:
        return file.id();
    default:
        return {};
    }
}

Qt::ItemFlags FileListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> FileListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(NameRole, "name");
    names.insert(CountsRole, "counts");
    names.insert(UnsavedRole, "unsaved");
    names.insert(FileIdRole, "fileId");
    return names;
}

CSSFilePtr FileListModel::fileAt(int row) const
{
    return row >= 0 && row < m_files.size() ? m_files.at(row) : nullptr;
}

int FileListModel::rowOf(const QUuid &id) const
{
    for (int row = 0; row < m_files.size(); ++row) {
        if (m_files.at(row)->id() == id)
            return row;
    }
    return -1;
}

} // namespace Ombrel
