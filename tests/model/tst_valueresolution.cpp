#include "model/CSSFile.h"
#include "model/CSSParser.h"
#include "model/CSSRuleset.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>
#include <QTextBoundaryFinder>

using namespace Ombrel;

namespace {

CSSRulesetPtr rulesetOf(const QString &text)
{
    const CSSRulesetList rulesets = CSSParser::parse(text);
    return rulesets.isEmpty() ? nullptr : rulesets.first();
}

CSSVariables variablesOf(const QString &text)
{
    return CSSFile(QStringLiteral("/tmp/v.css"), CSSParser::parse(text), text).variables();
}

const CSSVariables redChain = {{QStringLiteral("--a"), QStringLiteral("red")},
                               {QStringLiteral("--b"), QStringLiteral("var(--a)")}};

// The substitution read one character at a time and without any bound,
// written apart from the real one so that the two can be compared. It counts
// what it does so that a test can tell which inputs stay within the bounds.
// Where the reference gives up: it is slow on purpose, and what lies past
// these limits is covered by the tests of the bounds themselves.
constexpr int referenceStepLimit = 1000;
constexpr qsizetype referenceLengthLimit = 8 * 1024;

struct ReferenceRun
{
    int substitutions = 0;
    // Set when the run stopped at the reference's own limits.
    bool abandoned = false;
};

bool isBlank(QStringView character)
{
    return character.size() == 1 &&
           (character[0] == u'\t' || character[0].category() == QChar::Separator_Space);
}

QStringList charactersOf(const QString &text)
{
    QStringList characters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (finder.toNextBoundary() >= 0) {
        characters.append(text.mid(start, finder.position() - start));
        start = finder.position();
    }
    return characters;
}

QString trimmedBlanks(const QString &text)
{
    QStringList characters = charactersOf(text);
    while (!characters.isEmpty() && isBlank(characters.first()))
        characters.removeFirst();
    while (!characters.isEmpty() && isBlank(characters.last()))
        characters.removeLast();
    return characters.join(QString());
}

QString referenceResolve(const QString &value, const CSSVariables &variables, int depth,
                         ReferenceRun &run)
{
    if (depth >= 8 || !value.contains(QLatin1String("var(")))
        return value;
    QString result = value;
    while (!run.abandoned) {
        qsizetype start = -1;
        for (qsizetype i = 0; i + 4 <= result.size(); ++i) {
            if (result[i].toLower() == u'v' && result[i + 1].toLower() == u'a' &&
                result[i + 2].toLower() == u'r' && result[i + 3] == u'(') {
                start = i;
                break;
            }
        }
        if (start < 0)
            break;
        const qsizetype open = start + 4;
        int counter = 1;
        qsizetype close = -1;
        const QString rest = result.mid(open);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, rest);
        for (qsizetype begin = 0; finder.toNextBoundary() >= 0; begin = finder.position()) {
            const QStringView character =
                QStringView(rest).sliced(begin, finder.position() - begin);
            if (character == u"(")
                ++counter;
            else if (character == u")")
                --counter;
            if (counter == 0) {
                close = open + begin;
                break;
            }
        }
        if (close < 0)
            break;
        const QStringList inner = charactersOf(trimmedBlanks(result.mid(open, close - open)));
        if (inner.size() < 2 || inner[0] != QLatin1String("-") || inner[1] != QLatin1String("-"))
            break;
        const qsizetype comma = inner.indexOf(QStringLiteral(","));
        const QString name = trimmedBlanks(inner.mid(0, comma < 0 ? -1 : comma).join(QString()));
        QString replacement;
        if (variables.contains(name))
            replacement = variables.value(name);
        else if (comma >= 0)
            replacement = trimmedBlanks(inner.mid(comma + 1).join(QString()));
        else
            break;
        result = result.left(start) + replacement + result.mid(close + 1);
        ++run.substitutions;
        if (run.substitutions > referenceStepLimit || result.size() > referenceLengthLimit)
            run.abandoned = true;
    }
    return referenceResolve(result, variables, depth + 1, run);
}

