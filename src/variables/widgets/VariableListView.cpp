#include "VariableListView.h"

#include "GroupChevrons.h"
#include "VariableDelegate.h"
#include "VariableRow.h"
#include "VariableRowStyle.h"
#include "variables/VariableListModel.h"
#include "variables/VariablesController.h"

#include <QApplication>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace Ombrel {

namespace {

// A press becomes a drag once the pointer moved this far.
constexpr int dragStartDistance = 8;
// The dragged row shows at 0.4 of its opacity.
constexpr qreal dragFade = 0.6;
// The drop line's inset from the sides, and the message's from the top.
constexpr int dropLineInset = 8;
constexpr int noMatchTopInset = 40;
constexpr int noMatchTextSize = 13;

QFont noMatchFont()
{
    QFont font;
    font.setPixelSize(noMatchTextSize);
    return font;
}

} // namespace

VariableListView::VariableListView(VariablesController &controller, VariableListModel &model,
                                   QWidget *parent)
    : QListView(parent), m_controller(controller), m_model(model),
      m_chevrons(new GroupChevrons(this)),
      m_delegate(new VariableDelegate(controller, *m_chevrons, this))
{
    setModel(&model);
    setItemDelegate(m_delegate);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setSpacing(0);
    setBackgroundRole(QPalette::Base);
    viewport()->setBackgroundRole(QPalette::Base);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        const QModelIndex index = indexAt(position);
        if (m_model.entryAt(index.row()))
            Q_EMIT contextMenuRequestedForRow(index.row(), viewport()->mapToGlobal(position));
    });

    connect(&controller, &VariablesController::listingChanged, this, [this] {
        followRows();
        viewport()->update();
    });
    connect(&controller, &VariablesController::rowStateChanged, this,
            &VariableListView::followRows);
    connect(&controller, &VariablesController::dragChanged, viewport(),
            qOverload<>(&QWidget::update));
    connect(&controller, &VariablesController::scrollRequested, this,
            &VariableListView::scrollToRequested);
    connect(&controller, &VariablesController::valueFocusRequested, this,
            &VariableListView::focusValue);
    connect(m_chevrons, &GroupChevrons::moved, this, &VariableListView::updateGroup);
    followRows();
}

VariableRow *VariableListView::rowWidget(const QUuid &propID) const
{
    const QPersistentModelIndex index = m_rows.value(propID);
    return index.isValid() ? qobject_cast<VariableRow *>(indexWidget(index)) : nullptr;
}

// A row has a widget while its name or value is being edited, and while its
// colour picker may still commit.
void VariableListView::followRows()
{
    QSet<QUuid> wanted;
    if (!m_pickingPropID.isNull())
        wanted.insert(m_pickingPropID);
    for (const QUuid &id : m_controller.editingValuePropIDs())
        wanted.insert(id);
    if (!m_controller.renamingPropID().isNull())
        wanted.insert(m_controller.renamingPropID());
    const QList<QUuid> open = m_rows.keys();
    for (const QUuid &id : open) {
        const QPersistentModelIndex index = m_rows.value(id);
        if (!wanted.contains(id) || !index.isValid() ||
            m_model.entryAt(index.row()).value_or(VariableEntry()).propID != id)
            closeRow(id);
    }
    for (const QUuid &id : std::as_const(wanted)) {
        if (!m_rows.contains(id))
            openRow(id);
    }
    showRowEntries();
}

void VariableListView::openRow(const QUuid &propID)
{
    const int row = m_model.rowOfEntry(propID);
    if (row < 0)
        return;
    const QPersistentModelIndex index = m_model.index(row);
    m_rows.insert(propID, index);
    openPersistentEditor(index);
    if (auto *widget = qobject_cast<VariableRow *>(indexWidget(index)))
        connect(widget, &VariableRow::swatchPressed, this, &VariableListView::pickColor);
}

void VariableListView::pickColor(const QUuid &propID)
{
    if (propID == m_pickingPropID)
        return;
    m_pickingPropID = propID;
    followRows();
}

void VariableListView::closeRow(const QUuid &propID)
{
    const QPersistentModelIndex index = m_rows.take(propID);
    if (!index.isValid())
        return;
    // The focus of a closing row stays with the list rather than moving on
    // to the next widget of the window.
    const QWidget *focus = QApplication::focusWidget();
    if (QWidget *row = indexWidget(index);
        row && focus && (row == focus || row->isAncestorOf(focus)))
        setFocus(Qt::OtherFocusReason);
    closePersistentEditor(index);
}

// Row widgets learn of their entry's changes here: the list only hands an
// editor the changes of a single row.
void VariableListView::showRowEntries()
{
    for (auto it = m_rows.constBegin(); it != m_rows.constEnd(); ++it) {
        if (auto *row = qobject_cast<VariableRow *>(indexWidget(it.value()))) {
            if (const std::optional<VariableEntry> entry = m_model.entryAt(it.value().row()))
                row->showEntry(*entry);
        }
    }
}

void VariableListView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                   const QList<int> &roles)
{
    QListView::dataChanged(topLeft, bottomRight, roles);
    for (auto it = m_rows.constBegin(); it != m_rows.constEnd(); ++it) {
        const int row = it.value().row();
        if (row < topLeft.row() || row > bottomRight.row())
            continue;
        if (auto *widget = qobject_cast<VariableRow *>(indexWidget(it.value()))) {
            if (const std::optional<VariableEntry> entry = m_model.entryAt(row))
                widget->showEntry(*entry);
        }
    }
}

