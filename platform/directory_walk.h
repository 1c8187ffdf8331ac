#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace wendle {

// The paths of the directories at any depth below `start` whose own names satisfy `matches`, parents before
// their contents, otherwise in the file system's order. Hidden directories count; links are not followed and
// are no directories; an unreadable directory may match, its contents are passed over. A missing `start`, a
// plain file and a link give nothing. Blocks until the tree is read; keeps the matches only,
// and of folders more than 24 levels down the entries still to come.
[[nodiscard]] std::vector<std::string> findDirectories(const std::string& start,
                                                       const std::function<bool(std::string_view)>& matches);

}  // namespace wendle
