// The rows of the variables tab: headers and entries with their roles,
// followed through filter, folding, moves and edits by insertions, removals
// and moves, never by a reset.

#include "VariablesTestSupport.h"

#include "canvas/CanvasState.h"
#include "variables/VariableListModel.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>

using namespace Ombrel;
using VariableRoles::Kind;
using VariablesTest::endTurn;
using VariablesTest::Variables;

namespace {

// "# selector" for a header, the name for an entry.
QStringList rowsOf(const VariableListModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row);
        const bool header = index.data(VariableRoles::RowKind).toInt() == int(Kind::Header);
        rows.append(header ? QStringLiteral("# ") + index.data(VariableRoles::Selector).toString()
                           : index.data(VariableRoles::Name).toString());
    }
    return rows;
}

// The rows the listing calls for, to compare with the model's.
QStringList rowsOf(const VariableListing::Listing &listing)
{
    QStringList rows;
    for (const VarGroup &group : listing.groups) {
        rows.append(QStringLiteral("# ") + group.selector);
        for (const VarGroupItem &item : group.items)
            rows.append(item.entry.name);
    }
    return rows;
}

struct Watched
{
    explicit Watched(const QString &css)
        : v(css), model(*v.controller),
          tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest),
          resets(&model, &QAbstractItemModel::modelReset)
    {}

    Variables v;
    VariableListModel model;
    QAbstractItemModelTester tester;
    QSignalSpy resets;
};

const QString sample = QStringLiteral(":root { --accent: #3b82f6; --gap: 4px; color: red; }\n"
                                      ".btn { --accent: red; }\n"
                                      ".none { margin: 0; }\n"
                                      ".card { --shadow: 0 1px red; --Gap: 8px; }\n");

} // namespace

class TestVariableListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headersThenTheEntriesOfEachGroup()
    {
        Watched w(sample);
        QCOMPARE(rowsOf(w.model), (QStringList{"# :root", "--accent", "--gap", "# .btn", "--accent",
                                               "# .card", "--shadow", "--Gap"}));
        const QModelIndex header = w.model.index(3);
        QCOMPARE(header.data(VariableRoles::CountText).toString(), QStringLiteral("1 var"));
        QCOMPARE(header.data(Qt::DisplayRole).toString(), QStringLiteral(".btn"));
        QCOMPARE(header.data(VariableRoles::RulesetID).toUuid(),
                 w.v.named(QStringLiteral(".btn"))->id());
        QCOMPARE(header.data(VariableRoles::Collapsed).toBool(), false);
        QCOMPARE(w.model.index(0).data(VariableRoles::CountText).toString(),
                 QStringLiteral("2 vars"));

        const QModelIndex gap = w.model.index(2);
        const VariableEntry entry = w.v.entry(QStringLiteral("--gap"));
        QCOMPARE(gap.data(VariableRoles::PropID).toUuid(), entry.propID);
        QCOMPARE(gap.data(VariableRoles::RulesetID).toUuid(), entry.rulesetID);
        QCOMPARE(gap.data(VariableRoles::Value).toString(), QStringLiteral("4px"));
        QCOMPARE(gap.data(VariableRoles::LocalValue).toString(), QStringLiteral("4px"));
        QCOMPARE(gap.data(VariableRoles::FlatIdx).toInt(), 1);
        QCOMPARE(gap.data(VariableRoles::Selected).toBool(), false);
        QCOMPARE(gap.data(VariableRoles::Editing).toBool(), false);
        QCOMPARE(w.model.index(1).data(VariableRoles::ColorValue).toBool(), true);
        QCOMPARE(gap.data(VariableRoles::ColorValue).toBool(), false);
        QCOMPARE(w.model.entryAt(2), std::optional<VariableEntry>(entry));
        QCOMPARE(w.model.entryAt(0), std::nullopt);
        QCOMPARE(w.model.rowOfEntry(entry.propID), 2);
        QCOMPARE(w.model.rowOfGroup(w.v.named(QStringLiteral(".card"))->id()), 5);
        QCOMPARE(w.model.flatIdxAt(7), 4);
    }

    void theFilterRemovesAndInsertsRowsAndKeepsTheOthers()
    {
        Watched w(sample);
        const QPersistentModelIndex shadow = w.model.index(6);
        w.v.canvas->state().setVariableSearchText(QStringLiteral("red"));
        QCOMPARE(rowsOf(w.model), (QStringList{"# .btn", "--accent", "# .card", "--shadow"}));
        QCOMPARE(w.model.index(0).data(VariableRoles::CountText).toString(),
                 QStringLiteral("1 var"));
        QCOMPARE(shadow.row(), 3);
        QCOMPARE(shadow.data(VariableRoles::FlatIdx).toInt(), 1);
        w.v.canvas->state().setVariableSearchText(QString());
        QCOMPARE(rowsOf(w.model), rowsOf(w.v.controller->listing()));
        QCOMPARE(shadow.row(), 6);
        QCOMPARE(w.resets.count(), 0);
    }

    void foldingAGroupRemovesItsEntriesAndKeepsItsHeader()
    {
        Watched w(sample);
        const QUuid root = w.v.named(QStringLiteral(":root"))->id();
        QSignalSpy removed(&w.model, &QAbstractItemModel::rowsRemoved);
        w.v.controller->toggleGroup(root);
        QCOMPARE(rowsOf(w.model),
                 (QStringList{"# :root", "# .btn", "--accent", "# .card", "--shadow", "--Gap"}));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(w.model.index(0).data(VariableRoles::Collapsed).toBool(), true);
        QCOMPARE(w.model.index(0).data(VariableRoles::CountText).toString(),
                 QStringLiteral("2 vars"));
        QCOMPARE(w.model.index(2).data(VariableRoles::FlatIdx).toInt(), 0);
        w.v.controller->toggleGroup(root);
        QCOMPARE(w.model.index(0).data(VariableRoles::Collapsed).toBool(), false);
        QCOMPARE(w.model.index(4).data(VariableRoles::FlatIdx).toInt(), 2);
        QCOMPARE(w.resets.count(), 0);
    }

    void aMovedVariableKeepsItsRow()
    {
        Watched w(sample);
        const VariableEntry gap = w.v.entry(QStringLiteral("--gap"));
        const QPersistentModelIndex row = w.model.index(w.model.rowOfEntry(gap.propID));
        w.v.ops().moveVariable(gap.propID, w.v.entry(QStringLiteral("--Gap")).propID);
        endTurn();
        QCOMPARE(rowsOf(w.model), (QStringList{"# :root", "--accent", "# .btn", "--accent",
                                               "# .card", "--shadow", "--gap", "--Gap"}));
        QCOMPARE(row.row(), 6);
        QCOMPARE(row.data(VariableRoles::RulesetID).toUuid(),
                 w.v.named(QStringLiteral(".card"))->id());
        QCOMPARE(w.resets.count(), 0);
    }

    void anEditChangesItsRowOnTheNextTurn()
    {
        Watched w(sample);
        const VariableEntry gap = w.v.entry(QStringLiteral("--gap"));
        QSignalSpy changed(&w.model, &QAbstractItemModel::dataChanged);
        w.v.ops().updateVariable(gap.propID, gap.rulesetID, QStringLiteral("2rem"));
        QVERIFY(changed.isEmpty());
        endTurn();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), 2);
        QCOMPARE(w.model.index(2).data(VariableRoles::Value).toString(), QStringLiteral("2rem"));
    }

    void rowStateChangesAreChangesOfTheirRow()
    {
        Watched w(sample);
        const VariableEntry gap = w.v.entry(QStringLiteral("--gap"));
        QSignalSpy changed(&w.model, &QAbstractItemModel::dataChanged);
        w.v.controller->startValueEdit(gap);
        QVERIFY(!changed.isEmpty());
        QCOMPARE(w.model.index(2).data(VariableRoles::Selected).toBool(), true);
        QCOMPARE(w.model.index(2).data(VariableRoles::EditingValue).toBool(), true);
        QCOMPARE(w.model.index(2).data(VariableRoles::Editing).toBool(), true);
        changed.clear();
        w.v.controller->editLocalValue(gap, QStringLiteral("#fff"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), 2);
        QCOMPARE(w.model.index(2).data(VariableRoles::LocalValue).toString(),
                 QStringLiteral("#fff"));
        QCOMPARE(w.model.index(2).data(VariableRoles::ColorValue).toBool(), true);
        w.v.controller->startRename(w.v.entry(QStringLiteral("--Gap")));
        QCOMPARE(w.model.index(7).data(VariableRoles::RenamingName).toBool(), true);
        QCOMPARE(w.model.index(2).data(VariableRoles::Selected).toBool(), false);
    }

    void aPropertyThatStandsTwiceWithOneIdGetsTwoRows()
    {
        Watched w(QStringLiteral(":root { --a: 1; }"));
        const CSSRulesetPtr root = w.v.named(QStringLiteral(":root"));
        const CSSProperty a = root->properties().first();
        root->setProperties({a, a});
        endTurn();
        QCOMPARE(rowsOf(w.model), (QStringList{"# :root", "--a", "--a"}));
        root->setProperties({a});
        endTurn();
        QCOMPARE(rowsOf(w.model), (QStringList{"# :root", "--a"}));
    }

    void anotherFileReplacesTheRows()
    {
        Watched w(sample);
        const QString otherPath = w.v.dir.filePath(QStringLiteral("other.css"));
        QVERIFY(StylesheetFiles::writeFile(otherPath, ".b { --x: 1; }"));
        const CSSFilePtr other = StylesheetFiles::loadFile(otherPath);
        w.v.workspace.setFiles({w.v.file, other});
        w.v.workspace.setSelectedFile(other);
        QCOMPARE(rowsOf(w.model), (QStringList{"# .b", "--x"}));
        w.v.workspace.setSelectedFile(nullptr);
        QCOMPARE(w.model.rowCount(), 0);
        QCOMPARE(w.resets.count(), 0);
    }

    void randomEditsFiltersAndFoldsKeepTheRowsInStep()
    {
        QString css;
        for (int r = 0; r < 8; ++r) {
            css += QStringLiteral(".r%1 {").arg(r);
            for (int p = 0; p < 5; ++p)
                css += QStringLiteral(" --v%1%2: %3;").arg(r).arg(p).arg(p % 2 ? "red" : "1px");
            css += QStringLiteral(" top: 0; }\n");
        }
        Watched w(css);
        QRandomGenerator random(20240613);
        const QStringList filters{QString(),
                                  QStringLiteral("1"),
                                  QStringLiteral("red"),
                                  QStringLiteral("v3"),
                                  QStringLiteral("px"),
                                  QStringLiteral("zzz")};
        for (int step = 0; step < 300; ++step) {
            const QList<VariableEntry> entries = VariableListing::entries(w.v.file->rulesets());
            const CSSRulesetList rulesets = w.v.file->rulesets();
            switch (random.bounded(6)) {
            case 0:
                w.v.canvas->state().setVariableSearchText(
                    filters[random.bounded(int(filters.size()))]);
                break;
            case 1:
                w.v.controller->toggleGroup(rulesets[random.bounded(int(rulesets.size()))]->id());
                break;
            case 2:
                if (entries.size() > 1) {
                    const VariableEntry &source = entries[random.bounded(int(entries.size()))];
                    const VariableEntry &before = entries[random.bounded(int(entries.size()))];
                    w.v.ops().moveVariable(source.propID,
                                           random.bounded(4) ? before.propID : QUuid());
                }
                break;
            case 3:
                if (!entries.isEmpty()) {
                    const VariableEntry &entry = entries[random.bounded(int(entries.size()))];
                    w.v.ops().deleteVariable(entry.propID, entry.rulesetID);
                }
                break;
            case 4:
                if (!entries.isEmpty()) {
                    const VariableEntry &entry = entries[random.bounded(int(entries.size()))];
                    w.v.ops().duplicateVariable(entry.propID, entry.rulesetID);
                }
                break;
            case 5:
                if (w.v.undo->canUndo())
                    w.v.undo->undo();
                break;
            }
            endTurn();
            QCOMPARE(rowsOf(w.model), rowsOf(w.v.controller->listing()));
        }
        QCOMPARE(w.resets.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestVariableListModel)
#include "tst_variablelistmodel.moc"
