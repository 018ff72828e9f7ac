#include "PropertyEditorController.h"

#include "text/Collation.h"
#include "text/TextScan.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace Ombrel {

namespace {

QString trimmed(const QString &text)
{
    return TextScan::trimmedWhitespace(text).toString();
}

qsizetype indexOfID(const CSSPropertyList &properties, const QUuid &id)
{
    for (qsizetype i = 0; i < properties.size(); ++i) {
        if (properties[i].id == id)
            return i;
    }
    return -1;
}

qsizetype indexOfName(const CSSPropertyList &properties, const QString &name)
{
    for (qsizetype i = 0; i < properties.size(); ++i) {
        if (properties[i].name == name)
            return i;
    }
    return -1;
}

// Writes into the property of id; false when the ruleset has none.
bool writeProperty(CSSRuleset &ruleset, const QUuid &id, const QString &name, const QString &value)
{
    CSSPropertyList properties = ruleset.properties();
    const qsizetype index = indexOfID(properties, id);
    if (index < 0)
        return false;
    properties[index].name = name;
    properties[index].value = value;
    ruleset.setProperties(properties);
    return true;
}

bool writeValue(CSSRuleset &ruleset, const QUuid &id, const QString &value)
{
    CSSPropertyList properties = ruleset.properties();
    const qsizetype index = indexOfID(properties, id);
    if (index < 0)
        return false;
    properties[index].value = value;
    ruleset.setProperties(properties);
    return true;
}

void removeID(CSSRuleset &ruleset, const QUuid &id)
{
    CSSPropertyList properties = ruleset.properties();
    properties.removeIf([&id](const CSSProperty &property) { return property.id == id; });
    ruleset.setProperties(properties);
}

// What a step of the inspector reaches: the file it is registered with and
// the undo manager that runs it, both of which may have gone.
struct StepContext
{
    std::weak_ptr<CSSFile> file;
    QPointer<UndoManager> undoManager;
};

// An edited property of another selected ruleset, with what undo writes back.
struct Snap
{
    CSSRulesetPtr rs;
    QUuid propID;
    QString oldName;
    QString oldValue;
};

struct ColorSnap
{
    CSSRulesetPtr rs;
    QUuid propID;
    QString oldValue;
};

// Writes restore into the primary property and each snapshot's value back,
// then registers the same step the other way round, so that undo and redo
// alternate without limit. The snapshots always get their value from before
// the commit, in both directions.
void registerColorStep(const StepContext &context, const std::weak_ptr<CSSRuleset> &primary,
                       const QUuid &id, const QString &restore, const QString &redo,
                       const QList<ColorSnap> &snaps)
{
    const CSSFilePtr file = context.file.lock();
    if (!file || !context.undoManager)
        return;
    context.undoManager->registerUndo(file.get(), [=] {
        const CSSFilePtr file = context.file.lock();
        if (!file)
            return;
        if (const CSSRulesetPtr ruleset = primary.lock())
            writeValue(*ruleset, id, restore);
        for (const ColorSnap &snap : snaps)
            writeValue(*snap.rs, snap.propID, snap.oldValue);
        file->markChanged();
        registerColorStep(context, primary, id, redo, restore, snaps);
    });
    context.undoManager->setActionName(QObject::tr("Edit Color"));
}

// Moves the property of sourceID before the one of beforeID (to the end when
// that is not found). A move that would leave the list as it is stops when
// checked, as a user's move does; an undo moves without the check. Returns
// the id that followed the property, for the move back.
std::optional<QUuid> performMove(CSSRuleset &ruleset, const QUuid &sourceID, const QUuid &beforeID,
                                 bool checked)
{
    CSSPropertyList properties = ruleset.properties();
    const qsizetype source = indexOfID(properties, sourceID);
    if (source < 0)
        return std::nullopt;
    const qsizetype before = beforeID.isNull() ? -1 : indexOfID(properties, beforeID);
    const qsizetype destination = before >= 0 ? before : properties.size();
    if (checked && (destination == source || destination == source + 1))
        return std::nullopt;
    const QUuid follower = source + 1 < properties.size() ? properties[source + 1].id : QUuid();
    const CSSProperty moving = properties.takeAt(source);
    properties.insert(source < destination ? destination - 1 : destination, moving);
    ruleset.setProperties(properties);
    return follower;
}

void registerMoveStep(const StepContext &context, const std::weak_ptr<CSSRuleset> &primary,
                      const QUuid &sourceID, const QUuid &beforeID)
{
    const CSSFilePtr file = context.file.lock();
    if (!file || !context.undoManager)
        return;
    context.undoManager->registerUndo(file.get(), [=] {
        const CSSFilePtr file = context.file.lock();
        const CSSRulesetPtr ruleset = primary.lock();
        if (!file || !ruleset)
            return;
        const std::optional<QUuid> follower = performMove(*ruleset, sourceID, beforeID, false);
        if (!follower)
            return;
        file->markChanged();
        registerMoveStep(context, primary, sourceID, *follower);
    });
    context.undoManager->setActionName(QObject::tr("Move Property"));
}

} // namespace

