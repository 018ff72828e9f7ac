// Reverting, creating, duplicating, renaming, showing, deleting and closing:
// names, selection, prompts and what is left when the file system refuses.
// Deleted files go to a trash inside a temporary home of the test's own.

#include "WorkspaceTestSupport.h"

#include "workspace/Workspace.h"

#include <QDesktopServices>
#include <QFileSystemWatcher>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray aCss = "a {\n    color: red;\n}\n";
const QByteArray bCss = "b {\n    margin: 0;\n}\n";
const QByteArray cCss = "c {\n    top: 1px;\n}\n";

// Receives the URLs that the desktop was asked to open.
class UrlSink : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

} // namespace

class TestFileOperations : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;
    QString m_dataHome;

    QString trashed(const QString &name) const
    {
        return m_dataHome + QStringLiteral("/Trash/files/") + name;
    }

    // A workspace on a folder with a.css, b.css and c.css.
    static void openThree(Workspace &workspace, const QTemporaryDir &dir)
    {
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("c.css")), cCss));
        workspace.openFolder(dir.path());
        QCOMPARE(workspace.files().size(), 3);
    }

    static void makeDirty(const CSSFilePtr &file, const QString &selector)
    {
        file->rulesets().first()->setSelector(selector);
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
    }

private Q_SLOTS:
    void initTestCase()
    {
        // The trash lives under the data home, and only for files on the
        // same device as the home; both point into this test's own folder.
        QVERIFY(m_home.isValid());
        m_dataHome = m_home.filePath(QStringLiteral("data"));
        QVERIFY(QDir().mkpath(m_dataHome));
        qputenv("HOME", QFile::encodeName(m_home.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome));
        QCOMPARE(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation), m_dataHome);
    }

    void init()
    {
        sessionStore().clear();
        QVERIFY(QDir(m_dataHome + QStringLiteral("/Trash")).removeRecursively());
    }

    // --- revertCurrentFile ---

    void revertWithoutSelectedFileDoesNothing()
    {
        Workspace workspace;
        QSignalSpy changed(&workspace, &Workspace::changed);
        workspace.revertCurrentFile();
        QCOMPARE(changed.count(), 0);
    }

    void revertKeepsASelectedRulesetOfTheFileThoughItIsLeftDetached()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr a = workspace.selectedFile();
        const CSSRulesetPtr ruleset = a->rulesets().first();
        workspace.setSelectedRuleset(ruleset);
        makeDirty(a, QStringLiteral("edited"));
        workspace.revertCurrentFile();
        QCOMPARE(workspace.selectedRuleset(), ruleset);
        QTRY_VERIFY(!a->hasUnsavedChanges());
        QCOMPARE(a->rulesets().first()->selector(), "a");
        QVERIFY(a->rulesets().first() != ruleset);
        QCOMPARE(workspace.selectedRuleset(), ruleset);
    }

    void revertDropsASelectedRulesetOfAnotherFile()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        workspace.setSelectedRuleset(fileNamed(workspace, QStringLiteral("b.css"))->rulesets()[0]);
        workspace.revertCurrentFile();
        QVERIFY(!workspace.selectedRuleset());
    }

    void revertWorksWhenTheFileIsGoneFromDisk()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr a = workspace.selectedFile();
        makeDirty(a, QStringLiteral("edited"));
        QVERIFY(QFile::remove(a->path()));
        workspace.revertCurrentFile();
        QTRY_VERIFY(!a->hasUnsavedChanges());
        QCOMPARE(a->generateCSS(), QString::fromUtf8(aCss));
    }

    // --- createNewFile ---

    void createNewFileTakesTheNextFreeName_data()
    {
        QTest::addColumn<QStringList>("existing");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << QStringList() << "untitled.css";
        QTest::newRow("plain taken") << QStringList{"untitled.css"} << "untitled 2.css";
        QTest::newRow("two taken")
            << QStringList{"untitled.css", "untitled 2.css"} << "untitled 3.css";
        QTest::newRow("only numbered taken") << QStringList{"untitled 2.css"} << "untitled.css";
        QTest::newRow("folder of that name")
            << QStringList{"untitled.css/x.css"} << "untitled 2.css";
    }

    void createNewFileTakesTheNextFreeName()
    {
        QFETCH(QStringList, existing);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        for (const QString &name : existing)
            QVERIFY(writeFile(dir.filePath(name), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        workspace.setSelectedRuleset(
            workspace.files().isEmpty() ? nullptr : workspace.files().first()->rulesets().first());
        workspace.createNewFile();

        const CSSFilePtr file = workspace.selectedFile();
        QVERIFY(file);
        QCOMPARE(file->path(), dir.filePath(expected));
        QVERIFY(workspace.files().contains(file));
        QVERIFY(!workspace.selectedRuleset());
        QCOMPARE(workspace.pendingRenameFileID(), file->id());
        QVERIFY(file->rulesets().isEmpty());
        QCOMPARE(file->originalContent(), QString());
        QVERIFY(!file->hasUnsavedChanges());
        QVERIFY(QFileInfo(file->path()).isFile());
        QCOMPARE(QFileInfo(file->path()).size(), 0);
        QVERIFY(std::is_sorted(workspace.files().cbegin(), workspace.files().cend(),
                               [](const auto &x, const auto &y) { return x->path() < y->path(); }));
        // Its generated text is "\n", so the first change always dirties it.
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
    }

    void createNewFileWithoutFolderDoesNothing()
    {
        Workspace workspace;
        workspace.createNewFile();
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.selectedFile());
        QVERIFY(workspace.pendingRenameFileID().isNull());
    }

    void createNewFileThatCannotBeCreatedStillJoinsTheList()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("site"));
        QVERIFY(writeFile(folder + QStringLiteral("/a.css"), aCss));
        Workspace workspace;
        workspace.openFolder(folder);
        QVERIFY(QDir(folder).removeRecursively());
        workspace.createNewFile();
        QCOMPARE(relativePaths(workspace), QStringList({"a.css", "untitled.css"}));
        QVERIFY(!QFileInfo::exists(workspace.selectedFile()->path()));
    }

    void theWatcherFindsNothingToDoAfterACreation()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        auto *watcher = workspace.findChild<QFileSystemWatcher *>();
        QVERIFY(watcher);
        QSignalSpy events(watcher, &QFileSystemWatcher::directoryChanged);
        workspace.createNewFile();
        const CSSFileList files = workspace.files();
        const CSSFilePtr created = workspace.selectedFile();
        QSignalSpy filesChanged(&workspace, &Workspace::filesChanged);
        QVERIFY(events.wait());
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), created);
        QCOMPARE(filesChanged.count(), 0);
    }

    // --- duplicateFile ---

    void duplicatesTakeTheNextFreeCopyName()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("z.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = fileNamed(workspace, QStringLiteral("sub/a.css"));
        workspace.setPendingRenameFileID(a->id());
        for (int i = 0; i < 3; ++i)
            workspace.duplicateFile(a);
        QCOMPARE(relativePaths(workspace), QStringList({"sub/a copy 2.css", "sub/a copy 3.css",
                                                        "sub/a copy.css", "sub/a.css", "z.css"}));
        const CSSFilePtr third = fileNamed(workspace, QStringLiteral("sub/a copy 3.css"));
        QCOMPARE(workspace.selectedFile(), third);
        QVERIFY(!workspace.selectedRuleset());
        QCOMPARE(workspace.pendingRenameFileID(), a->id());
        QCOMPARE(readFile(third->path()), aCss);
    }

    void aDuplicateCopiesTheTextOnDiskNotTheUnsavedOne()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        makeDirty(b, QStringLiteral("edited"));
        workspace.duplicateFile(b);
        const CSSFilePtr copy = workspace.selectedFile();
        QCOMPARE(copy->path(), dir.filePath(QStringLiteral("b copy.css")));
        QCOMPARE(copy->originalContent(), QString::fromUtf8(bCss));
        QCOMPARE(copy->rulesets().first()->selector(), "b");
        QVERIFY(!copy->hasUnsavedChanges());
        QVERIFY(b->hasUnsavedChanges());
        QVERIFY(copy->id() != b->id());
    }

    void aSourceWithoutExtensionGetsNamesEndingInAFullStop()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("plain")), bCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const auto plain = std::make_shared<CSSFile>(dir.filePath(QStringLiteral("plain")),
                                                     CSSRulesetList(), QString());
        workspace.duplicateFile(plain);
        QCOMPARE(workspace.selectedFile()->path(), dir.filePath(QStringLiteral("plain copy.")));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("plain copy."))), bCss);
    }

    void aDuplicateOfAFileGoneFromDiskChangesNothing()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFileList files = workspace.files();
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        QVERIFY(QFile::remove(b->path()));
        workspace.duplicateFile(b);
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), files.first());
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("b copy.css"))));
    }

    void aCopyThatCannotBeReadStaysOnDiskOutsideTheList()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFileList files = workspace.files();
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        // Another program wrote bytes that are not UTF-8 into b.css in place.
        QVERIFY(writeFile(b->path(), "b { content: \"\xe9\" }"));
        workspace.duplicateFile(b);
        QVERIFY(QFileInfo::exists(dir.filePath(QStringLiteral("b copy.css"))));
        QCOMPARE(workspace.files(), files);
        workspace.reloadFiles();
        QCOMPARE(workspace.files(), files);
    }

    // --- renameFile ---

    void renameShapesTheName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("padded") << "  main  "
                                << "main.css";
        QTest::newRow("tabs") << "\tmain\t"
                              << "main.css";
        QTest::newRow("no-break space") << QStringLiteral("\u00a0main") << "main.css";
        QTest::newRow("upper extension kept") << "Main.CSS"
                                              << "Main.CSS";
        QTest::newRow("other extension") << "main.scss"
                                         << "main.scss.css";
        QTest::newRow("empty becomes hidden") << ""
                                              << ".css";
        QTest::newRow("blank becomes hidden") << "   "
                                              << ".css";
        QTest::newRow("line break kept") << "main\n"
                                         << "main\n.css";
        QTest::newRow("slash names a path below") << "sub/inner"
                                                  << "sub/inner.css";
    }

    void renameShapesTheName()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub")));
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        workspace.renameFile(b, typed);
        QCOMPARE(b->path(), dir.filePath(expected));
        QCOMPARE(readFile(dir.filePath(expected)), bCss);
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("b.css"))));
        QVERIFY(workspace.files().contains(b));
    }

    void renameToTheSameNameDoesNothing()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        QSignalSpy filesChanged(&workspace, &Workspace::filesChanged);
        workspace.renameFile(b, QStringLiteral(" b "));
        QCOMPARE(b->path(), dir.filePath(QStringLiteral("b.css")));
        QCOMPARE(filesChanged.count(), 0);
    }

    void renameOntoAnotherFileDoesNothing()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts;
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        workspace.renameFile(b, QStringLiteral("c"));
        QCOMPARE(b->path(), dir.filePath(QStringLiteral("b.css")));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("b.css"))), bCss);
        QCOMPARE(readFile(dir.filePath(QStringLiteral("c.css"))), cCss);
        QVERIFY(prompts.asked().isEmpty());
    }

    void renameThatTheFileSystemRefusesChangesNothing()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        // No such folder to move into.
        workspace.renameFile(b, QStringLiteral("missing/b2"));
        QCOMPARE(b->path(), dir.filePath(QStringLiteral("b.css")));
        QVERIFY(QFileInfo::exists(b->path()));
    }

    void renameKeepsTheObjectItsChangesAndSelectionAndSortsByTheNewPath()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFilePtr a = workspace.selectedFile();
        const QUuid id = a->id();
        const CSSRulesetPtr ruleset = a->rulesets().first();
        workspace.setSelectedRuleset(ruleset);
        makeDirty(a, QStringLiteral("edited"));
        QSignalSpy filesChanged(&workspace, &Workspace::filesChanged);
        workspace.renameFile(a, QStringLiteral("z"));
        QCOMPARE(relativePaths(workspace), QStringList({"b.css", "c.css", "z.css"}));
        QCOMPARE(workspace.files().last(), a);
        QCOMPARE(a->id(), id);
        QVERIFY(a->hasUnsavedChanges());
        QCOMPARE(workspace.selectedFile(), a);
        QCOMPARE(workspace.selectedRuleset(), ruleset);
        QCOMPARE(filesChanged.count(), 1);
        // The unsaved text goes to the new place.
        workspace.saveCurrentFile();
        QCOMPARE(readFile(dir.filePath(QStringLiteral("z.css"))), "edited {\n    color: red;\n}\n");
    }

    void renameThatKeepsTheOrderStillTellsTheViews()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        QSignalSpy filesChanged(&workspace, &Workspace::filesChanged);
        workspace.renameFile(fileNamed(workspace, QStringLiteral("b.css")), QStringLiteral("bb"));
        QCOMPARE(relativePaths(workspace), QStringList({"a.css", "bb.css", "c.css"}));
        QCOMPARE(filesChanged.count(), 1);
    }

    // --- showInFileManager ---

    void showInFileManagerHandsTheFileToTheRevealer()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        QStringList shown;
        workspace.setFileRevealer([&](const QString &path) { shown.append(path); });
        workspace.showInFileManager(fileNamed(workspace, QStringLiteral("c.css")));
        QCOMPARE(shown, QStringList{dir.filePath(QStringLiteral("c.css"))});
    }

    void withoutARevealerTheDesktopOpensTheFolder()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), aCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        UrlSink sink;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &sink, "open");
        workspace.showInFileManager(workspace.files().first());
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QCOMPARE(sink.urls, QList<QUrl>{QUrl::fromLocalFile(dir.filePath(QStringLiteral("sub")))});
    }

    // --- deleteFile ---

    void deleteAsksThenMovesTheFileToTheTrash()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        const CSSFilePtr a = workspace.selectedFile();
        const CSSRulesetPtr ruleset = a->rulesets().first();
        workspace.setSelectedRuleset(ruleset);
        workspace.deleteFile(b);

        QCOMPARE(prompts.asked().size(), 1);
        const Prompt &prompt = prompts.asked().first();
        QCOMPARE(prompt.message, "Delete \"b.css\"?");
        QCOMPARE(prompt.informativeText, "This will move the file to the Trash.");
        QCOMPARE(prompt.buttons, QStringList({"Delete", "Cancel"}));

        QCOMPARE(relativePaths(workspace), QStringList({"a.css", "c.css"}));
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("b.css"))));
        QCOMPARE(readFile(trashed(QStringLiteral("b.css"))), bCss);
        QVERIFY(QFileInfo::exists(m_dataHome + QStringLiteral("/Trash/info/b.css.trashinfo")));
        // Another file was selected: the selection stays.
        QCOMPARE(workspace.selectedFile(), a);
        QCOMPARE(workspace.selectedRuleset(), ruleset);
    }

    void deleteOfTheSelectedFileSelectsTheFirstOther_data()
    {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("selected");
        QTest::newRow("first") << "a.css"
                               << "b.css";
        QTest::newRow("middle") << "b.css"
                                << "a.css";
        QTest::newRow("last") << "c.css"
                              << "a.css";
    }

    void deleteOfTheSelectedFileSelectsTheFirstOther()
    {
        QFETCH(QString, deleted);
        QFETCH(QString, selected);
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFilePtr file = fileNamed(workspace, deleted);
        workspace.setSelectedFile(file);
        workspace.setSelectedRuleset(file->rulesets().first());
        workspace.deleteFile(file);
        QCOMPARE(workspace.selectedFile(), fileNamed(workspace, selected));
        QVERIFY(!workspace.selectedRuleset());
        QVERIFY(!workspace.files().contains(file));
        QVERIFY(QFileInfo::exists(trashed(deleted)));
    }

    void deleteOfTheOnlyFileLeavesAnEmptyFolder()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("only.css")), aCss));
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        workspace.openFolder(dir.path());
        const CSSFilePtr only = workspace.selectedFile();
        makeDirty(only, QStringLiteral("unsaved"));
        workspace.deleteFile(only);
        QVERIFY(!workspace.selectedFile());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(workspace.hasFolder());
        QCOMPARE(prompts.asked().size(), 1);
        // What was on disk goes to the trash; the unsaved edit is lost.
        QCOMPARE(readFile(trashed(QStringLiteral("only.css"))), aCss);
    }

    void deleteAnsweredWithCancelChangesNothing()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({SecondButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFileList files = workspace.files();
        const CSSFilePtr a = workspace.selectedFile();
        workspace.deleteFile(a);
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), a);
        QCOMPARE(readFile(a->path()), aCss);
    }

    void withoutAPromptHandlerNothingIsDeleted()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        const CSSFileList files = workspace.files();
        workspace.deleteFile(files.first());
        QCOMPARE(workspace.files(), files);
        QVERIFY(QFileInfo::exists(files.first()->path()));
    }

    void aFileThatCannotBeTrashedStays()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFileList files = workspace.files();
        // A trash whose "files" is no folder cannot take the file.
        const QString trash = m_dataHome + QStringLiteral("/Trash");
        QVERIFY(QDir().mkpath(trash + QStringLiteral("/info")));
        QVERIFY(writeFile(trash + QStringLiteral("/files"), "x"));
        workspace.deleteFile(files.first());
        QCOMPARE(prompts.asked().size(), 1);
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), files.first());
        QVERIFY(QFileInfo::exists(files.first()->path()));
    }

    // --- closeProject ---

    void closeWithoutUnsavedFilesAsksNothingAndForgetsTheSession()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts;
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        workspace.setSelectedRuleset(workspace.selectedFile()->rulesets().first());
        QCOMPARE(sessionStore().allKeys().size(), 3);
        workspace.closeProject();
        QVERIFY(prompts.asked().isEmpty());
        QVERIFY(!workspace.hasFolder());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.selectedFile());
        QVERIFY(!workspace.selectedRuleset());
        QVERIFY(!sessionStore().contains("lastFolderPath"));
        QVERIFY(!sessionStore().contains("lastSelectedFilePath"));
        QVERIFY(!sessionStore().contains("lastSelectedRulesetSelector"));
        QCOMPARE(workspace.folderName(), "No Folder Open");
    }

    void closeWithOneUnsavedFileSavesItOnSave()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        makeDirty(fileNamed(workspace, QStringLiteral("b.css")), QStringLiteral("saved"));
        workspace.closeProject();
        QCOMPARE(prompts.asked().size(), 1);
        const Prompt &prompt = prompts.asked().first();
        QCOMPARE(prompt.message, "Save changes to \"b.css\" before closing?");
        QCOMPARE(prompt.informativeText, "Your changes will be lost if you don't save.");
        QCOMPARE(prompt.buttons, QStringList({"Save", "Don't Save", "Cancel"}));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("b.css"))), "saved {\n    margin: 0;\n}\n");
        QVERIFY(!workspace.hasFolder());
        QVERIFY(workspace.files().isEmpty());
    }

    void closeWithSeveralUnsavedFilesDropsThemOnDontSave()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({SecondButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        makeDirty(fileNamed(workspace, QStringLiteral("a.css")), QStringLiteral("x"));
        makeDirty(fileNamed(workspace, QStringLiteral("c.css")), QStringLiteral("y"));
        workspace.closeProject();
        QCOMPARE(prompts.asked().first().message, "Save changes to 2 files before closing?");
        QCOMPARE(readFile(dir.filePath(QStringLiteral("a.css"))), aCss);
        QCOMPARE(readFile(dir.filePath(QStringLiteral("c.css"))), cCss);
        QVERIFY(!workspace.hasFolder());
        QVERIFY(!sessionStore().contains("lastFolderPath"));
    }

    void closeAnsweredWithCancelKeepsEverything()
    {
        QTemporaryDir dir;
        Workspace workspace;
        PromptScript prompts({ThirdButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        openThree(workspace, dir);
        const CSSFilePtr a = workspace.selectedFile();
        makeDirty(a, QStringLiteral("x"));
        const CSSFileList files = workspace.files();
        workspace.closeProject();
        QCOMPARE(workspace.folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), a);
        QVERIFY(a->hasUnsavedChanges());
        QCOMPARE(sessionStore().value("lastFolderPath").toString(), QDir::cleanPath(dir.path()));
        QCOMPARE(sessionStore().value("lastSelectedFilePath").toString(), a->path());
        // Still watching: a stylesheet made by another program shows up.
        QVERIFY(writeFile(dir.filePath(QStringLiteral("d.css")), aCss));
        QTRY_COMPARE(workspace.files().size(), 4);
    }

    void withoutAPromptHandlerAnUnsavedProjectStaysOpen()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        makeDirty(workspace.selectedFile(), QStringLiteral("x"));
        workspace.closeProject();
        QVERIFY(workspace.hasFolder());
        QCOMPARE(workspace.files().size(), 3);
    }

    void closeGoesOnWhenASaveFails()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        Workspace workspace;
        PromptScript prompts({FirstButtonResponse});
        workspace.setPromptHandler(prompts.handler());
        workspace.openFolder(dir.path());
        makeDirty(fileNamed(workspace, QStringLiteral("sub/a.css")), QStringLiteral("lost"));
        makeDirty(fileNamed(workspace, QStringLiteral("b.css")), QStringLiteral("kept"));
        QVERIFY(QDir(dir.filePath(QStringLiteral("sub"))).removeRecursively());
        workspace.closeProject();
        QVERIFY(!workspace.hasFolder());
        QVERIFY(workspace.files().isEmpty());
        QCOMPARE(readFile(dir.filePath(QStringLiteral("b.css"))), "kept {\n    margin: 0;\n}\n");
    }

    void closeStopsTheWatch()
    {
        QTemporaryDir dir;
        Workspace workspace;
        openThree(workspace, dir);
        workspace.closeProject();
        // An event that was already on its way finds no folder.
        workspace.reloadFiles();
        QVERIFY(workspace.files().isEmpty());
        QTRY_VERIFY(!workspace.findChild<QFileSystemWatcher *>());
    }
};

QTEST_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
