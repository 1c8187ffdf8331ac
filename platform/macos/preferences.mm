#include "platform/preferences.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_values.h"

namespace wendle {
static NSUserDefaults* defaultsForDomain(const std::string& domain) {
  return [[NSUserDefaults alloc] initWithSuiteName:toNSString(domain)];
}

std::optional<PropertyList> UserDefaults::objectForKey(const std::string& key) const {
  if (const auto found = unwritten_.find(key); found != unwritten_.end()) return found->second;
  @autoreleasepool {
    return toPropertyList([defaultsForDomain(domain_) objectForKey:toNSString(key)]);
  }
}

bool UserDefaults::synchronize() {
  @autoreleasepool {
    NSUserDefaults* defaults = defaultsForDomain(domain_);
    for (const auto& [key, value] : unwritten_) {
      [defaults setObject:toFoundation(value) forKey:toNSString(key)];
    }
    if (![defaults synchronize]) return false;
    unwritten_.clear();
    return true;
  }
}
}  // namespace wendle
