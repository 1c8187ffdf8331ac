#include "platform/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include "platform/retry.h"

namespace wendle {

FolderLock::FolderLock(const std::string& folder)
    : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (folder_.isOpen()) retryOnInterrupt([this] { return ::flock(folder_.get(), LOCK_EX); });
}

}  // namespace wendle
