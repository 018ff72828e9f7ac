// Writes pictures of the colour tools for review to the build folder's
// screenshots/ directory: the popover on each palette page, with a keyword
// the field holds and with a value that is no colour, and a row of swatches
// and a colour well, in a light and a dark palette. The style, font and
// pixel ratio are pinned so that runs compare.

#include "ColourTestSupport.h"
#include "ScreenshotSupport.h"

#include "colour/widgets/NativeColorWell.h"
#include "colour/widgets/SystemColorLists.h"

#include <QDir>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>

using namespace Ombrel;
using ColourTest::PickerWindow;
using Screenshots::darkPalette;
using Screenshots::lightPalette;

namespace {

struct Look
{
    QString name;
    QPalette palette;
};

QList<Look> looks()
{
    return {{QStringLiteral("light"), lightPalette()}, {QStringLiteral("dark"), darkPalette()}};
}

} // namespace

class TestColourScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    QImage save(QWidget *widget, const QString &name)
    {
        const QImage image = Screenshots::savePicture(widget, m_folder, name);
        [&] { QVERIFY(!image.isNull()); }();
        return image;
    }

    // The popover of a picker of value on page, in look.
    QImage popover(const QString &value, int page, const Look &look, const QString &name)
    {
        PickerWindow window(value);
        window.window->setPalette(look.palette);
        window.picker->model().setPaletteIndex(page);
        QImage image;
        [&] {
            QVERIFY(window.show());
            ColorPickerPopover *popover = window.pressSwatch();
            QVERIFY(popover);
            image = save(popover, name);
        }();
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void init() { ColourTest::failOnWarnings(); }

    void popoverOnEachPalettePage()
    {
        for (const Look &look : looks()) {
            QList<QImage> pages;
            for (int page = 0; page < availableColorLists().size(); ++page) {
                pages.append(popover(
                    QStringLiteral("#3b82f6"), page, look,
                    QStringLiteral("colour-popover-page%1-%2").arg(page + 1).arg(look.name)));
            }
            QCOMPARE(pages.size(), 3);
            QVERIFY(pages[0] != pages[1]);
            QVERIFY(pages[1] != pages[2]);
            QCOMPARE(pages[0].width(), 260);
        }
    }

    void popoverWithAKeywordAndWithAValueThatIsNoColour()
    {
        for (const Look &look : looks()) {
            const QImage keyword =
                popover(QStringLiteral("currentColor"), 0, look,
                        QStringLiteral("colour-popover-keyword-%1").arg(look.name));
            const QImage unreadable =
                popover(QStringLiteral("var(--brand)"), 0, look,
                        QStringLiteral("colour-popover-unreadable-%1").arg(look.name));
            QVERIFY(keyword != unreadable);
        }
    }

    void swatchesAndAWell()
    {
        QList<QImage> images;
        for (const Look &look : looks()) {
            QWidget row;
            row.setPalette(look.palette);
            row.setAutoFillBackground(true);
            auto *layout = new QHBoxLayout(&row);
            layout->setContentsMargins(12, 12, 12, 12);
            layout->setSpacing(10);
            for (const QString &value :
                 {QStringLiteral("#3b82f6"), QStringLiteral("#00000080"), QStringLiteral("red"),
                  QStringLiteral("hsl(150, 60%, 70%)"), QStringLiteral("transparent"),
                  QStringLiteral("var(--x)"), QStringLiteral("#zzz")}) {
                auto *picker = new CSSColorPicker(value, {}, {}, &row);
                picker->setToolTip(value);
                layout->addWidget(picker);
            }
            layout->addWidget(new NativeColorWell(QStringLiteral("#f59e0b"), {}, {}, &row));
            layout->addWidget(new NativeColorWell(QStringLiteral("nonsense"), {}, {}, &row));
            layout->addStretch(1);
            row.resize(320, 44);
            row.show();
            QVERIFY(QTest::qWaitForWindowExposed(&row));
            images.append(save(&row, QStringLiteral("colour-swatches-%1").arg(look.name)));
        }
        QVERIFY(images[0] != images[1]);
    }
};

QTEST_MAIN(TestColourScreenshots)
#include "tst_colourscreenshots.moc"
