#include "CanvasView.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeListModel.h"
#include "canvas/widgets/CanvasTabButtons.h"
#include "canvas/widgets/KeyInterceptBox.h"
#include "canvas/widgets/NewRulesetSheet.h"
#include "canvas/widgets/NewVariableSheet.h"
#include "canvas/widgets/NodePane.h"
#include "canvas/widgets/OriginalNotice.h"
#include "canvas/widgets/TabContentArea.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/AppPreferences.h"
#include "workspace/Workspace.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

QColor secondaryColor(const QPalette &palette)
{
    return palette.color(QPalette::PlaceholderText);
}

QToolButton *symbolButton(int size, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setIconSize(QSize(size, size));
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

CanvasView::CanvasView(Workspace &workspace, UndoManager *undoManager, QWidget *parent)
    : QWidget(parent), m_controller(new CanvasController(workspace, undoManager, this)),
      m_model(new NodeListModel(*m_controller, this)), m_keyIntercept(new KeyInterceptBox(this))
{
    m_tabContent = new TabContentArea(this);
    m_shownTab = workspace.canvasTab();
    m_tabContent->showPane(buildPane(m_shownTab), false);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildToolbar());
    m_originalNotice = new OriginalNotice(workspace, this);
    layout->addWidget(m_originalNotice);
    layout->addWidget(m_tabContent, 1);

    bindState();
    applyPalette();
    updateToolbar();
}

CanvasView::~CanvasView() = default;

QWidget *CanvasView::buildToolbar()
{
    auto *toolbar = new QWidget(this);
    auto *row = new QHBoxLayout(toolbar);
    row->setContentsMargins(6, 4, 6, 4);
    row->setSpacing(0);
    m_tabButtons = new CanvasTabButtons(toolbar);
    m_tabButtons->setCurrent(m_controller->workspace().canvasTab(), false);
    connect(m_tabButtons, &CanvasTabButtons::tabClicked, m_controller,
            &CanvasController::selectTab);
    row->addWidget(m_tabButtons);
    row->addStretch();

    m_searchField = new ToolbarTextField(tr("Filter rulesets"), toolbar);
    m_searchBox = buildSearchField(m_searchField, &m_searchClear);
    m_variableSearchField = new ToolbarTextField(tr("Filter variables"), toolbar);
    m_variableSearchBox = buildSearchField(m_variableSearchField, &m_variableSearchClear);
    row->addWidget(m_searchBox);
    row->addWidget(m_variableSearchBox);

    m_plus = symbolButton(14, toolbar);
    m_plus->setToolTip(tr("New"));
    connect(m_plus, &QToolButton::clicked, this, [this] {
        if (m_controller->workspace().canvasTab() == CanvasTab::Nodes)
            m_controller->startNewRuleset();
        else
            m_controller->startNewVariable();
    });
    row->addWidget(m_plus);
    return toolbar;
}

QWidget *CanvasView::buildSearchField(ToolbarTextField *field, QToolButton **clearButton)
{
    auto *box = new QWidget(field->parentWidget());
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(8, 3, 8, 3);
    row->setSpacing(4);
    // The row keeps its own width: space the toolbar has to spare goes to
    // its stretch, not between the symbol and the field.
    box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto *symbol = new QLabel(box);
    symbol->setObjectName(QStringLiteral("searchSymbol"));
    symbol->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    field->setFixedWidth(120);
    *clearButton = symbolButton(11, box);
    row->addWidget(symbol);
    row->addWidget(field);
    row->addWidget(*clearButton);
    return box;
}

