#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/WendleUninstaller.h"

namespace wendle {

// Every switch that selects a mode.
[[nodiscard]] const std::vector<std::string_view>& modeSwitches();

// The first of `arguments` that is exactly a mode switch; none when there is none. The executable's path, the
// first element, is looked at like the others.
[[nodiscard]] std::optional<std::string> chosenModeSwitch(const std::vector<std::string>& arguments);

}  // namespace wendle
