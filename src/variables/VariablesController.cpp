#include "VariablesController.h"

#include "canvas/CanvasController.h"
#include "canvas/CanvasDrag.h"
#include "canvas/CanvasState.h"
#include "knowledge/Color.h"
#include "text/TextScan.h"
#include "workspace/Workspace.h"

#include <QTimer>

namespace Ombrel {

namespace {

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

} // namespace

VariablesController::VariablesController(CanvasController &canvas, UndoManager *undoManager,
                                         QObject *parent)
    : QObject(parent), m_canvas(canvas), m_operations(canvas.workspace(), undoManager),
      m_selectedPropID(canvas.workspace().selectedVariablePropID())
{
    Workspace &workspace = canvas.workspace();
    CanvasState &state = canvas.state();
    connect(&workspace, &Workspace::selectedFileChanged, this, &VariablesController::followFile);
    // An edit not read yet is read with the new filter or folding.
    const auto viewChanged = [this] { m_refreshPending ? refresh() : relist(); };
    connect(&state, &CanvasState::variableSearchTextChanged, this, viewChanged);
    connect(&state, &CanvasState::collapsedGroupsChanged, this, viewChanged);
    connect(&state, &CanvasState::variableScrollToPropIDChanged, this,
            &VariablesController::serveScrollRequest);
    connect(&workspace, &Workspace::selectedVariablePropIDChanged, this,
            &VariablesController::selectionChanged);
    connect(&workspace, &Workspace::shouldRenameVariableChanged, this,
            &VariablesController::handleRenameCommand);
    connect(&workspace, &Workspace::shouldDuplicateVariableChanged, this,
            &VariablesController::handleDuplicateCommand);
    connect(&workspace, &Workspace::shouldDeleteVariableChanged, this,
            &VariablesController::handleDeleteCommand);
    followFile();
}

Workspace &VariablesController::workspace() const
{
    return m_canvas.workspace();
}

CanvasState &VariablesController::canvasState() const
{
    return m_canvas.state();
}

CSSFilePtr VariablesController::file() const
{
    return workspace().selectedFile();
}

QString VariablesController::query() const
{
    return VariableListing::queryOf(canvasState().variableSearchText());
}

bool VariablesController::fileHasRulesets() const
{
    return m_file && !m_file->rulesets().isEmpty();
}

QString VariablesController::noMatchText() const
{
    const QString q = query();
    if (q.isEmpty() || !m_listing.flat.isEmpty())
        return QString();
    return tr("No matches for \"%1\"").arg(q);
}

void VariablesController::followFile()
{
    const CSSFilePtr file = this->file();
    if (file != m_file) {
        disconnect(m_fileConnection);
        m_file = file;
        if (m_file) {
            m_fileConnection = connect(m_file.get(), &CSSFile::rulesetsChanged, this, [this] {
                observeRulesets();
                scheduleRefresh();
            });
        }
    }
    observeRulesets();
    refresh();
}

void VariablesController::observeRulesets()
{
    decltype(m_observed) observed;
    if (m_file) {
        observed.reserve(m_file->rulesets().size());
        for (const CSSRulesetPtr &ruleset : m_file->rulesets()) {
            const CSSRuleset *key = ruleset.get();
            const auto kept = m_observed.find(key);
            if (kept != m_observed.end() && kept->ruleset.lock() == ruleset) {
                observed.insert(key, std::move(*kept));
                m_observed.erase(kept);
                continue;
            }
            Observed fresh;
            fresh.ruleset = ruleset;
            fresh.connection = connect(ruleset.get(), &CSSRuleset::changed, this,
                                       [this, key] { rulesetChanged(key); });
            observed.insert(key, std::move(fresh));
        }
    }
    for (const Observed &gone : std::as_const(m_observed))
        disconnect(gone.connection);
    m_observed = std::move(observed);
}

void VariablesController::rulesetChanged(const CSSRuleset *ruleset)
{
    const auto observed = m_observed.find(ruleset);
    if (observed != m_observed.end())
        observed->stale = true;
    scheduleRefresh();
}

// The variables of the file's rulesets in file order, read again only for
// the rulesets that changed since they were last read.
void VariablesController::readVariables()
{
    m_variables.clear();
    if (!m_file)
        return;
    m_variables.reserve(m_file->rulesets().size());
    for (const CSSRulesetPtr &ruleset : m_file->rulesets()) {
        const auto observed = m_observed.find(ruleset.get());
        if (observed == m_observed.end()) {
            m_variables.append(VariableListing::variablesOf(*ruleset));
            continue;
        }
        if (observed->stale) {
            observed->variables = VariableListing::variablesOf(*ruleset);
            observed->stale = false;
        }
        m_variables.append(observed->variables);
    }
}

// An edit may touch every ruleset of the file, each telling of its change:
// they are read together once the edit is over.
void VariablesController::scheduleRefresh()
{
    if (m_refreshPending)
        return;
    m_refreshPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_refreshPending)
                refresh();
        },
        Qt::QueuedConnection);
}

