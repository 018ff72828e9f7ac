#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace Ombrel {

// The state a colour picker keeps between openings of its popover: the text
// of the popover's field and the colour list its grid shows. One per picker,
// living as long as the picker.
class ColorPickerModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString hexInput READ hexInput WRITE setHexInput NOTIFY hexInputChanged)
    Q_PROPERTY(int paletteIndex READ paletteIndex WRITE setPaletteIndex NOTIFY paletteIndexChanged)

public:
    explicit ColorPickerModel(const QString &hexInput, QObject *parent = nullptr);

    // The popover field's text; it becomes the picker's value only when
    // submitted.
    QString hexInput() const { return m_hexInput; }
    void setHexInput(const QString &text);

    // Which colour list the grid shows; it survives closing the popover.
    int paletteIndex() const { return m_paletteIndex; }
    void setPaletteIndex(int index);

    // The page turns of the grid's header, which stop at the first and the
    // last of listCount lists.
    void showPreviousList();
    void showNextList(int listCount);

Q_SIGNALS:
    void hexInputChanged(const QString &hexInput);
    void paletteIndexChanged(int paletteIndex);

private:
    QString m_hexInput;
    int m_paletteIndex = 0;
};

// The three CSS keywords the popover offers beside the palette.
const QStringList &colorKeywords();

// What Return in the popover's field submits: the text trimmed of spaces and
// tabs, unvalidated, or nothing when that leaves it empty.
std::optional<QString> submittedText(const QString &fieldText);

// Whether a keyword's button shows the accent: only when the field holds
// exactly that keyword, case included.
bool isKeywordHighlighted(const QString &hexInput, const QString &keyword);

} // namespace Ombrel
