#pragma once

#include <QDialog>

class QCheckBox;

namespace Ombrel {

// The settings window: the four preferences as toggles in two sections, each
// written and in effect in every window as soon as it is clicked.
class PreferencesView : public QDialog
{
    Q_OBJECT

public:
    explicit PreferencesView(QWidget *parent = nullptr);

    QCheckBox *restoreSessionToggle() const { return m_restoreSession; }
    QCheckBox *autoSaveToggle() const { return m_autoSave; }
    QCheckBox *showNodeStylingToggle() const { return m_showNodeStyling; }
    QCheckBox *showColorSwatchesToggle() const { return m_showColorSwatches; }

private:
    void showPreferences();

    QCheckBox *m_restoreSession;
    QCheckBox *m_autoSave;
    QCheckBox *m_showNodeStyling;
    QCheckBox *m_showColorSwatches;
};

} // namespace Ombrel