void CanvasView::bindState()
{
    Workspace &workspace = m_controller->workspace();
    CanvasState &state = m_controller->state();

    connect(&workspace, &Workspace::canvasTabChanged, this, [this] {
        updateTabs();
        updateToolbar();
    });
    connect(&workspace, &Workspace::selectedFileChanged, this, &CanvasView::updateStyling);
    // Every change of the workspace or of its selected file.
    connect(&workspace, &Workspace::changed, this, [this] {
        updateToolbar();
        updateNodePage();
    });
    // Any file shown: the model follows the file, the pane follows the model.
    // The readings of the file these take are kept by the file from one
    // change to the next, so a signal costs no pass over the rulesets.
    const auto rowsChanged = [this] {
        updateStyling();
        updateToolbar();
        updateNodePage();
    };
    connect(m_model, &QAbstractItemModel::rowsInserted, this, rowsChanged);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, rowsChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, rowsChanged);
    connect(m_model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                if (roles.isEmpty()) {
                    updateStyling();
                    updateToolbar();
                }
            });
    connect(&AppPreferences::shared(), &AppPreferences::showNodeStylingChanged, this,
            &CanvasView::updateStyling);

    connect(m_searchField, &ToolbarTextField::textChangedByUser, &state,
            &CanvasState::setSearchText);
    connect(m_searchField, &ToolbarTextField::focusedChanged, &state,
            &CanvasState::setSearchFocused);
    connect(m_searchClear, &QToolButton::clicked, &state,
            [&state] { state.setSearchText(QString()); });
    connect(&state, &CanvasState::searchTextChanged, this, [this, &state] {
        m_searchField->showText(state.searchText());
        updateToolbar();
        updateNodePage();
    });
    connect(&state, &CanvasState::searchFocusedChanged, this,
            [this, &state] { m_searchField->showFocused(state.searchFocused()); });
    connect(m_variableSearchField, &ToolbarTextField::textChangedByUser, &state,
            &CanvasState::setVariableSearchText);
    connect(m_variableSearchField, &ToolbarTextField::focusedChanged, &state,
            &CanvasState::setVariableSearchFocused);
    connect(m_variableSearchClear, &QToolButton::clicked, &state,
            [&state] { state.setVariableSearchText(QString()); });
    connect(&state, &CanvasState::variableSearchTextChanged, this, [this, &state] {
        m_variableSearchField->showText(state.variableSearchText());
        updateToolbar();
    });
    connect(&state, &CanvasState::variableSearchFocusedChanged, this,
            [this, &state] { m_variableSearchField->showFocused(state.variableSearchFocused()); });

    connect(m_controller, &CanvasController::focusReleaseRequested, this,
            &CanvasView::releaseFocus);
    connect(m_controller, &CanvasController::keyInterceptActiveChanged, this,
            [this] { m_keyIntercept->setActive(m_controller->keyInterceptActive()); });

    connect(&state, &CanvasState::showNewRulesetSheetChanged, this, &CanvasView::updateSheets);
    connect(&state, &CanvasState::showNewVariableSheetChanged, this, &CanvasView::updateSheets);
}

QToolButton *CanvasView::tabButton(CanvasTab tab) const
{
    return m_tabButtons->button(tab);
}

NodeListView *CanvasView::nodeList() const
{
    return m_nodePane ? m_nodePane->list() : nullptr;
}

EmptyFileView *CanvasView::emptyFileView() const
{
    return m_nodePane ? m_nodePane->emptyFileView() : nullptr;
}

QWidget *CanvasView::noMatchView() const
{
    return m_nodePane ? m_nodePane->noMatchView() : nullptr;
}

QWidget *CanvasView::currentPane() const
{
    return m_tabContent->currentPane();
}

QWidget *CanvasView::currentNodePage() const
{
    return m_nodePane ? m_nodePane->currentWidget() : nullptr;
}

// A change of tab brings a new pane for it, which fades in over the last.
void CanvasView::updateTabs()
{
    const CanvasTab current = m_controller->workspace().canvasTab();
    m_tabButtons->setCurrent(current, true);
    if (current == m_shownTab)
        return;
    m_shownTab = current;
    m_tabContent->showPane(buildPane(current), true);
}

void CanvasView::setPaneFactory(CanvasTab tab, PaneFactory factory)
{
    m_paneFactories.insert(tab, std::move(factory));
    if (tab == m_shownTab)
        m_tabContent->showPane(buildPane(tab), false);
}

QWidget *CanvasView::buildPane(CanvasTab tab)
{
    if (tab != CanvasTab::Nodes) {
        m_nodePane = nullptr;
        const PaneFactory factory = m_paneFactories.value(tab);
        QWidget *pane = factory ? factory(*m_controller) : new QWidget;
        pane->setObjectName(tab == CanvasTab::Variables ? QStringLiteral("variablesPane")
                                                        : QStringLiteral("codePane"));
        return pane;
    }
    m_nodePane = new NodePane(*m_controller, *m_model);
    connect(m_nodePane, &NodePane::contextMenuRequestedForRow, this, &CanvasView::showContextMenu);
    return m_nodePane;
}

void CanvasView::updateToolbar()
{
    const CanvasTab tab = m_controller->workspace().canvasTab();
    const CanvasState &state = m_controller->state();
    const bool filterAvailable = CanvasController::isFilterAvailable(m_controller->workspace());
    m_searchBox->setVisible(tab == CanvasTab::Nodes && filterAvailable);
    m_variableSearchBox->setVisible(tab == CanvasTab::Variables && filterAvailable);
    m_searchClear->setVisible(!state.searchText().isEmpty());
    m_variableSearchClear->setVisible(!state.variableSearchText().isEmpty());
    m_plus->setVisible(tab != CanvasTab::Code);
}

void CanvasView::updateNodePage()
{
    if (m_nodePane)
        m_nodePane->updatePage();
}

