#include "logging/logger_configurator.h"

#include <optional>

#include "logging/log_file.h"
#include "logging/logger.h"
#include "platform/process_environment.h"

namespace wendle {
namespace {

std::optional<LogFolder>& configuredFolder() {
  static std::optional<LogFolder> folder;
  return folder;
}

}  // namespace

void LoggerConfigurator::setupModuleLoggerWithSystem(const std::string& system) {
  auto& folder = configuredFolder();
  folder.emplace(standardDirectoryPath(StandardDirectory::userLibrary), system);
  Logger::module().addDestination(std::make_shared<LogFile>(*folder, std::chrono::system_clock::now()));
}

std::vector<FileUrl> LoggerFileManager::getSortedLogFiles() {
  std::vector<FileUrl> files;
  const auto& folder = configuredFolder();
  if (!folder) return files;
  for (const std::string& name : folder->sortedNames()) {
    files.push_back(FileUrl::fileUrlWithPath(folder->path() + "/" + name));
  }
  return files;
}

}  // namespace wendle
