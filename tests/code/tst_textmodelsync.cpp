// From the code tab's text to the model: the merge that keeps rulesets by
// selector, and the parse that an edit redoes only around itself, which
// must give what a full parse and merge give after any edit.

#include "CodeTextSamples.h"
#include "code/IncrementalParse.h"
#include "code/RulesetMerge.h"
#include "model/CSSParser.h"

#include <QSet>
#include <QTest>

using namespace Ombrel;

namespace {

CSSFilePtr fileOf(const QString &text)
{
    return std::make_shared<CSSFile>(QStringLiteral("/tmp/sync-test/style.css"),
                                     CSSParser::parse(text), text);
}

QList<ParsedRuleset> recordsOf(const CSSRulesetList &rulesets)
{
    QList<ParsedRuleset> records;
    for (const CSSRulesetPtr &ruleset : rulesets)
        records.append({ruleset->selector(), ruleset->properties()});
    return records;
}

// Selectors, names and values, ids left out.
QStringList textOf(const QList<ParsedRuleset> &records)
{
    QStringList lines;
    for (const ParsedRuleset &record : records) {
        lines.append(QStringLiteral("<%1>").arg(record.selector));
        for (const CSSProperty &property : record.properties)
            lines.append(QStringLiteral("  <%1>: <%2>").arg(property.name, property.value));
    }
    return lines;
}

QStringList textOf(const CSSRulesetList &rulesets)
{
    return textOf(recordsOf(rulesets));
}

// For each ruleset of after, the index in before of the same object, or -1.
QList<qsizetype> keptIndexes(const CSSRulesetList &before, const CSSRulesetList &after)
{
    QList<qsizetype> kept;
    for (const CSSRulesetPtr &ruleset : after)
        kept.append(before.indexOf(ruleset));
    return kept;
}

QSet<QUuid> propertyIDs(const CSSRulesetList &rulesets)
{
    QSet<QUuid> ids;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        for (const CSSProperty &property : ruleset->properties())
            ids.insert(property.id);
    }
    return ids;
}

QString escaped(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toPercentEncoding());
}

} // namespace

