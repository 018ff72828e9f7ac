#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QDirIterator>
#include <QFile>
#include <QStringDecoder>
#include <QTest>

using namespace Ombrel;

namespace {

// "selector" followed by one "  name: value" line per declaration.
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

} // namespace

class TestCSSParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_data()
    {
        QTest::addColumn<QString>("css");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("empty") << QString() << QStringList();
        QTest::newRow("white space only") << QStringLiteral(" \n\t\r\n ") << QStringList();
        QTest::newRow("comments only") << QStringLiteral("/* a { b: c } */ /**/") << QStringList();
        QTest::newRow("minimal") << QStringLiteral("a{b:c}") << QStringList{"a", "  b: c"};
        QTest::newRow("piece without colon") << QStringLiteral("a { b: c; d: e }  f{ g:h;;; i }")
                                             << QStringList{"a", "  b: c", "  d: e", "f", "  g: h"};
        QTest::newRow("media block dropped")
            << QStringLiteral("@media x { a { b:c } } d { e: f }") << QStringList{"d", "  e: f"};
        QTest::newRow("font-face dropped")
            << QStringLiteral("@font-face { a: b } x { y: z }") << QStringList{"x", "  y: z"};
        QTest::newRow("at-statement with semicolon")
            << QStringLiteral("@import url(x.css); a { b: c }") << QStringList{"a", "  b: c"};
        QTest::newRow("charset") << QStringLiteral("@charset \"UTF-8\";\na{b:c}")
                                 << QStringList{"a", "  b: c"};
        QTest::newRow("at-statement without semicolon")
            << QStringLiteral("@import url(x.css)\na { b: c }\nd { e: f }")
            << QStringList{"d", "  e: f"};
        QTest::newRow("stray closing brace first")
            << QStringLiteral("} a { b: c } d { e: f }") << QStringList();
        QTest::newRow("stray closing brace later")
            << QStringLiteral("a { b: c; }}  d { e: f } g { h: i }") << QStringList{"a", "  b: c"};
        QTest::newRow("surplus opening brace restores")
            << QStringLiteral("} { a { b: c }") << QStringList{"a", "  b: c"};
        QTest::newRow("unclosed block") << QStringLiteral("a { b: c") << QStringList();
        QTest::newRow("trailing text")
            << QStringLiteral("a { b: c } trailing") << QStringList{"a", "  b: c"};
        QTest::newRow("comments inside selector and name")
            << QStringLiteral("a/* x */b { c/*y*/: d }") << QStringList{"ab", "  c: d"};
        QTest::newRow("empty name or value")
            << QStringLiteral("a { : b; c: ; d: e }") << QStringList{"a", "  d: e"};
        QTest::newRow("inner block in declarations")
            << QStringLiteral("a { b: c; {x} d: e }") << QStringList{"a", "  b: c", "  {x} d: e"};
        QTest::newRow("nested block")
            << QStringLiteral("a { b { c: d } e: f }") << QStringList{"a", "  b { c: d } e: f"};
        QTest::newRow("nested at-rule")
            << QStringLiteral("a { @media x { b: c } }") << QStringList{"a", "  @media x { b: c }"};
        QTest::newRow("brace inside string") << QStringLiteral("a { content: \"}\" } b { c: d }")
                                             << QStringList{"a", "  content: \""};
        QTest::newRow("semicolon in url")
            << QStringLiteral("a { background: url(data:image/png;base64,AAA=) }")
            << QStringList{"a", "  background: url(data:image/png"};
        QTest::newRow("semicolon in selector")
            << QStringLiteral("a[x=\";\"] { b: c }") << QStringList{"\"]", "  b: c"};
        QTest::newRow("colon in value")
            << QStringLiteral("a { b: url(a:b) }") << QStringList{"a", "  b: url(a:b)"};
        QTest::newRow("backslash is ordinary")
            << QStringLiteral("a\\{b:c}") << QStringList{"a\\", "  b: c"};
        QTest::newRow("important stays") << QStringLiteral("a { color: red !important }")
                                         << QStringList{"a", "  color: red !important"};
        QTest::newRow("empty head") << QStringLiteral("{ b: c } d {}") << QStringList{"d"};
        QTest::newRow("empty block") << QStringLiteral("a { }") << QStringList{"a"};
        QTest::newRow("value on next line")
            << QStringLiteral("a {\n  b:\n  c;\n}") << QStringList{"a", "  b: \n  c"};
        QTest::newRow("case and duplicates kept")
            << QStringLiteral("A.B { Color: Red; color: red; color: blue }")
            << QStringList{"A.B", "  Color: Red", "  color: red", "  color: blue"};
        QTest::newRow("selector keeps inner line breaks")
            << QStringLiteral("\n a,\n  b \n{x:y}") << QStringList{"a,\n  b", "  x: y"};
        QTest::newRow("crlf is one character") << QStringLiteral("a {\r\n  b: c;\r\n}\r\nd{e:f}")
                                               << QStringList{"a", "  b: c", "d", "  e: f"};
        QTest::newRow("brace with combining mark is no brace")
            << QStringLiteral("a {\u0301 b: c; d { e: f }") << QStringList{"d", "  e: f"};
        QTest::newRow("semicolon with combining mark does not split")
            << QStringLiteral("a { b: c;\u0301 d: e }") << QStringList{"a", "  b: c;\u0301 d: e"};
        QTest::newRow("colon with combining mark is no colon")
            << QStringLiteral("a { b:\u0301 c: d }") << QStringList{"a", "  b:\u0301 c: d"};
        QTest::newRow("at with combining mark is a selector")
            << QStringLiteral("@\u0301x { a: b }") << QStringList{"@\u0301x", "  a: b"};
        QTest::newRow("trim sets")
            << QStringLiteral("\u2028a\u00A0{\u00A0b\t:\u3000\u0085c\u0085;}")
            << QStringList{"a", "  b: \u0085c"};
        QTest::newRow("non-breaking space trimmed from name")
            << QStringLiteral("a{\n\u00A0b\u00A0:\u00A0c\u00A0}") << QStringList{"a", "  b: c"};
    }

    void parse()
    {
        QFETCH(QString, css);
        QFETCH(QStringList, expected);
        QCOMPARE(describe(CSSParser::parse(css)), expected);
    }

    void positionsFollowKeptRulesets()
    {
        const CSSRulesetList two = CSSParser::parse(QStringLiteral("a{b:c} d{e:f}"));
        QCOMPARE(two.size(), 2);
        QCOMPARE(two[0]->position(), QPointF(140, 40));
        QCOMPARE(two[1]->position(), QPointF(140, 250));

        const CSSRulesetList afterMedia =
            CSSParser::parse(QStringLiteral("@media x { a { b:c } } { x: y } d { e: f }"));
        QCOMPARE(afterMedia.size(), 1);
        QCOMPARE(afterMedia[0]->position(), QPointF(140, 40));
        QCOMPARE(CSSParser::positionForIndex(3), QPointF(140, 670));
    }

    void removeComments_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing replaces a comment") << "a/**/b"
                                                    << "ab";
        QTest::newRow("line comment is text") << "a // b"
                                              << "a // b";
        QTest::newRow("unterminated keeps last character") << "/* abc"
                                                           << "c";
        QTest::newRow("slash star slash") << "/*/"
                                          << "/";
        QTest::newRow("ends with opener") << "x/*"
                                          << "x";
        QTest::newRow("opener then one character") << "x/*y"
                                                   << "xy";
        QTest::newRow("closer is not reused") << "a/*x*/*/b"
                                              << "a*/b";
        QTest::newRow("star slash outside") << "a*/b"
                                            << "a*/b";
        QTest::newRow("several") << "/*1*/a/*2*/b/*3"
                                 << "ab3";
        QTest::newRow("inside string and url") << "url(\"a/*x*/b\")"
                                               << "url(\"ab\")";
        QTest::newRow("last character is a cluster")
            << QStringLiteral("a/* xe\u0301") << QStringLiteral("ae\u0301");
        QTest::newRow("last character crlf")
            << QStringLiteral("a/* x\r\n") << QStringLiteral("a\r\n");
        QTest::newRow("opener with combining mark is text")
            << QStringLiteral("a/*\u0301b*/c") << QStringLiteral("a/*\u0301b*/c");
        QTest::newRow("closer with combining mark does not close")
            << QStringLiteral("a/*b*\u0301/c*/d") << QStringLiteral("ad");
    }

    void removeComments()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(CSSParser::removeComments(text), expected);
    }

    void parsePropertiesSkipsAndTrims()
    {
        const CSSPropertyList properties = CSSParser::parseProperties(
            u"  a : b ;; c ;\n d:\te\t; :x; y: ; z:w:v; \n\tq\n:\n r \n");
        QStringList lines;
        for (const CSSProperty &property : properties)
            lines << property.name + u'=' + property.value;
        QCOMPARE(lines, (QStringList{"a=b", "d=e", "z=w:v", "q\n=\n r"}));
    }

    void deepNestingAndBinaryDoNotCrash()
    {
        QString deep(200000, u'{');
        deep += QString(200000, u'}');
        QVERIFY(CSSParser::parse(deep).isEmpty());
        QByteArray binary(4096, '\0');
        for (int i = 0; i < binary.size(); ++i)
            binary[i] = char((i * 7919) & 0xFF);
        const QString garbage = QString::fromLatin1(binary);
        CSSParser::parse(garbage);
        CSSParser::parse(QString::fromUtf8(binary));
    }

    // Parsing the generated text again gives the same selectors, names and
    // values, and generating again gives the same bytes, for real stylesheets.
    void generatedTextRoundTripsOnCorpus()
    {
        const QString corpus = qEnvironmentVariable("OMBREL_CORPUS_DIR");
        if (corpus.isEmpty())
            QSKIP("OMBREL_CORPUS_DIR is not set (bench/install-peers.sh installs the corpus)");
        int files = 0;
        QDirIterator it(corpus, {QStringLiteral("*.css")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QStringDecoder decoder(QStringDecoder::Utf8);
            const QString text = decoder.decode(file.readAll());
            if (decoder.hasError())
                continue;
            const CSSFile first(path, CSSParser::parse(text), text);
            const QString generated = first.generateCSS();
            const CSSFile second(path, CSSParser::parse(generated), generated);
            QVERIFY2(describe(first.rulesets()) == describe(second.rulesets()), qPrintable(path));
            QCOMPARE(second.generateCSS(), generated);
            ++files;
        }
        QVERIFY2(files >= 6, "the corpus should hold the real-world stylesheets");
    }
};

QTEST_GUILESS_MAIN(TestCSSParser)
#include "tst_cssparser.moc"
