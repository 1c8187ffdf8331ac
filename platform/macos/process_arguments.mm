#include "platform/process_arguments.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace wendle {

const std::vector<std::string>& processArguments() {
  static const std::vector<std::string> arguments = [] {
    std::vector<std::string> read;
    @autoreleasepool {
      for (NSString* argument in [NSProcessInfo processInfo].arguments) read.push_back(textOf(argument));
    }
    return read;
  }();
  return arguments;
}

std::string mainBundlePath() {
  @autoreleasepool {
    return textOf([NSBundle mainBundle].bundlePath);
  }
}

}  // namespace wendle
