#include "MainDetailView.h"

#include "inspector/widgets/PropertyEditorView.h"
#include "shell/WindowState.h"
#include "shell/widgets/CanvasColumn.h"
#include "shell/widgets/InspectorPlaceholder.h"
#include "shell/widgets/WelcomeView.h"
#include "workspace/Workspace.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QStackedWidget>

namespace Ombrel {

namespace {

constexpr int contentMinimumWidth = 400;
constexpr int detailMinimumWidth = 260;
constexpr int detailIdealWidth = 300;

} // namespace

MainDetailView::MainDetailView(Workspace *workspace, UndoManager *undoManager, QWidget *parent)
    : QWidget(parent), m_workspace(workspace), m_undoManager(undoManager)
{
    setObjectName(QStringLiteral("MainDetailView"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_split = new QSplitter(Qt::Horizontal, this);
    m_split->setChildrenCollapsible(false);
    m_split->setHandleWidth(1);
    layout->addWidget(m_split);

    m_content = new QStackedWidget(m_split);
    m_content->setObjectName(QStringLiteral("contentColumn"));
    m_content->setMinimumWidth(contentMinimumWidth);
    m_split->addWidget(m_content);
    m_split->setStretchFactor(0, 1);

    connect(workspace, &Workspace::changed, this, [this] {
        updateContent();
        updateDetail();
    });
    // The inspector takes a new property; on the other tabs it is absent, so
    // the request brings the rulesets tab first.
    connect(workspace, &Workspace::shouldAddPropertyChanged, this, [this] {
        if (m_workspace->shouldAddProperty())
            m_workspace->setCanvasTab(CanvasTab::Nodes);
    });
    updateContent();
    updateDetail();
}

QWidget *MainDetailView::contentColumn() const
{
    return m_content->currentWidget();
}

QWidget *MainDetailView::detailColumn() const
{
    return m_detail;
}

PropertyEditorView *MainDetailView::propertyEditor() const
{
    return m_editor;
}

QWidget *MainDetailView::detailContent() const
{
    return m_detail ? m_detail->currentWidget() : nullptr;
}

void MainDetailView::updateContent()
{
    const bool hasFile = bool(m_workspace->selectedFile());
    // The canvas is made with the first selected file and then follows the
    // selection itself, keeping its tab and filter.
    if (hasFile && !m_canvas) {
        m_canvas = makeCanvasColumn(m_workspace, m_undoManager, m_content);
        m_content->addWidget(m_canvas);
    }
    // The welcome view too is made only when it is first needed.
    if (!hasFile && !m_welcome) {
        m_welcome = new WelcomeView(m_workspace, m_content);
        m_content->addWidget(m_welcome);
    }
    m_content->setCurrentWidget(hasFile ? m_canvas : m_welcome);
}

void MainDetailView::updateDetail()
{
    const bool wanted = showPropertyPanel(*m_workspace);
    if (!wanted) {
        delete m_detail;
        return;
    }
    if (!m_detail) {
        m_detail = new QStackedWidget(m_split);
        m_detail->setObjectName(QStringLiteral("detailColumn"));
        m_detail->setMinimumWidth(detailMinimumWidth);
        m_split->addWidget(m_detail);
        m_split->setStretchFactor(1, 0);
        const int total = m_split->width();
        if (total > contentMinimumWidth + detailIdealWidth)
            m_split->setSizes({total - detailIdealWidth, detailIdealWidth});
    }
    // The editor follows the selection rather than being made anew, so that
    // what is typed in it reaches the ruleset it was typed for.
    const CSSRulesetPtr ruleset = m_workspace->selectedRuleset();
    const CSSFilePtr file = m_workspace->selectedFile();
    if (ruleset && file) {
        if (!m_editor) {
            m_editor = new PropertyEditorView(*m_workspace, m_undoManager, m_detail);
            m_detail->addWidget(m_editor);
        }
        m_editor->setTarget(ruleset, file);
        m_detail->setCurrentWidget(m_editor);
        return;
    }
    // The hidden editor lets go of its ruleset and file, ending what was in
    // progress there as a change of selection does.
    if (m_editor)
        m_editor->setTarget(nullptr, nullptr);
    if (!m_placeholder) {
        m_placeholder = new InspectorPlaceholder(m_detail);
        m_detail->addWidget(m_placeholder);
    }
    m_detail->setCurrentWidget(m_placeholder);
}

} // namespace Ombrel
