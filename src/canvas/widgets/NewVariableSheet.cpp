#include "NewVariableSheet.h"

#include "canvas/RulesetOperations.h"
#include "widgets/ComboBox.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

QLineEdit *monospacedField(const QString &placeholder, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setPlaceholderText(placeholder);
    field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return field;
}

} // namespace

NewVariableSheet::NewVariableSheet(QWidget *parent)
    : QDialog(parent), m_selectorCaption(new QLabel(tr("Ruleset"), this)),
      m_selector(new ComboBox(this)), m_name(monospacedField(tr("--variable-name"), this)),
      m_value(monospacedField(tr("e.g. #3b82f6, 1rem, bold"), this)),
      m_add(new QPushButton(tr("Add"), this))
{
    setWindowTitle(tr("New Variable"));
    setWindowModality(Qt::WindowModal);
    setFixedWidth(340);
    m_selector->setFixedHeight(22);
    m_selector->setOnTab([this] { m_name->setFocus(Qt::TabFocusReason); });
    m_name->installEventFilter(this);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false);
    m_add->setDefault(true);

    auto *title = new QLabel(tr("New Variable"), this);
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() + 1);
    title->setFont(font);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(16);
    layout->addWidget(title);
    const auto addField = [this, layout](QWidget *caption, QWidget *field) {
        auto *column = new QVBoxLayout;
        column->setSpacing(6);
        column->addWidget(caption);
        column->addWidget(field);
        layout->addLayout(column);
    };
    addField(m_selectorCaption, m_selector);
    addField(new QLabel(tr("Name"), this), m_name);
    addField(new QLabel(tr("Value"), this), m_value);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_add);
    layout->addLayout(buttons);

    connect(m_selector, &ComboBox::textChangedByUser, this, &NewVariableSheet::selectorEdited);
    connect(m_name, &QLineEdit::textEdited, this, &NewVariableSheet::nameEdited);
    connect(m_value, &QLineEdit::textEdited, this, &NewVariableSheet::valueEdited);
    connect(m_name, &QLineEdit::textChanged, this, &NewVariableSheet::updateAddButton);
    connect(m_value, &QLineEdit::textChanged, this, &NewVariableSheet::updateAddButton);
    connect(cancel, &QPushButton::clicked, this, &NewVariableSheet::reject);
    connect(m_add, &QPushButton::clicked, this, &NewVariableSheet::accept);
    updateAddButton();
}

void NewVariableSheet::showValues(const QString &name, const QString &value,
                                  const QString &selector, const QStringList &rulesetSelectors)
{
    QStringList items;
    for (int i = 0; i < m_selector->count(); ++i)
        items.append(m_selector->itemText(i));
    if (items != rulesetSelectors) {
        const QSignalBlocker blocker(m_selector);
        m_selector->clear();
        m_selector->addItems(rulesetSelectors);
    }
    m_selector->showText(selector);
    m_selectorCaption->setVisible(!rulesetSelectors.isEmpty());
    m_selector->setVisible(!rulesetSelectors.isEmpty());
    if (m_name->text() != name)
        m_name->setText(name);
    if (m_value->text() != value)
        m_value->setText(value);
}

void NewVariableSheet::accept()
{
    if (m_add->isEnabled())
        Q_EMIT committed();
}

void NewVariableSheet::reject()
{
    Q_EMIT cancelled();
}

// Return and Tab in the name go on to the value instead of adding.
bool NewVariableSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_name && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab) {
            m_value->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void NewVariableSheet::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (m_selector->isHidden())
        m_name->setFocus(Qt::OtherFocusReason);
    else
        m_selector->setFocus(Qt::OtherFocusReason);
}

void NewVariableSheet::updateAddButton()
{
    m_add->setEnabled(RulesetOperations::acceptsVariable(m_name->text(), m_value->text()));
}

} // namespace Ombrel
