// Starting processes, waiting for them, and signals. Flags are those of macOS's <sys/spawn.h> and
// <sys/wait.h>, what they do is in posix_spawnattr_setflags(3); signal sets have a bit for each signal,
// from 1.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "simulated_mac/macos_program/darwin.h"
#include "simulated_mac/macos_program/files.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/refusal.h"

namespace wendle::macho {
namespace {
// What a posix_spawnattr_t of macOS points to.
struct Attributes {
  int flags = 0;
  pid_t group = 0;
  std::uint32_t blocked = 0, defaulted = 0;
};
enum SpawnFlag : int { setGroup = 0x2, setDefaults = 0x4, setMask = 0x8, closeByDefault = 0x4000 };

struct FileAction {
  int target;
  std::function<int(posix_spawn_file_actions_t*)> add;
};
using FileActions = std::vector<FileAction>;
constexpr int maxDescriptor = 10240;  // OPEN_MAX

sigset_t toHostSignals(std::uint32_t set) {
  sigset_t result;
  ::sigemptyset(&result);
  for (int number = 1; number < 32; ++number) {
    const bool isIn = (set >> static_cast<unsigned>(number - 1) & 1U) != 0;
    if (isIn && toHostSignal(number) != 0) ::sigaddset(&result, toHostSignal(number));
  }
  return result;
}

int initAttributes(Attributes** attributes) {
  *attributes = new Attributes;
  return 0;
}

int destroyAttributes(Attributes** attributes) {
  delete *attributes;
  return 0;
}

int setFlags(Attributes** attributes, short flags) {
  constexpr int known = setGroup | setDefaults | setMask | closeByDefault;
  if ((flags & ~known) != 0) refuse("posix_spawn has a flag that is unknown here: " + std::to_string(flags));
  (*attributes)->flags = flags;
  return 0;
}

int setProcessGroup(Attributes** attributes, pid_t group) {
  (*attributes)->group = group;
  return 0;
}

int setSignalMask(Attributes** attributes, const std::uint32_t* set) {
  (*attributes)->blocked = *set;
  return 0;
}

int setSignalDefaults(Attributes** attributes, const std::uint32_t* set) {
  (*attributes)->defaulted = *set;
  return 0;
}

int initActions(FileActions** actions) {
  *actions = new FileActions;
  return 0;
}

int destroyActions(FileActions** actions) {
  delete *actions;
  return 0;
}

int addDuplicate(FileActions** actions, int fd, int target) {
  if (fd < 0 || target < 0 || fd >= maxDescriptor || target >= maxDescriptor) return EBADF;
  (*actions)->push_back(
      {target, [=](auto* host) { return ::posix_spawn_file_actions_adddup2(host, fd, target); }});
  return 0;
}

int addOpen(FileActions** actions, int target, const char* path, int flags, mode_t mode) {
  if (target < 0 || target >= maxDescriptor) return EBADF;
  (*actions)->push_back({target, [=, path = std::string(path), flags = toHostOpenFlags(flags)](auto* host) {
                           return ::posix_spawn_file_actions_addopen(host, target, path.c_str(), flags, mode);
                         }});
  return 0;
}

// POSIX_SPAWN_CLOEXEC_DEFAULT: only those descriptors survive that the actions name.
void closeOthers(const FileActions& actions, posix_spawn_file_actions_t* host) {
  constexpr int streams = 3;
  for (int fd = 0; fd < streams; ++fd) {
    bool isNamed = false;
    for (const FileAction& action : actions) isNamed |= action.target == fd;
    if (!isNamed) ::posix_spawn_file_actions_addclose(host, fd);
  }
  for (const FileAction& action : actions) {
    if (action.target >= streams) refuse("posix_spawn keeps a descriptor above 2, which is unknown here");
  }
  ::posix_spawn_file_actions_addclosefrom_np(host, streams);
}

void setHostAttributes(const Attributes& given, posix_spawnattr_t* host) {
  int flags = 0;
  if ((given.flags & setGroup) != 0) flags |= POSIX_SPAWN_SETPGROUP;
  if ((given.flags & setDefaults) != 0) flags |= POSIX_SPAWN_SETSIGDEF;
  if ((given.flags & setMask) != 0) flags |= POSIX_SPAWN_SETSIGMASK;
  const sigset_t defaulted = toHostSignals(given.defaulted), blocked = toHostSignals(given.blocked);
  ::posix_spawnattr_setflags(host, static_cast<short>(flags));
  ::posix_spawnattr_setpgroup(host, given.group);
  ::posix_spawnattr_setsigdefault(host, &defaulted);
  ::posix_spawnattr_setsigmask(host, &blocked);
}

int spawn(pid_t* pid, const char* path, FileActions** actions, Attributes** attributes, char** arguments,
          char** environment) {
  if (actions == nullptr || attributes == nullptr)
    refuse("posix_spawn lacks its actions or its attributes, which is unknown here");
  posix_spawnattr_t hostAttributes;
  posix_spawn_file_actions_t hostActions;
  ::posix_spawnattr_init(&hostAttributes);
  ::posix_spawn_file_actions_init(&hostActions);
  setHostAttributes(**attributes, &hostAttributes);
  for (const FileAction& action : **actions) action.add(&hostActions);
  if (((*attributes)->flags & closeByDefault) != 0) closeOthers(**actions, &hostActions);
  const int error = ::posix_spawn(pid, path, &hostActions, &hostAttributes, arguments, environment);
  ::posix_spawn_file_actions_destroy(&hostActions);
  ::posix_spawnattr_destroy(&hostAttributes);
  return error == 0 ? 0 : toDarwinError(error);
}

pid_t wait(pid_t pid, int* status, int options) {
  if ((options & ~WNOHANG) != 0)
    refuse("waitpid has an option that is unknown here: " + std::to_string(options));
  int found = 0;
  const pid_t result = withErrno(::waitpid(pid, &found, options));  // WNOHANG is 1 on both systems
  if (result > 0 && WIFSIGNALED(found)) found = (found & ~0x7F) | toDarwinSignal(WTERMSIG(found));
  if (result > 0 && status != nullptr) *status = found;
  return result;
}

using Handler = void (*)(int);

// SIG_DFL, SIG_IGN and SIG_ERR are the same on both systems; a handler would get this system's numbers.
Handler handle(int number, Handler handler) {
  if (handler != SIG_DFL && handler != SIG_IGN) refuse("a signal gets a handler, which is unknown here");
  const int host = toHostSignal(number);
  if (host != 0) return withErrno(std::signal(host, handler));
  darwinErrno() = EINVAL;
  return SIG_ERR;
}

// macOS's struct sigaction, as <sys/signal.h> has it.
struct SignalAction {
  Handler handler;
  std::uint32_t mask;
  int flags;
};

int changeAction(int number, const SignalAction* action, SignalAction* former) {
  if (action != nullptr && (action->flags != 0 || action->mask != 0))
    refuse("sigaction has a flag or a mask, which are unknown here");
  struct sigaction before {};
  ::sigaction(toHostSignal(number), nullptr, &before);
  if (former != nullptr) *former = {before.sa_handler, 0, 0};
  if (action != nullptr && handle(number, action->handler) == SIG_ERR) return -1;
  return 0;
}
}  // namespace

Imports processImports() {
  static const Import imports[] = {
      provide("_posix_spawnattr_init", initAttributes),
      provide("_posix_spawnattr_destroy", destroyAttributes),
      provide("_posix_spawnattr_setflags", setFlags),
      provide("_posix_spawnattr_setpgroup", setProcessGroup),
      provide("_posix_spawnattr_setsigmask", setSignalMask),
      provide("_posix_spawnattr_setsigdefault", setSignalDefaults),
      provide("_posix_spawn_file_actions_init", initActions),
      provide("_posix_spawn_file_actions_destroy", destroyActions),
      provide("_posix_spawn_file_actions_adddup2", addDuplicate),
      provide("_posix_spawn_file_actions_addopen", addOpen),
      provide("_posix_spawn", spawn),
      provide("_waitpid", wait),
      provide("_signal", handle),
      provide("_sigaction", changeAction),
      provide("_setpgid", WithErrno<::setpgid>::call),
      provide("_getpid", ::getpid),
      provide("_geteuid", ::geteuid),
  };
  return imports;
}
}  // namespace wendle::macho
