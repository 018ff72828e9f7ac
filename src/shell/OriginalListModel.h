#pragma once

#include "workspace/OriginalStore.h"

#include <QAbstractTableModel>
#include <QList>

namespace Ombrel {

// The kept originals of one file as a table, in the order given (newest
// first): when each was kept, and its size.
class OriginalListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, SizeColumn, ColumnCount };

    explicit OriginalListModel(QList<KeptOriginal> originals, QObject *parent = nullptr);

    KeptOriginal original(int row) const { return m_originals.value(row); }

    // "2025-01-05 14:03:22", the time as the store names it.
    static QString timeText(const QDateTime &time);
    // "3.6 MB", in the locale's numbers.
    static QString sizeText(qint64 size);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QList<KeptOriginal> m_originals;
};

} // namespace Ombrel
