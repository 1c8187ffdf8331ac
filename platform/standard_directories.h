#pragma once

#include <string>
#include <vector>

namespace wendle {

enum class StandardDirectory {
  userLibrary,             // NSLibraryDirectory in NSUserDomainMask
  userApplicationSupport,  // NSApplicationSupportDirectory in NSUserDomainMask
  localUsers,              // NSUserDirectory in NSLocalDomainMask
  localApplications,       // NSApplicationDirectory in NSLocalDomainMask
};

// The current user's home directory, as the system names it. Source: NSHomeDirectory.
[[nodiscard]] std::string homeDirectoryPath();

// The paths of a standard directory, the first the preferred one, the home directory written out; possibly
// none. They need not exist. Source: NSSearchPathForDirectoriesInDomains.
[[nodiscard]] std::vector<std::string> standardDirectoryPaths(StandardDirectory directory);

}  // namespace wendle
