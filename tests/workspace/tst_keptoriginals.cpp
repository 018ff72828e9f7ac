// A workspace on a real folder with the store of originals installed: every
// save (Save, Save All, the close prompt's "Save") keeps the bytes of a text
// it rewrites first, once per loaded text and never for a lossless one; a
// store that cannot be written never stops a save; and a kept original comes
// back over its file, with the usual prompt for unsaved changes.

#include "WorkspaceTestSupport.h"

#include "workspace/OriginalStore.h"
#include "workspace/Workspace.h"

#include <QDir>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray themeCss = "/* Theme */\n@import url(base.css);\n.card{color:red}\n"
                            "@media print { .card { color: black } }\n.btn{padding:0}\n";
const QByteArray plainCss = "a {\n    color: red;\n}\n";
const QByteArray otherCss = "/* other */ b { margin: 0 }\n";

void makeDirty(const CSSFilePtr &file, const QString &selector)
{
    file->rulesets().first()->setSelector(selector);
    file->markChanged();
    QTRY_VERIFY(file->hasUnsavedChanges());
}

} // namespace

class TestKeptOriginals : public QObject
{
    Q_OBJECT

    // Made once the test runs as the user it drops to.
    std::unique_ptr<QTemporaryDir> m_temporary;
    QDir m_dir;
    QString m_folder;
    std::shared_ptr<OriginalStore> m_store;
    std::unique_ptr<Workspace> m_workspace;
    PromptScript m_prompts;

    CSSFilePtr file(const QString &name) const { return fileNamed(*m_workspace, name); }
    QString path(const QString &name) const { return QDir(m_folder).filePath(name); }
    QList<QByteArray> keptBytes(const QString &name) const
    {
        QList<QByteArray> bytes;
        for (const KeptOriginal &original : m_store->originals(path(name)))
            bytes.append(readFile(original.path));
        return bytes;
    }

private Q_SLOTS:
    void initTestCase()
    {
        // Permissions mean nothing to root, and CI runs as root: the test
        // drops to an ordinary user so that a read-only folder is read-only.
        if (::geteuid() == 0) {
            QVERIFY(::setgid(65534) == 0);
            QVERIFY(::setuid(65534) == 0);
        }
        m_temporary = std::make_unique<QTemporaryDir>();
        QVERIFY(m_temporary->isValid());
        m_dir = QDir(m_temporary->path());
    }

    void init()
    {
        m_folder = m_dir.filePath(QStringLiteral("site-%1").arg(QTest::currentTestFunction()));
        QVERIFY(writeFile(path(QStringLiteral("theme.css")), themeCss));
        QVERIFY(writeFile(path(QStringLiteral("plain.css")), plainCss));
        QVERIFY(writeFile(path(QStringLiteral("other.css")), otherCss));
        m_store = std::make_shared<OriginalStore>(
            m_dir.filePath(QStringLiteral("data-%1/originals").arg(QTest::currentTestFunction())));
        OriginalStore::install(m_store);
        m_prompts = PromptScript();
        m_workspace = std::make_unique<Workspace>();
        m_workspace->setPromptHandler(m_prompts.handler());
        m_workspace->openFolder(m_folder);
        QCOMPARE(m_workspace->files().size(), 3);
        m_workspace->selectFile(path(QStringLiteral("theme.css")));
        QCOMPARE(m_workspace->selectedFile(), file(QStringLiteral("theme.css")));
    }

    void cleanup()
    {
        m_workspace.reset();
        m_store.reset();
        CSSFile::setOriginalKeeper({});
    }

