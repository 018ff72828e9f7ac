// The code tab inside a whole window: its text steps undone and redone from
// the Edit menu and by key, the menu's keys reaching the menu from the text,
// and what a save writes after awkward text was pasted.

#include "CanvasTestSupport.h"
#include "ShellTestSupport.h"

#include "code/widgets/CodeCoordinator.h"
#include "code/widgets/CodeEditorView.h"
#include "code/widgets/CodeTextEdit.h"
#include "inspector/widgets/PropertyEditorView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/OmbrelCommands.h"
#include "workspace/AppPreferences.h"
#include "workspace/UndoManager.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAction>
#include <QStringDecoder>
#include <QTemporaryDir>

using namespace Ombrel;
using namespace ShellTest;

class TestCodeTab : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;

    QString path(const QString &relative) const { return m_dir->filePath(relative); }

    MainWindow *windowOnCode()
    {
        MainWindow *window = m_app->openWindow(WindowConfig(false, path(QStringLiteral("site"))));
        if (!activate(window) || !window->workspace()->selectedFile())
            return nullptr;
        window->workspace()->setCanvasTab(CanvasTab::Code);
        CodeTextEdit *editor = this->editor(window);
        if (!editor)
            return nullptr;
        editor->setFocus();
        return QTest::qWaitFor([editor] { return editor->hasFocus(); }) ? window : nullptr;
    }

    static CodeEditorView *pane(MainWindow *window)
    {
        const QList<CodeEditorView *> panes = window->findChildren<CodeEditorView *>();
        for (CodeEditorView *pane : panes) {
            if (pane->isVisible())
                return pane;
        }
        return nullptr;
    }

    static CodeTextEdit *editor(MainWindow *window)
    {
        CodeEditorView *view = pane(window);
        return view ? view->textView() : nullptr;
    }

    static QString firstValue(MainWindow *window)
    {
        return window->workspace()->selectedFile()->rulesets().first()->properties().first().value;
    }

private Q_SLOTS:
    void init()
    {
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(false);
        AppPreferences::shared().setAutoSave(false);
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(WorkspaceTest::writeFile(path(QStringLiteral("site/a.css")),
                                         ".a {\n    color: red;\n}\n"));
        // Latin-1 bytes, not UTF-8: no such file is ever loaded.
        QVERIFY(WorkspaceTest::writeFile(path(QStringLiteral("site/latin.css")),
                                         QByteArray(".b { content: \"\xe9\"; }\n")));
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    void cleanup()
    {
        m_app.reset();
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    void nonUtf8FilesNeverLoad()
    {
        MainWindow *window = windowOnCode();
        QVERIFY(window);
        QCOMPARE(WorkspaceTest::relativePaths(*window->workspace()),
                 QStringList{QStringLiteral("a.css")});
    }

    void editMenuAndKeysUndoAndRedoTheText()
    {
        MainWindow *window = windowOnCode();
        QVERIFY(window);
        CodeTextEdit *text = editor(window);
        QTextCursor cursor = text->textCursor();
        cursor.setPosition(int(text->rawText().indexOf(u"red") + 3));
        text->setTextCursor(cursor);
        QTest::keyClick(text, Qt::Key_S);
        QCOMPARE(firstValue(window), QStringLiteral("reds"));
        CanvasTest::endTurn();

        UndoManager *undo = window->undoManager();
        QVERIFY(undo->undoAction()->isEnabled());
        undo->undoAction()->trigger();
        QCOMPARE(firstValue(window), QStringLiteral("red"));
        QVERIFY(undo->redoAction()->isEnabled());
        undo->redoAction()->trigger();
        QCOMPARE(firstValue(window), QStringLiteral("reds"));

        QTest::keyClick(text, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(firstValue(window), QStringLiteral("red"));
        QTest::keyClick(text, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(firstValue(window), QStringLiteral("reds"));
    }

    void newPropertyKeyFromTheTextShowsTheRulesets()
    {
        MainWindow *window = windowOnCode();
        QVERIFY(window);
        Workspace *workspace = window->workspace();
        workspace->setSelectedRuleset(workspace->selectedFile()->rulesets().first());
        QTRY_VERIFY(m_app->commands().action(OmbrelCommands::NewProperty)->isEnabled());
        CodeTextEdit *text = editor(window);
        QTRY_VERIFY(text->hasFocus());
        // The text view does not keep the key for itself (on some desktops
        // it deletes to the end of the line).
        QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_K, Qt::ControlModifier);
        QApplication::sendEvent(text, &override);
        QVERIFY(!override.isAccepted());
        QTest::keyClick(text, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        // The inspector beside the cards took the request: the flag is down
        // again and its add row is open.
        PropertyEditorView *inspector = window->mainDetailView()->propertyEditor();
        QVERIFY(inspector);
        QVERIFY(!workspace->shouldAddProperty());
        QVERIFY(inspector->controller().isAddingProperty());
    }

    void saveAfterAwkwardPasteWritesValidUtf8()
    {
        MainWindow *window = windowOnCode();
        QVERIFY(window);
        CodeTextEdit *text = editor(window);
        QString pasted = QStringLiteral(".p {\n    content: x");
        pasted += QChar(QChar::ReplacementCharacter);
        pasted += QChar(0xD800);
        pasted += QChar(0);
        pasted += QChar(QChar::LineSeparator);
        pasted += QChar(QChar::Nbsp);
        pasted += QStringLiteral("y;\n}\n");
        text->moveCursor(QTextCursor::End);
        text->insertPlainText(pasted);
        QVERIFY(text->rawText().endsWith(pasted));
        const CSSFilePtr file = window->workspace()->selectedFile();
        QCOMPARE(file->rulesets().size(), 2);
        QTRY_VERIFY(m_app->commands().action(OmbrelCommands::Save)->isEnabled());
        QTest::keyClick(text, Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!file->hasUnsavedChanges());
        const QByteArray saved = WorkspaceTest::readFile(path(QStringLiteral("site/a.css")));
        QStringDecoder decoder(QStringDecoder::Utf8);
        const QString read = decoder.decode(saved);
        QVERIFY(!decoder.hasError());
        QVERIFY(read.contains(QStringLiteral("content: x")));
        QVERIFY(read.contains(QChar(QChar::Nbsp)));
        QVERIFY(read.contains(QChar(QChar::LineSeparator)));
    }
};

QTEST_MAIN(TestCodeTab)
#include "tst_codetab.moc"
