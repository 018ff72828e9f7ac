#include "model/CSSParser.h"
#include "text/TextScan.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextBoundaryFinder>

using namespace Ombrel;

namespace {

// The text cut into user-perceived characters.
QStringList charactersOf(const QString &text)
{
    QStringList characters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (start < text.size()) {
        finder.setPosition(start);
        const qsizetype end = finder.toNextBoundary();
        characters << text.sliced(start, end - start);
        start = end;
    }
    return characters;
}

// The parser's algorithm word for word, one character at a time, with nothing
// gathered into ranges and nothing skipped: what the fast parser must match.
// Comments are removed by the parser's own removeComments, which has tests of
// its own.
namespace Reference {

QStringList parseProperties(const QString &body)
{
    QStringList declarations;
    QStringList pieces{QString()};
    for (const QString &c : charactersOf(body)) {
        if (c == u";")
            pieces << QString();
        else
            pieces.last() += c;
    }
    for (const QString &raw : pieces) {
        const QString piece = TextScan::trimmedWhitespaceAndNewlines(raw).toString();
        if (piece.isEmpty())
            continue;
        const QStringList c = charactersOf(piece);
        const qsizetype colon = c.indexOf(QStringLiteral(":"));
        if (colon < 0)
            continue;
        const QString name = TextScan::trimmedWhitespace(c.first(colon).join(QString())).toString();
        const QString value =
            TextScan::trimmedWhitespace(c.sliced(colon + 1).join(QString())).toString();
        if (!name.isEmpty() && !value.isEmpty())
            declarations << name + u'\x1' + value;
    }
    return declarations;
}

QStringList parse(const QString &css)
{
    QStringList out;
    qint64 depth = 0;
    QString buffer, selector, body;
    bool inAtRule = false;
    qint64 atDepth = 0;
    int count = 0;
    for (const QString &c : charactersOf(CSSParser::removeComments(css))) {
        if (c == u"{") {
            ++depth;
            if (inAtRule) {
                ++atDepth;
            } else if (depth == 1) {
                const QString head = TextScan::trimmedWhitespaceAndNewlines(buffer).toString();
                if (!head.isEmpty() && charactersOf(head).first() == u"@") {
                    inAtRule = true;
                    atDepth = 1;
                    selector.clear();
                } else {
                    selector = head;
                }
                buffer.clear();
                body.clear();
            } else {
                body += c;
            }
        } else if (c == u"}") {
            if (inAtRule) {
                if (--atDepth == 0)
                    inAtRule = false;
                --depth;
            } else if (depth == 1) {
                if (!selector.isEmpty()) {
                    out << selector + u'@' +
                               QString::number(CSSParser::positionForIndex(count++).y());
                    out += parseProperties(body);
                }
                selector.clear();
                buffer.clear();
                body.clear();
                --depth;
            } else {
                --depth;
                if (depth >= 1)
                    body += c;
            }
        } else if (c == u";") {
            if (inAtRule)
                continue;
            if (depth != 0)
                body += c;
            else
                buffer.clear();
        } else if (!inAtRule) {
            if (depth != 0)
                body += c;
            else
                buffer += c;
        }
    }
    return out;
}

} // namespace Reference

QStringList describe(const CSSRulesetList &rulesets)
{
    QStringList out;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        out << ruleset->selector() + u'@' + QString::number(ruleset->position().y());
        for (const CSSProperty &property : ruleset->properties())
            out << property.name + u'\x1' + property.value;
    }
    return out;
}

QStringList describe(const CSSPropertyList &properties)
{
    QStringList out;
    for (const CSSProperty &property : properties)
        out << property.name + u'\x1' + property.value;
    return out;
}

const QList<char32_t> trickyCodePoints = {
    U'a',   U'b',   U'{',   U'}',   U';',   U':',   U'/',    U'*',    U'@',   U' ',   U'\t',
    U'\r',  U'\n',  U'{',   U'}',   U';',   U':',   0x0085,  0x00A0,  0x0300, 0x0301, 0x0600,
    0x0605, 0x0903, 0x200D, 0x2028, 0x3000, 0xFE0F, 0x1F1E6, 0x1F468, 0xD800, 0xDC00};

QString randomText(QRandomGenerator &random, int alphabet, int length)
{
    QString text;
    for (int i = 0; i < length; ++i) {
        const char32_t cp = trickyCodePoints[random.bounded(alphabet)];
        if (cp == 0xD800 || cp == 0xDC00)
            text += QChar(char16_t(cp));
        else
            text += QString::fromUcs4(&cp, 1);
    }
    return text;
}

} // namespace

class TestCSSParserReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchesReferenceOnRandomText()
    {
        QRandomGenerator random(20261122);
        for (int round = 0; round < 20000; ++round) {
            // By turns: letters and punctuation only; with white space and
            // line breaks too; with units that join, prepend or stand unpaired.
            const int alphabet = round % 3 == 0   ? 9
                                 : round % 3 == 1 ? 19
                                                  : int(trickyCodePoints.size());
            const QString text =
                randomText(random, alphabet, 1 + random.bounded(round % 2 ? 12 : 80));
            const QString hex = QString::fromLatin1(text.toUtf8().toHex());
            QVERIFY2(describe(CSSParser::parse(text)) == Reference::parse(text), qPrintable(hex));
            QVERIFY2(describe(CSSParser::parseProperties(text)) == Reference::parseProperties(text),
                     qPrintable(hex));
        }
    }
};

QTEST_GUILESS_MAIN(TestCSSParserReference)
#include "tst_cssparser_reference.moc"
