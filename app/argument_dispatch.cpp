#include "app/argument_dispatch.h"

#include "platform/process_environment.h"

namespace wendle {

std::optional<Mode> chosenMode(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    for (const ModeSwitch& modeSwitch : modeSwitches) {
      if (argument == modeSwitch.argument) return modeSwitch.mode;
    }
  }
  return std::nullopt;
}

}  // namespace wendle

void AFXUninstallerHandleArguments() {
  if (const auto mode = wendle::chosenMode(wendle::processArguments())) wendle::runMode(*mode);
}
