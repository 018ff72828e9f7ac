#pragma once

#include "CSSParser.h"
#include "CSSRuleset.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

class QTimer;

namespace Ombrel {

// What a save would do to the text a file was last loaded from (read, reverted
// to or reloaded), and what became of that text at the first save since.
enum class OriginalState {
    // The text is in the generated form, or empty: a save drops nothing of it.
    Whole,
    // A save would drop part of the text, and none has written the file yet.
    BeforeSave,
    // The first save kept the bytes it replaced through the original keeper.
    Kept,
    // The first save went on although those bytes could not be kept.
    NotKept,
};

// One stylesheet of the open folder: where it lives, its rulesets, and whether
// they still match the text regarded as on disk. A save always writes the
// whole generated text; the file is never patched.
//
// Create it through std::make_shared: the work that markChanged(), save() and
// revert() post to the event loop keeps the file alive until it has run.
//
// Readings of the whole file (its custom properties and their count) are
// built on the first read after a change of them and kept until the next,
// which the file learns of from its rulesets themselves: an edit that leaves
// every custom property as it was keeps them. Views that show such readings
// re-read them on contentChanged(), which comes once per turn of the event
// loop however many rulesets changed, rather than on every ruleset's signal.
class CSSFile : public QObject, public std::enable_shared_from_this<CSSFile>
{
    Q_OBJECT

public:
    // No I/O: the caller has read the text and parsed it, counting what the
    // parse dropped.
    CSSFile(QString path, CSSRulesetList rulesets, QString originalContent,
            CSSParser::DroppedCounts dropped = {});
    ~CSSFile() override;

    QUuid id() const { return m_id; }

    // Absolute, clean path of the file.
    QString path() const { return m_path; }
    void setPath(const QString &path);

    // Last path component.
    QString name() const;
    // The whole path, in spite of its name.
    QString relativePath() const { return m_path; }

    const CSSRulesetList &rulesets() const { return m_rulesets; }
    void setRulesets(const CSSRulesetList &rulesets);

    // Every custom property ("--" name) of every ruleset, whatever its
    // selector; a later declaration overwrites an earlier one. Built on the
    // first read after a change of the list or of a custom property, then
    // shared by every read until the next.
    CSSVariables variables() const;
    // Whether any ruleset declares a custom property.
    bool hasVariables() const;
    // How many declarations of custom properties the rulesets hold, a name
    // declared twice counted twice. Kept like variables().
    qsizetype customPropertyCount() const;
    // A number that changes with every change of the list of rulesets or of
    // the selector or declarations of one of them, at once: what a view
    // derived from the rulesets is still good for while it stays the same.
    quint64 contentRevision() const { return m_contentRevision; }

    bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }

    // The text that was read, and after the first successful save the text of
    // the last one. Held as UTF-8, as on disk, at half the size.
    QString originalContent() const { return QString::fromUtf8(m_originalContent); }

    // Every ruleset's text in order, separated by a blank line, ending with
    // exactly one line break ("\n" for a file with no rulesets).
    QString generateCSS() const;

    // Writes the generated text atomically as UTF-8. On failure returns false
    // with the reason in errorString, and changes nothing; the file on disk
    // stays whole. On success hasUnsavedChanges turns false on the next turn
    // of the event loop.
    bool save(QString *errorString = nullptr);

    // Parses originalContent again (never the disk); the new rulesets and a
    // clean state arrive on the next turn of the event loop, and the text
    // counts as loaded afresh.
    void revert();

    // Takes text as what is on disk now, as if the file had just been read:
    // its rulesets, a clean state and a loaded text counted afresh, at once.
    // A pending auto-save is dropped, since it would only write what the text
    // has just replaced.
    void reload(const QString &text);

    // What a save does to the loaded text; see OriginalState.
    OriginalState originalState() const { return m_originalState; }
    // What the parse of the loaded text left out.
    CSSParser::DroppedCounts droppedCounts() const { return m_dropped; }

    // To be called after any edit of the rulesets. On the next turn of the
    // event loop compares the generated text with originalContent.
    void markChanged();

    // Whether a change that leaves a file dirty arms its one-second auto-save,
    // asked at each such change. The application ties it to the user's
    // preference; until it does, auto-save is off.
    static void setAutoSavePolicy(std::function<bool()> isEnabled);

    // Keeps the bytes now at a path where the user can get them back, and
    // says whether it did.
    using OriginalKeeper = std::function<bool(const QString &path)>;
    // Asked once per loaded text, by the first save that would replace bytes
    // on disk that differ from the generated text while the loaded text is
    // not whole. Every save goes through it: Save, Save All, auto-save and the
    // prompts. A keeper that fails never stops the save. Until the
    // application installs one nothing is kept.
    static void setOriginalKeeper(OriginalKeeper keeper);

Q_SIGNALS:
    void rulesetsChanged();
    void hasUnsavedChangesChanged();
    void originalStateChanged();
    // Emitted after any observable field changed.
    void changed();
    // On the turn of the event loop after the list of rulesets, or the
    // selector or declarations of any of them, changed: once for all the
    // changes of a turn.
    void contentChanged();

private:
    friend class CSSRuleset;
    // A ruleset of the list changed its selector or declarations; the
    // readings go only when its custom properties changed.
    void rulesetEdited(bool customPropertiesChanged, qsizetype sizeChange);
    void contentEdited(bool readingsChanged);
    void adopt(const CSSRulesetList &rulesets);
    qsizetype generatedSize() const;
    bool generatesOriginal() const;
    struct Readings
    {
        CSSVariables variables;
        qsizetype customPropertyCount = 0;
    };
    const Readings &readings() const;

    void setHasUnsavedChanges(bool value);
    void setOriginalState(OriginalState state);
    // Takes the counts of a parse of the loaded text and judges it afresh.
    void setLoadedText(const CSSParser::DroppedCounts &dropped, OriginalState state);
    // Before a save writes bytes: keeps what is on disk when the loaded text
    // is not whole and nothing was kept of it yet. Returns the state the
    // save leaves once it has written.
    OriginalState keepOriginalBefore(const QByteArray &bytes);
    // Runs a posted step on the event loop; a file owned by a shared_ptr is
    // kept alive until the step ran.
    template<typename Step> void post(Step step);
    void runAutoSaveStep();
    void runAutoSave();

    const QUuid m_id;
    QString m_path;
    CSSRulesetList m_rulesets;
    bool m_hasUnsavedChanges = false;
    QByteArray m_originalContent;
    // The original's length in UTF-16 units, measured at the first need.
    mutable qsizetype m_originalLength = -1;
    // The length of the generated text, summed once per list of rulesets and
    // then moved by each ruleset's edit, for the change mark's quick answer;
    // -1 until read. Writing the text sums the lengths afresh.
    mutable qsizetype m_generatedSize = -1;
    CSSParser::DroppedCounts m_dropped;
    OriginalState m_originalState = OriginalState::Whole;
    // Whether the keeper kept the loaded text's bytes already, so that a
    // save that failed after it does not keep them twice.
    bool m_originalKept = false;
    // The readings of the whole file since the last change; none until read.
    mutable std::optional<Readings> m_readings;
    quint64 m_contentRevision = 0;
    bool m_contentChangePosted = false;
    // The pending auto-save, a single-shot timer made on first use, and the
    // reference that keeps the file alive until that timer has fired.
    QTimer *m_autoSaveTimer = nullptr;
    std::shared_ptr<CSSFile> m_autoSaveHold;
};

using CSSFilePtr = std::shared_ptr<CSSFile>;
using CSSFileList = QList<CSSFilePtr>;

} // namespace Ombrel
