#include "VariablesEmptyView.h"

#include "VariableRowStyle.h"
#include "widgets/EmptyState.h"
#include "widgets/SymbolIcon.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

constexpr int sideInset = 60;
constexpr int featureWidth = 380;
// The feature rows' symbol column and the gap after it.
constexpr int symbolColumn = 28;
constexpr int symbolGap = 12;

// On the plain background a label's text takes the Text role.
void setTextColor(QLabel *label, const QColor &color)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::Text, color);
    label->setPalette(palette);
}

} // namespace

VariablesEmptyView::VariablesEmptyView(QWidget *parent)
    : QWidget(parent), m_name(emptyStateLabel(QString(), 22, QFont::DemiBold, this)),
      m_message(emptyStateLabel(QString(), 13, QFont::Normal, this)),
      m_button(new QPushButton(this))
{
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);

    auto *heading = new QVBoxLayout;
    heading->setSpacing(8);
    heading->addWidget(new BracesMark(this), 0, Qt::AlignHCenter);
    heading->addWidget(m_name, 0, Qt::AlignHCenter);
    heading->addWidget(m_message, 0, Qt::AlignHCenter);

    // A wrapped label gets its height only from a width it is given.
    auto *featureBox = new QWidget(this);
    featureBox->setFixedWidth(featureWidth);
    auto *features = new QVBoxLayout(featureBox);
    features->setContentsMargins(0, 0, 0, 0);
    features->setSpacing(20);
    const auto featureRow = [featureBox, features](const QString &icon, const QString &title,
                                                   const QString &detail) {
        auto *row = new QHBoxLayout;
        row->setSpacing(symbolGap);
        auto *symbol = new QLabel(featureBox);
        symbol->setObjectName(QStringLiteral("featureSymbol"));
        symbol->setProperty("symbolName", icon);
        symbol->setFixedWidth(symbolColumn);
        symbol->setAlignment(Qt::AlignCenter);
        row->addWidget(symbol, 0, Qt::AlignTop);
        auto *text = new QVBoxLayout;
        text->setSpacing(2);
        text->addWidget(emptyStateLabel(title, 13, QFont::Normal, featureBox));
        QLabel *detailLabel = emptyStateLabel(detail, 12, QFont::Normal, featureBox);
        detailLabel->setWordWrap(true);
        detailLabel->setFixedWidth(featureWidth - symbolColumn - symbolGap);
        detailLabel->setObjectName(QStringLiteral("secondary"));
        text->addWidget(detailLabel);
        row->addLayout(text, 1);
        features->addLayout(row);
    };
    featureRow(QStringLiteral("curlybraces"), tr("Rulesets"),
               tr("Group properties under a CSS selector. Each ruleset becomes a node on the "
                  "canvas."));
    featureRow(QStringLiteral("dial.low"), tr("Variables"),
               tr("Define CSS custom properties that can be reused and resolved live across your "
                  "stylesheet."));

    QFont buttonFont = m_button->font();
    buttonFont.setWeight(QFont::Medium);
    m_button->setFont(buttonFont);
    m_button->setIconSize(QSize(14, 14));
    connect(m_button, &QPushButton::clicked, this, [this] {
        if (m_hasRulesets)
            Q_EMIT newVariableRequested();
        else
            Q_EMIT newRulesetRequested();
    });

    auto *column = new QVBoxLayout;
    column->setSpacing(0);
    column->addLayout(heading);
    column->addSpacing(48);
    column->addWidget(featureBox, 0, Qt::AlignHCenter);
    column->addSpacing(44);
    column->addWidget(m_button, 0, Qt::AlignHCenter);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(sideInset, 0, sideInset, 0);
    layout->addStretch();
    layout->addLayout(column);
    layout->addStretch();
    showFile(QString(), true);
    applyPalette();
}

void VariablesEmptyView::showFile(const QString &fileName, bool hasRulesets)
{
    m_hasRulesets = hasRulesets;
    m_name->setText(fileName);
    m_message->setText(hasRulesets ? tr("This file has no variables yet.")
                                   : tr("This file is empty."));
    m_button->setText(hasRulesets ? tr("New Variable") : tr("New Ruleset"));
}

void VariablesEmptyView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

// The secondary texts and the accent symbols follow the palette.
void VariablesEmptyView::applyPalette()
{
    const QColor secondary = VariableRowStyle::secondaryColor(palette());
    setTextColor(m_message, secondary);
    for (QLabel *label : findChildren<QLabel *>(QStringLiteral("secondary")))
        setTextColor(label, secondary);
    m_button->setIcon(
        symbolIcon(QStringLiteral("plus"), 28, palette().color(QPalette::ButtonText)));
    for (QLabel *symbol : findChildren<QLabel *>(QStringLiteral("featureSymbol")))
        symbol->setPixmap(symbolPixmap(symbol->property("symbolName").toString(), 18,
                                       palette().color(QPalette::Highlight), devicePixelRatioF()));
}

} // namespace Ombrel
