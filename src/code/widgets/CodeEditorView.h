#pragma once

#include "model/CSSFile.h"

#include <QList>
#include <QMetaObject>
#include <QWidget>

namespace Ombrel {

class CanvasController;
class CodeCoordinator;
class CodeTextEdit;

// The code tab: the selected stylesheet as coloured text, edited in place.
//
// It follows every change of the shown file, of its rulesets and of the
// workspace, once per turn of the event loop: unless the user is editing,
// the text is replaced by the file's generated text when they differ; then
// the cursor goes, 0.05 s later, to the variable the tab was entered for or
// else to the selected ruleset, each target once per view. The coordinator
// keeps the file the view was made with for writing (see CodeCoordinator).
class CodeEditorView : public QWidget
{
    Q_OBJECT

public:
    explicit CodeEditorView(CanvasController &controller, QWidget *parent = nullptr);

    CodeTextEdit *textView() const { return m_textView; }
    CodeCoordinator *coordinator() const { return m_coordinator; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    void scheduleUpdate();
    void updateView();
    void positionCursor();
    void followFile();
    // Runs the positioning 0.05 s later, if the view and its tab still show.
    template<typename Placing> void positionLater(Placing placing);

    CanvasController &m_controller;
    CodeTextEdit *m_textView;
    CodeCoordinator *m_coordinator;
    bool m_updatePending = false;
    CSSFilePtr m_shownFile;
    QList<QMetaObject::Connection> m_fileConnections;
};

} // namespace Ombrel
