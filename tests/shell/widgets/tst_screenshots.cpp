// Pictures of the three window states for review, in a light and a dark
// palette, written to the build folder's screenshots/. Style, font and pixel
// ratio are pinned so that the pictures compare across runs.

#include "ScreenshotSupport.h"
#include "ShellTestSupport.h"

#include "workspace/AppPreferences.h"
#include "workspace/WorkspaceRegistry.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

using namespace Ombrel;
using namespace ShellTest;

namespace {

double lightness(const QImage &image, QPoint at)
{
    return image.pixelColor(at).lightnessF();
}

} // namespace

class TestScreenshots : public QObject
{
    Q_OBJECT

    QDir m_out;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;
    QTemporaryDir m_dir;

    QImage shoot(MainWindow *window, const QString &name)
    {
        window->resize(1280, 800);
        if (!QTest::qWaitForWindowExposed(window))
            return {};
        QTest::qWait(0);
        const QImage image = window->grab().toImage();
        image.save(m_out.filePath(name + QStringLiteral(".png")));
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        m_out = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
        QVERIFY(m_out.mkpath(QStringLiteral(".")));
        QVERIFY(QDir().mkpath(m_dir.filePath(QStringLiteral("empty"))));
        WorkspaceTest::sessionStore().clear();
    }

    void init()
    {
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    void cleanup() { m_app.reset(); }

    void threeStatesInLightAndDark_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void threeStatesInLightAndDark()
    {
        QFETCH(bool, dark);
        QApplication::setPalette(Screenshots::palette(dark));
        const QString suffix = dark ? QStringLiteral("-dark") : QStringLiteral("-light");

        const QImage welcome =
            shoot(m_app->openWindow(WindowConfig(true)), QStringLiteral("welcome") + suffix);
        const QImage empty =
            shoot(m_app->openWindow(WindowConfig(false, m_dir.filePath(QStringLiteral("empty")))),
                  QStringLiteral("empty-folder") + suffix);
        MainWindow *editing = m_app->openWindow(
            WindowConfig(false, QStringLiteral(OMBREL_SOURCE_DIR "/examples/sample-site"),
                         QStringLiteral(OMBREL_SOURCE_DIR "/examples/sample-site/theme.css")));
        QTRY_COMPARE(editing->workspace()->selectedFile()->name(), QStringLiteral("theme.css"));
        QCOMPARE(editing->state(), WindowState::Editing);
        const QImage layout = shoot(editing, QStringLiteral("editing") + suffix);

        for (const QImage &image : {welcome, empty, layout}) {
            QVERIFY(!image.isNull());
            // The window background shows the palette's scheme.
            const double corner = lightness(image, QPoint(image.width() / 2, image.height() - 20));
            QVERIFY2(dark ? corner < 0.3 : corner > 0.7, qPrintable(QString::number(corner)));
        }
        for (const QString &name :
             {QStringLiteral("welcome"), QStringLiteral("empty-folder"), QStringLiteral("editing")})
            QVERIFY(QFileInfo::exists(m_out.filePath(name + suffix + QStringLiteral(".png"))));
    }
};

QTEST_MAIN(TestScreenshots)
#include "tst_screenshots.moc"
