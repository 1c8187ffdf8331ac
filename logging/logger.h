#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace wendle {
// Levels are numbers; these two are in use.
enum class LogLevel : int {
  progress = 1,  // progress and information
  failure = 4,   // a failure that a step reports in its own words and then passes over
};

// Somewhere records go.
class LogDestination {
 public:
  LogDestination() = default;
  LogDestination(const LogDestination&) = delete;
  LogDestination& operator=(const LogDestination&) = delete;
  virtual ~LogDestination() = default;

  // Takes one whole record, its line end included. Never fails towards the caller; called from any thread.
  virtual void write(std::string_view record) = 0;
};

using LogDestinations = std::vector<std::shared_ptr<LogDestination>>;

enum class InheritDestinations { no, yes };

// A named source of log records, and where they go. Thread-safe.
class Logger {
 public:
  // The module logger, called `module`; it has no destination until the configurator gives it one.
  [[nodiscard]] static Logger& module();

  // A logger with a name and destinations of its own, which writes to this one's destinations as well if it
  // inherits them. This logger must outlive it.
  [[nodiscard]] std::unique_ptr<Logger> subLogger(std::string name, LogDestinations destinations,
                                                  InheritDestinations inherit);

  // One record at a level.
  void log(LogLevel level, std::string_view text);

  // One record for a caught error: the message, a colon, and the error as describe() gives it.
  void log(const Error& error, std::optional<std::string_view> message);

  void addDestination(std::shared_ptr<LogDestination> destination);

 private:
  Logger(std::string name, LogDestinations destinations, Logger* parent);
  void write(std::string_view record);

  std::string name_;
  std::mutex mutex_;
  LogDestinations destinations_;
  Logger* parent_;  // whose destinations are inherited, or null
};

// The logger called `uninstaller` that every step writes through: a sub-logger of the module logger with its
// destinations and none of its own. Built on first use, once, and never released.
[[nodiscard]] Logger& uninstallerLogger();

// One record of the uninstaller's progress.
void logProgress(std::string_view text);

// One before `step`, "NAME - started", and one after it, "NAME - finished".
template <typename Step>
void logStartFinish(const std::string& name, Step step) {
  logProgress(name + " - started");
  step();
  logProgress(name + " - finished");
}
}  // namespace wendle
