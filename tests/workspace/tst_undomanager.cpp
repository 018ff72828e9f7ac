#include "workspace/UndoManager.h"

#include <QAction>
#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;

namespace {

// Stand-ins for the objects that steps are registered against.
const char fileA = 'a';
const char fileB = 'b';

} // namespace

class TestUndoManager : public QObject
{
    Q_OBJECT

    // Runs work as an event of its own, after everything already queued, and
    // returns once it ran: the registrations in it belong to a new turn.
    static void inNextTurn(UndoManager &undo, const std::function<void()> &work)
    {
        bool ran = false;
        QMetaObject::invokeMethod(
            &undo,
            [&] {
                work();
                ran = true;
            },
            Qt::QueuedConnection);
        QTRY_VERIFY(ran);
    }

    // A reversible change in the manner of a move: every run registers its
    // own inverse, so undo and redo alternate without limit.
    static void setValue(UndoManager &undo, int &value, int to)
    {
        const int from = value;
        value = to;
        undo.registerUndo(&fileA, [&undo, &value, from] { setValue(undo, value, from); });
        undo.setActionName(QStringLiteral("Move Ruleset"));
    }

    // A step of one target that logs each run and registers itself again.
    static void reversible(UndoManager &undo, const void *target, QStringList &log,
                           const QString &entry)
    {
        undo.registerUndo(target, [&undo, target, &log, entry] {
            log << entry;
            reversible(undo, target, log, entry);
        });
    }

private Q_SLOTS:
    void registrationsOfOneTurnFormOneGroup()
    {
        UndoManager undo;
        QStringList log;
        undo.registerUndo(&fileA, [&] { log << QStringLiteral("a"); });
        undo.registerUndo(&fileA, [&] { log << QStringLiteral("b"); });
        undo.registerUndo(&fileB, [&] { log << QStringLiteral("c"); });
        inNextTurn(undo, [&] { undo.registerUndo(&fileA, [&] { log << QStringLiteral("d"); }); });

        undo.undo();
        QCOMPARE(log, QStringList{QStringLiteral("d")});
        QVERIFY(undo.canUndo());
        undo.undo();
        QCOMPARE(log, (QStringList{QStringLiteral("d"), QStringLiteral("c"), QStringLiteral("b"),
                                   QStringLiteral("a")}));
        QVERIFY(!undo.canUndo());
    }

    void undoClosesTheOpenGroupFirst()
    {
        UndoManager undo;
        QStringList log;
        undo.registerUndo(&fileA, [&] { log << QStringLiteral("a"); });
        undo.undo();
        QCOMPARE(log, QStringList{QStringLiteral("a")});
        QVERIFY(!undo.canUndo());

        undo.registerUndo(&fileA, [&] { log << QStringLiteral("b"); });
        undo.registerUndo(&fileA, [&] { log << QStringLiteral("c"); });
        inNextTurn(undo, [&] { undo.registerUndo(&fileA, [&] { log << QStringLiteral("d"); }); });
        undo.undo();
        QCOMPARE(log.last(), QStringLiteral("d"));
        undo.undo();
        QCOMPARE(log, (QStringList{QStringLiteral("a"), QStringLiteral("d"), QStringLiteral("c"),
                                   QStringLiteral("b")}));
    }

    void actionNameBelongsToTheGroup()
    {
        UndoManager undo;
        QCOMPARE(undo.undoActionName(), QString());
        QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo"));
        QCOMPARE(undo.redoMenuItemTitle(), QStringLiteral("Redo"));

        // With no group collecting, a name goes nowhere.
        undo.setActionName(QStringLiteral("Lost"));
        QVERIFY(!undo.canUndo());

        undo.registerUndo(&fileA, [] {});
        undo.setActionName(QStringLiteral("Add Variable"));
        QCOMPARE(undo.undoActionName(), QStringLiteral("Add Variable"));
        QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo Add Variable"));
        inNextTurn(undo, [&] {
            undo.registerUndo(&fileA, [] {});
            undo.setActionName(QStringLiteral("Delete Ruleset"));
        });
        QCOMPARE(undo.undoActionName(), QStringLiteral("Delete Ruleset"));
        inNextTurn(undo, [&] { undo.setActionName(QStringLiteral("Lost")); });
        QCOMPARE(undo.undoActionName(), QStringLiteral("Delete Ruleset"));

        undo.undo();
        QCOMPARE(undo.undoActionName(), QStringLiteral("Add Variable"));
        undo.undo();
        QCOMPARE(undo.undoActionName(), QString());
        QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo"));
    }

