#include "app/wendle_uninstaller_resources.h"

#include "platform/process_arguments.h"

namespace wendle {

const std::string& WendleUninstallerResources::bundle() {
  static const std::string path = mainBundlePath();
  return path;
}

}  // namespace wendle
