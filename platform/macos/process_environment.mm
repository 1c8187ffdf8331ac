#include "platform/process_environment.h"

#import <Foundation/Foundation.h>
#include <cxxabi.h>
#include <objc/runtime.h>

#include <typeinfo>

#include "platform/macos/foundation_values.h"

namespace wendle {
static std::string firstPath(NSSearchPathDirectory directory, NSSearchPathDomainMask domain) {
  @autoreleasepool {
    for (NSString* path in NSSearchPathForDirectoriesInDomains(directory, domain, YES)) return toUtf8(path);
  }
  return {};
}

static void (*reportCause)(const std::string& cause);
static NSUncaughtExceptionHandler* previousHandler;

static void handleUncaught(NSException* exception) {
  reportCause(toUtf8(exception.name) + ": " + toUtf8(exception.reason));
  if (previousHandler != nullptr) previousHandler(exception);
}

const std::vector<std::string>& processArguments() {
  static const std::vector<std::string> arguments = [] {
    std::vector<std::string> read;
    @autoreleasepool {
      for (NSString* argument in [NSProcessInfo processInfo].arguments) read.push_back(toUtf8(argument));
    }
    return read;
  }();
  return arguments;
}

std::string homeDirectoryPath() {
  @autoreleasepool {
    return toUtf8(NSHomeDirectory());
  }
}

std::string systemDirectoryPath(StandardDirectory directory) {
  switch (directory) {
    case StandardDirectory::userLibrary:
      return firstPath(NSLibraryDirectory, NSUserDomainMask);
    case StandardDirectory::userApplicationSupport:
      return firstPath(NSApplicationSupportDirectory, NSUserDomainMask);
    case StandardDirectory::localUsers:
      return firstPath(NSUserDirectory, NSLocalDomainMask);
    case StandardDirectory::localApplications:
      return firstPath(NSApplicationDirectory, NSLocalDomainMask);
  }
  return {};
}

std::string makeUniqueIdentifier() {
  @autoreleasepool {
    return toUtf8([NSUUID UUID].UUIDString);
  }
}

void reportUncaughtSystemExceptions(void (*report)(const std::string& cause)) {
  reportCause = report;
  NSUncaughtExceptionHandler* handler = NSGetUncaughtExceptionHandler();
  if (handler == handleUncaught) return;
  previousHandler = handler;
  NSSetUncaughtExceptionHandler(handleUncaught);
}

// To C++ the type of an Objective-C exception has the name of its class [S].
bool isEndingBySystemException() {
  const std::type_info* type = abi::__cxa_current_exception_type();
  return type != nullptr && objc_lookUpClass(type->name()) != nil;
}
}  // namespace wendle
