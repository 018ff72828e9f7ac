// The inspector in a window: the detail column shows the property editor for
// the selected ruleset and follows the selection, the canvas's keys and the
// commands reach it through the workspace's flags, and an edit in it shows
// on the card at once.

#include "ShellTestSupport.h"

#include "canvas/CanvasController.h"
#include "canvas/NodeListModel.h"
#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NodeListView.h"
#include "inspector/widgets/AddPropertyRow.h"
#include "inspector/widgets/PropertyEditorView.h"
#include "inspector/widgets/PropertyListView.h"
#include "inspector/widgets/PropertyRowView.h"
#include "shell/widgets/InspectorPlaceholder.h"
#include "shell/widgets/MainDetailView.h"
#include "workspace/AppPreferences.h"
#include "workspace/UndoManager.h"
#include "workspace/WorkspaceRegistry.h"

#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

using namespace Ombrel;
using namespace ShellTest;
using WorkspaceTest::writeFile;

class TestInspectorColumn : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;

    QString path(const QString &relative) const { return m_dir->filePath(relative); }

    MainWindow *activeWindowOn(const QString &folder)
    {
        MainWindow *window = m_app->openWindow(WindowConfig(false, folder));
        if (!activate(window))
            return nullptr;
        return window;
    }

    static CanvasView *canvasOf(MainWindow *window)
    {
        return qobject_cast<CanvasView *>(window->mainDetailView()->contentColumn());
    }

    // Clicks the card of the ruleset at row with modifiers, as a user does.
    static void clickCard(MainWindow *window, int row, Qt::KeyboardModifiers modifiers = {})
    {
        NodeListView *list = canvasOf(window)->nodeList();
        const QRect card = list->visualRect(canvasOf(window)->nodeModel()->index(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers,
                          QPoint(card.right() - 12, card.center().y()));
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(QStringLiteral("site/a.css")),
                          ".one {\n    color: red;\n}\n\n.two {\n    color: blue;\n}\n"));
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    void cleanup()
    {
        m_app.reset();
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    void thePlaceholderGivesWayToTheEditorWhichFollowsTheSelection()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        MainDetailView *detail = window->mainDetailView();
        QVERIFY(qobject_cast<InspectorPlaceholder *>(detail->detailContent()));
        QVERIFY(!detail->propertyEditor());

        clickCard(window, 0);
        PropertyEditorView *editor = detail->propertyEditor();
        QVERIFY(editor);
        QCOMPARE(detail->detailContent(), editor);
        QCOMPARE(editor->controller().ruleset()->selector(), QStringLiteral(".one"));
        QTRY_COMPARE(editor->titleLabel()->text(), QStringLiteral(".one"));

        clickCard(window, 1);
        QCOMPARE(detail->propertyEditor(), editor);
        QCOMPARE(editor->controller().ruleset()->selector(), QStringLiteral(".two"));
        QTRY_COMPARE(editor->titleLabel()->text(), QStringLiteral(".two"));

        // A selector typed for .two and left by clearing the selection goes
        // to .two; the hidden editor holds no ruleset or file.
        editor->controller().startSelectorEdit();
        editor->controller().setSelectorText(QStringLiteral(".deux"));
        window->workspace()->setSelectedRuleset(nullptr);
        QVERIFY(qobject_cast<InspectorPlaceholder *>(detail->detailContent()));
        QVERIFY(!editor->controller().ruleset());
        QVERIFY(!editor->controller().file());
        QCOMPARE(window->workspace()->selectedFile()->rulesets().at(1)->selector(),
                 QStringLiteral(".deux"));
        QCOMPARE(window->undoManager()->undoActionName(), QStringLiteral("Rename Ruleset"));
    }

    void returnOnASelectedCardEditsTheSelectorUnlessSeveralAreSelected()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        clickCard(window, 0);
        PropertyEditorView *editor = window->mainDetailView()->propertyEditor();
        QVERIFY(editor);
        canvasOf(window)->nodeList()->setFocus();
        QTRY_VERIFY(canvasOf(window)->nodeList()->hasFocus());
        QTest::keyClick(canvasOf(window)->nodeList(), Qt::Key_Return);
        QTRY_VERIFY(editor->controller().isEditingSelector());
        QVERIFY(!window->workspace()->shouldFocusPropertyPanel());
        QTRY_VERIFY(editor->selectorField()->hasFocus());
        QTest::keyClicks(editor->selectorField(), QStringLiteral(".first"));

        // Selecting another card saves the text to the ruleset it was typed for.
        clickCard(window, 1);
        QCOMPARE(window->workspace()->selectedFile()->rulesets().at(0)->selector(),
                 QStringLiteral(".first"));
        QCOMPARE(window->workspace()->selectedFile()->rulesets().at(1)->selector(),
                 QStringLiteral(".two"));
        QVERIFY(!editor->controller().isEditingSelector());
        QCOMPARE(window->undoManager()->undoActionName(), QStringLiteral("Rename Ruleset"));

        clickCard(window, 0, Qt::ControlModifier);
        QTRY_VERIFY(editor->controller().isMultiSelect());
        canvasOf(window)->nodeList()->setFocus();
        QTRY_VERIFY(canvasOf(window)->nodeList()->hasFocus());
        QTest::keyClick(canvasOf(window)->nodeList(), Qt::Key_Tab);
        QTRY_VERIFY(!window->workspace()->shouldFocusPropertyPanel());
        QVERIFY(!editor->controller().isEditingSelector());
    }

    void aNewRulesetOpensTheAddRowShortlyAfter()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        canvasOf(window)->controller().operations().addRuleset(QStringLiteral(".three"));
        PropertyEditorView *editor = window->mainDetailView()->propertyEditor();
        QVERIFY(editor);
        QCOMPARE(editor->controller().ruleset()->selector(), QStringLiteral(".three"));
        QVERIFY(!editor->controller().isAddingProperty());
        QTRY_VERIFY(editor->controller().isAddingProperty());
        QVERIFY(!window->workspace()->shouldAddProperty());
        QTRY_VERIFY(editor->list()->addRow());
        AddPropertyRow *add = editor->list()->addRow();
        QTRY_VERIFY(add->nameField()->hasFocus());
        QTest::keyClicks(add->nameField(), QStringLiteral("gap"));
        QTest::keyClick(add->nameField(), Qt::Key_Escape);
        QTest::keyClick(add->nameField(), Qt::Key_Return);
        QTRY_VERIFY(add->valueField()->hasFocus());
        QTest::keyClicks(add->valueField(), QStringLiteral("4px"));
        QTest::keyClick(add->valueField(), Qt::Key_Return);
        const CSSRulesetPtr three = window->workspace()->selectedRuleset();
        QCOMPARE(three->properties().size(), 1);
        QCOMPARE(three->properties().first().name, QStringLiteral("gap"));
        QCOMPARE(window->undoManager()->undoActionName(), QStringLiteral("Add Property"));
    }

    void anEditorMadeWhileTheFlagIsUpTakesIt()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        Workspace *workspace = window->workspace();
        workspace->setSelectedRuleset(workspace->selectedFile()->rulesets().first());
        workspace->setCanvasTab(CanvasTab::Code);
        QVERIFY(!window->mainDetailView()->detailColumn());
        workspace->setShouldAddProperty(true);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        PropertyEditorView *editor = window->mainDetailView()->propertyEditor();
        QVERIFY(editor);
        QVERIFY(editor->controller().isAddingProperty());
        QVERIFY(!workspace->shouldAddProperty());
    }

    void anEditInTheInspectorShowsOnTheFileAndItsTitle()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        clickCard(window, 0);
        PropertyEditorView *editor = window->mainDetailView()->propertyEditor();
        QTRY_COMPARE(editor->list()->rowCount(), 1);
        PropertyRowView *row = editor->list()->rowAt(0);
        QTest::mouseClick(row, Qt::LeftButton, Qt::NoModifier, row->valueCell().center());
        QTRY_VERIFY(row->valueField() && row->valueField()->hasFocus());
        QTest::keyClicks(row->valueField(), QStringLiteral("dish"));
        QCOMPARE(window->workspace()->selectedRuleset()->properties().first().value,
                 QStringLiteral("reddish"));
        QTRY_VERIFY(window->workspace()->selectedFile()->hasUnsavedChanges());
        QTRY_VERIFY(window->windowTitle().contains(QStringLiteral("Edited")));
        // The first Return closes the suggestions, the second commits.
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!window->undoManager()->canUndo());
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QCOMPARE(window->undoManager()->undoActionName(), QStringLiteral("Edit Property"));
        QVERIFY(window->undoManager()->undoAction()->isEnabled());
    }
};

QTEST_MAIN(TestInspectorColumn)
#include "tst_inspectorcolumn.moc"
