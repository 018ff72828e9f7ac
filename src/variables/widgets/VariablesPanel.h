#pragma once

#include <QStackedWidget>

namespace Ombrel {

class CanvasController;
class UndoManager;
class VariableListModel;
class VariableListView;
class VariablesController;
class VariablesEmptyView;

// The pane of the variables tab: the custom properties of the selected file
// grouped by the ruleset that declares them, or the empty state of a file
// that has none. The canvas makes a new one each time the tab shows; the
// filter, the folded groups and the scroll request stay with the canvas.
class VariablesPanel : public QStackedWidget
{
    Q_OBJECT

public:
    // undoManager may be null, as for VariableOperations.
    VariablesPanel(CanvasController &canvas, UndoManager *undoManager, QWidget *parent = nullptr);
    ~VariablesPanel() override;

    VariablesController &controller() const { return *m_controller; }
    VariableListModel *model() const { return m_model; }
    VariableListView *list() const { return m_list; }
    // Exists once it has first shown.
    VariablesEmptyView *emptyView() const { return m_empty; }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void updatePage();
    void showContextMenu(int row, const QPoint &globalPos);
    void releaseFocus();

    VariablesController *m_controller;
    VariableListModel *m_model;
    VariableListView *m_list;
    VariablesEmptyView *m_empty = nullptr;
};

} // namespace Ombrel
