// What a parse leaves out as a whole, counted on the way: at-rules at the top
// level and block comments, on small texts and on real stylesheets.

#include "model/CSSParser.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>
#include <QTest>

using namespace Ombrel;
using Counts = CSSParser::DroppedCounts;

Q_DECLARE_METATYPE(Counts)

namespace {

QStringList describe(const CSSRulesetList &rulesets)
{
    QStringList lines;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        lines << ruleset->selector();
        for (const CSSProperty &property : ruleset->properties())
            lines << QStringLiteral("  ") + property.name + QStringLiteral(": ") + property.value;
    }
    return lines;
}

// A plain count of the same things, written apart from the parser for a
// well-formed stylesheet of ASCII structure: comments first, then the heads
// at depth zero that begin with "@", before a block or a ";".
Counts referenceCount(const QString &text)
{
    Counts counts;
    QString stripped;
    qsizetype at = 0;
    while (true) {
        const qsizetype open = text.indexOf(QLatin1String("/*"), at);
        if (open < 0) {
            stripped += text.mid(at);
            break;
        }
        stripped += text.mid(at, open - at);
        ++counts.comments;
        const qsizetype close = text.indexOf(QLatin1String("*/"), open + 2);
        if (close < 0)
            break;
        at = close + 2;
    }
    int depth = 0;
    QString head;
    for (const QChar c : std::as_const(stripped)) {
        if (c == u'{') {
            if (depth == 0 && head.trimmed().startsWith(u'@'))
                ++counts.atRules;
            if (depth == 0)
                head.clear();
            ++depth;
        } else if (c == u'}') {
            --depth;
        } else if (depth == 0 && c == u';') {
            if (head.trimmed().startsWith(u'@'))
                ++counts.atRules;
            head.clear();
        } else if (depth == 0) {
            head += c;
        }
    }
    return counts;
}

QString corpusText(const QString &name)
{
    QFile file(QDir(qEnvironmentVariable("OMBREL_CORPUS_DIR")).filePath(name));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QStringDecoder decoder(QStringDecoder::Utf8);
    return decoder.decode(file.readAll());
}

} // namespace

namespace QTest {
template<> char *toString(const Counts &counts)
{
    return qstrdup(QStringLiteral("%1 at-rules, %2 comments")
                       .arg(counts.atRules)
                       .arg(counts.comments)
                       .toUtf8()
                       .constData());
}
} // namespace QTest

class TestDroppedCounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsWhatTheParseDrops_data()
    {
        QTest::addColumn<QString>("css");
        QTest::addColumn<Counts>("expected");
        const auto row = [](const char *name, const char *css, qsizetype atRules,
                            qsizetype comments) {
            QTest::newRow(name) << QString::fromUtf8(css) << Counts{atRules, comments};
        };
        row("empty", "", 0, 0);
        row("plain ruleset", "a{b:c}", 0, 0);
        row("comments around rulesets", "/* x */ a { b: c } /* y */", 0, 2);
        row("comment in a value and a selector", "a/* x */b { c: d /* e */ f }", 0, 2);
        row("unterminated comment", "a { b: c } /* abc", 0, 1);
        row("opener that is its own end", "/*/", 0, 1);
        row("slashes are no comment", "a { b: url(//x) }", 0, 0);
        row("media block with rules inside", "@media x { a { b:c } } d { e: f }", 1, 0);
        row("import statement", "@import url(x.css); a { b: c }", 1, 0);
        row("charset and import", "@charset \"utf-8\"; @import x; a { }", 2, 0);
        row("statement joining the next head", "@import url(x.css)\na { b: c } d { e: f }", 1, 0);
        row("font face and keyframes", "@font-face { a: b } @keyframes k { from {} to {} }", 2, 0);
        row("nested at-rule counts once", "@supports x { @media y { a { b: c } } }", 1, 0);
        row("at-rule inside a ruleset is no at-rule", "a { @media x { b: c } }", 0, 0);
        row("block never closed", "a { b: c } @media x { d { e: f }", 1, 0);
        row("statement without its semicolon at the end", "a { b: c } @import x", 1, 0);
        row("at sign inside a selector", "a[href^=\"@\"] { b: c }", 0, 0);
        row("commented-out at-rule", "/* @media x { a { b: c } } */ d { e: f }", 0, 1);
        row("at-rule after a stray brace is never read", "} @media x { a { b: c } }", 0, 0);
        row("at-rule and comments", "/* a */ @media x { /* b */ c { d: e } }", 1, 2);
    }

    void countsWhatTheParseDrops()
    {
        QFETCH(QString, css);
        QFETCH(Counts, expected);
        Counts counts;
        CSSParser::parse(css, counts);
        QCOMPARE(counts, expected);
    }

    // Counting changes nothing of what the parse finds.
    void countingParseGivesTheSameRulesets()
    {
        const QString css = QStringLiteral(
            "/* head */ @charset \"x\"; a { b: c; d: e } @media x { f { g: h } } i { j: k }");
        Counts counts;
        QCOMPARE(describe(CSSParser::parse(css, counts)), describe(CSSParser::parse(css)));
        QCOMPARE(describe(CSSParser::parse(css)),
                 QStringList({"a", "  b: c", "  d: e", "i", "  j: k"}));
    }

    void countsStartFromZero()
    {
        Counts counts{7, 9};
        CSSParser::parse(QStringLiteral("a { b: c }"), counts);
        QCOMPARE(counts, Counts());
    }

    // An "@" joined by a combining mark is no character of its own, so the
    // parser keeps that block as a ruleset, and it is not counted.
    void combiningMarkAfterAtSignIsNoAtRule()
    {
        Counts counts;
        const CSSRulesetList rulesets =
            CSSParser::parse(QStringLiteral("@\u0301media x { a: b }"), counts);
        QCOMPARE(rulesets.size(), 1);
        QCOMPARE(counts.atRules, 0);
    }

    // The real stylesheets of the corpus, at the versions the benchmark
    // installs: the parse's counts agree with a count made apart from it and
    // with the numbers of those versions.
    void countsOnTheCorpus_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Counts>("expected");
        QTest::newRow("bootstrap 5.3.3") << QStringLiteral("bootstrap.css") << Counts{115, 17};
        QTest::newRow("primer 21.5.1") << QStringLiteral("primer.css") << Counts{231, 6};
        QTest::newRow("tailwind 2.2.19") << QStringLiteral("tailwind.css") << Counts{14, 353};
    }

    void countsOnTheCorpus()
    {
        if (qEnvironmentVariableIsEmpty("OMBREL_CORPUS_DIR"))
            QSKIP("OMBREL_CORPUS_DIR is not set (bench/install-peers.sh installs the corpus)");
        QFETCH(QString, name);
        QFETCH(Counts, expected);
        const QString text = corpusText(name);
        QVERIFY2(!text.isEmpty(), qPrintable(name));
        Counts counts;
        const CSSRulesetList rulesets = CSSParser::parse(text, counts);
        QCOMPARE(counts, referenceCount(text));
        QCOMPARE(counts, expected);
        QCOMPARE(describe(rulesets), describe(CSSParser::parse(text)));
    }
};

QTEST_GUILESS_MAIN(TestDroppedCounts)
#include "tst_droppedcounts.moc"
