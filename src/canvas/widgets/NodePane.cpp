#include "NodePane.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeListModel.h"
#include "canvas/widgets/EmptyFileView.h"
#include "canvas/widgets/NodeDelegate.h"
#include "canvas/widgets/NodeListView.h"
#include "widgets/SymbolIcon.h"
#include "workspace/AppPreferences.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace Ombrel {

NodePane::NodePane(CanvasController &controller, NodeListModel &model, QWidget *parent)
    : QStackedWidget(parent), m_controller(controller), m_model(model),
      m_list(new NodeListView(controller, model, this))
{
    addWidget(m_list);
    connect(m_list, &NodeListView::contextMenuRequestedForRow, this,
            &NodePane::contextMenuRequestedForRow);
    updateStyling();
    updatePage();
}

void NodePane::updatePage()
{
    const CSSFilePtr file = m_controller.file();
    const QString search = m_controller.state().searchText();
    if (!file || file->rulesets().isEmpty()) {
        ensureEmptyFileView();
        m_empty->showFile(file ? file->name() : QString(), file && file->hasVariables());
        setCurrentWidget(m_empty);
    } else if (m_model.rowCount() == 0 && !search.isEmpty()) {
        ensureNoMatchView();
        m_noMatchText->setText(tr("No rulesets match \"%1\"").arg(search));
        setCurrentWidget(m_noMatch);
    } else {
        setCurrentWidget(m_list);
    }
}

// The empty state and the no-match message are made the first time they
// show: most files open on their cards, and the window shows sooner.
void NodePane::ensureEmptyFileView()
{
    if (m_empty)
        return;
    m_empty = new EmptyFileView(this);
    connect(m_empty, &EmptyFileView::newRulesetRequested, &m_controller,
            &CanvasController::startNewRuleset);
    connect(m_empty, &EmptyFileView::newVariableRequested, &m_controller,
            &CanvasController::startNewVariable);
    addWidget(m_empty);
}

void NodePane::ensureNoMatchView()
{
    if (m_noMatch)
        return;
    m_noMatch = new QWidget(this);
    m_noMatchSymbol = new QLabel(m_noMatch);
    m_noMatchText = new QLabel(m_noMatch);
    m_noMatch->setAutoFillBackground(true);
    m_noMatch->setBackgroundRole(QPalette::Window);
    QFont noMatchFont = m_noMatchText->font();
    noMatchFont.setPointSizeF(13);
    m_noMatchText->setFont(noMatchFont);
    auto *noMatchLayout = new QVBoxLayout(m_noMatch);
    noMatchLayout->setContentsMargins(0, 60, 0, 0);
    noMatchLayout->setSpacing(10);
    noMatchLayout->addWidget(m_noMatchSymbol, 0, Qt::AlignHCenter);
    noMatchLayout->addWidget(m_noMatchText, 0, Qt::AlignHCenter);
    noMatchLayout->addStretch();
    addWidget(m_noMatch);
    applyPalette();
}

void NodePane::updateStyling()
{
    NodeDelegate *delegate = m_list->delegate();
    const CSSFilePtr file = m_controller.file();
    delegate->setVariables(file ? file->variables() : CSSVariables());
    delegate->setFilePath(file ? file->path() : QString());
    delegate->setShowStyling(AppPreferences::shared().showNodeStyling());
    delegate->setColorScheme(colorSchemeOf(palette()));
    m_list->viewport()->update();
}

void NodePane::changeEvent(QEvent *event)
{
    QStackedWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    applyPalette();
    updateStyling();
}

// The symbol and the text of the no-match message take the palette's
// secondary colour.
void NodePane::applyPalette()
{
    if (!m_noMatch)
        return;
    const QColor secondary = palette().color(QPalette::PlaceholderText);
    m_noMatchSymbol->setPixmap(
        symbolPixmap(QStringLiteral("magnifyingglass"), 28, secondary, devicePixelRatioF()));
    QPalette textPalette = m_noMatchText->palette();
    textPalette.setColor(QPalette::WindowText, secondary);
    m_noMatchText->setPalette(textPalette);
}

} // namespace Ombrel
