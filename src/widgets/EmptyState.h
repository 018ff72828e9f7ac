#pragma once

#include <QFont>
#include <QWidget>

class QLabel;

// The pieces an empty state is made of, in the canvas and the variables tab
// alike.
namespace Ombrel {

// "{}" in thin type, filled with the accent colour fading to 0.6 of it.
class BracesMark : public QWidget
{
public:
    explicit BracesMark(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// A label of text at the size and weight given.
QLabel *emptyStateLabel(const QString &text, qreal pointSize, QFont::Weight weight,
                        QWidget *parent);

} // namespace Ombrel
