#include "app/argument_dispatch.h"

#include <algorithm>

#include "app/wendle_uninstaller.h"
#include "platform/process_arguments.h"

namespace wendle {

const std::vector<std::string_view>& modeSwitches() {
  static const std::vector<std::string_view> switches{"--soft", "--hard", "--updates", "--full"};
  return switches;
}

std::optional<std::string> chosenModeSwitch(const std::vector<std::string>& arguments) {
  const auto& switches = modeSwitches();
  const auto chosen =
      std::find_first_of(arguments.begin(), arguments.end(), switches.begin(), switches.end());
  if (chosen == arguments.end()) return std::nullopt;
  return *chosen;
}

}  // namespace wendle

void AFXUninstallerHandleArguments() {
  using wendle::WendleUninstaller;
  const auto chosen = wendle::chosenModeSwitch(wendle::processArguments());
  if (!chosen) return;
  if (*chosen == "--updates") {
    WendleUninstaller::shared().runInUpdatesMode();
  } else if (*chosen == "--soft") {
    WendleUninstaller::shared().runInSoftMode();
  } else if (*chosen == "--hard") {
    WendleUninstaller::shared().runInHardMode();
  } else if (*chosen == "--full") {
    WendleUninstaller::shared().runInFullMode();
  }
}
