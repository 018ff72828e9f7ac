#include "CanvasView.h"

#include "canvas/CanvasController.h"
#include "canvas/CanvasSymbols.h"
#include "canvas/EmptyFileView.h"
#include "canvas/KeyInterceptBox.h"
#include "canvas/NewRulesetSheet.h"
#include "canvas/NewVariableSheet.h"
#include "canvas/NodeDelegate.h"
#include "canvas/NodeListModel.h"
#include "canvas/NodeListView.h"
#include "canvas/ToolbarTextField.h"
#include "shell/AppPreferences.h"
#include "workspace/Workspace.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

struct TabInfo
{
    CanvasTab tab;
    const char *label;
    const char *symbol;
};

constexpr TabInfo tabInfos[] = {
    {CanvasTab::Nodes, QT_TRANSLATE_NOOP("Ombrel::CanvasView", "Rulesets"), "rectangle.3.group"},
    {CanvasTab::Variables, QT_TRANSLATE_NOOP("Ombrel::CanvasView", "Variables"), "curlybraces"},
    {CanvasTab::Code, QT_TRANSLATE_NOOP("Ombrel::CanvasView", "Code"),
     "chevron.left.forwardslash.chevron.right"},
};

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
    m_empty = new EmptyFileView(this);
    m_list = new NodeListView(*m_controller, *m_model, this);

    m_noMatch = new QWidget(this);
    m_noMatch->setAutoFillBackground(true);
    m_noMatch->setBackgroundRole(QPalette::Window);
    m_noMatchSymbol = new QLabel(m_noMatch);
    m_noMatchText = new QLabel(m_noMatch);
    QFont noMatchFont = m_noMatchText->font();
    noMatchFont.setPointSizeF(13);
    m_noMatchText->setFont(noMatchFont);
    auto *noMatchLayout = new QVBoxLayout(m_noMatch);
    noMatchLayout->setContentsMargins(0, 60, 0, 0);
    noMatchLayout->setSpacing(10);
    noMatchLayout->addWidget(m_noMatchSymbol, 0, Qt::AlignHCenter);
    noMatchLayout->addWidget(m_noMatchText, 0, Qt::AlignHCenter);
    noMatchLayout->addStretch();

    m_nodePages = new QStackedWidget(this);
    m_nodePages->addWidget(m_empty);
    m_nodePages->addWidget(m_list);
    m_nodePages->addWidget(m_noMatch);

    // The variables and code panes plug in here, one page per tab.
    m_tabs = new QStackedWidget(this);
    m_tabs->addWidget(m_nodePages);
    m_tabs->addWidget(new QWidget(this));
    m_tabs->addWidget(new QWidget(this));

    m_rulesetSheet = new NewRulesetSheet(this);
    m_variableSheet = new NewVariableSheet(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildToolbar());
    layout->addWidget(m_tabs, 1);

    bindState();
    applyPalette();
    updateStyling();
    updateTabs();
    updateToolbar();
    updateNodePage();
}

CanvasView::~CanvasView() = default;

QWidget *CanvasView::buildToolbar()
{
    auto *toolbar = new QWidget(this);
    auto *row = new QHBoxLayout(toolbar);
    row->setContentsMargins(6, 4, 6, 4);
    row->setSpacing(0);
    for (const TabInfo &info : tabInfos) {
        auto *button = new QToolButton(toolbar);
        button->setText(tr(info.label));
        button->setIconSize(QSize(12, 12));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this,
                [this, tab = info.tab] { m_controller->selectTab(tab); });
        m_tabButtons[int(info.tab)] = button;
        row->addWidget(button);
    }
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
    auto *symbol = new QLabel(box);
    symbol->setObjectName(QStringLiteral("searchSymbol"));
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
    RulesetOperations &operations = m_controller->operations();

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
    connect(m_model, &QAbstractItemModel::rowsInserted, this, [this] {
        updateStyling();
        updateToolbar();
        updateNodePage();
    });
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, [this] {
        updateStyling();
        updateToolbar();
        updateNodePage();
    });
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

    connect(m_empty, &EmptyFileView::newRulesetRequested, m_controller,
            &CanvasController::startNewRuleset);
    connect(m_empty, &EmptyFileView::newVariableRequested, m_controller,
            &CanvasController::startNewVariable);
    connect(m_list, &NodeListView::contextMenuRequestedForRow, this, &CanvasView::showContextMenu);
    connect(m_controller, &CanvasController::focusReleaseRequested, this,
            &CanvasView::releaseFocus);
    connect(m_controller, &CanvasController::keyInterceptActiveChanged, this,
            [this] { m_keyIntercept->setActive(m_controller->keyInterceptActive()); });

    connect(m_rulesetSheet, &NewRulesetSheet::selectorEdited, &state,
            &CanvasState::setNewSelectorText);
    connect(m_rulesetSheet, &NewRulesetSheet::committed, this,
            [&state, &operations] { operations.addRuleset(state.newSelectorText()); });
    connect(m_rulesetSheet, &NewRulesetSheet::cancelled, &state,
            [&state] { state.setShowNewRulesetSheet(false); });
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
    connect(&state, &CanvasState::showNewRulesetSheetChanged, this, &CanvasView::updateSheets);
    connect(&state, &CanvasState::showNewVariableSheetChanged, this, &CanvasView::updateSheets);
}

