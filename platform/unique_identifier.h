#pragma once

#include <string>

namespace wendle {

// A random identifier in its 36-character text form, upper case: 68753A44-4D6F-1226-9C60-0050E4C00067.
// Source: NSUUID.
[[nodiscard]] std::string makeUniqueIdentifier();

}  // namespace wendle
