// The shared colour chooser lent to pickers and wells: the dialog driven by
// setCurrentColor and closed as a user closes it, with the calls each
// picker and well makes counted.

#include "ColourTestSupport.h"

#include "colour/widgets/ColorSwatchView.h"
#include "colour/widgets/NativeColorWell.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPointer>

using namespace Ombrel;
using ColourTest::closeChooserWindow;
using ColourTest::PickerWindow;

namespace {

QColorDialog *chooser()
{
    return sharedColorDialog();
}

// Opens the picker's popover and presses its button to the chooser.
bool openChooserFrom(PickerWindow &window)
{
    if (!window.show())
        return false;
    ColorPickerPopover *popover = window.pressSwatch();
    if (!popover)
        return false;
    QAbstractButton *button = popover->panelButton();
    QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
    return !popover->isVisible() && chooser()->isVisible();
}

struct WellCalls
{
    int activations = 0;
    int commits = 0;
    QStringList written;
};

struct WellWindow
{
    explicit WellWindow(const QString &value, QPoint at = QPoint(40, 40))
        : calls(std::make_shared<WellCalls>())
    {
        window = std::make_unique<QWidget>();
        window->resize(300, 120);
        const std::shared_ptr<WellCalls> record = calls;
        well = new NativeColorWell(
            value, [record] { ++record->activations; }, [record] { ++record->commits; },
            window.get());
        well->move(at);
        well->resize(well->sizeHint());
        QObject::connect(well, &NativeColorWell::cssValueWritten, well,
                         [record](const QString &value) { record->written.append(value); });
    }

    bool show()
    {
        window->show();
        window->activateWindow();
        QApplication::setActiveWindow(window.get());
        return QTest::qWaitForWindowExposed(window.get());
    }

    void press(NativeColorWell *which = nullptr) const
    {
        NativeColorWell *target = which ? which : well;
        QTest::mouseClick(target, Qt::LeftButton, {}, target->rect().center());
    }

    std::shared_ptr<WellCalls> calls;
    std::unique_ptr<QWidget> window;
    NativeColorWell *well = nullptr;
};

} // namespace

class TestColorPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { ColourTest::failOnWarnings(); }

    void cleanup()
    {
        if (chooser()->isVisible())
            closeChooserWindow();
    }

    void theChooserIsOneNonModalDialogWithAlphaAndNoButtons()
    {
        QColorDialog *dialog = chooser();
        QCOMPARE(chooser(), dialog);
        QVERIFY(dialog->testOption(QColorDialog::ShowAlphaChannel));
        QVERIFY(dialog->testOption(QColorDialog::NoButtons));
        QVERIFY(dialog->testOption(QColorDialog::DontUseNativeDialog));
        QVERIFY(!dialog->isModal());
        QVERIFY(!dialog->parent());
    }

    void chooserOpensWithTheTypedTextNotTheValue()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(window.show());
        ColorPickerPopover *popover = window.pressSwatch();
        QVERIFY(popover);
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#112233"));
        QAbstractButton *button = popover->panelButton();
        QCOMPARE(button->toolTip(), QStringLiteral("Open Color Panel"));
        QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
        QVERIFY(!popover->isVisible());
        QVERIFY(chooser()->isVisible());
        QCOMPARE(chooser()->currentColor(), QColor(0x11, 0x22, 0x33));
        QVERIFY(window.picker->panel().isOpen());
        QCOMPARE(window.picker->panel().currentHex(), QStringLiteral("#112233"));
        QCOMPARE(window.picker->value(), QStringLiteral("#ffffff"));
        QVERIFY(window.calls->live.isEmpty());
        QVERIFY(window.calls->commits.isEmpty());
    }

    void changesAreLiveAndClosingCommitsTheLastOnce()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        chooser()->setCurrentColor(QColor(0x3b, 0x82, 0xf6));
        QCOMPARE(window.calls->live, QStringList{QStringLiteral("#3B82F6")});
        QCOMPARE(window.picker->value(), QStringLiteral("#3B82F6"));
        QCOMPARE(window.picker->model().hexInput(), QStringLiteral("#3B82F6"));
        QCOMPARE(window.picker->swatch()->color(), Color::fromCssString(u"#3B82F6"));
        QCOMPARE(window.calls->written, QStringList{QStringLiteral("#3B82F6")});
        QVERIFY(window.calls->commits.isEmpty());

        chooser()->setCurrentColor(QColor(0x10, 0xb9, 0x81));
        QCOMPARE(window.calls->live,
                 (QStringList{QStringLiteral("#3B82F6"), QStringLiteral("#10B981")}));
        QVERIFY(window.calls->commits.isEmpty());

        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#10B981")});
        QVERIFY(!window.picker->panel().isOpen());
        QCOMPARE(window.picker->value(), QStringLiteral("#10B981"));

        // Closed: later changes and a second close reach nothing.
        chooser()->setCurrentColor(Qt::red);
        closeChooserWindow();
        QCOMPARE(window.calls->live.size(), 2);
        QCOMPARE(window.calls->commits.size(), 1);
        QCOMPARE(window.picker->value(), QStringLiteral("#10B981"));
    }

    void escapeClosesTheChooserLikeItsCloseButton()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        chooser()->setCurrentColor(QColor(0x22, 0x44, 0x66));
        QTest::keyClick(chooser(), Qt::Key_Escape);
        QVERIFY(!chooser()->isVisible());
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#224466")});
    }

    void opacityBelowOneGivesEightDigits()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        chooser()->setCurrentColor(QColor::fromRgbF(0.2f, 0.4f, 0.6f, 0.5f));
        QCOMPARE(window.calls->live.last(), QStringLiteral("#33669980"));
        QCOMPARE(window.picker->value(), QStringLiteral("#33669980"));
        chooser()->setCurrentColor(QColor::fromRgbF(0.2f, 0.4f, 0.6f, 1.0f));
        QCOMPARE(window.calls->live.last(), QStringLiteral("#336699"));
        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#336699")});
    }

    void unreadableStartKeepsTheChoosersColourAndComesBackUnchanged()
    {
        chooser()->setCurrentColor(QColor(0x00, 0xff, 0x00));
        PickerWindow window(QStringLiteral("var(--x)"));
        QVERIFY(openChooserFrom(window));
        QCOMPARE(chooser()->currentColor(), QColor(0x00, 0xff, 0x00));
        QCOMPARE(window.picker->panel().currentHex(), QStringLiteral("var(--x)"));
        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("var(--x)")});
        QVERIFY(window.calls->live.isEmpty());
        QCOMPARE(window.picker->value(), QStringLiteral("var(--x)"));
    }

    void changeWhileClosedCallsNothing()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#ffffff")});
        // The chooser shown again by someone else: its changes are not this
        // picker's.
        chooser()->show();
        chooser()->setCurrentColor(QColor(0x04, 0x05, 0x06));
        closeChooserWindow();
        QVERIFY(!window.picker->panel().isOpen());
        QVERIFY(window.calls->live.isEmpty());
        QCOMPARE(window.calls->commits.size(), 1);
        QCOMPARE(window.picker->value(), QStringLiteral("#ffffff"));
    }

    void anotherWindowClosingLeavesTheChooserHeld()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        QWidget other;
        other.resize(100, 100);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        QVERIFY(other.close());
        QVERIFY(window.window->close());
        QVERIFY(window.picker->panel().isOpen());
        QVERIFY(window.calls->commits.isEmpty());
        chooser()->setCurrentColor(QColor(0xaa, 0xbb, 0xcc));
        QCOMPARE(window.calls->live, QStringList{QStringLiteral("#AABBCC")});
        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("#AABBCC")});
    }

    void twoPickersOpenedInTurnBothFollowAndEachCommitsOnce()
    {
        PickerWindow first(QStringLiteral("#ffffff"));
        PickerWindow second(QStringLiteral("#0000ff"));
        QVERIFY(openChooserFrom(first));
        QVERIFY(openChooserFrom(second));
        // The second opening set the chooser's colour: a change the first
        // one, still holding the chooser, hears.
        QCOMPARE(first.calls->live, QStringList{QStringLiteral("#0000FF")});
        QVERIFY(second.calls->live.isEmpty());

        chooser()->setCurrentColor(QColor(0x12, 0x34, 0x56));
        QCOMPARE(first.calls->live.last(), QStringLiteral("#123456"));
        QCOMPARE(second.calls->live, QStringList{QStringLiteral("#123456")});
        QCOMPARE(first.picker->value(), QStringLiteral("#123456"));
        QCOMPARE(second.picker->value(), QStringLiteral("#123456"));

        closeChooserWindow();
        QCOMPARE(first.calls->commits, QStringList{QStringLiteral("#123456")});
        QCOMPARE(second.calls->commits, QStringList{QStringLiteral("#123456")});
    }

    void openingAgainWhileOpenTakesTheNewStart()
    {
        PickerWindow window(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(window));
        QVERIFY(openChooserFrom(window));
        QCOMPARE(window.picker->panel().currentHex(), QStringLiteral("#ffffff"));
        window.picker->setValue(QStringLiteral("nothing readable"));
        QVERIFY(openChooserFrom(window));
        QCOMPARE(window.picker->panel().currentHex(), QStringLiteral("nothing readable"));
        closeChooserWindow();
        QCOMPARE(window.calls->commits, QStringList{QStringLiteral("nothing readable")});
    }

    void destroyingAnOpenPickerLeavesTheChooserOpen()
    {
        auto window = std::make_unique<PickerWindow>(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(*window));
        const std::shared_ptr<ColourTest::Calls> calls = window->calls;
        window.reset();
        QVERIFY(chooser()->isVisible());
        chooser()->setCurrentColor(QColor(0x01, 0x01, 0x01));
        closeChooserWindow();
        QVERIFY(calls->live.isEmpty());
        QVERIFY(calls->commits.isEmpty());
    }

    void wellShowsBlackForTextThatIsNoColour()
    {
        WellWindow window(QStringLiteral("nonsense"));
        QVERIFY(window.show());
        QCOMPARE(window.well->shownColor(), QColor(Qt::black));
        const QImage image = window.well->grab().toImage();
        QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::black));

        WellWindow red(QStringLiteral("#ff0000"));
        QCOMPARE(red.well->shownColor(), QColor(Qt::red));
    }

    void wellActivatedAndDeactivatedWithoutChangeCallsEachOnce()
    {
        WellWindow window(QStringLiteral("#ff0000"));
        QVERIFY(window.show());
        window.press();
        QVERIFY(window.well->isActive());
        QCOMPARE(window.calls->activations, 1);
        QCOMPARE(window.calls->commits, 0);
        QVERIFY(chooser()->isVisible());
        QCOMPARE(chooser()->currentColor(), QColor(Qt::red));
        closeChooserWindow();
        QVERIFY(!window.well->isActive());
        QCOMPARE(window.calls->activations, 1);
        QCOMPARE(window.calls->commits, 1);
        QVERIFY(window.calls->written.isEmpty());
        QCOMPARE(window.well->cssValue(), QStringLiteral("#ff0000"));
    }

    void wellFollowsTheChooserAndIgnoresTheValueWhileActive()
    {
        WellWindow window(QStringLiteral("nonsense"));
        QVERIFY(window.show());
        window.press();
        QCOMPARE(chooser()->currentColor(), QColor(Qt::black));
        chooser()->setCurrentColor(QColor(0x3b, 0x82, 0xf6));
        QCOMPARE(window.well->cssValue(), QStringLiteral("#3B82F6"));
        QCOMPARE(window.well->shownColor(), QColor(0x3b, 0x82, 0xf6));
        window.well->setCssValue(QStringLiteral("#00ff00"));
        QCOMPARE(window.well->cssValue(), QStringLiteral("#3B82F6"));
        chooser()->setCurrentColor(QColor(0x11, 0x11, 0x11));
        QCOMPARE(window.calls->written,
                 (QStringList{QStringLiteral("#3B82F6"), QStringLiteral("#111111")}));
        closeChooserWindow();
        QCOMPARE(window.calls->activations, 1);
        QCOMPARE(window.calls->commits, 1);
        // Inactive, it takes the value and ignores the chooser.
        window.well->setCssValue(QStringLiteral("#00ff00"));
        QCOMPARE(window.well->shownColor(), QColor(Qt::green));
        chooser()->setCurrentColor(Qt::blue);
        QCOMPARE(window.well->cssValue(), QStringLiteral("#00ff00"));
        QCOMPARE(window.calls->written.size(), 2);
    }

    void wellLetsGoWhenPressedAgainOrWhenAnotherTakesTheChooser()
    {
        WellWindow window(QStringLiteral("#ff0000"));
        auto *other = new NativeColorWell(QStringLiteral("#0000ff"), {}, {}, window.window.get());
        other->move(120, 40);
        other->resize(other->sizeHint());
        QVERIFY(window.show());
        window.press();
        window.press();
        QVERIFY(!window.well->isActive());
        QCOMPARE(window.calls->activations, 1);
        QCOMPARE(window.calls->commits, 1);

        window.press();
        window.press(other);
        QVERIFY(other->isActive());
        QVERIFY(!window.well->isActive());
        QCOMPARE(window.calls->activations, 2);
        QCOMPARE(window.calls->commits, 2);
        QCOMPARE(chooser()->currentColor(), QColor(Qt::blue));

        PickerWindow picker(QStringLiteral("#ffffff"));
        QVERIFY(openChooserFrom(picker));
        QVERIFY(!other->isActive());
    }
};

QTEST_MAIN(TestColorPanel)
#include "tst_colorpanel.moc"
