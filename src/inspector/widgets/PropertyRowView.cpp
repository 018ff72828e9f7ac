#include "PropertyRowView.h"

#include "colour/widgets/CSSColorPicker.h"
#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/InspectorStyle.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "knowledge/CSSPropertyDatabase.h"
#include "knowledge/Color.h"
#include "text/TextScan.h"
#include "workspace/AppPreferences.h"

#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

namespace Ombrel {

namespace {

constexpr int colonInset = 4;
constexpr int fieldHeight = 24;
constexpr int symbolSize = 10;
constexpr int deleteInset = 10;
constexpr int variableInset = 6;
constexpr int variableButtonWidth = symbolSize + 6;
constexpr int dragDistance = 8;
constexpr int swatchSide = 20;
constexpr int swatchSpacing = 6;

QString trimmed(const QString &text)
{
    return TextScan::trimmedWhitespace(text).toString();
}

} // namespace

PropertyRowView::PropertyRowView(const CSSProperty &property, Callbacks callbacks, QWidget *parent)
    : QWidget(parent), m_property(property), m_callbacks(std::move(callbacks)),
      m_localName(property.name), m_localValue(property.value),
      m_variableButton(new SymbolButton(QStringLiteral("curlybraces"), symbolSize, this)),
      m_deleteButton(new SymbolButton(QStringLiteral("xmark"), symbolSize, this))
{
    setFixedHeight(rowHeight);
    m_variableButton->setToolTip(tr("Variables"));
    connect(m_variableButton, &QAbstractButton::clicked, this,
            &PropertyRowView::toggleVariablePicker);
    m_deleteButton->setToolTip(tr("Delete Property"));
    connect(m_deleteButton, &QAbstractButton::clicked, this, [this] {
        if (m_callbacks.onDelete)
            m_callbacks.onDelete();
    });
    updateButtons();
}

// --- Inputs ---

void PropertyRowView::setProperty(const CSSProperty &property)
{
    m_property = property;
    if (!m_editing) {
        m_localName = property.name;
        m_localValue = property.value;
    }
    updateButtons();
    update();
}

void PropertyRowView::setVariables(const VariableOfferPtr &variables)
{
    m_variables = variables;
    updateButtons();
}

void PropertyRowView::setMixedValue(bool mixed)
{
    if (m_mixed == mixed)
        return;
    m_mixed = mixed;
    updateButtons();
    update();
}

void PropertyRowView::setEditing(bool editing)
{
    if (m_editing == editing)
        return;
    m_editing = editing;
    if (!editing) {
        if (!m_isCanceling)
            commit();
        m_isCanceling = false;
    }
    showForm();
    update();
}

// --- Operations ---

void PropertyRowView::startEdit(PropertyField focusOn)
{
    m_isCanceling = false;
    if (m_callbacks.onStartEdit)
        m_callbacks.onStartEdit();
    m_localName = m_property.name;
    m_localValue = m_mixed ? QString() : m_property.value;
    m_editStartName = m_property.name;
    m_editStartValue = m_property.value;
    syncFields();
    updateButtons();
    // The fields are laid out with the row's next layout; the focus waits.
    QTimer::singleShot(PropertyEditorController::focusDelayMs, this, [this, focusOn] {
        AutocompleteField *field = focusOn == PropertyField::Name ? m_nameField : m_valueField;
        if (field)
            field->setFocus(Qt::OtherFocusReason);
    });
}

void PropertyRowView::commit()
{
    const QString name = trimmed(m_localName);
    const QString value = trimmed(m_localValue);
    if (name.isEmpty() || value.isEmpty())
        return;
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(name, value);
    if (m_callbacks.onCommit)
        m_callbacks.onCommit();
}

void PropertyRowView::cancelEdit()
{
    m_isCanceling = true;
    m_localName = m_editStartName;
    m_localValue = m_editStartValue;
    syncFields();
    updateButtons();
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_editStartName, m_editStartValue);
    if (m_callbacks.onCancel)
        m_callbacks.onCancel();
}

