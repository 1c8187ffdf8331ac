#pragma once

#include <string>
#include <vector>

namespace wendle {

// The arguments this process was started with, the executable's path as the first. Source: NSProcessInfo.
[[nodiscard]] const std::vector<std::string>& processArguments();

// The path of the folder that is this program's bundle; on a system without bundles, of the folder that holds
// the executable. Empty when the system does not say.
[[nodiscard]] std::string mainBundlePath();

}  // namespace wendle
