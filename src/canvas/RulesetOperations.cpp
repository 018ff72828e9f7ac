#include "RulesetOperations.h"

#include "canvas/CanvasState.h"
#include "model/CSSParser.h"
#include "text/TextScan.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QTimer>

#include <algorithm>

namespace Ombrel {

namespace {

// The property editor opens its add row only once the new card exists.
constexpr int addPropertyDelayMs = 150;

QString trimmed(const QString &text)
{
    return TextScan::trimmedWhitespace(text).toString();
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype at = 0; at < text.size(); at = TextScan::nextCharacterEnd(text, at))
        ++count;
    return count;
}

qsizetype indexOfID(const CSSRulesetList &rulesets, const QUuid &id)
{
    const auto found =
        std::find_if(rulesets.begin(), rulesets.end(),
                     [&id](const CSSRulesetPtr &ruleset) { return ruleset->id() == id; });
    return found == rulesets.end() ? -1 : found - rulesets.begin();
}

CSSRulesetList withoutID(CSSRulesetList rulesets, const QUuid &id)
{
    rulesets.removeIf([&id](const CSSRulesetPtr &ruleset) { return ruleset->id() == id; });
    return rulesets;
}

QList<QUuid> idsOf(const CSSRulesetList &rulesets)
{
    QList<QUuid> ids;
    ids.reserve(rulesets.size());
    for (const CSSRulesetPtr &ruleset : rulesets)
        ids.append(ruleset->id());
    return ids;
}

void appendRuleset(CSSFile &file, const CSSRulesetPtr &ruleset)
{
    CSSRulesetList rulesets = file.rulesets();
    rulesets.append(ruleset);
    file.setRulesets(rulesets);
}

// The steps of one undo manager and one file; a step whose file has gone
// changes nothing.
struct StepContext
{
    std::weak_ptr<CSSFile> file;
    QPointer<UndoManager> undoManager;
};

void registerMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID);
void registerSwap(const StepContext &context, const QList<QUuid> &restore,
                  const QList<QUuid> &thenRestore);

// Moves the ruleset of sourceID before the one of beforeID (to the end when
// that is not found) and registers the move back, unless nothing would move.
void performMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID)
{
    const CSSFilePtr file = context.file.lock();
    if (!file)
        return;
    CSSRulesetList rulesets = file->rulesets();
    const qsizetype source = indexOfID(rulesets, sourceID);
    if (source < 0)
        return;
    const qsizetype before = beforeID.isNull() ? -1 : indexOfID(rulesets, beforeID);
    const qsizetype destination = before >= 0 ? before : rulesets.size();
    if (destination == source || destination == source + 1)
        return;
    const QUuid follower = source + 1 < rulesets.size() ? rulesets[source + 1]->id() : QUuid();
    const CSSRulesetPtr moving = rulesets.takeAt(source);
    rulesets.insert(source < destination ? destination - 1 : destination, moving);
    file->setRulesets(rulesets);
    file->markChanged();
    registerMove(context, sourceID, follower);
}

void registerMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID)
{
    const CSSFilePtr file = context.file.lock();
    if (!file || !context.undoManager)
        return;
    context.undoManager->registerUndo(
        file.get(), [context, sourceID, beforeID] { performMove(context, sourceID, beforeID); });
    context.undoManager->setActionName(QObject::tr("Move Ruleset"));
}

// Puts the rulesets back in the order of restore, dropping ids that have
// gone and rulesets that restore does not name, and registers the way back.
void registerSwap(const StepContext &context, const QList<QUuid> &restore,
                  const QList<QUuid> &thenRestore)
{
    const CSSFilePtr file = context.file.lock();
    if (!file || !context.undoManager)
        return;
    context.undoManager->registerUndo(file.get(), [context, restore, thenRestore] {
        const CSSFilePtr file = context.file.lock();
        if (!file)
            return;
        QHash<QUuid, CSSRulesetPtr> byID;
        for (const CSSRulesetPtr &ruleset : file->rulesets())
            byID.insert(ruleset->id(), ruleset);
        CSSRulesetList rulesets;
        for (const QUuid &id : restore) {
            if (const CSSRulesetPtr ruleset = byID.value(id))
                rulesets.append(ruleset);
        }
        file->setRulesets(rulesets);
        file->markChanged();
        registerSwap(context, thenRestore, restore);
    });
    context.undoManager->setActionName(QObject::tr("Move Rulesets"));
}

} // namespace

RulesetOperations::RulesetOperations(Workspace &workspace, CanvasState &state,
                                     UndoManager *undoManager)
    : m_workspace(workspace), m_state(state), m_undoManager(undoManager)
{}

CSSFilePtr RulesetOperations::file() const
{
    return m_workspace.selectedFile();
}

