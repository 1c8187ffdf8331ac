#include "platform/process_arguments.h"

#include <filesystem>
#include <fstream>

namespace wendle {

const std::vector<std::string>& processArguments() {
  static const std::vector<std::string> arguments = [] {
    std::vector<std::string> read;
    std::ifstream commandLine("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(commandLine, argument, '\0');) read.push_back(argument);
    return read;
  }();
  return arguments;
}

std::string mainBundlePath() {
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path().string();
}

}  // namespace wendle
