#include "AddVariableRow.h"

#include "VariableRowStyle.h"
#include "text/TextScan.h"
#include "widgets/SymbolIcon.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>

#include <limits>

namespace Ombrel {

namespace {

constexpr int buttonSymbolSize = 10;
constexpr int buttonInset = 10;
// The commit button's green.
const QColor commitGreen(0x34, 0xc7, 0x59);

QString trimmed(const QString &text)
{
    return TextScan::trimmedWhitespace(text).toString();
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype at = 0; at < text.size(); at = TextScan::nextCharacterEnd(text, at))
        ++count;
    return count;
}

QLineEdit *makeField(const QString &placeholder, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setFrame(false);
    field->setFont(VariableRowStyle::bodyFont());
    field->setPlaceholderText(placeholder);
    field->setMaxLength(std::numeric_limits<int>::max());
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    field->setPalette(palette);
    return field;
}

QToolButton *makeButton(QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setIconSize(QSize(buttonSymbolSize, buttonSymbolSize));
    return button;
}

} // namespace

AddVariableRow::AddVariableRow(QWidget *parent)
    : QWidget(parent), m_name(makeField(tr("--variable-name"), this)),
      m_value(makeField(tr("value"), this)), m_commit(makeButton(this)), m_cancel(makeButton(this))
{
    m_name->setText(QStringLiteral("--"));
    auto *colon = new QLabel(QStringLiteral(":"), this);
    colon->setObjectName(QStringLiteral("colon"));
    colon->setFont(VariableRowStyle::bodyFont());

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(VariableRowStyle::leadingInset, VariableRowStyle::verticalInset, 0,
                            VariableRowStyle::verticalInset);
    row->setSpacing(0);
    row->addWidget(m_name, 1);
    row->addSpacing(VariableRowStyle::colonInset);
    row->addWidget(colon);
    row->addSpacing(VariableRowStyle::colonInset);
    row->addWidget(m_value, 1);
    row->addSpacing(buttonInset);
    row->addWidget(m_commit);
    row->addWidget(m_cancel);
    row->addSpacing(buttonInset);

    m_name->installEventFilter(this);
    m_value->installEventFilter(this);
    connect(m_commit, &QToolButton::clicked, this, &AddVariableRow::commit);
    connect(m_cancel, &QToolButton::clicked, this, &AddVariableRow::cancelled);
    applyPalette();
}

std::optional<AddVariableRow::Field> AddVariableRow::focusedField() const
{
    if (m_name->hasFocus())
        return Field::Name;
    if (m_value->hasFocus())
        return Field::Value;
    return std::nullopt;
}

void AddVariableRow::commit()
{
    const QString name = trimmed(m_name->text());
    const QString value = trimmed(m_value->text());
    if (name.startsWith(u"--") && characterCount(name) >= 3 && !value.isEmpty())
        Q_EMIT committed(name, value);
}

void AddVariableRow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_name->setFocus(Qt::OtherFocusReason);
}

bool AddVariableRow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || (watched != m_name && watched != m_value))
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (watched == m_name)
            m_value->setFocus(Qt::OtherFocusReason);
        else
            commit();
        return true;
    case Qt::Key_Tab:
        if (watched != m_name)
            return false;
        m_value->setFocus(Qt::TabFocusReason);
        return true;
    default:
        return false;
    }
}

void AddVariableRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor tint = palette().color(QPalette::Highlight);
    tint.setAlphaF(float(VariableRowStyle::editingTint));
    painter.fillRect(rect(), tint);
}

void AddVariableRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void AddVariableRow::applyPalette()
{
    const QColor secondary = VariableRowStyle::secondaryColor(palette());
    m_commit->setIcon(symbolIcon(QStringLiteral("checkmark"), buttonSymbolSize, commitGreen));
    m_cancel->setIcon(symbolIcon(QStringLiteral("xmark"), buttonSymbolSize, secondary));
    if (auto *colon = findChild<QLabel *>(QStringLiteral("colon"))) {
        QPalette colonPalette = colon->palette();
        colonPalette.setColor(QPalette::WindowText, secondary);
        colon->setPalette(colonPalette);
    }
}

} // namespace Ombrel
