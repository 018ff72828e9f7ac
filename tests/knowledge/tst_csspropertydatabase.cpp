#include "knowledge/CSSPropertyDatabase.h"

#include <QTest>

using namespace Ombrel;

class TestCSSPropertyDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allPropertiesInOrder()
    {
        const QStringList expected = {"width",
                                      "height",
                                      "min-width",
                                      "min-height",
                                      "max-width",
                                      "max-height",
                                      "padding",
                                      "padding-top",
                                      "padding-right",
                                      "padding-bottom",
                                      "padding-left",
                                      "margin",
                                      "margin-top",
                                      "margin-right",
                                      "margin-bottom",
                                      "margin-left",
                                      "box-sizing",
                                      "display",
                                      "position",
                                      "top",
                                      "right",
                                      "bottom",
                                      "left",
                                      "z-index",
                                      "float",
                                      "clear",
                                      "overflow",
                                      "overflow-x",
                                      "overflow-y",
                                      "visibility",
                                      "clip-path",
                                      "flex",
                                      "flex-direction",
                                      "flex-wrap",
                                      "flex-flow",
                                      "flex-grow",
                                      "flex-shrink",
                                      "flex-basis",
                                      "justify-content",
                                      "justify-items",
                                      "justify-self",
                                      "align-content",
                                      "align-items",
                                      "align-self",
                                      "gap",
                                      "row-gap",
                                      "column-gap",
                                      "order",
                                      "grid",
                                      "grid-template",
                                      "grid-template-columns",
                                      "grid-template-rows",
                                      "grid-template-areas",
                                      "grid-area",
                                      "grid-column",
                                      "grid-row",
                                      "grid-auto-columns",
                                      "grid-auto-rows",
                                      "grid-auto-flow",
                                      "color",
                                      "font",
                                      "font-family",
                                      "font-size",
                                      "font-weight",
                                      "font-style",
                                      "font-variant",
                                      "font-stretch",
                                      "line-height",
                                      "letter-spacing",
                                      "word-spacing",
                                      "text-align",
                                      "text-decoration",
                                      "text-decoration-line",
                                      "text-decoration-color",
                                      "text-transform",
                                      "text-indent",
                                      "text-overflow",
                                      "text-shadow",
                                      "white-space",
                                      "word-break",
                                      "word-wrap",
                                      "overflow-wrap",
                                      "vertical-align",
                                      "background",
                                      "background-color",
                                      "background-image",
                                      "background-position",
                                      "background-size",
                                      "background-repeat",
                                      "background-attachment",
                                      "background-clip",
                                      "background-origin",
                                      "border",
                                      "border-top",
                                      "border-right",
                                      "border-bottom",
                                      "border-left",
                                      "border-width",
                                      "border-style",
                                      "border-color",
                                      "border-top-width",
                                      "border-top-style",
                                      "border-top-color",
                                      "border-right-width",
                                      "border-right-style",
                                      "border-right-color",
                                      "border-bottom-width",
                                      "border-bottom-style",
                                      "border-bottom-color",
                                      "border-left-width",
                                      "border-left-style",
                                      "border-left-color",
                                      "border-radius",
                                      "border-top-left-radius",
                                      "border-top-right-radius",
                                      "border-bottom-left-radius",
                                      "border-bottom-right-radius",
                                      "outline",
                                      "outline-width",
                                      "outline-style",
                                      "outline-color",
                                      "outline-offset",
                                      "box-shadow",
                                      "transform",
                                      "transform-origin",
                                      "transform-style",
                                      "perspective",
                                      "transition",
                                      "transition-property",
                                      "transition-duration",
                                      "transition-timing-function",
                                      "transition-delay",
                                      "animation",
                                      "animation-name",
                                      "animation-duration",
                                      "animation-timing-function",
                                      "animation-delay",
                                      "animation-iteration-count",
                                      "animation-direction",
                                      "animation-fill-mode",
                                      "animation-play-state",
                                      "opacity",
                                      "cursor",
                                      "pointer-events",
                                      "user-select",
                                      "content",
                                      "list-style",
                                      "list-style-type",
                                      "list-style-position",
                                      "object-fit",
                                      "object-position",
                                      "resize",
                                      "appearance",
                                      "accent-color",
                                      "table-layout",
                                      "border-collapse",
                                      "border-spacing",
                                      "caption-side",
                                      "empty-cells",
                                      "counter-increment",
                                      "counter-reset",
                                      "quotes"};
        QCOMPARE(expected.size(), 162);
        QCOMPARE(CSSPropertyDatabase::allProperties(), expected);
    }

    void colorPropertiesAreFourteen()
    {
        const QSet<QString> expected = {"color",
                                        "background-color",
                                        "background",
                                        "border-color",
                                        "border-top-color",
                                        "border-right-color",
                                        "border-bottom-color",
                                        "border-left-color",
                                        "outline-color",
                                        "text-decoration-color",
                                        "caret-color",
                                        "column-rule-color",
                                        "fill",
                                        "stroke"};
        QCOMPARE(CSSPropertyDatabase::colorProperties(), expected);
    }

    void rows_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::newRow("display") << QStringList{"display"} << 16 << QStringLiteral("none")
                                 << QStringLiteral("flow-root");
        QTest::newRow("position") << QStringList{"position"} << 5 << QStringLiteral("static")
                                  << QStringLiteral("sticky");
        QTest::newRow("float") << QStringList{"float"} << 5 << QStringLiteral("none")
                               << QStringLiteral("inline-end");
        QTest::newRow("clear") << QStringList{"clear"} << 6 << QStringLiteral("none")
                               << QStringLiteral("inline-end");
        QTest::newRow("overflow") << QStringList{"overflow", "overflow-x", "overflow-y"} << 5
                                  << QStringLiteral("visible") << QStringLiteral("clip");
        QTest::newRow("visibility") << QStringList{"visibility"} << 3 << QStringLiteral("visible")
                                    << QStringLiteral("collapse");
        QTest::newRow("box-sizing")
            << QStringList{"box-sizing"} << 2 << QStringLiteral("content-box")
            << QStringLiteral("border-box");
        QTest::newRow("flex-direction")
            << QStringList{"flex-direction"} << 4 << QStringLiteral("row")
            << QStringLiteral("column-reverse");
        QTest::newRow("flex-wrap") << QStringList{"flex-wrap"} << 3 << QStringLiteral("nowrap")
                                   << QStringLiteral("wrap-reverse");
        QTest::newRow("justify-content")
            << QStringList{"justify-content"} << 10 << QStringLiteral("flex-start")
            << QStringLiteral("stretch");
        QTest::newRow("justify-items") << QStringList{"justify-items", "justify-self"} << 9
                                       << QStringLiteral("auto") << QStringLiteral("baseline");
        QTest::newRow("align-items") << QStringList{"align-items", "align-self"} << 11
                                     << QStringLiteral("auto") << QStringLiteral("self-end");
        QTest::newRow("align-content") << QStringList{"align-content"} << 10
                                       << QStringLiteral("normal") << QStringLiteral("end");
        QTest::newRow("font-weight") << QStringList{"font-weight"} << 13 << QStringLiteral("100")
                                     << QStringLiteral("lighter");
        QTest::newRow("font-style") << QStringList{"font-style"} << 3 << QStringLiteral("normal")
                                    << QStringLiteral("oblique");
        QTest::newRow("font-variant") << QStringList{"font-variant"} << 2
                                      << QStringLiteral("normal") << QStringLiteral("small-caps");
        QTest::newRow("font-stretch")
            << QStringList{"font-stretch"} << 9 << QStringLiteral("normal")
            << QStringLiteral("ultra-expanded");
        QTest::newRow("font-size")
            << QStringList{"font-size"} << 31 << QStringLiteral("12px") << QStringLiteral("larger");
        QTest::newRow("line-height") << QStringList{"line-height"} << 9 << QStringLiteral("normal")
                                     << QStringLiteral("150%");
        QTest::newRow("text-align")
            << QStringList{"text-align"} << 6 << QStringLiteral("left") << QStringLiteral("end");
        QTest::newRow("text-decoration")
            << QStringList{"text-decoration", "text-decoration-line"} << 5 << QStringLiteral("none")
            << QStringLiteral("underline overline");
        QTest::newRow("text-transform") << QStringList{"text-transform"} << 4
                                        << QStringLiteral("none") << QStringLiteral("capitalize");
        QTest::newRow("text-overflow") << QStringList{"text-overflow"} << 2
                                       << QStringLiteral("clip") << QStringLiteral("ellipsis");
        QTest::newRow("white-space") << QStringList{"white-space"} << 6 << QStringLiteral("normal")
                                     << QStringLiteral("break-spaces");
        QTest::newRow("word-break") << QStringList{"word-break"} << 4 << QStringLiteral("normal")
                                    << QStringLiteral("break-word");
        QTest::newRow("vertical-align") << QStringList{"vertical-align"} << 8
                                        << QStringLiteral("baseline") << QStringLiteral("super");
        QTest::newRow("background-repeat") << QStringList{"background-repeat"} << 6
                                           << QStringLiteral("repeat") << QStringLiteral("round");
        QTest::newRow("background-size") << QStringList{"background-size"} << 5
                                         << QStringLiteral("auto") << QStringLiteral("100% 100%");
        QTest::newRow("background-attachment")
            << QStringList{"background-attachment"} << 3 << QStringLiteral("scroll")
            << QStringLiteral("local");
        QTest::newRow("background-clip") << QStringList{"background-clip"} << 4
                                         << QStringLiteral("border-box") << QStringLiteral("text");
        QTest::newRow("border-style")
            << QStringList{"border-style", "border-top-style", "border-right-style",
                           "border-bottom-style", "border-left-style"}
            << 9 << QStringLiteral("none") << QStringLiteral("outset");
        QTest::newRow("outline-style") << QStringList{"outline-style"} << 5
                                       << QStringLiteral("none") << QStringLiteral("double");
        QTest::newRow("transform") << QStringList{"transform"} << 11 << QStringLiteral("none")
                                   << QStringLiteral("skewY(0deg)");
        QTest::newRow("transition") << QStringList{"transition"} << 6 << QStringLiteral("none")
                                    << QStringLiteral("all 0.15s ease");
        QTest::newRow("transition-timing-function")
            << QStringList{"transition-timing-function"} << 7 << QStringLiteral("ease")
            << QStringLiteral("step-end");
        QTest::newRow("animation-timing-function")
            << QStringList{"animation-timing-function"} << 5 << QStringLiteral("ease")
            << QStringLiteral("linear");
        QTest::newRow("animation-iteration-count")
            << QStringList{"animation-iteration-count"} << 3 << QStringLiteral("1")
            << QStringLiteral("infinite");
        QTest::newRow("animation-direction")
            << QStringList{"animation-direction"} << 4 << QStringLiteral("normal")
            << QStringLiteral("alternate-reverse");
        QTest::newRow("animation-fill-mode") << QStringList{"animation-fill-mode"} << 4
                                             << QStringLiteral("none") << QStringLiteral("both");
        QTest::newRow("animation-play-state")
            << QStringList{"animation-play-state"} << 2 << QStringLiteral("running")
            << QStringLiteral("paused");
        QTest::newRow("cursor") << QStringList{"cursor"} << 20 << QStringLiteral("auto")
                                << QStringLiteral("w-resize");
        QTest::newRow("pointer-events")
            << QStringList{"pointer-events"} << 5 << QStringLiteral("auto")
            << QStringLiteral("visibleStroke");
        QTest::newRow("user-select")
            << QStringList{"user-select"} << 4 << QStringLiteral("auto") << QStringLiteral("all");
        QTest::newRow("object-fit") << QStringList{"object-fit"} << 5 << QStringLiteral("fill")
                                    << QStringLiteral("scale-down");
        QTest::newRow("resize") << QStringList{"resize"} << 4 << QStringLiteral("none")
                                << QStringLiteral("vertical");
        QTest::newRow("list-style-type") << QStringList{"list-style-type"} << 10
                                         << QStringLiteral("none") << QStringLiteral("upper-roman");
        QTest::newRow("list-style-position")
            << QStringList{"list-style-position"} << 2 << QStringLiteral("inside")
            << QStringLiteral("outside");
        QTest::newRow("table-layout") << QStringList{"table-layout"} << 2 << QStringLiteral("auto")
                                      << QStringLiteral("fixed");
        QTest::newRow("border-collapse")
            << QStringList{"border-collapse"} << 2 << QStringLiteral("separate")
            << QStringLiteral("collapse");
        QTest::newRow("appearance")
            << QStringList{"appearance"} << 2 << QStringLiteral("none") << QStringLiteral("auto");
        QTest::newRow("color") << QStringList{"color",
                                              "background-color",
                                              "border-color",
                                              "border-top-color",
                                              "border-right-color",
                                              "border-bottom-color",
                                              "border-left-color",
                                              "outline-color",
                                              "text-decoration-color",
                                              "caret-color"}
                               << 25 << QStringLiteral("transparent") << QStringLiteral("#db2777");
    }

    void rows()
    {
        QFETCH(QStringList, keys);
        QFETCH(int, count);
        QFETCH(QString, first);
        QFETCH(QString, last);
        for (const QString &key : keys) {
            const QStringList values = CSSPropertyDatabase::values(key);
            QCOMPARE(values.size(), count);
            QCOMPARE(values.first(), first);
            QCOMPARE(values.last(), last);
        }
    }

    void fiftyOneRows() { QCOMPARE(CSSPropertyDatabase::valueRowCount(), 51); }

    void displayHasSixteenBeginningWithNone()
    {
        const QStringList display = CSSPropertyDatabase::values(QStringLiteral("display"));
        QCOMPARE(display.size(), 16);
        QCOMPARE(display.first(), QStringLiteral("none"));
    }

    void sharedRowsAreEqual()
    {
        QCOMPARE(CSSPropertyDatabase::values(QStringLiteral("overflow-x")),
                 CSSPropertyDatabase::values(QStringLiteral("overflow")));
    }

    void keysAreExact()
    {
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("width")).isEmpty());
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("Display")).isEmpty());
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral(" display")).isEmpty());
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("--x")).isEmpty());
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("COLOR")).isEmpty());
        QVERIFY(CSSPropertyDatabase::isColorProperty(QStringLiteral("COLOR")));
    }

    void colorPropertyRules()
    {
        QVERIFY(CSSPropertyDatabase::isColorProperty(QStringLiteral("background")));
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("background")).isEmpty());
        QVERIFY(!CSSPropertyDatabase::isColorProperty(QStringLiteral("--accent")));
        QVERIFY(!CSSPropertyDatabase::isColorProperty(QStringLiteral("accent-color")));
        QVERIFY(CSSPropertyDatabase::isColorProperty(QStringLiteral("Stroke")));
    }

    void notableLists()
    {
        const QStringList colors = CSSPropertyDatabase::values(QStringLiteral("caret-color"));
        QCOMPARE(colors.size(), 25);
        QCOMPARE(colors.mid(0, 3), (QStringList{"transparent", "inherit", "currentColor"}));
        QVERIFY(CSSPropertyDatabase::values(QStringLiteral("pointer-events"))
                    .contains(QStringLiteral("visiblePainted")));
        QCOMPARE(CSSPropertyDatabase::values(QStringLiteral("font-size")).size(), 31);
    }
};

QTEST_GUILESS_MAIN(TestCSSPropertyDatabase)
#include "tst_csspropertydatabase.moc"
