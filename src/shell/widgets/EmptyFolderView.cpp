#include "EmptyFolderView.h"

#include "shell/widgets/HeroGlyph.h"
#include "shell/widgets/HeroPage.h"
#include "widgets/ViewStyle.h"
#include "workspace/Workspace.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Ombrel {

EmptyFolderView::EmptyFolderView(Workspace *workspace, QWidget *parent)
    : QWidget(parent), m_workspace(workspace)
{
    setObjectName(QStringLiteral("EmptyFolderView"));
    m_message = makeSecondaryLabel(QString(), 15, this);
    m_message->setObjectName(QStringLiteral("emptyFolderMessage"));
    QVBoxLayout *layout =
        layOutHeroPage(this, HeroGlyph::symbol(QStringLiteral("doc.badge.plus"), 48, this),
                       tr("No CSS Files"), m_message);
    layout->addSpacing(44);

    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(12);
    QPushButton *create =
        makeProminentButton(QStringLiteral("doc.badge.plus"), tr("New CSS File"), this);
    create->setObjectName(QStringLiteral("newFileButton"));
    connect(create, &QPushButton::clicked, workspace, &Workspace::createNewFile);
    buttons->addWidget(create, 0, Qt::AlignHCenter);
    auto *other = new QPushButton(tr("Open Different Folder…"), this);
    other->setObjectName(QStringLiteral("openDifferentFolderButton"));
    other->setFlat(true);
    other->setFont(fontOfSize(13));
    QPalette palette = other->palette();
    palette.setColor(QPalette::ButtonText, secondaryColor(palette));
    other->setPalette(palette);
    connect(other, &QPushButton::clicked, workspace, &Workspace::openFolderPanel);
    buttons->addWidget(other, 0, Qt::AlignHCenter);
    layout->addLayout(buttons);

    connect(workspace, &Workspace::folderPathChanged, this, &EmptyFolderView::updateMessage);
    updateMessage();
}

void EmptyFolderView::updateMessage()
{
    m_message->setText(tr("\"%1\" doesn't contain any CSS files.").arg(m_workspace->folderName()));
}

} // namespace Ombrel
