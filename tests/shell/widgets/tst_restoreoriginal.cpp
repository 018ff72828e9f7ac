// The application keeps originals in its data folder through every road a
// save takes (Save, Save All, auto-save, the window's and the quit prompt's
// "Save"), offers "Restore Original..." when the selected file has some, and
// lists them newest first in a dialog pictured for review in both palettes.

#include "ScreenshotSupport.h"
#include "ShellTestSupport.h"

#include "shell/MenuState.h"
#include "shell/OriginalListModel.h"
#include "shell/widgets/OmbrelCommands.h"
#include "shell/widgets/RestoreOriginalDialog.h"
#include "workspace/AppPreferences.h"
#include "workspace/OriginalStore.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTreeView>

using namespace Ombrel;
using Screenshots::darkPalette;
using Screenshots::lightPalette;
using namespace ShellTest;
using WorkspaceTest::readFile;
using WorkspaceTest::writeFile;

namespace {

const QByteArray themeCss = "/* Theme */\n@media print { .card { color: black } }\n"
                            ".card{color:red}\n.btn{padding:0}\n";
const QByteArray otherCss = "/* other */ b { margin: 0 }\n";

QList<KeptOriginal> sampleOriginals()
{
    return {
        {QStringLiteral("/data/originals/theme 2025-01-05 14.03.22 [1a2b3c4d].css"),
         QDateTime(QDate(2025, 1, 5), QTime(14, 3, 22)), 3642321},
        {QStringLiteral("/data/originals/theme 2025-01-04 09.12.00 [1a2b3c4d].css"),
         QDateTime(QDate(2025, 1, 4), QTime(9, 12, 0)), 281046},
        {QStringLiteral("/data/originals/theme 2024-12-30 17.45.09 [1a2b3c4d].css"),
         QDateTime(QDate(2024, 12, 30), QTime(17, 45, 9)), 512},
    };
}

} // namespace