void PropertyRowView::liveColorChange(const QString &hex)
{
    if (!m_colorEditOriginal)
        m_colorEditOriginal = m_localValue;
    m_localValue = hex;
    syncFields();
    updateButtons();
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_localName, hex);
}

void PropertyRowView::colorCommitted(const QString &hex)
{
    m_localValue = hex;
    syncFields();
    updateButtons();
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_localName, hex);
    if (m_editing && m_callbacks.onCommit)
        m_callbacks.onCommit();
    const std::optional<QString> original = std::exchange(m_colorEditOriginal, std::nullopt);
    if (original && *original != hex && m_callbacks.onColorCommit)
        m_callbacks.onColorCommit(*original, hex);
}

// --- Readings ---

VariableChoices PropertyRowView::compatibleVariables() const
{
    return m_variables ? m_variables->compatibleWith(m_property.name) : VariableChoices();
}

std::optional<QString> PropertyRowView::activeVarName() const
{
    return referencedVariable(m_localValue);
}

bool PropertyRowView::showsSwatch() const
{
    return !m_mixed && AppPreferences::shared().showColorSwatches() &&
           Color::fromCssString(m_property.value) &&
           (CSSPropertyDatabase::isColorProperty(m_property.name) ||
            m_property.name.startsWith(u"--"));
}

// --- Variables ---

void PropertyRowView::toggleVariablePicker()
{
    if (m_picker) {
        m_picker->close();
        return;
    }
    std::function<void()> onClearVar;
    if (activeVarName())
        onClearVar = [this] { useRawValue(); };
    m_picker = new VariablePickerPopover(
        compatibleVariables(), activeVarName(), [this](const QString &name) { pickVariable(name); },
        std::move(onClearVar), this);
    m_picker->popup(m_variableButton->mapToGlobal(QPoint(0, m_variableButton->height())));
}

// A pick is one whole edit and one undo step: the edit starts before the
// model changes, so its start holds the old value.
void PropertyRowView::pickVariable(const QString &name)
{
    const QString value = QStringLiteral("var(") + name + QLatin1Char(')');
    m_localValue = value;
    syncFields();
    if (m_callbacks.onStartEdit)
        m_callbacks.onStartEdit();
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_localName, value);
    if (m_callbacks.onCommit)
        m_callbacks.onCommit();
    if (m_picker)
        m_picker->close();
    updateButtons();
}

// The reference gives way to the variable's raw value, not its resolved one;
// a reference to a variable the file lacks leaves the value empty.
void PropertyRowView::useRawValue()
{
    const std::optional<QString> name = activeVarName();
    m_localValue = m_variables && name ? m_variables->variables.value(*name) : QString();
    syncFields();
    if (m_callbacks.onStartEdit)
        m_callbacks.onStartEdit();
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_localName, m_localValue);
    if (m_callbacks.onCommit)
        m_callbacks.onCommit();
    if (m_picker)
        m_picker->close();
    updateButtons();
}

// --- The form ---

void PropertyRowView::localTextEdited()
{
    updateButtons();
    if (!m_editing || (m_mixed && m_localValue.isEmpty()))
        return;
    // A blank name or value is never written: "color: ;" would be the text.
    if (trimmed(m_localName).isEmpty() || trimmed(m_localValue).isEmpty())
        return;
    if (m_callbacks.onLiveChange)
        m_callbacks.onLiveChange(m_localName, m_localValue);
}

