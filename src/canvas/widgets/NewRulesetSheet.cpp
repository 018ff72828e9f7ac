#include "NewRulesetSheet.h"

#include "text/TextScan.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

QLabel *headline(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() + 1);
    label->setFont(font);
    return label;
}

} // namespace

NewRulesetSheet::NewRulesetSheet(QWidget *parent)
    : QDialog(parent), m_selector(new QLineEdit(this)), m_add(new QPushButton(tr("Add"), this))
{
    setWindowTitle(tr("New Ruleset"));
    setWindowModality(Qt::WindowModal);
    setFixedWidth(340);
    m_selector->setPlaceholderText(tr("e.g. .button, #header, h1"));
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false);
    m_add->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(16);
    layout->addWidget(headline(tr("New Ruleset"), this));
    auto *field = new QVBoxLayout;
    field->setSpacing(6);
    field->addWidget(new QLabel(tr("Selector"), this));
    field->addWidget(m_selector);
    layout->addLayout(field);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_add);
    layout->addLayout(buttons);

    connect(m_selector, &QLineEdit::textEdited, this, &NewRulesetSheet::selectorEdited);
    connect(m_selector, &QLineEdit::textChanged, this, &NewRulesetSheet::updateAddButton);
    connect(cancel, &QPushButton::clicked, this, &NewRulesetSheet::reject);
    connect(m_add, &QPushButton::clicked, this, &NewRulesetSheet::accept);
    updateAddButton();
}

void NewRulesetSheet::showSelector(const QString &text)
{
    if (m_selector->text() != text)
        m_selector->setText(text);
}

void NewRulesetSheet::accept()
{
    if (m_add->isEnabled())
        Q_EMIT committed();
}

void NewRulesetSheet::reject()
{
    Q_EMIT cancelled();
}

void NewRulesetSheet::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_selector->setFocus(Qt::OtherFocusReason);
}

void NewRulesetSheet::updateAddButton()
{
    m_add->setEnabled(!TextScan::trimmedWhitespace(m_selector->text()).isEmpty());
}

} // namespace Ombrel
