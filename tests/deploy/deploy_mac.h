// A Mac with the tools for administrators, as a release has them.
#pragma once

#include "simulated_mac/shared.h"

namespace wendle::test {
inline const std::string tools = "/Library/WendleUninstaller/";

inline void addExecutable(mac::SimulatedMac& mac, const std::string& path, const std::string& content) {
  mac.addFile(path, content);
  std::filesystem::permissions(mac.at(path), std::filesystem::perms{0755});
}

// All files of deploy/.
inline void installTools(mac::SimulatedMac& mac) {
  for (const auto& file : std::filesystem::directory_iterator(DEPLOY_DIRECTORY))
    addExecutable(mac, tools + file.path().filename().string(), mac::readFile(file.path()));
}
}  // namespace wendle::test
