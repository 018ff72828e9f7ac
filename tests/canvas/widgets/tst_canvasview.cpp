#include "CanvasViewTestSupport.h"

#include "canvas/NodeRoles.h"
#include "canvas/widgets/CanvasTabButtons.h"
#include "canvas/widgets/EmptyFileView.h"
#include "canvas/widgets/NewRulesetSheet.h"
#include "canvas/widgets/NewVariableSheet.h"
#include "canvas/widgets/NodeDelegate.h"
#include "canvas/widgets/SelectionFade.h"
#include "canvas/widgets/TabContentArea.h"
#include "widgets/ComboBox.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/AppPreferences.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

using namespace Ombrel;
using CanvasTest::CanvasWindow;
using CanvasTest::clickAt;

namespace {

// Notes the region of each paint of a widget.
class PaintRecorder : public QObject
{
public:
    explicit PaintRecorder(QWidget *widget) { widget->installEventFilter(this); }

    QList<QRegion> regions;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            regions.append(static_cast<QPaintEvent *>(event)->region());
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class TestCanvasView : public QObject
{
    Q_OBJECT

    static QStringList rows(const CanvasWindow &canvas)
    {
        QStringList list;
        for (int row = 0; row < canvas.view->nodeModel()->rowCount(); ++row)
            list.append(canvas.view->nodeModel()->index(row).data().toString());
        return list;
    }

    // The colour at the middle of the card's left edge, where a selected
    // card has its stroke.
    static QRgb strokeOf(const CanvasWindow &canvas, int row)
    {
        const QRect item = canvas.list()->visualRect(canvas.view->nodeModel()->index(row));
        const QImage image = canvas.viewport()->grab(item).toImage();
        return image.pixel(NodeDelegate::cardMargin, image.height() / 2);
    }

private Q_SLOTS:
    void theFilterFieldStandsBesideItsSymbolInAWideWindow()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets, QSize(1000, 400));
        QVERIFY(canvas.show());
        ToolbarTextField *field = canvas.view->searchField();
        QLabel *symbol = field->parentWidget()->findChild<QLabel *>(QStringLiteral("searchSymbol"));
        QVERIFY(symbol);
        QCOMPARE(symbol->width(), 11);
        QCOMPARE(field->width(), 120);
        // The row's spacing of 4 between them, and nothing more.
        QCOMPARE(field->geometry().left() - symbol->geometry().right() - 1, 4);
        // The box ends where its field (and the hidden clear button) end.
        QCOMPARE(field->parentWidget()->width(), 8 + 11 + 4 + 120 + 8);
    }