void RulesetOperations::addRuleset(const QString &selector)
{
    const QString text = trimmed(selector);
    const CSSFilePtr file = this->file();
    if (text.isEmpty() || !file) {
        m_state.setShowNewRulesetSheet(false);
        return;
    }
    const auto ruleset = std::make_shared<CSSRuleset>(
        text, CSSPropertyList(), CSSParser::positionForIndex(file->rulesets().size()));
    if (m_undoManager)
        registerNewRuleset(file, ruleset);
    appendRuleset(*file, ruleset);
    file->markChanged();

    m_workspace.setSelectedRuleset(ruleset);
    m_state.setScrollToID(ruleset->id());
    m_workspace.setCanvasTab(CanvasTab::Nodes);
    m_state.setShowNewRulesetSheet(false);
    QTimer::singleShot(addPropertyDelayMs, &m_workspace,
                       [workspace = &m_workspace] { workspace->setShouldAddProperty(true); });
}

// Undo removes the ruleset and offers a redo that appends it again; that redo
// registers nothing, so the ruleset cannot be taken out a second time.
void RulesetOperations::registerNewRuleset(const CSSFilePtr &file, const CSSRulesetPtr &ruleset)
{
    const StepContext context{file, m_undoManager};
    m_undoManager->registerUndo(file.get(), [context, ruleset] {
        const CSSFilePtr file = context.file.lock();
        if (!file)
            return;
        if (context.undoManager) {
            context.undoManager->registerUndo(file.get(), [weakFile = context.file, ruleset] {
                if (const CSSFilePtr file = weakFile.lock()) {
                    appendRuleset(*file, ruleset);
                    file->markChanged();
                }
            });
            context.undoManager->setActionName(QObject::tr("New Ruleset"));
        }
        file->setRulesets(withoutID(file->rulesets(), ruleset->id()));
        file->markChanged();
    });
    m_undoManager->setActionName(QObject::tr("New Ruleset"));
}

QString RulesetOperations::variableName(const QString &name)
{
    const QString text = trimmed(name);
    return text.isEmpty() || text.startsWith(u"--") ? text : QStringLiteral("--") + text;
}

bool RulesetOperations::acceptsVariable(const QString &name, const QString &value)
{
    return characterCount(variableName(name)) >= 3 && !trimmed(value).isEmpty();
}

void RulesetOperations::addVariable(const QString &name, const QString &value)
{
    const QString fullName = variableName(name);
    const QString trimmedValue = trimmed(value);
    const CSSFilePtr file = this->file();
    if (!acceptsVariable(name, value) || !file) {
        m_state.setShowNewVariableSheet(false);
        return;
    }

    CSSRulesetPtr target;
    QString newSelector = QStringLiteral(":root");
    if (!file->rulesets().isEmpty()) {
        const QString selector = trimmed(m_state.newVariableSelector());
        for (const CSSRulesetPtr &ruleset : file->rulesets()) {
            if (trimmed(ruleset->selector()).compare(selector, Qt::CaseInsensitive) == 0) {
                target = ruleset;
                break;
            }
        }
        if (!selector.isEmpty())
            newSelector = selector;
    }
    if (!target) {
        target = std::make_shared<CSSRuleset>(newSelector);
        if (m_undoManager) {
            m_undoManager->registerUndo(
                file.get(), [weakFile = std::weak_ptr<CSSFile>(file), target] {
                    if (const CSSFilePtr file = weakFile.lock()) {
                        file->setRulesets(withoutID(file->rulesets(), target->id()));
                        file->markChanged();
                    }
                });
        }
        appendRuleset(*file, target);
        file->markChanged();
    }

    const CSSProperty property(fullName, trimmedValue);
    if (m_undoManager) {
        m_undoManager->registerUndo(file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                                                 weakTarget = std::weak_ptr<CSSRuleset>(target),
                                                 id = property.id] {
            if (const CSSRulesetPtr target = weakTarget.lock()) {
                CSSPropertyList properties = target->properties();
                properties.removeIf([&id](const CSSProperty &p) { return p.id == id; });
                target->setProperties(properties);
            }
            if (const CSSFilePtr file = weakFile.lock())
                file->markChanged();
        });
        m_undoManager->setActionName(QObject::tr("Add Variable"));
    }
    CSSPropertyList properties = target->properties();
    properties.append(property);
    target->setProperties(properties);
    file->markChanged();

    QSet<QUuid> collapsed = m_state.collapsedGroups();
    collapsed.remove(target->id());
    m_state.setCollapsedGroups(collapsed);
    m_workspace.setSelectedVariablePropID(property.id);
    m_workspace.setSelectedVariableRulesetID(target->id());
    m_state.setVariableScrollToPropID(property.id);
    m_state.setShowNewVariableSheet(false);
}

