#include "app/modes.h"
#include "logging/logger_configurator.h"

namespace wendle {
void runMode(Mode mode) {
  LoggerConfigurator::setupIssuesReporter();
  runSteps(mode);
}
}  // namespace wendle
