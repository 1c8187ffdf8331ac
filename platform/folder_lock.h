#pragma once

#include <chrono>
#include <string>

#include "base/unique_fd.h"

namespace wendle {

// Keeps other holders of a lock on the same folder out for as long as it lives. It hinders nobody who does
// not ask for the lock, ends with the process, and is not handed on to a child (flock(2)). It waits for
// another holder to let go, but never for ever: nothing is locked after `longestWait`, nor in a folder that
// cannot be opened.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder,
                      std::chrono::milliseconds longestWait = std::chrono::seconds(2));

 private:
  UniqueFd folder_;
};

}  // namespace wendle
