#include "canvas/NodeView.h"
#include "model/CSSParser.h"
#include "model/CSSRuleset.h"

#include <QPalette>
#include <QTest>

using namespace Ombrel;

namespace {

// Theme colours that no CSS colour of these tests equals, so that a test can
// tell a fallback from a declared colour.
SystemColors themeColors()
{
    return {QColor(10, 20, 30), QColor(40, 50, 60), QColor(70, 80, 90), QColor(100, 110, 120),
            QColor(0, 99, 200)};
}

CSSRulesetPtr rulesetOf(const QString &css)
{
    const CSSRulesetList rulesets = CSSParser::parse(css);
    return rulesets.isEmpty() ? nullptr : rulesets.first();
}

struct Card
{
    CSSRulesetPtr ruleset;
    CSSVariables variables;

    NodeView view(bool selected = false, bool styling = true,
                  ColorScheme scheme = ColorScheme::light) const
    {
        return NodeView{.ruleset = *ruleset,
                        .isSelected = selected,
                        .variables = variables,
                        .filePath = {},
                        .isEditingSelector = false,
                        .showStyling = styling,
                        .colorScheme = scheme,
                        .system = themeColors()};
    }
};

Card card(const QString &declarations, const CSSVariables &variables = {})
{
    return Card{rulesetOf(QStringLiteral(".card { %1 }").arg(declarations)), variables};
}

QColor qcolor(const Color &color)
{
    return color.toQColor();
}

} // namespace

