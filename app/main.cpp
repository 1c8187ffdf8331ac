#include "app/argument_dispatch.h"
#include "logging/logger_configurator.h"
#include "platform/process_start.h"

int main() {
  wendle::settleProcess();
  wendle::LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  AFXUninstallerHandleArguments();
  return 0;
}
