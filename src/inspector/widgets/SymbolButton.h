#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QMargins>
#include <QPixmap>

namespace Ombrel {

// A plain button of the inspector: a symbol in one colour, and optionally a
// label beside it, with no frame or background of its own. It never takes
// the keyboard focus; a disabled one is drawn faded.
class SymbolButton : public QAbstractButton
{
    Q_OBJECT

public:
    SymbolButton(const QString &symbol, int symbolSize, QWidget *parent = nullptr);

    void setSymbolColor(const QColor &color);
    QColor symbolColor() const { return m_symbolColor; }
    // The room around the symbol and the label.
    void setInsets(const QMargins &insets);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    int m_symbolSize;
    QColor m_symbolColor;
    QPixmap m_pixmap;
    QColor m_pixmapColor;
    QMargins m_insets;
};

} // namespace Ombrel
