#pragma once

#include "workspace/CanvasTab.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

#include <functional>

class QToolButton;

namespace Ombrel {

class CanvasController;
class CanvasTabButtons;
class EmptyFileView;
class KeyInterceptBox;
class NewRulesetSheet;
class NewVariableSheet;
class NodeListModel;
class NodeListView;
class NodePane;
class OriginalNotice;
class TabContentArea;
class ToolbarTextField;
class UndoManager;
class Workspace;

// The main pane of a window while a stylesheet is selected: a toolbar with
// the three tab buttons and the tab's filter and plus button, and the pane of
// the current tab. On the rulesets tab that is the list of cards, the empty
// state of a file without rulesets, or the message that the filter found
// nothing. The pane of a tab is made afresh each time the tab is shown, and
// fades in over the one before. The canvas follows the workspace's selected
// file and keeps its state (tab, filter) from one file to the next.
//
// Everything it does goes through its CanvasController; the view shows the
// controller's state and hands it the user's gestures.
class CanvasView : public QWidget
{
    Q_OBJECT

public:
    // Makes the pane of a tab whose views belong to a subsystem above the
    // canvas (the variables and the code), each time the tab is shown.
    using PaneFactory = std::function<QWidget *(CanvasController &controller)>;

    // undoManager may be null, as for the controller.
    CanvasView(Workspace &workspace, UndoManager *undoManager, QWidget *parent = nullptr);
    ~CanvasView() override;

    // The pane of the variables or the code tab; a tab without one shows an
    // empty pane. Set while the tab shows, it replaces the pane at once.
    void setPaneFactory(CanvasTab tab, PaneFactory factory);

    CanvasController &controller() const { return *m_controller; }
    // The parts of the rulesets tab's pane; null while another tab shows.
    NodeListView *nodeList() const;
    EmptyFileView *emptyFileView() const;
    QWidget *noMatchView() const;
    NodeListModel *nodeModel() const { return m_model; }
    CanvasTabButtons *tabButtons() const { return m_tabButtons; }
    QToolButton *tabButton(CanvasTab tab) const;
    ToolbarTextField *searchField() const { return m_searchField; }
    ToolbarTextField *variableSearchField() const { return m_variableSearchField; }
    QToolButton *plusButton() const { return m_plus; }
    // Each sheet exists once it has first opened.
    NewRulesetSheet *newRulesetSheet() const { return m_rulesetSheet; }
    NewVariableSheet *newVariableSheet() const { return m_variableSheet; }
    TabContentArea *tabContent() const { return m_tabContent; }
    // The line over the panes about what a save drops of the file.
    OriginalNotice *originalNotice() const { return m_originalNotice; }
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
    QWidget *buildPane(CanvasTab tab);
    void updateToolbar();
    void updateNodePage();
    void updateSheets();
    NewRulesetSheet *ensureRulesetSheet();
    NewVariableSheet *ensureVariableSheet();
    void updateStyling();
    void showContextMenu(int row, const QPoint &globalPos);
    void releaseFocus();
    void applyPalette();

    CanvasController *m_controller;
    NodeListModel *m_model;
    KeyInterceptBox *m_keyIntercept;
    CanvasTabButtons *m_tabButtons = nullptr;
    ToolbarTextField *m_searchField = nullptr;
    QToolButton *m_searchClear = nullptr;
    QWidget *m_searchBox = nullptr;
    ToolbarTextField *m_variableSearchField = nullptr;
    QToolButton *m_variableSearchClear = nullptr;
    QWidget *m_variableSearchBox = nullptr;
    QToolButton *m_plus = nullptr;
    TabContentArea *m_tabContent = nullptr;
    OriginalNotice *m_originalNotice = nullptr;
    // The tab whose pane is in front, and that pane when it is the rulesets'.
    CanvasTab m_shownTab = CanvasTab::Nodes;
    QPointer<NodePane> m_nodePane;
    NewRulesetSheet *m_rulesetSheet = nullptr;
    NewVariableSheet *m_variableSheet = nullptr;
    QHash<CanvasTab, PaneFactory> m_paneFactories;
};

} // namespace Ombrel
