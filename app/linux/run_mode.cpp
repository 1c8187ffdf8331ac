#include "app/argument_dispatch.h"
#include "app/wendle_uninstaller.h"

namespace wendle {

void runMode(Mode mode) {
  static const WendleUninstaller shared;  // connects the issue reporter, once
  switch (mode) {
    case Mode::updates:
      return WendleUninstaller::runInUpdatesMode();
    case Mode::soft:
      return WendleUninstaller::runInSoftMode();
    case Mode::hard:
      return WendleUninstaller::runInHardMode();
    case Mode::full:
      return WendleUninstaller::runInFullMode();
  }
}

}  // namespace wendle
