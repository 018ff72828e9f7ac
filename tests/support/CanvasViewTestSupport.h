#pragma once

// Shared by the tests of the canvas widget: a window with a canvas pane over
// a stylesheet made from text, and mouse events with the timestamps a test
// chooses.

#include "CanvasTestSupport.h"
#include "canvas/NodeListModel.h"
#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NodeListView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QVBoxLayout>

namespace CanvasTest {

struct CanvasWindow : Canvas
{
    explicit CanvasWindow(const QString &css, QSize size = QSize(520, 420)) : Canvas(css, true)
    {
        // The pane makes its own controller; the one of Canvas stays unused
        // apart from its state, so drop it to keep one set of handlers.
        controller.reset();
        view = new Ombrel::CanvasView(workspace, undo.get(), &window);
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

    Ombrel::CanvasController &ctl() const { return view->controller(); }
    Ombrel::CanvasState &viewState() const { return view->controller().state(); }
    Ombrel::NodeListView *list() const { return view->nodeList(); }
    QWidget *viewport() const { return view->nodeList()->viewport(); }

    // The centre of the card of the list's row, in viewport coordinates.
    QPoint cardCentre(int row) const
    {
        return list()->visualRect(view->nodeModel()->index(row)).center();
    }
    // A point on the card near its right end, clear of the inline editor.
    QPoint cardEnd(int row) const
    {
        const QRect rect = list()->visualRect(view->nodeModel()->index(row));
        return QPoint(rect.right() - 12, rect.center().y());
    }

    QWidget window;
    Ombrel::CanvasView *view = nullptr;
};

// A press and release at pos, both stamped timestampMs, as the platform
// would deliver a click at that moment.
inline void clickAt(QWidget *widget, QPoint pos, Qt::KeyboardModifiers modifiers, ulong timestampMs)
{
    const QPointF global = widget->mapToGlobal(QPointF(pos));
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(pos), global, Qt::LeftButton,
                      Qt::LeftButton, modifiers);
    press.setTimestamp(timestampMs);
    QApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(pos), global, Qt::LeftButton,
                        Qt::NoButton, modifiers);
    release.setTimestamp(timestampMs);
    QApplication::sendEvent(widget, &release);
}

} // namespace CanvasTest
