// A folder of ten thousand stylesheets in a real window: the sidebar lists
// every one in order, reaches the far end by keys, scrolling and clicks, and
// chooses files there like anywhere else.

#include "ShellTestSupport.h"

#include "shell/FileListModel.h"
#include "shell/widgets/SidebarView.h"
#include "workspace/AppPreferences.h"
#include "workspace/WorkspaceRegistry.h"

#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>

using namespace Ombrel;
using namespace ShellTest;

namespace {

constexpr int fileCount = 10000;

QString nameOf(int number)
{
    return QStringLiteral("sheet-%1.css").arg(number, 5, 10, QLatin1Char('0'));
}

} // namespace

class TestLargeFolder : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;
    MainWindow *m_window = nullptr;

    SidebarView *sidebar() const { return m_window->sidebarView(); }
    QListView *list() const { return sidebar()->listView(); }
    Workspace *workspace() const { return m_window->workspace(); }
    QString rowName(int row) const { return list()->model()->index(row, 0).data().toString(); }

    // Whether the row is drawn inside the list's visible area.
    bool onScreen(int row) const
    {
        const QRect rect = list()->visualRect(list()->model()->index(row, 0));
        return rect.isValid() && list()->viewport()->rect().contains(rect);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        // Written in reverse, so that the order of the list owes nothing to
        // the order of creation. Every seventh file declares a variable.
        for (int number = fileCount - 1; number >= 0; --number) {
            QFile file(m_dir.filePath(nameOf(number)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(css(1 + number % 3, number % 7 == 0 ? 1 : 0));
        }
    }

    void init()
    {
        // Renames put fields up and take them down as the list changes: any
        // complaint of Qt is a failure, but for what the offscreen platform
        // cannot do for popups.
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
        m_window = m_app->openWindow(WindowConfig(false, m_dir.path()));
        QVERIFY(activate(m_window));
        QCOMPARE(m_window->state(), WindowState::Editing);
    }

    void cleanup()
    {
        m_app.reset();
        m_window = nullptr;
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    void listsEveryFileInOrder()
    {
        QCOMPARE(list()->model()->rowCount(), fileCount);
        QCOMPARE(workspace()->files().size(), fileCount);
        QCOMPARE(rowName(0), nameOf(0));
        QCOMPARE(rowName(fileCount - 1), nameOf(fileCount - 1));
        for (int row = 0; row < fileCount; ++row) {
            if (rowName(row) != nameOf(row))
                QFAIL(qPrintable(QStringLiteral("row %1 reads %2").arg(row).arg(rowName(row))));
        }
        QCOMPARE(list()->model()->index(7000, 0).data(FileListModel::CountsRole).toString(),
                 QStringLiteral("2 rulesets · 1 var"));
        QCOMPARE(list()->model()->index(9998, 0).data(FileListModel::CountsRole).toString(),
                 QStringLiteral("3 rulesets"));
        // The first file is selected and shown; the far end is not.
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(0));
        QVERIFY(onScreen(0));
        QVERIFY(!onScreen(fileCount - 1));
    }

    void keysReachTheFarEnd()
    {
        list()->setFocus();
        QTRY_VERIFY(list()->hasFocus());
        QTest::keyClick(list(), Qt::Key_End);
        QCOMPARE(list()->currentIndex().row(), fileCount - 1);
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(fileCount - 1));
        QVERIFY(onScreen(fileCount - 1));
        QVERIFY(!onScreen(0));

        QTest::keyClick(list(), Qt::Key_Up);
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(fileCount - 2));
        QTest::keyClick(list(), Qt::Key_PageUp);
        const int afterPage = list()->currentIndex().row();
        QVERIFY(afterPage < fileCount - 2);
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(afterPage));
        QVERIFY(onScreen(afterPage));

        QTest::keyClick(list(), Qt::Key_Home);
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(0));
        QVERIFY(onScreen(0));
    }

    void scrollingAndAClickChooseAFileFarDown()
    {
        QScrollBar *bar = list()->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        bar->setValue(bar->maximum() * 3 / 4);
        const QPoint middle = list()->viewport()->rect().center();
        const QModelIndex index = list()->indexAt(middle);
        QVERIFY(index.isValid());
        QVERIFY2(index.row() > fileCount / 2, qPrintable(QString::number(index.row())));
        // The click lands on the left of the row, away from the name.
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(4, middle.y()));
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(index.row()));
        QVERIFY(list()->selectionModel()->isRowSelected(index.row()));
        QCOMPARE(list()->selectionModel()->selectedRows().size(), 1);
    }

    void aSelectionMadeElsewhereIsScrolledTo()
    {
        workspace()->selectFile(m_dir.filePath(nameOf(6543)));
        QCOMPARE(workspace()->selectedFile()->name(), nameOf(6543));
        QCOMPARE(list()->currentIndex().row(), 6543);
        QVERIFY(list()->selectionModel()->isRowSelected(6543));
        QVERIFY(onScreen(6543));
    }

    void aFarRowIsRenamedInPlace()
    {
        workspace()->selectFile(m_dir.filePath(nameOf(9000)));
        sidebar()->beginRename(9000);
        QTRY_VERIFY(sidebar()->renameField(9000) && sidebar()->renameField(9000)->hasFocus());
        QTRY_COMPARE(sidebar()->renameField(9000)->selectedText(), QStringLiteral("sheet-09000"));
        QVERIFY(sidebar()->renameField(9000)->isVisible());
        QTest::keyClicks(sidebar()->renameField(9000), QStringLiteral("zz-last"));
        QTest::keyClick(sidebar()->renameField(9000), Qt::Key_Return);
        QVERIFY(QFile::exists(m_dir.filePath(QStringLiteral("zz-last.css"))));
        QCOMPARE(rowName(fileCount - 1), QStringLiteral("zz-last.css"));
        QCOMPARE(rowName(9000), nameOf(9001));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("zz-last.css"));
        QCOMPARE(list()->currentIndex().row(), fileCount - 1);
        QVERIFY(QFile::rename(m_dir.filePath(QStringLiteral("zz-last.css")),
                              m_dir.filePath(nameOf(9000))));
    }
};

QTEST_MAIN(TestLargeFolder)
#include "tst_largefolder.moc"
