#include "FileRowView.h"

#include "shell/FileListModel.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

namespace Ombrel {

namespace {

constexpr int rowPadding = 8;
constexpr int iconSize = 12;
constexpr int iconGap = 6;
constexpr int markSize = 6;
constexpr int markGap = 4;

const QFont &nameFont()
{
    static const QFont font = fontOfSize(12);
    return font;
}

const QFont &countsFont()
{
    static const QFont font = fontOfSize(10);
    return font;
}

bool isSelected(const QStyleOptionViewItem &option)
{
    return option.state.testFlag(QStyle::State_Selected);
}

bool listFocused(const QStyleOptionViewItem &option)
{
    return option.widget && option.widget->hasFocus();
}

int textLeft(const QRect &row)
{
    return row.left() + rowPadding + iconSize + iconGap;
}

} // namespace

RowTint FileRowView::iconTint(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    return rowIconTint(isSelected(option), listFocused(option),
                       index.data(FileListModel::UnsavedRole).toBool());
}

RowTint FileRowView::markTint(const QStyleOptionViewItem &option)
{
    return unsavedMarkTint(isSelected(option), listFocused(option));
}

QColor FileRowView::colorOf(RowTint tint, const QPalette &palette)
{
    switch (tint) {
    case RowTint::Accent:
        return palette.color(QPalette::Highlight);
    case RowTint::White:
        return Qt::white;
    case RowTint::Secondary:
        break;
    }
    return secondaryColor(palette);
}

QSize FileRowView::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    const int height = QFontMetrics(nameFont()).height() + 1 + QFontMetrics(countsFont()).height();
    return {160, height + 2 * 4};
}

QRect FileRowView::nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QFontMetrics metrics(nameFont());
    const int available = option.rect.right() - rowPadding - textLeft(option.rect);
    const int width = std::min(metrics.horizontalAdvance(index.data().toString()), available);
    return {textLeft(option.rect), option.rect.top() + 4, width, metrics.height()};
}

QRect FileRowView::iconRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QRect name = nameRect(option, index);
    return {option.rect.left() + rowPadding,
            name.top() + (QFontMetrics(nameFont()).height() - iconSize) / 2, iconSize, iconSize};
}

// The name's room ends where the mark needs its own; the mark follows the
// name, or the end of that room when the name is cut short.
int FileRowView::nameRoom(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return option.rect.right() - rowPadding - nameRect(option, index).left() -
           (index.data(FileListModel::UnsavedRole).toBool() ? markGap + markSize : 0);
}

QRectF FileRowView::unsavedMarkRect(const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const
{
    const QRect name = nameRect(option, index);
    const int markLeft =
        std::min(name.right() + 1, name.left() + nameRoom(option, index)) + markGap;
    return {double(markLeft), name.center().y() - markSize / 2.0 + 0.5, double(markSize),
            double(markSize)};
}

void FileRowView::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    QStyleOptionViewItem panel = option;
    initStyleOption(&panel, index);
    panel.text.clear();
    // A list without the focus shows its selection in the inactive
    // highlight, as it would in an inactive window: the accent marks of the
    // row then stand out on it.
    if (!listFocused(option))
        panel.state &= ~QStyle::State_Active;
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &panel, painter, widget);

    const QPalette &palette = option.palette;
    const bool highlighted = isSelected(option) && listFocused(option);
    const QRect name = nameRect(option, index);
    const QFontMetrics nameMetrics(nameFont());

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->drawPixmap(iconRect(option, index).topLeft(),
                        symbolPixmap(QStringLiteral("doc.text"), iconSize,
                                     colorOf(iconTint(option, index), palette),
                                     painter->device()->devicePixelRatioF()));

    const QColor textColor =
        palette.color(highlighted ? QPalette::HighlightedText : QPalette::Text);
    painter->setFont(nameFont());
    painter->setPen(textColor);
    const int available = nameRoom(option, index);
    painter->drawText(QRect(name.left(), name.top(), available, name.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      nameMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, available));

    if (index.data(FileListModel::UnsavedRole).toBool()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(colorOf(markTint(option), palette));
        painter->drawEllipse(unsavedMarkRect(option, index));
    }

    QColor countsColor =
        highlighted ? palette.color(QPalette::HighlightedText) : secondaryColor(palette);
    if (highlighted)
        countsColor.setAlphaF(0.8);
    painter->setFont(countsFont());
    painter->setPen(countsColor);
    const QRect counts(name.left(), name.bottom() + 2,
                       option.rect.right() - rowPadding - name.left(),
                       QFontMetrics(countsFont()).height());
    painter->drawText(counts, Qt::AlignLeft | Qt::AlignVCenter,
                      index.data(FileListModel::CountsRole).toString());
    painter->restore();
}

QWidget *FileRowView::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                   const QModelIndex &) const
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(QStringLiteral("renameField"));
    field->setFont(nameFont());
    field->setFrame(false);
    return field;
}

void FileRowView::setEditorData(QWidget *, const QModelIndex &) const
{
    // The field's text belongs to the rename: a change of the file while it
    // is open must not overwrite what the user typed.
}

void FileRowView::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    const QRect name = nameRect(option, index);
    editor->setGeometry(name.left() - 2, name.top() - 1,
                        option.rect.right() - rowPadding - name.left() + 2, name.height() + 2);
}

bool FileRowView::eventFilter(QObject *object, QEvent *event)
{
    auto *field = qobject_cast<QLineEdit *>(object);
    if (!field)
        return false;
    const auto key = [event] { return static_cast<QKeyEvent *>(event)->key(); };
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Escape and Return end the rename even where a shortcut takes them.
        if (key() == Qt::Key_Escape || key() == Qt::Key_Return || key() == Qt::Key_Enter) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        if (key() == Qt::Key_Return || key() == Qt::Key_Enter) {
            Q_EMIT renameSubmitted(field);
            return true;
        }
        if (key() == Qt::Key_Escape) {
            Q_EMIT renameCancelled(field);
            return true;
        }
        return false;
    default:
        // Everything else, losing the focus included, belongs to the field:
        // only the two keys end a rename.
        return false;
    }
}

} // namespace Ombrel
