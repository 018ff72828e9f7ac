// The filter of the card list: its quick search for ASCII queries must find
// exactly what Qt's case-insensitive search finds, on any text.

#include "canvas/RulesetFilter.h"
#include "model/CSSParser.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Ombrel;

class TestRulesetFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void containsAsQtDoes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("query");
        QTest::newRow("plain") << QStringLiteral("background-color") << QStringLiteral("COLOR");
        QTest::newRow("absent") << QStringLiteral("margin") << QStringLiteral("pad");
        QTest::newRow("at the end") << QStringLiteral("#fff") << QStringLiteral("FF");
        QTest::newRow("longer than the text") << QStringLiteral("red") << QStringLiteral("reds");
        QTest::newRow("overlapping start") << QStringLiteral("aaab") << QStringLiteral("aab");
        QTest::newRow("kelvin sign folds to k")
            << QStringLiteral("\u212Aey") << QStringLiteral("key");
        QTest::newRow("kelvin sign inside") << QStringLiteral("b\u212Ae") << QStringLiteral("ke");
        QTest::newRow("long s folds to s")
            << QStringLiteral("cla\u017F\u017F") << QStringLiteral("ss");
        QTest::newRow("accented text, ASCII query")
            << QStringLiteral("caf\u00e9 au lait") << QStringLiteral("LAIT");
        QTest::newRow("accented query")
            << QStringLiteral("CAF\u00c9") << QStringLiteral("caf\u00e9");
        QTest::newRow("emoji around")
            << QStringLiteral("\U0001F600x\U0001F600") << QStringLiteral("X");
        QTest::newRow("dotted capital I")
            << QStringLiteral("\u0130nput") << QStringLiteral("input");
        QTest::newRow("symbols") << QStringLiteral("a > b ~ c") << QStringLiteral("> B ~");
    }
    void containsAsQtDoes()
    {
        QFETCH(QString, text);
        QFETCH(QString, query);
        QCOMPARE(RulesetFilter::Matcher(query).contains(text),
                 text.contains(query, Qt::CaseInsensitive));
    }

    // Random texts of ASCII letters mixed with characters that fold to them.
    void agreesWithQtOnRandomText()
    {
        const QString alphabet = QStringLiteral("aAbBkKsS-: \u212A\u017F\u00e9\u0130");
        QRandomGenerator random(7);
        const auto draw = [&](int length) {
            QString text;
            for (int i = 0; i < length; ++i)
                text += alphabet[random.bounded(alphabet.size())];
            return text;
        };
        for (int i = 0; i < 20000; ++i) {
            const QString text = draw(random.bounded(12));
            QString query = draw(1 + random.bounded(3));
            if (i % 2 == 0) {
                for (QChar &unit : query)
                    unit = QLatin1Char("aAbBkKsS"[random.bounded(8)]);
            }
            QCOMPARE(RulesetFilter::Matcher(query).contains(text),
                     text.contains(query, Qt::CaseInsensitive));
        }
    }

    void findsBySelectorNameOrValue()
    {
        const CSSRulesetList rulesets = CSSParser::parse(
            QStringLiteral(".x { color: red; }\n.y { --Red-ish: 1; }\n.z { top: 0; }\n.RED { }"));
        QCOMPARE(RulesetFilter::filtered(rulesets, QStringLiteral(" red\t")).size(), 3);
        QCOMPARE(RulesetFilter::filtered(rulesets, QString()).size(), 4);
        QCOMPARE(RulesetFilter::filtered(rulesets, QStringLiteral("TOP")).first()->selector(),
                 QStringLiteral(".z"));
    }

    void aLongerQueryNarrowsTheShorterOnesRows()
    {
        QVERIFY(RulesetFilter::narrows(QStringLiteral("Cell-7"), QStringLiteral("cel")));
        QVERIFY(RulesetFilter::narrows(QStringLiteral("xcelly"), QStringLiteral("CELL")));
        QVERIFY(RulesetFilter::narrows(QStringLiteral("a"), QString()));
        QVERIFY(!RulesetFilter::narrows(QStringLiteral("cel"), QStringLiteral("cell")));
        QVERIFY(!RulesetFilter::narrows(QStringLiteral("ab"), QStringLiteral("ba")));
    }
};

QTEST_GUILESS_MAIN(TestRulesetFilter)
#include "tst_rulesetfilter.moc"
