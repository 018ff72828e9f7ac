#pragma once

#include "model/CSSFile.h"
#include "workspace/WorkspaceServices.h"

namespace Ombrel {

class Workspace;

// The question before quitting with unsaved files in any window.
Prompt quitPrompt(const CSSFileList &unsaved);

// The question before a window with unsaved files closes.
Prompt windowClosePrompt(const CSSFileList &unsaved);

// Whether a window on this workspace may close: without unsaved files it
// may; otherwise the prompt decides, and "Save" saves them first (a file
// that cannot be written does not hold the window open). The session stays.
bool confirmWindowClose(const Workspace *workspace, const PromptHandler &prompt);

// The question of "Revert to Saved…".
Prompt revertPrompt(const CSSFile &file);

} // namespace Ombrel