class TestNodeView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectorKind_data()
    {
        QTest::addColumn<QString>("selector");
        QTest::addColumn<QString>("mark");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("indent");
        // The mark is the symbol name when there is one, else the label.
        QTest::newRow("class with descendant") << ".btn:hover > a"
                                               << "•"
                                               << "btn:hover > a" << 1;
        QTest::newRow("id never indented") << "#nav li a"
                                           << "#"
                                           << "nav li a" << 0;
        QTest::newRow("nested") << "& .x"
                                << "&"
                                << ".x" << 1;
        QTest::newRow("void element") << "img"
                                      << "/>"
                                      << "img" << 0;
        QTest::newRow("void element with class") << "img.logo"
                                                 << "/>"
                                                 << "img.logo" << 0;
        QTest::newRow("text element") << "a:hover"
                                      << "character"
                                      << "a:hover" << 0;
        QTest::newRow("widget element") << "div > p"
                                        << "app"
                                        << "div > p" << 1;
        QTest::newRow("pseudo-class alone") << ":root"
                                            << "app"
                                            << ":root" << 0;
        QTest::newRow("empty selector") << ""
                                        << "app"
                                        << "" << -1;
        QTest::newRow("void element by lowercased text") << "INPUT[type=text]"
                                                         << "/>"
                                                         << "INPUT[type=text]" << 0;
        QTest::newRow("body is not a text element") << "body.dark"
                                                    << "app"
                                                    << "body.dark" << 0;
        QTest::newRow("universal") << "*"
                                   << "app"
                                   << "*" << 0;
        QTest::newRow("seven levels cap at five") << "main section article div ul li a"
                                                  << "app"
                                                  << "main section article div ul li a" << 5;
        QTest::newRow("blanks trimmed first") << "\t .x  "
                                              << "•"
                                              << "x" << 0;
        QTest::newRow("nested name trimmed") << "&  :hover"
                                             << "&"
                                             << ":hover" << 1;
        QTest::newRow("combinators without blanks") << "ul>li+li~p"
                                                    << "app"
                                                    << "ul>li+li~p" << 3;
    }

    void selectorKind()
    {
        QFETCH(QString, selector);
        QFETCH(QString, mark);
        QFETCH(QString, name);
        QFETCH(int, indent);
        const SelectorKind kind = SelectorKind::of(selector);
        QCOMPARE(kind.prefixSymbol().value_or(kind.prefixLabel()), mark);
        QCOMPARE(kind.displayName(), name);
        QCOMPARE(kind.indentLevel(), indent);
    }

    void emptySelectorIsAWidgetElement()
    {
        const SelectorKind kind = SelectorKind::of(QString());
        QVERIFY(kind.isElementSelector);
        QVERIFY(!kind.isSelfClosing);
        QCOMPARE(kind.baseTag, QString());
        QVERIFY(kind.isWidgetElement);
        QVERIFY(!kind.isTextElement);
    }

    void splitSetsDiffer()
    {
        // "*" splits the base tag but not the void test.
        const SelectorKind star = SelectorKind::of(QStringLiteral("img*"));
        QVERIFY(star.isSelfClosing == false);
        QCOMPARE(star.baseTag, QStringLiteral("img"));
        QVERIFY(!star.isTextElement);
        QVERIFY(star.isWidgetElement);
        QCOMPARE(star.prefixSymbol(), QStringLiteral("app"));
        const SelectorKind classFirst = SelectorKind::of(QStringLiteral(".btn:hover > a"));
        QVERIFY(classFirst.isClass);
        QVERIFY(!classFirst.isSelfClosing);
        QCOMPARE(classFirst.prefixSymbol(), std::nullopt);
    }

    void idNameDropsWholeFirstCharacter()
    {
        // A combining mark on "#" belongs to the mark's character.
        const SelectorKind kind = SelectorKind::of(QStringLiteral("#\u0301nav"));
        QCOMPARE(kind.displayName(), QStringLiteral("nav"));
    }

    void blackOnBlackUsesLabelColourAndShowsBlackDot()
    {
        const Card c = card(QStringLiteral("color: #000; background: #000"));
        const NodeBody body = c.view().body();
        QCOMPARE(body.textColor, themeColors().label);
        QVERIFY(body.dotColor.has_value());
        QCOMPARE(*body.dotColor, QColor(Qt::black));
        QCOMPARE(body.background, QColor(Qt::black));
    }

    void whiteTextWithoutBackgroundInDarkScheme()
    {
        const Card c = card(QStringLiteral("color: #fff"));
        const NodeBody body = c.view(false, true, ColorScheme::dark).body();
        QCOMPARE(body.textColor, QColor(Qt::white));
        QVERIFY(body.dotColor.has_value());
        QCOMPARE(*body.dotColor, QColor(Qt::white));
    }

    void textColourWithoutBackground_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<QString>("declared");
        QTest::addColumn<bool>("showsDeclared");
        QTest::addColumn<bool>("dot");
        QTest::newRow("light scheme, light text") << false << "#eee" << false << true;
        QTest::newRow("light scheme, dark text") << false << "#222" << true << false;
        QTest::newRow("dark scheme, light text") << true << "#eee" << true << true;
        QTest::newRow("dark scheme, dark text") << true << "#222" << false << false;
    }

    void textColourWithoutBackground()
    {
        QFETCH(bool, dark);
        QFETCH(QString, declared);
        QFETCH(bool, showsDeclared);
        QFETCH(bool, dot);
        const Card c = card(QStringLiteral("color: %1").arg(declared));
        const NodeView view = c.view(false, true, dark ? ColorScheme::dark : ColorScheme::light);
        const QColor declaredColor = qcolor(*Color::fromCssString(declared));
        QCOMPARE(view.effectiveTextColor(), showsDeclared ? declaredColor : themeColors().label);
        QCOMPARE(view.textColorOverridden(), dot);
        QCOMPARE(view.body().dotColor.has_value(), dot);
    }

    void textColourWithoutDeclaration()
    {
        QCOMPARE(card(QStringLiteral("background: #fff")).view().effectiveTextColor(),
                 QColor(Qt::black));
        QCOMPARE(card(QStringLiteral("background: #123")).view().effectiveTextColor(),
                 QColor(Qt::white));
        QCOMPARE(card(QString()).view(false, true, ColorScheme::dark).effectiveTextColor(),
                 QColor(Qt::white));
        QCOMPARE(card(QString()).view(false, true, ColorScheme::light).effectiveTextColor(),
                 QColor(Qt::black));
    }

    void declaredColoursGoThroughVariables()
    {
        const Card c = card(QStringLiteral("background: var(--bg); color: var(--fg); "
                                           "border-radius: var(--r); font-weight: var(--w)"),
                            {{QStringLiteral("--bg"), QStringLiteral("#102030")},
                             {QStringLiteral("--fg"), QStringLiteral("#f0f0f0")},
                             {QStringLiteral("--r"), QStringLiteral("12px")},
                             {QStringLiteral("--w"), QStringLiteral("bold")}});
        const NodeBody body = c.view().body();
        QCOMPARE(body.background, QColor(0x10, 0x20, 0x30));
        QCOMPARE(body.textColor, QColor(0xf0, 0xf0, 0xf0));
        QCOMPARE(body.cornerRadius, 12.0);
        QCOMPARE(body.fontWeight, FontWeight::bold);
        QVERIFY(!body.dotColor);
    }

    void dashedRedBorder()
    {
        const Card c = card(QStringLiteral("border: 1px dashed red"));
        const NodeBody plain = c.view().body();
        QCOMPARE(plain.borderDash, QList<double>({6, 4}));
        QCOMPARE(plain.borderColor, qcolor(Palette::red));
        QCOMPARE(plain.borderWidth, 1.0);
        QCOMPARE(plain.borderOpacity, 1.0);
        const NodeBody selected = c.view(true).body();
        QVERIFY(selected.borderDash.isEmpty());
        QCOMPARE(selected.borderColor, themeColors().accent);
        QCOMPARE(selected.borderWidth, 2.0);
    }

    void dottedBorder()
    {
        const Card c = card(QStringLiteral("border-style: dotted"));
        const NodeView view = c.view();
        QCOMPARE(view.strokeDash(), QList<double>({2, 3}));
        QCOMPARE(view.body().borderColor, themeColors().separator);
    }

    void borderStyleComparedExactly()
    {
        const Card c = card(QStringLiteral("border-style: DASHED"));
        const NodeView view = c.view();
        QCOMPARE(view.resolvedBorderStyle(), QStringLiteral("DASHED"));
        QVERIFY(view.strokeDash().isEmpty());
        QVERIFY(view.showStroke());
        QCOMPARE(view.body().borderOpacity, 1.0);
    }

    void doubleBorderIsSolid()
    {
        const Card c = card(QStringLiteral("border: 3px double blue"));
        const NodeView view = c.view();
        QCOMPARE(view.resolvedBorderStyle(), QStringLiteral("double"));
        QVERIFY(view.strokeDash().isEmpty());
        QCOMPARE(view.body().borderColor, qcolor(Palette::blue));
    }

    void borderWithoutColourWord()
    {
        const Card c = card(QStringLiteral("border: 2px solid"));
        const NodeView view = c.view();
        QCOMPARE(view.resolvedBorderColor(), std::nullopt);
        QCOMPARE(view.body().borderColor, themeColors().separator);
    }

    void borderColourDeclarationWins()
    {
        const Card c = card(QStringLiteral("border: 1px solid red; border-color: var(--c)"),
                            {{QStringLiteral("--c"), QStringLiteral("#00ff00")}});
        QCOMPARE(c.view().body().borderColor, QColor(0, 255, 0));
        // A border-color that does not read falls back on the words of border.
        const Card unreadable = card(QStringLiteral("border: 1px solid red; border-color: nope"));
        QCOMPARE(unreadable.view().body().borderColor, qcolor(Palette::red));
    }

    void borderStyleIsNotResolved()
    {
        const Card c = card(QStringLiteral("border-style: var(--s)"),
                            {{QStringLiteral("--s"), QStringLiteral("dashed")}});
        QCOMPARE(c.view().resolvedBorderStyle(), QStringLiteral("var(--s)"));
        QVERIFY(c.view().strokeDash().isEmpty());
    }

    void selectedCardKeepsRadius()
    {
        const Card c = card(QStringLiteral("border-radius: 14px"));
        QCOMPARE(c.view(true).body().cornerRadius, 14.0);
        QCOMPARE(c.view(false).body().cornerRadius, 14.0);
    }

    void borderNoneSelectedHasAccentStroke()
    {
        const NodeBody body = card(QStringLiteral("border: none")).view(true).body();
        QCOMPARE(body.borderOpacity, 1.0);
        QCOMPARE(body.borderColor, themeColors().accent);
        QCOMPARE(body.borderWidth, 2.0);
        QCOMPARE(body.shadowColor.alphaF(), 0.2f);
    }

    void borderNoneUnselectedHasNoStroke()
    {
        const NodeBody body = card(QStringLiteral("border: none")).view(false).body();
        QCOMPARE(body.borderOpacity, 0.0);
        QCOMPARE(body.shadowColor.alpha(), 0);
        // No border at all is the same.
        QCOMPARE(card(QString()).view(false).body().borderOpacity, 0.0);
    }

    void stylingOff()
    {
        const Card c = card(QStringLiteral("background: url(x.png); color: #000; "
                                           "border: 1px dashed red; border-radius: 20px; "
                                           "font-weight: bold"));
        QVERIFY(c.view().hasBackgroundImage());
        const NodeBody body = c.view(false, false).body();
        QVERIFY(!body.showsThumbnail);
        QCOMPARE(body.cornerRadius, 6.0);
        QCOMPARE(body.background, themeColors().controlBackground);
        QCOMPARE(body.textColor, themeColors().label);
        QCOMPARE(body.fontWeight, FontWeight::regular);
        QCOMPARE(body.borderColor, themeColors().separator);
        QVERIFY(body.borderDash.isEmpty());
        QCOMPARE(body.borderOpacity, 1.0);
        QCOMPARE(body.verticalPadding, 10.0);
        QVERIFY(!body.dotColor);
        QCOMPARE(c.view(false, true).body().verticalPadding, 14.0);
    }

    void hasBackgroundImage_data()
    {
        QTest::addColumn<QString>("declarations");
        QTest::addColumn<bool>("expected");
        QTest::newRow("url in background") << "background: url(x.png)" << true;
        QTest::newRow("gradient in background") << "background: linear-gradient(red, blue)" << true;
        QTest::newRow("upper-case URL") << "background: URL(x.png)" << false;
        QTest::newRow("upper-case gradient") << "background: LINEAR-GRADIENT(red, blue)" << false;
        QTest::newRow("upper-case URL in background-image")
            << "background-image: URL(x.png)" << true;
        QTest::newRow("background-image none") << "background-image: none" << true;
        QTest::newRow("plain colour") << "background: red" << false;
        QTest::newRow("nothing") << "color: red" << false;
    }

    void hasBackgroundImage()
    {
        QFETCH(QString, declarations);
        QFETCH(bool, expected);
        QCOMPARE(card(declarations).view().hasBackgroundImage(), expected);
        QCOMPARE(card(declarations).view().body().showsThumbnail, expected);
    }

    void schemeFromPalette()
    {
        QPalette light;
        light.setColor(QPalette::Window, QColor(240, 240, 240));
        light.setColor(QPalette::WindowText, Qt::black);
        QCOMPARE(colorSchemeOf(light), ColorScheme::light);
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(30, 30, 30));
        dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
        QCOMPARE(colorSchemeOf(dark), ColorScheme::dark);
        dark.setColor(QPalette::Highlight, QColor(1, 2, 3));
        QCOMPARE(SystemColors::fromPalette(dark).accent, QColor(1, 2, 3));
        QCOMPARE(SystemColors::fromPalette(dark).label, QColor(230, 230, 230));
    }
};

QTEST_GUILESS_MAIN(TestNodeView)
#include "tst_nodeview.moc"
