// What the variables tab lists of a file: entries in file order, the filter,
// the groups with their counts, and the flat positions that skip folded
// groups.

#include "model/CSSParser.h"
#include "variables/VariableListing.h"

#include <QTest>

using namespace Ombrel;

namespace {

QStringList namesOf(const QList<VariableEntry> &entries)
{
    QStringList names;
    for (const VariableEntry &entry : entries)
        names.append(entry.name);
    return names;
}

QUuid idOf(const CSSRulesetList &rulesets, const QString &selector)
{
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (ruleset->selector() == selector)
            return ruleset->id();
    }
    return QUuid();
}

const QString sample = QStringLiteral(":root { --accent: #3b82f6; --gap: 4px; color: red; }\n"
                                      ".btn { --accent: red; --radius: 6px; }\n"
                                      ".none { margin: 0; }\n"
                                      ".card { --shadow: 0 1px red; --Gap: 8px; }\n");

} // namespace

class TestVariableListing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAreEveryCustomPropertyInFileOrder()
    {
        const CSSRulesetList rulesets = CSSParser::parse(
            QStringLiteral(":root { --a: 1; --a: 2; -b: 3; --: 4; x--c: 5; } .x { --a: 6; }"));
        const QList<VariableEntry> entries = VariableListing::entries(rulesets);
        QCOMPARE(namesOf(entries), (QStringList{"--a", "--a", "--", "--a"}));
        QCOMPARE(entries[1].value, QStringLiteral("2"));
        QCOMPARE(entries[3].rulesetID, rulesets[1]->id());
        QCOMPARE(entries[0].propID, rulesets[0]->properties()[0].id);
    }

    void theFilterFindsNameOrValueIgnoringCase_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("empty") << QString() << QStringList{"--accent", "--gap",    "--accent",
                                                           "--radius", "--shadow", "--Gap"};
        QTest::newRow("blanks only")
            << QStringLiteral(" \t ")
            << QStringList{"--accent", "--gap", "--accent", "--radius", "--shadow", "--Gap"};
        QTest::newRow("by name, any case")
            << QStringLiteral("GAP") << QStringList{"--gap", "--Gap"};
        QTest::newRow("by value") << QStringLiteral("red") << QStringList{"--accent", "--shadow"};
        QTest::newRow("trimmed of spaces and tabs")
            << QStringLiteral("\t radius ") << QStringList{"--radius"};
        QTest::newRow("a line break is kept") << QStringLiteral("radius\n") << QStringList{};
        QTest::newRow("not in a plain property") << QStringLiteral("color") << QStringList{};
    }
    void theFilterFindsNameOrValueIgnoringCase()
    {
        QFETCH(QString, search);
        QFETCH(QStringList, names);
        const CSSRulesetList rulesets = CSSParser::parse(sample);
        QCOMPARE(namesOf(VariableListing::filteredEntries(rulesets, search, {})), names);
    }

    void theFilterIgnoresCaseBeyondAscii()
    {
        const CSSRulesetList rulesets =
            CSSParser::parse(QStringLiteral(":root { --Émail: 1; --größe: 2; --x: ÅBC; }"));
        QCOMPARE(namesOf(VariableListing::filteredEntries(rulesets, QStringLiteral("émail"), {})),
                 QStringList{QStringLiteral("--Émail")});
        QCOMPARE(namesOf(VariableListing::filteredEntries(rulesets, QStringLiteral("GRÖ"), {})),
                 QStringList{QStringLiteral("--größe")});
        QCOMPARE(namesOf(VariableListing::filteredEntries(rulesets, QStringLiteral("åb"), {})),
                 QStringList{QStringLiteral("--x")});
    }

    void groupsCountTheMatchesNotAllTheirVariables()
    {
        const CSSRulesetList rulesets = CSSParser::parse(sample);
        const QList<VarGroup> groups =
            VariableListing::filteredGroups(rulesets, QStringLiteral("accent"), {});
        QCOMPARE(groups.size(), 2);
        QCOMPARE(groups[0].selector, QStringLiteral(":root"));
        QCOMPARE(groups[0].id, rulesets[0]->id());
        QCOMPARE(groups[0].totalCount, 1);
        QCOMPARE(groups[1].selector, QStringLiteral(".btn"));
        QCOMPARE(groups[1].totalCount, 1);
        QCOMPARE(groups[1].items.first().flatIdx, 1);
    }

    void aRulesetWithoutVariablesHasNoGroup()
    {
        const CSSRulesetList rulesets = CSSParser::parse(sample);
        const QList<VarGroup> groups = VariableListing::filteredGroups(rulesets, QString(), {});
        QStringList selectors;
        for (const VarGroup &group : groups)
            selectors.append(group.selector);
        QCOMPARE(selectors, (QStringList{":root", ".btn", ".card"}));
    }

    void aFoldedGroupKeepsItsCountAndTakesNoPositions()
    {
        const CSSRulesetList rulesets = CSSParser::parse(sample);
        const QSet<QUuid> collapsed{idOf(rulesets, QStringLiteral(".btn"))};
        const VariableListing::Listing listing =
            VariableListing::listing(rulesets, QString(), collapsed);
        QCOMPARE(listing.groups.size(), 3);
        QCOMPARE(listing.groups[1].totalCount, 2);
        QVERIFY(listing.groups[1].items.isEmpty());
        QCOMPARE(listing.groups[2].items[0].flatIdx, 2);
        QCOMPARE(listing.groups[2].items[1].flatIdx, 3);
        QCOMPARE(namesOf(listing.flat), (QStringList{"--accent", "--gap", "--shadow", "--Gap"}));
        QCOMPARE(listing.entryCount, 6);
        for (const VarGroup &group : listing.groups) {
            for (const VarGroupItem &item : group.items)
                QCOMPARE(listing.flat[item.flatIdx], item.entry);
        }
    }

    void matchesOnlyInFoldedGroupsLeaveTheHeadersAndNoEntries()
    {
        const CSSRulesetList rulesets = CSSParser::parse(sample);
        const QSet<QUuid> collapsed{idOf(rulesets, QStringLiteral(":root")),
                                    idOf(rulesets, QStringLiteral(".card"))};
        const VariableListing::Listing listing =
            VariableListing::listing(rulesets, QStringLiteral("gap"), collapsed);
        QCOMPARE(listing.groups.size(), 2);
        QCOMPARE(listing.groups[0].totalCount, 1);
        QCOMPARE(listing.groups[1].totalCount, 1);
        QVERIFY(listing.flat.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVariableListing)
#include "tst_variablelisting.moc"
