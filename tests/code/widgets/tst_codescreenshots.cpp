// Writes pictures of the code tab for review to the build folder's
// screenshots/ directory: a stylesheet in a light and a dark palette, a
// commented block typed in, and the cursor after a jump from the variables
// tab. The style, font and pixel ratio are pinned so that runs compare.

#include "CodeEditorTestSupport.h"

#include "canvas/widgets/TabContentArea.h"

#include <QDir>
#include <QImage>
#include <QStyle>
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

QPalette palette(bool dark)
{
    if (!dark) {
        QPalette light = QApplication::style()->standardPalette();
        light.setColor(QPalette::Window, QColor(0xf5, 0xf5, 0xf7));
        light.setColor(QPalette::Base, Qt::white);
        return light;
    }
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::WindowText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Base, QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Text, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
    palette.setColor(QPalette::ButtonText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x98, 0x98, 0x9d));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

class TestCodeScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    QImage save(QWidget *widget, const QString &name)
    {
        QApplication::processEvents();
        const QImage image = widget->grab().toImage();
        [&] {
            QVERIFY(!image.isNull());
            QVERIFY(image.save(m_folder.filePath(name + QStringLiteral(".png"))));
        }();
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(QStringLiteral("Fusion"));
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSize(10);
        QApplication::setFont(font);
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void stylesheetInBothPalettes()
    {
        QImage images[2];
        for (const bool dark : {false, true}) {
            CodeWindow window(sampleCss, QSize(620, 560));
            window.window.setPalette(palette(dark));
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
        window.window.setPalette(palette(false));
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
        window.window.setPalette(palette(true));
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
