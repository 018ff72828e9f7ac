#include "CodeEditorView.h"

#include "canvas/CanvasController.h"
#include "code/CursorMapping.h"
#include "code/widgets/CodeCoordinator.h"
#include "code/widgets/CodeTextEdit.h"
#include "workspace/Workspace.h"

#include <QTimer>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

// The newly set text is laid out before the cursor goes into it.
constexpr int positioningDelayMs = 50;

// The cursor at the placement, as much of its range in view as fits, and
// the keyboard focus in the text.
void place(CodeTextEdit &view, const CursorMapping::Placement &placement)
{
    QTextCursor cursor = view.textCursor();
    cursor.setPosition(view.documentPosition(placement.scrollStart + placement.scrollLength));
    view.setTextCursor(cursor);
    view.ensureCursorVisible();
    cursor.setPosition(view.documentPosition(placement.cursor));
    view.setTextCursor(cursor);
    view.ensureCursorVisible();
    view.setFocus(Qt::OtherFocusReason);
}

} // namespace

CodeEditorView::CodeEditorView(CanvasController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller),
      m_textView(new CodeTextEdit(controller.undoManager(), this)),
      m_coordinator(
          new CodeCoordinator(controller.file(), m_textView, controller.undoManager(), this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_textView);
    setFocusProxy(m_textView);

    if (const CSSFilePtr file = controller.file())
        m_coordinator->applyContent(file->generateCSS());
    controller.codeCursorBridge().setCoordinator(m_coordinator);

    Workspace &workspace = controller.workspace();
    connect(&workspace, &Workspace::changed, this, &CodeEditorView::scheduleUpdate);
    connect(&workspace, &Workspace::selectedFileChanged, this, &CodeEditorView::followFile);
    connect(&controller.state(), &CanvasState::codeJumpRulesetIDChanged, this,
            &CodeEditorView::scheduleUpdate);
    connect(&controller.state(), &CanvasState::codeJumpPropIDChanged, this,
            &CodeEditorView::scheduleUpdate);
    followFile();
    updateView();
}

void CodeEditorView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_coordinator->viewShown();
}

void CodeEditorView::scheduleUpdate()
{
    if (m_updatePending)
        return;
    m_updatePending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_updatePending = false;
            updateView();
        },
        Qt::QueuedConnection);
}

void CodeEditorView::updateView()
{
    // A pane that is leaving its tab acts no more.
    if (m_controller.workspace().canvasTab() != CanvasTab::Code)
        return;
    const CSSFilePtr file = m_controller.file();
    if (!file)
        return;
    if (!m_coordinator->userIsEditing()) {
        const QString css = file->generateCSS();
        if (css != m_coordinator->text())
            m_coordinator->applyContent(css);
    }
    positionCursor();
}

void CodeEditorView::positionCursor()
{
    const CanvasState &state = m_controller.state();
    const QUuid jumpRulesetID = state.codeJumpRulesetID();
    const QUuid jumpPropID = state.codeJumpPropID();
    const CSSRulesetPtr selected = m_controller.workspace().selectedRuleset();
    const CSSFilePtr file = m_controller.file();

    if (!jumpRulesetID.isNull() && !jumpPropID.isNull() &&
        m_coordinator->lastPositionedPropID() != jumpPropID) {
        m_coordinator->setLastPositionedPropID(jumpPropID);
        m_coordinator->setLastPositionedRulesetID(selected ? selected->id() : QUuid());
        positionLater([file, jumpRulesetID, jumpPropID](const QString &text) {
            return CursorMapping::propertyPlacement(text, file->rulesets(), jumpRulesetID,
                                                    jumpPropID);
        });
        return;
    }
    if (selected && m_coordinator->lastPositionedRulesetID() != selected->id()) {
        m_coordinator->setLastPositionedRulesetID(selected->id());
        positionLater([file, id = selected->id()](const QString &text) {
            return CursorMapping::rulesetPlacement(text, file->rulesets(), id);
        });
    }
}

template<typename Placing> void CodeEditorView::positionLater(Placing placing)
{
    QTimer::singleShot(positioningDelayMs, m_textView, [this, placing] {
        if (m_controller.workspace().canvasTab() != CanvasTab::Code)
            return;
        if (const std::optional<CursorMapping::Placement> placement =
                placing(m_coordinator->text()))
            place(*m_textView, *placement);
    });
}

void CodeEditorView::followFile()
{
    const CSSFilePtr file = m_controller.file();
    if (file == m_shownFile)
        return;
    for (const QMetaObject::Connection &connection : std::as_const(m_fileConnections))
        disconnect(connection);
    m_fileConnections.clear();
    m_shownFile = file;
    // An edit inside any of the file's rulesets reaches the view through the
    // file, once per turn, however many rulesets a keystroke replaced.
    if (file)
        m_fileConnections = {
            connect(file.get(), &CSSFile::changed, this, &CodeEditorView::scheduleUpdate),
            connect(file.get(), &CSSFile::contentChanged, this, &CodeEditorView::scheduleUpdate),
        };
    scheduleUpdate();
}

} // namespace Ombrel
