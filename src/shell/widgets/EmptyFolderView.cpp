#include "EmptyFolderView.h"

#include "shell/widgets/HeroGlyph.h"
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
    setBackgroundRole(QPalette::Window);
    setAutoFillBackground(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(60, 60, 60, 60);
    layout->setSpacing(0);
    layout->addStretch(1);

    auto *titles = new QVBoxLayout;
    titles->setSpacing(8);
    titles->addWidget(HeroGlyph::symbol(QStringLiteral("doc.badge.plus"), 48, this), 0,
                      Qt::AlignHCenter);
    titles->addWidget(makeLabel(tr("No CSS Files"), 28, QFont::DemiBold, this), 0,
                      Qt::AlignHCenter);
    m_message = makeSecondaryLabel(QString(), 15, this);
    m_message->setObjectName(QStringLiteral("emptyFolderMessage"));
    m_message->setAlignment(Qt::AlignHCenter);
    titles->addWidget(m_message, 0, Qt::AlignHCenter);
    layout->addLayout(titles);
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
    layout->addStretch(1);

    connect(workspace, &Workspace::folderPathChanged, this, &EmptyFolderView::updateMessage);
    updateMessage();
}

void EmptyFolderView::updateMessage()
{
    m_message->setText(tr("\"%1\" doesn't contain any CSS files.").arg(m_workspace->folderName()));
}

} // namespace Ombrel
