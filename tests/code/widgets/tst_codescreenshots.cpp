// Writes pictures of the code tab for review to the build folder's
// screenshots/ directory: a stylesheet in a light and a dark palette, a
// commented block typed in, and the cursor after a jump from the variables
// tab. The style, font and pixel ratio are pinned so that runs compare.

#include "CodeEditorTestSupport.h"
#include "ScreenshotSupport.h"

#include "canvas/widgets/TabContentArea.h"

#include <QDir>
#include <QImage>
#include <QTest>

using namespace Ombrel;
using CodeTest::CodeWindow;

namespace {

const QString sampleCss = QStringLiteral(
    ":root { --accent: #3b82f6; --radius: 8px; --shadow: 0 1px 2px rgba(0, 0, 0, 0.2); }\n"
    ".btn { background: var(--accent); color: #fff; border-radius: var(--radius, 4px); }\n"
    "#header { background-color: #111827; color: #f9fafb; border: 2px dashed #f59e0b; }\n"
    "a:hover { color: #2563eb; }\n"
    ".hero { background: linear-gradient(135deg, #6366f1, #ec4899); color: white; }\n"
    "body.dark .panel .title span { font-weight: bold; }\n");

} // namespace

class TestCodeScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    QImage save(QWidget *widget, const QString &name)
    {
        const QImage image = Screenshots::savePicture(widget, m_folder, name);
        [&] { QVERIFY(!image.isNull()); }();
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void stylesheetInBothPalettes()
    {
        QImage images[2];
        for (const bool dark : {false, true}) {
            CodeWindow window(sampleCss, QSize(620, 560));
            window.window.setPalette(Screenshots::palette(dark));
            QVERIFY(window.show());
            window.clickTab(CanvasTab::Code);
            QTRY_COMPARE(TabContentArea::opacityOf(window.pane()), 1.0);
            images[dark] = save(&window.window,
                                dark ? QStringLiteral("code-dark") : QStringLiteral("code-light"));
        }
        QVERIFY(images[0] != images[1]);
    }

    void commentedBlock()
    {
        CodeWindow window(sampleCss, QSize(620, 560));
        window.window.setPalette(Screenshots::palette(false));
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Code);
        window.editor()->setFocus();
        QTRY_VERIFY(window.editor()->hasFocus());
        const qsizetype header = window.coordinator()->text().indexOf(u"#header");
        window.putCursor(header);
        CodeTest::type(window.editor(), QStringLiteral("/* Kept while editing:\n"));
        window.putCursor(window.coordinator()->text().indexOf(u"a:hover"));
        CodeTest::type(window.editor(), QStringLiteral("*/\n"));
        QTRY_COMPARE(TabContentArea::opacityOf(window.pane()), 1.0);
        save(&window.window, QStringLiteral("code-commented-block"));
    }

    void jumpFromTheVariables()
    {
        CodeWindow window(sampleCss, QSize(620, 560));
        window.window.setPalette(Screenshots::palette(true));
        QVERIFY(window.show());
        const CSSRulesetPtr root = window.file->rulesets().first();
        window.clickTab(CanvasTab::Variables);
        window.workspace.setSelectedVariableRulesetID(root->id());
        window.workspace.setSelectedVariablePropID(root->properties()[2].id);
        window.clickTab(CanvasTab::Code);
        QTRY_COMPARE(window.editor()->textCursor().position(),
                     window.coordinator()->text().indexOf(u"    --shadow"));
        QTRY_COMPARE(TabContentArea::opacityOf(window.pane()), 1.0);
        save(&window.window, QStringLiteral("code-jump-from-variables"));
    }
};

QTEST_MAIN(TestCodeScreenshots)
#include "tst_codescreenshots.moc"
