#include "VariableOperations.h"

#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace Ombrel {

namespace {

CSSRulesetPtr rulesetWithID(const CSSFile &file, const QUuid &id)
{
    for (const CSSRulesetPtr &ruleset : file.rulesets()) {
        if (ruleset->id() == id)
            return ruleset;
    }
    return nullptr;
}

qsizetype indexOfProperty(const CSSRuleset &ruleset, const QUuid &propID)
{
    const CSSPropertyList &properties = ruleset.properties();
    const auto found = std::find_if(properties.begin(), properties.end(),
                                    [&propID](const CSSProperty &p) { return p.id == propID; });
    return found == properties.end() ? -1 : found - properties.begin();
}

// The ruleset of rulesetID and the index of propID in it, when both exist.
struct Found
{
    CSSRulesetPtr ruleset;
    qsizetype index = -1;
    explicit operator bool() const { return ruleset && index >= 0; }
};

Found find(const CSSFile &file, const QUuid &rulesetID, const QUuid &propID)
{
    Found found{rulesetWithID(file, rulesetID)};
    if (found.ruleset)
        found.index = indexOfProperty(*found.ruleset, propID);
    return found;
}

// Sets one field of the property propID of the ruleset; false when the
// property is not there.
bool writeValue(CSSRuleset &ruleset, const QUuid &propID, const QString &value)
{
    const qsizetype index = indexOfProperty(ruleset, propID);
    if (index < 0)
        return false;
    CSSPropertyList properties = ruleset.properties();
    properties[index].value = value;
    ruleset.setProperties(properties);
    return true;
}

bool writeName(CSSRuleset &ruleset, const QUuid &propID, const QString &name)
{
    const qsizetype index = indexOfProperty(ruleset, propID);
    if (index < 0)
        return false;
    CSSPropertyList properties = ruleset.properties();
    properties[index].name = name;
    ruleset.setProperties(properties);
    return true;
}

// The three forms of a reference that a rename rewrites, made once for a
// rename and applied to every value in their order.
class Rewrite
{
public:
    Rewrite(const QString &oldName, const QString &newName)
        : m_prefix(QStringLiteral("var(") + oldName),
          m_forms{{{m_prefix + u')', QStringLiteral("var(") + newName + u')'},
                   {m_prefix + u',', QStringLiteral("var(") + newName + u','},
                   {m_prefix + u' ', QStringLiteral("var(") + newName + u' '}}}
    {}

    bool mayChange(const CSSProperty &property) const { return property.value.contains(m_prefix); }

    // Whether the value changed.
    bool apply(QString &value) const
    {
        if (!value.contains(m_prefix))
            return false;
        const QString before = value;
        for (const auto &[from, to] : m_forms)
            value.replace(from, to);
        return value != before;
    }

private:
    QString m_prefix;
    std::array<std::pair<QString, QString>, 3> m_forms;
};

// A value as it stood before a rename, to be written back by ids.
struct AffectedValue
{
    QUuid rulesetID;
    QUuid propID;
    QString value;
};

struct StepContext
{
    std::weak_ptr<CSSFile> file;
    QPointer<UndoManager> undoManager;
};

// Where a property stands in the file.
struct Position
{
    qsizetype ruleset = -1;
    qsizetype property = -1;
};

Position positionOf(const CSSRulesetList &rulesets, const QUuid &propID)
{
    for (qsizetype r = 0; r < rulesets.size(); ++r) {
        const qsizetype p = indexOfProperty(*rulesets[r], propID);
        if (p >= 0)
            return {r, p};
    }
    return {};
}

// The first custom property after the one at position, in file order.
QUuid nextCustomProperty(const CSSRulesetList &rulesets, Position position)
{
    for (qsizetype r = position.ruleset; r < rulesets.size(); ++r) {
        const CSSPropertyList &properties = rulesets[r]->properties();
        for (qsizetype p = r == position.ruleset ? position.property + 1 : 0; p < properties.size();
             ++p) {
            if (properties[p].isCustomProperty())
                return properties[p].id;
        }
    }
    return QUuid();
}

bool hasCustomProperty(const CSSRuleset &ruleset)
{
    const CSSPropertyList &properties = ruleset.properties();
    return std::any_of(properties.begin(), properties.end(),
                       [](const CSSProperty &p) { return p.isCustomProperty(); });
}

void registerMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID);

