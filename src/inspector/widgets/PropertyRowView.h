#pragma once

#include "inspector/PropertyEditorController.h"
#include "inspector/VariableOffer.h"
#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/SymbolButton.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "model/CSSProperty.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

namespace Ombrel {

class CSSColorPicker;

// One line of the inspector: the name, a colon, the value and the buttons at
// its end. It owns the text being typed and the course of one edit, and
// reaches the model only through its callbacks.
//
// Idle, it paints the name and the value (or "Mixed" over a selection whose
// values differ); a click on either cell starts an edit with the keyboard in
// that cell. Editing, both cells are autocomplete fields, on a light wash of
// the accent colour, and each keystroke goes out as a live change, unless
// the name or the value is blank: then the model keeps the last text that
// went out. Return in the value (or Tab, which then moves on) commits;
// Escape puts the start values back and cancels. When the parent ends the
// edit from outside, the row commits what it holds, unless it was
// cancelling.
class PropertyRowView : public QWidget
{
    Q_OBJECT

public:
    struct Callbacks
    {
        std::function<void()> onStartEdit;
        std::function<void(const QString &name, const QString &value)> onLiveChange;
        std::function<void()> onCommit;
        std::function<void()> onCancel;
        std::function<void(const QString &origValue, const QString &newValue)> onColorCommit;
        std::function<void()> onDelete;
        std::function<void()> onTabFromValue;
    };

    // The painted height of a row; the list draws a divider under it.
    static constexpr int rowHeight = 40;
    static constexpr int nameColumnWidth = 130;
    static constexpr int leadingInset = 12;

    PropertyRowView(const CSSProperty &property, Callbacks callbacks, QWidget *parent = nullptr);
    void setCallbacks(Callbacks callbacks) { m_callbacks = std::move(callbacks); }

    // --- Inputs from the panel ---

    const CSSProperty &property() const { return m_property; }
    // The property as the model now holds it. An idle row takes its name and
    // value; a row being edited keeps its own text.
    void setProperty(const CSSProperty &property);
    // The file's custom properties, shared by the panel's rows.
    void setVariables(const VariableOfferPtr &variables);
    void setMixedValue(bool mixed);
    bool isMixedValue() const { return m_mixed; }
    // Whether this is the row being edited. Turning false from outside
    // commits, unless a cancel is under way.
    void setEditing(bool editing);
    bool isEditing() const { return m_editing; }

    // --- Operations ---

    // Begins an edit: the model learns of it at once, the fields show, and
    // the field asked for takes the focus shortly after, once laid out. A
    // mixed value is edited from blank.
    void startEdit(PropertyField focusOn);
    void commit();
    void cancelEdit();

    // The colour swatch: a live change from the colour panel, and the end of
    // an interaction with its final colour.
    void liveColorChange(const QString &hex);
    void colorCommitted(const QString &hex);

    // --- Readings ---

    QString localName() const { return m_localName; }
    QString localValue() const { return m_localValue; }
    bool isCanceling() const { return m_isCanceling; }
    std::optional<QString> colorEditOriginal() const { return m_colorEditOriginal; }
    // The variables this property may refer to: only colours for a colour
    // property.
    VariableChoices compatibleVariables() const;
    // The variable the typed value refers to.
    std::optional<QString> activeVarName() const;
    // Whether a colour swatch stands before the value.
    bool showsSwatch() const;

    // --- Parts, for the panel and for tests ---

    QRect nameCell() const;
    QRect valueCell() const;
    // Null while idle.
    AutocompleteField *nameField() const { return m_nameField; }
    AutocompleteField *valueField() const { return m_valueField; }
    SymbolButton *variableButton() const { return m_variableButton; }
    SymbolButton *deleteButton() const { return m_deleteButton; }
    // The colour swatch before the value; null until the value first shows
    // one, hidden while it does not.
    CSSColorPicker *swatchPicker() const { return m_swatch; }
    // The open variable picker, if any.
    VariablePickerPopover *variablePicker() const { return m_picker; }
    // Opens the picker under the variable button, or closes an open one.
    void toggleVariablePicker();

Q_SIGNALS:
    // A press on the row outside its fields and buttons: the panel commits
    // what is in progress before the row acts on it.
    void pressed();
    // A drag of the row moved the pointer translationY down from the press.
    void dragMoved(double translationY);
    void dragEnded();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void localTextEdited();
    void showForm();
    void syncFields();
    void layoutChildren();
    void updateButtons();
    int colonLeft() const;
    int valueLeft() const;
    // Where the value's text or field begins, behind the swatch.
    int valueTextLeft() const;
    void updateSwatch();
    int buttonsLeft() const;
    void pickVariable(const QString &name);
    void useRawValue();

    CSSProperty m_property;
    Callbacks m_callbacks;
    VariableOfferPtr m_variables;
    bool m_mixed = false;
    bool m_editing = false;

    QString m_localName;
    QString m_localValue;
    QString m_editStartName;
    QString m_editStartValue;
    bool m_isCanceling = false;
    std::optional<QString> m_colorEditOriginal;

    QPointer<AutocompleteField> m_nameField;
    QPointer<AutocompleteField> m_valueField;
    SymbolButton *m_variableButton;
    SymbolButton *m_deleteButton;
    CSSColorPicker *m_swatch = nullptr;
    QPointer<VariablePickerPopover> m_picker;

    QPoint m_pressPosition;
    bool m_pressing = false;
    bool m_dragging = false;
};

} // namespace Ombrel