void PropertyRowView::showForm()
{
    if (m_editing && !m_nameField) {
        const QFont font = InspectorStyle::monospacedFont();
        m_nameField = new AutocompleteField(this);
        m_nameField->setObjectName(QStringLiteral("nameField"));
        m_nameField->setFont(font);
        m_nameField->setPlaceholderText(tr("property"));
        m_nameField->setSuggestions(CSSPropertyDatabase::allProperties());
        m_nameField->setOnEscape([this] { cancelEdit(); });

        m_valueField = new AutocompleteField(this);
        m_valueField->setObjectName(QStringLiteral("valueField"));
        m_valueField->setFont(font);
        m_valueField->setPlaceholderText(tr("value"));
        m_valueField->setOnEscape([this] { cancelEdit(); });
        m_valueField->setOnTab([this] {
            commit();
            if (m_callbacks.onTabFromValue)
                m_callbacks.onTabFromValue();
        });
        setTabOrder(m_nameField, m_valueField);

        connect(m_nameField, &QLineEdit::returnPressed, this, [this] {
            if (m_valueField)
                m_valueField->setFocus(Qt::TabFocusReason);
        });
        connect(m_valueField, &QLineEdit::returnPressed, this, &PropertyRowView::commit);
        // The row writes the fields only with its own text: any other change
        // of theirs is the user's, typed, pasted or taken from the menu.
        connect(m_nameField, &QLineEdit::textChanged, this, [this](const QString &text) {
            if (text == m_localName)
                return;
            m_localName = text;
            if (m_valueField)
                m_valueField->setSuggestions(CSSPropertyDatabase::values(text));
            localTextEdited();
        });
        connect(m_valueField, &QLineEdit::textChanged, this, [this](const QString &text) {
            if (text == m_localValue)
                return;
            m_localValue = text;
            localTextEdited();
        });
        syncFields();
        layoutChildren();
        m_nameField->show();
        m_valueField->show();
    } else if (!m_editing && m_nameField) {
        // The fields may be in the middle of handling their own key: they go
        // once it has returned.
        for (AutocompleteField *field : {m_nameField.data(), m_valueField.data()}) {
            if (!field)
                continue;
            field->hide();
            field->deleteLater();
        }
        m_nameField = nullptr;
        m_valueField = nullptr;
    }
}

void PropertyRowView::syncFields()
{
    if (m_nameField && m_nameField->text() != m_localName)
        m_nameField->setText(m_localName);
    if (m_valueField) {
        m_valueField->setSuggestions(CSSPropertyDatabase::values(m_localName));
        if (m_valueField->text() != m_localValue)
            m_valueField->setText(m_localValue);
    }
}

void PropertyRowView::updateButtons()
{
    const QColor secondary = InspectorStyle::secondary(palette());
    m_deleteButton->setSymbolColor(secondary);
    m_variableButton->setVisible(!compatibleVariables().isEmpty());
    m_variableButton->setSymbolColor(activeVarName() ? InspectorStyle::accent(palette())
                                                     : secondary);
    updateSwatch();
    layoutChildren();
}

// The swatch shows the typed value, and what it writes goes through the
// row's colour callbacks rather than into that value directly. It is kept
// while hidden, so that its popover's page stays as it was.
void PropertyRowView::updateSwatch()
{
    if (!showsSwatch()) {
        if (m_swatch)
            m_swatch->hide();
        return;
    }
    if (!m_swatch) {
        m_swatch = new CSSColorPicker(
            m_localValue, [this](const QString &hex) { liveColorChange(hex); },
            [this](const QString &hex) { colorCommitted(hex); }, this);
        m_swatch->setObjectName(QStringLiteral("swatch"));
    }
    m_swatch->setValue(m_localValue);
    m_swatch->show();
}

int PropertyRowView::colonLeft() const
{
    return nameColumnWidth + colonInset;
}

int PropertyRowView::valueLeft() const
{
    const QFontMetrics metrics(InspectorStyle::monospacedFont());
    return colonLeft() + metrics.horizontalAdvance(QLatin1Char(':')) + colonInset;
}

int PropertyRowView::buttonsLeft() const
{
    const int deleteLeft = width() - (symbolSize + 2 * deleteInset);
    return m_variableButton->isVisibleTo(this) ? deleteLeft - variableInset - variableButtonWidth
                                               : deleteLeft;
}