PropertyEditorController::PropertyEditorController(Workspace &workspace, UndoManager *undoManager,
                                                   QObject *parent)
    : QObject(parent), m_workspace(workspace), m_undoManager(undoManager)
{
    connect(&workspace, &Workspace::selectedRulesetIDsChanged, this, [this] {
        m_kept.reset();
        invalidateReading();
    });
    connect(&workspace, &Workspace::shouldAddPropertyChanged, this,
            [this] { handleShouldAddProperty(m_workspace.shouldAddProperty()); });
    connect(&workspace, &Workspace::shouldFocusPropertyPanelChanged, this, [this] {
        if (!m_workspace.shouldFocusPropertyPanel())
            return;
        m_workspace.setShouldFocusPropertyPanel(false);
        if (!isMultiSelect())
            startSelectorEdit();
    });
    handleShouldAddProperty(workspace.shouldAddProperty());
}

UndoManager *PropertyEditorController::undoManager() const
{
    return m_undoManager;
}

void PropertyEditorController::setTarget(const CSSRulesetPtr &ruleset, const CSSFilePtr &file)
{
    if (ruleset == m_ruleset && file == m_file)
        return;
    const QUuid oldID = m_ruleset ? m_ruleset->id() : QUuid();
    const QUuid newID = ruleset ? ruleset->id() : QUuid();
    if (oldID != newID) {
        if (m_isEditingSelector) {
            setIsEditingSelector(false);
            const QString text = trimmed(m_selectorText);
            if (m_file && !text.isEmpty()) {
                for (const CSSRulesetPtr &old : m_file->rulesets()) {
                    if (old->id() == oldID) {
                        if (text != old->selector())
                            renameRuleset(old, text);
                        break;
                    }
                }
            }
        }
        // The row being typed in belongs to the ruleset that leaves: its edit
        // ends there, as a tap on the list would end it.
        if (!m_editingPropertyID.isNull()) {
            commitProperty(m_editingPropertyID);
            restoreMixedOriginalsIfNeeded();
            setEditingPropertyID(QUuid());
        }
    }

    m_ruleset = ruleset;
    m_kept.reset();
    if (m_file != file) {
        disconnect(m_fileConnection);
        m_file = file;
        // The file announces its content once per turn, however many of its
        // rulesets changed; a change the inspector has reported already, or
        // is about to, is not reported again.
        if (m_file) {
            m_fileConnection = connect(m_file.get(), &CSSFile::contentChanged, this, [this] {
                if (!m_readingPosted && m_file->contentRevision() != m_reportedRevision)
                    reportReading();
            });
        }
    }
    Q_EMIT targetChanged();
    invalidateReading();
}

// --- Readings ---

CSSRulesetList PropertyEditorController::allSelectedRulesets() const
{
    return keptReading(false).selected;
}

// The rulesets a multi-selection holds besides the primary one; none when
// one ruleset is selected.
CSSRulesetList PropertyEditorController::otherSelectedRulesets() const
{
    const CSSRulesetList &selected = keptReading(false).selected;
    CSSRulesetList others;
    if (selected.size() < 2 || !m_ruleset)
        return others;
    for (const CSSRulesetPtr &ruleset : selected) {
        if (ruleset->id() != m_ruleset->id())
            others.append(ruleset);
    }
    return others;
}

bool PropertyEditorController::isMultiSelect() const
{
    return keptReading(false).isMultiSelect;
}

CSSPropertyList PropertyEditorController::displayProperties() const
{
    return keptReading(true).properties;
}

