#pragma once

#include "variables/VariableEntry.h"

#include <QWidget>

class QLineEdit;

namespace Ombrel {

class CSSColorPicker;
class VariablesController;

// One line of the variables tab while it is being edited: name, colon and
// value as the list paints them, with a text field over the name during a
// rename and over the value during a value edit. The list opens one over a
// row only while that row needs fields, so that a file of thousands of
// variables has a widget for the one being edited and paints the rest.
//
// The row reaches the model only at a commit: Return or a focus loss in the
// value field commits the value and Escape cancels it; Return or Tab in the
// name field confirms the name and moves on into the value, Escape ends the
// rename, and a focus loss there does neither. Clicks outside the fields
// pass through to the list, which turns them into the row's gestures.
class VariableRow : public QWidget
{
    Q_OBJECT

public:
    VariableRow(VariablesController &controller, const VariableEntry &entry,
                QWidget *parent = nullptr);

    const VariableEntry &entry() const { return m_entry; }
    // Shows the entry, and the fields the controller's state of the row
    // calls for; a name field that appears takes the focus.
    void showEntry(const VariableEntry &entry);
    // The value field takes the focus with its text selected, if it shows.
    void focusValue();
    // Opens the picker's popover, as a press on its swatch does, if it shows.
    void openColorPicker();

    QLineEdit *nameField() const { return m_nameField; }
    QLineEdit *valueField() const { return m_valueField; }
    CSSColorPicker *picker() const { return m_picker; }

Q_SIGNALS:
    // The picker's swatch was pressed: its popover opens.
    void swatchPressed(const QUuid &propID);

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void placeFields();
    bool nameKey(int key);
    bool valueKey(int key);
    // Before a focused field hides, the row takes the focus, so that it does
    // not wander to whatever widget comes next.
    void hideField(QLineEdit *field);

    VariablesController &m_controller;
    VariableEntry m_entry;
    QLineEdit *m_nameField;
    QLineEdit *m_valueField;
    CSSColorPicker *m_picker;
};

} // namespace Ombrel
