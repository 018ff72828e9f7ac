#include "TestImages.h"
#include "canvas/NodeRoles.h"
#include "canvas/widgets/NodeDelegate.h"
#include "model/CSSParser.h"
#include "model/CSSRuleset.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <cstdlib>

using namespace Ombrel;
using TestImages::pngBytes;

namespace {

const QColor label(0x22, 0x22, 0x22);
const QColor placeholder(0x80, 0x80, 0x80);
const QColor separator(0xb0, 0xb0, 0xb0);
const QColor base(0xfa, 0xfa, 0xfa);
const QColor accent(0x00, 0x63, 0xe1);
const QColor red(255, 59, 48); // the palette's "red"

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xec, 0xec, 0xec));
    palette.setColor(QPalette::WindowText, label);
    palette.setColor(QPalette::PlaceholderText, placeholder);
    palette.setColor(QPalette::Mid, separator);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Highlight, accent);
    return palette;
}

bool near(const QColor &a, const QColor &b, int tolerance = 3)
{
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance &&
           std::abs(a.alpha() - b.alpha()) <= tolerance;
}

QColor over(const QColor &top, double opacity, const QColor &below)
{
    const auto mix = [&](int t, int b) {
        return int(std::lround(t * opacity + b * (1 - opacity)));
    };
    return QColor(mix(top.red(), below.red()), mix(top.green(), below.green()),
                  mix(top.blue(), below.blue()));
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

// The list model of the canvas reduced to what a card reads.
struct Cards
{
    CSSRulesetList rulesets;
    QStandardItemModel model;

    QModelIndex add(const QString &css, bool selected = false,
                    const CSSPropertyList &properties = {})
    {
        CSSRulesetList parsed = CSSParser::parse(css);
        if (!properties.isEmpty())
            parsed.first()->setProperties(properties);
        rulesets.append(parsed.first());
        auto *item = new QStandardItem;
        item->setData(QVariant::fromValue<QObject *>(parsed.first().get()), NodeRoles::Ruleset);
        item->setData(selected, NodeRoles::Selected);
        item->setData(false, NodeRoles::EditingSelector);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        model.appendRow(item);
        return model.index(model.rowCount() - 1, 0);
    }

    // A ruleset as the inspector may leave it, with a value that the parser
    // would cut at a ";".
    QModelIndex addDeclaration(const QString &name, const QString &value)
    {
        return add(QStringLiteral(".x {}"), false, {CSSProperty(name, value)});
    }
};

constexpr int width = 400;
constexpr int margin = NodeDelegate::cardMargin;

QImage paintCard(const NodeDelegate &delegate, const QModelIndex &index, int imageWidth = width)
{
    QImage image(imageWidth, delegate.cardHeight(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.palette = testPalette();
    delegate.paint(&painter, option, index);
    return image;
}

// The card's rectangle within the painted item.
QRect cardRect(const QImage &image, int indent = 0)
{
    return image.rect().adjusted(margin + indent * NodeDelegate::indentStep, margin, -margin,
                                 -margin);
}

QRect thumbnailRect(const QImage &image)
{
    const QRect card = cardRect(image);
    return QRect(card.right() + 1 - NodeDelegate::thumbnailWidth, card.top(),
                 NodeDelegate::thumbnailWidth, card.height());
}

QColor at(const QImage &image, int x, int y)
{
    return image.pixelColor(x, y);
}

// Whether some pixel of the rectangle is near the colour.
bool contains(const QImage &image, const QRect &rect, const QColor &color, int tolerance = 24)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (near(image.pixelColor(x, y), color, tolerance))
                return true;
        }
    }
    return false;
}

} // namespace

