// The code tab through its real widgets: the colours each block shows in
// both appearances, typing parsed into the model, the model replacing the
// text when the user is not editing, the text's undo steps in the window's
// history, and the cursor carried across tab changes.

#include "CodeEditorTestSupport.h"

#include "code/SyntaxColouring.h"
#include "code/widgets/CodeHighlighter.h"
#include "model/CSSParser.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/UndoManager.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;
using CodeTest::CodeWindow;
using CodeTest::colourAt;
using CodeTest::qColor;

namespace {

QSet<QUuid> propertyIDs(const CSSRulesetList &rulesets)
{
    QSet<QUuid> ids;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        for (const CSSProperty &property : ruleset->properties())
            ids.insert(property.id);
    }
    return ids;
}

QStringList selectorsOf(const CSSRulesetList &rulesets)
{
    QStringList list;
    for (const CSSRulesetPtr &ruleset : rulesets)
        list.append(ruleset->selector());
    return list;
}

// Selectors, names and values of rulesets, for comparing a model with a
// parse.
QStringList contentOf(const CSSRulesetList &rulesets)
{
    QStringList lines;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        lines.append(ruleset->selector());
        for (const CSSProperty &property : ruleset->properties())
            lines.append(property.name + QStringLiteral(": ") + property.value);
    }
    return lines;
}

const QColor selectorLight = qColor(0.1, 0.4, 0.8);
const QColor selectorDark = qColor(0.49, 0.73, 1.0);
const QColor comment = qColor(0.5, 0.55, 0.5);
const QColor nameLight = qColor(0.1, 0.5, 0.3);
const QColor valueLight = qColor(0.7, 0.3, 0.0);
const QColor punctuationLight = qColor(0.5, 0.5, 0.5);

} // namespace

class TestCodeEditor : public QObject
{
    Q_OBJECT

    // A shown window on the code tab, its editor focused and empty.
    static bool openOnCode(CodeWindow &window, bool dark = false)
    {
        window.window.setPalette(CodeTest::appearance(dark));
        if (!window.show())
            return false;
        window.clickTab(CanvasTab::Code);
        if (!window.editor())
            return false;
        window.editor()->setFocus();
        return QTest::qWaitFor([&] { return window.editor()->hasFocus(); });
    }

    static void typeReplacingAll(CodeWindow &window, const QString &text)
    {
        window.editor()->selectAll();
        QTest::keyClick(window.editor(), Qt::Key_Delete);
        CodeTest::type(window.editor(), text);
    }

private Q_SLOTS:
    // --- The view ---

