#include "platform/process_arguments.h"

#include <unistd.h>

#include <array>
#include <climits>

#include "base/path.h"
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

std::string mainBundlePath() {
  std::array<char, PATH_MAX> executable{};
  const ssize_t length = ::readlink("/proc/self/exe", executable.data(), executable.size());
  return length < 0 ? "" : deletingLastPathComponent({executable.data(), static_cast<size_t>(length)});
}

}  // namespace wendle
