#pragma once

#include "inspector/PropertyEditorController.h"
#include "inspector/VariableOffer.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

namespace Ombrel {

class PropertyListView;
class UndoManager;
class Workspace;

// The inspector column beside the canvas: a header with the selector (or the
// size of a multi-selection) and the property count, the list of property
// rows with the add row, and a bar with "Add Property" and, for a single
// ruleset, the sort button.
//
// It is made once and retargeted when the selection moves, keeping its state.
// Each refresh reads the selection and the file's variables once for all
// rows. A click on the selector opens it for editing; Return applies it,
// Escape drops it, and Tab applies it and moves to the first property.
class PropertyEditorView : public QWidget
{
    Q_OBJECT

public:
    // undoManager may be null; see PropertyEditorController.
    PropertyEditorView(Workspace &workspace, UndoManager *undoManager, QWidget *parent = nullptr);

    PropertyEditorController &controller() { return m_controller; }
    void setTarget(const CSSRulesetPtr &ruleset, const CSSFilePtr &file);

    // The reading and the variables of the last refresh.
    const SelectionReading &reading() const { return m_reading; }
    const VariableOfferPtr &variables() const { return m_variables; }

    // Parts, for tests.
    QLabel *titleLabel() const { return m_title; }
    QLabel *subtitleLabel() const { return m_subtitle; }
    QLineEdit *selectorField() const { return m_selectorField; }
    PropertyListView *list() const { return m_list; }
    QToolButton *addButton() const { return m_addButton; }
    QToolButton *sortButton() const { return m_sortButton; }

    // Reads the selection and shows it; runs after every change that
    // concerns the inspector, once per turn of the event loop.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *buildHeader();
    QWidget *buildBottomBar();
    void updateHeader();
    void updateSelectorField();
    void applyPalette();

    PropertyEditorController m_controller;
    SelectionReading m_reading;
    VariableOfferPtr m_variables;
    QLabel *m_title = nullptr;
    QLineEdit *m_selectorField = nullptr;
    QLabel *m_subtitle = nullptr;
    PropertyListView *m_list = nullptr;
    QToolButton *m_addButton = nullptr;
    QToolButton *m_sortButton = nullptr;
};

} // namespace Ombrel
