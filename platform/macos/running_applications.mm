#include "platform/running_applications.h"

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "platform/macos/foundation_text.h"

namespace wendle {

bool RunningApplication::terminate() const {
  @autoreleasepool {
    return [[NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier_] terminate];
  }
}

bool RunningApplication::forceTerminate() const {
  @autoreleasepool {
    return [[NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier_] forceTerminate];
  }
}

std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(const std::string& identifier) {
  std::vector<RunningApplication> found;
  @autoreleasepool {
    NSArray* applications =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:foundationText(identifier)];
    for (NSRunningApplication* application in applications) {
      const int process = application.processIdentifier;
      if (process > 0 && process != ::getpid()) found.emplace_back(process);  // -1: it has ended already
    }
  }
  return found;
}

}  // namespace wendle
