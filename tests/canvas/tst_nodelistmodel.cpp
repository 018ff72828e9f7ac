#include "CanvasTestSupport.h"

#include "canvas/NodeListModel.h"
#include "canvas/NodeRoles.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;
using CanvasTest::Canvas;

namespace {

QStringList rows(const NodeListModel &model)
{
    QStringList list;
    for (int row = 0; row < model.rowCount(); ++row)
        list.append(model.index(row).data().toString());
    return list;
}

} // namespace

class TestNodeListModel : public QObject
{
    Q_OBJECT

    struct Fixture
    {
        explicit Fixture(const QString &css = CanvasTest::fiveRulesets)
            : canvas(css), model(*canvas.controller),
              tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest),
              resets(&model, &QAbstractItemModel::modelAboutToBeReset)
        {}
        Canvas canvas;
        NodeListModel model;
        QAbstractItemModelTester tester;
        QSignalSpy resets;
    };

private Q_SLOTS:
    void answersTheCardRoles()
    {
        Fixture f;
        QCOMPARE(rows(f.model), (QStringList{"A", "B", "C", "D", "E"}));
        const QModelIndex b = f.model.index(1);
        QCOMPARE(b.data(NodeRoles::Ruleset).value<QObject *>(), f.canvas.at(1).get());
        QVERIFY(!b.data(NodeRoles::Selected).toBool());
        QVERIFY(!b.data(NodeRoles::EditingSelector).toBool());

        QSignalSpy changes(&f.model, &QAbstractItemModel::dataChanged);
        f.canvas.controller->clickCard(f.canvas.at(1), Qt::NoModifier, 100);
        QVERIFY(b.data(NodeRoles::Selected).toBool());
        QVERIFY(!changes.isEmpty());
        f.canvas.controller->clickCard(f.canvas.at(1), Qt::NoModifier, 200);
        QVERIFY(b.data(NodeRoles::EditingSelector).toBool());
        QCOMPARE(b.data(Qt::EditRole).toString(), QStringLiteral("B"));
        QVERIFY(f.model.setData(b, QStringLiteral("B2")));
        QCOMPARE(f.canvas.state().editingRulesetText(), QStringLiteral("B2"));
        QCOMPARE(f.resets.count(), 0);
    }

    void typingAFilterRemovesOrInsertsOneRunOfRows()
    {
        Fixture f;
        QSignalSpy removed(&f.model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        for (const char *text : {"c", "co", "col", "colo", "color"})
            f.canvas.state().setSearchText(QString::fromLatin1(text));
        QCOMPARE(rows(f.model), (QStringList{"A", "B"}));
        // "c" hides D and E, "co" hides C; the other keys hide nothing.
        QCOMPARE(removed.count(), 2);
        f.canvas.state().setSearchText(QStringLiteral("colorx"));
        QCOMPARE(f.model.rowCount(), 0);
        f.canvas.state().setSearchText(QString());
        QCOMPARE(rows(f.model), (QStringList{"A", "B", "C", "D", "E"}));
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(f.resets.count(), 0);
    }

    // Rows found all over a long list are taken in one step, not one step
    // per run of rows: a view pays once, whatever the filter hides.
    void aFilterThatHidesRowsAllOverIsOneReset()
    {
        QString css;
        for (int i = 0; i < 500; ++i)
            css += QStringLiteral(".r%1 { color: %2; }\n")
                       .arg(i)
                       .arg(i % 2 ? QStringLiteral("red") : QStringLiteral("blue"));
        Fixture f(css);
        QSignalSpy removed(&f.model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        f.canvas.state().setSearchText(QStringLiteral("red"));
        QCOMPARE(f.model.rowCount(), 250);
        QCOMPARE(f.model.index(0).data().toString(), QStringLiteral(".r1"));
        QCOMPARE(f.resets.count(), 1);
        f.canvas.state().setSearchText(QStringLiteral("re"));
        QCOMPARE(f.model.rowCount(), 250);
        QCOMPARE(f.resets.count(), 1);
        f.canvas.state().setSearchText(QString());
        QCOMPARE(f.model.rowCount(), 500);
        QCOMPARE(f.resets.count(), 2);
        QCOMPARE(removed.count() + inserted.count(), 0);
    }

    void followsEditsOfTheFileRowByRow()
    {
        Fixture f;
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&f.model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy layouts(&f.model, &QAbstractItemModel::layoutChanged);
        f.canvas.ops().duplicateRuleset(f.canvas.at(1));
        QCOMPARE(rows(f.model), (QStringList{"A", "B", "B", "C", "D", "E"}));
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.first().at(1).toInt(), 2);
        f.canvas.ops().deleteRuleset(f.canvas.at(0));
        QCOMPARE(rows(f.model), (QStringList{"B", "B", "C", "D", "E"}));
        QCOMPARE(removed.count(), 1);

        const QPersistentModelIndex d = f.model.index(3);
        f.canvas.ops().moveRuleset(f.canvas.named("D")->id(), f.canvas.at(0)->id());
        QCOMPARE(rows(f.model), (QStringList{"D", "B", "B", "C", "E"}));
        QCOMPARE(layouts.count(), 1);
        QCOMPARE(d.row(), 0);
        QCOMPARE(f.resets.count(), 0);
    }

    void aChangedRulesetChangesTheRowsAndTheirFilterOnceTheTurnEnds()
    {
        Fixture f;
        QSignalSpy changes(&f.model, &QAbstractItemModel::dataChanged);
        f.canvas.at(2)->setSelector(QStringLiteral("C2"));
        QCOMPARE(f.model.index(2).data().toString(), QStringLiteral("C2"));
        CanvasTest::endTurn();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.first().at(0).toModelIndex().row(), 0);
        QCOMPARE(changes.first().at(1).toModelIndex().row(), 4);

        f.canvas.state().setSearchText(QStringLiteral("red"));
        QCOMPARE(rows(f.model), QStringList{QStringLiteral("A")});
        f.canvas.at(4)->setProperties(
            {CSSProperty(QStringLiteral("color"), QStringLiteral("red"))});
        CanvasTest::endTurn();
        QCOMPARE(rows(f.model), (QStringList{"A", "E"}));
        f.canvas.at(0)->setProperties({});
        CanvasTest::endTurn();
        QCOMPARE(rows(f.model), QStringList{QStringLiteral("E")});
        QCOMPARE(f.resets.count(), 0);
    }

    // What a code edit does: every ruleset gets new declarations in one
    // turn. The model does nothing per ruleset; the turn ends in one pass.
    void editsOfEveryRulesetInOneTurnAreOnePass()
    {
        QString css;
        for (int i = 0; i < 2000; ++i)
            css += QStringLiteral(".r%1 { color: blue; }\n").arg(i);
        Fixture f(css);
        f.canvas.state().setSearchText(QStringLiteral("red"));
        QCOMPARE(f.model.rowCount(), 0);
        QSignalSpy changes(&f.model, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        for (const CSSRulesetPtr &ruleset : f.canvas.file->rulesets())
            ruleset->setProperties({CSSProperty(QStringLiteral("color"), QStringLiteral("red"))});
        QCOMPARE(changes.count() + inserted.count() + f.resets.count(), 0);
        CanvasTest::endTurn();
        QCOMPARE(f.model.rowCount(), 2000);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(changes.count(), 1);
    }

    // A longer filter text narrows the rows shown, unless a ruleset changed
    // since: then the whole file is filtered again, in the same turn.
    void aLongerFilterNarrowsOnlyRowsThatAreStillCurrent()
    {
        Fixture f;
        f.canvas.state().setSearchText(QStringLiteral("r"));
        QCOMPARE(rows(f.model), (QStringList{"A", "B", "C"}));
        f.canvas.state().setSearchText(QStringLiteral("re"));
        QCOMPARE(rows(f.model), QStringList{QStringLiteral("A")});
        f.canvas.at(4)->setProperties({CSSProperty(QStringLiteral("top"), QStringLiteral("red"))});
        f.canvas.state().setSearchText(QStringLiteral("red"));
        QCOMPARE(rows(f.model), (QStringList{"A", "E"}));
        f.canvas.state().setSearchText(QStringLiteral("rE"));
        QCOMPARE(rows(f.model), (QStringList{"A", "E"}));

        // Erasing finds the rows each shorter text had, while they are
        // current, and filters again once something changed.
        f.canvas.state().setSearchText(QStringLiteral("r"));
        QCOMPARE(rows(f.model), (QStringList{"A", "B", "C", "E"}));
        f.canvas.state().setSearchText(QStringLiteral("re"));
        f.canvas.state().setSearchText(QStringLiteral("red"));
        f.canvas.at(3)->setSelector(QStringLiteral("Dre"));
        f.canvas.state().setSearchText(QStringLiteral("re"));
        QCOMPARE(rows(f.model), (QStringList{"A", "Dre", "E"}));
        f.canvas.state().setSearchText(QString());
        QCOMPARE(f.model.rowCount(), 5);
    }

    void followsTheSelectedFile()
    {
        Fixture f;
        const auto other =
            std::make_shared<CSSFile>(QStringLiteral("/tmp/canvas-test/other.css"),
                                      CSSParser::parse(QStringLiteral("X { top: 0; }")), QString());
        f.canvas.workspace.setFiles({f.canvas.file, other});
        f.canvas.workspace.setSelectedFile(other);
        QCOMPARE(rows(f.model), QStringList{QStringLiteral("X")});
        // The old file no longer reaches the model.
        f.canvas.file->setRulesets({});
        QCOMPARE(rows(f.model), QStringList{QStringLiteral("X")});
    }

    void aCodeEditThatReplacesEveryRulesetStillKeepsTheModelConsistent()
    {
        Fixture f;
        f.canvas.file->setRulesets(
            CSSParser::parse(QStringLiteral("Q { top: 0; }\nA { top: 1px; }")));
        QCOMPARE(rows(f.model), (QStringList{"Q", "A"}));
        CSSRulesetList reversed = f.canvas.file->rulesets();
        std::reverse(reversed.begin(), reversed.end());
        reversed.insert(1, std::make_shared<CSSRuleset>(QStringLiteral("M")));
        f.canvas.file->setRulesets(reversed);
        QCOMPARE(rows(f.model), (QStringList{"A", "M", "Q"}));
    }
};

QTEST_GUILESS_MAIN(TestNodeListModel)
#include "tst_nodelistmodel.moc"