// Pieces that generated values are made of: references of every shape the
// substitution distinguishes, the characters that trip it up, and parts of
// "var(" that a substitution may join into a new reference. References
// go to --v0 .. --v(nameCount - 1), or to an undefined name when there are none.
QString randomPiece(QRandomGenerator &random, int nameCount)
{
    const auto name = [&] {
        if (nameCount <= 0)
            return QStringLiteral("--undefined");
        return QStringLiteral("--v%1").arg(random.bounded(nameCount));
    };
    switch (random.bounded(22)) {
    case 0:
        return QStringLiteral("var(%1)").arg(name());
    case 1:
        return QStringLiteral("var( %1 ,%2)").arg(name(), QStringLiteral(" fb "));
    case 2:
        return QStringLiteral("var(%1,)").arg(name());
    case 3:
        return QStringLiteral("VAR(%1)").arg(name());
    case 4:
        return QStringLiteral("var(foo)");
    case 5:
        return QStringLiteral("var(");
    case 6:
        return QStringLiteral("(");
    case 7:
        return QStringLiteral(")");
    case 8:
        return QStringLiteral(", ");
    case 9:
        return QStringLiteral("\t");
    case 10:
        return QStringLiteral("\r\n");
    case 11:
        return QStringLiteral("(\u0301");
    case 12:
        return QStringLiteral("var(--\u0301x)");
    case 13:
        return QStringLiteral("var(%1,a,b)").arg(name());
    case 14:
        return QStringLiteral("var(%1, var(%2, red))").arg(name(), name());
    case 15:
        return QStringLiteral("Var(%1)").arg(name());
    case 16:
        return QStringLiteral("\u00a0");
    case 17:
        return QStringLiteral("va");
    case 18:
        return QStringLiteral("r(%1)").arg(name());
    case 19:
        return QStringLiteral("v");
    case 20:
        return QStringLiteral("var");
    default:
        return QStringLiteral("1px");
    }
}

QString randomValue(QRandomGenerator &random, int nameCount)
{
    QString value;
    const int pieces = random.bounded(1, 6);
    for (int i = 0; i < pieces; ++i)
        value +=
            randomPiece(random, nameCount) + (random.bounded(2) ? QStringLiteral(" ") : QString());
    return value;
}

// Custom properties --v0 .. --vN where each refers only to those before it,
// so that the substitution always ends, though it may grow a lot.
CSSVariables randomAcyclicVariables(QRandomGenerator &random)
{
    CSSVariables variables;
    const int count = random.bounded(0, 12);
    for (int i = 0; i < count; ++i)
        variables.insert(QStringLiteral("--v%1").arg(i), randomValue(random, i));
    return variables;
}

} // namespace

class TestValueResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chainedReferences()
    {
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--b)"), redChain), "red");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("1px solid var(--b)"), redChain),
                 "1px solid red");
    }

    void fallbacks_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("unknown with fallback") << "var(--x, blue)"
                                               << "blue";
        QTest::newRow("nested fallback") << "var(--x, var(--y, red))"
                                         << "red";
        QTest::newRow("empty fallback") << "var(--x,)"
                                        << "";
        QTest::newRow("fallback keeps its commas") << "var(--x, a, b)"
                                                   << "a, b";
        QTest::newRow("fallback trimmed of tabs") << "var(--x,\tgreen\t)"
                                                  << "green";
        QTest::newRow("line break not trimmed") << "var(--x,\ngreen)"
                                                << "\ngreen";
    }

    void fallbacks()
    {
        QFETCH(QString, value);
        QFETCH(QString, expected);
        QCOMPARE(CSSRuleset::resolveVars(value, {}), expected);
    }

    void leftmostReferenceDecides()
    {
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--x) var(--a)"), redChain),
                 "var(--x) var(--a)");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--a) var(--x)"), redChain),
                 "red var(--x)");
    }

    // The search goes on three characters before a substituted reference:
    // "var(" may be joined from the text before it and the value put in.
    void aReferenceJoinedBySubstitutionIsFound()
    {
        const CSSVariables variables{{QStringLiteral("--x"), QStringLiteral("r(--y)")},
                                     {QStringLiteral("--y"), QStringLiteral("ok")},
                                     {QStringLiteral("--a"), QStringLiteral("v")},
                                     {QStringLiteral("--b"), QStringLiteral("a")},
                                     {QStringLiteral("--p"), QStringLiteral("(--y)")}};
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("vavar(--x)"), variables), "ok");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("1 varvar(--p)"), variables), "1 ok");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("abcdefvar(--a)var(--b)var(--x) end"),
                                         variables),
                 "abcdefok end");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--a)var(--b)var(--x)"), variables),
                 "ok");
    }

    void unresolvableStaysAsWritten_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("no dashes") << "var(foo)";
        QTest::newRow("unbalanced") << "var(--x";
        QTest::newRow("unbalanced known") << "var(--a";
    }

    void unresolvableStaysAsWritten()
    {
        QFETCH(QString, value);
        QCOMPARE(CSSRuleset::resolveVars(value, redChain), value);
    }

    void referencesGoByCharacters()
    {
        const CSSVariables marked{{QStringLiteral("--\u0301a"), QStringLiteral("x")}};
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--\u0301a)"), marked),
                 QStringLiteral("var(--\u0301a)"));
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--x,\u0301 red)"), {}),
                 QStringLiteral("var(--x,\u0301 red)"));
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--x, (\u0301 red)"), {}),
                 QStringLiteral("(\u0301 red"));
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--x, (\u0301 red))"), {}),
                 QStringLiteral("(\u0301 red)"));
    }

    void caseOfTheTwoSearches()
    {
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("VAR(--a)"), redChain), "VAR(--a)");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--b) VAR(--a)"), redChain), "red red");
    }

    void namesAreCaseSensitive()
    {
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--A)"), redChain), "var(--A)");
    }

    void longChainResolvesCompletely()
    {
        CSSVariables variables{{QStringLiteral("--v0"), QStringLiteral("end")}};
        for (int i = 1; i <= 20; ++i)
            variables.insert(QStringLiteral("--v%1").arg(i),
                             QStringLiteral("var(--v%1)").arg(i - 1));
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--v20)"), variables), "end");
    }

    void depthLimitReturnsTheTextAsItStands()
    {
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--a)"), redChain, 8), "var(--a)");
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--a)"), redChain, 7), "red");
    }

    void cyclesReturnPromptlyUnchanged_data()
    {
        QTest::addColumn<QString>("stylesheet");
        QTest::addColumn<QString>("value");
        QTest::newRow("self") << ":root { --a: var(--a); }"
                              << "1px var(--a)";
        QTest::newRow("pair") << ":root { --a: var(--b); --b: var(--a); }"
                              << "var(--a)";
        QTest::newRow("growing") << ":root { --a: x var(--a); }"
                                 << "var(--a) solid";
    }

    void cyclesReturnPromptlyUnchanged()
    {
        QFETCH(QString, stylesheet);
        QFETCH(QString, value);
        // Returning at all is the point; a hang fails through the test timeout.
        QCOMPARE(CSSRuleset::resolveVars(value, variablesOf(stylesheet)), value);
    }

    void cyclicColourReadsAsNone()
    {
        const QString text = QStringLiteral(":root { --a: var(--a); } .b { color: var(--a); }");
        const CSSRulesetList rulesets = CSSParser::parse(text);
        const CSSFile file(QStringLiteral("/tmp/c.css"), rulesets, text);
        QVERIFY(!rulesets.last()->resolvedTextColor(file.variables()));
    }

    void exponentialGrowthIsBounded()
    {
        CSSVariables variables{{QStringLiteral("--v0"), QStringLiteral("ab")}};
        for (int i = 1; i <= 24; ++i)
            variables.insert(QStringLiteral("--v%1").arg(i),
                             QStringLiteral("var(--v%1) var(--v%1)").arg(i - 1));
        const QString value = QStringLiteral("var(--v24)");
        QCOMPARE(CSSRuleset::resolveVars(value, variables), value);
        // Within the bounds the same definitions resolve in full.
        QCOMPARE(CSSRuleset::resolveVars(QStringLiteral("var(--v3)"), variables),
                 QStringLiteral("ab ab ab ab ab ab ab ab"));
    }

    void substitutionCountIsBounded()
    {
        CSSVariables variables{{QStringLiteral("--z"), QString()}};
        const QString atLimit = QStringLiteral("var(--z)").repeated(CSSRuleset::maxSubstitutions);
        QCOMPARE(CSSRuleset::resolveVars(atLimit, variables), QString());
        const QString pastLimit = atLimit + QStringLiteral("var(--z)");
        QCOMPARE(CSSRuleset::resolveVars(pastLimit, variables), pastLimit);
    }

    // On every input where the unbounded algorithm ends within the bounds the
    // two agree exactly.
    void agreesWithTheUnboundedAlgorithm()
    {
        QRandomGenerator random(20261122);
        int compared = 0;
        for (int round = 0; round < 6000; ++round) {
            const CSSVariables variables = randomAcyclicVariables(random);
            const QString value = randomValue(random, int(variables.size()) + 2);
            const int depth = random.bounded(10) == 0 ? random.bounded(10) : 0;
            ReferenceRun run;
            const QString expected = referenceResolve(value, variables, depth, run);
            const QString actual = CSSRuleset::resolveVars(value, variables, depth);
            if (run.abandoned)
                continue;
            ++compared;
            QVERIFY2(
                actual == expected,
                qPrintable(QStringLiteral("%1 => %2, expected %3").arg(value, actual, expected)));
        }
        QVERIFY(compared > 5000);
    }

    void customPropertiesOfTheFile()
    {
        const CSSVariables variables = variablesOf(QStringLiteral(
            ":root { --a: red; --Case: 1; color: blue; } .card { --a: var(--b); --b: 2px; }"));
        QCOMPARE(variables.size(), 3);
        QCOMPARE(variables.value(QStringLiteral("--a")), "var(--b)");
        QCOMPARE(variables.value(QStringLiteral("--b")), "2px");
        QCOMPARE(variables.value(QStringLiteral("--Case")), "1");
        QVERIFY(!variables.contains(QStringLiteral("--case")));
        QVERIFY(variablesOf(QString()).isEmpty());
    }

    void valueFindsTheFirstIgnoringCase()
    {
        const CSSRulesetPtr ruleset = rulesetOf(QStringLiteral(".a { COLOR: red; color: blue; }"));
        QCOMPARE(ruleset->value(u"color"), std::optional(QStringLiteral("red")));
        QCOMPARE(ruleset->value(u"Color"), std::optional(QStringLiteral("red")));
        QVERIFY(!ruleset->value(u"background"));
    }

    void resolvedValue()
    {
        const CSSRulesetPtr ruleset =
            rulesetOf(QStringLiteral(".a { border: 1px solid var(--b); }"));
        QCOMPARE(ruleset->resolvedValue(u"border", redChain),
                 std::optional(QStringLiteral("1px solid red")));
        QVERIFY(!ruleset->resolvedValue(u"color", redChain));
    }

    void borderRadius_data()
    {
        QTest::addColumn<QString>("declarations");
        QTest::addColumn<double>("expected");
        QTest::newRow("none") << "color: red" << 0.0;
        QTest::newRow("capped") << "border-radius: 1000px" << 999.0;
        QTest::newRow("percent") << "border-radius: 50%" << 0.0;
        QTest::newRow("rem") << "border-radius: 1.5rem" << 1.5;
        QTest::newRow("em") << "border-radius: 2em" << 2.0;
        QTest::newRow("fallback") << "border-radius: var(--r, 4px)" << 4.0;
        QTest::newRow("shorthand") << "border-radius: 4px 8px" << 0.0;
        QTest::newRow("upper-case unit") << "border-radius: 4PX" << 0.0;
        QTest::newRow("points") << "border-radius: 4pt" << 0.0;
        QTest::newRow("unit anywhere") << "border-radius: p4px" << 0.0;
        QTest::newRow("negative") << "border-radius: -3px" << -3.0;
        QTest::newRow("exponent") << "border-radius: 1e1px" << 10.0;
    }

    void borderRadius()
    {
        QFETCH(QString, declarations);
        QFETCH(double, expected);
        const CSSRulesetPtr ruleset = rulesetOf(QStringLiteral(".a { %1; }").arg(declarations));
        QCOMPARE(ruleset->resolvedBorderRadius({}), expected);
        QCOMPARE(ruleset->cssBorderRadius(), expected);
    }

    void cssLength_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<double>>("expected");
        QTest::newRow("px") << "16px" << std::optional(16.0);
        QTest::newRow("rem") << "16rem" << std::optional(16.0);
        QTest::newRow("em") << "1.5em" << std::optional(1.5);
        QTest::newRow("trimmed") << " \t7px\t" << std::optional(7.0);
        QTest::newRow("removed anywhere") << "1p2xpx" << std::optional<double>();
        QTest::newRow("removals in order") << "1reem" << std::optional<double>();
        QTest::newRow("percent") << "50%" << std::optional<double>();
        QTest::newRow("two lengths") << "1px 2px" << std::optional<double>();
        QTest::newRow("empty") << "" << std::optional<double>();
        QTest::newRow("sign and fraction") << "-.5px" << std::optional(-0.5);
    }

    void cssLength()
    {
        QFETCH(QString, text);
        QFETCH(std::optional<double>, expected);
        QCOMPARE(CSSRuleset::cssLength(text), expected);
    }

    void fontWeight_data()
    {
        QTest::addColumn<QString>("declarations");
        QTest::addColumn<FontWeight>("expected");
        QTest::newRow("none") << "color: red" << FontWeight::regular;
        QTest::newRow("upper-case bold") << "font-weight: BOLD" << FontWeight::bold;
        QTest::newRow("700") << "font-weight: 700" << FontWeight::bold;
        QTest::newRow("800") << "font-weight: 800" << FontWeight::heavy;
        QTest::newRow("900") << "font-weight: 900" << FontWeight::black;
        QTest::newRow("600") << "font-weight: 600" << FontWeight::semibold;
        QTest::newRow("semibold") << "font-weight: semibold" << FontWeight::semibold;
        QTest::newRow("500") << "font-weight: 500" << FontWeight::medium;
        QTest::newRow("medium") << "font-weight: medium" << FontWeight::medium;
        QTest::newRow("300") << "font-weight: 300" << FontWeight::light;
        QTest::newRow("light") << "font-weight: light" << FontWeight::light;
        QTest::newRow("200") << "font-weight: 200" << FontWeight::ultraLight;
        QTest::newRow("100") << "font-weight: 100" << FontWeight::thin;
        QTest::newRow("thin") << "font-weight: thin" << FontWeight::thin;
        QTest::newRow("bolder") << "font-weight: bolder" << FontWeight::regular;
        QTest::newRow("normal") << "font-weight: normal" << FontWeight::regular;
        QTest::newRow("400") << "font-weight: 400" << FontWeight::regular;
        QTest::newRow("whole text compared")
            << "--w: bold !important; font-weight: var(--w)" << FontWeight::regular;
        QTest::newRow("through a variable")
            << "--w: 800; font-weight: var(--w)" << FontWeight::heavy;
    }

    void fontWeight()
    {
        QFETCH(QString, declarations);
        QFETCH(FontWeight, expected);
        const QString text = QStringLiteral(".a { %1; }").arg(declarations);
        const CSSRulesetList rulesets = CSSParser::parse(text);
        const CSSFile file(QStringLiteral("/tmp/w.css"), rulesets, text);
        QCOMPARE(rulesets.first()->resolvedFontWeight(file.variables()), expected);
    }

    void fontWeightIsNotTrimmed()
    {
        // The parser trims values, so only a substituted value can carry blanks.
        const CSSRulesetPtr ruleset = rulesetOf(QStringLiteral(".a { font-weight: var(--w); }"));
        const CSSVariables padded{{QStringLiteral("--w"), QStringLiteral(" bold")}};
        QCOMPARE(ruleset->resolvedFontWeight(padded), FontWeight::regular);
        QCOMPARE(ruleset->cssFontWeight(), FontWeight::regular);
    }

    void backgroundColour()
    {
        const CSSRulesetPtr shorthand = rulesetOf(QStringLiteral(".a { background: #fff; }"));
        QCOMPARE(shorthand->cssBackgroundColor()->cssHexString(), "#FFFFFF");
        const CSSRulesetPtr unreadable =
            rulesetOf(QStringLiteral(".a { background: #fff; background-color: nonsense; }"));
        QVERIFY(!unreadable->cssBackgroundColor());
        const CSSRulesetPtr none = rulesetOf(QStringLiteral(".a { color: red; }"));
        QVERIFY(!none->cssBackgroundColor());
        const CSSRulesetPtr throughVariable =
            rulesetOf(QStringLiteral(".a { background-color: var(--b); }"));
        QCOMPARE(throughVariable->resolvedBackgroundColor(redChain)->cssHexString(),
                 Color::fromCssString(u"red")->cssHexString());
        QVERIFY(!throughVariable->cssBackgroundColor());
    }

    void textColour()
    {
        const CSSRulesetPtr ruleset =
            rulesetOf(QStringLiteral(".a { background: red; color: var(--c, #00ff00); }"));
        QCOMPARE(ruleset->cssTextColor()->cssHexString(), "#00FF00");
        const CSSRulesetPtr none = rulesetOf(QStringLiteral(".a { background: red; }"));
        QVERIFY(!none->cssTextColor());
    }
};

QTEST_GUILESS_MAIN(TestValueResolution)
#include "tst_valueresolution.moc"
