// A pasted line too long to lay out whole is laid out in pieces: the text,
// the model, the offsets, copying, the keys, undo and redo go on as if it
// were one line; and a paste of many lines is coloured where it shows.

#include "CodeEditorTestSupport.h"

#include "code/widgets/CodeHighlighter.h"
#include "model/CSSParser.h"
#include "workspace/UndoManager.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTest>

using namespace Ombrel;
using CodeTest::CodeWindow;

namespace {

// Rulesets on one line, as a minifier writes them, at least size units.
QString minifiedLine(qsizetype size)
{
    QString css;
    for (int i = 0; css.size() < size; ++i)
        css += QStringLiteral(".block-%1 .item>a:hover{color:#%2;margin:%3px}")
                   .arg(i)
                   .arg(i % 4096, 3, 16, QLatin1Char('0'))
                   .arg(i % 17);
    return css;
}

// Stylesheet lines of about 20 units, count rulesets of four lines.
QString stylesheetLines(int count)
{
    QString css;
    for (int i = 0; i < count; ++i)
        css += QStringLiteral(".r%1 {\n    color: red;\n}\n\n").arg(i);
    return css;
}

// The colour shown at an offset of the text.
QColor colourAtOffset(const CodeTextEdit *editor, qsizetype offset)
{
    return CodeTest::colourAt(editor, editor->documentPosition(offset));
}

// A shown window on the code tab, its editor focused.
bool openOnCode(CodeWindow &window)
{
    window.window.setPalette(CodeTest::appearance(false));
    if (!window.show())
        return false;
    window.clickTab(CanvasTab::Code);
    if (!window.editor())
        return false;
    window.editor()->setFocus();
    return QTest::qWaitFor([&] { return window.editor()->hasFocus(); });
}

void paste(const CodeWindow &window, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(window.editor(), Qt::Key_V, Qt::ControlModifier);
}

// Pasted over the whole text.
void pasteReplacingAll(const CodeWindow &window, const QString &text)
{
    window.editor()->selectAll();
    paste(window, text);
}

void putCursorAtOffset(const CodeWindow &window, qsizetype offset)
{
    window.putCursor(window.editor()->documentPosition(offset));
}

qsizetype cursorOffset(const CodeWindow &window)
{
    return window.editor()->textOffset(window.editor()->textCursor().position());
}

// The text offset where the second piece of the line in pieces begins: the
// place of a soft separator.
qsizetype firstSoftBreak(const CodeWindow &window)
{
    const QTextBlock second = window.editor()->document()->firstBlock().next();
    return window.editor()->textOffset(second.position());
}

} // namespace

class TestCodeLongLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPastedLongLineIsLaidOutInPiecesAndReadAsOneLine()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        const QString line = minifiedLine(300'000);
        window.editor()->selectAll();
        paste(window, line);

        const QTextDocument *document = window.editor()->document();
        QVERIFY(document->blockCount() >= line.size() / CodeTextEdit::pieceLength);
        for (QTextBlock block = document->firstBlock(); block.isValid(); block = block.next()) {
            QVERIFY(block.length() - 1 <= CodeTextEdit::pieceLength);
            QVERIFY(window.editor()->isPiece(block));
            // Each piece ends where a ruleset does.
            QVERIFY(block.text().endsWith(u'}'));
        }
        QVERIFY(window.editor()->rawText() == line);
        QVERIFY(window.coordinator()->text() == line);
        QCOMPARE(window.editor()->textLength(), line.size());
        const CSSRulesetList parsed = CSSParser::parse(line);
        QCOMPARE(window.file->rulesets().size(), parsed.size());
        QCOMPARE(window.file->rulesets().last()->selector(), parsed.last()->selector());

        QRandomGenerator random(3);
        for (int i = 0; i < 200; ++i) {
            const qsizetype offset = random.bounded(int(line.size() + 1));
            QCOMPARE(window.editor()->textOffset(window.editor()->documentPosition(offset)),
                     offset);
        }
        // A line too long to colour keeps the palette's colour in every piece.
        QVERIFY(!colourAtOffset(window.editor(), line.size() / 2).isValid());
    }

    void aLineWithoutPlaceToBreakIsCutBetweenCharacters()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        QString line;
        while (line.size() < 250'000)
            line += QStringLiteral("a\U0001F600");
        pasteReplacingAll(window, line);
        QVERIFY(window.editor()->document()->blockCount() > 1);
        for (QTextBlock block = window.editor()->document()->firstBlock(); block.isValid();
             block = block.next())
            QVERIFY(!block.text().front().isLowSurrogate());
        QVERIFY(window.editor()->rawText() == line);
        QVERIFY(window.coordinator()->text() == line);
    }

    void aLineMadeTooLongByPastesIsLaidOutInPieces()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        const QString part = minifiedLine(60'000);
        pasteReplacingAll(window, part);
        QCOMPARE(window.editor()->document()->blockCount(), 1);
        // Pasted in its middle, short lines around the paste's own ends
        // join the line before and after the cursor.
        putCursorAtOffset(window, part.indexOf(QStringLiteral(".block-900 ")));
        paste(window, QStringLiteral("a\n") + part + QStringLiteral("\nb"));
        QCOMPARE(window.editor()->document()->blockCount(), 3);
        // Pasted at the end of the middle line, it makes that line too long.
        const qsizetype middleEnd = window.coordinator()->text().indexOf(QStringLiteral("\nb"));
        putCursorAtOffset(window, middleEnd);
        paste(window, part);
        QVERIFY(window.editor()->document()->blockCount() > 3);
        for (QTextBlock block = window.editor()->document()->firstBlock(); block.isValid();
             block = block.next())
            QVERIFY(block.length() - 1 <= CodeHighlighter::maxPaintedBlock);
        QString expected = part;
        expected.insert(part.indexOf(QStringLiteral(".block-900 ")),
                        QStringLiteral("a\n") + part + QStringLiteral("\nb"));
        expected.insert(middleEnd, part);
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);
    }

    void typingAndDeletingAtAPieceBoundaryEditTheText()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        QString expected = minifiedLine(200'000);
        pasteReplacingAll(window, expected);
        const qsizetype boundary = firstSoftBreak(window);
        QVERIFY(boundary > 0);
        const auto textIsExpected = [&] {
            return window.coordinator()->text() == expected &&
                   window.editor()->rawText() == expected;
        };

        // Backspace at the start of a piece deletes the last unit of the one
        // before.
        window.putCursor(window.editor()->document()->firstBlock().next().position());
        QTest::keyClick(window.editor(), Qt::Key_Backspace);
        expected.remove(boundary - 1, 1);
        QVERIFY(textIsExpected());
        QCOMPARE(cursorOffset(window), boundary - 1);

        // Delete at the end of a piece deletes the first unit of the next.
        const QTextBlock first = window.editor()->document()->firstBlock();
        window.putCursor(first.position() + first.length() - 1);
        QTest::keyClick(window.editor(), Qt::Key_Delete);
        expected.remove(boundary - 1, 1);
        QVERIFY(textIsExpected());

        // By words too.
        const QTextBlock second = window.editor()->document()->firstBlock().next();
        window.putCursor(second.position());
        const qsizetype start = cursorOffset(window);
        QTest::keyClick(window.editor(), Qt::Key_Backspace, Qt::ControlModifier);
        QVERIFY(cursorOffset(window) < start);
        expected.remove(cursorOffset(window), start - cursorOffset(window));
        QVERIFY(textIsExpected());
        const QTextBlock firstNow = window.editor()->document()->firstBlock();
        window.putCursor(firstNow.position() + firstNow.length() - 1);
        const qsizetype end = cursorOffset(window);
        const qsizetype lengthBefore = expected.size();
        QTest::keyClick(window.editor(), Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(window.coordinator()->text().size() < lengthBefore);
        expected.remove(end, lengthBefore - window.coordinator()->text().size());
        QVERIFY(textIsExpected());

        // At the end of a piece and at the start of the next, a key lands at
        // the same offset of the text.
        const QTextBlock joined = window.editor()->document()->firstBlock();
        const int separator = joined.position() + joined.length() - 1;
        const qsizetype joint = window.editor()->textOffset(separator);
        QCOMPARE(window.editor()->textOffset(separator + 1), joint);
        window.putCursor(separator);
        QTest::keyClick(window.editor(), Qt::Key_X);
        expected.insert(joint, u'x');
        QVERIFY(textIsExpected());
        window.putCursor(window.editor()->document()->firstBlock().next().position());
        QTest::keyClick(window.editor(), Qt::Key_Y);
        expected.insert(joint + 1, u'y');
        QVERIFY(textIsExpected());

        // The model follows.
        const CSSRulesetList parsed = CSSParser::parse(expected);
        QCOMPARE(window.file->rulesets().size(), parsed.size());
        for (qsizetype i = 0; i < parsed.size(); i += 97)
            QCOMPARE(window.file->rulesets()[i]->selector(), parsed[i]->selector());
    }

    void arrowKeysStepOverASoftSeparatorAsOverOneUnit()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        const QString line = minifiedLine(200'000);
        pasteReplacingAll(window, line);
        const qsizetype boundary = firstSoftBreak(window);
        putCursorAtOffset(window, boundary - 2);
        for (qsizetype offset = boundary - 1; offset <= boundary + 2; ++offset) {
            QTest::keyClick(window.editor(), Qt::Key_Right);
            QCOMPARE(cursorOffset(window), offset);
        }
        for (qsizetype offset = boundary + 1; offset >= boundary - 2; --offset) {
            QTest::keyClick(window.editor(), Qt::Key_Left);
            QCOMPARE(cursorOffset(window), offset);
        }
        // By words: from either side of the soft separator, a step goes
        // over a word of the text.
        const int separator = window.editor()->documentPosition(boundary);
        window.putCursor(separator);
        QTest::keyClick(window.editor(), Qt::Key_Right, Qt::ControlModifier);
        QVERIFY(cursorOffset(window) > boundary);
        window.putCursor(separator + 1);
        QTest::keyClick(window.editor(), Qt::Key_Left, Qt::ControlModifier);
        QVERIFY(cursorOffset(window) < boundary);

        // Selecting by keys across it, and copying.
        putCursorAtOffset(window, boundary - 2);
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(window.editor(), Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClick(window.editor(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), line.mid(boundary - 2, 4));
    }

    void copyAndCutAcrossPiecesTakeTheTextAlone()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        QString expected = minifiedLine(200'000) + QStringLiteral("\n.after {\n    top: 0;\n}\n");
        pasteReplacingAll(window, expected);
        const qsizetype from = 1'000;
        const qsizetype to = 50'000;
        QTextCursor selection = window.editor()->textCursor();
        selection.setPosition(window.editor()->documentPosition(from));
        selection.setPosition(window.editor()->documentPosition(to), QTextCursor::KeepAnchor);
        window.editor()->setTextCursor(selection);
        QTest::keyClick(window.editor(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), expected.mid(from, to - from));
        QTest::keyClick(window.editor(), Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), expected.mid(from, to - from));
        expected.remove(from, to - from);
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);

        // Pasted back, it is the text it was.
        QTest::keyClick(window.editor(), Qt::Key_V, Qt::ControlModifier);
        expected.insert(from, QGuiApplication::clipboard()->text());
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);
    }

    void lineBreaksMadeInsideAPieceAreReal()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        QString expected = minifiedLine(200'000);
        pasteReplacingAll(window, expected);
        const qsizetype boundary = firstSoftBreak(window);

        // Return in the middle of the second piece.
        putCursorAtOffset(window, boundary + 10);
        QTest::keyClick(window.editor(), Qt::Key_Return);
        expected.insert(boundary + 10, u'\n');
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);

        // Lines pasted into a piece keep their breaks, also CR LF ones.
        putCursorAtOffset(window, boundary + 100);
        paste(window, QStringLiteral("a\r\nb\nc"));
        expected.insert(boundary + 100, QStringLiteral("a\nb\nc"));
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);

        // And so does another long line pasted into a piece.
        const QString other = QStringLiteral("x\n") + minifiedLine(120'000) + QStringLiteral("\ny");
        putCursorAtOffset(window, expected.size() - 5'000);
        paste(window, other);
        expected.insert(expected.size() - 5'000, other);
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);
        QCOMPARE(window.file->rulesets().size(), CSSParser::parse(expected).size());
    }

    void thePasteUndoesAndRedoesThroughTheWindowsHistory()
    {
        const QString before = QStringLiteral(".a {\n    x: 1;\n}\n");
        CodeWindow window(before);
        QVERIFY(openOnCode(window));
        const QString line = minifiedLine(200'000);
        window.editor()->selectAll();
        paste(window, line);
        const int pieces = window.editor()->document()->blockCount();
        QVERIFY(pieces > 1);
        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.coordinator()->text(), before);
        QCOMPARE(window.editor()->rawText(), before);
        QCOMPARE(window.file->rulesets().size(), 1);

        // Redone, the pieces come back as pieces, not as line breaks.
        window.undo->redo();
        QVERIFY(window.coordinator()->text() == line);
        QVERIFY(window.editor()->rawText() == line);
        QCOMPARE(window.editor()->document()->blockCount(), pieces);
        QCOMPARE(window.file->rulesets().size(), CSSParser::parse(line).size());

        // A key typed after it, in a later turn and away from its end (where
        // QTextDocument merges it into the paste), undoes on its own.
        CanvasTest::endTurn();
        const qsizetype at = firstSoftBreak(window) + 5;
        putCursorAtOffset(window, at);
        QTest::keyClick(window.editor(), Qt::Key_Z);
        QVERIFY(window.coordinator()->text() == QString(line).insert(at, u'z'));
        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(window.coordinator()->text() == line);
        QVERIFY(window.editor()->rawText() == line);
    }

    void awkwardCharactersPastedArriveAsTheDocumentHoldsThem()
    {
        CodeWindow window(QStringLiteral(":root {\n    --x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        QString pasted = QStringLiteral("/* ");
        for (const char16_t unit : {u'\uFFFD', u'\xDC00', u'\0', u'\u2028', u'\u00A0', u'\r', u'\n',
                                    u'\r', u'\u2029', u'x', u'\r'})
            pasted += QChar(unit);
        pasted += QStringLiteral(" */\n");
        QString expected = pasted;
        expected.replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
            .replace(u'\r', u'\n')
            .replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
        expected += window.coordinator()->text();
        window.putCursor(0);
        paste(window, pasted);
        QCOMPARE(window.coordinator()->text(), expected);
        QCOMPARE(window.editor()->rawText(), expected);

        // Within a long line too.
        const QString line = minifiedLine(150'000);
        expected = line + pasted + line;
        window.editor()->selectAll();
        paste(window, expected);
        expected.replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
            .replace(u'\r', u'\n')
            .replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
        QVERIFY(window.coordinator()->text() == expected);
        QVERIFY(window.editor()->rawText() == expected);
    }

    void theCursorAndTheSelectedRulesetFindEachOtherInPieces()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        const QString line = minifiedLine(200'000);
        pasteReplacingAll(window, line);
        const qsizetype offset = line.indexOf(QStringLiteral(".block-3000 ")) + 3;
        QVERIFY(offset > firstSoftBreak(window));
        putCursorAtOffset(window, offset);
        const CodeCursorHit hit = window.coordinator()->rulesetAndPropAtCursor();
        CSSRulesetPtr found;
        for (const CSSRulesetPtr &ruleset : window.file->rulesets()) {
            if (ruleset->id() == hit.rulesetID)
                found = ruleset;
        }
        QVERIFY(found);
        QCOMPARE(found->selector(), QStringLiteral(".block-3000 .item>a:hover"));

        // And a ruleset selected while the tab shows puts the cursor at its
        // place in the pieces.
        const qsizetype later = line.indexOf(QStringLiteral(".block-4000 "));
        for (const CSSRulesetPtr &ruleset : window.file->rulesets()) {
            if (ruleset->selector() == QStringLiteral(".block-4000 .item>a:hover"))
                window.workspace.setSelectedRuleset(ruleset);
        }
        QTRY_COMPARE(cursorOffset(window), later);
        QVERIFY(
            window.editor()->textCursor().block().text().contains(QStringLiteral(".block-4000 ")));
    }

    void linesAfterALineInPiecesAreColouredAtTheirPlace()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        const QString text = minifiedLine(150'000) + QStringLiteral("\n.after {\n    top: 0;\n}\n");
        pasteReplacingAll(window, text);
        const QList<QColor> expected = CodeTest::ruleColours(text, false);
        const qsizetype after = text.indexOf(QStringLiteral(".after"));
        QTRY_VERIFY(colourAtOffset(window.editor(), after).isValid());
        for (qsizetype offset = after; offset < text.size(); ++offset)
            QCOMPARE(colourAtOffset(window.editor(), offset), expected[offset]);
    }

    void aPasteOfManyLinesIsColouredWhereItShows()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        const QString text = stylesheetLines(2'000);
        pasteReplacingAll(window, text);
        const CodeHighlighter *highlighter = window.coordinator()->highlighter();
        QVERIFY(highlighter->isBehind());
        const QList<QColor> expected = CodeTest::ruleColours(text, false);

        // The end shows, coloured.
        const qsizetype last = text.lastIndexOf(QStringLiteral(".r1999"));
        QTRY_COMPARE(colourAtOffset(window.editor(), last), expected[last]);
        // Far from the paste's first blocks and from the view, a block is
        // not painted yet; shown, it is.
        const qsizetype middle = text.indexOf(QStringLiteral(".r1000 "));
        const QTextBlock block = window.editor()->document()->findBlock(int(middle));
        QVERIFY(block.layout()->formats().isEmpty());
        window.putCursor(middle);
        window.editor()->centerCursor();
        QTRY_COMPARE(colourAtOffset(window.editor(), middle), expected[middle]);
        const QTextBlock line = window.editor()->document()->findBlock(int(middle));
        for (qsizetype offset = line.position(); offset < line.position() + line.length() - 1;
             ++offset)
            QCOMPARE(colourAtOffset(window.editor(), offset), expected[offset]);

        // A comment opened at the top recolours what shows at once, the rest
        // as it shows.
        window.putCursor(0);
        QTest::keyClicks(window.editor(), QStringLiteral("/*"));
        const QString commented = window.coordinator()->text();
        QCOMPARE(colourAtOffset(window.editor(), 1), CodeTest::ruleColours(commented, false)[1]);
        const qsizetype end = commented.lastIndexOf(QStringLiteral("red"));
        window.putCursor(end);
        window.editor()->centerCursor();
        QTRY_COMPARE(colourAtOffset(window.editor(), end),
                     CodeTest::ruleColours(commented, false)[end]);
    }
};

QTEST_MAIN(TestCodeLongLines)
#include "tst_codelonglines.moc"
