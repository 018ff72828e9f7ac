// The sidebar driven by clicks and keys: choosing files, renaming in place,
// the rows' texts and colours, the context menu and the bottom bar.

#include "ShellTestSupport.h"

#include "canvas/widgets/CanvasView.h"
#include "shell/FileListModel.h"
#include "shell/widgets/EmptyFolderView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/SidebarView.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/AppPreferences.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>

using namespace Ombrel;
using namespace ShellTest;
using WorkspaceTest::fileNamed;
using WorkspaceTest::readFile;
using WorkspaceTest::writeFile;

class TestSidebar : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;
    MainWindow *m_window = nullptr;

    QString path(const QString &relative) const { return m_dir->filePath(relative); }
    SidebarView *sidebar() const { return m_window->sidebarView(); }
    QListView *list() const { return sidebar()->listView(); }
    Workspace *workspace() const { return m_window->workspace(); }
    CanvasView *canvas() const
    {
        return qobject_cast<CanvasView *>(m_window->mainDetailView()->contentColumn());
    }

    QPoint nameOf(int row) const
    {
        const QRect rect = list()->visualRect(list()->model()->index(row, 0));
        return QPoint(rect.left() + 40, rect.top() + 10);
    }

    QLineEdit *renameField(int row = 0) const { return sidebar()->renameField(row); }

    // Takes the row's name into its rename field, as a second click on the
    // name of the selected row does, and waits for the base name selected.
    bool renameByClicks(int row)
    {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(row));
        if (list()->currentIndex().row() != row)
            return false;
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(row));
        return QTest::qWaitFor([this, row] {
            return renameField(row) && renameField(row)->hasFocus() &&
                   !renameField(row)->selectedText().isEmpty();
        });
    }

    bool openWindow(const QString &folder)
    {
        m_window = m_app->openWindow(WindowConfig(false, folder));
        return activate(m_window);
    }

