#include "VariableRow.h"

#include "VariableRowStyle.h"
#include "colour/widgets/CSSColorPicker.h"
#include "knowledge/Color.h"
#include "variables/VariablesController.h"

#include <QAbstractButton>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include <limits>

namespace Ombrel {

namespace {

QLineEdit *makeField(const QString &placeholder, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setFrame(false);
    field->setFont(VariableRowStyle::bodyFont());
    field->setPlaceholderText(placeholder);
    // Values of any length, not the field's default of 32767 characters.
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setAttribute(Qt::WA_MacShowFocusRect, false);
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    field->setPalette(palette);
    field->hide();
    return field;
}

} // namespace

VariableRow::VariableRow(VariablesController &controller, const VariableEntry &entry,
                         QWidget *parent)
    : QWidget(parent), m_controller(controller), m_entry(entry),
      m_nameField(makeField(tr("--name"), this)), m_valueField(makeField(tr("value"), this)),
      m_picker(new CSSColorPicker(
          controller.localValue(entry), {},
          [this](const QString &hex) { m_controller.commitColor(m_entry, hex); }, this))
{
    setFocusPolicy(Qt::ClickFocus);
    m_nameField->installEventFilter(this);
    m_valueField->installEventFilter(this);
    connect(m_nameField, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_controller.editLocalName(m_entry, text); });
    connect(m_valueField, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_controller.editLocalValue(m_entry, text); });
    connect(m_picker, &CSSColorPicker::valueWritten, this,
            [this](const QString &value) { m_controller.editLocalValue(m_entry, value); });
    connect(m_picker->swatchButton(), &QAbstractButton::pressed, this,
            [this] { Q_EMIT swatchPressed(m_entry.propID); });
    showEntry(entry);
}

void VariableRow::showEntry(const VariableEntry &entry)
{
    m_entry = entry;
    const bool renaming = m_controller.isRenamingName(entry.propID);
    const bool editingValue = m_controller.isEditingValue(entry.propID);
    const QString localName = m_controller.localName(entry);
    const QString localValue = m_controller.localValue(entry);
    if (m_nameField->text() != localName)
        m_nameField->setText(localName);
    if (m_valueField->text() != localValue)
        m_valueField->setText(localValue);
    m_picker->setValue(localValue);
    m_picker->setVisible(m_controller.isColorValue(entry));
    placeFields();
    // A click in the row, on the swatch for one, keeps the focus in the
    // field being edited rather than taking it from the field.
    setFocusProxy(editingValue ? m_valueField : renaming ? m_nameField : nullptr);
    // Fields show before others hide, so that a focus leaving a hidden
    // field finds where to stay.
    if (editingValue)
        m_valueField->show();
    if (renaming && m_nameField->isHidden()) {
        m_nameField->show();
        // A row made for the rename is shown only after this: it takes the
        // focus when it shows.
        if (isVisible())
            m_nameField->setFocus(Qt::OtherFocusReason);
    } else if (!renaming) {
        hideField(m_nameField);
    }
    if (!editingValue)
        hideField(m_valueField);
    update();
}

void VariableRow::hideField(QLineEdit *field)
{
    if (field->isHidden())
        return;
    if (field->hasFocus())
        setFocus(Qt::OtherFocusReason);
    field->hide();
}

void VariableRow::openColorPicker()
{
    if (!m_picker->isHidden())
        m_picker->openPopover();
}

// As a field the user tabs into, with the whole value selected.
void VariableRow::focusValue()
{
    if (!m_valueField->isVisible())
        return;
    m_valueField->setFocus(Qt::OtherFocusReason);
    m_valueField->selectAll();
}

void VariableRow::placeFields()
{
    const VariableRowStyle::EntryGeometry geometry =
        VariableRowStyle::entryGeometry(rect(), m_controller.isColorValue(m_entry));
    m_nameField->setGeometry(geometry.nameText);
    m_valueField->setGeometry(geometry.valueText);
    if (!geometry.swatch.isEmpty())
        m_picker->setGeometry(geometry.swatch);
}

void VariableRow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_controller.isRenamingName(m_entry.propID))
        m_nameField->setFocus(Qt::OtherFocusReason);
}

void VariableRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeFields();
}

void VariableRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    VariableRowStyle::EntryLook look;
    look.name = m_entry.name;
    look.value = m_controller.localValue(m_entry);
    look.swatch = Color::fromCssString(look.value);
    look.editing =
        m_controller.isEditingValue(m_entry.propID) || m_controller.isRenamingName(m_entry.propID);
    VariableRowStyle::paintEntry(painter, rect(), look, palette(), m_nameField->isHidden(),
                                 m_valueField->isHidden(), false);
}

bool VariableRow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (watched == m_nameField)
            return nameKey(key);
        if (watched == m_valueField)
            return valueKey(key);
    } else if (event->type() == QEvent::FocusOut && watched == m_valueField) {
        // A menu or a popover over the field, or another window, takes the
        // focus for a while and gives it back: the edit goes on. So it does
        // when the row itself goes, hidden by the filter or a folded group:
        // the state of its edit stays for when it comes back.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
            isVisible() && m_controller.isEditingValue(m_entry.propID))
            m_controller.commitValue(m_entry);
    }
    return QWidget::eventFilter(watched, event);
}

bool VariableRow::nameKey(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        m_controller.commitRenameAndEditValue(m_entry);
        return true;
    case Qt::Key_Escape:
        m_controller.cancelRename();
        return true;
    default:
        return false;
    }
}

bool VariableRow::valueKey(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_controller.commitValue(m_entry);
        return true;
    case Qt::Key_Escape:
        m_controller.cancelValue(m_entry);
        return true;
    default:
        return false;
    }
}

} // namespace Ombrel
