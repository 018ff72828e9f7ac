#pragma once

#include <QObject>
#include <QString>

class TestAppPreferences;

namespace Ombrel {

// The user's four settings, one instance for the whole process, persisted in
// the user's QSettings store (organisation and application "Ombrel"). Each
// setting takes effect at once: every assignment is written straight away,
// and every window observes the same instance.
class AppPreferences : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool restoreSession READ restoreSession WRITE setRestoreSession NOTIFY
                   restoreSessionChanged)
    Q_PROPERTY(bool autoSave READ autoSave WRITE setAutoSave NOTIFY autoSaveChanged)
    Q_PROPERTY(bool showColorSwatches READ showColorSwatches WRITE setShowColorSwatches NOTIFY
                   showColorSwatchesChanged)
    Q_PROPERTY(bool showNodeStyling READ showNodeStyling WRITE setShowNodeStyling NOTIFY
                   showNodeStylingChanged)

public:
    // The process-wide instance, loaded from the store when first touched.
    static AppPreferences &shared();

    // Reopen the last folder and file at launch.
    bool restoreSession() const { return m_restoreSession; }
    void setRestoreSession(bool value);

    // Write a changed file one second after its last change.
    bool autoSave() const { return m_autoSave; }
    void setAutoSave(bool value);

    // Show colour swatches in the inspector's property rows.
    bool showColorSwatches() const { return m_showColorSwatches; }
    void setShowColorSwatches(bool value);

    // Draw each card with the styles of its ruleset.
    bool showNodeStyling() const { return m_showNodeStyling; }
    void setShowNodeStyling(bool value);

    static inline const QString restoreSessionKey = QStringLiteral("pref.restoreSession");
    static inline const QString autoSaveKey = QStringLiteral("pref.autoSave");
    static inline const QString showColorSwatchesKey = QStringLiteral("pref.showColorSwatches");
    static inline const QString showNodeStylingKey = QStringLiteral("pref.showNodeStyling");

Q_SIGNALS:
    void restoreSessionChanged();
    void autoSaveChanged();
    void showColorSwatchesChanged();
    void showNodeStylingChanged();
    // Emitted after any setting changed.
    void changed();

private:
    // Tests construct fresh instances to stand for the next launch of the
    // application; everything else goes through shared().
    friend class ::TestAppPreferences;

    AppPreferences();

    void assign(bool &field, bool value, const QString &key, void (AppPreferences::*notify)());

    bool m_restoreSession = true;
    bool m_autoSave = false;
    bool m_showColorSwatches = true;
    bool m_showNodeStyling = true;
};

} // namespace Ombrel
