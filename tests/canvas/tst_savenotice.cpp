// The line the canvas shows over a file a save does not keep whole: its words
// for each state and count, and its counts on real stylesheets as the
// workspace reads them.

#include "canvas/SaveNotice.h"
#include "workspace/StylesheetFolder.h"

#include <QDir>
#include <QTest>

using namespace Ombrel;
using Counts = CSSParser::DroppedCounts;

Q_DECLARE_METATYPE(Counts)
Q_DECLARE_METATYPE(OriginalState)

class TestSaveNotice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsFollowStateAndCounts_data()
    {
        QTest::addColumn<OriginalState>("state");
        QTest::addColumn<Counts>("counts");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, OriginalState state, Counts counts,
                            const char *expected) {
            QTest::newRow(name) << state << counts << QString::fromUtf8(expected);
        };
        row("whole", OriginalState::Whole, {}, "");
        row("whole with counts", OriginalState::Whole, {3, 4}, "");
        row("before save", OriginalState::BeforeSave, {14, 353},
            "Saving rewrites this file without its 14 at-rules and 353 comments; the original "
            "is kept.");
        row("one of each", OriginalState::BeforeSave, {1, 1},
            "Saving rewrites this file without its 1 at-rule and 1 comment; the original is kept.");
        row("at-rules only", OriginalState::BeforeSave, {2, 0},
            "Saving rewrites this file without its 2 at-rules; the original is kept.");
        row("comments only", OriginalState::BeforeSave, {0, 5},
            "Saving rewrites this file without its 5 comments; the original is kept.");
        row("layout only", OriginalState::BeforeSave, {},
            "Saving rewrites this file in Ombrel's own form; the original is kept.");
        row("kept", OriginalState::Kept, {112, 0},
            "Saved without its 112 at-rules; the original is kept: File > Restore Original...");
        row("kept, layout only", OriginalState::Kept, {},
            "Saved in Ombrel's own form; the original is kept: File > Restore Original...");
        row("not kept", OriginalState::NotKept, {3, 1},
            "Saved without its 3 at-rules and 1 comment; the original could not be kept.");
        row("not kept, layout only", OriginalState::NotKept, {},
            "Saved in Ombrel's own form; the original could not be kept.");
    }

    void wordsFollowStateAndCounts()
    {
        QFETCH(OriginalState, state);
        QFETCH(Counts, counts);
        QFETCH(QString, expected);
        QCOMPARE(saveNoticeText(state, counts), expected);
    }

    // The stylesheets of the corpus read as a workspace reads them: the
    // notice counts what their parse leaves out.
    void countsOnTheCorpus_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("bootstrap") << QStringLiteral("bootstrap.css")
                                   << QStringLiteral("Saving rewrites this file without its 115 "
                                                     "at-rules and 17 comments; the original is "
                                                     "kept.");
        QTest::newRow("primer") << QStringLiteral("primer.css")
                                << QStringLiteral("Saving rewrites this file without its 231 "
                                                  "at-rules and 6 comments; the original is kept.");
        QTest::newRow("tailwind") << QStringLiteral("tailwind.css")
                                  << QStringLiteral("Saving rewrites this file without its 14 "
                                                    "at-rules and 353 comments; the original is "
                                                    "kept.");
    }

    void countsOnTheCorpus()
    {
        const QString corpus = qEnvironmentVariable("OMBREL_CORPUS_DIR");
        if (corpus.isEmpty())
            QSKIP("OMBREL_CORPUS_DIR is not set (bench/install-peers.sh installs the corpus)");
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const CSSFilePtr file = StylesheetFolder::readStylesheet(QDir(corpus).filePath(name));
        QVERIFY(file);
        QCOMPARE(file->originalState(), OriginalState::BeforeSave);
        QCOMPARE(saveNoticeText(*file), expected);
    }
};

QTEST_GUILESS_MAIN(TestSaveNotice)
#include "tst_savenotice.moc"
