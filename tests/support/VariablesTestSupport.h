#pragma once

// Shared by the tests of the variables tab: a workspace over a stylesheet
// written to a temporary folder and read back, with the window's undo
// manager, the canvas controller and the variables controller over them.

#include "StylesheetFiles.h"
#include "canvas/CanvasController.h"
#include "model/CSSParser.h"
#include "variables/VariablesController.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace VariablesTest {

struct Variables
{
    explicit Variables(const QString &css, bool withUndoManager = true)
        : path(dir.filePath(QStringLiteral("style.css")))
    {
        StylesheetFiles::writeFile(path, css.toUtf8());
        file = StylesheetFiles::loadFile(path);
        if (withUndoManager)
            undo = std::make_unique<Ombrel::UndoManager>();
        workspace.setFiles({file});
        workspace.setSelectedFile(file);
        canvas = std::make_unique<Ombrel::CanvasController>(workspace, undo.get());
        controller = std::make_unique<Ombrel::VariablesController>(*canvas, undo.get());
    }

    Ombrel::VariableOperations &ops() { return controller->operations(); }

    Ombrel::CSSRulesetPtr named(const QString &selector) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            if (ruleset->selector() == selector)
                return ruleset;
        }
        return nullptr;
    }

    // The first declaration of that name in file order, as an entry.
    Ombrel::VariableEntry entry(const QString &name) const
    {
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            for (const Ombrel::CSSProperty &property : ruleset->properties()) {
                if (property.name == name)
                    return {property.id, ruleset->id(), property.name, property.value};
            }
        }
        return {};
    }

    QString value(const QString &name) const { return entry(name).value; }

    // "selector: name name ..." for each ruleset, to read where variables stand.
    QStringList layout() const
    {
        QStringList lines;
        for (const Ombrel::CSSRulesetPtr &ruleset : file->rulesets()) {
            QStringList names;
            for (const Ombrel::CSSProperty &property : ruleset->properties())
                names.append(property.name);
            lines.append(ruleset->selector() + QStringLiteral(": ") + names.join(QLatin1Char(' ')));
        }
        return lines;
    }

    // Replaces every ruleset by a fresh parse of the file's text, as an edit
    // in the code tab does: same text, new objects and ids.
    void reparse() const { file->setRulesets(Ombrel::CSSParser::parse(file->generateCSS())); }

    QTemporaryDir dir;
    QString path;
    Ombrel::CSSFilePtr file;
    Ombrel::Workspace workspace;
    std::unique_ptr<Ombrel::UndoManager> undo;
    std::unique_ptr<Ombrel::CanvasController> canvas;
    std::unique_ptr<Ombrel::VariablesController> controller;
};

// Lets the current turn of the event loop end, so that the undo group of
// the registrations made so far closes and posted work has run.
inline void endTurn()
{
    bool ran = false;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&ran] { ran = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(ran);
}

} // namespace VariablesTest
