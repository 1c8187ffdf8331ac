#pragma once

#include <ctime>
#include <functional>
#include <optional>
#include <string>

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
extern thread_local SyscallHook syscallHook;

// Directories do not tell this thread what kind their entries are of, as on some file systems.
extern thread_local bool areTypesHidden;

// What the monotonic clock shows this thread, in seconds; none: it goes.
extern thread_local std::optional<time_t> stoppedClock;

// Lets two entries change places at one moment. False when one is not there, or the file system cannot do it.
bool exchange(int directory, const char* name, int otherDirectory, const char* otherName);

}  // namespace wendle
