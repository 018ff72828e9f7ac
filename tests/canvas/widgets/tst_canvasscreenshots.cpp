// Writes pictures of the canvas pane for review to the build folder's
// screenshots/ directory: cards styled and plain, with one and with several
// selected, in a light and a dark palette, the empty file and both sheets.
// The style, font and pixel ratio are pinned so that runs compare.

#include "CanvasViewTestSupport.h"
#include "ScreenshotSupport.h"

#include "canvas/widgets/NewRulesetSheet.h"
#include "canvas/widgets/NewVariableSheet.h"
#include "canvas/widgets/SelectionFade.h"
#include "workspace/AppPreferences.h"

#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QTest>

using namespace Ombrel;
using CanvasTest::CanvasWindow;
using Screenshots::darkPalette;
using Screenshots::lightPalette;

namespace {

const QString sampleCss = QStringLiteral(
    ":root { --accent: #3b82f6; --sand: #fef3c7; }\n"
    ".btn { background: var(--accent); color: #fff; border-radius: 8px; font-weight: 600; }\n"
    "#header { background-color: #111827; color: #f9fafb; border: 2px dashed #f59e0b; }\n"
    ".card > p { color: #374151; border: 1px solid #d1d5db; }\n"
    "a:hover { color: #2563eb; }\n"
    "img.logo { border-radius: 50%; }\n"
    ".hero { background: linear-gradient(135deg, #6366f1, #ec4899); color: white; "
    "border-radius: 16px; }\n"
    "body.dark .panel .title span { font-weight: bold; }\n"
    "& .nested { color: red; }\n"
    ".warning { background-color: var(--sand); color: #92400e; border-style: dotted; "
    "border-color: #f59e0b; }\n");

} // namespace

class TestCanvasScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    QImage save(QWidget *widget, const QString &name)
    {
        const QImage image = Screenshots::savePicture(widget, m_folder, name);
        [&] { QVERIFY(!image.isNull()); }();
        return image;
    }

    QImage cards(bool styled, const QPalette &palette, const QStringList &selected,
                 const QString &name)
    {
        AppPreferences::shared().setShowNodeStyling(styled);
        CanvasWindow canvas(sampleCss, QSize(560, 640));
        canvas.window.setPalette(palette);
        [&] { QVERIFY(canvas.show()); }();
        ulong time = 1000;
        for (const QString &selector : selected) {
            const int row = canvas.view->nodeModel()->rowOf(canvas.named(selector)->id());
            CanvasTest::clickAt(canvas.viewport(), canvas.cardEnd(row),
                                time == 1000 ? Qt::NoModifier : Qt::ControlModifier, time);
            time += 1000;
        }
        [&] { QTRY_VERIFY(!canvas.list()->selectionFade()->isRunning()); }();
        return save(&canvas.window, name);
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void cardsStyledAndPlainInBothPalettes()
    {
        const QImage styled = cards(true, lightPalette(), {".btn"}, "canvas-styled-light");
        const QImage plain = cards(false, lightPalette(), {".btn"}, "canvas-plain-light");
        QVERIFY(styled != plain);
        const QImage darkStyled = cards(true, darkPalette(), {".btn"}, "canvas-styled-dark");
        QVERIFY(darkStyled != styled);
        cards(false, darkPalette(), {".btn"}, "canvas-plain-dark");
        const QImage multi = cards(true, lightPalette(), {"#header", ".card > p", "img.logo"},
                                   "canvas-multiselection-light");
        QVERIFY(multi != styled);
        cards(true, darkPalette(), {"#header", ".card > p", "img.logo"},
              "canvas-multiselection-dark");
        AppPreferences::shared().setShowNodeStyling(true);
    }

    void emptyFileInBothPalettes()
    {
        for (const auto &[palette, name] : {std::pair{lightPalette(), "canvas-empty-light"},
                                            std::pair{darkPalette(), "canvas-empty-dark"}}) {
            CanvasWindow canvas(QString(), QSize(560, 640));
            canvas.window.setPalette(palette);
            QVERIFY(canvas.show());
            QCOMPARE(canvas.view->currentNodePage(), (QWidget *)canvas.view->emptyFileView());
            save(&canvas.window, QString::fromLatin1(name));
        }
    }

    void bothSheets()
    {
        CanvasWindow canvas(sampleCss, QSize(560, 640));
        canvas.window.setPalette(lightPalette());
        QVERIFY(canvas.show());
        canvas.workspace.setShouldShowNewRulesetSheet(true);
        QTRY_VERIFY(canvas.view->newRulesetSheet() && canvas.view->newRulesetSheet()->isVisible());
        QTest::keyClicks(canvas.view->newRulesetSheet()->selectorField(),
                         QStringLiteral(".toolbar"));
        save(canvas.view->newRulesetSheet(), QStringLiteral("sheet-new-ruleset"));
        QTest::keyClick(canvas.view->newRulesetSheet()->selectorField(), Qt::Key_Escape);
        QTRY_VERIFY(!canvas.view->newRulesetSheet()->isVisible());

        canvas.workspace.setShouldAddVariable(true);
        QTRY_VERIFY(canvas.view->newVariableSheet() &&
                    canvas.view->newVariableSheet()->isVisible());
        QTest::keyClicks(canvas.view->newVariableSheet()->nameField(), QStringLiteral("radius"));
        QTest::keyClicks(canvas.view->newVariableSheet()->valueField(), QStringLiteral("6px"));
        save(canvas.view->newVariableSheet(), QStringLiteral("sheet-new-variable"));
    }
};

QTEST_MAIN(TestCanvasScreenshots)
#include "tst_canvasscreenshots.moc"
