// An item's flags, and removing an item, on which they have a say (<sys/stat.h>, unlink(2), <sys/attr.h>).
// Mode bits that no item of a client has stand for flags, since they can be set in every file system of this
// one.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "simulated_mac/macos_program/darwin.h"
#include "simulated_mac/macos_program/files.h"
#include "simulated_mac/macos_program/imports.h"

namespace wendle::macho {
namespace {
constexpr std::uint32_t userImmutable = 0x2, systemImmutable = 0x20000;
constexpr std::pair<mode_t, std::uint32_t> flagModes[] = {
    {S_ISUID, userImmutable}, {S_ISGID, systemImmutable}, {S_ISVTX, datalessFlag}};

mode_t modeWithFlags(const struct stat& item, std::uint32_t flags) {
  mode_t mode = item.st_mode & 0777;
  for (const auto& [bit, flag] : flagModes) {
    mode |= (flags & flag) != 0 ? bit : 0;
    flags &= ~flag;
  }
  if (flags != 0) refuseArgument("chflags", static_cast<int>(flags));
  return mode;
}

// A directory needs AT_REMOVEDIR; without, its error is EPERM (unlink(2)), as for an immutable item and for
// one in an immutable directory. A dataless one is removed as it is by AT_REMOVEDIR_DATALESS, and fetched
// without: there is nobody here to fetch it from.
int unlinkAt(int fd, const char* path, int flags) {
  constexpr int removeDirectory = 0x80, removeDataless = 0x100;
  const std::uint32_t itemFlags = flagsAt(fd, path);
  if (((itemFlags | flagsAt(fd, "")) & (userImmutable | systemImmutable)) != 0) {
    errno = EPERM;
    return withErrno(-1);
  }
  if (((itemFlags & datalessFlag) != 0) != ((flags & removeDataless) != 0)) refuseArgument("unlinkat", flags);
  const int hostFlags = toHostFlag("unlinkat", flags & ~removeDataless, removeDirectory, AT_REMOVEDIR);
  const int status = ::unlinkat(directoryAt(fd), path, hostFlags);
  if (status != 0 && errno == EISDIR) errno = EPERM;
  return withErrno(status);
}

int setFlags(int fd, std::uint32_t flags) {
  struct stat item {};
  if (::fstat(fd, &item) != 0) return withErrno(-1);
  return withErrno(::fchmod(fd, modeWithFlags(item, flags)));
}

// The one attribute that is known is ATTR_CMN_FLAGS, and the one option FSOPT_NOFOLLOW (<sys/attr.h>).
int setAttributesAt(int fd, const char* path, const std::uint32_t* attributes, const std::uint32_t* flags,
                    std::size_t size, std::uint32_t options) {
  constexpr std::uint32_t bitmapCount = 5, flagsAttribute = 0x40000, noFollow = 1;
  if (attributes[0] != bitmapCount || attributes[1] != flagsAttribute || size != sizeof *flags ||
      options != noFollow) {
    refuseArgument("setattrlistat", static_cast<int>(options));
  }
  struct stat item {};
  if (::fstatat(directoryAt(fd), path, &item, AT_SYMLINK_NOFOLLOW) != 0) return withErrno(-1);
  return withErrno(::fchmodat(directoryAt(fd), path, modeWithFlags(item, *flags), 0));
}
}  // namespace

std::uint32_t toFlags(const struct stat& item) {
  std::uint32_t flags = 0;
  for (const auto& [mode, flag] : flagModes) flags |= (item.st_mode & mode) != 0 ? flag : 0;
  return flags;
}

std::uint32_t flagsAt(int fd, const char* path) {
  struct stat item {};
  const int status = ::fstatat(directoryAt(fd), path, &item, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH);
  return status == 0 ? toFlags(item) : 0;
}

Imports itemFlagImports() {
  static const Import imports[] = {
      provide("_unlinkat", unlinkAt),
      provide("_fchflags", setFlags),
      provide("_setattrlistat", setAttributesAt),
  };
  return imports;
}
}  // namespace wendle::macho
