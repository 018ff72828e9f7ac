#pragma once

namespace Ombrel {

// The tab shown in a window's main pane.
enum class CanvasTab { Nodes, Variables, Code };

} // namespace Ombrel
