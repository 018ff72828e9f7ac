#pragma once

#include "model/CSSFile.h"

#include <QPointer>
#include <QWidget>

class QSplitter;
class QStackedWidget;

namespace Ombrel {

class PropertyEditorView;
class UndoManager;
class Workspace;

// The right-hand part of the editing layout: the canvas of the selected file
// (or the welcome view when none is selected) and, on the rulesets tab of a
// file with rulesets, the inspector column beside it.
class MainDetailView : public QWidget
{
    Q_OBJECT

public:
    MainDetailView(Workspace *workspace, UndoManager *undoManager, QWidget *parent = nullptr);

    QWidget *contentColumn() const;
    // nullptr while the inspector is absent.
    QWidget *detailColumn() const;
    // What the inspector column shows: the property editor while a ruleset
    // is selected, else the placeholder; nullptr while the column is absent.
    QWidget *detailContent() const;
    // The property editor, once made; it lives as long as the column.
    PropertyEditorView *propertyEditor() const;

private:
    void updateContent();
    void updateDetail();

    Workspace *m_workspace;
    UndoManager *m_undoManager;
    QSplitter *m_split;
    QStackedWidget *m_content;
    QWidget *m_welcome = nullptr;
    QWidget *m_canvas = nullptr;
    QPointer<QStackedWidget> m_detail;
    QPointer<QWidget> m_placeholder;
    QPointer<PropertyEditorView> m_editor;
};

} // namespace Ombrel
