#pragma once

#include "workspace/CanvasTab.h"

#include <QColor>
#include <QWidget>

#include <array>

class QToolButton;
class QVariantAnimation;

namespace Ombrel {

// The row of tab buttons in the canvas's toolbar. The current tab's button
// shows semibold text in the primary colour, the others regular text in the
// secondary colour. On a change of tab the colours pass over with
// ease-in-out in colourDurationMs.
class CanvasTabButtons : public QWidget
{
    Q_OBJECT

public:
    static constexpr int colourDurationMs = 150;

    explicit CanvasTabButtons(QWidget *parent = nullptr);

    QToolButton *button(CanvasTab tab) const { return m_buttons[int(tab)]; }
    // Marks tab as the current one; without animation the colours change at
    // once.
    void setCurrent(CanvasTab tab, bool animated);
    // The colour a button's text and symbol are drawn in at the moment.
    QColor shownColour(CanvasTab tab) const { return m_shown[int(tab)]; }

Q_SIGNALS:
    void tabClicked(CanvasTab tab);

protected:
    void changeEvent(QEvent *event) override;

private:
    QColor targetColour(CanvasTab tab) const;
    void showColours(double progress);
    void applyColour(CanvasTab tab, const QColor &colour);

    std::array<QToolButton *, 3> m_buttons = {};
    std::array<QColor, 3> m_from;
    std::array<QColor, 3> m_shown;
    CanvasTab m_current = CanvasTab::Nodes;
    QVariantAnimation *m_animation;
};

} // namespace Ombrel
