#include "platform/case_folding.h"

#import <Foundation/Foundation.h>

#include "base/text.h"
#include "platform/macos/foundation_values.h"

namespace wendle {
static std::string_view takeUtf8Prefix(std::string_view& text) {
  const std::string_view whole = text;
  while (takeUtf8Character(text)) {
  }
  return whole.substr(0, whole.size() - text.size());
}

std::string lowercased(std::string_view text) {
  std::string result;
  @autoreleasepool {
    while (!text.empty()) {
      result += toUtf8(toNSString(takeUtf8Prefix(text)).lowercaseString);
      if (text.empty()) break;
      result += text.front();  // no UTF-8
      text.remove_prefix(1);
    }
  }
  return result;
}

bool containsIgnoringCase(std::string_view text, std::string_view searched) {
  @autoreleasepool {
    const NSRange found = [toNSString(text) rangeOfString:toNSString(searched)
                                                  options:NSCaseInsensitiveSearch];
    return searched.empty() || found.location != NSNotFound;
  }
}
}  // namespace wendle