class TestRestoreOriginal : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;
    MainWindow *m_window = nullptr;

    QString path(const QString &name) const
    {
        return m_dir->filePath(QStringLiteral("site/") + name);
    }
    QAction *action(OmbrelCommands::Command command) const
    {
        return m_app->commands().action(command);
    }
    Workspace *workspace() const { return m_window->workspace(); }
    CSSFilePtr file(const QString &name) const
    {
        return WorkspaceTest::fileNamed(*workspace(), name);
    }
    QList<QByteArray> keptBytes(const QString &name) const
    {
        QList<QByteArray> bytes;
        for (const KeptOriginal &original : m_app->originals().originals(path(name)))
            bytes.append(readFile(original.path));
        return bytes;
    }

    // A fresh application, whose prompts get these answers, with an active
    // window on the folder and theme.css selected.
    bool start(QList<int> answers)
    {
        m_app.reset();
        m_desktop = std::make_shared<Desktop>();
        m_desktop->prompts = WorkspaceTest::PromptScript(std::move(answers));
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
        m_window = m_app->openWindow(WindowConfig(false, m_dir->filePath(QStringLiteral("site")),
                                                  path(QStringLiteral("theme.css"))));
        return activate(m_window) && QTest::qWaitFor([this] {
                   return workspace()->selectedFile() &&
                          workspace()->selectedFile() == file(QStringLiteral("theme.css"));
               });
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
    }

    void init()
    {
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setAutoSave(false);
        QDir(OriginalStore::defaultFolder()).removeRecursively();
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(QStringLiteral("theme.css")), themeCss));
        QVERIFY(writeFile(path(QStringLiteral("other.css")), otherCss));
        QVERIFY(start({}));
    }

    void cleanup()
    {
        AppPreferences::shared().setAutoSave(false);
        m_app.reset();
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    // The application's store lies in its data folder, which the tests point
    // at the build tree.
    void storeLiesInTheApplicationsData()
    {
        QCOMPARE(m_app->originals().folder(),
                 QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                     QStringLiteral("/originals"));
        QVERIFY(m_app->originals().folder().startsWith(QStringLiteral(OMBREL_TEST_SETTINGS_DIR)));
    }

    void saveFromTheMenuKeepsAndEnablesRestore()
    {
        QVERIFY(!action(OmbrelCommands::RestoreOriginal)->isEnabled());
        QVERIFY(!MenuState::of(workspace(), &m_app->originals()).restoreOriginal);
        makeDirty(file(QStringLiteral("theme.css")));
        QTRY_VERIFY(action(OmbrelCommands::Save)->isEnabled());
        action(OmbrelCommands::Save)->trigger();
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
        QTRY_VERIFY(action(OmbrelCommands::RestoreOriginal)->isEnabled());
        QVERIFY(MenuState::of(workspace(), &m_app->originals()).restoreOriginal);
        QVERIFY(!MenuState::of(workspace()).restoreOriginal);

        // Another file of the folder has none.
        workspace()->selectFile(path(QStringLiteral("other.css")));
        QTRY_VERIFY(!action(OmbrelCommands::RestoreOriginal)->isEnabled());
    }

    void saveAllKeepsEveryFile()
    {
        makeDirty(file(QStringLiteral("theme.css")));
        makeDirty(file(QStringLiteral("other.css")));
        QTRY_VERIFY(action(OmbrelCommands::SaveAll)->isEnabled());
        action(OmbrelCommands::SaveAll)->trigger();
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
        QCOMPARE(keptBytes(QStringLiteral("other.css")), QList<QByteArray>{otherCss});
    }

    void autoSaveKeepsToo()
    {
        AppPreferences::shared().setAutoSave(true);
        makeDirty(file(QStringLiteral("theme.css")));
        QTRY_COMPARE_WITH_TIMEOUT(readFile(path(QStringLiteral("theme.css"))),
                                  file(QStringLiteral("theme.css"))->generateCSS().toUtf8(), 5000);
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
    }

    void quitPromptsSaveKeeps()
    {
        QVERIFY(start({FirstButtonResponse}));
        makeDirty(file(QStringLiteral("theme.css")));
        QTRY_VERIFY(file(QStringLiteral("theme.css"))->hasUnsavedChanges());
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        QVERIFY(m_app->quit());
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QVERIFY(m_desktop->prompts.asked().first().message.contains(QLatin1String("quitting")));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), theme->generateCSS().toUtf8());
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
    }

    void windowClosePromptsSaveKeeps()
    {
        QVERIFY(start({FirstButtonResponse}));
        makeDirty(file(QStringLiteral("theme.css")));
        QTRY_VERIFY(file(QStringLiteral("theme.css"))->hasUnsavedChanges());
        QVERIFY(m_window->close());
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(keptBytes(QStringLiteral("theme.css")), QList<QByteArray>{themeCss});
    }

    void restoreFromTheMenu()
    {
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        makeDirty(theme);
        QTRY_VERIFY(action(OmbrelCommands::Save)->isEnabled());
        action(OmbrelCommands::Save)->trigger();
        const QByteArray saved = readFile(path(QStringLiteral("theme.css")));
        QTRY_VERIFY(action(OmbrelCommands::RestoreOriginal)->isEnabled());
        QTRY_VERIFY(!theme->hasUnsavedChanges());

        action(OmbrelCommands::RestoreOriginal)->trigger();
        QCOMPARE(m_desktop->originalRequests.size(), 1);
        QCOMPARE(m_desktop->originalRequests.first().first, QStringLiteral("theme.css"));
        QCOMPARE(m_desktop->originalRequests.first().second.size(), 1);
        QVERIFY(m_desktop->prompts.asked().isEmpty());
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        QCOMPARE(theme->rulesets().size(), 2);
        QVERIFY(!theme->hasUnsavedChanges());

        // The restore itself can be taken back from the same menu: the list
        // now starts with what the file held before it.
        action(OmbrelCommands::RestoreOriginal)->trigger();
        const QList<KeptOriginal> offered = m_desktop->originalRequests.last().second;
        QCOMPARE(offered.size(), 2);
        QVERIFY(offered[0].time >= offered[1].time);
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), saved);

        // Nothing chosen: nothing changes.
        m_desktop->originalToChoose = -1;
        action(OmbrelCommands::RestoreOriginal)->trigger();
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), saved);
    }

    void restoreFromTheMenuWithUnsavedChanges()
    {
        QVERIFY(start({ThirdButtonResponse, SecondButtonResponse}));
        const CSSFilePtr theme = file(QStringLiteral("theme.css"));
        action(OmbrelCommands::SaveAll)->trigger();
        makeDirty(theme);
        QTRY_VERIFY(action(OmbrelCommands::Save)->isEnabled());
        action(OmbrelCommands::Save)->trigger();
        makeDirty(theme);
        QTRY_VERIFY(theme->hasUnsavedChanges());
        const QByteArray onDisk = readFile(path(QStringLiteral("theme.css")));

        action(OmbrelCommands::RestoreOriginal)->trigger();
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Save changes to \"theme.css\" before restoring?"));
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), onDisk);
        QVERIFY(theme->hasUnsavedChanges());

        action(OmbrelCommands::RestoreOriginal)->trigger();
        QCOMPARE(m_desktop->prompts.asked().size(), 2);
        QCOMPARE(readFile(path(QStringLiteral("theme.css"))), themeCss);
        QTRY_VERIFY(!theme->hasUnsavedChanges());
        QCOMPARE(theme->rulesets().size(), 2);
    }

    void listComesNewestFirstWithTimeAndSize()
    {
        OriginalListModel model(sampleOriginals());
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.columnCount(), 2);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Kept"));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Size"));
        QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("2025-01-05 14:03:22"));
        QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("2024-12-30 17:45:09"));
        QCOMPARE(model.index(0, 1).data().toString(),
                 QLocale().formattedDataSize(3642321, 1, QLocale::DataSizeSIFormat));
        QCOMPARE(model.index(1, 0).data(Qt::ToolTipRole).toString(), sampleOriginals()[1].path);
    }

    void dialogChoosesTheSelectedOriginal()
    {
        RestoreOriginalDialog dialog(QStringLiteral("theme.css"), sampleOriginals());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QAbstractItemModelTester tester(dialog.model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        // The newest is chosen unless another row is clicked.
        QCOMPARE(dialog.selectedOriginal(), sampleOriginals().first());
        QVERIFY(dialog.restoreButton()->isEnabled());
        QTreeView *list = dialog.list();
        const QRect second = list->visualRect(dialog.model()->index(1, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
        QCOMPARE(dialog.selectedOriginal(), sampleOriginals()[1]);
        QTest::mouseClick(dialog.restoreButton(), Qt::LeftButton);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));

        RestoreOriginalDialog other(QStringLiteral("theme.css"), sampleOriginals());
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        const QPoint third = other.list()->visualRect(other.model()->index(2, 1)).center();
        // A double click as the platform delivers it: a click, then a second
        // press that arrives as a double click.
        QWidget *viewport = other.list()->viewport();
        const QPointF global = viewport->mapToGlobal(QPointF(third));
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
            const bool down = type != QEvent::MouseButtonRelease;
            QMouseEvent event(type, QPointF(third), global, Qt::LeftButton,
                              down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(viewport, &event);
        }
        QCOMPARE(other.result(), int(QDialog::Accepted));
        QCOMPARE(other.selectedOriginal(), sampleOriginals()[2]);

        RestoreOriginalDialog cancelled(QStringLiteral("theme.css"), sampleOriginals());
        cancelled.show();
        QVERIFY(QTest::qWaitForWindowExposed(&cancelled));
        QTest::keyClick(cancelled.list(), Qt::Key_Escape);
        QCOMPARE(cancelled.result(), int(QDialog::Rejected));
    }

    void dialogPicturesInBothPalettes()
    {
        const QDir screenshots(QStringLiteral(OMBREL_SCREENSHOT_DIR));
        QImage previous;
        for (const auto &[palette, name] : {std::pair{lightPalette(), "restore-original-light"},
                                            std::pair{darkPalette(), "restore-original-dark"}}) {
            RestoreOriginalDialog dialog(QStringLiteral("theme.css"), sampleOriginals());
            dialog.setPalette(palette);
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            QApplication::processEvents();
            const QImage image = dialog.grab().toImage();
            QVERIFY(!image.isNull());
            QVERIFY(image != previous);
            previous = image;
            QVERIFY(image.save(screenshots.filePath(QString::fromLatin1(name) + ".png")));
        }
    }
};

QTEST_MAIN(TestRestoreOriginal)
#include "tst_restoreoriginal.moc"
