#include "platform/process_environment.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "platform/files.h"

namespace wendle {
const std::vector<std::string>& processArguments() {
  static const std::vector<std::string> arguments = [] {
    std::vector<std::string> read;
    const UniqueFd file(::open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC));
    const std::string commandLine = readToEnd(file.get()).value_or("");
    for (size_t start = 0; start < commandLine.size(); start += read.back().size() + 1) {
      read.emplace_back(&commandLine[start]);  // a zero byte ends each
    }
    return read;
  }();
  return arguments;
}

std::string homeDirectoryPath() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return home;
  const passwd* user = ::getpwuid(::geteuid());
  return user != nullptr ? user->pw_dir : "";
}

std::string systemDirectoryPath(StandardDirectory /*directory*/) { return {}; }

// A version 4 UUID (RFC 4122).
std::string makeUniqueIdentifier() {
  std::array<unsigned char, 16> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0) {
    throw std::system_error(errno, std::generic_category(), "getentropy");
  }
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
  constexpr const char* digits = "0123456789ABCDEF";
  std::string text;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += {digits[bytes[i] >> 4U], digits[bytes[i] & 0xFU]};
  }
  return text;
}

void reportUncaughtSystemExceptions(void (* /*report*/)(const std::string& cause)) {}

bool isEndingBySystemException() { return false; }
}  // namespace wendle
