#include "syscall_faults.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>

static thread_local std::string enteredItem;  // what the last open was about

bool wendle::exchange(int directory, const char* name, int otherDirectory, const char* otherName) {
  return ::renameat2(directory, name, otherDirectory, otherName, RENAME_EXCHANGE) == 0;
}

static std::string itemAt(int directory, const std::string& name) {
  if (name == "..") return {};
  if (directory == AT_FDCWD) return name;
  const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(directory));
  return name.empty() ? path : path / name;
}

extern "C" int openat(int directory, const char* name, int flags, ...) {  // files are created by open(2) here
  if (wendle::syscallHook) enteredItem = itemAt(directory, name);
  if (wendle::fails(wendle::Syscall::open, [] { return enteredItem; })) return -1;
  return static_cast<int>(::syscall(SYS_openat, directory, name, flags, 0));
}

extern "C" ssize_t getdents64(int directory, void* buffer, size_t length) noexcept {
  if (wendle::fails(wendle::Syscall::read, [&] { return itemAt(directory, ""); })) return -1;
  const auto count = ::syscall(SYS_getdents64, directory, buffer, length);
  for (ssize_t position = 0; wendle::areTypesHidden && position < count;) {
    auto* const entry = reinterpret_cast<dirent64*>(static_cast<char*>(buffer) + position);
    entry->d_type = DT_UNKNOWN;
    position += entry->d_reclen;
  }
  return count;
}

extern "C" int fstat(int fd, struct stat* status) noexcept {
  if (wendle::fails(wendle::Syscall::status, [] { return enteredItem; })) return -1;
  return ::fstatat(fd, "", status, AT_EMPTY_PATH);
}

extern "C" int unlinkat(int directory, const char* name, int flags) noexcept {
  if (wendle::fails(wendle::Syscall::unlink, [&] { return itemAt(directory, name); })) return -1;
  return static_cast<int>(::syscall(SYS_unlinkat, directory, name, flags));
}

// Visible to the C++ library, whose std::chrono calls it.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
  if (clock != CLOCK_MONOTONIC || !wendle::stoppedClock)
    return static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
  *time = {*wendle::stoppedClock, 0};
  return 0;
}
