#pragma once

#include "workspace/CanvasTab.h"

#include <QWidget>

class QLabel;
class QMenu;
class QStackedWidget;
class QToolButton;

namespace Ombrel {

class CanvasController;
class EmptyFileView;
class KeyInterceptBox;
class NewRulesetSheet;
class NewVariableSheet;
class NodeListModel;
class NodeListView;
class ToolbarTextField;
class UndoManager;
class Workspace;

// The main pane of a window while a stylesheet is selected: a toolbar with
// the three tab buttons and the tab's filter and plus button, and the pane of
// the current tab. On the rulesets tab that is the list of cards, the empty
// state of a file without rulesets, or the message that the filter found
// nothing. The pane follows the workspace's selected file and keeps its state
// (tab, filter) from one file to the next.
//
// Everything it does goes through its CanvasController; the view shows the
// controller's state and hands it the user's gestures.
class CanvasView : public QWidget
{
    Q_OBJECT

public:
    // undoManager may be null, as for the controller.
    CanvasView(Workspace &workspace, UndoManager *undoManager, QWidget *parent = nullptr);
    ~CanvasView() override;

    CanvasController &controller() const { return *m_controller; }
    NodeListView *nodeList() const { return m_list; }
    NodeListModel *nodeModel() const { return m_model; }
    QToolButton *tabButton(CanvasTab tab) const;
    ToolbarTextField *searchField() const { return m_searchField; }
    ToolbarTextField *variableSearchField() const { return m_variableSearchField; }
    QToolButton *plusButton() const { return m_plus; }
    EmptyFileView *emptyFileView() const { return m_empty; }
    QWidget *noMatchView() const { return m_noMatch; }
    NewRulesetSheet *newRulesetSheet() const { return m_rulesetSheet; }
    NewVariableSheet *newVariableSheet() const { return m_variableSheet; }
    // The pane of the current tab, and of the rulesets tab the page in front.
    QWidget *currentPane() const;
    QWidget *currentNodePage() const;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *buildToolbar();
    QWidget *buildSearchField(ToolbarTextField *field, QToolButton **clearButton);
    void bindState();
    void updateTabs();
    void updateToolbar();
    void updateNodePage();
    void updateSheets();
    void updateStyling();
    void showContextMenu(int row, const QPoint &globalPos);
    void releaseFocus();
    void applyPalette();

    CanvasController *m_controller;
    NodeListModel *m_model;
    KeyInterceptBox *m_keyIntercept;
    QToolButton *m_tabButtons[3] = {};
    ToolbarTextField *m_searchField = nullptr;
    QToolButton *m_searchClear = nullptr;
    QWidget *m_searchBox = nullptr;
    ToolbarTextField *m_variableSearchField = nullptr;
    QToolButton *m_variableSearchClear = nullptr;
    QWidget *m_variableSearchBox = nullptr;
    QToolButton *m_plus = nullptr;
    QStackedWidget *m_tabs = nullptr;
    QStackedWidget *m_nodePages = nullptr;
    EmptyFileView *m_empty = nullptr;
    NodeListView *m_list = nullptr;
    QWidget *m_noMatch = nullptr;
    QLabel *m_noMatchText = nullptr;
    QLabel *m_noMatchSymbol = nullptr;
    NewRulesetSheet *m_rulesetSheet = nullptr;
    NewVariableSheet *m_variableSheet = nullptr;
};

} // namespace Ombrel
