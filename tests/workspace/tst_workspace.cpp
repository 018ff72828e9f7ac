// The workspace object: its fields and signals, opening a folder, selection
// and its follow-up work, and saving.

#include "WorkspaceTestSupport.h"

#include "model/CSSParser.h"
#include "workspace/Workspace.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray plainCss = "a {\n    color: red;\n}\n";

// A folder with three stylesheets in generated form.
void makeThreeFiles(const QTemporaryDir &dir)
{
    QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), plainCss));
    QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), "b {\n    margin: 0;\n}\n"));
    QVERIFY(writeFile(dir.filePath(QStringLiteral("c.css")), "/* kept */\nc { top: 1px }"));
}

} // namespace

class TestWorkspace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { sessionStore().clear(); }

    void constructionOnlySetsDefaults()
    {
        const Workspace workspace;
        QVERIFY(workspace.folderPath().isEmpty());
        QVERIFY(!workspace.hasFolder());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.selectedFile());
        QVERIFY(!workspace.selectedRuleset());
        QVERIFY(workspace.selectedRulesetIDs().isEmpty());
        QVERIFY(workspace.selectedVariablePropID().isNull());
        QVERIFY(workspace.selectedVariableRulesetID().isNull());
        QVERIFY(workspace.pendingRenameFileID().isNull());
        QCOMPARE(workspace.canvasTab(), CanvasTab::Nodes);
        QVERIFY(!workspace.hasAnyUnsavedChanges());
        const QMetaObject *meta = workspace.metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            if (property.typeId() == QMetaType::Bool)
                QVERIFY2(!property.read(&workspace).toBool(), property.name());
        }
        QVERIFY(sessionStore().allKeys().isEmpty());
    }

    void folderNameWithoutFolder() { QCOMPARE(Workspace().folderName(), "No Folder Open"); }

    void folderNameIsTheLastComponent()
    {
        Workspace workspace;
        workspace.setFolderPath(QStringLiteral("/home/user/site"));
        QCOMPARE(workspace.folderName(), "site");
    }

    void everyFlagNotifiesThenChanged_data()
    {
        QTest::addColumn<QByteArray>("name");
        const QMetaObject &meta = Workspace::staticMetaObject;
        int flags = 0;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            if (property.typeId() == QMetaType::Bool) {
                QTest::newRow(property.name()) << QByteArray(property.name());
                ++flags;
            }
        }
        QCOMPARE(flags, 11);
    }

    void everyFlagNotifiesThenChanged()
    {
        QFETCH(QByteArray, name);
        Workspace workspace;
        const QMetaProperty property =
            workspace.metaObject()->property(workspace.metaObject()->indexOfProperty(name));
        QVERIFY(property.hasNotifySignal());
        QSignalSpy notify(&workspace, property.notifySignal());
        QSignalSpy changed(&workspace, &Workspace::changed);
        QVERIFY(property.write(&workspace, true));
        QCOMPARE(property.read(&workspace).toBool(), true);
        QCOMPARE(notify.count(), 1);
        QCOMPARE(changed.count(), 1);
        QVERIFY(property.write(&workspace, true));
        QCOMPARE(notify.count(), 1);
        QVERIFY(property.write(&workspace, false));
        QCOMPARE(notify.count(), 2);
        QCOMPARE(changed.count(), 2);
    }

    void notifyPrecedesChanged()
    {
        Workspace workspace;
        QStringList order;
        connect(&workspace, &Workspace::canvasTabChanged, this, [&] {
            order.append(QStringLiteral("canvasTab %1").arg(int(workspace.canvasTab())));
        });
        connect(&workspace, &Workspace::changed, this, [&] { order.append("changed"); });
        workspace.setCanvasTab(CanvasTab::Code);
        QCOMPARE(order, QStringList({"canvasTab 2", "changed"}));
    }

    void scalarFieldsNotify()
    {
        Workspace workspace;
        QSignalSpy prop(&workspace, &Workspace::selectedVariablePropIDChanged);
        QSignalSpy ruleset(&workspace, &Workspace::selectedVariableRulesetIDChanged);
        QSignalSpy rename(&workspace, &Workspace::pendingRenameFileIDChanged);
        QSignalSpy ids(&workspace, &Workspace::selectedRulesetIDsChanged);
        const QUuid id = QUuid::createUuid();
        workspace.setSelectedVariablePropID(id);
        workspace.setSelectedVariableRulesetID(id);
        workspace.setPendingRenameFileID(id);
        workspace.setSelectedRulesetIDs({id});
        QCOMPARE(workspace.selectedVariablePropID(), id);
        QCOMPARE(workspace.selectedVariableRulesetID(), id);
        QCOMPARE(workspace.pendingRenameFileID(), id);
        QCOMPARE(workspace.selectedRulesetIDs(), QSet<QUuid>{id});
        QCOMPARE(prop.count() + ruleset.count() + rename.count() + ids.count(), 4);
    }

    void folderWithoutStylesheets()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("readme.txt")), "no styles"));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(workspace.folderPath(), QDir::cleanPath(dir.path()));
        QVERIFY(workspace.hasFolder());
        QVERIFY(workspace.files().isEmpty());
        QVERIFY(!workspace.selectedFile());
        QVERIFY(!workspace.selectedRuleset());
    }

    void openFolderSelectsTheFirstFileAndNoRuleset()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        QSignalSpy filesSpy(&workspace, &Workspace::filesChanged);
        workspace.openFolder(dir.path() + QStringLiteral("/"));
        QCOMPARE(workspace.folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(workspace.folderName(), QFileInfo(dir.path()).fileName());
        QCOMPARE(relativePaths(workspace), QStringList({"a.css", "b.css", "c.css"}));
        QCOMPARE(filesSpy.count(), 1);
        QCOMPARE(workspace.selectedFile(), workspace.files().first());
        QVERIFY(!workspace.selectedRuleset());
        const CSSFilePtr c = fileNamed(workspace, QStringLiteral("c.css"));
        QCOMPARE(c->originalContent(), "/* kept */\nc { top: 1px }");
        QCOMPARE(c->rulesets().size(), 1);
        QVERIFY(!c->hasUnsavedChanges());
    }

    void openingAnotherFolderDropsUnsavedFilesWithoutAQuestion()
    {
        QTemporaryDir first;
        QTemporaryDir second;
        makeThreeFiles(first);
        QVERIFY(writeFile(second.filePath(QStringLiteral("x.css")), plainCss));
        Workspace workspace;
        PromptScript prompts;
        workspace.setPromptHandler(prompts.handler());
        workspace.openFolder(first.path());
        const CSSFilePtr a = workspace.selectedFile();
        a->rulesets().first()->setSelector(QStringLiteral("edited"));
        a->markChanged();
        QTRY_VERIFY(a->hasUnsavedChanges());
        workspace.openFolder(second.path());
        QCOMPARE(relativePaths(workspace), QStringList{"x.css"});
        QVERIFY(prompts.asked().isEmpty());
        QCOMPARE(readFile(first.filePath(QStringLiteral("a.css"))), plainCss);
    }

    void folderThatCannotBeListedKeepsFilesAndSelection()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFileList files = workspace.files();
        workspace.selectFile(dir.filePath(QStringLiteral("b.css")));
        const CSSFilePtr selected = workspace.selectedFile();
        const QString missing = dir.filePath(QStringLiteral("gone"));
        workspace.openFolder(missing);
        QCOMPARE(workspace.folderPath(), missing);
        QCOMPARE(workspace.files(), files);
        QCOMPARE(workspace.selectedFile(), selected);
        QCOMPARE(sessionStore().value("lastFolderPath").toString(), missing);
    }

    void assigningSelectedFileEmptiesRulesetIDsEvenForTheSameFile()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr file = workspace.selectedFile();
        QSignalSpy selectedSpy(&workspace, &Workspace::selectedFileChanged);
        workspace.setSelectedRulesetIDs({file->rulesets().first()->id()});
        workspace.setSelectedFile(file);
        QVERIFY(workspace.selectedRulesetIDs().isEmpty());
        QCOMPARE(workspace.selectedFile(), file);
        QCOMPARE(selectedSpy.count(), 0);
    }

    void selectedFileFollowUpRunsAfterObserversWereTold()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        workspace.setSelectedRulesetIDs({QUuid::createUuid()});
        bool idsWereStillThere = false;
        QString sessionWhenTold;
        connect(&workspace, &Workspace::selectedFileChanged, this, [&] {
            idsWereStillThere = !workspace.selectedRulesetIDs().isEmpty();
            sessionWhenTold = sessionStore().value("lastSelectedFilePath").toString();
        });
        workspace.setSelectedFile(b);
        QVERIFY(idsWereStillThere);
        QCOMPARE(sessionWhenTold, dir.filePath(QStringLiteral("a.css")));
        QCOMPARE(sessionStore().value("lastSelectedFilePath").toString(), b->path());
    }

    void selectingARulesetSavesTheSessionAndKeepsTheIDs()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSRulesetPtr ruleset = workspace.selectedFile()->rulesets().first();
        workspace.setSelectedRulesetIDs({ruleset->id()});
        workspace.setSelectedRuleset(ruleset);
        QCOMPARE(workspace.selectedRuleset(), ruleset);
        QCOMPARE(workspace.selectedRulesetIDs(), QSet<QUuid>{ruleset->id()});
        QCOMPARE(sessionStore().value("lastSelectedRulesetSelector").toString(), "a");
    }

    void selectFileKeepsTheSelectedRuleset()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSRulesetPtr ruleset = workspace.selectedFile()->rulesets().first();
        workspace.setSelectedRuleset(ruleset);
        workspace.selectFile(dir.filePath(QStringLiteral("b.css")));
        QCOMPARE(workspace.selectedFile(), fileNamed(workspace, QStringLiteral("b.css")));
        QCOMPARE(workspace.selectedRuleset(), ruleset);
    }

    void selectFileMatchesOtherSpellingsOfThePath()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        workspace.selectFile(dir.path() + QStringLiteral("/sub/.././c.css"));
        QCOMPARE(workspace.selectedFile(), fileNamed(workspace, QStringLiteral("c.css")));
    }

    void selectFileOutsideTheFilesChangesNothing()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        workspace.setSelectedRulesetIDs({QUuid::createUuid()});
        QSignalSpy changed(&workspace, &Workspace::changed);
        workspace.selectFile(dir.filePath(QStringLiteral("elsewhere.css")));
        QCOMPARE(workspace.selectedFile(), workspace.files().first());
        QCOMPARE(workspace.selectedRulesetIDs().size(), 1);
        QCOMPARE(changed.count(), 0);
    }

    void changesOfTheSelectedFileAloneAreForwarded()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = fileNamed(workspace, QStringLiteral("a.css"));
        const CSSFilePtr b = fileNamed(workspace, QStringLiteral("b.css"));
        QCOMPARE(workspace.selectedFile(), a);
        QSignalSpy changed(&workspace, &Workspace::changed);

        b->setRulesets(b->rulesets() + CSSParser::parse(QStringLiteral("x { y: z }")));
        QCOMPARE(changed.count(), 0);
        a->setRulesets(a->rulesets() + CSSParser::parse(QStringLiteral("x { y: z }")));
        QCOMPARE(changed.count(), 1);
        // The edits of the content of a turn, inside a ruleset or of the
        // list, reach the workspace once the turn ends, and the dirty state
        // that follows once more; those of the other file do not.
        a->rulesets().first()->setSelector(QStringLiteral("edited"));
        a->markChanged();
        QTRY_VERIFY(a->hasUnsavedChanges());
        QCOMPARE(changed.count(), 3);

        // The old file is no longer heard once another is selected.
        workspace.setSelectedFile(b);
        changed.clear();
        a->setRulesets({});
        QCOMPARE(changed.count(), 0);
        b->setRulesets({});
        QCOMPARE(changed.count(), 1);
    }

    void aLateEventAfterTheWorkspaceIsGoneDoesNothing()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        CSSFilePtr file;
        int changes = 0;
        {
            Workspace workspace;
            workspace.openFolder(dir.path());
            file = workspace.selectedFile();
            connect(&workspace, &Workspace::changed, this, [&] { ++changes; });
        }
        file->rulesets().first()->setSelector(QStringLiteral("late"));
        file->markChanged();
        file->setRulesets({});
        QTRY_VERIFY(file->hasUnsavedChanges());
        QCOMPARE(changes, 0);
    }

    void openFolderPanelAsksLaterAndOpensTheChoice()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        QList<FolderRequest> requests;
        workspace.setFolderChooser([&](const FolderRequest &request) {
            requests.append(request);
            return dir.path();
        });
        workspace.openFolderPanel();
        QVERIFY(requests.isEmpty());
        QVERIFY(!workspace.hasFolder());
        QTRY_COMPARE(workspace.folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.first().prompt, "Open Folder");
        QCOMPARE(requests.first().message, "Choose a folder containing CSS files");
        QCOMPARE(workspace.files().size(), 3);
    }

    void openFolderPanelCancelledChangesNothing()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFileList files = workspace.files();
        int asked = 0;
        workspace.setFolderChooser([&](const FolderRequest &) {
            ++asked;
            return QString();
        });
        workspace.openFolderPanel();
        QTRY_COMPARE(asked, 1);
        QCOMPARE(workspace.folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(workspace.files(), files);
    }

    void openFolderPanelWithoutAChooserOpensNothing()
    {
        Workspace workspace;
        workspace.openFolderPanel();
        QCoreApplication::sendPostedEvents(&workspace);
        QVERIFY(!workspace.hasFolder());
        QVERIFY(sessionStore().allKeys().isEmpty());
    }

    void saveCurrentFileWritesTheSelectedFile()
    {
        QTemporaryDir dir;
        makeThreeFiles(dir);
        Workspace workspace;
        workspace.openFolder(dir.path());
        workspace.selectFile(dir.filePath(QStringLiteral("c.css")));
        const CSSFilePtr c = workspace.selectedFile();
        c->markChanged();
        QTRY_VERIFY(c->hasUnsavedChanges());
        QVERIFY(workspace.hasAnyUnsavedChanges());
        workspace.saveCurrentFile();
        QCOMPARE(readFile(c->path()), "c {\n    top: 1px;\n}\n");
        QTRY_VERIFY(!c->hasUnsavedChanges());
        QVERIFY(!workspace.hasAnyUnsavedChanges());
    }

    void saveCurrentFileWithoutSelectionDoesNothing()
    {
        Workspace workspace;
        workspace.saveCurrentFile();
        QVERIFY(!workspace.selectedFile());
    }

    void aFailedSaveLeavesTheFileDirty()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), plainCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr a = workspace.selectedFile();
        a->rulesets().first()->setSelector(QStringLiteral("edited"));
        a->markChanged();
        QTRY_VERIFY(a->hasUnsavedChanges());
        QVERIFY(QDir(dir.filePath(QStringLiteral("sub"))).removeRecursively());
        workspace.saveCurrentFile();
        QVERIFY(!QFileInfo::exists(a->path()));
        QCoreApplication::sendPostedEvents();
        QVERIFY(a->hasUnsavedChanges());
    }

    void saveAllFilesWritesOnlyUnsavedFilesAndGoesOnPastFailures()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a/one.css")), "one { a: b }"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b/two.css")), "two { a: b }"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("c/three.css")), "three { a: b }"));
        Workspace workspace;
        workspace.openFolder(dir.path());
        const CSSFilePtr one = fileNamed(workspace, QStringLiteral("a/one.css"));
        const CSSFilePtr two = fileNamed(workspace, QStringLiteral("b/two.css"));
        one->markChanged();
        two->markChanged();
        QTRY_VERIFY(one->hasUnsavedChanges() && two->hasUnsavedChanges());
        // The first unsaved file can no longer be written; the walk goes on.
        QVERIFY(QDir(dir.filePath(QStringLiteral("a"))).removeRecursively());
        workspace.saveAllFiles();
        QCOMPARE(readFile(two->path()), "two {\n    a: b;\n}\n");
        QCOMPARE(readFile(dir.filePath(QStringLiteral("c/three.css"))), "three { a: b }");
        QTRY_VERIFY(!two->hasUnsavedChanges());
        QVERIFY(one->hasUnsavedChanges());
    }
};

QTEST_MAIN(TestWorkspace)
#include "tst_workspace.moc"
