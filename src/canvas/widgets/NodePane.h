#pragma once

#include <QStackedWidget>

class QLabel;

namespace Ombrel {

class CanvasController;
class EmptyFileView;
class NodeListModel;
class NodeListView;

// The pane of the rulesets tab: the list of cards, the empty state of a file
// without rulesets, or the message that the filter found nothing. The canvas
// makes a new one each time the tab is shown, so it starts scrolled to the
// top; the canvas tells it when its file, rulesets or filter change.
class NodePane : public QStackedWidget
{
    Q_OBJECT

public:
    NodePane(CanvasController &controller, NodeListModel &model, QWidget *parent = nullptr);

    NodeListView *list() const { return m_list; }
    // Each page exists once it has first shown.
    EmptyFileView *emptyFileView() const { return m_empty; }
    QWidget *noMatchView() const { return m_noMatch; }

    // Shows the page that the file and the filter call for.
    void updatePage();
    // Hands the cards the inputs shared by the whole file, and repaints them.
    void updateStyling();

Q_SIGNALS:
    void contextMenuRequestedForRow(int row, const QPoint &globalPos);

protected:
    void changeEvent(QEvent *event) override;

private:
    void ensureEmptyFileView();
    void ensureNoMatchView();
    void applyPalette();

    CanvasController &m_controller;
    NodeListModel &m_model;
    NodeListView *m_list;
    EmptyFileView *m_empty = nullptr;
    QWidget *m_noMatch = nullptr;
    QLabel *m_noMatchSymbol = nullptr;
    QLabel *m_noMatchText = nullptr;
};

} // namespace Ombrel
