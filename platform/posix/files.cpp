#include "platform/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <thread>

namespace wendle {
bool fileExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

bool directoryExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isDirectoryItself(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::string> readToEnd(int fd) {
  std::string content;
  std::array<char, 64 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  for (;;) {
    const ssize_t count = retryOnInterrupt([&] { return ::read(fd, buffer.data(), buffer.size()); });
    if (count < 0) return std::nullopt;
    if (count == 0) return content;
    content.append(buffer.data(), static_cast<size_t>(count));
  }
}

DirectoryLock::DirectoryLock(const std::string& path, std::chrono::milliseconds timeout)
    : directory_(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr std::chrono::milliseconds interval(10);
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (directory_.isOpen() && ::flock(directory_.get(), LOCK_EX | LOCK_NB) != 0) {
    const bool isHeldElsewhere = errno == EWOULDBLOCK || errno == EINTR;
    if (!isHeldElsewhere || std::chrono::steady_clock::now() >= end) return;
    std::this_thread::sleep_for(interval);
  }
}
}  // namespace wendle