bool PropertyEditorController::isMixedValue(const QString &name) const
{
    const SelectionReading &reading = keptReading(true);
    if (!reading.isMultiSelect)
        return false;
    if (m_ruleset && indexOfName(m_ruleset->properties(), name) >= 0)
        return reading.mixedNames.contains(name);
    // A name the primary ruleset lacks is never listed; asked all the same,
    // it is answered from the other rulesets.
    std::optional<QString> first;
    for (const CSSRulesetPtr &ruleset : reading.selected) {
        const CSSPropertyList &properties = ruleset->properties();
        const qsizetype index = indexOfName(properties, name);
        if (index < 0)
            continue;
        if (!first)
            first = properties[index].value;
        else if (*first != properties[index].value)
            return true;
    }
    return false;
}

SelectionReading PropertyEditorController::reading() const
{
    return keptReading(true);
}

const SelectionReading &PropertyEditorController::keptReading(bool withProperties) const
{
    const quint64 revision = m_file ? m_file->contentRevision() : 0;
    if (!m_kept || m_kept->revision != revision) {
        m_kept = KeptReading{};
        m_kept->revision = revision;
        SelectionReading &reading = m_kept->reading;
        const QSet<QUuid> ids = m_workspace.selectedRulesetIDs();
        if (m_file && !ids.isEmpty()) {
            for (const CSSRulesetPtr &ruleset : m_file->rulesets()) {
                if (ids.contains(ruleset->id()))
                    reading.selected.append(ruleset);
            }
        }
        reading.isMultiSelect = reading.selected.size() > 1;
    }
    if (!withProperties || m_kept->hasProperties)
        return m_kept->reading;
    m_kept->hasProperties = true;
    SelectionReading &reading = m_kept->reading;
    if (!m_ruleset)
        return reading;
    if (!reading.isMultiSelect) {
        reading.properties = m_ruleset->properties();
        return reading;
    }

    // Only the primary ruleset's names can be listed: each is looked for in
    // every other selected ruleset, its first occurrence there compared with
    // the primary's first value. A handful of names against each ruleset's
    // few declarations, compared as text without hashing.
    struct Name
    {
        QString name;
        QString firstValue;
        qsizetype holders = 1;
        bool mixed = false;
    };
    QList<Name> names;
    for (const CSSProperty &property : m_ruleset->properties()) {
        const auto known = std::find_if(names.cbegin(), names.cend(), [&](const Name &entry) {
            return entry.name == property.name;
        });
        if (known == names.cend())
            names.append({property.name, property.value});
    }
    QList<bool> met(names.size());
    for (const CSSRulesetPtr &ruleset : std::as_const(reading.selected)) {
        if (ruleset == m_ruleset)
            continue;
        met.fill(false);
        for (const CSSProperty &property : ruleset->properties()) {
            for (qsizetype i = 0; i < names.size(); ++i) {
                if (met[i] || names[i].name != property.name)
                    continue;
                met[i] = true;
                ++names[i].holders;
                if (property.value != names[i].firstValue)
                    names[i].mixed = true;
                break;
            }
        }
    }
    QSet<QString> common;
    for (const Name &entry : std::as_const(names)) {
        if (entry.holders == reading.selected.size())
            common.insert(entry.name);
        if (entry.mixed)
            reading.mixedNames.insert(entry.name);
    }
    for (const CSSProperty &property : m_ruleset->properties()) {
        if (common.contains(property.name))
            reading.properties.append(property);
    }
    return reading;
}

// --- State ---

template<typename T>
void PropertyEditorController::assign(T &field, const T &value,
                                      void (PropertyEditorController::*notify)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*notify)();
}

void PropertyEditorController::setEditingPropertyID(const QUuid &id)
{
    assign(m_editingPropertyID, id, &PropertyEditorController::editingPropertyIDChanged);
}

void PropertyEditorController::setNewPropertyName(const QString &name)
{
    assign(m_newPropertyName, name, &PropertyEditorController::newPropertyNameChanged);
}

void PropertyEditorController::setNewPropertyValue(const QString &value)
{
    assign(m_newPropertyValue, value, &PropertyEditorController::newPropertyValueChanged);
}

