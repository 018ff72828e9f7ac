#pragma once

// Shared by the widget tests of the variables tab: a window with the canvas
// pane on the variables tab, over a stylesheet written to a temporary folder,
// whose tab pane is the real variables panel, and the points a user clicks.

#include "StylesheetFiles.h"
#include "VariablesTestSupport.h"
#include "canvas/widgets/CanvasView.h"
#include "variables/VariableListModel.h"
#include "variables/VariablesController.h"
#include "variables/widgets/VariableListView.h"
#include "variables/widgets/VariableRow.h"
#include "variables/widgets/VariableRowStyle.h"
#include "variables/widgets/VariablesPanel.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace VariablesTest {

struct PanelWindow
{
    explicit PanelWindow(const QString &css, QSize size = QSize(560, 480))
        : path(dir.filePath(QStringLiteral("style.css")))
    {
        StylesheetFiles::writeFile(path, css.toUtf8());
        file = StylesheetFiles::loadFile(path);
        workspace.setFiles({file});
        workspace.setSelectedFile(file);
        workspace.setCanvasTab(Ombrel::CanvasTab::Variables);
        view = new Ombrel::CanvasView(workspace, &undo, &window);
        view->setPaneFactory(
            Ombrel::CanvasTab::Variables, [this](Ombrel::CanvasController &controller) {
                auto *panel = new Ombrel::VariablesPanel(controller, &undo);
                tester = std::make_unique<QAbstractItemModelTester>(
                    panel->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
                return panel;
            });
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view);
        window.resize(size);
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowExposed(&window) && QTest::qWaitForWindowActive(&window);
    }

    Ombrel::VariablesPanel *panel() const
    {
        return qobject_cast<Ombrel::VariablesPanel *>(view->currentPane());
    }
    Ombrel::VariablesController &controller() const { return panel()->controller(); }
    Ombrel::VariableListModel *model() const { return panel()->model(); }
    Ombrel::VariableListView *list() const { return panel()->list(); }
    QWidget *viewport() const { return list()->viewport(); }

    int rowOf(const QString &name) const { return model()->rowOfEntry(entry(name).propID); }
    QRect rowRect(int row) const { return list()->visualRect(model()->index(row)); }
    Ombrel::VariableRowStyle::EntryGeometry geometry(const QString &name) const
    {
        const int row = rowOf(name);
        return Ombrel::VariableRowStyle::entryGeometry(
            rowRect(row), model()->index(row).data(Ombrel::VariableRoles::ColorValue).toBool());
    }
    QPoint nameCell(const QString &name) const { return geometry(name).name.center(); }
    QPoint valueCell(const QString &name) const { return geometry(name).valueText.center(); }
    QPoint headerOf(const QString &selector) const
    {
        const int row = model()->rowOfGroup(named(selector)->id());
        return rowRect(row).center();
    }
    Ombrel::VariableRow *rowWidget(const QString &name) const
    {
        return list()->rowWidget(entry(name).propID);
    }

    Ombrel::CSSRulesetPtr named(const QString &selector) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            if (ruleset->selector() == selector)
                return ruleset;
        }
        return nullptr;
    }
    // The first declaration of that name in file order.
    Ombrel::VariableEntry entry(const QString &name) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            for (const Ombrel::CSSProperty &property : ruleset->properties()) {
                if (property.name == name)
                    return {property.id, ruleset->id(), property.name, property.value};
            }
        }
        return {};
    }
    QString value(const QString &name) const { return entry(name).value; }

    // The names of the model's rows, "# selector" for a header.
    QStringList rows() const
    {
        QStringList list;
        for (int row = 0; row < model()->rowCount(); ++row) {
            const QModelIndex index = model()->index(row);
            list.append(model()->groupAt(row).isNull()
                            ? index.data(Ombrel::VariableRoles::Name).toString()
                            : QStringLiteral("# ") +
                                  index.data(Ombrel::VariableRoles::Selector).toString());
        }
        return list;
    }

    QTemporaryDir dir;
    QString path;
    Ombrel::CSSFilePtr file;
    Ombrel::Workspace workspace;
    Ombrel::UndoManager undo;
    std::unique_ptr<QAbstractItemModelTester> tester;
    QWidget window;
    Ombrel::CanvasView *view = nullptr;
};

// A drag as the platform delivers it: a press, then moves of a few points at
// a time with the button held, then the release.
inline void dragBy(QWidget *widget, QPoint start, int dy, int step = 6)
{
    QTest::mousePress(widget, Qt::LeftButton, {}, start);
    const int direction = dy < 0 ? -1 : 1;
    for (int moved = step; moved < std::abs(dy); moved += step) {
        QMouseEvent move(QEvent::MouseMove, QPointF(start + QPoint(0, direction * moved)),
                         widget->mapToGlobal(QPointF(start + QPoint(0, direction * moved))),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(widget, &move);
    }
    QMouseEvent last(QEvent::MouseMove, QPointF(start + QPoint(0, dy)),
                     widget->mapToGlobal(QPointF(start + QPoint(0, dy))), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &last);
}

inline void release(QWidget *widget, QPoint at)
{
    QTest::mouseRelease(widget, Qt::LeftButton, {}, at);
}

} // namespace VariablesTest