    void stepRegisteringItsInverseAlternatesWithoutLimit()
    {
        UndoManager undo;
        int value = 0;
        setValue(undo, value, 1);
        QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo Move Ruleset"));
        for (int round = 0; round < 3; ++round) {
            undo.undo();
            QCOMPARE(value, 0);
            QVERIFY(!undo.canUndo());
            QVERIFY(undo.canRedo());
            QCOMPARE(undo.redoMenuItemTitle(), QStringLiteral("Redo Move Ruleset"));
            undo.redo();
            QCOMPARE(value, 1);
            QVERIFY(undo.canUndo());
            QVERIFY(!undo.canRedo());
            QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo Move Ruleset"));
        }
    }

    void stepsKnowWhetherTheyUndoOrRedo()
    {
        UndoManager undo;
        QList<std::pair<bool, bool>> seen;
        std::function<void()> step = [&] {
            seen.append({undo.isUndoing(), undo.isRedoing()});
            undo.registerUndo(&fileA, step);
        };
        undo.registerUndo(&fileA, step);
        QVERIFY(!undo.isUndoing());
        undo.undo();
        undo.redo();
        QCOMPARE(seen, (QList<std::pair<bool, bool>>{{true, false}, {false, true}}));
        QVERIFY(!undo.isUndoing());
        QVERIFY(!undo.isRedoing());
    }

    void stepRegisteringNothingHasNoRedo()
    {
        UndoManager undo;
        int removed = 0;
        undo.registerUndo(&fileA, [&] { ++removed; });
        undo.setActionName(QStringLiteral("Delete Ruleset"));
        undo.undo();
        QCOMPARE(removed, 1);
        QVERIFY(!undo.canRedo());
        QCOMPARE(undo.redoActionName(), QString());
        undo.redo();
        QCOMPARE(removed, 1);
    }

    void stepRegisteringOnceCanBeRedoneOnce()
    {
        UndoManager undo;
        QStringList rulesets{QStringLiteral("a")};
        rulesets << QStringLiteral("new");
        undo.registerUndo(&fileA, [&] {
            undo.registerUndo(&fileA, [&] { rulesets << QStringLiteral("new"); });
            undo.setActionName(QStringLiteral("New Ruleset"));
            rulesets.removeAll(QStringLiteral("new"));
        });
        undo.setActionName(QStringLiteral("New Ruleset"));

        undo.undo();
        QCOMPARE(rulesets, QStringList{QStringLiteral("a")});
        QCOMPARE(undo.redoMenuItemTitle(), QStringLiteral("Redo New Ruleset"));
        undo.redo();
        QCOMPARE(rulesets, (QStringList{QStringLiteral("a"), QStringLiteral("new")}));
        QVERIFY(!undo.canUndo());
        QVERIFY(!undo.canRedo());
        QCOMPARE(undo.undoMenuItemTitle(), QStringLiteral("Undo"));
    }

    void redoKeepsTheGroupNameUnlessAStepRenamesIt()
    {
        UndoManager undo;
        std::function<void()> plain = [&] { undo.registerUndo(&fileA, plain); };
        undo.registerUndo(&fileA, plain);
        undo.setActionName(QStringLiteral("Move Property"));
        undo.undo();
        QCOMPARE(undo.redoActionName(), QStringLiteral("Move Property"));

        undo.registerUndo(&fileA, [&] {
            undo.registerUndo(&fileA, [] {});
            undo.setActionName(QStringLiteral("Edit Color"));
        });
        undo.setActionName(QStringLiteral("Something Else"));
        undo.undo();
        QCOMPARE(undo.redoActionName(), QStringLiteral("Edit Color"));
    }

