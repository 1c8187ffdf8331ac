#include "logging/issues_reporter.h"

#include <cstdlib>
#include <exception>

namespace wendle {
namespace {

std::string causeOfTermination() {
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

}  // namespace

IssuesReporter& IssuesReporter::sharedInstance() {
  static IssuesReporter reporter;
  return reporter;
}

void IssuesReporter::enableReporter() { std::set_terminate(reportAndAbort); }

void IssuesReporter::reportAndAbort() {
  try {
    sharedInstance().report(causeOfTermination());
  } catch (...) {  // the process ends now; a report that fails must not end it in another way
  }
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
