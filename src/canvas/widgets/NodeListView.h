#pragma once

#include <QListView>
#include <QPersistentModelIndex>
#include <QPoint>
#include <QPointer>

namespace Ombrel {

class CanvasController;
class NodeDelegate;
class NodeListModel;
class SelectionFade;

// The card list of the canvas. Selection, the double click into rename and
// the drag reorder follow the canvas's own rules rather than the item view's,
// so the view hands its mouse to the controller: a release without movement
// is a click on the card (or on the background), and a movement of 8 points
// or more with the button down drags the card. Its keys go to the controller
// too: Up, Down, Home and End move the selection (Shift extends it), Delete
// and Backspace delete the selected card, F2 renames it. It draws the fading
// of the dragged cards and the drop line over the cards, and hosts the
// inline selector editor of the card being renamed. Cards pass into and out
// of their selected look with a short fade.
//
// The item selection of the view mirrors the canvas's, and its current index
// is the card the keyboard stands on, so that assistive technology reads
// each card's selector and whether it is selected.
class NodeListView : public QListView
{
    Q_OBJECT

public:
    NodeListView(CanvasController &controller, NodeListModel &model, QWidget *parent = nullptr);

    NodeDelegate *delegate() const { return m_delegate; }
    SelectionFade *selectionFade() const { return m_selectionFade; }
    // The open inline editor, if any.
    QWidget *selectorEditor() const { return m_editor; }
    // Where the drop line stands, in viewport coordinates; empty when none.
    QRect dropLineRect() const;
    // The distance from one card's row to the next's, as painted.
    double rowPitch() const;

Q_SIGNALS:
    void contextMenuRequestedForRow(int row, const QPoint &globalPos);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

private:
    void press(QMouseEvent *event);
    void followEditing();
    void scrollToRequested();
    void updateCards(const QSet<QUuid> &ids);
    void mirrorSelection();

    CanvasController &m_controller;
    NodeListModel &m_model;
    NodeDelegate *m_delegate;
    SelectionFade *m_selectionFade;
    QPersistentModelIndex m_pressed;
    // Where the press was, in the coordinates of the whole list, so that a
    // scroll during a drag does not move the card away from the pointer.
    QPoint m_pressPosition;
    bool m_pressing = false;
    bool m_dragging = false;
    QPersistentModelIndex m_editing;
    QPointer<QWidget> m_editor;
};

} // namespace Ombrel