    void freshRegistrationClearsRedoButRegistrationWhileRedoingDoesNot()
    {
        UndoManager undo;
        int first = 0;
        int second = 0;
        setValue(undo, first, 1);
        inNextTurn(undo, [&] { setValue(undo, second, 1); });
        undo.undo();
        undo.undo();
        QCOMPARE(first, 0);
        QCOMPARE(second, 0);

        undo.redo();
        QCOMPARE(first, 1);
        QVERIFY(undo.canRedo());
        undo.redo();
        QCOMPARE(second, 1);
        undo.undo();
        QVERIFY(undo.canRedo());

        inNextTurn(undo, [&] { undo.registerUndo(&fileB, [] {}); });
        QVERIFY(!undo.canRedo());
        QCOMPARE(second, 0);
    }

    void registrationWhileUndoingGoesToRedoOnly()
    {
        UndoManager undo;
        int first = 0;
        int second = 1;
        setValue(undo, first, 1);
        undo.setActionName(QStringLiteral("First"));
        inNextTurn(undo, [&] {
            undo.registerUndo(&fileB, [&] {
                second = 0;
                undo.registerUndo(&fileB, [&] { second = 1; });
            });
            undo.setActionName(QStringLiteral("Second"));
        });

        undo.undo();
        QCOMPARE(second, 0);
        QCOMPARE(undo.undoActionName(), QStringLiteral("First"));
        QCOMPARE(undo.redoActionName(), QStringLiteral("Second"));
        undo.undo();
        QCOMPARE(first, 0);
        QVERIFY(!undo.canUndo());
        QCOMPARE(undo.redoActionName(), QStringLiteral("Move Ruleset"));

        undo.redo();
        QCOMPARE(first, 1);
        QCOMPARE(undo.undoActionName(), QStringLiteral("Move Ruleset"));
        QCOMPARE(undo.redoActionName(), QStringLiteral("Second"));
        undo.redo();
        QCOMPARE(second, 1);
        QVERIFY(!undo.canRedo());
        QCOMPARE(undo.undoActionName(), QStringLiteral("Move Ruleset"));
    }

    void removingATargetDropsItsStepsFromBothStacks()
    {
        UndoManager undo;
        QStringList log;
        const auto step = [&](const void *target, const QString &entry) {
            reversible(undo, target, log, entry);
        };
        step(&fileA, QStringLiteral("a1"));
        undo.setActionName(QStringLiteral("Only A"));
        inNextTurn(undo, [&] {
            step(&fileA, QStringLiteral("a2"));
            step(&fileB, QStringLiteral("b2"));
            undo.setActionName(QStringLiteral("Mixed"));
        });
        inNextTurn(undo, [&] {
            step(&fileB, QStringLiteral("b3"));
            undo.setActionName(QStringLiteral("Only B"));
        });
        inNextTurn(undo, [&] {
            step(&fileA, QStringLiteral("a4"));
            step(&fileB, QStringLiteral("b4"));
            undo.setActionName(QStringLiteral("Mixed Later"));
        });
        undo.undo();
        undo.undo();
        QCOMPARE(log,
                 (QStringList{QStringLiteral("b4"), QStringLiteral("a4"), QStringLiteral("b3")}));
        log.clear();

        QSignalSpy spy(&undo, &UndoManager::changed);
        undo.removeAllActions(&fileA);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(undo.undoActionName(), QStringLiteral("Mixed"));
        QCOMPARE(undo.redoActionName(), QStringLiteral("Only B"));

        undo.undo();
        QVERIFY(!undo.canUndo());
        for (int i = 0; i < 3; ++i)
            undo.redo();
        QVERIFY(!undo.canRedo());
        QCOMPARE(log, (QStringList{QStringLiteral("b2"), QStringLiteral("b2"), QStringLiteral("b3"),
                                   QStringLiteral("b4")}));

        undo.removeAllActions(&fileB);
        QVERIFY(!undo.canUndo());
        QVERIFY(!undo.canRedo());
    }