void VariablesController::refresh()
{
    m_refreshPending = false;
    readVariables();
    followEntries();
    relist();
}

// The filter and the folded groups apply to the variables as last read.
void VariablesController::relist()
{
    const CanvasState &state = canvasState();
    m_listing =
        VariableListing::listing(m_variables, state.variableSearchText(), state.collapsedGroups());
    Q_EMIT listingChanged();
}

// The rows with a state of their own follow their entry's texts unless that
// text is being edited; a state whose property went and that edits nothing
// is dropped.
void VariablesController::followEntries()
{
    if (m_rows.isEmpty())
        return;
    QSet<QUuid> seen;
    for (const VariableListing::RulesetVariables &ruleset : std::as_const(m_variables)) {
        for (const VariableEntry &entry : ruleset.entries) {
            const auto row = m_rows.find(entry.propID);
            if (row == m_rows.end() || seen.contains(entry.propID))
                continue;
            seen.insert(entry.propID);
            bool changed = false;
            if (row->seenValue != entry.value) {
                row->seenValue = entry.value;
                if (!row->isEditingValue) {
                    row->localValue = entry.value;
                    changed = true;
                }
            }
            if (row->seenName != entry.name) {
                row->seenName = entry.name;
                if (!isRenamingName(entry.propID)) {
                    row->localName = entry.name;
                    changed = true;
                }
            }
            if (changed)
                Q_EMIT rowStateChanged(entry.propID);
        }
    }
    m_rows.removeIf([this, &seen](const QHash<QUuid, RowState>::iterator &row) {
        return !seen.contains(row.key()) && !row->isEditingValue && !isRenamingName(row.key());
    });
}

std::optional<VariableEntry> VariablesController::entryWithID(const QUuid &propID) const
{
    for (const VariableListing::RulesetVariables &ruleset : m_variables) {
        for (const VariableEntry &entry : ruleset.entries) {
            if (entry.propID == propID)
                return entry;
        }
    }
    return std::nullopt;
}

VariablesController::RowState &VariablesController::stateOf(const VariableEntry &entry)
{
    auto row = m_rows.find(entry.propID);
    if (row == m_rows.end())
        row =
            m_rows.insert(entry.propID, {entry.value, entry.name, false, entry.value, entry.name});
    return *row;
}

QString VariablesController::localValue(const VariableEntry &entry) const
{
    const auto row = m_rows.constFind(entry.propID);
    return row == m_rows.constEnd() ? entry.value : row->localValue;
}

QString VariablesController::localName(const VariableEntry &entry) const
{
    const auto row = m_rows.constFind(entry.propID);
    return row == m_rows.constEnd() ? entry.name : row->localName;
}

bool VariablesController::isEditingValue(const QUuid &propID) const
{
    const auto row = m_rows.constFind(propID);
    return row != m_rows.constEnd() && row->isEditingValue;
}

bool VariablesController::isSelected(const QUuid &propID) const
{
    return !propID.isNull() && workspace().selectedVariablePropID() == propID;
}

bool VariablesController::isColorValue(const VariableEntry &entry) const
{
    return Color::fromCssString(localValue(entry)).has_value();
}

