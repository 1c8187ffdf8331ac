#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace wendle {
// A folder of its own below the system's temporary folder, removed with all its contents at the end. Its own
// name has no capitals, and no link is on the way to it. Paths given are relative to it; making an item makes
// the folders above it.
class TempDirectory {
 public:
  TempDirectory()
      : path_(canonical(std::filesystem::temp_directory_path()) / ("unit-" + std::to_string(::getpid()))) {
    while (::mkdir(path_.c_str(), S_IRWXU) != 0 && errno == EEXIST) path_ += "-";
  }
  TempDirectory(const TempDirectory&) = delete;
  ~TempDirectory() {
    std::error_code leftBehind;
    std::filesystem::remove_all(path_, leftBehind);
  }

  std::string operator/(const std::string& relative) const { return path_ + "/" + relative; }

  std::string directory(const std::string& relative) const {
    std::filesystem::create_directories(*this / relative);
    return *this / relative;
  }

  std::string file(const std::string& relative) const {  // with the text "kept"
    directory(std::filesystem::path(relative).parent_path());
    std::ofstream(*this / relative) << "kept";
    return *this / relative;
  }

  void link(const std::string& relative, const std::string& target) const {
    directory(std::filesystem::path(relative).parent_path());
    std::filesystem::create_symlink(target, *this / relative);
  }

  std::string text(const std::string& relative) const {
    return (std::ostringstream() << std::ifstream(*this / relative).rdbuf()).str();
  }

  // Every item at any depth, links not followed, sorted.
  std::vector<std::string> contents() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
      found.push_back(entry.path().lexically_relative(path_));
    std::sort(found.begin(), found.end());
    return found;
  }

 private:
  std::string path_;
};
}  // namespace wendle
