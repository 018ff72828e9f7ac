#include "CSSFile.h"

#include "CSSParser.h"
#include "Uuid.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>

#include <algorithm>

namespace Ombrel {

namespace {

// Between two rulesets of the generated text.
constexpr QStringView rulesetSeparator = u"\n\n";

// Whether text is exactly what the rulesets generate. Compared one ruleset at
// a time, so that the usual text written by hand or by another tool is told
// apart at its first ruleset, long before its end.
bool isGeneratedForm(const CSSRulesetList &rulesets, QStringView text)
{
    QString piece;
    qsizetype at = 0;
    bool first = true;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (!first) {
            if (!text.sliced(at).startsWith(rulesetSeparator))
                return false;
            at += rulesetSeparator.size();
        }
        first = false;
        const qsizetype size = ruleset->cssStringSize();
        if (text.size() - at < size)
            return false;
        piece.resize(size);
        ruleset->writeCssString(piece.data());
        if (text.sliced(at, size) != piece)
            return false;
        at += size;
    }
    return text.size() - at == 1 && text[at] == u'\n';
}

// A text with nothing in it has nothing to lose: a new file starts so.
OriginalState judgeLoadedText(const CSSRulesetList &rulesets, QStringView text,
                              const CSSParser::DroppedCounts &dropped)
{
    const bool whole = text.isEmpty() ||
                       (dropped == CSSParser::DroppedCounts() && isGeneratedForm(rulesets, text));
    return whole ? OriginalState::Whole : OriginalState::BeforeSave;
}

CSSFile::OriginalKeeper &originalKeeper()
{
    static CSSFile::OriginalKeeper keeper;
    return keeper;
}

// Whether what is on disk at path is anything but bytes. Sizes settle almost
// every case without reading; a missing file holds nothing to lose.
bool diskDiffersFrom(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    if (!info.exists())
        return false;
    if (info.size() != bytes.size())
        return true;
    QFile file(path);
    return !file.open(QIODevice::ReadOnly) || file.readAll() != bytes;
}

// The UTF-8 of text at its exact size: the encoder reserves three bytes for
// every unit, which a text kept for the life of its file cannot afford.
QByteArray utf8Of(const QString &text)
{
    const bool ascii =
        std::all_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() < 0x80; });
    if (ascii)
        return text.toLatin1();
    QByteArray bytes = text.toUtf8();
    bytes.squeeze();
    return bytes;
}

} // namespace

CSSFile::CSSFile(QString path, CSSRulesetList rulesets, QString originalContent,
                 CSSParser::DroppedCounts dropped)
    : m_id(newUuid()), m_path(QDir::cleanPath(path)), m_rulesets(std::move(rulesets)),
      m_originalContent(utf8Of(originalContent)), m_dropped(dropped),
      m_originalState(judgeLoadedText(m_rulesets, originalContent, dropped))
{
    adopt(m_rulesets);
}

// Rulesets may outlive their file in undo steps: they no longer tell it.
CSSFile::~CSSFile()
{
    for (const CSSRulesetPtr &ruleset : std::as_const(m_rulesets)) {
        if (ruleset->m_file == this)
            ruleset->m_file = nullptr;
    }
}

void CSSFile::adopt(const CSSRulesetList &rulesets)
{
    for (const CSSRulesetPtr &ruleset : rulesets)
        ruleset->m_file = this;
}

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
    for (const CSSRulesetPtr &ruleset : std::as_const(m_rulesets)) {
        if (ruleset->m_file == this)
            ruleset->m_file = nullptr;
    }
    m_rulesets = rulesets;
    m_generatedSize = -1;
    adopt(m_rulesets);
    contentEdited(true);
    Q_EMIT rulesetsChanged();
    Q_EMIT changed();
}

void CSSFile::setOriginalState(OriginalState state)
{
    if (m_originalState == state)
        return;
    m_originalState = state;
    Q_EMIT originalStateChanged();
    Q_EMIT changed();
}

void CSSFile::setLoadedText(const CSSParser::DroppedCounts &dropped, OriginalState state)
{
    m_originalKept = false;
    const bool countsChanged = m_dropped != dropped;
    m_dropped = dropped;
    if (m_originalState != state) {
        setOriginalState(state);
    } else if (countsChanged) {
        Q_EMIT originalStateChanged();
        Q_EMIT changed();
    }
}

void CSSFile::setHasUnsavedChanges(bool value)
{
    if (m_hasUnsavedChanges == value)
        return;
    m_hasUnsavedChanges = value;
    Q_EMIT hasUnsavedChangesChanged();
    Q_EMIT changed();
}

