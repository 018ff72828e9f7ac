#pragma once

#include "workspace/WorkspaceServices.h"

#include <QString>

class QWidget;

namespace Ombrel {

// Asks with a modal warning box whose buttons stand in the prompt's order;
// the answer is the clicked button's position counted from 1000.
int runWarningPrompt(const Prompt &prompt, QWidget *parent);

// Chooses one folder with the desktop's folder dialog.
QString chooseFolder(const FolderRequest &request, QWidget *parent);

// Shows a file selected in the desktop's file manager, or opens its folder
// when no file manager answers.
void revealInFileManager(const QString &path);

// The platform's words for that: "Show in File Manager", "Show in Finder" or
// "Show in Explorer".
QString showInFileManagerLabel();

} // namespace Ombrel
