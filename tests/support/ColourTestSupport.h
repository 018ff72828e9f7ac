#pragma once

// Shared by the tests of the colour tools: a window holding a swatch whose
// callbacks are recorded, presses as a user makes them, and the shared
// colour chooser.

#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "colour/widgets/SharedColorDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QCursor>
#include <QRegularExpression>
#include <QTest>

#include <memory>

namespace ColourTest {

// Any complaint of Qt fails the test, but for what the offscreen platform
// cannot do for windows.
inline void failOnWarnings()
{
    QTest::failOnWarning(
        QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
}

struct Calls
{
    QStringList live;
    QStringList commits;
    QStringList written;
};

// A window with one picker at (x, y) and the calls it made.
struct PickerWindow
{
    explicit PickerWindow(const QString &value, QPoint at = QPoint(200, 40))
        : calls(std::make_shared<Calls>())
    {
        window = std::make_unique<QWidget>();
        window->resize(420, 200);
        window->move(300, 200);
        const std::shared_ptr<Calls> record = calls;
        picker = new Ombrel::CSSColorPicker(
            value, [record](const QString &hex) { record->live.append(hex); },
            [record](const QString &hex) { record->commits.append(hex); }, window.get());
        picker->move(at);
        QObject::connect(picker, &Ombrel::CSSColorPicker::valueWritten, picker,
                         [record](const QString &value) { record->written.append(value); });
    }

    bool show()
    {
        window->show();
        window->activateWindow();
        QApplication::setActiveWindow(window.get());
        return QTest::qWaitForWindowExposed(window.get()) &&
               QTest::qWaitForWindowActive(window.get());
    }

    QAbstractButton *swatchButton() const { return picker->swatchButton(); }
    QPoint swatchCentre() const { return swatchButton()->rect().center(); }

    // A press on the swatch with the pointer on it; answers the popover that
    // opened, shown, or none.
    Ombrel::ColorPickerPopover *pressSwatch()
    {
        QCursor::setPos(swatchButton()->mapToGlobal(swatchCentre()));
        QTest::mouseClick(swatchButton(), Qt::LeftButton, {}, swatchCentre());
        Ombrel::ColorPickerPopover *popover = picker->popover();
        if (!popover || !popover->isVisible() || !QTest::qWaitForWindowExposed(popover))
            return nullptr;
        return popover;
    }

    // A press in the window, away from the swatch, as the window system
    // delivers it: with a popover open, it is what closes the popover.
    void pressOutside() const
    {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, QPoint(20, 150));
    }

    std::shared_ptr<Calls> calls;
    std::unique_ptr<QWidget> window;
    Ombrel::CSSColorPicker *picker = nullptr;
};

// Closes the shared chooser as a user does: its window's close button.
inline void closeChooserWindow()
{
    Ombrel::sharedColorDialog()->close();
}

} // namespace ColourTest
