#include "logging/logger_configurator.h"

#include <optional>

#include "logging/issues_reporter.h"
#include "logging/log_file.h"
#include "logging/logger.h"
#include "platform/process_environment.h"

namespace wendle {
static std::optional<LogDirectory>& configuredDirectory() {
  static std::optional<LogDirectory> directory;
  return directory;
}

void LoggerConfigurator::setupModuleLoggerWithSystem(const std::string& system) {
  auto& directory = configuredDirectory();
  directory.emplace(standardDirectoryPath(StandardDirectory::userLibrary), system);
  Logger::module().addDestination(std::make_shared<LogFile>(*directory, std::chrono::system_clock::now()));
}

void LoggerConfigurator::setupIssuesReporter() {
  IssuesReporter& reporter = IssuesReporter::sharedInstance();
  reporter.setMessageLogger(
      [](const std::string& message) { Logger::module().log(LogLevel::progress, message); });
  reporter.setSortedLogFilesProvider(LoggerFileManager::getSortedLogFiles);
  reporter.enableReporter();
}

std::vector<FileUrl> LoggerFileManager::getSortedLogFiles() {
  std::vector<FileUrl> files;
  const auto& directory = configuredDirectory();
  if (!directory) return files;
  for (const std::string& name : directory->sortedNames()) {
    files.push_back(FileUrl::fileUrlWithPath(directory->path() + "/" + name));
  }
  return files;
}
}  // namespace wendle