    void plainMonospacedTextWrappedAtTheWidthWithMarginsOf12()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        CodeTextEdit *editor = window.editor();
        QCOMPARE(window.pane()->objectName(), QStringLiteral("codePane"));
        QCOMPARE(editor->document()->documentMargin(), 12.0);
        QCOMPARE(editor->font().pixelSize(), 12);
        QVERIFY(QFontInfo(editor->font()).fixedPitch());
        QCOMPARE(editor->lineWrapMode(), QPlainTextEdit::WidgetWidth);
        QCOMPARE(editor->viewport()->palette().color(QPalette::Base),
                 window.window.palette().color(QPalette::Base));
        QCOMPARE(window.editor()->rawText(), window.file->generateCSS());
    }

    void tabInsertsATab()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(0);
        QTest::keyClick(window.editor(), Qt::Key_Tab);
        QVERIFY(window.editor()->hasFocus());
        QVERIFY(window.coordinator()->text().startsWith(QLatin1Char('\t')));
        QCOMPARE(window.file->rulesets()[0]->selector(), QStringLiteral(".a"));
    }

    // --- Colouring ---

    void emptyFileShowsNoColours()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        QCOMPARE(window.editor()->rawText(), QStringLiteral("\n"));
        QVERIFY(window.editor()->document()->firstBlock().layout()->formats().isEmpty());
    }

    void typedCommentIsColouredByTheLaterRules()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        typeReplacingAll(window, QStringLiteral("/* a { color: red; } */"));
        const QString text = window.coordinator()->text();
        QCOMPARE(text, QStringLiteral("/* a { color: red; } */"));
        QCOMPARE(colourAt(window.editor(), 0), comment);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u'a')), comment);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u"color")), nameLight);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u"red")), valueLight);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u'{')), punctuationLight);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u':')), punctuationLight);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u';')), punctuationLight);
        QCOMPARE(colourAt(window.editor(), text.size() - 1), comment);
    }

    void mediaLineIsASelectorFromItsStart()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        typeReplacingAll(window, QStringLiteral("@media (max-width: 600px) {"));
        QCOMPARE(colourAt(window.editor(), 0), selectorLight);
        QCOMPARE(colourAt(window.editor(), 3), selectorLight);
        QCOMPARE(colourAt(window.editor(), 17), punctuationLight);
        QCOMPARE(colourAt(window.editor(), 26), punctuationLight);
    }

    void varInADeclarationTakesTheValueColour()
    {
        CodeWindow window(QStringLiteral("a {\n    color: var(--x);\n}\n"));
        QVERIFY(openOnCode(window));
        const QString text = window.coordinator()->text();
        QCOMPARE(colourAt(window.editor(), text.indexOf(u"var")), valueLight);
        QCOMPARE(colourAt(window.editor(), text.indexOf(u"--x")), valueLight);
    }

    void darkAndLightAppearances()
    {
        for (const bool dark : {false, true}) {
            CodeWindow window(QStringLiteral(".card {\n    color: red;\n}\n"));
            QVERIFY(openOnCode(window, dark));
            QCOMPARE(colourAt(window.editor(), 0), dark ? selectorDark : selectorLight);
            // Text in no role keeps the palette's colour: it has no format.
            QVERIFY(!colourAt(window.editor(), window.coordinator()->text().size() - 1).isValid());
            typeReplacingAll(window, QStringLiteral("/**/"));
            QCOMPARE(colourAt(window.editor(), 0), comment);
        }
    }

    void paletteChangeRecoloursOnlyAtTheNextEdit()
    {
        CodeWindow window(QStringLiteral(".card {\n    color: red;\n}\n\n.b {\n}\n"));
        QVERIFY(openOnCode(window, false));
        const QString text = window.coordinator()->text();
        const qsizetype lastSelector = text.indexOf(u".b");
        window.window.setPalette(CodeTest::appearance(true));
        QCoreApplication::processEvents();
        QCOMPARE(colourAt(window.editor(), 0), selectorLight);
        QCOMPARE(colourAt(window.editor(), lastSelector), selectorLight);
        window.putCursor(text.indexOf(u"red") + 3);
        QTest::keyClick(window.editor(), Qt::Key_X);
        // The whole text takes the appearance of the edit, far from it too.
        QCOMPARE(colourAt(window.editor(), 0), selectorDark);
        QCOMPARE(colourAt(window.editor(), lastSelector + 1), selectorDark);
    }

    void onlyBlocksWhoseColoursChangedArePaintedAgain()
    {
        QString css;
        for (int i = 0; i < 40; ++i)
            css += QStringLiteral(".r%1 { color: red; }\n").arg(i);
        CodeWindow window(css);
        QVERIFY(openOnCode(window, true));
        const CodeHighlighter *highlighter = window.coordinator()->highlighter();
        // Opening the tab paints each block once, in the dark appearance too.
        CanvasTest::endTurn();
        QCOMPARE(highlighter->paintCount(), window.editor()->document()->blockCount());
        const qint64 before = highlighter->paintCount();
        const QString text = window.coordinator()->text();
        window.putCursor(text.indexOf(u"red") + 3);
        QTest::keyClick(window.editor(), Qt::Key_X);
        // The edited block alone, once.
        QCOMPARE(highlighter->paintCount() - before, 1);
        // A comment opened at the top changes the colours down to its end,
        // and every block shows what the rules give for the whole text.
        window.putCursor(0);
        CodeTest::type(window.editor(), QStringLiteral("/*"));
        window.putCursor(window.coordinator()->text().indexOf(u".r3 "));
        CodeTest::type(window.editor(), QStringLiteral("*/"));
        const QString commented = window.coordinator()->text();
        QCOMPARE(colourAt(window.editor(), 1), comment);
        QCOMPARE(colourAt(window.editor(), commented.indexOf(u"*/")), comment);
        QCOMPARE(colourAt(window.editor(), commented.indexOf(u".r5 ")), selectorDark);
        QCOMPARE(CodeTest::shownColours(window.editor()), CodeTest::ruleColours(commented, true));
    }

    void shownColoursFollowTheRulesOverRandomEdits()
    {
        CodeWindow window(QStringLiteral(
            ":root {\n    --x: 1;\n}\n\n.a, .b > c {\n    color: var(--x);\n    margin: 0;\n}\n\n"
            "@media (max-width: 600px) {\n    .c {\n        top: 0;\n    }\n}\n"));
        QVERIFY(openOnCode(window, true));
        const QStringList pieces = {QStringLiteral("/*"),  QStringLiteral("*/"),
                                    QStringLiteral("{"),   QStringLiteral("}"),
                                    QStringLiteral(";\n"), QStringLiteral(":"),
                                    QStringLiteral("\n"),  QStringLiteral(".d {\n    e: f;\n}\n"),
                                    QStringLiteral("x"),   QStringLiteral("var(--y)")};
        QRandomGenerator random(11);
        for (int step = 0; step < 80; ++step) {
            const qsizetype length = window.coordinator()->text().size();
            QTextCursor cursor = window.editor()->textCursor();
            cursor.setPosition(int(random.bounded(int(length + 1))));
            const int choice = int(random.bounded(10));
            if (choice < 6) {
                window.editor()->setTextCursor(cursor);
                window.editor()->insertPlainText(pieces[random.bounded(int(pieces.size()))]);
            } else if (choice < 9) {
                cursor.setPosition(
                    int(std::min<qsizetype>(length, cursor.position() + random.bounded(12))),
                    QTextCursor::KeepAnchor);
                window.editor()->setTextCursor(cursor);
                QTest::keyClick(window.editor(), Qt::Key_Delete);
            } else {
                QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
            }
            const QString text = window.coordinator()->text();
            QCOMPARE(text, window.editor()->rawText());
            QCOMPARE(CodeTest::shownColours(window.editor()), CodeTest::ruleColours(text, true));
        }
    }

    void aLineTooLongToColourKeepsThePaletteColour()
    {
        const QString longValue(CodeHighlighter::maxPaintedBlock, QLatin1Char('x'));
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n    y: ") + longValue +
                          QStringLiteral(";\n}\n"));
        QVERIFY(openOnCode(window));
        const QTextBlock longLine = window.editor()->document()->findBlockByNumber(2);
        QVERIFY(longLine.length() - 1 > CodeHighlighter::maxPaintedBlock);
        QVERIFY(longLine.layout()->formats().isEmpty());
        QCOMPARE(colourAt(window.editor(), 0), selectorLight);
        window.putCursor(window.coordinator()->text().indexOf(u"1") + 1);
        QTest::keyClick(window.editor(), Qt::Key_2);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("12"));
        QVERIFY(window.editor()->document()->findBlockByNumber(2).layout()->formats().isEmpty());
        QCOMPARE(colourAt(window.editor(), window.coordinator()->text().indexOf(u"12")),
                 valueLight);

        // Typing in the long line paints that line alone, without colours.
        const CodeHighlighter *highlighter = window.coordinator()->highlighter();
        const qint64 before = highlighter->paintCount();
        window.putCursor(window.editor()->document()->findBlockByNumber(2).position() + 12);
        QTest::keyClick(window.editor(), Qt::Key_Y);
        QCOMPARE(highlighter->paintCount(), before + 1);
        QVERIFY(window.editor()->document()->findBlockByNumber(2).layout()->formats().isEmpty());
        QCOMPARE(window.file->rulesets()[0]->properties()[1].value.size(), longValue.size() + 1);

        // A coloured line that a paste makes too long loses its colours.
        QVERIFY(!window.editor()->document()->firstBlock().layout()->formats().isEmpty());
        window.putCursor(1);
        window.editor()->insertPlainText(longValue);
        const QTextBlock first = window.editor()->document()->firstBlock();
        QVERIFY(first.length() - 1 > CodeHighlighter::maxPaintedBlock);
        QVERIFY(first.layout()->formats().isEmpty());
        QVERIFY(!colourAt(window.editor(), 0).isValid());
    }

    // --- Text and model ---

    void typingInAValueKeepsTheRulesetAndRenewsEveryPropertyID()
    {
        CodeWindow window(QStringLiteral(".a {\n    color: red;\n}\n\n.b {\n    margin: 0;\n}\n"));
        const CSSRulesetList before = window.file->rulesets();
        window.workspace.setSelectedRuleset(before[0]);
        const QSet<QUuid> oldIDs = propertyIDs(before);
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"red") + 3);
        QTest::keyClick(window.editor(), Qt::Key_S);
        QCOMPARE(window.file->rulesets(), before);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("reds"));
        QVERIFY(!propertyIDs(window.file->rulesets()).intersects(oldIDs));
        QCOMPARE(window.workspace.selectedRuleset(), before[0]);
        QVERIFY(window.coordinator()->userIsEditing());
        QTRY_VERIFY(window.file->hasUnsavedChanges());
    }

    void typingOverASelectionWithTheSameTextChangesNothing()
    {
        CodeWindow window(QStringLiteral(".a {\n    color: red;\n}\n"));
        QVERIFY(openOnCode(window));
        const QSet<QUuid> ids = propertyIDs(window.file->rulesets());
        QTextCursor cursor = window.editor()->textCursor();
        cursor.setPosition(int(window.coordinator()->text().indexOf(u"red")));
        cursor.setPosition(cursor.position() + 1, QTextCursor::KeepAnchor);
        window.editor()->setTextCursor(cursor);
        QTest::keyClick(window.editor(), Qt::Key_R);
        QCOMPARE(window.coordinator()->text(), window.file->generateCSS());
        QCOMPARE(propertyIDs(window.file->rulesets()), ids);
        QVERIFY(!window.coordinator()->userIsEditing());
    }

    void editedSelectorReplacesTheRulesetAtTheFirstKey()
    {
        CodeWindow window(QStringLiteral(".a {\n    color: red;\n}\n"));
        const CSSRulesetPtr old = window.file->rulesets()[0];
        QVERIFY(openOnCode(window));
        window.putCursor(2);
        QTest::keyClick(window.editor(), Qt::Key_B);
        QCOMPARE(selectorsOf(window.file->rulesets()), QStringList{QStringLiteral(".ab")});
        QVERIFY(window.file->rulesets()[0] != old);
        QVERIFY(window.file->rulesets()[0]->id() != old->id());
    }

    void equalSelectorsKeepTheirObjectsInOrder()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.a {\n    y: 2;\n}\n"));
        const CSSRulesetList before = window.file->rulesets();
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"2") + 1);
        QTest::keyClick(window.editor(), Qt::Key_5);
        QCOMPARE(window.file->rulesets(), before);
        QCOMPARE(window.file->rulesets()[1]->properties()[0].value, QStringLiteral("25"));
    }

    void swappedRulesetsSwapInTheFile()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        const CSSRulesetList before = window.file->rulesets();
        QVERIFY(openOnCode(window));
        window.editor()->selectAll();
        window.editor()->insertPlainText(
            QStringLiteral(".b {\n    y: 2;\n}\n\n.a {\n    x: 1;\n}\n"));
        QCOMPARE(window.file->rulesets(), (CSSRulesetList{before[1], before[0]}));
    }

    void deletingAllTextEmptiesTheFile()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        QVERIFY(openOnCode(window));
        window.editor()->selectAll();
        QTest::keyClick(window.editor(), Qt::Key_Backspace);
        QCOMPARE(window.coordinator()->text(), QString());
        QVERIFY(window.file->rulesets().isEmpty());
    }

    void commentStaysWhileEditingAndGoesOnceTheModelUpdates()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(0);
        CodeTest::type(window.editor(), QStringLiteral("/* note */"));
        QCoreApplication::processEvents();
        // A change of the model while editing leaves the text alone.
        window.workspace.setSelectedRuleset(window.file->rulesets()[0]);
        CanvasTest::endTurn();
        QVERIFY(window.coordinator()->text().startsWith(QStringLiteral("/* note */")));

        // Editing ends with the focus elsewhere; the next update replaces.
        window.view->searchField()->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(!window.coordinator()->userIsEditing());
        QVERIFY(window.coordinator()->text().startsWith(QStringLiteral("/* note */")));
        window.workspace.setSelectedRuleset(nullptr);
        QTRY_COMPARE(window.coordinator()->text(), window.file->generateCSS());
        QVERIFY(!window.coordinator()->text().contains(QStringLiteral("note")));
    }

    void popupOrWindowFocusLossDoesNotEndEditing()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        QTest::keyClick(window.editor(), Qt::Key_Space);
        QVERIFY(window.coordinator()->userIsEditing());
        for (const Qt::FocusReason reason : {Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
            QFocusEvent out(QEvent::FocusOut, reason);
            QApplication::sendEvent(window.editor(), &out);
            QVERIFY(window.coordinator()->userIsEditing());
        }
        QFocusEvent out(QEvent::FocusOut, Qt::MouseFocusReason);
        QApplication::sendEvent(window.editor(), &out);
        QVERIFY(!window.coordinator()->userIsEditing());
    }

    void programReplacementIsNotParsedBack()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        const CSSRulesetPtr ruleset = window.file->rulesets()[0];
        ruleset->setProperties({CSSProperty(QStringLiteral("x"), QStringLiteral("2"))});
        const QSet<QUuid> ids = propertyIDs(window.file->rulesets());
        QTRY_COMPARE(window.coordinator()->text(), window.file->generateCSS());
        // A parse of the replaced text would have renewed the ids.
        QCOMPARE(propertyIDs(window.file->rulesets()), ids);
        QVERIFY(!window.coordinator()->userIsEditing());
    }

    void afterAFileSwitchTypingStillWritesToTheFirstFile()
    {
        CodeWindow window(QStringLiteral(".first {\n    x: 1;\n}\n"));
        const CSSFilePtr first = window.file;
        const auto second = std::make_shared<CSSFile>(
            QStringLiteral("/tmp/canvas-test/second.css"),
            CSSParser::parse(QStringLiteral(".second {\n    y: 2;\n}\n")), QString());
        window.workspace.setFiles({first, second});
        QVERIFY(openOnCode(window));
        window.workspace.setSelectedFile(second);
        QTRY_COMPARE(window.coordinator()->text(), second->generateCSS());
        window.putCursor(window.coordinator()->text().indexOf(u"2") + 1);
        QTest::keyClick(window.editor(), Qt::Key_7);
        QCOMPARE(selectorsOf(first->rulesets()), QStringList{QStringLiteral(".second")});
        QCOMPARE(first->rulesets()[0]->properties()[0].value, QStringLiteral("27"));
        QCOMPARE(second->rulesets()[0]->properties()[0].value, QStringLiteral("2"));
    }

    void textStepsUndoAndRedoThroughTheWindowsHistory()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        const QString original = window.coordinator()->text();
        window.putCursor(original.indexOf(u"1") + 1);
        CodeTest::type(window.editor(), QStringLiteral("23"));
        CanvasTest::endTurn();
        QVERIFY(window.undo->canUndo());
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("123"));

        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.coordinator()->text(), original);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("1"));
        QVERIFY(window.undo->canRedo());

        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("123"));
        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("1"));
        // Text and model steps keep one order.
        window.undo->redo();
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("123"));
    }

    void contextMenuUndoIsTheWindowsUndo()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"1") + 1);
        QTest::keyClick(window.editor(), Qt::Key_9);
        CanvasTest::endTurn();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(20, 20),
                                window.editor()->mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(window.editor()->viewport(), &event);
        QMenu *menu = nullptr;
        QTRY_VERIFY((menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())));
        QVERIFY(menu->actions().contains(window.undo->undoAction()));
        QVERIFY(menu->actions().contains(window.undo->redoAction()));
        menu->close();
        window.undo->undoAction()->trigger();
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("1"));
    }

    void leavingTheTabDropsTheTextSteps()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"1") + 1);
        QTest::keyClick(window.editor(), Qt::Key_9);
        CanvasTest::endTurn();
        QVERIFY(window.undo->canUndo());
        window.clickTab(CanvasTab::Nodes);
        QVERIFY(!window.undo->canUndo());
        window.clickTab(CanvasTab::Code);
        QTRY_VERIFY(window.editor() && window.editor()->hasFocus());
        const QString text = window.coordinator()->text();
        QTest::keyClick(window.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.coordinator()->text(), text);
        QCOMPARE(window.file->rulesets()[0]->properties()[0].value, QStringLiteral("19"));
    }

    void textReplacedByTheModelDropsTheTextSteps()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"1") + 1);
        QTest::keyClick(window.editor(), Qt::Key_9);
        CanvasTest::endTurn();
        QVERIFY(window.undo->canUndo());
        window.view->searchField()->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(!window.coordinator()->userIsEditing());
        // A change that makes no step of its own replaces the text.
        window.file->rulesets()[0]->setProperties(
            {CSSProperty(QStringLiteral("x"), QStringLiteral("2"))});
        QTRY_COMPARE(window.coordinator()->text(), window.file->generateCSS());
        QVERIFY(!window.undo->canUndo());
        QVERIFY(!window.editor()->document()->isUndoAvailable());
    }

    void leavingTheTabRightAfterEnteringPositionsNothing()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        window.workspace.setSelectedRuleset(window.file->rulesets()[1]);
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Code);
        const QPointer<CodeTextEdit> editor = window.editor();
        QVERIFY(editor);
        window.clickTab(CanvasTab::Nodes);
        // The cursor had not gone to ".b" yet: leaving selected the ruleset
        // at the text's start.
        QCOMPARE(window.workspace.selectedRuleset(), window.file->rulesets()[0]);
        // The scheduled positioning finds the tab gone and the view going.
        CodeTest::runPast(200);
        QVERIFY(!editor || editor->textCursor().position() == 0);
        QCOMPARE(window.workspace.selectedRuleset(), window.file->rulesets()[0]);
    }

    void badTextKeepsEveryCharacterAndTheModelFollowsThePartialParse_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("stray brace on top") << QStringLiteral("}\n");
        QTest::newRow("unclosed brace") << QStringLiteral("x {\n");
        QTest::newRow("typed at-rule") << QStringLiteral("@media screen {\n");
    }

    void badTextKeepsEveryCharacterAndTheModelFollowsThePartialParse()
    {
        QFETCH(QString, typed);
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        QVERIFY(openOnCode(window));
        const QString before = window.coordinator()->text();
        window.putCursor(0);
        CodeTest::type(window.editor(), typed);
        QCOMPARE(window.coordinator()->text(), typed + before);
        QCOMPARE(window.editor()->rawText(), typed + before);
        QCOMPARE(contentOf(window.file->rulesets()),
                 contentOf(CSSParser::parse(window.coordinator()->text())));
        QCoreApplication::processEvents();
        QCOMPARE(window.editor()->rawText(), typed + before);
    }

    void awkwardCharactersKeepOffsetsRight()
    {
        CodeWindow window(QStringLiteral(":root {\n    --x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        QString pasted = QStringLiteral("/* ");
        pasted += QChar(QChar::ReplacementCharacter);
        pasted += QChar(0xDC00);
        pasted += QChar(0);
        pasted += QChar(QChar::LineSeparator);
        pasted += QChar(QChar::Nbsp);
        pasted += QStringLiteral(" */\n");
        window.putCursor(0);
        window.editor()->insertPlainText(pasted);
        const QString text = window.coordinator()->text();
        QCOMPARE(text, window.editor()->rawText());
        QVERIFY(text.startsWith(pasted));
        window.putCursor(text.indexOf(u"--x") + 2);
        window.clickTab(CanvasTab::Variables);
        QCOMPARE(window.workspace.selectedVariablePropID(),
                 window.file->rulesets()[0]->properties()[0].id);
    }

    void crLfPastedBecomesOneLineBreak()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        window.editor()->selectAll();
        window.editor()->insertPlainText(QStringLiteral(":root {\r\n    --x: 1;\r\n}\r\n"));
        QCOMPARE(window.coordinator()->text(), QStringLiteral(":root {\n    --x: 1;\n}\n"));
        QCOMPARE(window.coordinator()->text(), window.editor()->rawText());
        window.putCursor(window.coordinator()->text().indexOf(u"--x"));
        window.clickTab(CanvasTab::Variables);
        QCOMPARE(window.workspace.selectedVariablePropID(),
                 window.file->rulesets()[0]->properties()[0].id);
    }

    // --- Cursor and tabs ---

    void cursorInADeclarationSelectsItsRulesetOnTheRulesetsTab()
    {
        CodeWindow window(QStringLiteral(".z {\n    top: 0;\n}\n\n.a {\n    color: red;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"color: red") + 3);
        window.clickTab(CanvasTab::Nodes);
        QCOMPARE(window.workspace.selectedRuleset(), window.file->rulesets()[1]);
    }

    void sameCursorLeavingForTheVariablesChangesNothing()
    {
        CodeWindow window(QStringLiteral(".a {\n    color: red;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"color: red") + 3);
        window.clickTab(CanvasTab::Variables);
        QVERIFY(window.workspace.selectedVariablePropID().isNull());
        QVERIFY(window.workspace.selectedVariableRulesetID().isNull());
        QVERIFY(window.viewState().variableScrollToPropID().isNull());
    }

    void cursorInAVariableSelectsItAndScrollsToIt()
    {
        CodeWindow window(QStringLiteral(":root {\n    --x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u"--x: 1") + 4);
        window.clickTab(CanvasTab::Variables);
        const CSSRulesetPtr root = window.file->rulesets()[0];
        QCOMPARE(window.workspace.selectedVariableRulesetID(), root->id());
        QCOMPARE(window.workspace.selectedVariablePropID(), root->properties()[0].id);
        QCOMPARE(window.viewState().variableScrollToPropID(), root->properties()[0].id);
    }

    void cursorOnTheSelectorLeavingForTheVariablesChangesNothing()
    {
        CodeWindow window(QStringLiteral(":root {\n    --x: 1;\n}\n"));
        QVERIFY(openOnCode(window));
        window.putCursor(2);
        window.clickTab(CanvasTab::Variables);
        QVERIFY(window.workspace.selectedVariablePropID().isNull());
    }

    void cursorInACommentBetweenRulesetsLeavesTheSelection()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        window.workspace.setSelectedRuleset(window.file->rulesets()[1]);
        QVERIFY(openOnCode(window));
        window.putCursor(window.coordinator()->text().indexOf(u".b"));
        window.editor()->insertPlainText(QStringLiteral("/* between */\n"));
        window.putCursor(window.coordinator()->text().indexOf(u"between"));
        window.clickTab(CanvasTab::Nodes);
        QCOMPARE(window.workspace.selectedRuleset(), window.file->rulesets()[1]);
    }

    void enteringTheCodeTabGoesToTheSecondOfTwoEqualSelectors()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.a {\n    y: 2;\n}\n"));
        QVERIFY(window.show());
        QTest::mouseClick(window.viewport(), Qt::LeftButton, {}, window.cardCentre(1));
        QCOMPARE(window.workspace.selectedRuleset(), window.file->rulesets()[1]);
        window.clickTab(CanvasTab::Code);
        const QString text = window.coordinator()->text();
        QTRY_COMPARE(window.editor()->textCursor().position(), text.lastIndexOf(u".a"));
        QVERIFY(window.editor()->hasFocus());
    }

    void selectedBtnGoesToTheEarlierBtnLarge()
    {
        CodeWindow window(QStringLiteral(".btn-large {\n    a: b;\n}\n\n.btn {\n    c: d;\n}\n"));
        window.workspace.setSelectedRuleset(window.file->rulesets()[1]);
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Code);
        QTRY_VERIFY(window.editor()->hasFocus());
        QCOMPARE(window.editor()->textCursor().position(), 0);
    }

    void spacedColonIsFoundLeavingForTheVariables()
    {
        CodeWindow window{QString()};
        QVERIFY(openOnCode(window));
        CodeTest::type(window.editor(), QStringLiteral(":root {\n    --x :1;\n}\n"));
        window.putCursor(window.coordinator()->text().indexOf(u":1"));
        window.clickTab(CanvasTab::Variables);
        QCOMPARE(window.workspace.selectedVariablePropID(),
                 window.file->rulesets()[0]->properties()[0].id);
    }

    void blankSelectorIsNotPositioned()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        const auto blank = std::make_shared<CSSRuleset>(QStringLiteral(" "));
        window.file->setRulesets(window.file->rulesets() + CSSRulesetList{blank});
        window.workspace.setSelectedRuleset(blank);
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Code);
        QVERIFY(window.editor());
        const int before = window.editor()->textCursor().position();
        CodeTest::runPast(200);
        QCOMPARE(window.editor()->textCursor().position(), before);
        QVERIFY(!window.editor()->hasFocus());
    }

    void enteringFromTheVariablesGoesToTheVariablesLine()
    {
        const QString longValue(120, QLatin1Char('x'));
        CodeWindow window(
            QStringLiteral(".a {\n    top: 0;\n}\n\n:root {\n    --a: 1;\n    --b: ") + longValue +
            QStringLiteral(";\n}\n"));
        const CSSRulesetPtr root = window.file->rulesets()[1];
        window.workspace.setSelectedRuleset(window.file->rulesets()[0]);
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Variables);
        window.workspace.setSelectedVariableRulesetID(root->id());
        window.workspace.setSelectedVariablePropID(root->properties()[1].id);
        window.clickTab(CanvasTab::Code);
        const QString text = window.coordinator()->text();
        QTRY_COMPARE(window.editor()->textCursor().position(), text.indexOf(u"    --b"));
        QVERIFY(window.editor()->hasFocus());
        // The jump stays the target while the tab shows, positioned once: a
        // later selection change positions the cursor on its ruleset.
        window.workspace.setSelectedRuleset(root);
        QTRY_COMPARE(window.editor()->textCursor().position(), text.indexOf(u":root"));
    }

    void enteringFromTheVariablesWithoutAVariableUsesTheSelectedRuleset()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        window.workspace.setSelectedRuleset(window.file->rulesets()[1]);
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Variables);
        window.clickTab(CanvasTab::Code);
        QVERIFY(window.viewState().codeJumpPropID().isNull());
        QTRY_COMPARE(window.editor()->textCursor().position(),
                     window.coordinator()->text().indexOf(u".b"));
    }

    void selectionChangedWhileOnTheCodeTabMovesTheCursor()
    {
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n\n.b {\n    y: 2;\n}\n"));
        QVERIFY(openOnCode(window));
        window.workspace.setSelectedRuleset(window.file->rulesets()[1]);
        QTRY_COMPARE(window.editor()->textCursor().position(),
                     window.coordinator()->text().indexOf(u".b"));
    }
};

QTEST_MAIN(TestCodeEditor)
#include "tst_codeeditor.moc"