    void loadedFilesAreJudgedWithTheirCounts()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        QCOMPARE(theme->originalState(), OriginalState::BeforeSave);
        QCOMPARE(theme->droppedCounts(), (CSSParser::DroppedCounts{2, 1}));
        QCOMPARE(file(QStringLiteral("plain.css"))->originalState(), OriginalState::Whole);
    }

    void saveKeepsTheOriginalOncePerSession()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        makeDirty(theme, QStringLiteral(".card-renamed"));
        m_workspace->saveCurrentFile();
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), theme->generateCSS().toUtf8());
        QCOMPARE(theme->originalState(), OriginalState::Kept);

        QTRY_VERIFY(!theme->hasUnsavedChanges());
        makeDirty(theme, QStringLiteral(".card-again"));
        m_workspace->saveCurrentFile();
        QCOMPARE(m_store->originals(path(QStringLiteral("theme.css"))).size(), 1);
    }

    void losslessSaveKeepsNothing()
    {
        m_workspace->selectFile(path(QStringLiteral("plain.css")));
        makeDirty(file(QStringLiteral("plain.css")), QStringLiteral("b"));
        m_workspace->saveCurrentFile();
        QCOMPARE(readFile(path(QStringLiteral("plain.css"))),
                 QByteArray("b {\n    color: red;\n}\n"));
        QVERIFY(!m_store->hasOriginals(path(QStringLiteral("plain.css"))));
        QCOMPARE(m_store->totalSize(), 0);
    }

    void saveAllKeepsEveryRewrittenFile()
    {
        makeDirty(file(QStringLiteral("theme.css")), QStringLiteral(".x"));
        makeDirty(file(QStringLiteral("other.css")), QStringLiteral(".y"));
        makeDirty(file(QStringLiteral("plain.css")), QStringLiteral(".z"));
        m_workspace->saveAllFiles();
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
        QCOMPARE(keptBytes(QStringLiteral("other.css")), QList<QByteArray>{otherCss});
        QVERIFY(keptBytes(QStringLiteral("plain.css")).isEmpty());
    }

    void closePromptsSaveKeepsToo()
    {
        m_prompts = PromptScript({FirstButtonResponse});
        m_workspace->setPromptHandler(m_prompts.handler());
        makeDirty(file(QStringLiteral("theme.css")), QStringLiteral(".x"));
        m_workspace->closeProject();
        QCOMPARE(m_prompts.asked().size(), 1);
        QVERIFY(!m_workspace->hasFolder());
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
    }

    void unwritableStoreStillSavesAndSaysSo()
    {
        QVERIFY(QDir().mkpath(m_store->folder()));
        QVERIFY(::chmod(QFile::encodeName(m_store->folder()).constData(), 0555) == 0);
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        makeDirty(theme, QStringLiteral(".x"));
        m_workspace->saveCurrentFile();
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), theme->generateCSS().toUtf8());
        QCOMPARE(theme->originalState(), OriginalState::NotKept);
        QTRY_VERIFY(!theme->hasUnsavedChanges());
        QVERIFY(::chmod(QFile::encodeName(m_store->folder()).constData(), 0755) == 0);
        QVERIFY(!m_store->hasOriginals(path(QStringLiteral("theme.css"))));
    }

    // The original comes back over the file, which reloads from it; what the
    // file held is kept first, and restoring that takes the restore back.
    void restoreWritesTheOriginalBackAndCanBeTakenBack()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        makeDirty(theme, QStringLiteral(".renamed"));
        m_workspace->saveCurrentFile();
        QTRY_VERIFY(!theme->hasUnsavedChanges());
        const QByteArray saved = readFile(path(QStringLiteral("theme.css")));
        m_workspace->setSelectedRuleset(theme->rulesets().first());

        const KeptOriginal original = m_store->originals(path(QStringLiteral("theme.css"))).first();
        QVERIFY(m_workspace->restoreOriginal(*m_store, original));
        QVERIFY(m_prompts.asked().isEmpty());
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        QCOMPARE(theme->originalContent(), QString::fromUtf8(themeCss));
        QCOMPARE(theme->rulesets().size(), 2);
        QCOMPARE(theme->rulesets().first()->selector(), QStringLiteral(".card"));
        QVERIFY(!theme->hasUnsavedChanges());
        QCOMPARE(theme->originalState(), OriginalState::BeforeSave);
        QCOMPARE(theme->droppedCounts(), (CSSParser::DroppedCounts{2, 1}));
        QCOMPARE(m_workspace->selectedRuleset(), nullptr);
        QCOMPARE(m_workspace->selectedFile(), theme);

        const QList<KeptOriginal> kept = m_store->originals(path(QStringLiteral("theme.css")));
        QCOMPARE(kept.size(), 2);
        QCOMPARE(readFile(kept.first().path), saved);
        QVERIFY(m_workspace->restoreOriginal(*m_store, kept.first()));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), saved);
        QCOMPARE(theme->rulesets().first()->selector(), QStringLiteral(".renamed"));
        QCOMPARE(theme->originalState(), OriginalState::Whole);
    }

    void restoreWithUnsavedChangesAsksFirst()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        m_workspace->saveCurrentFile();
        const KeptOriginal original = m_store->originals(path(QStringLiteral("theme.css"))).first();
        const QByteArray saved = readFile(path(QStringLiteral("theme.css")));

        // Cancel: nothing changes.
        makeDirty(theme, QStringLiteral(".edited"));
        m_prompts = PromptScript({ThirdButtonResponse});
        m_workspace->setPromptHandler(m_prompts.handler());
        QVERIFY(!m_workspace->restoreOriginal(*m_store, original));
        QCOMPARE(m_prompts.asked().size(), 1);
        const Prompt prompt = m_prompts.asked().first();
        QCOMPARE(prompt.message, QStringLiteral("Save changes to \"theme.css\" before restoring?"));
        QCOMPARE(prompt.informativeText,
                 QStringLiteral("Your changes will be lost if you don't save."));
        QCOMPARE(prompt.buttons, QStringList({"Save", "Don't Save", "Cancel"}));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), saved);
        QVERIFY(theme->hasUnsavedChanges());
        QCOMPARE(theme->rulesets().first()->selector(), QStringLiteral(".edited"));

        // Save: the edit is written, and kept before the restore replaces it.
        m_prompts = PromptScript({FirstButtonResponse});
        m_workspace->setPromptHandler(m_prompts.handler());
        QVERIFY(m_workspace->restoreOriginal(*m_store, original));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        const QByteArray edited =
            readFile(m_store->originals(path(QStringLiteral("theme.css"))).first().path);
        QVERIFY2(edited.startsWith(".edited {"), edited.constData());
        QTRY_VERIFY(!theme->hasUnsavedChanges());
        QCOMPARE(theme->rulesets().first()->selector(), QStringLiteral(".card"));

        // Don't Save: the edit is dropped.
        makeDirty(theme, QStringLiteral(".dropped"));
        const int keptBefore = int(m_store->originals(path(QStringLiteral("theme.css"))).size());
        m_prompts = PromptScript({SecondButtonResponse});
        m_workspace->setPromptHandler(m_prompts.handler());
        QVERIFY(m_workspace->restoreOriginal(*m_store, original));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        QTRY_VERIFY(!theme->hasUnsavedChanges());
        QCOMPARE(theme->rulesets().first()->selector(), QStringLiteral(".card"));
        // What was on disk was the original itself: nothing new to keep.
        QCOMPARE(m_store->originals(path(QStringLiteral("theme.css"))).size(), keptBefore);
        QVERIFY(!keptBytes(QStringLiteral("theme.css")).join().contains(".dropped"));
    }

    void foreignOrUnreadableOriginalChangesNothing()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        // Another file's original.
        m_workspace->selectFile(path(QStringLiteral("other.css")));
        m_workspace->saveCurrentFile();
        const KeptOriginal foreign = m_store->originals(path(QStringLiteral("other.css"))).first();
        m_workspace->selectFile(path(QStringLiteral("theme.css")));
        QVERIFY(!m_workspace->restoreOriginal(*m_store, foreign));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);

        // An original of the file that is not UTF-8 (another program wrote
        // it between the read and the save).
        QVERIFY(writeFile(path(QStringLiteral("theme.css")), QByteArray("a { b: \xff\xfe }")));
        QVERIFY(m_store->keep(path(QStringLiteral("theme.css"))));
        QSaveFile back(path(QStringLiteral("theme.css")));
        QVERIFY(back.open(QIODevice::WriteOnly) && back.write(themeCss) == themeCss.size() &&
                back.commit());
        const KeptOriginal binary = m_store->originals(path(QStringLiteral("theme.css"))).first();
        QCOMPARE(readFile(binary.path), QByteArray("a { b: \xff\xfe }"));
        QVERIFY(!m_workspace->restoreOriginal(*m_store, binary));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        QCOMPARE(theme->originalContent(), QString::fromUtf8(themeCss));
        QCOMPARE(m_store->originals(path(QStringLiteral("theme.css"))).size(), 1);

        // A copy removed by hand since the list was made.
        QVERIFY(QFile::remove(binary.path));
        QVERIFY(!m_workspace->restoreOriginal(*m_store, binary));

        m_workspace->setSelectedFile(nullptr);
        QVERIFY(!m_workspace->restoreOriginal(*m_store, foreign));
    }
};

QTEST_GUILESS_MAIN(TestKeptOriginals)
#include "tst_keptoriginals.moc"
