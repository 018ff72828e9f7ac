// The variables tab through its real widgets: clicks at the rows' cells,
// Return, Tab and Escape in their fields, drags as stepped mouse moves, the
// context menu, the empty state, the filter and the scroll request.

#include "VariablesPanelTestSupport.h"

#include "canvas/CanvasController.h"
#include "canvas/CanvasState.h"
#include "canvas/widgets/CanvasTabButtons.h"
#include "canvas/widgets/NewRulesetSheet.h"
#include "canvas/widgets/NewVariableSheet.h"
#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "colour/widgets/SharedColorDialog.h"
#include "knowledge/Color.h"
#include "model/CSSParser.h"
#include "variables/widgets/GroupChevrons.h"
#include "variables/widgets/VariablesEmptyView.h"
#include "widgets/ToolbarTextField.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>

using namespace Ombrel;
using VariablesTest::dragBy;
using VariablesTest::PanelWindow;
using VariablesTest::release;

namespace {

const QString brandCss = QStringLiteral(":root { --brand: #3b82f6; --gap: 4px; }\n"
                                        ".a { color: var(--brand); }\n"
                                        ".b { border: 1px solid var(--brand, red); }\n"
                                        ".c { color: var(--brand ); }\n"
                                        ".d { color: var( --brand); }\n"
                                        ".e { width: calc(var(--brand) * 2); }\n");

const QString groupsCss = QStringLiteral(":root { --a: 1px; --b: 2px; }\n"
                                         ".x { --c: 3px; --d: red; }\n"
                                         ".y { --e: 5px; }\n");

QString firstValue(const PanelWindow &w, const char *selector)
{
    return w.named(QString::fromLatin1(selector))->properties().first().value;
}

void click(QWidget *widget, QPoint at)
{
    QTest::mouseClick(widget, Qt::LeftButton, {}, at);
}

// A press on a picker's swatch with the pointer on it; answers the popover
// that opened, shown, or none.
ColorPickerPopover *pressSwatch(CSSColorPicker *picker)
{
    QAbstractButton *button = picker->swatchButton();
    QCursor::setPos(button->mapToGlobal(button->rect().center()));
    QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
    ColorPickerPopover *popover = picker->popover();
    if (!popover || !popover->isVisible() || !QTest::qWaitForWindowExposed(popover))
        return nullptr;
    return popover;
}

// Types text into the widget key by key, characters beyond ASCII included.
void type(QWidget *widget, const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            QTest::keyClick(widget, char(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

// Renames the variable through its row: a click on the name, the text
// typed over the whole name, and the key that confirms.
void renameThroughTheRow(const PanelWindow &w, const QString &name, const QString &typed,
                         Qt::Key key = Qt::Key_Return)
{
    click(w.viewport(), w.nameCell(name));
    VariableRow *row = w.rowWidget(name);
    QVERIFY(row);
    QLineEdit *field = row->nameField();
    QTRY_VERIFY(field->hasFocus());
    QCOMPARE(field->text(), name);
    field->selectAll();
    if (typed.isEmpty())
        QTest::keyClick(field, Qt::Key_Delete);
    else
        type(field, typed);
    QTest::keyClick(field, key);
}

} // namespace

class TestVariablesPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // Any complaint of Qt is a failure, but for what the offscreen
        // platform cannot do.
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
    }

    void theTabShowsTheGroupsOfTheFile()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        QVERIFY(w.panel());
        QCOMPARE(w.panel()->objectName(), QStringLiteral("variablesPane"));
        QCOMPARE(w.panel()->currentWidget(), w.list());
        QCOMPARE(w.rows(),
                 (QStringList{"# :root", "--a", "--b", "# .x", "--c", "--d", "# .y", "--e"}));
        // Entry rows stand at the pitch a drag counts in.
        QCOMPARE(w.rowRect(w.rowOf(QStringLiteral("--b"))).top() -
                     w.rowRect(w.rowOf(QStringLiteral("--a"))).top(),
                 int(VariablesController::rowPitch));
    }

