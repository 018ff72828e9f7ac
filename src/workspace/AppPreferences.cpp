#include "AppPreferences.h"

#include <QSettings>
#include <QVariant>

namespace Ombrel {

namespace {

QSettings userStore()
{
    return QSettings(QStringLiteral("Ombrel"), QStringLiteral("Ombrel"));
}

// Only a boolean replaces the default. The INI store used on Linux gives a
// stored bool back as the text "true" or "false", so exactly those two texts
// count as booleans and any other value (the text "no", a number) is ignored.
void loadBool(const QSettings &store, const QString &key, bool &field)
{
    const QVariant stored = store.value(key);
    if (stored.typeId() == QMetaType::Bool) {
        field = stored.toBool();
    } else if (stored.typeId() == QMetaType::QString) {
        const QString text = stored.toString();
        if (text == QLatin1String("true"))
            field = true;
        else if (text == QLatin1String("false"))
            field = false;
    }
}

} // namespace

AppPreferences &AppPreferences::shared()
{
    static AppPreferences instance;
    return instance;
}

AppPreferences::AppPreferences()
{
    const QSettings store = userStore();
    loadBool(store, restoreSessionKey, m_restoreSession);
    loadBool(store, autoSaveKey, m_autoSave);
    loadBool(store, showColorSwatchesKey, m_showColorSwatches);
    loadBool(store, showNodeStylingKey, m_showNodeStyling);
}

void AppPreferences::assign(bool &field, bool value, const QString &key,
                            void (AppPreferences::*notify)())
{
    // Written on every assignment, also of the present value: the QSettings
    // object syncs to disk as it goes out of scope, so other readers see it.
    userStore().setValue(key, value);
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*notify)();
    Q_EMIT changed();
}

void AppPreferences::setRestoreSession(bool value)
{
    assign(m_restoreSession, value, restoreSessionKey, &AppPreferences::restoreSessionChanged);
}

void AppPreferences::setAutoSave(bool value)
{
    assign(m_autoSave, value, autoSaveKey, &AppPreferences::autoSaveChanged);
}

void AppPreferences::setShowColorSwatches(bool value)
{
    assign(m_showColorSwatches, value, showColorSwatchesKey,
           &AppPreferences::showColorSwatchesChanged);
}

void AppPreferences::setShowNodeStyling(bool value)
{
    assign(m_showNodeStyling, value, showNodeStylingKey, &AppPreferences::showNodeStylingChanged);
}

} // namespace Ombrel
