#pragma once

#include <string>

namespace wendle {

// Where the program's resources lie. For those who load this program's code; the uninstaller itself needs
// none.
class WendleUninstallerResources {
 public:
  // The path of the bundle that holds this code; found once. On a system without bundles, the folder that
  // holds the executable.
  [[nodiscard]] static const std::string& bundle();
};

}  // namespace wendle
