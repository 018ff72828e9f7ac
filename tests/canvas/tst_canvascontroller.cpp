#include "CanvasTestSupport.h"

#include "canvas/CanvasDrag.h"
#include "canvas/RulesetFilter.h"

#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;
using CanvasTest::Canvas;
using CanvasTest::endTurn;

namespace {

// The rows of these drags follow each other every 54 points.
constexpr double pitch = 54;

// A code tab's answer given by the test, and what the canvas asked of it in
// which order.
class ScriptedCodeCursor : public CodeCursorSource
{
public:
    CodeCursorHit rulesetAndPropAtCursor() const override
    {
        calls->append(QStringLiteral("cursor"));
        return hit;
    }
    void clearUndoHistory() override { calls->append(QStringLiteral("clear")); }

    CodeCursorHit hit;
    std::shared_ptr<QStringList> calls = std::make_shared<QStringList>();
};

QStringList selectorsOf(const CSSRulesetList &rulesets)
{
    QStringList list;
    for (const CSSRulesetPtr &ruleset : rulesets)
        list.append(ruleset->selector());
    return list;
}

} // namespace

class TestCanvasController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filterSearchesSelectorsNamesAndRawValues_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty") << "" << QStringList{".x", ".btn", "#Nav", ".v"};
        QTest::newRow("blanks") << " \t" << QStringList{".x", ".btn", "#Nav", ".v"};
        QTest::newRow("by value") << "red" << QStringList{".x"};
        QTest::newRow("ignoring case") << "nAV" << QStringList{"#Nav"};
        QTest::newRow("trimmed") << "  BTN " << QStringList{".btn"};
        QTest::newRow("by name") << "padding" << QStringList{".btn"};
        QTest::newRow("raw, not resolved") << "blue" << QStringList{".x"};
        QTest::newRow("var name") << "--c" << QStringList{".x", ".v"};
    }
    void filterSearchesSelectorsNamesAndRawValues()
    {
        QFETCH(QString, search);
        QFETCH(QStringList, expected);
        Canvas canvas(QStringLiteral(".x { color: red; --c: blue; }\n.btn { padding: 1px; }\n"
                                     "#Nav { top: 0; }\n.v { margin: var(--c); }"));
        canvas.state().setSearchText(search);
        QCOMPARE(selectorsOf(canvas.controller->filteredRulesets()), expected);
    }

    void selectedMeansInTheSetOrElseThePrimary()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        QVERIFY(canvas.controller->isSelected(*canvas.at(0)));
        canvas.workspace.setSelectedRulesetIDs({});
        QVERIFY(canvas.controller->isSelected(*canvas.at(0)));
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"B"}));
        QVERIFY(!canvas.controller->isSelected(*canvas.at(0)));
        QVERIFY(canvas.controller->isSelected(*canvas.at(1)));
    }

    void plainClickSelectsOnlyThatCard()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A", "C"}));
        canvas.state().setSearchFocused(true);
        canvas.controller->clickCard(canvas.at(3), Qt::NoModifier, 1000);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"D"}));
        QVERIFY(!canvas.state().searchFocused());
        QVERIFY(canvas.state().editingRulesetID().isNull());
    }

    void secondClickWithinTheIntervalRenames_data()
    {
        QTest::addColumn<qint64>("gap");
        QTest::addColumn<bool>("renames");
        QTest::newRow("at once") << qint64(0) << true;
        QTest::newRow("349 ms") << qint64(349) << true;
        QTest::newRow("exactly 350 ms") << qint64(350) << false;
        QTest::newRow("a second later") << qint64(1000) << false;
    }
    void secondClickWithinTheIntervalRenames()
    {
        QFETCH(qint64, gap);
        QFETCH(bool, renames);
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 5000);
        QVERIFY(canvas.state().editingRulesetID().isNull());
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 5000 + gap);
        QCOMPARE(canvas.state().editingRulesetID() == canvas.at(1)->id(), renames);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
    }

    void quickClicksOnTwoCardsSelectTheSecond()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(0), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 150);
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B"}));
    }

    void doubleClickInAMultiSelectionCollapsesThenRenames()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A", "B", "C"}));
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 100);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B"}));
        QVERIFY(canvas.state().editingRulesetID().isNull());
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 200);
        QCOMPARE(canvas.state().editingRulesetID(), canvas.at(1)->id());
        QCOMPARE(canvas.state().editingRulesetText(), QStringLiteral("B"));
    }

    void aThirdQuickClickRenamesAgain()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 200);
        canvas.state().setEditingRulesetText(QStringLiteral("typed"));
        QSignalSpy begun(&canvas.state(), &CanvasState::editingRulesetTextChanged);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 300);
        QCOMPARE(canvas.state().editingRulesetID(), canvas.at(1)->id());
        QCOMPARE(canvas.state().editingRulesetText(), QStringLiteral("B"));
        QCOMPARE(begun.count(), 1);
    }

    void modifierClicksDoNotCountAsFirstClicks()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 100);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 150);
        QVERIFY(canvas.state().editingRulesetID().isNull());
    }

    void shiftClickSelectsTheRangeFromThePrimary()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(3), Qt::NoModifier, 100);
        // The range takes in rulesets that the filter hides.
        canvas.state().setSearchText(QStringLiteral("top"));
        canvas.controller->clickCard(canvas.at(1), Qt::ShiftModifier, 150);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"B", "C", "D"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
        // Not a double click either: the shift click did not count.
        canvas.controller->clickCard(canvas.at(3), Qt::NoModifier, 160);
        QCOMPARE(canvas.state().editingRulesetID(), canvas.at(3)->id());
    }

    void shiftClickWithoutPrimaryActsAsAPlainClick()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        QCOMPARE(canvas.workspace.selectedRuleset(), nullptr);
        canvas.controller->clickCard(canvas.at(2), Qt::ShiftModifier, 100);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C"}));
    }

    void shiftClickWithAStalePrimaryActsAsAPlainClick()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(std::make_shared<CSSRuleset>(QStringLiteral("gone")));
        canvas.controller->clickCard(canvas.at(2), Qt::ShiftModifier, 100);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"C"}));
    }

    void controlClickAddsAndMakesItPrimary()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(0), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(3), Qt::ControlModifier, 200);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A", "D"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
    }

    void controlClickRemovingThePrimaryMovesItToTheFirstInFileOrder()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(4), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(3), Qt::ControlModifier, 200);
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 300);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 400);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"D", "E"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(3));
    }

    void controlClickRemovingTheLastSelectsNothing()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(2), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(2), Qt::ControlModifier, 200);
        QCOMPARE(canvas.workspace.selectedRuleset(), nullptr);
        QVERIFY(canvas.workspace.selectedRulesetIDs().isEmpty());
    }

    void controlClickRemovingAnotherKeepsThePrimary()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(0), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 200);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 300);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A"}));
    }

    void aPrimaryFromOutsideReplacesTheSetOnlyWhenNotInIt()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A"}));
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A", "B"}));
        canvas.workspace.setSelectedRuleset(canvas.at(1));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"A", "B"}));
        canvas.workspace.setSelectedRuleset(canvas.at(4));
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), canvas.idsOf({"E"}));
        canvas.workspace.setSelectedRuleset(nullptr);
        QVERIFY(canvas.workspace.selectedRulesetIDs().isEmpty());
    }

    void aSelectionChangeCommitsARunningRename()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.ops().beginRenameRuleset(canvas.at(0));
        canvas.state().setEditingRulesetText(QStringLiteral(".renamed"));
        QSignalSpy released(canvas.controller.get(), &CanvasController::focusReleaseRequested);
        canvas.workspace.setSelectedRuleset(canvas.at(1));
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral(".renamed"));
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QCOMPARE(released.count(), 1);
    }

    void aTapOnTheBackgroundCommitsARunningRename()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        QSignalSpy released(canvas.controller.get(), &CanvasController::focusReleaseRequested);
        canvas.controller->tapBackground();
        QCOMPARE(released.count(), 0);
        canvas.controller->renameFromMenu(canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
        canvas.state().setEditingRulesetText(QStringLiteral("X"));
        canvas.controller->tapBackground();
        QCOMPARE(canvas.at(2)->selector(), QStringLiteral("X"));
        QCOMPARE(released.count(), 1);
    }

    void cancelRenameOnlyClosesTheEditor()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.ops().beginRenameRuleset(canvas.at(0));
        canvas.state().setEditingRulesetText(QStringLiteral("X"));
        canvas.controller->cancelRename();
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral("A"));
        QVERIFY(!canvas.undo->canUndo());
    }

    void dropIndexRoundsHalvesAwayFromZeroAndClamps_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("translation");
        QTest::addColumn<double>("rowPitch");
        QTest::addColumn<int>("expected");
        QTest::newRow("still") << 2 << 0.0 << 54.0 << 2;
        QTest::newRow("just under half a row") << 2 << 26.9 << 54.0 << 2;
        QTest::newRow("half a row down") << 2 << 27.0 << 54.0 << 3;
        QTest::newRow("one row up") << 2 << -54.0 << 54.0 << 1;
        QTest::newRow("past the top") << 2 << -1000.0 << 54.0 << 0;
        QTest::newRow("past the bottom") << 2 << 1000.0 << 54.0 << 5;
        QTest::newRow("half a row up from the top") << 0 << -27.0 << 54.0 << 0;
        QTest::newRow("two rows of 43") << 1 << 86.0 << 43.0 << 3;
        QTest::newRow("over half a row of 51 up") << 3 << -26.0 << 51.0 << 2;
    }
    void dropIndexRoundsHalvesAwayFromZeroAndClamps()
    {
        QFETCH(int, index);
        QFETCH(double, translation);
        QFETCH(double, rowPitch);
        QFETCH(int, expected);
        QCOMPARE(CanvasDrag::dropTargetIndex(index, translation, 5, rowPitch), expected);
    }

    void dragPastTheTopMovesToTheTop()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->dragCard(canvas.at(3), -500, pitch);
        QCOMPARE(canvas.state().draggingRulesetID(), canvas.at(3)->id());
        QCOMPARE(canvas.state().dropTargetIndex(), std::optional<int>(0));
        QVERIFY(canvas.controller->isDragged(*canvas.at(3)));
        QVERIFY(!canvas.controller->isDragged(*canvas.at(2)));
        canvas.controller->endDrag();
        QCOMPARE(canvas.selectors(), (QStringList{"D", "A", "B", "C", "E"}));
        QVERIFY(canvas.state().draggingRulesetID().isNull());
        QCOMPARE(canvas.state().dropTargetIndex(), std::nullopt);
    }

    void dragPastTheBottomMovesToTheEnd()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->dragCard(canvas.at(1), 500, pitch);
        QCOMPARE(canvas.state().dropTargetIndex(), std::optional<int>(5));
        canvas.controller->endDrag();
        QCOMPARE(canvas.selectors(), (QStringList{"A", "C", "D", "E", "B"}));
    }

    void aDragFollowsOnlyTheCardItStartedOn()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->dragCard(canvas.at(0), 60, pitch);
        canvas.controller->dragCard(canvas.at(4), -300, pitch);
        QCOMPARE(canvas.state().draggingRulesetID(), canvas.at(0)->id());
        QCOMPARE(canvas.state().dropTargetIndex(), std::optional<int>(1));
    }

    void aFilterStopsDragging()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.state().setSearchText(QStringLiteral(" "));
        canvas.controller->dragCard(canvas.at(0), 200, pitch);
        QVERIFY(canvas.state().draggingRulesetID().isNull());
        QCOMPARE(canvas.state().dropTargetIndex(), std::nullopt);
        canvas.controller->endDrag();
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
    }

    void draggingACardOfAMultiSelectionMovesTheBlock()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(0), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(1), Qt::ControlModifier, 200);
        QVERIFY(canvas.controller->isDragged(*canvas.at(0)) == false);
        // B dragged two rows down points at D; the block goes before it.
        canvas.controller->dragCard(canvas.at(1), 108, pitch);
        QCOMPARE(canvas.state().dropTargetIndex(), std::optional<int>(3));
        QVERIFY(canvas.controller->isDragged(*canvas.at(0)));
        QVERIFY(canvas.controller->isDragged(*canvas.at(1)));
        QVERIFY(!canvas.controller->isDragged(*canvas.at(2)));
        canvas.controller->endDrag();
        QCOMPARE(canvas.selectors(), (QStringList{"C", "A", "B", "D", "E"}));
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Move Rulesets"));
    }

    void aBlockDroppedOnItselfSkipsToTheNextUnselected()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"B", "C"}));
        QCOMPARE(CanvasDrag::blockMoveBeforeID(canvas.file->rulesets(),
                                               canvas.workspace.selectedRulesetIDs(), 2),
                 canvas.at(3)->id());
        QCOMPARE(
            CanvasDrag::blockMoveBeforeID(canvas.file->rulesets(), canvas.idsOf({"D", "E"}), 3),
            QUuid());
        QCOMPARE(CanvasDrag::singleMoveBeforeID(canvas.file->rulesets(), 5), QUuid());
    }

    void commandFlagsOpenTheSheetsAndFocusTheFilter()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.state().setNewSelectorText(QStringLiteral("old"));
        canvas.workspace.setShouldShowNewRulesetSheet(true);
        QVERIFY(!canvas.workspace.shouldShowNewRulesetSheet());
        QVERIFY(canvas.state().showNewRulesetSheet());
        QVERIFY(canvas.state().newSelectorText().isEmpty());

        canvas.state().setNewVariableName(QStringLiteral("--old"));
        canvas.state().setNewVariableValue(QStringLiteral("1"));
        canvas.workspace.setShouldAddVariable(true);
        QVERIFY(!canvas.workspace.shouldAddVariable());
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Variables);
        QVERIFY(canvas.state().showNewVariableSheet());
        QCOMPARE(canvas.state().newVariableName(), QStringLiteral("--"));
        QVERIFY(canvas.state().newVariableValue().isEmpty());
        QCOMPARE(canvas.state().newVariableSelector(), QStringLiteral("A"));

        canvas.workspace.setShouldFocusSearch(true);
        QVERIFY(!canvas.workspace.shouldFocusSearch());
        QVERIFY(canvas.state().variableSearchFocused());
        QVERIFY(!canvas.state().searchFocused());
    }

    void focusSearchOnTheCodeTabSwitchesToTheRulesets()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        canvas.workspace.setShouldFocusSearch(true);
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Nodes);
        QVERIFY(canvas.state().searchFocused());
        QVERIFY(!canvas.workspace.shouldFocusSearch());
    }

    void newVariableOnAnEmptyFileProposesRoot()
    {
        Canvas canvas(QString{});
        canvas.controller->startNewVariable();
        QCOMPARE(canvas.state().newVariableSelector(), QStringLiteral(":root"));
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Variables);
    }

    void rulesetCommandsActOnThePrimaryOrWaitRaised()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setShouldDuplicateRuleset(true);
        canvas.workspace.setShouldDeleteRuleset(true);
        canvas.workspace.setShouldRenameRuleset(true);
        QVERIFY(canvas.workspace.shouldDuplicateRuleset());
        QVERIFY(canvas.workspace.shouldDeleteRuleset());
        QVERIFY(canvas.workspace.shouldRenameRuleset());
        QCOMPARE(canvas.file->rulesets().size(), 5);
        // Still raised, so a second request is no change and does nothing.
        canvas.workspace.setSelectedRuleset(canvas.at(1));
        canvas.workspace.setShouldDeleteRuleset(true);
        QCOMPARE(canvas.file->rulesets().size(), 5);
    }

    void rulesetCommandsIgnoreTheMultiSelection_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("duplicate") << "duplicate" << QStringList{"A", "B", "C", "C", "D", "E"};
        QTest::newRow("delete") << "delete" << QStringList{"A", "B", "D", "E"};
        QTest::newRow("rename") << "rename" << QStringList{"A", "B", "C", "D", "E"};
    }
    void rulesetCommandsIgnoreTheMultiSelection()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, expected);
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.controller->clickCard(canvas.at(1), Qt::NoModifier, 100);
        canvas.controller->clickCard(canvas.at(2), Qt::ControlModifier, 200);
        const CSSRulesetPtr primary = canvas.at(2);
        if (command == u"duplicate") {
            canvas.workspace.setShouldDuplicateRuleset(true);
            QVERIFY(!canvas.workspace.shouldDuplicateRuleset());
        } else if (command == u"delete") {
            canvas.workspace.setShouldDeleteRuleset(true);
            QVERIFY(!canvas.workspace.shouldDeleteRuleset());
        } else {
            canvas.workspace.setShouldRenameRuleset(true);
            QVERIFY(!canvas.workspace.shouldRenameRuleset());
            QCOMPARE(canvas.state().editingRulesetID(), primary->id());
        }
        QCOMPARE(canvas.selectors(), expected);
    }

    void keyInterceptNeedsTheRulesetsTabASelectionAndNoEditing()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        CanvasController &controller = *canvas.controller;
        QVERIFY(!controller.keyInterceptActive());
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        QVERIFY(controller.keyInterceptActive());
        canvas.state().setSearchFocused(true);
        QVERIFY(!controller.keyInterceptActive());
        canvas.state().setSearchFocused(false);
        canvas.ops().beginRenameRuleset(canvas.at(0));
        QVERIFY(!controller.keyInterceptActive());
        controller.cancelRename();
        QVERIFY(controller.keyInterceptActive());
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QVERIFY(!controller.keyInterceptActive());
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QVERIFY(controller.keyInterceptActive());
        controller.focusPropertyPanel();
        QVERIFY(canvas.workspace.shouldFocusPropertyPanel());
    }

    void enteringTheCodeTabFromTheVariablesAimsAtTheSelectedVariable()
    {
        Canvas canvas(QStringLiteral(":root { --a: 1px; --b: 2px; }\n.x { color: red; }"));
        const CSSRulesetPtr root = canvas.at(0);
        const QUuid prop = root->properties().at(1).id;
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        canvas.workspace.setSelectedVariableRulesetID(root->id());
        canvas.workspace.setSelectedVariablePropID(prop);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        QCOMPARE(canvas.state().codeJumpRulesetID(), root->id());
        QCOMPARE(canvas.state().codeJumpPropID(), prop);

        // From the rulesets tab the selected ruleset alone decides.
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.state().codeJumpPropID(), prop);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        QVERIFY(canvas.state().codeJumpRulesetID().isNull());
        QVERIFY(canvas.state().codeJumpPropID().isNull());
    }

    void leavingTheCodeTabSelectsTheRulesetUnderTheCursorThenClearsItsUndoSteps()
    {
        Canvas canvas(QStringLiteral(":root { --a: 1px; }\n.x { color: red; }"));
        auto *cursor = new ScriptedCodeCursor;
        canvas.controller->codeCursorBridge().setCoordinator(cursor);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        QVERIFY(cursor->calls->isEmpty());
        cursor->hit = {canvas.at(1)->id(), canvas.at(1)->properties().at(0).id};
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        QCOMPARE(*cursor->calls, (QStringList{QStringLiteral("cursor"), QStringLiteral("clear")}));

        // A cursor outside every ruleset leaves the selection.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor->hit = {};
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));

        // An id that is no ruleset of the file, neither.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor->hit = {QUuid::createUuid(), QUuid()};
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(1));
        delete cursor;
    }

    void leavingTheCodeTabForTheVariablesSelectsOnlyAVariable()
    {
        Canvas canvas(QStringLiteral(":root { --a: 1px; }\n.x { color: red; }"));
        ScriptedCodeCursor cursor;
        canvas.controller->codeCursorBridge().setCoordinator(&cursor);
        const CSSRulesetPtr root = canvas.at(0);
        const CSSRulesetPtr x = canvas.at(1);

        // A declaration that is no custom property: nothing changes.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor.hit = {x->id(), x->properties().at(0).id};
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QVERIFY(canvas.workspace.selectedVariablePropID().isNull());
        QVERIFY(canvas.state().variableScrollToPropID().isNull());

        // The selector line: a ruleset without a property, nothing either.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor.hit = {root->id(), QUuid()};
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QVERIFY(canvas.workspace.selectedVariablePropID().isNull());

        // A property of another ruleset, neither.
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor.hit = {x->id(), root->properties().at(0).id};
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QVERIFY(canvas.workspace.selectedVariablePropID().isNull());

        canvas.workspace.setCanvasTab(CanvasTab::Code);
        cursor.hit = {root->id(), root->properties().at(0).id};
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QCOMPARE(canvas.workspace.selectedVariableRulesetID(), root->id());
        QCOMPARE(canvas.workspace.selectedVariablePropID(), root->properties().at(0).id);
        QCOMPARE(canvas.state().variableScrollToPropID(), root->properties().at(0).id);
        QVERIFY(canvas.workspace.selectedRuleset() == nullptr);
    }

    void aGoneCodeViewIsHarmless()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(2));
        auto *cursor = new ScriptedCodeCursor;
        cursor->hit = {canvas.at(0)->id(), QUuid()};
        canvas.controller->codeCursorBridge().setCoordinator(cursor);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        delete cursor;
        QCOMPARE(canvas.controller->codeCursorBridge().coordinator(), nullptr);
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(2));
    }

    void theCodeButtonAimsEvenOnTheCodeTab()
    {
        Canvas canvas(QStringLiteral(":root { --a: 1px; }"));
        CanvasController &controller = *canvas.controller;
        const CSSRulesetPtr root = canvas.at(0);
        const QUuid prop = root->properties().at(0).id;
        canvas.workspace.setSelectedVariableRulesetID(root->id());
        canvas.workspace.setSelectedVariablePropID(prop);
        controller.selectTab(CanvasTab::Variables);
        QSignalSpy tab(&canvas.workspace, &Workspace::canvasTabChanged);
        controller.selectTab(CanvasTab::Code);
        QCOMPARE(tab.size(), 1);
        QCOMPARE(canvas.state().codeJumpPropID(), prop);

        // The code button on the code tab itself changes no tab but still
        // aims, as from any tab other than the variables.
        controller.selectTab(CanvasTab::Code);
        QCOMPARE(tab.size(), 1);
        QVERIFY(canvas.state().codeJumpRulesetID().isNull());
        QVERIFY(canvas.state().codeJumpPropID().isNull());
    }

    void otherTabButtonsLeaveTheAimAlone()
    {
        Canvas canvas(QStringLiteral(":root { --a: 1px; }"));
        CanvasController &controller = *canvas.controller;
        const QUuid prop = canvas.at(0)->properties().at(0).id;
        canvas.state().setCodeJumpPropID(prop);
        controller.selectTab(CanvasTab::Variables);
        controller.selectTab(CanvasTab::Nodes);
        QCOMPARE(canvas.state().codeJumpPropID(), prop);
    }

    void backOnTheRulesetsTabTheSelectedCardIsScrolledToAgain()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        const QUuid selected = canvas.at(3)->id();
        canvas.workspace.setSelectedRuleset(canvas.at(3));
        canvas.state().setScrollToID(selected);
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        QCOMPARE(canvas.state().scrollToID(), selected);
        QSignalSpy scrolls(&canvas.state(), &CanvasState::scrollToIDChanged);
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QVERIFY(canvas.state().scrollToID().isNull());
        QTRY_COMPARE(canvas.state().scrollToID(), selected);
        QCOMPARE(scrolls.size(), 2);
    }

    void theReturnScrollGoesToTheCardSelectedAtTheChange()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRuleset(canvas.at(1));
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        canvas.workspace.setSelectedRuleset(canvas.at(4));
        QTRY_COMPARE(canvas.state().scrollToID(), canvas.at(1)->id());
    }

    void backOnTheRulesetsTabWithoutSelectionNothingScrolls()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.state().setScrollToID(canvas.at(2)->id());
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        QSignalSpy scrolls(&canvas.state(), &CanvasState::scrollToIDChanged);
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QCOMPARE(canvas.state().scrollToID(), canvas.at(2)->id());
        // A later return with a selection scrolls; a scroll of the first
        // return would have come before it.
        canvas.workspace.setSelectedRuleset(canvas.at(4));
        canvas.workspace.setCanvasTab(CanvasTab::Variables);
        canvas.workspace.setCanvasTab(CanvasTab::Nodes);
        QTRY_COMPARE(canvas.state().scrollToID(), canvas.at(4)->id());
        QCOMPARE(scrolls.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestCanvasController)
#include "tst_canvascontroller.moc"
