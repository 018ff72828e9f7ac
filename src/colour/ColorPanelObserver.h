#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QColor;

namespace Ombrel {

// Lets one colour picker borrow the shared colour chooser: it opens the
// chooser with a starting colour, passes on each change as hex text while it
// holds the chooser, and the last hex once the chooser closes. Every observer
// hears every change; only those that opened the chooser since it last
// closed answer, so two pickers opened in turn both follow it until it
// closes. Destroying an open observer leaves the chooser open.
class ColorPanelObserver : public QObject
{
    Q_OBJECT

public:
    using Callback = std::function<void(const QString &hex)>;

    explicit ColorPanelObserver(QObject *parent = nullptr);

    // Called with the hex of each change of the chooser while open.
    Callback onChange;
    // Called once, with the last hex, when the chooser closes while open.
    Callback onClose;

    bool isOpen() const { return m_isOpen; }
    QString currentHex() const { return m_currentHex; }

    // Shows the chooser with initialHex's colour when that text reads as one;
    // otherwise the chooser keeps its colour while currentHex keeps the text.
    void open(const QString &initialHex);

private:
    void colorChanged(const QColor &color);
    void closed();

    bool m_isOpen = false;
    QString m_currentHex;
};

} // namespace Ombrel
