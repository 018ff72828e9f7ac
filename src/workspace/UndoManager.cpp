#include "UndoManager.h"

#include <QAction>

namespace Ombrel {

UndoManager::UndoManager(QObject *parent) : QObject(parent)
{
    connect(this, &UndoManager::changed, this, &UndoManager::updateActions);
}

void UndoManager::registerUndo(const void *target, std::function<void()> handler)
{
    if (m_mode != Mode::Idle) {
        m_collecting.steps.push_back({target, std::move(handler)});
        return;
    }
    m_redoStack.clear();
    if (!m_groupOpen) {
        m_undoStack.append(Group());
        m_groupOpen = true;
        const quint64 serial = ++m_groupSerial;
        QMetaObject::invokeMethod(
            this,
            [this, serial] {
                if (serial == m_groupSerial)
                    closeGroup();
            },
            Qt::QueuedConnection);
    }
    m_undoStack.last().steps.push_back({target, std::move(handler)});
    Q_EMIT changed();
}

void UndoManager::setActionName(const QString &name)
{
    if (m_mode != Mode::Idle) {
        m_collecting.actionName = name;
    } else if (m_groupOpen && m_undoStack.last().actionName != name) {
        m_undoStack.last().actionName = name;
        Q_EMIT changed();
    }
}

QString UndoManager::undoActionName() const
{
    return m_undoStack.isEmpty() ? QString() : m_undoStack.last().actionName;
}

QString UndoManager::redoActionName() const
{
    return m_redoStack.isEmpty() ? QString() : m_redoStack.last().actionName;
}

QString UndoManager::undoMenuItemTitle() const
{
    const QString name = undoActionName();
    return name.isEmpty() ? tr("Undo") : tr("Undo %1").arg(name);
}

QString UndoManager::redoMenuItemTitle() const
{
    const QString name = redoActionName();
    return name.isEmpty() ? tr("Redo") : tr("Redo %1").arg(name);
}

void UndoManager::closeGroup()
{
    m_groupOpen = false;
    ++m_groupSerial;
}

void UndoManager::undo()
{
    run(m_undoStack, m_redoStack, Mode::Undoing);
}

void UndoManager::redo()
{
    run(m_redoStack, m_undoStack, Mode::Redoing);
}

void UndoManager::run(QList<Group> &from, QList<Group> &to, Mode mode)
{
    if (m_mode != Mode::Idle)
        return;
    closeGroup();
    if (from.isEmpty())
        return;
    const Group group = from.takeLast();
    m_mode = mode;
    m_collecting = Group{group.actionName, {}};
    for (auto step = group.steps.rbegin(); step != group.steps.rend(); ++step)
        step->handler();
    m_mode = Mode::Idle;
    if (!m_collecting.steps.empty())
        to.append(std::move(m_collecting));
    m_collecting = Group();
    Q_EMIT changed();
}

void UndoManager::removeAllActions()
{
    closeGroup();
    m_undoStack.clear();
    m_redoStack.clear();
    m_collecting.steps.clear();
    Q_EMIT changed();
}

void UndoManager::removeAllActions(const void *target)
{
    const auto ofTarget = [target](const Step &step) { return step.target == target; };
    const auto isEmpty = [](const Group &group) { return group.steps.empty(); };
    std::erase_if(m_collecting.steps, ofTarget);
    for (QList<Group> *stack : {&m_undoStack, &m_redoStack}) {
        for (Group &group : *stack)
            std::erase_if(group.steps, ofTarget);
    }
    if (m_groupOpen && isEmpty(m_undoStack.last()))
        closeGroup();
    m_undoStack.removeIf(isEmpty);
    m_redoStack.removeIf(isEmpty);
    Q_EMIT changed();
}

QAction *UndoManager::undoAction()
{
    if (!m_undoAction) {
        m_undoAction = new QAction(this);
        m_undoAction->setShortcuts(QKeySequence::Undo);
        connect(m_undoAction, &QAction::triggered, this, &UndoManager::undo);
        updateActions();
    }
    return m_undoAction;
}

QAction *UndoManager::redoAction()
{
    if (!m_redoAction) {
        m_redoAction = new QAction(this);
        m_redoAction->setShortcuts(QKeySequence::Redo);
        connect(m_redoAction, &QAction::triggered, this, &UndoManager::redo);
        updateActions();
    }
    return m_redoAction;
}

void UndoManager::updateActions()
{
    if (m_undoAction) {
        m_undoAction->setText(undoMenuItemTitle());
        m_undoAction->setEnabled(canUndo());
    }
    if (m_redoAction) {
        m_redoAction->setText(redoMenuItemTitle());
        m_redoAction->setEnabled(canRedo());
    }
}

} // namespace Ombrel
