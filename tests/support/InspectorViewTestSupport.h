#pragma once

// Shared by the tests of the inspector's widgets: a window holding the
// property editor over a stylesheet made from text, retargeted on each
// selection as the window's detail column does, and the rows and fields
// found in it.

#include "InspectorTestSupport.h"
#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/PropertyEditorView.h"
#include "inspector/widgets/PropertyListView.h"
#include "inspector/widgets/PropertyRowView.h"

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>

namespace InspectorTest {

struct InspectorWindow : Inspector
{
    explicit InspectorWindow(const QString &css, QSize size = QSize(360, 420),
                             bool withUndoManager = true, Disk disk = Disk::AsGenerated)
        : Inspector(css, withUndoManager, disk)
    {
        // The view has a controller of its own.
        controller.reset();
        view = new Ombrel::PropertyEditorView(workspace, undo.get(), &window);
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view);
        window.resize(size);
        QObject::connect(&workspace, &Ombrel::Workspace::selectedRulesetChanged, view,
                         [this] { view->setTarget(workspace.selectedRuleset(), file); });
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        QApplication::setActiveWindow(&window);
        return QTest::qWaitForWindowActive(&window);
    }

    Ombrel::PropertyEditorController &ctl() { return view->controller(); }
    Ombrel::PropertyListView *list() const { return view->list(); }

    // The row of the listed property at index, after the pending refresh.
    Ombrel::PropertyRowView *row(int index)
    {
        endTurn();
        return list()->rowAt(index);
    }

    // Clicks the name or the value cell of a row, as a user starts an edit.
    static void clickCell(Ombrel::PropertyRowView *row, Ombrel::PropertyField field)
    {
        const QRect cell =
            field == Ombrel::PropertyField::Name ? row->nameCell() : row->valueCell();
        QTest::mouseClick(row, Qt::LeftButton, Qt::NoModifier, cell.center());
    }

    QWidget window;
    Ombrel::PropertyEditorView *view = nullptr;
};

// Waits until the field exists and has the keyboard focus.
inline bool waitForFocus(const std::function<QWidget *()> &field)
{
    return QTest::qWaitFor([&field] {
        QWidget *widget = field();
        return widget && widget->hasFocus();
    });
}

} // namespace InspectorTest
