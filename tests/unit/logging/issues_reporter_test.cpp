#include "logging/issues_reporter.h"

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <stdexcept>

namespace wendle {
// Ends the process as an exception that nothing catches does.
static void endBy(const auto& thrown) {
  IssuesReporter& reporter = IssuesReporter::sharedInstance();
  reporter.setMessageLogger([](const std::string& message) { std::cerr << message << '\n'; });
  reporter.setSortedLogFilesProvider([] {
    return std::vector{FileUrl::fileUrlWithPath("/new.log"), FileUrl::fileUrlWithPath("/old.log")};
  });
  reporter.enableReporter();
  const auto raise = [&] { throw thrown; };
  // Nothing leaves this function, not even to the test framework's own handlers.
  [&]() noexcept { raise(); }();  // NOLINT(bugprone-exception-escape)
}

TEST(IssuesReporterDeathTest, ReportsTheCauseAndTheNewestLogFileOnce) {
  const std::string begin = "Ended by an uncaught exception: ", end = " - newest log file: file:///new.log\n";
  const testing::KilledBySignal aborted(SIGABRT);
  EXPECT_EXIT(endBy(std::runtime_error("cause")), aborted, testing::Eq(begin + "cause" + end));
  EXPECT_EXIT(endBy(42), aborted, testing::Eq(begin + "an exception of an unknown type" + end));
}
}  // namespace wendle