QList<QUuid> VariablesController::editingValuePropIDs() const
{
    QList<QUuid> ids;
    for (auto row = m_rows.constBegin(); row != m_rows.constEnd(); ++row) {
        if (row->isEditingValue)
            ids.append(row.key());
    }
    return ids;
}

void VariablesController::select(const VariableEntry &entry)
{
    workspace().setSelectedVariablePropID(entry.propID);
    workspace().setSelectedVariableRulesetID(entry.rulesetID);
}

void VariablesController::change(const VariableEntry &entry, const QString &value)
{
    m_operations.updateVariable(entry.propID, entry.rulesetID, value);
}

void VariablesController::rename(const VariableEntry &entry, const QString &name)
{
    m_operations.renameVariable(entry.propID, entry.rulesetID, name);
    setRenamingPropID(QUuid());
}

void VariablesController::beginRename(const VariableEntry &entry)
{
    setRenamingPropID(entry.propID);
}

void VariablesController::cancelRename()
{
    setRenamingPropID(QUuid());
}

void VariablesController::duplicate(const VariableEntry &entry)
{
    m_operations.duplicateVariable(entry.propID, entry.rulesetID);
}

void VariablesController::remove(const VariableEntry &entry)
{
    m_operations.deleteVariable(entry.propID, entry.rulesetID);
}

// The name field starts from the entry's name each time it opens.
void VariablesController::setRenamingPropID(const QUuid &id)
{
    if (id == m_renamingPropID)
        return;
    const QUuid previous = m_renamingPropID;
    m_renamingPropID = id;
    if (const std::optional<VariableEntry> entry = entryWithID(id))
        stateOf(*entry).localName = entry->name;
    if (!previous.isNull())
        Q_EMIT rowStateChanged(previous);
    if (!id.isNull())
        Q_EMIT rowStateChanged(id);
}

void VariablesController::startValueEdit(const VariableEntry &entry)
{
    select(entry);
    RowState &row = stateOf(entry);
    row.isEditingValue = true;
    row.localValue = entry.value;
    Q_EMIT rowStateChanged(entry.propID);
    QTimer::singleShot(settleDelayMs, this,
                       [this, id = entry.propID] { Q_EMIT valueFocusRequested(id); });
}

void VariablesController::startRename(const VariableEntry &entry)
{
    select(entry);
    beginRename(entry);
}

void VariablesController::editLocalValue(const VariableEntry &entry, const QString &text)
{
    RowState &row = stateOf(entry);
    if (row.localValue == text)
        return;
    row.localValue = text;
    Q_EMIT rowStateChanged(entry.propID);
}

void VariablesController::editLocalName(const VariableEntry &entry, const QString &text)
{
    RowState &row = stateOf(entry);
    if (row.localName == text)
        return;
    row.localName = text;
    Q_EMIT rowStateChanged(entry.propID);
}

void VariablesController::commitValue(const VariableEntry &entry)
{
    const QString result = trimmed(localValue(entry));
    if (!result.isEmpty())
        change(entry, result);
    stateOf(entry).isEditingValue = false;
    Q_EMIT rowStateChanged(entry.propID);
    Q_EMIT focusReleaseRequested();
}

void VariablesController::cancelValue(const VariableEntry &entry)
{
    RowState &row = stateOf(entry);
    row.localValue = entry.value;
    row.isEditingValue = false;
    Q_EMIT rowStateChanged(entry.propID);
}

void VariablesController::commitRenameAndEditValue(const VariableEntry &entry)
{
    QString name = trimmed(localName(entry));
    if (name.isEmpty()) {
        cancelRename();
        return;
    }
    if (!name.startsWith(u"--"))
        name.prepend(QStringLiteral("--"));
    if (characterCount(name) <= 2) {
        cancelRename();
        return;
    }
    RowState &row = stateOf(entry);
    row.isEditingValue = true;
    row.localValue = entry.value;
    Q_EMIT rowStateChanged(entry.propID);
    rename(entry, name);
    QTimer::singleShot(settleDelayMs, this,
                       [this, id = entry.propID] { Q_EMIT valueFocusRequested(id); });
}

