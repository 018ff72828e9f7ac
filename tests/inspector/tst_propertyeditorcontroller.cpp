#include "InspectorTestSupport.h"

#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;
using InspectorTest::Disk;
using InspectorTest::endTurn;
using InspectorTest::Inspector;

namespace {

// What a row sends while the user types text into its value, one character
// at a time, after its edit began.
void typeValue(Inspector &inspector, const CSSProperty &property, const QString &text,
               const QString &name = QString())
{
    for (qsizetype length = 1; length <= text.size(); ++length)
        inspector.ctl().liveUpdateProperty(property.id, name.isEmpty() ? property.name : name,
                                           text.left(length));
}

} // namespace

class TestPropertyEditorController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // --- Readings ---

    void singleSelectionListsAllPropertiesDuplicatesIncluded()
    {
        Inspector inspector(QStringLiteral("a { color: red; margin: 0; color: blue; }"));
        inspector.select({"a"});
        QVERIFY(!inspector.ctl().isMultiSelect());
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()),
                 (QStringList{"color", "margin", "color"}));
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("color")));
    }

    void multiSelectionListsTheIntersectionInThePrimaryOrder()
    {
        Inspector inspector(QStringLiteral("a { margin: 0; color: red; top: 0; color: blue; }\n"
                                           "b { color: red; Top: 1px; margin: 0; }\n"
                                           "c { margin: 1px; color: red; }"));
        inspector.select({"b", "a", "c"});
        QVERIFY(inspector.ctl().isMultiSelect());
        QCOMPARE(
            inspector.ctl().allSelectedRulesets(),
            (CSSRulesetList{inspector.named("a"), inspector.named("b"), inspector.named("c")}));
        // The primary ruleset's order; names compared with their case.
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()),
                 (QStringList{"color", "margin"}));
        QVERIFY(inspector.ctl().isMixedValue(QStringLiteral("margin")));
        // Only the first color of a counts, and it is red like the others.
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("color")));

        const SelectionReading reading = inspector.ctl().reading();
        QVERIFY(reading.isMultiSelect);
        QCOMPARE(reading.selected.size(), 3);
        QCOMPARE(inspector.names(reading.properties), (QStringList{"color", "margin"}));
        QVERIFY(reading.mixedNames.contains(QStringLiteral("margin")));
        QVERIFY(!reading.mixedNames.contains(QStringLiteral("color")));
    }

    void aNameTwiceInThePrimaryIsListedTwice()
    {
        Inspector inspector(QStringLiteral("a { color: red; color: blue; }\nb { color: red; }"));
        inspector.select({"a", "b"});
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()),
                 (QStringList{"color", "color"}));
    }

    void aNameThePrimaryLacksIsStillAnsweredForMixedValues()
    {
        Inspector inspector(QStringLiteral("a { x: 1; y: 0; }\nb { x: 2; y: 0; }\n"
                                           "c { y: 0; }\nd { x: 1; y: 0; }"));
        inspector.select({"c", "a", "b"});
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()), QStringList{"y"});
        QVERIFY(inspector.ctl().isMixedValue(QStringLiteral("x")));
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("y")));
        inspector.select({"c", "a", "d"});
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("x")));
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("z")));
    }

    void readingChangesAreReportedOncePerTurn()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: red; }\nc { top: 0; }"));
        inspector.select({"a", "b"});
        endTurn();
        QSignalSpy readings(&inspector.ctl(), &PropertyEditorController::readingChanged);
        const CSSProperty color = inspector.property("a", "color");
        typeValue(inspector, color, QStringLiteral("green"));
        QCOMPARE(readings.count(), 0);
        endTurn();
        QCOMPARE(readings.count(), 1);
        // Any ruleset of the file may declare the variables the rows offer.
        inspector.named("c")->setSelector(QStringLiteral("d"));
        inspector.named("d")->setProperties({});
        endTurn();
        QCOMPARE(readings.count(), 2);
        // A selection change and an edit in one turn report once.
        inspector.select({"a"});
        typeValue(inspector, color, QStringLiteral("blue"));
        endTurn();
        endTurn();
        QCOMPARE(readings.count(), 3);
    }

    void theReadingIsKeptUntilTheFileOrTheSelectionChanges()
    {
        Inspector inspector(QStringLiteral("a { color: red; top: 0; }\nb { color: blue; }\n"
                                           "c { color: red; }"));
        inspector.select({"a", "b"});
        const SelectionReading first = inspector.ctl().reading();
        const SelectionReading again = inspector.ctl().reading();
        // The same lists, not equal copies: nothing was read twice.
        QVERIFY(first.properties.constData() == again.properties.constData());
        QVERIFY(first.selected.constData() == again.selected.constData());
        QVERIFY(inspector.ctl().isMixedValue(QStringLiteral("color")));

        // An edit is seen at once, within the turn.
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("blue"));
        QVERIFY(!inspector.ctl().isMixedValue(QStringLiteral("color")));
        inspector.named("b")->setProperties(
            {CSSProperty(QStringLiteral("color"), QStringLiteral("blue")),
             CSSProperty(QStringLiteral("top"), QStringLiteral("1px"))});
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()),
                 (QStringList{"color", "top"}));

        // So is a selection change.
        inspector.workspace.setSelectedRulesetIDs(
            {inspector.named("a")->id(), inspector.named("b")->id(), inspector.named("c")->id()});
        QCOMPARE(inspector.ctl().allSelectedRulesets().size(), 3);
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()), QStringList{"color"});
        QVERIFY(inspector.ctl().isMixedValue(QStringLiteral("color")));
    }

    // --- Live updates and commits ---

    void mixedValueTypedThenCommittedUndoesOnlyThePrimary()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        inspector.select({"a", "b"});
        QVERIFY(inspector.ctl().isMixedValue(QStringLiteral("color")));
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        QCOMPARE(inspector.ctl().editingPropertyID(), color.id);
        QCOMPARE(inspector.ctl().mixedEditOriginals().size(), 2);

        for (const QString &typed : QStringList{"g", "gr", "gre", "gree", "green"}) {
            inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"), typed);
            QCOMPARE(inspector.value("a", "color"), typed);
            QCOMPARE(inspector.value("b", "color"), typed);
        }
        inspector.ctl().finishEditing(color.id);
        QVERIFY(inspector.ctl().editingPropertyID().isNull());
        QVERIFY(inspector.ctl().mixedEditOriginals().isEmpty());
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("green"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("green"));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Property"));
        endTurn();

        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("green"));
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.undo->canRedo());
    }

    void mixedValueCancelledPutsEachRulesetsOwnValueBack()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"), true,
                            Disk::Unsaved);
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("green"));
        endTurn();
        QVERIFY(inspector.file->hasUnsavedChanges());
        QVERIFY(inspector.file->save());
        endTurn();
        QVERIFY(!inspector.file->hasUnsavedChanges());

        // The row first writes its start values back, the primary's into all.
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("red"));
        QSignalSpy released(&inspector.ctl(), &PropertyEditorController::focusReleaseRequested);
        inspector.ctl().cancelEditing(color.id);
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QVERIFY(inspector.ctl().editingPropertyID().isNull());
        QVERIFY(inspector.ctl().editingOriginals().isEmpty());
        QVERIFY(inspector.ctl().mixedEditOriginals().isEmpty());
        QCOMPARE(released.count(), 1);
        endTurn();
        QVERIFY(inspector.file->hasUnsavedChanges());
        QVERIFY(!inspector.undo->canUndo());
    }

    void plainMultiEditCancelledLeavesThePrimaryStartValueInAll()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: red; }"));
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        QVERIFY(inspector.ctl().mixedEditOriginals().isEmpty());
        typeValue(inspector, color, QStringLiteral("teal"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("teal"));
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("red"));
        inspector.ctl().cancelEditing(color.id);
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("red"));
        QVERIFY(!inspector.undo->canUndo());
    }

    void aPropertyThatASelectedRulesetLacksIsNeitherListedNorAdded()
    {
        Inspector inspector(QStringLiteral("a { color: red; margin: 0; }\nb { color: red; }"));
        inspector.select({"a", "b"});
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()), QStringList{"color"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("navy"));
        inspector.ctl().finishEditing(color.id);
        QCOMPARE(inspector.declarations("b"), QStringList{"color: navy"});
    }

    void renameInAMultiSelectionRenamesEverywhereAndUndoRestoresTheName()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { top: 0; color: red; }\n"
                                           "c { color: red; }"));
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        for (const QString &typed :
             QStringList{"colo", "col", "co", "c", "ca", "car", "caret-color"})
            inspector.ctl().liveUpdateProperty(color.id, typed, QStringLiteral("red"));
        QCOMPARE(inspector.declarations("a"), QStringList{"caret-color: red"});
        QCOMPARE(inspector.declarations("b"), (QStringList{"top: 0", "caret-color: red"}));
        QCOMPARE(inspector.declarations("c"), QStringList{"color: red"});
        inspector.ctl().finishEditing(color.id);
        endTurn();

        inspector.undo->undo();
        QCOMPARE(inspector.declarations("a"), QStringList{"color: red"});
        QCOMPARE(inspector.declarations("b"), (QStringList{"top: 0", "color: red"}));
    }

    void liveUpdateOfUnchangedTextWritesAndMarksNothing()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"), true, Disk::Unsaved);
        inspector.select({"a"});
        QSignalSpy changes(inspector.named("a").get(), &CSSRuleset::propertiesChanged);
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("red"));
        inspector.ctl().liveUpdateProperty(QUuid::createUuid(), QStringLiteral("x"),
                                           QStringLiteral("y"));
        endTurn();
        QCOMPARE(changes.count(), 0);
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void everyKeystrokeMarksTheFileAndCommitMarksNothingMore()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("blue"));
        endTurn();
        QVERIFY(inspector.file->hasUnsavedChanges());
        // Back to the text on disk: the next mark finds the file clean.
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("red"));
        endTurn();
        QVERIFY(!inspector.file->hasUnsavedChanges());
        inspector.ctl().finishEditing(color.id);
        QVERIFY(!inspector.undo->canUndo());
    }

    void aSecondCommitOfTheSameEditIsHarmless()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("blue"));
        inspector.ctl().commitProperty(color.id);
        endTurn();
        inspector.ctl().commitProperty(color.id);
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QVERIFY(!inspector.undo->canUndo());
    }

    void aReenteredRowKeepsTheStateFromBeforeItsFirstKeystroke()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("blue"));
        inspector.ctl().startEditing(inspector.property("a", "color"));
        QCOMPARE(inspector.ctl().editingOriginals().value(color.id),
                 (PropertyEditorController::NameValue{"color", "red"}));
        inspector.ctl().finishEditing(color.id);
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
    }

    void anEditOvertakenByAnotherRowMakesItsStepAndLeavesTheNewEditRunning()
    {
        Inspector inspector(QStringLiteral("a { color: red; top: 0; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        const CSSProperty top = inspector.property("a", "top");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("blue"));
        inspector.ctl().startEditing(top);
        // The first row sees that it is no longer edited and commits.
        inspector.ctl().finishEditing(color.id);
        QCOMPARE(inspector.ctl().editingPropertyID(), top.id);
        QVERIFY(inspector.ctl().editingOriginals().contains(top.id));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Property"));
    }

    void commitCurrentEditOfAMixedValueLeftBlankChangesNothing()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"), true,
                            Disk::Unsaved);
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        QSignalSpy released(&inspector.ctl(), &PropertyEditorController::focusReleaseRequested);
        inspector.ctl().commitCurrentEdit();
        QVERIFY(inspector.ctl().editingPropertyID().isNull());
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QCOMPARE(released.count(), 1);
        endTurn();
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void commitCurrentEditOfAMixedValueTypedRestoresThenCommits()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("lime"));
        inspector.ctl().commitCurrentEdit();
        // The step is made, then each ruleset gets its own value back until
        // the row's own commit spreads its text again.
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Property"));
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QVERIFY(inspector.ctl().mixedEditOriginals().isEmpty());
    }

    void tabOutOfAValueEditsTheNextNameOnTheNextTurn()
    {
        Inspector inspector(QStringLiteral("a { color: red; top: 0; }"));
        inspector.select({"a"});
        const CSSProperty top = inspector.property("a", "top");
        QSignalSpy released(&inspector.ctl(), &PropertyEditorController::focusReleaseRequested);
        inspector.ctl().tabFromValue(0);
        QVERIFY(!inspector.ctl().requestedPropertyFocus());
        QTRY_COMPARE(inspector.ctl().requestedFocus(top.id), PropertyField::Name);
        QVERIFY(!inspector.ctl().requestedFocus(inspector.property("a", "color").id));
        inspector.ctl().clearRequestedPropertyFocus();
        QVERIFY(!inspector.ctl().requestedPropertyFocus());

        inspector.ctl().tabFromValue(1);
        QTRY_COMPARE(released.count(), 1);
        QVERIFY(!inspector.ctl().requestedPropertyFocus());
    }

    // --- Colour ---

    void colorChangeUndoesAndRedoesWithoutLimit()
    {
        Inspector inspector(QStringLiteral("a { color: #ff0000; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"),
                                           QStringLiteral("#00ff00"));
        inspector.ctl().commitColorChange(color.id, QStringLiteral("#ff0000"),
                                          QStringLiteral("#00ff00"));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Color"));
        endTurn();
        for (int round = 0; round < 3; ++round) {
            inspector.undo->undo();
            QCOMPARE(inspector.value("a", "color"), QStringLiteral("#ff0000"));
            QCOMPARE(inspector.undo->redoActionName(), QStringLiteral("Edit Color"));
            QVERIFY(!inspector.undo->canUndo());
            endTurn();
            QVERIFY(!inspector.file->hasUnsavedChanges());
            inspector.undo->redo();
            QCOMPARE(inspector.value("a", "color"), QStringLiteral("#00ff00"));
            QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Color"));
            QVERIFY(!inspector.undo->canRedo());
            endTurn();
            QVERIFY(inspector.file->hasUnsavedChanges());
        }
    }

    void colorChangeSpreadsAndItsRedoWritesTheOldValuesIntoTheOthers()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }\n"
                                           "c { color: black; }\nd { color: gray; }"));
        inspector.select({"a", "b", "c"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().commitColorChange(color.id, QStringLiteral("red"),
                                          QStringLiteral("#123456"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("#123456"));
        QCOMPARE(inspector.value("c", "color"), QStringLiteral("#123456"));
        QCOMPARE(inspector.value("d", "color"), QStringLiteral("gray"));
        endTurn();

        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QCOMPARE(inspector.value("c", "color"), QStringLiteral("black"));
        inspector.undo->redo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("#123456"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QCOMPARE(inspector.value("c", "color"), QStringLiteral("black"));
        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.undo->redoActionName(), QStringLiteral("Edit Color"));
    }

    void colorSpreadByLiveChangesStaysInTheOthersOnUndo()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        for (const QString &hex : QStringList{"#111111", "#222222"})
            inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("color"), hex);
        inspector.ctl().commitColorChange(color.id, QStringLiteral("red"),
                                          QStringLiteral("#222222"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("#222222"));
    }

    void colorCommitWithoutAnUndoManagerDoesNothing()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"), false,
                            Disk::Unsaved);
        inspector.select({"a", "b"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().commitColorChange(color.id, QStringLiteral("red"),
                                          QStringLiteral("#00ff00"));
        endTurn();
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    // --- Delete ---

    void deleteInAMultiSelectionRemovesFromThePrimaryOnly()
    {
        Inspector inspector(
            QStringLiteral("a { color: red; top: 0; }\nb { color: red; top: 1px; }"));
        inspector.select({"a", "b"});
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()),
                 (QStringList{"color", "top"}));
        inspector.ctl().deleteProperty(inspector.property("a", "top").id);
        QCOMPARE(inspector.declarations("a"), QStringList{"color: red"});
        QCOMPARE(inspector.declarations("b"), (QStringList{"color: red", "top: 1px"}));
        QCOMPARE(inspector.names(inspector.ctl().displayProperties()), QStringList{"color"});
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Delete Property"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.declarations("a"), (QStringList{"color: red", "top: 0"}));
        QVERIFY(!inspector.undo->canRedo());
    }

    void undoOfADeleteAfterTheListShrankInsertsAtTheEnd()
    {
        Inspector inspector(QStringLiteral("a { a: 1; b: 2; c: 3; d: 4; }"));
        inspector.select({"a"});
        inspector.ctl().deleteProperty(inspector.property("a", "d").id);
        endTurn();
        inspector.named("a")->setProperties({inspector.property("a", "a")});
        inspector.undo->undo();
        QCOMPARE(inspector.declarations("a"), (QStringList{"a: 1", "d: 4"}));
    }

    // --- Move ---

    void moveOntoItsOwnPlaceOrRightBehindItMakesNoStep_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("own") << QStringLiteral("b");
        QTest::newRow("behind") << QStringLiteral("c");
    }
    void moveOntoItsOwnPlaceOrRightBehindItMakesNoStep()
    {
        QFETCH(QString, before);
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"), true, Disk::Unsaved);
        inspector.select({"x"});
        inspector.ctl().moveProperty(inspector.property("x", "b").id,
                                     inspector.property("x", before).id);
        endTurn();
        QCOMPARE(inspector.declarations("x"), (QStringList{"a: 1", "b: 2", "c: 3"}));
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void moveUndoesAndRedoesWithoutLimit()
    {
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"));
        inspector.select({"x"});
        inspector.ctl().moveProperty(inspector.property("x", "a").id, QUuid());
        QCOMPARE(inspector.declarations("x"), (QStringList{"b: 2", "c: 3", "a: 1"}));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Move Property"));
        endTurn();
        for (int round = 0; round < 3; ++round) {
            inspector.undo->undo();
            QCOMPARE(inspector.declarations("x"), (QStringList{"a: 1", "b: 2", "c: 3"}));
            QCOMPARE(inspector.undo->redoActionName(), QStringLiteral("Move Property"));
            inspector.undo->redo();
            QCOMPARE(inspector.declarations("x"), (QStringList{"b: 2", "c: 3", "a: 1"}));
            QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Move Property"));
        }
        inspector.ctl().moveProperty(inspector.property("x", "c").id,
                                     inspector.property("x", "b").id);
        QCOMPARE(inspector.declarations("x"), (QStringList{"c: 3", "b: 2", "a: 1"}));
    }

    void withoutAnUndoManagerEditsAddsDeletesMovesAndRenamesStillAct()
    {
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; }"), false);
        inspector.select({"x"});
        const CSSProperty a = inspector.property("x", "a");
        inspector.ctl().startEditing(a);
        inspector.ctl().liveUpdateProperty(a.id, QStringLiteral("a"), QStringLiteral("9"));
        inspector.ctl().finishEditing(a.id);
        inspector.ctl().moveProperty(a.id, QUuid());
        QCOMPARE(inspector.declarations("x"), (QStringList{"b: 2", "a: 9"}));
        inspector.ctl().deleteProperty(inspector.property("x", "b").id);
        inspector.ctl().openAddRow();
        inspector.ctl().setNewPropertyName(QStringLiteral("c"));
        inspector.ctl().setNewPropertyValue(QStringLiteral("3"));
        inspector.ctl().commitNewProperty();
        QCOMPARE(inspector.declarations("x"), (QStringList{"a: 9", "c: 3"}));
        inspector.ctl().startSelectorEdit();
        inspector.ctl().setSelectorText(QStringLiteral("y"));
        inspector.ctl().commitRenameSelector();
        QCOMPARE(inspector.file->rulesets().first()->selector(), QStringLiteral("y"));
        // Sorting needs the undo manager.
        inspector.ctl().sortPropertiesAlphabetically();
        QCOMPARE(inspector.names(inspector.file->rulesets().first()->properties()),
                 (QStringList{"a", "c"}));
        inspector.ctl().moveProperty(inspector.property("y", "a").id, QUuid());
        inspector.ctl().sortPropertiesAlphabetically();
        QCOMPARE(inspector.names(inspector.file->rulesets().first()->properties()),
                 (QStringList{"c", "a"}));
    }

    // --- Drag ---

    void dragTargetRoundsHalvesAwayFromZeroAndClamps_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("translation");
        QTest::addColumn<int>("target");
        QTest::newRow("less than half a row") << 1 << 20.0 << 1;
        QTest::newRow("half a row down") << 1 << 20.5 << 2;
        QTest::newRow("half a row up") << 1 << -20.5 << 0;
        QTest::newRow("two rows down") << 0 << 82.0 << 2;
        QTest::newRow("past the top") << 1 << -400.0 << 0;
        QTest::newRow("past the end") << 1 << 400.0 << 3;
    }
    void dragTargetRoundsHalvesAwayFromZeroAndClamps()
    {
        QFETCH(int, index);
        QFETCH(double, translation);
        QFETCH(int, target);
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"));
        inspector.select({"x"});
        const QUuid id = inspector.ctl().displayProperties()[index].id;
        inspector.ctl().dragProperty(id, index, translation);
        QCOMPARE(inspector.ctl().draggingPropertyID(), id);
        QCOMPARE(inspector.ctl().dropPropertyTargetIndex(), std::optional<int>(target));
    }

    void aDragBelongsToTheRowItBeganOn()
    {
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"));
        inspector.select({"x"});
        const CSSPropertyList properties = inspector.ctl().displayProperties();
        inspector.ctl().dragProperty(properties[0].id, 0, 45);
        inspector.ctl().dragProperty(properties[1].id, 1, 90);
        QCOMPARE(inspector.ctl().draggingPropertyID(), properties[0].id);
        QCOMPARE(inspector.ctl().dropPropertyTargetIndex(), std::optional<int>(1));
        inspector.ctl().endPropertyDrag(properties[1].id);
        QVERIFY(inspector.ctl().draggingPropertyID().isNull());
        QVERIFY(!inspector.ctl().dropPropertyTargetIndex());
        QVERIFY(!inspector.undo->canUndo());
    }

    void dropMovesBeforeTheTargetOrToTheEnd()
    {
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"));
        inspector.select({"x"});
        const QUuid a = inspector.property("x", "a").id;
        inspector.ctl().dragProperty(a, 0, 3 * 41);
        inspector.ctl().endPropertyDrag(a);
        QCOMPARE(inspector.declarations("x"), (QStringList{"b: 2", "c: 3", "a: 1"}));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Move Property"));

        const QUuid c = inspector.property("x", "c").id;
        inspector.ctl().dragProperty(c, 1, -41);
        inspector.ctl().endPropertyDrag(c);
        QCOMPARE(inspector.declarations("x"), (QStringList{"c: 3", "b: 2", "a: 1"}));
    }

    void dropOnItsOwnLineChangesNothing()
    {
        Inspector inspector(QStringLiteral("x { a: 1; b: 2; c: 3; }"), true, Disk::Unsaved);
        inspector.select({"x"});
        const QUuid b = inspector.property("x", "b").id;
        for (const double translation : {10.0, 41.0}) {
            inspector.ctl().dragProperty(b, 1, translation);
            inspector.ctl().endPropertyDrag(b);
        }
        endTurn();
        QCOMPARE(inspector.declarations("x"), (QStringList{"a: 1", "b: 2", "c: 3"}));
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    // --- Add ---

    void addRowWithANameAndNoValueClosesOnATapAndAddsNothing()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"), true, Disk::Unsaved);
        inspector.select({"a"});
        inspector.ctl().openAddRow();
        inspector.ctl().setNewPropertyName(QStringLiteral("margin"));
        inspector.ctl().setNewPropertyValue(QStringLiteral(" \t "));
        inspector.ctl().commitCurrentEdit();
        QVERIFY(!inspector.ctl().isAddingProperty());
        QVERIFY(inspector.ctl().newPropertyName().isEmpty());
        QCOMPARE(inspector.declarations("a"), QStringList{"color: red"});
        endTurn();
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void addTrimsAndAppendsADuplicateNameWithOneStep()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        inspector.ctl().openAddRow();
        inspector.ctl().setNewPropertyName(QStringLiteral("  color\t"));
        inspector.ctl().setNewPropertyValue(QStringLiteral(" blue "));
        inspector.ctl().commitNewProperty();
        QCOMPARE(inspector.declarations("a"), (QStringList{"color: red", "color: blue"}));
        QVERIFY(!inspector.ctl().isAddingProperty());
        QVERIFY(inspector.ctl().newPropertyValue().isEmpty());
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Add Property"));
        endTurn();
        QVERIFY(inspector.file->hasUnsavedChanges());
        inspector.undo->undo();
        QCOMPARE(inspector.declarations("a"), QStringList{"color: red"});
        QVERIFY(!inspector.undo->canRedo());
        endTurn();
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void addInAMultiSelectionAddsToEachWithFreshIdsAndOneUndo()
    {
        Inspector inspector(QStringLiteral("a { top: 0; }\nb { top: 0; }\nc { top: 0; }"));
        inspector.select({"a", "c"});
        inspector.ctl().openAddRow();
        inspector.ctl().setNewPropertyName(QStringLiteral("color"));
        inspector.ctl().setNewPropertyValue(QStringLiteral("red"));
        inspector.ctl().commitNewProperty();
        QCOMPARE(inspector.declarations("a"), (QStringList{"top: 0", "color: red"}));
        QCOMPARE(inspector.declarations("b"), QStringList{"top: 0"});
        QCOMPARE(inspector.declarations("c"), (QStringList{"top: 0", "color: red"}));
        QVERIFY(inspector.property("a", "color").id != inspector.property("c", "color").id);
        endTurn();

        // The step keeps the rulesets it added to, also when they left the file.
        const CSSRulesetPtr c = inspector.named("c");
        inspector.file->setRulesets({inspector.named("a"), inspector.named("b")});
        inspector.undo->undo();
        QCOMPARE(inspector.declarations("a"), QStringList{"top: 0"});
        QCOMPARE(c->properties().size(), 1);
        QVERIFY(!inspector.undo->canRedo());
    }

    void shouldAddPropertyOpensAnEmptyRowOrKeepsAnOpenOne()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        inspector.workspace.setShouldAddProperty(true);
        QVERIFY(!inspector.workspace.shouldAddProperty());
        QVERIFY(inspector.ctl().isAddingProperty());
        inspector.ctl().setNewPropertyName(QStringLiteral("mar"));
        inspector.workspace.setShouldAddProperty(true);
        QVERIFY(!inspector.workspace.shouldAddProperty());
        QVERIFY(inspector.ctl().isAddingProperty());
        QCOMPARE(inspector.ctl().newPropertyName(), QStringLiteral("mar"));
        inspector.ctl().handleShouldAddProperty(false);
        QVERIFY(inspector.ctl().isAddingProperty());
        inspector.ctl().cancelNewProperty();
        QVERIFY(!inspector.ctl().isAddingProperty());
        QVERIFY(inspector.ctl().newPropertyName().isEmpty());
    }

    void aControllerMadeWhileTheFlagIsUpTakesIt()
    {
        Workspace workspace;
        workspace.setShouldAddProperty(true);
        PropertyEditorController controller(workspace, nullptr);
        QVERIFY(!workspace.shouldAddProperty());
        QVERIFY(controller.isAddingProperty());
    }

    // --- Sort ---

    void sortIsStableCaseInsensitiveAndUndoable()
    {
        Inspector inspector(QStringLiteral("x { margin: 1; Color: 2; border: 3; color: 4; "
                                           "--z: 5; align-items: 6; }"));
        inspector.select({"x"});
        inspector.ctl().sortPropertiesAlphabetically();
        QCOMPARE(inspector.names(inspector.named("x")->properties()),
                 (QStringList{"--z", "align-items", "border", "Color", "color", "margin"}));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Sort Properties"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.names(inspector.named("x")->properties()),
                 (QStringList{"margin", "Color", "border", "color", "--z", "align-items"}));
        QVERIFY(!inspector.undo->canRedo());
    }

    void sortingASortedListMakesNoStepAndDoesNotMark()
    {
        Inspector inspector(QStringLiteral("x { a: 1; B: 2; c: 3; }"), true, Disk::Unsaved);
        inspector.select({"x"});
        inspector.ctl().sortPropertiesAlphabetically();
        endTurn();
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    // --- Selector ---

    void renameSelectorTrimsAndUndoes()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        QSignalSpy focus(&inspector.ctl(), &PropertyEditorController::selectorFocusRequested);
        inspector.ctl().startSelectorEdit();
        QVERIFY(inspector.ctl().isEditingSelector());
        QCOMPARE(inspector.ctl().selectorText(), QStringLiteral("a"));
        QCOMPARE(focus.count(), 0);
        QTRY_COMPARE(focus.count(), 1);
        inspector.ctl().setSelectorText(QStringLiteral("  .card \t"));
        inspector.ctl().commitRenameSelector();
        QVERIFY(!inspector.ctl().isEditingSelector());
        QCOMPARE(inspector.file->rulesets().first()->selector(), QStringLiteral(".card"));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Rename Ruleset"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.file->rulesets().first()->selector(), QStringLiteral("a"));
        QVERIFY(!inspector.undo->canRedo());
    }

    void blankOrUnchangedSelectorChangesNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("blank") << QStringLiteral(" \t ");
        QTest::newRow("unchanged") << QStringLiteral(" a ");
    }
    void blankOrUnchangedSelectorChangesNothing()
    {
        QFETCH(QString, text);
        Inspector inspector(QStringLiteral("a { color: red; }"), true, Disk::Unsaved);
        inspector.select({"a"});
        inspector.ctl().startSelectorEdit();
        inspector.ctl().setSelectorText(text);
        inspector.ctl().commitRenameSelector();
        endTurn();
        QVERIFY(!inspector.ctl().isEditingSelector());
        QCOMPARE(inspector.named("a")->selector(), QStringLiteral("a"));
        QVERIFY(!inspector.undo->canUndo());
        QVERIFY(!inspector.file->hasUnsavedChanges());
    }

    void escapeInTheSelectorDropsTheText()
    {
        Inspector inspector(QStringLiteral("a { color: red; }"));
        inspector.select({"a"});
        inspector.ctl().startSelectorEdit();
        inspector.ctl().setSelectorText(QStringLiteral(".b"));
        inspector.ctl().cancelSelectorEdit();
        QVERIFY(!inspector.ctl().isEditingSelector());
        QCOMPARE(inspector.named("a")->selector(), QStringLiteral("a"));
    }

    void tabInTheSelectorCommitsAndEditsTheFirstName()
    {
        Inspector inspector(QStringLiteral("a { color: red; top: 0; }\nb { }"));
        inspector.select({"a"});
        inspector.ctl().startSelectorEdit();
        inspector.ctl().setSelectorText(QStringLiteral(".a"));
        inspector.ctl().tabFromSelector();
        QCOMPARE(inspector.named(".a")->selector(), QStringLiteral(".a"));
        QCOMPARE(inspector.ctl().requestedFocus(inspector.property(".a", "color").id),
                 PropertyField::Name);

        inspector.ctl().clearRequestedPropertyFocus();
        inspector.select({"b"});
        inspector.ctl().startSelectorEdit();
        inspector.ctl().tabFromSelector();
        QVERIFY(!inspector.ctl().requestedPropertyFocus());
        QVERIFY(!inspector.ctl().isEditingSelector());
    }

    void aSelectorEditInProgressIsSavedToTheRulesetItWasTypedFor()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { top: 0; }"));
        inspector.select({"a"});
        const CSSRulesetPtr a = inspector.named("a");
        const CSSRulesetPtr b = inspector.named("b");
        inspector.ctl().startSelectorEdit();
        inspector.ctl().setSelectorText(QStringLiteral(".first "));
        inspector.select({"b"});
        QVERIFY(!inspector.ctl().isEditingSelector());
        QCOMPARE(a->selector(), QStringLiteral(".first"));
        QCOMPARE(b->selector(), QStringLiteral("b"));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Rename Ruleset"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(a->selector(), QStringLiteral("a"));
    }

    void focusPanelFlagStartsTheSelectorEditUnlessMultiSelected()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: red; }"));
        inspector.select({"a"});
        inspector.workspace.setShouldFocusPropertyPanel(true);
        QVERIFY(!inspector.workspace.shouldFocusPropertyPanel());
        QVERIFY(inspector.ctl().isEditingSelector());
        inspector.ctl().cancelSelectorEdit();

        inspector.select({"a", "b"});
        inspector.workspace.setShouldFocusPropertyPanel(true);
        QVERIFY(!inspector.workspace.shouldFocusPropertyPanel());
        QVERIFY(!inspector.ctl().isEditingSelector());
    }

    // --- Retargeting ---

    void aPropertyEditRunningWhenTheSelectionMovesIsCommittedToItsRuleset()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        inspector.select({"a"});
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().startEditing(color);
        typeValue(inspector, color, QStringLiteral("teal"));
        inspector.select({"b"});
        QVERIFY(inspector.ctl().editingPropertyID().isNull());
        QCOMPARE(inspector.ctl().ruleset(), inspector.named("b"));
        QCOMPARE(inspector.undo->undoActionName(), QStringLiteral("Edit Property"));
        QCOMPARE(inspector.value("b", "color"), QStringLiteral("blue"));
        endTurn();
        inspector.undo->undo();
        QCOMPARE(inspector.value("a", "color"), QStringLiteral("red"));
    }

    // The other rulesets an edit reached stay within reach of its step after
    // they left the file; only the primary ruleset is held weakly.
    void stepsKeepTheOtherRulesetsTheyReached()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        inspector.select({"a", "b"});
        inspector.ctl().openAddRow();
        inspector.ctl().setNewPropertyName(QStringLiteral("top"));
        inspector.ctl().setNewPropertyValue(QStringLiteral("0"));
        inspector.ctl().commitNewProperty();
        endTurn();
        const CSSProperty color = inspector.property("a", "color");
        inspector.ctl().commitColorChange(color.id, QStringLiteral("red"),
                                          QStringLiteral("#123456"));
        endTurn();
        inspector.ctl().startEditing(inspector.property("a", "color"));
        inspector.ctl().liveUpdateProperty(color.id, QStringLiteral("colour"),
                                           QStringLiteral("green"));
        inspector.ctl().finishEditing(color.id);
        endTurn();
        QCOMPARE(inspector.declarations("b"), (QStringList{"colour: green", "top: 0"}));

        const std::weak_ptr<CSSRuleset> b = inspector.named("b");
        inspector.select({"a"});
        inspector.file->setRulesets({inspector.named("a")});
        QVERIFY(!b.expired());

        inspector.undo->undo();
        QCOMPARE(b.lock()->properties().first().name, QStringLiteral("color"));
        inspector.undo->undo();
        QCOMPARE(b.lock()->properties().first().value, QStringLiteral("blue"));
        inspector.undo->undo();
        QCOMPARE(b.lock()->properties().size(), 1);
        QCOMPARE(inspector.declarations("a"), QStringList{"color: red"});
    }

    void stepsOfARulesetThatHasGoneChangeNothingInIt()
    {
        Inspector inspector(QStringLiteral("a { color: red; }\nb { top: 0; }"));
        inspector.select({"a"});
        std::weak_ptr<CSSRuleset> a = inspector.named("a");
        inspector.ctl().deleteProperty(inspector.property("a", "color").id);
        endTurn();
        inspector.select({"b"});
        inspector.file->setRulesets({inspector.named("b")});
        QVERIFY(a.expired());
        inspector.undo->undo();
        QVERIFY(!inspector.undo->canUndo());
        QCOMPARE(inspector.declarations("b"), QStringList{"top: 0"});
    }
};

QTEST_GUILESS_MAIN(TestPropertyEditorController)
#include "tst_propertyeditorcontroller.moc"
