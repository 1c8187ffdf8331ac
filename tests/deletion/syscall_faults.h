#pragma once

#include <cerrno>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace wendle {
// The system calls of a deletion: openat(2), getdents64(2), fstat(2) and unlinkat(2). macOS reads a directory
// out of sight [S]; there the first readdir(3) of one counts as the read that lists all, and the last as the
// one that finds the end.
enum class Syscall { open, read, status, unlink };

// Runs before a call, its own calls aside, and returns the errno value that the call fails with; 0 lets it go
// on. `item` is what the program wants to get into, list or remove by the call; empty on the way back from a
// subdirectory.
using SyscallHook = std::function<int(Syscall call, const std::string& item)>;

// Of those calls of this thread; none when null. The executable has the functions of the system calls itself,
// so whatever is linked into it calls them.
inline thread_local SyscallHook syscallHook;

// Directories do not tell this thread what kind their entries are of, as on some file systems.
inline thread_local bool areTypesHidden = false;

// What the monotonic clock shows this thread, in seconds; none: it goes.
inline thread_local std::optional<time_t> stoppedClock;

// For the functions in the place of the system calls: whether the hook has `call` fail; errno is set then.
// `item` is called only when there is a hook.
template <typename Item>
bool fails(Syscall call, Item item) {
  if (!syscallHook) return false;
  auto hook = std::exchange(syscallHook, nullptr);
  const int failure = hook(call, item());
  syscallHook = std::move(hook);
  if (failure != 0) errno = failure;
  return failure != 0;
}

// Lets two entries change places at one moment. False when one is not there, or the file system cannot do it.
bool exchange(int directory, const char* name, int otherDirectory, const char* otherName);
}  // namespace wendle
