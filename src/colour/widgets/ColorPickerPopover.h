#pragma once

#include "colour/ColorLists.h"

#include <QWidget>

#include <functional>

class QAbstractButton;
class QLineEdit;

namespace Ombrel {

class ColorPaletteGrid;
class ColorPickerModel;
class ColorSwatchView;

// The transient panel of a colour picker, a Qt::Popup: a preview of the
// field's text, the field itself, the button to the shared colour chooser, a
// page of palette colours and three keywords. An outside click or Escape
// closes it without a commit. It edits the model's hexInput and reports
// through its callbacks: palette and keyword presses to onPick, Return in
// the field to onHexSubmit (blank text submits nothing), the chooser button
// to onOpenPanel.
class ColorPickerPopover : public QWidget
{
    Q_OBJECT

public:
    using TextCallback = std::function<void(const QString &text)>;

    static constexpr int popoverWidth = 260;

    ColorPickerPopover(ColorPickerModel &model, const QList<ColorList> &lists, TextCallback onPick,
                       TextCallback onHexSubmit, std::function<void()> onOpenPanel,
                       QWidget *parent = nullptr);

    QLineEdit *field() const { return m_field; }
    bool hexFocused() const;
    ColorSwatchView *preview() const { return m_preview; }
    QAbstractButton *panelButton() const { return m_panelButton; }
    ColorPaletteGrid *grid() const { return m_grid; }
    // The button of one of colorKeywords(); null for any other text.
    QAbstractButton *keywordButton(const QString &keyword) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    class PanelButton;
    class KeywordButton;

    void showHexInput(const QString &hexInput);
    void commitHex();

    ColorPickerModel &m_model;
    TextCallback m_onPick;
    TextCallback m_onHexSubmit;
    std::function<void()> m_onOpenPanel;
    ColorSwatchView *m_preview = nullptr;
    QLineEdit *m_field = nullptr;
    QAbstractButton *m_panelButton = nullptr;
    ColorPaletteGrid *m_grid = nullptr;
    QList<KeywordButton *> m_keywordButtons;
};

} // namespace Ombrel