void VariablesController::commitColor(const VariableEntry &entry, const QString &hex)
{
    editLocalValue(entry, hex);
    change(entry, hex);
}

void VariablesController::toggleGroup(const QUuid &rulesetID)
{
    QSet<QUuid> collapsed = canvasState().collapsedGroups();
    if (!collapsed.remove(rulesetID))
        collapsed.insert(rulesetID);
    canvasState().setCollapsedGroups(collapsed);
}

void VariablesController::dragRow(const VariableEntry &entry, int flatIdx, double translationY)
{
    if (!query().isEmpty())
        return;
    if (m_draggingVarID.isNull())
        m_draggingVarID = entry.propID;
    if (m_draggingVarID != entry.propID)
        return;
    m_dropVarTargetIndex =
        CanvasDrag::dropTargetIndex(flatIdx, translationY, int(m_listing.flat.size()), rowPitch);
    Q_EMIT dragChanged();
}

void VariablesController::endDrag()
{
    const QUuid dragged = m_draggingVarID;
    const std::optional<int> target = m_dropVarTargetIndex;
    m_draggingVarID = QUuid();
    m_dropVarTargetIndex.reset();
    if (target && !dragged.isNull()) {
        const QUuid before = *target >= 0 && *target < m_listing.flat.size()
                                 ? m_listing.flat[*target].propID
                                 : QUuid();
        m_operations.moveVariable(dragged, before);
    }
    Q_EMIT dragChanged();
}

void VariablesController::addVariable()
{
    m_canvas.startNewVariable();
}

void VariablesController::addRuleset()
{
    workspace().setShouldShowNewRulesetSheet(true);
}

void VariablesController::setShown(bool shown)
{
    m_shown = shown;
    serveScrollRequest();
}

// A tab that is leaving, while the next one fades in or after it was
// replaced, leaves the request to the tab in front.
void VariablesController::serveScrollRequest()
{
    const QUuid id = canvasState().variableScrollToPropID();
    if (id.isNull() || !m_shown || workspace().canvasTab() != CanvasTab::Variables)
        return;
    canvasState().setVariableScrollToPropID(QUuid());
    QTimer::singleShot(settleDelayMs, this, [this, id] { Q_EMIT scrollRequested(id); });
}

void VariablesController::selectionChanged()
{
    const QUuid previous = m_selectedPropID;
    m_selectedPropID = workspace().selectedVariablePropID();
    if (previous == m_selectedPropID)
        return;
    if (!previous.isNull())
        Q_EMIT rowStateChanged(previous);
    if (!m_selectedPropID.isNull())
        Q_EMIT rowStateChanged(m_selectedPropID);
}

void VariablesController::handleRenameCommand()
{
    Workspace &workspace = this->workspace();
    if (!workspace.shouldRenameVariable())
        return;
    workspace.setShouldRenameVariable(false);
    if (!workspace.selectedVariablePropID().isNull())
        setRenamingPropID(workspace.selectedVariablePropID());
}

void VariablesController::handleDuplicateCommand()
{
    handleVariableCommand(&Workspace::shouldDuplicateVariable,
                          &Workspace::setShouldDuplicateVariable,
                          &VariableOperations::duplicateVariable);
}

void VariablesController::handleDeleteCommand()
{
    handleVariableCommand(&Workspace::shouldDeleteVariable, &Workspace::setShouldDeleteVariable,
                          &VariableOperations::deleteVariable);
}

void VariablesController::handleVariableCommand(
    bool (Workspace::*flag)() const, void (Workspace::*clear)(bool),
    void (VariableOperations::*operation)(const QUuid &, const QUuid &))
{
    Workspace &workspace = this->workspace();
    if (!(workspace.*flag)())
        return;
    (workspace.*clear)(false);
    const QUuid propID = workspace.selectedVariablePropID();
    const QUuid rulesetID = workspace.selectedVariableRulesetID();
    if (!propID.isNull() && !rulesetID.isNull())
        (m_operations.*operation)(propID, rulesetID);
}

} // namespace Ombrel
