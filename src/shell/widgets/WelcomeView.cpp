#include "WelcomeView.h"

#include "shell/widgets/HeroGlyph.h"
#include "shell/widgets/HeroPage.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"
#include "workspace/Workspace.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

constexpr int featureListWidth = 380;
constexpr int iconColumnWidth = 28;
constexpr int iconGap = 16;

struct Feature
{
    const char *icon;
    const char *title;
    const char *detail;
};

constexpr Feature features[] = {
    {"rectangle.3.group", QT_TRANSLATE_NOOP("Ombrel::WelcomeView", "Rulesets as nodes"),
     QT_TRANSLATE_NOOP("Ombrel::WelcomeView",
                       "Every CSS ruleset becomes a card. Scan your styles at a glance instead of "
                       "hunting through raw text.")},
    {"slider.horizontal.3", QT_TRANSLATE_NOOP("Ombrel::WelcomeView", "Visual property editing"),
     QT_TRANSLATE_NOOP("Ombrel::WelcomeView",
                       "Edit colors, typography, and spacing with dedicated controls. Autocomplete "
                       "keeps you on spec.")},
    {"curlybraces", QT_TRANSLATE_NOOP("Ombrel::WelcomeView", "Variables resolved live"),
     QT_TRANSLATE_NOOP("Ombrel::WelcomeView",
                       "CSS custom properties are substituted in real time so you always see the "
                       "true computed value.")},
};

QWidget *featureRow(const Feature &feature, QWidget *parent)
{
    auto *row = new QWidget(parent);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(iconGap);
    auto *icon = new QLabel(row);
    icon->setFixedWidth(iconColumnWidth);
    icon->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    icon->setPixmap(symbolPixmap(QLatin1String(feature.icon), 18,
                                 row->palette().color(QPalette::Highlight),
                                 row->devicePixelRatioF()));
    layout->addWidget(icon);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(makeLabel(WelcomeView::tr(feature.title), 13, QFont::DemiBold, row));
    QLabel *detail = makeSecondaryLabel(WelcomeView::tr(feature.detail), 12, row);
    detail->setWordWrap(true);
    // The list is centred, and a centred item gets its height from its size
    // hint alone: the wrapped lines are counted here for the list's width.
    detail->setMinimumHeight(detail->heightForWidth(featureListWidth - iconColumnWidth - iconGap));
    texts->addWidget(detail);
    layout->addLayout(texts, 1);
    return row;
}

} // namespace

WelcomeView::WelcomeView(Workspace *workspace, QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("WelcomeView"));
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPixelSize(56);
    mono.setWeight(QFont::Thin);
    QVBoxLayout *layout = layOutHeroPage(
        this, HeroGlyph::text(QStringLiteral("{}"), mono, this), QStringLiteral("Ombrel"),
        makeSecondaryLabel(tr("A visual workspace for your stylesheets."), 15, this));
    layout->addSpacing(48);

    auto *list = new QWidget(this);
    list->setFixedWidth(featureListWidth);
    auto *rows = new QVBoxLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(20);
    for (const Feature &feature : features)
        rows->addWidget(featureRow(feature, list));
    layout->addWidget(list, 0, Qt::AlignHCenter);
    layout->addSpacing(44);

    QPushButton *open =
        makeProminentButton(QStringLiteral("folder.badge.plus"), tr("Open Folder…"), this);
    open->setObjectName(QStringLiteral("openFolderButton"));
    connect(open, &QPushButton::clicked, workspace, &Workspace::openFolderPanel);
    layout->addWidget(open, 0, Qt::AlignHCenter);
}

} // namespace Ombrel
