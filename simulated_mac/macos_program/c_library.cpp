// Memory, text, time and standard streams. What is here as it is has the same signature and meaning on both
// systems (ISO C, POSIX); a FILE is only handed back. The numbers of clocks are those of
// macOS's <time.h>, the table of characters is that of <runetype.h>, <ctype.h> and <pwd.h>.
#include <pwd.h>
#include <strings.h>
#include <unistd.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

#include "simulated_mac/macos_program/darwin.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/refusal.h"
#include "simulated_mac/macos_program/start.h"
#include "simulated_mac/macos_program/variadic.h"

extern "C" int callAtExit(void (*)(void*), void*, void*) asm("__cxa_atexit");

namespace wendle::macho {
namespace {
// What functions put above their buffers, and look at before they return. A fixed value will do: no attacker
// is expected here.
const std::uintptr_t stackGuard = 0x00A50D5AFF0A73C1;

int printToBuffer(va_list list, char* buffer, std::size_t size, const char* format) {
  return std::vsnprintf(buffer, size, format, list);
}

int printToStream(std::FILE* stream, const char* format, DarwinList list) {
  return std::vfprintf(stream, format, toHostList(list));
}

int errorTextTo(int number, char* buffer, std::size_t size) {
  std::snprintf(buffer, size, "%s", darwinErrorText(number));
  return 0;
}

int readClock(int clock, timespec* time) {
  constexpr int realTime = 0, monotonicRaw = 4, monotonic = 6, uptimeRaw = 8;
  switch (clock) {
    case realTime:
      return withErrno(::clock_gettime(CLOCK_REALTIME, time));
    case monotonic:
      return withErrno(::clock_gettime(CLOCK_MONOTONIC, time));
    case monotonicRaw:
    case uptimeRaw:
      return withErrno(::clock_gettime(CLOCK_MONOTONIC_RAW, time));
    default:
      refuse("the clock " + std::to_string(clock) + " is unknown here");
  }
}

// _DefaultRuneLocale: what macros of <ctype.h> read.
struct CharacterTable {
  char magic[8]{'R', 'u', 'n', 'e', 'M', 'a', 'g', 'A'};
  char encoding[32]{};
  void* functions[2]{};
  std::int32_t invalid = 0xFFFD;
  std::uint32_t types[256]{};
  std::int32_t lower[256]{}, upper[256]{};

  CharacterTable() {
    constexpr std::pair<int (*)(int), std::uint32_t> kinds[] = {
        {std::isalpha, 0x100},    {std::iscntrl, 0x200},   {std::isdigit, 0x400},  {std::isgraph, 0x800},
        {std::islower, 0x1000},   {std::ispunct, 0x2000},  {std::isspace, 0x4000}, {std::isupper, 0x8000},
        {std::isxdigit, 0x10000}, {std::isblank, 0x20000}, {std::isprint, 0x40000}};
    for (int c = 0; c < 256; ++c) {
      const auto i = static_cast<std::size_t>(c);
      for (const auto& [is, bit] : kinds) types[i] |= c < 128 && is(c) != 0 ? bit : 0;
      lower[i] = c < 128 ? std::tolower(c) : c;
      upper[i] = c < 128 ? std::toupper(c) : c;
    }
  }
};

const CharacterTable& characters() {
  static const CharacterTable table;
  return table;
}

struct DarwinUser {
  char *name, *password;
  uid_t user;
  gid_t group;
  std::int64_t changed;
  char *accessClass, *fullName, *home, *shell;
  std::int64_t expires;
};

// From the file of users, if the simulated Mac has one.
const DarwinUser* findUser(uid_t wanted) {
  static DarwinUser result;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> users(std::fopen("/etc/passwd", "re"), std::fclose);
  const passwd* found = nullptr;
  while (users != nullptr && (found = ::fgetpwent(users.get())) != nullptr && found->pw_uid != wanted)
    continue;
  if (found == nullptr) return nullptr;
  static char noClass[] = "";
  result = {found->pw_name, found->pw_passwd, found->pw_uid, found->pw_gid,   0,
            noClass,        found->pw_gecos,  found->pw_dir, found->pw_shell, 0};
  return &result;
}

int characterIs(std::int32_t character, unsigned long kinds) {
  const bool isInTable = character >= 0 && character < 128;
  return isInTable ? static_cast<int>(characters().types[character] & kinds) : 0;
}
}  // namespace

Imports cLibraryImports() {
  static std::FILE *const out = stdout, *const err = stderr;
  static const Import imports[] = {
      provide("_malloc", WithErrno<std::malloc>::call),
      provide("_calloc", WithErrno<std::calloc>::call),
      provide("_realloc", WithErrno<std::realloc>::call),
      provide("_aligned_alloc", WithErrno<std::aligned_alloc>::call),
      provide("_free", std::free),
      provide("_abort", std::abort),
      provide("___stack_chk_fail", std::abort),
      {"___stack_chk_guard", &stackGuard},
      provide("___cxa_atexit", callAtExit),
      {"_environ", &start().environment},

      provide("___bzero", ::bzero),
      provide("_bzero", ::bzero),
      provide("_memchr", static_cast<void* (*)(void*, int, std::size_t)>(std::memchr)),
      provide("_strcmp", std::strcmp),
      provide("_getpwuid", findUser),
      provide("_strlen", std::strlen),
      provide("_snprintf", Variadic<printToBuffer>::call),
      provide("___error", darwinErrno),
      provide("_strerror", darwinErrorText),
      provide("_strerror_r", errorTextTo),
      {"__DefaultRuneLocale", &characters()},
      provide("___maskrune", characterIs),

      provide("_clock_gettime", readClock),
      provide("_gmtime_r", WithErrno<::gmtime_r>::call),
      provide("_strftime", std::strftime),
      provide("_nanosleep", WithErrno<::nanosleep>::call),
      provide("_usleep", WithErrno<::usleep>::call),

      {"___stdoutp", &out},
      {"___stderrp", &err},
      provide("_fflush", WithErrno<std::fflush>::call),
      provide("_fwrite", std::fwrite),
      provide("_fputc", WithErrno<std::fputc>::call),
      {"_vfprintf", reinterpret_cast<const void*>(printToStream)},
  };
  return imports;
}
}  // namespace wendle::macho
