// The colouring of the code tab: the seven rules over whole texts, their
// colours in both appearances, and the incremental scanner, which must give
// the same roles as the rules over the whole text after any edit.

#include "CodeTextSamples.h"
#include "code/SyntaxColouring.h"
#include "code/SyntaxScanner.h"

#include <QRegularExpression>
#include <QTest>

using namespace Ombrel;

namespace {

using Role = SyntaxRole;

// The role of every unit of the text as one letter, for readable failures:
// '.' none, 'c' comment, 'a' at-rule, 's' selector, 'p' property name, 'v'
// variable reference, 'V' value, '#' punctuation.
QString roleMap(const QList<SyntaxRun> &runs, qsizetype length)
{
    static const char letters[] = ".casp"
                                  "vV#";
    QString map(length, QLatin1Char('.'));
    for (const SyntaxRun &run : runs) {
        for (qsizetype i = run.start; i < run.start + run.length; ++i)
            map[i] = QLatin1Char(letters[int(run.role)]);
    }
    return map;
}

QString rolesOf(const QString &text)
{
    return roleMap(SyntaxColouring::roleRuns(text), text.size());
}

} // namespace

class TestSyntaxColouring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyTextHasNoRuns()
    {
        QVERIFY(SyntaxColouring::roleRuns(QString()).isEmpty());
        QVERIFY(SyntaxColouring::colourRuns(QString(), true).isEmpty());
        SyntaxScanner scanner;
        scanner.reset(QString());
        QVERIFY(scanner.runs().isEmpty());
    }

    void rulesRunInOrderAndLaterOnesWin_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("roles");
        // Rule 3 cannot start at a "/", so a selector-shaped text behind "/*"
        // on the same line keeps the comment colour; the declaration inside
        // takes the later rules' colours.
        QTest::newRow("declaration-shaped comment") << QStringLiteral("/* a { color: red; } */")
                                                    << QStringLiteral("ccccc#pppppp#VVVV#c#ccc");
        QTest::newRow("selector-shaped line in a comment")
            << QStringLiteral("/*\na { color: red; }\n*/")
            << QStringLiteral("cccss#pppppp#VVVV#c#ccc");
        QTest::newRow("media query") << QStringLiteral("@media (max-width: 600px) {")
                                     << QStringLiteral("sssssssssssssssss#ssssssss#");
        QTest::newRow("var in a value")
            << QStringLiteral("a{color: var(--x);}") << QStringLiteral("s#ppppp#VVVVVVVVV##");
        QTest::newRow("var without a declaration")
            << QStringLiteral("x var(--y) z") << QStringLiteral("..vvvvvvvv..");
        QTest::newRow("value without terminator at the end")
            << QStringLiteral("a{b:c") << QStringLiteral("s#p#.");
        QTest::newRow("selector over blank lines")
            << QStringLiteral("a\n\n  {}") << QStringLiteral("s..ss##");
        QTest::newRow("pseudo-class colon is punctuation")
            << QStringLiteral("a:hover {}") << QStringLiteral("s#ssssss##");
        QTest::newRow("at-rule statement")
            << QStringLiteral("@import x;") << QStringLiteral("aaaaaaa..#");
        QTest::newRow("blanks across a line feed are a value")
            << QStringLiteral("a: \n  ;") << QStringLiteral(".#VVVV#");
        QTest::newRow("blanks before a line feed are a value")
            << QStringLiteral("a{b: \n{") << QStringLiteral("s#p#V.#");
    }

    void rulesRunInOrderAndLaterOnesWin()
    {
        QFETCH(QString, text);
        QFETCH(QString, roles);
        QCOMPARE(rolesOf(text), roles);
        SyntaxScanner scanner;
        scanner.reset(text);
        QCOMPARE(roleMap(scanner.runs(), text.size()), roles);
    }

    void commentKeepsItsColourOnlyWhereNoLaterRuleMatches()
    {
        const QString text = QStringLiteral("/* a { color: red; } */");
        const QList<SyntaxRun> runs = SyntaxColouring::roleRuns(text);
        const auto roleAt = [&](qsizetype index) {
            for (const SyntaxRun &run : runs) {
                if (index >= run.start && index < run.start + run.length)
                    return run.role;
            }
            return Role::None;
        };
        QCOMPARE(roleAt(0), Role::Comment);
        QCOMPARE(roleAt(1), Role::Comment);
        // The selector rule may not begin at the "/" that opens the line, and
        // its "^" holds it to a line's start: its own expression finds no
        // match, so the "a " keeps the comment colour.
        QVERIFY(!QRegularExpression(SyntaxColouring::pattern(Role::Selector),
                                    QRegularExpression::MultilineOption)
                     .match(text)
                     .hasMatch());
        QCOMPARE(roleAt(text.indexOf(u'a')), Role::Comment);
        QCOMPARE(roleAt(text.indexOf(u"color")), Role::PropertyName);
        QCOMPARE(roleAt(text.indexOf(u"red")), Role::Value);
        QCOMPARE(roleAt(text.indexOf(u'{')), Role::Punctuation);
        QCOMPARE(roleAt(text.indexOf(u':')), Role::Punctuation);
        QCOMPARE(roleAt(text.indexOf(u';')), Role::Punctuation);
        QCOMPARE(roleAt(text.indexOf(u'}')), Role::Punctuation);
        QCOMPARE(roleAt(text.size() - 1), Role::Comment);
    }

    void mediaQueryTakesTheAtRuleColourThenTheSelectorColour()
    {
        const QList<SyntaxRun> runs =
            SyntaxColouring::roleRuns(QStringLiteral("@media (max-width: 600px) {"));
        QCOMPARE(runs.first().start, 0);
        QCOMPARE(runs.first().role, Role::Selector);
        QVERIFY(runs.first().length > 6);
    }

    void darkAndLightColours()
    {
        const Color darkSelector{0.49, 0.73, 1.0, 1};
        const Color lightSelector{0.1, 0.4, 0.8, 1};
        QCOMPARE(SyntaxColouring::colour(Role::Selector, true), darkSelector);
        QCOMPARE(SyntaxColouring::colour(Role::Selector, false), lightSelector);
        QCOMPARE(SyntaxColouring::colour(Role::Comment, true),
                 SyntaxColouring::colour(Role::Comment, false));
        QCOMPARE(SyntaxColouring::colour(Role::Value, true), (Color{1.0, 0.73, 0.49, 1}));
        QCOMPARE(SyntaxColouring::colour(Role::Value, false), (Color{0.7, 0.3, 0.0, 1}));
        const QList<ColouredRun> dark = SyntaxColouring::colourRuns(QStringLiteral("a {}"), true);
        QCOMPARE(dark.first(), (ColouredRun{0, 2, darkSelector}));
        const QList<ColouredRun> light = SyntaxColouring::colourRuns(QStringLiteral("a {}"), false);
        QCOMPARE(light.first(), (ColouredRun{0, 2, lightSelector}));
    }

    void loneSurrogateStillLeavesTheRestColoured()
    {
        QString text = QStringLiteral("a { b: c; }");
        text.insert(1, QChar(0xD800));
        QCOMPARE(rolesOf(text), QStringLiteral("sss#pp#VV#.#"));
    }

    // The scanner's classes are the engine's: \w and \s with Unicode
    // properties, for every code point.
    void wordAndSpaceClassesAgreeWithTheEngine()
    {
        const QRegularExpression word(QStringLiteral("^[\\w-]$"),
                                      QRegularExpression::UseUnicodePropertiesOption);
        const QRegularExpression space(QStringLiteral("^\\s$"),
                                       QRegularExpression::UseUnicodePropertiesOption);
        QString text;
        for (char32_t c = 1; c < 0x110000; ++c) {
            if (c >= 0xD800 && c < 0xE000)
                continue;
            const QString one = QString::fromUcs4(&c, 1);
            const bool isWord = word.match(one).hasMatch();
            const bool isSpace = space.match(one).hasMatch();
            if (!isWord && !isSpace)
                continue;
            // A value after a colon, terminated by ";": blanks are skipped,
            // word characters make the name of a var().
            const QString probe = (isSpace ? QStringLiteral("a{b:x") + one + QStringLiteral(";}")
                                           : QStringLiteral("var(--") + one + QStringLiteral(")"));
            SyntaxScanner scanner;
            scanner.reset(probe);
            if (roleMap(scanner.runs(), probe.size()) != rolesOf(probe))
                text += QString::number(quint32(c), 16) + QLatin1Char(' ');
        }
        QCOMPARE(text, QString());
    }

    void scannerMatchesTheRulesOnRandomTexts()
    {
        QRandomGenerator random(20240601);
        for (int round = 0; round < 3000; ++round) {
            const QString text = CodeTextSamples::randomText(random, 60);
            SyntaxScanner scanner;
            scanner.reset(text);
            const QString expected = rolesOf(text);
            const QString actual = roleMap(scanner.runs(), text.size());
            if (actual != expected)
                QFAIL(qPrintable(QStringLiteral("text %1\nexpected %2\nactual   %3")
                                     .arg(QString::fromLatin1(text.toUtf8().toPercentEncoding()),
                                          expected, actual)));
        }
    }

    void scannerMatchesTheRulesAfterRandomEdits()
    {
        QRandomGenerator random(77);
        for (int round = 0; round < 300; ++round) {
            QString text = round % 2 ? CodeTextSamples::randomText(random, 80)
                                     : CodeTextSamples::randomStylesheet(random, 12);
            SyntaxScanner scanner;
            scanner.reset(text);
            for (int step = 0; step < 30; ++step) {
                const CodeTextSamples::Edit edit = CodeTextSamples::randomEdit(random, text, 4);
                const QString before = text;
                text = CodeTextSamples::applied(text, edit);
                const auto [from, to] =
                    scanner.edit(text, edit.at, edit.removed, edit.inserted.size());
                const QString expected = rolesOf(text);
                const QString actual = roleMap(scanner.runs(), text.size());
                if (actual != expected)
                    QFAIL(qPrintable(
                        QStringLiteral("before %1\nafter  %2\nexpected %3\nactual   %4")
                            .arg(QString::fromLatin1(before.toUtf8().toPercentEncoding()),
                                 QString::fromLatin1(text.toUtf8().toPercentEncoding()), expected,
                                 actual)));
                // Outside the reported range the roles are those of before.
                const QString old = rolesOf(before);
                const qsizetype delta = edit.inserted.size() - edit.removed;
                for (qsizetype i = 0; i < text.size(); ++i) {
                    if (i >= from && i < to)
                        continue;
                    const qsizetype oldIndex = i < edit.at ? i : i - delta;
                    QVERIFY2(oldIndex >= 0 && oldIndex < before.size() &&
                                 old[oldIndex] == expected[i],
                             qPrintable(QStringLiteral("unit %1 changed outside [%2, %3)")
                                            .arg(i)
                                            .arg(from)
                                            .arg(to)));
                }
            }
        }
    }

    void runsOfARangeAreCut()
    {
        SyntaxScanner scanner;
        scanner.reset(QStringLiteral("abc {\n  color: red;\n}\n"));
        const QList<SyntaxRun> runs = scanner.runs(1, 8);
        QCOMPARE(runs.first(), (SyntaxRun{1, 3, Role::Selector}));
        QCOMPARE(runs.last().start + runs.last().length, 8);
    }
};

QTEST_GUILESS_MAIN(TestSyntaxColouring)
#include "tst_syntaxcolouring.moc"
