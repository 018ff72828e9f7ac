#pragma once

// Shared by the shell tests: an application whose desktop services answer
// from the test, windows made through it, and real folders of stylesheets.

#include "WorkspaceTestSupport.h"

#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelApp.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QTest>
#include <QUrl>

#include <memory>

namespace ShellTest {

// What the application asked of the desktop, and the answers it gets.
struct Desktop
{
    WorkspaceTest::PromptScript prompts;
    QString folderToChoose;
    int folderRequests = 0;
    QStringList revealed;
    QList<QUrl> openedUrls;
    int quitRequests = 0;
    // The row picked from the list of kept originals; none below 0.
    int originalToChoose = 0;
    // Each list of kept originals offered, with the file's name.
    QList<std::pair<QString, QList<Ombrel::KeptOriginal>>> originalRequests;
};

inline Ombrel::ShellServices servicesFor(const std::shared_ptr<Desktop> &desktop)
{
    return {
        desktop->prompts.handler(),
        [desktop](const Ombrel::FolderRequest &) {
            ++desktop->folderRequests;
            return desktop->folderToChoose;
        },
        [desktop](const QString &path) { desktop->revealed.append(path); },
        [desktop](const QUrl &url) { desktop->openedUrls.append(url); },
        [desktop] { ++desktop->quitRequests; },
        [desktop](const QString &fileName, const QList<Ombrel::KeptOriginal> &originals)
            -> std::optional<Ombrel::KeptOriginal> {
            desktop->originalRequests.append({fileName, originals});
            const int row = desktop->originalToChoose;
            if (row < 0 || row >= originals.size())
                return std::nullopt;
            return originals.at(row);
        },
    };
}

// Shows the window and waits until it is the active one, so that keys and
// menu shortcuts reach it.
inline bool activate(QWidget *window)
{
    window->show();
    window->activateWindow();
    QApplication::setActiveWindow(window);
    return QTest::qWaitForWindowActive(window);
}

inline QByteArray css(int rulesets, int variables = 0)
{
    QByteArray text;
    if (variables > 0) {
        text += ":root {\n";
        for (int i = 0; i < variables; ++i)
            text += "    --v" + QByteArray::number(i) + ": " + QByteArray::number(i) + "px;\n";
        text += "}\n";
        --rulesets;
    }
    for (int i = 0; i < rulesets; ++i)
        text += ".r" + QByteArray::number(i) + " {\n    color: red;\n}\n";
    return text;
}

inline void makeDirty(const Ombrel::CSSFilePtr &file)
{
    file->setRulesets(
        file->rulesets() +
        Ombrel::CSSRulesetList{std::make_shared<Ombrel::CSSRuleset>(QStringLiteral(".added"))});
    file->markChanged();
}

} // namespace ShellTest