int PropertyRowView::valueTextLeft() const
{
    return valueLeft() + (m_swatch && m_swatch->isVisibleTo(this) ? swatchSide + swatchSpacing : 0);
}

QRect PropertyRowView::nameCell() const
{
    return QRect(0, 0, nameColumnWidth, rowHeight);
}

QRect PropertyRowView::valueCell() const
{
    return QRect(valueLeft(), 0, std::max(0, buttonsLeft() - valueLeft()), rowHeight);
}

void PropertyRowView::layoutChildren()
{
    const int top = (rowHeight - fieldHeight) / 2;
    if (m_nameField)
        m_nameField->setGeometry(leadingInset, top, nameColumnWidth - leadingInset, fieldHeight);
    const QRect value = valueCell();
    if (m_swatch)
        m_swatch->setGeometry(value.left(), (rowHeight - swatchSide) / 2, swatchSide, swatchSide);
    const int textLeft = valueTextLeft();
    if (m_valueField)
        m_valueField->setGeometry(textLeft, top, std::max(0, value.right() + 1 - textLeft),
                                  fieldHeight);
    const int deleteLeft = width() - (symbolSize + 2 * deleteInset);
    m_deleteButton->setGeometry(deleteLeft, 0, symbolSize + 2 * deleteInset, rowHeight);
    m_variableButton->setGeometry(deleteLeft - variableButtonWidth, 0, variableButtonWidth,
                                  rowHeight);
}

// --- Events ---

void PropertyRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QPalette &palette = this->palette();
    if (m_editing)
        painter.fillRect(rect(), InspectorStyle::accent(palette, 0.06));

    const QFont font = InspectorStyle::monospacedFont();
    const QFontMetrics metrics(font);
    painter.setFont(font);
    painter.setPen(InspectorStyle::secondary(palette));
    painter.drawText(QRect(colonLeft(), 0, valueLeft() - colonLeft(), rowHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral(":"));
    if (m_editing)
        return;

    const QRect name(leadingInset, 0, nameColumnWidth - leadingInset, rowHeight);
    painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(m_property.name, Qt::ElideRight, name.width()));

    QRect value = valueCell();
    value.setLeft(valueTextLeft());
    if (m_mixed) {
        const QFont italic =
            InspectorStyle::monospacedFont(InspectorStyle::bodySize, QFont::Normal, true);
        painter.setFont(italic);
        painter.drawText(
            value, Qt::AlignLeft | Qt::AlignVCenter,
            QFontMetrics(italic).elidedText(tr("Mixed"), Qt::ElideRight, value.width()));
    } else {
        painter.setPen(palette.color(QPalette::WindowText));
        painter.drawText(value, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(m_property.value, Qt::ElideRight, value.width()));
    }
}

void PropertyRowView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutChildren();
}

void PropertyRowView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressing = true;
    m_dragging = false;
    m_pressPosition = event->globalPosition().toPoint();
    Q_EMIT pressed();
}

void PropertyRowView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressing)
        return;
    const QPoint position = event->globalPosition().toPoint();
    if (!m_dragging && QLineF(m_pressPosition, position).length() >= dragDistance)
        m_dragging = true;
    if (m_dragging)
        Q_EMIT dragMoved(position.y() - m_pressPosition.y());
}

void PropertyRowView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_pressing || event->button() != Qt::LeftButton)
        return;
    m_pressing = false;
    if (m_dragging) {
        m_dragging = false;
        Q_EMIT dragEnded();
        return;
    }
    const QPoint position = event->position().toPoint();
    if (nameCell().contains(position))
        startEdit(PropertyField::Name);
    else if (valueCell().contains(position))
        startEdit(PropertyField::Value);
}

void PropertyRowView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateButtons();
}

} // namespace Ombrel