QToolButton *CanvasView::tabButton(CanvasTab tab) const
{
    return m_tabButtons[int(tab)];
}

QWidget *CanvasView::currentPane() const
{
    return m_tabs->currentWidget();
}

QWidget *CanvasView::currentNodePage() const
{
    return m_nodePages->currentWidget();
}

void CanvasView::updateTabs()
{
    const CanvasTab current = m_controller->workspace().canvasTab();
    m_tabs->setCurrentIndex(int(current));
    for (const TabInfo &info : tabInfos) {
        QToolButton *button = m_tabButtons[int(info.tab)];
        const bool isCurrent = info.tab == current;
        QFont font = button->font();
        font.setPointSizeF(12);
        font.setWeight(isCurrent ? QFont::DemiBold : QFont::Normal);
        button->setFont(font);
        QPalette palette = this->palette();
        const QColor text =
            isCurrent ? palette.color(QPalette::WindowText) : secondaryColor(palette);
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::WindowText, text);
        button->setPalette(palette);
        button->setIcon(CanvasSymbols::icon(QString::fromLatin1(info.symbol), text));
    }
}

void CanvasView::updateToolbar()
{
    const CanvasTab tab = m_controller->workspace().canvasTab();
    const CSSFilePtr file = m_controller->file();
    const CanvasState &state = m_controller->state();
    m_searchBox->setVisible(tab == CanvasTab::Nodes && file && !file->rulesets().isEmpty());
    m_variableSearchBox->setVisible(tab == CanvasTab::Variables && m_controller->hasVariables());
    m_searchClear->setVisible(!state.searchText().isEmpty());
    m_variableSearchClear->setVisible(!state.variableSearchText().isEmpty());
    m_plus->setVisible(tab != CanvasTab::Code);
}

void CanvasView::updateNodePage()
{
    const CSSFilePtr file = m_controller->file();
    const QString search = m_controller->state().searchText();
    if (!file || file->rulesets().isEmpty()) {
        m_empty->showFile(file ? file->name() : QString(), file && !file->variables().isEmpty());
        m_nodePages->setCurrentWidget(m_empty);
    } else if (m_model->rowCount() == 0 && !search.isEmpty()) {
        m_noMatchText->setText(tr("No rulesets match \"%1\"").arg(search));
        m_nodePages->setCurrentWidget(m_noMatch);
    } else {
        m_nodePages->setCurrentWidget(m_list);
    }
}

void CanvasView::updateSheets()
{
    const CanvasState &state = m_controller->state();
    if (state.showNewRulesetSheet() && !m_rulesetSheet->isVisible()) {
        m_rulesetSheet->showSelector(state.newSelectorText());
        m_rulesetSheet->open();
    } else if (!state.showNewRulesetSheet() && m_rulesetSheet->isVisible()) {
        m_rulesetSheet->hide();
    }
    if (state.showNewVariableSheet() && !m_variableSheet->isVisible()) {
        QStringList selectors;
        if (const CSSFilePtr file = m_controller->file()) {
            for (const CSSRulesetPtr &ruleset : file->rulesets())
                selectors.append(ruleset->selector());
        }
        m_variableSheet->showValues(state.newVariableName(), state.newVariableValue(),
                                    state.newVariableSelector(), selectors);
        m_variableSheet->open();
    } else if (!state.showNewVariableSheet() && m_variableSheet->isVisible()) {
        m_variableSheet->hide();
    }
}

// The file-wide inputs of the cards, read again whenever a ruleset or the
// file changed, then one repaint of the visible cards.
void CanvasView::updateStyling()
{
    NodeDelegate *delegate = m_list->delegate();
    const CSSFilePtr file = m_controller->file();
    delegate->setVariables(file ? file->variables() : CSSVariables());
    delegate->setFilePath(file ? file->path() : QString());
    delegate->setShowStyling(AppPreferences::shared().showNodeStyling());
    delegate->setColorScheme(colorSchemeOf(palette()));
    m_list->viewport()->update();
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
    if (event->type() != QEvent::PaletteChange)
        return;
    updateTabs();
    updateStyling();
    applyPalette();
}

// The symbols and secondary texts take their colours from the palette.
void CanvasView::applyPalette()
{
    m_noMatchSymbol->setPixmap(CanvasSymbols::pixmap(
        QStringLiteral("magnifyingglass"), 28, secondaryColor(palette()), devicePixelRatioF()));
    QPalette secondary = m_noMatchText->palette();
    secondary.setColor(QPalette::WindowText, secondaryColor(palette()));
    m_noMatchText->setPalette(secondary);
    m_plus->setIcon(
        CanvasSymbols::icon(QStringLiteral("plus"), palette().color(QPalette::WindowText)));
    for (QToolButton *clear : {m_searchClear, m_variableSearchClear})
        clear->setIcon(
            CanvasSymbols::icon(QStringLiteral("xmark.circle.fill"), secondaryColor(palette())));
    for (QLabel *symbol : findChildren<QLabel *>(QStringLiteral("searchSymbol")))
        symbol->setPixmap(CanvasSymbols::pixmap(QStringLiteral("magnifyingglass"), 11,
                                                secondaryColor(palette()), devicePixelRatioF()));
}

} // namespace Ombrel