class TestTextModelSync : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typingInAValueKeepsTheRulesetButRenewsEveryPropertyID()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { color: red; }\n.b { margin: 0; }\n"));
        const CSSRulesetList before = file->rulesets();
        const QSet<QUuid> oldIDs = propertyIDs(before);
        RulesetMerge::mergeRulesets(
            *file, CSSParser::parse(QStringLiteral(".a { color: reds; }\n.b { margin: 0; }\n")));
        QCOMPARE(file->rulesets(), before);
        QCOMPARE(file->rulesets()[0]->properties()[0].value, QStringLiteral("reds"));
        QVERIFY(!propertyIDs(file->rulesets()).intersects(oldIDs));
    }

    void editedSelectorIsANewRuleset()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { b: c; }"));
        const CSSRulesetPtr old = file->rulesets()[0];
        RulesetMerge::mergeRulesets(*file, CSSParser::parse(QStringLiteral(".ab { b: c; }")));
        QCOMPARE(file->rulesets().size(), 1);
        QVERIFY(file->rulesets()[0] != old);
        QVERIFY(file->rulesets()[0]->id() != old->id());
        QCOMPARE(file->rulesets()[0]->selector(), QStringLiteral(".ab"));
    }

    void equalSelectorsPairInOrder()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { x: 1; }\n.a { y: 2; }\n"));
        const CSSRulesetList before = file->rulesets();
        RulesetMerge::mergeRulesets(
            *file, CSSParser::parse(QStringLiteral(".a { x: 3; }\n.a { y: 4; }\n")));
        QCOMPARE(file->rulesets(), before);
        QCOMPARE(file->rulesets()[0]->properties()[0].value, QStringLiteral("3"));
        QCOMPARE(file->rulesets()[1]->properties()[0].value, QStringLiteral("4"));
    }

    void swappedRulesetsSwapWithTheirIDs()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { x: 1; }\n.b { y: 2; }\n"));
        const CSSRulesetList before = file->rulesets();
        RulesetMerge::mergeRulesets(
            *file, CSSParser::parse(QStringLiteral(".b { y: 2; }\n.a { x: 1; }\n")));
        QCOMPARE(file->rulesets(), (CSSRulesetList{before[1], before[0]}));
    }

    void deletingTheWholeTextEmptiesTheFile()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { x: 1; }\n.b { y: 2; }\n"));
        RulesetMerge::mergeRulesets(*file, CSSParser::parse(QString()));
        QVERIFY(file->rulesets().isEmpty());
    }

    void keptRulesetsKeepTheirPlaceAndNewOnesTakeTheirIndex()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { x: 1; }"));
        file->rulesets()[0]->setPosition(QPointF(5, 6));
        file->rulesets()[0]->setDragOffset(QSizeF(7, 8));
        RulesetMerge::mergeRulesets(
            *file, QList<ParsedRuleset>{{QStringLiteral(".n"), {}}, {QStringLiteral(".a"), {}}});
        QCOMPARE(file->rulesets()[1]->position(), QPointF(5, 6));
        QCOMPARE(file->rulesets()[1]->dragOffset(), QSizeF(7, 8));
        QCOMPARE(file->rulesets()[0]->position(), CSSParser::positionForIndex(0));
    }

    void parsedRecordsTakeFreshIDs()
    {
        const CSSFilePtr file = fileOf(QStringLiteral(".a { x: 1; }"));
        const QList<ParsedRuleset> records =
            recordsOf(CSSParser::parse(QStringLiteral(".a { x: 2; }")));
        RulesetMerge::mergeRulesets(*file, records);
        QVERIFY(file->rulesets()[0]->properties()[0].id != records[0].properties[0].id);
        QCOMPARE(file->rulesets()[0]->properties()[0].value, QStringLiteral("2"));
    }

    void longTextIsCutIntoPieces()
    {
        QString text;
        for (int i = 0; i < 400; ++i)
            text += QStringLiteral(".r%1 {\n    color: red;\n}\n\n").arg(i);
        IncrementalParse parse;
        parse.reset(text);
        QVERIFY(parse.pieceCount() > 10);
        QCOMPARE(textOf(parse.rulesets()), textOf(CSSParser::parse(text)));
    }

    void badTextFollowsThePartialParse_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::newRow("stray brace on top") << QStringLiteral("}");
        QTest::newRow("unclosed brace on top") << QStringLiteral("x {");
        QTest::newRow("typed at-rule") << QStringLiteral("@media screen {");
        QTest::newRow("unterminated comment") << QStringLiteral("/* ");
        QTest::newRow("combining mark behind a brace") << QString::fromUtf16(u"a{}\u0301");
    }

    void badTextFollowsThePartialParse()
    {
        QFETCH(QString, edit);
        QString text;
        for (int i = 0; i < 200; ++i)
            text += QStringLiteral(".r%1 {\n    color: red;\n}\n\n").arg(i);
        for (const qsizetype at : {qsizetype(0), text.size() / 2, text.size()}) {
            QString edited = text;
            edited.insert(at, edit);
            IncrementalParse incremental(64);
            incremental.reset(text);
            incremental.edit(edited, at, 0, edit.size());
            QCOMPARE(textOf(incremental.rulesets()), textOf(CSSParser::parse(edited)));
            // And back.
            incremental.edit(text, at, edit.size(), 0);
            QCOMPARE(textOf(incremental.rulesets()), textOf(CSSParser::parse(text)));
        }
    }

    // Both roads from text to model: a full parse merged as the parsed
    // objects, and the incremental parse merged as records, on two files
    // that start alike. They must keep the same rulesets, hold the same
    // text, and renew every property id.
    void incrementalParseAndMergeEqualAFullParseAfterRandomEdits()
    {
        QRandomGenerator random(4242);
        for (int round = 0; round < 150; ++round) {
            QString text = round % 2 ? CodeTextSamples::randomText(random, 120)
                                     : CodeTextSamples::randomStylesheet(random, 30);
            const CSSFilePtr full = fileOf(text);
            const CSSFilePtr incremental = fileOf(text);
            // Cut wherever the text allows, to try as many cuts as can be.
            IncrementalParse parse(1);
            parse.reset(text);
            for (int step = 0; step < 40; ++step) {
                const CodeTextSamples::Edit edit = CodeTextSamples::randomEdit(random, text, 5);
                const QString before = text;
                text = CodeTextSamples::applied(text, edit);

                const CSSRulesetList fullBefore = full->rulesets();
                RulesetMerge::mergeRulesets(*full, CSSParser::parse(text));

                const CSSRulesetList incrementalBefore = incremental->rulesets();
                const QSet<QUuid> oldIDs = propertyIDs(incrementalBefore);
                parse.edit(text, edit.at, edit.removed, edit.inserted.size());
                RulesetMerge::mergeRulesets(*incremental, parse.rulesets());

                const QString where =
                    QStringLiteral("before %1\nafter %2").arg(escaped(before), escaped(text));
                QVERIFY2(textOf(incremental->rulesets()) == textOf(full->rulesets()),
                         qPrintable(where));
                QVERIFY2(keptIndexes(incrementalBefore, incremental->rulesets()) ==
                             keptIndexes(fullBefore, full->rulesets()),
                         qPrintable(where));
                QVERIFY2(!propertyIDs(incremental->rulesets()).intersects(oldIDs),
                         qPrintable(where));
                for (qsizetype i = 0; i < full->rulesets().size(); ++i)
                    QCOMPARE(incremental->rulesets()[i]->position(),
                             full->rulesets()[i]->position());
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestTextModelSync)
#include "tst_textmodelsync.moc"
