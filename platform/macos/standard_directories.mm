#include "platform/standard_directories.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace wendle {
namespace {

std::vector<std::string> paths(NSSearchPathDirectory directory, NSSearchPathDomainMask domain) {
  std::vector<std::string> result;
  @autoreleasepool {
    for (NSString* path in NSSearchPathForDirectoriesInDomains(directory, domain, YES)) {
      result.push_back(textOf(path));
    }
  }
  return result;
}

}  // namespace

std::string homeDirectoryPath() {
  @autoreleasepool {
    return textOf(NSHomeDirectory());
  }
}

std::vector<std::string> standardDirectoryPaths(StandardDirectory directory) {
  switch (directory) {
    case StandardDirectory::userLibrary:
      return paths(NSLibraryDirectory, NSUserDomainMask);
    case StandardDirectory::userApplicationSupport:
      return paths(NSApplicationSupportDirectory, NSUserDomainMask);
    case StandardDirectory::localUsers:
      return paths(NSUserDirectory, NSLocalDomainMask);
    case StandardDirectory::localApplications:
      return paths(NSApplicationDirectory, NSLocalDomainMask);
  }
  return {};
}

}  // namespace wendle
