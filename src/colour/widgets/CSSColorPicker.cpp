#include "CSSColorPicker.h"

#include "ColorPickerPopover.h"
#include "ColorSwatchView.h"
#include "SharedColorDialog.h"
#include "SystemColorLists.h"
#include "colour/PopoverPlacement.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QHBoxLayout>
#include <QPointer>
#include <QScreen>

namespace Ombrel {

namespace {

// A button without a frame of its own: its label, the swatch, is all it
// shows.
class BorderlessButton : public QAbstractButton
{
public:
    explicit BorderlessButton(QWidget *parent) : QAbstractButton(parent)
    {
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent *) override {}
};

} // namespace

CSSColorPicker::CSSColorPicker(const QString &value, Callback onLiveColorChange, Callback onCommit,
                               QWidget *parent)
    : QWidget(parent), m_value(value), m_onLiveColorChange(std::move(onLiveColorChange)),
      m_onCommit(std::move(onCommit)), m_model(value)
{
    installSharedColorDialog();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_button = new BorderlessButton(this);
    m_swatch = new ColorSwatchView(m_button);
    m_swatch->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_button->setFixedSize(m_swatch->size());
    layout->addWidget(m_button);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_swatch->setColor(Color::fromCssString(m_value));
    connect(m_button, &QAbstractButton::clicked, this, &CSSColorPicker::openPopover);
}

void CSSColorPicker::setValue(const QString &value)
{
    assignValue(value);
}

ColorPickerPopover *CSSColorPicker::popover() const
{
    return static_cast<ColorPickerPopover *>(m_holder.popover());
}

void CSSColorPicker::openPopover()
{
    m_holder.close();
    QWidget *window = QApplication::activeWindow();
    if (!window)
        return;
    auto *popover = new ColorPickerPopover(
        m_model, availableColorLists(), [this](const QString &hex) { pick(hex); },
        [this](const QString &hex) { submitHex(hex); }, [this] { openPanel(); }, this);
    popover->adjustSize();
    const QPoint pointer = QCursor::pos();
    const QScreen *screen = QGuiApplication::screenAt(pointer);
    if (!screen)
        screen = window->screen();
    popover->setGeometry(popoverGeometry(pointer, popover->size(), screen->availableGeometry()));
    m_holder.hold(popover);
    popover->show();
}

void CSSColorPicker::assignValue(const QString &value)
{
    if (value == m_value)
        return;
    m_value = value;
    m_swatch->setColor(Color::fromCssString(m_value));
    if (m_value != m_model.hexInput())
        m_model.setHexInput(m_value);
}

void CSSColorPicker::writeValue(const QString &value)
{
    assignValue(value);
    Q_EMIT valueWritten(value);
}

void CSSColorPicker::pick(const QString &hex)
{
    const QPointer<CSSColorPicker> self(this);
    writeValue(hex);
    if (m_onCommit)
        m_onCommit(hex);
    // The owner may have replaced its row, and this picker with it.
    if (self)
        m_holder.close();
}

void CSSColorPicker::submitHex(const QString &hex)
{
    writeValue(hex);
    if (m_onCommit)
        m_onCommit(hex);
}

void CSSColorPicker::openPanel()
{
    m_panel.onChange = [this](const QString &hex) {
        writeValue(hex);
        m_model.setHexInput(hex);
        if (m_onLiveColorChange)
            m_onLiveColorChange(hex);
    };
    m_panel.onClose = [this](const QString &hex) {
        if (m_onCommit)
            m_onCommit(hex);
    };
    m_panel.open(m_model.hexInput());
    m_holder.close();
}

} // namespace Ombrel
