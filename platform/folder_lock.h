#pragma once

#include <string>

#include "platform/unique_fd.h"

namespace wendle {

// Keeps other holders of a lock on the same folder out for as long as it lives; blocks until they have let
// go. It hinders nobody who does not ask for the lock, ends with the process, and is not handed on to a child
// (flock(2)). A folder that cannot be opened is not locked.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder);

 private:
  UniqueFd folder_;
};

}  // namespace wendle
