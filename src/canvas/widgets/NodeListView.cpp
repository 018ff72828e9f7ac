#include "NodeListView.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeListModel.h"
#include "canvas/NodeRoles.h"
#include "canvas/widgets/NodeDelegate.h"
#include "canvas/widgets/SelectionFade.h"
#include "workspace/Workspace.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

#include <cmath>

namespace Ombrel {

namespace {

// A press becomes a drag once the pointer moved this far.
constexpr int dragStartDistance = 8;
// The dragged cards show at 0.4 of their opacity.
constexpr qreal dragFade = 0.6;

} // namespace

NodeListView::NodeListView(CanvasController &controller, NodeListModel &model, QWidget *parent)
    : QListView(parent), m_controller(controller), m_model(model),
      m_delegate(new NodeDelegate(this)), m_selectionFade(new SelectionFade(this))
{
    setModel(&model);
    setItemDelegate(m_delegate);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    // Each card keeps its margin within its row: that makes the gap of 6
    // between cards, and 16 around the column with the viewport's margins.
    setSpacing(0);
    setViewportMargins(13, 13, 13, 13);
    setBackgroundRole(QPalette::Window);
    viewport()->setBackgroundRole(QPalette::Window);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setFocusPolicy(Qt::StrongFocus);
    // The list scrolls where the canvas asks it to, not to its current
    // index, which follows the selection wherever it was made.
    setAutoScroll(false);
    connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        const QModelIndex index = indexAt(position);
        if (index.isValid())
            Q_EMIT contextMenuRequestedForRow(index.row(), viewport()->mapToGlobal(position));
    });

    CanvasState &state = controller.state();
    connect(
        m_delegate, &NodeDelegate::selectorEdited, this,
        [&state](const QModelIndex &, const QString &text) { state.setEditingRulesetText(text); });
    connect(m_delegate, &NodeDelegate::selectorCommitted, this,
            [this, &state](const QModelIndex &index, const QString &text) {
                // The closing editor may report once more after the end.
                const CSSRulesetPtr ruleset = m_model.rulesetAt(index.row());
                if (!ruleset || ruleset->id() != state.editingRulesetID())
                    return;
                state.setEditingRulesetText(text);
                m_controller.operations().commitRenameRuleset(ruleset);
            });
    connect(m_delegate, &NodeDelegate::selectorCancelled, this,
            [this] { m_controller.cancelRename(); });
    connect(&state, &CanvasState::editingRulesetIDChanged, this, &NodeListView::followEditing);
    connect(&state, &CanvasState::scrollToIDChanged, this, &NodeListView::scrollToRequested);
    connect(&state, &CanvasState::draggingRulesetIDChanged, viewport(),
            qOverload<>(&QWidget::update));
    connect(&state, &CanvasState::dropTargetIndexChanged, viewport(),
            qOverload<>(&QWidget::update));

    m_delegate->setSelectionFade(m_selectionFade);
    m_selectionFade->follow(controller.selectedCardIDs());
    connect(m_selectionFade, &SelectionFade::moved, this, &NodeListView::updateCards);
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        followEditing();
        mirrorSelection();
    });
    connect(&model, &QAbstractItemModel::rowsInserted, this, &NodeListView::mirrorSelection);
    connect(&model, &QAbstractItemModel::layoutChanged, this, &NodeListView::mirrorSelection);
    connect(&controller, &CanvasController::cursorChanged, this, &NodeListView::mirrorSelection);
    followEditing();
    mirrorSelection();
}

// A change of the selection draws again only the cards in view that joined
// or left it, not the whole viewport.
void NodeListView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                               const QList<int> &roles)
{
    if (roles == QList<int>{NodeRoles::Selected}) {
        updateCards(m_selectionFade->follow(m_controller.selectedCardIDs()));
        mirrorSelection();
        return;
    }
    QListView::dataChanged(topLeft, bottomRight, roles);
    if (roles.isEmpty())
        m_selectionFade->follow(m_controller.selectedCardIDs());
}

