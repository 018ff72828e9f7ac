#include "PropertyListView.h"

#include "inspector/widgets/AddPropertyRow.h"
#include "inspector/widgets/InspectorStyle.h"
#include "inspector/widgets/PropertyRowView.h"

#include <QGraphicsOpacityEffect>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

namespace Ombrel {

namespace {

constexpr int dividerInset = 12;
constexpr int dropLineInset = 12;
constexpr int dropLineHeight = 2;
constexpr qreal draggedOpacity = 0.4;

// The capsule where a dragged row will land; it takes no clicks.
class DropLine : public QWidget
{
public:
    explicit DropLine(QWidget *parent) : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath capsule;
        capsule.addRoundedRect(QRectF(rect()), height() / 2.0, height() / 2.0);
        painter.fillPath(capsule, InspectorStyle::accent(palette()));
    }
};

} // namespace

PropertyListView::PropertyListView(PropertyEditorController &controller, QWidget *parent)
    : QAbstractScrollArea(parent), m_controller(controller), m_dropLine(new DropLine(viewport()))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    verticalScrollBar()->setSingleStep(rowPitch / 2);
    connect(&controller, &PropertyEditorController::editingPropertyIDChanged, this,
            &PropertyListView::followEditing);
    connect(&controller, &PropertyEditorController::dragChanged, this,
            &PropertyListView::followDrag);
    connect(&controller, &PropertyEditorController::isAddingPropertyChanged, this,
            &PropertyListView::followAdding);
    connect(&controller, &PropertyEditorController::requestedPropertyFocusChanged, this,
            &PropertyListView::followFocusRequest);
}

void PropertyListView::refresh(const SelectionReading &reading, const VariableOfferPtr &variables)
{
    m_properties = reading.properties;
    m_mixedNames = reading.mixedNames;
    m_variables = variables;
    if (m_addRow)
        m_addRow->setVariables(variables);
    updateScrollRange();
    layoutRows();
    followAdding();
    followDrag();
    followFocusRequest();
}

// A property's key is its id and how many listed properties before it have
// the same id, so that a list holding one id twice still has a row for each.
PropertyListView::RowKey PropertyListView::keyAt(int index) const
{
    const QUuid &id = m_properties[index].id;
    int before = 0;
    for (int i = index - 1; i >= 0; --i) {
        if (m_properties[i].id == id)
            ++before;
    }
    return {id, before};
}

int PropertyListView::indexOf(const QUuid &id) const
{
    for (int i = 0; i < m_properties.size(); ++i) {
        if (m_properties[i].id == id)
            return i;
    }
    return -1;
}

PropertyRowView *PropertyListView::existingRowAt(int index) const
{
    if (index < 0 || index >= m_properties.size())
        return nullptr;
    return m_rows.value(keyAt(index));
}

PropertyRowView *PropertyListView::rowAt(int index)
{
    if (index < 0 || index >= m_properties.size())
        return nullptr;
    const int top = index * rowPitch;
    QScrollBar *bar = verticalScrollBar();
    if (top < bar->value())
        bar->setValue(top);
    else if (top + PropertyRowView::rowHeight > bar->value() + viewport()->height())
        bar->setValue(top + PropertyRowView::rowHeight - viewport()->height());
    layoutRows();
    return existingRowAt(index);
}

PropertyRowView *PropertyListView::makeRow(int index)
{
    const CSSProperty &property = m_properties[index];
    const QUuid id = property.id;
    PropertyRowView::Callbacks callbacks;
    PropertyEditorController *controller = &m_controller;
    auto *row = new PropertyRowView(property, {}, viewport());
    callbacks.onStartEdit = [controller, row] { controller->startEditing(row->property()); };
    callbacks.onLiveChange = [controller, id](const QString &name, const QString &value) {
        controller->liveUpdateProperty(id, name, value);
    };
    callbacks.onCommit = [controller, id] { controller->finishEditing(id); };
    callbacks.onCancel = [controller, id] { controller->cancelEditing(id); };
    callbacks.onColorCommit = [controller, id](const QString &original, const QString &colour) {
        controller->commitColorChange(id, original, colour);
    };
    callbacks.onDelete = [controller, id] { controller->deleteProperty(id); };
    callbacks.onTabFromValue = [this, id] { m_controller.tabFromValue(indexOf(id)); };
    row->setCallbacks(std::move(callbacks));
    row->setVariables(m_variables);
    row->setMixedValue(m_mixedNames.contains(property.name));
    row->setEditing(m_controller.editingPropertyID() == id);
    connect(row, &PropertyRowView::pressed, this, [this] { m_controller.commitCurrentEdit(); });
    connect(row, &PropertyRowView::dragMoved, this, [this, id](double translationY) {
        m_controller.dragProperty(id, indexOf(id), translationY);
    });
    connect(row, &PropertyRowView::dragEnded, this,
            [this, id] { m_controller.endPropertyDrag(id); });
    row->show();
    return row;
}