// Takes the property out and puts it before beforeID or at the end of the
// last ruleset with variables, then registers the way back. Undoing runs it
// without the checks, so that the steps alternate.
void performMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID,
                 bool checked)
{
    const CSSFilePtr file = context.file.lock();
    if (!file)
        return;
    const CSSRulesetList &rulesets = file->rulesets();
    const Position source = positionOf(rulesets, sourceID);
    if (source.ruleset < 0)
        return;
    const QUuid undoBefore = nextCustomProperty(rulesets, source);
    if (checked && (beforeID == undoBefore || beforeID == sourceID))
        return;

    CSSRuleset &from = *rulesets[source.ruleset];
    CSSPropertyList remaining = from.properties();
    const CSSProperty moving = remaining.takeAt(source.property);
    from.setProperties(remaining);

    if (!beforeID.isNull()) {
        const Position before = positionOf(rulesets, beforeID);
        if (before.ruleset >= 0) {
            CSSRuleset &to = *rulesets[before.ruleset];
            CSSPropertyList properties = to.properties();
            properties.insert(before.property, moving);
            to.setProperties(properties);
        }
    } else {
        const auto last =
            std::find_if(rulesets.rbegin(), rulesets.rend(),
                         [](const CSSRulesetPtr &ruleset) { return hasCustomProperty(*ruleset); });
        CSSRuleset &to = last == rulesets.rend() ? from : **last;
        CSSPropertyList properties = to.properties();
        properties.append(moving);
        to.setProperties(properties);
    }
    file->markChanged();
    registerMove(context, sourceID, undoBefore);
}

void registerMove(const StepContext &context, const QUuid &sourceID, const QUuid &beforeID)
{
    const CSSFilePtr file = context.file.lock();
    if (!file || !context.undoManager)
        return;
    context.undoManager->registerUndo(file.get(), [context, sourceID, beforeID] {
        performMove(context, sourceID, beforeID, false);
    });
    context.undoManager->setActionName(QObject::tr("Move Variable"));
}

} // namespace

VariableOperations::VariableOperations(Workspace &workspace, UndoManager *undoManager)
    : m_file([&workspace] { return workspace.selectedFile(); }), m_workspace(&workspace),
      m_undoManager(undoManager)
{}

VariableOperations::VariableOperations(CSSFilePtr file, UndoManager *undoManager)
    : m_file([file = std::move(file)] { return file; }), m_undoManager(undoManager)
{}

CSSFilePtr VariableOperations::file() const
{
    return m_file();
}

void VariableOperations::updateVariable(const QUuid &propID, const QUuid &rulesetID,
                                        const QString &newValue)
{
    const CSSFilePtr file = this->file();
    if (!file)
        return;
    const Found found = find(*file, rulesetID, propID);
    if (!found)
        return;
    const QString old = found.ruleset->properties()[found.index].value;
    if (old == newValue)
        return;
    if (m_undoManager) {
        m_undoManager->registerUndo(
            file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                         weakRuleset = std::weak_ptr<CSSRuleset>(found.ruleset), propID, old] {
                const CSSFilePtr file = weakFile.lock();
                const CSSRulesetPtr ruleset = weakRuleset.lock();
                if (file && ruleset && writeValue(*ruleset, propID, old))
                    file->markChanged();
            });
        m_undoManager->setActionName(QObject::tr("Edit Variable"));
    }
    writeValue(*found.ruleset, propID, newValue);
    file->markChanged();
}

