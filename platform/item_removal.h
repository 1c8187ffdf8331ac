#pragma once

#include <optional>
#include <string>

#include "base/error.h"

namespace wendle {

// Removes the item at `path`, a directory with all its contents; removes a link, never what it leads to, at
// any depth and also when somebody swaps folders for links meanwhile. Only links in the folders above the
// item are followed. Blocks until done; needs fewer than 40 descriptors whatever the depth. Memory grows
// with the depth, and with the number of entries only in folders more than 24 levels down.
//
// What cannot be removed is passed over and the rest is removed all the same; the result is then the error
// that was met first, not the "directory not empty" that follows from it. A missing item is ENOENT; one that
// vanishes from inside the tree meanwhile is success.
[[nodiscard]] std::optional<Error> removeItem(const std::string& path);

}  // namespace wendle
