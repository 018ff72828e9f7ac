// The notice over the canvas of a file a save does not keep whole: shown for
// such a file with its counts, not for a file in the generated form, its
// words after the save, dismissed per file, in the palette's colours, and
// pictured for review in a light and a dark palette.

#include "ScreenshotSupport.h"
#include "StylesheetFiles.h"

#include "canvas/SaveNotice.h"
#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/OriginalNotice.h"
#include "canvas/widgets/TabContentArea.h"
#include "workspace/OriginalStore.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Ombrel;
using Screenshots::darkPalette;
using Screenshots::lightPalette;
using namespace StylesheetFiles;

namespace {

const QByteArray themeCss = "/* Theme */\n@media print { .card { color: black } }\n"
                            ".card { color: #1d4ed8; background: #eff6ff; border-radius: 8px }\n"
                            ".btn { background: #2563eb; color: white; border-radius: 6px }\n"
                            "/* end */\n";
const QByteArray otherCss = "@import url(base.css);\nb{margin:0}\n";
const QByteArray plainCss = "a {\n    color: red;\n}\n";

// A window with a canvas over a workspace on a real folder of three files.
struct NoticeWindow
{
    explicit NoticeWindow(const QString &folder, QSize size = QSize(620, 360))
    {
        workspace.openFolder(folder);
        view = new CanvasView(workspace, &undo, &window);
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view);
        window.resize(size);
    }

    bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }

    void select(const QString &name)
    {
        workspace.selectFile(QDir(workspace.folderPath()).filePath(name));
    }

    OriginalNotice *notice() const { return view->originalNotice(); }

    UndoManager undo;
    Workspace workspace;
    QWidget window;
    CanvasView *view = nullptr;
};

} // namespace

