// What the groups of functions about files have in common.
#pragma once

#include <sys/stat.h>

#include <cstdint>

namespace wendle::macho {
[[noreturn]] void refuseArgument(const char* call, int argument);

// The one flag that a call knows, or none, as this system has it; refuses others.
[[nodiscard]] int toHostFlag(const char* call, int flags, int darwin, int host);

// Flags of open(2) as this system has them; refuses those that are unknown here.
[[nodiscard]] int toHostOpenFlags(int flags);

// The directory that a call such as openat(2) begins in.
constexpr int darwinCurrentDirectory = -2;  // AT_FDCWD
[[nodiscard]] int directoryAt(int fd);

// An item's flags, as <sys/stat.h> of macOS numbers them. None for an item that cannot be looked at; `path`
// may be empty, for `fd` itself.
constexpr std::uint32_t datalessFlag = 0x40000000;
[[nodiscard]] std::uint32_t toFlags(const struct stat& item);
[[nodiscard]] std::uint32_t flagsAt(int fd, const char* path);
}  // namespace wendle::macho
