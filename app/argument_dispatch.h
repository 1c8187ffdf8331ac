#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/WendleUninstaller.h"
#include "app/modes.h"

namespace wendle {

// The mode of the first of `arguments` that is exactly a mode switch; none when there is none. The
// executable's path, the first element, is looked at like the others.
[[nodiscard]] std::optional<Mode> chosenMode(const std::vector<std::string>& arguments);

// Runs a mode of the shared uninstaller to its end: on macOS of AFXWendleUninstaller's.
void runMode(Mode mode);

}  // namespace wendle
