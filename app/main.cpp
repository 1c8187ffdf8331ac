#include "app/WendleUninstaller.h"
#include "app/modes.h"
#include "logging/logger_configurator.h"
#include "platform/process_environment.h"

const double WendleUninstallerVersionNumber = 99.0;

// what(1) finds it by its first four characters.
const unsigned char WendleUninstallerVersionString[] =
    "@(#)PROGRAM:WendleUninstaller  PROJECT:Applications-99\n";

void AFXUninstallerHandleArguments() {
  if (const auto mode = wendle::chosenMode(wendle::processArguments())) wendle::runMode(*mode);
}

int main() {
  wendle::initProcessState();
  wendle::LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  AFXUninstallerHandleArguments();
  return 0;
}
