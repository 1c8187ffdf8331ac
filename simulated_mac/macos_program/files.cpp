// Descriptors, files and directories. Numbers and structures are those of macOS's <sys/fcntl.h>, <sys/stat.h>
// and <sys/dirent.h> (64-bit inode numbers); what calls do differently here is said where it is.
#include "simulated_mac/macos_program/files.h"

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

// What a program's DIR* points to.
struct Directory {
  DIR* stream;
  DarwinEntry entry;
  bool isDataless;
};

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
  result->flags = toFlags(found);
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
  const int hostFlags = toHostFlag("fstatat", flags, 0x20, AT_SYMLINK_NOFOLLOW);
  return fill(result, ::fstatat(directoryAt(fd), path, &found, hostFlags), found);
}

int openAt(va_list list, int fd, const char* path, int flags) {
  const int hostFlags = toHostOpenFlags(flags);
  const mode_t mode = (hostFlags & O_CREAT) != 0 ? va_arg(list, unsigned) : 0;
  return withErrno(::openat(directoryAt(fd), path, hostFlags, mode));
}

int openPath(va_list list, const char* path, int flags) {
  return openAt(list, darwinCurrentDirectory, path, flags);
}

int makeDirectoryAt(int fd, const char* path, mode_t mode) {
  return withErrno(::mkdirat(directoryAt(fd), path, mode));
}

int accessAt(int fd, const char* path, int mode, int flags) {
  const int hostFlags = toHostFlag("faccessat", flags, 0x10, AT_EACCESS);
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
      refuseArgument("fcntl", command);
  }
}

Directory* openDirectory(int fd) {
  DIR* stream = withErrno(::fdopendir(fd));
  return stream == nullptr ? nullptr : new Directory{stream, {}, (flagsAt(fd, "") & datalessFlag) != 0};
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

int directoryFd(Directory* directory) { return ::dirfd(directory->stream); }

// The same structure, and the same bits from POLLIN to POLLNVAL; a nfds_t is an int there.
int pollDescriptors(pollfd* descriptors, unsigned count, int timeout) {
  for (const pollfd& each : std::span(descriptors, count)) {
    if ((each.events & ~(POLLIN | POLLPRI | POLLOUT)) != 0) refuseArgument("poll", each.events);
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

void refuseArgument(const char* call, int argument) {
  refuse(std::string(call) + " has an argument that is unknown here: " + std::to_string(argument));
}

int directoryAt(int fd) { return fd == darwinCurrentDirectory ? AT_FDCWD : fd; }

int toHostFlag(const char* call, int flags, int darwin, int host) {
  if ((flags & ~darwin) != 0) refuseArgument(call, flags);
  return flags != 0 ? host : 0;
}

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
  if (flags != 0) refuseArgument("open", flags);
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
      provide("_dirfd", directoryFd),
      provide("_faccessat", accessAt),
      provide("_umask", ::umask),
      provide("_mkdirat", makeDirectoryAt),
      provide("_fchmod", WithErrno<::fchmod>::call),
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
