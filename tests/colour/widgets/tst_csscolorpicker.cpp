// The swatch and its popover, driven as a user drives them: presses on the
// swatch in an active window, typing and Return in the field, palette,
// keyword and page presses, and clicks outside.

#include "ColourTestSupport.h"

#include "colour/ColorLists.h"
#include "colour/widgets/ColorPaletteGrid.h"
#include "colour/widgets/ColorSwatchView.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QToolButton>

using namespace Ombrel;
using ColourTest::PickerWindow;

namespace {

Color rgb(int r, int g, int b)
{
    return Color{r / 255.0, g / 255.0, b / 255.0, 1};
}

// The lists this process shows instead of the toolkit's: a named one with a
// key that has no colour, one of 100 keys, and one without a name.
QList<ColorList> testLists()
{
    ColorList warm{QStringLiteral("Warm"), {}, {}};
    warm.add(QStringLiteral("brick"), rgb(0xb0, 0x30, 0x20));
    warm.add(QStringLiteral("sand"), rgb(0xf0, 0xd0, 0xa0));
    warm.keys.append(QStringLiteral("ghost"));
    warm.add(QStringLiteral("rust"), rgb(0xa0, 0x40, 0x10));
    ColorList hundred{QStringLiteral("Hundred"), {}, {}};
    for (int i = 0; i < 100; ++i)
        hundred.add(QStringLiteral("k%1").arg(i), rgb(i, 255 - i, 2 * i));
    ColorList unnamed;
    unnamed.add(QStringLiteral("#102030"), rgb(0x10, 0x20, 0x30));
    return {warm, hundred, unnamed};
}

int listCalls = 0;

// Selects the field's text and pastes text over it, as a tab cannot be typed
// into a field.
void replaceFieldText(ColorPickerPopover *popover, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    popover->field()->selectAll();
    QTest::keyClick(popover->field(), Qt::Key_V, Qt::ControlModifier);
}

} // namespace

