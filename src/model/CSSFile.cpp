#include "CSSFile.h"

#include "CSSParser.h"
#include "Uuid.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace Ombrel {

CSSFile::CSSFile(QString path, CSSRulesetList rulesets, QString originalContent)
    : m_id(newUuid()), m_path(QDir::cleanPath(path)), m_rulesets(std::move(rulesets)),
      m_originalContent(std::move(originalContent))
{}

void CSSFile::setPath(const QString &path)
{
    m_path = QDir::cleanPath(path);
}

QString CSSFile::name() const
{
    return QFileInfo(m_path).fileName();
}

void CSSFile::setRulesets(const CSSRulesetList &rulesets)
{
    if (m_rulesets == rulesets)
        return;
    m_rulesets = rulesets;
    Q_EMIT rulesetsChanged();
    Q_EMIT changed();
}

void CSSFile::setHasUnsavedChanges(bool value)
{
    if (m_hasUnsavedChanges == value)
        return;
    m_hasUnsavedChanges = value;
    Q_EMIT hasUnsavedChangesChanged();
    Q_EMIT changed();
}

QString CSSFile::generateCSS() const
{
    QString out;
    qsizetype estimate = 1;
    for (const CSSRulesetPtr &ruleset : m_rulesets) {
        estimate += ruleset->selector().size() + 6;
        for (const CSSProperty &property : ruleset->properties())
            estimate += property.name.size() + property.value.size() + 8;
    }
    out.reserve(estimate);
    bool first = true;
    for (const CSSRulesetPtr &ruleset : m_rulesets) {
        if (!first)
            out += QLatin1String("\n\n");
        first = false;
        ruleset->appendCssString(out);
    }
    out += QLatin1Char('\n');
    return out;
}

template<typename Step> void CSSFile::post(Step step)
{
    QMetaObject::invokeMethod(
        this, [self = weak_from_this().lock(), step = std::move(step)] { step(); },
        Qt::QueuedConnection);
}

bool CSSFile::save(QString *errorString)
{
    const QString text = generateCSS();
    QSaveFile file(m_path);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit();
    if (!written) {
        if (errorString)
            *errorString = file.errorString();
        return false;
    }
    m_originalContent = text;
    post([this] { setHasUnsavedChanges(false); });
    return true;
}

void CSSFile::revert()
{
    CSSRulesetList parsed = CSSParser::parse(m_originalContent);
    post([this, parsed = std::move(parsed)] {
        setRulesets(parsed);
        setHasUnsavedChanges(false);
    });
}

void CSSFile::markChanged()
{
    post([this] {
        setHasUnsavedChanges(generateCSS() != m_originalContent);
        runAutoSaveStep();
    });
}

void CSSFile::runAutoSaveStep()
{
    // The auto-save debounce hooks in here; it needs the preferences store.
}

} // namespace Ombrel
