#include "simulated_mac/macos_program/darwin.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>

#include "simulated_mac/macos_program/refusal.h"

namespace wendle::macho {
namespace {
struct DarwinError {
  int host = 0, darwin = 0;
  const char* text = nullptr;  // macOS's (its C library's errlst.c) where this system says something else
};

// Up to 34 the numbers are the same, but for 11. What a file system does not support is ENOTSUP, which is
// EOPNOTSUPP here; the other of that name is for sockets.
constexpr DarwinError differing[] = {
    {ENXIO, 6, "Device not configured"},
    {EDEADLK, 11},
    {EBUSY, 16, "Resource busy"},
    {EXDEV, 18, "Cross-device link"},
    {ENODEV, 19, "Operation not supported by device"},
    {ERANGE, 34, "Result too large"},
    {EAGAIN, 35},
    {ENOTSUP, 45},
    {ETIMEDOUT, 60, "Operation timed out"},
    {ELOOP, 62},
    {ENAMETOOLONG, 63},
    {ENOTEMPTY, 66},
    {EDQUOT, 69, "Disc quota exceeded"},
    {ESTALE, 70, "Stale NFS file handle"},
    {ENOLCK, 77},
    {ENOSYS, 78},
    {EOVERFLOW, 84, "Value too large to be stored in data type"},
    {ECANCELED, 89},
    {EILSEQ, 92, "Illegal byte sequence"},
};
constexpr int lastCommon = 34;

// By macOS's number; 0 for those that this system lacks (7 EMT, 29 INFO).
constexpr std::array<int, 32> signals{
    0,       SIGHUP, SIGINT,  SIGQUIT, SIGILL,    SIGTRAP, SIGABRT,  0,       SIGFPE,  SIGKILL, SIGBUS,
    SIGSEGV, SIGSYS, SIGPIPE, SIGALRM, SIGTERM,   SIGURG,  SIGSTOP,  SIGTSTP, SIGCONT, SIGCHLD, SIGTTIN,
    SIGTTOU, SIGIO,  SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGWINCH, 0,       SIGUSR1, SIGUSR2};
}  // namespace

void refuse(const std::string& sentence) noexcept {
  const std::string line = "macos_program: " + sentence + ".\n";
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
  ::_exit(2);
}

int& darwinErrno() {
  static thread_local int number = 0;
  return number;
}

int toDarwinError(int number) {
  for (const DarwinError& error : differing) {
    if (error.host == number) return error.darwin;
  }
  if (number > lastCommon)
    refuse("macOS's number of the error " + std::to_string(number) + " is unknown here");
  return number;
}

const char* darwinErrorText(int darwinNumber) {
  for (const DarwinError& error : differing) {
    if (error.darwin == darwinNumber) return error.text != nullptr ? error.text : std::strerror(error.host);
  }
  if (darwinNumber > lastCommon)
    refuse("the text of macOS's error " + std::to_string(darwinNumber) + " is unknown here");
  return std::strerror(darwinNumber);
}

int toHostSignal(int darwinNumber) {
  return darwinNumber > 0 && darwinNumber < 32 ? signals[static_cast<std::size_t>(darwinNumber)] : 0;
}

int toDarwinSignal(int hostNumber) {
  for (std::size_t i = 1; i < signals.size(); ++i) {
    if (signals[i] == hostNumber) return static_cast<int>(i);
  }
  refuse("macOS's number of the signal " + std::to_string(hostNumber) + " is unknown here");
}
}  // namespace wendle::macho