qsizetype CSSFile::generatedSize() const
{
    qsizetype size = 1;
    for (const CSSRulesetPtr &ruleset : m_rulesets)
        size += ruleset->cssStringSize();
    if (!m_rulesets.isEmpty())
        size += (m_rulesets.size() - 1) * rulesetSeparator.size();
    return size;
}

QString CSSFile::generateCSS() const
{
    // Regenerated on every change, so sized once and filled in place rather
    // than grown piece by piece.
    const qsizetype size = generatedSize();
    QString out(size, Qt::Uninitialized);
    QChar *end = out.data();
    bool first = true;
    for (const CSSRulesetPtr &ruleset : m_rulesets) {
        if (!first)
            end = std::copy(rulesetSeparator.begin(), rulesetSeparator.end(), end);
        first = false;
        end = ruleset->writeCssString(end);
    }
    *end = u'\n';
    return out;
}

void CSSFile::rulesetEdited(bool customPropertiesChanged, qsizetype sizeChange)
{
    if (m_generatedSize >= 0)
        m_generatedSize += sizeChange;
    contentEdited(customPropertiesChanged);
}

// The readings are dropped at once, so that a read later in the same turn
// sees the change; the signal waits for the end of the turn.
void CSSFile::contentEdited(bool readingsChanged)
{
    ++m_contentRevision;
    if (readingsChanged)
        m_readings.reset();
    if (m_contentChangePosted)
        return;
    m_contentChangePosted = true;
    post([this] {
        m_contentChangePosted = false;
        Q_EMIT contentChanged();
    });
}

template<typename Step> void CSSFile::post(Step step)
{
    QMetaObject::invokeMethod(
        this, [self = weak_from_this().lock(), step = std::move(step)] { step(); },
        Qt::QueuedConnection);
}

OriginalState CSSFile::keepOriginalBefore(const QByteArray &bytes)
{
    if (m_originalState != OriginalState::BeforeSave)
        return m_originalState;
    if (m_originalKept)
        return OriginalState::Kept;
    // Bytes on disk that the save would write again are no loss, whatever
    // the loaded text held: another program has rewritten or removed it.
    if (!diskDiffersFrom(m_path, bytes))
        return OriginalState::Whole;
    const OriginalKeeper &keeper = originalKeeper();
    m_originalKept = keeper && keeper(m_path);
    return m_originalKept ? OriginalState::Kept : OriginalState::NotKept;
}

bool CSSFile::save(QString *errorString)
{
    const QString text = generateCSS();
    QByteArray bytes = utf8Of(text);
    const OriginalState afterSave = keepOriginalBefore(bytes);
    QSaveFile file(m_path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0 && file.commit();
    if (!written) {
        if (errorString)
            *errorString = file.errorString();
        return false;
    }
    m_originalContent = std::move(bytes);
    m_originalLength = -1;
    setOriginalState(afterSave);
    post([this] { setHasUnsavedChanges(false); });
    return true;
}

void CSSFile::revert()
{
    const QString text = originalContent();
    CSSParser::DroppedCounts dropped;
    CSSRulesetList parsed = CSSParser::parse(text, dropped);
    const OriginalState state = judgeLoadedText(parsed, text, dropped);
    post([this, parsed = std::move(parsed), dropped, state] {
        setRulesets(parsed);
        setHasUnsavedChanges(false);
        setLoadedText(dropped, state);
    });
}

void CSSFile::reload(const QString &text)
{
    CSSParser::DroppedCounts dropped;
    const CSSRulesetList parsed = CSSParser::parse(text, dropped);
    if (m_autoSaveTimer && m_autoSaveTimer->isActive()) {
        m_autoSaveTimer->stop();
        post([hold = std::move(m_autoSaveHold)] {});
    }
    m_originalContent = utf8Of(text);
    m_originalLength = -1;
    setRulesets(parsed);
    setHasUnsavedChanges(false);
    setLoadedText(dropped, judgeLoadedText(parsed, text, dropped));
}

void CSSFile::markChanged()
{
    post([this] {
        setHasUnsavedChanges(!generatesOriginal());
        runAutoSaveStep();
    });
}

// Most edits change the length of the text a save would write: the length
// alone then tells, without writing out the whole file at each keystroke.
bool CSSFile::generatesOriginal() const
{
    if (m_originalLength < 0)
        m_originalLength = QString::fromUtf8(m_originalContent).size();
    if (m_generatedSize < 0)
        m_generatedSize = generatedSize();
    return m_generatedSize == m_originalLength &&
           QAnyStringView(generateCSS()) == QAnyStringView(QUtf8StringView(m_originalContent));
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

void CSSFile::setOriginalKeeper(OriginalKeeper keeper)
{
    originalKeeper() = std::move(keeper);
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
