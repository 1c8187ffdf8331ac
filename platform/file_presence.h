#pragma once

#include <string>

namespace wendle {

// Whether something is at `path`. Links are followed: one that leads nowhere does not exist (stat(2)).
[[nodiscard]] bool fileExists(const std::string& path);

// Whether a directory, or a link to one, is at `path`.
[[nodiscard]] bool directoryExists(const std::string& path);

}  // namespace wendle
