#pragma once

// Shared by the inspector tests: a workspace showing one stylesheet made from
// text, the window's undo manager, and the inspector's controller following
// the workspace's selection as the window does.

#include "inspector/PropertyEditorController.h"
#include "model/CSSParser.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace InspectorTest {

// What the file counts as its text on disk. AsGenerated: the generator's own
// form, so that an edit undone shows as saved. Unsaved: a text the generator
// never writes, so that every change mark shows as unsaved and a missing
// mark shows as a clean file.
enum class Disk { AsGenerated, Unsaved };

inline QString generated(const QString &css)
{
    return Ombrel::CSSFile(QString(), Ombrel::CSSParser::parse(css), QString()).generateCSS();
}

struct Inspector
{
    explicit Inspector(const QString &css, bool withUndoManager = true,
                       Disk disk = Disk::AsGenerated)
        : file(std::make_shared<Ombrel::CSSFile>(
              dir.filePath(QStringLiteral("style.css")), Ombrel::CSSParser::parse(css),
              disk == Disk::Unsaved ? QStringLiteral("/* on disk */\n") + css : generated(css)))
    {
        if (withUndoManager)
            undo = std::make_unique<Ombrel::UndoManager>();
        workspace.setFiles({file});
        workspace.setSelectedFile(file);
        controller = std::make_unique<Ombrel::PropertyEditorController>(workspace, undo.get());
        QObject::connect(&workspace, &Ombrel::Workspace::selectedRulesetChanged, controller.get(),
                         [this] { retarget(); });
    }

    void retarget() { controller->setTarget(workspace.selectedRuleset(), file); }

    Ombrel::PropertyEditorController &ctl() { return *controller; }

    Ombrel::CSSRulesetPtr named(const QString &selector) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            if (ruleset->selector() == selector)
                return ruleset;
        }
        return nullptr;
    }

    // Selects the rulesets of these selectors, the first one primary, as a
    // click and command-clicks on their cards would.
    void select(const QStringList &selectors)
    {
        QSet<QUuid> ids;
        for (const QString &selector : selectors)
            ids.insert(named(selector)->id());
        workspace.setSelectedRulesetIDs(ids);
        workspace.setSelectedRuleset(named(selectors.first()));
    }

    // The property of that name in the ruleset of selector, the first one.
    Ombrel::CSSProperty property(const QString &selector, const QString &name) const
    {
        for (const Ombrel::CSSProperty &property : named(selector)->properties()) {
            if (property.name == name)
                return property;
        }
        return {};
    }

    QString value(const QString &selector, const QString &name) const
    {
        return property(selector, name).value;
    }

    // "name: value" of each property of the ruleset, in order.
    QStringList declarations(const QString &selector) const
    {
        QStringList list;
        for (const Ombrel::CSSProperty &property : named(selector)->properties())
            list.append(property.name + QStringLiteral(": ") + property.value);
        return list;
    }

    QStringList names(const Ombrel::CSSPropertyList &properties) const
    {
        QStringList list;
        for (const Ombrel::CSSProperty &property : properties)
            list.append(property.name);
        return list;
    }

    // Where a save writes the file.
    QTemporaryDir dir;
    Ombrel::Workspace workspace;
    Ombrel::CSSFilePtr file;
    std::unique_ptr<Ombrel::UndoManager> undo;
    std::unique_ptr<Ombrel::PropertyEditorController> controller;
};

// Lets the current turn of the event loop end, so that the undo group of the
// registrations made so far closes and posted change marks have run.
inline void endTurn()
{
    bool ran = false;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&ran] { ran = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(ran);
}

} // namespace InspectorTest
