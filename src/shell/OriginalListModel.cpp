#include "OriginalListModel.h"

#include <QLocale>

namespace Ombrel {

OriginalListModel::OriginalListModel(QList<KeptOriginal> originals, QObject *parent)
    : QAbstractTableModel(parent), m_originals(std::move(originals))
{}

QString OriginalListModel::timeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString OriginalListModel::sizeText(qint64 size)
{
    return QLocale().formattedDataSize(size, 1, QLocale::DataSizeSIFormat);
}

int OriginalListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_originals.size());
}

int OriginalListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant OriginalListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const KeptOriginal &original = m_originals.at(index.row());
    if (role == Qt::DisplayRole)
        return index.column() == TimeColumn ? timeText(original.time) : sizeText(original.size);
    if (role == Qt::TextAlignmentRole && index.column() == SizeColumn)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole)
        return original.path;
    return {};
}

QVariant OriginalListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section == TimeColumn)
        return tr("Kept");
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section == SizeColumn)
        return tr("Size");
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace Ombrel