void PropertyEditorController::setIsAddingProperty(bool value)
{
    assign(m_isAddingProperty, value, &PropertyEditorController::isAddingPropertyChanged);
}

void PropertyEditorController::setIsEditingSelector(bool value)
{
    assign(m_isEditingSelector, value, &PropertyEditorController::isEditingSelectorChanged);
}

void PropertyEditorController::setSelectorText(const QString &text)
{
    assign(m_selectorText, text, &PropertyEditorController::selectorTextChanged);
}

void PropertyEditorController::setDrag(const QUuid &id, std::optional<int> index)
{
    if (m_draggingPropertyID == id && m_dropPropertyTargetIndex == index)
        return;
    m_draggingPropertyID = id;
    m_dropPropertyTargetIndex = index;
    Q_EMIT dragChanged();
}

std::optional<PropertyField> PropertyEditorController::requestedFocus(const QUuid &id) const
{
    if (m_requestedPropertyFocus && m_requestedPropertyFocus->id == id)
        return m_requestedPropertyFocus->field;
    return std::nullopt;
}

void PropertyEditorController::setRequestedPropertyFocus(
    std::optional<PropertyFocusRequest> request)
{
    assign(m_requestedPropertyFocus, request,
           &PropertyEditorController::requestedPropertyFocusChanged);
}

void PropertyEditorController::clearRequestedPropertyFocus()
{
    setRequestedPropertyFocus(std::nullopt);
}

// --- Operations ---

void PropertyEditorController::liveUpdateProperty(const QUuid &id, const QString &name,
                                                  const QString &value)
{
    if (!m_ruleset || !m_file)
        return;
    CSSPropertyList properties = m_ruleset->properties();
    const qsizetype index = indexOfID(properties, id);
    if (index < 0)
        return;
    const QString oldName = properties[index].name;
    if (properties[index].name == name && properties[index].value == value)
        return;
    // Read before the first write, which makes the kept reading stale.
    const CSSRulesetList otherRulesets = otherSelectedRulesets();
    properties[index].name = name;
    properties[index].value = value;
    m_ruleset->setProperties(properties);

    for (const CSSRulesetPtr &ruleset : otherRulesets) {
        CSSPropertyList others = ruleset->properties();
        const qsizetype other = indexOfName(others, oldName);
        if (other < 0)
            continue;
        others[other].name = name;
        others[other].value = value;
        ruleset->setProperties(others);
    }
    m_file->markChanged();
}

void PropertyEditorController::commitProperty(const QUuid &id)
{
    if (!m_ruleset || !m_file)
        return;
    const CSSPropertyList &properties = m_ruleset->properties();
    const qsizetype index = indexOfID(properties, id);
    if (index < 0)
        return;
    const auto original = m_editingOriginals.constFind(id);
    if (original == m_editingOriginals.cend())
        return;
    const NameValue stored = *original;
    m_editingOriginals.erase(original);
    const CSSProperty &present = properties[index];
    if (present.name == stored.name && present.value == stored.value)
        return;

    // The other rulesets' values are taken now, after the live updates spread
    // the edit: undo gives them back their name, not their value.
    QList<Snap> snaps;
    for (const CSSRulesetPtr &ruleset : otherSelectedRulesets()) {
        for (const CSSProperty &other : ruleset->properties()) {
            if (other.name == present.name || other.name == stored.name) {
                snaps.append({ruleset, other.id, stored.name, other.value});
                break;
            }
        }
    }
    if (!m_undoManager)
        return;
    const StepContext context{m_file, m_undoManager};
    const std::weak_ptr<CSSRuleset> primary = m_ruleset;
    m_undoManager->registerUndo(m_file.get(), [context, primary, id, stored, snaps] {
        const CSSFilePtr file = context.file.lock();
        if (!file)
            return;
        if (const CSSRulesetPtr ruleset = primary.lock())
            writeProperty(*ruleset, id, stored.name, stored.value);
        for (const Snap &snap : snaps)
            writeProperty(*snap.rs, snap.propID, snap.oldName, snap.oldValue);
        file->markChanged();
    });
    m_undoManager->setActionName(tr("Edit Property"));
}

