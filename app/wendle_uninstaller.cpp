#include "app/wendle_uninstaller.h"

#include "app/modes.h"
#include "logging/issues_reporter.h"
#include "logging/logger.h"
#include "logging/logger_configurator.h"

namespace wendle {

WendleUninstaller::WendleUninstaller() {
  IssuesReporter& reporter = IssuesReporter::sharedInstance();
  reporter.setMessageLogger(
      [](const std::string& message) { Logger::module().log(LogLevel::progress, message); });
  reporter.setSortedLogFilesProvider(LoggerFileManager::getSortedLogFiles);
  reporter.enableReporter();
}

void WendleUninstaller::runInUpdatesMode() { runSteps(Mode::updates); }
void WendleUninstaller::runInSoftMode() { runSteps(Mode::soft); }
void WendleUninstaller::runInHardMode() { runSteps(Mode::hard); }
void WendleUninstaller::runInFullMode() { runSteps(Mode::full); }

}  // namespace wendle