// The sheets are made the first time they open: most sessions never add a
// ruleset, and a window shows sooner without them.
NewRulesetSheet *CanvasView::ensureRulesetSheet()
{
    if (m_rulesetSheet)
        return m_rulesetSheet;
    CanvasState &state = m_controller->state();
    RulesetOperations &operations = m_controller->operations();
    m_rulesetSheet = new NewRulesetSheet(this);
    connect(m_rulesetSheet, &NewRulesetSheet::selectorEdited, &state,
            &CanvasState::setNewSelectorText);
    connect(m_rulesetSheet, &NewRulesetSheet::committed, this,
            [&state, &operations] { operations.addRuleset(state.newSelectorText()); });
    connect(m_rulesetSheet, &NewRulesetSheet::cancelled, &state,
            [&state] { state.setShowNewRulesetSheet(false); });
    return m_rulesetSheet;
}

NewVariableSheet *CanvasView::ensureVariableSheet()
{
    if (m_variableSheet)
        return m_variableSheet;
    CanvasState &state = m_controller->state();
    RulesetOperations &operations = m_controller->operations();
    m_variableSheet = new NewVariableSheet(this);
    connect(m_variableSheet, &NewVariableSheet::nameEdited, &state,
            &CanvasState::setNewVariableName);
    connect(m_variableSheet, &NewVariableSheet::valueEdited, &state,
            &CanvasState::setNewVariableValue);
    connect(m_variableSheet, &NewVariableSheet::selectorEdited, &state,
            &CanvasState::setNewVariableSelector);
    connect(m_variableSheet, &NewVariableSheet::committed, this, [&state, &operations] {
        operations.addVariable(state.newVariableName(), state.newVariableValue());
    });
    connect(m_variableSheet, &NewVariableSheet::cancelled, &state,
            [&state] { state.setShowNewVariableSheet(false); });
    return m_variableSheet;
}

void CanvasView::updateSheets()
{
    const CanvasState &state = m_controller->state();
    if (state.showNewRulesetSheet() && !(m_rulesetSheet && m_rulesetSheet->isVisible())) {
        ensureRulesetSheet()->showSelector(state.newSelectorText());
        m_rulesetSheet->open();
    } else if (!state.showNewRulesetSheet() && m_rulesetSheet && m_rulesetSheet->isVisible()) {
        m_rulesetSheet->hide();
    }
    if (state.showNewVariableSheet() && !(m_variableSheet && m_variableSheet->isVisible())) {
        QStringList selectors;
        if (const CSSFilePtr file = m_controller->file()) {
            for (const CSSRulesetPtr &ruleset : file->rulesets())
                selectors.append(ruleset->selector());
        }
        ensureVariableSheet()->showValues(state.newVariableName(), state.newVariableValue(),
                                          state.newVariableSelector(), selectors);
        m_variableSheet->open();
    } else if (!state.showNewVariableSheet() && m_variableSheet && m_variableSheet->isVisible()) {
        m_variableSheet->hide();
    }
}

// The file-wide inputs of the cards, read again whenever the rows or the
// file changed, then one repaint of the visible cards.
void CanvasView::updateStyling()
{
    if (m_nodePane)
        m_nodePane->updateStyling();
}

void CanvasView::showContextMenu(int row, const QPoint &globalPos)
{
    const CSSRulesetPtr ruleset = m_model->rulesetAt(row);
    if (!ruleset)
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Rename"), this, [this, ruleset] { m_controller->renameFromMenu(ruleset); });
    menu->addAction(tr("Duplicate"), this,
                    [this, ruleset] { m_controller->operations().duplicateRuleset(ruleset); });
    menu->addSeparator();
    menu->addAction(tr("Delete"), this,
                    [this, ruleset] { m_controller->operations().deleteRuleset(ruleset); });
    menu->popup(globalPos);
}

void CanvasView::releaseFocus()
{
    if (QWidget *focus = window()->focusWidget())
        focus->clearFocus();
}

void CanvasView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_keyIntercept->setup(window(), [this] { m_controller->focusPropertyPanel(); });
    m_keyIntercept->setActive(m_controller->keyInterceptActive());
}

void CanvasView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

// The symbols and secondary texts take their colours from the palette.
void CanvasView::applyPalette()
{
    m_plus->setIcon(symbolIcon(QStringLiteral("plus"), 32, palette().color(QPalette::WindowText)));
    for (QToolButton *clear : {m_searchClear, m_variableSearchClear})
        clear->setIcon(
            symbolIcon(QStringLiteral("xmark.circle.fill"), 32, secondaryColor(palette())));
    for (QLabel *symbol : findChildren<QLabel *>(QStringLiteral("searchSymbol")))
        symbol->setPixmap(symbolPixmap(QStringLiteral("magnifyingglass"), 11,
                                       secondaryColor(palette()), devicePixelRatioF()));
}

} // namespace Ombrel
