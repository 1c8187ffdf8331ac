#include "platform/process_environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/file_content.h"

namespace wendle {

const std::vector<std::string>& processArguments() {
  static const std::vector<std::string> arguments = [] {
    std::vector<std::string> read;
    const std::string commandLine = fileContent("/proc/self/cmdline");
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

}  // namespace wendle
