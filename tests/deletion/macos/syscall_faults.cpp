#include "syscall_faults.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <set>

static thread_local std::string enteredItem;       // what the last open was about
static thread_local std::set<const DIR*> listing;  // of which an entry was returned, and not yet the end

bool wendle::exchange(int directory, const char* name, int otherDirectory, const char* otherName) {
  return ::renameatx_np(directory, name, otherDirectory, otherName, RENAME_SWAP) == 0;
}

// The system's own function behind the one of that name here. On Intel some have two forms [S], of which
// <sys/stat.h> and <dirent.h> choose the one with this ending.
template <typename Function>
static Function* systems(const std::string& name) {
  void* found = ::dlsym(RTLD_NEXT, (name + "$INODE64").c_str());
  if (found == nullptr) found = ::dlsym(RTLD_NEXT, name.c_str());
  return reinterpret_cast<Function*>(found);
}

static std::string itemAt(int directory, const std::string& name) {
  if (name == "..") return {};
  if (directory == AT_FDCWD) return name;
  std::array<char, PATH_MAX> path{};
  ::fcntl(directory, F_GETPATH, path.data());
  return name.empty() ? path.data() : path.data() + ("/" + name);
}

extern "C" int openat(int directory, const char* name, int flags, ...) {  // files are created by open(2) here
  if (wendle::syscallHook) enteredItem = itemAt(directory, name);
  if (wendle::fails(wendle::Syscall::open, [] { return enteredItem; })) return -1;
  static auto* const next = systems<int(int, const char*, int, ...)>("openat");
  return next(directory, name, flags);
}

extern "C" DIR* fdopendir(int directory) {
  static auto* const next = systems<DIR*(int)>("fdopendir");
  DIR* const stream = next(directory);
  listing.erase(stream);  // the place of one that was closed
  return stream;
}

extern "C" dirent* readdir(DIR* stream) {
  const auto isRefused = [&] {
    return wendle::fails(wendle::Syscall::read, [&] { return itemAt(::dirfd(stream), ""); });
  };
  const bool isFirst = !listing.contains(stream);
  if (isFirst && isRefused()) return nullptr;
  static auto* const next = systems<dirent*(DIR*)>("readdir");
  dirent* const entry = next(stream);
  if (entry != nullptr) {
    listing.insert(stream);
    if (wendle::areTypesHidden) entry->d_type = DT_UNKNOWN;
  } else if (const int failure = errno; !isFirst && !isRefused()) {
    errno = failure;  // 0 says that this is the end
  }
  return entry;
}

extern "C" int fstat(int fd, struct stat* status) {
  if (wendle::fails(wendle::Syscall::status, [] { return enteredItem; })) return -1;
  static auto* const next = systems<int(int, struct stat*)>("fstat");
  return next(fd, status);
}

extern "C" int unlinkat(int directory, const char* name, int flags) {
  if (wendle::fails(wendle::Syscall::unlink, [&] { return itemAt(directory, name); })) return -1;
  static auto* const next = systems<int(int, const char*, int)>("unlinkat");
  return next(directory, name, flags);
}

// The clock of the deletion, in place of that in the system's C++ library, whose own calls stay there [S].
// Weak, for an executable with a C++ library inside; there no clock can be stopped.
__attribute__((weak, visibility("hidden"))) std::chrono::steady_clock::time_point
std::chrono::steady_clock::now() noexcept {
  if (wendle::stoppedClock) return time_point(std::chrono::seconds(*wendle::stoppedClock));
  return time_point(std::chrono::nanoseconds(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)));
}
