#include "CanvasTestSupport.h"

#include "model/CSSParser.h"

#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;
using CanvasTest::Canvas;
using CanvasTest::endTurn;

class TestRulesetOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addRulesetWithBlankSelectorOnlyClosesTheSheet()
    {
        Canvas canvas(QStringLiteral(".a { color: red; }"), true, CanvasTest::Disk::AsGiven);
        canvas.state().setShowNewRulesetSheet(true);
        QSignalSpy marks(canvas.file.get(), &CSSFile::rulesetsChanged);
        canvas.ops().addRuleset(QStringLiteral(" \t  "));
        QVERIFY(!canvas.state().showNewRulesetSheet());
        endTurn();
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(".a")});
        QCOMPARE(marks.count(), 0);
        QVERIFY(!canvas.file->hasUnsavedChanges());
        QVERIFY(!canvas.undo->canUndo());
    }

    void addRulesetAppendsSelectsScrollsAndLaterAsksForAProperty()
    {
        Canvas canvas(QStringLiteral(".a { color: red; }\n.b { top: 0; }"));
        canvas.state().setShowNewRulesetSheet(true);
        canvas.ops().addRuleset(QStringLiteral("  .new \t"));
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b", ".new"}));
        const CSSRulesetPtr added = canvas.at(2);
        QVERIFY(added->properties().isEmpty());
        QCOMPARE(added->position(), CSSParser::positionForIndex(2));
        QCOMPARE(canvas.workspace.selectedRuleset(), added);
        QCOMPARE(canvas.workspace.selectedRulesetIDs(), QSet<QUuid>{added->id()});
        QCOMPARE(canvas.state().scrollToID(), added->id());
        QVERIFY(!canvas.state().showNewRulesetSheet());
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("New Ruleset"));
        QVERIFY(!canvas.workspace.shouldAddProperty());
        QTRY_VERIFY(canvas.workspace.shouldAddProperty());
        QVERIFY(canvas.file->hasUnsavedChanges());
    }

    void addRulesetFromAnotherTabSwitchesToTheRulesets_data()
    {
        QTest::addColumn<CanvasTab>("tab");
        QTest::newRow("code") << CanvasTab::Code;
        QTest::newRow("variables") << CanvasTab::Variables;
    }
    void addRulesetFromAnotherTabSwitchesToTheRulesets()
    {
        QFETCH(CanvasTab, tab);
        Canvas canvas(QStringLiteral(".a { color: red; }"));
        canvas.workspace.setCanvasTab(tab);
        canvas.ops().addRuleset(QStringLiteral(".b"));
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Nodes);
    }

    void newRulesetUndoesThenRedoesOnceAndNoMore()
    {
        Canvas canvas(QStringLiteral(".a { color: red; }\n.b { top: 0; }"));
        canvas.ops().addRuleset(QStringLiteral(".new"));
        const CSSRulesetPtr added = canvas.named(QStringLiteral(".new"));
        endTurn();

        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), added);
        QCOMPARE(canvas.undo->redoActionName(), QStringLiteral("New Ruleset"));

        canvas.undo->redo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b", ".new"}));
        QCOMPARE(canvas.at(2), added);
        QVERIFY(!canvas.undo->canUndo());
        QVERIFY(!canvas.undo->canRedo());
        QCOMPARE(canvas.undo->undoMenuItemTitle(), QStringLiteral("Undo"));

        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b", ".new"}));
    }

    void addRulesetWithoutUndoManagerStillAdds()
    {
        Canvas canvas(QStringLiteral(".a { color: red; }"), false);
        canvas.ops().addRuleset(QStringLiteral(".b"));
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b"}));
        QTRY_VERIFY(canvas.workspace.shouldAddProperty());
    }

    void addVariablePrefixesTheNameAndTrimsTheValue()
    {
        Canvas canvas(QStringLiteral(":root { color: red; }"));
        canvas.state().setNewVariableSelector(QStringLiteral(":root"));
        canvas.state().setShowNewVariableSheet(true);
        canvas.ops().addVariable(QStringLiteral(" accent\t"), QStringLiteral("  red  "));
        const CSSPropertyList properties = canvas.at(0)->properties();
        QCOMPARE(properties.size(), 2);
        QCOMPARE(properties.last().name, QStringLiteral("--accent"));
        QCOMPARE(properties.last().value, QStringLiteral("red"));
        QVERIFY(!canvas.state().showNewVariableSheet());
        QCOMPARE(canvas.workspace.selectedVariablePropID(), properties.last().id);
        QCOMPARE(canvas.workspace.selectedVariableRulesetID(), canvas.at(0)->id());
        QCOMPARE(canvas.state().variableScrollToPropID(), properties.last().id);
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Add Variable"));
    }

    void addVariableRejectsShortNamesAndBlankValues_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::newRow("dashes only") << "--"
                                     << "red";
        QTest::newRow("dashes and blanks") << " -- "
                                           << "red";
        QTest::newRow("blank value") << "--x"
                                     << " \t";
        QTest::newRow("empty name") << ""
                                    << "red";
        // Three code units, but the mark joins the second dash: two characters.
        QTest::newRow("combining mark") << QStringLiteral("--\u0301") << "red";
    }
    void addVariableRejectsShortNamesAndBlankValues()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        Canvas canvas(QStringLiteral(":root { color: red; }"), true, CanvasTest::Disk::AsGiven);
        canvas.state().setNewVariableSelector(QStringLiteral(":root"));
        canvas.state().setShowNewVariableSheet(true);
        canvas.ops().addVariable(name, value);
        QVERIFY(!canvas.state().showNewVariableSheet());
        QCOMPARE(canvas.at(0)->properties().size(), 1);
        QVERIFY(!canvas.undo->canUndo());
        endTurn();
        QVERIFY(!canvas.file->hasUnsavedChanges());
    }

    void addVariableTakesASingleDashAsThreeDashes()
    {
        Canvas canvas(QStringLiteral(":root { color: red; }"));
        canvas.state().setNewVariableSelector(QStringLiteral(":root"));
        canvas.ops().addVariable(QStringLiteral("-"), QStringLiteral("1px"));
        QCOMPARE(canvas.at(0)->properties().last().name, QStringLiteral("---"));
    }

    void addVariableOnAnEmptyFileMakesRootWhateverTheSelector()
    {
        Canvas canvas(QString{});
        canvas.state().setNewVariableSelector(QStringLiteral("body"));
        canvas.ops().addVariable(QStringLiteral("--gap"), QStringLiteral("4px"));
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(":root")});
        QCOMPARE(canvas.at(0)->position(), QPointF(0, 0));
        QCOMPARE(canvas.at(0)->properties().size(), 1);
        endTurn();
        canvas.undo->undo();
        QVERIFY(canvas.file->rulesets().isEmpty());
        QVERIFY(!canvas.undo->canRedo());
    }

    void addVariableFindsTheSelectorIgnoringCase()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.btn { color: red; }\n.BTN { top: 1px; }"));
        canvas.state().setNewVariableSelector(QStringLiteral("  .BTN "));
        canvas.ops().addVariable(QStringLiteral("--x"), QStringLiteral("1"));
        QCOMPARE(canvas.named(QStringLiteral(".btn"))->properties().size(), 2);
        QCOMPARE(canvas.named(QStringLiteral(".BTN"))->properties().size(), 1);
        QCOMPARE(canvas.file->rulesets().size(), 3);
    }

    void addVariableToANewSelectorAppendsItAndOneUndoRemovesBoth()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        QSet<QUuid> collapsed{QUuid::createUuid()};
        canvas.state().setCollapsedGroups(collapsed);
        canvas.state().setNewVariableSelector(QStringLiteral("  .theme dark\t"));
        canvas.ops().addVariable(QStringLiteral("--x"), QStringLiteral("1"));
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".theme dark"}));
        const CSSRulesetPtr made = canvas.at(1);
        QCOMPARE(made->position(), QPointF(0, 0));
        QCOMPARE(made->properties().size(), 1);
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Add Variable"));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(".a")});
        QVERIFY(made->properties().isEmpty());
        QVERIFY(!canvas.undo->canUndo());
        QVERIFY(!canvas.undo->canRedo());
    }

    void addVariableToABlankSelectorMakesRoot()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.state().setNewVariableSelector(QStringLiteral("  "));
        canvas.ops().addVariable(QStringLiteral("--x"), QStringLiteral("1"));
        QCOMPARE(canvas.selectors(), (QStringList{".a", ":root"}));
    }

    void addVariableUnfoldsItsGroupAndKeepsTheTab()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        const QUuid other = QUuid::createUuid();
        canvas.state().setCollapsedGroups({canvas.at(0)->id(), other});
        canvas.workspace.setCanvasTab(CanvasTab::Code);
        canvas.state().setNewVariableSelector(QStringLiteral(".a"));
        canvas.ops().addVariable(QStringLiteral("--x"), QStringLiteral("1"));
        QCOMPARE(canvas.state().collapsedGroups(), QSet<QUuid>{other});
        QCOMPARE(canvas.workspace.canvasTab(), CanvasTab::Code);
    }

    void addVariableUndoOfAReplacedRulesetOnlyMarks()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.state().setNewVariableSelector(QStringLiteral(".a"));
        canvas.ops().addVariable(QStringLiteral("--x"), QStringLiteral("1"));
        endTurn();
        const QString text = canvas.file->generateCSS();
        // A code edit replaces the rulesets: the step's ruleset has gone.
        canvas.file->setRulesets(CSSParser::parse(text));
        endTurn();
        canvas.undo->undo();
        QCOMPARE(canvas.file->generateCSS(), text);
        QVERIFY(!canvas.undo->canRedo());
    }

    void duplicateOfTheLastIsLastAndUndoLeavesTheSelection()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { color: red; margin: 1px; }"));
        const CSSRulesetPtr original = canvas.at(1);
        canvas.ops().duplicateRuleset(original);
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b", ".b"}));
        const CSSRulesetPtr copy = canvas.at(2);
        QVERIFY(copy != original);
        QCOMPARE(copy->position(), CSSParser::positionForIndex(2));
        QCOMPARE(copy->properties().size(), 2);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(copy->properties()[i].name, original->properties()[i].name);
            QCOMPARE(copy->properties()[i].value, original->properties()[i].value);
            QVERIFY(copy->properties()[i].id != original->properties()[i].id);
        }
        QCOMPARE(canvas.workspace.selectedRuleset(), copy);
        QCOMPARE(canvas.state().scrollToID(), copy->id());
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Duplicate Ruleset"));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), copy);
        QVERIFY(!canvas.undo->canRedo());
    }

    void duplicateGoesRightBehindItsOriginal()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }"));
        canvas.ops().duplicateRuleset(canvas.at(0));
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".a", ".b"}));
    }

    void duplicateUndoOfAGoneCopyChangesNothing()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.ops().duplicateRuleset(canvas.at(0));
        endTurn();
        canvas.workspace.setSelectedRuleset(nullptr);
        canvas.file->setRulesets(CSSParser::parse(canvas.file->generateCSS()));
        endTurn();
        QSignalSpy changes(canvas.file.get(), &CSSFile::rulesetsChanged);
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".a"}));
        QCOMPARE(changes.count(), 0);
    }

    void duplicateOrDeleteOfAnUnknownRulesetDoesNothing()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        const auto stranger = std::make_shared<CSSRuleset>(QStringLiteral(".x"));
        canvas.ops().duplicateRuleset(stranger);
        canvas.ops().deleteRuleset(stranger);
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(".a")});
        QVERIFY(!canvas.undo->canUndo());
    }

    void deleteOfTheSelectedMiddleSelectsTheFirst()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }\n.c { top: 2px; }"));
        const CSSRulesetPtr middle = canvas.at(1);
        canvas.workspace.setSelectedRuleset(middle);
        canvas.ops().deleteRuleset(middle);
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".c"}));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Delete Ruleset"));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b", ".c"}));
        QCOMPARE(canvas.at(1), middle);
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        QVERIFY(!canvas.undo->canRedo());
    }

    void deleteOfTheOnlyRulesetSelectsNothing()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.ops().deleteRuleset(canvas.at(0));
        QVERIFY(canvas.file->rulesets().isEmpty());
        QCOMPARE(canvas.workspace.selectedRuleset(), nullptr);
        QVERIFY(canvas.workspace.selectedRulesetIDs().isEmpty());
    }

    void deleteOfAnUnselectedRulesetLeavesTheSelectionAndItsStaleID()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }\n.c { top: 2px; }"));
        canvas.workspace.setSelectedRuleset(canvas.at(0));
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({".a", ".c"}));
        const QUuid removed = canvas.at(2)->id();
        canvas.ops().deleteRuleset(canvas.at(2));
        QCOMPARE(canvas.workspace.selectedRuleset(), canvas.at(0));
        QVERIFY(canvas.workspace.selectedRulesetIDs().contains(removed));
    }

    void deleteUndoInsertsAtTheEndWhenTheOldIndexIsBeyondIt()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }\n.c { top: 2px; }"));
        const CSSRulesetPtr last = canvas.at(2);
        canvas.ops().deleteRuleset(last);
        endTurn();
        canvas.file->setRulesets({canvas.at(0)});
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".c"}));
        QCOMPARE(canvas.at(1), last);
    }

    void deleteUndoReinstatesTheObjectEvenAfterACodeEdit()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }"));
        const CSSRulesetPtr removed = canvas.at(0);
        canvas.ops().deleteRuleset(removed);
        endTurn();
        canvas.file->setRulesets(CSSParser::parse(canvas.file->generateCSS()));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{".a", ".b"}));
        QCOMPARE(canvas.at(0), removed);
    }

    void deleteWithoutUndoManagerStillDeletes()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }\n.b { top: 1px; }"), false);
        canvas.ops().deleteRuleset(canvas.at(0));
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(".b")});
    }

    void beginRenameOpensTheEditorOnTheSelector()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.ops().beginRenameRuleset(canvas.at(0));
        QCOMPARE(canvas.state().editingRulesetID(), canvas.at(0)->id());
        QCOMPARE(canvas.state().editingRulesetText(), QStringLiteral(".a"));
    }

    void commitRenameOfTheSameTrimmedSelectorMakesNoStep()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.ops().beginRenameRuleset(canvas.at(0));
        canvas.state().setEditingRulesetText(QStringLiteral("  .a\t"));
        canvas.ops().commitRenameRuleset(canvas.at(0));
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral(".a"));
        QVERIFY(!canvas.undo->canUndo());
    }

    void commitRenameOfABlankTextKeepsTheSelector()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.ops().beginRenameRuleset(canvas.at(0));
        canvas.state().setEditingRulesetText(QStringLiteral(" \t "));
        canvas.ops().commitRenameRuleset(canvas.at(0));
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QCOMPARE(canvas.at(0)->selector(), QStringLiteral(".a"));
        QVERIFY(!canvas.undo->canUndo());
    }

    void commitRenameAppliesTheTrimmedTextAndUndoesWithoutRedo()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        const CSSRulesetPtr ruleset = canvas.at(0);
        canvas.ops().beginRenameRuleset(ruleset);
        canvas.state().setEditingRulesetText(QStringLiteral(" .card > p "));
        canvas.ops().commitRenameRuleset(ruleset);
        QCOMPARE(ruleset->selector(), QStringLiteral(".card > p"));
        QVERIFY(canvas.state().editingRulesetID().isNull());
        QTRY_VERIFY(canvas.file->hasUnsavedChanges());
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Rename Ruleset"));
        canvas.undo->undo();
        QCOMPARE(ruleset->selector(), QStringLiteral(".a"));
        QVERIFY(!canvas.undo->canRedo());
        QTRY_VERIFY(!canvas.file->hasUnsavedChanges());
    }

    void renameUndoOfAGoneRulesetOnlyMarks()
    {
        Canvas canvas(QStringLiteral(".a { top: 0; }"));
        canvas.ops().beginRenameRuleset(canvas.at(0));
        canvas.state().setEditingRulesetText(QStringLiteral(".b"));
        canvas.ops().commitRenameRuleset(canvas.at(0));
        endTurn();
        canvas.file->setRulesets(CSSParser::parse(canvas.file->generateCSS()));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), QStringList{QStringLiteral(".b")});
        QVERIFY(canvas.file->hasUnsavedChanges());
    }

    void moveOntoItselfOrItsFollowerChangesNothing_data()
    {
        QTest::addColumn<int>("before");
        QTest::newRow("own id") << 1;
        QTest::newRow("follower") << 2;
    }
    void moveOntoItselfOrItsFollowerChangesNothing()
    {
        QFETCH(int, before);
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }\nC { top: 0; }"), true,
                      CanvasTest::Disk::AsGiven);
        QSignalSpy changes(canvas.file.get(), &CSSFile::rulesetsChanged);
        canvas.ops().moveRuleset(canvas.at(1)->id(), canvas.at(before)->id());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C"}));
        QCOMPARE(changes.count(), 0);
        QVERIFY(!canvas.undo->canUndo());
        endTurn();
        QVERIFY(!canvas.file->hasUnsavedChanges());
    }

    void moveOfTheLastToTheEndChangesNothing()
    {
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }"));
        canvas.ops().moveRuleset(canvas.at(1)->id(), QUuid());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B"}));
        QVERIFY(!canvas.undo->canUndo());
    }

    void moveAlternatesBetweenUndoAndRedoWithoutLimit()
    {
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }\nC { top: 0; }"));
        canvas.ops().moveRuleset(canvas.at(0)->id(), QUuid::createUuid());
        QCOMPARE(canvas.selectors(), (QStringList{"B", "C", "A"}));
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Move Ruleset"));
        for (int round = 0; round < 3; ++round) {
            canvas.undo->undo();
            QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C"}));
            QCOMPARE(canvas.undo->redoActionName(), QStringLiteral("Move Ruleset"));
            QVERIFY(!canvas.undo->canUndo());
            canvas.undo->redo();
            QCOMPARE(canvas.selectors(), (QStringList{"B", "C", "A"}));
            QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Move Ruleset"));
            QVERIFY(!canvas.undo->canRedo());
        }
    }

    void moveDownwardsLandsBeforeItsTarget()
    {
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }\nC { top: 0; }\nD { top: 0; }"));
        canvas.ops().moveRuleset(canvas.at(0)->id(), canvas.at(2)->id());
        QCOMPARE(canvas.selectors(), (QStringList{"B", "A", "C", "D"}));
        canvas.ops().moveRuleset(canvas.named("D")->id(), canvas.named("B")->id());
        QCOMPARE(canvas.selectors(), (QStringList{"D", "B", "A", "C"}));
        endTurn();
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D"}));
    }

    void moveUndoWithTheSourceGoneEndsTheChain()
    {
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }\nC { top: 0; }"));
        canvas.ops().moveRuleset(canvas.at(0)->id(), QUuid());
        endTurn();
        canvas.file->setRulesets(CSSParser::parse(canvas.file->generateCSS()));
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{"B", "C", "A"}));
        QVERIFY(!canvas.undo->canRedo());
    }

    void moveWithoutUndoManagerDoesNothing()
    {
        Canvas canvas(QStringLiteral("A { top: 0; }\nB { top: 0; }\nC { top: 0; }"), false);
        canvas.ops().moveRuleset(canvas.at(0)->id(), QUuid());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C"}));
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A"}));
        canvas.ops().moveSelectedRulesets(QUuid());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C"}));
    }

    void moveSelectedKeepsFileOrderWhateverTheClickOrder_data()
    {
        QTest::addColumn<QStringList>("clicks");
        QTest::newRow("B first") << QStringList{"B", "D"};
        QTest::newRow("D first") << QStringList{"D", "B"};
    }
    void moveSelectedKeepsFileOrderWhateverTheClickOrder()
    {
        QFETCH(QStringList, clicks);
        Canvas canvas(CanvasTest::fiveRulesets);
        for (const QString &selector : clicks)
            canvas.controller->clickCard(canvas.named(selector), Qt::ControlModifier, 0);
        canvas.ops().moveSelectedRulesets(canvas.named("E")->id());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "C", "B", "D", "E"}));
        endTurn();
        QCOMPARE(canvas.undo->undoActionName(), QStringLiteral("Move Rulesets"));
        for (int round = 0; round < 3; ++round) {
            canvas.undo->undo();
            QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
            QVERIFY(!canvas.undo->canUndo());
            canvas.undo->redo();
            QCOMPARE(canvas.selectors(), (QStringList{"A", "C", "B", "D", "E"}));
            QVERIFY(!canvas.undo->canRedo());
        }
    }

    void moveSelectedBeforeASelectedRulesetSendsTheBlockToTheEnd()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A", "C"}));
        canvas.ops().moveSelectedRulesets(canvas.named("C")->id());
        QCOMPARE(canvas.selectors(), (QStringList{"B", "D", "E", "A", "C"}));
    }

    void moveSelectedWithAnUnchangedOrderMarksButMakesNoStep()
    {
        Canvas canvas(CanvasTest::fiveRulesets, true, CanvasTest::Disk::AsGiven);
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"B", "C"}));
        canvas.ops().moveSelectedRulesets(canvas.named("D")->id());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
        QVERIFY(!canvas.undo->canUndo());
        QTRY_VERIFY(canvas.file->hasUnsavedChanges());
    }

    void moveSelectedWithNothingSelectedDoesNothing()
    {
        Canvas canvas(CanvasTest::fiveRulesets, true, CanvasTest::Disk::AsGiven);
        canvas.ops().moveSelectedRulesets(QUuid());
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D", "E"}));
        endTurn();
        QVERIFY(!canvas.file->hasUnsavedChanges());
    }

    void moveSelectedUndoDropsRulesetsItDoesNotKnow()
    {
        Canvas canvas(CanvasTest::fiveRulesets);
        canvas.workspace.setSelectedRulesetIDs(canvas.idsOf({"A"}));
        canvas.ops().moveSelectedRulesets(QUuid());
        endTurn();
        CSSRulesetList rulesets = canvas.file->rulesets();
        rulesets.removeAt(rulesets.size() - 2); // E goes
        rulesets.append(std::make_shared<CSSRuleset>(QStringLiteral("F")));
        canvas.file->setRulesets(rulesets);
        canvas.undo->undo();
        QCOMPARE(canvas.selectors(), (QStringList{"A", "B", "C", "D"}));
        canvas.undo->redo();
        QCOMPARE(canvas.selectors(), (QStringList{"B", "C", "D", "A"}));
    }
};

QTEST_GUILESS_MAIN(TestRulesetOperations)
#include "tst_rulesetoperations.moc"
