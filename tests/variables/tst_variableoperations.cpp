// The operations of the variables tab on a real file: what each changes,
// what its undo step puts back, and which can be redone.

#include "VariablesTestSupport.h"

#include <QSignalSpy>

using namespace Ombrel;
using VariablesTest::endTurn;
using VariablesTest::Variables;

class TestVariableOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editWritesTheValueAndUndoPutsItBack()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("2px"));
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("2px"));
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Edit Variable"));
        endTurn();
        v.undo->undo();
        QCOMPARE(v.value(QStringLiteral("--a")), QStringLiteral("1px"));
        QVERIFY(!v.undo->canRedo());
    }

    void editToTheSameValueMakesNoStep()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("1px"));
        QVERIFY(!v.undo->canUndo());
    }

    void unknownIdsStopEveryOperation()
    {
        Variables v(QStringLiteral(":root { --a: 1px; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        const QString before = v.file->generateCSS();
        v.ops().updateVariable(a.propID, QUuid::createUuid(), QStringLiteral("2px"));
        v.ops().updateVariable(QUuid::createUuid(), a.rulesetID, QStringLiteral("2px"));
        v.ops().renameVariable(QUuid::createUuid(), a.rulesetID, QStringLiteral("--b"));
        v.ops().duplicateVariable(a.propID, QUuid::createUuid());
        v.ops().deleteVariable(QUuid::createUuid(), a.rulesetID);
        v.ops().moveVariable(QUuid::createUuid(), QUuid());
        QCOMPARE(v.file->generateCSS(), before);
        QVERIFY(!v.undo->canUndo());
    }

    void renameRewritesTheThreeFormsOfReference()
    {
        Variables v(QStringLiteral(":root { --brand: red; }\n"
                                   ".a { color: var(--brand); }\n"
                                   ".b { color: var(--brand, red); }\n"
                                   ".c { color: var(--brand ); }\n"
                                   ".d { color: var( --brand); }\n"
                                   ".e { width: calc(var(--brand) * 2); }\n"
                                   ".f { color: VAR(--brand); }\n"));
        const VariableEntry brand = v.entry(QStringLiteral("--brand"));
        v.ops().renameVariable(brand.propID, brand.rulesetID, QStringLiteral("--brand2"));
        QCOMPARE(v.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--brand2"));
        const auto color = [&v](const char *selector) {
            return v.named(QString::fromLatin1(selector))->properties().first().value;
        };
        QCOMPARE(color(".a"), QStringLiteral("var(--brand2)"));
        QCOMPARE(color(".b"), QStringLiteral("var(--brand2, red)"));
        QCOMPARE(color(".c"), QStringLiteral("var(--brand2 )"));
        QCOMPARE(color(".d"), QStringLiteral("var( --brand)"));
        QCOMPARE(color(".e"), QStringLiteral("calc(var(--brand2) * 2)"));
        QCOMPARE(color(".f"), QStringLiteral("VAR(--brand)"));
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Rename Variable"));
    }

    void renameTouchesThisFileOnly()
    {
        Variables v(QStringLiteral(":root { --brand: red; } .a { color: var(--brand); }"));
        const QString otherPath = v.dir.filePath(QStringLiteral("other.css"));
        QVERIFY(StylesheetFiles::writeFile(otherPath, ".b { color: var(--brand); }"));
        const CSSFilePtr other = StylesheetFiles::loadFile(otherPath);
        v.workspace.setFiles({v.file, other});
        const VariableEntry brand = v.entry(QStringLiteral("--brand"));
        v.ops().renameVariable(brand.propID, brand.rulesetID, QStringLiteral("--main"));
        QCOMPARE(v.named(QStringLiteral(".a"))->properties().first().value,
                 QStringLiteral("var(--main)"));
        QCOMPARE(other->rulesets().first()->properties().first().value,
                 QStringLiteral("var(--brand)"));
    }

    void renameRefusesANameWithoutTheDashes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << QStringLiteral("brand");
        QTest::newRow("one dash") << QStringLiteral("-brand");
        QTest::newRow("the same name") << QStringLiteral("--a");
    }
    void renameRefusesANameWithoutTheDashes()
    {
        QFETCH(QString, name);
        Variables v(QStringLiteral(":root { --a: 1; } .x { top: var(--a); }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        const QString before = v.file->generateCSS();
        v.ops().renameVariable(a.propID, a.rulesetID, name);
        QCOMPARE(v.file->generateCSS(), before);
        QVERIFY(!v.undo->canUndo());
    }

    void sequentialReplacementsRewriteANameWithABlankTwice()
    {
        Variables v(QStringLiteral(":root { --a: 1; } .x { top: var(--a); left: var(--a, 2); }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--a b"));
        const CSSPropertyList x = v.named(QStringLiteral(".x"))->properties();
        // var(--a) became var(--a b), which the third form, "var(--a ", finds again.
        QCOMPARE(x[0].value, QStringLiteral("var(--a b b)"));
        QCOMPARE(x[1].value, QStringLiteral("var(--a b b, 2)"));
    }

    void undoOfARenameWritesBackTheGatheredValues()
    {
        Variables v(QStringLiteral(":root { --a: 1; --ab: 2; }\n"
                                   ".x { top: var(--a); left: var(--ab); right: 0; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--z"));
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --z --ab"));
        const CSSRulesetPtr x = v.named(QStringLiteral(".x"));
        QCOMPARE(x->properties()[0].value, QStringLiteral("var(--z)"));
        // Gathered for mentioning --a, but none of the three forms: unchanged.
        QCOMPARE(x->properties()[1].value, QStringLiteral("var(--ab)"));
        endTurn();
        // Edited after the rename, as a code edit would, with no step of its own.
        CSSPropertyList edited = x->properties();
        edited[0].value = QStringLiteral("blue");
        edited[2].value = QStringLiteral("5px");
        x->setProperties(edited);
        v.undo->undo();
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --ab"));
        QCOMPARE(x->properties()[0].value, QStringLiteral("var(--a)"));
        QCOMPARE(x->properties()[1].value, QStringLiteral("var(--ab)"));
        // Not gathered: its value never mentioned --a.
        QCOMPARE(x->properties()[2].value, QStringLiteral("5px"));
        QVERIFY(!v.undo->canRedo());
    }

    void duplicateInsertsACopyBehindAndUndoRemovesIt()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.workspace.setSelectedVariablePropID(a.propID);
        v.ops().duplicateVariable(a.propID, a.rulesetID);
        endTurn();
        v.ops().duplicateVariable(a.propID, a.rulesetID);
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: --a --a-copy --a-copy --b")});
        QCOMPARE(v.named(QStringLiteral(":root"))->properties()[1].value, QStringLiteral("1"));
        QCOMPARE(v.workspace.selectedVariablePropID(), a.propID);
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Duplicate Variable"));
        endTurn();
        v.undo->undo();
        v.undo->undo();
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: --a --b")});
        QVERIFY(!v.undo->canRedo());
    }

    void deletingTheSelectedVariableClearsTheSelection()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        const VariableEntry b = v.entry(QStringLiteral("--b"));
        v.workspace.setSelectedVariablePropID(a.propID);
        v.workspace.setSelectedVariableRulesetID(a.rulesetID);
        v.ops().deleteVariable(b.propID, b.rulesetID);
        QCOMPARE(v.workspace.selectedVariablePropID(), a.propID);
        QCOMPARE(v.workspace.selectedVariableRulesetID(), a.rulesetID);
        v.ops().deleteVariable(a.propID, a.rulesetID);
        QVERIFY(v.workspace.selectedVariablePropID().isNull());
        QVERIFY(v.workspace.selectedVariableRulesetID().isNull());
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: ")});
    }

    void deleteLeavesReferencesAndUndoReinsertsAtTheOldPlace()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; --c: 3; } .x { top: var(--b); }"));
        const VariableEntry b = v.entry(QStringLiteral("--b"));
        v.ops().deleteVariable(b.propID, b.rulesetID);
        QCOMPARE(v.named(QStringLiteral(".x"))->properties().first().value,
                 QStringLiteral("var(--b)"));
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Delete Variable"));
        endTurn();
        v.undo->undo();
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --b --c"));
        QCOMPARE(v.entry(QStringLiteral("--b")).propID, b.propID);
        QVERIFY(!v.undo->canRedo());
    }

    void undoOfADeleteAfterOthersWentInsertsAtTheEnd()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; --c: 3; }"));
        const VariableEntry c = v.entry(QStringLiteral("--c"));
        v.ops().deleteVariable(c.propID, c.rulesetID);
        endTurn();
        const CSSRulesetPtr root = v.named(QStringLiteral(":root"));
        root->setProperties({root->properties().first()});
        v.undo->undo();
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --c"));
    }

    void undoingAStepOnAGoneRulesetChangesNothing_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::newRow("edit") << QStringLiteral("edit");
        QTest::newRow("rename") << QStringLiteral("rename");
        QTest::newRow("duplicate") << QStringLiteral("duplicate");
    }
    void undoingAStepOnAGoneRulesetChangesNothing()
    {
        QFETCH(QString, operation);
        Variables v(QStringLiteral(":root { --a: 1; } .x { top: var(--a); }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        if (operation == QLatin1String("edit"))
            v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("2"));
        else if (operation == QLatin1String("rename"))
            v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--b"));
        else
            v.ops().duplicateVariable(a.propID, a.rulesetID);
        endTurn();
        QTRY_VERIFY(v.file->hasUnsavedChanges());
        // The code tab parses the text again: every ruleset and id is new.
        v.reparse();
        const QString after = v.file->generateCSS();
        QSignalSpy changes(v.file.get(), &CSSFile::changed);
        v.undo->undo();
        endTurn();
        QCOMPARE(v.file->generateCSS(), after);
        QCOMPARE(changes.count(), 0);
        QVERIFY(!v.undo->canRedo());
    }

    void undoOfADeleteReinsertsIntoTheRulesetItKept()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"));
        const CSSRulesetPtr kept = v.named(QStringLiteral(":root"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().deleteVariable(a.propID, a.rulesetID);
        endTurn();
        v.reparse();
        const QString after = v.file->generateCSS();
        v.undo->undo();
        QCOMPARE(kept->properties().size(), 2);
        QCOMPARE(kept->properties().first().id, a.propID);
        QCOMPARE(v.file->generateCSS(), after);
    }

    void moveAcrossRulesetsUndoesAndRedoesWithoutLimit()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; } .x { --c: 3; }"));
        const QStringList start{QStringLiteral(":root: --a --b"), QStringLiteral(".x: --c")};
        const QStringList moved{QStringLiteral(":root: --b"), QStringLiteral(".x: --a --c")};
        v.ops().moveVariable(v.entry(QStringLiteral("--a")).propID,
                             v.entry(QStringLiteral("--c")).propID);
        QCOMPARE(v.layout(), moved);
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Move Variable"));
        endTurn();
        for (int round = 0; round < 4; ++round) {
            v.undo->undo();
            QCOMPARE(v.layout(), start);
            QVERIFY(v.undo->canRedo());
            QCOMPARE(v.undo->redoActionName(), QStringLiteral("Move Variable"));
            v.undo->redo();
            QCOMPARE(v.layout(), moved);
            QVERIFY(v.undo->canUndo());
        }
    }

    void moveToTheEndGoesToTheLastRulesetWithVariables()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; } .x { --c: 3; color: red; } "
                                   ".y { top: 0; }"));
        v.ops().moveVariable(v.entry(QStringLiteral("--a")).propID, QUuid());
        QCOMPARE(v.layout(),
                 (QStringList{QStringLiteral(":root: --b"), QStringLiteral(".x: --c color --a"),
                              QStringLiteral(".y: top")}));
    }

    void moveOfTheOnlyVariableToTheEndStaysInItsRuleset()
    {
        Variables v(QStringLiteral(".x { --a: 1; top: 0; } .y { top: 0; }"));
        // Already last: nothing to do.
        v.ops().moveVariable(v.entry(QStringLiteral("--a")).propID, QUuid());
        QVERIFY(!v.undo->canUndo());
        QCOMPARE(v.layout(),
                 (QStringList{QStringLiteral(".x: --a top"), QStringLiteral(".y: top")}));
    }

    void moveToWhereItStandsMakesNoStep()
    {
        Variables v(QStringLiteral(":root { --a: 1; color: red; --b: 2; }"));
        const QUuid a = v.entry(QStringLiteral("--a")).propID;
        v.ops().moveVariable(a, a);
        v.ops().moveVariable(a, v.entry(QStringLiteral("--b")).propID);
        QVERIFY(!v.undo->canUndo());
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a color --b"));
    }

    void undoingAMoveOfARulesetsLastVariablePutsItBeforeTheNextOne()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; } .x { --c: 3; }"));
        v.ops().moveVariable(v.entry(QStringLiteral("--b")).propID,
                             v.entry(QStringLiteral("--a")).propID);
        QCOMPARE(v.layout(),
                 (QStringList{QStringLiteral(":root: --b --a"), QStringLiteral(".x: --c")}));
        endTurn();
        v.undo->undo();
        QCOMPARE(v.layout(),
                 (QStringList{QStringLiteral(":root: --a"), QStringLiteral(".x: --b --c")}));
    }

    void moveBeforeAnIdThatLeadsNowhereLeavesThePropertyOut()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"));
        v.ops().moveVariable(v.entry(QStringLiteral("--a")).propID, QUuid::createUuid());
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: --b")});
        QCOMPARE(v.undo->undoActionName(), QStringLiteral("Move Variable"));
        endTurn();
        // Its way back starts from a property that is nowhere: nothing moves.
        v.undo->undo();
        QCOMPARE(v.layout(), QStringList{QStringLiteral(":root: --b")});
        QVERIFY(!v.undo->canRedo());
    }

    void withoutAnUndoManagerMovesDoNothingAndTheRestWorks()
    {
        Variables v(QStringLiteral(":root { --a: 1; --b: 2; }"), false);
        v.ops().moveVariable(v.entry(QStringLiteral("--b")).propID,
                             v.entry(QStringLiteral("--a")).propID);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --a --b"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        v.ops().updateVariable(a.propID, a.rulesetID, QStringLiteral("9"));
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--z"));
        v.ops().duplicateVariable(a.propID, a.rulesetID);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --z --z-copy --b"));
        v.ops().deleteVariable(a.propID, a.rulesetID);
        QCOMPARE(v.layout().first(), QStringLiteral(":root: --z-copy --b"));
    }

    void aFileOfItsOwnNeedsNoWorkspace()
    {
        const auto file = std::make_shared<CSSFile>(
            QString(), CSSParser::parse(QStringLiteral(":root { --a: 1; } .x { top: var(--a); }")),
            QString());
        UndoManager undo;
        VariableOperations operations(file, &undo);
        const CSSRulesetPtr root = file->rulesets().first();
        operations.renameVariable(root->properties().first().id, root->id(), QStringLiteral("--b"));
        QCOMPARE(file->rulesets()[1]->properties().first().value, QStringLiteral("var(--b)"));
        operations.deleteVariable(root->properties().first().id, root->id());
        QVERIFY(root->properties().isEmpty());
    }

    void hugeValuesAreEditedAndRenamed()
    {
        QString big;
        for (int i = 0; i < 10'000; ++i)
            big += QStringLiteral("var(--a) ");
        QCOMPARE_GE(big.size(), 90'000);
        Variables v(QStringLiteral(":root { --a: 1; } .x { top: ") + big + QStringLiteral("; }"));
        const VariableEntry a = v.entry(QStringLiteral("--a"));
        const QString original = v.named(QStringLiteral(".x"))->properties().first().value;
        v.ops().updateVariable(a.propID, a.rulesetID, big + big);
        QCOMPARE(v.value(QStringLiteral("--a")).size(), 2 * big.size());
        v.ops().renameVariable(a.propID, a.rulesetID, QStringLiteral("--bb"));
        const QString top = v.named(QStringLiteral(".x"))->properties().first().value;
        QCOMPARE(top.count(QStringLiteral("var(--bb)")), 10'000);
        QCOMPARE(v.value(QStringLiteral("--bb")).count(QStringLiteral("var(--bb)")), 20'000);
        endTurn();
        v.undo->undo();
        QCOMPARE(v.named(QStringLiteral(".x"))->properties().first().value, original);
    }
};

QTEST_GUILESS_MAIN(TestVariableOperations)
#include "tst_variableoperations.moc"