class TestNodeDelegate : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        writeFile(m_dir.filePath(QStringLiteral("style.css")), ".x {}\n");
        writeFile(m_dir.filePath(QStringLiteral("green.png")), pngBytes({4, 4}, Qt::green));
        writeFile(m_dir.filePath(QStringLiteral("a(1).png")), pngBytes({4, 4}, Qt::magenta));
        writeFile(m_dir.filePath(QStringLiteral("huge.png")),
                  TestImages::greyPng(30000, 30000, false));
    }

    void backgroundColour()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".x { background: #336699 }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        QCOMPARE(at(image, card.right() - 4, card.center().y()), QColor(0x33, 0x66, 0x99));
        QCOMPARE(at(image, card.left() + 4, card.top() + 4), QColor(0x33, 0x66, 0x99));
        // Nothing outside the card but the (absent) shadow.
        QCOMPARE(at(image, 0, 0).alpha(), 0);
    }

    void stylingOffShowsThePlainCard()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(
            ".x { background: #336699 url(green.png); border: 1px dashed red; border-radius: 0 }"));
        NodeDelegate delegate;
        delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        delegate.setShowStyling(false);
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        // The plain background, also where the thumbnail would stand.
        QCOMPARE(at(image, card.right() - 20, card.center().y()), base);
        QVERIFY(!contains(image, thumbnailRect(image).adjusted(2, 2, -2, -2), Qt::green, 40));
        // A solid separator line along the whole top edge.
        for (int x = card.left() + 8; x < card.right() - 8; ++x)
            QVERIFY2(near(at(image, x, card.top()), separator), qPrintable(QString::number(x)));
        // Radius 6 whatever the ruleset says.
        QCOMPARE(at(image, card.left(), card.top()).alpha(), 0);
    }

    void roundedCorner()
    {
        Cards cards;
        const QModelIndex rounded =
            cards.add(QStringLiteral(".x { background: #336699; border-radius: 16px }"));
        const QModelIndex square =
            cards.add(QStringLiteral(".x { background: #336699; border-radius: 0 }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, rounded);
        const QRect card = cardRect(image);
        QCOMPARE(at(image, card.left(), card.top()).alpha(), 0);
        QCOMPARE(at(image, card.right(), card.bottom()).alpha(), 0);
        QCOMPARE(at(image, card.left() + 16, card.top() + 16), QColor(0x33, 0x66, 0x99));
        const QImage squared = paintCard(delegate, square);
        QCOMPARE(at(squared, card.left(), card.top()), QColor(0x33, 0x66, 0x99));
    }

    void selectedCardKeepsItsRadius()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: #336699; border-radius: 16px }"), true);
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        QVERIFY(at(image, card.left(), card.top()).alpha() < 40);
        // The accent stroke follows the curve, 2 wide along the straight edge.
        QVERIFY(near(at(image, card.center().x(), card.top()), accent));
        QVERIFY(near(at(image, card.center().x(), card.top() + 1), accent));
        QCOMPARE(at(image, card.center().x(), card.top() + 3), QColor(0x33, 0x66, 0x99));
    }

    void dashedBorder()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: #ffffff; border: 1px dashed red }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        // Along the top edge: 6 on, 4 off, from the corner.
        QString runs;
        for (int x = card.left() + 10; x < card.left() + 50; ++x) {
            const QColor pixel = at(image, x, card.top());
            runs += near(pixel, red, 10) ? u'r' : near(pixel, Qt::white, 10) ? u'-' : u'?';
        }
        QCOMPARE(runs, QStringLiteral("rrrrrr----rrrrrr----rrrrrr----rrrrrr----"));
        // One pixel wide.
        QCOMPARE(at(image, card.left() + 2, card.top() + 1), QColor(Qt::white));
    }

    void dashedBorderTurnsSolidAccentWhenSelected()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: #ffffff; border: 1px dashed red }"), true);
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        for (int x = card.left() + 2; x < card.left() + 40; ++x) {
            QVERIFY(near(at(image, x, card.top()), accent));
            QVERIFY(near(at(image, x, card.top() + 1), accent));
        }
        QCOMPARE(at(image, card.left() + 20, card.top() + 2), QColor(Qt::white));
    }

    void upperCaseBorderStyleIsSolid()
    {
        Cards cards;
        const QModelIndex index = cards.add(
            QStringLiteral(".x { background: #ffffff; border-style: DASHED; border-color: red }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        for (int x = card.left() + 2; x < card.left() + 42; ++x)
            QVERIFY(near(at(image, x, card.top()), red, 10));
    }

    void borderWithoutColourWordUsesSeparator()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: #ffffff; border: 2px solid }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        QVERIFY(near(at(image, cardRect(image).center().x(), cardRect(image).top()), separator));
    }

    void borderNone()
    {
        Cards cards;
        const QModelIndex plain =
            cards.add(QStringLiteral(".x { background: #fff; border: none }"));
        const QModelIndex selected =
            cards.add(QStringLiteral(".x { background: #fff; border: none }"), true);
        NodeDelegate delegate;
        const QImage unselectedImage = paintCard(delegate, plain);
        const QRect card = cardRect(unselectedImage);
        QCOMPARE(at(unselectedImage, card.center().x(), card.top()), QColor(Qt::white));
        QCOMPARE(at(unselectedImage, card.center().x(), card.top() - 1).alpha(), 0);
        const QImage selectedImage = paintCard(delegate, selected);
        QVERIFY(near(at(selectedImage, card.center().x(), card.top()), accent));
        QVERIFY(near(at(selectedImage, card.center().x(), card.top() + 1), accent));
        // The shadow: accent, faint, in the margin around the card.
        const QColor shadow = at(selectedImage, card.center().x(), card.top() - 1);
        QVERIFY(shadow.alpha() > 0 && shadow.alpha() < 128);
        QVERIFY(shadow.blue() > shadow.red());
    }

    void sevenLevelsIndentByAHundred()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral("main section article div ul li a { background: #336699 }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const int y = image.height() / 2;
        QCOMPARE(at(image, margin + 99, y).alpha(), 0);
        QCOMPARE(at(image, margin + 102, y), QColor(0x33, 0x66, 0x99));
    }

    void labelColourOnSameLightness()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".a-long-name { color: #fff; background: #fff }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        // The name shows in the system label colour, not in the declared white.
        QVERIFY(contains(image, card.adjusted(30, 4, -200, -4), label, 40));
    }

    void whiteTextInDarkSchemeShowsDot()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".x { color: #fff }"));
        NodeDelegate delegate;
        delegate.setColorScheme(ColorScheme::dark);
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        // The declared white is used for the name, and a solid white dot of 7
        // stands beside it: look for a white 5 x 5 block, which no glyph has.
        QVERIFY(contains(image, card.adjusted(30, 4, -200, -4), Qt::white, 30));
        bool dot = false;
        for (int y = card.top(); y < card.bottom() - 5 && !dot; ++y) {
            for (int x = card.left(); x < card.right() - 5 && !dot; ++x) {
                bool block = true;
                for (int dy = 0; dy < 5 && block; ++dy)
                    for (int dx = 0; dx < 5 && block; ++dx)
                        block = near(at(image, x + dx, y + dy), Qt::white, 8);
                dot = block;
            }
        }
        QVERIFY(dot);
        // Without a declared colour there is no such block.
        Cards plain;
        const QModelIndex plainIndex = plain.add(QStringLiteral(".x { background: #fff }"));
        const QImage plainImage = paintCard(delegate, plainIndex);
        QCOMPARE(at(plainImage, card.right() - 4, card.center().y()), QColor(Qt::white));
    }

    void darkPalette()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".a-long-name { padding: 0 }"));
        NodeDelegate delegate;
        delegate.setColorScheme(ColorScheme::dark);
        QPalette dark = testPalette();
        const QColor darkBase(0x1e, 0x1e, 0x1e);
        const QColor lightLabel(0xe0, 0xe0, 0xe0);
        dark.setColor(QPalette::Base, darkBase);
        dark.setColor(QPalette::WindowText, lightLabel);
        dark.setColor(QPalette::Window, QColor(0x28, 0x28, 0x28));
        QCOMPARE(colorSchemeOf(dark), ColorScheme::dark);
        for (const bool styling : {true, false}) {
            delegate.setShowStyling(styling);
            QImage image(width, delegate.cardHeight(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            {
                QPainter painter(&image);
                QStyleOptionViewItem option;
                option.rect = image.rect();
                option.palette = dark;
                delegate.paint(&painter, option, index);
            }
            const QRect card = cardRect(image);
            QCOMPARE(at(image, card.right() - 4, card.center().y()), darkBase);
            // White text in the dark scheme with styling on, the light label
            // colour with it off: both light on the dark card.
            const QColor text = styling ? QColor(Qt::white) : lightLabel;
            QVERIFY(contains(image, card.adjusted(30, 4, -200, -4), text, 30));
        }
    }

    void linearGradientThumbnail()
    {
        Cards cards;
        const QModelIndex index = cards.add(
            QStringLiteral(".x { background: #ffffff linear-gradient(45deg, red, blue 40%) }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        const QColor top = at(image, thumb.center().x(), thumb.top() + 1);
        const QColor bottom = at(image, thumb.center().x(), thumb.bottom() - 1);
        QVERIFY2(top.red() > 200 && top.blue() < 60, qPrintable(top.name()));
        QVERIFY2(bottom.blue() > 200 && bottom.red() < 60, qPrintable(bottom.name()));
        // The divider before it.
        QVERIFY(near(at(image, thumb.left() - 1, thumb.center().y()), over(label, 0.07, base), 2));
        // The shorthand is no colour, so the card has the plain background.
        QCOMPARE(at(image, thumb.left() - 20, thumb.center().y()), base);
    }

    void radialGradientThumbnail()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: radial-gradient(circle, red, blue) }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        const QColor centre = at(image, thumb.center().x(), thumb.center().y());
        QVERIFY2(near(centre, red, 8), qPrintable(centre.name()));
        // Beyond the end radius of 30, in the corner, pure blue.
        QVERIFY(near(at(image, thumb.left() + 1, thumb.top() + 2), QColor(0, 122, 255), 6));
    }

    void gradientWithoutColourIsGray()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".x { background: linear-gradient(to right, nope) }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        QVERIFY(near(at(image, thumb.center().x(), thumb.center().y()), QColor(142, 142, 147), 2));
    }

    void thumbnailClippedToRoundedCorner()
    {
        Cards cards;
        const QModelIndex index = cards.add(
            QStringLiteral(".x { background: linear-gradient(red, red); border-radius: 20px }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        QCOMPARE(at(image, thumb.right(), thumb.top()).alpha(), 0);
        QVERIFY(near(at(image, thumb.right() - 20, thumb.top() + 20), red, 6));
    }

    void imageThumbnail_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("relative") << "url(green.png)" << QColor(Qt::green);
        QTest::newRow("relative with parenthesis") << "url(\"a(1).png\")" << QColor(Qt::magenta);
        QTest::newRow("absolute")
            << QStringLiteral("url('%1')").arg(m_dir.filePath(QStringLiteral("green.png")))
            << QColor(Qt::green);
        QTest::newRow("data") << QStringLiteral("url(data:image/png;base64,%1)")
                                     .arg(
                                         QString::fromLatin1(pngBytes({3, 3}, Qt::cyan).toBase64()))
                              << QColor(Qt::cyan);
        QTest::newRow("image before gradient")
            << "linear-gradient(red, blue), url(green.png)" << QColor(Qt::green);
    }

    void imageThumbnail()
    {
        QFETCH(QString, value);
        QFETCH(QColor, colour);
        Cards cards;
        const QModelIndex index = cards.addDeclaration(QStringLiteral("background"), value);
        NodeDelegate delegate;
        delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        // Filled edge to edge, corners of the card aside.
        QCOMPARE(at(image, thumb.center().x(), thumb.center().y()), colour);
        QCOMPARE(at(image, thumb.left() + 1, thumb.center().y()), colour);
        QCOMPARE(at(image, thumb.right() - 1, thumb.center().y()), colour);
        QCOMPARE(at(image, thumb.center().x(), thumb.top() + 1), colour);
    }

    void imageByVariable()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".x { background-image: var(--hero) }"));
        NodeDelegate delegate;
        delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        delegate.setVariables({{QStringLiteral("--hero"), QStringLiteral("url(green.png)")}});
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        QCOMPARE(at(image, thumb.center().x(), thumb.center().y()), QColor(Qt::green));
    }

    void photoMark_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("withFile");
        QTest::newRow("missing file") << "url(missing.png)" << true;
        QTest::newRow("unclosed url") << "url(green.png" << true;
        QTest::newRow("no file path") << "url(green.png)" << false;
        QTest::newRow("huge image") << "url(huge.png)" << true;
        QTest::newRow("broken data") << "url(data:image/png;base64,iVBO\nRw0K)" << true;
    }

    void photoMark()
    {
        QFETCH(QString, value);
        QFETCH(bool, withFile);
        Cards cards;
        const QModelIndex index = cards.addDeclaration(QStringLiteral("background"), value);
        NodeDelegate delegate;
        if (withFile)
            delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        // The faint secondary background over the whole area...
        const QColor faint = over(placeholder, 0.08, base);
        QVERIFY(near(at(image, thumb.left() + 2, thumb.top() + 3), faint, 2));
        QVERIFY(near(at(image, thumb.right() - 2, thumb.bottom() - 3), faint, 2));
        // ...and the symbol in the secondary colour at its centre.
        const QRect symbol(thumb.center() - QPoint(8, 8), QSize(16, 16));
        QVERIFY(contains(image, symbol, placeholder, 12));
        QVERIFY(!contains(image, thumb, Qt::green, 40));
    }

    void emptyThumbnailArea()
    {
        Cards cards;
        const QModelIndex none =
            cards.add(QStringLiteral(".x { background-color: #fff; background-image: none }"));
        const QModelIndex upper = cards.add(
            QStringLiteral(".x { background-color: #fff; background-image: URL(a.png) }"));
        NodeDelegate delegate;
        delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        for (const QModelIndex &index : {none, upper}) {
            const QImage image = paintCard(delegate, index);
            const QRect thumb = thumbnailRect(image);
            QVERIFY(near(at(image, thumb.left() - 1, thumb.center().y()),
                         over(label, 0.07, Qt::white), 2));
            for (const QPoint point : {thumb.center(), thumb.topLeft() + QPoint(2, 3)})
                QCOMPARE(at(image, point.x(), point.y()), QColor(Qt::white));
        }
    }

    void upperCaseShorthandHasNoThumbnail_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("gradient") << "LINEAR-GRADIENT(red, blue)";
        QTest::newRow("image") << "URL(green.png)";
    }

    void upperCaseShorthandHasNoThumbnail()
    {
        QFETCH(QString, value);
        Cards cards;
        const QModelIndex index = cards.addDeclaration(QStringLiteral("background"), value);
        NodeDelegate delegate;
        delegate.setFilePath(m_dir.filePath(QStringLiteral("style.css")));
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        // No divider: the background runs through where it would stand.
        QCOMPARE(at(image, thumb.left() - 1, thumb.center().y()),
                 at(image, thumb.left() - 6, thumb.center().y()));
        QCOMPARE(at(image, thumb.center().x(), thumb.center().y()), base);
    }

    void dataUrlLoadsWithoutAFilePath()
    {
        Cards cards;
        const QModelIndex index = cards.addDeclaration(
            QStringLiteral("background"),
            QStringLiteral("url(data:image/png;base64,%1)")
                .arg(QString::fromLatin1(pngBytes({3, 3}, Qt::cyan).toBase64())));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect thumb = thumbnailRect(image);
        QCOMPARE(at(image, thumb.center().x(), thumb.center().y()), QColor(Qt::cyan));
    }

    void marksBySelectorKind()
    {
        Cards cards;
        NodeDelegate delegate;
        // The mark's frame at the start of a card of that selector.
        const auto markOf = [&](const QString &selector) {
            const QModelIndex index = cards.add(QStringLiteral("x {}"));
            cards.rulesets.last()->setSelector(selector);
            const QImage image = paintCard(delegate, index);
            const QRect card = cardRect(image);
            return image.copy(card.left() + 16, card.top(), 18, card.height());
        };
        const QImage app = markOf(QStringLiteral("div"));
        const QImage character = markOf(QStringLiteral("p"));
        const QImage selfClosing = markOf(QStringLiteral("img"));
        QVERIFY(app != character);
        QVERIFY(app != selfClosing);
        QVERIFY(character != selfClosing);
        QCOMPARE(markOf(QString()), app);
        QCOMPARE(markOf(QStringLiteral("INPUT[type=text]")), selfClosing);
        QCOMPARE(markOf(QStringLiteral("body.dark")), app);
        QCOMPARE(markOf(QStringLiteral("*")), app);
    }

    void emptySelectorShowsNoName()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral("x {}"));
        cards.rulesets.last()->setSelector(QString());
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        // The mark and nothing behind it.
        const auto plain = [&image](const QRect &rect) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x) {
                    if (at(image, x, y) != base)
                        return false;
                }
            }
            return true;
        };
        QVERIFY(!plain(QRect(card.left() + 16, card.top() + 2, 14, card.height() - 4)));
        QVERIFY(plain(card.adjusted(16 + 14 + 6, 2, -2, -2)));
    }

    void blackOnBlackNameShowsInTheLabelColour()
    {
        Cards cards;
        const QModelIndex index =
            cards.add(QStringLiteral(".a-long-name { color: #000; background: #000 }"));
        NodeDelegate delegate;
        const QImage image = paintCard(delegate, index);
        const QRect card = cardRect(image);
        QCOMPARE(at(image, card.right() - 4, card.center().y()), QColor(Qt::black));
        QVERIFY(contains(image, card.adjusted(30, 4, -200, -4), label, 3));
    }

    void heightFollowsStyling()
    {
        NodeDelegate delegate;
        const int styled = delegate.cardHeight();
        QSignalSpy spy(&delegate, &NodeDelegate::sizeHintChanged);
        delegate.setShowStyling(false);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(delegate.cardHeight(), styled - 8);
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".x {}"));
        QCOMPARE(delegate.sizeHint(QStyleOptionViewItem(), index).height(), styled - 8);
        delegate.setShowStyling(false);
        QCOMPARE(spy.count(), 1);
    }

    void editorCommitsOnReturn()
    {
        Cards cards;
        cards.add(QStringLiteral(".first {}"));
        const QModelIndex index = cards.add(QStringLiteral(".btn { color: red }"));
        QListView view;
        NodeDelegate delegate;
        view.setItemDelegate(&delegate);
        view.setModel(&cards.model);
        view.resize(400, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QSignalSpy edited(&delegate, &NodeDelegate::selectorEdited);
        QSignalSpy committed(&delegate, &NodeDelegate::selectorCommitted);
        QSignalSpy cancelled(&delegate, &NodeDelegate::selectorCancelled);
        view.openPersistentEditor(index);
        auto *editor = qobject_cast<QLineEdit *>(view.indexWidget(index));
        QVERIFY(editor);
        QCOMPARE(editor->text(), QStringLiteral(".btn"));
        QCOMPARE(editor->placeholderText(), QStringLiteral("selector"));
        QTRY_VERIFY(editor->hasFocus());
        QVERIFY(view.visualRect(index).contains(editor->geometry()));
        // All of the old selector is selected, so typing replaces it.
        QTest::keyClicks(editor, QStringLiteral(".button"));
        QCOMPARE(edited.count(), 7);
        QCOMPARE(edited.last().at(1).toString(), QStringLiteral(".button"));
        // The card restyling in the meantime keeps the typed text.
        Q_EMIT cards.model.dataChanged(index, index);
        QCOMPARE(editor->text(), QStringLiteral(".button"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(committed.count(), 1);
        QCOMPARE(committed.first().at(0).toModelIndex(), index);
        QCOMPARE(committed.first().at(1).toString(), QStringLiteral(".button"));
        // Closing the field after the commit commits nothing more.
        view.closePersistentEditor(index);
        QCOMPARE(committed.count(), 1);
        QCOMPARE(cancelled.count(), 0);
    }

    void editorCancelsOnEscape()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".btn {}"));
        QListView view;
        NodeDelegate delegate;
        view.setItemDelegate(&delegate);
        view.setModel(&cards.model);
        view.resize(400, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QSignalSpy committed(&delegate, &NodeDelegate::selectorCommitted);
        QSignalSpy cancelled(&delegate, &NodeDelegate::selectorCancelled);
        view.openPersistentEditor(index);
        auto *editor = qobject_cast<QLineEdit *>(view.indexWidget(index));
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClicks(editor, QStringLiteral("x"));
        QTest::keyClick(editor, Qt::Key_Escape);
        QCOMPARE(cancelled.count(), 1);
        QCOMPARE(cancelled.first().at(0).toModelIndex(), index);
        view.closePersistentEditor(index);
        QCoreApplication::processEvents();
        QCOMPARE(committed.count(), 0);
        QCOMPARE(cancelled.count(), 1);
    }

    void editorCommitsWhenFocusLeaves()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".btn {}"));
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *view = new QListView;
        auto *other = new QLineEdit;
        layout->addWidget(view);
        layout->addWidget(other);
        NodeDelegate delegate;
        view->setItemDelegate(&delegate);
        view->setModel(&cards.model);
        window.resize(400, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy committed(&delegate, &NodeDelegate::selectorCommitted);
        view->openPersistentEditor(index);
        auto *editor = qobject_cast<QLineEdit *>(view->indexWidget(index));
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClicks(editor, QStringLiteral(".card"));
        QTest::mouseClick(other, Qt::LeftButton);
        other->setFocus(Qt::MouseFocusReason);
        QTRY_COMPARE(committed.count(), 1);
        QCOMPARE(committed.first().at(1).toString(), QStringLiteral(".card"));
    }

    void editorLeavesTheDotVisible()
    {
        Cards cards;
        const QModelIndex index = cards.add(QStringLiteral(".x { color: #fff; background: #fff }"));
        QListView view;
        NodeDelegate delegate;
        view.setItemDelegate(&delegate);
        view.setModel(&cards.model);
        view.resize(400, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.openPersistentEditor(index);
        QWidget *editor = view.indexWidget(index);
        QVERIFY(editor);
        const QRect card = view.visualRect(index).adjusted(margin, margin, -margin, -margin);
        QCOMPARE(editor->geometry().left(), card.left() + 16);
        // The dot (7) and its spacing (6) stay right of the field.
        QCOMPARE(editor->geometry().right() + 1, card.right() + 1 - 16 - 13);
    }
};

QTEST_MAIN(TestNodeDelegate)
#include "tst_nodedelegate.moc"
