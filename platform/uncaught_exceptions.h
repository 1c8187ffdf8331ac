#pragma once

#include <string>

namespace wendle {

// The system's own exceptions: NSException on macOS, none on Linux. std::set_terminate does not hear of them
// in a program with a C++ runtime of its own inside.

// From now on `report` is called with name and reason of one that nothing catches, and after it the handler
// that was set before. The program then ends as it would have done anyway. Source:
// NSSetUncaughtExceptionHandler.
void reportUncaughtSystemExceptions(void (*report)(const std::string& cause));

// For a terminate handler: whether the exception that ends the program is one of them. The terminate handler
// that the system had set then calls `report`.
[[nodiscard]] bool isEndingBySystemException();

}  // namespace wendle
