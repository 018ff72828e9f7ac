// What the colour tools paint, read back pixel by pixel at a pixel ratio of
// one: the checkerboard, a swatch's colour and corners, the palette cells,
// the accent behind the keyword the field holds; and the toolkit's colour
// lists the palette pages show.

#include "ColourTestSupport.h"

#include "colour/ColorLists.h"
#include "colour/ColorPickerModel.h"
#include "colour/ToolkitColor.h"
#include "colour/widgets/CheckerboardView.h"
#include "colour/widgets/ColorPaletteGrid.h"
#include "colour/widgets/ColorSwatchView.h"
#include "colour/widgets/SystemColorLists.h"

#include <QColorDialog>
#include <QImage>
#include <QLineEdit>
#include <QSet>
#include <QStyle>
#include <QVBoxLayout>

using namespace Ombrel;
using ColourTest::PickerWindow;

namespace {

const QColor background(0x12, 0x34, 0x56);

// A window of a plain, known colour holding widget at (10, 10).
struct Backdrop
{
    explicit Backdrop(QWidget *child)
    {
        QPalette palette = window.palette();
        palette.setColor(QPalette::Window, background);
        window.setPalette(palette);
        window.setAutoFillBackground(true);
        window.resize(300, 200);
        child->setParent(&window);
        child->move(10, 10);
        child->show();
    }

    // The child's pixels with the window behind them.
    QImage image(QWidget *child)
    {
        return window.grab(QRect(child->pos(), child->size())).toImage();
    }

    QWidget window;
};

bool near(const QColor &a, const QColor &b, int tolerance = 2)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

QColor checker(int x, int y)
{
    return (x / 4 + y / 4) % 2 == 0 ? QColor(Qt::lightGray) : QColor(Qt::white);
}

QColor over(const QColor &top, double alpha, const QColor &bottom)
{
    const auto mix = [alpha](int a, int b) {
        return int(std::lround(a * alpha + b * (1 - alpha)));
    };
    return QColor(mix(top.red(), bottom.red()), mix(top.green(), bottom.green()),
                  mix(top.blue(), bottom.blue()));
}

} // namespace

class TestColourPixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(QStringLiteral("Fusion"));
        QCOMPARE(qApp->devicePixelRatio(), 1.0);
    }

    void init() { ColourTest::failOnWarnings(); }

    void checkerboardHasSquaresOfFourFromTheTopLeft()
    {
        auto *view = new CheckerboardView;
        view->resize(18, 10);
        Backdrop backdrop(view);
        const QImage image = backdrop.image(view);
        QCOMPARE(image.size(), QSize(18, 10));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(image.pixelColor(x, y), checker(x, y));
        }
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::lightGray));
        QCOMPARE(image.pixelColor(4, 0), QColor(Qt::white));
        QCOMPARE(image.pixelColor(4, 4), QColor(Qt::lightGray));
    }

    void swatchPaintsItsColourOverTheCheckerboardInsideRoundedCorners()
    {
        auto *swatch = new ColorSwatchView;
        swatch->setColor(Color{1, 0, 0, 1});
        Backdrop backdrop(swatch);
        const QImage image = backdrop.image(swatch);
        QCOMPARE(image.size(), QSize(20, 20));
        for (int y = 2; y < 18; ++y) {
            for (int x = 2; x < 18; ++x)
                QCOMPARE(image.pixelColor(x, y), QColor(Qt::red));
        }
        // The corners are cut at a radius of 3: the backdrop shows there.
        for (const QPoint corner : {QPoint(0, 0), QPoint(19, 0), QPoint(0, 19), QPoint(19, 19)})
            QVERIFY2(near(image.pixelColor(corner), background, 40),
                     qPrintable(image.pixelColor(corner).name()));
        // A faint dark hairline on the edges.
        const QColor edge = image.pixelColor(10, 0);
        QVERIFY(edge.red() < 255 && edge.red() > 150);
    }

    void translucentSwatchShowsTheCheckerboardThrough()
    {
        auto *swatch = new ColorSwatchView;
        swatch->setColor(Color::fromCssString(u"#00000080"));
        Backdrop backdrop(swatch);
        const QImage image = backdrop.image(swatch);
        const double alpha = 128 / 255.0;
        QVERIFY(near(image.pixelColor(5, 5), over(Qt::black, alpha, Qt::lightGray)));
        QVERIFY(near(image.pixelColor(9, 5), over(Qt::black, alpha, Qt::white)));
    }

    void swatchWithoutAColourIsABareCheckerboard()
    {
        auto *swatch = new ColorSwatchView;
        swatch->setColor(std::nullopt);
        Backdrop backdrop(swatch);
        const QImage image = backdrop.image(swatch);
        for (int y = 2; y < 18; ++y) {
            for (int x = 2; x < 18; ++x)
                QCOMPARE(image.pixelColor(x, y), checker(x, y));
        }
    }

    void pickersSwatchForAValueThatIsNoColourIsBare()
    {
        PickerWindow window(QStringLiteral("var(--x)"));
        QVERIFY(window.show());
        const QImage image = window.swatchButton()->grab().toImage();
        QCOMPARE(image.pixelColor(6, 10), checker(6, 10));
        QCOMPARE(image.pixelColor(10, 10), checker(10, 10));
    }

    void paletteCellsAreTwentyPointsInRowsOfTen()
    {
        ColorList list{QStringLiteral("Only"), {}, {}};
        for (int i = 0; i < 12; ++i)
            list.add(QStringLiteral("c%1").arg(i), Color{(20 * i) / 255.0, 0.5, 1, 1});
        const QList<ColorList> lists = {list};
        ColorPickerModel model{QString()};
        QStringList picks;
        auto *grid =
            new ColorPaletteGrid(model, lists, [&picks](const QString &hex) { picks.append(hex); });
        Backdrop backdrop(grid);
        backdrop.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&backdrop.window));
        // One list: no header.
        QCOMPARE(grid->header(), nullptr);
        QCOMPARE(grid->title(), QString());
        QCOMPARE(grid->cellsWidget()->size(), QSize(236, 44));
        QCOMPARE(grid->cellsWidget()->pos(), QPoint(0, 0));
        const QImage image = backdrop.image(grid);
        for (int i = 0; i < 12; ++i) {
            const QRect cell = ColorPaletteGrid::cellRect(i);
            QCOMPARE(cell.size(), QSize(20, 20));
            QCOMPARE(cell.topLeft(), QPoint((i % 10) * 24, (i / 10) * 24));
            QCOMPARE(image.pixelColor(cell.center()).rgb(),
                     list.color(list.keys[i])->toQColor().rgb());
        }
        // Between cells and rows, the backdrop.
        QCOMPARE(image.pixelColor(21, 10), background);
        QCOMPARE(image.pixelColor(10, 21), background);
        QTest::mouseClick(grid->cellsWidget(), Qt::LeftButton, {},
                          ColorPaletteGrid::cellRect(11).center());
        QCOMPARE(picks, QStringList{list.color(QStringLiteral("c11"))->cssHexString()});
    }

    void keywordTheFieldHoldsHasTheAccentBehindIt()
    {
        PickerWindow window(QStringLiteral("inherit"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        const QColor base = popover->palette().color(QPalette::Base);
        const QColor accent = popover->palette().color(QPalette::Highlight);
        const auto plate = [popover](const QString &keyword) {
            QAbstractButton *button = popover->keywordButton(keyword);
            return popover
                ->grab(QRect(button->mapTo(popover, QPoint(2, button->height() / 2)), QSize(1, 1)))
                .toImage()
                .pixelColor(0, 0);
        };
        const QColor expected = over(accent, 0.15, popover->palette().color(QPalette::Window));
        QVERIFY2(near(plate(QStringLiteral("inherit")), expected),
                 qPrintable(plate(QStringLiteral("inherit")).name()));
        QCOMPARE(plate(QStringLiteral("transparent")), base);
        QCOMPARE(plate(QStringLiteral("currentColor")), base);

        // The field's text decides, as it is typed.
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("Inherit"));
        QCOMPARE(plate(QStringLiteral("inherit")), base);
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("currentColor"));
        QVERIFY(near(plate(QStringLiteral("currentColor")), expected));
        QCOMPARE(plate(QStringLiteral("inherit")), base);
    }

    void previewOfAnUnreadableValueIsABareCheckerboard()
    {
        PickerWindow window(QStringLiteral("#zzz"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QCOMPARE(popover->preview()->size(), QSize(36, 36));
        const QImage image = popover->preview()->grab().toImage();
        for (int y = 4; y < 32; ++y) {
            for (int x = 4; x < 32; ++x)
                QCOMPARE(image.pixelColor(x, y), checker(x, y));
        }
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#fff"));
        QCOMPARE(popover->preview()->grab().toImage().pixelColor(18, 18), QColor(Qt::white));
    }

    void systemListsInTheirOrder()
    {
        const QList<ColorList> &lists = availableColorLists();
        QCOMPARE(lists.size(), 3);
        QCOMPARE(lists[0].name, QStringLiteral("Basic Colors"));
        QCOMPARE(lists[1].name, QStringLiteral("Named Colors"));
        QCOMPARE(lists[2].name, QStringLiteral("Custom Colors"));
        QCOMPARE(&availableColorLists(), &lists);

        // The standard colours, keyed by their hex text.
        QVERIFY(!lists[0].keys.isEmpty());
        QCOMPARE(lists[0].keys.first(), cssHexOf(QColorDialog::standardColor(0)));
        for (const QString &key : lists[0].keys)
            QCOMPARE(lists[0].color(key)->cssHexString(), key);

        QCOMPARE(lists[1].keys, QColor::colorNames());
        QCOMPARE(lists[1].color(QStringLiteral("aliceblue"))->cssHexString(),
                 QStringLiteral("#F0F8FF"));

        QSet<QString> custom;
        for (int i = 0; i < QColorDialog::customCount(); ++i)
            custom.insert(cssHexOf(QColorDialog::customColor(i)));
        QCOMPARE(QSet<QString>(lists[2].keys.cbegin(), lists[2].keys.cend()), custom);
    }
};

QTEST_MAIN(TestColourPixels)
#include "tst_colourpixels.moc"
