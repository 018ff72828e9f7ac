#pragma once

#include "inspector/VariableOffer.h"
#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/SymbolButton.h"
#include "inspector/widgets/VariablePickerPopover.h"

#include <QPointer>
#include <QWidget>

namespace Ombrel {

class PropertyEditorController;

// The row that collects a new property, below the listed ones while the
// panel adds one. Its two fields are the controller's new name and value;
// the name takes the focus when the row appears. Return in the name, or
// taking a suggestion there, moves to the value, whose suggestions follow
// the name; Return in the value commits, and so does the checkmark. Escape
// anywhere in the row, or the cross, cancels. A variable picked from its
// picker only fills in the value.
class AddPropertyRow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 40;

    AddPropertyRow(PropertyEditorController &controller, QWidget *parent = nullptr);

    void setVariables(const VariableOfferPtr &variables);
    // The variables the typed name may refer to.
    VariableChoices compatibleVariables() const;
    std::optional<QString> activeVarName() const;

    AutocompleteField *nameField() const { return m_nameField; }
    AutocompleteField *valueField() const { return m_valueField; }
    SymbolButton *variableButton() const { return m_variableButton; }
    SymbolButton *commitButton() const { return m_commitButton; }
    SymbolButton *cancelButton() const { return m_cancelButton; }
    VariablePickerPopover *variablePicker() const { return m_picker; }
    void toggleVariablePicker();

Q_SIGNALS:
    // A press on the row outside its fields and buttons.
    void pressed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void syncFromController();
    void updateButtons();
    void layoutChildren();

    PropertyEditorController &m_controller;
    VariableOfferPtr m_variables;
    AutocompleteField *m_nameField;
    AutocompleteField *m_valueField;
    SymbolButton *m_variableButton;
    SymbolButton *m_commitButton;
    SymbolButton *m_cancelButton;
    QPointer<VariablePickerPopover> m_picker;
};

} // namespace Ombrel
