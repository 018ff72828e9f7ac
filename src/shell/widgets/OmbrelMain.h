#pragma once

#include <functional>

class QMainWindow;

namespace Ombrel {

// The whole life of the application: hands the command line's stylesheets to
// a running instance when there is one, or else opens the first window with
// them and runs the event loop. firstWindowMade is told of the first window
// before it is shown.
int runOmbrel(int argc, char **argv,
              const std::function<void(QMainWindow *)> &firstWindowMade = {});

} // namespace Ombrel
