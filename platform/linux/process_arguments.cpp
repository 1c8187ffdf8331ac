#include "platform/process_arguments.h"

#include <filesystem>

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
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path().string();
}

}  // namespace wendle
