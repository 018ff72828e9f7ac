#include "PreferencesView.h"

#include "shell/widgets/ApplicationIcon.h"
#include "workspace/AppPreferences.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>

namespace Ombrel {

namespace {

QCheckBox *addToggle(QVBoxLayout *section, const QString &label,
                     bool (AppPreferences::*read)() const, void (AppPreferences::*write)(bool),
                     QWidget *context)
{
    auto *toggle = new QCheckBox(label);
    section->addWidget(toggle);
    toggle->setChecked((AppPreferences::shared().*read)());
    QObject::connect(toggle, &QCheckBox::toggled, context,
                     [write](bool on) { (AppPreferences::shared().*write)(on); });
    return toggle;
}

QVBoxLayout *addSection(QVBoxLayout *form, const QString &title, QWidget *parent)
{
    auto *box = new QGroupBox(title, parent);
    form->addWidget(box);
    return new QVBoxLayout(box);
}

} // namespace

PreferencesView::PreferencesView(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("PreferencesView"));
    setWindowTitle(tr("Preferences"));
    setWindowIcon(applicationIcon());
    setFixedSize(420, 280);
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(20, 20, 20, 20);
    form->setSpacing(16);

    QVBoxLayout *general = addSection(form, tr("General"), this);
    m_restoreSession =
        addToggle(general, tr("Restore last session on launch"), &AppPreferences::restoreSession,
                  &AppPreferences::setRestoreSession, this);
    m_autoSave = addToggle(general, tr("Auto-save on change"), &AppPreferences::autoSave,
                           &AppPreferences::setAutoSave, this);
    QVBoxLayout *canvas = addSection(form, tr("Canvas"), this);
    m_showNodeStyling =
        addToggle(canvas, tr("Show ruleset node styling"), &AppPreferences::showNodeStyling,
                  &AppPreferences::setShowNodeStyling, this);
    m_showColorSwatches =
        addToggle(canvas, tr("Show color swatches"), &AppPreferences::showColorSwatches,
                  &AppPreferences::setShowColorSwatches, this);
    form->addStretch(1);

    // A change made elsewhere shows here too.
    connect(&AppPreferences::shared(), &AppPreferences::changed, this,
            &PreferencesView::showPreferences);
}

void PreferencesView::showPreferences()
{
    const AppPreferences &preferences = AppPreferences::shared();
    m_restoreSession->setChecked(preferences.restoreSession());
    m_autoSave->setChecked(preferences.autoSave());
    m_showNodeStyling->setChecked(preferences.showNodeStyling());
    m_showColorSwatches->setChecked(preferences.showColorSwatches());
}

} // namespace Ombrel
