#include "platform/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <thread>

namespace wendle {

FolderLock::FolderLock(const std::string& folder, std::chrono::milliseconds longestWait)
    : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr std::chrono::milliseconds interval(10);
  const auto end = std::chrono::steady_clock::now() + longestWait;
  while (folder_.isOpen() && ::flock(folder_.get(), LOCK_EX | LOCK_NB) != 0) {
    const bool isHeldElsewhere = errno == EWOULDBLOCK || errno == EINTR;
    if (!isHeldElsewhere || std::chrono::steady_clock::now() >= end) return;
    std::this_thread::sleep_for(interval);
  }
}

}  // namespace wendle
