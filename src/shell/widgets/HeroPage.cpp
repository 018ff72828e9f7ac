#include "HeroPage.h"

#include "widgets/ViewStyle.h"

#include <QLabel>
#include <QVBoxLayout>

namespace Ombrel {

QVBoxLayout *layOutHeroPage(QWidget *page, QWidget *glyph, const QString &title, QLabel *subtitle)
{
    page->setBackgroundRole(QPalette::Window);
    page->setAutoFillBackground(true);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(60, 60, 60, 60);
    layout->setSpacing(0);
    layout->addStretch(1);

    auto *titles = new QVBoxLayout;
    titles->setSpacing(8);
    titles->addWidget(glyph, 0, Qt::AlignHCenter);
    titles->addWidget(makeLabel(title, 28, QFont::DemiBold, page), 0, Qt::AlignHCenter);
    subtitle->setAlignment(Qt::AlignHCenter);
    titles->addWidget(subtitle, 0, Qt::AlignHCenter);
    layout->addLayout(titles);

    auto *content = new QVBoxLayout;
    content->setContentsMargins(0, 0, 0, 0);
    content->setSpacing(0);
    layout->addLayout(content);
    layout->addStretch(1);
    return content;
}

} // namespace Ombrel
