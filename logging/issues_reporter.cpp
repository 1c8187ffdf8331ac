#include "logging/issues_reporter.h"

#include <cstdlib>

#include "platform/process_environment.h"

namespace wendle {
static std::string causeOfTermination() {
  const std::exception_ptr exception = std::current_exception();
  if (!exception) return "terminated without an exception";
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& caught) {
    return caught.what();
  } catch (...) {
    return "an exception of an unknown type";
  }
}

// The process ends now: a report that fails must not end it in another way.
template <typename Report>
static void catchingAll(Report report) {
  try {
    report();
  } catch (...) {
  }
}

IssuesReporter& IssuesReporter::sharedInstance() {
  static IssuesReporter reporter;
  return reporter;
}

void IssuesReporter::enableReporter() {
  const std::terminate_handler previous = std::set_terminate(reportAndAbort);
  if (previous != reportAndAbort) systemsTerminate_ = previous;
  reportUncaughtSystemExceptions(
      [](const std::string& cause) { catchingAll([&] { sharedInstance().report(cause); }); });
}

void IssuesReporter::reportAndAbort() {
  if (isEndingBySystemException() && sharedInstance().systemsTerminate_ != nullptr) {
    sharedInstance().systemsTerminate_();  // reports, and does not come back
  }
  catchingAll([] { sharedInstance().report(causeOfTermination()); });
  std::abort();
}

void IssuesReporter::report(const std::string& cause) const {
  if (!messageLogger_) return;
  const std::vector<FileUrl> files =
      sortedLogFilesProvider_ ? sortedLogFilesProvider_() : std::vector<FileUrl>();
  const std::string newest = files.empty() ? "none" : files.front().absoluteString();
  messageLogger_("Ended by an uncaught exception: " + cause + " - newest log file: " + newest);
}
}  // namespace wendle
