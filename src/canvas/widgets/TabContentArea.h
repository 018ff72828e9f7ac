#pragma once

#include <QPointer>
#include <QWidget>

class QVariantAnimation;

namespace Ombrel {

// The area that the panes of the canvas's tabs share. Each pane fills it. A
// new pane comes in front and fades in while the pane before it fades out,
// both with ease-in-out over fadeDurationMs; then the pane before it is
// deleted. A new pane arriving during a fade drops the pane that was already
// leaving and fades out the one that was coming in, from where it stood.
// The keyboard focus of a leaving pane stays with the area.
class TabContentArea : public QWidget
{
    Q_OBJECT

public:
    static constexpr int fadeDurationMs = 150;

    explicit TabContentArea(QWidget *parent = nullptr);

    // Takes pane over and shows it in front, fading when animated, at once
    // otherwise.
    void showPane(QWidget *pane, bool animated);
    QWidget *currentPane() const { return m_current; }
    // The pane fading out, if any.
    QWidget *leavingPane() const { return m_leaving; }
    // The opacity a pane of the area shows with: 1 unless it is fading.
    static double opacityOf(const QWidget *pane);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showProgress(double progress);
    void finishFade();
    void dropLeaving();

    QPointer<QWidget> m_current;
    QPointer<QWidget> m_leaving;
    double m_leavingFrom = 1;
    QVariantAnimation *m_fade;
};

} // namespace Ombrel