// The view's own selection is never drawn (the delegate reads the canvas's)
// and never changed by the view (its mode is NoSelection); it is kept equal
// to the canvas's, in runs of rows, for what assistive technology reads.
// The rows are walked until every selected card was found.
void NodeListView::mirrorSelection()
{
    const QSet<QUuid> ids = m_controller.selectedCardIDs();
    const QUuid only = ids.size() == 1 ? *ids.cbegin() : QUuid();
    const auto isSelected = [&ids, &only](const QUuid &id) {
        return only.isNull() ? ids.contains(id) : id == only;
    };
    const QUuid cursorID = m_controller.cursorID();
    const CSSRulesetList &rows = m_model.rows();
    QItemSelection selection;
    QModelIndex cursor;
    qsizetype runStart = -1;
    qsizetype lastSelected = -1;
    qsizetype found = 0;
    for (qsizetype row = 0; row < rows.size() && found < ids.size(); ++row) {
        const QUuid id = rows[row]->id();
        if (!isSelected(id)) {
            if (runStart >= 0)
                selection.select(m_model.index(int(runStart)), m_model.index(int(row - 1)));
            runStart = -1;
            continue;
        }
        ++found;
        lastSelected = row;
        if (runStart < 0)
            runStart = row;
        if (id == cursorID)
            cursor = m_model.index(int(row));
    }
    if (runStart >= 0)
        selection.select(m_model.index(int(runStart)), m_model.index(int(lastSelected)));
    if (selection != selectionModel()->selection())
        selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (cursor != selectionModel()->currentIndex())
        selectionModel()->setCurrentIndex(cursor, QItemSelectionModel::NoUpdate);
}

// Only the visible cards among ids are drawn again.
void NodeListView::updateCards(const QSet<QUuid> &ids)
{
    const QModelIndex first = indexAt(QPoint(0, 0));
    if (!first.isValid())
        return;
    const QModelIndex last = indexAt(QPoint(0, viewport()->height() - 1));
    const int lastRow = last.isValid() ? last.row() : m_model.rowCount() - 1;
    for (int row = first.row(); row <= lastRow; ++row) {
        const CSSRulesetPtr ruleset = m_model.rulesetAt(row);
        if (ruleset && ids.contains(ruleset->id()))
            viewport()->update(visualRect(m_model.index(row)));
    }
}

void NodeListView::press(QMouseEvent *event)
{
    m_controller.tapScrollArea();
    setFocus(Qt::MouseFocusReason);
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = indexAt(event->position().toPoint());
    m_pressPosition = event->position().toPoint() + QPoint(0, verticalOffset());
    m_pressing = true;
    m_dragging = false;
}

void NodeListView::mousePressEvent(QMouseEvent *event)
{
    press(event);
}

// The second press of a quick pair arrives as a double click; the canvas
// times its clicks itself.
void NodeListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    press(event);
}

void NodeListView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressing || !m_pressed.isValid() || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint moved =
        event->position().toPoint() + QPoint(0, verticalOffset()) - m_pressPosition;
    if (!m_dragging && std::hypot(moved.x(), moved.y()) < dragStartDistance)
        return;
    m_dragging = true;
    m_controller.dragCard(m_model.rulesetAt(m_pressed.row()), moved.y(), rowPitch());
}

double NodeListView::rowPitch() const
{
    if (m_model.rowCount() >= 2)
        return visualRect(m_model.index(1)).top() - visualRect(m_model.index(0)).top();
    return m_delegate->cardHeight() + spacing();
}

