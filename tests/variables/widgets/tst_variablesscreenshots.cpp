// Writes pictures of the variables tab for review to the build folder's
// screenshots/ directory: groups open and folded, a selected row, a value
// being edited beside its swatch, the rename field, the drop line, both
// empty states and the no-match message, in a light and a dark palette.
// The style, font and pixel ratio are pinned so that runs compare.

#include "ScreenshotSupport.h"
#include "VariablesPanelTestSupport.h"

#include "canvas/CanvasController.h"
#include "canvas/CanvasState.h"
#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "variables/widgets/GroupChevrons.h"

#include <QCursor>
#include <QDir>
#include <QImage>
#include <QLineEdit>

using namespace Ombrel;
using Screenshots::darkPalette;
using Screenshots::lightPalette;
using VariablesTest::PanelWindow;

namespace {

const QString sampleCss = QStringLiteral(
    ":root { --accent: #3b82f6; --accent-dark: #1e40af; --gap: 4px; --radius: 8px; "
    "--font: \"Inter\", system-ui, sans-serif; }\n"
    ".btn { --btn-bg: var(--accent); --btn-fg: white; background: var(--btn-bg); }\n"
    ".card { padding: var(--gap); --shadow: 0 1px 3px rgba(0, 0, 0, 0.2); --card-bg: #fef3c7; }\n"
    "body.dark { --accent: #60a5fa; --surface: #111827; }\n");

} // namespace

class TestVariablesScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    QImage save(QWidget *widget, const QString &name)
    {
        const QImage image = Screenshots::savePicture(widget, m_folder, name);
        [&] { QVERIFY(!image.isNull()); }();
        return image;
    }

    static void settle(PanelWindow &w)
    {
        QTRY_VERIFY(!w.list()->chevrons()->isTurning());
        QApplication::processEvents();
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void groupsOpenFoldedSelectedAndEdited()
    {
        for (const auto &[palette, scheme] :
             {std::pair{lightPalette(), "light"}, std::pair{darkPalette(), "dark"}}) {
            const QString suffix = QStringLiteral("-") + QString::fromLatin1(scheme);
            PanelWindow w(sampleCss, QSize(600, 560));
            w.window.setPalette(palette);
            QVERIFY(w.show());
            const QImage open = save(&w.window, QStringLiteral("variables-groups") + suffix);

            QTest::mouseClick(w.viewport(), Qt::LeftButton, {}, w.headerOf(QStringLiteral(".btn")));
            settle(w);
            const QImage folded = save(&w.window, QStringLiteral("variables-folded") + suffix);
            QVERIFY(folded != open);
            QTest::mouseClick(w.viewport(), Qt::LeftButton, {}, w.headerOf(QStringLiteral(".btn")));
            settle(w);

            // Selected by a click on its value; the edit is left with Escape.
            QTest::mouseClick(w.viewport(), Qt::LeftButton, {},
                              w.valueCell(QStringLiteral("--gap")));
            VariableRow *gap = w.rowWidget(QStringLiteral("--gap"));
            QVERIFY(gap);
            QTRY_VERIFY(gap->valueField()->hasFocus());
            QTest::keyClick(gap->valueField(), Qt::Key_Escape);
            QTRY_VERIFY(!w.rowWidget(QStringLiteral("--gap")));
            QCOMPARE(w.workspace.selectedVariablePropID(), w.entry(QStringLiteral("--gap")).propID);
            save(&w.window, QStringLiteral("variables-selected") + suffix);

            QTest::mouseClick(w.viewport(), Qt::LeftButton, {},
                              w.valueCell(QStringLiteral("--accent")));
            VariableRow *accent = w.rowWidget(QStringLiteral("--accent"));
            QVERIFY(accent);
            QTRY_VERIFY(accent->valueField()->hasFocus());
            accent->valueField()->selectAll();
            QTest::keyClicks(accent->valueField(), QStringLiteral("#2563eb"));
            const QImage editing = save(&w.window, QStringLiteral("variables-value-edit") + suffix);
            QVERIFY(editing != open);
            QTest::keyClick(accent->valueField(), Qt::Key_Escape);

            QTest::mouseClick(w.viewport(), Qt::LeftButton, {},
                              w.nameCell(QStringLiteral("--radius")));
            VariableRow *radius = w.rowWidget(QStringLiteral("--radius"));
            QVERIFY(radius);
            QTRY_VERIFY(radius->nameField()->hasFocus());
            QTest::keyClicks(radius->nameField(), QStringLiteral("-lg"));
            save(&w.window, QStringLiteral("variables-rename") + suffix);
            QTest::keyClick(radius->nameField(), Qt::Key_Escape);
            QTRY_VERIFY(!w.rowWidget(QStringLiteral("--radius")));

            const QPoint start = w.rowRect(w.rowOf(QStringLiteral("--gap"))).center();
            VariablesTest::dragBy(w.viewport(), start, 3 * int(VariablesController::rowPitch));
            QVERIFY(!w.list()->dropLineRect().isEmpty());
            save(&w.window, QStringLiteral("variables-drop-line") + suffix);
            VariablesTest::release(w.viewport(),
                                   start + QPoint(0, 3 * int(VariablesController::rowPitch)));

            w.view->controller().state().setVariableSearchText(QStringLiteral(" nothing "));
            QVERIFY(!w.list()->noMatchRect().isEmpty());
            save(&w.window, QStringLiteral("variables-no-match") + suffix);
        }
    }

    void thePickerOfAPaintedSwatch()
    {
        PanelWindow w(sampleCss, QSize(600, 400));
        w.window.setPalette(lightPalette());
        QVERIFY(w.show());
        const QPoint swatch = w.geometry(QStringLiteral("--accent-dark")).swatch.center();
        QCursor::setPos(w.viewport()->mapToGlobal(swatch));
        QTest::mouseClick(w.viewport(), Qt::LeftButton, {}, swatch);
        VariableRow *row = w.rowWidget(QStringLiteral("--accent-dark"));
        QVERIFY(row);
        ColorPickerPopover *popover = row->picker()->popover();
        QTRY_VERIFY(popover && popover->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(popover));
        save(popover, QStringLiteral("variables-picker-popover-light"));
        popover->close();
    }

    void noMatchUnderFoldedGroups()
    {
        PanelWindow w(sampleCss, QSize(600, 400));
        w.window.setPalette(lightPalette());
        QVERIFY(w.show());
        QTest::mouseClick(w.viewport(), Qt::LeftButton, {}, w.headerOf(QStringLiteral(":root")));
        settle(w);
        w.view->controller().state().setVariableSearchText(QStringLiteral("3b82"));
        QCOMPARE(w.rows(), QStringList{"# :root"});
        save(&w.window, QStringLiteral("variables-no-match-folded-light"));
    }

    void bothEmptyStates()
    {
        for (const auto &[palette, scheme] :
             {std::pair{lightPalette(), "light"}, std::pair{darkPalette(), "dark"}}) {
            const QString suffix = QStringLiteral("-") + QString::fromLatin1(scheme);
            PanelWindow empty{QString(), QSize(600, 560)};
            empty.window.setPalette(palette);
            QVERIFY(empty.show());
            const QImage none =
                save(&empty.window, QStringLiteral("variables-empty-file") + suffix);
            PanelWindow plain(QStringLiteral(".x { color: red; }"), QSize(600, 560));
            plain.window.setPalette(palette);
            QVERIFY(plain.show());
            const QImage noVariables =
                save(&plain.window, QStringLiteral("variables-no-variables") + suffix);
            QVERIFY(none != noVariables);
        }
    }
};

QTEST_MAIN(TestVariablesScreenshots)
#include "tst_variablesscreenshots.moc"
