#pragma once

#include "CSSRuleset.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>

class QTimer;

namespace Ombrel {

// One stylesheet of the open folder: where it lives, its rulesets, and whether
// they still match the text regarded as on disk. A save always writes the
// whole generated text; the file is never patched.
//
// Create it through std::make_shared: the work that markChanged(), save() and
// revert() post to the event loop keeps the file alive until it has run.
class CSSFile : public QObject, public std::enable_shared_from_this<CSSFile>
{
    Q_OBJECT

public:
    // No I/O: the caller has read the text and parsed it.
    CSSFile(QString path, CSSRulesetList rulesets, QString originalContent);

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
    // selector; a later declaration overwrites an earlier one. Built at each
    // call, never cached.
    CSSVariables variables() const;
    // Whether any ruleset declares a custom property.
    bool hasVariables() const;

    bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }

    // The text that was read, and after the first successful save the text of
    // the last one.
    QString originalContent() const { return m_originalContent; }

    // Every ruleset's text in order, separated by a blank line, ending with
    // exactly one line break ("\n" for a file with no rulesets).
    QString generateCSS() const;

    // Writes the generated text atomically as UTF-8. On failure returns false
    // with the reason in errorString, and changes nothing; the file on disk
    // stays whole. On success hasUnsavedChanges turns false on the next turn
    // of the event loop.
    bool save(QString *errorString = nullptr);

    // Parses originalContent again (never the disk); the new rulesets and a
    // clean state arrive on the next turn of the event loop.
    void revert();

    // To be called after any edit of the rulesets. On the next turn of the
    // event loop compares the generated text with originalContent.
    void markChanged();

    // Whether a change that leaves a file dirty arms its one-second auto-save,
    // asked at each such change. The application ties it to the user's
    // preference; until it does, auto-save is off.
    static void setAutoSavePolicy(std::function<bool()> isEnabled);

Q_SIGNALS:
    void rulesetsChanged();
    void hasUnsavedChangesChanged();
    // Emitted after any observable field changed.
    void changed();

private:
    void setHasUnsavedChanges(bool value);
    // Runs a posted step on the event loop; a file owned by a shared_ptr is
    // kept alive until the step ran.
    template<typename Step> void post(Step step);
    void runAutoSaveStep();
    void runAutoSave();

    const QUuid m_id;
    QString m_path;
    CSSRulesetList m_rulesets;
    bool m_hasUnsavedChanges = false;
    QString m_originalContent;
    // The pending auto-save, a single-shot timer made on first use, and the
    // reference that keeps the file alive until that timer has fired.
    QTimer *m_autoSaveTimer = nullptr;
    std::shared_ptr<CSSFile> m_autoSaveHold;
};

using CSSFilePtr = std::shared_ptr<CSSFile>;
using CSSFileList = QList<CSSFilePtr>;

} // namespace Ombrel