void VariableListView::focusValue(const QUuid &propID)
{
    if (VariableRow *row = rowWidget(propID))
        row->focusValue();
}

void VariableListView::scrollToRequested(const QUuid &propID)
{
    const int row = m_model.rowOfEntry(propID);
    if (row >= 0)
        scrollTo(m_model.index(row), QAbstractItemView::PositionAtCenter);
}

void VariableListView::updateGroup(const QUuid &group)
{
    const int row = m_model.rowOfGroup(group);
    if (row >= 0)
        viewport()->update(visualRect(m_model.index(row)));
}

void VariableListView::press(QMouseEvent *event)
{
    // Taking the focus ends an edit in progress, which commits.
    setFocus(Qt::MouseFocusReason);
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = indexAt(event->position().toPoint());
    m_pressPosition = event->position().toPoint();
    m_pressing = true;
    m_dragging = false;
}

void VariableListView::mousePressEvent(QMouseEvent *event)
{
    press(event);
}

void VariableListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    press(event);
}

void VariableListView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressing || !m_pressed.isValid() || !(event->buttons() & Qt::LeftButton))
        return;
    const std::optional<VariableEntry> entry = m_model.entryAt(m_pressed.row());
    if (!entry)
        return;
    const QPoint moved = event->position().toPoint() - m_pressPosition;
    if (!m_dragging && std::hypot(moved.x(), moved.y()) < dragStartDistance)
        return;
    m_dragging = true;
    m_controller.dragRow(*entry, m_model.flatIdxAt(m_pressed.row()), moved.y());
}

void VariableListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_pressing || event->button() != Qt::LeftButton)
        return;
    m_pressing = false;
    if (m_dragging) {
        m_dragging = false;
        m_controller.endDrag();
        return;
    }
    if (m_pressed.isValid())
        click(m_pressed, event->position().toPoint());
}

void VariableListView::click(const QModelIndex &index, QPoint position)
{
    const QUuid group = m_model.groupAt(index.row());
    if (!group.isNull()) {
        m_chevrons->turn(group, !index.data(VariableRoles::Collapsed).toBool());
        m_controller.toggleGroup(group);
        return;
    }
    const std::optional<VariableEntry> entry = m_model.entryAt(index.row());
    if (!entry)
        return;
    const VariableRowStyle::EntryGeometry geometry = VariableRowStyle::entryGeometry(
        visualRect(index), index.data(VariableRoles::ColorValue).toBool());
    if (geometry.name.contains(position)) {
        m_controller.startRename(*entry);
    } else if (geometry.swatch.contains(position)) {
        // The painted swatch stands for the picker of a row with a widget.
        pickColor(entry->propID);
        if (VariableRow *row = rowWidget(entry->propID))
            row->openColorPicker();
    } else if (geometry.value.contains(position)) {
        m_controller.startValueEdit(*entry);
    }
}

QRect VariableListView::dropLineRect() const
{
    const std::optional<int> target = m_controller.dropVarTargetIndex();
    const int rows = m_model.rowCount();
    if (!target || rows == 0)
        return QRect();
    const QList<VariableEntry> &flat = m_controller.listing().flat;
    QRect line;
    if (*target >= flat.size()) {
        const QRect last = visualRect(m_model.index(rows - 1));
        line = QRect(last.left(), last.bottom(), last.width(), 2);
    } else {
        const QUuid id = flat[*target].propID;
        const int row = m_model.rowOfEntry(id);
        if (row < 0 || id == m_controller.draggingVarID())
            return QRect();
        const QRect above = visualRect(m_model.index(row));
        line = QRect(above.left(), above.top() - 1, above.width(), 2);
    }
    return line.adjusted(dropLineInset, 0, -dropLineInset, 0);
}

QRect VariableListView::noMatchRect() const
{
    if (m_controller.noMatchText().isEmpty())
        return QRect();
    const int rows = m_model.rowCount();
    const int top = rows > 0 ? visualRect(m_model.index(rows - 1)).bottom() + 1 : 0;
    return QRect(0, top + noMatchTopInset, viewport()->width(),
                 QFontMetrics(noMatchFont()).height());
}

void VariableListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    QPainter painter(viewport());
    const QUuid dragged = m_controller.draggingVarID();
    if (!dragged.isNull()) {
        const int row = m_model.rowOfEntry(dragged);
        if (row >= 0) {
            // On the plain background a veil of its colour is the row at 0.4.
            QColor veil = palette().color(QPalette::Base);
            veil.setAlphaF(dragFade);
            painter.fillRect(visualRect(m_model.index(row)), veil);
        }
    }
    const QRect line = dropLineRect();
    if (!line.isEmpty()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath capsule;
        capsule.addRoundedRect(line, 1, 1);
        painter.fillPath(capsule, palette().color(QPalette::Highlight));
        painter.restore();
    }
    const QRect message = noMatchRect();
    if (!message.isEmpty()) {
        painter.setFont(noMatchFont());
        painter.setPen(VariableRowStyle::secondaryColor(palette()));
        painter.drawText(message, Qt::AlignHCenter | Qt::AlignTop, m_controller.noMatchText());
    }
}

} // namespace Ombrel
