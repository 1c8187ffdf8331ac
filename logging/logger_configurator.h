#pragma once

#include <string>
#include <vector>

#include "platform/file_url.h"

namespace wendle {
// Sets the logging of this process up.
class LoggerConfigurator {
 public:
  // Gives the module logger its destination: the log file of this run in the current user's library
  // directory, named after `system`. To be called once, before the first record; touches no file itself.
  static void setupModuleLoggerWithSystem(const std::string& system);

  // Connects the issue reporter to the module logger and its log files, and enables it.
  static void setupIssuesReporter();
};

// Knows the log files.
class LoggerFileManager {
 public:
  // The log files of the configured system, newest first; empty when there are none, or nothing is
  // configured.
  [[nodiscard]] static std::vector<FileUrl> getSortedLogFiles();
};
}  // namespace wendle
