#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace wendle {
// Calls `systemCall` until a signal no longer interrupts it; its result and errno are those of the last call.
template <typename SystemCall>
auto retryOnInterrupt(SystemCall systemCall) {
  auto result = systemCall();
  while (result == -1 && errno == EINTR) result = systemCall();
  return result;
}

// Sole owner of one descriptor; closes it on destruction.
class [[nodiscard]] UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) noexcept : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    reset(other.release());  // safe on self-move: release() has emptied us first
    return *this;
  }
  ~UniqueFd() { reset(); }

  [[nodiscard]] int get() const noexcept { return fd_; }
  [[nodiscard]] bool isOpen() const noexcept { return fd_ >= 0; }
  [[nodiscard]] int release() noexcept { return std::exchange(fd_, -1); }
  void reset(int fd = -1) noexcept {
    const int savedErrno = errno;  // a destructor must not hide the real cause
    if (fd_ >= 0) ::close(fd_);    // never retried on EINTR: it may be closed already
    fd_ = fd;
    errno = savedErrno;
  }

 private:
  int fd_ = -1;
};
}  // namespace wendle
