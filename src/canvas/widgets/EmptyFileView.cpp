#include "EmptyFileView.h"

#include "widgets/EmptyState.h"
#include "widgets/SymbolIcon.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

// Children hear of a new palette after their parent, so the colour comes
// from the parent's.
void setSecondary(QLabel *label, const QColor &color)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

} // namespace

EmptyFileView::EmptyFileView(QWidget *parent)
    : QWidget(parent), m_name(emptyStateLabel(QString(), 22, QFont::DemiBold, this)),
      m_message(emptyStateLabel(QString(), 15, QFont::Normal, this))
{
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Window);

    auto *heading = new QVBoxLayout;
    heading->setSpacing(8);
    heading->addWidget(new BracesMark(this), 0, Qt::AlignHCenter);
    heading->addWidget(m_name, 0, Qt::AlignHCenter);
    heading->addWidget(m_message, 0, Qt::AlignHCenter);

    auto *features = new QVBoxLayout;
    features->setSpacing(20);
    const auto featureRow = [this, features](const QString &icon, const QString &title,
                                             const QString &detail) {
        auto *row = new QHBoxLayout;
        row->setSpacing(16);
        auto *symbol = new QLabel(this);
        symbol->setObjectName(QStringLiteral("featureSymbol"));
        symbol->setProperty("symbolName", icon);
        symbol->setFixedWidth(28);
        symbol->setAlignment(Qt::AlignCenter);
        row->addWidget(symbol, 0, Qt::AlignTop);
        auto *text = new QVBoxLayout;
        text->setSpacing(2);
        text->addWidget(emptyStateLabel(title, 13, QFont::DemiBold, this));
        QLabel *detailLabel = emptyStateLabel(detail, 12, QFont::Normal, this);
        detailLabel->setWordWrap(true);
        detailLabel->setFixedWidth(340);
        detailLabel->setObjectName(QStringLiteral("secondary"));
        text->addWidget(detailLabel);
        row->addLayout(text);
        features->addLayout(row);
    };
    featureRow(QStringLiteral("curlybraces"), tr("Rulesets"),
               tr("Group properties under a CSS selector. Each ruleset becomes a node on the "
                  "canvas."));
    featureRow(QStringLiteral("dial.low"), tr("Variables"),
               tr("Define CSS custom properties that can be reused and resolved live across your "
                  "stylesheet."));

    auto *newRuleset = new QPushButton(tr("New Ruleset"), this);
    newRuleset->setObjectName(QStringLiteral("plusButton"));
    newRuleset->setDefault(true);
    auto *newVariable = new QPushButton(tr("New Variable"), this);
    newVariable->setObjectName(QStringLiteral("plusButton"));
    connect(newRuleset, &QPushButton::clicked, this, &EmptyFileView::newRulesetRequested);
    connect(newVariable, &QPushButton::clicked, this, &EmptyFileView::newVariableRequested);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addWidget(newRuleset);
    buttons->addWidget(newVariable);

    auto *column = new QVBoxLayout;
    column->setSpacing(0);
    column->addLayout(heading);
    column->addSpacing(48);
    column->addLayout(features);
    column->addSpacing(44);
    column->addLayout(buttons);

    auto *centred = new QHBoxLayout;
    centred->addStretch();
    centred->addLayout(column);
    centred->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addLayout(centred);
    layout->addStretch();
    applyPalette();
}

void EmptyFileView::showFile(const QString &fileName, bool hasVariables)
{
    m_name->setText(fileName);
    m_message->setText(hasVariables ? tr("This file has no rulesets yet.")
                                    : tr("This file is empty."));
}

void EmptyFileView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

// The secondary texts and the accent symbols follow the palette.
void EmptyFileView::applyPalette()
{
    const QColor secondary = palette().color(QPalette::PlaceholderText);
    setSecondary(m_message, secondary);
    for (QLabel *label : findChildren<QLabel *>(QStringLiteral("secondary")))
        setSecondary(label, secondary);
    for (QPushButton *button : findChildren<QPushButton *>(QStringLiteral("plusButton")))
        button->setIcon(
            symbolIcon(QStringLiteral("plus"), 32, palette().color(QPalette::ButtonText)));
    for (QLabel *symbol : findChildren<QLabel *>(QStringLiteral("featureSymbol")))
        symbol->setPixmap(symbolPixmap(symbol->property("symbolName").toString(), 18,
                                       palette().color(QPalette::Highlight), devicePixelRatioF()));
}

} // namespace Ombrel
