// GNUstep reads the process's arguments and environment when it is loaded, before `main`, and ends the
// process over bytes that are no UTF-8 and over a user without a home. So before any library starts, the
// arguments and the environment are kept for the program, and GNUstep finds harmless ones.
#include "simulated_mac/macos_program/start.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace wendle::macho {
namespace {
char** copied(char** texts) {
  int count = 0;
  while (texts[count] != nullptr) ++count;
  auto** const copies = static_cast<char**>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char*)));
  for (int i = 0; i < count; ++i) copies[i] = ::strdup(texts[i]);
  return copies;
}

// /proc/self/cmdline shows these very bytes, and GNUstep reads them there.
void replaceForeignBytes(char* text) {
  for (; *text != '\0'; ++text) {
    if ((static_cast<unsigned char>(*text) & 0x80U) != 0) *text = '?';
  }
}

void keepStart(int argc, char** argv, char** environment) {
  start() = {argc - 1, copied(argv) + 1, copied(environment)};
  for (int i = 0; i < argc; ++i) replaceForeignBytes(argv[i]);
  ::clearenv();
  ::setenv("HOME", "/Users/pat", 1);
  ::setenv("GNUSTEP_CONFIG_FILE", "/nonexistent", 1);
}

__attribute__((section(".preinit_array"), used)) void (*const beforeLibraries)(int, char**,
                                                                               char**) = keepStart;

passwd user{const_cast<char*>("pat"),        const_cast<char*>("x"),       501, 20, const_cast<char*>("pat"),
            const_cast<char*>("/Users/pat"), const_cast<char*>("/bin/zsh")};
}  // namespace

Start& start() {
  static Start kept;
  return kept;
}
}  // namespace wendle::macho

// The Mac's one user. A simulated Mac has no password database, in which GNUstep looks its user up.
#pragma GCC visibility push(default)
extern "C" {
passwd* getpwuid(uid_t) { return &wendle::macho::user; }
passwd* getpwnam(const char*) { return &wendle::macho::user; }
int getpwuid_r(uid_t, passwd* result, char*, size_t, passwd** found) {
  *result = wendle::macho::user;
  *found = result;
  return 0;
}
int getpwnam_r(const char*, passwd* result, char* buffer, size_t size, passwd** found) {
  return getpwuid_r(0, result, buffer, size, found);
}
}
#pragma GCC visibility pop
