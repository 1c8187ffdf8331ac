#include "platform/running_applications.h"

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "platform/macos/foundation_values.h"

namespace wendle {
// The registry's own object [D]: a process number may be another application's by the time it is used.
struct RunningApplication::Handle {
  NSRunningApplication* application;
};

bool RunningApplication::terminate() const {
  @autoreleasepool {
    return [handle_->application terminate];
  }
}

bool RunningApplication::forceTerminate() const {
  @autoreleasepool {
    return [handle_->application forceTerminate];
  }
}

std::int64_t RunningApplication::processIdentifier() const { return handle_->application.processIdentifier; }

std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(const std::string& identifier) {
  std::vector<RunningApplication> found;
  @autoreleasepool {
    NSArray* applications =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:toNSString(identifier)];
    for (NSRunningApplication* application in applications) {
      if (application.processIdentifier == ::getpid()) continue;
      using Handle = RunningApplication::Handle;
      found.emplace_back(std::make_shared<const Handle>(Handle{application}));
    }
  }
  return found;
}
}  // namespace wendle