    void plainShiftAndControlClicksSelect()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 1000);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B"}));
        clickAt(canvas.viewport(), canvas.cardCentre(3), Qt::ShiftModifier, 3000);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B", "C", "D"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::ControlModifier, 5000);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B", "D"}));
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::ControlModifier, 7000);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
        QVERIFY(canvas.view->nodeModel()->index(3).data(NodeRoles::Selected).toBool());
        QVERIFY(!canvas.view->nodeModel()->index(1).data(NodeRoles::Selected).toBool());
    }

    void shiftClickWithoutPrimaryIsAPlainClick()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::ShiftModifier, 1000);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C"}));
    }

    void aSecondClickWithinTheIntervalOpensTheEditor_data()
    {
        QTest::addColumn<ulong>("gap");
        QTest::addColumn<bool>("renames");
        QTest::newRow("349 ms") << ulong(349) << true;
        QTest::newRow("exactly 350 ms") << ulong(350) << false;
    }
    void aSecondClickWithinTheIntervalOpensTheEditor()
    {
        QFETCH(ulong, gap);
        QFETCH(bool, renames);
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 10'000);
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 10'000 + gap);
        QCOMPARE(canvas.list()->selectorEditor() != nullptr, renames);
        QCOMPARE(canvas.viewState().editingRulesetID() == canvas.at(2)->id(), renames);
        if (renames)
            QTRY_VERIFY(canvas.list()->selectorEditor()->hasFocus());
    }

    void doubleClickWithRealEventsAfterTheIntervalDoesNotRename()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        // QTest spaces its clicks further apart than a double click.
        QTest::mouseClick(canvas.viewport(), Qt::LeftButton, {}, canvas.cardCentre(1));
        QTest::mouseClick(canvas.viewport(), Qt::LeftButton, {}, canvas.cardCentre(1));
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
    }

    void quickClicksOnTwoCardsSelectTheSecond()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 1100);
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        QVERIFY(!canvas.list()->selectorEditor());
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
    }

    void doubleClickInAMultiSelectionCollapsesThenRenames()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::ShiftModifier, 2000);
        QCOMPARE(canvas.workspace.selectedRulesetIDs().size(), 3);
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 3000);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B"}));
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 3200);
        QCOMPARE(canvas.viewState().editingRulesetID(), canvas.at(1)->id());
    }

    void aThirdQuickClickRenamesTheSameCardAgain()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1200);
        QCOMPARE(canvas.viewState().editingRulesetID(), canvas.at(1)->id());
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1400);
        QCOMPARE(canvas.viewState().editingRulesetID(), canvas.at(1)->id());
        QVERIFY(canvas.list()->selectorEditor());
        QCOMPARE(canvas.at(1)->selector(), QStringLiteral("B"));
    }

    void returnInTheEditorRenamesAndEscapeCancels()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1100);
        QWidget *editor = canvas.list()->selectorEditor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, QStringLiteral("  .hero "));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral(".hero"));
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        QTRY_VERIFY(!canvas.list()->selectorEditor());
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Rename Ruleset"));

        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 5000);
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 5100);
        editor = canvas.list()->selectorEditor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClicks(editor, QStringLiteral("zzz"));
        QTest::keyClick(editor, Qt::Key_Escape);
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        QCOMPARE(canvas.at(1)->selector(), QStringLiteral("B"));
    }

    void aClickOnTheBackgroundCommitsTheRename()
    {
        CanvasWindow canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }"));
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1100);
        QWidget *editor = canvas.list()->selectorEditor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClicks(editor, QStringLiteral("X"));
        clickAt(canvas.viewport(), QPoint(40, canvas.viewport()->height() - 10), Qt::NoModifier,
                3000);
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral("AX"));
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
    }

    void draggingPastTheTopGivesIndexZero()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        const QPoint start = canvas.cardCentre(3);
        QTest::mousePress(canvas.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(canvas.viewport(), start + QPoint(0, 5));
        QVERIFY(canvas.viewState().draggingRulesetID().isNull());
        QTest::mouseMove(canvas.viewport(), start - QPoint(0, 900));
        QCOMPARE(canvas.viewState().draggingRulesetID(), canvas.at(3)->id());
        QCOMPARE(canvas.viewState().dropTargetIndex(), std::optional<int>(0));
        const QRect line = canvas.list()->dropLineRect();
        QVERIFY(!line.isEmpty());
        QVERIFY(line.bottom() <=
                canvas.list()->visualRect(canvas.view->nodeModel()->index(0)).top() +
                    NodeDelegate::cardMargin);
        QTest::mouseRelease(canvas.viewport(), Qt::LeftButton, {}, start - QPoint(0, 900));
        QCOMPARE(canvas.selectors(), (QStringList{"D", "A", "B", "C", "E"}));
        QCOMPARE(rows(canvas), canvas.selectors());
        QVERIFY(canvas.viewState().draggingRulesetID().isNull());
        QVERIFY(canvas.list()->dropLineRect().isEmpty());
        // A drag is not a click: the selection did not move.
        QCOMPARE(canvas.workspace.selectedRuleset(), nullptr);
    }

    void draggingPastTheBottomDrawsTheLineBehindTheLastCard()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        const QPoint start = canvas.cardCentre(1);
        QTest::mousePress(canvas.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(canvas.viewport(), start + QPoint(0, 2000));
        QCOMPARE(canvas.viewState().dropTargetIndex(), std::optional<int>(5));
        const QRect last = canvas.list()->visualRect(canvas.view->nodeModel()->index(4));
        const QRect line = canvas.list()->dropLineRect();
        QVERIFY(!line.isEmpty());
        QVERIFY(line.top() >= last.bottom() - NodeDelegate::cardMargin);
        QTest::mouseRelease(canvas.viewport(), Qt::LeftButton, {}, start + QPoint(0, 2000));
        QCOMPARE(canvas.selectors(), (QStringList{"A", "C", "D", "E", "B"}));
        canvas.undo->undo();
        QCOMPARE(rows(canvas), (QStringList{"A", "B", "C", "D", "E"}));
    }

    void draggingACardOfAMultiSelectionMovesTheBlock()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(3), Qt::ControlModifier, 2000);
        // D dragged one row down points at E, the next unselected card.
        const QPoint start = canvas.cardCentre(3);
        QTest::mousePress(canvas.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(canvas.viewport(), start + QPoint(0, 54));
        QCOMPARE(canvas.viewState().dropTargetIndex(), std::optional<int>(4));
        QVERIFY(canvas.ctl().isDragged(*canvas.at(1)));
        QTest::mouseRelease(canvas.viewport(), Qt::LeftButton, {}, start + QPoint(0, 54));
        QCOMPARE(canvas.selectors(), (QStringList{"A", "C", "B", "D", "E"}));
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Move Rulesets"));
    }

    void aFilterHidesRulesetsAndStopsDragging()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        canvas.view->searchField()->setFocus();
        QTest::keyClicks(canvas.view->searchField(), QStringLiteral("color"));
        QCOMPARE(canvas.viewState().searchText(), QStringLiteral("color"));
        QCOMPARE(rows(canvas), (QStringList{"A", "B"}));
        const QPoint start = canvas.cardCentre(0);
        QTest::mousePress(canvas.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(canvas.viewport(), start + QPoint(0, 200));
        QVERIFY(canvas.viewState().draggingRulesetID().isNull());
        QVERIFY(canvas.list()->dropLineRect().isEmpty());
        QTest::mouseRelease(canvas.viewport(), Qt::LeftButton, {}, start + QPoint(0, 200));
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
        // The press on the list left the filter field.
        QVERIFY(!canvas.viewState().searchFocused());
    }

    void aFilterFindsByValueAndSaysWhenNothingMatches()
    {
        CanvasWindow canvas(QStringLiteral(".x { color: red }\n.y { top: 0 }"));
        QVERIFY(canvas.show());
        canvas.viewState().setSearchText(QStringLiteral("red"));
        QCOMPARE(rows(canvas), QStringList{QStringLiteral(".x")});
        QCOMPARE(canvas.view->currentNodePage(), canvas.list());
        canvas.viewState().setSearchText(QStringLiteral(" nothing "));
        QCOMPARE(canvas.view->currentNodePage(), canvas.view->noMatchView());
        const QList<QLabel *> labels = canvas.view->noMatchView()->findChildren<QLabel *>();
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](QLabel *label) {
            return label->text() == QStringLiteral("No rulesets match \" nothing \"");
        }));
        QVERIFY(canvas.view->searchField()->parentWidget()->isVisible());
    }

    void pagesAndSheetsAreMadeWhenFirstNeeded()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        QCOMPARE(canvas.view->currentNodePage(), canvas.list());
        QVERIFY(!canvas.view->emptyFileView());
        QVERIFY(!canvas.view->noMatchView());
        QVERIFY(!canvas.view->newRulesetSheet());
        QVERIFY(!canvas.view->newVariableSheet());

        canvas.viewState().setSearchText(QStringLiteral("zzz"));
        QWidget *noMatch = canvas.view->noMatchView();
        QVERIFY(noMatch);
        QCOMPARE(canvas.view->currentNodePage(), noMatch);
        // Made once: it stays for the next time.
        canvas.viewState().setSearchText(QString());
        QCOMPARE(canvas.view->currentNodePage(), canvas.list());
        canvas.viewState().setSearchText(QStringLiteral("yyy"));
        QCOMPARE(canvas.view->noMatchView(), noMatch);
        QCOMPARE(canvas.view->currentNodePage(), noMatch);
        QVERIFY(!canvas.view->emptyFileView());
    }

    void escapeInTheFilterEmptiesItAndLeavesIt()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        ToolbarTextField *field = canvas.view->searchField();
        field->setFocus();
        QTRY_VERIFY(canvas.viewState().searchFocused());
        QTest::keyClicks(field, QStringLiteral("top"));
        QCOMPARE(rows(canvas), QStringList{QStringLiteral("E")});
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(field->text().isEmpty());
        QVERIFY(canvas.viewState().searchText().isEmpty());
        QVERIFY(!canvas.viewState().searchFocused());
        QTRY_VERIFY(!field->hasFocus());
        QCOMPARE(rows(canvas).size(), 5);
    }

    void theEmptyStateShowsWithAFilterOnceNoRulesetIsLeft()
    {
        CanvasWindow canvas(QStringLiteral(".only { top: 0 }"));
        QVERIFY(canvas.show());
        canvas.viewState().setSearchText(QStringLiteral("zzz"));
        QCOMPARE(canvas.view->currentNodePage(), canvas.view->noMatchView());
        canvas.ctl().operations().deleteRuleset(canvas.at(0));
        QCOMPARE(canvas.view->currentNodePage(), canvas.view->emptyFileView());
        const QList<QLabel *> labels = canvas.view->emptyFileView()->findChildren<QLabel *>();
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](QLabel *label) {
            return label->text() == QStringLiteral("This file is empty.");
        }));
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](QLabel *label) {
            return label->text() == QStringLiteral("style.css");
        }));
        QVERIFY(!canvas.view->searchField()->parentWidget()->isVisible());
    }

    void theEmptyStateButtonsStartTheSheets()
    {
        CanvasWindow canvas(QString{});
        QVERIFY(canvas.show());
        const QList<QPushButton *> buttons =
            canvas.view->emptyFileView()->findChildren<QPushButton *>();
        QPushButton *newRuleset = nullptr;
        QPushButton *newVariable = nullptr;
        for (QPushButton *button : buttons) {
            if (button->text() == QStringLiteral("New Ruleset"))
                newRuleset = button;
            if (button->text() == QStringLiteral("New Variable"))
                newVariable = button;
        }
        QVERIFY(newRuleset && newVariable);
        QTest::mouseClick(newVariable, Qt::LeftButton);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Variables);
        QTRY_VERIFY(canvas.view->newVariableSheet() &&
                    canvas.view->newVariableSheet()->isVisible());
        QCOMPARE(canvas.viewState().newVariableSelector(), QStringLiteral(":root"));
        // No rulesets to pick from: the name takes the focus.
        QVERIFY(canvas.view->newVariableSheet()->selectorBox()->isHidden());
        QTRY_VERIFY(canvas.view->newVariableSheet()->nameField()->hasFocus());
        QTest::keyClick(canvas.view->newVariableSheet()->nameField(), Qt::Key_Escape);
        QTRY_VERIFY(!canvas.view->newVariableSheet()->isVisible());
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QTest::mouseClick(newRuleset, Qt::LeftButton);
        QTRY_VERIFY(canvas.view->newRulesetSheet() && canvas.view->newRulesetSheet()->isVisible());
    }

    void returnAndTabWithASelectedCardGoToTheInspector_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("tab") << int(Qt::Key_Tab);
    }
    void returnAndTabWithASelectedCardGoToTheInspector()
    {
        QFETCH(int, key);
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 1000);
        QTRY_VERIFY(canvas.list()->hasFocus());
        QTest::keyClick(canvas.list(), Qt::Key(key));
        QVERIFY(!canvas.workspace.shouldFocusPropertyPanel());
        QTRY_VERIFY(canvas.workspace.shouldFocusPropertyPanel());
        // The key was taken: the focus did not move on.
        QVERIFY(canvas.list()->hasFocus());
    }

    void upAndDownMoveTheSelectionAndShiftExtendsIt()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        canvas.list()->setFocus();
        QTRY_VERIFY(canvas.list()->hasFocus());
        // With nothing selected Down starts at the first card.
        QTest::keyClick(canvas.list(), Qt::Key_Down);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));

        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key_Down);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C"}));
        QTest::keyClick(canvas.list(), Qt::Key_Down);
        QTest::keyClick(canvas.list(), Qt::Key_Up);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));

        QTest::keyClick(canvas.list(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(canvas.list(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C", "D", "E"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        QTest::keyClick(canvas.list(), Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C", "D"}));
        QTest::keyClick(canvas.list(), Qt::Key_Up, Qt::ShiftModifier);
        QTest::keyClick(canvas.list(), Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B", "C"}));
        QVERIFY(canvas.view->nodeModel()->index(1).data(NodeRoles::Selected).toBool());

        // A plain key goes on from where Shift left the keyboard, alone.
        QTest::keyClick(canvas.list(), Qt::Key_Up);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A"}));
        QTest::keyClick(canvas.list(), Qt::Key_Up);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        // Moving by keys is no click: a click that follows does not rename.
        QVERIFY(canvas.viewState().editingRulesetID().isNull());
        QVERIFY(canvas.list()->hasFocus());
    }

    void homeAndEndGoToTheEndsOfTheList()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key_End);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(4));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"E"}));
        QTest::keyClick(canvas.list(), Qt::Key_Home, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A", "B", "C", "D", "E"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(4));
        QTest::keyClick(canvas.list(), Qt::Key_Home);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A"}));
        QTest::keyClick(canvas.list(), Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A", "B", "C", "D", "E"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
    }

    // The keys walk the cards the filter shows; Shift, like Shift-click,
    // takes in the rulesets hidden between.
    void keysWalkTheCardsTheFilterShows()
    {
        CanvasWindow canvas(QStringLiteral(
            "A { color: red; }\nB { top: 0; }\nC { color: red; }\nD { color: red; }"));
        QVERIFY(canvas.show());
        canvas.viewState().setSearchText(QStringLiteral("red"));
        QCOMPARE(rows(canvas), (QStringList{"A", "C", "D"}));
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key_Down);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.named("C"));
        QTest::keyClick(canvas.list(), Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A", "B", "C"}));
    }

    void keysBringTheCardIntoView()
    {
        QString css;
        for (int i = 0; i < 200; ++i)
            css += QStringLiteral(".r%1 { top: 0; }\n").arg(i);
        CanvasWindow canvas(css);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(0), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key_End);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(199));
        const QRect last = canvas.list()->visualRect(canvas.view->nodeModel()->index(199));
        QVERIFY(canvas.viewport()->rect().contains(last));
        QTest::keyClick(canvas.list(), Qt::Key_Home);
        QCOMPARE(canvas.list()->verticalScrollBar()->value(), 0);
        for (int i = 0; i < 30; ++i)
            QTest::keyClick(canvas.list(), Qt::Key_Down);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(30));
        QVERIFY(canvas.viewport()->rect().contains(
            canvas.list()->visualRect(canvas.view->nodeModel()->index(30))));
    }

    void deleteAndBackspaceDeleteTheSelectedCardWithItsUndoStep_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("delete") << int(Qt::Key_Delete);
        QTest::newRow("backspace") << int(Qt::Key_Backspace);
    }
    void deleteAndBackspaceDeleteTheSelectedCardWithItsUndoStep()
    {
        QFETCH(int, key);
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        canvas.list()->setFocus();
        QTRY_VERIFY(canvas.list()->hasFocus());
        // Nothing selected: nothing to delete.
        QTest::keyClick(canvas.list(), Qt::Key(key));
        QCOMPARE(canvas.selectors().size(), 5);

        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key(key));
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "D", "E"}));
        QCOMPARE(rows(canvas), canvas.selectors());
        // As "Delete" of the context menu: the first card is selected next.
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        CanvasTest::endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Delete Ruleset"));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
        QVERIFY(!canvas.undo->canRedo());
    }

    void f2RenamesTheSelectedCard()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(3), Qt::NoModifier, 1000);
        QTest::keyClick(canvas.list(), Qt::Key_F2);
        QCOMPARE(canvas.viewState().editingRulesetID(), canvas.at(3)->id());
        QWidget *editor = canvas.list()->selectorEditor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClicks(editor, QStringLiteral("2"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(canvas.at(3)->selector(), QStringLiteral("D2"));
    }

    // A card dragged far stays under the pointer: the drop index counts the
    // rows the list paints, whatever their height.
    void aLongDragDropsOnTheRowUnderThePointer_data()
    {
        QTest::addColumn<bool>("styled");
        QTest::newRow("styled") << true;
        QTest::newRow("plain") << false;
    }
    void aLongDragDropsOnTheRowUnderThePointer()
    {
        QFETCH(bool, styled);
        AppPreferences::shared().setShowNodeStyling(styled);
        QString css;
        for (int i = 0; i < 60; ++i)
            css += QStringLiteral(".r%1 { top: 0; }\n").arg(i);
        CanvasWindow canvas(css, QSize(520, 2900));
        QVERIFY(canvas.show());
        QVERIFY(canvas.viewport()->height() > 42 * canvas.list()->rowPitch());
        const QPoint start = canvas.cardCentre(1);
        const QPoint end = canvas.cardCentre(41);
        QCOMPARE(canvas.list()->indexAt(end).row(), 41);
        QTest::mousePress(canvas.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(canvas.viewport(), start + QPoint(0, 20));
        QTest::mouseMove(canvas.viewport(), end);
        QCOMPARE(canvas.viewState().dropTargetIndex(), std::optional<int>(41));
        const QRect line = canvas.list()->dropLineRect();
        const QRect target = canvas.list()->visualRect(canvas.view->nodeModel()->index(41));
        QVERIFY(line.top() >= target.top() - NodeDelegate::cardMargin);
        QVERIFY(line.bottom() <= target.top() + NodeDelegate::cardMargin);
        QTest::mouseRelease(canvas.viewport(), Qt::LeftButton, {}, end);
        QCOMPARE(canvas.at(40)->selector(), QStringLiteral(".r1"));
        AppPreferences::shared().setShowNodeStyling(true);
    }

    void eachCardTellsAssistiveTechnologyItsSelectorAndSelection()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(canvas.list());
        QVERIFY(list && list->tableInterface());
        const auto card = [list](int row) { return list->tableInterface()->cellAt(row, 0); };
        QCOMPARE(list->tableInterface()->rowCount(), 5);
        QCOMPARE(card(1)->text(QAccessible::Name), QStringLiteral("B"));
        QVERIFY(!card(1)->state().selected);

        clickAt(canvas.viewport(), canvas.cardCentre(1), Qt::NoModifier, 1000);
        QVERIFY(card(1)->state().selected);
        QVERIFY(card(1)->state().focused);
        QTest::keyClick(canvas.list(), Qt::Key_Down, Qt::ShiftModifier);
        QVERIFY(card(1)->state().selected);
        QVERIFY(card(2)->state().selected);
        QVERIFY(card(2)->state().focused);
        QVERIFY(!card(3)->state().selected);
        QCOMPARE(list->tableInterface()->selectedCellCount(), 2);

        canvas.at(2)->setSelector(QStringLiteral("C2"));
        QCOMPARE(card(2)->text(QAccessible::Name), QStringLiteral("C2"));
        canvas.viewState().setSearchText(QStringLiteral("C2"));
        QCOMPARE(list->tableInterface()->rowCount(), 1);
        QVERIFY(card(0)->state().selected);
    }

    void returnWhileRenamingOrInTheFilterStaysThere()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 1000);
        clickAt(canvas.viewport(), canvas.cardCentre(2), Qt::NoModifier, 1100);
        QWidget *editor = canvas.list()->selectorEditor();
        QVERIFY(editor);
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClick(editor, Qt::Key_Return);
        QVERIFY(canvas.viewState().editingRulesetID().isNull());

        canvas.view->searchField()->setFocus();
        QTRY_VERIFY(canvas.viewState().searchFocused());
        QTest::keyClick(canvas.view->searchField(), Qt::Key_Return);
        QTest::keyClick(canvas.view->searchField(), Qt::Key_Tab);
        // A later turn of the event loop would have raised it.
        CanvasTest::endTurn();
        CanvasTest::endTurn();
        QVERIFY(!canvas.workspace.shouldFocusPropertyPanel());
    }

    void aTabWithAPaneFactoryShowsTheMadePaneUnderTheTabsName()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        CanvasController *madeWith = nullptr;
        canvas.view->setPaneFactory(CanvasTab::Variables, [&](CanvasController &controller) {
            madeWith = &controller;
            auto *pane = new QLabel(QStringLiteral("variables"));
            return pane;
        });
        QVERIFY(!madeWith);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        QCOMPARE(madeWith, &canvas.ctl());
        auto *pane = qobject_cast<QLabel *>(canvas.view->currentPane());
        QVERIFY(pane);
        QCOMPARE(pane->text(), QStringLiteral("variables"));
        QCOMPARE(pane->objectName(), QStringLiteral("variablesPane"));

        // Set while its tab shows, a factory brings its pane at once.
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Code), Qt::LeftButton);
        canvas.view->setPaneFactory(
            CanvasTab::Code, [](CanvasController &) { return new QLabel(QStringLiteral("code")); });
        pane = qobject_cast<QLabel *>(canvas.view->currentPane());
        QVERIFY(pane);
        QCOMPARE(pane->text(), QStringLiteral("code"));
        QCOMPARE(pane->objectName(), QStringLiteral("codePane"));
    }

    void focusSearchOnTheCodeTabSwitchesToTheRulesetsAndFocusesTheFilter()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Code), Qt::LeftButton);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Code);
        QCOMPARE(canvas.view->currentPane()->objectName(), QStringLiteral("codePane"));
        QVERIFY(!canvas.view->nodeList());
        QVERIFY(canvas.view->plusButton()->isHidden());
        canvas.workspace.setShouldFocusSearch(true);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Nodes);
        QTRY_VERIFY(canvas.view->searchField()->hasFocus());
        QVERIFY(canvas.view->plusButton()->isVisible());
    }

    void theRulesetSheetAddsWhatIsTyped()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        canvas.workspace.setShouldShowNewRulesetSheet(true);
        QTRY_VERIFY(canvas.view->newRulesetSheet());
        NewRulesetSheet *sheet = canvas.view->newRulesetSheet();
        QTRY_VERIFY(sheet->isVisible());
        QTRY_VERIFY(sheet->selectorField()->hasFocus());
        QVERIFY(!sheet->addButton()->isEnabled());
        QTest::keyClicks(sheet->selectorField(), QStringLiteral("   "));
        QVERIFY(!sheet->addButton()->isEnabled());
        QTest::keyClick(sheet->selectorField(), Qt::Key_Return);
        QVERIFY(sheet->isVisible());
        QTest::keyClicks(sheet->selectorField(), QStringLiteral(".card"));
        QVERIFY(sheet->addButton()->isEnabled());
        QTest::keyClick(sheet->selectorField(), Qt::Key_Return);
        QTRY_VERIFY(!sheet->isVisible());
        QCOMPARE(canvas.selectors().last(), QStringLiteral(".card"));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(5));
        QCOMPARE(canvas.viewState().scrollToID(), canvas.at(5)->id());

        // Opened again, it starts empty.
        canvas.view->plusButton()->click();
        QTRY_VERIFY(sheet->isVisible());
        QVERIFY(sheet->selectorField()->text().isEmpty());
        QTest::keyClick(sheet->selectorField(), Qt::Key_Escape);
        QTRY_VERIFY(!sheet->isVisible());
        QCOMPARE(canvas.file->rulesets().size(), 6);
    }

    void aRulesetAddedFromTheVariablesTabShowsOnTheRulesetsTab()
    {
        QString css;
        for (int i = 0; i < 40; ++i)
            css += QStringLiteral(".card-%1 { color: red; }\n").arg(i);
        CanvasWindow canvas(css);
        QVERIFY(canvas.show());
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        canvas.workspace.setShouldShowNewRulesetSheet(true);
        QTRY_VERIFY(canvas.view->newRulesetSheet());
        NewRulesetSheet *sheet = canvas.view->newRulesetSheet();
        QTRY_VERIFY(sheet->isVisible());
        QTest::keyClicks(sheet->selectorField(), QStringLiteral(".added"));
        QTest::keyClick(sheet->selectorField(), Qt::Key_Return);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Nodes);
        QVERIFY(canvas.list());
        QCOMPARE(canvas.view->nodeModel()->rowCount(), 41);
        // The new list scrolls to the new card, at the end.
        QTRY_COMPARE(canvas.viewState().scrollToID(), canvas.at(40)->id());
        QTRY_VERIFY(canvas.list()->viewport()->rect().contains(
            canvas.list()->visualRect(canvas.view->nodeModel()->index(40))));
        QTRY_VERIFY(!canvas.list()->selectionFade()->isRunning());
        QVERIFY(canvas.view->nodeModel()->index(40).data(NodeRoles::Selected).toBool());
    }

    void theVariableSheetMovesFromNameToValueAndAdds()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        canvas.workspace.setShouldAddVariable(true);
        QTRY_VERIFY(canvas.view->newVariableSheet());
        NewVariableSheet *sheet = canvas.view->newVariableSheet();
        QTRY_VERIFY(sheet->isVisible());
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Variables);
        QCOMPARE(sheet->selectorBox()->currentText(), QStringLiteral("A"));
        QCOMPARE(sheet->selectorBox()->count(), 5);
        QCOMPARE(sheet->nameField()->text(), QStringLiteral("--"));
        QTRY_VERIFY(sheet->selectorBox()->hasFocus());
        // Tab in the box goes to the name.
        sheet->selectorBox()->setEditText(QStringLiteral(".new"));
        QTest::keyClick(sheet->selectorBox(), Qt::Key_Tab);
        QTRY_VERIFY(sheet->nameField()->hasFocus());
        QTest::keyClicks(sheet->nameField(), QStringLiteral("gap"));
        QVERIFY(!sheet->addButton()->isEnabled());
        QTest::keyClick(sheet->nameField(), Qt::Key_Return);
        QVERIFY(sheet->valueField()->hasFocus());
        QVERIFY(sheet->isVisible());
        QTest::keyClicks(sheet->valueField(), QStringLiteral(" 4px "));
        QVERIFY(sheet->addButton()->isEnabled());
        QTest::keyClick(sheet->valueField(), Qt::Key_Return);
        QTRY_VERIFY(!sheet->isVisible());
        const CSSRulesetPtr made = canvas.named(QStringLiteral(".new"));
        QVERIFY(made);
        QCOMPARE(made->properties().first().name, QStringLiteral("--gap"));
        QCOMPARE(made->properties().first().value, QStringLiteral("4px"));
    }

    void theContextMenuRenamesDuplicatesAndDeletes()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        const auto choose = [&canvas](int row, const QString &item) {
            Q_EMIT canvas.list()->customContextMenuRequested(canvas.cardCentre(row));
            QMenu *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            QStringList items;
            for (QAction *action : menu->actions())
                items.append(action->text());
            QCOMPARE(items, (QStringList{"Rename", "Duplicate", "", "Delete"}));
            for (QAction *action : menu->actions()) {
                if (action->text() == item)
                    action->trigger();
            }
            menu->close();
        };
        choose(1, QStringLiteral("Duplicate"));
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "B", "C", "D", "E"}));
        choose(0, QStringLiteral("Delete"));
        QCOMPARE(canvas.selectors(), (QStringList{"B", "B", "C", "D", "E"}));
        choose(3, QStringLiteral("Rename"));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
        QCOMPARE(canvas.viewState().editingRulesetID(), canvas.at(3)->id());
        QVERIFY(canvas.list()->selectorEditor());
    }

    void tabButtonsSwitchPanesAndTheToolbar()
    {
        CanvasWindow canvas(QStringLiteral(":root { --a: 1px; }"));
        QVERIFY(canvas.show());
        QVERIFY(canvas.view->searchField()->isVisible());
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Variables);
        QVERIFY(!canvas.view->searchField()->isVisible());
        QVERIFY(canvas.view->variableSearchField()->isVisible());
        QVERIFY(canvas.view->plusButton()->isVisible());
        QCOMPARE(canvas.view->tabButton(CanvasTab::Variables)->font().weight(), QFont::DemiBold);
        QCOMPARE(canvas.view->tabButton(CanvasTab::Nodes)->font().weight(), QFont::Normal);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QCOMPARE(canvas.view->currentNodePage(), canvas.list());
    }

    void theSelectionStrokeFadesInAndOut()
    {
        AppPreferences::shared().setShowNodeStyling(true);
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        const QColor accent(0x00, 0x63, 0xe1);
        const QColor base(Qt::white);
        QPalette palette = canvas.window.palette();
        palette.setColor(QPalette::Highlight, accent);
        palette.setColor(QPalette::Base, base);
        canvas.window.setPalette(palette);
        QVERIFY(canvas.show());
        SelectionFade *fade = canvas.list()->selectionFade();
        QCOMPARE(strokeOf(canvas, 1), base.rgb());

        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1000);
        QVERIFY(canvas.view->nodeModel()->index(1).data(NodeRoles::Selected).toBool());
        // The stroke has not come in yet.
        QVERIFY(fade->isRunning());
        QCOMPARE(strokeOf(canvas, 1), base.rgb());
        QTRY_VERIFY(!fade->isRunning());
        QCOMPARE(strokeOf(canvas, 1), accent.rgb());

        clickAt(canvas.viewport(), canvas.cardEnd(3), Qt::NoModifier, 3000);
        // The card left behind keeps its stroke for a moment.
        QCOMPARE(strokeOf(canvas, 1), accent.rgb());
        QCOMPARE(strokeOf(canvas, 3), base.rgb());
        QTRY_COMPARE(strokeOf(canvas, 3), accent.rgb());
        QTRY_COMPARE(strokeOf(canvas, 1), base.rgb());
        QTRY_VERIFY(!fade->isRunning());

        // A card clicked back during its fade turns from where it stood.
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 5000);
        clickAt(canvas.viewport(), canvas.cardEnd(3), Qt::NoModifier, 6000);
        QCOMPARE(strokeOf(canvas, 3), accent.rgb());
        QTRY_VERIFY(!fade->isRunning());
        QCOMPARE(strokeOf(canvas, 3), accent.rgb());
        QCOMPARE(strokeOf(canvas, 1), base.rgb());

        // A new list shows the selection as it stands, with no fade.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QVERIFY(!canvas.list()->selectionFade()->isRunning());
        QCOMPARE(strokeOf(canvas, 0), accent.rgb());
        QCOMPARE(strokeOf(canvas, 3), base.rgb());
    }

    void aFadeDrawsOnlyTheCardsPassingOver()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1000);
        QTRY_VERIFY(!canvas.list()->selectionFade()->isRunning());
        PaintRecorder paints(canvas.viewport());
        clickAt(canvas.viewport(), canvas.cardEnd(3), Qt::NoModifier, 3000);
        QTRY_VERIFY(!canvas.list()->selectionFade()->isRunning());
        QTRY_VERIFY(!paints.regions.isEmpty());
        // The last steps of the fade draw the two cards alone.
        const QRegion last = paints.regions.last();
        const auto rect = [&canvas](int row) {
            return canvas.list()->visualRect(canvas.view->nodeModel()->index(row));
        };
        QVERIFY(last.contains(rect(1)));
        QVERIFY(last.contains(rect(3)));
        QVERIFY(!last.intersects(rect(0)));
        QVERIFY(!last.intersects(rect(4)));
    }

    void aShiftClickOverHundredsOfCardsFadesThoseInView()
    {
        AppPreferences::shared().setShowNodeStyling(true);
        QString css;
        for (int i = 0; i < 500; ++i)
            css += QStringLiteral(".card-%1 { color: red; }\n").arg(i);
        CanvasWindow canvas(css);
        const QColor accent(0x00, 0x63, 0xe1);
        QPalette palette = canvas.window.palette();
        palette.setColor(QPalette::Highlight, accent);
        canvas.window.setPalette(palette);
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardEnd(0), Qt::NoModifier, 1000);
        canvas.list()->scrollToBottom();
        clickAt(canvas.viewport(), canvas.cardEnd(499), Qt::ShiftModifier, 3000);
        QCOMPARE(canvas.workspace.selectedRulesetIDs().size(), 500);
        QVERIFY(strokeOf(canvas, 498) != accent.rgb());
        QTRY_COMPARE(strokeOf(canvas, 498), accent.rgb());
        QCOMPARE(strokeOf(canvas, 499), accent.rgb());
        QTRY_VERIFY(!canvas.list()->selectionFade()->isRunning());
    }

    void aNewTabsPaneFadesInOverTheOldWhichThenGoes()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        TabContentArea *area = canvas.view->tabContent();
        const QPointer<QWidget> nodes = canvas.view->currentPane();
        const QPointer<NodeListView> list = canvas.list();
        QCOMPARE(TabContentArea::opacityOf(nodes), 1.0);

        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        const QPointer<QWidget> variables = canvas.view->currentPane();
        QCOMPARE(variables->objectName(), QStringLiteral("variablesPane"));
        QCOMPARE(variables->parentWidget(), area);
        QCOMPARE(variables->geometry(), area->rect());
        // The fade starts from a clear new pane over the old one.
        QCOMPARE(TabContentArea::opacityOf(variables), 0.0);
        QCOMPARE(area->leavingPane(), nodes.data());
        QVERIFY(nodes->isVisible());
        QVERIFY(!canvas.view->nodeList());

        QTRY_COMPARE(TabContentArea::opacityOf(variables), 1.0);
        QTRY_VERIFY(!nodes);
        QVERIFY(!list);
        QVERIFY(!area->leavingPane());
        QVERIFY(variables->isVisible());

        // Back on the rulesets, a new list.
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QVERIFY(canvas.list());
        QCOMPARE(canvas.view->currentNodePage(), canvas.list());
        QCOMPARE(canvas.view->nodeModel()->rowCount(), 5);
        QTRY_VERIFY(!variables);
        QTRY_COMPARE(TabContentArea::opacityOf(canvas.view->currentPane()), 1.0);
        QVERIFY(canvas.list()->isVisible());
    }

    void theFocusOfALeavingPaneGoesToNoFilterField()
    {
        CanvasWindow canvas(QStringLiteral(":root { --a: 1px; }\n.x { color: red; }"));
        QVERIFY(canvas.show());
        clickAt(canvas.viewport(), canvas.cardEnd(1), Qt::NoModifier, 1000);
        QVERIFY(canvas.list()->hasFocus());
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        QTRY_VERIFY(!canvas.view->tabContent()->leavingPane());
        QVERIFY(!canvas.view->variableSearchField()->hasFocus());
        QVERIFY(!canvas.viewState().variableSearchFocused());
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QTRY_VERIFY(!canvas.view->tabContent()->leavingPane());
        QVERIFY(!canvas.view->searchField()->hasFocus());
        QVERIFY(!canvas.viewState().searchFocused());
    }

    void aQuickRunOfTabChangesEndsOnTheLastTabAlone()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        TabContentArea *area = canvas.view->tabContent();
        for (const CanvasTab tab : {CanvasTab::Variables, CanvasTab::Code, CanvasTab::Nodes,
                                    CanvasTab::Variables, CanvasTab::Nodes, CanvasTab::Code})
            QTest::mouseClick(canvas.view->tabButton(tab), Qt::LeftButton);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Code);
        QWidget *code = canvas.view->currentPane();
        QCOMPARE(code->objectName(), QStringLiteral("codePane"));
        QTRY_COMPARE(area->findChildren<QWidget *>(Qt::FindDirectChildrenOnly),
                     QList<QWidget *>{code});
        QTRY_COMPARE(TabContentArea::opacityOf(code), 1.0);
        QVERIFY(!area->leavingPane());
        QVERIFY(code->isVisible());
        QVERIFY(!canvas.view->nodeList());
    }

    void aTabChangeDuringAFadeFadesOutThePaneThatWasComingIn()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QVERIFY(canvas.show());
        TabContentArea *area = canvas.view->tabContent();
        const QPointer<QWidget> nodes = canvas.view->currentPane();
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        const QPointer<QWidget> variables = canvas.view->currentPane();
        QTRY_VERIFY(TabContentArea::opacityOf(variables) > 0.0);
        const double reached = TabContentArea::opacityOf(variables);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        // The rulesets pane leaves at once; the variables pane fades out from
        // where it stood.
        QVERIFY(nodes.isNull() || nodes->isHidden());
        QCOMPARE(area->leavingPane(), variables.data());
        QVERIFY(TabContentArea::opacityOf(variables) <= reached);
        QVERIFY(TabContentArea::opacityOf(variables) > 0.0);
        QTRY_VERIFY(!variables);
        QTRY_VERIFY(!nodes);
    }

    void theTabButtonsPassTheirColoursOver()
    {
        CanvasWindow canvas(CanvasTest::fiveRulesets);
        QPalette palette = canvas.window.palette();
        palette.setColor(QPalette::WindowText, QColor(0x10, 0x10, 0x10));
        palette.setColor(QPalette::PlaceholderText, QColor(0x90, 0x90, 0x90));
        canvas.window.setPalette(palette);
        QVERIFY(canvas.show());
        CanvasTabButtons *buttons = canvas.view->tabButtons();
        const QRgb primary = palette.color(QPalette::WindowText).rgb();
        const QRgb secondary = palette.color(QPalette::PlaceholderText).rgb();
        QVERIFY(primary != secondary);
        QCOMPARE(buttons->shownColour(CanvasTab::Nodes).rgb(), primary);
        QCOMPARE(buttons->shownColour(CanvasTab::Code).rgb(), secondary);

        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Code), Qt::LeftButton);
        QCOMPARE(canvas.view->tabButton(CanvasTab::Code)->font().weight(), QFont::DemiBold);
        QCOMPARE(canvas.view->tabButton(CanvasTab::Nodes)->font().weight(), QFont::Normal);
        // The colours start where they stood.
        QCOMPARE(buttons->shownColour(CanvasTab::Code).rgb(), secondary);
        QTRY_COMPARE(buttons->shownColour(CanvasTab::Code).rgb(), primary);
        QTRY_COMPARE(buttons->shownColour(CanvasTab::Nodes).rgb(), secondary);
        QCOMPARE(
            canvas.view->tabButton(CanvasTab::Code)->palette().color(QPalette::ButtonText).rgb(),
            primary);
        QCOMPARE(buttons->shownColour(CanvasTab::Variables).rgb(), secondary);
    }

    void theCodeButtonAimsAtTheVariableSelectedOnTheVariablesTab()
    {
        CanvasWindow canvas(QStringLiteral(":root { --a: 1px; }\n.x { color: red; }"));
        QVERIFY(canvas.show());
        const CSSRulesetPtr root = canvas.at(0);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        canvas.workspace.setSelectedVariableRulesetID(root->id());
        canvas.workspace.setSelectedVariablePropID(root->properties().first().id);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Code), Qt::LeftButton);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Code);
        QCOMPARE(canvas.viewState().codeJumpRulesetID(), root->id());
        QCOMPARE(canvas.viewState().codeJumpPropID(), root->properties().first().id);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Code), Qt::LeftButton);
        QVERIFY(canvas.viewState().codeJumpRulesetID().isNull());
        QVERIFY(canvas.viewState().codeJumpPropID().isNull());
    }

    void backOnTheRulesetsTabTheNewListShowsTheSelectedCardAtTheTop()
    {
        QString css;
        for (int i = 0; i < 40; ++i)
            css += QStringLiteral(".card-%1 { color: red; }\n").arg(i);
        CanvasWindow canvas(css);
        QVERIFY(canvas.show());
        canvas.workspace.setSelectedRuleset(canvas.at(30));
        QCOMPARE(canvas.list()->verticalScrollBar()->value(), 0);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        QTest::mouseClick(canvas.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QTRY_COMPARE(canvas.viewState().scrollToID(), canvas.at(30)->id());
        const QRect card = canvas.list()->visualRect(canvas.view->nodeModel()->index(30));
        QCOMPARE(card.top(), 0);
        QVERIFY(canvas.list()->verticalScrollBar()->value() > 0);
    }
};

QTEST_MAIN(TestCanvasView)
#include "tst_canvasview.moc"
