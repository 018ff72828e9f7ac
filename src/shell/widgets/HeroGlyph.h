#pragma once

#include <QWidget>

namespace Ombrel {

// The large mark at the top of the welcome and empty-folder views: a text or
// a symbol filled with a gradient from the accent colour to the accent colour
// at 60 % opacity, top to bottom.
class HeroGlyph : public QWidget
{
    Q_OBJECT

public:
    static HeroGlyph *text(const QString &text, const QFont &font, QWidget *parent = nullptr);
    static HeroGlyph *symbol(const QString &name, int size, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    explicit HeroGlyph(QWidget *parent);

    QString m_text;
    QString m_symbol;
    int m_symbolSize = 0;
};

} // namespace Ombrel
