#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/unique_fd.h"

namespace wendle {
// Whether something is at `path`. Links are followed: one that leads nowhere does not exist (stat(2)).
[[nodiscard]] bool fileExists(const std::string& path);

// Whether a directory, or a link to one, is at `path`.
[[nodiscard]] bool directoryExists(const std::string& path);

// Whether a directory is at `path`, and no link to one.
[[nodiscard]] bool isDirectoryItself(const std::string& path);

// The bytes of the open file `fd` from where it stands to its end; none, and errno, when it cannot be read.
[[nodiscard]] std::optional<std::string> readToEnd(int fd);

// An exclusive advisory lock on a directory, held for the life of the object (flock(2)). It ends with the
// process and is not inherited by a child. The constructor blocks until another holder releases the lock;
// nothing is locked after `timeout`, nor when the directory cannot be opened.
class DirectoryLock {
 public:
  explicit DirectoryLock(const std::string& path,
                         std::chrono::milliseconds timeout = std::chrono::seconds(2));

 private:
  UniqueFd directory_;
};
}  // namespace wendle
