#include "platform/process_environment.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_values.h"

namespace wendle {
namespace {

std::string firstPath(NSSearchPathDirectory directory, NSSearchPathDomainMask domain) {
  @autoreleasepool {
    for (NSString* path in NSSearchPathForDirectoriesInDomains(directory, domain, YES)) return toUtf8(path);
  }
  return {};
}

}  // namespace

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

}  // namespace wendle