void PropertyListView::layoutRows()
{
    const int top = verticalScrollBar()->value();
    const int width = viewport()->width();
    const int count = int(m_properties.size());
    const int first = std::max(0, top / rowPitch);
    const int last = std::min(count - 1, (top + viewport()->height()) / rowPitch);

    QHash<RowKey, PropertyRowView *> kept;
    const auto place = [&](int index, PropertyRowView *row) {
        const CSSProperty &property = m_properties[index];
        row->setProperty(property);
        row->setVariables(m_variables);
        row->setMixedValue(m_mixedNames.contains(property.name));
        row->setGeometry(0, index * rowPitch - top, width, PropertyRowView::rowHeight);
    };
    for (int index = first; index <= last; ++index) {
        const RowKey key = keyAt(index);
        PropertyRowView *row = m_rows.take(key);
        if (!row)
            row = makeRow(index);
        place(index, row);
        kept.insert(key, row);
    }
    // The row being typed in stays when scrolled away; the others go.
    for (auto it = m_rows.cbegin(); it != m_rows.cend(); ++it) {
        PropertyRowView *row = it.value();
        const int index = indexOf(it.key().first);
        if (row->isEditing() && index >= 0 && !kept.contains(it.key())) {
            place(index, row);
            kept.insert(it.key(), row);
            continue;
        }
        row->hide();
        row->deleteLater();
    }
    m_rows = std::move(kept);

    if (m_addRow)
        m_addRow->setGeometry(0, count * rowPitch - top, width, AddPropertyRow::rowHeight);
    followDrag();
    viewport()->update();
}

void PropertyListView::updateScrollRange()
{
    const int content =
        int(m_properties.size()) * rowPitch + (m_addRow ? AddPropertyRow::rowHeight + 1 : 0);
    QScrollBar *bar = verticalScrollBar();
    bar->setPageStep(viewport()->height());
    bar->setRange(0, std::max(0, content - viewport()->height()));
}

void PropertyListView::followEditing()
{
    const QUuid editing = m_controller.editingPropertyID();
    QList<QPointer<PropertyRowView>> rows;
    for (PropertyRowView *row : std::as_const(m_rows))
        rows.append(row);
    // A row that stops editing commits first, through the controller, which
    // may report again: each row is told once, from a list of its own.
    for (const QPointer<PropertyRowView> &row : std::as_const(rows)) {
        if (row && row->property().id != editing)
            row->setEditing(false);
    }
    for (const QPointer<PropertyRowView> &row : std::as_const(rows)) {
        if (row && row->property().id == editing)
            row->setEditing(true);
    }
}

void PropertyListView::followDrag()
{
    const QUuid dragging = m_controller.draggingPropertyID();
    for (PropertyRowView *row : std::as_const(m_rows)) {
        const bool dragged = !dragging.isNull() && row->property().id == dragging;
        auto *effect = qobject_cast<QGraphicsOpacityEffect *>(row->graphicsEffect());
        if (dragged && !effect) {
            effect = new QGraphicsOpacityEffect(row);
            effect->setOpacity(draggedOpacity);
            row->setGraphicsEffect(effect);
        } else if (!dragged && effect) {
            row->setGraphicsEffect(nullptr);
        }
    }

    const std::optional<int> target = m_controller.dropPropertyTargetIndex();
    const CSSRulesetPtr ruleset = m_controller.ruleset();
    const int top = verticalScrollBar()->value();
    std::optional<int> lineY;
    if (target && *target < m_properties.size() && m_properties[*target].id != dragging)
        lineY = *target * rowPitch - 1 - top;
    else if (target && ruleset && *target == ruleset->properties().size())
        lineY = int(m_properties.size()) * rowPitch - 1 - top;
    if (!lineY) {
        m_dropLine->hide();
        return;
    }
    m_dropLine->setGeometry(dropLineInset, *lineY, viewport()->width() - 2 * dropLineInset,
                            dropLineHeight);
    m_dropLine->show();
    m_dropLine->raise();
}

QRect PropertyListView::dropLineRect() const
{
    return m_dropLine->isVisible() ? m_dropLine->geometry() : QRect();
}

void PropertyListView::followAdding()
{
    const bool adding = m_controller.isAddingProperty();
    if (adding && !m_addRow) {
        m_addRow = new AddPropertyRow(m_controller, viewport());
        m_addRow->setVariables(m_variables);
        connect(m_addRow, &AddPropertyRow::pressed, this,
                [this] { m_controller.commitCurrentEdit(); });
        updateScrollRange();
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        layoutRows();
        m_addRow->show();
    } else if (!adding && m_addRow) {
        // The row may be in the middle of handling its own key.
        m_addRow->hide();
        m_addRow->deleteLater();
        m_addRow = nullptr;
        updateScrollRange();
        layoutRows();
    }
}

void PropertyListView::followFocusRequest()
{
    const std::optional<PropertyFocusRequest> request = m_controller.requestedPropertyFocus();
    if (!request)
        return;
    PropertyRowView *row = rowAt(indexOf(request->id));
    if (!row)
        return;
    row->startEdit(request->field);
    m_controller.clearRequestedPropertyFocus();
}

void PropertyListView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    const QColor divider = InspectorStyle::separator(palette());
    const int top = verticalScrollBar()->value();
    const int width = viewport()->width();
    const int count = int(m_properties.size());
    const int first = std::max(0, top / rowPitch);
    const int last = std::min(count - 1, (top + viewport()->height()) / rowPitch);
    for (int index = first; index <= last; ++index)
        painter.fillRect(QRect(0, index * rowPitch + PropertyRowView::rowHeight - top, width, 1),
                         divider);
    if (m_addRow)
        painter.fillRect(QRect(dividerInset, count * rowPitch + AddPropertyRow::rowHeight - top,
                               width - dividerInset, 1),
                         divider);
}

void PropertyListView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollRange();
    layoutRows();
}

void PropertyListView::scrollContentsBy(int, int)
{
    layoutRows();
}

void PropertyListView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_controller.commitCurrentEdit();
    QAbstractScrollArea::mousePressEvent(event);
}

} // namespace Ombrel
