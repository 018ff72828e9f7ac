#pragma once

#include "workspace/WindowConfig.h"

#include <QString>

#include <memory>

namespace Ombrel {

class Workspace;

// What a window does with its workspace when it comes on screen: registers
// it, then opens the folder its config names, or else the stylesheet waiting
// in pendingFilePath (which it takes and clears), or else restores the last
// session unless the config asks for an empty window. A file to select is
// selected 0.1 s later, when the window has settled.
void startWindow(const std::shared_ptr<Workspace> &workspace, const WindowConfig &config,
                 QString &pendingFilePath);

} // namespace Ombrel
