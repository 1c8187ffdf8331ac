#pragma once

#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "platform/file_url.h"

namespace wendle {
// Reports the death of the process by an exception that nothing catches.
class IssuesReporter {
 public:
  using MessageLogger = std::function<void(const std::string& message)>;
  using SortedLogFilesProvider = std::function<std::vector<FileUrl>()>;

  [[nodiscard]] static IssuesReporter& sharedInstance();

  void setMessageLogger(MessageLogger messageLogger) { messageLogger_ = std::move(messageLogger); }
  void setSortedLogFilesProvider(SortedLogFilesProvider provider) {
    sortedLogFilesProvider_ = std::move(provider);
  }

  // From now on an exception that nothing catches, an NSException as well, becomes one message, which names
  // the cause and the newest log file, before the process ends with SIGABRT as it would have done anyway [D].
  void enableReporter();

 private:
  IssuesReporter() = default;
  [[noreturn]] static void reportAndAbort();
  void report(const std::string& cause) const;

  std::terminate_handler systemsTerminate_ = nullptr;  // what terminated before this reporter
  MessageLogger messageLogger_;
  SortedLogFilesProvider sortedLogFilesProvider_;
};
}  // namespace wendle
