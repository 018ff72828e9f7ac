// The logic of the variables tab without widgets: the rows' value and name
// edits, the workspace's variable commands, the drag, the scroll request,
// and the listing read once per change.

#include "VariablesTestSupport.h"

#include "canvas/CanvasState.h"

#include <QElapsedTimer>
#include <QSignalSpy>

using namespace Ombrel;
using VariablesTest::endTurn;
using VariablesTest::Variables;

class TestVariablesController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueEditIsWrittenOnlyAtItsCommit()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        QSignalSpy focus(v.controller.get(), &VariablesController::valueFocusRequested);
        v.controller->startValueEdit(a);
        QCOMPARE(v.workspace.selectedVariablePropID(), a.propID);
        QCOMPARE(v.workspace.selectedVariableRulesetID(), a.rulesetID);
        QVERIFY(v.controller->isEditingValue(a.propID));
        QVERIFY(focus.isEmpty());
        QVERIFY(focus.wait());
        QCOMPARE(focus.first().first().value<QUuid>(), a.propID);

        v.controller->editLocalValue(a, QStringLiteral(" 2px\t"));
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
        QSignalSpy release(v.controller.get(), &VariablesController::focusReleaseRequested);
        v.controller->commitValue(a);
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("2px"));
        QVERIFY(!v.controller->isEditingValue(a.propID));
        QCOMPARE(release.count(), 1);
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Edit Variable"));
    }

    void returnOnAnUnchangedValueMakesNoStep()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startValueEdit(a);
        v.controller->commitValue(a);
        QVERIFY(!v.undo->canUndo());
        QVERIFY(!v.controller->isEditingValue(a.propID));
    }

    void anEmptiedValueEndsTheEditAndShowsEmptyUntilTheValueChanges()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startValueEdit(a);
        v.controller->editLocalValue(a, QStringLiteral("  "));
        v.controller->commitValue(a);
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
        QCOMPARE(v.controller->localValue(a), QStringLiteral("  "));
        endTurn();
        QCOMPARE(v.controller->localValue(a), QStringLiteral("  "));
        // A change of the value from elsewhere brings the text back in step.
        v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("3px"));
        QTRY_COMPARE(v.controller->localValue(v.entry(QStringLiteral("--a"))),
                     QStringLiteral("3px"));
    }

    void escapeLeavesTheModelUntouched()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startValueEdit(a);
        v.controller->editLocalValue(a, QStringLiteral("9px"));
        v.controller->cancelValue(a);
        QCOMPARE(v.controller->localValue(a), QStringLiteral("1px"));
        QVERIFY(!v.controller->isEditingValue(a.propID));
        // The focus loss that follows commits what is now the old value.
        v.controller->commitValue(a);
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
    }

    void theValueBeingEditedDoesNotFollowTheModel()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startValueEdit(a);
        v.controller->editLocalValue(a, QStringLiteral("typing"));
        v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("5px"));
        endTurn();
        QCOMPARE(v.controller->localValue(a), QStringLiteral("typing"));
        v.controller->cancelValue(v.entry(QStringLiteral("--a")));
        QCOMPARE(v.controller->localValue(a), QStringLiteral("5px"));
    }

    void theSwatchReadsTheTextBeingTyped()
    {
        Variables v(QStringLiteral(":root { --a: #3b82f6; --b: var(--a); }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        QVERIFY(v.controller->isColorValue(a));
        // Raw text: a reference to a colour is no colour.
        QVERIFY(!v.controller->isColorValue(v.entry(QStringLiteral("--b"))));
        v.controller->startValueEdit(a);
        v.controller->editLocalValue(a, QStringLiteral("#3b82f6x"));
        QVERIFY(!v.controller->isColorValue(a));
        v.controller->editLocalValue(a, QStringLiteral("red"));
        QVERIFY(v.controller->isColorValue(a));
    }

    void aCommittedColourIsOneEdit()
    {
        Variables v(QStringLiteral(":root { --a: #3b82f6; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->commitColor(a, QStringLiteral("#ff0000"));
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("#ff0000"));
        QCOMPARE(v.controller->localValue(a), QStringLiteral("#ff0000"));
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Edit Variable"));
        endTurn();
        v.controller->commitColor(v.entry(QStringLiteral("--a")), QStringLiteral("#00ff00"));
        endTurn();
        v.undo->undo();
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("#ff0000"));
    }

    void confirmingANameAddsTheDashesAndMovesIntoTheValue_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("no dashes") << QStringLiteral("brand") << QStringLiteral("--brand");
        QTest::newRow("blanks around") << QStringLiteral(" \tbrand ") << QStringLiteral("--brand");
        QTest::newRow("one dash") << QStringLiteral("-b") << QStringLiteral("---b");
        QTest::newRow("a combining mark")
            << QStringLiteral("--e\u0301") << QStringLiteral("--e\u0301");
    }
    void confirmingANameAddsTheDashesAndMovesIntoTheValue()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        Variables v(QStringLiteral(":root { --a: 1px; } .x { top: var(--a); }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startRename(a);
        QCOMPARE(v.controller->renamingPropID(), a.propID);
        QCOMPARE(v.workspace.selectedVariablePropID(), a.propID);
        QCOMPARE(v.controller->localName(a), QStringLiteral("--a"));
        v.controller->editLocalName(a, typed);
        QSignalSpy focus(v.controller.get(), &VariablesController::valueFocusRequested);
        v.controller->commitRenameAndEditValue(a);
        QCOMPARE(v.entry(name).propID, a.propID);
        QCOMPARE(v.named(QStringLiteral(".x"))->properties().first().value,
                 QStringLiteral("var(") + name + QStringLiteral(")"));
        QVERIFY(v.controller->renamingPropID().isNull());
        QVERIFY(v.controller->isEditingValue(a.propID));
        QCOMPARE(v.controller->localValue(a), QStringLiteral("1px"));
        QVERIFY(focus.wait());
        QCOMPARE(focus.count(), 1);
    }

    void aNameOfTwoCharactersOrFewerCancels_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("dashes alone") << QStringLiteral("--");
        QTest::newRow("blanks") << QStringLiteral("   ");
        QTest::newRow("empty") << QString();
        QTest::newRow("dashes with blanks") << QStringLiteral(" -- ");
        // Three code units, two user-perceived characters.
        QTest::newRow("a mark on the second dash") << QStringLiteral("--\u0301");
    }
    void aNameOfTwoCharactersOrFewerCancels()
    {
        QFETCH(QString, typed);
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startRename(a);
        v.controller->editLocalName(a, typed);
        v.controller->commitRenameAndEditValue(a);
        QVERIFY(v.controller->renamingPropID().isNull());
        QVERIFY(!v.controller->isEditingValue(a.propID));
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
    }

    void confirmingAnUnchangedNameMovesOnWithoutAStep()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startRename(a);
        v.controller->commitRenameAndEditValue(a);
        QVERIFY(v.controller->isEditingValue(a.propID));
        QVERIFY(v.controller->renamingPropID().isNull());
        QVERIFY(!v.undo->canUndo());
    }

    void theNameBeingEditedDoesNotFollowTheModel()
    {
        Variables v(QStringLiteral(":root { --a: 1px; --b: 2px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        const VariableEntry b = v.entry(QStringLiteral("--b"));
        v.controller->startRename(a);
        v.controller->editLocalName(a, QStringLiteral("--typing"));
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--elsewhere"));
        v.ops().renameVariable(b.propID, b.rulesetID, QStringLiteral("--bee"));
        endTurn();
        QCOMPARE(v.controller->localName(a), QStringLiteral("--typing"));
        QCOMPARE(v.controller->localName(v.entry(QStringLiteral("--bee"))),
                 QStringLiteral("--bee"));
    }

    void aCommitOnARulesetTheCodeTabReplacedFindsNothing()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->startValueEdit(a);
        v.controller->editLocalValue(a, QStringLiteral("2px"));
        v.reparse();
        v.controller->commitValue(a);
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
        QVERIFY(!v.controller->isEditingValue(a.propID));
        v.controller->startRename(a);
        v.controller->editLocalName(a, QStringLiteral("--b"));
        v.controller->commitRenameAndEditValue(a);
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: --a")});
        QVERIFY(!v.undo->canUndo());
    }

    void theRenameCommandRenamesTheSelectedVariable()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        v.workspace.setShouldRenameVariable(true);
        QVERIFY(!v.workspace.shouldRenameVariable());
        QVERIFY(v.controller->renamingPropID().isNull());
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.controller->select(a);
        v.workspace.setShouldRenameVariable(true);
        QVERIFY(!v.workspace.shouldRenameVariable());
        QCOMPARE(v.controller->renamingPropID(), a.propID);
    }

    void theDuplicateAndDeleteCommandsActOnTheSelectedVariable()
    {
        Variables v(QStringLiteral(":root { --a: 1px; --b: 2px; }"));
        v.workspace.setShouldDuplicateVariable(true);
        v.workspace.setShouldDeleteVariable(true);
        QVERIFY(!v.workspace.shouldDuplicateVariable());
        QVERIFY(!v.workspace.shouldDeleteVariable());
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --b"));
        // Both ids are needed.
        v.workspace.setSelectedVariablePropID(v.entry(QStringLiteral("--a")).propID);
        v.workspace.setShouldDuplicateVariable(true);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --b"));
        v.controller->select(v.entry(QStringLiteral("--a")));
        v.workspace.setShouldDuplicateVariable(true);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --a-copy --b"));
        v.workspace.setShouldDeleteVariable(true);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a-copy --b"));
        QVERIFY(v.workspace.selectedVariablePropID().isNull());
    }

    void aDragMovesBeforeTheEntryAtTheDropPosition()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; --c: 3; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        QSignalSpy drag(v.controller.get(), &VariablesController::dragChanged);
        v.controller->dragRow(a, 0, 2 * VariablesController::rowPitch);
        QCOMPARE(v.controller->draggingVarID(), a.propID);
        QCOMPARE(v.controller->dropVarTargetIndex(), std::optional<int>(2));
        // Another row's drag is ignored while this one runs.
        v.controller->dragRow(v.entry(QStringLiteral("--c")), 2, -100);
        QCOMPARE(v.controller->dropVarTargetIndex(), std::optional<int>(2));
        v.controller->endDrag();
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --b --a --c"));
        QVERIFY(v.controller->draggingVarID().isNull());
        QVERIFY(!v.controller->dropVarTargetIndex());
        QVERIFY(drag.count() >= 2);
    }

    void aDragPastTheEndDropsBehindTheLastEntry()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; } .x { --c: 3; }"));
        v.controller->dragRow(v.entry(QStringLiteral("--a")), 0, 1000);
        QCOMPARE(v.controller->dropVarTargetIndex(), std::optional<int>(3));
        v.controller->endDrag();
        QCOMPARE(v.layout(), (QStringList{":root: --b", ".x: --c --a"}));
    }

    void whileAFilterIsActiveRowsCannotBeDragged()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"));
        v.canvas->state().setVariableSearchText(QStringLiteral(" a "));
        v.controller->dragRow(v.entry(QStringLiteral("--a")), 0, 100);
        QVERIFY(v.controller->draggingVarID().isNull());
        v.controller->endDrag();
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --b"));
        QVERIFY(!v.undo->canUndo());
        // Blanks alone are no filter.
        v.canvas->state().setVariableSearchText(QStringLiteral(" \t"));
        v.controller->dragRow(v.entry(QStringLiteral("--a")), 0, 100);
        QCOMPARE(v.controller->draggingVarID(), v.entry(QStringLiteral("--a")).propID);
    }

    void aFoldedGroupTakesNoDropPositions()
    {
        Variables v(QStringLiteral(":root { --a: 1; } .x { --b: 2; --c: 3; } .y { --d: 4; }"));
        v.controller->toggleGroup(v.named(QStringLiteral(".x"))->id());
        QCOMPARE(v.controller->listing().flat.size(), 2);
        // One row down from --a is --d: the folded rows do not count.
        v.controller->dragRow(v.entry(QStringLiteral("--a")), 0, VariablesController::rowPitch);
        QCOMPARE(v.controller->dropVarTargetIndex(), std::optional<int>(1));
        v.controller->endDrag();
        QCOMPARE(v.layout(), (QStringList{":root: ", ".x: --b --c", ".y: --a --d"}));
        endTurn();
        // The way back is before the next variable in file order, folded or not.
        v.undo->undo();
        QCOMPARE(v.layout(), (QStringList{":root: ", ".x: --a --b --c", ".y: --d"}));
    }

    void togglingAGroupFoldsAndUnfoldsIt()
    {
        Variables v(QStringLiteral(":root { --a: 1; }"));
        const QUuid root = v.named(QStringLiteral(":root"))->id();
        v.controller->toggleGroup(root);
        QCOMPARE(v.canvas->state().collapsedGroups(), QSet<QUuid>{root});
        QVERIFY(v.controller->listing().groups.first().items.isEmpty());
        v.controller->toggleGroup(root);
        QVERIFY(v.canvas->state().collapsedGroups().isEmpty());
        QCOMPARE(v.controller->listing().groups.first().items.size(), 1);
    }

    void aScrollRequestIsTakenAndServedShortlyAfter()
    {
        Variables v(QStringLiteral(":root { --a: 1; }"));
        v.workspace.setCanvasTab(CanvasTab::Variables);
        v.controller->setShown(true);
        const QUuid id = v.entry(QStringLiteral("--a")).propID;
        QSignalSpy scroll(v.controller.get(), &VariablesController::scrollRequested);
        v.canvas->state().setVariableScrollToPropID(id);
        QVERIFY(v.canvas->state().variableScrollToPropID().isNull());
        QVERIFY(scroll.isEmpty());
        QVERIFY(scroll.wait());
        QCOMPARE(scroll.first().first().value<QUuid>(), id);
    }

    void aScrollRequestWaitsForTheTabOnScreen()
    {
        Variables v(QStringLiteral(":root { --a: 1; }"));
        const QUuid id = v.entry(QStringLiteral("--a")).propID;
        QSignalSpy scroll(v.controller.get(), &VariablesController::scrollRequested);
        // Made while the tab is away, or from a tab that is leaving.
        v.canvas->state().setVariableScrollToPropID(id);
        v.controller->setShown(true);
        QCOMPARE(v.canvas->state().variableScrollToPropID(), id);
        v.workspace.setCanvasTab(CanvasTab::Variables);
        v.controller->setShown(false);
        v.canvas->state().setVariableScrollToPropID(QUuid());
        v.canvas->state().setVariableScrollToPropID(id);
        QCOMPARE(v.canvas->state().variableScrollToPropID(), id);
        // Served when the tab comes on screen.
        v.controller->setShown(true);
        QVERIFY(v.canvas->state().variableScrollToPropID().isNull());
        QVERIFY(scroll.wait());
        QCOMPARE(scroll.count(), 1);
    }

    void theEmptyStateAndTheNoMatchMessage()
    {
        Variables empty{QString()};
        QVERIFY(empty.controller->showsEmptyState());
        QVERIFY(!empty.controller->fileHasRulesets());
        Variables plain(QStringLiteral(".x { color: red; }"));
        QVERIFY(plain.controller->showsEmptyState());
        QVERIFY(plain.controller->fileHasRulesets());

        Variables v(QStringLiteral(":root { --a: 1; }"));
        QVERIFY(!v.controller->showsEmptyState());
        QVERIFY(v.controller->noMatchText().isEmpty());
        v.canvas->state().setVariableSearchText(QStringLiteral("  zz\t"));
        QCOMPARE(v.controller->noMatchText(), QStringLiteral("No matches for \"zz\""));
        // A filter that finds only what a folded group holds still says so.
        v.canvas->state().setVariableSearchText(QStringLiteral("a"));
        QVERIFY(v.controller->noMatchText().isEmpty());
        v.controller->toggleGroup(v.named(QStringLiteral(":root"))->id());
        QCOMPARE(v.controller->noMatchText(), QStringLiteral("No matches for \"a\""));
        QCOMPARE(v.controller->listing().groups.size(), 1);
    }

    void theEmptyStateButtonsStartASheet()
    {
        Variables v(QStringLiteral(".x { color: red; }"));
        v.controller->addRuleset();
        QVERIFY(v.canvas->state().showNewRulesetSheet());
        QVERIFY(!v.workspace.shouldShowNewRulesetSheet());
        v.canvas->state().setShowNewRulesetSheet(false);
        v.controller->addVariable();
        QVERIFY(v.canvas->state().showNewVariableSheet());
        QCOMPARE(v.workspace.canvasTab(), CanvasTab::Variables);
    }

    void anEditOfEveryRulesetIsReadOnce()
    {
        QString css = QStringLiteral(":root { --a: 1; }\n");
        for (int i = 0; i < 200; ++i)
            css += QStringLiteral(".r%1 { top: var(--a); }\n").arg(i);
        Variables v(css);
        QSignalSpy listing(v.controller.get(), &VariablesController::listingChanged);
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--b"));
        QVERIFY(listing.isEmpty());
        endTurn();
        QCOMPARE(listing.count(), 1);
        QCOMPARE(v.controller->listing().flat.first().name, QStringLiteral("--b"));
    }

    void theListingFollowsEachKindOfEdit()
    {
        Variables v(QStringLiteral(":root { --a: 1; } .x { --b: 2; color: red; } .y { top: 0; }"));
        const auto names = [&v] {
            QStringList list;
            for (const VarGroup &group : v.controller->listing().groups) {
                list.append(QStringLiteral("# ") + group.selector);
                for (const VarGroupItem &item : group.items)
                    list.append(item.entry.name + QLatin1Char('=') + item.entry.value);
            }
            return list;
        };
        QCOMPARE(names(), (QStringList{"# :root", "--a=1", "# .x", "--b=2"}));
        v.named(QStringLiteral(".x"))->setSelector(QStringLiteral(".x2"));
        endTurn();
        QCOMPARE(names(), (QStringList{"# :root", "--a=1", "# .x2", "--b=2"}));
        // A ruleset without variables gains one.
        const CSSRulesetPtr y = v.named(QStringLiteral(".y"));
        y->setProperties(y->properties() +
                         CSSPropertyList{CSSProperty(QStringLiteral("--c"), QStringLiteral("3"))});
        endTurn();
        QCOMPARE(names(), (QStringList{"# :root", "--a=1", "# .x2", "--b=2", "# .y", "--c=3"}));
        // The code tab replaces every ruleset.
        v.reparse();
        endTurn();
        QCOMPARE(names(), (QStringList{"# :root", "--a=1", "# .x2", "--b=2", "# .y", "--c=3"}));
        QCOMPARE(v.controller->listing().flat.first().propID,
                 v.entry(QStringLiteral("--a")).propID);
        // A plain property's edit changes nothing listed.
        const CSSRulesetPtr x = v.named(QStringLiteral(".x2"));
        CSSPropertyList properties = x->properties();
        properties[1].value = QStringLiteral("blue");
        x->setProperties(properties);
        endTurn();
        QCOMPARE(names(), (QStringList{"# :root", "--a=1", "# .x2", "--b=2", "# .y", "--c=3"}));
    }

    void aFilterTypedBeforeAnEditIsReadTakesTheEditAlong()
    {
        Variables v(QStringLiteral(":root { --a: 1; --ab: 2; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().deleteVariable(a.propID, a.rulesetID);
        v.canvas->state().setVariableSearchText(QStringLiteral("a"));
        QCOMPARE(v.controller->listing().flat.size(), 1);
        QCOMPARE(v.controller->listing().flat.first().name, QStringLiteral("--ab"));
    }

    void anotherFileIsFollowed()
    {
        Variables v(QStringLiteral(":root { --a: 1; }"));
        const QString otherPath = v.dir.filePath(QStringLiteral("other.css"));
        QVERIFY(StylesheetFiles::writeFile(otherPath, ".b { --x: 1; --y: 2; }"));
        const CSSFilePtr other = StylesheetFiles::loadFile(otherPath);
        v.workspace.setFiles({v.file, other});
        v.workspace.setSelectedFile(other);
        QCOMPARE(v.controller->listing().flat.size(), 2);
        // Edits of the file left behind are not followed.
        QSignalSpy listing(v.controller.get(), &VariablesController::listingChanged);
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        VariableOperations(v.file, nullptr).deleteVariable(a.propID, a.rulesetID);
        endTurn();
        QVERIFY(listing.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVariablesController)
#include "tst_variablescontroller.moc"
