// The folder watch, through the real file system watcher: what another
// program does to the folder reaches the list of files, or does not.

#include "WorkspaceTestSupport.h"

#include "workspace/Workspace.h"

#include <QFileSystemWatcher>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray aCss = "a {\n    color: red;\n}\n";
const QByteArray bCss = "b {\n    margin: 0;\n}\n";
const QByteArray cCss = "c {\n    top: 1px;\n}\n";

QFileSystemWatcher *watcherOf(const Workspace &workspace)
{
    return workspace.findChild<QFileSystemWatcher *>();
}

bool reported(const QSignalSpy &events, const QString &path)
{
    for (const QList<QVariant> &event : events) {
        if (event.first().toString() == path)
            return true;
    }
    return false;
}

} // namespace

class TestFolderWatching : public QObject
{
    Q_OBJECT

    static void makeDirty(const CSSFilePtr &file)
    {
        file->rulesets().first()->setSelector(QStringLiteral("unsaved"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
    }

private Q_SLOTS:
    void init() { sessionStore().clear(); }

    void watchesEveryVisibleFolderOfTheTree()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/deep/a.css")), aCss));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("empty")));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral(".git/objects")));
        QVERIFY(
            QFile::link(dir.filePath(QStringLiteral("sub")), dir.filePath(QStringLiteral("link"))));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QStringList watched = watcherOf(workspace)->directories();
        watched.sort();
        QStringList expected{QDir::cleanPath(dir.path()), dir.filePath(QStringLiteral("empty")),
                             dir.filePath(QStringLiteral("sub")),
                             dir.filePath(QStringLiteral("sub/deep"))};
        QCOMPARE(watched, expected);
        QVERIFY(watcherOf(workspace)->files().isEmpty());
    }

    void openingAgainReplacesTheWatch()
    {
        QTemporaryDir first;
        QTemporaryDir second;
        QVERIFY(writeFile(first.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(second.filePath(QStringLiteral("b.css")), bCss));
        Workspace workspace;
        workspace.openFolder(first.path());
        workspace.openFolder(second.path());
        QTRY_COMPARE(workspace.findChildren<QFileSystemWatcher *>().size(), 1);
        QCOMPARE(watcherOf(workspace)->directories(), QStringList{QDir::cleanPath(second.path())});
        // The first folder is no longer heard.
        QVERIFY(writeFile(first.filePath(QStringLiteral("x.css")), aCss));
        QVERIFY(writeFile(second.filePath(QStringLiteral("y.css")), aCss));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"b.css", "y.css"}));
    }

    void aNewStylesheetShowsUpInPlaceAndTheSelectionStays()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("c.css")), cCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr c = fileNamed(workspace, QStringLiteral("c.css"));
        workspace.setSelectedFile(c);
        workspace.setSelectedRuleset(c->rulesets().first());
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"a.css", "b.css", "c.css"}));
        QCOMPARE(workspace.selectedFile(), c);
        QCOMPARE(workspace.selectedRuleset(), c->rulesets().first());
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        QCOMPARE(b->originalContent(), QString::fromUtf8(bCss));
        QVERIFY(!b->hasUnsavedChanges());
    }

    void theSelectedFileDeletedElsewhereGivesWayToTheFirstSurvivor()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("c.css")), cCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        workspace.setSelectedFile(b);
        workspace.setSelectedRuleset(b->rulesets().first());
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("a.css"))));
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("b.css"))));
        QTRY_COMPARE(relativePaths(workspace), QStringList{"c.css"});
        QCOMPARE(workspace.selectedFile(), fileNamed(workspace, QStringLiteral("c.css")));
        QVERIFY(!workspace.selectedRuleset());
        QCOMPARE(sessionStore().value("lastSelectedFilePath").toString(),
                 dir.filePath(QStringLiteral("c.css")));

        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("c.css"))));
        QTRY_VERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.selectedFile());
        QVERIFY(workspace.hasFolder());
    }

    void anUnselectedFileDeletedElsewhereLeavesTheSelection()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = workspace.selectedFile();
        workspace.setSelectedRuleset(a->rulesets().first());
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("b.css"))));
        QTRY_COMPARE(relativePaths(workspace), QStringList{"a.css"});
        QCOMPARE(workspace.selectedFile(), a);
        QCOMPARE(workspace.selectedRuleset(), a->rulesets().first());
    }

    void aStylesheetArrivingInAnEmptyFolderIsNotSelected()
    {
        QTemporaryDir dir;
        Workspace workspace;
        workspace.openFolder(dir.path());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(writeFile(dir.filePath(QStringLiteral("first.css")), aCss));
        QTRY_COMPARE(workspace.files().size(), 1);
        QVERIFY(!workspace.selectedFile());
    }

    void aRewriteInPlaceIsNotSeen()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub")));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = workspace.selectedFile();
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QVERIFY(writeFile(a->path(), "rewritten { by: other; }"));
        // A later change in another watched folder: once it is reported, an
        // event of the rewrite would have been reported before it.
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/marker.txt")), "x"));
        QTRY_VERIFY(reported(events, dir.filePath(QStringLiteral("sub"))));
        QVERIFY(!reported(events, QDir::cleanPath(dir.path())));
        QCOMPARE(workspace.files(), CSSFileList{a});
        QCOMPARE(a->originalContent(), QString::fromUtf8(aCss));
        QCOMPARE(a->rulesets().first()->selector(), "a");
    }

    void aReplacementByRenameIsSeenAndChangesNothing()
    {
        QTemporaryDir dir;
        QTemporaryDir elsewhere;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = workspace.selectedFile();
        makeDirty(a);
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QSignalSpy filesChanged(&workspace, &Workspace::filesChanged);
        // An editor that saves by writing a new file and renaming it over
        // the old one.
        const QString replacement = elsewhere.filePath(QStringLiteral("a.css.new"));
        QVERIFY(writeFile(replacement, "replaced { x: y; }"));
        QVERIFY(::rename(QFile::encodeName(replacement), QFile::encodeName(a->path())) == 0);
        QVERIFY(events.wait());
        QCOMPARE(filesChanged.count(), 0);
        QCOMPARE(workspace.files(), CSSFileList{a});
        QCOMPARE(a->originalContent(), QString::fromUtf8(aCss));
        QVERIFY(a->hasUnsavedChanges());
        // The next save overwrites what the other program wrote.
        workspace.saveCurrentFile();
        QCOMPARE(readFile(a->path()), "unsaved {\n    color: red;\n}\n");
    }

    void anUnsavedFileRemovedElsewhereGoesWithoutAQuestion()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        Workspace workspace;
        PromptScript prompts;
        workspace.setPromptHandler(prompts.handler());
        workspace.openFolder(dir.path());
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        makeDirty(b);
        QVERIFY(workspace.hasAnyUnsavedChanges());
        QVERIFY(QFile::remove(b->path()));
        QTRY_COMPARE(relativePaths(workspace), QStringList{"a.css"});
        QVERIFY(prompts.asked().isEmpty());
        QVERIFY(!workspace.hasAnyUnsavedChanges());
        QVERIFY(!QFileInfo::exists(b->path()));
    }

    void aFileMovedBetweenSubfoldersArrivesAsANewFile()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("one/a.css")), aCss));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("two")));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr old = workspace.selectedFile();
        makeDirty(old);
        QVERIFY(QFile::rename(dir.filePath(QStringLiteral("one/a.css")),
                              dir.filePath(QStringLiteral("two/a.css"))));
        QTRY_COMPARE(relativePaths(workspace), QStringList{"two/a.css"});
        const CSSFilePtr moved = workspace.files().first();
        QVERIFY(moved != old);
        QVERIFY(moved->id() != old->id());
        QVERIFY(!moved->hasUnsavedChanges());
        QCOMPARE(moved->originalContent(), QString::fromUtf8(aCss));
        // The selected file went, none survived, and a new file is never
        // selected.
        QVERIFY(!workspace.selectedFile());
    }

    void aFileRenamedElsewhereIsOneRemovalAndOneAddition()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        workspace.setSelectedFile(b);
        QVERIFY(QFile::rename(b->path(), dir.filePath(QStringLiteral("0.css"))));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"0.css", "a.css"}));
        QCOMPARE(workspace.selectedFile(), fileNamed(workspace, QStringLiteral("a.css")));
    }

    void aNewFolderIsListedButNotWatched()
    {
        QTemporaryDir dir;
        QTemporaryDir elsewhere;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        // A folder with a stylesheet, arriving in one step.
        QVERIFY(writeFile(elsewhere.filePath(QStringLiteral("pack/new.css")), bCss));
        QVERIFY(::rename(QFile::encodeName(elsewhere.filePath(QStringLiteral("pack"))),
                         QFile::encodeName(dir.filePath(QStringLiteral("pack")))) == 0);
        QTRY_COMPARE(relativePaths(workspace), QStringList({"a.css", "pack/new.css"}));
        QVERIFY(
            !watcherOf(workspace)->directories().contains(dir.filePath(QStringLiteral("pack"))));

        // A later file in that folder stays unseen until something else
        // causes a scan.
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QVERIFY(writeFile(dir.filePath(QStringLiteral("pack/later.css")), cCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("notes.txt")), "x"));
        QTRY_VERIFY(reported(events, QDir::cleanPath(dir.path())));
        QVERIFY(!reported(events, dir.filePath(QStringLiteral("pack"))));
        QCOMPARE(relativePaths(workspace),
                 QStringList({"a.css", "pack/later.css", "pack/new.css"}));
    }

    void hiddenArrivalsStayUnlisted()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QVERIFY(writeFile(dir.filePath(QStringLiteral(".hidden.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral(".cache/x.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/.secret/y.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/z.css")), cCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("FOO.CSS")), cCss));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"FOO.CSS", "a.css", "sub/z.css"}));
    }

    void aLinkLoopMadeWhileWatchingIsNotFollowed()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QVERIFY(QFile::link(dir.path(), dir.filePath(QStringLiteral("sub/loop"))));
        QVERIFY(QFile::link(QStringLiteral(".."), dir.filePath(QStringLiteral("up"))));
        QTRY_VERIFY(reported(events, dir.filePath(QStringLiteral("sub"))));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"b.css", "sub/a.css"}));
    }

    void aNewFileThatCannotBeReadIsTriedAgainAtTheNextScan()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), "b { content: \"\xe9\" }"));
        QVERIFY(events.wait());
        QCOMPARE(relativePaths(workspace), QStringList{"a.css"});
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("notes.txt")), "x"));
        QTRY_COMPARE(relativePaths(workspace), QStringList({"a.css", "b.css"}));
    }

    void aBurstOfChangesEndsInTheStateOnDisk()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("keep.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr keep = workspace.selectedFile();
        QStringList expected{"keep.css"};
        for (int i = 0; i < 40; ++i) {
            const QString name = QStringLiteral("n%1.css").arg(i, 2, 10, QLatin1Char('0'));
            QVERIFY(writeFile(dir.filePath(name), bCss));
            if (i % 3 == 0)
                QVERIFY(QFile::remove(dir.filePath(name)));
            else
                expected.append(name);
        }
        expected.sort();
        QTRY_COMPARE(relativePaths(workspace), expected);
        QCOMPARE(fileNamed(workspace, QStringLiteral("keep.css")), keep);
        QCOMPARE(workspace.selectedFile(), keep);
    }

    void anEventAfterCloseProjectFindsNoFolder()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        workspace.closeProject();
        QTRY_VERIFY(workspace.findChildren<QFileSystemWatcher *>().isEmpty());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.hasFolder());
        workspace.reloadFiles();
        QVERIFY(workspace.files().isEmpty());
    }

    void theOpenFolderVanishingChangesNothing()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("site"));
        QVERIFY(writeFile(folder + QStringLiteral("/a.css"), aCss));
        Workspace workspace;
        workspace.openFolder(folder);
        const CSSFileList files = workspace.files();
        QSignalSpy events(watcherOf(workspace), &QFileSystemWatcher::directoryChanged);
        QVERIFY(QDir(folder).removeRecursively());
        QVERIFY(events.wait());
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), files.first());
    }
};

QTEST_MAIN(TestFolderWatching)
#include "tst_folderwatching.moc"
