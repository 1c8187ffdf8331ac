#include "logging/logger.h"

#include "logging/log_record.h"

namespace wendle {
Logger::Logger(std::string name, LogDestinations destinations, Logger* parent)
    : name_(std::move(name)), destinations_(std::move(destinations)), parent_(parent) {}

Logger& Logger::module() {
  static Logger logger("module", {}, nullptr);
  return logger;
}

std::unique_ptr<Logger> Logger::subLogger(std::string name, LogDestinations destinations,
                                          InheritDestinations inherit) {
  Logger* parent = inherit == InheritDestinations::yes ? this : nullptr;
  return std::unique_ptr<Logger>(new Logger(std::move(name), std::move(destinations), parent));
}

void Logger::log(LogLevel level, std::string_view text) {
  write(logRecord(std::chrono::system_clock::now(), level, name_, text));
}

void Logger::log(const Error& error, std::optional<std::string_view> message) {
  const std::string prefix = message ? std::string(*message) + ": " : std::string();
  write(errorRecord(std::chrono::system_clock::now(), name_, prefix + describe(error)));
}

void Logger::addDestination(std::shared_ptr<LogDestination> destination) {
  const std::lock_guard lock(mutex_);
  destinations_.push_back(std::move(destination));
}

void Logger::write(std::string_view record) {
  {
    const std::lock_guard lock(mutex_);
    for (const auto& destination : destinations_) destination->write(record);
  }
  if (parent_ != nullptr) parent_->write(record);
}

Logger& uninstallerLogger() {
  static Logger* const logger =
      Logger::module().subLogger("uninstaller", {}, InheritDestinations::yes).release();
  return *logger;
}

void logProgress(std::string_view text) { uninstallerLogger().log(LogLevel::progress, text); }
}  // namespace wendle
