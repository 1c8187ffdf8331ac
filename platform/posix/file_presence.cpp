#include "platform/file_presence.h"

#include <sys/stat.h>

namespace wendle {

bool fileExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

bool directoryExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace wendle
