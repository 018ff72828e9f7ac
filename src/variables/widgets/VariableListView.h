#pragma once

#include <QHash>
#include <QListView>
#include <QPersistentModelIndex>
#include <QPoint>
#include <QUuid>

namespace Ombrel {

class GroupChevrons;
class VariableDelegate;
class VariableListModel;
class VariableRow;
class VariablesController;

// The list of the variables tab: group headers and variable rows, painted
// by its delegate, with a row widget over each row whose name or value is
// being edited.
//
// Its gestures follow the tab's own rules rather than the item view's, so
// the view handles the mouse itself: a release without movement is a click
// (a header folds or unfolds its group, the name starts a rename, the value
// an edit of the value, a colour's swatch opens its picker), and a movement
// of 8 points or more with the button down drags the row, one drop position
// per row pitch. The row whose picker was opened last keeps its widget, so
// that the picker and the system chooser it may have lent stay to commit. It draws the fading
// of the dragged row, the drop line, and the message that the filter found
// nothing.
class VariableListView : public QListView
{
    Q_OBJECT

public:
    VariableListView(VariablesController &controller, VariableListModel &model,
                     QWidget *parent = nullptr);

    VariableDelegate *delegate() const { return m_delegate; }
    GroupChevrons *chevrons() const { return m_chevrons; }
    // The widget over the variable's row while it is being edited.
    VariableRow *rowWidget(const QUuid &propID) const;
    // Where the drop line stands, in viewport coordinates; empty when none.
    QRect dropLineRect() const;
    // Where the message that nothing matches stands; empty when none.
    QRect noMatchRect() const;

Q_SIGNALS:
    void contextMenuRequestedForRow(int row, const QPoint &globalPos);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

private:
    void press(QMouseEvent *event);
    void click(const QModelIndex &index, QPoint position);
    void followRows();
    void showRowEntries();
    void openRow(const QUuid &propID);
    void pickColor(const QUuid &propID);
    void closeRow(const QUuid &propID);
    void scrollToRequested(const QUuid &propID);
    void focusValue(const QUuid &propID);
    void updateGroup(const QUuid &group);

    VariablesController &m_controller;
    VariableListModel &m_model;
    GroupChevrons *m_chevrons;
    VariableDelegate *m_delegate;
    QPersistentModelIndex m_pressed;
    QPoint m_pressPosition;
    bool m_pressing = false;
    bool m_dragging = false;
    // The rows that have a widget, by the id of their variable.
    QHash<QUuid, QPersistentModelIndex> m_rows;
    // The row whose colour picker was opened last.
    QUuid m_pickingPropID;
};

} // namespace Ombrel
