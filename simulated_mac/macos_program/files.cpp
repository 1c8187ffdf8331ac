// Descriptors, files and directories. Numbers and structures are those of macOS's <sys/fcntl.h>, <sys/stat.h>
// and <sys/dirent.h> (64-bit inode numbers); what calls do differently here is said where it is.
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <span>

#include "simulated_mac/macos_program/darwin.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/open_flags.h"
#include "simulated_mac/macos_program/refusal.h"
#include "simulated_mac/macos_program/variadic.h"

namespace wendle::macho {

namespace {

struct DarwinStat {
  std::int32_t device;
  std::uint16_t mode, links;
  std::uint64_t inode;
  std::uint32_t user, group;
  std::int32_t specialDevice;
  timespec accessed, modified, changed, created;
  std::int64_t size, blocks;
  std::int32_t blockSize;
  std::uint32_t flags, generation;
  std::int32_t spare;
  std::int64_t spares[2];
};
static_assert(sizeof(DarwinStat) == 144);

struct DarwinEntry {
  std::uint64_t inode, position;
  std::uint16_t size, nameLength;
  std::uint8_t type;  // DT_DIR and so on, the same on both systems
  char name[1024];
};

[[noreturn]] void refuseFlags(const char* call, int flags) {
  refuse(std::string(call) + " has an argument that is unknown here: " + std::to_string(flags));
}

// An item's flags (<sys/stat.h>). Mode bits that no item of a client has stand for them, since they can be
// set in every file system of this one.
constexpr std::uint32_t userImmutable = 0x2, systemImmutable = 0x20000, dataless = 0x40000000;
constexpr std::pair<mode_t, std::uint32_t> modesOfFlags[] = {
    {S_ISUID, userImmutable}, {S_ISGID, systemImmutable}, {S_ISVTX, dataless}};

std::uint32_t flagsOf(const struct stat& item) {
  std::uint32_t flags = 0;
  for (const auto& [mode, flag] : modesOfFlags) flags |= (item.st_mode & mode) != 0 ? flag : 0;
  return flags;
}

mode_t modeWithFlags(const struct stat& item, std::uint32_t flags) {
  mode_t mode = item.st_mode & 0777;
  for (const auto& [bit, flag] : modesOfFlags) {
    mode |= (flags & flag) != 0 ? bit : 0;
    flags &= ~flag;
  }
  if (flags != 0) refuseFlags("chflags", static_cast<int>(flags));
  return mode;
}

// What a program's DIR* points to.
struct Directory {
  DIR* stream;
  DarwinEntry entry;
  bool isDataless;
};

constexpr int currentDirectory = -2;  // AT_FDCWD
int directoryAt(int fd) { return fd == currentDirectory ? AT_FDCWD : fd; }

// The one flag that a call knows, as this system has it.
int translated(const char* call, int flags, int darwin, int host) {
  if ((flags & ~darwin) != 0) refuseFlags(call, flags);
  return flags != 0 ? host : 0;
}

int fill(DarwinStat* result, int status, const struct stat& found) {
  if (withErrno(status) != 0) return status;
  *result = {};
  result->device = static_cast<std::int32_t>(found.st_dev);
  result->mode = static_cast<std::uint16_t>(found.st_mode);
  result->links = static_cast<std::uint16_t>(found.st_nlink);
  result->inode = found.st_ino;
  result->user = found.st_uid;
  result->group = found.st_gid;
  result->specialDevice = static_cast<std::int32_t>(found.st_rdev);
  result->accessed = found.st_atim;
  result->modified = found.st_mtim;
  result->changed = found.st_ctim;
  result->size = found.st_size;
  result->blocks = found.st_blocks;
  result->blockSize = static_cast<std::int32_t>(found.st_blksize);
  result->flags = flagsOf(found);
  return 0;
}

int statPath(const char* path, DarwinStat* result) {
  struct stat found {};
  return fill(result, ::stat(path, &found), found);
}

int lstatPath(const char* path, DarwinStat* result) {
  struct stat found {};
  return fill(result, ::lstat(path, &found), found);
}

int fstatDescriptor(int fd, DarwinStat* result) {
  struct stat found {};
  return fill(result, ::fstat(fd, &found), found);
}

int statAt(int fd, const char* path, DarwinStat* result, int flags) {
  struct stat found {};
  const int hostFlags = translated("fstatat", flags, 0x20, AT_SYMLINK_NOFOLLOW);
  return fill(result, ::fstatat(directoryAt(fd), path, &found, hostFlags), found);
}

int openAt(va_list list, int fd, const char* path, int flags) {
  const int hostFlags = toHostOpenFlags(flags);
  const mode_t mode = (hostFlags & O_CREAT) != 0 ? va_arg(list, unsigned) : 0;
  return withErrno(::openat(directoryAt(fd), path, hostFlags, mode));
}

int openPath(va_list list, const char* path, int flags) {
  return openAt(list, currentDirectory, path, flags);
}

std::uint32_t flagsAt(int fd, const char* path) {
  struct stat item {};
  const int status = ::fstatat(directoryAt(fd), path, &item, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH);
  return status == 0 ? flagsOf(item) : 0;
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
  if (((itemFlags & dataless) != 0) != ((flags & removeDataless) != 0)) refuseFlags("unlinkat", flags);
  const int hostFlags = translated("unlinkat", flags & ~removeDataless, removeDirectory, AT_REMOVEDIR);
  const int status = ::unlinkat(directoryAt(fd), path, hostFlags);
  if (status != 0 && errno == EISDIR) errno = EPERM;
  return withErrno(status);
}

int setFlagsOf(int fd, std::uint32_t flags) {
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
    refuseFlags("setattrlistat", static_cast<int>(options));
  }
  struct stat item {};
  if (::fstatat(directoryAt(fd), path, &item, AT_SYMLINK_NOFOLLOW) != 0) return withErrno(-1);
  return withErrno(::fchmodat(directoryAt(fd), path, modeWithFlags(item, *flags), 0));
}

int makeDirectoryAt(int fd, const char* path, mode_t mode) {
  return withErrno(::mkdirat(directoryAt(fd), path, mode));
}

int accessAt(int fd, const char* path, int mode, int flags) {
  const int hostFlags = translated("faccessat", flags, 0x10, AT_EACCESS);
  return withErrno(::faccessat(directoryAt(fd), path, mode, hostFlags));
}

int control(va_list list, int fd, int command) {
  const int argument = va_arg(list, int);
  switch (command) {
    case 1:
      return withErrno(::fcntl(fd, F_GETFD));
    case 2:
      return withErrno(::fcntl(fd, F_SETFD, argument));
    case 67:
      return withErrno(::fcntl(fd, F_DUPFD_CLOEXEC, argument));
    default:
      refuseFlags("fcntl", command);
  }
}

Directory* openDirectory(int fd) {
  DIR* stream = withErrno(::fdopendir(fd));
  return stream == nullptr ? nullptr : new Directory{stream, {}, (flagsAt(fd, "") & dataless) != 0};
}

DarwinEntry* readDirectory(Directory* directory) {
  if (directory->isDataless) refuse("a dataless directory is read");
  errno = 0;
  const dirent* found = ::readdir(directory->stream);
  if (found == nullptr) {
    if (errno != 0) darwinErrno() = toDarwinError(errno);
    return nullptr;
  }
  DarwinEntry& entry = directory->entry;
  entry = {found->d_ino, 0, sizeof entry, 0, found->d_type, {}};
  entry.nameLength =
      static_cast<std::uint16_t>(std::snprintf(entry.name, sizeof entry.name, "%s", found->d_name));
  return &entry;
}

int closeDirectory(Directory* directory) {
  const int status = withErrno(::closedir(directory->stream));
  delete directory;
  return status;
}

int descriptorOf(Directory* directory) { return ::dirfd(directory->stream); }

// The same structure, and the same bits from POLLIN to POLLNVAL; a nfds_t is an int there.
int pollDescriptors(pollfd* descriptors, unsigned count, int timeout) {
  for (const pollfd& each : std::span(descriptors, count)) {
    if ((each.events & ~(POLLIN | POLLPRI | POLLOUT)) != 0) refuseFlags("poll", each.events);
  }
  return withErrno(::poll(descriptors, count, timeout));
}

// On Intel, the names without it are those of the old structures.
#if defined(__x86_64__)
#define WENDLE_INODE64(name) name "$INODE64"
#else
#define WENDLE_INODE64(name) name
#endif

}  // namespace