    void renamingRewritesTheUsesAndMovesIntoTheValue()
    {
        PanelWindow w(brandCss);
        QVERIFY(w.show());
        renameThroughTheRow(w, QStringLiteral("--brand"), QStringLiteral("--brand2"));
        QCOMPARE(w.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--brand2"));
        QCOMPARE(firstValue(w, ".a"), QStringLiteral("var(--brand2)"));
        QCOMPARE(firstValue(w, ".b"), QStringLiteral("1px solid var(--brand2, red)"));
        QCOMPARE(firstValue(w, ".c"), QStringLiteral("var(--brand2 )"));
        QCOMPARE(firstValue(w, ".d"), QStringLiteral("var( --brand)"));
        QCOMPARE(firstValue(w, ".e"), QStringLiteral("calc(var(--brand2) * 2)"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Rename Variable"));
        // Confirming the name moves on into the value, which takes the focus
        // shortly after.
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--brand2")));
        VariableRow *row = w.rowWidget(QStringLiteral("--brand2"));
        QVERIFY(row->nameField()->isHidden());
        QVERIFY(row->valueField()->isVisible());
        QTRY_VERIFY(row->valueField()->hasFocus());
        QCOMPARE(row->valueField()->text(), QStringLiteral("#3b82f6"));
    }

    void renamingToAPlainNameAddsTheDashes()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        renameThroughTheRow(w, QStringLiteral("--a"), QStringLiteral("brand"));
        QCOMPARE(w.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--brand"));
    }

    void renamingToTheDashesAloneOrToBlanksCancels_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("dashes") << QStringLiteral("--");
        QTest::newRow("blanks") << QStringLiteral("   ");
        QTest::newRow("nothing") << QString();
    }
    void renamingToTheDashesAloneOrToBlanksCancels()
    {
        QFETCH(QString, typed);
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const QUuid a = w.entry(QStringLiteral("--a")).propID;
        renameThroughTheRow(w, QStringLiteral("--a"), typed);
        QCOMPARE(w.entry(QStringLiteral("--a")).propID, a);
        QVERIFY(w.controller().renamingPropID().isNull());
        QVERIFY(!w.controller().isEditingValue(a));
        QTRY_VERIFY(!w.rowWidget(QStringLiteral("--a")));
        QVERIFY(!w.undo.canUndo());
    }

    void aNameWithACombiningMarkIsThreeCharacters()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        renameThroughTheRow(w, QStringLiteral("--a"), QStringLiteral("--e\u0301"));
        QCOMPARE(w.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--e\u0301"));
    }

    void tabConfirmsTheNameAndStaysInTheRow()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        renameThroughTheRow(w, QStringLiteral("--a"), QStringLiteral("--z"), Qt::Key_Tab);
        QCOMPARE(w.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--z"));
        VariableRow *row = w.rowWidget(QStringLiteral("--z"));
        QVERIFY(row);
        QTRY_VERIFY(row->valueField()->hasFocus());
        QVERIFY(!w.view->variableSearchField()->hasFocus());
    }

    void confirmingAnUnchangedNameMovesOnWithoutAStep()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.nameCell(QStringLiteral("--b")));
        VariableRow *row = w.rowWidget(QStringLiteral("--b"));
        QVERIFY(row);
        QTRY_VERIFY(row->nameField()->hasFocus());
        QTest::keyClick(row->nameField(), Qt::Key_Return);
        QVERIFY(!w.undo.canUndo());
        QTRY_VERIFY(row->valueField()->hasFocus());
        QVERIFY(w.controller().isEditingValue(w.entry(QStringLiteral("--b")).propID));
    }