class TestOriginalNotice : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_folder;

    QString path(const QString &name) const { return QDir(m_folder).filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
    }

    void init()
    {
        QVERIFY(m_dir.isValid());
        m_folder = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()));
        QVERIFY(writeFile(path(QStringLiteral("theme.css")), themeCss));
        QVERIFY(writeFile(path(QStringLiteral("other.css")), otherCss));
        QVERIFY(writeFile(path(QStringLiteral("plain.css")), plainCss));
    }

    void cleanup() { CSSFile::setOriginalKeeper({}); }

    void showsForATextASaveRewritesAndNotForAWholeOne()
    {
        NoticeWindow canvas(m_folder);
        canvas.select(QStringLiteral("theme.css"));
        QVERIFY(canvas.show());
        QVERIFY(canvas.notice()->isVisible());
        QCOMPARE(canvas.notice()->text(),
                 QStringLiteral("Saving rewrites this file without its 1 at-rule and 2 comments; "
                                "the original is kept."));
        QCOMPARE(canvas.notice()->toolTip(), canvas.notice()->text());
        // One line over the cards, whatever the width.
        const int height = canvas.notice()->height();
        QVERIFY(height < 2 * canvas.notice()->fontMetrics().height());
        const QSize wide = canvas.notice()->size();
        canvas.window.resize(canvas.window.minimumSizeHint().width(), 360);
        QTRY_VERIFY(canvas.notice()->width() < wide.width());
        QVERIFY(canvas.notice()->width() <
                canvas.notice()->fontMetrics().horizontalAdvance(canvas.notice()->text()));
        QCOMPARE(canvas.notice()->height(), height);
        QVERIFY(canvas.notice()->geometry().bottom() < canvas.view->tabContent()->geometry().top());

        canvas.select(QStringLiteral("plain.css"));
        QVERIFY(!canvas.notice()->isVisible());
        QVERIFY(canvas.notice()->text().isEmpty());
        canvas.select(QStringLiteral("other.css"));
        QVERIFY(canvas.notice()->isVisible());
        QCOMPARE(canvas.notice()->text(),
                 QStringLiteral("Saving rewrites this file without its 1 at-rule; the original is "
                                "kept."));
    }

    // A dismissed notice stays away for its file only; news that the
    // original could not be kept shows all the same.
    void dismissedPerFile()
    {
        NoticeWindow canvas(m_folder);
        canvas.select(QStringLiteral("theme.css"));
        QVERIFY(canvas.show());
        QTest::mouseClick(canvas.notice()->dismissButton(), Qt::LeftButton);
        QVERIFY(!canvas.notice()->isVisible());
        canvas.select(QStringLiteral("other.css"));
        QVERIFY(canvas.notice()->isVisible());
        canvas.select(QStringLiteral("theme.css"));
        QVERIFY(!canvas.notice()->isVisible());

        // Kept, as promised: still dismissed.
        auto store = std::make_shared<OriginalStore>(m_dir.filePath(QStringLiteral("originals")));
        OriginalStore::install(store);
        canvas.workspace.saveCurrentFile();
        QCOMPARE(canvas.workspace.selectedFile()->originalState(), OriginalState::Kept);
        QVERIFY(!canvas.notice()->isVisible());

        // Not kept: shown, though that file's notice was dismissed before.
        canvas.select(QStringLiteral("other.css"));
        QTest::mouseClick(canvas.notice()->dismissButton(), Qt::LeftButton);
        QVERIFY(!canvas.notice()->isVisible());
        const QString blocker = m_dir.filePath(QStringLiteral("blocker"));
        QVERIFY(writeFile(blocker, "a file where the data folder should be"));
        OriginalStore::install(
            std::make_shared<OriginalStore>(QDir(blocker).filePath(QStringLiteral("originals"))));
        canvas.workspace.saveCurrentFile();
        QVERIFY(canvas.notice()->isVisible());
        QCOMPARE(canvas.notice()->text(),
                 QStringLiteral("Saved without its 1 at-rule; the original could not be kept."));
        QCOMPARE(readFile(path(QStringLiteral("other.css"))),
                 QByteArray("b {\n    margin: 0;\n}\n"));
    }

    void wordsChangeWithTheSave()
    {
        NoticeWindow canvas(m_folder);
        canvas.select(QStringLiteral("theme.css"));
        QVERIFY(canvas.show());
        auto store = std::make_shared<OriginalStore>(m_dir.filePath(QStringLiteral("kept")));
        OriginalStore::install(store);
        canvas.workspace.saveCurrentFile();
        QVERIFY(canvas.notice()->isVisible());
        QCOMPARE(canvas.notice()->text(),
                 QStringLiteral("Saved without its 1 at-rule and 2 comments; the original is kept: "
                                "File > Restore Original..."));
        // Reverted, the text regarded as on disk is the saved one: whole.
        canvas.workspace.revertCurrentFile();
        QTRY_VERIFY(!canvas.notice()->isVisible());
    }

    void coloursComeFromThePalette()
    {
        for (const QPalette &palette : {lightPalette(), darkPalette()}) {
            NoticeWindow canvas(m_folder);
            canvas.window.setPalette(palette);
            canvas.select(QStringLiteral("theme.css"));
            QVERIFY(canvas.show());
            const QImage image = canvas.notice()->grab().toImage();
            const QColor window = palette.color(QPalette::Window);
            const QColor accent = palette.color(QPalette::Highlight);
            const QColor background = image.pixelColor(1, 1);
            // The window's colour, a little towards the accent.
            for (const auto &[base, over, got] :
                 {std::tuple{window.red(), accent.red(), background.red()},
                  std::tuple{window.green(), accent.green(), background.green()},
                  std::tuple{window.blue(), accent.blue(), background.blue()}}) {
                const int expected = qRound(base + (over - base) * 0.14);
                QVERIFY2(qAbs(got - expected) <= 1, qPrintable(background.name()));
            }
            QCOMPARE(image.pixelColor(1, image.height() - 1), palette.color(QPalette::Mid));
        }
    }

    void picturesInBothPalettes()
    {
        const QDir screenshots(QStringLiteral(OMBREL_SCREENSHOT_DIR));
        QImage previous;
        for (const auto &[palette, name] :
             {std::pair{lightPalette(), "notice-light"}, std::pair{darkPalette(), "notice-dark"}}) {
            NoticeWindow canvas(m_folder);
            canvas.window.setPalette(palette);
            canvas.select(QStringLiteral("theme.css"));
            QVERIFY(canvas.show());
            QVERIFY(canvas.notice()->isVisible());
            QApplication::processEvents();
            const QImage image = canvas.window.grab().toImage();
            QVERIFY(!image.isNull());
            QVERIFY(image != previous);
            previous = image;
            QVERIFY(image.save(screenshots.filePath(QString::fromLatin1(name) + ".png")));
        }
    }
};

QTEST_MAIN(TestOriginalNotice)
#include "tst_originalnotice.moc"