void RulesetOperations::duplicateRuleset(const CSSRulesetPtr &ruleset)
{
    const CSSFilePtr file = this->file();
    if (!file || !ruleset)
        return;
    CSSRulesetList rulesets = file->rulesets();
    const qsizetype index = indexOfID(rulesets, ruleset->id());
    if (index < 0)
        return;
    CSSPropertyList properties;
    for (const CSSProperty &property : ruleset->properties())
        properties.append(CSSProperty(property.name, property.value));
    const auto copy = std::make_shared<CSSRuleset>(ruleset->selector(), properties,
                                                   CSSParser::positionForIndex(rulesets.size()));
    if (m_undoManager) {
        m_undoManager->registerUndo(file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                                                 weakCopy = std::weak_ptr<CSSRuleset>(copy)] {
            const CSSRulesetPtr copy = weakCopy.lock();
            const CSSFilePtr file = weakFile.lock();
            if (!copy || !file)
                return;
            file->setRulesets(withoutID(file->rulesets(), copy->id()));
            file->markChanged();
        });
        m_undoManager->setActionName(QObject::tr("Duplicate Ruleset"));
    }
    rulesets.insert(index + 1, copy);
    file->setRulesets(rulesets);
    file->markChanged();
    m_workspace.setSelectedRuleset(copy);
    m_state.setScrollToID(copy->id());
}

void RulesetOperations::deleteRuleset(const CSSRulesetPtr &ruleset)
{
    const CSSFilePtr file = this->file();
    if (!file || !ruleset)
        return;
    CSSRulesetList rulesets = file->rulesets();
    const qsizetype index = indexOfID(rulesets, ruleset->id());
    if (index < 0)
        return;
    if (m_undoManager) {
        m_undoManager->registerUndo(file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                                                 removed = rulesets[index], index] {
            if (const CSSFilePtr file = weakFile.lock()) {
                CSSRulesetList rulesets = file->rulesets();
                rulesets.insert(std::min(index, rulesets.size()), removed);
                file->setRulesets(rulesets);
                file->markChanged();
            }
        });
        m_undoManager->setActionName(QObject::tr("Delete Ruleset"));
    }
    const CSSRulesetPtr selected = m_workspace.selectedRuleset();
    if (selected && selected->id() == ruleset->id()) {
        const auto first =
            std::find_if(rulesets.begin(), rulesets.end(), [&ruleset](const CSSRulesetPtr &other) {
                return other->id() != ruleset->id();
            });
        m_workspace.setSelectedRuleset(first == rulesets.end() ? nullptr : *first);
    }
    rulesets.removeAt(index);
    file->setRulesets(rulesets);
    file->markChanged();
}

void RulesetOperations::beginRenameRuleset(const CSSRulesetPtr &ruleset)
{
    if (!ruleset)
        return;
    m_state.setEditingRulesetText(ruleset->selector());
    m_state.setEditingRulesetID(ruleset->id());
}

void RulesetOperations::commitRenameRuleset(const CSSRulesetPtr &ruleset)
{
    const QString text = trimmed(m_state.editingRulesetText());
    m_state.setEditingRulesetID(QUuid());
    if (!ruleset || text.isEmpty() || text == ruleset->selector())
        return;
    const CSSFilePtr file = this->file();
    if (m_undoManager && file) {
        m_undoManager->registerUndo(file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                                                 weakRuleset = std::weak_ptr<CSSRuleset>(ruleset),
                                                 old = ruleset->selector()] {
            if (const CSSRulesetPtr ruleset = weakRuleset.lock())
                ruleset->setSelector(old);
            if (const CSSFilePtr file = weakFile.lock())
                file->markChanged();
        });
        m_undoManager->setActionName(QObject::tr("Rename Ruleset"));
    }
    ruleset->setSelector(text);
    if (file)
        file->markChanged();
}

void RulesetOperations::moveRuleset(const QUuid &sourceID, const QUuid &beforeID)
{
    if (!m_undoManager)
        return;
    performMove(StepContext{file(), m_undoManager}, sourceID, beforeID);
}

void RulesetOperations::moveSelectedRulesets(const QUuid &beforeID)
{
    const CSSFilePtr file = this->file();
    const QSet<QUuid> selected = m_workspace.selectedRulesetIDs();
    if (!m_undoManager || !file || selected.isEmpty())
        return;
    const QList<QUuid> oldOrder = idsOf(file->rulesets());
    CSSRulesetList rest;
    CSSRulesetList block;
    for (const CSSRulesetPtr &ruleset : file->rulesets())
        (selected.contains(ruleset->id()) ? block : rest).append(ruleset);
    const qsizetype before = beforeID.isNull() ? -1 : indexOfID(rest, beforeID);
    const qsizetype at = before >= 0 ? before : rest.size();
    const CSSRulesetList moved = rest.first(at) + block + rest.sliced(at);
    file->setRulesets(moved);
    file->markChanged();
    const QList<QUuid> newOrder = idsOf(moved);
    if (newOrder != oldOrder)
        registerSwap(StepContext{file, m_undoManager}, oldOrder, newOrder);
}

} // namespace Ombrel