// Unlike here, macOS has no flag for opening a path only; O_CLOEXEC is no part of fcntl's flags on either.
int toHostOpenFlags(int flags) {
  constexpr std::pair<int, int> known[] = {
      {0x1, O_WRONLY},  {0x2, O_RDWR},    {0x4, O_NONBLOCK}, {0x8, O_APPEND},         {0x100, O_NOFOLLOW},
      {0x200, O_CREAT}, {0x400, O_TRUNC}, {0x800, O_EXCL},   {0x100000, O_DIRECTORY}, {0x1000000, O_CLOEXEC}};
  int result = 0;
  for (const auto& [darwin, host] : known) {
    if ((flags & darwin) != 0) result |= host;
    flags &= ~darwin;
  }
  if (flags != 0) refuseFlags("open", flags);
  return result;
}

Imports fileImports() {
  static const Import imports[] = {
      provide("_open", Variadic<openPath>::call),
      provide("_openat", Variadic<openAt>::call),
      provide("_fcntl", Variadic<control>::call),
      provide(WENDLE_INODE64("_stat"), statPath),
      provide(WENDLE_INODE64("_lstat"), lstatPath),
      provide(WENDLE_INODE64("_fstat"), fstatDescriptor),
      provide(WENDLE_INODE64("_fstatat"), statAt),
      provide(WENDLE_INODE64("_fdopendir"), openDirectory),
      provide(WENDLE_INODE64("_readdir"), readDirectory),
      provide("_closedir", closeDirectory),
      provide("_dirfd", descriptorOf),
      provide("_unlinkat", unlinkAt),
      provide("_faccessat", accessAt),
      provide("_umask", ::umask),
      provide("_mkdirat", makeDirectoryAt),
      provide("_fchmod", WithErrno<::fchmod>::call),
      provide("_fchflags", setFlagsOf),
      provide("_setattrlistat", setAttributesAt),
      provide("_close", WithErrno<::close>::call),
      provide("_dup", WithErrno<::dup>::call),
      provide("_flock", WithErrno<::flock>::call),  // the same four numbers
      provide("_pipe", WithErrno<static_cast<int (*)(int*)>(::pipe)>::call),
      provide("_read", WithErrno<::read>::call),
      provide("_write", WithErrno<::write>::call),
      provide("_poll", pollDescriptors),
  };
  return imports;
}

}  // namespace wendle::macho