    void escapeInTheNameEndsTheRename()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.nameCell(QStringLiteral("--b")));
        VariableRow *row = w.rowWidget(QStringLiteral("--b"));
        QTRY_VERIFY(row->nameField()->hasFocus());
        QTest::keyClicks(row->nameField(), QStringLiteral("x"));
        QTest::keyClick(row->nameField(), Qt::Key_Escape);
        QVERIFY(w.controller().renamingPropID().isNull());
        QCOMPARE(w.rows().at(2), QStringLiteral("--b"));
        QVERIFY(!w.undo.canUndo());
    }

    void leavingTheNameFieldNeitherCommitsNorCancels()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.nameCell(QStringLiteral("--b")));
        VariableRow *row = w.rowWidget(QStringLiteral("--b"));
        QTRY_VERIFY(row->nameField()->hasFocus());
        row->nameField()->selectAll();
        QTest::keyClicks(row->nameField(), QStringLiteral("--bee"));
        w.view->variableSearchField()->setFocus(Qt::MouseFocusReason);
        QTRY_VERIFY(!row->nameField()->hasFocus());
        QCOMPARE(w.controller().renamingPropID(), w.entry(QStringLiteral("--b")).propID);
        QVERIFY(row->nameField()->isVisible());
        QCOMPARE(row->nameField()->text(), QStringLiteral("--bee"));
        QCOMPARE(w.rows().at(2), QStringLiteral("--b"));
        // Back in the field, Return still confirms what was typed.
        row->nameField()->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(row->nameField(), Qt::Key_Return);
        QCOMPARE(w.named(QStringLiteral(":root"))->properties()[1].name, QStringLiteral("--bee"));
    }

    void aValueIsWrittenOnReturnAndReturnOnAnUnchangedValueMakesNoStep()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--b")));
        const VariableEntry b = w.entry(QStringLiteral("--b"));
        QCOMPARE(w.workspace.selectedVariablePropID(), b.propID);
        QCOMPARE(w.workspace.selectedVariableRulesetID(), b.rulesetID);
        VariableRow *row = w.rowWidget(QStringLiteral("--b"));
        QVERIFY(row);
        QTRY_VERIFY(row->valueField()->hasFocus());
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!w.undo.canUndo());
        QTRY_VERIFY(!w.rowWidget(QStringLiteral("--b")));

        click(w.viewport(), w.valueCell(QStringLiteral("--b")));
        row = w.rowWidget(QStringLiteral("--b"));
        QTRY_VERIFY(row->valueField()->hasFocus());
        row->valueField()->selectAll();
        QTest::keyClicks(row->valueField(), QStringLiteral(" 2rem "));
        QCOMPARE(w.value(QStringLiteral("--b")), QStringLiteral("2px"));
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QCOMPARE(w.value(QStringLiteral("--b")), QStringLiteral("2rem"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Edit Variable"));
        QVERIFY(!w.window.focusWidget() || !w.panel()->isAncestorOf(w.window.focusWidget()));
        QTRY_COMPARE(
            w.model()->index(w.rowOf(QStringLiteral("--b"))).data(VariableRoles::Value).toString(),
            QStringLiteral("2rem"));
    }

    void escapeDuringAValueEditLeavesTheModelUntouched()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--b")));
        VariableRow *row = w.rowWidget(QStringLiteral("--b"));
        QTRY_VERIFY(row->valueField()->hasFocus());
        QTest::keyClicks(row->valueField(), QStringLiteral("999"));
        QTest::keyClick(row->valueField(), Qt::Key_Escape);
        QCOMPARE(w.value(QStringLiteral("--b")), QStringLiteral("2px"));
        QVERIFY(!w.undo.canUndo());
        QTRY_VERIFY(!w.rowWidget(QStringLiteral("--b")));
        QCOMPARE(w.model()
                     ->index(w.rowOf(QStringLiteral("--b")))
                     .data(VariableRoles::LocalValue)
                     .toString(),
                 QStringLiteral("2px"));
        QVERIFY(!w.view->variableSearchField()->hasFocus());
    }

    void leavingTheValueFieldCommits()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--a")));
        VariableRow *row = w.rowWidget(QStringLiteral("--a"));
        QTRY_VERIFY(row->valueField()->hasFocus());
        row->valueField()->selectAll();
        QTest::keyClicks(row->valueField(), QStringLiteral("10px"));
        // A click on another row's value: the first commits, the second edits.
        click(w.viewport(), w.valueCell(QStringLiteral("--c")));
        QCOMPARE(w.value(QStringLiteral("--a")), QStringLiteral("10px"));
        QCOMPARE(w.workspace.selectedVariablePropID(), w.entry(QStringLiteral("--c")).propID);
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--c")) &&
                    w.rowWidget(QStringLiteral("--c"))->valueField()->hasFocus());
        QTRY_VERIFY(!w.rowWidget(QStringLiteral("--a")));
    }

    void theSwatchVanishesAtOnceWhileTyping()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--d")));
        VariableRow *row = w.rowWidget(QStringLiteral("--d"));
        QTRY_VERIFY(row->valueField()->hasFocus());
        QVERIFY(row->picker()->isVisible());
        QCOMPARE(row->picker()->geometry(),
                 VariableRowStyle::entryGeometry(row->rect(), true).swatch);
        const int fieldLeft = row->valueField()->geometry().left();
        // The value is selected when its field takes the focus.
        QCOMPARE(row->valueField()->selectedText(), QStringLiteral("red"));
        QTest::keyClick(row->valueField(), Qt::Key_End);
        QTest::keyClicks(row->valueField(), QStringLiteral("x"));
        QVERIFY(!w.controller().isColorValue(w.entry(QStringLiteral("--d"))));
        QVERIFY(row->picker()->isHidden());
        // The field takes the swatch's place.
        QVERIFY(row->valueField()->geometry().left() < fieldLeft);
        QTest::keyClick(row->valueField(), Qt::Key_Backspace);
        QVERIFY(row->picker()->isVisible());
        QCOMPARE(row->picker()->value(), QStringLiteral("red"));
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("red"));
    }

    void eachColourThePickerCommitsIsOneEdit()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--d")));
        VariableRow *row = w.rowWidget(QStringLiteral("--d"));
        QTRY_VERIFY(row && row->valueField()->hasFocus());
        ColorPickerPopover *popover = pressSwatch(row->picker());
        QVERIFY(popover);
        // Opening the popover ends no edit.
        QVERIFY(w.controller().isEditingValue(w.entry(QStringLiteral("--d")).propID));
        popover->field()->selectAll();
        QTest::keyClicks(popover->field(), QStringLiteral("#00ff00"));
        QTest::keyClick(popover->field(), Qt::Key_Return);
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("#00ff00"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Edit Variable"));
        QCOMPARE(row->valueField()->text(), QStringLiteral("#00ff00"));
        QVERIFY(popover->isVisible());
        VariablesTest::endTurn();
        // A keyword commits too, and closes the popover.
        QTest::mouseClick(popover->keywordButton(QStringLiteral("inherit")), Qt::LeftButton);
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("inherit"));
        QTRY_VERIFY(!popover->isVisible());
        QVERIFY(row->picker()->isHidden());
        VariablesTest::endTurn();
        w.undo.undo();
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("#00ff00"));
        QVERIFY(!w.undo.canRedo());
        w.undo.undo();
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("red"));
        QVERIFY(!w.undo.canUndo());
    }

    void aPaintedSwatchOpensThePickerWithoutAnEdit()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        QVERIFY(!w.rowWidget(QStringLiteral("--d")));
        const QPoint swatch = w.geometry(QStringLiteral("--d")).swatch.center();
        QCursor::setPos(w.viewport()->mapToGlobal(swatch));
        click(w.viewport(), swatch);
        VariableRow *row = w.rowWidget(QStringLiteral("--d"));
        QVERIFY(row);
        QTRY_VERIFY(row->picker()->popover() && row->picker()->popover()->isVisible());
        const VariableEntry d = w.entry(QStringLiteral("--d"));
        QVERIFY(!w.controller().isEditingValue(d.propID));
        QVERIFY(w.workspace.selectedVariablePropID().isNull());
        QTest::mouseClick(row->picker()->popover()->keywordButton(QStringLiteral("transparent")),
                          Qt::LeftButton);
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("transparent"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Edit Variable"));
        QTRY_COMPARE(
            w.model()->index(w.rowOf(QStringLiteral("--d"))).data(VariableRoles::Value).toString(),
            QStringLiteral("transparent"));
    }

    void theSystemChooserShowsItsColoursAndCommitsOnceAtClosing()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--d")));
        VariableRow *row = w.rowWidget(QStringLiteral("--d"));
        QTRY_VERIFY(row && row->valueField()->hasFocus());
        ColorPickerPopover *popover = pressSwatch(row->picker());
        QVERIFY(popover);
        QTest::mouseClick(popover->panelButton(), Qt::LeftButton);
        QTRY_VERIFY(sharedColorDialog()->isVisible());
        sharedColorDialog()->setCurrentColor(QColor(0x11, 0x22, 0x33));
        sharedColorDialog()->setCurrentColor(QColor(0x44, 0x55, 0x66));
        // The chooser's changes show in the row; the model waits.
        QCOMPARE(row->valueField()->text(), QStringLiteral("#445566"));
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("red"));
        QVERIFY(!w.undo.canUndo());
        sharedColorDialog()->close();
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("#445566"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Edit Variable"));
        VariablesTest::endTurn();
        w.undo.undo();
        QCOMPARE(w.value(QStringLiteral("--d")), QStringLiteral("red"));
        QVERIFY(!w.undo.canUndo());
    }

    void undoOfARenameRestoresValuesEditedSince()
    {
        PanelWindow w(QStringLiteral(":root { --a: 1px; --b: var(--a); }"));
        QVERIFY(w.show());
        renameThroughTheRow(w, QStringLiteral("--a"), QStringLiteral("--z"));
        QCOMPARE(w.value(QStringLiteral("--b")), QStringLiteral("var(--z)"));
        QTest::keyClick(w.rowWidget(QStringLiteral("--z"))->valueField(), Qt::Key_Escape);
        // Another pane edits the value without a step of this tab.
        const CSSRulesetPtr root = w.named(QStringLiteral(":root"));
        CSSPropertyList properties = root->properties();
        properties[1].value = QStringLiteral("blue");
        root->setProperties(properties);
        w.undo.undo();
        QCOMPARE(w.value(QStringLiteral("--b")), QStringLiteral("var(--a)"));
        QTRY_COMPARE(w.rows(), (QStringList{"# :root", "--a", "--b"}));
        QVERIFY(!w.undo.canRedo());
    }

    void theFilterCountsMatchesAndSaysWhenNothingIsLeft()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        QTRY_VERIFY(w.view->variableSearchField()->isVisible());
        w.view->variableSearchField()->setFocus();
        QTest::keyClicks(w.view->variableSearchField(), QStringLiteral("px"));
        QCOMPARE(w.rows(), (QStringList{"# :root", "--a", "--b", "# .x", "--c", "# .y", "--e"}));
        QCOMPARE(w.model()->index(3).data(VariableRoles::CountText).toString(),
                 QStringLiteral("1 var"));
        QCOMPARE(w.model()->index(0).data(VariableRoles::CountText).toString(),
                 QStringLiteral("2 vars"));
        QTest::keyClicks(w.view->variableSearchField(), QStringLiteral("zz "));
        QCOMPARE(w.model()->rowCount(), 0);
        QCOMPARE(w.controller().noMatchText(), QStringLiteral("No matches for \"pxzz\""));
        QVERIFY(!w.list()->noMatchRect().isEmpty());
        QCOMPARE(w.list()->noMatchRect().top(), 40);
    }

    void matchesOnlyInFoldedGroupsKeepTheHeadersAboveTheMessage()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.headerOf(QStringLiteral(".x")));
        QCOMPARE(w.rows(), (QStringList{"# :root", "--a", "--b", "# .x", "# .y", "--e"}));
        w.view->variableSearchField()->setFocus();
        QTest::keyClicks(w.view->variableSearchField(), QStringLiteral("red"));
        QCOMPARE(w.rows(), QStringList{"# .x"});
        QCOMPARE(w.model()->index(0).data(VariableRoles::CountText).toString(),
                 QStringLiteral("1 var"));
        QCOMPARE(w.controller().noMatchText(), QStringLiteral("No matches for \"red\""));
        QVERIFY(w.list()->noMatchRect().top() > w.rowRect(0).bottom());
    }

    void aHeaderClickFoldsTheGroupAndTurnsItsChevron()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const QUuid root = w.named(QStringLiteral(":root"))->id();
        GroupChevrons *chevrons = w.list()->chevrons();
        QCOMPARE(chevrons->angle(root, false), 90.0);
        click(w.viewport(), w.headerOf(QStringLiteral(":root")));
        QCOMPARE(w.view->controller().state().collapsedGroups(), QSet<QUuid>{root});
        QVERIFY(chevrons->isTurning());
        QTRY_VERIFY(!chevrons->isTurning());
        QCOMPARE(chevrons->angle(root, true), 0.0);
        QCOMPARE(w.rows().first(2), (QStringList{"# :root", "# .x"}));
        click(w.viewport(), w.headerOf(QStringLiteral(":root")));
        QVERIFY(w.view->controller().state().collapsedGroups().isEmpty());
        QCOMPARE(w.rows().first(2), (QStringList{"# :root", "--a"}));
    }

    void aDragMovesTheVariableAndUndoAndRedoAlternate()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const QPoint start = w.rowRect(w.rowOf(QStringLiteral("--a"))).center();
        QTest::mousePress(w.viewport(), Qt::LeftButton, {}, start);
        QTest::mouseMove(w.viewport(), start + QPoint(0, 5));
        QVERIFY(w.controller().draggingVarID().isNull());
        release(w.viewport(), start + QPoint(0, 5));
        // Only a movement from its press drags: the row above is untouched.
        dragBy(w.viewport(), start, 2 * int(VariablesController::rowPitch));
        QCOMPARE(w.controller().draggingVarID(), w.entry(QStringLiteral("--a")).propID);
        QCOMPARE(w.controller().dropVarTargetIndex(), std::optional<int>(2));
        // The line stands over --c, the row at that position.
        const QRect line = w.list()->dropLineRect();
        QVERIFY(!line.isEmpty());
        QCOMPARE(line.top(), w.rowRect(w.rowOf(QStringLiteral("--c"))).top() - 1);
        release(w.viewport(), start + QPoint(0, 2 * int(VariablesController::rowPitch)));
        QVERIFY(w.controller().draggingVarID().isNull());
        QVERIFY(w.list()->dropLineRect().isEmpty());
        const QStringList moved{":root: --b", ".x: --a --c --d", ".y: --e"};
        const auto layout = [&w] {
            QStringList lines;
            for (const CSSRulesetPtr &ruleset : w.file->rulesets()) {
                QStringList names;
                for (const CSSProperty &property : ruleset->properties())
                    names.append(property.name);
                lines.append(ruleset->selector() + QStringLiteral(": ") +
                             names.join(QLatin1Char(' ')));
            }
            return lines;
        };
        QCOMPARE(layout(), moved);
        QTRY_COMPARE(w.rows(),
                     (QStringList{"# :root", "--b", "# .x", "--a", "--c", "--d", "# .y", "--e"}));
        const QStringList before{":root: --a --b", ".x: --c --d", ".y: --e"};
        for (int round = 0; round < 3; ++round) {
            w.undo.undo();
            QCOMPARE(layout(), before);
            w.undo.redo();
            QCOMPARE(layout(), moved);
        }
    }

    void aDragPastTheEndDrawsTheLineBelowTheLastGroup()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const QPoint start = w.rowRect(w.rowOf(QStringLiteral("--b"))).center();
        dragBy(w.viewport(), start, 600);
        QCOMPARE(w.controller().dropVarTargetIndex(), std::optional<int>(5));
        const QRect line = w.list()->dropLineRect();
        QCOMPARE(line.top(), w.rowRect(w.model()->rowCount() - 1).bottom());
        release(w.viewport(), start + QPoint(0, 600));
        QCOMPARE(w.named(QStringLiteral(".y"))->properties().last().name, QStringLiteral("--b"));
    }

    void whileAFilterIsActiveRowsCannotBeDragged()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        w.view->variableSearchField()->setFocus();
        QTest::keyClicks(w.view->variableSearchField(), QStringLiteral("px"));
        const QPoint start = w.rowRect(w.rowOf(QStringLiteral("--a"))).center();
        dragBy(w.viewport(), start, 200);
        QVERIFY(w.controller().draggingVarID().isNull());
        QVERIFY(w.list()->dropLineRect().isEmpty());
        release(w.viewport(), start + QPoint(0, 200));
        QCOMPARE(w.named(QStringLiteral(":root"))->properties().first().name,
                 QStringLiteral("--a"));
        QVERIFY(!w.undo.canUndo());
    }

    void aDragPastAFoldedGroupCountsOnlyVisibleRows()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.headerOf(QStringLiteral(".x")));
        QTRY_VERIFY(!w.list()->chevrons()->isTurning());
        // --b is followed by the folded .x and then --e: one row down is --e.
        const QPoint start = w.rowRect(w.rowOf(QStringLiteral("--b"))).center();
        dragBy(w.viewport(), start, int(VariablesController::rowPitch));
        QCOMPARE(w.controller().dropVarTargetIndex(), std::optional<int>(2));
        release(w.viewport(), start + QPoint(0, int(VariablesController::rowPitch)));
        QCOMPARE(w.named(QStringLiteral(".y"))->properties().first().name, QStringLiteral("--b"));
        QCOMPARE(w.named(QStringLiteral(".x"))->properties().size(), 2);
    }

    void theContextMenuRenamesDuplicatesAndDeletes()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const auto choose = [&w](const QString &name, const QString &item) {
            Q_EMIT w.list()->customContextMenuRequested(w.valueCell(name));
            QMenu *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            QStringList items;
            for (QAction *action : menu->actions())
                items.append(action->text());
            QCOMPARE(items, (QStringList{"Rename", "Duplicate", "", "Delete"}));
            // As a click on an item does: the menu closes, then the item acts.
            menu->close();
            for (QAction *action : menu->actions()) {
                if (action->text() == item)
                    action->trigger();
            }
            // The offscreen platform gives the window its activation back
            // only when asked.
            w.window.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&w.window));
        };
        choose(QStringLiteral("--c"), QStringLiteral("Duplicate"));
        QCOMPARE(w.named(QStringLiteral(".x"))->properties()[1].name, QStringLiteral("--c-copy"));
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Duplicate Variable"));

        // Deleting another variable keeps the selection; deleting the
        // selected one clears it.
        click(w.viewport(), w.valueCell(QStringLiteral("--a")));
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--a")));
        QTest::keyClick(w.rowWidget(QStringLiteral("--a"))->valueField(), Qt::Key_Escape);
        const VariableEntry a = w.entry(QStringLiteral("--a"));
        QCOMPARE(w.workspace.selectedVariablePropID(), a.propID);
        QTRY_COMPARE(w.rows().size(), 9);
        choose(QStringLiteral("--e"), QStringLiteral("Delete"));
        QCOMPARE(w.workspace.selectedVariablePropID(), a.propID);
        QCOMPARE(w.workspace.selectedVariableRulesetID(), a.rulesetID);
        QTRY_VERIFY(w.rowOf(QStringLiteral("--a")) >= 0);
        choose(QStringLiteral("--a"), QStringLiteral("Delete"));
        QVERIFY(w.workspace.selectedVariablePropID().isNull());
        QVERIFY(w.workspace.selectedVariableRulesetID().isNull());
        QCOMPARE(w.undo.undoActionName(), QStringLiteral("Delete Variable"));

        QTRY_VERIFY(w.rowOf(QStringLiteral("--b")) >= 0);
        choose(QStringLiteral("--b"), QStringLiteral("Rename"));
        QCOMPARE(w.workspace.selectedVariablePropID(), w.entry(QStringLiteral("--b")).propID);
        QVERIFY(w.rowWidget(QStringLiteral("--b")));
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--b"))->nameField()->hasFocus());
    }

    void theWorkspaceCommandsActOnTheSelectedVariable()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        const VariableEntry c = w.entry(QStringLiteral("--c"));
        w.workspace.setSelectedVariablePropID(c.propID);
        w.workspace.setSelectedVariableRulesetID(c.rulesetID);
        w.workspace.setShouldRenameVariable(true);
        QVERIFY(!w.workspace.shouldRenameVariable());
        QVERIFY(w.rowWidget(QStringLiteral("--c")));
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--c"))->nameField()->hasFocus());
        QTest::keyClick(w.rowWidget(QStringLiteral("--c"))->nameField(), Qt::Key_Escape);
        w.workspace.setShouldDuplicateVariable(true);
        QCOMPARE(w.named(QStringLiteral(".x"))->properties()[1].name, QStringLiteral("--c-copy"));
        w.workspace.setShouldDeleteVariable(true);
        QCOMPARE(w.named(QStringLiteral(".x"))->properties().first().name,
                 QStringLiteral("--c-copy"));
        QVERIFY(w.workspace.selectedVariablePropID().isNull());
    }

    void aRowThatLeavesAndComesBackKeepsItsEdit()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--e")));
        QTRY_VERIFY(w.rowWidget(QStringLiteral("--e")) &&
                    w.rowWidget(QStringLiteral("--e"))->valueField()->hasFocus());
        QTest::keyClick(w.rowWidget(QStringLiteral("--e"))->valueField(), Qt::Key_End);
        QTest::keyClicks(w.rowWidget(QStringLiteral("--e"))->valueField(), QStringLiteral("0"));
        // The filter hides the row, without taking the focus from it.
        w.view->controller().state().setVariableSearchText(QStringLiteral("--a"));
        QVERIFY(!w.rowWidget(QStringLiteral("--e")));
        w.view->controller().state().setVariableSearchText(QString());
        VariableRow *row = w.rowWidget(QStringLiteral("--e"));
        QVERIFY(row);
        QCOMPARE(row->valueField()->text(), QStringLiteral("5px0"));
        QCOMPARE(w.value(QStringLiteral("--e")), QStringLiteral("5px"));
    }

    void aScrollRequestCentresTheRow()
    {
        QString css = QStringLiteral(":root {");
        for (int i = 0; i < 300; ++i)
            css += QStringLiteral(" --v%1: %1px;").arg(i);
        css += QStringLiteral(" }");
        PanelWindow w(css);
        QVERIFY(w.show());
        QCOMPARE(w.list()->verticalScrollBar()->value(), 0);
        w.view->controller().state().setVariableScrollToPropID(
            w.entry(QStringLiteral("--v250")).propID);
        QVERIFY(w.view->controller().state().variableScrollToPropID().isNull());
        QTRY_VERIFY(w.list()->verticalScrollBar()->value() > 0);
        const int centre = w.rowRect(w.rowOf(QStringLiteral("--v250"))).center().y();
        QVERIFY(std::abs(centre - w.viewport()->height() / 2) <=
                int(VariablesController::rowPitch) / 2);
    }

    void aScrollRequestMadeElsewhereIsServedWhenTheTabShows()
    {
        QString css = QStringLiteral(":root {");
        for (int i = 0; i < 300; ++i)
            css += QStringLiteral(" --v%1: %1px;").arg(i);
        css += QStringLiteral(" }");
        PanelWindow w(css);
        QVERIFY(w.show());
        QTest::mouseClick(w.view->tabButton(CanvasTab::Nodes), Qt::LeftButton);
        QCOMPARE(w.workspace.canvasTab(), CanvasTab::Nodes);
        const QUuid id = w.entry(QStringLiteral("--v200")).propID;
        w.view->controller().state().setVariableScrollToPropID(id);
        QTest::mouseClick(w.view->tabButton(CanvasTab::Variables), Qt::LeftButton);
        QVERIFY(w.panel());
        QTRY_VERIFY(w.view->controller().state().variableScrollToPropID().isNull());
        QTRY_VERIFY(w.list()->verticalScrollBar()->value() > 0);
        const int centre = w.rowRect(w.rowOf(QStringLiteral("--v200"))).center().y();
        QVERIFY(std::abs(centre - w.viewport()->height() / 2) <=
                int(VariablesController::rowPitch) / 2);
    }

    void aVariableAddedFromTheSheetIsSelectedAndShown()
    {
        QString css = QStringLiteral(":root {");
        for (int i = 0; i < 100; ++i)
            css += QStringLiteral(" --v%1: %1px;").arg(i);
        css += QStringLiteral(" }");
        PanelWindow w(css);
        QVERIFY(w.show());
        QTest::mouseClick(w.view->plusButton(), Qt::LeftButton);
        NewVariableSheet *sheet = w.view->newVariableSheet();
        QTRY_VERIFY(sheet && sheet->isVisible());
        sheet->nameField()->setFocus();
        QTest::keyClicks(sheet->nameField(), QStringLiteral("added"));
        QTest::keyClicks(sheet->valueField(), QStringLiteral("#fff"));
        QTest::keyClick(sheet->valueField(), Qt::Key_Return);
        QTRY_VERIFY(!sheet->isVisible());
        const VariableEntry added = w.entry(QStringLiteral("--added"));
        QCOMPARE(w.workspace.selectedVariablePropID(), added.propID);
        QTRY_VERIFY(w.rowOf(QStringLiteral("--added")) >= 0);
        QTRY_VERIFY(
            w.viewport()->rect().contains(w.rowRect(w.rowOf(QStringLiteral("--added"))).center()));
    }

    void anEmptyFileOffersANewRuleset()
    {
        PanelWindow w{QString()};
        QVERIFY(w.show());
        VariablesEmptyView *empty = w.panel()->emptyView();
        QVERIFY(empty);
        QCOMPARE(w.panel()->currentWidget(), empty);
        QCOMPARE(empty->message()->text(), QStringLiteral("This file is empty."));
        QCOMPARE(empty->button()->text(), QStringLiteral("New Ruleset"));
        QTest::mouseClick(empty->button(), Qt::LeftButton);
        QTRY_VERIFY(w.view->newRulesetSheet() && w.view->newRulesetSheet()->isVisible());
    }

    void aFileWithoutVariablesOffersANewVariable()
    {
        PanelWindow w(QStringLiteral(".x { color: red; }"));
        QVERIFY(w.show());
        VariablesEmptyView *empty = w.panel()->emptyView();
        QVERIFY(empty);
        QCOMPARE(empty->message()->text(), QStringLiteral("This file has no variables yet."));
        QCOMPARE(empty->button()->text(), QStringLiteral("New Variable"));
        QTest::mouseClick(empty->button(), Qt::LeftButton);
        QTRY_VERIFY(w.view->newVariableSheet() && w.view->newVariableSheet()->isVisible());
        QCOMPARE(w.view->controller().state().newVariableSelector(), QStringLiteral(".x"));
    }

    void theListFollowsAVariableAddedToAnEmptyFile()
    {
        PanelWindow w(QStringLiteral(".x { color: red; }"));
        QVERIFY(w.show());
        QCOMPARE(w.panel()->currentWidget(), w.panel()->emptyView());
        w.view->controller().state().setNewVariableSelector(QStringLiteral(".x"));
        w.view->controller().operations().addVariable(QStringLiteral("--new"), QStringLiteral("1"));
        QTRY_COMPARE(w.panel()->currentWidget(), w.list());
        QCOMPARE(w.rows(), (QStringList{"# .x", "--new"}));
    }

    void aCommitOnARulesetTheCodeTabReplacedChangesNothing()
    {
        PanelWindow w(groupsCss);
        QVERIFY(w.show());
        click(w.viewport(), w.valueCell(QStringLiteral("--a")));
        VariableRow *row = w.rowWidget(QStringLiteral("--a"));
        QTRY_VERIFY(row && row->valueField()->hasFocus());
        QTest::keyClicks(row->valueField(), QStringLiteral("0"));
        const QString before = w.file->generateCSS();
        w.file->setRulesets(CSSParser::parse(before));
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QCOMPARE(w.file->generateCSS(), before);
        QVERIFY(!w.undo.canUndo());
        QTRY_COMPARE(w.rows().size(), 8);
    }

    void hugeValuesShowAndEdit()
    {
        const QString big(100 * 1024, QLatin1Char('a'));
        PanelWindow w(QStringLiteral(":root { --big: ") + big + QStringLiteral("; --c: red; }"));
        QVERIFY(w.show());
        QCOMPARE(w.value(QStringLiteral("--big")).size(), big.size());
        click(w.viewport(), w.valueCell(QStringLiteral("--big")));
        VariableRow *row = w.rowWidget(QStringLiteral("--big"));
        QTRY_VERIFY(row && row->valueField()->hasFocus());
        QTest::keyClick(row->valueField(), Qt::Key_End);
        QTest::keyClicks(row->valueField(), QStringLiteral("b"));
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QCOMPARE(w.value(QStringLiteral("--big")), big + QStringLiteral("b"));
        w.window.grab();
    }
};

QTEST_MAIN(TestVariablesPanel)
#include "tst_variablespanel.moc"
