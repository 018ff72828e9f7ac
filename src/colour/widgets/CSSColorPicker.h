#pragma once

#include "PopoverHolder.h"
#include "colour/ColorPanelObserver.h"
#include "colour/ColorPickerModel.h"

#include <QString>
#include <QWidget>

#include <functional>

class QAbstractButton;

namespace Ombrel {

class ColorPickerPopover;
class ColorSwatchView;

// The small colour swatch beside a colour value: a flat button showing the
// value's colour (a bare checkerboard when the value reads as none). A press
// opens a new popover at the pointer, on its left, in the active window, and
// never when no window is active. The picker edits text, not a colour:
// palette colours, keywords and submitted text become the value and go
// straight to onCommit; the shared colour chooser, opened from the popover,
// sends each change to onLiveColorChange and, when it closes, its last hex
// to onCommit once.
class CSSColorPicker : public QWidget
{
    Q_OBJECT

public:
    using Callback = std::function<void(const QString &)>;

    // Either callback may be empty.
    explicit CSSColorPicker(const QString &value, Callback onLiveColorChange = {},
                            Callback onCommit = {}, QWidget *parent = nullptr);

    QString value() const { return m_value; }
    // From the owner: the value changed outside. When it differs from the
    // model's hexInput, hexInput takes it (an open popover follows).
    void setValue(const QString &value);
    ColorPickerModel &model() { return m_model; }

    // What a press on the swatch does.
    void openPopover();
    // The popover of the last opening, open or already closed; none before
    // the first.
    ColorPickerPopover *popover() const;
    QAbstractButton *swatchButton() const { return m_button; }
    ColorSwatchView *swatch() const { return m_swatch; }
    ColorPanelObserver &panel() { return m_panel; }

Q_SIGNALS:
    // The picker wrote its value (palette, keyword, submitted text, panel
    // change): the two-way binding's write side, which an owner may ignore.
    void valueWritten(const QString &value);

private:
    void assignValue(const QString &value);
    void writeValue(const QString &value);
    void pick(const QString &hex);
    void submitHex(const QString &hex);
    void openPanel();

    QString m_value;
    Callback m_onLiveColorChange;
    Callback m_onCommit;
    ColorPickerModel m_model;
    ColorPanelObserver m_panel;
    // After the model: the popover it deletes works on the model.
    PopoverHolder m_holder;
    QAbstractButton *m_button = nullptr;
    ColorSwatchView *m_swatch = nullptr;
};

} // namespace Ombrel
