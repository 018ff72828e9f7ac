#pragma once

#include "shell/FileRowText.h"

#include <QStyledItemDelegate>

namespace Ombrel {

// One row of the sidebar: the document symbol, the file's name with the
// unsaved mark, and the counts line. Rows are painted, not made of widgets,
// so that folders of thousands of files scroll as fast as a few; the name
// becomes an edit field while the row is renamed.
class FileRowView : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    // Where the name is drawn in a row, the part of the row that begins a
    // rename when clicked on a selected row.
    QRect nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    // Where the document symbol and the unsaved mark of a row are drawn.
    QRect iconRect(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    QRectF unsavedMarkRect(const QStyleOptionViewItem &option, const QModelIndex &index) const;

    // The tints a row is drawn with, from its state and the list's focus.
    static RowTint iconTint(const QStyleOptionViewItem &option, const QModelIndex &index);
    static RowTint markTint(const QStyleOptionViewItem &option);
    static QColor colorOf(RowTint tint, const QPalette &palette);

Q_SIGNALS:
    // Return and Escape in a row's rename field.
    void renameSubmitted(QWidget *field);
    void renameCancelled(QWidget *field);

protected:
    // Only Return and Escape end a rename; losing the focus neither commits
    // nor cancels it, and the list does not close the field on its own.
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    int nameRoom(const QStyleOptionViewItem &option, const QModelIndex &index) const;
};

} // namespace Ombrel