void PropertyEditorController::commitColorChange(const QUuid &id, const QString &origValue,
                                                 const QString &newValue)
{
    if (!m_undoManager || !m_ruleset || !m_file)
        return;
    QList<ColorSnap> snaps;
    const CSSRulesetList otherRulesets = otherSelectedRulesets();
    if (!otherRulesets.isEmpty()) {
        const CSSPropertyList &properties = m_ruleset->properties();
        const qsizetype index = indexOfID(properties, id);
        if (index >= 0) {
            const QString name = properties[index].name;
            for (const CSSRulesetPtr &ruleset : otherRulesets) {
                CSSPropertyList others = ruleset->properties();
                const qsizetype other = indexOfName(others, name);
                if (other < 0)
                    continue;
                snaps.append({ruleset, others[other].id, others[other].value});
                others[other].value = newValue;
                ruleset->setProperties(others);
            }
        }
    }
    registerColorStep({m_file, m_undoManager}, m_ruleset, id, origValue, newValue, snaps);
    m_file->markChanged();
}

void PropertyEditorController::deleteProperty(const QUuid &id)
{
    if (!m_ruleset || !m_file)
        return;
    CSSPropertyList properties = m_ruleset->properties();
    const qsizetype index = indexOfID(properties, id);
    if (index < 0)
        return;
    const CSSProperty removed = properties[index];
    if (m_undoManager) {
        const StepContext context{m_file, m_undoManager};
        const std::weak_ptr<CSSRuleset> primary = m_ruleset;
        m_undoManager->registerUndo(m_file.get(), [context, primary, removed, index] {
            const CSSFilePtr file = context.file.lock();
            const CSSRulesetPtr ruleset = primary.lock();
            if (!file || !ruleset)
                return;
            CSSPropertyList properties = ruleset->properties();
            properties.insert(std::min(index, properties.size()), removed);
            ruleset->setProperties(properties);
            file->markChanged();
        });
        m_undoManager->setActionName(tr("Delete Property"));
    }
    properties.removeAt(index);
    m_ruleset->setProperties(properties);
    m_file->markChanged();
}

void PropertyEditorController::moveProperty(const QUuid &sourceID, const QUuid &beforeID)
{
    if (!m_ruleset || !m_file)
        return;
    const std::optional<QUuid> follower = performMove(*m_ruleset, sourceID, beforeID, true);
    if (!follower)
        return;
    m_file->markChanged();
    registerMoveStep({m_file, m_undoManager}, m_ruleset, sourceID, *follower);
}

void PropertyEditorController::commitNewProperty()
{
    const QString name = trimmed(m_newPropertyName);
    const QString value = trimmed(m_newPropertyValue);
    if (name.isEmpty() || value.isEmpty() || !m_ruleset || !m_file) {
        cancelNewProperty();
        return;
    }
    const CSSRulesetList selected = allSelectedRulesets();
    const StepContext context{m_file, m_undoManager};
    if (selected.size() > 1) {
        QList<std::pair<CSSRulesetPtr, CSSProperty>> additions;
        additions.reserve(selected.size());
        for (const CSSRulesetPtr &ruleset : selected)
            additions.append({ruleset, CSSProperty(name, value)});
        if (m_undoManager) {
            QList<std::pair<CSSRulesetPtr, QUuid>> added;
            for (const auto &[ruleset, property] : std::as_const(additions))
                added.append({ruleset, property.id});
            m_undoManager->registerUndo(m_file.get(), [context, added] {
                const CSSFilePtr file = context.file.lock();
                if (!file)
                    return;
                for (const auto &[ruleset, id] : added)
                    removeID(*ruleset, id);
                file->markChanged();
            });
            m_undoManager->setActionName(tr("Add Property"));
        }
        for (const auto &[ruleset, property] : std::as_const(additions))
            ruleset->setProperties(ruleset->properties() + CSSPropertyList{property});
    } else {
        const CSSProperty property(name, value);
        if (m_undoManager) {
            const std::weak_ptr<CSSRuleset> primary = m_ruleset;
            const QUuid id = property.id;
            m_undoManager->registerUndo(m_file.get(), [context, primary, id] {
                const CSSFilePtr file = context.file.lock();
                if (!file)
                    return;
                if (const CSSRulesetPtr ruleset = primary.lock())
                    removeID(*ruleset, id);
                file->markChanged();
            });
            m_undoManager->setActionName(tr("Add Property"));
        }
        m_ruleset->setProperties(m_ruleset->properties() + CSSPropertyList{property});
    }
    m_file->markChanged();
    setNewPropertyName(QString());
    setNewPropertyValue(QString());
    setIsAddingProperty(false);
}

