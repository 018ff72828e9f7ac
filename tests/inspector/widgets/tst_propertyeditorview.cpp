#include "InspectorViewTestSupport.h"

#include "colour/ColorPaletteEntry.h"
#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPaletteGrid.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "colour/widgets/SharedColorDialog.h"
#include "inspector/widgets/AddPropertyRow.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "workspace/AppPreferences.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QColorDialog>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QToolButton>

using namespace Ombrel;
using InspectorTest::Disk;
using InspectorTest::endTurn;
using InspectorTest::InspectorWindow;
using InspectorTest::waitForFocus;

namespace {

// Starts an edit of a row's value with a click and waits for the field.
bool editValue(PropertyRowView *row)
{
    InspectorWindow::clickCell(row, PropertyField::Value);
    return waitForFocus([row] { return row->valueField(); });
}

bool editName(PropertyRowView *row)
{
    InspectorWindow::clickCell(row, PropertyField::Name);
    return waitForFocus([row] { return row->nameField(); });
}

// Replaces the text of the focused field with keys: select all, then type.
void retype(QWidget *field, const QString &text)
{
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Backspace);
    else
        QTest::keyClicks(field, text);
}

} // namespace

class TestPropertyEditorView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
        AppPreferences::shared().setShowColorSwatches(true);
    }

    // --- Header and bar ---

    void subtitleCountsPropertiesInTheSingularForOne_data()
    {
        QTest::addColumn<QString>("css");
        QTest::addColumn<QString>("subtitle");
        QTest::newRow("none") << QStringLiteral("a { }") << QStringLiteral("0 properties");
        QTest::newRow("one") << QStringLiteral("a { top: 0; }") << QStringLiteral("1 property");
        QTest::newRow("two") << QStringLiteral("a { top: 0; left: 0; }")
                             << QStringLiteral("2 properties");
    }
    void subtitleCountsPropertiesInTheSingularForOne()
    {
        QFETCH(QString, css);
        QFETCH(QString, subtitle);
        InspectorWindow w(css);
        w.select({"a"});
        QVERIFY(w.show());
        QCOMPARE(w.view->titleLabel()->text(), QStringLiteral("a"));
        QVERIFY(w.view->subtitleLabel()->isVisible());
        QCOMPARE(w.view->subtitleLabel()->text(), subtitle);
        QCOMPARE(w.view->sortButton()->isEnabled(), w.named("a")->properties().size() >= 2);
    }

    void aMultiSelectionHasNeitherSortButtonNorSubtitle()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; left: 0; }\nb { top: 1px; }"));
        w.select({"a", "b"});
        QVERIFY(w.show());
        QTRY_COMPARE(w.view->titleLabel()->text(), QStringLiteral("2 rulesets selected"));
        QVERIFY(!w.view->subtitleLabel()->isVisible());
        QVERIFY(!w.view->sortButton()->isVisible());
        QCOMPARE(w.list()->rowCount(), 1);
        // The count cannot be edited.
        QTest::mouseClick(w.view->titleLabel(), Qt::LeftButton);
        QVERIFY(!w.ctl().isEditingSelector());
    }

    void sortButtonSortsWithOneUndoStep()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->sortButton(), Qt::LeftButton);
        QCOMPARE(w.declarations("a"), (QStringList{"color: red", "top: 0"}));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Sort Properties"));
        QTRY_COMPARE(w.list()->properties().first().name, QStringLiteral("color"));
    }

    void addButtonIsDisabledWhileTheRowIsOpenAndTheMenuLeavesItAsItIs()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QVERIFY(w.ctl().isAddingProperty());
        QVERIFY(!w.view->addButton()->isEnabled());
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("marg"));
        QCOMPARE(w.ctl().newPropertyName(), QStringLiteral("marg"));
        // The menu command, as New Property raises it.
        w.workspace.setShouldAddProperty(true);
        QVERIFY(!w.workspace.shouldAddProperty());
        QCOMPARE(w.list()->addRow(), add);
        QCOMPARE(add->nameField()->text(), QStringLiteral("marg"));
    }

    void addRowTakesANameAValueAndCommitsWithReturn()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"), QSize(360, 420), true, Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("displ"));
        // The menu takes the suggestion, and its confirmation moves on.
        QTest::keyClick(add->nameField(), Qt::Key_Down);
        QTest::keyClick(add->nameField(), Qt::Key_Return);
        QCOMPARE(add->nameField()->text(), QStringLiteral("display"));
        QVERIFY(waitForFocus([add] { return add->valueField(); }));
        QVERIFY(add->valueField()->menu().suggestions().contains(QStringLiteral("flex")));
        QTest::keyClicks(add->valueField(), QStringLiteral("grid"));
        QTest::keyClick(add->valueField(), Qt::Key_Escape);
        QVERIFY(w.ctl().isAddingProperty());
        QTest::keyClick(add->valueField(), Qt::Key_Return);
        QCOMPARE(w.declarations("a"), (QStringList{"top: 0", "display: grid"}));
        QVERIFY(!w.ctl().isAddingProperty());
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Add Property"));
        QTRY_VERIFY(!w.list()->addRow());
        QTRY_COMPARE(w.list()->rowCount(), 2);
        QVERIFY(w.file->hasUnsavedChanges());
    }

    void aBlankAddRowClosesAndAddsNothing()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"), QSize(360, 420), true, Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("  "));
        QTest::mouseClick(add->commitButton(), Qt::LeftButton);
        QVERIFY(!w.ctl().isAddingProperty());
        QCOMPARE(w.declarations("a"), QStringList{"top: 0"});
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void aNameWithoutValueClosesOnATapOfTheList()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"), QSize(360, 420), true, Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("margin"));
        QTest::mouseClick(w.list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(100, w.list()->viewport()->height() - 5));
        QVERIFY(!w.ctl().isAddingProperty());
        QTRY_VERIFY(!w.list()->addRow());
        QCOMPARE(w.declarations("a"), QStringList{"top: 0"});
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void escapeOrTheCrossCancelsTheAddRow()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("zz"));
        QTest::keyClick(add->nameField(), Qt::Key_Escape);
        QVERIFY(w.ctl().isAddingProperty());
        QTest::keyClick(add->nameField(), Qt::Key_Escape);
        QVERIFY(!w.ctl().isAddingProperty());

        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        QTest::mouseClick(w.list()->addRow()->cancelButton(), Qt::LeftButton);
        QVERIFY(!w.ctl().isAddingProperty());
        QCOMPARE(w.declarations("a"), QStringList{"top: 0"});
    }

    // --- Editing a row ---

    void typingEditsTheModelOnEachKeyAndReturnMakesOneStep()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        QVERIFY(row->isEditing());
        QCOMPARE(w.ctl().editingPropertyID(), row->property().id);
        retype(row->valueField(), QStringLiteral("blu"));
        QCOMPARE(w.value("a", "color"), QStringLiteral("blu"));
        QTest::keyClicks(row->valueField(), QStringLiteral("e"));
        QCOMPARE(w.value("a", "color"), QStringLiteral("blue"));
        // The row being typed in is never made anew.
        QCOMPARE(w.row(0), row);
        QVERIFY(row->valueField()->hasFocus());
        // Blue matches no suggestion: the first Return closes the menu.
        QVERIFY(row->valueField()->menu().isOpen());
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(row->isEditing());
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!row->isEditing());
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
        endTurn();
        QVERIFY(w.file->hasUnsavedChanges());
        w.undo->undo();
        QCOMPARE(w.value("a", "color"), QStringLiteral("red"));
        QVERIFY(!w.undo->canRedo());
        endTurn();
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void greenTypedIntoColorCommitsOnTheSecondReturn()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        retype(row->valueField(), QStringLiteral("green"));
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(row->isEditing());
        QVERIFY(!w.undo->canUndo());
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!row->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("green"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
    }

    void returnInTheNameMovesToTheValueWhoseSuggestionsFollowTheName()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editName(row));
        retype(row->nameField(), QStringLiteral("cursor"));
        QCOMPARE(w.declarations("a"), QStringList{"cursor: 0"});
        QVERIFY(row->valueField()->menu().suggestions().contains(QStringLiteral("pointer")));
        QTest::keyClick(row->nameField(), Qt::Key_Escape);
        QTest::keyClick(row->nameField(), Qt::Key_Return);
        QVERIFY(waitForFocus([row] { return row->valueField(); }));
        QVERIFY(row->isEditing());
    }

    void emptyingAValueAndReturnKeepsTheRowOpenAndTheLastText()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        retype(row->valueField(), QStringLiteral("navy"));
        QTest::keyClick(row->valueField(), Qt::Key_Backspace);
        QTest::keyClick(row->valueField(), Qt::Key_Backspace);
        QTest::keyClick(row->valueField(), Qt::Key_Backspace);
        QCOMPARE(w.value("a", "color"), QStringLiteral("n"));
        QTest::keyClick(row->valueField(), Qt::Key_Backspace);
        QTest::keyClicks(row->valueField(), QStringLiteral("  "));
        QCOMPARE(w.value("a", "color"), QStringLiteral("n"));
        QTest::keyClick(row->valueField(), Qt::Key_Escape);
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(row->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("n"));
        QVERIFY(!w.file->generateCSS().contains(QStringLiteral("color: ;")));
        QVERIFY(!w.undo->canUndo());
    }

    void aBlankNameOnReturnKeepsTheRowOpen()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editName(row));
        retype(row->nameField(), QString());
        QCOMPARE(w.declarations("a"), QStringList{"color: red"});
        QTest::keyClick(row->nameField(), Qt::Key_Escape);
        QTest::keyClick(row->nameField(), Qt::Key_Return);
        QVERIFY(waitForFocus([row] { return row->valueField(); }));
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(row->isEditing());
        QCOMPARE(w.declarations("a"), QStringList{"color: red"});
    }

    void pastedSeparatorsAreKeptAsTyped()
    {
        InspectorWindow w(QStringLiteral("a { content: x; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        QGuiApplication::clipboard()->setText(QStringLiteral("\"a;b\" { }"));
        QTest::keyClick(row->valueField(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(row->valueField(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(w.value("a", "content"), QStringLiteral("\"a;b\" { }"));
        // No suggestions for content: Return goes straight to the row.
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!row->isEditing());
        QCOMPARE(w.value("a", "content"), QStringLiteral("\"a;b\" { }"));
        QVERIFY(w.file->generateCSS().contains(QStringLiteral("content: \"a;b\" { };")));
    }

    void escapePutsTheStartValuesBackWithoutAStep()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        retype(row->valueField(), QStringLiteral("teal"));
        QTest::keyClick(row->valueField(), Qt::Key_Escape);
        QVERIFY(row->isEditing());
        QTest::keyClick(row->valueField(), Qt::Key_Escape);
        QVERIFY(!row->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("red"));
        QVERIFY(!w.undo->canUndo());
        QTRY_VERIFY(!QApplication::focusWidget() ||
                    !qobject_cast<AutocompleteField *>(QApplication::focusWidget()));
    }

    void escapeInAMultiSelectionAfterARenamePutsTheNameBackEverywhere()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }\nb { color: red; }"));
        w.select({"a", "b"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editName(row));
        retype(row->nameField(), QStringLiteral("fill"));
        QCOMPARE(w.declarations("a"), QStringList{"fill: red"});
        QCOMPARE(w.declarations("b"), QStringList{"fill: red"});
        QTest::keyClick(row->nameField(), Qt::Key_Escape);
        QTest::keyClick(row->nameField(), Qt::Key_Escape);
        QCOMPARE(w.declarations("a"), QStringList{"color: red"});
        QCOMPARE(w.declarations("b"), QStringList{"color: red"});
        QVERIFY(!w.undo->canUndo());
    }

    void aMixedValueIsEditedFromBlankAndATapLeavesItUntouched()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }\nb { color: blue; }"), QSize(360, 420),
                          true, Disk::Unsaved);
        w.select({"a", "b"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(row->isMixedValue());
        QVERIFY(editValue(row));
        QCOMPARE(row->valueField()->text(), QString());
        QCOMPARE(row->valueField()->placeholderText(), QStringLiteral("value"));
        QCOMPARE(w.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(w.value("b", "color"), QStringLiteral("blue"));
        QTest::mouseClick(w.list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(100, w.list()->viewport()->height() - 5));
        QVERIFY(!row->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("red"));
        QCOMPARE(w.value("b", "color"), QStringLiteral("blue"));
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void aMixedValueTypedAndTappedAwayKeepsTheTypedText()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        w.select({"a", "b"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        QTest::keyClicks(row->valueField(), QStringLiteral("lime"));
        QCOMPARE(w.value("b", "color"), QStringLiteral("lime"));
        QTest::mouseClick(w.list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(100, w.list()->viewport()->height() - 5));
        QCOMPARE(w.value("a", "color"), QStringLiteral("lime"));
        QCOMPARE(w.value("b", "color"), QStringLiteral("lime"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
    }

    void mixedShowsInTheSecondaryColour()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        QPalette palette = w.window.palette();
        palette.setColor(QPalette::PlaceholderText, QColor(0xff, 0x00, 0xaa));
        palette.setColor(QPalette::WindowText, QColor(0x00, 0x00, 0x00));
        w.window.setPalette(palette);
        w.select({"a", "b"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        const QImage image = row->grab().toImage();
        const QRect value = row->valueCell();
        // Text in the secondary colour, antialiased: strong red and blue, no
        // green, and no black of the primary colour anywhere.
        int secondary = 0;
        for (int x = value.left(); x < value.right(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.red() > 200 && pixel.green() < 90 && pixel.blue() > 120)
                    ++secondary;
                QVERIFY(pixel.lightness() > 60);
            }
        }
        QVERIFY(secondary > 10);
    }

    void theEditedRowStandsOnTheAccentAtSixPercent()
    {
        InspectorWindow w(QStringLiteral("a { color: red; top: 0; }"));
        QPalette palette = w.window.palette();
        palette.setColor(QPalette::Window, Qt::white);
        palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
        w.window.setPalette(palette);
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        PropertyRowView *idle = w.row(1);
        QVERIFY(editValue(row));
        const QColor edited = row->grab().toImage().pixelColor(2, 2);
        // White under blue at 0.06: the red and green fall by 6%.
        QVERIFY(qAbs(edited.red() - 240) <= 1);
        QCOMPARE(edited.blue(), 255);
        QCOMPARE(idle->grab().toImage().pixelColor(2, 2), QColor(Qt::white));
    }

    void tabFromAValueEditsTheNextNameAndFromTheLastLeavesTheList()
    {
        InspectorWindow w(QStringLiteral("a { color: red; top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *first = w.row(0);
        QVERIFY(editValue(first));
        QTest::keyClicks(first->valueField(), QStringLiteral("ish"));
        QTest::keyClick(first->valueField(), Qt::Key_Tab);
        PropertyRowView *second = w.list()->existingRowAt(1);
        QTRY_VERIFY(second->isEditing());
        QVERIFY(!first->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("redish"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
        QVERIFY(waitForFocus([second] { return second->nameField(); }));
        // Tab in a name moves to the value of the same row.
        QTest::keyClick(second->nameField(), Qt::Key_Tab);
        QVERIFY(waitForFocus([second] { return second->valueField(); }));
        QTest::keyClick(second->valueField(), Qt::Key_Tab);
        QTRY_VERIFY(!second->isEditing());
        QTRY_VERIFY(!qobject_cast<AutocompleteField *>(QApplication::focusWidget()));
    }

    void startingAnotherRowCommitsTheFirst()
    {
        InspectorWindow w(QStringLiteral("a { color: red; top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *first = w.row(0);
        PropertyRowView *second = w.row(1);
        QVERIFY(editValue(first));
        QTest::keyClicks(first->valueField(), QStringLiteral("dish"));
        QVERIFY(editValue(second));
        QVERIFY(!first->isEditing());
        QVERIFY(second->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("reddish"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
        QTest::keyClicks(second->valueField(), QStringLiteral("px"));
        QCOMPARE(w.value("a", "top"), QStringLiteral("0px"));
    }

    void deleteButtonRemovesFromThePrimaryOnly()
    {
        InspectorWindow w(QStringLiteral("a { color: red; top: 0; }\nb { color: red; top: 1px; }"));
        w.select({"a", "b"});
        QVERIFY(w.show());
        QTRY_COMPARE(w.list()->rowCount(), 2);
        QTest::mouseClick(w.row(1)->deleteButton(), Qt::LeftButton);
        QCOMPARE(w.declarations("a"), QStringList{"color: red"});
        QCOMPARE(w.declarations("b"), (QStringList{"color: red", "top: 1px"}));
        QTRY_COMPARE(w.list()->rowCount(), 1);
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Delete Property"));
    }

    // --- Variables ---

    void theVariableButtonOffersCompatibleVariablesOnly()
    {
        InspectorWindow w(QStringLiteral(":root { --brand: #3b82f6; --gap: 4px; }\n"
                                         "a { color: red; margin: 0; }\nb { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *color = w.row(0);
        PropertyRowView *margin = w.row(1);
        QCOMPARE(color->compatibleVariables(), (VariableChoices{{"--brand", "#3b82f6"}}));
        QCOMPARE(margin->compatibleVariables(),
                 (VariableChoices{{"--brand", "#3b82f6"}, {"--gap", "4px"}}));
        QVERIFY(color->variableButton()->isVisible());

        InspectorWindow bare(QStringLiteral("a { color: red; }"));
        bare.select({"a"});
        QVERIFY(bare.show());
        QVERIFY(!bare.row(0)->variableButton()->isVisible());
    }

    void theOfferFollowsAnEditedVariable()
    {
        InspectorWindow w(QStringLiteral(":root { --a: red; }"));
        w.select({":root"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QCOMPARE(row->compatibleVariables(), (VariableChoices{{"--a", "red"}}));
        const VariableOfferPtr before = w.view->variables();
        QVERIFY(editValue(row));
        retype(row->valueField(), QStringLiteral("4px"));
        QTRY_COMPARE(row->compatibleVariables(), (VariableChoices{{"--a", "4px"}}));
        QVERIFY(w.view->variables() != before);
        // A keystroke that leaves the variables as they are keeps the offer.
        const VariableOfferPtr kept = w.view->variables();
        w.view->refresh();
        QCOMPARE(w.view->variables(), kept);
    }

    // The variables come from the whole file: a change of a ruleset outside
    // the selection, as the variables tab makes, reaches the rows shown.
    void aVariableDeclaredOutsideTheSelectionReachesTheRows()
    {
        InspectorWindow w(QStringLiteral(":root { --gap: 4px; }\na { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *color = w.row(0);
        QVERIFY(!color->variableButton()->isVisible());
        w.named(QStringLiteral(":root"))
            ->setProperties({CSSProperty(QStringLiteral("--gap"), QStringLiteral("4px")),
                             CSSProperty(QStringLiteral("--brand"), QStringLiteral("#fff"))});
        QTRY_VERIFY(color->variableButton()->isVisible());
        QCOMPARE(color->compatibleVariables(), (VariableChoices{{"--brand", "#fff"}}));
        QCOMPARE(w.list()->existingRowAt(0), color);
    }

    void pickingAVariableOnAnIdleRowIsOneStepAndTheRowEndsIdle()
    {
        InspectorWindow w(QStringLiteral(":root { --brand: #3b82f6; }\na { color: red; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QTest::mouseClick(row->variableButton(), Qt::LeftButton);
        QTRY_VERIFY(row->variablePicker() && row->variablePicker()->isVisible());
        VariablePickerPopover *picker = row->variablePicker();
        QVERIFY(QTest::qWaitForWindowExposed(picker));
        QTRY_VERIFY(picker->filterField()->hasFocus());
        QListView *list = picker->list();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualRect(picker->model().index(0)).center());
        QCOMPARE(w.value("a", "color"), QStringLiteral("var(--brand)"));
        QTRY_VERIFY(!row->variablePicker());
        QVERIFY(!row->isEditing());
        QVERIFY(w.ctl().editingPropertyID().isNull());
        QCOMPARE(row->activeVarName(), std::optional<QString>(QStringLiteral("--brand")));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
        endTurn();
        w.undo->undo();
        QCOMPARE(w.value("a", "color"), QStringLiteral("red"));
        QVERIFY(!w.undo->canUndo());
    }

    void useRawValuePutsTheVariablesRawValueOrEmptiesIt_data()
    {
        QTest::addColumn<QString>("reference");
        QTest::addColumn<QString>("raw");
        QTest::newRow("defined") << QStringLiteral("var(--gap, 1px)") << QStringLiteral("4px");
        QTest::newRow("missing") << QStringLiteral("var(--gone)") << QString();
    }
    void useRawValuePutsTheVariablesRawValueOrEmptiesIt()
    {
        QFETCH(QString, reference);
        QFETCH(QString, raw);
        InspectorWindow w(QStringLiteral(":root { --gap: 4px; --pad: var(--gap); }\na { margin: ") +
                          reference + QStringLiteral("; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QTest::mouseClick(row->variableButton(), Qt::LeftButton);
        QTRY_VERIFY(row->variablePicker());
        VariablePickerPopover *picker = row->variablePicker();
        QVERIFY(picker->useRawValueButton());
        QTest::mouseClick(picker->useRawValueButton(), Qt::LeftButton);
        QCOMPARE(w.value("a", "margin"), raw);
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Property"));
        QTRY_VERIFY(!row->variablePicker());
        QVERIFY(!row->isEditing());
    }

    void anOutsideClickClosesThePickerChoosingNothing()
    {
        InspectorWindow w(QStringLiteral(":root { --gap: 4px; }\na { margin: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QTest::mouseClick(row->variableButton(), Qt::LeftButton);
        QTRY_VERIFY(row->variablePicker() && row->variablePicker()->isVisible());
        VariablePickerPopover *picker = row->variablePicker();
        QVERIFY(QTest::qWaitForWindowExposed(picker));
        const QPoint outside = picker->mapFromGlobal(w.window.mapToGlobal(QPoint(5, 5)));
        QTest::mouseClick(picker, Qt::LeftButton, Qt::NoModifier, outside);
        QTRY_VERIFY(!row->variablePicker());
        QCOMPARE(w.value("a", "margin"), QStringLiteral("0"));
        QVERIFY(!w.undo->canUndo());
    }

    void anUnclosedReferenceHasNoActiveVariable()
    {
        InspectorWindow w(QStringLiteral(":root { --a: 1px; }\nb { margin: 0; }"));
        w.named("b")->setProperties(
            {CSSProperty(QStringLiteral("margin"), QStringLiteral("var(--a"))});
        w.select({"b"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QCOMPARE(row->property().value, QStringLiteral("var(--a"));
        QVERIFY(!row->activeVarName());
    }

    // --- Swatches ---

    void swatchesFollowTheValueTheNameAndThePreference_data()
    {
        QTest::addColumn<QString>("css");
        QTest::addColumn<bool>("swatch");
        QTest::newRow("colour property") << QStringLiteral("a { color: #ff0000; }") << true;
        QTest::newRow("custom property") << QStringLiteral("a { --x: red; }") << true;
        QTest::newRow("not a colour") << QStringLiteral("a { color: inherit; }") << false;
        QTest::newRow("not a colour property") << QStringLiteral("a { margin: red; }") << false;
        QTest::newRow("a reference") << QStringLiteral("a { color: var(--x); }") << false;
    }
    void swatchesFollowTheValueTheNameAndThePreference()
    {
        QFETCH(QString, css);
        QFETCH(bool, swatch);
        InspectorWindow w(css);
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QCOMPARE(row->showsSwatch(), swatch);
        QCOMPARE(row->swatchPicker() && row->swatchPicker()->isVisible(), swatch);
        AppPreferences::shared().setShowColorSwatches(false);
        QTRY_VERIFY(!row->showsSwatch());
        QVERIFY(!row->swatchPicker() || !row->swatchPicker()->isVisible());
    }

    void aPalettePickOnAnIdleRowChangesTheValueWithoutAStep()
    {
        InspectorWindow w(QStringLiteral("a { color: #ff0000; }"), QSize(360, 420), true,
                          Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(row->swatchPicker());
        QAbstractButton *swatch = row->swatchPicker()->swatchButton();
        QCursor::setPos(swatch->mapToGlobal(swatch->rect().center()));
        QTest::mouseClick(swatch, Qt::LeftButton, {}, swatch->rect().center());
        ColorPickerPopover *popover = row->swatchPicker()->popover();
        QVERIFY(popover && QTest::qWaitForWindowExposed(popover));
        const ColorPaletteEntry entry = popover->grid()->entries().at(3);
        QTest::mouseClick(popover->grid()->cellsWidget(), Qt::LeftButton, {},
                          ColorPaletteGrid::cellRect(3).center());
        QCOMPARE(w.value("a", "color"), entry.hex());
        QVERIFY(!row->isEditing());
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(w.file->hasUnsavedChanges());
        QTRY_COMPARE(row->swatchPicker()->value(), entry.hex());
    }

    void closingTheChooserFromARowInEditIsOneEditColorUndoingBoth()
    {
        InspectorWindow w(QStringLiteral("a { color: #ff0000; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        QTest::keyClicks(row->valueField(), QStringLiteral("0"));
        QCOMPARE(w.value("a", "color"), QStringLiteral("#ff00000"));
        QAbstractButton *swatch = row->swatchPicker()->swatchButton();
        QCursor::setPos(swatch->mapToGlobal(swatch->rect().center()));
        QTest::mouseClick(swatch, Qt::LeftButton, {}, swatch->rect().center());
        ColorPickerPopover *popover = row->swatchPicker()->popover();
        QVERIFY(popover && QTest::qWaitForWindowExposed(popover));
        QTest::mouseClick(popover->panelButton(), Qt::LeftButton);
        QTRY_VERIFY(sharedColorDialog()->isVisible());
        sharedColorDialog()->setCurrentColor(QColor(0x00, 0x80, 0x00));
        QCOMPARE(w.value("a", "color"), QStringLiteral("#008000"));
        sharedColorDialog()->setCurrentColor(QColor(0x00, 0x00, 0xff));
        QCOMPARE(w.value("a", "color"), QStringLiteral("#0000FF"));
        QVERIFY(!w.undo->canUndo());
        sharedColorDialog()->close();
        QTRY_VERIFY(!row->isEditing());
        QCOMPARE(w.value("a", "color"), QStringLiteral("#0000FF"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Edit Color"));
        endTurn();
        w.undo->undo();
        QCOMPARE(w.value("a", "color"), QStringLiteral("#ff0000"));
        QVERIFY(!w.undo->canUndo());
        QCOMPARE(w.undo->redoActionName(), QStringLiteral("Edit Color"));
        w.undo->redo();
        QCOMPARE(w.value("a", "color"), QStringLiteral("#0000FF"));
    }

    void aMixedColourShowsNoSwatch()
    {
        InspectorWindow w(QStringLiteral("a { color: red; }\nb { color: blue; }"));
        w.select({"a", "b"});
        QVERIFY(w.show());
        QVERIFY(!w.row(0)->showsSwatch());
        QVERIFY(!w.row(0)->swatchPicker() || !w.row(0)->swatchPicker()->isVisible());
    }

    // --- Drag ---

    void aRowDroppedOnItsOwnLineChangesNothing()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; left: 0; right: 0; }"), QSize(360, 420), true,
                          Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(1);
        const QPoint start = row->nameCell().center();
        QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, start);
        QTest::mouseMove(row, start + QPoint(0, 12));
        QCOMPARE(w.ctl().draggingPropertyID(), row->property().id);
        QCOMPARE(w.ctl().dropPropertyTargetIndex(), std::optional<int>(1));
        QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, 12));
        QVERIFY(w.ctl().draggingPropertyID().isNull());
        QCOMPARE(w.declarations("a"), (QStringList{"top: 0", "left: 0", "right: 0"}));
        QVERIFY(!row->isEditing());
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void aDraggedRowFadesTheLineFollowsThePointerAndTheDropMoves()
    {
        InspectorWindow w(QStringLiteral("a { a: 1; b: 2; c: 3; d: 4; e: 5; }"), QSize(360, 480));
        QPalette palette = w.window.palette();
        palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
        palette.setColor(QPalette::Window, Qt::white);
        palette.setColor(QPalette::Base, Qt::white);
        w.window.setPalette(palette);
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        // The darkest pixel of the row's name, idle and then dragged.
        const auto darkest = [](const QImage &image) {
            int lightness = 255;
            for (int x = 12; x < 100; ++x) {
                for (int y = 0; y < PropertyRowView::rowHeight; ++y)
                    lightness = std::min(lightness, image.pixelColor(x, y).lightness());
            }
            return lightness;
        };
        const int idle = darkest(w.list()->viewport()->grab().toImage());
        const QPoint start = row->nameCell().center();
        QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, start);
        // Three rows down, with the pointer over the fourth row's top half.
        QTest::mouseMove(row, start + QPoint(0, 3 * 41));
        QCOMPARE(w.ctl().dropPropertyTargetIndex(), std::optional<int>(3));
        QTRY_VERIFY(!w.list()->dropLineRect().isNull());
        const QRect line = w.list()->dropLineRect();
        QCOMPARE(line.top(), 3 * 41 - 1);
        QCOMPARE(line.height(), 2);
        QCOMPARE(line.left(), 12);
        const QImage image = w.list()->viewport()->grab().toImage();
        QCOMPARE(image.pixelColor(line.center()), QColor(0, 0, 255));
        // The dragged row shows at 0.4 over the white list.
        const QColor faded = image.pixelColor(row->geometry().topLeft() + QPoint(2, 2));
        QCOMPARE(faded, QColor(Qt::white));
        const int dragged = darkest(image);
        QVERIFY(dragged < 255);
        QVERIFY2(dragged > idle + 40, qPrintable(QStringLiteral("%1 %2").arg(idle).arg(dragged)));
        QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, 3 * 41));
        QCOMPARE(w.names(w.named("a")->properties()), (QStringList{"b", "c", "a", "d", "e"}));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Move Property"));
        QTRY_VERIFY(w.list()->dropLineRect().isNull());
        endTurn();
        w.undo->undo();
        QCOMPARE(w.names(w.named("a")->properties()), (QStringList{"a", "b", "c", "d", "e"}));
        QVERIFY(w.undo->canRedo());
    }

    void aLineBelowTheLastRowAtTheEnd()
    {
        InspectorWindow w(QStringLiteral("a { a: 1; b: 2; }"));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        const QPoint start = row->nameCell().center();
        QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, start);
        QTest::mouseMove(row, start + QPoint(0, 300));
        QCOMPARE(w.ctl().dropPropertyTargetIndex(), std::optional<int>(2));
        QTRY_COMPARE(w.list()->dropLineRect().top(), 2 * 41 - 1);
        QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, 300));
        QCOMPARE(w.names(w.named("a")->properties()), (QStringList{"b", "a"}));
    }

    void theDropLineStaysUnderThePointerFarDown()
    {
        QString css = QStringLiteral("a {");
        for (int i = 0; i < 40; ++i)
            css += QStringLiteral(" p%1: %1;").arg(i);
        InspectorWindow w(css + QStringLiteral(" }"), QSize(360, 1900));
        w.select({"a"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QVERIFY(w.list()->existingRowAt(38));
        const QPoint start = row->nameCell().center();
        for (const int rows : {2, 17, 35}) {
            // The pointer over the upper half of the row it is dragged onto.
            const QPoint pointer = start + QPoint(0, rows * 41 - 5);
            QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, start);
            QTest::mouseMove(row, start + QPoint(0, 10));
            QTest::mouseMove(row, pointer);
            QTRY_VERIFY(!w.list()->dropLineRect().isNull());
            const QPoint inList = row->mapTo(w.list()->viewport(), pointer);
            PropertyRowView *under = w.list()->existingRowAt(rows);
            QVERIFY(under->geometry().contains(inList));
            QCOMPARE(w.list()->dropLineRect().top(), under->geometry().top() - 1);
            // Back over its own line before letting go: nothing moves.
            QTest::mouseMove(row, start + QPoint(0, 10));
            QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, 10));
            QVERIFY(!w.undo->canUndo());
        }
    }

    void aHugeValueShowsAndEditsWithoutHanging()
    {
        const QString huge(200'000, QLatin1Char('x'));
        InspectorWindow w(QStringLiteral("a { content: y; }"));
        w.named("a")->setProperties({CSSProperty(QStringLiteral("content"), huge),
                                     CSSProperty(QStringLiteral("line\nbreak"), QString())});
        w.select({"a"});
        QVERIFY(w.show());
        QTRY_COMPARE(w.list()->rowCount(), 2);
        PropertyRowView *row = w.row(0);
        QVERIFY(editValue(row));
        QTest::keyClick(row->valueField(), Qt::Key_End);
        QTest::keyClicks(row->valueField(), QStringLiteral("z"));
        QCOMPARE(w.value("a", "content").size(), huge.size() + 1);
        QTest::keyClick(row->valueField(), Qt::Key_Return);
        QVERIFY(!row->isEditing());
        // A blank value read from a file stays as it is until edited.
        QVERIFY(editValue(w.row(1)));
        QTest::keyClick(w.row(1)->valueField(), Qt::Key_Return);
        QVERIFY(w.row(1)->isEditing());
    }

    void aVariablePickedInTheAddRowOnlyFillsTheValue()
    {
        InspectorWindow w(QStringLiteral(":root { --brand: #3b82f6; --gap: 4px; }\na { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("color"));
        QCOMPARE(add->compatibleVariables(), (VariableChoices{{"--brand", "#3b82f6"}}));
        QVERIFY(add->variableButton()->isVisible());
        QTest::mouseClick(add->variableButton(), Qt::LeftButton);
        QTRY_VERIFY(add->variablePicker() && add->variablePicker()->isVisible());
        VariablePickerPopover *picker = add->variablePicker();
        QVERIFY(!picker->useRawValueButton());
        QListView *list = picker->list();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualRect(picker->model().index(0)).center());
        QCOMPARE(w.ctl().newPropertyValue(), QStringLiteral("var(--brand)"));
        QCOMPARE(add->valueField()->text(), QStringLiteral("var(--brand)"));
        QTRY_VERIFY(!add->variablePicker());
        QVERIFY(w.ctl().isAddingProperty());
        QCOMPARE(w.declarations("a"), QStringList{"top: 0"});
        QVERIFY(!w.undo->canUndo());
    }

    // --- Selector ---

    void aClickOnTheSelectorEditsItAfterAShortDelay()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->titleLabel(), Qt::LeftButton);
        QVERIFY(w.ctl().isEditingSelector());
        QVERIFY(w.view->selectorField()->isVisible());
        QCOMPARE(w.view->selectorField()->text(), QStringLiteral("a"));
        QVERIFY(!w.view->selectorField()->hasFocus());
        QTRY_VERIFY(w.view->selectorField()->hasFocus());
        QTest::keyClicks(w.view->selectorField(), QStringLiteral(".x"));
        QTest::keyClick(w.view->selectorField(), Qt::Key_Return);
        QVERIFY(!w.ctl().isEditingSelector());
        QCOMPARE(w.named(".x")->selector(), QStringLiteral(".x"));
        QCOMPARE(w.undo->undoActionName(), QStringLiteral("Rename Ruleset"));
        QTRY_COMPARE(w.view->titleLabel()->text(), QStringLiteral(".x"));
    }

    void escapeInTheSelectorDropsItAndABlankOneChangesNothing()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }"), QSize(360, 420), true, Disk::Unsaved);
        w.select({"a"});
        QVERIFY(w.show());
        w.ctl().startSelectorEdit();
        QTRY_VERIFY(w.view->selectorField()->hasFocus());
        QTest::keyClicks(w.view->selectorField(), QStringLiteral(".zz"));
        QTest::keyClick(w.view->selectorField(), Qt::Key_Escape);
        QVERIFY(!w.ctl().isEditingSelector());
        QCOMPARE(w.named("a")->selector(), QStringLiteral("a"));

        w.ctl().startSelectorEdit();
        QTRY_VERIFY(w.view->selectorField()->hasFocus());
        retype(w.view->selectorField(), QStringLiteral("  "));
        QTest::keyClick(w.view->selectorField(), Qt::Key_Return);
        QCOMPARE(w.named("a")->selector(), QStringLiteral("a"));
        endTurn();
        QVERIFY(!w.undo->canUndo());
        QVERIFY(!w.file->hasUnsavedChanges());
    }

    void tabInTheSelectorAppliesItAndEditsTheFirstName()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; left: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        w.ctl().startSelectorEdit();
        QTRY_VERIFY(w.view->selectorField()->hasFocus());
        QTest::keyClicks(w.view->selectorField(), QStringLiteral(".b"));
        QTest::keyClick(w.view->selectorField(), Qt::Key_Tab);
        QVERIFY(w.named(".b"));
        QVERIFY(!w.ctl().isEditingSelector());
        PropertyRowView *first = w.list()->existingRowAt(0);
        QTRY_VERIFY(first->isEditing());
        QVERIFY(waitForFocus([first] { return first->nameField(); }));
    }

    void aSelectorEditLeftForAnotherRulesetIsSavedToItsOwn()
    {
        InspectorWindow w(QStringLiteral("a { top: 0; }\nb { left: 0; }"));
        w.select({"a"});
        QVERIFY(w.show());
        w.ctl().startSelectorEdit();
        QTRY_VERIFY(w.view->selectorField()->hasFocus());
        QTest::keyClicks(w.view->selectorField(), QStringLiteral(".first"));
        const CSSRulesetPtr a = w.named("a");
        const CSSRulesetPtr b = w.named("b");
        w.select({"b"});
        QCOMPARE(a->selector(), QStringLiteral(".first"));
        QCOMPARE(b->selector(), QStringLiteral("b"));
        QVERIFY(!w.view->selectorField()->isVisible());
        QTRY_COMPARE(w.view->titleLabel()->text(), QStringLiteral("b"));
    }
};

QTEST_MAIN(TestPropertyEditorView)
#include "tst_propertyeditorview.moc"
