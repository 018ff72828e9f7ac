#include "CSSFile.h"

#include "CSSParser.h"
#include "Uuid.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>

#include <algorithm>

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
    // Regenerated on every change, so sized once and filled in place rather
    // than grown piece by piece.
    const QStringView separator = u"\n\n";
    qsizetype size = 1;
    for (const CSSRulesetPtr &ruleset : m_rulesets)
        size += ruleset->cssStringSize();
    if (!m_rulesets.isEmpty())
        size += (m_rulesets.size() - 1) * separator.size();

    QString out(size, Qt::Uninitialized);
    QChar *end = out.data();
    bool first = true;
    for (const CSSRulesetPtr &ruleset : m_rulesets) {
        if (!first)
            end = std::copy(separator.begin(), separator.end(), end);
        first = false;
        end = ruleset->writeCssString(end);
    }
    *end = u'\n';
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

namespace {

std::function<bool()> &autoSavePolicy()
{
    static std::function<bool()> isEnabled = [] { return false; };
    return isEnabled;
}

} // namespace

void CSSFile::setAutoSavePolicy(std::function<bool()> isEnabled)
{
    autoSavePolicy() = std::move(isEnabled);
}

// A debounce of one second: each change that leaves the file dirty restarts
// the timer. A change that leaves it clean, or one made with auto-save off,
// leaves a pending timer running, and nothing but its own firing ends it.
void CSSFile::runAutoSaveStep()
{
    if (!autoSavePolicy()() || !m_hasUnsavedChanges)
        return;
    if (!m_autoSaveTimer) {
        m_autoSaveTimer = new QTimer(this);
        m_autoSaveTimer->setSingleShot(true);
        m_autoSaveTimer->setTimerType(Qt::PreciseTimer);
        m_autoSaveTimer->setInterval(1000);
        connect(m_autoSaveTimer, &QTimer::timeout, this, &CSSFile::runAutoSave);
    }
    m_autoSaveHold = weak_from_this().lock();
    m_autoSaveTimer->start();
}

void CSSFile::runAutoSave()
{
    // A posted step takes over the reference, so that the file is never
    // destroyed while its own timer is still emitting.
    post([hold = std::move(m_autoSaveHold)] {});
    // A failed write leaves the file dirty and is not retried: only the next
    // dirtying change arms the timer again.
    save();
}

} // namespace Ombrel
