#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace wendle {
// A running application of the current user. Source: NSRunningApplication.
class RunningApplication {
 public:
  struct Handle;  // what the system knows it by: systems differ
  explicit RunningApplication(std::shared_ptr<const Handle> handle) : handle_(std::move(handle)) {}

  // Asks the application to quit in the ordinary way; does not wait, and it may refuse.
  // Returns whether the request was sent; false when the application has ended already.
  bool terminate() const;

  // Kills the application at once. Returns as terminate() does.
  bool forceTerminate() const;

  [[nodiscard]] std::int64_t processIdentifier() const;

 private:
  std::shared_ptr<const Handle> handle_;
};

// The applications with exactly that bundle identifier, this process excepted; empty when none runs.
[[nodiscard]] std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(
    const std::string& identifier);
}  // namespace wendle
