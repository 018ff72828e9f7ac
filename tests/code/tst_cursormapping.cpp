// Mapping between the code tab's text and the model: the ruleset and
// declaration under a cursor, and where the cursor goes for a ruleset or a
// declaration, with the known limits of plain substring search.

#include "CodeTextSamples.h"
#include "CursorMappingReference.h"
#include "code/CursorMapping.h"
#include "model/CSSParser.h"

#include <QTest>

using namespace Ombrel;
using CursorMapping::Placement;
using CursorMapping::RulesetAndProp;

namespace {

CSSRulesetList parsed(const QString &text)
{
    return CSSParser::parse(text);
}

CSSRulesetPtr withSelector(const CSSRulesetList &rulesets, const QString &selector, int nth = 0)
{
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (ruleset->selector() == selector && nth-- == 0)
            return ruleset;
    }
    return nullptr;
}

QUuid propertyID(const CSSRulesetPtr &ruleset, const QString &name)
{
    for (const CSSProperty &property : ruleset->properties()) {
        if (property.name == name)
            return property.id;
    }
    return {};
}

} // namespace

class TestCursorMapping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void occurrencesGoOnBehindEachMatch()
    {
        QCOMPARE(CursorMapping::findOccurrence(u"aaaa", u"aa", 0), 0);
        QCOMPARE(CursorMapping::findOccurrence(u"aaaa", u"aa", 1), 2);
        QCOMPARE(CursorMapping::findOccurrence(u"aaaa", u"aa", 2), -1);
        QCOMPARE(CursorMapping::findOccurrence(u"x .btn-large .btn", u".btn", 0), 2);
        QCOMPARE(CursorMapping::findOccurrence(u"Abc abc", u"abc", 0), 4);
        QCOMPARE(CursorMapping::findOccurrence(u"abc", u"", 0), -1);
    }

    void occurrenceIsMadeOfWholeCharacters()
    {
        // "e" followed by a combining acute accent is one character, "é".
        QCOMPARE(CursorMapping::findOccurrence(QString::fromUtf16(u".e\u0301 .e"), u".e", 0), 4);
    }

    void cursorInADeclarationSelectsRulesetAndProperty()
    {
        const QString text = QStringLiteral(".a {\n  color: red;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const RulesetAndProp hit =
            CursorMapping::rulesetAndPropAt(text.indexOf(u"red"), text, rulesets);
        QCOMPARE(hit.rulesetID, rulesets[0]->id());
        QCOMPARE(hit.propID, propertyID(rulesets[0], QStringLiteral("color")));
    }

    void cursorInAVariableLine()
    {
        const QString text = QStringLiteral(":root {\n    --x: 1;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const RulesetAndProp hit =
            CursorMapping::rulesetAndPropAt(text.indexOf(u"--x") + 1, text, rulesets);
        QCOMPARE(hit.rulesetID, rulesets[0]->id());
        QCOMPARE(hit.propID, propertyID(rulesets[0], QStringLiteral("--x")));
    }

    void cursorOnTheSelectorFindsNoProperty()
    {
        const QString text = QStringLiteral(":root {\n    --x: 1;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        QCOMPARE(CursorMapping::rulesetAndPropAt(2, text, rulesets),
                 (RulesetAndProp{rulesets[0]->id(), QUuid()}));
    }

    void cursorInACommentBetweenRulesetsFindsNothing()
    {
        const QString text = QStringLiteral(".a { b: c; }\n/* note */\n.d { e: f; }\n");
        const CSSRulesetList rulesets = parsed(text);
        QCOMPARE(CursorMapping::rulesetAndPropAt(text.indexOf(u"note"), text, rulesets),
                 RulesetAndProp());
    }

    void cursorJustBehindTheClosingBraceStillBelongs()
    {
        const QString text = QStringLiteral(".a { b: c; }  .d { e: f; }");
        const CSSRulesetList rulesets = parsed(text);
        const qsizetype behind = text.indexOf(u'}') + 1;
        QCOMPARE(CursorMapping::rulesetAndPropAt(behind, text, rulesets).rulesetID,
                 rulesets[0]->id());
        QCOMPARE(CursorMapping::rulesetAndPropAt(behind + 1, text, rulesets), RulesetAndProp());
    }

    void emptyTextOrNegativeOffsetFindsNothing()
    {
        const CSSRulesetList rulesets = parsed(QStringLiteral(".a { b: c; }"));
        QCOMPARE(CursorMapping::rulesetAndPropAt(0, QString(), rulesets), RulesetAndProp());
        QCOMPARE(CursorMapping::rulesetAndPropAt(-1, QStringLiteral(".a { b: c; }"), rulesets),
                 RulesetAndProp());
    }

    void spacedColonIsMatched()
    {
        const QString text = QStringLiteral(".a {\n  color :red;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        QCOMPARE(CursorMapping::rulesetAndPropAt(text.indexOf(u"red"), text, rulesets).propID,
                 propertyID(rulesets[0], QStringLiteral("color")));
        const std::optional<Placement> placement = CursorMapping::propertyPlacement(
            text, rulesets, rulesets[0]->id(), propertyID(rulesets[0], QStringLiteral("color")));
        QVERIFY(placement);
        QCOMPARE(placement->cursor, text.indexOf(u"  color"));
    }

    void secondOfTwoEqualSelectorsGoesToTheSecondText()
    {
        const QString text = QStringLiteral(".a {\n    b: c;\n}\n\n.a {\n    d: e;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const std::optional<Placement> placement =
            CursorMapping::rulesetPlacement(text, rulesets, rulesets[1]->id());
        QVERIFY(placement);
        QCOMPARE(placement->cursor, text.lastIndexOf(u".a"));
        QCOMPARE(placement->scrollStart, placement->cursor);
        QCOMPARE(placement->scrollLength, 2);
        QCOMPARE(CursorMapping::rulesetAndPropAt(text.indexOf(u"d:"), text, rulesets).rulesetID,
                 rulesets[1]->id());
    }

    void selectorFoundInsideALongerOneFirst()
    {
        const QString text = QStringLiteral(".btn-large {\n    a: b;\n}\n\n.btn {\n    c: d;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const std::optional<Placement> placement = CursorMapping::rulesetPlacement(
            text, rulesets, withSelector(rulesets, QStringLiteral(".btn"))->id());
        QVERIFY(placement);
        QCOMPARE(placement->cursor, 0);
        // And so the cursor in the real .btn maps to .btn-large's text first:
        // .btn is sought at the start of ".btn-large", whose braces do not
        // hold the cursor, so the real .btn is never reached.
        QCOMPARE(CursorMapping::rulesetAndPropAt(text.indexOf(u"c:"), text, rulesets),
                 RulesetAndProp());
    }

    void blankSelectorIsNeverPlaced()
    {
        const auto blank = std::make_shared<CSSRuleset>(QStringLiteral("  "));
        const CSSRulesetList rulesets{blank};
        QCOMPARE(CursorMapping::rulesetPlacement(u"   { }", rulesets, blank->id()), std::nullopt);
        QCOMPARE(CursorMapping::rulesetPlacement(u".a {}", rulesets, QUuid::createUuid()),
                 std::nullopt);
    }

    void propertyPlacementIsTheLinesFirstColumnAndAtMostSixtyUnits()
    {
        const QString longValue(100, QLatin1Char('x'));
        const QString text = QStringLiteral(":root {\n    --a: 1;\n    --b: ") + longValue +
                             QStringLiteral(";\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const std::optional<Placement> placement = CursorMapping::propertyPlacement(
            text, rulesets, rulesets[0]->id(), propertyID(rulesets[0], QStringLiteral("--b")));
        QVERIFY(placement);
        QCOMPARE(placement->cursor, text.indexOf(u"    --b"));
        QCOMPARE(placement->scrollLength, 60);
        const std::optional<Placement> shortLine = CursorMapping::propertyPlacement(
            text, rulesets, rulesets[0]->id(), propertyID(rulesets[0], QStringLiteral("--a")));
        QCOMPARE(shortLine->scrollLength, QStringLiteral("    --a: 1;").size());
    }

    void duplicateNamesPlaceTheFirstLine()
    {
        const QString text = QStringLiteral(".a {\n    color: red;\n    color: blue;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        const std::optional<Placement> placement = CursorMapping::propertyPlacement(
            text, rulesets, rulesets[0]->id(), rulesets[0]->properties()[1].id);
        QCOMPARE(placement->cursor, text.indexOf(u"    color"));
    }

    void missingLineLeavesNoPlacement()
    {
        const QString text = QStringLiteral(".a { x: 1; color: red; }");
        const CSSRulesetList rulesets = parsed(text);
        // The one line of the body begins with another name.
        QCOMPARE(CursorMapping::propertyPlacement(text, rulesets, rulesets[0]->id(),
                                                  rulesets[0]->properties()[1].id),
                 std::nullopt);
        QCOMPARE(CursorMapping::propertyPlacement(text, rulesets, rulesets[0]->id(),
                                                  rulesets[0]->properties()[0].id)
                     ->cursor,
                 text.indexOf(u'{') + 1);
    }

    void awkwardCharactersKeepOffsetsRight()
    {
        QString before = QStringLiteral("/* ");
        before += QChar(QChar::ReplacementCharacter);
        before += QChar(0xD800);
        before += QChar(0);
        before += QChar(QChar::LineSeparator);
        before += QChar(QChar::Nbsp);
        before += QStringLiteral("\r\n\U0001F642 */\n");
        const QString text = before + QStringLiteral(".a {\n    color: red;\n}\n");
        const CSSRulesetList rulesets = parsed(text);
        QCOMPARE(rulesets.size(), 1);
        const std::optional<Placement> placement = CursorMapping::propertyPlacement(
            text, rulesets, rulesets[0]->id(), rulesets[0]->properties()[0].id);
        QVERIFY(placement);
        QCOMPARE(placement->cursor, before.size() + 5);
        QCOMPARE(CursorMapping::rulesetPlacement(text, rulesets, rulesets[0]->id())->cursor,
                 before.size());
        QCOMPARE(CursorMapping::rulesetAndPropAt(before.size() + 9, text, rulesets).propID,
                 rulesets[0]->properties()[0].id);
        QCOMPARE(CursorMapping::rulesetAndPropAt(before.size() - 2, text, rulesets),
                 RulesetAndProp());
    }

    void crLfIsNoLineBreakOfTheBody()
    {
        // As whole characters, CR LF is not a line feed: the body is one
        // line, which does not begin with a name.
        const QString text = QStringLiteral(".a {\r\n  color: red;\r\n}");
        const CSSRulesetList rulesets = parsed(text);
        QCOMPARE(CursorMapping::rulesetAndPropAt(text.indexOf(u"red"), text, rulesets),
                 (RulesetAndProp{rulesets[0]->id(), QUuid()}));
    }

    void oneSearchAgreesWithRulesetByRulesetSearch()
    {
        QRandomGenerator random(314);
        for (int round = 0; round < 400; ++round) {
            const QString text = CodeTextSamples::randomText(random, 60);
            // The rulesets of the text, and also ones the text does not hold.
            CSSRulesetList rulesets = parsed(text);
            rulesets += parsed(CodeTextSamples::randomText(random, 20));
            std::shuffle(rulesets.begin(), rulesets.end(), std::mt19937(round));
            for (qsizetype offset = -1; offset <= text.size() + 1; ++offset) {
                const RulesetAndProp expected =
                    CursorMappingReference::rulesetAndPropAt(offset, text, rulesets);
                const RulesetAndProp actual =
                    CursorMapping::rulesetAndPropAt(offset, text, rulesets);
                QVERIFY2(
                    actual == expected,
                    qPrintable(QStringLiteral("offset %1 of %2")
                                   .arg(offset)
                                   .arg(QString::fromLatin1(text.toUtf8().toPercentEncoding()))));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestCursorMapping)
#include "tst_cursormapping.moc"