void PropertyEditorController::cancelNewProperty()
{
    setIsAddingProperty(false);
    setNewPropertyName(QString());
    setNewPropertyValue(QString());
}

void PropertyEditorController::commitCurrentEdit()
{
    if (!m_editingPropertyID.isNull()) {
        commitProperty(m_editingPropertyID);
        restoreMixedOriginalsIfNeeded();
        setEditingPropertyID(QUuid());
    }
    if (m_isAddingProperty)
        commitNewProperty();
    Q_EMIT focusReleaseRequested();
}

void PropertyEditorController::restoreMixedOriginalsIfNeeded()
{
    if (m_mixedEditOriginals.isEmpty())
        return;
    bool changed = false;
    for (const CSSRulesetPtr &ruleset : allSelectedRulesets()) {
        const auto original = m_mixedEditOriginals.constFind(ruleset->id());
        if (original == m_mixedEditOriginals.cend())
            continue;
        CSSPropertyList properties = ruleset->properties();
        const qsizetype index = indexOfID(properties, original->propID);
        if (index < 0 || properties[index].value == original->value)
            continue;
        properties[index].value = original->value;
        ruleset->setProperties(properties);
        changed = true;
    }
    m_mixedEditOriginals.clear();
    if (changed && m_file)
        m_file->markChanged();
}

void PropertyEditorController::sortPropertiesAlphabetically()
{
    if (!m_undoManager || !m_ruleset || !m_file)
        return;
    const CSSPropertyList previous = m_ruleset->properties();
    CSSPropertyList sorted = previous;
    std::stable_sort(sorted.begin(), sorted.end(), [](const CSSProperty &a, const CSSProperty &b) {
        return Collation::lessCaseInsensitive(a.name, b.name);
    });
    const bool sameOrder =
        std::equal(previous.begin(), previous.end(), sorted.begin(), sorted.end(),
                   [](const CSSProperty &a, const CSSProperty &b) { return a.id == b.id; });
    if (sameOrder)
        return;
    const StepContext context{m_file, m_undoManager};
    const std::weak_ptr<CSSRuleset> primary = m_ruleset;
    m_undoManager->registerUndo(m_file.get(), [context, primary, previous] {
        const CSSFilePtr file = context.file.lock();
        const CSSRulesetPtr ruleset = primary.lock();
        if (!file || !ruleset)
            return;
        ruleset->setProperties(previous);
        file->markChanged();
    });
    m_undoManager->setActionName(tr("Sort Properties"));
    m_ruleset->setProperties(sorted);
    m_file->markChanged();
}

void PropertyEditorController::commitRenameSelector()
{
    const QString text = trimmed(m_selectorText);
    setIsEditingSelector(false);
    if (!m_ruleset || text.isEmpty() || text == m_ruleset->selector())
        return;
    renameRuleset(m_ruleset, text);
}

void PropertyEditorController::renameRuleset(const CSSRulesetPtr &ruleset, const QString &selector)
{
    if (!m_file)
        return;
    if (m_undoManager) {
        const StepContext context{m_file, m_undoManager};
        const std::weak_ptr<CSSRuleset> target = ruleset;
        const QString oldSelector = ruleset->selector();
        m_undoManager->registerUndo(m_file.get(), [context, target, oldSelector] {
            const CSSFilePtr file = context.file.lock();
            if (!file)
                return;
            if (const CSSRulesetPtr ruleset = target.lock())
                ruleset->setSelector(oldSelector);
            file->markChanged();
        });
        m_undoManager->setActionName(tr("Rename Ruleset"));
    }
    ruleset->setSelector(selector);
    m_file->markChanged();
}

void PropertyEditorController::handleShouldAddProperty(bool value)
{
    if (!value)
        return;
    m_workspace.setShouldAddProperty(false);
    if (!m_isAddingProperty)
        openAddRow();
}

// --- Row callbacks ---

