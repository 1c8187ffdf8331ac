#pragma once

#include "logging/logger.h"

namespace wendle {

// The logger called `uninstaller` that every step writes through: a sub-logger of the module logger with its
// destinations and none of its own. Built on first use, once, and never released.
[[nodiscard]] Logger& uninstallerLogger();

}  // namespace wendle