    void removingATargetEmptiesTheOpenGroup()
    {
        UndoManager undo;
        QStringList log;
        undo.registerUndo(&fileA, [&] { log << QStringLiteral("a"); });
        undo.removeAllActions(&fileA);
        QVERIFY(!undo.canUndo());

        undo.registerUndo(&fileB, [&] { log << QStringLiteral("b"); });
        undo.setActionName(QStringLiteral("Later"));
        undo.undo();
        QCOMPARE(log, QStringList{QStringLiteral("b")});
        QVERIFY(!undo.canUndo());
    }

    void removeAllActionsEmptiesBothStacks()
    {
        UndoManager undo;
        int value = 0;
        setValue(undo, value, 1);
        inNextTurn(undo, [&] { setValue(undo, value, 2); });
        undo.undo();
        QVERIFY(undo.canUndo());
        QVERIFY(undo.canRedo());
        undo.removeAllActions();
        QVERIFY(!undo.canUndo());
        QVERIFY(!undo.canRedo());
        QCOMPARE(undo.undoActionName(), QString());
        QCOMPARE(undo.redoActionName(), QString());
    }

    void editMenuActionsFollowTheStacks()
    {
        UndoManager undo;
        QAction *undoAction = undo.undoAction();
        QAction *redoAction = undo.redoAction();
        QCOMPARE(undo.undoAction(), undoAction);
        QCOMPARE(undoAction->text(), QStringLiteral("Undo"));
        QCOMPARE(redoAction->text(), QStringLiteral("Redo"));
        QVERIFY(!undoAction->isEnabled());
        QVERIFY(!redoAction->isEnabled());

        int value = 0;
        setValue(undo, value, 1);
        QCOMPARE(undoAction->text(), QStringLiteral("Undo Move Ruleset"));
        QVERIFY(undoAction->isEnabled());
        QVERIFY(!redoAction->isEnabled());

        undoAction->trigger();
        QCOMPARE(value, 0);
        QCOMPARE(undoAction->text(), QStringLiteral("Undo"));
        QVERIFY(!undoAction->isEnabled());
        QCOMPARE(redoAction->text(), QStringLiteral("Redo Move Ruleset"));
        QVERIFY(redoAction->isEnabled());

        redoAction->trigger();
        QCOMPARE(value, 1);
        QVERIFY(undoAction->isEnabled());
        QVERIFY(!redoAction->isEnabled());

        undo.registerUndo(&fileA, [] {});
        undo.setActionName(QString());
        QCOMPARE(undoAction->text(), QStringLiteral("Undo"));
        QVERIFY(undoAction->isEnabled());
    }

    void actionsMadeLateShowTheCurrentState()
    {
        UndoManager undo;
        int value = 0;
        setValue(undo, value, 1);
        undo.undo();
        QCOMPARE(undo.redoAction()->text(), QStringLiteral("Redo Move Ruleset"));
        QVERIFY(undo.redoAction()->isEnabled());
        QVERIFY(!undo.undoAction()->isEnabled());
    }

    void stacksChangedIsSignalled()
    {
        UndoManager undo;
        QSignalSpy spy(&undo, &UndoManager::changed);
        undo.registerUndo(&fileA, [] {});
        QCOMPARE(spy.count(), 1);
        undo.setActionName(QStringLiteral("Rename Ruleset"));
        QCOMPARE(spy.count(), 2);
        undo.undo();
        QCOMPARE(spy.count(), 3);
        undo.removeAllActions();
        QCOMPARE(spy.count(), 4);
    }
};

QTEST_MAIN(TestUndoManager)
#include "tst_undomanager.moc"
