#include "knowledge/Color.h"
#include "knowledge/CssNumber.h"

#include <QTest>

#include <cmath>

using namespace Ombrel;

Q_DECLARE_METATYPE(std::optional<Ombrel::Color>)

namespace {

std::optional<Color> rgba(double r, double g, double b, double a = 1)
{
    return Color{r, g, b, a};
}

bool near(const Color &a, const Color &b)
{
    const double e = 1e-9;
    return std::abs(a.red - b.red) < e && std::abs(a.green - b.green) < e &&
           std::abs(a.blue - b.blue) < e && std::abs(a.opacity - b.opacity) < e;
}

} // namespace

class TestColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reading_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<Color>>("expected");
        const std::optional<Color> none;
        QTest::newRow("name trimmed and folded") << "  RED\t" << std::optional(Palette::red);
        QTest::newRow("transparent folded") << "Transparent" << rgba(0, 0, 0, 0);
        QTest::newRow("currentColor") << "currentColor" << none;
        QTest::newRow("inherit") << "inherit" << none;
        QTest::newRow("initial") << "initial" << none;
        QTest::newRow("unset") << "unset" << none;
        QTest::newRow("short hex") << "#FFF" << rgba(1, 1, 1);
        QTest::newRow("short hex lower") << "#fff" << rgba(1, 1, 1);
        QTest::newRow("long hex") << "#ffffff" << rgba(1, 1, 1);
        QTest::newRow("four digits") << "#ffff" << rgba(1, 1, 1, 1);
        QTest::newRow("eight digits") << "#00000080" << rgba(0, 0, 0, 128 / 255.0);
        QTest::newRow("short hex doubles digits")
            << "#abc" << rgba(0xaa / 255.0, 0xbb / 255.0, 0xcc / 255.0);
        QTest::newRow("five digits") << "#12345" << none;
        QTest::newRow("not hex") << "#ggg" << none;
        QTest::newRow("bare hash") << "#" << none;
        QTest::newRow("hex with important") << "#fff !important" << none;
        QTest::newRow("hex is never a name") << "#red" << none;
        QTest::newRow("rgb") << "rgb(255, 0, 0)" << rgba(1, 0, 0);
        QTest::newRow("rgba") << "rgba(255,0,0,0.5)" << rgba(1, 0, 0, 0.5);
        QTest::newRow("rgba without opacity") << "rgba(255, 0, 0)" << rgba(1, 0, 0);
        QTest::newRow("rgb with two numbers") << "rgb(255, 0)" << none;
        QTest::newRow("opacity that does not read") << "rgba(255, 0, 0, half)" << rgba(1, 0, 0, 1);
        QTest::newRow("percent opacity in rgba") << "rgba(0, 0, 0, 50%)" << rgba(0, 0, 0, 1);
        QTest::newRow("rgb unclamped") << "rgb(510, -255, 0)" << rgba(2, -1, 0);
        QTest::newRow("rgb percentages") << "rgb(100%, 0%, 0%)" << none;
        QTest::newRow("rgb space separated") << "rgb(255 0 0)" << none;
        QTest::newRow("rgb slash") << "rgb(255 0 0 / 50%)" << none;
        QTest::newRow("rgb empty pieces dropped") << "rgb(,255,,0,0,)" << rgba(1, 0, 0);
        QTest::newRow("rgb drops characters blindly") << "rgbX255,0,0Y" << rgba(1, 0, 0);
        QTest::newRow("rgba drops five") << "rgba(1,2,3)" << rgba(1 / 255.0, 2 / 255.0, 3 / 255.0);
        QTest::newRow("rgb blank piece") << "rgb(1, ,2,3)" << none;
        QTest::newRow("rgb exponent") << "rgb(2.55e2, +0, .0)" << rgba(1, 0, 0);
        QTest::newRow("rgb alone") << "rgb" << none;
        QTest::newRow("hsl is brightness") << "hsl(0, 100%, 50%)" << rgba(0.5, 0, 0);
        QTest::newRow("hsl white") << "hsl(0, 0%, 100%)" << rgba(1, 1, 1);
        QTest::newRow("hsla percent opacity") << "hsla(0, 0%, 0%, 50%)" << rgba(0, 0, 0, 50);
        QTest::newRow("hsl with two numbers") << "hsl(0, 0%)" << none;
        QTest::newRow("hsl hue beyond a double") << "hsl(1e999, 0%, 100%)" << rgba(1, 1, 1);
        QTest::newRow("hsl infinite hue reads as red") << "hsl(1e999, 100%, 100%)" << rgba(1, 0, 0);
        QTest::newRow("line break before value") << "\n  red" << none;
        QTest::newRow("unknown name") << "hotpink" << none;
        QTest::newRow("beige is no colour") << "beige" << none;
        QTest::newRow("grey") << "grey" << std::optional(Palette::gray);
        QTest::newRow("steelblue") << "SteelBlue" << rgba(0.275, 0.51, 0.706);
        QTest::newRow("shorthand") << "#fff url(x.png)" << none;
        QTest::newRow("empty") << "" << none;
    }

    void reading()
    {
        QFETCH(QString, text);
        QFETCH(std::optional<Color>, expected);
        const std::optional<Color> actual = Color::fromCssString(text);
        QCOMPARE(actual.has_value(), expected.has_value());
        if (expected)
            QVERIFY2(near(*actual, *expected), qPrintable(actual->cssHexString()));
    }

    void hslUnitsAreIgnored()
    {
        const auto withUnits = Color::fromCssString(u"hsl(210deg, 50%, 40%)");
        const auto plain = Color::fromCssString(u"hsl(210, 50, 40)");
        QVERIFY(withUnits && plain);
        QCOMPARE(*withUnits, *plain);
        QVERIFY(near(*plain, Color{0.2, 0.3, 0.4, 1}));
    }

    void thirtyNineNames()
    {
        const QStringList names = {"black",     "white",     "red",     "blue",       "green",
                                   "lime",      "yellow",    "orange",  "purple",     "pink",
                                   "cyan",      "magenta",   "gray",    "grey",       "silver",
                                   "navy",      "teal",      "maroon",  "olive",      "coral",
                                   "salmon",    "gold",      "khaki",   "indigo",     "violet",
                                   "turquoise", "tomato",    "crimson", "chocolate",  "slategray",
                                   "slategrey", "steelblue", "skyblue", "limegreen",  "forestgreen",
                                   "darkgreen", "darkblue",  "darkred", "transparent"};
        QCOMPARE(names.size(), 39);
        for (const QString &name : names)
            QVERIFY2(Color::fromCssString(name).has_value(), qPrintable(name));
    }

    void hexWriting_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("hex");
        QTest::newRow("round trip") << "#3b82f6"
                                    << "#3B82F6";
        QTest::newRow("truncation of 0.502") << "navy"
                                             << "#000080";
        QTest::newRow("short form grows") << "#abc"
                                          << "#AABBCC";
        QTest::newRow("half opacity") << "rgba(0, 0, 0, 0.5)"
                                      << "#0000007F";
        QTest::newRow("opacity 0.9995") << "rgba(0, 0, 0, 0.9995)"
                                        << "#000000";
        QTest::newRow("opacity 0.998") << "rgba(0, 0, 0, 0.998)"
                                       << "#000000FE";
        QTest::newRow("over range") << "rgb(510, 0, 0)"
                                    << "#1FE0000";
        QTest::newRow("negative") << "rgb(-255, 0, 0)"
                                  << "#FFFFFF010000";
        QTest::newRow("infinite") << "rgb(1e999, 0, 0)"
                                  << "#000000";
    }

    void hexWriting()
    {
        QFETCH(QString, text);
        QFETCH(QString, hex);
        const auto color = Color::fromCssString(text);
        QVERIFY(color);
        QCOMPARE(color->cssHexString(), hex);
    }

    void truncationNotRounding()
    {
        QCOMPARE((Color{0.999, 0.502, 0, 1}).cssHexString(), QStringLiteral("#FE8000"));
    }

    void lightness()
    {
        QVERIFY(Palette::white.isLight());
        QVERIFY(!Palette::black.isLight());
        QVERIFY(!(Color{0.5, 0.5, 0.5, 1}).isLight());
        QVERIFY((Color{0.51, 0.51, 0.51, 0}).isLight());
        QVERIFY(!(Color{std::nan(""), 1, 1, 1}).isLight());
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("reads");
        QTest::addColumn<double>("value");
        QTest::newRow("integer") << "16" << true << 16.0;
        QTest::newRow("signs") << "-1.5" << true << -1.5;
        QTest::newRow("plus") << "+2" << true << 2.0;
        QTest::newRow("leading dot") << ".5" << true << 0.5;
        QTest::newRow("trailing dot") << "5." << true << 5.0;
        QTest::newRow("exponent") << "1e3" << true << 1000.0;
        QTest::newRow("negative exponent") << "25E-1" << true << 2.5;
        QTest::newRow("overflow") << "1e999" << true << qInf();
        QTest::newRow("underflow") << "1e-999" << true << 0.0;
        QTest::newRow("empty") << "" << false << 0.0;
        QTest::newRow("dot") << "." << false << 0.0;
        QTest::newRow("space") << " 1" << false << 0.0;
        QTest::newRow("unit") << "1px" << false << 0.0;
        QTest::newRow("inf") << "inf" << false << 0.0;
        QTest::newRow("nan") << "nan" << false << 0.0;
        QTest::newRow("hex") << "0x10" << false << 0.0;
        QTest::newRow("bare exponent") << "1e" << false << 0.0;
        QTest::newRow("two signs") << "--1" << false << 0.0;
        QTest::newRow("arabic digits") << QStringLiteral("\u0661") << false << 0.0;
    }

    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(bool, reads);
        QFETCH(double, value);
        const auto number = readCssNumber(text);
        QCOMPARE(number.has_value(), reads);
        if (reads)
            QCOMPARE(*number, value);
    }
};

QTEST_GUILESS_MAIN(TestColor)
#include "tst_color.moc"
