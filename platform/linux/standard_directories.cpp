#include "platform/standard_directories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace wendle {

std::string homeDirectoryPath() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return home;
  const passwd* user = ::getpwuid(::geteuid());
  return user != nullptr ? user->pw_dir : "";
}

std::vector<std::string> standardDirectoryPaths(StandardDirectory directory) {
  switch (directory) {
    case StandardDirectory::userLibrary:
      return {homeDirectoryPath() + "/Library"};
    case StandardDirectory::userApplicationSupport:
      return {homeDirectoryPath() + "/Library/Application Support"};
    case StandardDirectory::localUsers:
      return {"/Users"};
    case StandardDirectory::localApplications:
      return {"/Applications"};
  }
  return {};
}

}  // namespace wendle
