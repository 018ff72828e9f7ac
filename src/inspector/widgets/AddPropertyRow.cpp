#include "AddPropertyRow.h"

#include "inspector/PropertyEditorController.h"
#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/InspectorStyle.h"
#include "inspector/widgets/PropertyRowView.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "knowledge/CSSPropertyDatabase.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace Ombrel {

namespace {

constexpr int fieldHeight = 24;
constexpr int symbolSize = 10;
constexpr int buttonWidth = symbolSize + 12;
constexpr int colonInset = 4;

// The green of the commit checkmark.
const QColor commitGreen(0x34, 0xc7, 0x59);

} // namespace

AddPropertyRow::AddPropertyRow(PropertyEditorController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), m_nameField(new AutocompleteField(this)),
      m_valueField(new AutocompleteField(this)),
      m_variableButton(new SymbolButton(QStringLiteral("curlybraces"), symbolSize, this)),
      m_commitButton(new SymbolButton(QStringLiteral("checkmark"), symbolSize, this)),
      m_cancelButton(new SymbolButton(QStringLiteral("xmark"), symbolSize, this))
{
    setFixedHeight(rowHeight);
    const QFont font = InspectorStyle::monospacedFont();
    m_nameField->setObjectName(QStringLiteral("newNameField"));
    m_nameField->setFont(font);
    m_nameField->setPlaceholderText(tr("property-name"));
    m_nameField->setSuggestions(CSSPropertyDatabase::allProperties());
    m_nameField->setOnConfirm([this] { m_valueField->setFocus(Qt::TabFocusReason); });
    m_nameField->setOnEscape([this] { m_controller.cancelNewProperty(); });
    m_valueField->setObjectName(QStringLiteral("newValueField"));
    m_valueField->setFont(font);
    m_valueField->setPlaceholderText(tr("value"));
    m_valueField->setOnEscape([this] { m_controller.cancelNewProperty(); });
    setTabOrder(m_nameField, m_valueField);

    connect(m_nameField, &QLineEdit::returnPressed, this,
            [this] { m_valueField->setFocus(Qt::TabFocusReason); });
    connect(m_valueField, &QLineEdit::returnPressed, this,
            [this] { m_controller.commitNewProperty(); });
    connect(m_nameField, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_controller.setNewPropertyName(text); });
    connect(m_valueField, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_controller.setNewPropertyValue(text); });
    connect(&controller, &PropertyEditorController::newPropertyNameChanged, this,
            &AddPropertyRow::syncFromController);
    connect(&controller, &PropertyEditorController::newPropertyValueChanged, this,
            &AddPropertyRow::syncFromController);

    m_variableButton->setToolTip(tr("Variables"));
    connect(m_variableButton, &QAbstractButton::clicked, this,
            &AddPropertyRow::toggleVariablePicker);
    m_commitButton->setToolTip(tr("Add"));
    connect(m_commitButton, &QAbstractButton::clicked, this,
            [this] { m_controller.commitNewProperty(); });
    m_cancelButton->setToolTip(tr("Cancel"));
    connect(m_cancelButton, &QAbstractButton::clicked, this,
            [this] { m_controller.cancelNewProperty(); });
    syncFromController();
}

void AddPropertyRow::setVariables(const VariableOfferPtr &variables)
{
    m_variables = variables;
    updateButtons();
}

VariableChoices AddPropertyRow::compatibleVariables() const
{
    return m_variables ? m_variables->compatibleWith(m_controller.newPropertyName())
                       : VariableChoices();
}

std::optional<QString> AddPropertyRow::activeVarName() const
{
    return referencedVariable(m_controller.newPropertyValue());
}

// Picking fills in the value and nothing more: the row stays open.
void AddPropertyRow::toggleVariablePicker()
{
    if (m_picker) {
        m_picker->close();
        return;
    }
    m_picker = new VariablePickerPopover(
        compatibleVariables(), activeVarName(),
        [this](const QString &name) {
            m_controller.setNewPropertyValue(QStringLiteral("var(") + name + QLatin1Char(')'));
            if (m_picker)
                m_picker->close();
        },
        {}, this);
    m_picker->popup(m_variableButton->mapToGlobal(QPoint(0, m_variableButton->height())));
}

void AddPropertyRow::syncFromController()
{
    if (m_nameField->text() != m_controller.newPropertyName())
        m_nameField->setText(m_controller.newPropertyName());
    m_valueField->setSuggestions(CSSPropertyDatabase::values(m_controller.newPropertyName()));
    if (m_valueField->text() != m_controller.newPropertyValue())
        m_valueField->setText(m_controller.newPropertyValue());
    updateButtons();
}

void AddPropertyRow::updateButtons()
{
    const QColor secondary = InspectorStyle::secondary(palette());
    m_commitButton->setSymbolColor(commitGreen);
    m_cancelButton->setSymbolColor(secondary);
    m_variableButton->setVisible(!compatibleVariables().isEmpty());
    m_variableButton->setSymbolColor(activeVarName() ? InspectorStyle::accent(palette())
                                                     : secondary);
    layoutChildren();
}

void AddPropertyRow::layoutChildren()
{
    const int top = (rowHeight - fieldHeight) / 2;
    const int nameLeft = PropertyRowView::leadingInset;
    m_nameField->setGeometry(nameLeft, top, PropertyRowView::nameColumnWidth - nameLeft,
                             fieldHeight);
    int right = width() - 4;
    for (SymbolButton *button : {m_cancelButton, m_commitButton, m_variableButton}) {
        if (!button->isVisibleTo(this))
            continue;
        right -= buttonWidth;
        button->setGeometry(right, 0, buttonWidth, rowHeight);
    }
    const QFontMetrics metrics(InspectorStyle::monospacedFont());
    const int valueLeft = PropertyRowView::nameColumnWidth + 2 * colonInset +
                          metrics.horizontalAdvance(QLatin1Char(':'));
    m_valueField->setGeometry(valueLeft, top, std::max(0, right - valueLeft - 4), fieldHeight);
}

void AddPropertyRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), InspectorStyle::accent(palette(), 0.06));
    painter.setFont(InspectorStyle::monospacedFont());
    painter.setPen(InspectorStyle::secondary(palette()));
    painter.drawText(QRect(PropertyRowView::nameColumnWidth + colonInset, 0, 20, rowHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral(":"));
}

void AddPropertyRow::mousePressEvent(QMouseEvent *event)
{
    // Taken here, so that the list under the row does not see it again.
    if (event->button() == Qt::LeftButton)
        Q_EMIT pressed();
}

void AddPropertyRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutChildren();
}

void AddPropertyRow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        m_controller.cancelNewProperty();
        return;
    }
    QWidget::keyPressEvent(event);
}

void AddPropertyRow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QMetaObject::invokeMethod(
        this, [this] { m_nameField->setFocus(Qt::OtherFocusReason); }, Qt::QueuedConnection);
}

void AddPropertyRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateButtons();
}

} // namespace Ombrel
