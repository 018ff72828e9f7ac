#include "text/TextScan.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextBoundaryFinder>

using namespace Ombrel;

namespace {

// Reference walk: the whole text segmented into grapheme clusters.
bool referenceStandsAlone(const QString &text, qsizetype index)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(index);
    if (!finder.isAtBoundary())
        return false;
    finder.setPosition(index + 1);
    return finder.isAtBoundary();
}

qsizetype referenceLastCharacterStart(const QString &text)
{
    if (text.isEmpty())
        return 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.toEnd();
    return finder.toPreviousBoundary();
}

// Code points that join, prepend, pair up or break in unusual ways.
const QList<char32_t> trickyCodePoints = {
    U'a',    U'{',    U'}',   U';',    U':',    U'/',   U'*',   U'@',    U'-',    U' ',
    U'\t',   U'\r',   U'\n',  0x0085,  0x00A0,  0x0300, 0x0301, 0x0308,  0x0600,  0x0605,
    0x06DD,  0x070F,  0x0903, 0x093F,  0x094D,  0x0E33, 0x1100, 0x1161,  0x11A8,  0xAC00,
    0x200B,  0x200C,  0x200D, 0x2028,  0x2029,  0x3000, 0xFE0F, 0x1F1E6, 0x1F1E8, 0x1F468,
    0x1F469, 0x1F3FB, 0x2764, 0x110BD, 0xE0020, 0xD800, 0xDC00, 0xFFFD,  0x0000};

QString randomTrickyText(QRandomGenerator &random, int length)
{
    QString text;
    for (int i = 0; i < length; ++i) {
        const char32_t cp = trickyCodePoints[random.bounded(int(trickyCodePoints.size()))];
        if (cp == 0xD800 || cp == 0xDC00)
            text += QChar(char16_t(cp)); // a lone surrogate
        else
            text += QString::fromUcs4(&cp, 1);
    }
    return text;
}

} // namespace

class TestTextScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsAloneMatchesFullSegmentation_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("ascii") << QStringLiteral("a{b;c:d}");
        QTest::newRow("combining after brace") << QStringLiteral("a{\u0301b}");
        QTest::newRow("combining after semicolon") << QStringLiteral("a;\u0308;");
        QTest::newRow("zwj after colon") << QStringLiteral("x:\u200Dy");
        QTest::newRow("prepend before brace") << QStringLiteral("\u0600{a}");
        QTest::newRow("spacing mark") << QStringLiteral("{\u0903}");
        QTest::newRow("crlf around") << QStringLiteral("\r\n{\r\n}\r\n");
        QTest::newRow("emoji zwj") << QStringLiteral("\U0001F468\u200D{\u200D\U0001F469");
        QTest::newRow("regional indicators") << QStringLiteral("\U0001F1E6\U0001F1E8{\U0001F1E6}");
        QTest::newRow("variation selector") << QStringLiteral("*\uFE0F/");
        QTest::newRow("tag character") << QStringLiteral("*\U000E0020");
        QTest::newRow("lone surrogates") << QString(QChar(0xD800)) + u'{' + QChar(0xDC00);
    }

    void standsAloneMatchesFullSegmentation()
    {
        QFETCH(QString, text);
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i].unicode() >= 0x80)
                continue;
            QVERIFY2(TextScan::CharacterWalk(text).standsAlone(i) == referenceStandsAlone(text, i),
                     qPrintable(QStringLiteral("index %1").arg(i)));
        }
    }

    void standsAloneMatchesOnRandomTrickyText()
    {
        QRandomGenerator random(20261122);
        for (int round = 0; round < 3000; ++round) {
            const QString text = randomTrickyText(random, 1 + random.bounded(12));
            for (qsizetype i = 0; i < text.size(); ++i) {
                if (text[i].unicode() >= 0x80)
                    continue;
                if (TextScan::CharacterWalk(text).standsAlone(i) != referenceStandsAlone(text, i))
                    QFAIL(qPrintable(QStringLiteral("round %1 index %2: %3")
                                         .arg(round)
                                         .arg(i)
                                         .arg(QString::fromLatin1(text.toUtf8().toHex()))));
            }
            QCOMPARE(TextScan::lastCharacterStart(text), referenceLastCharacterStart(text));
            QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
            for (qsizetype start = 0; start < text.size();) {
                finder.setPosition(start);
                const qsizetype end = finder.toNextBoundary();
                QCOMPARE(TextScan::nextCharacterEnd(text, start), end);
                start = end;
            }
        }
    }

    // Characters longer than a few units: a base under a hundred marks, a long
    // run of regional indicators.
    void longCharactersMatchFullSegmentation()
    {
        const QString marked = u'a' + QString(100, QChar(0x0301)) + QStringLiteral("(b)");
        QCOMPARE(TextScan::nextCharacterEnd(marked, 0), 101);
        QCOMPARE(TextScan::closingParenthesis(marked, 102), 103);
        QString flags;
        for (int i = 0; i < 70; ++i)
            flags += QStringLiteral("\U0001F1E6\U0001F1E8");
        QCOMPARE(TextScan::nextCharacterEnd(flags, 0), 4);
        QCOMPARE(TextScan::nextCharacterEnd(flags, 136), 140);
    }

    // The closing parenthesis is found past any span the search starts with,
    // and a parenthesis under a mark is no parenthesis wherever it stands.
    void closingParenthesisFarAway()
    {
        const QString filler = QStringLiteral("a\u0301 (\u0301 b)\u0301 (c) ").repeated(400);
        const QString text = QStringLiteral("var(") + filler + QStringLiteral("(x))") + filler;
        QCOMPARE(TextScan::closingParenthesis(text, 4), 4 + filler.size() + 3);
        QCOMPARE(TextScan::closingParenthesis(filler + QStringLiteral("("), 1), -1);
    }

    void lastCharacterStartKeepsClusters()
    {
        QCOMPARE(TextScan::lastCharacterStart(u"abc"), 2);
        QCOMPARE(TextScan::lastCharacterStart(u"ab\r\n"), 2);
        QCOMPARE(TextScan::lastCharacterStart(u"ab\u0301"), 1);
        QCOMPARE(TextScan::lastCharacterStart(u"a\U0001F1E6\U0001F1E8"), 1);
        QCOMPARE(TextScan::lastCharacterStart(u""), 0);
    }

    void whitespaceSetIncludesTabAndSpacesButNoLineBreaks()
    {
        for (char16_t unit : {u' ', u'\t', char16_t(0x00A0), char16_t(0x2003), char16_t(0x3000)})
            QVERIFY(TextScan::isWhitespace(unit));
        for (char16_t unit : {u'\n', u'\r', char16_t(0x0B), char16_t(0x0C), char16_t(0x85),
                              char16_t(0x2028), char16_t(0x2029), u'a', char16_t(0x200B)})
            QVERIFY(!TextScan::isWhitespace(unit));
    }

    void newlineSetAddsLineBreaks()
    {
        for (char16_t unit : {u' ', u'\t', u'\n', u'\r', char16_t(0x0B), char16_t(0x0C),
                              char16_t(0x85), char16_t(0x2028), char16_t(0x2029), char16_t(0x00A0)})
            QVERIFY(TextScan::isWhitespaceOrNewline(unit));
        for (char16_t unit : {u'a', char16_t(0x1F), char16_t(0x200B), char16_t(0xFEFF)})
            QVERIFY(!TextScan::isWhitespaceOrNewline(unit));
    }

    void trimmingUsesTheTwoSets()
    {
        QCOMPARE(TextScan::trimmedWhitespace(u"\t a \n\t "), QStringView(u"a \n"));
        QCOMPARE(TextScan::trimmedWhitespace(u"\n a"), QStringView(u"\n a"));
        QCOMPARE(TextScan::trimmedWhitespaceAndNewlines(u"\r\n\u2028 a b\u0085 "),
                 QStringView(u"a b"));
        QCOMPARE(TextScan::trimmedWhitespaceAndNewlines(u" \n "), QStringView(u""));
    }
};

QTEST_GUILESS_MAIN(TestTextScan)
#include "tst_textscan.moc"
