#include "StylesheetFiles.h"
#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Ombrel;
using namespace StylesheetFiles;

class TestCSSFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Permissions mean nothing to root, and CI runs as root: the test
        // drops to an ordinary user so that a read-only folder is read-only.
        if (::geteuid() == 0) {
            QVERIFY(::setgid(65534) == 0);
            QVERIFY(::setuid(65534) == 0);
        }
    }

    void generatesTheFixedForm()
    {
        CSSFile file(QStringLiteral("/x/a.css"),
                     {std::make_shared<CSSRuleset>(
                          QStringLiteral("a"),
                          CSSPropertyList{CSSProperty(QStringLiteral("b"), QStringLiteral("c"))}),
                      std::make_shared<CSSRuleset>(QStringLiteral("d"))},
                     QString());
        QCOMPARE(file.generateCSS(), QStringLiteral("a {\n    b: c;\n}\n\nd {\n}\n"));
        QCOMPARE(file.rulesets().first()->cssString(), QStringLiteral("a {\n    b: c;\n}"));
    }

    void namesComeFromThePath()
    {
        const CSSFile file(QStringLiteral("/x/y/../z/site.css"), {}, QString());
        QCOMPARE(file.name(), QStringLiteral("site.css"));
        QCOMPARE(file.relativePath(), QStringLiteral("/x/z/site.css"));
        QCOMPARE(file.path(), QStringLiteral("/x/z/site.css"));
    }

    void emptyFileGeneratesOneLineBreakAndSavesIt()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("empty.css"));
        QVERIFY(writeFile(path, QByteArray()));
        auto file = std::make_shared<CSSFile>(path, CSSRulesetList(), QString());
        QCOMPARE(file->generateCSS(), QStringLiteral("\n"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QVERIFY(file->save());
        QCOMPARE(readFile(path), QByteArray("\n"));
        QCOMPARE(file->originalContent(), QStringLiteral("\n"));
    }

    void editAndUndoOfGeneratedFormEndsClean()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("clean.css"));
        const QByteArray text = "a {\n    b: c;\n}\n";
        QVERIFY(writeFile(path, text));
        CSSFilePtr file = loadFile(path);
        const CSSRulesetPtr ruleset = file->rulesets().first();
        const CSSPropertyList before = ruleset->properties();

        CSSPropertyList edited = before;
        edited[0].value = QStringLiteral("d");
        ruleset->setProperties(edited);
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());

        ruleset->setProperties(before);
        file->markChanged();
        QTRY_VERIFY(!file->hasUnsavedChanges());

        QVERIFY(file->save());
        QCOMPARE(readFile(path), text);
        QVERIFY(file->save());
        QCOMPARE(readFile(path), text);
    }

    // The text a save wrote, or a reload read, is the one compared from then
    // on, also for edits that change the length of the text.
    void editsOfAnotherLengthCompareWithTheLatestOriginal()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("length.css"));
        QVERIFY(writeFile(path, "a {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        const auto setValue = [&file](const QString &value) {
            file->rulesets().first()->setProperties({CSSProperty(QStringLiteral("b"), value)});
            file->markChanged();
        };

        setValue(QStringLiteral("cc"));
        QTRY_VERIFY(file->hasUnsavedChanges());
        QVERIFY(file->save());
        QTRY_VERIFY(!file->hasUnsavedChanges());
        setValue(QStringLiteral("c"));
        QTRY_VERIFY(file->hasUnsavedChanges());
        setValue(QStringLiteral("cc"));
        QTRY_VERIFY(!file->hasUnsavedChanges());

        file->reload(QStringLiteral("a {\n    b: ccc;\n}\n"));
        setValue(QStringLiteral("c"));
        QTRY_VERIFY(file->hasUnsavedChanges());
        setValue(QStringLiteral("ccc"));
        QTRY_VERIFY(!file->hasUnsavedChanges());
    }

    void theChangeMarkFollowsEveryKindOfEditAndItsReturn()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("kinds.css"));
        QVERIFY(writeFile(path, "a {\n    b: c;\n}\n\nd {\n}\n"));
        CSSFilePtr file = loadFile(path);
        const CSSRulesetPtr first = file->rulesets().first();
        const CSSRulesetPtr second = file->rulesets().last();
        const auto markedUnsaved = [&file] {
            file->markChanged();
            return QTest::qWaitFor([&file] { return file->hasUnsavedChanges(); });
        };
        const auto markedSaved = [&file] {
            file->markChanged();
            return QTest::qWaitFor([&file] { return !file->hasUnsavedChanges(); });
        };

        first->setSelector(QStringLiteral("a, e"));
        QVERIFY(markedUnsaved());
        first->setSelector(QStringLiteral("a"));
        QVERIFY(markedSaved());

        second->setProperties({CSSProperty(QStringLiteral("f"), QStringLiteral("g"))});
        QVERIFY(markedUnsaved());
        second->setProperties({});
        QVERIFY(markedSaved());

        file->setRulesets({first});
        QVERIFY(markedUnsaved());
        // Edited while out of the list, it comes back longer.
        second->setSelector(QStringLiteral("dd"));
        file->setRulesets({first, second});
        QVERIFY(markedUnsaved());
        second->setSelector(QStringLiteral("d"));
        QVERIFY(markedSaved());

        // Taken in by another file, it no longer tells this one of its
        // edits; this file's mark still reads its own list.
        CSSFilePtr other = loadFile(path);
        other->setRulesets({second});
        second->setSelector(QStringLiteral("dd"));
        QVERIFY(markedUnsaved());
        QCOMPARE(file->generateCSS(), QStringLiteral("a {\n    b: c;\n}\n\ndd {\n}\n"));
        second->setSelector(QStringLiteral("d"));
        QVERIFY(markedSaved());
    }

    void saveClearsTheFlagOnlyOnTheNextTurn()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("a.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        CSSFilePtr file = loadFile(path);
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QSignalSpy spy(file.get(), &CSSFile::hasUnsavedChangesChanged);
        QVERIFY(file->save());
        QVERIFY(file->hasUnsavedChanges());
        QCOMPARE(file->originalContent(), QStringLiteral("a {\n    b: c;\n}\n"));
        QTRY_VERIFY(!file->hasUnsavedChanges());
        QCOMPARE(spy.size(), 1);
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void saveWritesEvenWhenNothingChanged()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("a.css"));
        QVERIFY(writeFile(path, "/* keep? */ a { b: c }"));
        CSSFilePtr file = loadFile(path);
        QVERIFY(!file->hasUnsavedChanges());
        QVERIFY(file->save());
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void commentMakesFileDirtyAndLeavesAtSave()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("c.css"));
        QVERIFY(writeFile(path, "/* note */\na {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        QVERIFY(!file->hasUnsavedChanges());
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QVERIFY(file->save());
        QTRY_VERIFY(!file->hasUnsavedChanges());
        QVERIFY(!readFile(path).contains("note"));
    }

    void savesUtf8WithoutByteOrderMark()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("u.css"));
        auto file = std::make_shared<CSSFile>(
            path,
            CSSRulesetList{std::make_shared<CSSRuleset>(
                QStringLiteral("é"),
                CSSPropertyList{CSSProperty(QStringLiteral("content"), QStringLiteral("\"→\""))})},
            QString());
        QVERIFY(file->save());
        QCOMPARE(readFile(path), QByteArray("\xC3\xA9 {\n    content: \"\xE2\x86\x92\";\n}\n"));
    }

    void saveKeepsFilePermissions()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("p.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(path, permissions));
        QVERIFY(loadFile(path)->save());
        // The user bits mirror the owner's for the file's owner; leave them out.
        QCOMPARE(QFile::permissions(path) & 0xF0FF, permissions);
    }

    void failedSaveChangesNothingAndKeepsTheOldFile()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("locked"));
        QVERIFY(QDir().mkpath(folder));
        const QString path = folder + QStringLiteral("/a.css");
        const QByteArray old = "a { b: c } /* old */";
        QVERIFY(writeFile(path, old));
        CSSFilePtr file = loadFile(path);
        file->rulesets().first()->setSelector(QStringLiteral("z"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());

        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        QString error;
        const bool saved = file->save(&error);
        QVERIFY(
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(!saved);
        QVERIFY(!error.isEmpty());
        QCOMPARE(readFile(path), old);
        QCOMPARE(file->originalContent(), QString::fromUtf8(old));
        QCoreApplication::processEvents();
        QVERIFY(file->hasUnsavedChanges());
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"a.css"});
    }

    void failedSaveIntoMissingFolder()
    {
        QTemporaryDir dir;
        auto file = std::make_shared<CSSFile>(dir.filePath(QStringLiteral("gone/a.css")),
                                              CSSRulesetList(), QStringLiteral("x"));
        QVERIFY(!file->save());
        QCOMPARE(file->originalContent(), QStringLiteral("x"));
    }

    void saveRecreatesARemovedFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("a.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        CSSFilePtr file = loadFile(path);
        QVERIFY(QFile::remove(path));
        QVERIFY(file->save());
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void revertUsesOriginalContentNotTheDisk()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("r.css"));
        QVERIFY(writeFile(path, "a { b: c }"));
        CSSFilePtr file = loadFile(path);
        const QUuid oldId = file->rulesets().first()->id();
        file->rulesets().first()->setSelector(QStringLiteral("changed"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());

        QVERIFY(writeFile(path, "other { x: y }"));
        QVERIFY(QFile::remove(path));
        QSignalSpy spy(file.get(), &CSSFile::rulesetsChanged);
        file->revert();
        QCOMPARE(file->rulesets().first()->selector(), QStringLiteral("changed"));
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(file->rulesets().size(), 1);
        QCOMPARE(file->rulesets().first()->selector(), QStringLiteral("a"));
        QVERIFY(file->rulesets().first()->id() != oldId);
        QVERIFY(!file->hasUnsavedChanges());
    }

    void markChangedReadsStateWhenItRuns()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("m.css"));
        QVERIFY(writeFile(path, "a {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        file->rulesets().first()->setSelector(QStringLiteral("x"));
        file->markChanged();
        QVERIFY(!file->hasUnsavedChanges());
        file->rulesets().first()->setSelector(QStringLiteral("a"));
        QCoreApplication::processEvents();
        QVERIFY(!file->hasUnsavedChanges());
    }

    // The readings of the whole file are kept between changes, and every
    // change, read within the same turn, is seen at once.
    void wholeFileReadingsFollowEveryChange()
    {
        auto file = std::make_shared<CSSFile>(
            QStringLiteral("/x/v.css"),
            CSSParser::parse(QStringLiteral(":root { --a: red; --b: 1px; }\n.x { --a: blue; }")),
            QString());
        QCOMPARE(file->variables().value(QStringLiteral("--a")), QStringLiteral("blue"));
        QCOMPARE(file->customPropertyCount(), 3);
        QVERIFY(file->variables().isSharedWith(file->variables()));

        const CSSRulesetPtr x = file->rulesets().at(1);
        x->setProperties({CSSProperty(QStringLiteral("--a"), QStringLiteral("green")),
                          CSSProperty(QStringLiteral("--c"), QStringLiteral("0"))});
        QCOMPARE(file->variables().value(QStringLiteral("--a")), QStringLiteral("green"));
        QCOMPARE(file->variables().value(QStringLiteral("--c")), QStringLiteral("0"));
        QCOMPARE(file->customPropertyCount(), 4);

        file->setRulesets({x});
        QVERIFY(!file->variables().contains(QStringLiteral("--b")));
        QCOMPARE(file->customPropertyCount(), 2);
        x->setProperties({CSSProperty(QStringLiteral("color"), QStringLiteral("red"))});
        QVERIFY(!file->hasVariables());
        QCOMPARE(file->customPropertyCount(), 0);
    }

    // Only an edit of a custom property makes the readings stale: typing
    // into an ordinary declaration leaves them shared.
    void readingsOutliveEditsThatLeaveTheCustomPropertiesAlone()
    {
        auto file = std::make_shared<CSSFile>(
            QStringLiteral("/x/k.css"),
            CSSParser::parse(QStringLiteral(":root { --a: red; }\n.x { color: red; }")), QString());
        const CSSVariables kept = file->variables();
        const CSSRulesetPtr root = file->rulesets().first();
        const CSSRulesetPtr x = file->rulesets().last();
        const quint64 revision = file->contentRevision();
        x->setProperties({CSSProperty(QStringLiteral("color"), QStringLiteral("blue"))});
        x->setSelector(QStringLiteral(".y"));
        root->setProperties({CSSProperty(QStringLiteral("margin"), QStringLiteral("0")),
                             root->properties().first()});
        QVERIFY(file->contentRevision() != revision);
        QVERIFY(file->variables().isSharedWith(kept));

        // A declaration renamed into a custom property, a custom value, a
        // custom property gone: each is seen at once.
        x->setProperties({CSSProperty(QStringLiteral("--color"), QStringLiteral("blue"))});
        QCOMPARE(file->variables().value(QStringLiteral("--color")), QStringLiteral("blue"));
        QCOMPARE(file->customPropertyCount(), 2);
        x->setProperties({CSSProperty(QStringLiteral("--color"), QStringLiteral("navy"))});
        QCOMPARE(file->variables().value(QStringLiteral("--color")), QStringLiteral("navy"));
        // The same custom properties in another order: the later one wins.
        root->setProperties({CSSProperty(QStringLiteral("--a"), QStringLiteral("1")),
                             CSSProperty(QStringLiteral("--a"), QStringLiteral("2"))});
        QCOMPARE(file->variables().value(QStringLiteral("--a")), QStringLiteral("2"));
        root->setProperties({root->properties().last(), root->properties().first()});
        QCOMPARE(file->variables().value(QStringLiteral("--a")), QStringLiteral("1"));
        x->setProperties({});
        QVERIFY(!file->variables().contains(QStringLiteral("--color")));
        QCOMPARE(file->customPropertyCount(), 2);
    }

    void contentChangedComesOncePerTurn()
    {
        auto file = std::make_shared<CSSFile>(
            QStringLiteral("/x/c.css"),
            CSSParser::parse(QStringLiteral("a { b: c; }\nd { e: f; }")), QString());
        QSignalSpy content(file.get(), &CSSFile::contentChanged);
        for (int i = 0; i < 100; ++i) {
            for (const CSSRulesetPtr &ruleset : file->rulesets())
                ruleset->setSelector(QStringLiteral("s%1").arg(i));
        }
        file->setRulesets({file->rulesets().first()});
        QCOMPARE(content.count(), 0);
        QTRY_COMPARE(content.count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(content.count(), 1);
        file->rulesets().first()->setProperties({});
        QTRY_COMPARE(content.count(), 2);
    }

    // A ruleset out of the list, kept by an undo step, or outliving its
    // file, is none of the file's business any more.
    void aRulesetOutOfTheListNoLongerTellsTheFile()
    {
        auto file = std::make_shared<CSSFile>(
            QStringLiteral("/x/o.css"), CSSParser::parse(QStringLiteral("a { --v: 1; }\nb { }")),
            QString());
        const CSSRulesetPtr removed = file->rulesets().first();
        file->setRulesets({file->rulesets().last()});
        QVERIFY(!file->hasVariables());
        QSignalSpy content(file.get(), &CSSFile::contentChanged);
        QTRY_COMPARE(content.count(), 1);
        removed->setProperties({CSSProperty(QStringLiteral("--w"), QStringLiteral("2"))});
        QCoreApplication::processEvents();
        QCOMPARE(content.count(), 1);
        QVERIFY(!file->hasVariables());

        auto other = std::make_shared<CSSFile>(QStringLiteral("/x/p.css"), CSSRulesetList{removed},
                                               QString());
        QVERIFY(other->hasVariables());
        other.reset();
        removed->setSelector(QStringLiteral("outlived"));
        QCOMPARE(removed->selector(), QStringLiteral("outlived"));
    }

    // The text regarded as on disk is held as UTF-8: text beyond ASCII
    // comes back whole and still compares equal to the generated text.
    void originalContentBeyondAsciiStaysExact()
    {
        const QString text = QStringLiteral("a\u00e9 {\n    content: \"\U0001F600 \u4e2d\";\n}\n");
        auto file =
            std::make_shared<CSSFile>(QStringLiteral("/x/u.css"), CSSParser::parse(text), text);
        QCOMPARE(file->originalContent(), text);
        QCOMPARE(file->generateCSS(), text);
        file->markChanged();
        bool ran = false;
        QMetaObject::invokeMethod(
            file.get(), [&ran] { ran = true; }, Qt::QueuedConnection);
        QTRY_VERIFY(ran);
        QVERIFY(!file->hasUnsavedChanges());
        file->rulesets().first()->setSelector(QStringLiteral("a\u00e8"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        file->rulesets().first()->setSelector(QStringLiteral("a\u00e9"));
        file->markChanged();
        QTRY_VERIFY(!file->hasUnsavedChanges());
    }

    void postedWorkKeepsTheFileAlive()
    {
        auto file = std::make_shared<CSSFile>(QStringLiteral("/nowhere/a.css"), CSSRulesetList(),
                                              QString());
        const std::weak_ptr<CSSFile> watch = file;
        file->markChanged();
        file.reset();
        QVERIFY(!watch.expired());
        QTRY_VERIFY(watch.expired());
    }
};

QTEST_GUILESS_MAIN(TestCSSFile)
#include "tst_cssfile.moc"