void NodeListView::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool plain = modifiers == Qt::NoModifier;
    const bool extend = modifiers == Qt::ShiftModifier;
    const auto step = [this, extend](CanvasController::ListStep to) {
        const CSSRulesetPtr target = m_controller.stepSelection(m_model.rows(), to, extend);
        if (const int row = target ? m_model.rowOf(target->id()) : -1; row >= 0)
            scrollTo(m_model.index(row), QAbstractItemView::EnsureVisible);
    };
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
        if (!plain && !extend)
            break;
        step(event->key() == Qt::Key_Up     ? CanvasController::ListStep::Previous
             : event->key() == Qt::Key_Down ? CanvasController::ListStep::Next
             : event->key() == Qt::Key_Home ? CanvasController::ListStep::First
                                            : CanvasController::ListStep::Last);
        event->accept();
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        if (!plain)
            break;
        m_controller.deleteSelection();
        event->accept();
        return;
    case Qt::Key_F2:
        if (!plain)
            break;
        m_controller.renameSelection();
        event->accept();
        return;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        verticalScrollBar()->triggerAction(event->key() == Qt::Key_PageUp
                                               ? QAbstractSlider::SliderPageStepSub
                                               : QAbstractSlider::SliderPageStepAdd);
        event->accept();
        return;
    default:
        break;
    }
    QListView::keyPressEvent(event);
}

void NodeListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_pressing || event->button() != Qt::LeftButton)
        return;
    m_pressing = false;
    if (m_dragging) {
        m_dragging = false;
        m_controller.endDrag();
        return;
    }
    if (!m_pressed.isValid()) {
        m_controller.tapBackground();
        return;
    }
    m_controller.clickCard(m_model.rulesetAt(m_pressed.row()), event->modifiers(),
                           qint64(event->timestamp()));
}

QRect NodeListView::dropLineRect() const
{
    const std::optional<int> target = m_controller.state().dropTargetIndex();
    const int count = m_model.rowCount();
    if (!target || count == 0)
        return QRect();
    QRect line;
    if (*target >= count) {
        const QRect last = visualRect(m_model.index(count - 1));
        line = QRect(last.left(), last.bottom(), last.width(), 2);
    } else {
        const QModelIndex index = m_model.index(*target);
        const CSSRulesetPtr ruleset = m_model.rulesetAt(*target);
        if (ruleset && ruleset->id() == m_controller.state().draggingRulesetID())
            return QRect();
        const QRect card = visualRect(index);
        // The card's own top is its margin below the row's.
        line = QRect(card.left(), card.top() - 1, card.width(), 2);
    }
    return line.adjusted(8, 0, -8, 0);
}

void NodeListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    QPainter painter(viewport());
    if (!m_controller.state().draggingRulesetID().isNull()) {
        // On the plain background a veil of its colour is the card at 0.4.
        QColor veil = palette().color(QPalette::Window);
        veil.setAlphaF(dragFade);
        for (int row = 0; row < m_model.rowCount(); ++row) {
            const CSSRulesetPtr ruleset = m_model.rulesetAt(row);
            if (m_controller.isDragged(*ruleset))
                painter.fillRect(visualRect(m_model.index(row)), veil);
        }
    }
    const QRect line = dropLineRect();
    if (!line.isEmpty()) {
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath capsule;
        capsule.addRoundedRect(line, 1, 1);
        painter.fillPath(capsule, palette().color(QPalette::Highlight));
    }
}

void NodeListView::followEditing()
{
    if (m_editing.isValid())
        closePersistentEditor(m_editing);
    m_editing = QPersistentModelIndex();
    m_editor = nullptr;
    const int row = m_model.rowOf(m_controller.state().editingRulesetID());
    if (row < 0)
        return;
    m_editing = m_model.index(row);
    openPersistentEditor(m_editing);
    m_editor = indexWidget(m_editing);
    if (m_editor)
        m_editor->setFocus(Qt::OtherFocusReason);
}

void NodeListView::scrollToRequested()
{
    const int row = m_model.rowOf(m_controller.state().scrollToID());
    if (row >= 0)
        scrollTo(m_model.index(row), QAbstractItemView::PositionAtTop);
}

} // namespace Ombrel
