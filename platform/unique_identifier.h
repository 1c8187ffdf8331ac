#pragma once

#include <string>

namespace wendle {

// A random identifier in its 36-character text form, upper case: 68753A44-4D6F-1226-9C60-0050E4C00067.
// Source: NSUUID. Throws std::system_error where the system has no random numbers to give.
[[nodiscard]] std::string makeUniqueIdentifier();

}  // namespace wendle
