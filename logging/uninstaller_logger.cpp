#include "logging/uninstaller_logger.h"

namespace wendle {

Logger& uninstallerLogger() {
  static Logger* const logger =
      Logger::module().subLogger("uninstaller", {}, InheritDestinations::yes).release();
  return *logger;
}

}  // namespace wendle
