#include "VariablesPanel.h"

#include "VariableListView.h"
#include "VariablesEmptyView.h"
#include "variables/VariableListModel.h"
#include "variables/VariablesController.h"

#include <QMenu>

namespace Ombrel {

VariablesPanel::VariablesPanel(CanvasController &canvas, UndoManager *undoManager, QWidget *parent)
    : QStackedWidget(parent), m_controller(new VariablesController(canvas, undoManager, this)),
      m_model(new VariableListModel(*m_controller, this)),
      m_list(new VariableListView(*m_controller, *m_model, this))
{
    setObjectName(QStringLiteral("variablesPane"));
    addWidget(m_list);
    connect(m_list, &VariableListView::contextMenuRequestedForRow, this,
            &VariablesPanel::showContextMenu);
    connect(m_controller, &VariablesController::listingChanged, this, &VariablesPanel::updatePage);
    connect(m_controller, &VariablesController::focusReleaseRequested, this,
            &VariablesPanel::releaseFocus);
    updatePage();
}

VariablesPanel::~VariablesPanel() = default;

void VariablesPanel::updatePage()
{
    if (!m_controller->showsEmptyState()) {
        setCurrentWidget(m_list);
        return;
    }
    if (!m_empty) {
        m_empty = new VariablesEmptyView(this);
        connect(m_empty, &VariablesEmptyView::newRulesetRequested, m_controller,
                &VariablesController::addRuleset);
        connect(m_empty, &VariablesEmptyView::newVariableRequested, m_controller,
                &VariablesController::addVariable);
        addWidget(m_empty);
    }
    const CSSFilePtr file = m_controller->file();
    m_empty->showFile(file ? file->name() : QString(), m_controller->fileHasRulesets());
    setCurrentWidget(m_empty);
}

void VariablesPanel::showEvent(QShowEvent *event)
{
    QStackedWidget::showEvent(event);
    m_controller->setShown(true);
}

void VariablesPanel::hideEvent(QHideEvent *event)
{
    QStackedWidget::hideEvent(event);
    m_controller->setShown(false);
}

void VariablesPanel::showContextMenu(int row, const QPoint &globalPos)
{
    const std::optional<VariableEntry> entry = m_model->entryAt(row);
    if (!entry)
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Rename"), this, [this, entry] { m_controller->startRename(*entry); });
    menu->addAction(tr("Duplicate"), this, [this, entry] { m_controller->duplicate(*entry); });
    menu->addSeparator();
    menu->addAction(tr("Delete"), this, [this, entry] { m_controller->remove(*entry); });
    menu->popup(globalPos);
}

// A committed value leaves no field of the tab focused; focus elsewhere in
// the window is not the tab's to take.
void VariablesPanel::releaseFocus()
{
    QWidget *focus = window()->focusWidget();
    if (focus && isAncestorOf(focus))
        focus->clearFocus();
}

} // namespace Ombrel
