#pragma once

#include <QPixmap>
#include <QStyledItemDelegate>

namespace Ombrel {

class GroupChevrons;
class VariablesController;

// Paints the rows of the variables tab, headers and entries, from the roles
// of VariableRoles, and makes the row widget the list opens over a row that
// is being edited. The list opens and closes those widgets itself; the
// delegate only keeps them showing their row.
class VariableDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    VariableDelegate(VariablesController &controller, const GroupChevrons &chevrons,
                     QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

protected:
    // The row handles its own keys and focus; the default filter would close
    // it behind the list's back.
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    const QPixmap &chevron(const QColor &color, qreal devicePixelRatio) const;

    VariablesController &m_controller;
    const GroupChevrons &m_chevrons;
    // Asked for every row at each layout of the list: measured once.
    const int m_headerHeight;
    const int m_entryHeight;
    mutable QPixmap m_chevron;
    mutable QColor m_chevronColor;
};

} // namespace Ombrel