class TestCSSColorPicker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ColorListStore::replaceProvider([] {
            ++listCalls;
            return testLists();
        });
    }

    void init() { ColourTest::failOnWarnings(); }

    void swatchShowsTheValuesColour()
    {
        PickerWindow red(QStringLiteral("#ff0000"));
        QCOMPARE(red.picker->swatch()->color(), std::optional(Color{1, 0, 0, 1}));
        QCOMPARE(red.picker->value(), QStringLiteral("#ff0000"));
        QCOMPARE(red.picker->model().hexInput(), QStringLiteral("#ff0000"));
        QCOMPARE(red.picker->model().paletteIndex(), 0);
        QCOMPARE(red.picker->swatchButton()->size(), QSize(20, 20));
    }

    void varValueOpensWithItsTextAndABareCheckerboard()
    {
        PickerWindow window(QStringLiteral("var(--x)"));
        QVERIFY(window.show());
        QCOMPARE(window.picker->swatch()->color(), std::nullopt);
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QCOMPARE(popover->field()->text(), QStringLiteral("var(--x)"));
        QCOMPARE(popover->preview()->color(), std::nullopt);
        QVERIFY(popover->hexFocused());
        QCOMPARE(window.picker->swatch()->color(), std::nullopt);
        QVERIFY(window.calls->commits.isEmpty());
    }

    void typingFollowsInThePreviewAndReturnCommitsOnce()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QLineEdit *field = popover->field();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QCOMPARE(window.picker->model().hexInput(), QString());
        QCOMPARE(popover->preview()->color(), std::nullopt);
        QTest::keyClicks(field, QStringLiteral("#3b8"));
        QCOMPARE(popover->preview()->color(), Color::fromCssString(u"#3b8"));
        QTest::keyClicks(field, QStringLiteral("2f6"));
        QCOMPARE(popover->preview()->color(), Color::fromCssString(u"#3b82f6"));
        // Typing edits the field's text only.
        QCOMPARE(window.picker->value(), QStringLiteral("#ffffff"));
        QCOMPARE(window.picker->swatch()->color(), std::optional(Color{1, 1, 1, 1}));
        QVERIFY(window.calls->commits.isEmpty());

        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(window.picker->value(), QStringLiteral("#3b82f6"));
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#3b82f6")});
        QCOMPARE(window.calls->written, QStringList{QStringLiteral("#3b82f6")});
        QVERIFY(window.calls->live.isEmpty());
        QCOMPARE(window.picker->swatch()->color(), Color::fromCssString(u"#3b82f6"));
        QVERIFY(popover->isVisible());
        QCOMPARE(window.picker->popover(), popover);
    }

    void returnInABlankFieldSubmitsNothing_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("empty") << QString();
        QTest::newRow("spaces") << QStringLiteral("   ");
        QTest::newRow("spaces and tabs") << QStringLiteral(" \t \t");
    }

    void returnInABlankFieldSubmitsNothing()
    {
        QFETCH(QString, typed);
        PickerWindow window(QStringLiteral("#abcdef"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        replaceFieldText(popover, typed);
        QCOMPARE(window.picker->model().hexInput(), typed);
        QTest::keyClick(popover->field(), Qt::Key_Return);
        QVERIFY(window.calls->commits.isEmpty());
        QVERIFY(window.calls->written.isEmpty());
        QCOMPARE(window.picker->value(), QStringLiteral("#abcdef"));
        QVERIFY(popover->isVisible());
    }

    void submittedTextIsTrimmedAndNeverValidated_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("value");
        QTest::newRow("not hex") << QStringLiteral("  #zzz\t") << QStringLiteral("#zzz");
        QTest::newRow("a variable") << QStringLiteral("var(--x)") << QStringLiteral("var(--x)");
        QTest::newRow("inner spaces kept")
            << QStringLiteral("\trgb(1, 2, 3) ") << QStringLiteral("rgb(1, 2, 3)");
    }

    void submittedTextIsTrimmedAndNeverValidated()
    {
        QFETCH(QString, typed);
        QFETCH(QString, value);
        PickerWindow window(QStringLiteral("#abcdef"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        replaceFieldText(popover, typed);
        QTest::keyClick(popover->field(), Qt::Key_Return);
        QCOMPARE(window.picker->value(), value);
        QCOMPARE(window.calls->commits, QStringList{value});
        QCOMPARE(window.picker->swatch()->color(), Color::fromCssString(value));
        // The value differs from the field's untrimmed text, which takes it.
        QCOMPARE(window.picker->model().hexInput(), value);
        QCOMPARE(popover->field()->text(), value);
    }

    void unreadableSubmittedTextLeavesABareSwatch()
    {
        PickerWindow window(QStringLiteral("#abcdef"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#zzz"));
        QCOMPARE(popover->preview()->color(), std::nullopt);
        QTest::keyClick(popover->field(), Qt::Key_Return);
        QCOMPARE(window.picker->swatch()->color(), std::nullopt);
    }

    void keywordPressWritesItAndCloses()
    {
        PickerWindow window(QStringLiteral("#3b82f6"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QAbstractButton *inherit = popover->keywordButton(QStringLiteral("inherit"));
        QVERIFY(inherit);
        QTest::mouseClick(inherit, Qt::LeftButton, {}, inherit->rect().center());
        QCOMPARE(window.picker->value(), QStringLiteral("inherit"));
        QCOMPARE(window.picker->model().hexInput(), QStringLiteral("inherit"));
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("inherit")});
        QCOMPARE(window.calls->written, QStringList{QStringLiteral("inherit")});
        QVERIFY(window.calls->live.isEmpty());
        QVERIFY(!popover->isVisible());
        QCOMPARE(window.picker->swatch()->color(), std::nullopt);
    }

    void everyKeywordHasAButton()
    {
        PickerWindow window(QStringLiteral("#3b82f6"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        for (const QString &keyword : {QStringLiteral("transparent"), QStringLiteral("inherit"),
                                       QStringLiteral("currentColor")}) {
            QAbstractButton *button = popover->keywordButton(keyword);
            QVERIFY(button);
            QCOMPARE(button->text(), keyword);
        }
        QVERIFY(!popover->keywordButton(QStringLiteral("initial")));
        QAbstractButton *transparent = popover->keywordButton(QStringLiteral("transparent"));
        QTest::mouseClick(transparent, Qt::LeftButton, {}, transparent->rect().center());
        QCOMPARE(window.picker->value(), QStringLiteral("transparent"));
        QCOMPARE(window.picker->swatch()->color(), std::optional(Color{0, 0, 0, 0}));
    }

    void paletteCellPickWritesItsHexAndCloses()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        ColorPaletteGrid *grid = popover->grid();
        QCOMPARE(grid->title(), QStringLiteral("Warm"));
        // "ghost" has no colour and no cell.
        QCOMPARE(grid->entries().size(), 3);
        QCOMPARE(grid->entries()[2].name, QStringLiteral("rust"));
        const QRect cell = ColorPaletteGrid::cellRect(1);
        QTest::mouseClick(grid->cellsWidget(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(window.picker->value(), QStringLiteral("#F0D0A0"));
        QCOMPARE(window.picker->model().hexInput(), QStringLiteral("#F0D0A0"));
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#F0D0A0")});
        QVERIFY(!popover->isVisible());
    }

    void pressBetweenCellsPicksNothing()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        const QRect first = ColorPaletteGrid::cellRect(0);
        QTest::mouseClick(popover->grid()->cellsWidget(), Qt::LeftButton, {},
                          QPoint(first.right() + 2, first.center().y()));
        QVERIFY(window.calls->commits.isEmpty());
        QVERIFY(popover->isVisible());
    }

    void listOfHundredKeysShowsSixtyInSixRows()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        window.picker->model().setPaletteIndex(1);
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        ColorPaletteGrid *grid = popover->grid();
        QCOMPARE(grid->title(), QStringLiteral("Hundred"));
        QCOMPARE(grid->entries().size(), 60);
        QCOMPARE(grid->entries().last().name, QStringLiteral("k59"));
        QCOMPARE(grid->cellsWidget()->size(), QSize(236, 6 * 20 + 5 * 4));
        QCOMPARE(ColorPaletteGrid::cellRect(59), QRect(9 * 24, 5 * 24, 20, 20));
        QTest::mouseClick(grid->cellsWidget(), Qt::LeftButton, {},
                          ColorPaletteGrid::cellRect(59).center());
        QCOMPARE(window.calls->commits, QStringList{rgb(59, 196, 118).cssHexString()});
    }

    void pageTurnsStayOpenClampAndSurviveReopening()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        ColorPaletteGrid *grid = popover->grid();
        QVERIFY(grid->header());
        QVERIFY(grid->header()->isVisible());
        QVERIFY(!grid->previousButton()->isEnabled());
        QVERIFY(grid->nextButton()->isEnabled());

        const auto press = [](QToolButton *button) {
            QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
        };
        press(grid->nextButton());
        QVERIFY(popover->isVisible());
        QCOMPARE(window.picker->model().paletteIndex(), 1);
        QCOMPARE(grid->title(), QStringLiteral("Hundred"));
        QVERIFY(grid->previousButton()->isEnabled());
        press(grid->nextButton());
        QCOMPARE(window.picker->model().paletteIndex(), 2);
        QCOMPARE(grid->title(), QStringLiteral("Palette 3"));
        QCOMPARE(grid->entries().size(), 1);
        QVERIFY(!grid->nextButton()->isEnabled());
        // A page turn resizes the popover to the rows it now has.
        QTRY_COMPARE(popover->height(), popover->sizeHint().height());
        QVERIFY(window.calls->commits.isEmpty());

        window.pressOutside();
        QTRY_VERIFY(!popover->isVisible());
        ColorPickerPopover *again = window.pressSwatch();
        QVERIFY(again);
        QVERIFY(again != popover);
        QCOMPARE(again->grid()->title(), QStringLiteral("Palette 3"));
        QCOMPARE(again->grid()->entries().size(), 1);
        press(again->grid()->previousButton());
        QCOMPARE(window.picker->model().paletteIndex(), 1);
        QCOMPARE(again->grid()->entries().size(), 60);
        QVERIFY(window.calls->commits.isEmpty());
    }

    void outsideClickClosesWithoutCommitAndKeepsTheTypedText()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#123456"));
        window.pressOutside();
        QTRY_VERIFY(!popover->isVisible());
        QVERIFY(window.calls->commits.isEmpty());
        QVERIFY(window.calls->written.isEmpty());
        QCOMPARE(window.picker->value(), QStringLiteral("#ffffff"));
        QCOMPARE(window.picker->model().hexInput(), QStringLiteral("#123456"));

        ColorPickerPopover *again = window.pressSwatch();
        QVERIFY(again);
        QCOMPARE(again->field()->text(), QStringLiteral("#123456"));
    }

    void escapeClosesWithoutCommit()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QTest::keyClicks(popover->field(), QStringLiteral("00"));
        QTest::keyClick(popover->field(), Qt::Key_Escape);
        QTRY_VERIFY(!popover->isVisible());
        QVERIFY(window.calls->commits.isEmpty());
    }

    void valueFromOutsideReplacesTheFieldText()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#12"));
        // The same value again is no change: the typed text stays.
        window.picker->setValue(QStringLiteral("#ffffff"));
        QCOMPARE(popover->field()->text(), QStringLiteral("#12"));

        window.picker->setValue(QStringLiteral("#00ff00"));
        QCOMPARE(window.picker->model().hexInput(), QStringLiteral("#00ff00"));
        QCOMPARE(popover->field()->text(), QStringLiteral("#00ff00"));
        QCOMPARE(popover->preview()->color(), std::optional(Color{0, 1, 0, 1}));
        QCOMPARE(window.picker->swatch()->color(), std::optional(Color{0, 1, 0, 1}));
        QVERIFY(popover->isVisible());
        // An outside change is no write of the picker's.
        QVERIFY(window.calls->written.isEmpty());
        QVERIFY(window.calls->commits.isEmpty());
    }

    void nothingOpensWithoutAnActiveWindow()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QTRY_COMPARE(QApplication::activeWindow(), nullptr);
        window.swatchButton()->click();
        QCOMPARE(window.picker->popover(), nullptr);
        QVERIFY(!QApplication::activePopupWidget());
    }

    void secondPressClosesTheOpenPopoverFirst()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        QPointer<ColorPickerPopover> first = window.pressSwatch();
        QVERIFY(first);
        ColorPickerPopover *second = window.pressSwatch();
        QVERIFY(second);
        QVERIFY(second != first);
        QCOMPARE(window.picker->popover(), second);
        QCOMPARE(QApplication::activePopupWidget(), second);
        // The first one is closed, then let go of.
        QTRY_VERIFY(!first);
        QVERIFY(window.calls->commits.isEmpty());
    }

    void closedPopoverTakesASecondClose()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        QAbstractButton *inherit = popover->keywordButton(QStringLiteral("inherit"));
        QTest::mouseClick(inherit, Qt::LeftButton, {}, inherit->rect().center());
        QVERIFY(!popover->isVisible());
        // Kept after closing, and closed again by the next press.
        QCOMPARE(window.picker->popover(), popover);
        QVERIFY(popover->close());
        QVERIFY(window.pressSwatch());
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("inherit")});
    }

    void popoverOpensOnThePointersLeft()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        const QPoint pointer = QCursor::pos();
        const QRect frame = popover->frameGeometry();
        QCOMPARE(frame.right() + 1, pointer.x());
        QVERIFY(qAbs(frame.center().y() - pointer.y()) <= 1);
        QCOMPARE(popover->width(), ColorPickerPopover::popoverWidth);
        QVERIFY(popover->screen()->availableGeometry().contains(frame));
    }

    void popoverNearTheScreensEdgesStaysOnScreen()
    {
        // The picker in the top left corner: no room on the pointer's left,
        // nor above it.
        PickerWindow window(QStringLiteral("#ffffff"), QPoint(4, 4));
        window.window->move(0, 0);
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        const QPoint pointer = QCursor::pos();
        const QRect frame = popover->frameGeometry();
        const QRect screen = popover->screen()->availableGeometry();
        QVERIFY(screen.contains(frame));
        QCOMPARE(frame.left(), pointer.x() + 1);
        // Moved down from its place centred on the pointer.
        QVERIFY(frame.center().y() > pointer.y() + 1);
    }

    void theListsAreReadOnceForTheProcess()
    {
        PickerWindow one(QStringLiteral("#ffffff"));
        QVERIFY(one.show());
        QVERIFY(one.pressSwatch());
        QVERIFY(one.pressSwatch());
        PickerWindow two(QStringLiteral("#000000"));
        QVERIFY(two.show());
        QVERIFY(two.pressSwatch());
        QCOMPARE(listCalls, 1);
    }

    void destroyingAnOpenPickerTakesItsPopover()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        QPointer<ColorPickerPopover> popover = window.pressSwatch();
        QVERIFY(popover);
        delete window.picker;
        QVERIFY(!popover);
        QVERIFY(!QApplication::activePopupWidget());
    }
};

QTEST_MAIN(TestCSSColorPicker)
#include "tst_csscolorpicker.moc"
