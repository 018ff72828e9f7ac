#include "VariableDelegate.h"

#include "GroupChevrons.h"
#include "VariableRow.h"
#include "VariableRowStyle.h"
#include "knowledge/Color.h"
#include "variables/VariableRoles.h"
#include "variables/VariablesController.h"
#include "widgets/SymbolIcon.h"

#include <QPainter>

namespace Ombrel {

namespace {

bool isHeader(const QModelIndex &index)
{
    return index.data(VariableRoles::RowKind).toInt() == int(VariableRoles::Kind::Header);
}

VariableEntry entryOf(const QModelIndex &index)
{
    return {
        index.data(VariableRoles::PropID).toUuid(), index.data(VariableRoles::RulesetID).toUuid(),
        index.data(VariableRoles::Name).toString(), index.data(VariableRoles::Value).toString()};
}

} // namespace

VariableDelegate::VariableDelegate(VariablesController &controller, const GroupChevrons &chevrons,
                                   QObject *parent)
    : QStyledItemDelegate(parent), m_controller(controller), m_chevrons(chevrons),
      m_headerHeight(VariableRowStyle::headerHeight()),
      m_entryHeight(VariableRowStyle::entryHeight())
{}

const QPixmap &VariableDelegate::chevron(const QColor &color, qreal devicePixelRatio) const
{
    if (m_chevron.isNull() || m_chevronColor != color ||
        m_chevron.devicePixelRatio() != devicePixelRatio) {
        m_chevron = symbolPixmap(QStringLiteral("chevron.right"), VariableRowStyle::chevronSize,
                                 color, devicePixelRatio);
        m_chevronColor = color;
    }
    return m_chevron;
}

void VariableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    painter->save();
    if (isHeader(index)) {
        const bool collapsed = index.data(VariableRoles::Collapsed).toBool();
        const QUuid group = index.data(VariableRoles::RulesetID).toUuid();
        VariableRowStyle::paintHeader(
            *painter, option.rect, index.data(VariableRoles::Selector).toString(),
            index.data(VariableRoles::CountText).toString(), m_chevrons.angle(group, collapsed),
            chevron(VariableRowStyle::secondaryColor(option.palette),
                    painter->device()->devicePixelRatioF()),
            option.palette);
    } else {
        VariableRowStyle::EntryLook look;
        look.name = index.data(VariableRoles::Name).toString();
        look.value = index.data(VariableRoles::LocalValue).toString();
        look.swatch = Color::fromCssString(look.value);
        look.editing = index.data(VariableRoles::Editing).toBool();
        VariableRowStyle::paintEntry(*painter, option.rect, look, option.palette);
    }
    painter->restore();
}

QSize VariableDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    // Narrow on purpose: the list stretches each row to its width.
    return QSize(120, isHeader(index) ? m_headerHeight : m_entryHeight);
}

QWidget *VariableDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                        const QModelIndex &index) const
{
    if (isHeader(index))
        return nullptr;
    return new VariableRow(m_controller, entryOf(index), parent);
}

void VariableDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *row = qobject_cast<VariableRow *>(editor); row && !isHeader(index))
        row->showEntry(entryOf(index));
}

void VariableDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const {}

void VariableDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                            const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

bool VariableDelegate::eventFilter(QObject *, QEvent *)
{
    return false;
}

} // namespace Ombrel
