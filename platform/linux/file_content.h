#pragma once

#include <string>

#include "base/unique_fd.h"

namespace wendle {

// The bytes of a file; none when it is absent, and no more than could be read.
[[nodiscard]] std::string fileContent(const std::string& path);
[[nodiscard]] std::string contentOf(const UniqueFd& file);  // from where it stands

}  // namespace wendle
