#pragma once

#include "knowledge/Color.h"

#include <QColor>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace Ombrel {

// The process's one colour chooser as the logic sees it: it can be given a
// colour and shown, and it tells when its colour changed and when it was
// closed. The chooser itself is a window of the widgets layer, made at its
// first opening; this object stands for it from the start, so that whoever
// listens can connect before the window exists.
class SharedColorPanel : public QObject
{
    Q_OBJECT

public:
    // Sets the chooser's colour when there is one, then shows, raises and
    // activates it.
    using Presenter = std::function<void(const std::optional<Color> &color)>;

    static SharedColorPanel &instance();

    // The widgets layer hands over its window here; the first one stays.
    void installPresenter(Presenter presenter);
    bool hasPresenter() const { return bool(m_presenter); }

    // Opens the chooser with color, or with the colour it last had.
    void present(const std::optional<Color> &color);

Q_SIGNALS:
    // Before the chooser is shown for someone, so that whoever held it alone
    // can let go.
    void presenting();
    void colorChanged(const QColor &color);
    void closed();

private:
    Presenter m_presenter;
};

} // namespace Ombrel
