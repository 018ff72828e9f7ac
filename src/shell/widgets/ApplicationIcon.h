#pragma once

#include <QIcon>

namespace Ombrel {

// The application's icon, drawn at whatever size the platform asks for.
QIcon applicationIcon();

} // namespace Ombrel
