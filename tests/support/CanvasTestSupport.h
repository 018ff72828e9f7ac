#pragma once

// Shared by the canvas tests: a workspace showing one stylesheet made from
// text, with the window's undo manager and the canvas controller over them.

#include "canvas/CanvasController.h"
#include "model/CSSParser.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTest>

#include <memory>

namespace CanvasTest {

// What the file counts as its text on disk: the text as given, which the
// generator would write differently, so that every change mark shows as
// unsaved; or the generated text, so that a change undone shows as saved.
enum class Disk { AsGiven, AsGenerated };

inline QString generated(const QString &css)
{
    return Ombrel::CSSFile(QString(), Ombrel::CSSParser::parse(css), QString()).generateCSS();
}

struct Canvas
{
    explicit Canvas(const QString &css, bool withUndoManager = true, Disk disk = Disk::AsGenerated)
        : file(std::make_shared<Ombrel::CSSFile>(QStringLiteral("/tmp/canvas-test/style.css"),
                                                 Ombrel::CSSParser::parse(css),
                                                 disk == Disk::AsGiven ? css : generated(css)))
    {
        if (withUndoManager)
            undo = std::make_unique<Ombrel::UndoManager>();
        workspace.setFiles({file});
        workspace.setSelectedFile(file);
        controller = std::make_unique<Ombrel::CanvasController>(workspace, undo.get());
    }

    Ombrel::RulesetOperations &ops() { return controller->operations(); }
    Ombrel::CanvasState &state() { return controller->state(); }

    Ombrel::CSSRulesetPtr at(int index) const { return file->rulesets().at(index); }
    Ombrel::CSSRulesetPtr named(const QString &selector) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            if (ruleset->selector() == selector)
                return ruleset;
        }
        return nullptr;
    }

    QStringList selectors() const
    {
        QStringList list;
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets())
            list.append(ruleset->selector());
        return list;
    }

    QSet<QUuid> idsOf(const QStringList &selectors) const
    {
        QSet<QUuid> ids;
        for (const QString &selector : selectors)
            ids.insert(named(selector)->id());
        return ids;
    }

    Ombrel::Workspace workspace;
    Ombrel::CSSFilePtr file;
    std::unique_ptr<Ombrel::UndoManager> undo;
    std::unique_ptr<Ombrel::CanvasController> controller;
};

// Lets the current turn of the event loop end, so that the undo group of
// the registrations made so far closes and posted change marks have run.
inline void endTurn()
{
    bool ran = false;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&ran] { ran = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(ran);
}

inline const QString fiveRulesets = QStringLiteral(
    "A { color: red; }\nB { color: blue; }\nC { margin: 0; }\nD { padding: 1px; }\nE { top: 0; }");

} // namespace CanvasTest