void VariableOperations::renameVariable(const QUuid &propID, const QUuid &rulesetID,
                                        const QString &newName)
{
    const CSSFilePtr file = this->file();
    if (!file)
        return;
    const Found found = find(*file, rulesetID, propID);
    if (!found)
        return;
    const QString oldName = found.ruleset->properties()[found.index].name;
    if (oldName == newName || !newName.startsWith(u"--"))
        return;

    // Gathered loosely: a value that only mentions the name is restored too,
    // with the text it already has.
    QList<AffectedValue> affected;
    for (const CSSRulesetPtr &ruleset : file->rulesets()) {
        for (const CSSProperty &property : ruleset->properties()) {
            if (property.value.contains(oldName))
                affected.append({ruleset->id(), property.id, property.value});
        }
    }
    if (m_undoManager) {
        m_undoManager->registerUndo(
            file.get(),
            [weakFile = std::weak_ptr<CSSFile>(file),
             weakRuleset = std::weak_ptr<CSSRuleset>(found.ruleset), propID, oldName, affected] {
                const CSSFilePtr file = weakFile.lock();
                if (!file)
                    return;
                bool changed = false;
                if (const CSSRulesetPtr ruleset = weakRuleset.lock())
                    changed = writeName(*ruleset, propID, oldName);
                QHash<QUuid, CSSRuleset *> byID;
                byID.reserve(file->rulesets().size());
                for (const CSSRulesetPtr &ruleset : file->rulesets())
                    byID.insert(ruleset->id(), ruleset.get());
                // One write per ruleset, whatever the number of its values.
                QHash<CSSRuleset *, CSSPropertyList> written;
                for (const AffectedValue &record : affected) {
                    CSSRuleset *ruleset = byID.value(record.rulesetID);
                    if (!ruleset)
                        continue;
                    auto properties = written.find(ruleset);
                    if (properties == written.end())
                        properties = written.insert(ruleset, ruleset->properties());
                    for (CSSProperty &property : *properties) {
                        if (property.id == record.propID) {
                            property.value = record.value;
                            changed = true;
                            break;
                        }
                    }
                }
                for (auto it = written.begin(); it != written.end(); ++it)
                    it.key()->setProperties(it.value());
                if (changed)
                    file->markChanged();
            });
        m_undoManager->setActionName(QObject::tr("Rename Variable"));
    }

    // Every value is rewritten; a ruleset none of whose values changed is
    // written back as it was, which changes nothing.
    const Rewrite rewrite(oldName, newName);
    for (const CSSRulesetPtr &ruleset : file->rulesets()) {
        const CSSPropertyList &current = ruleset->properties();
        if (ruleset != found.ruleset &&
            std::none_of(current.begin(), current.end(),
                         [&rewrite](const CSSProperty &p) { return rewrite.mayChange(p); }))
            continue;
        CSSPropertyList properties = current;
        bool changed = false;
        if (ruleset == found.ruleset) {
            properties[found.index].name = newName;
            changed = true;
        }
        for (CSSProperty &property : properties)
            changed = rewrite.apply(property.value) || changed;
        if (changed)
            ruleset->setProperties(properties);
    }
    file->markChanged();
}

void VariableOperations::duplicateVariable(const QUuid &propID, const QUuid &rulesetID)
{
    const CSSFilePtr file = this->file();
    if (!file)
        return;
    const Found found = find(*file, rulesetID, propID);
    if (!found)
        return;
    const CSSProperty &original = found.ruleset->properties()[found.index];
    const CSSProperty copy(original.name + QStringLiteral("-copy"), original.value);
    if (m_undoManager) {
        m_undoManager->registerUndo(
            file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                         weakRuleset = std::weak_ptr<CSSRuleset>(found.ruleset), id = copy.id] {
                const CSSFilePtr file = weakFile.lock();
                const CSSRulesetPtr ruleset = weakRuleset.lock();
                if (!file || !ruleset)
                    return;
                CSSPropertyList properties = ruleset->properties();
                if (properties.removeIf([&id](const CSSProperty &p) { return p.id == id; }) == 0)
                    return;
                ruleset->setProperties(properties);
                file->markChanged();
            });
        m_undoManager->setActionName(QObject::tr("Duplicate Variable"));
    }
    CSSPropertyList properties = found.ruleset->properties();
    properties.insert(found.index + 1, copy);
    found.ruleset->setProperties(properties);
    file->markChanged();
}

void VariableOperations::deleteVariable(const QUuid &propID, const QUuid &rulesetID)
{
    const CSSFilePtr file = this->file();
    if (!file)
        return;
    const Found found = find(*file, rulesetID, propID);
    if (!found)
        return;
    CSSPropertyList properties = found.ruleset->properties();
    const CSSProperty removed = properties.takeAt(found.index);
    if (m_undoManager) {
        m_undoManager->registerUndo(file.get(), [weakFile = std::weak_ptr<CSSFile>(file),
                                                 ruleset = found.ruleset, removed,
                                                 index = found.index] {
            CSSPropertyList properties = ruleset->properties();
            properties.insert(std::min(index, properties.size()), removed);
            ruleset->setProperties(properties);
            if (const CSSFilePtr file = weakFile.lock())
                file->markChanged();
        });
        m_undoManager->setActionName(QObject::tr("Delete Variable"));
    }
    if (m_workspace && m_workspace->selectedVariablePropID() == propID) {
        m_workspace->setSelectedVariablePropID(QUuid());
        m_workspace->setSelectedVariableRulesetID(QUuid());
    }
    found.ruleset->setProperties(properties);
    file->markChanged();
}

void VariableOperations::moveVariable(const QUuid &sourceID, const QUuid &beforeID)
{
    if (!m_undoManager)
        return;
    performMove(StepContext{file(), m_undoManager}, sourceID, beforeID, true);
}

} // namespace Ombrel
