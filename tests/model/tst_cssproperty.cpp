#include "model/CSSParser.h"
#include "model/CSSProperty.h"
#include "model/CSSRuleset.h"

#include <QJsonDocument>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;

class TestCSSProperty : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesDifferingOnlyInIdAreUnequal()
    {
        const CSSProperty a(QStringLiteral("color"), QStringLiteral("red"));
        const CSSProperty b(QStringLiteral("color"), QStringLiteral("red"));
        QVERIFY(a.id != b.id);
        QVERIFY(!(a == b));
    }

    void copyKeepsIdAndComparesEqual()
    {
        const CSSProperty a(QStringLiteral("color"), QStringLiteral("red"));
        const CSSProperty copy = a;
        QCOMPARE(copy.id, a.id);
        QVERIFY(copy == a);
    }

    void givenIdIsKept()
    {
        const QUuid id = QUuid::createUuid();
        const CSSProperty a(QStringLiteral("a"), QStringLiteral("b"), id);
        QCOMPARE(a.id, id);
    }

    void freshIdsAreVersionFour()
    {
        const CSSProperty a(QStringLiteral("a"), QStringLiteral("b"));
        QCOMPARE(a.id.version(), QUuid::Random);
        QCOMPARE(a.id.variant(), QUuid::DCE);
    }

    void encodingHasExactlyThreeKeysInOrder()
    {
        const CSSProperty a(QStringLiteral("Color"), QStringLiteral("red !important"));
        const QByteArray json = QJsonDocument(a.toJson()).toJson(QJsonDocument::Compact);
        const QByteArray expected = "{\"id\":\"" +
                                    a.id.toString(QUuid::WithoutBraces).toUpper().toUtf8() +
                                    "\",\"name\":\"Color\",\"value\":\"red !important\"}";
        QCOMPARE(json, expected);
    }

    void decodingRoundTrips()
    {
        const CSSProperty a(QStringLiteral("--x"), QStringLiteral("1px\n  2px"));
        const auto decoded = CSSProperty::fromJson(a.toJson());
        QVERIFY(decoded.has_value());
        QVERIFY(*decoded == a);
    }

    void decodingWithoutValueFails()
    {
        QJsonObject object = CSSProperty(QStringLiteral("a"), QStringLiteral("b")).toJson();
        object.remove(QStringLiteral("value"));
        QVERIFY(!CSSProperty::fromJson(object).has_value());
    }

    void decodingWithoutIdOrNameFails()
    {
        const QJsonObject full = CSSProperty(QStringLiteral("a"), QStringLiteral("b")).toJson();
        for (const QString &key : {QStringLiteral("id"), QStringLiteral("name")}) {
            QJsonObject object = full;
            object.remove(key);
            QVERIFY2(!CSSProperty::fromJson(object).has_value(), qPrintable(key));
        }
    }

    void decodingWithBadIdFails()
    {
        QJsonObject object = CSSProperty(QStringLiteral("a"), QStringLiteral("b")).toJson();
        object.insert(QStringLiteral("id"), QStringLiteral("not-a-uuid"));
        QVERIFY(!CSSProperty::fromJson(object).has_value());
        object.insert(QStringLiteral("id"), 12);
        QVERIFY(!CSSProperty::fromJson(object).has_value());
    }

    void decodingWithExtraKeySucceeds()
    {
        const CSSProperty a(QStringLiteral("a"), QStringLiteral("b"));
        QJsonObject object = a.toJson();
        object.insert(QStringLiteral("extra"), true);
        const auto decoded = CSSProperty::fromJson(object);
        QVERIFY(decoded.has_value());
        QVERIFY(*decoded == a);
    }

    void rulesetWithoutPropertiesIsValid()
    {
        const CSSRuleset ruleset(QStringLiteral("a"));
        QVERIFY(ruleset.properties().isEmpty());
        QCOMPARE(ruleset.position(), QPointF(0, 0));
        QCOMPARE(ruleset.dragOffset(), QSizeF(0, 0));
        QVERIFY(!ruleset.id().isNull());
    }

    void rulesetsGetDistinctIds()
    {
        const CSSRuleset a(QStringLiteral("a"));
        const CSSRuleset b(QStringLiteral("a"));
        QVERIFY(a.id() != b.id());
    }

    void parsingTwiceGivesNewIdsEverywhere()
    {
        const QString text = QStringLiteral("a { b: c; d: e } f { g: h }");
        const CSSRulesetList first = CSSParser::parse(text);
        const CSSRulesetList second = CSSParser::parse(text);
        QSet<QUuid> ids;
        for (const CSSRulesetList &list : {first, second}) {
            for (const CSSRulesetPtr &ruleset : list) {
                ids.insert(ruleset->id());
                for (const CSSProperty &property : ruleset->properties())
                    ids.insert(property.id);
            }
        }
        QCOMPARE(ids.size(), 2 * (2 + 3));
    }

    void settersNotifyOnlyOnChange()
    {
        CSSRuleset ruleset(QStringLiteral("a"));
        QSignalSpy selector(&ruleset, &CSSRuleset::selectorChanged);
        QSignalSpy properties(&ruleset, &CSSRuleset::propertiesChanged);
        QSignalSpy position(&ruleset, &CSSRuleset::positionChanged);
        QSignalSpy drag(&ruleset, &CSSRuleset::dragOffsetChanged);
        QSignalSpy changed(&ruleset, &CSSRuleset::changed);
        ruleset.setSelector(QStringLiteral("a"));
        QCOMPARE(changed.size(), 0);
        ruleset.setSelector(QStringLiteral("b"));
        ruleset.setProperties({CSSProperty(QStringLiteral("x"), QStringLiteral("y"))});
        ruleset.setPosition(QPointF(1, 2));
        ruleset.setDragOffset(QSizeF(3, 4));
        QCOMPARE(selector.size(), 1);
        QCOMPARE(properties.size(), 1);
        QCOMPARE(position.size(), 1);
        QCOMPARE(drag.size(), 1);
        QCOMPARE(changed.size(), 4);
    }
};

QTEST_GUILESS_MAIN(TestCSSProperty)
#include "tst_cssproperty.moc"