private Q_SLOTS:
    void init()
    {
        // Renames put fields up and take them down as the list changes: any
        // complaint of Qt is a failure, but for what the offscreen platform
        // cannot do for popups.
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(QStringLiteral("site/a.css")), css(2)));
        QVERIFY(writeFile(path(QStringLiteral("site/b.css")), css(1, 1)));
        QVERIFY(writeFile(path(QStringLiteral("site/empty.css")), QByteArray()));
        QVERIFY(QDir().mkpath(path(QStringLiteral("bare"))));
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    void cleanup()
    {
        m_app.reset();
        m_window = nullptr;
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    void listsTheFilesUnderTheFolderName()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QAbstractItemModelTester tester(sidebar()->model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(list()->model()->rowCount(), 3);
        QCOMPARE(sidebar()->findChild<QLabel *>(QStringLiteral("sidebarHeader"))->text(),
                 QStringLiteral("site"));
        const auto counts = [this](int row) {
            return list()->model()->index(row, 0).data(FileListModel::CountsRole).toString();
        };
        QCOMPARE(counts(0), QStringLiteral("2 rulesets"));
        QCOMPARE(counts(1), QStringLiteral("1 ruleset · 1 var"));
        QCOMPARE(counts(2), QStringLiteral("0 rulesets"));
        QCOMPARE(list()->currentIndex().row(), 0);
    }

    void clickSelectsThenASecondClickOnTheNameRenames()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QVERIFY(!renameField(1));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QTRY_VERIFY(renameField(1));
        QCOMPARE(renameField(1)->text(), QStringLiteral("b.css"));
        QTRY_COMPARE(renameField(1)->selectedText(), QStringLiteral("b"));
    }

    void keysMoveTheSelection()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        workspace()->setSelectedRuleset(workspace()->selectedFile()->rulesets().first());
        list()->setFocus();
        QTRY_VERIFY(list()->hasFocus());
        QTest::keyClick(list(), Qt::Key_Down);
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QVERIFY(!workspace()->selectedRuleset());
        QTest::keyClick(list(), Qt::Key_Down);
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
    }

    void choosingByHandClearsTheRulesetButSelectFileKeepsIt()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        const CSSRulesetPtr ruleset = workspace()->selectedFile()->rulesets().first();
        workspace()->setSelectedRuleset(ruleset);
        workspace()->selectFile(path(QStringLiteral("site/b.css")));
        QCOMPARE(workspace()->selectedRuleset(), ruleset);
        QCOMPARE(list()->currentIndex().row(), 1);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(2));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
        QVERIFY(!workspace()->selectedRuleset());
    }

    void renameWithReturnRenamesAndEscapeKeepsTheName()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        sidebar()->beginRename(0);
        QTRY_VERIFY(renameField());
        QTRY_COMPARE(renameField()->selectedText(), QStringLiteral("a"));
        QTest::keyClicks(renameField(), QStringLiteral("renamed"));
        QTest::keyClick(renameField(), Qt::Key_Escape);
        QVERIFY(!renameField());
        QVERIFY(list()->hasFocus());
        QTest::qWait(0);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/renamed.css"))));
        QCOMPARE(workspace()->files().first()->name(), QStringLiteral("a.css"));

        sidebar()->beginRename(0);
        QTRY_VERIFY(renameField());
        QTRY_COMPARE(renameField()->selectedText(), QStringLiteral("a"));
        QTest::keyClicks(renameField(), QStringLiteral("zeta"));
        QTest::keyClick(renameField(), Qt::Key_Return);
        QTRY_VERIFY(QFileInfo::exists(path(QStringLiteral("site/zeta.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QTRY_COMPARE(list()->model()->index(2, 0).data().toString(), QStringLiteral("zeta.css"));
    }

    void renameFieldStaysOpenWhenFocusLeaves()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(0));
        QTest::keyClicks(renameField(), QStringLiteral("draft"));
        QTest::mouseClick(canvas()->searchField(), Qt::LeftButton);
        QTRY_VERIFY(canvas()->searchField()->hasFocus());
        QVERIFY(!renameField()->hasFocus());
        QVERIFY(renameField()->isVisible());
        QCOMPARE(renameField()->text(), QStringLiteral("draft.css"));
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QCOMPARE(workspace()->files().first()->name(), QStringLiteral("a.css"));

        // Back in the field, Escape still ends it without a rename.
        QTest::mouseClick(renameField(), Qt::LeftButton);
        QTRY_VERIFY(renameField()->hasFocus());
        QTest::keyClick(renameField(), Qt::Key_Escape);
        QVERIFY(!renameField());
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/draft.css"))));
    }

    void clickingAnotherRowNeitherCommitsNorCancels()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(0));
        QTest::keyClicks(renameField(0), QStringLiteral("draft"));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QVERIFY(list()->hasFocus());
        QVERIFY(renameField(0));
        QVERIFY(renameField(0)->isVisible());
        QCOMPARE(renameField(0)->text(), QStringLiteral("draft.css"));
        QVERIFY(!renameField(1));
        // The keys of the list move its selection; the field stays.
        QTest::keyClick(list(), Qt::Key_Down);
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
        QCOMPARE(renameField(0)->text(), QStringLiteral("draft.css"));
        QTest::qWait(0);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/draft.css"))));

        // Back in the field, Return renames with what was typed before.
        QTest::mouseClick(renameField(0), Qt::LeftButton);
        QTRY_VERIFY(renameField(0)->hasFocus());
        QTest::keyClick(renameField(0), Qt::Key_Return);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/draft.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        QCOMPARE(list()->model()->index(1, 0).data().toString(), QStringLiteral("draft.css"));
        QVERIFY(!renameField(1));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
    }

    void renamingARowDoesNotChooseIt()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        const CSSRulesetPtr ruleset = workspace()->selectedFile()->rulesets().first();
        workspace()->setSelectedRuleset(ruleset);
        list()->setFocus();
        QTRY_VERIFY(list()->hasFocus());
        std::unique_ptr<QMenu> menu(sidebar()->createContextMenu(2, nullptr));
        menu->actions().at(1)->trigger();
        QTRY_VERIFY(renameField(2) && renameField(2)->hasFocus());
        QTRY_COMPARE(renameField(2)->selectedText(), QStringLiteral("empty"));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("a.css"));
        QCOMPARE(workspace()->selectedRuleset(), ruleset);
        QCOMPARE(list()->currentIndex().row(), 0);
        QVERIFY(list()->selectionModel()->isRowSelected(0));
        // Clicking into the field does not choose its row either.
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QTest::mouseClick(renameField(2), Qt::LeftButton);
        QTRY_VERIFY(renameField(2)->hasFocus());
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QCOMPARE(list()->currentIndex().row(), 1);
    }

    void eachRowKeepsItsOwnRename()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(0));
        QTest::keyClicks(renameField(0), QStringLiteral("first"));
        QVERIFY(renameByClicks(1));
        QCOMPARE(renameField(1)->text(), QStringLiteral("b.css"));
        QTest::keyClicks(renameField(1), QStringLiteral("second"));
        QTest::keyClick(renameField(1), Qt::Key_Return);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/second.css"))));
        // The other row's field is open still, with its own text.
        QCOMPARE(workspace()->files().first()->name(), QStringLiteral("a.css"));
        QVERIFY(renameField(0));
        QCOMPARE(renameField(0)->text(), QStringLiteral("first.css"));
    }

    void renameFieldOutlivesOtherChangesOfTheList()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(1));
        QTest::keyClicks(renameField(1), QStringLiteral("draft"));
        // A file appears in the folder and the list is rebuilt; the field is
        // put back with its text and the focus, and typing goes on.
        QVERIFY(writeFile(path(QStringLiteral("site/0-first.css")), css(1)));
        QTRY_COMPARE(list()->model()->rowCount(), 4);
        QVERIFY(renameField(2));
        QCOMPARE(renameField(2)->text(), QStringLiteral("draft.css"));
        QTRY_VERIFY(renameField(2)->hasFocus());
        QTest::keyClicks(renameField(2), QStringLiteral("-2"));
        QCOMPARE(renameField(2)->text(), QStringLiteral("draft-2.css"));
        // A change of the file itself leaves the typed text alone.
        makeDirty(fileNamed(*workspace(), QStringLiteral("b.css")));
        QTRY_VERIFY(list()->model()->index(2, 0).data(FileListModel::UnsavedRole).toBool());
        QCOMPARE(renameField(2)->text(), QStringLiteral("draft-2.css"));
        QTest::keyClick(renameField(2), Qt::Key_Return);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/draft-2.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/b.css"))));
    }

    void renameEndsWhenTheFileLeavesTheList()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(1));
        QTest::keyClicks(renameField(1), QStringLiteral("draft"));
        QVERIFY(QFile::remove(path(QStringLiteral("site/b.css"))));
        QTRY_COMPARE(list()->model()->rowCount(), 2);
        for (int row = 0; row < 2; ++row)
            QVERIFY(!renameField(row));
        // Written again, the file comes back as a new row, not renamed.
        QVERIFY(writeFile(path(QStringLiteral("site/b.css")), css(1)));
        QTRY_COMPARE(list()->model()->rowCount(), 3);
        QVERIFY(!renameField(1));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/draft.css"))));
    }

    void refusedRenameShowsTheOldName()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QVERIFY(renameByClicks(0));
        QTest::keyClicks(renameField(0), QStringLiteral("b"));
        QTest::keyClick(renameField(0), Qt::Key_Return);
        QVERIFY(!renameField(0));
        QCOMPARE(list()->model()->index(0, 0).data().toString(), QStringLiteral("a.css"));
        QCOMPARE(readFile(path(QStringLiteral("site/b.css"))), css(1, 1));
        QCOMPARE(readFile(path(QStringLiteral("site/a.css"))), css(2));
    }

    void newFileFromThePlusButtonEntersRename()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        auto *plus = sidebar()->findChild<QToolButton *>(QStringLiteral("sidebarNewFileButton"));
        QVERIFY(plus->isVisible());
        QVERIFY(sidebar()
                    ->findChild<QToolButton *>(QStringLiteral("sidebarOpenFolderButton"))
                    ->isVisible());
        QCOMPARE(plus->toolTip(), QStringLiteral("New CSS File"));
        QCOMPARE(sidebar()
                     ->findChild<QToolButton *>(QStringLiteral("sidebarOpenFolderButton"))
                     ->toolTip(),
                 QStringLiteral("Open Folder…"));
        QTest::mouseClick(plus, Qt::LeftButton);
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("untitled.css"));
        const int row = list()->currentIndex().row();
        QCOMPARE(row, 3);
        QTRY_VERIFY(renameField(row));
        QCOMPARE(renameField(row)->text(), QStringLiteral("untitled.css"));
        QTRY_COMPARE(renameField(row)->selectedText(), QStringLiteral("untitled"));
        QVERIFY(workspace()->pendingRenameFileID().isNull());
    }

    void newFileFromTheEmptyFolderEntersRenameWhenTheListAppears()
    {
        QVERIFY(openWindow(path(QStringLiteral("bare"))));
        auto *create =
            m_window->emptyFolderView()->findChild<QPushButton *>(QStringLiteral("newFileButton"));
        QCOMPARE(create->text(), QStringLiteral("New CSS File"));
        QTest::mouseClick(create, Qt::LeftButton);
        QTRY_COMPARE(m_window->state(), WindowState::Editing);
        QTRY_VERIFY(renameField(0));
        QTRY_COMPARE(renameField()->selectedText(), QStringLiteral("untitled"));
        QVERIFY(workspace()->pendingRenameFileID().isNull());
    }

    void unsavedFilesShowTheMarkAndAccent()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        list()->setFocus();
        QTRY_VERIFY(list()->hasFocus());
        QCOMPARE(sidebar()->iconTintOf(1), RowTint::Secondary);
        makeDirty(fileNamed(*workspace(), QStringLiteral("b.css")));
        QTRY_VERIFY(list()->model()->index(1, 0).data(FileListModel::UnsavedRole).toBool());
        QCOMPARE(sidebar()->iconTintOf(1), RowTint::Accent);
        QCOMPARE(sidebar()->unsavedMarkTintOf(1), RowTint::Accent);
        // On the highlight of the focused list both are white.
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QCOMPARE(sidebar()->iconTintOf(1), RowTint::White);
        QCOMPARE(sidebar()->unsavedMarkTintOf(1), RowTint::White);
    }

    // The selection of a list without the focus is drawn in the palette's
    // inactive highlight, on which the accent of the unsaved mark and of the
    // symbol stays visible.
    void theSelectedRowOfAnUnfocusedListShowsItsAccentMarks()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        makeDirty(fileNamed(*workspace(), QStringLiteral("b.css")));
        QTRY_VERIFY(list()->model()->index(1, 0).data(FileListModel::UnsavedRole).toBool());
        QTest::mouseClick(canvas()->searchField(), Qt::LeftButton);
        QTRY_VERIFY(canvas()->searchField()->hasFocus());
        QCOMPARE(sidebar()->unsavedMarkTintOf(1), RowTint::Accent);
        QCOMPARE(sidebar()->iconTintOf(1), RowTint::Accent);

        const QImage image = list()->viewport()->grab().toImage();
        const qreal scale = image.devicePixelRatio();
        const auto at = [&image, scale](QPointF point) {
            return image.pixelColor((point * scale).toPoint());
        };
        const auto distance = [](const QColor &a, const QColor &b) {
            return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                   std::abs(a.blue() - b.blue());
        };
        const QColor accent = list()->palette().color(QPalette::Active, QPalette::Highlight);
        const QRectF mark = sidebar()->unsavedMarkRectOf(1);
        const QColor selection = at(QPointF(mark.right() + 8, mark.center().y()));
        QVERIFY2(distance(at(mark.center()), accent) < 40, qPrintable(at(mark.center()).name()));
        QVERIFY2(distance(selection, accent) > 120, qPrintable(selection.name()));
        int symbolContrast = 0;
        const QRect icon = sidebar()->iconRectOf(1);
        for (int y = icon.top(); y <= icon.bottom(); ++y) {
            for (int x = icon.left(); x <= icon.right(); ++x)
                symbolContrast = std::max(symbolContrast, distance(at(QPointF(x, y)), selection));
        }
        QVERIFY(symbolContrast > 120);
    }

    // Edits of a file's rulesets reach its counts line once per turn,
    // however many rulesets changed.
    void countsFollowTheEditsOfTheRulesets()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        const CSSFilePtr a = fileNamed(*workspace(), QStringLiteral("a.css"));
        QSignalSpy rowChanges(sidebar()->model(), &QAbstractItemModel::dataChanged);
        for (int i = 0; i < 50; ++i) {
            for (const CSSRulesetPtr &ruleset : a->rulesets())
                ruleset->setProperties(
                    {CSSProperty(QStringLiteral("--v"), QString::number(i)),
                     CSSProperty(QStringLiteral("color"), QStringLiteral("red"))});
        }
        QCOMPARE(rowChanges.count(), 0);
        QTRY_COMPARE(rowChanges.count(), 1);
        QCOMPARE(rowChanges.first().at(0).toModelIndex().row(), 0);
        QCOMPARE(list()->model()->index(0, 0).data(FileListModel::CountsRole).toString(),
                 QStringLiteral("2 rulesets · 2 vars"));
        QCoreApplication::processEvents();
        QCOMPARE(rowChanges.count(), 1);
    }

    void eachRowTellsAssistiveTechnologyItsNameAndState()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QAccessibleInterface *files = QAccessible::queryAccessibleInterface(list());
        QVERIFY(files && files->tableInterface());
        const auto row = [files](int index) { return files->tableInterface()->cellAt(index, 0); };
        QCOMPARE(files->tableInterface()->rowCount(), 3);
        QCOMPARE(row(1)->text(QAccessible::Name), QStringLiteral("b.css"));
        QCOMPARE(row(1)->text(QAccessible::Description), QStringLiteral("1 ruleset · 1 var"));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QVERIFY(row(1)->state().selected);
        QVERIFY(!row(0)->state().selected);

        makeDirty(fileNamed(*workspace(), QStringLiteral("b.css")));
        QTRY_COMPARE(row(1)->text(QAccessible::Description),
                     QStringLiteral("Unsaved changes, 2 rulesets · 1 var"));
        QCOMPARE(row(0)->text(QAccessible::Description), QStringLiteral("2 rulesets"));
    }

    void selectedIconTurnsAccentWhenFocusLeavesTheList()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(0));
        QVERIFY(list()->hasFocus());
        QCOMPARE(sidebar()->iconTintOf(0), RowTint::White);
        // A click into the canvas takes the focus from the list.
        QTest::mouseClick(canvas()->searchField(), Qt::LeftButton);
        QTRY_VERIFY(canvas()->searchField()->hasFocus());
        QVERIFY(!list()->hasFocus());
        QCOMPARE(sidebar()->iconTintOf(0), RowTint::Accent);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, nameOf(1));
        QCOMPARE(sidebar()->iconTintOf(1), RowTint::White);
        QCOMPARE(sidebar()->iconTintOf(0), RowTint::Secondary);
    }

    void contextMenuActsOnItsRow()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        std::unique_ptr<QMenu> menu(sidebar()->createContextMenu(1, nullptr));
        QStringList labels;
        for (QAction *item : menu->actions())
            labels.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(labels, (QStringList{QStringLiteral("Duplicate"), QStringLiteral("Rename…"),
                                      QStringLiteral("Show in File Manager"), QStringLiteral("-"),
                                      QStringLiteral("Delete…")}));
        menu->actions().at(2)->trigger();
        QCOMPARE(m_desktop->revealed, QStringList{path(QStringLiteral("site/b.css"))});
        menu->actions().at(0)->trigger();
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/b copy.css"))));
        QCOMPARE(workspace()->selectedFile()->name(), QStringLiteral("b copy.css"));
        // The delete prompt is answered "Cancel" by the script: nothing goes.
        std::unique_ptr<QMenu> again(sidebar()->createContextMenu(0, nullptr));
        again->actions().at(4)->trigger();
        QCOMPARE(m_desktop->prompts.asked().last().buttons.first(), QStringLiteral("Delete"));
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/a.css"))));
        again->actions().at(1)->trigger();
        QTRY_VERIFY(renameField());
        QCOMPARE(renameField()->text(), QStringLiteral("a.css"));
    }

    void rightClickOpensTheContextMenu()
    {
        QVERIFY(openWindow(path(QStringLiteral("site"))));
        QMetaObject::invokeMethod(list(), "customContextMenuRequested", Q_ARG(QPoint, nameOf(2)));
        QMenu *menu = nullptr;
        QTRY_VERIFY((menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())));
        QCOMPARE(menu->actions().first()->text(), QStringLiteral("Duplicate"));
        menu->close();
    }
};

QTEST_MAIN(TestSidebar)
#include "tst_sidebar.moc"