void PropertyEditorController::startEditing(const CSSProperty &property)
{
    setEditingPropertyID(property.id);
    if (!m_editingOriginals.contains(property.id))
        m_editingOriginals.insert(property.id, {property.name, property.value});
    m_mixedEditOriginals.clear();
    if (isMixedValue(property.name)) {
        for (const CSSRulesetPtr &ruleset : allSelectedRulesets()) {
            const CSSPropertyList &properties = ruleset->properties();
            const qsizetype index = indexOfName(properties, property.name);
            if (index >= 0)
                m_mixedEditOriginals.insert(ruleset->id(),
                                            {properties[index].id, properties[index].value});
        }
    }
}

// A row whose edit was overtaken by another row's start commits after the
// other began: it makes its own undo step but leaves the new edit running.
void PropertyEditorController::finishEditing(const QUuid &id)
{
    commitProperty(id);
    if (!m_editingPropertyID.isNull() && m_editingPropertyID != id)
        return;
    m_mixedEditOriginals.clear();
    setEditingPropertyID(QUuid());
    Q_EMIT focusReleaseRequested();
}

void PropertyEditorController::cancelEditing(const QUuid &id)
{
    if (!m_mixedEditOriginals.isEmpty()) {
        for (const CSSRulesetPtr &ruleset : allSelectedRulesets()) {
            const auto original = m_mixedEditOriginals.constFind(ruleset->id());
            if (original != m_mixedEditOriginals.cend())
                writeValue(*ruleset, original->propID, original->value);
        }
        m_mixedEditOriginals.clear();
        if (m_file)
            m_file->markChanged();
    }
    m_editingOriginals.remove(id);
    if (m_editingPropertyID == id)
        setEditingPropertyID(QUuid());
    Q_EMIT focusReleaseRequested();
}

void PropertyEditorController::tabFromValue(int index)
{
    const CSSPropertyList properties = displayProperties();
    const QUuid next =
        index >= 0 && index + 1 < properties.size() ? properties[index + 1].id : QUuid();
    QMetaObject::invokeMethod(
        this,
        [this, next] {
            if (next.isNull())
                Q_EMIT focusReleaseRequested();
            else
                setRequestedPropertyFocus(PropertyFocusRequest{next, PropertyField::Name});
        },
        Qt::QueuedConnection);
}

// --- Panel controls ---

void PropertyEditorController::openAddRow()
{
    setNewPropertyName(QString());
    setNewPropertyValue(QString());
    setIsAddingProperty(true);
}

void PropertyEditorController::startSelectorEdit()
{
    if (!m_ruleset)
        return;
    setSelectorText(m_ruleset->selector());
    setIsEditingSelector(true);
    QTimer::singleShot(focusDelayMs, this, [this] {
        if (m_isEditingSelector)
            Q_EMIT selectorFocusRequested();
    });
}

void PropertyEditorController::cancelSelectorEdit()
{
    setIsEditingSelector(false);
}

void PropertyEditorController::tabFromSelector()
{
    commitRenameSelector();
    const CSSPropertyList properties = displayProperties();
    if (!properties.isEmpty())
        setRequestedPropertyFocus(PropertyFocusRequest{properties.first().id, PropertyField::Name});
}

void PropertyEditorController::dragProperty(const QUuid &id, int index, double translationY)
{
    if (!m_ruleset)
        return;
    // A drag that began on another row is that row's alone.
    if (!m_draggingPropertyID.isNull() && m_draggingPropertyID != id)
        return;
    // std::round takes halves away from zero.
    const int target = index + int(std::round(translationY / rowPitch));
    setDrag(id, std::clamp(target, 0, int(m_ruleset->properties().size())));
}

void PropertyEditorController::endPropertyDrag(const QUuid &id)
{
    if (m_ruleset && m_dropPropertyTargetIndex && m_draggingPropertyID == id) {
        const int target = *m_dropPropertyTargetIndex;
        const CSSPropertyList &properties = m_ruleset->properties();
        const QUuid before = target < properties.size() ? properties[target].id : QUuid();
        moveProperty(id, before);
    }
    setDrag(QUuid(), std::nullopt);
}

// --- Observation ---

void PropertyEditorController::invalidateReading()
{
    if (m_readingPosted)
        return;
    m_readingPosted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_readingPosted = false;
            reportReading();
        },
        Qt::QueuedConnection);
}

void PropertyEditorController::reportReading()
{
    m_reportedRevision = m_file ? m_file->contentRevision() : 0;
    Q_EMIT readingChanged();
}

} // namespace Ombrel
